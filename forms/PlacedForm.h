// The part of a form that the placement procedures use.
#pragma once

#include <cstdint>

#include "formenv/Form.h"

namespace kv::forms {

class PlacedForm {
  public:
    PlacedForm() = default;
    PlacedForm(const PlacedForm&) = delete;
    PlacedForm& operator=(const PlacedForm&) = delete;
    virtual ~PlacedForm() = default;

    /// 0 while the form has no window.
    [[nodiscard]] virtual std::intptr_t hWnd() const = 0;
    /// On the desktop, twips, as it is or will be while the state is Normal.
    [[nodiscard]] virtual formenv::Place place() const = 0;
    virtual void move(const formenv::Place& place) = 0;
    [[nodiscard]] virtual formenv::WindowState windowState() const = 0;
    virtual void setWindowState(formenv::WindowState state) = 0;
};

/// A form of the form environment. Refers to it.
class PlacedWindow final : public PlacedForm {
  public:
    explicit PlacedWindow(formenv::Form& form) noexcept : form_(form) {}
    [[nodiscard]] std::intptr_t hWnd() const override { return form_.hWnd(); }
    [[nodiscard]] formenv::Place place() const override { return form_.place(); }
    void move(const formenv::Place& place) override { form_.move(place); }
    [[nodiscard]] formenv::WindowState windowState() const override { return form_.windowState(); }
    void setWindowState(formenv::WindowState state) override { form_.setWindowState(state); }

  private:
    formenv::Form& form_;
};

}  // namespace kv::forms
