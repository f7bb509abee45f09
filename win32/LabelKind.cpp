#include "win32/Drawing.h"
#include "win32/WindowKinds.h"

namespace kv::win32 {

using formenv::Label;
using formenv::Widget;

namespace {

class LabelKind final : public WindowKindOf<Label> {
  public:
    [[nodiscard]] WindowClass windowClass(const Widget& widget) const override {
        const DWORD middle = of(widget).middle ? static_cast<DWORD>(SS_CENTERIMAGE) : 0U;
        return {L"STATIC", SS_LEFTNOWORDWRAP | SS_NOPREFIX | middle, 0};
    }
    void paint(Widget& label, HDC dc, RECT bounds, WinPlatform& platform) const override {
        fillArea(dc, bounds, platform.resolve(label.backColor()));
        drawText(dc, bounds, label.caption(), label, platform, DT_LEFT | DT_TOP | DT_NOPREFIX);
    }
};

}  // namespace

const WindowKind& labelKind() noexcept {
    static const LabelKind kind;
    return kind;
}

}  // namespace kv::win32
