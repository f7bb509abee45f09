// The keyboard in the window of a form, with a plain message loop.
#include "tests/win32/FormFixture.h"

namespace {

using namespace kv;
using namespace kv::test;
using testing::ElementsAre;
using testing::IsEmpty;

using FormKeys = FormWindowTest;

std::wstring clipboardText(HWND window) {
    for (int i = 0; i < 50 && !OpenClipboard(window); ++i)
        Sleep(20);
    std::wstring text;
    if (const HANDLE held = GetClipboardData(CF_UNICODETEXT)) {
        text = static_cast<const wchar_t*>(GlobalLock(held));
        GlobalUnlock(held);
    }
    CloseClipboard();
    return text;
}

TEST_F(FormKeys, CtrlASelectsAllAndCtrlCCopies) {
    const std::wstring text = L"first\r\nsecond \u0416 \U0001F4FB";
    open(text, true);
    activate();
    SetFocus(edit());
    {
        const HeldKey ctrl(VK_CONTROL);
        SendMessageW(edit(), WM_KEYDOWN, 'A', 1);
    }
    DWORD to = 0;
    SendMessageW(edit(), EM_GETSEL, 0, reinterpret_cast<LPARAM>(&to));
    EXPECT_EQ(to, text.size());
    SendMessageW(edit(), EM_SETSEL, 0, 0);
    PostMessageW(edit(), WM_CHAR, 1, 1);
    // The system empties the clipboard once on a new display.
    EXPECT_TRUE(waitFor([&] {
        PostMessageW(edit(), WM_CHAR, 3, 1);
        pump();
        return clipboardText(host) == text;
    }));
    EXPECT_EQ(form->text(), text);
}

TEST_F(FormKeys, TabGoesThroughTheControlsInTheirOrder) {
    open(L"text");
    activate();
    EXPECT_EQ(GetFocus(), edit()) << "the first control has the focus of a form that is taken";
    const std::vector<const formenv::Widget*> order{&form->cmdSave, &form->cmdPrint, &form->cmdCancel,
                                                    &form->chkEnabled, &form->txtEdit};
    for (const formenv::Widget* next : order) {
        key(VK_TAB);
        EXPECT_EQ(GetFocus(), windowOf(*next)) << testing::PrintToString(next->name());
    }
    EXPECT_EQ(form->text(), L"text") << "no tab in it";
    const HeldKey shift(VK_SHIFT);
    SendMessageW(GetFocus(), WM_KEYDOWN, VK_TAB, 1);
    EXPECT_EQ(GetFocus(), windowOf(form->chkEnabled));
    SendMessageW(GetFocus(), WM_KEYDOWN, VK_TAB, 1);
    EXPECT_EQ(GetFocus(), windowOf(form->cmdCancel));
}

TEST_F(FormKeys, TabSkipsHiddenAndDisabledControls) {
    open();
    form->cmdSave.setEnabled(false);
    form->cmdPrint.setVisible(false);
    pump();
    activate();
    SetFocus(edit());
    key(VK_TAB);
    EXPECT_EQ(GetFocus(), windowOf(form->cmdCancel));
}

TEST_F(FormKeys, CtrlTabPutsATabIntoTheText) {
    open(L"ab");
    activate();
    SetFocus(edit());
    SendMessageW(edit(), EM_SETSEL, 1, 1);
    const HeldKey ctrl(VK_CONTROL);
    SendMessageW(edit(), WM_KEYDOWN, VK_TAB, 1);
    SendMessageW(edit(), WM_CHAR, '\t', 1);
    EXPECT_EQ(form->text(), L"a\tb");
    EXPECT_EQ(GetFocus(), edit());
    form->txtEdit.setLocked(true);
    SendMessageW(edit(), WM_KEYDOWN, VK_TAB, 1);
    EXPECT_EQ(form->text(), L"a\tb");
}

TEST_F(FormKeys, EscapeCancelsFromEveryControl) {
    for (int i = 0; i < 3; ++i) {
        open(L"text");
        activate();
        SetFocus(i == 0 ? edit() : i == 1 ? windowOf(form->cmdPrint) : windowOf(form->chkEnabled));
        heard.clear();
        key(VK_ESCAPE);
        EXPECT_THAT(heard, ElementsAre("HideMe"));
        EXPECT_TRUE(form->cancelled());
        EXPECT_FALSE(IsWindowVisible(window()));
    }
    open(L"text");
    SendMessageW(window(), WM_KEYDOWN, VK_ESCAPE, 1);
    EXPECT_FALSE(IsWindowVisible(window())) << "with the focus on no control";
}

TEST_F(FormKeys, ADialogMessageLoopLeavesTheKeysToTheForm) {
    open(L"text");
    activate();
    SetFocus(edit());
    MSG message{edit(), WM_KEYDOWN, VK_ESCAPE, 1, 0, {}};
    if (!IsDialogMessageW(window(), &message))
        SendMessageW(edit(), WM_KEYDOWN, VK_ESCAPE, 1);
    pump();
    EXPECT_THAT(heard, ElementsAre("HideMe"));
    open(L"text");
    heard.clear();
    SendMessageW(window(), WM_COMMAND, IDCANCEL, 0);
    EXPECT_THAT(heard, ElementsAre("HideMe"));
}

TEST_F(FormKeys, AccessKeysPressTheirButtons) {
    open(L"text");
    activate();
    SetFocus(edit());
    alt(L'x');
    EXPECT_THAT(heard, IsEmpty());
    alt(L's');
    EXPECT_THAT(heard, ElementsAre("HideMe"));
    EXPECT_FALSE(form->cancelled());
    EXPECT_EQ(form->text(), L"text");
    open(L"text");
    activate();
    alt(L'C');
    EXPECT_TRUE(form->cancelled());
    open(L"text");
    form->chkEnabled.setCaption(L"&Editing");
    form->cmdCancel.setVisible(false);
    pump();
    activate();
    heard.clear();
    alt(L'c');
    EXPECT_THAT(heard, IsEmpty()) << "a hidden button has no key";
    const int before = form->chkEnabled.value();
    alt(L'e');
    EXPECT_EQ(form->chkEnabled.value(), 1 - before);
    EXPECT_EQ(SendMessageW(windowOf(form->chkEnabled), BM_GETCHECK, 0, 0), 1 - before);
    EXPECT_EQ(GetFocus(), windowOf(form->chkEnabled));
}

TEST_F(FormKeys, EnterAndSpacePressTheButtonWithTheFocus) {
    open(L"text");
    activate();
    SetFocus(windowOf(form->cmdSave));
    key(VK_RETURN);
    EXPECT_THAT(heard, ElementsAre("HideMe"));
    open(L"text");
    activate();
    SetFocus(windowOf(form->cmdCancel));
    key(VK_SPACE);
    EXPECT_THAT(heard, ElementsAre("HideMe", "HideMe"));
    EXPECT_TRUE(form->cancelled());
}

TEST_F(FormKeys, AClickPressesAButton) {
    open(L"text");
    activate();
    SendMessageW(windowOf(form->cmdSave), BM_CLICK, 0, 0);
    EXPECT_THAT(heard, ElementsAre("HideMe"));
    EXPECT_FALSE(IsWindowVisible(window()));
}

TEST_F(FormKeys, TheFocusReturnsToItsControl) {
    open(L"text");
    activate();
    SetFocus(windowOf(form->cmdPrint));
    SetForegroundWindow(host);
    SetActiveWindow(host);
    pump();
    ASSERT_NE(GetFocus(), windowOf(form->cmdPrint));
    activate();
    EXPECT_EQ(GetFocus(), windowOf(form->cmdPrint));
    form->cmdPrint.setVisible(false);
    pump();
    SetActiveWindow(host);
    activate();
    EXPECT_EQ(GetFocus(), edit()) << "not on what is hidden now";
}

}  // namespace
