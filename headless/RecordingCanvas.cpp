#include "headless/RecordingCanvas.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>

#include "util/Utf8.h"

namespace kv::headless {
namespace {

std::string hex(std::uint32_t value, int digits) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        text += kDigits[(value >> shift) & 0xFU];
    return text;
}

/// The top byte is written only when it is not 0, which is an error of the caller.
std::string colorText(raster::Rgb color) {
    return hex(color, (color >> 24) != 0 ? 8 : 6);
}

std::string number(double value) {
    std::array<char, 32> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return {digits.data(), result.ptr};
}

std::string point(int x, int y) {
    return std::to_string(x) + ',' + std::to_string(y);
}

std::string penText(const raster::Pen& pen) {
    return "pen " + colorText(pen.color) + " w" + std::to_string(pen.width);
}

std::string modeText(raster::DrawMode mode) {
    return "mode " + std::to_string(static_cast<int>(mode));
}

/// In quotes; control characters, quotes and backslashes are escaped.
std::string quoted(std::wstring_view text) {
    std::string out = "\"";
    for (const char byte : util::toUtf8(text)) {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x20U || code == 0x7FU) {
            out += "\\x" + hex(code, 2);
            continue;
        }
        if (byte == '"' || byte == '\\')
            out += '\\';
        out += byte;
    }
    return out + '"';
}

}  // namespace

std::string RecordingCanvas::log() const {
    std::string all;
    for (const std::string& line : lines_) {
        all += line + '\n';
    }
    return all;
}

void RecordingCanvas::clear(raster::Rgb color) {
    lines_.push_back("clear " + colorText(color));
}

void RecordingCanvas::line(raster::PixelPoint from, raster::PixelPoint to, const raster::Pen& pen,
                           raster::DrawMode mode) {
    lines_.push_back("line " + point(from.x, from.y) + ' ' + point(to.x, to.y) + ' ' + penText(pen) + ' ' +
                     modeText(mode));
}

void RecordingCanvas::rectangle(raster::PixelRect box, const raster::Pen& pen, const raster::Brush& brush,
                                raster::DrawMode mode) {
    lines_.push_back("rectangle " + point(box.left, box.top) + ' ' + point(box.right, box.bottom) + ' ' + penText(pen) +
                     " brush " + std::to_string(static_cast<int>(brush.style)) + ' ' + colorText(brush.color) + ' ' +
                     modeText(mode));
}

raster::PixelSize RecordingCanvas::textSize(std::wstring_view text, const raster::Font&) {
    const auto units = static_cast<std::int64_t>(text.size());
    constexpr std::int64_t kWidest = std::numeric_limits<int>::max();
    return {static_cast<int>(std::min(kWidest, units * character_.width)), character_.height};
}

void RecordingCanvas::text(raster::PixelPoint at, std::wstring_view text, const raster::Font& font, raster::Rgb color) {
    lines_.push_back("text " + point(at.x, at.y) + ' ' + quoted(text) + " font " + quoted(font.face) + ' ' +
                     number(font.points) + (font.bold ? " bold" : "") + " color " + colorText(color));
}

}  // namespace kv::headless
