// The roots of trees: the control itself, and forms. The tree creates their windows.
#include "win32/Drawing.h"
#include "win32/WidgetWindow.h"
#include "win32/WindowKinds.h"
#include "win32/WindowTree.h"

#include <oleacc.h>

namespace kv::win32 {

using formenv::Widget;

namespace {

class UserControlKind final : public WindowKind {
  public:
    void sync(WidgetWindow& window) const override { syncVisible(window); }
    /// The container places the window, so only the size is reported.
    void place(WidgetWindow& window, RECT place) const override {
        const int width = place.right - place.left;
        const int height = place.bottom - place.top;
        RECT now{};
        GetClientRect(window.window(), &now);
        if (now.right != width || now.bottom != height)
            window.tree().rootResized({width, height});
    }
    [[nodiscard]] bool placedByTree() const noexcept override { return false; }
    void paint(Widget& widget, HDC dc, RECT bounds, WinPlatform& platform) const override {
        fillArea(dc, bounds, platform.resolve(widget.backColor()));
    }
    [[nodiscard]] std::optional<LONG> role(const Widget& /*widget*/) const override { return ROLE_SYSTEM_PANE; }
};

class FormKind final : public WindowKind {
  public:
    /// The form shows and hides its window itself, by its state.
    void sync(WidgetWindow& window) const override { syncText(window); }
    void place(WidgetWindow& window, RECT /*place*/) const override { window.tree().placeRoot(); }
    [[nodiscard]] bool placedByTree() const noexcept override { return false; }
    /// A form's place is that of its frame on the screen, so its client area is not at `bounds`.
    void paint(Widget& widget, HDC dc, RECT bounds, WinPlatform& platform) const override {
        GetClipBox(dc, &bounds);
        fillArea(dc, bounds, platform.resolve(widget.backColor()));
    }
    [[nodiscard]] bool printedBySystem() const noexcept override { return true; }
};

}  // namespace

const WindowKind& userControlKind() noexcept {
    static const UserControlKind kind;
    return kind;
}

const WindowKind& formKind() noexcept {
    static const FormKind kind;
    return kind;
}

}  // namespace kv::win32
