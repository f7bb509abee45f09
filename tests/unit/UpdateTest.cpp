// Drawings that wait for the end of an update.
#include "control/View.h"
#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

class UpdateTest : public RangeTest {
  protected:
    void SetUp() override {
        addTX(450.0, 10.0, 60.0);
        showTwoPixelsAUnit();
        scope.DrawDisplay();
        before = picture();
    }
    std::vector<std::uint32_t> picture() { return pixelsOf(ui.picSpectrum); }
    /// The picture that `draw` gives.
    template <class Draw>
    std::vector<std::uint32_t> pictureOf(Draw&& draw) {
        draw();
        return picture();
    }

    View view{scope};
    std::vector<std::uint32_t> before;
};

TEST_F(UpdateTest, ManyDrawingsBecomeTheLastOne) {
    view.beginUpdate();
    scope.setCursorVal(0.0);
    const std::uint64_t strokes = ui.picSpectrum.changes();
    for (int i = 0; i < 10; ++i) {
        addTX(400.0 + i, 0.2, 50.0);
        EXPECT_TRUE(scope.DrawDisplay());
        scope.JustDrawIt();
        scope.Refresh();
    }
    EXPECT_EQ(ui.picSpectrum.changes(), strokes);
    EXPECT_EQ(picture(), before);
    scope.DrawDisplay();
    view.endUpdate();
    const std::vector<std::uint32_t> after = picture();
    EXPECT_NE(after, before);
    EXPECT_EQ(after, pictureOf([&] { scope.DrawDisplay(); }));
}

TEST_F(UpdateTest, TheKindOfTheLastDrawingCounts) {
    addTX(452.0, 8.0, 40.0);
    view.beginUpdate();
    scope.DrawDisplay();
    scope.Refresh();
    view.endUpdate();
    const std::vector<std::uint32_t> refreshed = picture();
    EXPECT_NE(refreshed, pictureOf([&] { scope.DrawDisplay(); })) << "the grid is over the channels here";
    EXPECT_EQ(refreshed, pictureOf([&] { scope.Refresh(); }));
}

TEST_F(UpdateTest, TheOutermostEndDraws) {
    view.beginUpdate();
    view.beginUpdate();
    addTX(400.0, 1.0, 50.0);
    scope.DrawDisplay();
    view.endUpdate();
    EXPECT_EQ(picture(), before);
    view.endUpdate();
    EXPECT_NE(picture(), before);
}

TEST_F(UpdateTest, WithoutAnyDrawingNothingIsDrawn) {
    view.beginUpdate();
    addTX(400.0, 1.0, 50.0);
    const std::uint64_t strokes = ui.picSpectrum.changes();
    view.endUpdate();
    EXPECT_EQ(ui.picSpectrum.changes(), strokes);
    // What an earlier update asked for is not drawn again.
    view.beginUpdate();
    scope.DrawDisplay();
    view.endUpdate();
    const std::uint64_t drawn = ui.picSpectrum.changes();
    view.beginUpdate();
    view.endUpdate();
    EXPECT_EQ(ui.picSpectrum.changes(), drawn);
}

TEST_F(UpdateTest, TheRangeOfADrawingThatWaitsIsAppliedAtOnce) {
    view.beginUpdate();
    scope.DrawByRange(400.0, 400.0);
    EXPECT_EQ(scope.DisplayMinFreq(), 300.0);
    EXPECT_EQ(picture(), before);
    view.endUpdate();
    EXPECT_NE(picture(), before);
}

TEST_F(UpdateTest, SummariesAreUpToDateAfterARefreshThatWaits) {
    view.beginUpdate();
    addRX(500.0, 10.0, 60.0, L"RX1");
    scope.Refresh();
    EXPECT_EQ(ui.lblNumRX.caption(), L"1 RX Channels");
    view.endUpdate();
}

TEST_F(UpdateTest, SingleChannelsAndClearingDoNotWait) {
    view.beginUpdate();
    scope.ClearDisplay();
    EXPECT_NE(picture(), before);
    view.endUpdate();
}

TEST_F(UpdateTest, AnEndWithoutABeginningIsAnError) {
    try {
        view.endUpdate();
        FAIL() << "no error";
    } catch (const util::RuntimeError& error) {
        EXPECT_EQ(error.number(), util::error_number::kInvalidProcedureCall);
        EXPECT_NE(std::wstring(error.text()).find(L"BeginUpdate"), std::wstring::npos);
    }
    addTX(400.0, 1.0, 50.0);
    scope.DrawDisplay();
    EXPECT_NE(picture(), before);
}

TEST_F(UpdateTest, AWaitingDrawingTakesNoTime) {
    scope.DrawDisplay();
    const double time = view.renderTimeMs();
    ASSERT_GT(time, 0.0);
    view.beginUpdate();
    scope.DrawDisplay();
    scope.JustDrawIt();
    EXPECT_EQ(view.renderTimeMs(), time);
    view.endUpdate();
}

}  // namespace
}  // namespace kv::control
