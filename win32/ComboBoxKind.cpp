#include <algorithm>

#include "win32/Drawing.h"
#include "win32/WidgetWindow.h"
#include "win32/WindowKinds.h"

namespace kv::win32 {

using formenv::Change;
using formenv::ComboBox;
using formenv::Widget;

namespace {

constexpr int kBorder = 4;  // pixels above and below the text, at 96 dpi

class ComboBoxKind final : public WindowKindOf<ComboBox> {
  public:
    [[nodiscard]] WindowClass windowClass(const Widget& /*widget*/) const override {
        return {L"COMBOBOX", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, 0};
    }
    void initialize(WidgetWindow& window) const override {
        window.place();
        fillItems(window);
    }
    void changed(WidgetWindow& window, Change what) const override {
        if (what == Change::Items)
            fillItems(window);
        else if (what == Change::Value)
            showChoice(window);
    }
    /// The system gives a closed list the height of its text and a border that it does not scale. The window is moved
    /// down by half of the missing border, so that the text is level with the label beside it.
    void place(WidgetWindow& window, RECT place) const override {
        OffsetRect(&place, 0, scaledPixels(kBorder, window.dpi() - USER_DEFAULT_SCREEN_DPI));
        WindowKind::place(window, place);
    }
    void paint(Widget& widget, HDC dc, RECT bounds, WinPlatform& platform) const override;
    void command(WidgetWindow& window, UINT code) const override {
        if (code != CBN_SELCHANGE)
            return;
        of(window.widget()).setListIndex(static_cast<int>(SendMessageW(window.window(), CB_GETCURSEL, 0, 0)));
        click(window.widget());
    }
    [[nodiscard]] bool isTabStop() const noexcept override { return true; }

  private:
    static void showChoice(WidgetWindow& window) {
        SendMessageW(window.window(), CB_SETCURSEL, static_cast<WPARAM>(of(window.widget()).listIndex()), 0);
    }
    static void fillItems(WidgetWindow& window) {
        SendMessageW(window.window(), CB_RESETCONTENT, 0, 0);
        for (const std::wstring& item : of(window.widget()).items())
            SendMessageW(window.window(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item.c_str()));
        showChoice(window);
    }
};

/// A closed drop-down list with its chosen item, as its window shows it.
void ComboBoxKind::paint(Widget& widget, HDC dc, RECT bounds, WinPlatform& platform) const {
    const ComboBox& combo = of(widget);
    const LONG frame = scaledPixels(kBorder, platform.dpi());
    bounds.bottom = std::min(bounds.bottom, bounds.top + platform.textSize(L"X", combo.font()).height + 2 * frame);
    fillArea(dc, bounds, platform.resolve(combo.backColor()));
    DrawEdge(dc, &bounds, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    RECT arrow = bounds;
    arrow.left = std::max(arrow.left, arrow.right - GetSystemMetrics(SM_CXVSCROLL));
    DrawFrameControl(dc, &arrow, DFC_SCROLL, DFCS_SCROLLCOMBOBOX);
    bounds.right = arrow.left;
    bounds.left += frame / 2;
    drawText(dc, bounds, combo.text(), combo, platform, DT_LEFT | DT_VCENTER | DT_NOPREFIX);
}

}  // namespace

const WindowKind& comboBoxKind() noexcept {
    static const ComboBoxKind kind;
    return kind;
}

}  // namespace kv::win32
