// The window of one widget in a tree of windows.
#pragma once

#include <windows.h>

#include "formenv/Widget.h"
#include "win32/Accessible.h"
#include "win32/WindowKind.h"

namespace kv::win32 {

class WindowTree;

class WidgetWindow final : public formenv::Peer {
  public:
    WidgetWindow(WindowTree& tree, formenv::Widget& widget, HWND window);
    ~WidgetWindow() override;
    WidgetWindow(const WidgetWindow&) = delete;
    WidgetWindow& operator=(const WidgetWindow&) = delete;

    void changed(formenv::Change what) override;
    [[nodiscard]] WindowTree& tree() const noexcept { return tree_; }
    [[nodiscard]] const WindowKind& kind() const noexcept { return kind_; }
    [[nodiscard]] formenv::Widget& widget() noexcept { return widget_; }
    [[nodiscard]] const formenv::Widget& widget() const noexcept { return widget_; }
    [[nodiscard]] HWND window() const noexcept { return window_; }
    [[nodiscard]] int dpi() const noexcept;
    /// Updates the caption and the visibility after a burst of changes.
    void sync();
    /// The tree has another resolution.
    void rescale();
    /// Moves the window to the widget's place.
    void place();
    /// The program is setting the text of the window. The window's own notifications are then ignored.
    [[nodiscard]] bool filling() const noexcept { return filling_; }
    void setFilling(bool filling) noexcept { filling_ = filling; }
    [[nodiscard]] const Speech& speech() const noexcept { return speech_; }

  private:
    WindowTree& tree_;
    const WindowKind& kind_;
    formenv::Widget& widget_;
    HWND window_;
    Speech speech_;
    bool stale_ = false;
    bool filling_ = false;
};

}  // namespace kv::win32
