// Calls of the platform that fail anywhere in anything that the control does: surfaces, texts, forms, events, bitmaps.
#include <algorithm>

#include "tests/fuzz/faults/Scenarios.h"

namespace kv::fuzz {
namespace {

class PlatformFaults : public ::testing::TestWithParam<Scenario> {
  protected:
    /// One life, in which the n-th call fails; 0 for none. The number of calls.
    static int live(int n) {
        World world;
        GetParam().prepare(world);
        int calls = 0;
        world.platform.before = [&](std::string_view) {
            if (++calls == n)
                throw util::RuntimeError(util::error_number::kOutOfMemory);
        };
        // What could not be freed would be lost whatever the control does.
        world.platform.bitmaps.fails = [&](std::string_view call) {
            return !call.starts_with("Delete") && ++calls == n;
        };
        try {
            GetParam().act(world);
        } catch (const util::RuntimeError&) {
            // The border to the host makes an error of it.
        }
        world.platform.before = nullptr;
        world.platform.bitmaps.fails = nullptr;
        world.errors.others = 0;
        world.expectWorks();
        EXPECT_EQ(world.platform.bitmaps.bitmapCount(), 0U);
        return calls;
    }
};

TEST_P(PlatformFaults, LeaveTheControlInOrder) {
    constexpr int kRuns = 24;
    const int calls = live(0);
    const int count = std::min(kRuns, calls);
    for (int run = 0; run < count && !HasFailure(); ++run) {
        const int n = 1 + run * calls / count;
        SCOPED_TRACE(testing::Message() << "call " << n << " of " << calls);
        live(n);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, PlatformFaults, testing::ValuesIn(scenarios().begin(), scenarios().end()),
                         [](const auto& scenario) { return std::string(scenario.param.name); });

TEST(PlatformFaultsOfASurface, TheEarlierPictureIsKeptUntilThereIsOne) {
    World world;
    world.fill();
    formenv::PictureBox& picture = world.ui().picSpectrum;
    picture.cls();
    picture.filledBox(picture.userX(10), picture.userY(10), picture.userX(20), picture.userY(20), 0x123456);
    const std::uint32_t drawn = pixelsOf(picture)[15U * static_cast<std::size_t>(picture.pixelSize().width) + 15U];
    const int before = picture.pixelSize().width;
    world.platform.before = [](std::string_view call) {
        if (call == "createSurface")
            throw std::bad_alloc();
    };
    picture.setWidth(picture.width() + 150.0);
    EXPECT_EQ(picture.pixelSize().width, before + 10) << "the box has moved all the same";
    EXPECT_THROW(picture.cls(), std::bad_alloc);
    world.platform.before = nullptr;
    const raster::PixelBuffer kept = picture.surface().pixels();
    EXPECT_EQ(kept.width, before + 10);
    EXPECT_EQ(kept.row(15)[15], drawn);
}

}  // namespace
}  // namespace kv::fuzz
