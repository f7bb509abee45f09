// Each procedure that traps its errors, made to fail: what the tech-support log says of it.

#include "tests/unit/FakeSystem.h"
#include "tests/unit/Numbers.h"
#include "tests/unit/ScopeFixture.h"
#include "util/ErrorHandler.h"
#include "util/Product.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using util::error_number::kInvalidProcedureCall;
using util::error_number::kOutOfMemory;
using util::error_number::kOverflow;

constexpr wchar_t kLog[] = L"C:\\KV\\KVTECSUP.TXT";

/// A surface that has run out of memory.
class FailingCanvas final : public raster::Canvas {
  public:
    raster::PixelSize size() const override { return {600, 300}; }
    void clear(raster::Rgb) override { fail(); }
    void line(raster::PixelPoint, raster::PixelPoint, const raster::Pen&, raster::DrawMode) override { fail(); }
    void rectangle(raster::PixelRect, const raster::Pen&, const raster::Brush&, raster::DrawMode) override { fail(); }
    raster::PixelSize textSize(std::wstring_view, const raster::Font&) override { return {40, 13}; }
    void text(raster::PixelPoint, std::wstring_view, const raster::Font&, raster::Rgb) override { fail(); }

  private:
    static void fail() { throw util::RuntimeError(kOutOfMemory); }
};

/// A host whose handlers fail.
class FailingEvents final : public HostEvents {
  public:
    void ChgGridRange() override {}
    void ChgHeight(std::int16_t) override { fail(); }
    void ChgFreqRange(double, double) override { fail(); }

  private:
    static void fail() { throw util::RuntimeError(util::error_number::kAutomation); }
};

class TrappedErrors : public ::testing::Test {
  protected:
    TrappedErrors() {
        system.registry.install(util::product::kFamilyPrograms[0], L"C:\\KV\\KVZEP32.EXE");
        user.here = false;
    }

    void show(std::initializer_list<double> frequencies = {450.0}) {
        for (const double frequency : frequencies)
            slots.push_back(makeSlot(frequency, 1.0, 2.0, L"TX" + std::to_wstring(slots.size())));
        for (const SlotRef& slot : slots)
            scope.AddTXChnl(asChannel(slot));
        scope.DrawDisplay();
        expectNothing();
    }
    std::vector<std::wstring> record() {
        std::vector<std::wstring> lines = system.lines(kLog);
        std::erase(lines, L" ");
        std::erase_if(lines, util::isCaptureLine);
        system.files.texts.clear();
        return lines;
    }
    void expectNothing() { EXPECT_THAT(record(), ::testing::IsEmpty()); }
    static std::wstring errorLine(int number) {
        return L"Error " + std::to_wstring(number) + L"  " + util::errorText(number) + L"  (Host.exe 1.0.2)";
    }
    void expectRecord(int number, const std::wstring& procedure, int flag) {
        EXPECT_THAT(record(), ElementsAre(L"*************************", errorLine(number), L"Procedures:",
                                          L"Procedure: " + procedure + L"; Flag " + std::to_wstring(flag)));
    }
    void expectRecord(int number, const std::wstring& procedure, int flag, const std::wstring& detail) {
        EXPECT_THAT(record(),
                    ElementsAre(L"*************************", errorLine(number), L"Procedures:",
                                L"Procedure: " + procedure + L"; Flag " + std::to_wstring(flag), L"DETAIL: " + detail));
    }

    util::FakeSystem system;
    util::FakeUser user;
    util::Configuration configuration{system.system};
    util::TechSupportLog log{configuration, system.system};
    util::ErrorHandler handler{log, user};
    headless::HeadlessPlatform platform;
    FailingEvents events;
    MemoryFiles files;
    FailingCanvas failing;
    Bandscope scope{Services{platform, events, handler, files,
                             []() -> util::Ref<channels::FreqSlotBase> { throw util::RuntimeError(kOutOfMemory); }}};
    Children& ui = scope.children();
    std::vector<SlotRef> slots;
};

TEST_F(TrappedErrors, OfTheDrawingProcedures) {
    show();
    ui.picSpectrum.divert(&failing);
    scope.JustDrawIt();
    expectRecord(kOutOfMemory, L"JustDrawIt", 200);
    scope.Refresh();
    expectRecord(kOutOfMemory, L"Refresh", 100, L"Error Refreshing Bandscope Display");
    EXPECT_FALSE(scope.DrawDisplay());
    expectRecord(kOutOfMemory, L"DrawDisplay", 1100, L"kvBandscope.DrawDisplay Flag 1100");
    ui.cmdDrawTX.onClick();
    expectRecord(kOutOfMemory, L"DrawDisplayTX", 200, L"kvBandscope.DrawDisplayTX Flag 200 kChnl 1 of 1");
    scope.AddRXChnl(asChannel(makeSlot(451.0, 1.0, 2.0, L"RX1")));
    ui.cmdDrawRX.onClick();
    expectRecord(kOutOfMemory, L"DrawDisplayRX", 200, L"kvBandscope.DrawDisplayRX Flag 200 kChnl 1 of 1");
}

TEST_F(TrappedErrors, OfTheScalingProcedures) {
    show();
    slots[0]->onRead = failsAt("dFreqHi", kInvalidProcedureCall);
    EXPECT_FALSE(scope.ReScaleChannels());
    expectRecord(kInvalidProcedureCall, L"ReScaleChannels", 100, L"Error Re-scaling Bandscope Channels");
    slots[0]->onRead = nullptr;
    scope.setFreqEndBuffer(kInfinity);
    scope.DrawByRange(400.0, 460.0);
    expectRecord(kOverflow, L"DrawByRange", 300);
    const SlotRef outside = makeSlot(900.0, 1.0, 2.0, L"TXoutside");
    scope.AddTXChnl(asChannel(outside));
    scope.setShowAll(true);
    expectRecord(kOverflow, L"ShowAll", 200);
    scope.setDisplayCenterFreq(1e300);
    scope.DrawNewCenterFreq();
    expectRecord(kOverflow, L"DrawNewCenterFreq", 100);
}

TEST_F(TrappedErrors, OfTheKnobsAndTheGridRange) {
    show();
    ui.tdKnCenter.onValueChanged(kInfinity);
    expectRecord(kOverflow, L"SetNewCenter", 100);
    ui.tdKnGrid.onValueChanged(kInfinity);
    expectRecord(kOverflow, L"tdKnGrid_ValueChanged", 200);
    ui.tdKnGrid.setDVal(kInfinity);
    ui.cboGridRange.onClick();
    expectRecord(kOverflow, L"cboGridRange_Click", 200);
    ui.tdKnCenter.onTurnEnd();
    expectRecord(util::error_number::kAutomation, L"ChgFreqRange", 100);
    ui.picSpectrum.divert(&failing);
    scope.setCursorVal(460.0);
    expectRecord(kOutOfMemory, L"CursorVal", 100);
    ui.cmdCenterCursor.onClick();
    expectRecord(kOutOfMemory, L"cmdCenterCursor_Click", 100);
}

TEST_F(TrappedErrors, OfTheEndOfAGridTurn) {
    show();
    ui.tdKnGrid.setDVal(kInfinity);
    ui.tdKnGrid.onTurnEnd();
    const std::wstring stars = L"*************************";
    EXPECT_THAT(
        record(),
        ElementsAre(stars, errorLine(kOverflow), L"Procedures:", L"Procedure: tdKnGrid_TurnEnd; Flag 200", stars,
                    errorLine(util::error_number::kAutomation), L"Procedures:", L"Procedure: ChgFreqRange; Flag 100"));
}

TEST_F(TrappedErrors, OfTheMouseAndThePanel) {
    ui.userControl.onClick();
    expectRecord(kOutOfMemory, L"UserControl_Click", 100);
    show();
    ui.picSpectrum.onDblClick(1, 0, kInfinity, 1.0);
    expectRecord(kOverflow, L"picSpectrum_DblClick", 100);
    ui.picSpectrum.onDblClick(1, 0, 451.0, 1.0);
    expectRecord(util::error_number::kAutomation, L"picSpectrum_DblClick", 300);
    ui.fraControl.onMouseDown(formenv::mouse_button::kRight, 0, 10.0, 10.0);
    expectRecord(util::error_number::kAutomation, L"ToggleControlsSection", 500);
    ui.fraControl.onMouseDown(formenv::mouse_button::kRight, 0, 10.0, 10.0);
    expectRecord(util::error_number::kAutomation, L"ToggleControlsSection", 500);
    scope.resize(12000.0, 1000.0);
    expectRecord(util::error_number::kInvalidPropertyValue, L"UserControl_Resize", 300);
}

/// Every window, picture and message box fails, and so does the making of a record.
TEST_F(TrappedErrors, OfEveryHandler) {
    class FailingPeer final : public formenv::Peer {
      public:
        void changed(formenv::Change) override { throw util::RuntimeError(kOutOfMemory); }
    } peer;
    show();
    platform.onMessage = [] { throw util::RuntimeError(kOutOfMemory); };
    ui.picSpectrum.divert(&failing);
    ui.picUnits.divert(&failing);
    for (formenv::Widget* widget : std::initializer_list<formenv::Widget*>{
             &ui.fraControl, &ui.tdKnMovCenter, &ui.tdKnMovCursor, &ui.tdKnCenter, &ui.tdKnCursor, &ui.tdKnGrid,
             &ui.lblFMHz, &ui.lblFromCenter, &ui.cboGridRange})
        widget->setPeer(&peer);
    struct {
        const wchar_t* procedure;  // that reports, which may be one that the handler calls
        std::function<void()> handler;
    } const handlers[] = {
        {L"cmdClear_Click", ui.cmdClear.onClick},
        {L"DrawDisplayTX", ui.cmdDrawTX.onClick},
        {L"cmdDrawRX_Click", ui.cmdDrawRX.onClick},
        {L"cmdCenterCursor_Click", ui.cmdCenterCursor.onClick},
        {L"DrawDisplay", ui.chkOrder.onClick},
        {L"DrawDisplay", ui.Command2.onClick},
        {L"Command3_Click", ui.Command3.onClick},
        {L"Command4_Click", ui.Command4.onClick},
        {L"cboGridRange_Click", ui.cboGridRange.onClick},
        {L"tdKnGrid_ValueChanged", [&] { ui.tdKnGrid.onValueChanged(kInfinity); }},
        {L"tdKnGrid_TurnEnd", ui.tdKnGrid.onTurnEnd},
        {L"JustDrawIt", ui.tdKnGrid.onGivenUp},
        {L"SetNewCenter", [&] { ui.tdKnCenter.onValueChanged(455.0); }},
        {L"tdKnCenter_TurnEnd", ui.tdKnCenter.onTurnEnd},
        {L"SetNewCenter", [&] { ui.tdKnMovCenter.onValueChanged(1.0); }},
        {L"SetNewCenter", ui.tdKnMovCenter.onTurnEnd},
        {L"tdKnMovCursor_ValueChanged", [&] { ui.tdKnMovCursor.onValueChanged(1.0); }},
        {L"picSpectrum_MouseMove", [&] { ui.picSpectrum.onMouseMove(0, 0, 451.0, 1.0); }},
        {L"picSpectrum_DblClick", [&] { ui.picSpectrum.onDblClick(1, 0, 451.0, 1.0); }},
        {L"picSpectrum_KeyDown", [&] { ui.picSpectrum.onKeyDown(38, 0); }},
        {L"picUnits_MouseMove", [&] { ui.picUnits.onMouseMove(0, 0, 2000.0, 1.0); }},
        {L"fraControl_MouseMove", [&] { ui.fraControl.onMouseMove(0, 0, 10.0, 10.0); }},
        {L"ToggleControlsSection", [&] { ui.fraControl.onMouseDown(formenv::mouse_button::kRight, 0, 10.0, 10.0); }},
    };
    for (const auto& [procedure, run] : handlers) {
        EXPECT_NO_THROW(run()) << ::testing::PrintToString(procedure);
        const std::vector<std::wstring> lines = record();
        EXPECT_THAT(lines, ::testing::Contains(::testing::HasSubstr(L"Procedure: " + std::wstring(procedure) + L";")));
    }
    for (formenv::Widget* widget : ui.fraControl.children())
        widget->setPeer(nullptr);
    ui.fraControl.setPeer(nullptr);
}

TEST_F(TrappedErrors, OfRemovalAndExport) {
    show({450.0, 451.0});
    slots[1]->fields().sKey = L"TX-never-known";
    scope.RemoveChnlByKey(L"TX0");
    expectRecord(kInvalidProcedureCall, L"RemoveChnlByKey", 300);
    files.readOnly = true;
    double height = 1.0;
    double width = 1.0;
    std::wstring name = L"C:\\nowhere\\x.bmp";
    EXPECT_EQ(scope.DisplayToBMP(height, width, name), L"");
    expectRecord(util::error_number::kPathFileAccess, L"ExportToBMP2", 600, L"SavePicture");
    files.readOnly = false;
    files.busyClipboard = true;
    scope.CopyDisplayToClipboard();
    expectRecord(util::error_number::kCannotOpenClipboard, L"CopyDisplayToClipboard", 300);
}

}  // namespace
}  // namespace kv::control
