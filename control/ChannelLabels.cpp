#include "control/ChannelLabels.h"

#include <algorithm>
#include <bit>
#include <new>
#include <utility>

namespace kv::control {

using channels::FreqSlotRef;

namespace {

constexpr int kRows = 3;                // that a label moves at most
constexpr int kLabelGap = 1;            // pixels at 96 dots per inch, between rows and above a box
constexpr int kSideGap = 3;             // the same, between labels side by side
constexpr std::size_t kMost = 128;      // boxes that are considered, so that time does not grow with the width
constexpr std::size_t kLongest = 1000;  // characters; a longer label does not fit into any picture

/// The least of a number a column over ranges of columns that are added one after the other.
class RangeMinima {
  public:
    RangeMinima(int columns, int start) : start_(start) {
        levels_.assign(std::bit_width(static_cast<unsigned>(columns)), std::vector<int>(toSize(columns), start));
    }
    /// From `first` to `last`, both inside, in order.
    void lower(int first, int last, int value) noexcept {
        const auto level = static_cast<std::size_t>(std::bit_width(static_cast<unsigned>(last - first + 1)) - 1);
        const int width = 1 << level;
        lowerAt(level, first, value);
        lowerAt(level, last + 1 - width, value);
    }
    /// By column.
    [[nodiscard]] std::vector<int> columns() && {
        for (std::size_t level = levels_.size(); level-- > 1;) {
            const int half = 1 << (level - 1);
            const int end = static_cast<int>(levels_[level].size()) - half;
            for (int x = 0; x < end; ++x) {
                const int value = levels_[level][toSize(x)];
                if (value == start_)
                    continue;
                lowerAt(level - 1, x, value);
                lowerAt(level - 1, x + half, value);
            }
        }
        return std::move(levels_.front());
    }

  private:
    static std::size_t toSize(int number) noexcept { return static_cast<std::size_t>(number); }
    void lowerAt(std::size_t level, int x, int value) noexcept {
        int& least = levels_[level][toSize(x)];
        least = std::min(least, value);
    }

    int start_;
    std::vector<std::vector<int>> levels_;  ///< the element at x stands for 2 to the level columns from x on
};

/// Empty for a label that cannot be read, which the host may have done on purpose.
std::wstring labelOf(channels::FreqSlot& channel) {
    if (const channels::FreqSlotFields* const own = channel.peek())
        return own->sLabel.size() > kLongest ? std::wstring() : own->sLabel;
    try {
        return channel.sLabel();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        return {};
    }
}

}  // namespace

ChannelLabels::ChannelLabels(const BoxTops& tops, const channels::ChannelStore& store, OverlayInk& ink, int firstColumn,
                             std::vector<raster::PixelRect> taken)
    : picture_(ink.size()),
      gap_(ink.scaled(kLabelGap)),
      sideGap_(ink.scaled(kSideGap)),
      firstColumn_(firstColumn),
      taken_(std::move(taken)) {
    height_ = ink.textSize(L"0").height;
    if (height_ <= 0 || picture_.width <= 0 || tops.columns() != picture_.width)
        return;
    measureSkyline(tops);
    // A copy, because reading a label may run code of the host, which may draw.
    const std::vector<Candidate> candidates = candidatesOf(tops);
    const channels::PerKind<std::uint64_t> arrangements{tops.arrangement(channels::ChannelKind::TX),
                                                        tops.arrangement(channels::ChannelKind::RX)};
    for (const Candidate& candidate : candidates) {
        const channels::ChannelKind kind = candidate.box.kind;
        const channels::ChannelList& list = store.list(kind);
        if (store.arrangement(kind) != arrangements[kind] || candidate.box.place >= list.places())
            continue;
        // Without room for a single column, the label need not be read.
        if (const FreqSlotRef channel(list.at(candidate.box.place));
            channel && candidate.column >= firstColumn_ &&
            freeTop(candidate, candidate.column, candidate.column + 1) >= 0)
            tryToPlace(candidate, *channel, ink);
    }
}

std::vector<ChannelLabels::Candidate> ChannelLabels::candidatesOf(const BoxTops& tops) const {
    const auto columns = static_cast<std::size_t>(tops.columns());
    const std::size_t share = std::max<std::size_t>((columns + kMost - 1) / kMost, 1);
    const auto isHigher = [](const BoxTop& a, const BoxTop& b) { return a.top > b.top; };
    std::vector<Candidate> candidates;
    std::size_t count = 0;
    for (int x = 0; x < tops.columns(); ++x)
        count += tops.at(x) ? 1U : 0U;
    for (std::size_t first = 0; first < columns;) {
        // If there are too many, the highest of some columns side by side stands for them.
        const std::size_t end = count > kMost ? std::min(first + share, columns) : first + 1;
        const BoxTop* best = nullptr;
        std::size_t column = first;
        for (; first < end; ++first) {
            const BoxTop* const box = tops.at(static_cast<int>(first));
            if (box && box->row < picture_.height && (!best || isHigher(*box, *best))) {
                best = box;
                column = first;
            }
        }
        if (best)
            candidates.push_back({static_cast<int>(column), *best});
    }
    std::ranges::stable_sort(candidates,
                             [&](const Candidate& a, const Candidate& b) { return isHigher(a.box, b.box); });
    return candidates;
}

void ChannelLabels::measureSkyline(const BoxTops& tops) {
    RangeMinima minima(picture_.width, picture_.height);
    for (int x = 0; x < tops.columns(); ++x) {
        const BoxTop* const box = tops.at(x);
        if (!box)
            continue;
        const int first = std::clamp(box->left, 0, x);
        const int last = std::clamp(box->right, x, picture_.width - 1);
        minima.lower(first, last, std::clamp(box->row, 0, picture_.height));
    }
    skyline_ = std::move(minima).columns();
}

void ChannelLabels::tryToPlace(const Candidate& candidate, channels::FreqSlot& channel, OverlayInk& ink) {
    Label label;
    label.text = labelOf(channel);
    if (label.text.empty() || label.text.size() > kLongest)
        return;
    const raster::PixelSize size = ink.textSize(label.text);
    if (!OverlayInk::isReadable(size) || size.width > picture_.width - firstColumn_)
        return;
    const int left = std::clamp(candidate.column - size.width / 2, firstColumn_, picture_.width - size.width);
    const int top = freeTop(candidate, left, left + size.width);
    if (top < 0)
        return;
    label.area = {left, top, left + size.width, top + height_};
    label.column = candidate.column;
    label.lineEnd = std::max(candidate.box.row, label.area.bottom);
    if (label.lineEnd <= label.area.bottom + gap_)
        label.lineEnd = label.area.bottom;
    taken_.push_back(label.area);
    if (label.lineEnd > label.area.bottom)
        taken_.push_back({label.column, label.area.bottom, label.column + 1, label.lineEnd});
    labels_.push_back(std::move(label));
}

int ChannelLabels::freeTop(const Candidate& candidate, int left, int right) const {
    const int row = height_ + gap_;
    const int own = std::max(candidate.box.row, 0);
    const int highest = *std::min_element(skyline_.begin() + left, skyline_.begin() + right);
    const auto isFreeAt = [&](int top) { return isFree({left - sideGap_, top, right + sideGap_, top + height_}); };
    const int least = std::max(own - (kRows + 1) * row, 0);
    for (int top = std::min(own, highest) - row, i = 0; i <= kRows && top >= least; ++i, top -= row) {
        if (isFreeAt(top))
            return top;
    }
    if (own >= row)
        return -1;
    for (int top = 0, i = 0; i <= kRows && top + height_ <= picture_.height; ++i, top += row) {
        if (isFreeAt(top))
            return top;
    }
    return -1;
}

bool ChannelLabels::isFree(const raster::PixelRect& area) const {
    return std::ranges::none_of(taken_, [&](const raster::PixelRect& other) { return meet(area, other); });
}

void ChannelLabels::draw(OverlayInk& ink) const {
    for (const Label& label : labels_) {
        if (label.lineEnd > label.area.bottom)
            ink.line({label.column, label.area.bottom}, {label.column, label.lineEnd});
    }
    for (const Label& label : labels_) {
        ink.clear(label.area);
        ink.text({label.area.left, label.area.top}, label.text);
    }
}

}  // namespace kv::control
