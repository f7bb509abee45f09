// Cursor line and rubber band over the picture: what they leave behind when they go, which is nothing.
#include <random>

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

class MarksTest : public ScopeTest {
  protected:
    std::vector<std::uint32_t> pixels() { return pixelsOf(ui.picSpectrum); }
    /// The columns in which the picture is no longer what it was.
    std::vector<int> changedColumns(const std::vector<std::uint32_t>& before) {
        const std::vector<std::uint32_t> now = pixels();
        const auto width = static_cast<std::size_t>(ui.picSpectrum.pixelSize().width);
        std::vector<int> columns;
        for (std::size_t x = 0; x < width; ++x) {
            for (std::size_t at = x; at < now.size(); at += width) {
                if (now[at] != before[at]) {
                    columns.push_back(static_cast<int>(x));
                    break;
                }
            }
        }
        return columns;
    }
};

TEST_F(MarksTest, LoweredPowerScaleLeavesNoTraceOfTheCursor) {
    addTX(450.0, 20.0, 60.0);
    showTwoPixelsAUnit();
    scope.setCursorVal(402.3);
    const std::vector<std::uint32_t> before = pixels();
    scope.setDisplayMaxPwr(40.0);
    scope.setCursorVal(460.0);
    EXPECT_THAT(changedColumns(before), ::testing::ElementsAre(105, 220));
    scope.setCursorVal(402.3);
    EXPECT_EQ(changedColumns(before).size(), 1U) << "the line is shorter now";
}

TEST_F(MarksTest, CursorThatWasNotDrawnHasNoPosition) {
    ui.cmdCenterCursor.onClick();
    addTX(50.0);
    scope.DrawDisplay();
    const std::vector<std::uint32_t> before = pixels();
    scope.setCursorVal(60.0);
    EXPECT_EQ(changedColumns(before).size(), 1U);
}

TEST_F(MarksTest, AnotherBackgroundErasesTheMarks) {
    addTX(450.0, 20.0, 60.0);
    showTwoPixelsAUnit();
    scope.setCursorVal(500.0);
    scope.setLColorSpecBack(0x00404040);
    const std::vector<std::uint32_t> before = pixels();
    scope.setCursorVal(360.0);
    EXPECT_THAT(changedColumns(before), ::testing::ElementsAre(20, 300));
}

TEST_F(MarksTest, LabelsDrawnOverTheCursorLeaveNoTrace) {
    addTX(450.0, 20.0, 60.0);
    showTwoPixelsAUnit();
    scope.DrawDisplay();
    const std::vector<std::uint32_t> before = pixels();
    scope.setCursorVal(450.0);
    ui.Command4.onClick();
    scope.setCursorVal(360.0);
    EXPECT_THAT(changedColumns(before), ::testing::ElementsAre(20));
}

TEST_F(MarksTest, EventsInARefreshMayMoveTheCursor) {
    addTX(450.0, 50.0, 60.0);
    showTwoPixelsAUnit();
    bool moved = false;
    platform.onPump = [&] {
        if (!std::exchange(moved, true))
            scope.setCursorVal(450.0);
    };
    scope.Refresh();
    platform.onPump = nullptr;
    EXPECT_TRUE(moved);
    const std::vector<std::uint32_t> before = pixels();
    scope.setCursorVal(450.0);
    EXPECT_EQ(changedColumns(before).size(), 1U) << "no line was on the picture";
}

/// Two controls lead the same life, but the cursor lines of one are white, which in not-XOR mode changes nothing.
class AnySequenceOfMembers : public ::testing::TestWithParam<unsigned> {
  protected:
    struct Life {
        headless::HeadlessPlatform platform;
        RecordingEvents events;
        RecordingErrors errors;
        MemoryFiles files;
        Bandscope scope{
            Services{platform, events, errors, files, [] { return util::Ref<channels::FreqSlotBase>(new PlainSlot); }}};
        std::vector<SlotRef> slots;
    };
    static constexpr raster::OleColor kWhite = 0x00FFFFFF;

    void both(const std::function<void(Life&)>& step) {
        step(seen_);
        step(unseen_);
    }
    double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }

    void anyStep() {
        const double a = between(300.0, 600.0);
        const double b = between(300.0, 600.0);
        const double power = between(-60.0, 60.0);
        switch (random_() % 22) {
            case 0:
            case 1:
            case 2:
                return both([&](Life& life) { life.scope.setCursorVal(a); });
            case 3:
                return both([&](Life& life) { life.scope.setDisplayMaxPwr(power); });
            case 4:
                return both([&](Life& life) { life.scope.setDisplayMinPwr(power); });
            case 5:
                return both([&](Life& life) { life.scope.DrawByRange(std::min(a, b), std::max(a, b)); });
            case 6:
                return both([&](Life& life) { life.scope.DrawByRange(std::max(a, b), std::min(a, b)); });
            case 7:
                return both([&](Life& life) { life.scope.setDisplayCenterFreq(a); });
            case 8:
                return both([&](Life& life) { life.scope.DrawNewCenterFreq(); });
            case 9:
                return both([&](Life& life) { life.scope.DrawDisplay(); });
            case 10:
                return both([&](Life& life) { life.scope.JustDrawIt(); });
            case 11:
                return both([&](Life& life) { life.scope.Refresh(); });
            case 12:
                return both([&](Life& life) { life.scope.resize(9000.0 + a * 10.0, 5000.0 + b * 5.0); });
            case 13:
                return both([&](Life& life) { life.scope.setFreqEndBuffer(std::abs(power)); });
            case 14:
                return both([&](Life& life) { life.scope.setShowAll(true); });
            case 15:
                return both([&](Life& life) { life.scope.DrawInitialDisplay(); });
            case 16:
                return both([&](Life& life) { life.scope.ClearDisplay(); });
            case 17:
                return both([&](Life& life) {
                    life.scope.ReDrawChnl(asChannel(life.slots[static_cast<std::size_t>(a) % life.slots.size()]));
                });
            case 18:
                return both([&](Life& life) { life.scope.children().cmdCenterCursor.onClick(); });
            case 19:
                return both([&](Life& life) { life.scope.setLColorSpecBack(static_cast<std::uint32_t>(a) * 5000U); });
            case 20:
                seen_.scope.setLCursorColor(static_cast<std::uint32_t>(random_()) & 0xFFFFFFU);
                return;
            default:
                dragAndGiveUp(a, b);
        }
    }
    /// What a drag that ends nowhere leaves is nothing, so the other control need not know of it.
    void dragAndGiveUp(double from, double to) {
        formenv::PictureBox& picture = seen_.scope.children().picSpectrum;
        picture.onMouseDown(1, 0, from, 0.0);
        picture.onMouseMove(1, 0, from, 0.0);
        picture.onMouseMove(1, 0, to, 0.0);
        seen_.scope.setDisplayMaxPwr(between(0.0, 60.0));
        unseen_.scope.setDisplayMaxPwr(seen_.scope.DisplayMaxPwr());
        picture.onMouseMove(1, 0, (from + to) / 2.0, 0.0);
        picture.onMouseLost();
    }

    /// Nothing differs but the one line that is there.
    void compare() {
        formenv::PictureBox& seen = seen_.scope.children().picSpectrum;
        const raster::PixelBuffer a = seen.surface().pixels();
        const raster::PixelBuffer b = unseen_.scope.children().picSpectrum.surface().pixels();
        ASSERT_EQ(a.width, b.width);
        ASSERT_EQ(a.height, b.height);
        int columns = 0;
        for (int x = 0; x < a.width; ++x) {
            int rows = 0;
            for (int y = 0; y < a.height; ++y)
                rows += (a.row(y)[x] & kWhite) != (b.row(y)[x] & kWhite) ? 1 : 0;
            columns += rows > 0 ? 1 : 0;
        }
        ASSERT_LE(columns, 1);
    }

    std::mt19937 random_{GetParam()};
    Life seen_;
    Life unseen_;
};

TEST_P(AnySequenceOfMembers, LeavesNoTraceOfAMark) {
    both([](Life& life) {
        for (const double frequency : {400.0, 430.0, 450.0, 455.0, 500.0}) {
            life.slots.push_back(makeSlot(frequency, 10.0, frequency / 10.0 - 20.0,
                                          L"TX" + std::to_wstring(static_cast<int>(frequency))));
            life.scope.AddTXChnl(asChannel(life.slots.back()));
        }
    });
    unseen_.scope.setLCursorColor(kWhite);
    for (int step = 0; step < 150; ++step) {
        ASSERT_NO_FATAL_FAILURE(anyStep()) << "step " << step;
        ASSERT_NO_FATAL_FAILURE(compare()) << "step " << step;
    }
}

INSTANTIATE_TEST_SUITE_P(Marks, AnySequenceOfMembers, ::testing::Range(1U, 13U));

}  // namespace
}  // namespace kv::control
