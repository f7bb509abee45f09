// The window of a form: its position, creation and destruction.
#include "tests/win32/FormFixture.h"

namespace {

using namespace kv;
using namespace kv::test;
using testing::ElementsAre;
using testing::IsEmpty;

using FormWindow = FormWindowTest;

TEST_F(FormWindow, ShowsWithoutTakingTheFocus) {
    SetForegroundWindow(host);
    SetFocus(host);
    pump();
    open(L"text");
    EXPECT_TRUE(IsWindowVisible(window()));
    EXPECT_EQ(GetFocus(), host);
    EXPECT_EQ(GetActiveWindow(), host);
    EXPECT_EQ(classOf(window()), L"kvForm");
    EXPECT_EQ(textOf(window()), L"Notes");
    EXPECT_EQ(GetWindow(window(), GW_OWNER), host);
    EXPECT_TRUE(GetWindowLongW(window(), GWL_STYLE) & WS_THICKFRAME);
}

TEST_F(FormWindow, IsOwnedByTheTopLevelWindowOfTheControl) {
    const HWND control = CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 10, 10, host, nullptr, nullptr, nullptr);
    platform.setOwner(control);
    open();
    EXPECT_EQ(GetWindow(window(), GW_OWNER), host);
}

TEST_F(FormWindow, HasNoOwnerWithoutAControlsWindow) {
    platform.setOwner(nullptr);
    open();
    EXPECT_TRUE(IsWindowVisible(window()));
    EXPECT_EQ(GetWindow(window(), GW_OWNER), nullptr);
}

TEST_F(FormWindow, ItsControlsAreRealWindows) {
    open(L"text");
    EXPECT_EQ(classOf(edit()), L"Edit");
    EXPECT_EQ(textOf(edit()), L"text");
    EXPECT_EQ(textOf(windowOf(form->cmdSave)), L"&Save");
    EXPECT_EQ(textOf(windowOf(form->chkEnabled)), L"Editing Enabled");
    EXPECT_EQ(textOf(windowOf(form->lblCntChar)), L"4 chars");
    const LONG style = GetWindowLongW(edit(), GWL_STYLE);
    EXPECT_TRUE(style & ES_MULTILINE);
    EXPECT_TRUE(style & WS_VSCROLL);
    EXPECT_FALSE(style & (WS_HSCROLL | ES_AUTOHSCROLL)) << "words wrap";
}

TEST_F(FormWindow, HiddenControlsAreNotShown) {
    form->InitForm(L"Mouse Information", L"Close", false, false, false, L"", true, L"");
    form->Show();
    pump();
    EXPECT_TRUE(IsWindowVisible(windowOf(form->cmdSave)));
    EXPECT_TRUE(IsWindowVisible(windowOf(form->cmdPrint)));
    EXPECT_FALSE(IsWindowVisible(windowOf(form->cmdCancel)));
    EXPECT_FALSE(IsWindowVisible(windowOf(form->chkEnabled)));
    EXPECT_FALSE(IsWindowVisible(windowOf(form->lblCntChar)));
    EXPECT_EQ(textOf(windowOf(form->cmdSave)), L"Close");
}

TEST_F(FormWindow, TheControlsFollowTheWindowsSize) {
    open(L"text");
    RECT before{};
    GetWindowRect(edit(), &before);
    SetWindowPos(window(), nullptr, 0, 0, 760, 560, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    pump();
    RECT client{};
    RECT text{};
    RECT save{};
    GetClientRect(window(), &client);
    GetWindowRect(edit(), &text);
    GetWindowRect(windowOf(form->cmdSave), &save);
    MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&text), 2);
    MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&save), 2);
    EXPECT_EQ(text.left, 8);
    EXPECT_EQ(text.top, 8);
    EXPECT_EQ(client.right - text.right, 8);
    EXPECT_EQ(save.top - text.bottom, 8);
    EXPECT_EQ(client.bottom - save.bottom, 8);
    EXPECT_GT(text.right, before.right - before.left);
    EXPECT_EQ(form->form().width(), 760 * 15.0);
    EXPECT_EQ(form->form().height(), 560 * 15.0);
}

TEST_F(FormWindow, CannotBeMadeSmallerThanItsControls) {
    open(L"text");
    SetWindowPos(window(), nullptr, 0, 0, 10, 10, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    pump();
    RECT client{};
    RECT label{};
    GetClientRect(window(), &client);
    GetWindowRect(windowOf(form->lblCntChar), &label);
    MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&label), 2);
    EXPECT_LE(label.right, client.right);
    EXPECT_GE(label.top, 8);
    EXPECT_LE(label.bottom, client.bottom);
}

TEST_F(FormWindow, UserAndProgramCanMoveIt) {
    open(L"text");
    SetWindowPos(window(), nullptr, 200, 150, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    pump();
    EXPECT_EQ(form->form().left(), 3000.0);
    EXPECT_EQ(form->form().top(), 2250.0);
    // A position that is not in whole pixels is kept as it was set.
    form->form().move({1501.0, 1502.0, 9001.0, 6002.0});
    pump();
    RECT place{};
    GetWindowRect(window(), &place);
    EXPECT_EQ(place.left, 100);
    EXPECT_EQ(place.right, 700);
    EXPECT_EQ(form->form().left(), 1501.0);
}

TEST_F(FormWindow, MinimizeMaximizeAndRestoreKeepThePosition) {
    open(L"text");
    form->form().move({1500.0, 1500.0, 9000.0, 6000.0});
    const formenv::Place place = form->form().place();
    const double normalWidth = form->form().scaleWidth();
    ShowWindow(window(), SW_MAXIMIZE);
    pump();
    EXPECT_EQ(form->form().windowState(), formenv::WindowState::Maximized);
    EXPECT_EQ(form->form().place(), place);
    RECT client{};
    GetClientRect(window(), &client);
    EXPECT_EQ(form->form().scaleWidth(), client.right * 15.0);
    EXPECT_GT(form->form().scaleWidth(), normalWidth);
    ShowWindow(window(), SW_MINIMIZE);
    pump();
    EXPECT_EQ(form->form().windowState(), formenv::WindowState::Minimized);
    EXPECT_EQ(form->form().place(), place);
    EXPECT_GT(form->txtEdit.height(), 0.0);
    ShowWindow(window(), SW_RESTORE);
    pump();
    ShowWindow(window(), SW_SHOWNORMAL);
    pump();
    EXPECT_EQ(form->form().windowState(), formenv::WindowState::Normal);
    EXPECT_EQ(form->form().place(), place);
    SendMessageW(window(), WM_CLOSE, 0, 0);
    EXPECT_EQ(files.settings[L"NotesLeft"], L"1500");
    EXPECT_EQ(files.settings[L"NotesWidth"], L"9000");
}

TEST_F(FormWindow, ComesBackMaximizedWithoutTakingTheFocus) {
    files.settings = {{L"NotesLeft", L"1500"},
                      {L"NotesTop", L"1500"},
                      {L"NotesWidth", L"9000"},
                      {L"NotesHeight", L"6000"},
                      {L"NotesWindowState", L"2"}};
    SetForegroundWindow(host);
    SetFocus(host);
    pump();
    open(L"text");
    EXPECT_TRUE(IsZoomed(window()));
    EXPECT_EQ(GetFocus(), host);
    EXPECT_EQ(form->form().windowState(), formenv::WindowState::Maximized);
    EXPECT_EQ(form->form().place(), (formenv::Place{1500.0, 1500.0, 9000.0, 6000.0}));
    form->form().setWindowState(formenv::WindowState::Normal);
    pump();
    RECT place{};
    GetWindowRect(window(), &place);
    EXPECT_EQ(place.left, 100);
    EXPECT_EQ(place.right, 700);
}

TEST_F(FormWindow, ClosingUnloadsTheFormAndDestroysTheWindow) {
    open(L"text");
    const HWND gone = window();
    PostMessageW(gone, WM_CLOSE, 0, 0);
    pump();
    EXPECT_FALSE(IsWindow(gone));
    EXPECT_THAT(heard, ElementsAre("Unload"));
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(form->form().hWnd(), 0);
    EXPECT_EQ(form->text(), L"text");
    form->Show();
    EXPECT_TRUE(IsWindowVisible(window()));
    EXPECT_EQ(textOf(edit()), L"text");
}

TEST_F(FormWindow, ClosingIsRefusedByTheUsersAnswer) {
    open(L"text");
    activate();
    write(L"more ");
    answerWith(IDNO);
    SendMessageW(window(), WM_CLOSE, 0, 0);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(boxOwner, window()) << "before the form";
    EXPECT_EQ(boxTitle, L"Abandon Changes?");
    EXPECT_EQ(focusedAnswer, IDNO) << "the default answer";
    EXPECT_TRUE(IsWindowVisible(window()));
    EXPECT_TRUE(IsWindowEnabled(window()));
    EXPECT_EQ(form->text(), L"more text");
    EXPECT_THAT(heard, IsEmpty());
    answer = IDYES;
    box = nullptr;
    SendMessageW(window(), WM_CLOSE, 0, 0);
    EXPECT_EQ(asked, 2);
    EXPECT_THAT(heard, ElementsAre("Unload"));
    EXPECT_TRUE(form->cancelled());
}

TEST_F(FormWindow, TheEndOfTheSessionShowsNoQuestion) {
    open(L"text");
    write(L"more");
    answerWith(IDNO);
    EXPECT_TRUE(SendMessageW(window(), WM_QUERYENDSESSION, 0, 0));
    EXPECT_EQ(asked, 0);
    EXPECT_TRUE(form->isVisible());
}

TEST_F(FormWindow, TheOwnersDestructionDestroysItWithoutAQuestion) {
    open(L"text");
    write(L"more");
    answerWith(IDNO);
    const HWND gone = window();
    DestroyWindow(host);
    EXPECT_FALSE(IsWindow(gone));
    EXPECT_EQ(asked, 0);
    EXPECT_THAT(heard, ElementsAre("Unload"));
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(form->form().hWnd(), 0);
    EXPECT_EQ(form->text(), L"moretext");
    EXPECT_NE(files.settings.count(L"NotesLeft"), 0U);
    platform.setOwner(nullptr);
    form->Show();
    EXPECT_TRUE(IsWindowVisible(window()));
}

TEST_F(FormWindow, TheOwnerCanBeDestroyedDuringTheQuestion) {
    open(L"text");
    activate();
    write(L"more");
    answerWith(IDYES);
    whileAsking = [this] { PostMessageW(host, WM_CLOSE, 0, 0); };
    SendMessageW(window(), WM_CLOSE, 0, 0);
    pump();
    EXPECT_THAT(heard, ElementsAre("Unload"));
    EXPECT_FALSE(form->isVisible());
}

TEST_F(FormWindow, TheHandlerOfAMessageMayDestroyTheForm) {
    const std::vector<std::function<void()>> ways{
        [this] { SendMessageW(window(), WM_CLOSE, 0, 0); },
        [this] { SendMessageW(edit(), WM_KEYDOWN, VK_ESCAPE, 1); },
        [this] { SendMessageW(windowOf(form->cmdSave), WM_SYSCHAR, 's', 0x20000001); },
        [this] { SendMessageW(windowOf(form->cmdSave), BM_CLICK, 0, 0); },
        [this] { SendMessageW(windowOf(form->cmdSave), WM_KEYDOWN, VK_RETURN, 1); },
        [this] { DestroyWindow(host); }};
    for (const auto& way : ways) {
        form = std::make_unique<forms::frmTextEditor>(platform, files, errors);
        open(L"text");
        activate();
        const HWND gone = window();
        form->onHideMe = [this] { form.reset(); };
        form->onUnload = [this] { form.reset(); };
        way();
        pump();
        EXPECT_FALSE(form);
        EXPECT_FALSE(IsWindow(gone));
    }
}

TEST_F(FormWindow, TheOwnerObjectIsHeldDuringAMessageAndReleasedAfterIt) {
    open(L"text");
    activate();
    bool during = true;
    form->onHideMe = [&] {
        // The host releases the control in its own handler.
        keeper.Release();
        EXPECT_GE(keeper.count, 1U) << "held by the message";
        during = false;
    };
    keeper.onLast = [&] {
        EXPECT_FALSE(during);
        keeper.count = 1;  // as a control in its destructor
        form.reset();
    };
    const HWND gone = window();
    SendMessageW(edit(), WM_KEYDOWN, VK_ESCAPE, 1);
    EXPECT_FALSE(form);
    EXPECT_FALSE(IsWindow(gone));
}

TEST_F(FormWindow, LeavesNoWindowsAndNoHandlesBehind) {
    const auto cycle = [this] {
        form = std::make_unique<forms::frmTextEditor>(platform, files, errors);
        open(L"text");
        write(L"x");
        form.reset();
        pump();
    };
    cycle();
    cycle();
    const DWORD user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    const DWORD gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    for (int i = 0; i < 20; ++i)
        cycle();
    EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), user + 2);
    EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), gdi + 2);
    EXPECT_FALSE(FindWindowExW(nullptr, nullptr, L"kvForm", nullptr));
}

TEST(StartProgram, StartsAProgramAndReportsAMissingOne) {
    win32::WinPlatform platform;
    try {
        platform.startProgram(L"C:\\no\\such\\viewer.exe a.txt");
        ADD_FAILURE() << "started";
    } catch (const util::RuntimeError& error) {
        EXPECT_EQ(error.number(), 53);
    }
    wchar_t temp[MAX_PATH + 1] = L"";
    GetTempPathW(MAX_PATH + 1, temp);
    const std::wstring mark = temp + std::wstring(L"kvStarted") + std::to_wstring(GetCurrentProcessId());
    platform.startProgram(L"cmd /c mkdir \"" + mark + L"\"");
    EXPECT_TRUE(waitFor([&] { return GetFileAttributesW(mark.c_str()) != INVALID_FILE_ATTRIBUTES; }));
    RemoveDirectoryW(mark.c_str());
}

/// The current folder for the time of a test.
class CurrentFolder {
  public:
    explicit CurrentFolder(const std::wstring& folder) {
        GetCurrentDirectoryW(MAX_PATH, before_);
        SetCurrentDirectoryW(folder.c_str());
    }
    ~CurrentFolder() { SetCurrentDirectoryW(before_); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

  private:
    wchar_t before_[MAX_PATH] = L"";
};

TEST(StartProgram, TakesAProgramWithoutAFolderFromTheSystemsFolderOnly) {
    win32::WinPlatform platform;
    wchar_t temp[MAX_PATH + 1] = L"";
    GetTempPathW(MAX_PATH + 1, temp);
    const std::wstring folder = temp + std::wstring(L"kvCurrent") + std::to_wstring(GetCurrentProcessId());
    ASSERT_TRUE(CreateDirectoryW(folder.c_str(), nullptr));
    const std::wstring planted = folder + L"\\kvviewer.exe";
    wchar_t system[MAX_PATH] = L"";
    GetSystemDirectoryW(system, MAX_PATH);
    ASSERT_TRUE(CopyFileW((system + std::wstring(L"\\cmd.exe")).c_str(), planted.c_str(), TRUE));
    {
        const CurrentFolder current(folder);
        for (const wchar_t* command : {L"kvviewer /c exit", L"kvviewer.exe /c exit", L"\"kvviewer\" /c exit"}) {
            try {
                platform.startProgram(command);
                ADD_FAILURE() << "started from the current folder";
            } catch (const util::RuntimeError& error) {
                EXPECT_EQ(error.number(), 53);
            }
        }
    }
    EXPECT_TRUE(DeleteFileW(planted.c_str()));
    EXPECT_TRUE(RemoveDirectoryW(folder.c_str()));
}

}  // namespace
