// Real windows for the widgets of a control or a form, one child window for each widget. They show every change of the
// widgets and pass on the user's input.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "formenv/Widget.h"
#include "win32/KnobWindow.h"
#include "win32/ToolTips.h"
#include "win32/WidgetWindow.h"
#include "win32/WinPlatform.h"

namespace kv::win32 {

/// The owner of a tree whose root is a top-level window: it places the root and handles some of its messages.
class TopLevelRoot {
  public:
    TopLevelRoot() = default;
    TopLevelRoot(const TopLevelRoot&) = delete;
    TopLevelRoot& operator=(const TopLevelRoot&) = delete;
    virtual ~TopLevelRoot() = default;

    /// Called first for every message of the root except the last one. Nothing leaves the message to the tree.
    virtual std::optional<LRESULT> rootMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) = 0;
    /// The place of the root widget has changed.
    virtual void placeRoot() = 0;
};

class WindowTree {
  public:
    struct Callbacks {
        /// The control changed its own size, in pixels.
        std::function<void(raster::PixelSize)> resizedByControl;
        /// The root window has been destroyed, by the tree or by another program.
        std::function<void()> destroyed;
        /// Kept alive during every message, because an event may make the host release the control. May be null.
        IUnknown* owner = nullptr;
        /// Of a tree that is created by `createTopLevel`; null for all others.
        TopLevelRoot* topLevel = nullptr;
        /// The owner of the tree, if it can be released during a message. It is kept alive until the message ends.
        std::weak_ptr<void> keep;
    };

    WindowTree(formenv::Widget& root, WinPlatform& platform, Callbacks callbacks);
    ~WindowTree();
    WindowTree(const WindowTree&) = delete;
    WindowTree& operator=(const WindowTree&) = delete;

    /// Creates the windows inside `parent` at `place` (pixels). False if the system cannot create the root window.
    [[nodiscard]] bool create(HWND parent, const RECT& place);
    /// Creates the root as a hidden top-level window of the class "kvForm" with the root widget's caption.
    [[nodiscard]] bool createTopLevel(HWND owner, DWORD style, DWORD exStyle, const RECT& place);
    /// May be called at any time and more than once.
    void destroy() noexcept;
    [[nodiscard]] HWND root() const noexcept { return root_; }

    /// Updates the fonts, places and pictures of all widgets for another resolution. The container sizes the root.
    void followDpi(int dpi);
    /// The resolution of these windows: a form may be on another monitor than the control.
    [[nodiscard]] int dpi() const noexcept { return callbacks_.topLevel ? ownDpi_ : platform_.dpi(); }

    /// Paints the whole control into a device context at `bounds`. The windows need not exist.
    void paint(HDC dc, const RECT& bounds);

    [[nodiscard]] WinPlatform& platform() noexcept { return platform_; }
    [[nodiscard]] WidgetWindow* find(HWND window) const noexcept;

    // For the windows of the tree.
    /// The window must be updated when pending events are processed.
    void noteStale(WidgetWindow& window);
    void showToolTip(const WidgetWindow& window) { toolTips_.set(root_, window.window(), window.widget().toolTip()); }
    /// Paints a picture without a message. The system's way, an invalid area and WM_PAINT, can need several calls of
    /// another process.
    void paintNow(WidgetWindow& target) noexcept;
    /// The root widget changed its own size, in pixels.
    void rootResized(raster::PixelSize size);
    /// The root widget is a form that has another place.
    void placeRoot();

  private:
    static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT handleCommand(HWND child, UINT code);
    LRESULT colorOf(HDC dc, HWND child);
    bool handleMouse(WidgetWindow& target, UINT message, WPARAM wParam, LPARAM lParam);
    bool handleAltKey(formenv::Widget& widget, WPARAM key, LPARAM flags);
    bool handleWheel(WidgetWindow& target, WPARAM wParam, LPARAM lParam);
    bool handleNavigationButton(formenv::Widget& widget, WPARAM wParam);
    void holdMouse(HWND window);
    void releaseMouse(HWND window);
    void mouseLost(WidgetWindow& target, HWND newOwner);
    static bool handleKey(formenv::Widget& widget, WPARAM key);
    void paintWindow(WidgetWindow& target);
    void showFocus(WidgetWindow& target);
    [[nodiscard]] bool framesFocus(const WidgetWindow& target) const;
    void drawItem(const DRAWITEMSTRUCT& item);
    void paintWidget(formenv::Widget& widget, HDC dc, POINT origin);
    void paintAll(formenv::Widget& widget, HDC dc, POINT origin);
    bool printWindow(WidgetWindow& target, UINT message, HDC dc, LPARAM what);
    bool createRoot(const wchar_t* className, DWORD style, DWORD exStyle, HWND parent, const RECT& place);
    void createChildren(formenv::Widget& parent, HWND window);
    void syncStale();
    void rootDestroyed() noexcept;
    void setDpi(int dpi);

    formenv::Widget& rootWidget_;
    WinPlatform& platform_;
    Callbacks callbacks_;
    HWND root_ = nullptr;
    int ownDpi_ = 0;  ///< of a top-level root
    std::map<HWND, std::unique_ptr<WidgetWindow>> windows_;
    std::vector<std::unique_ptr<KnobWindow>> knobs_;
    std::vector<HWND> stale_;
    HWND holder_ = nullptr;  ///< the window in which a mouse button was pressed, until it is released
    WPARAM movedWith_ = 0;   ///< keys of the last move with a mouse button down; 0 after a press or release
    ToolTips toolTips_;
};

/// The pixels of a widget in its parent's client area, or of a form on the screen.
[[nodiscard]] RECT pixelRect(const formenv::Widget& widget, int dpi) noexcept;
}  // namespace kv::win32
