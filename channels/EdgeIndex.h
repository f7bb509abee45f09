// Finds which of many bands meet a range of frequencies, without reading each band.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kv::channels {

/// Bands in the order of their lower edges, with the highest upper edge of each 64 and of each 4096 of them.
class EdgeIndex {
  public:
    struct Band {
        double low = 0.0;   ///< MHz
        double high = 0.0;  ///< MHz
        std::int32_t position = 0;
    };

    /// A band with an edge that is not a number meets nothing.
    explicit EdgeIndex(std::vector<Band> bands);

    /// Appends the positions, in no order, of the bands with `low` <= `highest` and `high` >= `lowest`. Returns the
    /// number of steps, one for each band or group of bands that was compared.
    std::size_t meet(double lowest, double highest, std::vector<std::int32_t>& positions) const;

  private:
    static constexpr std::size_t kFew = 64;
    static constexpr std::size_t kMany = 4096;

    std::vector<Band> bands_;
    std::vector<double> highOfFew_;
    std::vector<double> highOfMany_;
};

}  // namespace kv::channels
