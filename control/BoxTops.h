// The highest box in each column of a picture, which are the channels worth a label.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "channels/ChannelStore.h"

namespace kv::control {

/// A box on the picture.
struct BoxTop {
    double top = 0.0;  ///< dBm
    int row = 0;       ///< of `top`
    int left = 0;      ///< columns, both inside
    int right = 0;
    channels::ChannelKind kind{};
    std::size_t place = 0;  ///< in the list of its kind
};

/// The drawing of the channels offers each box whose middle is in the picture, or of very many only those that can be
/// seen. That costs little, because the drawing knows the columns. Of each column the highest box is kept, of equally
/// high ones the one that is drawn last.
class BoxTops {
  public:
    /// Drops everything. Boxes are kept for `columns` columns from now on; none for 0.
    void begin(int columns) {
        heights_.assign(static_cast<std::size_t>(columns), kNone);
        boxes_.resize(heights_.size());
    }
    /// Boxes of this kind follow. The places are those of the list at this moment.
    void beginKind(channels::ChannelKind kind, std::uint64_t arrangement) noexcept {
        arrangements_[kind] = arrangement;
    }
    void offer(int column, const BoxTop& box) noexcept {
        // Nearly every box is lower than the highest one of its column.
        if (column < 0 || static_cast<std::size_t>(column) >= heights_.size() ||
            box.top < heights_[static_cast<std::size_t>(column)])
            return;
        take(static_cast<std::size_t>(column), box);
    }

    [[nodiscard]] int columns() const noexcept { return static_cast<int>(heights_.size()); }
    /// Null without a box.
    [[nodiscard]] const BoxTop* at(int column) const noexcept {
        const auto at = static_cast<std::size_t>(column);
        return heights_[at] == kNone ? nullptr : &boxes_[at];
    }
    /// The `arrangement` of the places of a kind.
    [[nodiscard]] std::uint64_t arrangement(channels::ChannelKind kind) const noexcept { return arrangements_[kind]; }

  private:
    static constexpr double kNone = -std::numeric_limits<double>::infinity();

    void take(std::size_t column, const BoxTop& box) noexcept {
        if (box.top == heights_[column] && heights_[column] != kNone && !isLater(box, boxes_[column]))
            return;
        heights_[column] = box.top;
        boxes_[column] = box;
    }
    /// Is `a` drawn after `b`?
    [[nodiscard]] static bool isLater(const BoxTop& a, const BoxTop& b) noexcept {
        return a.kind == b.kind ? a.place >= b.place : a.kind == channels::ChannelKind::RX;
    }

    std::vector<double> heights_;  ///< by column, dBm
    std::vector<BoxTop> boxes_;    ///< by column, where there is a height
    channels::PerKind<std::uint64_t> arrangements_;
};

}  // namespace kv::control
