// Which of many channels can be seen in a picture that is drawn by strokes instead of pixels.
#pragma once

#include <cstddef>
#include <vector>

#include "control/CollectionPainter.h"

namespace kv::control {

/// The places, in order, of the records that are not covered completely by later ones; of the places up to, without,
/// `last`. Every stroke counts as covering `reach` more columns on each side than its own, and as visible from there.
/// Throws std::bad_alloc.
[[nodiscard]] std::vector<std::size_t> visiblePlaces(const channels::ChannelSnapshot& snapshot, const PaintedView& view,
                                                     int reach, std::size_t last);

}  // namespace kv::control
