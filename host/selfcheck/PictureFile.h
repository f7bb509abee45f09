// Pictures as pixels, and the files that they are read from and written to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kv::host {

struct Pixels {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> rgb;  ///< 0x00RRGGBB, topmost row first

    Pixels() = default;
    Pixels(int w, int h) : width(w), height(h), rgb(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}
    [[nodiscard]] std::size_t indexOf(int x, int y) const noexcept {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
    [[nodiscard]] std::wstring sizeText() const { return std::to_wstring(width) + L" x " + std::to_wstring(height); }
    bool operator==(const Pixels&) const = default;
};

/// A PNG or BMP file. Throws Failure if it cannot be read.
[[nodiscard]] Pixels readPicture(const std::wstring& file);

/// A PNG file without transparency. Throws Failure if it cannot be written.
void writePng(const std::wstring& file, const Pixels& picture);

}  // namespace kv::host
