#include "win32/KnobWindow.h"

#include <algorithm>

#include "raster/Twips.h"
#include "util/QuietArithmetic.h"
#include "win32/DibSurface.h"
#include "win32/Held.h"
#include "win32/WindowClasses.h"

namespace kv::win32 {

using formenv::Change;
using turndial::KnobBase;
using turndial::KnobPalette;

namespace {

class Painting {
  public:
    explicit Painting(HWND window) noexcept : window_(window), dc_(BeginPaint(window, &paint_)) {}
    ~Painting() { EndPaint(window_, &paint_); }
    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;
    [[nodiscard]] HDC dc() const noexcept { return dc_; }

  private:
    HWND window_;
    PAINTSTRUCT paint_{};
    HDC dc_;
};

/// Paints the texts of a knob on the canvas of its surface.
class SurfaceText final : public raster::TextPainter {
  public:
    explicit SurfaceText(raster::Canvas& canvas) : canvas_(canvas) {}
    raster::PixelSize textSize(std::wstring_view text, const raster::Font& font) override {
        return canvas_.textSize(text, font);
    }
    void draw(const raster::PixelBuffer& /*buffer*/, raster::PixelPoint at, std::wstring_view text,
              const raster::Font& font, raster::Rgb color) override {
        canvas_.text(at, text, font, color);
    }

  private:
    raster::Canvas& canvas_;
};

KnobPalette presentPalette(const KnobBase& knob, const WinPlatform& platform) {
    KnobPalette palette = turndial::systemPalette(platform, knob);
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    if (SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
        (contrast.dwFlags & HCF_HIGHCONTRASTON))
        palette.highContrast = true;
    return palette;
}

void paintInto(formenv::Surface& surface, KnobBase& knob, WinPlatform& platform, const KnobPalette& palette) {
    SurfaceText text(surface.canvas());
    // The knob stores into the pixels, so GDI must have finished its drawing in them.
    GdiFlush();
    knob.paint(surface.pixels(), text, platform.dpi(), palette);
}

void copyTo(HDC dc, POINT origin, formenv::Surface& surface) {
    const raster::PixelBuffer pixels = surface.pixels();
    BitBlt(dc, origin.x, origin.y, pixels.width, pixels.height, static_cast<DibSurface&>(surface).dc(), 0, 0, SRCCOPY);
}

}  // namespace

KnobWindow::KnobWindow(KnobBase& knob, WinPlatform& platform, IUnknown* owner)
    : knob_(knob), platform_(platform), owner_(owner), speech_(knob) {}

std::unique_ptr<KnobWindow> KnobWindow::create(KnobBase& knob, WinPlatform& platform, HWND parent, IUnknown* owner) {
    // Without CS_DBLCLKS, the second press of a double-click turns the knob like the first one.
    if (!registerWindowClasses(kKnobClasses, &KnobWindow::procedure, 0))
        return nullptr;
    std::unique_ptr<KnobWindow> made(new KnobWindow(knob, platform, owner));
    const DWORD style = WS_CHILD | WS_CLIPSIBLINGS | WS_TABSTOP | (knob.visible() ? WS_VISIBLE : 0U) |
                        (knob.enabled() ? 0U : WS_DISABLED);
    const HWND window = CreateWindowExW(0, knob.className(), knob.sCaption().c_str(), style, 0, 0, 0, 0, parent,
                                        nullptr, ownModule(), made.get());
    if (!window)
        return nullptr;
    made->place();
    knob.setPeer(made.get());
    return made;
}

KnobWindow::~KnobWindow() {
    *alive_ = false;
    if (knob_.peer() == this)
        knob_.setPeer(nullptr);
    if (!window_)
        return;
    SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    DestroyWindow(window_);
}

void KnobWindow::changed(Change what) {
    switch (what) {
        case Change::Place:
            place();
            break;
        case Change::Visible:
            ShowWindow(window_, knob_.visible() ? SW_SHOWNA : SW_HIDE);
            break;
        case Change::Enabled:
            EnableWindow(window_, knob_.enabled());
            invalidate();
            break;
        case Change::Caption:
            SetWindowTextW(window_, knob_.sCaption().c_str());
            invalidate();
            break;
        case Change::ToolTip:
        case Change::Items:
        case Change::Text:
        case Change::Locked:
            break;
        case Change::Value:
            invalidate();
            Speech::tellValue(window_);
            break;
        case Change::Spoken:
            Speech::tellValue(window_);
            break;
        case Change::Update:
            UpdateWindow(window_);
            break;
        case Change::Colors:
        case Change::Font:
        case Change::Picture:
        case Change::PictureNow:
            invalidate();
            break;
    }
}

void KnobWindow::place() {
    const int dpi = platform_.dpi();
    const int left = raster::twipsToPixels(knob_.left(), dpi);
    const int top = raster::twipsToPixels(knob_.top(), dpi);
    const int width = raster::twipsToPixels(knob_.left() + knob_.width(), dpi) - left;
    const int height = raster::twipsToPixels(knob_.top() + knob_.height(), dpi) - top;
    SetWindowPos(window_, nullptr, left, top, std::max(width, 0), std::max(height, 0), SWP_NOZORDER | SWP_NOACTIVATE);
}

void KnobWindow::rescale() {
    place();
    invalidate();
}

void KnobWindow::invalidate() {
    painted_ = false;
    if (window_)
        InvalidateRect(window_, nullptr, FALSE);
}

void KnobWindow::paint(KnobBase& knob, WinPlatform& platform, HDC dc, POINT origin, raster::PixelSize size) {
    if (size.width < 1 || size.height < 1)
        return;
    const std::unique_ptr<formenv::Surface> surface = platform.createSurface(size);
    paintInto(*surface, knob, platform, presentPalette(knob, platform));
    copyTo(dc, origin, *surface);
}

void KnobWindow::paintTo(HDC dc) {
    RECT client{};
    GetClientRect(window_, &client);
    if (client.right < 1 || client.bottom < 1)
        return;
    if (!surface_ || surface_->pixels().width != client.right || surface_->pixels().height != client.bottom) {
        surface_ = platform_.createSurface({client.right, client.bottom});
        painted_ = false;
    }
    const KnobPalette palette = presentPalette(knob_, platform_);
    if (!painted_ || palette != paintedWith_) {
        paintInto(*surface_, knob_, platform_, palette);
        paintedWith_ = palette;
        painted_ = true;
    }
    copyTo(dc, {0, 0}, *surface_);
}

LRESULT CALLBACK KnobWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* made = static_cast<KnobWindow*>(reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
        made->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made));
    }
    auto* self = reinterpret_cast<KnobWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!self)
        return DefWindowProcW(window, message, wParam, lParam);
    const Held held(self->owner_);
    const std::shared_ptr<bool> alive = self->alive_;
    const util::QuietArithmetic quiet;
    try {
        return self->handle(message, wParam, lParam);
    } catch (...) {
        // The system calls the window procedure, so no exception may leave it.
        if (*alive && self->window_)
            followHold(self->window_, self->knob_);
        return 0;
    }
}

LRESULT KnobWindow::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND window = window_;
    switch (message) {
        case WM_NCDESTROY:
            SetWindowLongPtrW(window, GWLP_USERDATA, 0);
            window_ = nullptr;
            break;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT: {
            const Painting painting(window);
            if (painting.dc())
                paintTo(painting.dc());
            return 0;
        }
        case WM_PRINTCLIENT:
            paintTo(reinterpret_cast<HDC>(wParam));
            return 0;
        case WM_SIZE:
            invalidate();
            return 0;
        case WM_SYSCOLORCHANGE:
        case WM_SETTINGCHANGE:
            invalidate();
            break;
        case WM_GETDLGCODE:
            return dialogCode(lParam);
        case WM_GETOBJECT:
            if (const std::optional<LRESULT> answer = speech_.answer(window, wParam, lParam))
                return *answer;
            break;
        default:
            if (handleInput(message, wParam, lParam))
                return 0;
            break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace kv::win32
