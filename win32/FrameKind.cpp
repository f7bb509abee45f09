#include <oleacc.h>

#include <algorithm>

#include "win32/Drawing.h"
#include "win32/WidgetWindow.h"
#include "win32/WindowClasses.h"
#include "win32/WindowKinds.h"

namespace kv::win32 {

using formenv::Widget;

namespace {

constexpr int kCaptionInset = 9;  // pixels at 96 dpi

class FrameKind final : public WindowKind {
  public:
    [[nodiscard]] WindowClass windowClass(const Widget& /*widget*/) const override {
        return {kFrameClass, WS_CLIPCHILDREN, WS_EX_CONTROLPARENT};
    }
    void sync(WidgetWindow& window) const override {
        InvalidateRect(window.window(), nullptr, FALSE);
        WindowKind::sync(window);
    }
    void place(WidgetWindow& window, RECT place) const override {
        WindowKind::place(window, place);
        InvalidateRect(window.window(), nullptr, FALSE);
    }
    void paint(Widget& frame, HDC dc, RECT bounds, WinPlatform& platform) const override;
    [[nodiscard]] bool showsFocusInside() const noexcept override { return true; }
    [[nodiscard]] std::optional<LONG> role(const Widget& /*widget*/) const override { return ROLE_SYSTEM_GROUPING; }
};

void FrameKind::paint(Widget& frame, HDC dc, RECT bounds, WinPlatform& platform) const {
    fillArea(dc, bounds, platform.resolve(frame.backColor()));
    const int scale = std::max(1, scaledPixels(1, platform.dpi()));
    const raster::PixelSize text = platform.textSize(L"+", frame.font());
    // The border runs through the middle of the caption's line, as in the system's group boxes.
    RECT border = bounds;
    border.top += frame.caption().empty() ? 0 : text.height / 2;
    drawBorder(dc, border, scale, platform.resolve(raster::system_color::kButtonShadow));
    if (frame.caption().empty())
        return;
    const raster::PixelSize caption = platform.textSize(frame.caption(), frame.font());
    const int left = bounds.left + scaledPixels(kCaptionInset, platform.dpi());
    RECT gap{left - 2 * scale, bounds.top, left + caption.width + 2 * scale, bounds.top + caption.height};
    fillArea(dc, gap, platform.resolve(frame.backColor()));
    gap.left = left;
    drawText(dc, gap, frame.caption(), frame, platform, DT_LEFT | DT_TOP | DT_NOPREFIX);
}

}  // namespace

const WindowKind& frameKind() noexcept {
    static const FrameKind kind;
    return kind;
}

}  // namespace kv::win32
