// Members that events call in the middle of a drawing: at the end the picture is that of one whole drawing.
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using Call = std::function<void(Bandscope&)>;

struct Named {
    const char* name;
    Call call;
};

const Named kDrawings[] = {
    {"JustDrawIt", [](Bandscope& scope) { scope.JustDrawIt(); }},
    {"DrawDisplay", [](Bandscope& scope) { scope.DrawDisplay(); }},
    {"DrawByRange", [](Bandscope& scope) { scope.DrawByRange(430.0, 470.0); }},
    {"DrawNewCenterFreq", [](Bandscope& scope) { scope.DrawNewCenterFreq(); }},
};

const Named kEvents[] = {
    {"DrawByRange", [](Bandscope& scope) { scope.DrawByRange(445.0, 449.0); }},
    {"DrawByRangeWithoutBounds", [](Bandscope& scope) { scope.DrawByRange(0.0, 0.0); }},
    {"DrawByRangeReversed", [](Bandscope& scope) { scope.DrawByRange(470.0, 460.0); }},
    {"ShowAll", [](Bandscope& scope) { scope.setShowAll(true); }},
    {"JustDrawIt", [](Bandscope& scope) { scope.JustDrawIt(); }},
    {"DrawDisplay", [](Bandscope& scope) { scope.DrawDisplay(); }},
    {"NewCenter",
     [](Bandscope& scope) {
         scope.setDisplayCenterFreq(441.0);
         scope.DrawNewCenterFreq();
     }},
    {"GridKnob", [](Bandscope& scope) { scope.children().tdKnGrid.onValueChanged(1.0); }},
    {"ViewAll",
     [](Bandscope& scope) {
         scope.children().chkViewAllxx.setValue(1);
         scope.children().chkViewAllxx.onClick();
     }},
};

class ReentrantDrawingTest : public ScopeTest, public ::testing::WithParamInterface<std::tuple<Named, Named>> {
  protected:
    void SetUp() override {
        for (const double frequency : {435.0, 444.0, 446.0, 447.5, 455.0, 466.0})
            addTX(frequency, 3.0, frequency - 420.0);
        addRX(452.0, 5.0, 20.0);
        scope.setFreqEndBuffer(2.0);
        scope.DrawByRange(440.0, 460.0);
        // Both kinds of drawing end differently where the cursor's line is, so there is none.
        scope.setLCursorColor(0x00FFFFFF);
    }
    /// The picture when `event` comes at the n-th yield of the drawing; false when there are not so many yields.
    bool drawWithEvent(int n) {
        int yields = 0;
        bool happened = false;
        platform.onPump = [&] {
            if (++yields != n)
                return;
            happened = true;
            std::get<1>(GetParam()).call(scope);
        };
        std::get<0>(GetParam()).call(scope);
        platform.onPump = nullptr;
        return happened;
    }
};

TEST_P(ReentrantDrawingTest, EndsInOneWholePicture) {
    int n = 1;
    for (; drawWithEvent(n); ++n) {
        const std::vector<std::uint32_t> spectrum = pixelsOf(ui.picSpectrum);
        const std::vector<std::uint32_t> labels = pixelsOf(ui.picUnits);
        scope.JustDrawIt();
        EXPECT_EQ(spectrum, pixelsOf(ui.picSpectrum)) << "event at yield " << n;
        EXPECT_EQ(labels, pixelsOf(ui.picUnits)) << "event at yield " << n;
        scope.DrawByRange(440.0, 460.0);
    }
    EXPECT_GT(n, 1) << "no event ran";
}

std::string nameOf(const ::testing::TestParamInfo<std::tuple<Named, Named>>& info) {
    return std::string(std::get<1>(info.param).name) + "In" + std::get<0>(info.param).name;
}

INSTANTIATE_TEST_SUITE_P(Events, ReentrantDrawingTest,
                         ::testing::Combine(::testing::ValuesIn(kDrawings), ::testing::ValuesIn(kEvents)), nameOf);

class DrawingUnderDrawingTest : public ScopeTest {};

TEST_F(DrawingUnderDrawingTest, DrawByRangeWithoutChannelsStartsNoDrawingInsideADrawing) {
    addTX(450.0);
    scope.DrawDisplay();
    int depth = 0;
    int deepest = 0;
    bool once = false;
    platform.onPump = [&] {
        deepest = std::max(deepest, ++depth);
        if (!std::exchange(once, true)) {
            scope.ClearAllChnls();
            scope.DrawByRange(0.0, 0.0);
        }
        --depth;
    };
    scope.JustDrawIt();
    platform.onPump = nullptr;
    EXPECT_TRUE(once);
    EXPECT_EQ(deepest, 1);
}

TEST_F(DrawingUnderDrawingTest, ARangeThatEveryEventChangesIsDrawnAtMostEightTimes) {
    addTX(450.0);
    scope.DrawDisplay();
    int yields = 0;
    platform.onPump = [&] {
        ++yields;
        scope.DrawByRange(440.0, 450.0 + yields % 2);
    };
    scope.JustDrawIt();
    platform.onPump = nullptr;
    EXPECT_GT(yields, 1);
    EXPECT_LT(yields, 100);
}

}  // namespace
}  // namespace kv::control
