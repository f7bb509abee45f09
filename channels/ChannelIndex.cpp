#include "channels/ChannelIndex.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "util/ConvertFreq.h"
#include "util/RuntimeError.h"

namespace kv::channels {

namespace {

using Found = std::function<bool(std::int32_t index)>;

constexpr std::size_t kNone = PlaceSet::kNone;

bool meets(FreqSlot& channel, double x, double tolerance) {
    const std::wstring units = channel.sFreqUnits();
    const double low = util::toMHz(units, channel.dFreqLo());
    const double high = util::toMHz(units, channel.dFreqHi());
    return low <= x + tolerance && high >= x - tolerance;
}

void scan(const ChannelStore& store, ChannelKind kind, double x, double tolerance, const Found& found) {
    for (std::int32_t i = 0; const FreqSlotRef channel = store.at(kind, i); ++i) {
        if (meets(*channel, x, tolerance) && !found(i))
            return;
    }
}

/// The places of channels of our own class, in rising order. Often only the first few of thousands are wanted, so that
/// they are not sorted.
class Rising {
  public:
    explicit Rising(std::vector<std::int32_t> places) : places_(std::move(places)) {
        std::ranges::make_heap(places_, std::greater());
    }
    [[nodiscard]] std::size_t first() const noexcept {
        return places_.empty() ? kNone : static_cast<std::size_t>(places_.front());
    }
    void dropFirst() {
        std::ranges::pop_heap(places_, std::greater());
        places_.pop_back();
    }

  private:
    std::vector<std::int32_t> places_;
};

}  // namespace

void forEachChannelAt(const ChannelStore& store, ChannelKind kind, double x, double tolerance, const Found& found) {
    ChannelSnapshot& snapshot = store.snapshot(kind);
    if (snapshot.hasTooLargeEdges()) {
        scan(store, kind, x, tolerance, found);
        return;
    }
    Rising own(snapshot.placesAt(x - tolerance, x + tolerance));
    const ChannelList& list = store.list(kind);
    const std::uint64_t arrangement = store.arrangement(kind);
    std::size_t foreign = snapshot.foreign().next(0);
    while (own.first() != kNone || foreign != kNone) {
        const std::size_t place = std::min(own.first(), foreign);
        bool isMet = true;
        if (place == own.first()) {
            own.dropFirst();
        } else {
            isMet = meets(*FreqSlotRef(list.at(place)), x, tolerance);
        }
        // The host's code may have changed the list.
        if (store.arrangement(kind) != arrangement)
            return;
        if (isMet && list.at(place) && !found(list.indexOf(place)))
            return;
        if (store.arrangement(kind) != arrangement)
            return;
        if (place == foreign)
            foreign = snapshot.foreign().next(place + 1);
    }
}

std::optional<double> nextFrequency(const ChannelStore& store, double from, double side) {
    std::optional<double> nearest;
    const auto isNearer = [&](double frequency) {
        const double distance = (frequency - from) * side;
        return distance > 0.0 && (!nearest || distance < (*nearest - from) * side);
    };
    for (const ChannelKind kind : kBothKinds) {
        ChannelSnapshot& snapshot = store.snapshot(kind);
        const std::vector<DrawRecord>& records = snapshot.currentRecords();
        for (std::size_t place = 0; place < records.size(); ++place) {
            const DrawRecord& record = records[place];
            const double frequency = util::toMHz(record.unit, record.dFreq);
            if (record.unit == util::FreqUnit::Other || !isNearer(frequency) || !snapshot.isLive(place) ||
                snapshot.foreign().contains(place))
                continue;
            if (!std::isfinite(frequency) && std::isfinite(record.dFreq))
                throw util::RuntimeError(util::error_number::kOverflow);
            nearest = frequency;
        }
        store.forEachForeign(kind, [&](FreqSlot& channel) {
            bool unknown = false;
            const double frequency = util::ConvertFreq(channel.sFreqUnits(), L"MHz", channel.dFreq(), unknown);
            if (!unknown && isNearer(frequency))
                nearest = frequency;
        });
    }
    return nearest;
}

}  // namespace kv::channels
