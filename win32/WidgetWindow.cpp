#include "win32/WidgetWindow.h"

#include "raster/Twips.h"
#include "win32/WindowTree.h"

namespace kv::win32 {

using formenv::Change;

WidgetWindow::WidgetWindow(WindowTree& tree, formenv::Widget& widget, HWND window)
    : tree_(tree), kind_(windowKind(widget)), widget_(widget), window_(window), speech_(widget) {
    widget_.setPeer(this);
    const WPARAM font = reinterpret_cast<WPARAM>(tree_.platform().fonts().get(widget_.font(), dpi()));
    SendMessageW(window_, WM_SETFONT, font, FALSE);
    kind_.initialize(*this);
    if (!widget_.enabled())
        changed(Change::Enabled);
    if (!widget_.toolTip().empty())
        changed(Change::ToolTip);
}

WidgetWindow::~WidgetWindow() {
    widget_.setPeer(nullptr);
}

int WidgetWindow::dpi() const noexcept {
    return tree_.dpi();
}

void WidgetWindow::changed(Change what) {
    switch (what) {
        case Change::Place:
            place();
            break;
        case Change::Visible:
        case Change::Caption:
            // Both change with every channel while a host adds many. The window is updated once, with pending events.
            if (!stale_) {
                stale_ = true;
                tree_.noteStale(*this);
            }
            break;
        case Change::Enabled:
            EnableWindow(window_, widget_.enabled());
            break;
        case Change::Items:
        case Change::Value:
        case Change::Text:
        case Change::Locked:
            kind_.changed(*this, what);
            break;
        case Change::Font:
            SendMessageW(window_, WM_SETFONT,
                         reinterpret_cast<WPARAM>(tree_.platform().fonts().get(widget_.font(), dpi())), TRUE);
            break;
        case Change::Colors:
        case Change::Picture:
            InvalidateRect(window_, nullptr, FALSE);
            break;
        case Change::PictureNow:
            tree_.paintNow(*this);
            break;
        case Change::Spoken:
            Speech::tellValue(window_);
            break;
        case Change::Update:
            RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
            break;
        case Change::ToolTip:
            tree_.showToolTip(*this);
            break;
    }
}

void WidgetWindow::sync() {
    stale_ = false;
    kind_.sync(*this);
}

void WidgetWindow::rescale() {
    changed(Change::Font);
    if (kind_.placedByTree())
        place();
    InvalidateRect(window_, nullptr, FALSE);
}

void WidgetWindow::place() {
    kind_.place(*this, pixelRect(widget_, dpi()));
}

}  // namespace kv::win32
