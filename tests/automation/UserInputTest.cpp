// Unusual mouse input and window sizes: quick second clicks, presses that began in another window, very tall windows;
// and what the knobs read out.
#include <oleacc.h>

#include "tests/automation/UserInput.h"

namespace kv::test {
namespace {

using testing::ElementsAre;

class UnusualInput : public UserInput {
  protected:
    [[nodiscard]] bool isCollapsed() const { return windowText(container.panel()) == L"+"; }
    void rightClick(UINT down) const {
        mouse(container.panel(), down, MK_RBUTTON, 5, 5);
        mouse(container.panel(), WM_RBUTTONUP, 0, 5, 5);
    }
    void doubleClick(int x) const {
        mouse(spectrum(), WM_LBUTTONDBLCLK, MK_LBUTTON, x, 30);
        mouse(spectrum(), WM_LBUTTONUP, 0, x, 30);
    }
};

TEST_F(UnusualInput, DoubleClickUsesItsOwnPositionInTheRangeOfThatMoment) {
    fill();
    mouse(spectrum(), WM_MOUSEMOVE, 0, 10, 30);
    EXPECT_EQ(container.control->DrawByRange(440.0, 450.0), S_OK);
    const int width = shown().width;
    const double expected = minFreq() + 200 * (maxFreq() - minFreq()) / width;
    doubleClick(200);
    EXPECT_NEAR(center(), expected, 1e-9);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
}

TEST_F(UnusualInput, ASecondQuickRightClickTogglesThePanelAgain) {
    rightClick(WM_RBUTTONDOWN);
    EXPECT_TRUE(isCollapsed());
    rightClick(WM_RBUTTONDBLCLK);
    EXPECT_FALSE(isCollapsed());
}

TEST_F(UnusualInput, AReleaseWithoutAPressInTheSameWindowIsNoClick) {
    long count = -1;
    mouse(container.root(), WM_LBUTTONUP, 0, 3, 3);
    EXPECT_EQ(container.control->get_NumTX(&count), S_OK);
    EXPECT_EQ(count, 0) << "the demonstration set was loaded";
    mouse(container.root(), WM_LBUTTONDOWN, MK_LBUTTON, 1, 3);
    mouse(container.root(), WM_LBUTTONUP, 0, 1, 3);
    EXPECT_EQ(container.control->get_NumTX(&count), S_OK);
    EXPECT_GT(count, 0);
}

TEST_F(UnusualInput, KnobsReadOutTheDrawnStepAndCenter) {
    const auto readOut = [](HWND knob) {
        ComPtr<IAccessible> object;
        EXPECT_EQ(AccessibleObjectFromWindow(knob, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                             reinterpret_cast<void**>(object.GetAddressOf())),
                  S_OK);
        Text value;
        EXPECT_EQ(object->get_accValue(Var(static_cast<int>(CHILDID_SELF)), value.put()), S_OK);
        return value.str();
    };
    EXPECT_EQ(readOut(gridKnob()), L"500K");
    fill();
    EXPECT_EQ(readOut(gridKnob()), L"5M");
    EXPECT_EQ(readOut(centerMover()), L"430.00000");
    EXPECT_EQ(container.control->put_FreqEndBuffer(0.0), S_OK);
    EXPECT_EQ(container.control->DrawByRange(400.0, 411.05), S_OK);
    EXPECT_EQ(readOut(gridKnob()), L"552.5K");
    // After the user has chosen a stop, the knob reads out its own value again.
    key(gridKnob(), VK_HOME);
    EXPECT_EQ(readOut(gridKnob()), L"500K");
}

TEST_F(UnusualInput, ChgHeightOfAVeryTallWindowCarriesTheLargestShort) {
    container.resize(800, 3000);
    rightClick(WM_RBUTTONDOWN);
    EXPECT_TRUE(isCollapsed());
    ASSERT_THAT(sink->ids(), ElementsAre(kChgHeight));
    EXPECT_THAT(sink->heard[0].arguments, ElementsAre(32767.0));
}

}  // namespace
}  // namespace kv::test
