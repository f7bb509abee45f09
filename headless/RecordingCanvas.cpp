#include "headless/RecordingCanvas.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace kv::headless {
namespace {

std::string hex(std::uint32_t value, int digits) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        text += kDigits[(value >> shift) & 0xFU];
    }
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

std::string pair(int x, int y) {
    return std::to_string(x) + ',' + std::to_string(y);
}

std::string penText(const raster::Pen& pen) {
    return "pen " + colorText(pen.color) + " w" + std::to_string(pen.width);
}

std::string modeText(raster::DrawMode mode) {
    return "mode " + std::to_string(static_cast<int>(mode));
}

/// Appends a character; unpaired surrogates and numbers beyond Unicode become the replacement character.
void appendUtf8(std::string& out, std::uint32_t code) {
    const auto add = [&out](std::uint32_t byte) { out += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (code > 0x10FFFFU || (code >= 0xD800U && code <= 0xDFFFU)) {
        code = 0xFFFDU;
    }
    if (code < 0x80U) {
        add(code);
        return;
    }
    if (code < 0x800U) {
        add(0xC0U | (code >> 6));
    } else {
        if (code < 0x10000U) {
            add(0xE0U | (code >> 12));
        } else {
            add(0xF0U | (code >> 18));
            add(0x80U | ((code >> 12) & 0x3FU));
        }
        add(0x80U | ((code >> 6) & 0x3FU));
    }
    add(0x80U | (code & 0x3FU));
}

std::uint32_t codeOf(wchar_t unit) {
    return static_cast<std::uint32_t>(static_cast<std::make_unsigned_t<wchar_t>>(unit));
}

/// The character at `at`, which moves past it; two units for a surrogate pair where wchar_t has 16 bits.
std::uint32_t nextCharacter(std::wstring_view text, std::size_t& at) {
    const std::uint32_t first = codeOf(text[at++]);
    if (first >= 0xD800U && first <= 0xDBFFU && at < text.size()) {
        const std::uint32_t second = codeOf(text[at]);
        if (second >= 0xDC00U && second <= 0xDFFFU) {
            ++at;
            return 0x10000U + ((first - 0xD800U) << 10) + (second - 0xDC00U);
        }
    }
    return first;
}

std::string quoted(std::wstring_view text) {
    std::string out = "\"";
    for (std::size_t at = 0; at < text.size();) {
        const std::uint32_t code = nextCharacter(text, at);
        if (code < 0x20U || code == 0x7FU) {
            out += "\\x" + hex(code, 2);
            continue;
        }
        if (code == '"' || code == '\\') {
            out += '\\';
        }
        appendUtf8(out, code);
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
    lines_.push_back("line " + pair(from.x, from.y) + ' ' + pair(to.x, to.y) + ' ' + penText(pen) + ' ' +
                     modeText(mode));
}

void RecordingCanvas::rectangle(raster::PixelRect box, const raster::Pen& pen, const raster::Brush& brush,
                                raster::DrawMode mode) {
    lines_.push_back("rectangle " + pair(box.left, box.top) + ' ' + pair(box.right, box.bottom) + ' ' + penText(pen) +
                     " brush " + std::to_string(static_cast<int>(brush.style)) + ' ' + colorText(brush.color) + ' ' +
                     modeText(mode));
}

raster::PixelSize RecordingCanvas::textSize(std::wstring_view text, const raster::Font&) {
    const auto units = static_cast<std::int64_t>(text.size());
    constexpr std::int64_t kWidest = std::numeric_limits<int>::max();
    return {static_cast<int>(std::min(kWidest, units * character_.width)), character_.height};
}

void RecordingCanvas::text(raster::PixelPoint at, std::wstring_view text, const raster::Font& font, raster::Rgb color) {
    lines_.push_back("text " + pair(at.x, at.y) + ' ' + quoted(text) + " font " + quoted(font.face) + ' ' +
                     number(font.points) + (font.bold ? " bold" : "") + " color " + colorText(color));
}

}  // namespace kv::headless
