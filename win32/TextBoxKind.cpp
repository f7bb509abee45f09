#include <cstddef>
#include <cstring>

#include "win32/WidgetWindow.h"
#include "win32/WindowKinds.h"

namespace kv::win32 {

using formenv::Change;
using formenv::TextBox;
using formenv::Widget;

namespace {

constexpr WPARAM kMostCharacters = 0x7FFFFFFE;

/// The text as the system's edit window can show it: each line ends in both characters, and a null character does not
/// end the text.
std::wstring shownText(const TextBox& box) {
    std::wstring shown;
    shown.reserve(box.text().size());
    wchar_t before = L'\0';
    for (const wchar_t character : box.text()) {
        if (character == L'\n' && before == L'\r') {
            before = L'\0';
            continue;  // the line end is already complete
        }
        if (box.multiLine && (character == L'\r' || character == L'\n'))
            shown += L"\r\n";
        else
            shown += character == L'\0' ? L' ' : character;
        before = box.multiLine ? character : L'\0';
    }
    return shown;
}

std::wstring editedText(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

/// Gives a window for several lines another buffer. Setting its text would first move the caret through the whole text,
/// which costs a third of the time. False if the window keeps its text, because it has no buffer or memory is short.
bool replaceBuffer(HWND window, const std::wstring& text) {
    const auto before = reinterpret_cast<HLOCAL>(SendMessageW(window, EM_GETHANDLE, 0, 0));
    const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    const HLOCAL buffer = before ? LocalAlloc(LMEM_MOVEABLE, bytes) : nullptr;
    void* const to = buffer ? LocalLock(buffer) : nullptr;
    if (!to) {
        LocalFree(buffer);
        return false;
    }
    std::memcpy(to, text.c_str(), bytes);
    LocalUnlock(buffer);
    SendMessageW(window, EM_SETHANDLE, reinterpret_cast<WPARAM>(buffer), 0);
    LocalFree(before);
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, window, OBJID_CLIENT, CHILDID_SELF);
    return true;
}

class TextBoxKind final : public WindowKindOf<TextBox> {
  public:
    [[nodiscard]] WindowClass windowClass(const Widget& widget) const override {
        const DWORD lines = of(widget).multiLine ? ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | WS_VSCROLL
                                                 : static_cast<DWORD>(ES_AUTOHSCROLL);
        return {L"EDIT", lines | WS_TABSTOP, WS_EX_CLIENTEDGE};
    }
    [[nodiscard]] const std::wstring& windowText(const Widget& widget) const override { return of(widget).text(); }
    void initialize(WidgetWindow& window) const override {
        SendMessageW(window.window(), EM_SETLIMITTEXT, kMostCharacters, 0);
        showText(window);
        showLocked(window);
    }
    void changed(WidgetWindow& window, Change what) const override {
        if (what == Change::Text)
            showText(window);
        else if (what == Change::Locked)
            showLocked(window);
    }
    void sync(WidgetWindow& window) const override { syncVisible(window); }
    void command(WidgetWindow& window, UINT code) const override {
        if (code == EN_CHANGE && !window.filling())
            of(window.widget()).typed(editedText(window.window()));
    }
    [[nodiscard]] bool isTabStop() const noexcept override { return true; }
    [[nodiscard]] bool isText() const noexcept override { return true; }
    [[nodiscard]] bool insertsTab(const Widget& widget) const override {
        return of(widget).multiLine && !of(widget).locked();
    }

  private:
    static void showLocked(WidgetWindow& window) {
        SendMessageW(window.window(), EM_SETREADONLY, of(window.widget()).locked(), 0);
    }
    static void showText(WidgetWindow& target);
};

/// Replaces the text. The scroll position and the selection stay where they are, as far as the new text is long enough.
void TextBoxKind::showText(WidgetWindow& target) {
    const TextBox& box = of(target.widget());
    const HWND window = target.window();
    DWORD from = 0;
    DWORD to = 0;
    SendMessageW(window, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    const LRESULT line = SendMessageW(window, EM_GETFIRSTVISIBLELINE, 0, 0);
    const std::wstring text = shownText(box);
    // WM_SETREDRAW would show a hidden window.
    const bool shown = (GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0;
    if (shown)
        SendMessageW(window, WM_SETREDRAW, FALSE, 0);
    target.setFilling(true);
    if (!box.multiLine || !replaceBuffer(window, text))
        SetWindowTextW(window, text.c_str());
    target.setFilling(false);
    SendMessageW(window, EM_SETSEL, from, static_cast<LPARAM>(to));
    if (box.multiLine)
        SendMessageW(window, EM_LINESCROLL, 0, line - SendMessageW(window, EM_GETFIRSTVISIBLELINE, 0, 0));
    if (shown) {
        SendMessageW(window, WM_SETREDRAW, TRUE, 0);
        InvalidateRect(window, nullptr, TRUE);
    }
}

}  // namespace

const WindowKind& textBoxKind() noexcept {
    static const TextBoxKind kind;
    return kind;
}

}  // namespace kv::win32
