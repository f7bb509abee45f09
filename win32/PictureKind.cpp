#include <oleacc.h>

#include "formenv/PictureBox.h"
#include "win32/DibSurface.h"
#include "win32/WidgetWindow.h"
#include "win32/WindowClasses.h"
#include "win32/WindowKinds.h"

namespace kv::win32 {

using formenv::PictureBox;
using formenv::Widget;

namespace {

class PictureKind final : public WindowKindOf<PictureBox> {
  public:
    [[nodiscard]] WindowClass windowClass(const Widget& widget) const override {
        // Hosts that handle only dialog keys reach a picture inside another one by WS_EX_CONTROLPARENT. A picture that
        // takes the focus itself would be passed over with it.
        if (widget.takesFocus)
            return {kPictureClass, WS_CLIPCHILDREN | WS_TABSTOP, 0};
        return {kPictureClass, WS_CLIPCHILDREN,
                widget.children().empty() ? 0U : static_cast<DWORD>(WS_EX_CONTROLPARENT)};
    }
    [[nodiscard]] const std::wstring& windowText(const Widget& widget) const override { return widget.name(); }
    void initialize(WidgetWindow& window) const override { of(window.widget()).shown(); }
    void sync(WidgetWindow& window) const override { syncVisible(window); }
    void place(WidgetWindow& window, RECT place) const override {
        WindowKind::place(window, place);
        InvalidateRect(window.window(), nullptr, FALSE);
    }
    void rescaled(Widget& widget) const override { of(widget).rescaled(); }
    void paint(Widget& widget, HDC dc, RECT bounds, WinPlatform& /*platform*/) const override {
        PictureBox& picture = of(widget);
        auto& surface = static_cast<DibSurface&>(picture.surface());
        BitBlt(dc, bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top, surface.dc(), 0, 0,
               SRCCOPY);
        picture.shown();
    }
    /// A picture shows nothing but its own pixels.
    [[nodiscard]] bool focusShownAround(const Widget& widget) const override { return widget.takesFocus; }
    [[nodiscard]] MousePosition mousePosition(const Widget& widget, POINT pixel, int /*dpi*/) const override {
        return {of(widget).userX(pixel.x), of(widget).userY(pixel.y)};
    }
    [[nodiscard]] std::optional<LONG> role(const Widget& widget) const override {
        return widget.takesFocus ? ROLE_SYSTEM_CHART : ROLE_SYSTEM_GRAPHIC;
    }
    [[nodiscard]] const std::wstring& accessibleName(const Widget& widget) const override { return widget.name(); }
};

}  // namespace

const WindowKind& pictureKind() noexcept {
    static const PictureKind kind;
    return kind;
}

}  // namespace kv::win32
