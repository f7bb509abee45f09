#include "control/Legend.h"

#include <algorithm>
#include <new>
#include <utility>

#include "channels/Intermodulation.h"

namespace kv::control {

using channels::ChannelGroup;
using channels::ChannelKind;
using channels::GroupCounts;

namespace {

// Pixels at 96 dots per inch.
constexpr int kLegendMargin = 6;  // from the picture's edge
constexpr int kPadding = 5;       // from the frame to what is in it
constexpr int kColumnGap = 6;
constexpr int kLineGap = 2;
constexpr int kSwatch = 9;

void addForeign(GroupCounts& counts, ChannelKind kind, channels::FreqSlot& channel) {
    try {
        if (!channel.bVisible())
            return;
        const std::uint32_t color = channel.lColor();
        counts.add(kind == ChannelKind::TX ? channels::productOrder(channel) : channels::kNoProduct, color, 1);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        // The drawing of the channel has reported that it cannot be read.
    }
}

std::vector<ChannelGroup> groupsOf(const channels::ChannelStore& store, ChannelKind kind) {
    channels::ChannelSnapshot& snapshot = store.snapshot(kind);
    if (snapshot.foreign().empty())
        return snapshot.groups(kind).groups();
    GroupCounts counts;
    store.forEachForeign(kind, [&](channels::FreqSlot& channel) { addForeign(counts, kind, channel); });
    // Last, because the host's code may have changed the others.
    counts.add(snapshot.groups(kind).counts());
    return counts.groups();
}

std::wstring nameOf(int order) {
    return order == channels::kUnknownOrder ? L"IM" : L"IM" + std::to_wstring(order);
}

}  // namespace

std::vector<Legend::Row> Legend::rowsOf(const channels::ChannelStore& store) {
    std::vector<Row> rows;
    std::vector<Row> products;
    for (const ChannelGroup& group : groupsOf(store, ChannelKind::TX)) {
        if (group.order == channels::kNoProduct) {
            rows.push_back({L"TX", group.lColor, group.count});
        } else {
            products.push_back({nameOf(group.order), group.lColor, group.count});
        }
    }
    for (const ChannelGroup& group : groupsOf(store, ChannelKind::RX))
        rows.push_back({L"RX", group.lColor, group.count});
    rows.insert(rows.end(), products.begin(), products.end());
    return rows;
}

Legend::Legend(std::vector<Row> rows, OverlayInk& ink) : rows_(std::move(rows)) {
    int nameWidth = 0;
    int countWidth = 0;
    for (const Row& row : rows_) {
        const raster::PixelSize name = ink.textSize(row.name);
        countTexts_.push_back(std::to_wstring(row.count));
        countWidths_.push_back(ink.textSize(countTexts_.back()).width);
        nameWidth = std::max(nameWidth, name.width);
        countWidth = std::max(countWidth, countWidths_.back());
        textHeight_ = std::max(textHeight_, name.height);
    }
    if (nameWidth <= 0 || countWidth <= 0 || textHeight_ <= 0)
        return;
    const int padding = ink.scaled(kPadding);
    const int gap = ink.scaled(kColumnGap);
    const int width = 2 * padding + ink.scaled(kSwatch) + 2 * gap + nameWidth + countWidth;
    const int lines = static_cast<int>(rows_.size());
    const int height = 2 * padding + lines * (textHeight_ + ink.scaled(kLineGap)) - ink.scaled(kLineGap);
    const int margin = ink.scaled(kLegendMargin);
    const raster::PixelSize picture = ink.size();
    if (height > (picture.height - margin) / 2 || width > (picture.width - margin) * 2 / 5)
        return;
    area_ = {picture.width - margin - width, margin, picture.width - margin, margin + height};
}

void Legend::draw(OverlayInk& ink) const {
    if (empty())
        return;
    ink.frame(area_);
    const int padding = ink.scaled(kPadding);
    const int swatch = ink.scaled(kSwatch);
    int top = area_.top + padding;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const int left = area_.left + padding;
        const int middle = top + (textHeight_ - swatch) / 2;
        ink.fill({left, middle, left + swatch, middle + swatch}, rows_[i].color);
        ink.text({left + swatch + ink.scaled(kColumnGap), top}, rows_[i].name);
        ink.text({area_.right - padding - countWidths_[i], top}, countTexts_[i]);
        top += textHeight_ + ink.scaled(kLineGap);
    }
}

}  // namespace kv::control
