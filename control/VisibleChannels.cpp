#include "control/VisibleChannels.h"

#include <algorithm>

namespace kv::control {

namespace {

/// By column, the row from which on everything is painted down to the floor.
class Cover {
  public:
    Cover(int width, int floor)
        : tops_(static_cast<std::size_t>(width), floor),
          lowest_((static_cast<std::size_t>(width) + kGroup - 1) / kGroup, floor) {}

    /// A stroke from `top` down to the floor would be seen in one of the columns.
    [[nodiscard]] bool isOpen(int left, int right, int top) const noexcept {
        const auto [first, last] = inside(left, right);
        for (std::size_t x = first; x < last;) {
            const std::size_t group = x / kGroup;
            const std::size_t end = std::min(last, (group + 1) * kGroup);
            if (top >= lowest_[group]) {
                x = end;
                continue;
            }
            for (; x < end; ++x) {
                if (top < tops_[x])
                    return true;
            }
        }
        return false;
    }

    void close(int left, int right, int top) noexcept {
        const auto [first, last] = inside(left, right);
        for (std::size_t x = first; x < last;) {
            const std::size_t group = x / kGroup;
            const std::size_t end = std::min(last, (group + 1) * kGroup);
            if (top >= lowest_[group]) {
                x = end;
                continue;
            }
            for (; x < end; ++x)
                tops_[x] = std::min(tops_[x], top);
            const auto begin = tops_.begin() + static_cast<std::ptrdiff_t>(group * kGroup);
            lowest_[group] = *std::max_element(
                begin, tops_.begin() + static_cast<std::ptrdiff_t>(std::min((group + 1) * kGroup, tops_.size())));
        }
    }

  private:
    static constexpr std::size_t kGroup = 64;  ///< columns

    [[nodiscard]] std::pair<std::size_t, std::size_t> inside(int left, int right) const noexcept {
        const auto width = static_cast<int>(tops_.size());
        return {static_cast<std::size_t>(std::clamp(left, 0, width)),
                static_cast<std::size_t>(std::clamp(right + 1, 0, width))};
    }

    std::vector<int> tops_;
    std::vector<int> lowest_;  ///< by group of columns: the lowest of their rows
};

class Visible {
  public:
    Visible(const PaintedView& view, int reach)
        : view_(view),
          map_(view.powers.pixels),
          reach_(reach),
          floor_(map_.y(view.powers.floor)),
          cover_(std::max(map_.size.width, 0), std::min(floor_, map_.size.height) + 1) {}

    /// Called for each record from the last to the first.
    bool sees(const channels::DrawRecord& record) {
        const int low = map_.x(std::max(record.dFreqLo, view_.minFreq));
        const int high = map_.x(std::min(record.dFreqHi, view_.maxFreq));
        const auto [left, right] = std::minmax(low, high);
        const int top = map_.y(view_.powers.top(record));
        // A box that hangs from the floor covers nothing.
        if (top > floor_)
            return floor_ - reach_ <= map_.size.height;
        const bool hasLine = record.dFreq >= view_.minFreq && record.dFreq <= view_.maxFreq;
        const int line = hasLine ? map_.x(record.dFreq) : left;
        if (!cover_.isOpen(left - reach_, right + reach_, top) && !cover_.isOpen(line - reach_, line + reach_, top))
            return false;
        close(left, right, line, top, record.iFillStyle);
        return true;
    }

  private:
    void close(int left, int right, int line, int top, int fillStyle) noexcept {
        const bool isSolid = fillStyle == static_cast<int>(raster::FillStyle::Solid);
        if (isSolid || left + reach_ + 1 >= right - reach_) {
            cover_.close(left - reach_, right + reach_, top);
        } else {
            cover_.close(left - reach_, left + reach_, top);
            cover_.close(right - reach_, right + reach_, top);
        }
        // The line ends below the top.
        cover_.close(line - reach_, line + reach_, top + 1);
    }

    const PaintedView& view_;
    raster::PixelMap map_;
    int reach_;
    int floor_;
    Cover cover_;
};

}  // namespace

std::vector<std::size_t> visiblePlaces(const channels::ChannelSnapshot& snapshot, const PaintedView& view, int reach,
                                       std::size_t last) {
    Visible visible(view, reach);
    std::vector<std::size_t> places;
    for (std::size_t place = last; place-- > 0;) {
        const channels::DrawRecord& record = snapshot.records()[place];
        if (view.reaches(record) && visible.sees(record))
            places.push_back(place);
    }
    std::reverse(places.begin(), places.end());
    return places;
}

}  // namespace kv::control
