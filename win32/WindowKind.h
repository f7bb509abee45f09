// What differs between the windows of the kinds of widgets. Each kind is a class; WindowKind.cpp lists them.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include "formenv/Widget.h"
#include "win32/WinPlatform.h"

namespace kv::win32 {

class KnobWindow;
class WidgetWindow;

struct WindowClass {
    const wchar_t* name = nullptr;  ///< null: the tree creates no window
    DWORD style = 0;                ///< added to those of all child windows
    DWORD exStyle = 0;
};

/// In the units of a widget's mouse events.
struct MousePosition {
    double x;
    double y;
};

/// One kind of window. The objects have no state; a widget of the kind is passed to each function.
class WindowKind {
  public:
    WindowKind(const WindowKind&) = delete;
    WindowKind& operator=(const WindowKind&) = delete;

    // Creation
    [[nodiscard]] virtual WindowClass windowClass(const formenv::Widget& widget) const;
    [[nodiscard]] virtual const std::wstring& windowText(const formenv::Widget& widget) const;
    /// Creates the window of a widget whose messages the tree does not handle; null for all other kinds.
    [[nodiscard]] virtual std::unique_ptr<KnobWindow> createKnob(formenv::Widget& widget, WinPlatform& platform,
                                                                 HWND parent, IUnknown* owner) const;
    /// Passes the widget's state to its new window.
    virtual void initialize(WidgetWindow& window) const;

    // Changes of the widget
    /// A change that only windows of some kinds show: Items, Value, Text, Locked.
    virtual void changed(WidgetWindow& window, formenv::Change what) const;
    /// Shows the present caption and visibility.
    virtual void sync(WidgetWindow& window) const;
    /// Moves the window to `place`, in pixels.
    virtual void place(WidgetWindow& window, RECT place) const;
    /// The window follows the widget's place after a change of the resolution.
    [[nodiscard]] virtual bool placedByTree() const noexcept { return true; }
    /// The platform has another resolution. Called before the windows are told.
    virtual void rescaled(formenv::Widget& widget) const;

    // Painting
    /// Paints the widget without its children.
    virtual void paint(formenv::Widget& widget, HDC dc, RECT bounds, WinPlatform& platform) const;
    /// WM_DRAWITEM of the window.
    virtual void drawItem(const formenv::Widget& widget, const DRAWITEMSTRUCT& item, WinPlatform& platform) const;
    /// The system prints the window, because it has a frame of the system.
    [[nodiscard]] virtual bool printedBySystem() const noexcept { return false; }
    /// The windows around it must show that it has the focus.
    [[nodiscard]] virtual bool focusShownAround(const formenv::Widget& widget) const;
    /// It shows that a window inside it has the focus.
    [[nodiscard]] virtual bool showsFocusInside() const noexcept { return false; }

    // Input
    /// A notification that the window sends to its parent with WM_COMMAND.
    virtual void command(WidgetWindow& window, UINT code) const;
    [[nodiscard]] virtual MousePosition mousePosition(const formenv::Widget& widget, POINT pixel, int dpi) const;

    // Keys in forms
    [[nodiscard]] virtual bool isTabStop() const noexcept { return false; }
    [[nodiscard]] virtual bool isText() const noexcept { return false; }
    /// Alt and the access key of the caption press it.
    [[nodiscard]] virtual bool hasAccessKey() const noexcept { return false; }
    [[nodiscard]] virtual bool pressedByReturn() const noexcept { return false; }
    /// Ctrl+Tab inserts a tab.
    [[nodiscard]] virtual bool insertsTab(const formenv::Widget& widget) const;
    /// Changes the window as a press does, before the parent window is notified.
    virtual void pressed(HWND window) const;

    // Accessibility
    /// The ROLE_SYSTEM_ number; nothing if the system's own accessible object describes the window.
    [[nodiscard]] virtual std::optional<LONG> role(const formenv::Widget& widget) const;
    [[nodiscard]] virtual const std::wstring& accessibleName(const formenv::Widget& widget) const;
    /// Nothing if the widget has no value.
    [[nodiscard]] virtual std::optional<std::wstring> value(const formenv::Widget& widget) const;
    [[nodiscard]] virtual bool takesFocus(const formenv::Widget& widget) const;

  protected:
    WindowKind() noexcept = default;
    ~WindowKind() = default;

    static void syncText(WidgetWindow& window);
    static void syncVisible(WidgetWindow& window);
    /// Calls the click handler. The window may not exist afterwards.
    static void click(const formenv::Widget& widget);
};

/// Base of a kind whose widgets are of the class `W`.
template <class W>
class WindowKindOf : public WindowKind {
  protected:
    ~WindowKindOf() = default;

    [[nodiscard]] static W& of(formenv::Widget& widget) noexcept { return static_cast<W&>(widget); }
    [[nodiscard]] static const W& of(const formenv::Widget& widget) noexcept { return static_cast<const W&>(widget); }
};

/// The kind of window for a widget.
[[nodiscard]] const WindowKind& windowKind(const formenv::Widget& widget) noexcept;

}  // namespace kv::win32
