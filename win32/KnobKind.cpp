#include <oleacc.h>

#include "win32/KnobWindow.h"
#include "win32/WindowKinds.h"

namespace kv::win32 {

using formenv::Widget;
using turndial::KnobBase;

namespace {

/// Knobs have windows that handle their own messages. A widget of this kind that is not a knob has no window.
class KnobKind final : public WindowKind {
  public:
    [[nodiscard]] std::unique_ptr<KnobWindow> createKnob(Widget& widget, WinPlatform& platform, HWND parent,
                                                         IUnknown* owner) const override {
        auto* const knob = dynamic_cast<KnobBase*>(&widget);
        return knob ? KnobWindow::create(*knob, platform, parent, owner) : nullptr;
    }
    void paint(Widget& widget, HDC dc, RECT bounds, WinPlatform& platform) const override {
        if (auto* const knob = dynamic_cast<KnobBase*>(&widget))
            KnobWindow::paint(
                *knob, platform, dc, {bounds.left, bounds.top},
                {static_cast<int>(bounds.right - bounds.left), static_cast<int>(bounds.bottom - bounds.top)});
    }
    [[nodiscard]] std::optional<LONG> role(const Widget& /*widget*/) const override { return ROLE_SYSTEM_DIAL; }
    [[nodiscard]] std::optional<std::wstring> value(const Widget& widget) const override {
        const auto* const knob = dynamic_cast<const KnobBase*>(&widget);
        return knob ? std::optional(knob->sValText()) : std::nullopt;
    }
    [[nodiscard]] bool takesFocus(const Widget& /*widget*/) const override { return true; }
};

}  // namespace

const WindowKind& knobKind() noexcept {
    static const KnobKind kind;
    return kind;
}

}  // namespace kv::win32
