// The control panel in its real windows: collapse and expand, its parts, and the scale after a resize.
#include <cmath>

#include "tests/automation/UserInput.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Pixels at 96 dpi.
constexpr int kPanelPixels = 152;
constexpr int kStripHeight = 21;
constexpr int kCollapsedBy = kPanelPixels - kStripHeight;

class Panel : public UserInput {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(UserInput::SetUp());
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
        // These are not hidden; the strip is too low to show them.
        EXPECT_TRUE(isShown(container.child(L"Button", L"Draw TX")));
        EXPECT_TRUE(isShown(container.children(L"ComboBox").at(0)));
        toggle();
        EXPECT_EQ(windowText(container.panel()), L"-");
        EXPECT_EQ(panelHeight(), kPanelPixels);
        EXPECT_EQ(container.size().cy, full.cy);
        for (const HWND part : collapsing())
            EXPECT_TRUE(IsWindowVisible(part)) << windowText(part).c_str();
    }
    const HeardEvent collapsed = height(full.cy - kCollapsedBy);
    const HeardEvent expanded = height(full.cy);
    EXPECT_TRUE(sink->heard == (std::vector<HeardEvent>{collapsed, expanded, collapsed, expanded}));
}

TEST_F(Panel, ACollapseEndsTheTurnOfAKnob) {
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

}  // namespace
}  // namespace kv::test
