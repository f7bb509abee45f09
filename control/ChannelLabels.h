// The labels of the channels, above their boxes.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "channels/ChannelStore.h"
#include "control/BoxTops.h"
#include "control/OverlayInk.h"

namespace kv::control {

/// Labels of the highest boxes first. A label is above its box, centered on the frequency of the channel, and above the
/// boxes beside it that it would cover. Where another label is in the way, it moves up by up to three rows and gets a
/// line down to its box. A label for which there is no room is left out.
///
/// A box that reaches up to the edge of the picture has no room above it. Its label is inside the box, at the edge, or
/// up to three rows below.
class ChannelLabels {
  public:
    struct Label {
        std::wstring text;
        raster::PixelRect area;
        int column = 0;   ///< of the channel's frequency
        int lineEnd = 0;  ///< the row down to which there is a line from the label; `area.bottom` for none
    };

    /// Of the boxes in `tops`, in a picture of which the columns before `firstColumn` and the areas in `taken` are in
    /// use. Of a host's own class the label is read, which runs the host's code; a channel whose label cannot be read
    /// gets none. Throws std::bad_alloc.
    ChannelLabels(const BoxTops& tops, const channels::ChannelStore& store, OverlayInk& ink, int firstColumn,
                  std::vector<raster::PixelRect> taken);

    /// In the order in which they were chosen.
    [[nodiscard]] const std::vector<Label>& labels() const noexcept { return labels_; }
    void draw(OverlayInk& ink) const;

  private:
    struct Candidate {
        int column;
        BoxTop box;
    };

    [[nodiscard]] std::vector<Candidate> candidatesOf(const BoxTops& tops) const;
    void measureSkyline(const BoxTops& tops);
    void tryToPlace(const Candidate& candidate, channels::FreqSlot& channel, OverlayInk& ink);
    /// The row of the top of a label that covers the columns from `left` to `right`, which is left out. -1 for none.
    [[nodiscard]] int freeTop(const Candidate& candidate, int left, int right) const;
    [[nodiscard]] bool isFree(const raster::PixelRect& area) const;

    raster::PixelSize picture_;
    int height_ = 0;  ///< of a label
    int gap_ = 0;     ///< above and below a label
    int sideGap_ = 0;
    int firstColumn_ = 0;
    std::vector<int> skyline_;  ///< by column: the row of the highest box
    std::vector<raster::PixelRect> taken_;
    std::vector<Label> labels_;
};

}  // namespace kv::control
