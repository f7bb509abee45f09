#include "win32/Drawing.h"
#include "win32/WindowKinds.h"

namespace kv::win32 {

using formenv::Label;
using formenv::Widget;

namespace {

class LabelKind final : public WindowKindOf<Label> {
  public:
    [[nodiscard]] WindowClass windowClass(const Widget& widget) const override {
        if (isFramed(widget))
            return {L"STATIC", WS_BORDER | SS_CENTER | SS_CENTERIMAGE | SS_NOPREFIX, 0};
        const DWORD middle = of(widget).middle ? static_cast<DWORD>(SS_CENTERIMAGE) : 0U;
        return {L"STATIC", SS_LEFTNOWORDWRAP | SS_NOPREFIX | middle, 0};
    }
    void paint(Widget& label, HDC dc, RECT bounds, WinPlatform& platform) const override {
        fillArea(dc, bounds, platform.resolve(label.backColor()));
        if (isFramed(label)) {
            FrameRect(dc, &bounds, GetSysColorBrush(COLOR_WINDOWFRAME));
            drawText(dc, bounds, label.caption(), label, platform,
                     DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
        } else {
            drawText(dc, bounds, label.caption(), label, platform, DT_LEFT | DT_TOP | DT_NOPREFIX);
        }
    }

  private:
    /// What has the color of tool tips lies over a picture, from which the frame sets it apart.
    [[nodiscard]] static bool isFramed(const Widget& widget) {
        return widget.backColor() == raster::system_color::kToolTipBackground;
    }
};

}  // namespace

const WindowKind& labelKind() noexcept {
    static const LabelKind kind;
    return kind;
}

}  // namespace kv::win32
