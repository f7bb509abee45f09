// The pointer, the drag of a box and the keys by themselves: no panel and no drawing of channels.
#include "control/Pointer.h"

#include <gmock/gmock.h>

#include <sstream>

#include "control/Keyboard.h"
#include "tests/unit/Keys.h"
#include "tests/unit/PartsFixture.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using channels::ChannelKind;
using formenv::mouse_button::kLeft;
using formenv::mouse_button::kRight;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class BoxDragPartTest : public PartsTest {
  protected:
    BoxDragPartTest() { showRange(); }
    BoxDrag drag{picture, range, marks};
};

TEST_F(BoxDragPartTest, ReturnsTheSpanInAscendingOrderWhicheverWayItWasDragged) {
    for (const auto& [from, to] : {std::pair(420.0, 440.0), std::pair(440.0, 420.0)}) {
        drag.pressed(kLeft);
        drag.movedTo(kLeft, from);
        EXPECT_TRUE(drag.isDragging());
        EXPECT_EQ(drag.released(to), BoxDrag::Span(420.0, 440.0));
        EXPECT_FALSE(drag.isDragging());
    }
}

TEST_F(BoxDragPartTest, LessThanThreePixelsIsAClick) {
    drag.movedTo(kLeft, 420.0);
    EXPECT_EQ(drag.released(421.0), std::nullopt);
    drag.movedTo(kLeft, 420.0);
    EXPECT_NE(drag.released(421.5), std::nullopt);
}

TEST_F(BoxDragPartTest, PositionsOutsideThePictureCountAsItsNearestEnd) {
    drag.movedTo(kLeft, 450.0);
    EXPECT_EQ(drag.released(9000.0), BoxDrag::Span(450.0, 500.0));
}

TEST_F(BoxDragPartTest, AnotherButtonEndsTheDragUntilTheLeftOneIsReleased) {
    const std::vector<std::uint32_t> blank = pixels();
    drag.movedTo(kLeft, 420.0);
    drag.movedTo(kLeft, 440.0);
    ASSERT_NE(pixels(), blank);
    drag.pressed(kRight);
    EXPECT_EQ(pixels(), blank);
    drag.movedTo(kLeft | kRight, 450.0);
    EXPECT_FALSE(drag.isDragging());
    EXPECT_EQ(drag.released(460.0), std::nullopt);
    drag.movedTo(kLeft, 450.0);
    EXPECT_TRUE(drag.isDragging());
}

TEST_F(BoxDragPartTest, WithoutAUsableRangeNothingIsDragged) {
    range.unset();
    drag.movedTo(kLeft, 420.0);
    EXPECT_FALSE(drag.isDragging());
}

TEST_F(BoxDragPartTest, ASpanBegunByKeyIsShownAndDropped) {
    const std::vector<std::uint32_t> blank = pixels();
    drag.showSpanTo(440.0);
    EXPECT_EQ(pixels(), blank) << "none was begun";
    EXPECT_FALSE(drag.dropSpan());
    drag.beginSpan(420.0);
    drag.showSpanTo(440.0);
    EXPECT_NE(pixels(), blank);
    EXPECT_TRUE(drag.dropSpan());
    EXPECT_EQ(pixels(), blank);
}

/// Writes down what the keys ask for.
class RecordingActions final : public KeyActions, public NavigationActions {
  public:
    double CursorVal() const noexcept override { return cursor; }
    void showCursorAt(double frequency) override { note("cursor", cursor = frequency); }
    void panTo(double center) override { note("pan", center); }
    void zoomTo(double minimum, double maximum) override {
        note("zoom", minimum);
        note("to", maximum);
    }
    void showAllChannels() override { heard.emplace_back("all"); }
    void ToggleControlsSection() override { heard.emplace_back("toggle"); }
    bool giveUpDrag() override { return false; }
    void toggleMarker() override { heard.emplace_back("marker"); }
    bool goBack() override { return heard.emplace_back("back"), true; }
    bool goForward() override { return heard.emplace_back("forward"), true; }
    double snappedAhead(double /*from*/, double to) override { return to; }
    void applyNewCenter(double center) override { note("center", center); }
    bool showExactly(double minimum, double /*maximum*/) override { return note("exactly", minimum), true; }
    void tellRangeChanged() override { heard.emplace_back("tell"); }
    std::vector<std::string> take() { return std::exchange(heard, {}); }

    double cursor = 0.0;
    std::vector<std::string> heard;

  private:
    void note(const char* what, double value) {
        std::ostringstream text;
        text << what << ' ' << value;
        heard.push_back(text.str());
    }
};

class PointerPartTest : public PartsTest {
  protected:
    PointerPartTest() {
        add(ChannelKind::TX, 450.0);
        showRange();
    }
    bool press(int key, int shift = 0) { return keys.picSpectrum_KeyDown(key, shift); }

    RecordingErrors errors;
    MemoryFiles files;
    formenv::Label lblFMHz{nullptr, L"lblFMHz"};
    formenv::Label lblFromCenter{nullptr, L"lblFromCenter"};
    formenv::CheckBox chkShowMouse{nullptr, L"chkShowMouse"};
    RecordingActions actions;
    Pointer pointer{{platform, files, errors}, picture, {lblFMHz, lblFromCenter, chkShowMouse}, store, range, marks};
    Navigation navigation{actions, range, picture, errors};
    Keyboard keys{actions, pointer, navigation, range, store, chkShowMouse, errors};
};

TEST_F(PointerPartTest, ReadsOutTheFrequencyAndItsDistanceFromTheCenter) {
    pointer.pointAt(447.5);
    EXPECT_EQ(lblFMHz.caption(), L"447.50000 MHz");
    EXPECT_EQ(lblFromCenter.caption(), L"2.50000- MHz from center");
    pointer.pointAt(0.0);
    EXPECT_EQ(lblFMHz.caption(), L"");
}

TEST_F(PointerPartTest, OverTheStripOnlyTheDistanceIsReadOut) {
    lblFMHz.setCaption(L"as it was");
    pointer.pointAtStrip(picture.left() + picture.width() * 0.55);
    EXPECT_EQ(lblFromCenter.caption(), L"5.00000+ MHz from center");
    EXPECT_EQ(lblFMHz.caption(), L"as it was");
}

TEST_F(PointerPartTest, TheReportIsHeadedByTheReadOut) {
    chkShowMouse.setValue(1);
    pointer.pointAt(450.0);
    ASSERT_NE(pointer.report().window(), nullptr);
    EXPECT_THAT(pointer.report().window()->text(), ::testing::HasSubstr(L"450.00000 MHz"));
}

TEST_F(PointerPartTest, WithoutAFrequencyTheReportIsEmptyEvenWithAChannelAtZero) {
    const util::Ref<QuietSlot> low = add(ChannelKind::TX, 0.5);
    ASSERT_LT(low->fields().dFreqLo, 0.0);
    ReportWindow window({platform, files, errors}, store, picture, chkShowMouse);
    chkShowMouse.setValue(1);
    window.ShowMouseInfo(0.25, L"0.25 MHz");
    ASSERT_NE(window.window(), nullptr);
    EXPECT_NE(window.window()->text(), L"");
    window.ShowMouseInfo(0.0, L"0 MHz");
    EXPECT_EQ(window.window()->text(), L"");
}

TEST_F(PointerPartTest, AWindowThatCouldNotBeSetUpIsSetUpTheNextTime) {
    class FailingOnce final : public MemoryFiles {
      public:
        std::wstring placementFile() override {
            if (std::exchange(fails, false))
                throw util::RuntimeError(util::error_number::kPathFileAccess);
            return MemoryFiles::placementFile();
        }
        bool fails = true;
    } failing;
    ReportWindow window({platform, failing, errors}, store, picture, chkShowMouse);
    chkShowMouse.setValue(1);
    EXPECT_THROW(window.ShowMouseInfo(450.0, L"450 MHz"), util::RuntimeError);
    window.ShowMouseInfo(450.0, L"450 MHz");
    ASSERT_NE(window.window(), nullptr);
    EXPECT_EQ(window.window()->Mode(), L"Mouse Information");
}

TEST_F(PointerPartTest, EachKeyAsksForItsAction) {
    struct {
        int key;
        int shift;
        std::vector<std::string> asked;
    } const expected[] = {
        {37, 0, {"pan 445"}},
        {39, 0, {"pan 455"}},
        {33, 0, {"pan 400"}},
        {34, 0, {"pan 500"}},
        {38, 0, {"zoom 425", "to 475"}},
        {187, 0, {"zoom 425", "to 475"}},
        {107, 0, {"zoom 425", "to 475"}},
        {40, 0, {"zoom 350", "to 550"}},
        {189, 0, {"zoom 350", "to 550"}},
        {109, 0, {"zoom 350", "to 550"}},
        {36, 0, {"all"}},
        {32, 0, {"pan 440"}},
        {67, 0, {"toggle"}},
        {37, key::kShift, {"cursor 439.5"}},
        {39, key::kShift, {"cursor 440.5"}},
        {39, key::kCtrl, {"cursor 450"}},
        {37, key::kCtrl, {}},
    };
    for (const auto& row : expected) {
        actions.cursor = 440.0;
        EXPECT_TRUE(press(row.key, row.shift));
        EXPECT_EQ(actions.take(), row.asked) << "key " << row.key << " with " << row.shift;
    }
}

TEST_F(PointerPartTest, OtherKeysAndKeysWithAltAreTheHosts) {
    for (const int key : {9, 13, 27, 65, 112})
        EXPECT_FALSE(press(key)) << key;
    EXPECT_FALSE(press(38, key::kAlt));
    EXPECT_THAT(actions.take(), IsEmpty());
    EXPECT_TRUE(press(37, key::kAlt));
    EXPECT_TRUE(press(39, key::kAlt));
    EXPECT_FALSE(press(37, key::kAlt | key::kCtrl));
    EXPECT_THAT(actions.take(), ElementsAre("back", "forward"));
}

TEST_F(PointerPartTest, TwoPressesOfBZoomToTheSpanBetween) {
    actions.cursor = 460.0;
    press(66);
    actions.cursor = 430.0;
    actions.take();
    press(66);
    EXPECT_THAT(actions.take(), ElementsAre("zoom 430", "to 460"));
    EXPECT_FALSE(press(27)) << "no span is left that Escape could drop";
}

TEST_F(PointerPartTest, ACursorThatLeavesThePictureTakesItAlong) {
    actions.cursor = 500.0;
    press(39, 1);
    EXPECT_THAT(actions.take(), ElementsAre("pan 500.5", "cursor 500.5"));
}

}  // namespace
}  // namespace kv::control
