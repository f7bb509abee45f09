// Painting of windows, and of the whole control without windows, by the same code.
#include <windows.h>

#include "raster/Twips.h"
#include "win32/Drawing.h"
#include "win32/WindowTree.h"

namespace kv::win32 {

using formenv::Widget;

namespace {

RECT placeOf(const Widget& widget, POINT origin, int dpi) {
    return {origin.x + raster::twipsToPixels(widget.left(), dpi), origin.y + raster::twipsToPixels(widget.top(), dpi),
            origin.x + raster::twipsToPixels(widget.left() + widget.width(), dpi),
            origin.y + raster::twipsToPixels(widget.top() + widget.height(), dpi)};
}

}  // namespace

void WindowTree::drawItem(const DRAWITEMSTRUCT& item) {
    if (const WidgetWindow* target = find(item.hwndItem))
        target->kind().drawItem(target->widget(), item, platform_);
}

void WindowTree::paintWindow(WidgetWindow& target) {
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(target.window(), &paint);
    if (dc)
        paintWidget(target.widget(), dc, {0, 0});
    if (dc && framesFocus(target)) {
        RECT cue{};
        GetClientRect(target.window(), &cue);
        drawFocusCue(dc, cue, platform_);
    }
    EndPaint(target.window(), &paint);
}

void WindowTree::paintNow(WidgetWindow& target) noexcept {
    const HWND window = target.window();
    const HDC dc = IsWindowVisible(window) ? GetDC(window) : nullptr;
    try {
        if (dc)
            paintWidget(target.widget(), dc, {0, 0});
        else
            InvalidateRect(window, nullptr, FALSE);
    } catch (...) {
        // Without memory for the picture, the system asks for it again.
        InvalidateRect(window, nullptr, FALSE);
    }
    if (dc)
        ReleaseDC(window, dc);
}

/// True if the window must show that a window inside it has the focus.
bool WindowTree::framesFocus(const WidgetWindow& target) const {
    if (!target.kind().showsFocusInside())
        return false;
    const HWND focus = GetFocus();
    const WidgetWindow* inner = find(focus);
    return inner && inner->kind().focusShownAround(inner->widget()) && IsChild(target.window(), focus);
}

/// A picture has received or lost the focus.
void WindowTree::showFocus(WidgetWindow& target) {
    if (!target.widget().takesFocus)
        return;
    for (HWND parent = GetParent(target.window()); parent && parent != root_; parent = GetParent(parent))
        InvalidateRect(parent, nullptr, FALSE);
}

/// Paints one widget without its children, with its upper left corner at `origin`.
void WindowTree::paintWidget(Widget& widget, HDC dc, POINT origin) {
    const RECT at = placeOf(widget, origin, platform_.dpi());
    const RECT bounds{origin.x, origin.y, origin.x + at.right - at.left, origin.y + at.bottom - at.top};
    windowKind(widget).paint(widget, dc, bounds, platform_);
}

/// Paints a widget and all widgets inside it.
void WindowTree::paintAll(Widget& widget, HDC dc, POINT origin) {
    paintWidget(widget, dc, origin);
    for (Widget* child : widget.children()) {
        if (!child->visible())
            continue;
        const RECT place = placeOf(*child, origin, platform_.dpi());
        paintAll(*child, dc, {place.left, place.top});
    }
}

/// WM_PRINT and WM_PRINTCLIENT, with which hosts take pictures of their forms. Some systems do not pass WM_PRINT to the
/// child windows.
bool WindowTree::printWindow(WidgetWindow& target, UINT message, HDC dc, LPARAM what) {
    if (target.kind().printedBySystem() || (message == WM_PRINT && !(what & PRF_CHILDREN)))
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
    // The control may be smaller than its bounds, for example when it has no height.
    fillArea(dc, bounds, platform_.resolve(rootWidget_.backColor()));
    paintAll(rootWidget_, dc, {bounds.left, bounds.top});
    RestoreDC(dc, saved);
}

}  // namespace kv::win32
