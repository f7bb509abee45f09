// The text in the window of a form, as the user types it and as the program sets it.
#include "tests/win32/FormFixture.h"

namespace {

using namespace kv;
using namespace kv::test;

using FormText = FormWindowTest;

TEST_F(FormText, TypedCharactersOfAnyAlphabetArrive) {
    open();
    write(L"Gr\u00F6\u00DFe \u0416\u4E2D \U0001F4FB!");
    EXPECT_EQ(form->text(), L"Gr\u00F6\u00DFe \u0416\u4E2D \U0001F4FB!");
    EXPECT_TRUE(form->changed());
    write(L"\r");
    EXPECT_EQ(form->text(), L"Gr\u00F6\u00DFe \u0416\u4E2D \U0001F4FB!\r\n");
    EXPECT_EQ(textOf(windowOf(form->lblCntChar)), L"14 chars");
}

TEST_F(FormText, LongTextsAreShownAndReadBackWithoutLoss) {
    std::wstring text;
    for (int i = 0; text.size() < 140000; ++i)
        text += L"line " + std::to_wstring(i) + L" \u0416\r\n";
    open(text);
    EXPECT_EQ(textOf(edit()), text);
    SendMessageW(edit(), EM_SETSEL, text.size(), static_cast<LPARAM>(text.size()));
    write(L"the end");
    EXPECT_EQ(form->text(), text + L"the end");
    SendMessageW(edit(), EM_SETSEL, 0, -1);
    const std::wstring pasted(45000, L'p');
    SendMessageW(edit(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(pasted.c_str()));
    EXPECT_EQ(form->text(), pasted);
}

TEST_F(FormText, OtherLineEndsAreShownAsLinesAndKept) {
    open(L"a\nb\rc\r\nd");
    EXPECT_EQ(SendMessageW(edit(), EM_GETLINECOUNT, 0, 0), 4);
    EXPECT_EQ(form->text(), L"a\nb\rc\r\nd");
    EXPECT_FALSE(form->changed());
    form->setText(std::wstring(L"x\0y", 3));
    EXPECT_EQ(textOf(edit()), L"x y");
}

TEST_F(FormText, ARefreshKeepsScrollingAndSelection) {
    std::wstring text;
    for (int i = 0; i < 200; ++i)
        text += L"line " + std::to_wstring(i) + L"\r\n";
    open(text, true);
    SendMessageW(edit(), EM_SETSEL, 500, 520);
    SendMessageW(edit(), EM_LINESCROLL, 0, 60 - SendMessageW(edit(), EM_GETFIRSTVISIBLELINE, 0, 0));
    ASSERT_EQ(SendMessageW(edit(), EM_GETFIRSTVISIBLELINE, 0, 0), 60);
    form->setText(text + L"one more");
    EXPECT_EQ(SendMessageW(edit(), EM_GETFIRSTVISIBLELINE, 0, 0), 60);
    DWORD from = 0;
    DWORD to = 0;
    SendMessageW(edit(), EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    EXPECT_EQ(from, 500U);
    EXPECT_EQ(to, 520U);
    EXPECT_TRUE(IsWindowVisible(edit()));
    form->setText(L"short");
    EXPECT_EQ(SendMessageW(edit(), EM_GETFIRSTVISIBLELINE, 0, 0), 0);
    EXPECT_EQ(textOf(edit()), L"short");
}

TEST_F(FormText, ARefreshShowsNoHiddenWindow) {
    open(L"a");
    form->txtEdit.setVisible(false);
    pump();
    form->setText(L"b");
    EXPECT_FALSE(IsWindowVisible(edit()));
}

TEST_F(FormText, ALockedTextIsReadAndCopiedButNotEdited) {
    open(L"locked text", true);
    activate();
    SetFocus(edit());
    write(L"x");
    key(VK_DELETE);
    SendMessageW(edit(), WM_PASTE, 0, 0);
    EXPECT_EQ(form->text(), L"locked text");
    EXPECT_EQ(textOf(edit()), L"locked text");
    SendMessageW(edit(), EM_SETSEL, 0, 6);
    DWORD to = 0;
    SendMessageW(edit(), EM_GETSEL, 0, reinterpret_cast<LPARAM>(&to));
    EXPECT_EQ(to, 6U);
    form->txtEdit.setLocked(false);
    write(L"un");
    EXPECT_EQ(form->text(), L"un text");
}

}  // namespace
