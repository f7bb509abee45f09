// The plans that come with the control, and the products that each is known to give.
#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <set>

#include "host/plan/Plan.h"
#include "host/plan/Products.h"

namespace {

using kv::host::Plan;
using kv::host::PlanChannel;

const std::filesystem::path kPlans = std::filesystem::path(KV_SOURCE_DIR) / "examples" / "plans";

struct Expected {
    const char* file;
    std::size_t transmitters;
    std::size_t receivers;
    std::size_t pairs;    // 2A-B
    std::size_t triples;  // A+B-C
    std::size_t distinct;
    int mostOnOne;
    std::int64_t lowestHz;
    std::int64_t highestHz;
};

// Computed by plain loops over integer hertz in another language, not with the generator.
const Expected kExpected[] = {
    {"gmrs.csv", 8, 22, 56, 168, 22, 18, 462'375'000, 462'900'000},
    {"frs-gmrs.csv", 22, 0, 462, 4620, 164, 106, 457'387'500, 472'875'000},
    {"noaa-weather-radio.csv", 7, 0, 42, 105, 19, 13, 162'250'000, 162'700'000},
    {"pmr446.csv", 16, 0, 240, 1680, 46, 84, 445'818'750, 446'381'250},
    {"marine-vhf.csv", 31, 33, 930, 13485, 558, 137, 150'875'000, 167'600'000},
    {"site-100.csv", 100, 0, 9900, 485100, 8705, 148, 127'402'500, 195'825'000},
};

class ProductPlans : public testing::TestWithParam<Expected> {};

TEST_P(ProductPlans, GiveTheProductsTheyAreKnownFor) {
    const Expected& expected = GetParam();
    const Plan plan = kv::host::loadPlan(kPlans / expected.file);
    EXPECT_EQ(plan.transmitterCount(), expected.transmitters);
    EXPECT_EQ(plan.receiverCount(), expected.receivers);
    std::vector<kv::host::Transmitter> transmitters;
    for (const PlanChannel& channel : plan.channels) {
        EXPECT_GE(channel.powerDbm, 20.0) << "watts for dBm?";
        if (channel.transmits) {
            transmitters.push_back({channel.frequencyHz, channel.bandwidthHz, channel.powerDbm});
        }
    }
    std::map<std::size_t, std::size_t> perTermCount;
    std::map<std::int64_t, int> perFrequency;
    kv::host::ProductGenerator generator(transmitters, {});
    kv::host::Product product;
    while (generator.next(product) == kv::host::ProductGenerator::Step::kProduct) {
        ++perTermCount[product.termCount];
        ++perFrequency[product.frequencyHz];
    }
    EXPECT_EQ(perTermCount[2], expected.pairs);
    EXPECT_EQ(perTermCount[3], expected.triples);
    EXPECT_EQ(perFrequency.size(), expected.distinct);
    EXPECT_EQ(perFrequency.begin()->first, expected.lowestHz);
    EXPECT_EQ(perFrequency.rbegin()->first, expected.highestHz);
    int most = 0;
    for (const auto& [frequency, number] : perFrequency) {
        most = std::max(most, number);
    }
    EXPECT_EQ(most, expected.mostOnOne);
}

INSTANTIATE_TEST_SUITE_P(All, ProductPlans, testing::ValuesIn(kExpected), [](const auto& instance) {
    std::string name = instance.param.file;
    name.erase(std::remove_if(name.begin(), name.end(), [](char c) { return c == '-' || c == '.'; }), name.end());
    return name;
});

TEST(ProductPlans, NoneIsForgottenHere) {
    std::set<std::string> there;
    for (const auto& entry : std::filesystem::directory_iterator(kPlans)) {
        there.insert(entry.path().filename().string());
    }
    std::set<std::string> tested;
    for (const Expected& expected : kExpected) {
        tested.insert(expected.file);
    }
    EXPECT_EQ(there, tested);
}

std::map<std::wstring, const PlanChannel*> byKey(const Plan& plan) {
    std::map<std::wstring, const PlanChannel*> result;
    for (const PlanChannel& channel : plan.channels) {
        result[channel.key] = &channel;
    }
    return result;
}

TEST(ProductPlans, GmrsInputsLieFiveMegahertzAboveTheOutputs) {
    const Plan plan = kv::host::loadPlan(kPlans / "gmrs.csv");
    const auto channels = byKey(plan);
    for (int n = 15; n <= 22; ++n) {
        const std::wstring number = std::to_wstring(n);
        const std::int64_t output = channels.at(L"TX" + number)->frequencyHz;
        EXPECT_EQ(output, 462'550'000 + 25'000 * (n - 15)) << n;
        EXPECT_EQ(channels.at(L"RX" + number)->frequencyHz, output + 5'000'000) << n;
    }
}

TEST(ProductPlans, MarineDuplexAndSimplexChannels) {
    const Plan plan = kv::host::loadPlan(kPlans / "marine-vhf.csv");
    const auto channels = byKey(plan);
    int duplex = 0;
    int simplex = 0;
    for (const PlanChannel& channel : plan.channels) {
        if (!channel.transmits) {
            continue;
        }
        const std::int64_t ship = channels.at(L"RX" + channel.key.substr(2))->frequencyHz;
        EXPECT_TRUE(channel.frequencyHz == ship || channel.frequencyHz == ship + 4'600'000) << channel.label;
        (channel.frequencyHz == ship ? simplex : duplex) += 1;
    }
    EXPECT_EQ(duplex, 15);
    EXPECT_EQ(simplex, 16);
    EXPECT_EQ(channels.at(L"TX16")->frequencyHz, 156'800'000);
    EXPECT_EQ(channels.at(L"TX70")->frequencyHz, 156'525'000);
    EXPECT_EQ(channels.at(L"TXAIS1")->frequencyHz, 161'975'000);
    EXPECT_EQ(channels.at(L"TXAIS2")->frequencyHz, 162'025'000);
}

// Since 2019 the upper halves of channels 27 and 28 are data channels, and the lower ones stand alone.
TEST(ProductPlans, MarineChannels27And28AreNoLongerDuplex) {
    const Plan plan = kv::host::loadPlan(kPlans / "marine-vhf.csv");
    const auto channels = byKey(plan);
    EXPECT_EQ(channels.count(L"TX27") + channels.count(L"RX27"), 0U);
    EXPECT_EQ(channels.count(L"TX28") + channels.count(L"RX28"), 0U);
    EXPECT_EQ(channels.at(L"TX1027")->frequencyHz, 157'350'000);
    EXPECT_EQ(channels.at(L"TX1028")->frequencyHz, 157'400'000);
    EXPECT_EQ(channels.at(L"TXASM1")->frequencyHz, 161'950'000);
    EXPECT_EQ(channels.at(L"TXASM2")->frequencyHz, 162'000'000);
}

TEST(ProductPlans, MarineShipToShipChannelsHaveNoCoastTransmitter) {
    const Plan plan = kv::host::loadPlan(kPlans / "marine-vhf.csv");
    const auto channels = byKey(plan);
    for (const wchar_t* channel : {L"06", L"08"}) {
        EXPECT_EQ(channels.count(std::wstring(L"TX") + channel), 0U);
        EXPECT_EQ(channels.count(std::wstring(L"RX") + channel), 1U);
    }
}

}  // namespace
