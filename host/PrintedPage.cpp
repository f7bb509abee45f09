#include "host/PrintedPage.h"

namespace kv::host {

namespace {

constexpr int kTitlePoints = 14;
constexpr int kDetailsPoints = 10;

/// A font of the device, selected while this object exists.
class PageFont {
  public:
    PageFont(HDC dc, int points, LONG weight) : dc_(dc) {
        LOGFONTW wanted{};
        wanted.lfHeight = -MulDiv(points, GetDeviceCaps(dc, LOGPIXELSY), 72);
        wanted.lfWeight = weight;
        lstrcpynW(wanted.lfFaceName, L"Tahoma", LF_FACESIZE);
        font_ = CreateFontIndirectW(&wanted);
        before_ = SelectObject(dc, font_);
    }
    PageFont(const PageFont&) = delete;
    PageFont& operator=(const PageFont&) = delete;
    ~PageFont() {
        SelectObject(dc_, before_);
        DeleteObject(font_);
    }

    [[nodiscard]] int height() const {
        TEXTMETRICW metrics{};
        GetTextMetricsW(dc_, &metrics);
        return metrics.tmHeight;
    }
    void draw(const std::wstring& text, const ScreenRect& place) const {
        RECT rect = {place.left, place.top, place.right, place.bottom};
        DrawTextW(dc_, text.c_str(), static_cast<int>(text.size()), &rect,
                  DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    }

  private:
    HDC dc_;
    HFONT font_ = nullptr;
    HGDIOBJ before_ = nullptr;
};

int heightOf(HDC dc, int points, LONG weight) {
    return PageFont(dc, points, weight).height();
}

}  // namespace

RECT drawHeading(HDC dc, const PageHeading& heading) {
    const PageLayout page =
        layOutPage(GetDeviceCaps(dc, HORZRES), GetDeviceCaps(dc, VERTRES), heightOf(dc, kTitlePoints, FW_SEMIBOLD),
                   heightOf(dc, kDetailsPoints, FW_NORMAL));
    PageFont(dc, kTitlePoints, FW_SEMIBOLD).draw(heading.title, page.title);
    PageFont(dc, kDetailsPoints, FW_NORMAL).draw(heading.details, page.details);
    return {page.picture.left, page.picture.top, page.picture.right, page.picture.bottom};
}

}  // namespace kv::host
