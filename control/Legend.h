// The legend: which kinds and orders of channels there are, with their colors and counts.
#pragma once

#include <string>
#include <vector>

#include "channels/ChannelStore.h"
#include "control/OverlayInk.h"

namespace kv::control {

class Legend {
  public:
    /// Visible channels of one kind, or visible products of one order.
    struct Row {
        std::wstring name;
        raster::OleColor color = 0;
        std::int32_t count = 0;
        friend bool operator==(const Row&, const Row&) = default;
    };
    /// TX, RX, then the products by their order; "IM" without a number are products without components. The channels
    /// are counted wherever their frequency is. Of a host's own class each channel is read, which runs the host's code;
    /// one that cannot be read is not counted. Throws std::bad_alloc.
    [[nodiscard]] static std::vector<Row> rowsOf(const channels::ChannelStore& store);

    /// A legend in the upper right corner. It is empty without rows, and in a picture of which it would cover more than
    /// half the height or 40 percent of the width.
    Legend(std::vector<Row> rows, OverlayInk& ink);

    /// What the legend covers; empty without a legend.
    [[nodiscard]] const raster::PixelRect& area() const noexcept { return area_; }
    [[nodiscard]] bool empty() const noexcept { return area_.right <= area_.left; }
    void draw(OverlayInk& ink) const;

  private:
    std::vector<Row> rows_;
    std::vector<std::wstring> countTexts_;  ///< by row
    std::vector<int> countWidths_;          ///< by row
    raster::PixelRect area_;
    int textHeight_ = 0;
};

}  // namespace kv::control
