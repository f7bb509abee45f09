// Real windows for the widgets of a control: one child window a widget, told of every change and passing on what the
// user does.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "formenv/PictureBox.h"
#include "formenv/Widget.h"
#include "win32/Accessible.h"
#include "win32/KnobWindow.h"
#include "win32/ToolTips.h"
#include "win32/WinPlatform.h"

namespace kv::win32 {

class WindowTree;

/// The window of one widget.
class WidgetWindow final : public formenv::Peer {
  public:
    WidgetWindow(WindowTree& tree, formenv::Widget& widget, HWND window);
    ~WidgetWindow() override;
    WidgetWindow(const WidgetWindow&) = delete;
    WidgetWindow& operator=(const WidgetWindow&) = delete;

    void changed(formenv::Change what) override;
    [[nodiscard]] formenv::Widget& widget() noexcept { return widget_; }
    [[nodiscard]] const formenv::Widget& widget() const noexcept { return widget_; }
    [[nodiscard]] HWND window() const noexcept { return window_; }
    /// Brings caption and visibility up to date after a burst of changes.
    void sync();
    /// The tree has another resolution.
    void rescale();
    /// What the user's edit has left in a text box.
    [[nodiscard]] std::wstring editedText() const;
    /// The text of the box is being set from the program.
    [[nodiscard]] bool filling() const noexcept { return filling_; }
    [[nodiscard]] const Speech& speech() const noexcept { return speech_; }

  private:
    void place();
    void showText();
    void fillItems();

    WindowTree& tree_;
    formenv::Widget& widget_;
    HWND window_;
    Speech speech_;
    bool stale_ = false;
    bool filling_ = false;
};

/// Answers for a root that is a window of its own: where it stands, and what its messages mean.
class TopLevelRoot {
  public:
    TopLevelRoot() = default;
    TopLevelRoot(const TopLevelRoot&) = delete;
    TopLevelRoot& operator=(const TopLevelRoot&) = delete;
    virtual ~TopLevelRoot() = default;

    /// First at every message of the root but its last; nothing leaves the message to the tree.
    virtual std::optional<LRESULT> rootMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) = 0;
    /// The root widget has another place.
    virtual void placeRoot() = 0;
};

class WindowTree {
  public:
    struct Callbacks {
        /// The control changed its own size, in pixels.
        std::function<void(raster::PixelSize)> resizedByControl;
        /// The root window is gone, whoever destroyed it.
        std::function<void()> destroyed;
        /// Held through every message: an event may make the host let go of the control.
        IUnknown* owner = nullptr;
        /// Of a tree that is made by `createTopLevel`.
        TopLevelRoot* topLevel = nullptr;
        /// What owns the tree, if it can go in the middle of a message: it is kept to the message's end.
        std::weak_ptr<void> keep;
    };

    WindowTree(formenv::Widget& root, WinPlatform& platform, Callbacks callbacks);
    ~WindowTree();
    WindowTree(const WindowTree&) = delete;
    WindowTree& operator=(const WindowTree&) = delete;

    /// Makes the windows inside `parent` at `place` (pixels). False when the system refuses.
    [[nodiscard]] bool create(HWND parent, const RECT& place);
    /// Makes the root a window of its own, of the class "kvForm", with the root widget's caption; not shown.
    [[nodiscard]] bool createTopLevel(HWND owner, DWORD style, DWORD exStyle, const RECT& place);
    /// Safe at any time and more than once.
    void destroy() noexcept;
    [[nodiscard]] HWND root() const noexcept { return root_; }

    /// Font, place and picture of every widget at another resolution. The size of the root is left to its container.
    void followDpi(int dpi);
    /// Of these windows: a form may be on another monitor than the control.
    [[nodiscard]] int dpi() const noexcept { return callbacks_.topLevel ? ownDpi_ : platform_.dpi(); }

    /// Paints the whole control into a device context at `bounds`, windows or not.
    void paint(HDC dc, const RECT& bounds);

    [[nodiscard]] WinPlatform& platform() noexcept { return platform_; }
    [[nodiscard]] WidgetWindow* find(HWND window) const noexcept;

  private:
    friend class WidgetWindow;
    static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT handleCommand(HWND child, UINT code);
    LRESULT colorOf(HDC dc, HWND child);
    bool handleMouse(WidgetWindow& target, UINT message, WPARAM wParam, LPARAM lParam);
    void holdMouse(HWND window);
    void letMouseGo(HWND window);
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
    void noteStale(WidgetWindow& window);
    void syncStale();
    void rootDestroyed() noexcept;
    void setDpi(int dpi);
    [[nodiscard]] static bool registerClasses() noexcept;

    formenv::Widget& rootWidget_;
    WinPlatform& platform_;
    Callbacks callbacks_;
    HWND root_ = nullptr;
    int ownDpi_ = 0;  ///< of a window of its own
    std::map<HWND, std::unique_ptr<WidgetWindow>> windows_;
    std::vector<std::unique_ptr<KnobWindow>> knobs_;
    std::vector<HWND> stale_;
    HWND holder_ = nullptr;  ///< the window that a button went down in, until it is let go
    ToolTips toolTips_;
};

/// The text of the window that stands for a widget.
[[nodiscard]] const std::wstring& windowTextOf(const formenv::Widget& widget);

/// The pixels of a widget in its parent's client area, or of a form on the screen.
[[nodiscard]] RECT pixelRect(const formenv::Widget& widget, int dpi) noexcept;

/// Takes the window classes back when the module goes.
void unregisterWindowClasses() noexcept;

/// Background, border and caption of a frame, filling `bounds`.
void paintFrame(HDC dc, const RECT& bounds, const formenv::Widget& frame, WinPlatform& platform);

}  // namespace kv::win32
