#include <algorithm>

#include "raster/Twips.h"
#include "win32/WindowTree.h"

namespace kv::win32 {

using formenv::Change;
using formenv::WidgetKind;

namespace {

constexpr WPARAM kMostLetters = 0x7FFFFFFE;

/// The system gives a closed list the height of its text and a border that it does not scale: moved down by half of
/// what is missing, the text stays level with the label beside it. Pixels.
int closedListShift(int dpi) {
    constexpr int kBorder = 4;  // pixels above and below the text
    return kBorder * (dpi - 96) / 96;
}

/// As the system's edit window can show it: each line ends in both characters, and the text does not end early.
std::wstring shownText(const formenv::TextBox& box) {
    std::wstring shown;
    shown.reserve(box.text().size());
    wchar_t before = L'\0';
    for (const wchar_t letter : box.text()) {
        if (letter == L'\n' && before == L'\r') {
            before = L'\0';
            continue;  // its line end stands already
        }
        if (box.multiLine && (letter == L'\r' || letter == L'\n'))
            shown += L"\r\n";
        else
            shown += letter == L'\0' ? L' ' : letter;
        before = box.multiLine ? letter : L'\0';
    }
    return shown;
}

}  // namespace

const std::wstring& windowTextOf(const formenv::Widget& widget) {
    if (widget.kind() == WidgetKind::TextBox)
        return static_cast<const formenv::TextBox&>(widget).text();
    // A picture has its name; a button that shows a sign instead of a text says what the sign means.
    if (widget.kind() == WidgetKind::PictureBox)
        return widget.name();
    const bool isSign = widget.kind() == WidgetKind::Button &&
                        static_cast<const formenv::Button&>(widget).glyph != formenv::Glyph::None;
    return isSign && widget.caption().empty() ? widget.toolTip() : widget.caption();
}

WidgetWindow::WidgetWindow(WindowTree& tree, formenv::Widget& widget, HWND window)
    : tree_(tree), widget_(widget), window_(window), speech_(widget) {
    widget_.setPeer(this);
    if (widget_.kind() == WidgetKind::PictureBox)
        static_cast<formenv::PictureBox&>(widget_).shown();
    const WPARAM font = reinterpret_cast<WPARAM>(tree_.platform().fonts().get(widget_.font(), tree_.dpi()));
    SendMessageW(window_, WM_SETFONT, font, FALSE);
    if (widget_.kind() == WidgetKind::ComboBox) {
        place();
        fillItems();
    }
    if (widget_.kind() == WidgetKind::CheckBox)
        changed(Change::Value);
    if (widget_.kind() == WidgetKind::TextBox) {
        SendMessageW(window_, EM_SETLIMITTEXT, kMostLetters, 0);
        changed(Change::Text);
        changed(Change::Locked);
    }
    if (!widget_.enabled())
        changed(Change::Enabled);
    if (!widget_.toolTip().empty())
        changed(Change::ToolTip);
}

WidgetWindow::~WidgetWindow() {
    widget_.setPeer(nullptr);
}

void WidgetWindow::changed(Change what) {
    switch (what) {
        case Change::Place:
            place();
            break;
        case Change::Visible:
        case Change::Caption:
            // Both change with every channel while a host loads: the window follows once, when events run again.
            if (!stale_) {
                stale_ = true;
                tree_.noteStale(*this);
            }
            break;
        case Change::Enabled:
            EnableWindow(window_, widget_.enabled());
            break;
        case Change::Items:
            fillItems();
            break;
        case Change::Value:
            if (widget_.kind() == WidgetKind::CheckBox)
                SendMessageW(window_, BM_SETCHECK,
                             static_cast<WPARAM>(static_cast<formenv::CheckBox&>(widget_).value()), 0);
            else if (widget_.kind() == WidgetKind::ComboBox)
                SendMessageW(window_, CB_SETCURSEL,
                             static_cast<WPARAM>(static_cast<formenv::ComboBox&>(widget_).listIndex()), 0);
            break;
        case Change::Font:
            SendMessageW(window_, WM_SETFONT,
                         reinterpret_cast<WPARAM>(tree_.platform().fonts().get(widget_.font(), tree_.dpi())), TRUE);
            break;
        case Change::Colors:
        case Change::Picture:
            InvalidateRect(window_, nullptr, FALSE);
            break;
        case Change::Text:
            showText();
            break;
        case Change::Locked:
            SendMessageW(window_, EM_SETREADONLY, static_cast<formenv::TextBox&>(widget_).locked(), 0);
            break;
        case Change::Spoken:
            Speech::tellValue(window_);
            break;
        case Change::Update:
            RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
            break;
        case Change::ToolTip:
            tree_.toolTips_.set(tree_.root_, window_, widget_.toolTip());
            break;
    }
}

void WidgetWindow::sync() {
    stale_ = false;
    if (widget_.kind() == WidgetKind::Frame)
        InvalidateRect(window_, nullptr, FALSE);
    if (widget_.kind() != WidgetKind::PictureBox && widget_.kind() != WidgetKind::UserControl &&
        widget_.kind() != WidgetKind::TextBox)
        SetWindowTextW(window_, windowTextOf(widget_).c_str());
    // Forms are shown and hidden at once, and by their state.
    if (widget_.kind() == WidgetKind::Form)
        return;
    const bool shown = (GetWindowLongPtrW(window_, GWL_STYLE) & WS_VISIBLE) != 0;
    if (shown != widget_.visible())
        ShowWindow(window_, widget_.visible() ? SW_SHOWNA : SW_HIDE);
}

void WidgetWindow::rescale() {
    changed(Change::Font);
    if (widget_.kind() != WidgetKind::UserControl && widget_.kind() != WidgetKind::Form)
        place();
    InvalidateRect(window_, nullptr, FALSE);
}

void WidgetWindow::place() {
    const int dpi = tree_.dpi();
    const int left = raster::twipsToPixels(widget_.left(), dpi);
    int top = raster::twipsToPixels(widget_.top(), dpi);
    const int width = raster::twipsToPixels(widget_.left() + widget_.width(), dpi) - left;
    const int height = raster::twipsToPixels(widget_.top() + widget_.height(), dpi) - top;
    if (widget_.kind() == WidgetKind::UserControl) {
        RECT now{};
        GetClientRect(window_, &now);
        if ((now.right != width || now.bottom != height) && tree_.callbacks_.resizedByControl)
            tree_.callbacks_.resizedByControl({width, height});
        return;
    }
    if (widget_.kind() == WidgetKind::Form) {
        if (tree_.callbacks_.topLevel)
            tree_.callbacks_.topLevel->placeRoot();
        return;
    }
    if (widget_.kind() == WidgetKind::ComboBox)
        top += closedListShift(dpi);
    SetWindowPos(window_, nullptr, left, top, std::max(width, 0), std::max(height, 0), SWP_NOZORDER | SWP_NOACTIVATE);
    if (widget_.kind() == WidgetKind::Frame || widget_.kind() == WidgetKind::PictureBox)
        InvalidateRect(window_, nullptr, FALSE);
}

std::wstring WidgetWindow::editedText() const {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window_)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window_, text.data(), static_cast<int>(text.size()))));
    return text;
}

/// Another text under the reader's eyes: what he has scrolled to and selected stays where it is, as far as there is
/// that much text.
void WidgetWindow::showText() {
    const auto& box = static_cast<formenv::TextBox&>(widget_);
    DWORD from = 0;
    DWORD to = 0;
    SendMessageW(window_, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    const LRESULT line = SendMessageW(window_, EM_GETFIRSTVISIBLELINE, 0, 0);
    // On a hidden window the message would show it.
    const bool shown = (GetWindowLongPtrW(window_, GWL_STYLE) & WS_VISIBLE) != 0;
    if (shown)
        SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
    filling_ = true;
    SetWindowTextW(window_, shownText(box).c_str());
    filling_ = false;
    SendMessageW(window_, EM_SETSEL, from, static_cast<LPARAM>(to));
    if (box.multiLine)
        SendMessageW(window_, EM_LINESCROLL, 0, line - SendMessageW(window_, EM_GETFIRSTVISIBLELINE, 0, 0));
    if (shown) {
        SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
        InvalidateRect(window_, nullptr, TRUE);
    }
}

void WidgetWindow::fillItems() {
    const auto& combo = static_cast<formenv::ComboBox&>(widget_);
    SendMessageW(window_, CB_RESETCONTENT, 0, 0);
    for (const std::wstring& item : combo.items())
        SendMessageW(window_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item.c_str()));
    SendMessageW(window_, CB_SETCURSEL, static_cast<WPARAM>(combo.listIndex()), 0);
}

}  // namespace kv::win32
