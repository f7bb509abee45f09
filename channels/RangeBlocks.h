// The extremes of frequency and power of many records, kept by blocks.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "channels/DrawRecord.h"
#include "channels/PlaceSet.h"
#include "channels/Sentinels.h"

namespace kv::channels {

/// The band edges (MHz) and powers (dBm) of records as far as they count for the extremes: a record without a
/// frequency, an edge that is not above 0 and a power that is not finite widen nothing.
struct CountedRange {
    double low = FREQ_UNSET;
    double high = -FREQ_UNSET;
    double minPower = FREQ_UNSET;
    double maxPower = -FREQ_UNSET;

    void widen(const CountedRange& other) noexcept;
    /// Numbers that are none change nothing.
    void widenByEdges(double frequency, double lowEdge, double highEdge) noexcept {
        if (!(frequency > 0.0))
            return;
        if (lowEdge > 0.0 && lowEdge < low)
            low = lowEdge;
        if (highEdge > 0.0 && highEdge > high)
            high = highEdge;
    }
    void widenByPower(double power) noexcept {
        // Minus infinity is the power of 0 W. As an extreme it would leave the picture without a scale.
        if (!std::isfinite(power))
            return;
        minPower = std::min(minPower, power);
        maxPower = std::max(maxPower, power);
    }
    void widenBy(const DrawRecord& record) noexcept {
        widenByEdges(record.dFreq, record.dFreqLo, record.dFreqHi);
        if (record.dFreq > 0.0)
            widenByPower(record.dPwrDBM);
    }
};

/// The two records count alike.
[[nodiscard]] inline bool countAlike(const DrawRecord& a, const DrawRecord& b) noexcept {
    return a.dFreq == b.dFreq && a.dFreqLo == b.dFreqLo && a.dFreqHi == b.dFreqHi && a.dPwrDBM == b.dPwrDBM;
}

/// After a change only the block of 128 records around it is gone through again.
class RangeBlocks {
  public:
    /// Places below `size` are records from now on. Throws std::bad_alloc and changes nothing.
    void grow(std::size_t size);
    /// The record at `place` has another value, or is new.
    void changed(std::size_t place) noexcept { stale_.insert(place / kSize); }
    /// The record at `place`, which was `record`, is gone. Costs nothing if another one is further out.
    void removed(std::size_t place, const DrawRecord& record) noexcept;
    /// All records have other places; there are `size` of them.
    void shorten(std::size_t size) noexcept;
    /// Of all records apart from those at `except`.
    [[nodiscard]] const CountedRange& range(const std::vector<DrawRecord>& records, const PlaceSet& except) noexcept;

  private:
    static constexpr std::size_t kSize = 128;

    void derive(std::size_t block, const std::vector<DrawRecord>& records, const PlaceSet& except) noexcept;

    std::vector<CountedRange> blocks_;
    PlaceSet stale_;
    CountedRange all_;
};

}  // namespace kv::channels
