#include "channels/GroupCounts.h"

#include <algorithm>

#include "channels/Intermodulation.h"

namespace kv::channels {

namespace {

constexpr std::size_t kAhead = 8;  // records that are being loaded while one is counted

}  // namespace

void GroupCounts::add(int order, std::uint32_t lColor, std::int32_t change) {
    const auto place = counts_.try_emplace({order, lColor}, 0).first;
    place->second += change;
    if (place->second == 0)
        counts_.erase(place);
}

void GroupCounts::add(const GroupCounts& others) {
    for (const auto& [key, count] : others.counts_)
        add(key.first, key.second, count);
}

std::vector<ChannelGroup> GroupCounts::groups() const {
    std::vector<ChannelGroup> groups;
    std::int32_t most = 0;
    for (const auto& [key, count] : counts_) {
        const auto [order, color] = key;
        if (groups.empty() || groups.back().order != order) {
            groups.push_back({order, color, 0});
            most = 0;
        }
        groups.back().count += count;
        if (count > most) {
            most = count;
            groups.back().lColor = color;
        }
    }
    return groups;
}

void GroupBlocks::shorten(std::size_t size) noexcept {
    forgetCounts();
    stale_.clear();
    for (std::size_t block = 0; block < blocksFor(size); ++block)
        stale_.insert(block);
}

void GroupBlocks::forgetCounts() noexcept {
    for (std::size_t block = 0; block < blocks_.size(); ++block)
        stale_.insert(block);
    blocks_.clear();
    all_.clear();
}

void GroupBlocks::update(ChannelKind kind, const ChannelList& list, const std::vector<DrawRecord>& records,
                         const PlaceSet& except) {
    if (stale_.empty())
        return;
    try {
        blocks_.resize(std::max(blocks_.size(), blocksFor(records.size())));
        for (std::size_t block = stale_.next(0); block != PlaceSet::kNone; block = stale_.next(block + 1)) {
            if (block >= blocks_.size())
                break;
            count(kind, block, list, records, except);
        }
        groups_ = all_.groups();
    } catch (...) {
        forgetCounts();
        throw;
    }
    stale_.clear();
}

void GroupBlocks::count(ChannelKind kind, std::size_t block, const ChannelList& list,
                        const std::vector<DrawRecord>& records, const PlaceSet& except) {
    for (const ChannelGroup& before : blocks_[block])
        all_.add(before.order, before.lColor, -before.count);
    blocks_[block].clear();
    Block now;
    const std::size_t end = std::min((block + 1) * kSize, records.size());
    for (std::size_t place = block * kSize; place < end; ++place) {
        list.prefetch(place + kAhead);
        if (!records[place].bVisible || except.contains(place) || !list.at(place))
            continue;
        const int order = kind == ChannelKind::TX ? productOrder(*list.at(place)->peek()) : kNoProduct;
        const std::uint32_t color = records[place].lColor;
        const auto isSame = [&](const ChannelGroup& group) { return group.order == order && group.lColor == color; };
        const auto group = std::ranges::find_if(now, isSame);
        if (group != now.end()) {
            ++group->count;
        } else {
            now.push_back({order, color, 1});
        }
        ++counted_;
    }
    for (const ChannelGroup& group : now)
        all_.add(group.order, group.lColor, group.count);
    blocks_[block] = std::move(now);
}

}  // namespace kv::channels
