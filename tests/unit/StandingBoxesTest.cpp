// Shapes painted from the topmost down against the canvas that draws them in their order.
#include "raster/StandingBoxes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "headless/BlockTextPainter.h"
#include "raster/RasterCanvas.h"

namespace kv::raster {
namespace {

struct Shape {
    int left = 0;
    int right = 0;
    int top = 0;
    bool isLine = false;
    bool inverts = false;
    FillStyle style = FillStyle::Solid;
    Rgb color = 0;
};

class StandingBoxesTest : public ::testing::Test {
  protected:
    bool oneIn(unsigned n) { return random_() % n == 0; }
    int between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    Shape anyShape() {
        Shape shape;
        shape.left = between(-20, width_ + 10);
        shape.right = shape.left + (oneIn(2) ? between(0, 4) : oneIn(2) ? between(0, 40) : between(0, 2 * width_));
        shape.top = oneIn(4) ? between(floor_ - 3, floor_) : between(std::min(-10, floor_), floor_);
        shape.isLine = oneIn(3);
        shape.inverts = between(0, 99) < inverted_;
        shape.style = static_cast<FillStyle>(between(0, 7));
        shape.color = static_cast<Rgb>(random_()) & 0xFFFFFFU;
        return shape;
    }

    void draw(RasterCanvas& canvas, const Shape& shape) const {
        const DrawMode mode = shape.inverts ? DrawMode::NotXorPen : DrawMode::CopyPen;
        if (shape.isLine) {
            canvas.line({shape.left, floor_}, {shape.left, shape.top}, {shape.color, 1}, mode);
        } else {
            canvas.rectangle({shape.left, shape.top, shape.right + 1, floor_ + 1}, {shape.color, 1},
                             {shape.style, shape.color}, mode);
        }
    }

    void paint(const Shape& shape) {
        if (shape.isLine && shape.inverts) {
            boxes_.invertLine(shape.left, shape.top, shape.color);
        } else if (shape.isLine) {
            boxes_.line(shape.left, shape.top, shape.color);
        } else if (shape.inverts) {
            boxes_.invertBox(shape.left, shape.right, shape.top, shape.style, shape.color);
        } else {
            boxes_.box(shape.left, shape.right, shape.top, shape.style, shape.color);
        }
    }

    void compareCovers(StandingBoxes::Covers covers) const {
        const std::int16_t* const columns = boxes_.cover(0);
        for (int x = 0; x < width_; ++x) {
            const int last = std::min(x + (1 << covers.levels), width_);
            ASSERT_EQ(boxes_.cover(covers.levels)[x], *std::max_element(columns + x, columns + last)) << x;
        }
        if (!covers.segments)
            return;
        for (int level = ColumnMaxima::kLowest; level <= boxes_.segments().highest(); ++level) {
            for (int x = 0; x < width_; x += 1 << level) {
                const int last = std::min(x + (1 << level), width_);
                ASSERT_EQ(boxes_.segments().segments(level)[x >> level],
                          *std::max_element(columns + x, columns + last));
            }
        }
        ASSERT_GE(1 << boxes_.segments().highest(), width_);
    }

    void compareOnce(int shapes) {
        const auto stride = static_cast<std::size_t>(width_) + 3;
        std::vector<std::uint32_t> drawn(stride * static_cast<std::size_t>(height_));
        for (std::uint32_t& pixel : drawn)
            pixel = static_cast<std::uint32_t>(random_()) & 0xFFFFFFU;
        std::vector<std::uint32_t> painted = drawn;
        headless::BlockTextPainter letters;
        RasterCanvas canvas(letters, {drawn.data(), width_, height_, static_cast<int>(stride)});
        const StandingBoxes::Covers covers{between(0, StandingBoxes::kLevels), oneIn(2)};
        boxes_.begin({painted.data(), width_, height_, static_cast<int>(stride)}, canvas.tiles(), floor_, covers);
        std::vector<Shape> list(static_cast<std::size_t>(shapes));
        for (Shape& shape : list) {
            shape = anyShape();
            draw(canvas, shape);
        }
        for (std::size_t i = list.size(); i-- > 0;)
            paint(list[i]);
        ASSERT_NO_FATAL_FAILURE(compareCovers(covers));
        boxes_.end();
        const auto [here, there] = std::mismatch(painted.begin(), painted.end(), drawn.begin());
        if (here != painted.end()) {
            const auto at = static_cast<std::size_t>(here - painted.begin());
            FAIL() << "at " << at % stride << ',' << at / stride << ": " << std::hex << *here << " for " << *there;
        }
    }

    std::mt19937 random_{19830101};
    int width_ = 0;
    int height_ = 0;
    int floor_ = 0;
    int inverted_ = 0;  ///< percent
    StandingBoxes boxes_;
};

TEST_F(StandingBoxesTest, RandomShapesFromTheTopmostDownMakeThePictureOfDrawingThemInOrder) {
    for (int round = 0; round < 3000; ++round) {
        width_ = oneIn(10) ? between(200, 700) : between(1, 90);
        height_ = between(1, 70);
        floor_ = oneIn(3) ? height_ : oneIn(2) ? between(0, height_ - 1) : height_ + between(0, 20);
        inverted_ = oneIn(3) ? 0 : oneIn(3) ? 100 : between(1, 99);
        ASSERT_NO_FATAL_FAILURE(compareOnce(between(1, 60)))
            << "round " << round << ", " << width_ << " by " << height_ << ", floor " << floor_;
    }
}

}  // namespace
}  // namespace kv::raster
