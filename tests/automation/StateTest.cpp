// The start values of the control, the values that its members keep, and what changes the picture at once.
#include <gmock/gmock.h>

#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

class State : public BothWays {};
INSTANTIATE_TEST_SUITE_P(Ways, State, testing::Values(Way::early, Way::late), nameOf);

TEST_P(State, AFreshControlHasItsStartValues) {
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_EQ(scope.NumRX(), 0);
    EXPECT_TRUE(scope.bXLog());
    EXPECT_FALSE(scope.bLoadingAll());
    EXPECT_FALSE(scope.ShowAll());
    EXPECT_EQ(scope.lCursorColor(), 0U);
    EXPECT_EQ(scope.GridColor(), 0x8000000FU);
    EXPECT_EQ(scope.nGridX(), 20);
    EXPECT_EQ(scope.FreqEndBuffer(), 100.0);
    for (const double unset : {scope.dFreqMin(), scope.dTXFreqMin(), scope.dRXFreqMin(), scope.dTXPwrDBMMin(),
                               -scope.dFreqMax(), -scope.dTXFreqMax(), -scope.dRXFreqMax(), -scope.dTXPwrDBMMax()})
        EXPECT_EQ(unset, kUnset);
    for (const double floor : {scope.dPwrMin(), scope.DisplayMinPwr()})
        EXPECT_EQ(floor, 0.0);
    for (const double top : {scope.dPwrMax(), scope.DisplayMaxPwr()})
        EXPECT_EQ(top, 3.0);
}

TEST_P(State, PropertiesKeepWhatIsSet) {
    scope.setBXLog(false);
    scope.setBLoadingAll(true);
    scope.setLCursorColor(0x80000012U);
    scope.setGridColor(0x00123456U);
    scope.setNGridX(32767);
    scope.setFreqEndBuffer(7.5);
    scope.setDisplayMinPwr(-120.5);
    scope.setDisplayMaxPwr(-20.25);
    scope.setDisplayCenterFreq(446.00625);
    scope.setShowAll(true);
    EXPECT_FALSE(scope.bXLog());
    EXPECT_TRUE(scope.bLoadingAll());
    EXPECT_EQ(scope.lCursorColor(), 0x80000012U);
    EXPECT_EQ(scope.GridColor(), 0x00123456U);
    EXPECT_EQ(scope.nGridX(), 32767);
    EXPECT_EQ(scope.FreqEndBuffer(), 7.5);
    EXPECT_EQ(scope.DisplayMinPwr(), -120.5);
    EXPECT_EQ(scope.DisplayMaxPwr(), -20.25);
    EXPECT_EQ(scope.DisplayCenterFreq(), 446.00625);
    EXPECT_TRUE(scope.ShowAll());
    scope.setBXLog(true);
    scope.setBLoadingAll(false);
    scope.setShowAll(false);
    EXPECT_TRUE(scope.bXLog());
    EXPECT_FALSE(scope.bLoadingAll());
    EXPECT_FALSE(scope.ShowAll());
}

TEST_P(State, StoringMembersChangeThePictureOnlyWithTheNextDrawing) {
    scope.AddTXChnl(channel({.freq = 450.0, .bw = 5000.0, .power = 2.0, .key = L"TX1", .color = 0x000000FF}));
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture before = capture(scope);
    scope.setBXLog(false);
    scope.setGridColor(0x000000C0);
    scope.setNGridX(7);
    scope.setLCursorColor(0x0000C000);
    scope.setBLoadingAll(true);
    EXPECT_TRUE(capture(scope) == before);
    ASSERT_TRUE(scope.DrawDisplay());
    EXPECT_FALSE(capture(scope) == before);
}

TEST_P(State, ColorsOfThePicturesAreShownAtOnce) {
    constexpr std::uint32_t kSpectrum = 0x00FFEEDD;
    constexpr std::uint32_t kStrip = 0x00C0D0E0;
    constexpr std::uint32_t kText = 0x000000FE;
    scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
    ASSERT_TRUE(scope.DrawDisplay());
    const auto seen = [&](std::uint32_t color) {
        const Picture picture = capture(scope);
        return picture.count(color, picture.all());
    };
    EXPECT_EQ(seen(kSpectrum), 0);
    scope.setLColorSpecBack(kSpectrum);
    EXPECT_GT(seen(kSpectrum), 10000);
    EXPECT_EQ(seen(kStrip), 0);
    scope.setLColorLblBack(kStrip);
    EXPECT_GT(seen(kStrip), 1000);
    EXPECT_EQ(seen(kText), 0);
    scope.setLColorLblFore(kText);
    EXPECT_GT(seen(kText), 50);
    // The redrawing includes the grid.
    EXPECT_GT(seen(kSpectrum), 10000);
}

TEST_P(State, AFreshControlHasABlankPicture) {
    scope.setLColorSpecBack(0x00FFFFFF);
    scope.setLColorLblBack(0x00FFFFFF);
    const Picture picture = capture(scope);
    EXPECT_EQ(picture.count(0x00FFFFFF, picture.all()), picture.width * picture.height);
}

TEST_P(State, TheWithdrawnVisibilityOfShowAllHasNoEffect) {
    scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture before = capture(scope);
    const MessageBoxes boxes;
    for (const bool value : {true, false}) {
        scope.setBChkVisShowAll(value);
        EXPECT_TRUE(capture(scope) == before);
        EXPECT_FALSE(scope.ShowAll());
    }
    EXPECT_TRUE(boxes.seen().empty());
}

TEST_P(State, TheLeastSizeStaysTheSizeOfTheStart) {
    const short height = scope.MinHgt();
    const short width = scope.MinWid();
    EXPECT_GT(height, 3000);
    EXPECT_GT(width, 3000);
    const Picture before = capture(scope);
    ComPtr<IOleObject> ole;
    ASSERT_EQ(scope->QueryInterface(IID_PPV_ARGS(ole.GetAddressOf())), S_OK);
    // In hundredths of a millimeter, so this is much larger than at the start.
    SIZEL size{25400, 20320};
    ASSERT_EQ(ole->SetExtent(DVASPECT_CONTENT, &size), S_OK);
    EXPECT_GT(capture(scope).width, before.width);
    EXPECT_GT(capture(scope).height, before.height);
    EXPECT_EQ(scope.MinHgt(), height);
    EXPECT_EQ(scope.MinWid(), width);
}

TEST_P(State, DrawAllShowsItsMessageAndDrawsNothing) {
    scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
    const Picture before = capture(scope);
    const MessageBoxes boxes;
    scope.DrawAll();
    EXPECT_TRUE(boxes.seen().empty()) << "no user could see it";
    const Sited sited(scope);
    scope.DrawAll();
    ASSERT_EQ(boxes.seen().size(), 1U);
    EXPECT_EQ(boxes.seen()[0].title, L"Incorrect Function Call");
    EXPECT_EQ(boxes.seen()[0].buttons.size(), 1U);
    const std::wstring& text = boxes.seen()[0].text;
    EXPECT_TRUE(text.starts_with(L"DrawAll function no longer supported.\r\n\r\nPlease email the KVTechSup.TXT file"))
        << testing::PrintToString(text);
    EXPECT_TRUE(text.ends_with(L"along with a description of what you were trying to do when this error occurred."))
        << testing::PrintToString(text);
    EXPECT_TRUE(capture(scope) == before);
}

TEST_P(State, EachClearingMemberErasesItsOwnPicture) {
    scope.setLColorSpecBack(0x00FFFFFF);
    scope.setLColorLblBack(0x00F0F0F0);
    const Picture empty = capture(scope);
    scope.AddTXChnl(channel({.freq = 450.0, .bw = 20000.0, .power = 2.0, .key = L"TX1", .color = 0x000000FF}));
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture drawn = capture(scope);
    EXPECT_FALSE(drawn == empty);
    scope.ClearDisplay();
    const Picture labelsOnly = capture(scope);
    EXPECT_EQ(labelsOnly.count(0x000000FF, labelsOnly.all()), 0);
    EXPECT_FALSE(labelsOnly == empty);
    scope.ClearDisplayLabels();
    EXPECT_TRUE(capture(scope) == empty);
    EXPECT_EQ(scope.NumTX(), 1);
    ASSERT_TRUE(scope.DrawDisplay());
    EXPECT_TRUE(capture(scope) == drawn);
}

/// The check box of the mouse information, in its real window.
TEST(StateInAWindow, TheMouseInformationMembersShowAndTickTheirBox) {
    Container container;
    ASSERT_NO_FATAL_FAILURE(container.activate());
    const HWND box = container.child(L"Button", L"Show Mouse Info");
    const MessageBoxes boxes;
    for (const VARIANT_BOOL value : {VARIANT_FALSE, VARIANT_TRUE, VARIANT_FALSE}) {
        EXPECT_EQ(container.control->put_bChkVisMouseInfo(value), S_OK);
        EXPECT_EQ(container.control->put_bMouseInfo(value), S_OK);
        pump();
        EXPECT_EQ(isShown(box), value != VARIANT_FALSE);
        EXPECT_EQ(SendMessageW(box, BM_GETCHECK, 0, 0), value ? BST_CHECKED : BST_UNCHECKED);
    }
    EXPECT_TRUE(boxes.seen().empty());
}

TEST(StateOfTwoControls, IsSeparate) {
    Scope a;
    Scope b;
    a.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
    a.setNGridX(4);
    EXPECT_EQ(b.NumTX(), 0);
    EXPECT_EQ(b.nGridX(), 20);
    EXPECT_EQ(b.AddTXChnl(channel({.freq = 150.0, .key = L"TX1"})), 0);
    EXPECT_EQ(a.dFreqMax(), 450.0);
    EXPECT_EQ(b.dFreqMax(), 150.0);
}

}  // namespace
}  // namespace kv::test
