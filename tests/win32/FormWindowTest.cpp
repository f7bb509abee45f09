// The text editor in its real window: what the system and the user's messages do to it.
#include "win32/FormWindow.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "forms/frmTextEditor.h"
#include "util/RuntimeError.h"
#include "win32/WinPlatform.h"
#include "win32/WindowTree.h"

namespace {

using namespace kv;
using testing::ElementsAre;
using testing::IsEmpty;

std::wstring textOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

std::wstring classOf(HWND window) {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    return name;
}

/// Lets everything that was posted happen, as a program's plain message loop does.
void pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

/// Keeps messages about and lets time pass until something has happened, at most two seconds.
bool waitFor(const std::function<bool()>& happened) {
    for (int i = 0; i < 200 && !happened(); ++i) {
        pump();
        Sleep(10);
    }
    return happened();
}

class EditorWindowFiles final : public formenv::FileServices {
  public:
    std::wstring scratchFolder() override { return {}; }
    void writeFile(const std::wstring&, const std::string& bytes) override { written = bytes; }
    void deleteFile(const std::wstring&) noexcept override {}
    void bitmapFileToClipboard(const std::wstring&) override {}
    std::optional<std::wstring> readSetting(const std::wstring& key, const std::wstring&,
                                            const std::wstring&) override {
        const auto found = settings.find(key);
        return found == settings.end() ? std::nullopt : std::optional(found->second);
    }
    void writeSetting(const std::wstring& key, const std::wstring&, const std::wstring&,
                      const std::wstring& value) override {
        settings[key] = value;
    }
    std::wstring workFolder() override { return L"C:\\nowhere"; }
    std::wstring placementFile() override { return L"C:\\places.ini"; }
    std::map<std::wstring, std::wstring> settings;
    std::string written;
};

class EditorWindowErrors final : public util::ErrorReporter {
  public:
    void ErrHand(std::int16_t flag, const std::wstring& sProc, const std::wstring&,
                 const util::RuntimeError& error) noexcept override {
        ADD_FAILURE() << "error " << error.number() << " in " << testing::PrintToString(sProc) << ", flag " << flag;
    }
};

/// Counts like the control that owns a form.
class Keeper final : public IUnknown {
  public:
    STDMETHODIMP QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++count; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --count;
        if (left == 0 && onLast)
            std::exchange(onLast, nullptr)();
        return left;
    }
    ULONG count = 1;
    std::function<void()> onLast;
};

/// Presses a key for GetKeyState on this thread.
class HeldKey {
  public:
    explicit HeldKey(BYTE key) : key_(key) { set(0x80); }
    ~HeldKey() { set(0); }
    HeldKey(const HeldKey&) = delete;
    HeldKey& operator=(const HeldKey&) = delete;

  private:
    void set(BYTE value) const {
        BYTE keys[256] = {};
        GetKeyboardState(keys);
        keys[key_] = value;
        SetKeyboardState(keys);
    }
    BYTE key_;
};

class FormWindow : public testing::Test {
  protected:
    FormWindow() {
        platform.setOwner(host);
        platform.setKeeper(&keeper);
        form = std::make_unique<forms::frmTextEditor>(platform, files, errors);
        form->onHideMe = [this] { heard.emplace_back("HideMe"); };
        form->onUnload = [this] { heard.emplace_back("Unload"); };
    }
    ~FormWindow() override {
        form.reset();
        if (IsWindow(host))
            DestroyWindow(host);
        pump();
        EXPECT_EQ(keeper.count, 1U) << "held more often than let go";
    }

    void open(const std::wstring& text = L"", bool locked = false, const std::wstring& save = L"&Save") {
        form->InitForm(L"Notes", save, true, true, true, text, locked, L"C:\\x.ini");
        form->Show();
        pump();
    }
    [[nodiscard]] HWND window() const { return reinterpret_cast<HWND>(form->form().hWnd()); }
    [[nodiscard]] static HWND windowOf(const formenv::Widget& widget) {
        auto* peer = dynamic_cast<win32::WidgetWindow*>(widget.peer());
        return peer ? peer->window() : nullptr;
    }
    [[nodiscard]] HWND edit() const { return windowOf(form->txtEdit); }
    void activate() {
        SetForegroundWindow(window());
        SetActiveWindow(window());
        pump();
    }
    static void key(WPARAM code) {
        PostMessageW(GetFocus(), WM_KEYDOWN, code, 1);
        PostMessageW(GetFocus(), WM_KEYUP, code, 0xC0000001);
        pump();
    }
    static void alt(wchar_t letter) {
        PostMessageW(GetFocus(), WM_SYSCHAR, letter, 0x20000001);
        pump();
    }
    void write(const std::wstring& text) const {
        for (const wchar_t letter : text)
            PostMessageW(edit(), WM_CHAR, letter, 1);
        pump();
    }
    /// Answers the next message box and notes who owned it.
    void answerWith(int id) {
        answer = id;
        asked = 0;
        active = this;
        hook = SetWindowsHookExW(WH_CBT, &FormWindow::boxes, nullptr, GetCurrentThreadId());
    }
    void TearDown() override {
        if (hook)
            UnhookWindowsHookEx(hook);
        active = nullptr;
    }
    static LRESULT CALLBACK boxes(int code, WPARAM wParam, LPARAM lParam) {
        const auto box = reinterpret_cast<HWND>(wParam);
        if (code == HCBT_ACTIVATE && classOf(box) == L"#32770" && active->box != box) {
            active->box = box;
            active->boxOwner = GetWindow(box, GW_OWNER);
            active->boxTitle = textOf(box);
            active->focusedAnswer = GetDlgCtrlID(GetFocus());
            ++active->asked;
            if (active->whileAsking)
                active->whileAsking();
            PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(active->answer), 0);
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    HWND host = CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 40, 40, 500, 400, nullptr,
                                nullptr, nullptr, nullptr);
    Keeper keeper;
    win32::WinPlatform platform;
    EditorWindowFiles files;
    EditorWindowErrors errors;
    std::unique_ptr<forms::frmTextEditor> form;
    std::vector<std::string> heard;

    inline static FormWindow* active = nullptr;
    HHOOK hook = nullptr;
    int answer = IDNO;
    int asked = 0;
    HWND box = nullptr;
    HWND boxOwner = nullptr;
    std::wstring boxTitle;
    int focusedAnswer = 0;
    std::function<void()> whileAsking;
};

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

TEST_F(FormWindow, TypedTextOfAnyLettersArrives) {
    open();
    write(L"Gr\u00F6\u00DFe \u0416\u4E2D \U0001F4FB!");
    EXPECT_EQ(form->text(), L"Gr\u00F6\u00DFe \u0416\u4E2D \U0001F4FB!");
    EXPECT_TRUE(form->changed());
    write(L"\r");
    EXPECT_EQ(form->text(), L"Gr\u00F6\u00DFe \u0416\u4E2D \U0001F4FB!\r\n");
    EXPECT_EQ(textOf(windowOf(form->lblCntChar)), L"14 chars");
}

TEST_F(FormWindow, LongTextsPassBothWaysWithoutLoss) {
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

TEST_F(FormWindow, LinesEndingOtherwiseAreShownAsLinesAndKeptAsTheyAre) {
    open(L"a\nb\rc\r\nd");
    EXPECT_EQ(SendMessageW(edit(), EM_GETLINECOUNT, 0, 0), 4);
    EXPECT_EQ(form->text(), L"a\nb\rc\r\nd");
    EXPECT_FALSE(form->changed());
    form->setText(std::wstring(L"x\0y", 3));
    EXPECT_EQ(textOf(edit()), L"x y");
}

TEST_F(FormWindow, ARefreshKeepsScrollingAndSelection) {
    std::wstring text;
    for (int i = 0; i < 200; ++i)
        text += L"line " + std::to_wstring(i) + L"\r\n";
    open(text, true);
    SendMessageW(edit(), EM_SETSEL, 500, 520);
    SendMessageW(edit(), EM_LINESCROLL, 0, 60);
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

TEST_F(FormWindow, ARefreshShowsNoHiddenWindow) {
    open(L"a");
    form->txtEdit.setVisible(false);
    pump();
    form->setText(L"b");
    EXPECT_FALSE(IsWindowVisible(edit()));
}

TEST_F(FormWindow, ALockedTextIsReadAndCopiedButNotEdited) {
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

TEST_F(FormWindow, CtrlASelectsAllAndCtrlCCopies) {
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
    // A display that has just started may wipe its clipboard once.
    EXPECT_TRUE(waitFor([&] {
        PostMessageW(edit(), WM_CHAR, 3, 1);
        pump();
        return clipboardText(host) == text;
    }));
    EXPECT_EQ(form->text(), text);
}

TEST_F(FormWindow, TabGoesThroughTheControlsInTheirOrder) {
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

TEST_F(FormWindow, TabPassesWhatIsHiddenOrDisabled) {
    open();
    form->cmdSave.setEnabled(false);
    form->cmdPrint.setVisible(false);
    pump();
    activate();
    SetFocus(edit());
    key(VK_TAB);
    EXPECT_EQ(GetFocus(), windowOf(form->cmdCancel));
}

TEST_F(FormWindow, CtrlTabPutsATabIntoTheText) {
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

TEST_F(FormWindow, EscapeCancelsWhereverTheFocusIs) {
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

TEST_F(FormWindow, AMessageLoopForDialogsLeavesTheKeysToTheForm) {
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

TEST_F(FormWindow, AccessKeysPressTheirButtons) {
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

TEST_F(FormWindow, EnterAndSpacePressTheButtonWithTheFocus) {
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

TEST_F(FormWindow, AClickPressesAButton) {
    open(L"text");
    activate();
    SendMessageW(windowOf(form->cmdSave), BM_CLICK, 0, 0);
    EXPECT_THAT(heard, ElementsAre("HideMe"));
    EXPECT_FALSE(IsWindowVisible(window()));
}

TEST_F(FormWindow, TheFocusComesBackWhereItWas) {
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

TEST_F(FormWindow, TheControlsFollowTheWindowsSize) {
    open(L"text");
    RECT before{};
    GetWindowRect(edit(), &before);
    SetWindowPos(window(), nullptr, 0, 0, 900, 700, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
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
    EXPECT_EQ(form->form().width(), 900 * 15.0);
    EXPECT_EQ(form->form().height(), 700 * 15.0);
}

TEST_F(FormWindow, IsNotMadeSmallerThanItsControls) {
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

TEST_F(FormWindow, MovingItIsLearntAndTheProgramsPlaceIsTaken) {
    open(L"text");
    SetWindowPos(window(), nullptr, 200, 150, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    pump();
    EXPECT_EQ(form->form().left(), 3000.0);
    EXPECT_EQ(form->form().top(), 2250.0);
    // Not in whole pixels: it stays as it was given.
    form->form().move({1501.0, 1502.0, 9001.0, 6002.0});
    pump();
    RECT place{};
    GetWindowRect(window(), &place);
    EXPECT_EQ(place.left, 100);
    EXPECT_EQ(place.right, 700);
    EXPECT_EQ(form->form().left(), 1501.0);
}

TEST_F(FormWindow, MinimiseMaximiseAndRestoreKeepThePlace) {
    open(L"text");
    form->form().move({1500.0, 1500.0, 9000.0, 6000.0});
    const formenv::Place place = form->form().place();
    ShowWindow(window(), SW_MAXIMIZE);
    pump();
    EXPECT_EQ(form->form().windowState(), formenv::WindowState::Maximized);
    EXPECT_EQ(form->form().place(), place);
    EXPECT_GT(form->form().scaleWidth(), 20000.0);
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

TEST_F(FormWindow, ClosingUnloadsAndTheWindowIsGone) {
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

TEST_F(FormWindow, TheEndOfTheSessionAsksNothing) {
    open(L"text");
    write(L"more");
    answerWith(IDNO);
    EXPECT_TRUE(SendMessageW(window(), WM_QUERYENDSESSION, 0, 0));
    EXPECT_EQ(asked, 0);
    EXPECT_TRUE(form->isVisible());
}

TEST_F(FormWindow, GoesWithItsOwnerWithoutAQuestion) {
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

TEST_F(FormWindow, TheOwnerMayGoUnderTheQuestion) {
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

TEST_F(FormWindow, TheKeeperIsHeldThroughAMessageAndGoesAfterIt) {
    open(L"text");
    activate();
    bool during = true;
    form->onHideMe = [&] {
        // The host lets go of the control in its own handler.
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

TEST(StartProgram, StartsOneAndTellsOfOneThatIsNotThere) {
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

}  // namespace
