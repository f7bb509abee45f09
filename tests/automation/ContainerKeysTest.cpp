// Which keys belong to the control: first the keys that its parts use, then the container's accelerators. Tab moves
// through the parts and leaves the control after the last one.
#include <gmock/gmock.h>

#include "tests/automation/ActiveControl.h"
#include "tests/automation/MessageBoxes.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using ContainerKeys = ActiveControl;

TEST_F(ContainerKeys, TheContainerGetsTheKeysThatThePartDoesNotUse) {
    SetFocus(stop(L"tdKnMover"));
    log.answers["TranslateAccelerator"] = S_OK;
    const HWND focus = GetFocus();
    for (const WPARAM code : {VK_ESCAPE, VK_RETURN, VK_F5})
        EXPECT_EQ(key(code), S_OK) << code;
    EXPECT_EQ(log.count("TranslateAccelerator"), 3);
    EXPECT_EQ(GetFocus(), focus);
    // A Tab that would leave the control is offered to the container like any other key; a Tab inside the control is
    // not.
    SetFocus(stops().back());
    log.calls.clear();
    EXPECT_EQ(key(VK_TAB), S_OK);
    EXPECT_THAT(log.take(), ElementsAre("TranslateAccelerator"));
    EXPECT_EQ(GetFocus(), stops().back());
    const KeysDown shift({VK_SHIFT, VK_LSHIFT});
    EXPECT_EQ(key(VK_TAB), S_OK);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(GetFocus(), stops().at(stops().size() - 2));
}

TEST_F(ContainerKeys, AContainerCanCallTranslateAcceleratorBack) {
    HRESULT inner = E_UNEXPECTED;
    log.inside["TranslateAccelerator"] = [&] { inner = key(VK_F5); };
    SetFocus(stop(L"tdKnMover"));
    EXPECT_EQ(key(VK_F5), S_FALSE);
    EXPECT_EQ(inner, S_FALSE);
    EXPECT_EQ(log.count("TranslateAccelerator"), 1);
}

TEST_F(ContainerKeys, OnlyKeysAreTranslatedAndOnlyWithTheFocus) {
    EXPECT_EQ(key(0, WM_MOUSEMOVE), S_FALSE);
    EXPECT_EQ(active->TranslateAccelerator(nullptr), E_POINTER);
    SetFocus(container.host.get());
    log.calls.clear();
    EXPECT_EQ(key(VK_TAB), S_FALSE);
    EXPECT_EQ(key(VK_LEFT), S_FALSE);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ContainerKeys, EachPartGetsTheKeysThatItUses) {
    double before = 0.0;
    double after = 0.0;
    EXPECT_EQ(container.control->get_DisplayCenterFreq(&before), S_OK);
    SetFocus(stop(L"tdKnMover"));
    EXPECT_EQ(key(VK_UP), S_OK);
    EXPECT_EQ(container.control->get_DisplayCenterFreq(&after), S_OK);
    EXPECT_NE(before, after) << "the knob has turned";
    SetFocus(stop(L"ComboBox"));
    const auto chosen = [&] { return SendMessageW(GetFocus(), CB_GETCURSEL, 0, 0); };
    const LRESULT item = chosen();
    EXPECT_EQ(key(VK_DOWN), S_OK);
    EXPECT_NE(chosen(), item);
    // A button does not use arrow keys; characters, key releases and keys with Alt are left to the container's loop.
    SetFocus(stop(L"Button"));
    EXPECT_EQ(key(VK_LEFT), S_FALSE);
    EXPECT_EQ(key(VK_SPACE), S_FALSE);
    SetFocus(stop(L"tdKnMover"));
    EXPECT_EQ(key(VK_LEFT, WM_KEYUP), S_FALSE);
    EXPECT_EQ(key('A', WM_CHAR), S_FALSE);
    EXPECT_EQ(key(VK_LEFT, WM_SYSKEYDOWN), S_FALSE);
}

TEST_F(ContainerKeys, EnterAndEscapeAreLeftToTheForm) {
    for (const HWND part : stops()) {
        SetFocus(part);
        EXPECT_EQ(key(VK_RETURN), S_FALSE) << testing::PrintToString(windowText(part));
        EXPECT_EQ(key(VK_ESCAPE), S_FALSE) << testing::PrintToString(windowText(part));
    }
}

TEST_F(ContainerKeys, NoPartTellsADialogThatItWantsTheFormsKeys) {
    for (const HWND part : stops()) {
        SetFocus(part);
        for (const WPARAM code : {VK_TAB, VK_RETURN, VK_ESCAPE}) {
            MSG pressed{part, WM_KEYDOWN, code, 1, 0, {}};
            const LRESULT wants = SendMessageW(part, WM_GETDLGCODE, code, reinterpret_cast<LPARAM>(&pressed));
            EXPECT_EQ(wants & (DLGC_WANTALLKEYS | DLGC_WANTTAB), 0)
                << testing::PrintToString(windowText(part)) << " " << code;
        }
        EXPECT_EQ(SendMessageW(part, WM_GETDLGCODE, 0, 0) & DLGC_WANTTAB, 0);
    }
}

TEST_F(ContainerKeys, TheSpectrumGetsItsKeysAndNoOthers) {
    SetFocus(container.pictureBox(L"picSpectrum"));
    for (const WPARAM code : {VK_LEFT, VK_RIGHT, VK_UP, VK_DOWN, VK_PRIOR, VK_NEXT, VK_HOME, VK_SPACE})
        EXPECT_EQ(key(code), S_OK) << code;
    for (const WPARAM code : {VK_RETURN, VK_ESCAPE, VK_F1, VK_F5, VK_DELETE, VK_END})
        EXPECT_EQ(key(code), S_FALSE) << code;
}

TEST_F(ContainerKeys, EscapeCancelsADragOrClosesAListFirst) {
    const HWND knob = stop(L"tdKnMover");
    RECT size{};
    GetClientRect(knob, &size);
    SendMessageW(knob, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(size.right / 2, size.bottom / 2));
    SendMessageW(knob, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(size.right / 2, size.bottom / 2 - 30));
    ASSERT_EQ(GetCapture(), knob);
    EXPECT_EQ(key(VK_RETURN), S_FALSE);
    EXPECT_EQ(key(VK_ESCAPE), S_OK);
    EXPECT_EQ(GetCapture(), nullptr) << "given up";
    EXPECT_EQ(key(VK_ESCAPE), S_FALSE);
    const HWND box = stop(L"ComboBox");
    SetFocus(box);
    SendMessageW(box, CB_SHOWDROPDOWN, TRUE, 0);
    ASSERT_TRUE(SendMessageW(box, CB_GETDROPPEDSTATE, 0, 0));
    EXPECT_EQ(key(VK_ESCAPE), S_OK);
    EXPECT_FALSE(SendMessageW(box, CB_GETDROPPEDSTATE, 0, 0));
}

TEST_F(ContainerKeys, TabMovesThroughThePartsAndLeavesAtTheEnd) {
    const std::vector<HWND> parts = stops();
    ASSERT_GT(parts.size(), 4U);
    SetFocus(parts.front());
    log.calls.clear();
    for (std::size_t i = 1; i < parts.size(); ++i) {
        EXPECT_EQ(key(VK_TAB), S_OK);
        EXPECT_EQ(GetFocus(), parts[i]) << i;
    }
    EXPECT_EQ(key(VK_TAB), S_FALSE) << "the container moves on";
    EXPECT_EQ(GetFocus(), parts.back());
    {
        const KeysDown shift({VK_SHIFT, VK_LSHIFT});
        for (std::size_t i = parts.size() - 1; i-- > 0;) {
            EXPECT_EQ(key(VK_TAB), S_OK);
            EXPECT_EQ(GetFocus(), parts[i]) << i;
        }
        EXPECT_EQ(key(VK_TAB), S_FALSE);
    }
    EXPECT_EQ(log.count("OnFocus(lost)"), 0);
    EXPECT_EQ(log.count("OnUIActivate"), 0);
}

TEST_F(ContainerKeys, TabEntersAtTheFirstPartAndShiftTabAtTheLast) {
    const std::vector<HWND> parts = stops();
    MSG tab{};
    tab.message = WM_KEYDOWN;
    tab.wParam = VK_TAB;
    SetFocus(container.host.get());
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE, &tab), S_OK);
    EXPECT_EQ(GetFocus(), parts.front());
    SetFocus(container.host.get());
    {
        const KeysDown shift({VK_SHIFT, VK_LSHIFT});
        EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE, &tab), S_OK);
    }
    EXPECT_EQ(GetFocus(), parts.back());
    SetFocus(parts[2]);
    SetFocus(container.host.get());
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_EQ(GetFocus(), parts[2]) << "without Tab, where it was";
}

TEST_F(ContainerKeys, ThereAreNoMnemonics) {
    const auto control = container.as<IOleControl>();
    CONTROLINFO info{sizeof info, reinterpret_cast<HACCEL>(1), 7, 7};
    EXPECT_EQ(control->GetControlInfo(&info), S_OK);
    EXPECT_EQ(info.hAccel, nullptr);
    EXPECT_EQ(info.cAccel, 0);
    EXPECT_EQ(info.dwFlags, 0U) << "neither Enter nor Escape";
    EXPECT_EQ(control->GetControlInfo(nullptr), E_POINTER);
    MSG message{};
    EXPECT_EQ(control->OnMnemonic(&message), S_OK);
}

}  // namespace
}  // namespace kv::test
