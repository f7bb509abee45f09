// The picture of the control, read from the bitmap file that it writes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/automation/ControlFixture.h"

namespace kv::test {

/// The path of a file in the temporary folder. The file is deleted at the end.
class TempFile {
  public:
    explicit TempFile(const std::wstring& name);
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    ~TempFile() { DeleteFileW(path_.c_str()); }
    [[nodiscard]] const std::wstring& path() const noexcept { return path_; }
    [[nodiscard]] bool exists() const { return GetFileAttributesW(path_.c_str()) != INVALID_FILE_ATTRIBUTES; }

  private:
    std::wstring path_;
};
[[nodiscard]] std::wstring tempFolder();

/// A rectangle of pixels; right and bottom are inside.
struct Area {
    int left = 0;
    int top = 0;
    int right = -1;
    int bottom = -1;
    [[nodiscard]] int width() const noexcept { return right - left + 1; }
    [[nodiscard]] int height() const noexcept { return bottom - top + 1; }
    bool operator==(const Area&) const = default;
};

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;  ///< RGB colors as hosts write them, 0x00BBGGRR, topmost row first

    /// An uncompressed file of 24 or 32 bits a pixel; an empty picture for anything else.
    [[nodiscard]] static Picture read(const std::wstring& path);
    [[nodiscard]] std::uint32_t at(int x, int y) const {
        return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x));
    }
    /// The smallest area that holds all pixels of a color inside `area`.
    [[nodiscard]] std::optional<Area> find(std::uint32_t color, const Area& area) const;
    [[nodiscard]] int count(std::uint32_t color, const Area& area) const;
    /// A rectangle of it, `cutWidth` by `cutHeight` pixels.
    [[nodiscard]] Picture cut(int left, int top, int cutWidth, int cutHeight) const;
    [[nodiscard]] Area all() const noexcept { return {0, 0, width - 1, height - 1}; }
    bool operator==(const Picture&) const = default;
};

/// The whole picture of a control: labels and spectrum.
[[nodiscard]] Picture capture(const Scope& scope);

/// A control with known position and scale of the spectrum. The background is white, the strip light gray.
class Plot {
  public:
    static constexpr OLE_COLOR kBack = 0x00FFFFFF;
    static constexpr OLE_COLOR kStrip = 0x00E0E0E0;
    static constexpr OLE_COLOR kGrid = 0x0000A000;
    static constexpr OLE_COLOR kText = 0x00300000;
    static constexpr OLE_COLOR kTick = 0x00808080;  ///< what the control draws its ticks in

    Plot();
    Scope scope;
    Area spectrum;

    /// The pixel column of a frequency and the row of a power, at the display's present range.
    [[nodiscard]] int column(double frequency);
    [[nodiscard]] int row(double power);
    [[nodiscard]] Picture picture() const { return capture(scope); }
    /// The area under the spectrum, where the labels are.
    [[nodiscard]] Area strip(const Picture& picture) const {
        return {0, spectrum.bottom + 1, picture.width - 1, picture.height - 1};
    }
    /// A column in the grid's color from top to bottom except for the tick.
    [[nodiscard]] bool isGridColumn(const Picture& picture, int x) const;
};

}  // namespace kv::test
