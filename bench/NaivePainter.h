// The painter that the control is compared with: the same boxes and lines, one channel after the other.
#pragma once

#include <memory>

#include "bench/ChannelSets.h"

namespace kv::bench {

struct View {
    double minFreq = 0.0;  ///< MHz
    double maxFreq = 0.0;
    double minPwr = 0.0;  ///< dBm
    double maxPwr = 0.0;
};

class NaivePainter {
  public:
    virtual ~NaivePainter() = default;
    /// Clears the picture and draws all channels of the view.
    virtual void draw(const std::vector<Channel>& channels, const View& view) = 0;
    /// Sum over the pixels, so that the compiler cannot leave the work out.
    [[nodiscard]] virtual std::uint64_t checksum() = 0;
};

/// Plain GDI calls into a 1600 by 600 DIB section, pens and brushes made once; natively the raster canvas.
[[nodiscard]] std::unique_ptr<NaivePainter> makeNaivePainter();

inline constexpr int kPictureWidth = 1600;
inline constexpr int kPictureHeight = 600;

}  // namespace kv::bench
