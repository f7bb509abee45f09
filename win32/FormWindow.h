// The real window of a form, of the class "kvForm", with those of its controls.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <memory>

#include "formenv/Form.h"
#include "win32/WinPlatform.h"

namespace kv::win32 {

class FormWindow final : public formenv::FormWindow {
  public:
    /// Makes the window, not shown; throws RuntimeError 7 when the system refuses. It goes with `owner`, which may be
    /// null. `keeper` is held through every message and may be null too.
    FormWindow(formenv::Form& form, WinPlatform& platform, HWND owner, IUnknown* keeper);
    ~FormWindow() override;
    FormWindow(const FormWindow&) = delete;
    FormWindow& operator=(const FormWindow&) = delete;

    [[nodiscard]] std::intptr_t handle() const noexcept override;
    void show() override;
    void hide() override;
    void setState(formenv::WindowState state) override;

    /// What the frame takes of a form's size.
    [[nodiscard]] static formenv::FormBorder border(int dpi) noexcept;

  private:
    class Root;
    /// Messages that run while this object goes hold it to their end.
    std::shared_ptr<Root> root_;
};

}  // namespace kv::win32
