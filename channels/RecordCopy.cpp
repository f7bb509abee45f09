#include "channels/RecordCopy.h"

#include "channels/MakeRoom.h"

namespace kv::channels {

namespace {

constexpr std::size_t kAhead = 8;  // records that are fetched while one is read
constexpr std::size_t kFewHoles = 64;

void fetch(const FreqSlot* channel) {
    __builtin_prefetch(channel);
    __builtin_prefetch(reinterpret_cast<const char*>(channel) + sizeof(DrawRecord) + sizeof(void*));
}

}  // namespace

std::optional<std::size_t> RecordCopy::update(const ChannelList& list) {
    // Taken before the records are read: what changes meanwhile, in another apartment, is read at the next update.
    const std::uint64_t revision = recordRevision();
    std::size_t live = liveCount();
    if (live == 0)
        revision_ = revision;
    const std::size_t from = records_.size();
    makeRoom(records_, from + list.size() - live);
    makeRoom(fields_, from + list.size() - live);
    for (; live < list.size(); ++live) {
        if (live + kAhead < list.size())
            fetch(list[live + kAhead]);
        append(*list[live]);
    }
    if (hasForeign_)
        return std::nullopt;
    if (revision == revision_)
        return from;
    readAgain();
    revision_ = revision;
    return 0;
}

void RecordCopy::append(FreqSlot& channel) {
    FreqSlotFields* const fields = channel.watch();
    fields_.push_back(fields);
    records_.push_back(fields ? fields->drawRecord() : DrawRecord{});
    hasForeign_ = hasForeign_ || !fields;
    unknownStyles_ += channels::hasUnknownFillStyle(records_.back()) ? 1 : 0;
}

void RecordCopy::readAgain() {
    unknownStyles_ = 0;
    for (std::size_t position = 0; position < records_.size(); ++position) {
        if (position + kAhead < records_.size())
            __builtin_prefetch(fields_[position + kAhead]);
        if (const FreqSlotFields* const fields = fields_[position]) {
            records_[position] = fields->drawRecord();
            unknownStyles_ += channels::hasUnknownFillStyle(records_[position]) ? 1 : 0;
        }
    }
}

std::optional<std::size_t> RecordCopy::remove(std::int32_t index) {
    if (static_cast<std::size_t>(index) >= liveCount())
        return std::nullopt;  // not read yet
    const std::size_t position = positionOf(index);
    holes_.set(position);
    unknownStyles_ -= channels::hasUnknownFillStyle(records_[position]) ? 1 : 0;
    records_[position] = {};
    records_[position].bVisible = false;
    fields_[position] = nullptr;
    return position;
}

bool RecordCopy::hasManyHoles() const noexcept {
    return holes_.count() > kFewHoles + records_.size() / 8;
}

}  // namespace kv::channels
