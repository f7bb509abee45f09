#include "util/Bmp.h"

#include <cmath>
#include <cstddef>

#include "util/RuntimeError.h"

namespace kv::util {

namespace {

constexpr std::uint32_t kHeaderSize = 14 + 40;
constexpr double kInchesPerMeter = 1.0 / 0.0254;

void append16(std::string& bytes, std::uint32_t value) {
    bytes += static_cast<char>(value & 0xFFU);
    bytes += static_cast<char>(value >> 8U & 0xFFU);
}

void append32(std::string& bytes, std::uint32_t value) {
    append16(bytes, value & 0xFFFFU);
    append16(bytes, value >> 16U);
}

}  // namespace

std::string bmpFile(const std::uint32_t* pixels, int width, int height, int stride, int dpi) {
    if (width < 1 || height < 1)
        throw RuntimeError(error_number::kInvalidProcedureCall);
    const std::size_t row = (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
    const std::size_t image = row * static_cast<std::size_t>(height);
    const auto perMeter = static_cast<std::uint32_t>(std::lround(dpi * kInchesPerMeter));
    std::string bytes;
    bytes.reserve(kHeaderSize + image);
    bytes += "BM";
    append32(bytes, kHeaderSize + static_cast<std::uint32_t>(image));
    append32(bytes, 0);
    append32(bytes, kHeaderSize);
    append32(bytes, 40);
    append32(bytes, static_cast<std::uint32_t>(width));
    append32(bytes, static_cast<std::uint32_t>(height));
    append16(bytes, 1);
    append16(bytes, 24);
    append32(bytes, 0);
    append32(bytes, static_cast<std::uint32_t>(image));
    append32(bytes, perMeter);
    append32(bytes, perMeter);
    append32(bytes, 0);
    append32(bytes, 0);
    for (int y = height - 1; y >= 0; --y) {
        const std::uint32_t* source = pixels + static_cast<std::ptrdiff_t>(y) * stride;
        for (int x = 0; x < width; ++x) {
            append16(bytes, source[x] & 0xFFFFU);
            bytes += static_cast<char>(source[x] >> 16U & 0xFFU);
        }
        bytes.append(row - static_cast<std::size_t>(width) * 3, '\0');
    }
    return bytes;
}

}  // namespace kv::util
