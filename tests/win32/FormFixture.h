// The text editor in its real window, in front of a host's window, with functions that operate it.
#pragma once

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

namespace kv::test {

inline std::wstring textOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

inline std::wstring classOf(HWND window) {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    return name;
}

/// Processes all posted messages, like a simple message loop.
inline void pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

/// Processes messages until a condition is true, for two seconds at most.
inline bool waitFor(const std::function<bool()>& happened) {
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
    bool fileExists(const std::wstring&) override { return false; }
    void clearClipboard() override {}
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
    std::wstring printFolder() override { return L"C:\\nowhere"; }
    std::wstring placementFile() override { return L"C:\\places.ini"; }
    std::map<std::wstring, std::wstring> settings;
    std::string written;
};

class EditorWindowErrors final : public util::ErrorReporter {
  public:
    void ErrHand(std::int16_t flag, std::wstring_view sProc, std::wstring_view,
                 const util::RuntimeError& error) noexcept override {
        ADD_FAILURE() << "error " << error.number() << " in " << testing::PrintToString(sProc) << ", flag " << flag;
    }
};

/// Counts references like the control that owns a form.
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

class FormWindowTest : public testing::Test {
  protected:
    FormWindowTest() {
        platform.setOwner(host);
        platform.setKeeper(&keeper);
        form = std::make_unique<forms::frmTextEditor>(platform, files, errors);
        form->onHideMe = [this] { heard.emplace_back("HideMe"); };
        form->onUnload = [this] { heard.emplace_back("Unload"); };
    }
    ~FormWindowTest() override {
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
    /// Closes the next message box and records its owner.
    void answerWith(int id) {
        answer = id;
        asked = 0;
        active = this;
        hook = SetWindowsHookExW(WH_CBT, &FormWindowTest::boxes, nullptr, GetCurrentThreadId());
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
            ++active->asked;
            if (active->whileAsking)
                active->whileAsking();
            PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(active->answer), 0);
        }
        // The last of them is the one that Enter would give.
        if (code == HCBT_SETFOCUS && classOf(GetParent(box)) == L"#32770")
            active->focusedAnswer = GetDlgCtrlID(box);
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

    inline static FormWindowTest* active = nullptr;
    HHOOK hook = nullptr;
    int answer = IDNO;
    int asked = 0;
    HWND box = nullptr;
    HWND boxOwner = nullptr;
    std::wstring boxTitle;
    int focusedAnswer = 0;
    std::function<void()> whileAsking;
};

}  // namespace kv::test
