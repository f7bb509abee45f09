// The greatest of a number a column, over segments of columns.
#pragma once

#include <cstdint>
#include <vector>

namespace kv::raster {

/// Segments of 32 columns and of each power of two above it, up to the one that holds all columns. Numbers only fall.
class ColumnMaxima {
  public:
    /// The smallest segments have 2 to this power columns.
    static constexpr int kLowest = 5;

    /// `columns` points to `width` numbers, which must stay where they are.
    void begin(const std::int16_t* columns, int width);
    /// The number of column `x` has become smaller; it was `before`.
    void fell(int x, std::int16_t before) noexcept;
    /// The power of two that holds all columns.
    [[nodiscard]] int highest() const noexcept { return kLowest + static_cast<int>(levels_.size()) - 1; }
    /// By segment of 2 to the `level` columns.
    [[nodiscard]] const std::int16_t* segments(int level) const noexcept {
        return levels_[static_cast<std::size_t>(level - kLowest)].data();
    }

  private:
    [[nodiscard]] std::int16_t ofColumns(std::size_t segment) const noexcept;

    const std::int16_t* columns_ = nullptr;
    std::size_t width_ = 0;
    std::vector<std::vector<std::int16_t>> levels_;
};

}  // namespace kv::raster
