#include "host/hits/HitRows.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>

#include "host/hits/NaturalOrder.h"
#include "util/Text.h"

namespace kv::host {

namespace {

/// Numbers that are in the order of the texts. Equal texts have equal numbers.
template <class TextOf>
std::vector<std::uint32_t> ranksOf(const std::vector<PlanChannel>& channels, TextOf textOf) {
    std::vector<std::uint32_t> sorted(channels.size());
    std::iota(sorted.begin(), sorted.end(), 0U);
    const auto compare = [&](std::uint32_t a, std::uint32_t b) {
        return compareNaturally(textOf(channels[a]), textOf(channels[b]));
    };
    std::sort(sorted.begin(), sorted.end(), [&](std::uint32_t a, std::uint32_t b) { return compare(a, b) < 0; });
    std::vector<std::uint32_t> ranks(channels.size());
    for (std::size_t i = 1; i < sorted.size(); ++i) {
        ranks[sorted[i]] = ranks[sorted[i - 1]] + (compare(sorted[i - 1], sorted[i]) < 0 ? 1U : 0U);
    }
    return ranks;
}

/// Has the same order as the signed numbers.
std::uint64_t ordered(std::int64_t number) noexcept {
    return static_cast<std::uint64_t>(number) ^ (std::uint64_t{1} << 63U);
}

}  // namespace

std::wstring receiverName(const PlanChannel& receiver) {
    return receiver.label == receiver.key ? receiver.key : receiver.key + L"  " + receiver.label;
}

/// What rows are compared by, so that nothing is computed in a comparison.
struct HitRows::SortKey {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    std::uint32_t index = 0;
};

HitRows::HitRows(const HitFinder& finder) : finder_(finder), receiverCounted_(finder.site().receivers().size()) {
    extend();
}

void HitRows::extend() {
    for (std::size_t i = order_.size(); i < finder_.hits().size(); ++i) {
        const auto index = static_cast<std::uint32_t>(i);
        order_.push_back(index);
        if (passes(finder_.hits()[i])) {
            rows_.push_back(index);
            count(index);
        }
    }
}

void HitRows::sort(HitColumn column, bool descending) {
    const std::vector<std::uint32_t> ranks = ranksFor(column);
    std::vector<SortKey> keys;
    keys.reserve(order_.size());
    for (const std::uint32_t index : order_) {
        keys.push_back(keyOf(column, index, ranks));
    }
    const auto less = [](const SortKey& a, const SortKey& b) {
        return a.high != b.high ? a.high < b.high : a.low < b.low;
    };
    if (descending) {
        std::stable_sort(keys.begin(), keys.end(), [&](const SortKey& a, const SortKey& b) { return less(b, a); });
    } else {
        std::stable_sort(keys.begin(), keys.end(), less);
    }
    std::transform(keys.begin(), keys.end(), order_.begin(), [](const SortKey& key) { return key.index; });
    rows_.clear();
    std::copy_if(order_.begin(), order_.end(), std::back_inserter(rows_),
                 [this](std::uint32_t index) { return passes(finder_.hits()[index]); });
}

void HitRows::filter(const HitFilter& filter) {
    filter_ = filter;
    if (filter_.minimumDbm) {
        // 1e9 hundredths are far above any power, and fit into the type.
        constexpr double kMost = 1e9;
        // The margin keeps a limit such as -15.03 from being rounded to more than it is.
        minimumHundredths_ =
            static_cast<std::int32_t>(std::clamp(std::ceil(*filter_.minimumDbm * 100.0 - 1e-6), -kMost, kMost));
    }
    selectReceivers();
    rows_.clear();
    std::copy_if(order_.begin(), order_.end(), std::back_inserter(rows_),
                 [this](std::uint32_t index) { return passes(finder_.hits()[index]); });
    countAll();
}

std::optional<std::size_t> HitRows::rowOf(std::uint32_t index) const {
    const auto found = std::find(rows_.begin(), rows_.end(), index);
    return found == rows_.end() ? std::nullopt : std::optional<std::size_t>(found - rows_.begin());
}

void HitRows::selectReceivers() {
    receiverSelected_.clear();
    const std::wstring wanted = util::foldCase(util::trim(filter_.receiver));
    if (wanted.empty()) {
        return;
    }
    bool exact = false;
    for (const PlanChannel& receiver : finder_.site().receivers()) {
        const std::wstring name = util::foldCase(receiverName(receiver));
        const bool same = wanted == name || wanted == util::foldCase(receiver.key);
        if (same && !exact) {
            exact = true;
            std::fill(receiverSelected_.begin(), receiverSelected_.end(), false);
        }
        receiverSelected_.push_back(exact ? same : name.find(wanted) != std::wstring::npos);
    }
}

bool HitRows::passes(const Hit& hit) const noexcept {
    return (filter_.order == 0 || filter_.order == orderOf(hit)) &&
           (!filter_.minimumDbm || hit.hundredthsDbm >= minimumHundredths_) &&
           (receiverSelected_.empty() || receiverSelected_[hit.receiver]);
}

/// Hits of one product are next to each other in the finder's list, so products are counted in that order.
void HitRows::count(std::uint32_t index) {
    const Hit& hit = finder_.hits()[index];
    if (!lastCounted_ || !sameProduct(hit, finder_.hits()[*lastCounted_])) {
        ++products_;
    }
    lastCounted_ = index;
    if (!receiverCounted_[hit.receiver]) {
        receiverCounted_[hit.receiver] = true;
        ++receiverCount_;
    }
}

void HitRows::countAll() {
    products_ = 0;
    receiverCount_ = 0;
    lastCounted_.reset();
    receiverCounted_.assign(receiverCounted_.size(), false);
    for (std::size_t i = 0; i < order_.size(); ++i) {
        if (passes(finder_.hits()[i])) {
            count(static_cast<std::uint32_t>(i));
        }
    }
}

std::vector<std::uint32_t> HitRows::ranksFor(HitColumn column) const {
    const HitSite& site = finder_.site();
    switch (column) {
        case HitColumn::kReceiver:
            return ranksOf(
                site.receivers(), [](const PlanChannel& channel) -> auto& { return channel.key; });
        case HitColumn::kLabel:
            return ranksOf(
                site.receivers(), [](const PlanChannel& channel) -> auto& { return channel.label; });
        case HitColumn::kFormula:
            return ranksOf(
                site.transmitters(), [](const PlanChannel& channel) -> auto& { return channel.key; });
        default:
            return {};
    }
}

HitRows::SortKey HitRows::keyOf(HitColumn column, std::uint32_t index, const std::vector<std::uint32_t>& ranks) const {
    const HitSite& site = finder_.site();
    const Hit& hit = finder_.hits()[index];
    switch (column) {
        case HitColumn::kReceiver:
        case HitColumn::kLabel:
            return {ranks[hit.receiver], 0, index};
        case HitColumn::kFrequency:
            return {ordered(site.frequencyOf(hit)), 0, index};
        case HitColumn::kOffset:
            return {ordered(site.offsetOf(hit)), 0, index};
        case HitColumn::kOrder:
            return {static_cast<std::uint64_t>(orderOf(hit)), 0, index};
        case HitColumn::kPower:
            return {ordered(hit.hundredthsDbm), 0, index};
        case HitColumn::kOverlap:
            return {ordered(site.overlapOf(hit)), 0, index};
        case HitColumn::kFormula:
            break;
    }
    SortKey key{static_cast<std::uint64_t>(orderOf(hit)), 0, index};
    for (const std::int8_t coefficient : hit.coefficients) {
        key.high = (key.high << 4U) | static_cast<std::uint64_t>(coefficient + 8);
    }
    for (std::size_t i = 0; i < hit.transmitters.size(); ++i) {
        // The number of a transmitter has 16 bits. The first one fits behind the coefficients.
        const std::uint64_t rank = hit.coefficients[i] == 0 ? 0 : ranks[hit.transmitters[i]];
        (i == 0 ? key.high : key.low) = ((i == 0 ? key.high : key.low) << 16U) | rank;
    }
    return key;
}

}  // namespace kv::host
