// The state of a fresh control and what its small members do to it.
#include <limits>

#include "tests/unit/ScopeFixture.h"
#include "util/Product.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class ControlStateTest : public ScopeTest {};

TEST_F(ControlStateTest, EndBufferOfAFreshControlReadsAsAHundredAndIsStored) {
    EXPECT_EQ(scope.FreqEndBuffer(), 100.0);
    // Stored, not only answered: halving starts from it.
    scope.DrawByRange(400.0, 460.0);
    EXPECT_EQ(scope.FreqEndBuffer(), 12.5);
}

TEST_F(ControlStateTest, NegativeEndBufferReadsAsAHundred) {
    scope.setFreqEndBuffer(-5.0);
    EXPECT_EQ(scope.FreqEndBuffer(), 100.0);
    EXPECT_EQ(scope.FreqEndBuffer(), 100.0);
}

TEST_F(ControlStateTest, EndBufferThatIsNotANumberReadsAsAHundred) {
    scope.setFreqEndBuffer(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(scope.FreqEndBuffer(), 100.0);
}

TEST_F(ControlStateTest, EndBufferOfZeroStaysZero) {
    scope.setFreqEndBuffer(0.0);
    EXPECT_EQ(scope.FreqEndBuffer(), 0.0);
}

TEST_F(ControlStateTest, ExtremesOfAFreshControlAreUnsetButForTheOverallPower) {
    const channels::Extremes& e = scope.extremes();
    EXPECT_EQ(e.dFreqMin, 8888888888888.0);
    EXPECT_EQ(e.dFreqMax, -8888888888888.0);
    EXPECT_EQ(e.dTXFreqMin, 8888888888888.0);
    EXPECT_EQ(e.dTXFreqMax, -8888888888888.0);
    EXPECT_EQ(e.dRXFreqMin, 8888888888888.0);
    EXPECT_EQ(e.dRXFreqMax, -8888888888888.0);
    EXPECT_EQ(e.dTXPwrDBMMin, 8888888888888.0);
    EXPECT_EQ(e.dTXPwrDBMMax, -8888888888888.0);
    EXPECT_EQ(e.dPwrMin, 0.0);
    EXPECT_EQ(e.dPwrMax, 3.0);
}

TEST_F(ControlStateTest, FreshControlHasItsStartValues) {
    EXPECT_TRUE(scope.bXLog());
    EXPECT_FALSE(scope.bLoadingAll());
    EXPECT_FALSE(scope.ShowAll());
    EXPECT_EQ(scope.GridColor(), 0x8000000FU);
    EXPECT_EQ(scope.lCursorColor(), 0U);
    EXPECT_EQ(scope.CursorVal(), 0.0);
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_EQ(scope.NumRX(), 0);
    EXPECT_FALSE(scope.bSizing());
}

TEST_F(ControlStateTest, StartHidesTheDevelopmentAids) {
    EXPECT_FALSE(ui.Label1.visible());
    EXPECT_EQ(ui.Label1.caption(), L"");
    for (const formenv::Widget* aid : std::initializer_list<const formenv::Widget*>{
             &ui.cmdDebug0, &ui.cmdDebug1, &ui.Command1, &ui.Command2, &ui.Command3, &ui.Command4, &ui.Text1, &ui.Text2,
             &ui.Text3, &ui.Text4, &ui.Text5})
        EXPECT_FALSE(aid->visible()) << ::testing::PrintToString(aid->name());
}

TEST_F(ControlStateTest, StartSetsTheKnobsUp) {
    EXPECT_TRUE(ui.tdKnMovCenter.visible());
    EXPECT_TRUE(ui.tdKnMovCursor.visible());
    EXPECT_FALSE(ui.tdKnCenter.visible());
    EXPECT_FALSE(ui.tdKnCursor.visible());
    EXPECT_EQ(ui.tdKnMovCenter.sCaption(), L"Center Freq (MHz)");
    EXPECT_EQ(ui.tdKnMovCursor.sCaption(), L"Cursor Freq (MHz)");
    EXPECT_EQ(ui.tdKnMovCenter.sFormat, L"##0.00000");
    EXPECT_EQ(ui.tdKnMovCursor.sFormat, L"##0.00000");
    EXPECT_TRUE(ui.tdKnMovCenter.bShowValue);
    EXPECT_TRUE(ui.tdKnMovCursor.bShowValue);
    EXPECT_EQ(ui.tdKnGrid.sCaption(), L"Grid (Hz)");
}

TEST_F(ControlStateTest, StartDrawsNothingAndRaisesNoEvent) {
    const std::vector<std::uint32_t> spectrum = pixelsOf(ui.picSpectrum);
    const std::vector<std::uint32_t> units = pixelsOf(ui.picUnits);
    EXPECT_THAT(spectrum, ::testing::Each(0xFFFFFFU));
    EXPECT_THAT(units, ::testing::Each(0xF0F0F0U));
    EXPECT_THAT(events.heard, IsEmpty());
    EXPECT_THAT(platform.messages, IsEmpty());
}

TEST_F(ControlStateTest, MembersThatOnlyStoreDrawNothingUntilTheNextDrawing) {
    addTX(450.0, 10.0, 30.0);
    scope.DrawDisplay();
    headless::RecordingCanvas spectrum({400, 200});
    headless::RecordingCanvas units({400, 200});
    ui.picSpectrum.divert(&spectrum);
    ui.picUnits.divert(&units);
    scope.setBXLog(false);
    scope.setGridColor(0x123456);
    scope.setNGridX(4);
    scope.setLCursorColor(0xABCDEF);
    scope.setBLoadingAll(true);
    EXPECT_THAT(spectrum.lines(), IsEmpty());
    EXPECT_THAT(units.lines(), IsEmpty());
    EXPECT_THAT(events.heard, IsEmpty());
    EXPECT_FALSE(scope.bXLog());
    EXPECT_TRUE(scope.bLoadingAll());
    EXPECT_EQ(scope.nGridX(), 4);
    EXPECT_EQ(scope.lCursorColor(), 0xABCDEFU);

    scope.DrawDisplay();
    EXPECT_THAT(spectrum.log(), HasSubstr("pen 123456 w3"));
    EXPECT_THAT(units.log(), HasSubstr("text"));
}

TEST_F(ControlStateTest, ColorsOfTheSurfacesRedrawAtOnce) {
    addTX(450.0, 10.0, 30.0);
    scope.DrawDisplay();
    headless::RecordingCanvas spectrum({400, 200});
    headless::RecordingCanvas units({400, 200});
    ui.picSpectrum.divert(&spectrum);
    ui.picUnits.divert(&units);

    scope.setLColorSpecBack(0x112233);
    EXPECT_THAT(spectrum.log(), HasSubstr("clear 112233"));
    EXPECT_THAT(spectrum.log(), HasSubstr("rectangle"));

    spectrum.forget();
    scope.setLColorLblBack(0x445566);
    EXPECT_THAT(units.log(), HasSubstr("clear 445566"));
    EXPECT_THAT(spectrum.log(), HasSubstr("rectangle"));

    spectrum.forget();
    units.forget();
    scope.setLColorLblFore(0x778899);
    EXPECT_THAT(units.log(), HasSubstr("color 778899"));
    EXPECT_THAT(spectrum.log(), HasSubstr("rectangle"));
}

TEST_F(ControlStateTest, SmallestSizeStaysThatOfTheStart) {
    const std::int16_t width = scope.MinWid();
    const std::int16_t height = scope.MinHgt();
    EXPECT_EQ(width, 10800);
    EXPECT_EQ(height, 7200);
    scope.resize(20000.0, 15000.0);
    scope.resize(12000.0, 5000.0);
    EXPECT_EQ(scope.MinWid(), width);
    EXPECT_EQ(scope.MinHgt(), height);
}

TEST_F(ControlStateTest, ClickOnAnEmptyControlLoadsSampleChannelsOnce) {
    ui.userControl.onClick();
    EXPECT_GE(scope.NumTX(), 1);
    EXPECT_GE(scope.NumRX(), 1);
    EXPECT_EQ(scope.GetTXChnl(0)->sLabel(), L"sample freq");
    EXPECT_EQ(scope.GetTXChnl(2)->sLabel(), L"sample freq 3");
    EXPECT_TRUE(scope.GetTXChnl(0)->bDrawn());
    EXPECT_THAT(pixelsOf(ui.picSpectrum), Not(::testing::Each(0xFFFFFFU)));

    const std::int32_t tx = scope.NumTX();
    const std::int32_t rx = scope.NumRX();
    const std::vector<std::uint32_t> picture = pixelsOf(ui.picSpectrum);
    const int pumps = platform.pumps;
    ui.userControl.onClick();
    EXPECT_EQ(scope.NumTX(), tx);
    EXPECT_EQ(scope.NumRX(), rx);
    EXPECT_EQ(platform.pumps, pumps);
    EXPECT_EQ(pixelsOf(ui.picSpectrum), picture);
}

TEST_F(ControlStateTest, ClickWithAnyChannelDoesNothing) {
    addRX(450.0);
    scope.UserControl_Click();
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_EQ(scope.NumRX(), 1);
}

TEST_F(ControlStateTest, DrawAllOnlySaysThatItIsNoLongerSupported) {
    addTX(450.0, 10.0, 30.0);
    headless::RecordingCanvas spectrum({400, 200});
    ui.picSpectrum.divert(&spectrum);
    scope.DrawAll();
    ASSERT_EQ(platform.messages.size(), 1U);
    const auto& message = platform.messages.front();
    EXPECT_EQ(message.title, L"Incorrect Function Call");
    EXPECT_EQ(message.icon, formenv::MessageIcon::Information);
    EXPECT_EQ(message.buttons, formenv::MessageButtons::Ok);
    EXPECT_EQ(message.text, std::wstring(L"DrawAll function no longer supported.\r\n\r\nPlease email the "
                                         L"KVTechSup.TXT file to:\r\n\r\n") +
                                util::product::kSupportContact +
                                L" along with a description of what you were trying to do when this error occurred.");
    EXPECT_THAT(spectrum.lines(), IsEmpty());
}

TEST_F(ControlStateTest, MouseInformationTicksAndShowsItsBox) {
    scope.setBMouseInfo(false);
    EXPECT_EQ(ui.chkShowMouse.value(), 0);
    scope.setBMouseInfo(true);
    EXPECT_EQ(ui.chkShowMouse.value(), 1);
    scope.setBChkVisMouseInfo(false);
    EXPECT_FALSE(ui.chkShowMouse.visible());
    scope.setBChkVisMouseInfo(true);
    EXPECT_TRUE(ui.chkShowMouse.visible());
}

TEST_F(ControlStateTest, DoubleClickRecentersOnTheFrequencyUnderTheMouse) {
    addTX(450.0);
    scope.DrawDisplay();
    ui.picSpectrum.onMouseMove(0, 0, 470.0, 1.0);
    // At its own position, which need not be that of the last move.
    ui.picSpectrum.onDblClick(1, 0, 480.0, 1.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 480.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 380 580"));
}

TEST_F(ControlStateTest, RedrawingOneChannelIgnoresItsErrors) {
    addTX(450.0);
    scope.DrawDisplay();
    const SlotRef broken = makeSlot(450.0, 10.0, 30.0);
    broken->onRead = failsAt("drawRecord", 440);
    EXPECT_TRUE(scope.ReDrawChnl(asChannel(broken)));
    EXPECT_TRUE(scope.ReDrawChnl(nullptr));
    broken->onRead = nullptr;
    broken->fields().iFillStyle = 99;
    EXPECT_TRUE(scope.ReDrawChnl(asChannel(broken)));
}

TEST_F(ControlStateTest, InvalidSizesAreReportedAndTheOldSizeStays) {
    scope.resize(-1.0, 7200.0);
    EXPECT_EQ(takeReport().number, util::error_number::kInvalidPropertyValue);
    scope.resize(10800.0, std::numeric_limits<double>::infinity());
    EXPECT_EQ(takeReport().number, util::error_number::kOverflow);
    EXPECT_EQ(ui.userControl.width(), 10800.0);
    EXPECT_EQ(ui.userControl.height(), 7200.0);
}

TEST_F(ControlStateTest, ControlReleasesItsChannelsWhenItIsDestroyed) {
    const SlotRef tx = makeSlot(450.0, 0.0, 0.0, L"TX1");
    {
        Bandscope other(
            Services{platform, events, errors, files, [] { return util::Ref<channels::FreqSlotBase>(new PlainSlot); }});
        other.AddTXChnl(asChannel(tx));
        EXPECT_EQ(tx->references(), 2);
    }
    EXPECT_EQ(tx->references(), 1);
}

}  // namespace
}  // namespace kv::control
