#include "raster/HatchLines.h"

#include <algorithm>
#include <cmath>

#include "raster/Twips.h"

namespace kv::raster {

namespace {

constexpr int kTile = 8;  // pixels

// Where the lines of the pattern are: the row, the column, the sum and the difference of both that a line has.
constexpr int kRow = 3;
constexpr int kColumn = 4;
constexpr int kRising = 7;
constexpr int kFalling = 0;

/// Calls `visit` with each position of the pattern from `first` to `last`, units.
template <class Visit>
void forEachPosition(int phase, double first, double last, double scale, Visit&& visit) {
    const double period = kTile * scale;
    const double start = phase * scale;
    for (double k = std::ceil((first - start) / period); start + k * period <= last; ++k)
        visit(toNearestPixel(start + k * period));
}

class Lines {
  public:
    Lines(const PixelRect& inside, double scale)
        : left_(inside.left), top_(inside.top), right_(inside.right - 1), bottom_(inside.bottom - 1), scale_(scale) {}

    void level() {
        forEachPosition(kRow, top_, bottom_, scale_, [this](int y) { add({left_, y}, {right_, y}); });
    }
    void upright() {
        forEachPosition(kColumn, left_, right_, scale_, [this](int x) { add({x, top_}, {x, bottom_}); });
    }
    void rising() {
        forEachPosition(kRising, left_ + top_, right_ + bottom_, scale_, [this](int sum) {
            const int from = std::max(left_, sum - bottom_);
            const int to = std::min(right_, sum - top_);
            add({from, sum - from}, {to, sum - to});
        });
    }
    void falling() {
        forEachPosition(kFalling, left_ - bottom_, right_ - top_, scale_, [this](int difference) {
            const int from = std::max(left_, top_ + difference);
            const int to = std::min(right_, bottom_ + difference);
            add({from, from - difference}, {to, to - difference});
        });
    }
    [[nodiscard]] std::vector<HatchLine> take() { return std::move(lines_); }

  private:
    void add(PixelPoint from, PixelPoint to) { lines_.push_back({from, to}); }

    int left_;
    int top_;
    int right_;
    int bottom_;
    double scale_;
    std::vector<HatchLine> lines_;
};

}  // namespace

std::vector<HatchLine> hatchLines(FillStyle style, const PixelRect& inside, double scale) {
    if (inside.left >= inside.right || inside.top >= inside.bottom || !(scale > 0.0))
        return {};
    Lines lines(inside, scale);
    if (style == FillStyle::HorizontalLine || style == FillStyle::Cross)
        lines.level();
    if (style == FillStyle::VerticalLine || style == FillStyle::Cross)
        lines.upright();
    if (style == FillStyle::UpwardDiagonal || style == FillStyle::DiagonalCross)
        lines.rising();
    if (style == FillStyle::DownwardDiagonal || style == FillStyle::DiagonalCross)
        lines.falling();
    return lines.take();
}

}  // namespace kv::raster
