#include "bench/ChannelSets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

#include "host/plan/Plan.h"
#include "host/plan/Products.h"

namespace kv::bench {

namespace {

constexpr std::array<std::uint32_t, 6> kColors = {0xB4771F, 0x0E7FFF, 0x2CA02C, 0x2827D6, 0xBD6794, 0x4B568C};

void color(Channel& channel, std::size_t number) {
    channel.lColor = kColors[number % kColors.size()];
    channel.lColorLine = kColors[(number / 7 + 1) % kColors.size()];
}

/// Boxes a whole bandwidth to each side, as the control makes them when the host gives no edges.
ChannelSet anywhere(double bandwidthKHz, std::size_t count) {
    std::mt19937 random(1969);
    std::uniform_real_distribution<double> frequency(100.0, 200.0);
    std::uniform_real_distribution<double> power(-120.0, -20.0);
    ChannelSet set{{}, 100.0, 200.0, -130.0, -10.0, 150.0};
    set.channels.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        Channel& channel = set.channels[i];
        channel.dFreq = frequency(random);
        channel.dBW = bandwidthKHz;
        channel.dFreqLo = channel.dFreq - bandwidthKHz / 1e3;
        channel.dFreqHi = channel.dFreq + bandwidthKHz / 1e3;
        channel.dPwrDBM = power(random);
        channel.sLabel = L"Channel";
        color(channel, i);
    }
    return set;
}

/// The middle of the bin of 100 kHz that holds the most channels.
double densestSpot(const std::vector<Channel>& channels) {
    std::vector<int> bins;
    for (const Channel& channel : channels) {
        const auto bin = static_cast<std::size_t>(channel.dFreq * 10.0);
        bins.resize(std::max(bins.size(), bin + 1));
        ++bins[bin];
    }
    return (static_cast<double>(std::ranges::max_element(bins) - bins.begin()) + 0.5) / 10.0;
}

ChannelSet siteProducts(std::size_t count) {
    const host::Plan plan = host::loadPlan(KV_SOURCE_DIR "/examples/plans/site-100.csv");
    std::vector<host::Transmitter> transmitters;
    for (const host::PlanChannel& channel : plan.channels) {
        if (channel.transmits)
            transmitters.push_back({channel.frequencyHz, channel.bandwidthHz, channel.powerDbm});
    }
    host::ProductOptions options;
    options.fifth = count > host::countCombinations(transmitters.size(), options);
    host::ProductGenerator generator(transmitters, options);
    ChannelSet set{{}, 138.0, 186.0, -130.0, 40.0, 162.0};
    host::Product product;
    while (set.channels.size() < count) {
        const host::ProductGenerator::Step step = generator.next(product);
        if (step == host::ProductGenerator::Step::kEnd)
            break;
        if (step != host::ProductGenerator::Step::kProduct)
            continue;
        Channel channel;
        channel.dFreq = static_cast<double>(product.frequencyHz) / 1e6;
        channel.dBW = static_cast<double>(product.bandwidthHz) / 1e3;
        channel.dFreqLo = channel.dFreq - channel.dBW / 2e3;
        channel.dFreqHi = channel.dFreq + channel.dBW / 2e3;
        channel.dPwrDBM = product.powerDbm;
        channel.sLabel = host::productLabel(product);
        color(channel, set.channels.size());
        set.channels.push_back(std::move(channel));
    }
    set.densest = densestSpot(set.channels);
    return set;
}

ChannelSet make(SetKind kind, std::size_t count) {
    switch (kind) {
        case SetKind::Narrow:
            return anywhere(12.5, count);
        case SetKind::Wide:
            return anywhere(1000.0, count);
        case SetKind::Site:
            break;
    }
    return siteProducts(count);
}

}  // namespace

std::wstring Channel::key(std::size_t number) {
    return host::productKey(number);
}

const char* nameOf(SetKind kind) {
    switch (kind) {
        case SetKind::Narrow:
            return "narrow";
        case SetKind::Wide:
            return "wide";
        case SetKind::Site:
            break;
    }
    return "site";
}

const ChannelSet& channelSet(SetKind kind, std::size_t count) {
    static SetKind keptKind{};
    static std::size_t keptCount = 0;
    static ChannelSet kept;
    if (keptCount != count || keptKind != kind) {
        kept = {};
        kept = make(kind, count);
        keptKind = kind;
        keptCount = count;
    }
    return kept;
}

}  // namespace kv::bench
