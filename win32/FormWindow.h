// The window of a form, of the class "kvForm", with the windows of its controls.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <memory>

#include "formenv/Form.h"
#include "win32/WinPlatform.h"

namespace kv::win32 {

class FormWindow final : public formenv::FormWindow {
  public:
    /// Creates the window hidden. Throws RuntimeError 7 if the system cannot create it. The window is destroyed with
    /// `owner`, which may be null. `keeper` is kept alive during every message and may be null too.
    FormWindow(formenv::Form& form, WinPlatform& platform, HWND owner, IUnknown* keeper);
    ~FormWindow() override;
    FormWindow(const FormWindow&) = delete;
    FormWindow& operator=(const FormWindow&) = delete;

    [[nodiscard]] std::intptr_t handle() const noexcept override;
    void show() override;
    void hide() override;
    void setState(formenv::WindowState state) override;

    /// The part of a form's size that the frame takes.
    [[nodiscard]] static formenv::FormBorder border(int dpi) noexcept;

  private:
    class Root;
    /// Messages that are being handled keep it alive when this object is destroyed.
    std::shared_ptr<Root> root_;
};

}  // namespace kv::win32
