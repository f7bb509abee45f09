// Memory that runs out anywhere in anything that the control does. Afterwards everything is as before or complete, and
// no block is lost.
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "tests/fuzz/faults/Scenarios.h"

namespace kv::fuzz {
namespace {

class AllocationFaults : public ::testing::TestWithParam<Scenario> {
  protected:
    /// One life, in which the n-th allocation fails; 0 for none. The number of allocations.
    static long live(long n, Faults::Lasting lasting) {
        World world;
        GetParam().prepare(world);
        long seen = 0;
        {
            const Faults faults(n, lasting);
            try {
                GetParam().act(world);
            } catch (const std::bad_alloc&) {
                // What a host calls may end so; the border to the host makes an error of it.
            } catch (const util::RuntimeError& error) {
                EXPECT_EQ(error.number(), util::error_number::kOutOfMemory);
            }
            seen = Faults::count();
        }
        world.expectWorks();
        return seen;
    }
};

/// For each scenario, failing once and failing to the end; spread over its allocations. KV_FAULTS=1000 tries about all.
long runs() {
    const char* const wanted = std::getenv("KV_FAULTS");
    return wanted ? std::strtol(wanted, nullptr, 10) : 12;
}

TEST_P(AllocationFaults, LeaveTheControlInOrder) {
    const long allocations = live(0, Faults::Lasting::Once);
    ASSERT_GT(allocations, 0);
    for (const Faults::Lasting lasting : {Faults::Lasting::Once, Faults::Lasting::ToTheEnd}) {
        const long count = std::min(runs(), allocations);
        for (long run = 0; run < count; ++run) {
            const long n = 1 + run * allocations / count;
            SCOPED_TRACE(testing::Message() << "allocation " << n << " of " << allocations
                                            << (lasting == Faults::Lasting::Once ? "" : " and all later ones"));
            const long before = liveBlocks();
            live(n, lasting);
            if (testing::Test::HasFailure())
                return;
            EXPECT_EQ(liveBlocks(), before) << "blocks were lost";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Of, AllocationFaults, testing::ValuesIn(scenarios().begin(), scenarios().end()),
                         [](const auto& scenario) { return std::string(scenario.param.name); });

TEST(AllocationFaultsAtTheStart, MakeNoControlInsteadOfAHalfOne) {
    for (const Faults::Lasting lasting : {Faults::Lasting::Once, Faults::Lasting::ToTheEnd}) {
        for (long n = 1;; ++n) {
            SCOPED_TRACE(n);
            std::unique_ptr<Faults> faults;
            std::unique_ptr<World> world;
            bool happened = false;
            const long before = liveBlocks();
            try {
                world = std::make_unique<World>([&] { faults = std::make_unique<Faults>(n, lasting); });
                happened = faults->happened();
            } catch (const std::exception&) {
                happened = true;
            }
            faults.reset();
            if (world)
                world->expectWorks();
            world.reset();
            EXPECT_EQ(liveBlocks(), before);
            if (!happened || testing::Test::HasFailure())
                break;
        }
    }
}

}  // namespace
}  // namespace kv::fuzz
