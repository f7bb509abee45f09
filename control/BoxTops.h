// The highest box in each column of a picture, which are the channels worth a label.
#pragma once

#include <cstddef>
#include <cstdint>
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
    void begin(int columns) { best_.assign(static_cast<std::size_t>(columns), {}); }
    /// Boxes of this kind follow. The places are those of the list at this moment.
    void beginKind(channels::ChannelKind kind, std::uint64_t arrangement) noexcept {
        arrangements_[kind] = arrangement;
    }
    void offer(int column, const BoxTop& box) noexcept {
        if (column < 0 || static_cast<std::size_t>(column) >= best_.size())
            return;
        Best& best = best_[static_cast<std::size_t>(column)];
        if (best.isThere && !isBefore(best.box, box))
            return;
        best = {true, box};
    }

    [[nodiscard]] int columns() const noexcept { return static_cast<int>(best_.size()); }
    /// Null without a box.
    [[nodiscard]] const BoxTop* at(int column) const noexcept {
        const Best& best = best_[static_cast<std::size_t>(column)];
        return best.isThere ? &best.box : nullptr;
    }
    /// The `arrangement` of the places of a kind.
    [[nodiscard]] std::uint64_t arrangement(channels::ChannelKind kind) const noexcept { return arrangements_[kind]; }

  private:
    struct Best {
        bool isThere = false;
        BoxTop box;
    };
    /// Is `a` lower than `b`, or as high and drawn before it?
    [[nodiscard]] static bool isBefore(const BoxTop& a, const BoxTop& b) noexcept {
        if (a.top != b.top)
            return a.top < b.top;
        if (a.kind != b.kind)
            return a.kind == channels::ChannelKind::TX;
        return a.place <= b.place;
    }

    std::vector<Best> best_;
    channels::PerKind<std::uint64_t> arrangements_;
};

}  // namespace kv::control
