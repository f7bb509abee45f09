// How widgets look: one way for windows and for pictures of the whole control.
#include <windows.h>

#include <uxtheme.h>
#include <vssym32.h>

#include <algorithm>

#include "raster/Twips.h"
#include "win32/DibSurface.h"
#include "win32/WindowTree.h"

namespace kv::win32 {

using formenv::Widget;
using formenv::WidgetKind;

namespace {

constexpr int kCaptionInset = 9;  // pixels at 96 dpi

void fill(HDC dc, const RECT& area, raster::Rgb color) {
    SetDCBrushColor(dc, color);
    FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void drawText(HDC dc, RECT area, const std::wstring& text, const Widget& widget, WinPlatform& platform, UINT format) {
    const Selected font(dc, platform.fonts().get(widget.font()));
    SetTextColor(dc, platform.resolve(widget.foreColor()));
    SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &area, format | DT_SINGLELINE);
}

void drawCaption(HDC dc, const RECT& area, const Widget& widget, WinPlatform& platform, UINT format) {
    const bool hasKey = widget.kind() == WidgetKind::Button || widget.kind() == WidgetKind::CheckBox;
    drawText(dc, area, widget.caption(), widget, platform, format | (hasKey ? 0U : DT_NOPREFIX));
}

/// A closed drop-down list with its chosen item, as its window shows it.
void paintComboBox(HDC dc, RECT bounds, const formenv::ComboBox& combo, WinPlatform& platform) {
    const LONG frame = 4L * platform.dpi() / 96;  // border above and below the text
    bounds.bottom = std::min(bounds.bottom, bounds.top + platform.textSize(L"X", combo.font()).height + 2 * frame);
    fill(dc, bounds, platform.resolve(combo.backColor()));
    DrawEdge(dc, &bounds, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    RECT arrow = bounds;
    arrow.left = std::max(arrow.left, arrow.right - GetSystemMetrics(SM_CXVSCROLL));
    DrawFrameControl(dc, &arrow, DFC_SCROLL, DFCS_SCROLLCOMBOBOX);
    bounds.right = arrow.left;
    bounds.left += frame / 2;
    drawText(dc, bounds, combo.text(), combo, platform, DT_LEFT | DT_VCENTER | DT_NOPREFIX);
}

RECT placeOf(const Widget& widget, POINT origin, int dpi) {
    return {origin.x + raster::twipsToPixels(widget.left(), dpi), origin.y + raster::twipsToPixels(widget.top(), dpi),
            origin.x + raster::twipsToPixels(widget.left() + widget.width(), dpi),
            origin.y + raster::twipsToPixels(widget.top() + widget.height(), dpi)};
}

/// Two arrow heads that point at a line between them.
void paintGlyph(HDC dc, const RECT& bounds, raster::Rgb color, int dpi) {
    const LONG middle = (bounds.left + bounds.right) / 2;
    const LONG centre = (bounds.top + bounds.bottom) / 2;
    const LONG reach = 4L * dpi / 96;
    const LONG gap = 2L * dpi / 96;
    const GdiObject<HPEN> pen(CreatePen(PS_SOLID, 1, color));
    const GdiObject<HBRUSH> brush(CreateSolidBrush(color));
    const Selected withPen(dc, pen.get());
    const Selected withBrush(dc, brush.get());
    MoveToEx(dc, middle, centre - reach - gap, nullptr);
    LineTo(dc, middle, centre + reach + gap + 1);
    for (const LONG side : {-1L, 1L}) {
        const LONG tip = middle + side * gap;
        const POINT head[3] = {
            {tip, centre}, {tip + side * reach, centre - reach}, {tip + side * reach, centre + reach}};
        Polygon(dc, head, 3);
    }
}

/// `theme` is the one that the system gave the button's window, if any: the button then looks as its neighbours do.
void paintButton(HDC dc, RECT bounds, const formenv::Button& button, WinPlatform& platform, bool pushed,
                 HTHEME theme = nullptr) {
    fill(dc, bounds, platform.resolve(button.backColor()));
    if (!theme ||
        FAILED(DrawThemeBackground(theme, dc, BP_PUSHBUTTON, pushed ? PBS_PRESSED : PBS_NORMAL, &bounds, nullptr)))
        DrawFrameControl(dc, &bounds, DFC_BUTTON, DFCS_BUTTONPUSH | (pushed ? DFCS_PUSHED : 0U));
    if (button.glyph == formenv::Glyph::None)
        drawCaption(dc, bounds, button, platform, DT_CENTER | DT_VCENTER);
    else
        paintGlyph(dc, bounds, platform.resolve(button.foreColor()), platform.dpi());
}

void paintFocusCue(HDC dc, RECT area, WinPlatform& platform) {
    const int scale = std::max(1, platform.dpi() / 96);
    SetDCBrushColor(dc, platform.resolve(raster::system_color::kHighlight));
    for (int i = 0; i < 3 * scale; ++i) {
        FrameRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
        InflateRect(&area, -1, -1);
    }
}

}  // namespace

void paintFrame(HDC dc, const RECT& bounds, const Widget& frame, WinPlatform& platform) {
    fill(dc, bounds, platform.resolve(frame.backColor()));
    const int scale = std::max(1, platform.dpi() / 96);
    const raster::PixelSize text = platform.textSize(L"+", frame.font());
    // The border runs through the middle of the caption's line, as on any group of controls.
    RECT border = bounds;
    border.top += frame.caption().empty() ? 0 : text.height / 2;
    SetDCBrushColor(dc, platform.resolve(raster::system_color::kButtonShadow));
    for (int i = 0; i < scale; ++i) {
        FrameRect(dc, &border, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
        InflateRect(&border, -1, -1);
    }
    if (frame.caption().empty())
        return;
    const raster::PixelSize caption = platform.textSize(frame.caption(), frame.font());
    const int left = bounds.left + kCaptionInset * platform.dpi() / 96;
    RECT gap{left - 2 * scale, bounds.top, left + caption.width + 2 * scale, bounds.top + caption.height};
    fill(dc, gap, platform.resolve(frame.backColor()));
    gap.left = left;
    drawCaption(dc, gap, frame, platform, DT_LEFT | DT_TOP);
}

void WindowTree::drawItem(const DRAWITEMSTRUCT& item) {
    WidgetWindow* target = find(item.hwndItem);
    if (!target || target->widget().kind() != WidgetKind::Button)
        return;
    const auto& button = static_cast<const formenv::Button&>(target->widget());
    paintButton(item.hDC, item.rcItem, button, platform_, (item.itemState & ODS_SELECTED) != 0,
                GetWindowTheme(item.hwndItem));
    if (!(item.itemState & ODS_FOCUS))
        return;
    RECT focus = item.rcItem;
    InflateRect(&focus, -3, -3);
    DrawFocusRect(item.hDC, &focus);
}

void WindowTree::paintWindow(WidgetWindow& target) {
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(target.window(), &paint);
    if (dc)
        paintWidget(target.widget(), dc, {0, 0});
    if (dc && framesFocus(target)) {
        RECT cue{};
        GetClientRect(target.window(), &cue);
        paintFocusCue(dc, cue, platform_);
    }
    EndPaint(target.window(), &paint);
}

/// The focus is in a picture inside this frame. What a picture shows is its own to the last pixel, so that the frame
/// has to tell it.
bool WindowTree::framesFocus(const WidgetWindow& target) const {
    const HWND focus = GetFocus();
    const WidgetWindow* picture = find(focus);
    return picture && picture->widget().takesFocus && picture->widget().kind() == WidgetKind::PictureBox &&
           target.widget().kind() == WidgetKind::Frame && IsChild(target.window(), focus);
}

/// The focus has come to a picture or left it.
void WindowTree::showFocus(WidgetWindow& target) {
    if (!target.widget().takesFocus)
        return;
    for (HWND parent = GetParent(target.window()); parent && parent != root_; parent = GetParent(parent))
        InvalidateRect(parent, nullptr, FALSE);
}

/// One widget without its children, its upper left corner at `origin`.
void WindowTree::paintWidget(Widget& widget, HDC dc, POINT origin) {
    const RECT at = placeOf(widget, origin, platform_.dpi());
    RECT bounds{origin.x, origin.y, origin.x + at.right - at.left, origin.y + at.bottom - at.top};
    switch (widget.kind()) {
        case WidgetKind::Form:
            // Its place is that of its frame on the screen, in the resolution of the screen.
            GetClipBox(dc, &bounds);
            fill(dc, bounds, platform_.resolve(widget.backColor()));
            break;
        case WidgetKind::UserControl:
            fill(dc, bounds, platform_.resolve(widget.backColor()));
            break;
        case WidgetKind::Frame:
            paintFrame(dc, bounds, widget, platform_);
            break;
        case WidgetKind::PictureBox: {
            auto& picture = static_cast<formenv::PictureBox&>(widget);
            auto& surface = static_cast<DibSurface&>(picture.surface());
            BitBlt(dc, bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top, surface.dc(), 0,
                   0, SRCCOPY);
            picture.shown();
            break;
        }
        case WidgetKind::Button:
            paintButton(dc, bounds, static_cast<const formenv::Button&>(widget), platform_, false);
            break;
        case WidgetKind::CheckBox: {
            const int size = bounds.bottom - bounds.top;
            RECT tick{bounds.left, bounds.top, bounds.left + size, bounds.bottom};
            InflateRect(&tick, -2, -2);
            const bool ticked = static_cast<formenv::CheckBox&>(widget).value() != 0;
            DrawFrameControl(dc, &tick, DFC_BUTTON, DFCS_BUTTONCHECK | (ticked ? DFCS_CHECKED : 0U));
            bounds.left += size;
            drawCaption(dc, bounds, widget, platform_, DT_LEFT | DT_VCENTER);
            break;
        }
        case WidgetKind::Label:
            fill(dc, bounds, platform_.resolve(widget.backColor()));
            drawCaption(dc, bounds, widget, platform_, DT_LEFT | DT_TOP);
            break;
        case WidgetKind::ComboBox:
            paintComboBox(dc, bounds, static_cast<formenv::ComboBox&>(widget), platform_);
            break;
        case WidgetKind::Custom:
            if (auto* knob = dynamic_cast<turndial::KnobBase*>(&widget))
                KnobWindow::paint(*knob, platform_, dc, origin,
                                  {static_cast<int>(at.right - at.left), static_cast<int>(at.bottom - at.top)});
            break;
        case WidgetKind::TextBox:
            break;
    }
}

/// A widget with everything inside it.
void WindowTree::paintAll(Widget& widget, HDC dc, POINT origin) {
    paintWidget(widget, dc, origin);
    for (Widget* child : widget.children()) {
        if (!child->visible())
            continue;
        const RECT place = placeOf(*child, origin, platform_.dpi());
        paintAll(*child, dc, {place.left, place.top});
    }
}

/// WM_PRINT and WM_PRINTCLIENT, by which hosts take pictures of their forms. Not every system passes WM_PRINT on to the
/// windows inside. A form's own frame is the system's to print.
bool WindowTree::printWindow(WidgetWindow& target, UINT message, HDC dc, LPARAM what) {
    if (target.widget().kind() == WidgetKind::Form || (message == WM_PRINT && !(what & PRF_CHILDREN)))
        return false;
    if ((what & PRF_CHECKVISIBLE) && !IsWindowVisible(target.window()))
        return true;
    const int saved = SaveDC(dc);
    if (what & PRF_CHILDREN)
        paintAll(target.widget(), dc, {0, 0});
    else
        paintWidget(target.widget(), dc, {0, 0});
    RestoreDC(dc, saved);
    return true;
}

void WindowTree::paint(HDC dc, const RECT& bounds) {
    const int saved = SaveDC(dc);
    IntersectClipRect(dc, bounds.left, bounds.top, bounds.right, bounds.bottom);
    // The control may be smaller than its bounds, as one without a height is.
    fill(dc, bounds, platform_.resolve(rootWidget_.backColor()));
    paintAll(rootWidget_, dc, {bounds.left, bounds.top});
    RestoreDC(dc, saved);
}

}  // namespace kv::win32
