// The control panel under the user's hand: collapse and expand, its parts and what a resize does to the scale.
#include <cmath>

#include "tests/automation/KnobHand.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Pixels at 96 dpi.
constexpr int kPanelHeight = 152;
constexpr int kStripHeight = 21;
constexpr int kCollapsedBy = kPanelHeight - kStripHeight;

class Panel : public KnobHand {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(KnobHand::SetUp());
        container.site->onPosRectChange = [this](const RECT& wanted) {
            EXPECT_EQ(container.as<IOleInPlaceObject>()->SetObjectRects(&wanted, &wanted), S_OK);
        };
    }
    void toggle() const { postRightClick(container.panel(), 5, 5); }
    [[nodiscard]] static HeardEvent height(int pixels) { return {kChgHeight, {pixels * 15.0}, {VT_I2}}; }
    [[nodiscard]] int panelHeight() const {
        const RECT place = placeOf(container.panel());
        return place.bottom - place.top;
    }
    [[nodiscard]] HWND label(const wchar_t* text) const { return container.child(L"Static", text); }
    [[nodiscard]] std::vector<HWND> collapsing() const {
        return {centerMover(), cursorMover(), gridKnob(), label(L"1 tx Channels"), label(L"1 RX Channels")};
    }
    /// The frequency that the panel reads out for a pixel column.
    [[nodiscard]] std::wstring readOutAt(int x) const {
        PostMessageW(spectrum(), WM_MOUSEMOVE, 0, MAKELPARAM(x, 20));
        pump();
        for (const HWND window : container.children(L"Static")) {
            const std::wstring text = windowText(window);
            if (isShown(window) && text.size() > 4 && text.substr(text.size() - 4) == L" MHz")
                return text;
        }
        return L"";
    }
    [[nodiscard]] std::wstring expectedAt(int x) const {
        wchar_t text[64];
        swprintf(text, 64, L"%.5f MHz", 380.0 + x * 100.0 / shown().width);
        return text;
    }
};

TEST_F(Panel, CollapseHidesFiveControlsAndExpandShowsThem) {
    fill();
    for (const HWND part : collapsing())
        EXPECT_TRUE(IsWindowVisible(part)) << windowText(part).c_str();
    const SIZE full = container.size();
    for (int round = 0; round < 2; ++round) {
        toggle();
        EXPECT_EQ(windowText(container.panel()), L"+");
        EXPECT_EQ(panelHeight(), kStripHeight);
        EXPECT_EQ(container.size().cy, full.cy - kCollapsedBy);
        for (const HWND part : collapsing())
            EXPECT_FALSE(IsWindowVisible(part)) << windowText(part).c_str();
        // These stay what they are; the strip has no room for them.
        EXPECT_TRUE(isShown(container.child(L"Button", L"Draw TX")));
        EXPECT_TRUE(isShown(container.children(L"ComboBox").at(0)));
        toggle();
        EXPECT_EQ(windowText(container.panel()), L"-");
        EXPECT_EQ(panelHeight(), kPanelHeight);
        EXPECT_EQ(container.size().cy, full.cy);
        for (const HWND part : collapsing())
            EXPECT_TRUE(IsWindowVisible(part)) << windowText(part).c_str();
    }
    const HeardEvent collapsed = height(full.cy - kCollapsedBy);
    const HeardEvent expanded = height(full.cy);
    EXPECT_TRUE(sink->heard == (std::vector<HeardEvent>{collapsed, expanded, collapsed, expanded}));
}

TEST_F(Panel, TheRotaryKnobsStayHiddenThroughACollapse) {
    const auto shownKnobs = [&] {
        std::vector<std::wstring> texts;
        for (const HWND knob : container.children(L"tdKnob")) {
            if (isShown(knob))
                texts.push_back(windowText(knob));
        }
        return texts;
    };
    EXPECT_EQ(container.children(L"tdKnob").size(), 3U);
    EXPECT_EQ(container.children(L"tdKnMover").size(), 2U);
    EXPECT_THAT(shownKnobs(), ElementsAre(L"Grid (Hz)"));
    toggle();
    EXPECT_THAT(shownKnobs(), IsEmpty());
    toggle();
    EXPECT_THAT(shownKnobs(), ElementsAre(L"Grid (Hz)"));
}

TEST_F(Panel, OtherButtonsAndPlacesToggleNothing) {
    // 400 twips are 26.7 pixels, 315 are 21.
    for (const POINT& at : {POINT{26, 21}, POINT{0, 0}}) {
        postClick(container.panel(), at.x, at.y);
        PostMessageW(container.panel(), WM_MBUTTONDOWN, MK_MBUTTON, MAKELPARAM(at.x, at.y));
        PostMessageW(container.panel(), WM_MBUTTONUP, 0, MAKELPARAM(at.x, at.y));
        pump();
    }
    for (const POINT& at : {POINT{27, 21}, POINT{26, 22}, POINT{27, 22}})
        postRightClick(container.panel(), at.x, at.y);
    postRightClick(spectrum(), 5, 5);
    postRightClick(container.root(), 1, 1);
    EXPECT_THAT(sink->ids(), IsEmpty());
    EXPECT_EQ(panelHeight(), kPanelHeight);
    postRightClick(container.panel(), 26, 21);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgHeight));
}

TEST_F(Panel, TheSpectrumKeepsItsPictureThroughACollapse) {
    fill();
    EXPECT_EQ(container.control->put_CursorVal(413.0), S_OK);
    const Picture before = shown();
    toggle();
    expectSame(shown(), before);
    // Also a drawing while the panel is collapsed keeps the knobs away.
    EXPECT_EQ(container.control->put_DisplayCenterFreq(440.0), S_OK);
    EXPECT_EQ(container.control->DrawNewCenterFreq(), S_OK);
    pump();
    for (const HWND part : collapsing())
        EXPECT_FALSE(IsWindowVisible(part)) << windowText(part).c_str();
    EXPECT_EQ(container.control->put_DisplayCenterFreq(430.0), S_OK);
    EXPECT_EQ(container.control->DrawNewCenterFreq(), S_OK);
    toggle();
    expectSame(shown(), before);
}

TEST_F(Panel, ACollapseLetsTheHeldKnobGo) {
    fillInStep();
    const HWND knob = gridKnob();
    take(knob, 3, 70);
    drag(knob, 3, 54);
    EXPECT_EQ(GetCapture(), knob);
    toggle();
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange, kChgHeight));
    expectRange(330.0, 530.0);
    drag(knob, 3, 10);
    release(knob, 3, 10);
    expectRange(330.0, 530.0);
}

TEST_F(Panel, ChannelsAddedWhileCollapsedLeaveTheStripEmpty) {
    toggle();
    fill();
    toggle();
    for (const HWND part : collapsing())
        EXPECT_TRUE(IsWindowVisible(part)) << windowText(part).c_str();
}

TEST_F(Panel, AResizeGivesTheRangeItsNewScale) {
    fill();
    EXPECT_EQ(readOutAt(100), expectedAt(100));
    const int before = shown().width;
    container.resize(860, 560);
    EXPECT_GT(shown().width, before);
    EXPECT_EQ(readOutAt(100), expectedAt(100));
    EXPECT_EQ(readOutAt(before + 20), expectedAt(before + 20));
    expectRange(380.0, 480.0);
    EXPECT_THAT(sink->ids(), IsEmpty());
}

TEST_F(Panel, AResizeBeforeAnyRangeSetsNoScaleAndTheFirstDrawingDoes) {
    const auto range = [&] { return std::pair(minFreq(), maxFreq()); };
    const std::wstring before = readOutAt(100);
    for (const SIZE& size : {SIZE{860, 560}, SIZE{720, 400}, SIZE{900, 480}}) {
        container.resize(size.cx, size.cy);
        EXPECT_EQ(container.size().cx, size.cx);
        EXPECT_EQ(readOutAt(100), before);
        EXPECT_EQ(range(), std::pair(kUnset, -kUnset));
    }
    fill();
    EXPECT_EQ(readOutAt(100), expectedAt(100));
}

TEST_F(Panel, ACursorLineLeavesNoTraceAfterAResize) {
    fill();
    EXPECT_EQ(container.control->put_CursorVal(413.0), S_OK);
    container.resize(860, 560);
    container.resize(800, 520);
    EXPECT_EQ(container.control->DrawNewCenterFreq(), S_OK);
    const Picture with = shown();
    EXPECT_EQ(container.control->put_CursorVal(444.0), S_OK);
    EXPECT_EQ(container.control->put_CursorVal(413.0), S_OK);
    expectSame(shown(), with);
}

TEST_F(Panel, OrderRedrawsTheWholeDisplay) {
    fill();
    const Picture drawn = shown();
    EXPECT_EQ(container.control->ClearDisplay(), S_OK);
    pump();
    EXPECT_NE(shown(), drawn);
    SendMessageW(container.child(L"Button", L"Order"), BM_CLICK, 0, 0);
    pump();
    expectSame(shown(), drawn);
    EXPECT_THAT(sink->ids(), IsEmpty());
}

TEST_F(Panel, OrderOnAnEmptyStoreRedrawsAnEmptyDisplay) {
    const Picture empty = shown();
    for (const WPARAM ticked : {BST_CHECKED, BST_UNCHECKED}) {
        SendMessageW(container.child(L"Button", L"Order"), BM_CLICK, 0, 0);
        pump();
        EXPECT_EQ(static_cast<WPARAM>(SendMessageW(container.child(L"Button", L"Order"), BM_GETCHECK, 0, 0)), ticked);
        expectSame(shown(), empty);
    }
    EXPECT_EQ(empty.count(empty.at(0, 0), empty.all()), empty.width * empty.height);
    EXPECT_EQ(minFreq(), kUnset);
    EXPECT_THAT(sink->ids(), IsEmpty());
    // Emptied after a drawing as well.
    fill();
    EXPECT_NE(shown(), empty);
    EXPECT_EQ(container.control->ClearAllChnls(), S_OK);
    SendMessageW(container.child(L"Button", L"Order"), BM_CLICK, 0, 0);
    pump();
    const Picture after = shown();
    EXPECT_EQ(after.count(0xFF, after.all()), 0);
    EXPECT_EQ(after.count(0xFF00, after.all()), 0);
}

TEST_F(Panel, AProductWithoutComponentsIsDrawnByOrderLikeAnyChannel) {
    container.addTx({.freq = 450.0,
                     .lo = 449.0,
                     .hi = 451.0,
                     .power = 30.0,
                     .key = L"IM1",
                     .label = L"Intermod Product [3rd order product] A+B-C",
                     .color = 0x00FF00FF});
    SendMessageW(container.child(L"Button", L"Order"), BM_CLICK, 0, 0);
    pump();
    const Picture drawn = shown();
    EXPECT_GT(drawn.count(0x00FF00FF, drawn.all()), 0);
    EXPECT_TRUE(IsWindowVisible(label(L"1 tx Channels")));
}

}  // namespace
}  // namespace kv::test
