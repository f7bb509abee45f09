// Finds which of many bands meet a range of frequencies, without reading each band.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "channels/DrawRecord.h"
#include "channels/PlaceSet.h"

namespace kv::channels {

/// The places of the records in the order of their lower band edges in MHz, with the highest upper edge of each 64 and
/// of each 4096 of them. Records that have changed since are gone through one by one, and sorted in when there are
/// many.
class EdgeIndex {
  public:
    /// Drops the index. The next `arrange` builds it again.
    void forget() noexcept;
    /// The index has been built and is kept up to date.
    [[nodiscard]] bool isBuilt() const noexcept { return built_; }
    /// The record at `place` is new or has other edges. Without memory the index is forgotten.
    void changed(std::size_t place) noexcept;
    /// Sorts in what has changed, if that is worth it. The first time it builds the index of all records, apart from
    /// those at `except`. Throws std::bad_alloc.
    void arrange(const std::vector<DrawRecord>& records, const PlaceSet& except);

    /// Appends the places, in no order, of the records whose band meets [lowest, highest], MHz. A hole may be among
    /// them. A band with an edge that is not a number meets nothing. Returns the number of steps, one for each band or
    /// group of bands that was compared.
    std::size_t meet(const std::vector<DrawRecord>& records, double lowest, double highest,
                     std::vector<std::int32_t>& places) const;

  private:
    static constexpr std::size_t kFew = 64;
    static constexpr std::size_t kMany = 4096;

    struct Band {
        double low;  ///< MHz
        std::int32_t place;
    };
    /// Without the padding between two bands.
    struct Bands {
        std::vector<double> low;
        std::vector<std::int32_t> place;
    };
    [[nodiscard]] std::vector<Band> sortedChanges(const std::vector<DrawRecord>& records);
    void merge(const std::vector<Band>& added);
    void findHighest(const std::vector<DrawRecord>& records);
    [[nodiscard]] bool isWorthSorting() const noexcept;

    bool built_ = false;
    Bands bands_;
    std::vector<double> highOfFew_;
    std::vector<double> highOfMany_;
    std::vector<std::int32_t> changes_;  ///< places whose bands in `bands_` no longer count
    PlaceSet isChanged_;
};

/// Does the band of a record, in MHz, meet [lowest, highest]?
[[nodiscard]] inline bool meets(const DrawRecord& record, double lowest, double highest) noexcept {
    return util::toMHz(record.unit, record.dFreqLo) <= highest && util::toMHz(record.unit, record.dFreqHi) >= lowest;
}

}  // namespace kv::channels
