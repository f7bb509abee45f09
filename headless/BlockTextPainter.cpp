#include "headless/BlockTextPainter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "raster/PixelWriter.h"

namespace kv::headless {
namespace {

constexpr int kMostCellPixels = 4096;

int pixels(double size) {
    // Written so that a size that is no number becomes the smallest.
    return size > 1 ? static_cast<int>(std::lround(std::min(size, double{kMostCellPixels}))) : 1;
}

raster::PixelSize cellOf(const raster::Font& font) {
    const double size = font.points * 96.0 / 72.0;
    return {pixels(size * 0.5) + (font.bold ? 1 : 0), pixels(size * 1.2)};
}

/// Characters beyond the first 65,536 are two units where wchar_t has 16 bits; the second takes no cell.
bool continuesCharacter(wchar_t unit) {
    return unit >= wchar_t{0xDC00} && unit <= wchar_t{0xDFFF};
}

bool isBlank(wchar_t unit) {
    return unit <= L' ' || unit == L'\u00A0';
}

/// The block in the cell: a pixel free on the right, and an eighth of the height above and below.
raster::PixelRect blockIn(const raster::PixelSize& cell) {
    const int margin = cell.height / 8;
    return {0, margin, std::max(cell.width - 1, 1), cell.height - margin};
}

}  // namespace

raster::PixelSize BlockTextPainter::textSize(std::wstring_view text, const raster::Font& font) {
    const raster::PixelSize cell = cellOf(font);
    const auto gaps = std::count_if(text.begin(), text.end(), continuesCharacter);
    const auto cells = static_cast<std::int64_t>(text.size()) - gaps;
    constexpr std::int64_t kWidest = std::numeric_limits<int>::max();
    return {static_cast<int>(std::min(kWidest, cells * cell.width)), cell.height};
}

void BlockTextPainter::draw(const raster::PixelBuffer& buffer, raster::PixelPoint at, std::wstring_view text,
                            const raster::Font& font, raster::Rgb color) {
    const raster::PixelSize cell = cellOf(font);
    const raster::PixelRect block = blockIn(cell);
    if (buffer.empty() || at.y >= buffer.height || at.y < -cell.height) {
        return;
    }
    const raster::PixelWriter ink(buffer, color, raster::DrawMode::CopyPen);
    std::int64_t x = at.x;
    for (const wchar_t unit : text) {
        if (x >= buffer.width) {
            break;
        }
        if (continuesCharacter(unit)) {
            continue;
        }
        if (x > -cell.width && !isBlank(unit)) {
            const auto left = static_cast<int>(x);
            ink.box({left + block.left, at.y + block.top, left + block.right, at.y + block.bottom});
        }
        x += cell.width;
    }
}

}  // namespace kv::headless
