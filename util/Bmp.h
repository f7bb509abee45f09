// Windows bitmap files.
#pragma once

#include <cstdint>
#include <string>

namespace kv::util {

/// A 24-bit bottom-up bitmap file (BITMAPFILEHEADER, BITMAPINFOHEADER, rows padded to four bytes) of `width` by
/// `height` pixels 0x00RRGGBB, rows top-down, `stride` pixels apart; `dpi` goes into the header's pixels per meter.
/// Throws RuntimeError 5 for an empty picture.
[[nodiscard]] std::string bmpFile(const std::uint32_t* pixels, int width, int height, int stride, int dpi);

}  // namespace kv::util
