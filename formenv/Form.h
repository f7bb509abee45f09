// A top-level window as a model: it holds place, state and controls whether or not it has a window.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "formenv/Platform.h"
#include "formenv/Widget.h"

namespace kv::formenv {

enum class WindowState { Normal = 0, Minimized = 1, Maximized = 2 };

/// The window of a loaded form with those of its controls. Destroying it asks the user nothing and runs none of the
/// form's handlers. It may be destroyed at any time, also by the handlers that it calls.
class FormWindow {
  public:
    FormWindow() = default;
    FormWindow(const FormWindow&) = delete;
    FormWindow& operator=(const FormWindow&) = delete;
    virtual ~FormWindow() = default;

    /// The system's handle of the window; 0 for none.
    [[nodiscard]] virtual std::intptr_t handle() const noexcept = 0;
    /// Shows the window in the form's state and does not take the focus from where it is.
    virtual void show() = 0;
    virtual void hide() = 0;
    /// Of a window that is shown.
    virtual void setState(WindowState state) = 0;
};

/// `place()` is the outer rectangle on the desktop, twips, as it is or will be while the state is Normal. `visible()`
/// is false until the form is shown. The owner of the controls calls `dropWindow` before they are destroyed.
class Form : public Widget {
  public:
    Form(Platform& platform, std::wstring name);
    ~Form() override;

    /// Makes the window, not yet shown; does nothing while there is one. Throws what the platform throws.
    void load();
    [[nodiscard]] bool loaded() const noexcept { return window_ != nullptr; }
    /// Loads the form if it is not loaded.
    void show();
    void hide();
    /// Calls `onQueryUnload`, then `onUnload`, and destroys the window. False when the form stays. Returns true at once
    /// when the form is not loaded.
    bool unload();
    /// Destroys the window without calling a handler.
    void dropWindow() noexcept;

    [[nodiscard]] WindowState windowState() const noexcept { return state_; }
    void setWindowState(WindowState state);
    /// The client area, twips.
    [[nodiscard]] double scaleWidth() const noexcept { return scaleWidth_; }
    [[nodiscard]] double scaleHeight() const noexcept { return scaleHeight_; }
    /// The least outer size that the user can give the form, twips.
    [[nodiscard]] double leastWidth() const noexcept { return leastWidth_; }
    [[nodiscard]] double leastHeight() const noexcept { return leastHeight_; }
    /// Has to be set before the form is loaded.
    void setLeastSize(double width, double height) noexcept;
    [[nodiscard]] std::intptr_t hWnd() const noexcept { return window_ ? window_->handle() : 0; }

    /// A message box owned by the form; by the control's window while the form is not shown.
    MessageAnswer messageBox(const std::wstring& text, const std::wstring& title, MessageIcon icon,
                             MessageButtons buttons);

    /// The client area has a new size.
    Handler onResize;
    /// False keeps the form open. Not called when the system destroys the window, for example with its owner.
    std::function<bool()> onQueryUnload;
    /// The window is about to be destroyed; the place and the texts can still be read.
    Handler onUnload;
    /// Gets every key of the form before the control with the focus does; true when the key was used.
    std::function<bool(int key, int shift)> onKeyDown;

    // Called by the window.
    void clientResized(double width, double height);
    /// `place` is the one of the Normal state.
    void movedByUser(const Place& place, WindowState state);
    /// The user pressed a key; true when it was used.
    bool keyPressed(int key, int shift);
    /// The system destroyed the window.
    void windowLost();

  protected:
    void placed() override;

  private:
    void goneByNow();

    Platform& platform_;
    std::unique_ptr<FormWindow> window_;
    bool unloading_ = false;
    WindowState state_ = WindowState::Normal;
    double scaleWidth_ = 0.0;
    double scaleHeight_ = 0.0;
    double leastWidth_ = 0.0;
    double leastHeight_ = 0.0;
    /// A handler may destroy the form under the member that called it.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace kv::formenv
