#include "win32/WindowTree.h"

#include <algorithm>
#include <utility>

#include "raster/Twips.h"
#include "util/QuietArithmetic.h"
#include "win32/Held.h"
#include "win32/WindowClasses.h"
#include "win32/WindowDpi.h"

namespace kv::win32 {

using formenv::Widget;

namespace {

constexpr UINT kSync = WM_APP + 1;

/// Tells all widgets inside `parent` that the platform has another resolution.
void rescaleChildren(Widget& parent) {
    for (Widget* child : parent.children()) {
        windowKind(*child).rescaled(*child);
        rescaleChildren(*child);
    }
}

}  // namespace

RECT pixelRect(const Widget& widget, int dpi) noexcept {
    return {raster::twipsToPixels(widget.left(), dpi), raster::twipsToPixels(widget.top(), dpi),
            raster::twipsToPixels(widget.left() + widget.width(), dpi),
            raster::twipsToPixels(widget.top() + widget.height(), dpi)};
}

WindowTree::WindowTree(Widget& root, WinPlatform& platform, Callbacks callbacks)
    : rootWidget_(root), platform_(platform), callbacks_(std::move(callbacks)) {}

WindowTree::~WindowTree() {
    callbacks_ = {};
    // During their last messages, the knobs would keep the owner alive, which may be in its own destructor.
    knobs_.clear();
    destroy();
}

bool WindowTree::create(HWND parent, const RECT& place) {
    if (root_)
        return true;
    setDpi(windowDpi(parent, platform_.hostDpi()));
    if (!createRoot(kRootClass, WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, WS_EX_CONTROLPARENT, parent, place))
        return false;
    platform_.setOwner(root_);
    return true;
}

bool WindowTree::createTopLevel(HWND owner, DWORD style, DWORD exStyle, const RECT& place) {
    setDpi(windowDpi(owner, platform_.hostDpi()));
    return root_ || createRoot(kFormClass, style, exStyle, owner, place);
}

bool WindowTree::createRoot(const wchar_t* className, DWORD style, DWORD exStyle, HWND parent, const RECT& place) {
    if (!registerWindowClasses(kTreeClasses, &WindowTree::windowProcedure, CS_DBLCLKS))
        return false;
    root_ = CreateWindowExW(exStyle, className, rootWidget_.caption().c_str(), style, place.left, place.top,
                            place.right - place.left, place.bottom - place.top, parent, nullptr, ownModule(), this);
    if (!root_)
        return false;
    if (callbacks_.topLevel)
        setDpi(windowDpi(root_, dpi()));
    windows_.emplace(root_, std::make_unique<WidgetWindow>(*this, rootWidget_, root_));
    createChildren(rootWidget_, root_);
    return true;
}

void WindowTree::createChildren(Widget& parent, HWND window) {
    for (Widget* child : parent.children()) {
        const WindowKind& kind = windowKind(*child);
        if (std::unique_ptr<KnobWindow> knob = kind.createKnob(*child, platform_, window, callbacks_.owner)) {
            knobs_.push_back(std::move(knob));
            continue;
        }
        const WindowClass windowClass = kind.windowClass(*child);
        if (!windowClass.name)
            continue;
        const RECT place = pixelRect(*child, dpi());
        const DWORD visible = child->visible() ? WS_VISIBLE : 0U;
        const HWND made =
            CreateWindowExW(windowClass.exStyle, windowClass.name, kind.windowText(*child).c_str(),
                            WS_CHILD | WS_CLIPSIBLINGS | visible | windowClass.style, place.left, place.top,
                            place.right - place.left, place.bottom - place.top, window, nullptr, ownModule(), this);
        if (!made)
            continue;
        windows_.emplace(made, std::make_unique<WidgetWindow>(*this, *child, made));
        createChildren(*child, made);
    }
}

void WindowTree::setDpi(int newDpi) {
    if (callbacks_.topLevel) {
        ownDpi_ = newDpi;
    } else if (newDpi != platform_.dpi()) {
        platform_.setDpi(newDpi);
        rescaleChildren(rootWidget_);
    }
}

void WindowTree::followDpi(int newDpi) {
    setDpi(newDpi);
    for (const auto& [window, widget] : windows_)
        widget->rescale();
    for (const std::unique_ptr<KnobWindow>& knob : knobs_)
        knob->rescale();
}

void WindowTree::destroy() noexcept {
    if (root_)
        DestroyWindow(root_);
}

void WindowTree::rootDestroyed() noexcept {
    root_ = nullptr;
    holder_ = nullptr;
    toolTips_.close();
    stale_.clear();
    knobs_.clear();
    windows_.clear();
    if (!callbacks_.topLevel)
        platform_.setOwner(nullptr);
    if (callbacks_.destroyed)
        callbacks_.destroyed();
}

WidgetWindow* WindowTree::find(HWND window) const noexcept {
    const auto found = windows_.find(window);
    return found == windows_.end() ? nullptr : found->second.get();
}

void WindowTree::noteStale(WidgetWindow& window) {
    if (stale_.empty())
        PostMessageW(root_, kSync, 0, 0);
    stale_.push_back(window.window());
}

void WindowTree::rootResized(raster::PixelSize size) {
    if (callbacks_.resizedByControl)
        callbacks_.resizedByControl(size);
}

void WindowTree::placeRoot() {
    if (callbacks_.topLevel)
        callbacks_.topLevel->placeRoot();
}

void WindowTree::syncStale() {
    const std::vector<HWND> stale = std::exchange(stale_, {});
    for (const HWND changed : stale) {
        if (WidgetWindow* found = find(changed))
            found->sync();
    }
}

LRESULT CALLBACK WindowTree::windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
    }
    auto* tree = reinterpret_cast<WindowTree*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!tree)
        return DefWindowProcW(window, message, wParam, lParam);
    const Held held(tree->callbacks_.owner);
    const std::shared_ptr<void> kept = tree->callbacks_.keep.lock();
    const util::QuietArithmetic quiet;
    try {
        return tree->handle(window, message, wParam, lParam);
    } catch (...) {
        // The system calls the window procedure, so no exception may leave it.
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

namespace {

/// What the widget wants of the keys in a dialog. `key` is null if the dialog asks about all keys.
LRESULT dialogCode(const Widget& widget, const MSG* key) {
    const std::function<bool(int)> wants = key && key->message == WM_SYSKEYDOWN ? widget.wantsAltKey : widget.wantsKey;
    return key && wants && wants(static_cast<int>(key->wParam)) ? DLGC_WANTMESSAGE : 0;
}

}  // namespace

LRESULT WindowTree::handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        if (window == root_)
            rootDestroyed();
        return DefWindowProcW(window, message, wParam, lParam);
    }
    if (callbacks_.topLevel && window == root_) {
        if (const std::optional<LRESULT> answer = callbacks_.topLevel->rootMessage(window, message, wParam, lParam))
            return *answer;
    }
    WidgetWindow* target = find(window);
    if (!target)
        return DefWindowProcW(window, message, wParam, lParam);
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            paintWindow(*target);
            return 0;
        case WM_PRINT:
        case WM_PRINTCLIENT:
            if (printWindow(*target, message, reinterpret_cast<HDC>(wParam), lParam))
                return 0;
            return DefWindowProcW(window, message, wParam, lParam);
        case WM_COMMAND:
            return lParam ? handleCommand(reinterpret_cast<HWND>(lParam), HIWORD(wParam)) : 0;
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLOREDIT:
            return colorOf(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
        case WM_DRAWITEM:
            drawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
            return TRUE;
        case WM_CAPTURECHANGED:
            mouseLost(*target, reinterpret_cast<HWND>(lParam));
            return 0;
        case WM_GETOBJECT:
            if (const std::optional<LRESULT> answer = target->speech().answer(window, wParam, lParam))
                return *answer;
            return DefWindowProcW(window, message, wParam, lParam);
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            showFocus(*target);
            return DefWindowProcW(window, message, wParam, lParam);
        case WM_GETDLGCODE:
            return dialogCode(target->widget(), reinterpret_cast<const MSG*>(lParam));
        case WM_KEYDOWN:
            if (handleKey(target->widget(), wParam))
                return 0;
            return DefWindowProcW(window, message, wParam, lParam);
        case WM_SYSKEYDOWN:
            if (handleAltKey(target->widget(), wParam, lParam))
                return 0;
            return DefWindowProcW(window, message, wParam, lParam);
        case WM_MOUSEWHEEL:
            if (handleWheel(*target, wParam, lParam))
                return 0;
            return DefWindowProcW(window, message, wParam, lParam);
        case WM_XBUTTONUP:
            if (handleNavigationButton(target->widget(), wParam))
                return TRUE;
            return DefWindowProcW(window, message, wParam, lParam);
        case kSync:
            syncStale();
            return 0;
        default:
            if (handleMouse(*target, message, wParam, lParam))
                return 0;
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

LRESULT WindowTree::handleCommand(HWND child, UINT code) {
    if (WidgetWindow* source = find(child))
        source->kind().command(*source, code);
    return 0;
}

LRESULT WindowTree::colorOf(HDC dc, HWND child) {
    const WidgetWindow* source = find(child);
    if (!source)
        return 0;
    const Widget& widget = source->widget();
    SetTextColor(dc, platform_.resolve(widget.foreColor()));
    const raster::Rgb back = platform_.resolve(widget.backColor());
    SetBkColor(dc, back);
    SetDCBrushColor(dc, back);
    return reinterpret_cast<LRESULT>(GetStockObject(DC_BRUSH));
}

}  // namespace kv::win32
