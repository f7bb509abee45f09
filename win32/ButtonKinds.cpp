// Buttons and check boxes: the system's BUTTON.
#include <windows.h>

#include <uxtheme.h>
#include <vssym32.h>

#include "win32/Drawing.h"
#include "win32/Gdi.h"
#include "win32/WidgetWindow.h"
#include "win32/WindowKinds.h"

namespace kv::win32 {

using formenv::Button;
using formenv::CheckBox;
using formenv::Widget;

namespace {

/// Two arrow heads that point at a line between them.
void paintGlyph(HDC dc, const RECT& bounds, raster::Rgb color, int dpi) {
    const LONG middle = (bounds.left + bounds.right) / 2;
    const LONG center = (bounds.top + bounds.bottom) / 2;
    const LONG reach = scaledPixels(4, dpi);
    const LONG gap = scaledPixels(2, dpi);
    const GdiObject<HPEN> pen(CreatePen(PS_SOLID, 1, color));
    const GdiObject<HBRUSH> brush(CreateSolidBrush(color));
    const Selected withPen(dc, pen.get());
    const Selected withBrush(dc, brush.get());
    MoveToEx(dc, middle, center - reach - gap, nullptr);
    LineTo(dc, middle, center + reach + gap + 1);
    for (const LONG side : {-1L, 1L}) {
        const LONG tip = middle + side * gap;
        const POINT head[3] = {
            {tip, center}, {tip + side * reach, center - reach}, {tip + side * reach, center + reach}};
        Polygon(dc, head, 3);
    }
}

class ButtonKind final : public WindowKindOf<Button> {
  public:
    [[nodiscard]] WindowClass windowClass(const Widget& widget) const override {
        const DWORD style = isSign(widget) ? BS_OWNERDRAW : BS_PUSHBUTTON;
        return {L"BUTTON", style | WS_TABSTOP, 0};
    }
    /// A button that shows a sign instead of a caption has the meaning of the sign as its text.
    [[nodiscard]] const std::wstring& windowText(const Widget& widget) const override {
        return isSign(widget) && widget.caption().empty() ? widget.toolTip() : widget.caption();
    }
    void paint(Widget& widget, HDC dc, RECT bounds, WinPlatform& platform) const override {
        paintButton(dc, bounds, of(widget), platform, false, nullptr);
    }
    void drawItem(const Widget& widget, const DRAWITEMSTRUCT& item, WinPlatform& platform) const override {
        paintButton(item.hDC, item.rcItem, of(widget), platform, (item.itemState & ODS_SELECTED) != 0,
                    GetWindowTheme(item.hwndItem));
        if (!(item.itemState & ODS_FOCUS))
            return;
        RECT focus = item.rcItem;
        InflateRect(&focus, -3, -3);
        DrawFocusRect(item.hDC, &focus);
    }
    void command(WidgetWindow& window, UINT code) const override {
        if (code == BN_CLICKED)
            click(window.widget());
    }
    [[nodiscard]] bool isTabStop() const noexcept override { return true; }
    [[nodiscard]] bool hasAccessKey() const noexcept override { return true; }
    [[nodiscard]] bool pressedByReturn() const noexcept override { return true; }

  private:
    static bool isSign(const Widget& widget) noexcept { return of(widget).glyph != formenv::Glyph::None; }

    /// `theme` is that of the button's window, or null. With it, the button looks like the buttons beside it.
    static void paintButton(HDC dc, RECT bounds, const Button& button, WinPlatform& platform, bool pushed,
                            HTHEME theme) {
        fillArea(dc, bounds, platform.resolve(button.backColor()));
        if (!theme ||
            FAILED(DrawThemeBackground(theme, dc, BP_PUSHBUTTON, pushed ? PBS_PRESSED : PBS_NORMAL, &bounds, nullptr)))
            DrawFrameControl(dc, &bounds, DFC_BUTTON, DFCS_BUTTONPUSH | (pushed ? DFCS_PUSHED : 0U));
        if (isSign(button))
            paintGlyph(dc, bounds, platform.resolve(button.foreColor()), platform.dpi());
        else
            drawText(dc, bounds, button.caption(), button, platform, DT_CENTER | DT_VCENTER);
    }
};

class CheckBoxKind final : public WindowKindOf<CheckBox> {
  public:
    [[nodiscard]] WindowClass windowClass(const Widget& /*widget*/) const override {
        return {L"BUTTON", BS_AUTOCHECKBOX | WS_TABSTOP, 0};
    }
    void initialize(WidgetWindow& window) const override { showTick(window); }
    void changed(WidgetWindow& window, formenv::Change what) const override {
        if (what == formenv::Change::Value)
            showTick(window);
    }
    void paint(Widget& widget, HDC dc, RECT bounds, WinPlatform& platform) const override {
        const int size = bounds.bottom - bounds.top;
        RECT tick{bounds.left, bounds.top, bounds.left + size, bounds.bottom};
        InflateRect(&tick, -2, -2);
        DrawFrameControl(dc, &tick, DFC_BUTTON, DFCS_BUTTONCHECK | (of(widget).value() != 0 ? DFCS_CHECKED : 0U));
        bounds.left += size;
        drawText(dc, bounds, widget.caption(), widget, platform, DT_LEFT | DT_VCENTER);
    }
    void command(WidgetWindow& window, UINT code) const override {
        if (code != BN_CLICKED)
            return;
        of(window.widget()).setValue(isTicked(window.window()) ? 1 : 0);
        click(window.widget());
    }
    [[nodiscard]] bool isTabStop() const noexcept override { return true; }
    [[nodiscard]] bool hasAccessKey() const noexcept override { return true; }
    void pressed(HWND window) const override {
        SendMessageW(window, BM_SETCHECK, isTicked(window) ? BST_UNCHECKED : BST_CHECKED, 0);
    }

  private:
    static bool isTicked(HWND window) noexcept { return SendMessageW(window, BM_GETCHECK, 0, 0) == BST_CHECKED; }
    static void showTick(WidgetWindow& window) {
        SendMessageW(window.window(), BM_SETCHECK, static_cast<WPARAM>(of(window.widget()).value()), 0);
    }
};

}  // namespace

const WindowKind& buttonKind() noexcept {
    static const ButtonKind kind;
    return kind;
}

const WindowKind& checkBoxKind() noexcept {
    static const CheckBoxKind kind;
    return kind;
}

}  // namespace kv::win32
