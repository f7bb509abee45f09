#include "win32/FormWindow.h"

#include <algorithm>
#include <map>

#include "raster/Twips.h"
#include "util/QuietArithmetic.h"
#include "util/RuntimeError.h"
#include "win32/FormKeys.h"
#include "win32/Held.h"
#include "win32/WindowDpi.h"
#include "win32/WindowTree.h"

namespace kv::win32 {

using formenv::WindowState;

namespace {

constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
// With this frame, a resizable window has no small icon in its title bar.
constexpr DWORD kExStyle = WS_EX_CONTROLPARENT | WS_EX_DLGMODALFRAME;

/// The offset from screen coordinates to those of window placements, which exclude task bars.
POINT workspaceOffset(const RECT& place) {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (!GetMonitorInfoW(MonitorFromRect(&place, MONITOR_DEFAULTTONEAREST), &info))
        return {0, 0};
    return {info.rcMonitor.left - info.rcWork.left, info.rcMonitor.top - info.rcWork.top};
}

/// Maximizes a window. The system activates it, so the previously active window is activated again.
void showMaximized(HWND window) {
    const HWND active = GetActiveWindow();
    const HWND focus = GetFocus();
    ShowWindow(window, SW_SHOWMAXIMIZED);
    if (!active || active == window)
        return;
    SetActiveWindow(active);
    if (focus)
        SetFocus(focus);
}

void showAs(HWND window, WindowState state) {
    switch (state) {
        case WindowState::Normal:
            ShowWindow(window, SW_SHOWNOACTIVATE);
            break;
        case WindowState::Minimized:
            ShowWindow(window, SW_SHOWMINNOACTIVE);
            break;
        case WindowState::Maximized:
            showMaximized(window);
            break;
    }
}

}  // namespace

class FormWindow::Root final : public TopLevelRoot, public std::enable_shared_from_this<Root> {
  public:
    Root(formenv::Form& form, WinPlatform& platform, IUnknown* keeper)
        : form_(&form), platform_(platform), keeper_(keeper) {}

    [[nodiscard]] bool create(HWND owner);
    /// Destroys the window. The form gets no further notifications.
    void close() noexcept;
    [[nodiscard]] HWND window() const noexcept { return tree_ ? tree_->root() : nullptr; }
    [[nodiscard]] WindowState state() const noexcept { return form_ ? form_->windowState() : WindowState::Normal; }

    std::optional<LRESULT> rootMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;
    void placeRoot() override;

  private:
    static LRESULT CALLBACK childProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    [[nodiscard]] LRESULT pass(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const;
    void listenTo(const formenv::Widget& parent);
    void follow(HWND window);
    void rescale(HWND window, int dpi, const RECT& place);
    void limit(MINMAXINFO& limits) const;
    void lost();

    formenv::Form* form_;
    WinPlatform& platform_;
    IUnknown* keeper_;
    /// The procedures of the system's controls. Common controls before version 6 do not export subclassing functions by
    /// name.
    std::map<HWND, WNDPROC> procedures_;
    std::unique_ptr<WindowTree> tree_;
    HWND made_ = nullptr;   ///< the window that was reported to the platform
    HWND focus_ = nullptr;  ///< the control to focus when the window becomes active again
};

bool FormWindow::Root::create(HWND owner) {
    WindowTree::Callbacks callbacks;
    callbacks.destroyed = [this] { lost(); };
    callbacks.owner = keeper_;
    callbacks.topLevel = this;
    callbacks.keep = weak_from_this();
    tree_ = std::make_unique<WindowTree>(*form_, platform_, std::move(callbacks));
    if (!tree_->createTopLevel(owner, kStyle, kExStyle, pixelRect(*form_, platform_.hostDpi())))
        return false;
    made_ = tree_->root();
    platform_.formMade(made_);
    listenTo(*form_);
    follow(tree_->root());
    return true;
}

void FormWindow::Root::close() noexcept {
    form_ = nullptr;
    if (tree_)
        tree_->destroy();
}

void FormWindow::Root::lost() {
    platform_.formGone(made_);
    if (form_)
        form_->windowLost();
}

/// The control with the focus receives the keys.
void FormWindow::Root::listenTo(const formenv::Widget& parent) {
    for (const formenv::Widget* child : parent.children()) {
        const auto* window = dynamic_cast<WidgetWindow*>(child->peer());
        if (window && isTabStop(*child)) {
            const HWND handle = window->window();
            procedures_[handle] = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(handle, GWLP_WNDPROC));
            SetWindowLongPtrW(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
            SetWindowLongPtrW(handle, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Root::childProcedure));
        }
        listenTo(*child);
    }
}

/// Calls the control's own procedure.
LRESULT FormWindow::Root::pass(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const {
    const auto found = procedures_.find(window);
    return found == procedures_.end() ? DefWindowProcW(window, message, wParam, lParam)
                                      : CallWindowProcW(found->second, window, message, wParam, lParam);
}

LRESULT CALLBACK FormWindow::Root::childProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* root = reinterpret_cast<Root*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    // This object stays alive until the message ends. A key may lead to the release of the whole control.
    const Held held(isFormKey(message) ? root->keeper_ : nullptr);
    const std::shared_ptr<Root> kept = root->weak_from_this().lock();
    // Message loops for dialogs must leave all keys to the window.
    if (message == WM_GETDLGCODE && lParam)
        return root->pass(window, message, wParam, 0) | DLGC_WANTALLKEYS;
    const util::QuietArithmetic quiet;
    try {
        if (isFormKey(message) && kept && kept->form_) {
            if (const std::optional<LRESULT> answer = formKey(*kept->form_, window, message, wParam))
                return *answer;
        }
    } catch (...) {
        // The system calls the window procedure, so no exception may leave it.
    }
    const LRESULT result = root->pass(window, message, wParam, lParam);
    if (message == WM_NCDESTROY)
        root->procedures_.erase(window);
    return result;
}

std::optional<LRESULT> FormWindow::Root::rootMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!form_)
        return std::nullopt;
    switch (message) {
        case WM_CLOSE:
            form_->unload();
            return 0;
        case WM_QUERYENDSESSION:
            return TRUE;
        case WM_GETMINMAXINFO:
            limit(*reinterpret_cast<MINMAXINFO*>(lParam));
            return 0;
        case WM_MOVE:
        case WM_SIZE:
            follow(window);
            return 0;
        case kDpiChanged:
            rescale(window, HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
            return 0;
        case WM_ACTIVATE:
            if (LOWORD(wParam) == WA_INACTIVE && IsChild(window, GetFocus()))
                focus_ = GetFocus();
            return std::nullopt;
        case WM_SETFOCUS:
            focusControl(*form_, focus_);
            return 0;
        case WM_COMMAND:
            // A message loop for dialogs sends this for Escape.
            if (!lParam && LOWORD(wParam) == IDCANCEL)
                form_->keyPressed(VK_ESCAPE, 0);
            return lParam ? std::nullopt : std::optional<LRESULT>(0);
        default:
            return isFormKey(message) ? formKey(*form_, window, message, wParam) : std::nullopt;
    }
}

/// Moves the window to another monitor, to the place that the system proposes.
void FormWindow::Root::rescale(HWND window, int dpi, const RECT& place) {
    tree_->followDpi(dpi);
    SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    // The same number of pixels may mean another size.
    if (form_)
        follow(window);
}

/// Passes the place of the window to the form. Pixels that the present place already rounds to do not change it.
void FormWindow::Root::follow(HWND window) {
    // Places on the screen use the resolution of the screen, the inside of the form uses its own.
    const int dpi = platform_.hostDpi();
    formenv::Place place = form_->place();
    WindowState state = WindowState::Normal;
    if (IsIconic(window)) {
        state = WindowState::Minimized;
    } else if (IsZoomed(window)) {
        state = WindowState::Maximized;
    } else {
        const RECT known = pixelRect(*form_, dpi);
        RECT now{};
        GetWindowRect(window, &now);
        if (!EqualRect(&now, &known))
            place = {raster::pixelsToTwips(now.left, dpi), raster::pixelsToTwips(now.top, dpi),
                     raster::pixelsToTwips(now.right - now.left, dpi),
                     raster::pixelsToTwips(now.bottom - now.top, dpi)};
    }
    // The window does not show the state before it is visible.
    if (!form_->visible())
        state = form_->windowState();
    form_->movedByUser(place, state);
    if (IsIconic(window))
        return;
    RECT client{};
    GetClientRect(window, &client);
    form_->clientResized(raster::pixelsToTwips(client.right, tree_->dpi()),
                         raster::pixelsToTwips(client.bottom, tree_->dpi()));
}

void FormWindow::Root::placeRoot() {
    const HWND root = window();
    if (!root || !form_)
        return;
    RECT place = pixelRect(*form_, platform_.hostDpi());
    if (!IsIconic(root) && !IsZoomed(root)) {
        SetWindowPos(root, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
        return;
    }
    // This is its place when it is restored.
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    GetWindowPlacement(root, &placement);
    const POINT offset = workspaceOffset(place);
    OffsetRect(&place, offset.x, offset.y);
    placement.rcNormalPosition = place;
    if (!IsWindowVisible(root))
        placement.showCmd = SW_HIDE;
    SetWindowPlacement(root, &placement);
}

void FormWindow::Root::limit(MINMAXINFO& limits) const {
    const int dpi = tree_->dpi();
    limits.ptMinTrackSize.x =
        std::max(limits.ptMinTrackSize.x, static_cast<LONG>(raster::twipsToPixels(form_->leastWidth(), dpi)));
    limits.ptMinTrackSize.y =
        std::max(limits.ptMinTrackSize.y, static_cast<LONG>(raster::twipsToPixels(form_->leastHeight(), dpi)));
}

FormWindow::FormWindow(formenv::Form& form, WinPlatform& platform, HWND owner, IUnknown* keeper)
    : root_(std::make_shared<Root>(form, platform, keeper)) {
    if (root_->create(owner))
        return;
    root_->close();
    throw util::RuntimeError(util::error_number::kOutOfMemory);
}

FormWindow::~FormWindow() {
    root_->close();
}

std::intptr_t FormWindow::handle() const noexcept {
    return reinterpret_cast<std::intptr_t>(root_->window());
}

void FormWindow::show() {
    const std::shared_ptr<Root> kept = root_;
    showAs(kept->window(), kept->state());
}

void FormWindow::hide() {
    const std::shared_ptr<Root> kept = root_;
    ShowWindow(kept->window(), SW_HIDE);
}

void FormWindow::setState(WindowState state) {
    const std::shared_ptr<Root> kept = root_;
    showAs(kept->window(), state);
}

formenv::FormBorder FormWindow::border(int dpi) noexcept {
    RECT frame{};
    AdjustWindowRectEx(&frame, kStyle, FALSE, kExStyle);
    return {raster::pixelsToTwips(frame.right - frame.left, dpi), raster::pixelsToTwips(frame.bottom - frame.top, dpi)};
}

}  // namespace kv::win32
