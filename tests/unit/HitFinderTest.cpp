// Finding the products that overlap receivers.
#include "host/hits/HitFinder.h"

#include <gmock/gmock.h>

#include <map>
#include <set>

#include "tests/unit/HitSites.h"

namespace {

using kv::host::Hit;
using kv::host::HitFinder;
using kv::host::kMostHits;
using kv::host::Plan;
using kv::host::PlanChannel;
using kv::host::Product;
using kv::host::ProductGenerator;
using kv::host::ProductOptions;
using kv::test::channel;
using kv::test::findAll;
using kv::test::namesOf;
using kv::test::orders;

struct Counts {
    std::size_t products = 0;
    std::size_t hits = 0;
    std::size_t receivers = 0;
    bool operator==(const Counts&) const = default;
};

/// Those of the hits whose formula has this many terms.
Counts countsOf(const HitFinder& finder, int terms) {
    std::set<std::wstring> products;
    std::set<std::uint32_t> receivers;
    Counts counts;
    for (const Hit& hit : finder.hits()) {
        if (std::count(hit.coefficients.begin(), hit.coefficients.end(), 0) == 5 - terms) {
            ++counts.hits;
            products.insert(finder.site().formulaOf(hit));
            receivers.insert(hit.receiver);
        }
    }
    return {products.size(), counts.hits, receivers.size()};
}

std::ostream& operator<<(std::ostream& stream, const Counts& counts) {
    return stream << counts.products << " products, " << counts.hits << " hits, " << counts.receivers << " receivers";
}

// The numbers of these two tests were computed by plain loops over integer hertz in another language.
TEST(HitFinder, GmrsOutputsHitTheSevenInterstitialChannels) {
    HitFinder finder(kv::test::samplePlan("gmrs.csv"), orders(false, true, false));
    findAll(finder);
    EXPECT_EQ(finder.state(), HitFinder::State::kDone);
    EXPECT_EQ(finder.productCount(), 224U);
    // Products on the eight outputs: each is 12.5 kHz from one or two interstitial channels.
    EXPECT_EQ(countsOf(finder, 2), (Counts{24, 42, 7}));
    EXPECT_EQ(countsOf(finder, 3), (Counts{100, 182, 7}));
    for (const Hit& hit : finder.hits()) {
        EXPECT_THAT(finder.site().receiverOf(hit).label, testing::StartsWith(L"FRS/GMRS channel "));
        EXPECT_EQ(std::abs(finder.site().offsetOf(hit)), 12'500);
    }
}

TEST(HitFinder, MarineCoastStation) {
    HitFinder finder(kv::test::samplePlan("marine-vhf.csv"), orders(true, true, false));
    findAll(finder);
    EXPECT_EQ(countsOf(finder, 2), (Counts{121, 159, 31})) << "sums and differences are far away";
    EXPECT_EQ(countsOf(finder, 3), (Counts{3300, 4661, 33}));
}

TEST(HitFinder, AgreesWithComparingEachProductWithEachReceiver) {
    std::mt19937 random(20261122);
    std::size_t hits = 0;
    for (int round = 0; round < 200; ++round) {
        const Plan plan = kv::test::randomPlan(random);
        ProductOptions options = orders(round % 2 == 0, round % 3 != 0, round % 5 == 0, round % 10 == 0);
        if (round % 4 == 0) {
            options.lowestHz = 5050;
            options.highestHz = 5400;
        }
        HitFinder finder(plan, options);
        findAll(finder);
        std::vector<kv::host::Transmitter> transmitters;
        for (const PlanChannel& sender : finder.site().transmitters()) {
            transmitters.push_back({sender.frequencyHz, sender.bandwidthHz, sender.powerDbm});
        }
        // In doubles: all numbers are far below 2^53, so they are exact here.
        std::multiset<std::wstring> expected;
        ProductGenerator generator(transmitters, options);
        Product product;
        while (generator.next(product) == ProductGenerator::Step::kProduct) {
            for (std::uint32_t i = 0; i < finder.site().receivers().size(); ++i) {
                const PlanChannel& receiver = finder.site().receivers()[i];
                const double distance =
                    std::abs(static_cast<double>(product.frequencyHz) - static_cast<double>(receiver.frequencyHz));
                const double common =
                    std::min(static_cast<double>(product.bandwidthHz + receiver.bandwidthHz) / 2.0 - distance,
                             static_cast<double>(std::min(product.bandwidthHz, receiver.bandwidthHz)));
                if (common > 0.0) {
                    const Hit hit = hitOf(product, i);
                    expected.insert(receiver.key + L": " + finder.site().formulaOf(hit));
                    EXPECT_EQ(static_cast<double>(finder.site().overlapOf(hit)) / 2.0, common);
                    EXPECT_EQ(finder.site().frequencyOf(hit), product.frequencyHz);
                    EXPECT_EQ(finder.site().bandwidthOf(hit), product.bandwidthHz);
                    EXPECT_EQ(orderOf(hit), product.order);
                    EXPECT_NEAR(hit.hundredthsDbm / 100.0, product.powerDbm, 0.005001);
                }
            }
        }
        const std::vector<std::wstring> found = namesOf(finder);
        ASSERT_EQ(std::multiset<std::wstring>(found.begin(), found.end()), expected) << "round " << round;
        hits += found.size();
    }
    EXPECT_GT(hits, 10'000U) << "the random plans have too few hits to prove anything";
}

/// Two transmitters of 10 Hz at 1000 and 1100 Hz: 2A-B is at 900 Hz and 1200 Hz, each 30 Hz wide.
Plan twoTransmitters(const PlanChannel& receiver) {
    return {{channel(L"TX1", 1000, 10), channel(L"TX2", 1100, 10), receiver}};
}

std::vector<std::wstring> hitsOn(const PlanChannel& receiver) {
    HitFinder finder(twoTransmitters(receiver), orders(false, true, false));
    findAll(finder);
    return namesOf(finder);
}

TEST(HitFinder, BandsThatOnlyTouchAreNoHits) {
    // The product's band is 1185 to 1215 Hz.
    EXPECT_THAT(hitsOn(channel(L"RX1", 1225, 20)), testing::IsEmpty()) << "begins at 1215 Hz";
    EXPECT_THAT(hitsOn(channel(L"RX1", 1225, 21)), testing::ElementsAre(L"RX1: 2 x TX2 - TX1")) << "at 1214.5 Hz";
    EXPECT_THAT(hitsOn(channel(L"RX1", 1175, 20)), testing::IsEmpty()) << "ends at 1185 Hz";
    EXPECT_THAT(hitsOn(channel(L"RX1", 1175, 21)), testing::ElementsAre(L"RX1: 2 x TX2 - TX1"));
    EXPECT_THAT(hitsOn(channel(L"RX1", 1200, 1)), testing::ElementsAre(L"RX1: 2 x TX2 - TX1")) << "inside";
    EXPECT_THAT(hitsOn(channel(L"RX1", 1050, 271)),
                testing::UnorderedElementsAre(L"RX1: 2 x TX1 - TX2", L"RX1: 2 x TX2 - TX1"));
}

TEST(HitFinder, OffsetAndOverlapInHertz) {
    HitFinder finder(twoTransmitters(channel(L"RX1", 1225, 25)), orders(false, true, false));
    findAll(finder);
    ASSERT_EQ(finder.hits().size(), 1U);
    EXPECT_EQ(finder.site().offsetOf(finder.hits()[0]), -25);
    EXPECT_EQ(finder.site().overlapOf(finder.hits()[0]), 5) << "1212.5 to 1215 Hz, in half hertz";
}

TEST(HitFinder, UsesTheRangeOfTheOptions) {
    ProductOptions options = orders(false, true, false);
    const Plan plan = twoTransmitters(channel(L"RX1", 1050, 1000));
    options.highestHz = 1199;
    HitFinder finder(plan, options);
    findAll(finder);
    EXPECT_THAT(namesOf(finder), testing::ElementsAre(L"RX1: 2 x TX1 - TX2"));
    EXPECT_EQ(finder.productCount(), 1U);
}

TEST(HitFinder, WithoutReceiversTransmittersOrOrdersThereIsNothingToDo) {
    const PlanChannel one = channel(L"TX1", 1000, 10);
    const PlanChannel two = channel(L"TX2", 1100, 10);
    const PlanChannel receiver = channel(L"RX1", 1200, 10);
    for (const Plan& plan : {Plan{}, Plan{{one, two}}, Plan{{receiver}}, Plan{{one, receiver}}}) {
        HitFinder finder(plan, orders(true, true, true, true));
        EXPECT_EQ(finder.state(), HitFinder::State::kDone);
        EXPECT_EQ(finder.step(), HitFinder::State::kDone);
        EXPECT_EQ(finder.fractionDone(), 1.0);
        EXPECT_TRUE(finder.hits().empty());
    }
    HitFinder finder({{one, two, receiver}}, orders(false, false, false));
    EXPECT_EQ(finder.step(), HitFinder::State::kDone);
}

TEST(HitFinder, TheListEndsAtItsLimit) {
    const Plan gmrs = kv::test::samplePlan("gmrs.csv");
    HitFinder exact(gmrs, orders(false, true, false), 224);
    findAll(exact);
    EXPECT_EQ(exact.state(), HitFinder::State::kDone) << "there are 224 hits";
    HitFinder full(gmrs, orders(false, true, false), 223);
    findAll(full);
    EXPECT_EQ(full.state(), HitFinder::State::kFull);
    EXPECT_EQ(full.hits().size(), 223U);
    EXPECT_EQ(full.step(), HitFinder::State::kFull);
    EXPECT_EQ(full.hits().size(), 223U);
    full.stop();
    EXPECT_EQ(full.state(), HitFinder::State::kFull);
}

/// Transmitters on a raster, and receivers on every second of its channels.
Plan crowdedSite(int transmitters, int receivers) {
    Plan plan;
    for (int i = 0; i < transmitters; ++i) {
        plan.channels.push_back(channel(L"TX" + std::to_wstring(i), 150'000'000 + 12'500 * i, 11'250));
    }
    for (int i = 0; i < receivers; ++i) {
        plan.channels.push_back(channel(L"RX" + std::to_wstring(i), 150'000'000 + 25'000 * i, 11'250));
    }
    return plan;
}

TEST(HitFinder, StopsAndKeepsTheHitsThatWereFound) {
    HitFinder finder(crowdedSite(50, 20), orders(false, true, false));
    EXPECT_EQ(finder.state(), HitFinder::State::kFinding);
    EXPECT_EQ(finder.step(), HitFinder::State::kFinding);
    const std::size_t found = finder.hits().size();
    EXPECT_GT(found, 0U);
    finder.stop();
    EXPECT_EQ(finder.state(), HitFinder::State::kStopped);
    EXPECT_EQ(finder.step(), HitFinder::State::kStopped);
    EXPECT_EQ(finder.hits().size(), found);
}

TEST(HitFinder, WorksInSmallStepsWithProgress) {
    HitFinder finder(crowdedSite(50, 20), orders(false, true, false));
    double before = finder.fractionDone();
    EXPECT_EQ(before, 0.0);
    int steps = 0;
    while (finder.step() == HitFinder::State::kFinding) {
        EXPECT_GT(finder.fractionDone(), before);
        before = finder.fractionDone();
        ++steps;
    }
    EXPECT_EQ(finder.fractionDone(), 1.0);
    EXPECT_GT(steps, 6);
    EXPECT_EQ(finder.productCount(), 61'250U) << "50 x 50 x 49 / 2";
}

TEST(HitFinder, AStepEndsAfterManyHitsAndAfterManyCombinationsWithoutAProduct) {
    HitFinder many(crowdedSite(100, 200), orders(false, true, false));
    EXPECT_EQ(many.step(), HitFinder::State::kFinding);
    EXPECT_LT(many.hits().size(), 40'000U);
    ProductOptions nothing = orders(false, true, false);
    nothing.lowestHz = nothing.highestHz = 1;
    HitFinder none(crowdedSite(100, 1), nothing);
    EXPECT_EQ(none.step(), HitFinder::State::kFinding);
    EXPECT_LT(none.fractionDone(), 0.2);
    findAll(none);
    EXPECT_EQ(none.productCount(), 0U);
}

TEST(HitFinder, TheSpotHasTheReceiverInTheMiddleAndTheWholeProduct) {
    HitFinder finder(kv::test::samplePlan("gmrs.csv"), orders(false, true, false));
    findAll(finder);
    for (const Hit& hit : finder.hits()) {
        const kv::host::Spot spot = spotOf(finder.site(), hit);
        const double center = static_cast<double>(finder.site().receiverOf(hit).frequencyHz) / 1e6;
        EXPECT_NEAR((spot.lowest + spot.highest) / 2.0, center, 1e-9);
        EXPECT_LT(spot.lowest, spot.cursor - 0.033750 / 2.0);
        EXPECT_GT(spot.highest, spot.cursor + 0.033750 / 2.0);
        EXPECT_LT(spot.highest - spot.lowest, 0.1) << "a neighborhood, not the band";
        EXPECT_NEAR(spot.cursor, static_cast<double>(finder.site().frequencyOf(hit)) / 1e6, 1e-12);
    }
    HitFinder wide({{channel(L"TX1", 1000, 10), channel(L"TX2", 1100, 10), channel(L"RX1", 1200, 2000)}},
                   orders(false, true, false));
    findAll(wide);
    ASSERT_FALSE(wide.hits().empty());
    EXPECT_EQ(spotOf(wide.site(), wide.hits()[0]).lowest, 0.0);
    EXPECT_NEAR(spotOf(wide.site(), wide.hits()[0]).highest, 5200e-6, 1e-12);
}

}  // namespace
