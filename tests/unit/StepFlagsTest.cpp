// The procedures that trap their errors: which one the record names, and which of its steps.

#include "tests/unit/Keys.h"
#include "tests/unit/Numbers.h"
#include "tests/unit/RangeFixture.h"
#include "tests/unit/WidgetFixture.h"

namespace kv::control {
namespace {

using util::error_number::kAutomation;
using util::error_number::kOutOfMemory;
using util::error_number::kOverflow;
using util::error_number::kPathFileAccess;

using formenv::mouse_button::kLeft;

/// A surface whose n-th stroke fails, and none before or after.
class CountdownCanvas final : public raster::Canvas {
  public:
    raster::PixelSize size() const override { return {400, 200}; }
    void clear(raster::Rgb) override { stroke(); }
    void line(raster::PixelPoint, raster::PixelPoint, const raster::Pen&, raster::DrawMode) override { stroke(); }
    void rectangle(raster::PixelRect, const raster::Pen&, const raster::Brush&, raster::DrawMode) override { stroke(); }
    raster::PixelSize textSize(std::wstring_view, const raster::Font&) override { return {40, 13}; }
    void text(raster::PixelPoint, std::wstring_view, const raster::Font&, raster::Rgb) override { stroke(); }

    int left = 0;

  private:
    void stroke() {
        if (--left == 0)
            throw util::RuntimeError(kOutOfMemory);
    }
};

/// A window that cannot show what it is told.
class FailingPeer final : public formenv::Peer {
  public:
    void changed(formenv::Change) override { throw util::RuntimeError(kOutOfMemory); }
};

/// 350 to 550 MHz, 0 to 100 dBm and two divisions, without a channel that would be drawn.
class StepFlagsTest : public RangeTest {
  protected:
    void SetUp() override {
        showTwoPixelsAUnit();
        scope.setNGridX(2);
        ui.picSpectrum.divert(&canvas);
    }
    void TearDown() override {
        ui.picSpectrum.divert(nullptr);
        RangeTest::TearDown();
    }
    void expectReport(const std::wstring& procedure, int flag, int number) {
        const RecordingErrors::Report report = takeReport();
        EXPECT_EQ(report.procedure, procedure);
        EXPECT_EQ(report.flag, flag) << ::testing::PrintToString(procedure);
        EXPECT_EQ(report.number, number);
    }
    /// The step that the record names when the n-th stroke fails, for each n.
    void expectSteps(const std::wstring& procedure, const std::vector<int>& flags, const std::function<void()>& draw) {
        for (std::size_t i = 0; i < flags.size(); ++i) {
            canvas.left = static_cast<int>(i) + 1;
            draw();
            SCOPED_TRACE(i);
            expectReport(procedure, flags[i], kOutOfMemory);
        }
        canvas.left = static_cast<int>(flags.size()) + 1;
        draw();
        canvas.left = 0;
    }
    void press(double x) { ui.picSpectrum.onMouseDown(kLeft, 0, x, 50.0); }
    void move(double x) { ui.picSpectrum.onMouseMove(kLeft, 0, x, 50.0); }
    void release(double x) { ui.picSpectrum.onMouseUp(kLeft, 0, x, 50.0); }

    CountdownCanvas canvas;
};

TEST_F(StepFlagsTest, OfDrawDisplay) {
    // Clearing, three grid lines, two ticks.
    expectSteps(L"DrawDisplay", {1100, 1400, 1400, 1400, 1500, 1500}, [&] { scope.DrawDisplay(); });
}

TEST_F(StepFlagsTest, OfJustDrawIt) {
    ui.tdKnMovCursor.setDVal(400.0);
    expectSteps(L"JustDrawIt", {200, 500, 500, 500, 600, 600, 700}, [&] { scope.JustDrawIt(); });
}

TEST_F(StepFlagsTest, OfRefresh) {
    expectSteps(L"Refresh", {100, 200, 200, 200, 300, 300}, [&] { scope.Refresh(); });
    const SlotRef slot = addTX(900.0, 1.0, 10.0);
    slot->onRead = failsAt("dFreqHi", kAutomation);
    scope.Refresh();
    expectReport(L"Refresh", 400, kAutomation);
}

TEST_F(StepFlagsTest, OfAScaleThatOverflows) {
    scope.setDisplayMaxPwr(1.5e308);
    EXPECT_THROW(scope.setDisplayMinPwr(-1.5e308), util::RuntimeError);
    scope.JustDrawIt();
    expectReport(L"JustDrawIt", 100, kOverflow);
    EXPECT_FALSE(scope.DrawDisplay());
    expectReport(L"DrawDisplay", 100, kOverflow);
}

TEST_F(StepFlagsTest, OfShowAll) {
    scope.DrawInitialDisplay();
    scope.setFreqEndBuffer(kInfinity);
    addTX(400.0);
    addTX(460.0);
    scope.setShowAll(true);
    expectReport(L"ShowAll", 100, kOverflow);
}

TEST_F(StepFlagsTest, OfTheMouseOnThePicture) {
    press(400.0);
    canvas.left = 1;
    move(400.0);
    expectReport(L"picSpectrum_MouseMove", 200, kOutOfMemory);
    move(410.0);
    canvas.left = 1;
    press(420.0);
    expectReport(L"picSpectrum_MouseDown", 100, kOutOfMemory);
    move(420.0);
    canvas.left = 1;
    ui.picSpectrum.onMouseLost();
    expectReport(L"picSpectrum_MouseLost", 100, kOutOfMemory);
    release(420.0);
    press(400.0);
    move(400.0);
    canvas.left = 1;
    release(430.0);
    expectReport(L"picSpectrum_MouseUp", 100, kOutOfMemory);
}

TEST_F(StepFlagsTest, OfTheDrawButtons) {
    addTX(900.0);
    addRX(900.0);
    scope.setCursorVal(450.0);
    for (const bool tx : {true, false}) {
        // The cursor line is removed first, and drawn again at the end.
        canvas.left = 1;
        (tx ? ui.cmdDrawTX : ui.cmdDrawRX).onClick();
        expectReport(tx ? L"cmdDrawTX_Click" : L"cmdDrawRX_Click", 200, kOutOfMemory);
        canvas.left = 0;
        scope.setCursorVal(450.0);
    }
}

TEST_F(StepFlagsTest, OfAKeyOnThePicture) {
    const SlotRef slot = addTX(450.0, 1.0, 10.0);
    // The cursor to the next channel, whose frequency cannot be read.
    slot->onRead = failsAt("dFreq", kAutomation);
    ui.picSpectrum.onKeyDown(key::kRight, key::kCtrl);
    expectReport(L"picSpectrum_KeyDown", 100, kAutomation);
}

TEST_F(StepFlagsTest, OfKnobsWhoseWindowsFail) {
    addTX(450.0, 1.0, 10.0);
    FailingPeer window;
    ui.tdKnGrid.setPeer(&window);
    scope.setNGridX(4);
    scope.RescaleAll();
    expectReport(L"RescaleAll", 300, kOutOfMemory);
    ui.tdKnMovCursor.setPeer(&window);
    scope.setDisplayCenterFreq(440.0);
    EXPECT_FALSE(scope.ReScaleChannels());
    expectReport(L"ReScaleChannels", 200, kOutOfMemory);
    ui.tdKnMovCursor.setPeer(nullptr);
    ui.cboGridRange.onClick();
    expectReport(L"cboGridRange_Click", 100, kOutOfMemory);
    ui.tdKnGrid.setPeer(nullptr);
    ui.tdKnMovCenter.setPeer(&window);
    scope.DrawByRange(400.0, 460.0);
    expectReport(L"DrawByRange", 400, kOutOfMemory);
    ui.tdKnMovCenter.setPeer(nullptr);
    ui.tdKnGrid.setDVal(5.0);
    ui.tdKnCursor.setPeer(&window);
    ui.tdKnGrid.onTurnEnd();
    expectReport(L"tdKnGrid_TurnEnd", 300, kOutOfMemory);
    ui.tdKnCursor.setPeer(nullptr);
}

TEST_F(StepFlagsTest, OfRemoval) {
    const SlotRef slot = addTX(900.0, 1.0, 10.0, L"TX1");
    addTX(910.0, 1.0, 10.0, L"TX2");
    slot->onRead = failsAt("dFreqHi", kAutomation);
    scope.RemoveChnlByKey(L"TX2");
    expectReport(L"RemoveChnlByKey", 500, kAutomation);
    slot->onRead = nullptr;
    EXPECT_EQ(ui.lblNumTX.caption(), L"2 tx Channels");
    FailingPeer window;
    ui.lblNumTX.setPeer(&window);
    scope.RemoveChnlByKey(L"TX1");
    expectReport(L"RemoveChnlByKey", 600, kOutOfMemory);
    ui.lblNumTX.setPeer(nullptr);
}

/// The folder of the settings is out of reach.
class NoPlaces final : public MemoryFiles {
  public:
    std::wstring placementFile() override { throw util::RuntimeError(kPathFileAccess); }
};

TEST(StepFlags, OfTheReportWindow) {
    for (const bool byHost : {true, false}) {
        headless::HeadlessPlatform platform;
        RecordingEvents events;
        RecordingErrors errors;
        NoPlaces files;
        Bandscope scope(
            Services{platform, events, errors, files, [] { return util::Ref<channels::FreqSlotBase>(new PlainSlot); }});
        if (byHost) {
            scope.setBMouseInfo(true);
        } else {
            scope.children().chkShowMouse.setValue(1);
            scope.children().chkShowMouse.onClick();
        }
        ASSERT_EQ(errors.reports.size(), 1U);
        EXPECT_EQ(errors.reports[0].procedure, byHost ? L"bMouseInfo" : L"chkShowMouse_Click");
        EXPECT_EQ(errors.reports[0].flag, 100);
    }
}

}  // namespace
}  // namespace kv::control
