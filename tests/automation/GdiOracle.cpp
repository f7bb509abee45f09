#include "tests/automation/GdiOracle.h"

#include <olectl.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace kv::test {

namespace {

constexpr double kTwipsPerPixel = 15.0;
constexpr double kMargin = 60.0;

int nearest(double value) {
    return static_cast<int>(std::floor(value + 0.5));
}

int pixels(double twips) {
    return nearest(twips / kTwipsPerPixel);
}

HFONT labelFont() {
    return CreateFontW(-MulDiv(8, 96, 72), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_SWISS, L"Tahoma");
}

SIZE extentOf(HDC dc, const std::wstring& text) {
    SIZE size{};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    return size;
}

HGDIOBJ brushOf(int fillStyle, COLORREF color) {
    switch (fillStyle) {
        case 0:
            return CreateSolidBrush(color);
        case 2:
            return CreateHatchBrush(HS_HORIZONTAL, color);
        case 3:
            return CreateHatchBrush(HS_VERTICAL, color);
        case 4:
            return CreateHatchBrush(HS_BDIAGONAL, color);
        case 5:
            return CreateHatchBrush(HS_FDIAGONAL, color);
        case 6:
            return CreateHatchBrush(HS_CROSS, color);
        case 7:
            return CreateHatchBrush(HS_DIAGCROSS, color);
        default:
            return GetStockObject(NULL_BRUSH);
    }
}

}  // namespace

COLORREF rgbOf(OLE_COLOR color) {
    COLORREF rgb = 0;
    OleTranslateColor(color, nullptr, &rgb);
    return rgb & 0xFFFFFFU;
}

GdiPicture::GdiPicture(int width, int height, COLORREF back)
    : width_(width), height_(height), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    bits_ = static_cast<const std::uint32_t*>(bits);
    before_ = SelectObject(dc_, bitmap_);
    SetBkMode(dc_, TRANSPARENT);
    fill(back);
}

GdiPicture::~GdiPicture() {
    SelectObject(dc_, before_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
}

void GdiPicture::fill(COLORREF color) {
    const RECT all{0, 0, width_, height_};
    const HBRUSH brush = CreateSolidBrush(color);
    FillRect(dc_, &all, brush);
    DeleteObject(brush);
}

void GdiPicture::line(int x1, int y1, int x2, int y2, COLORREF color, int penWidth, int rop) {
    const HPEN pen = CreatePen(PS_SOLID, penWidth, color);
    const HGDIOBJ before = SelectObject(dc_, pen);
    SetROP2(dc_, rop);
    MoveToEx(dc_, x1, y1, nullptr);
    LineTo(dc_, x2, y2);
    SelectObject(dc_, before);
    DeleteObject(pen);
}

void GdiPicture::box(int x1, int y1, int x2, int y2, COLORREF color, int fillStyle, int rop) {
    const HPEN pen = CreatePen(PS_SOLID, 1, color);
    const HGDIOBJ brush = brushOf(fillStyle, color);
    const HGDIOBJ penBefore = SelectObject(dc_, pen);
    const HGDIOBJ brushBefore = SelectObject(dc_, brush);
    SetROP2(dc_, rop);
    Rectangle(dc_, std::min(x1, x2), std::min(y1, y2), std::max(x1, x2) + 1, std::max(y1, y2) + 1);
    SelectObject(dc_, penBefore);
    SelectObject(dc_, brushBefore);
    DeleteObject(pen);
    DeleteObject(brush);
}

Picture GdiPicture::read() const {
    GdiFlush();
    Picture picture{width_, height_, {}};
    picture.pixels.reserve(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
    for (int i = 0; i < width_ * height_; ++i) {
        const std::uint32_t stored = bits_[i];
        picture.pixels.push_back(RGB(stored >> 16U & 0xFFU, stored >> 8U & 0xFFU, stored & 0xFFU));
    }
    return picture;
}

OracleLayout oracleLayout(double width, double height, double panelHeight) {
    const HDC dc = CreateCompatibleDC(nullptr);
    const HFONT font = labelFont();
    const HGDIOBJ before = SelectObject(dc, font);
    const double halfWidth = extentOf(dc, L"0.000").cx * kTwipsPerPixel / 2.0;
    SelectObject(dc, before);
    DeleteObject(font);
    DeleteDC(dc);

    const double picWidth = width - kMargin - kMargin;
    const double picHeight = height - kMargin - panelHeight - kMargin;
    OracleLayout layout;
    layout.unitsWidth = picWidth - 75.0 - (60.0 + 15.0);
    layout.unitsHeight = picHeight - 165.0 - (60.0 + 105.0);
    layout.left = halfWidth;
    layout.top = 60.0;
    layout.spectrumWidth = layout.unitsWidth - layout.left - halfWidth;
    layout.spectrumHeight = layout.unitsHeight - layout.top - 300.0;
    layout.unitsPixelWidth = pixels(75.0 + layout.unitsWidth) - pixels(75.0);
    layout.unitsPixelHeight = pixels(165.0 + layout.unitsHeight) - pixels(165.0);
    layout.spectrum = {pixels(layout.left), pixels(layout.top), pixels(layout.left + layout.spectrumWidth),
                       pixels(layout.top + layout.spectrumHeight)};
    return layout;
}

GdiOracle::GdiOracle(const OracleDisplay& display)
    : display_(display),
      layout_(oracleLayout(display.width, display.height, display.panelHeight)),
      font_(labelFont()),
      strip_(layout_.unitsPixelWidth, layout_.unitsPixelHeight, rgbOf(display.stripBack)),
      plot_(layout_.spectrum.right - layout_.spectrum.left, layout_.spectrum.bottom - layout_.spectrum.top,
            rgbOf(display.spectrumBack)) {}

GdiOracle::~GdiOracle() {
    DeleteObject(font_);
}

int GdiOracle::column(double frequency) const {
    return nearest((frequency - display_.minFreq) / (display_.maxFreq - display_.minFreq) * plot_.width());
}

int GdiOracle::row(double power) const {
    return nearest((power - display_.maxPwr) / (display_.minPwr - display_.maxPwr) * plot_.height());
}

bool GdiOracle::reaches(const OracleChannel& channel) const {
    return (channel.visible || channel.drawn) && hasRange() && !(channel.lo > display_.maxFreq) &&
           !(channel.hi < display_.minFreq);
}

void GdiOracle::drawChannel(const OracleChannel& channel) {
    if (!reaches(channel))
        return;
    const int rop = channel.visible ? R2_COPYPEN : R2_NOTXORPEN;
    const int bottom = row(display_.minPwr);
    const int top = row(channel.power > display_.minPwr ? channel.power : display_.maxPwr / 2.0);
    plot_.box(column(std::max(channel.lo, display_.minFreq)), bottom, column(std::min(channel.hi, display_.maxFreq)),
              top, rgbOf(channel.color), channel.fill, rop);
    if (channel.freq >= display_.minFreq && channel.freq <= display_.maxFreq)
        plot_.line(column(channel.freq), bottom, column(channel.freq), top, rgbOf(channel.line), 1, rop);
}

void GdiOracle::drawGrid() {
    const COLORREF color = rgbOf(display_.gridColor);
    const double step = (display_.maxFreq - display_.minFreq) / display_.nGridX;
    for (int i = 0; i <= display_.nGridX; ++i) {
        const double x = i * step + display_.minFreq;
        if (x >= 0.0)
            plot_.line(column(x), row(display_.minPwr), column(x), row(display_.maxPwr), color,
                       2 * i == display_.nGridX ? 3 : 1, R2_COPYPEN);
    }
    if (display_.minFreq < 0.0)
        plot_.box(column(display_.minFreq), row(display_.minPwr), column(0.0), row(display_.maxPwr), color, 6,
                  R2_COPYPEN);
}

void GdiOracle::drawLabels() {
    strip_.fill(rgbOf(display_.stripBack));
    const double step = (display_.maxFreq - display_.minFreq) / display_.nGridX;
    for (int i = 0; i <= display_.nGridX; i += 2) {
        const double x = i * step + display_.minFreq;
        if (x >= 0.0)
            drawLabel(x);
    }
}

void GdiOracle::drawLabel(double frequency) {
    constexpr COLORREF kTickColor = RGB(128, 128, 128);
    const int x = column(frequency);
    const double height = display_.minPwr - display_.maxPwr;
    plot_.line(x, row(display_.maxPwr + height), x, row(display_.maxPwr + height - height / 20.0), kTickColor, 3,
               R2_COPYPEN);
    char digits[64];
    std::snprintf(digits, sizeof digits, "%.3f", std::floor(frequency * 1000.0 + 0.5) / 1000.0);
    const std::string narrow = digits;
    const std::wstring text(narrow.begin(), narrow.end());
    const HGDIOBJ before = SelectObject(strip_.dc(), font_);
    const SIZE size = extentOf(strip_.dc(), text);
    const double width = size.cx * kTwipsPerPixel;
    const double share = (frequency - display_.minFreq) / (display_.maxFreq - display_.minFreq);
    const double left = layout_.left + share * layout_.spectrumWidth - width / 2.0;
    if (left + width <= layout_.left + layout_.spectrumWidth) {
        // The strip is narrower on the left than half a long label: that one begins at the strip's edge.
        const double shown = std::max(left, 0.0);
        const double top = layout_.top + layout_.spectrumHeight + (300.0 - size.cy * kTwipsPerPixel) / 2.0;
        SetTextColor(strip_.dc(), rgbOf(display_.stripFore));
        TextOutW(strip_.dc(), nearest(shown / layout_.unitsWidth * strip_.width()),
                 nearest(top / layout_.unitsHeight * strip_.height()), text.c_str(), static_cast<int>(text.size()));
    }
    SelectObject(strip_.dc(), before);
}

void GdiOracle::drawDisplay(const std::vector<OracleChannel>& tx, const std::vector<OracleChannel>& rx,
                            bool withCursor) {
    if (!hasRange())
        return;
    for (const std::vector<OracleChannel>* list : {&tx, &rx})
        for (const OracleChannel& channel : *list)
            if (channel.visible && channel.freq > 0.0)
                drawChannel(channel);
    drawGrid();
    drawLabels();
    if (withCursor && display_.cursor >= display_.minFreq && display_.cursor <= display_.maxFreq)
        plot_.line(column(display_.cursor), row(display_.minPwr), column(display_.cursor), row(display_.maxPwr),
                   rgbOf(display_.cursorColor), 1, R2_NOTXORPEN);
}

void GdiOracle::refresh(const std::vector<OracleChannel>& tx, const std::vector<OracleChannel>& rx) {
    if (!hasRange())
        return;
    drawGrid();
    drawLabels();
    for (const std::vector<OracleChannel>* list : {&tx, &rx})
        for (const OracleChannel& channel : *list)
            drawChannel(channel);
}

Picture GdiOracle::picture() {
    BitBlt(strip_.dc(), layout_.spectrum.left, layout_.spectrum.top, plot_.width(), plot_.height(), plot_.dc(), 0, 0,
           SRCCOPY);
    return strip_.read();
}

void writeBmp(const Picture& picture, const std::wstring& path) {
    std::vector<std::uint32_t> pixels32;
    for (const std::uint32_t color : picture.pixels)
        pixels32.push_back(RGB(color >> 16U & 0xFFU, color >> 8U & 0xFFU, color & 0xFFU));
    BITMAPINFOHEADER info{};
    info.biSize = sizeof info;
    info.biWidth = picture.width;
    info.biHeight = -picture.height;
    info.biPlanes = 1;
    info.biBitCount = 32;
    const auto bytes = static_cast<DWORD>(pixels32.size() * sizeof(std::uint32_t));
    BITMAPFILEHEADER header{};
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof header + sizeof info;
    header.bfSize = header.bfOffBits + bytes;
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD done = 0;
    WriteFile(file, &header, sizeof header, &done, nullptr);
    WriteFile(file, &info, sizeof info, &done, nullptr);
    WriteFile(file, pixels32.data(), bytes, &done, nullptr);
    CloseHandle(file);
}

}  // namespace kv::test
