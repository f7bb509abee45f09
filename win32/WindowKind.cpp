#include "win32/WindowKind.h"

#include <algorithm>

#include "raster/Twips.h"
#include "win32/KnobWindow.h"
#include "win32/WidgetWindow.h"
#include "win32/WindowKinds.h"

namespace kv::win32 {

using formenv::Widget;
using formenv::WidgetKind;

const WindowKind& windowKind(const Widget& widget) noexcept {
    switch (widget.kind()) {
        case WidgetKind::UserControl:
            return userControlKind();
        case WidgetKind::Form:
            return formKind();
        case WidgetKind::Frame:
            return frameKind();
        case WidgetKind::PictureBox:
            return pictureKind();
        case WidgetKind::Label:
            return labelKind();
        case WidgetKind::Button:
            return buttonKind();
        case WidgetKind::CheckBox:
            return checkBoxKind();
        case WidgetKind::ComboBox:
            return comboBoxKind();
        case WidgetKind::TextBox:
            return textBoxKind();
        case WidgetKind::Custom:
            break;
    }
    return knobKind();
}

WindowClass WindowKind::windowClass(const Widget& /*widget*/) const {
    return {};
}

const std::wstring& WindowKind::windowText(const Widget& widget) const {
    return widget.caption();
}

std::unique_ptr<KnobWindow> WindowKind::createKnob(Widget& /*widget*/, WinPlatform& /*platform*/, HWND /*parent*/,
                                                   IUnknown* /*owner*/) const {
    return nullptr;
}

void WindowKind::initialize(WidgetWindow& /*window*/) const {}

void WindowKind::changed(WidgetWindow& /*window*/, formenv::Change /*what*/) const {}

void WindowKind::sync(WidgetWindow& window) const {
    syncText(window);
    syncVisible(window);
}

void WindowKind::place(WidgetWindow& window, RECT place) const {
    SetWindowPos(window.window(), nullptr, place.left, place.top, std::max(place.right - place.left, 0L),
                 std::max(place.bottom - place.top, 0L), SWP_NOZORDER | SWP_NOACTIVATE);
}

void WindowKind::rescaled(Widget& /*widget*/) const {}

void WindowKind::paint(Widget& /*widget*/, HDC /*dc*/, RECT /*bounds*/, WinPlatform& /*platform*/) const {}

void WindowKind::drawItem(const Widget& /*widget*/, const DRAWITEMSTRUCT& /*item*/, WinPlatform& /*platform*/) const {}

bool WindowKind::focusShownAround(const Widget& /*widget*/) const {
    return false;
}

void WindowKind::command(WidgetWindow& /*window*/, UINT /*code*/) const {}

MousePosition WindowKind::mousePosition(const Widget& /*widget*/, POINT pixel, int dpi) const {
    return {raster::pixelsToTwips(pixel.x, dpi), raster::pixelsToTwips(pixel.y, dpi)};
}

bool WindowKind::insertsTab(const Widget& /*widget*/) const {
    return false;
}

void WindowKind::pressed(HWND /*window*/) const {}

std::optional<LONG> WindowKind::role(const Widget& /*widget*/) const {
    return std::nullopt;
}

const std::wstring& WindowKind::accessibleName(const Widget& widget) const {
    return widget.caption();
}

std::optional<std::wstring> WindowKind::value(const Widget& /*widget*/) const {
    return std::nullopt;
}

bool WindowKind::takesFocus(const Widget& widget) const {
    return widget.takesFocus;
}

void WindowKind::syncText(WidgetWindow& window) {
    SetWindowTextW(window.window(), window.kind().windowText(window.widget()).c_str());
}

void WindowKind::syncVisible(WidgetWindow& window) {
    const bool shown = (GetWindowLongPtrW(window.window(), GWL_STYLE) & WS_VISIBLE) != 0;
    const bool visible = window.widget().visible();
    if (shown != visible)
        ShowWindow(window.window(), visible ? SW_SHOWNA : SW_HIDE);
}

void WindowKind::click(const Widget& widget) {
    if (const formenv::Handler handler = widget.onClick)
        handler();
}

}  // namespace kv::win32
