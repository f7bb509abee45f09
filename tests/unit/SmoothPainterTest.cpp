#include "raster/Smooth.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <utility>
#include <vector>

namespace {

using namespace kv::raster;

constexpr std::uint32_t kGuard = 0xDEADBEEF;
constexpr double kPi = std::numbers::pi;

/// A white surface with guard pixels around every row and above and below.
class Picture {
  public:
    Picture(int width, int height)
        : stride_(width + 2),
          memory_(static_cast<std::size_t>(stride_ * (height + 2)), kGuard),
          buffer_{memory_.data() + stride_ + 1, width, height, stride_} {
        painter().clear(0xFFFFFF);
    }
    [[nodiscard]] SmoothPainter painter() const { return SmoothPainter(buffer_); }
    [[nodiscard]] std::uint32_t at(int x, int y) const { return buffer_.row(y)[x]; }
    /// How dark the whole picture is, pixels of black, as long as only gray was painted.
    [[nodiscard]] double ink() const {
        double sum = 0.0;
        for (int y = 0; y < buffer_.height; ++y) {
            for (int x = 0; x < buffer_.width; ++x)
                sum += (255.0 - (at(x, y) & 0xFFU)) / 255.0;
        }
        return sum;
    }
    [[nodiscard]] bool guardsIntact() const {
        std::size_t guards = 0;
        for (const std::uint32_t pixel : memory_)
            guards += pixel == kGuard ? 1U : 0U;
        return guards == memory_.size() - static_cast<std::size_t>(buffer_.width * buffer_.height);
    }
    [[nodiscard]] std::vector<std::uint32_t> copy() const { return memory_; }

  private:
    int stride_;
    std::vector<std::uint32_t> memory_;
    PixelBuffer buffer_;
};

TEST(SmoothPainter, ShapesCoverTheirArea) {
    Picture disc(40, 40);
    disc.painter().disc({20.3, 19.8}, 12.0, Shade(0));
    EXPECT_NEAR(disc.ink(), kPi * 144.0, 3.0);

    Picture ring(40, 40);
    ring.painter().ring({20.0, 20.0}, 12.0, 3.0, Shade(0));
    EXPECT_NEAR(ring.ink(), 2.0 * kPi * 12.0 * 3.0, 3.0);

    Picture arc(40, 40);
    arc.painter().arc({20.0, 20.0}, 12.0, 3.0, 0.0, kPi, Shade(0));
    // Half of the ring and the two halves of a disc at its ends.
    EXPECT_NEAR(arc.ink(), kPi * 12.0 * 3.0 + kPi * 2.25, 3.0);

    Picture line(40, 40);
    line.painter().line({10.0, 10.0}, {28.0, 17.0}, 4.0, Shade(0));
    EXPECT_NEAR(line.ink(), std::hypot(18.0, 7.0) * 4.0 + kPi * 4.0, 3.0);

    Picture box(40, 40);
    box.painter().box({4.0, 6.0, 24.0, 16.0}, 0.0, Shade(0));
    EXPECT_NEAR(box.ink(), 200.0, 0.01);

    Picture frame(40, 40);
    frame.painter().frame({4.0, 6.0, 24.0, 16.0}, 0.0, 2.0, Shade(0));
    EXPECT_NEAR(frame.ink(), 200.0 - 16.0 * 6.0, 1.0);

    Picture triangle(40, 40);
    triangle.painter().triangle({5.0, 5.0}, {35.0, 5.0}, {5.0, 25.0}, Shade(0));
    EXPECT_NEAR(triangle.ink(), 300.0, 6.0);
}

TEST(SmoothPainter, EdgesAreHalfCovered) {
    Picture picture(10, 10);
    picture.painter().box({2.5, 2.0, 6.0, 8.0}, 0.0, Shade(0));
    EXPECT_EQ(picture.at(1, 4), 0xFFFFFFU);
    EXPECT_EQ(picture.at(2, 4), 0x808080U);
    EXPECT_EQ(picture.at(3, 4), 0x000000U);
    EXPECT_EQ(picture.at(5, 4), 0x000000U);
    EXPECT_EQ(picture.at(6, 4), 0xFFFFFFU);
}

TEST(SmoothPainter, AnglesRunClockwiseFromTheTop) {
    Picture picture(40, 40);
    picture.painter().arc({20.0, 20.0}, 15.0, 4.0, 0.25 * kPi, 0.75 * kPi, Shade(0));
    EXPECT_EQ(picture.at(34, 19), 0x000000U);
    EXPECT_EQ(picture.at(5, 19), 0xFFFFFFU);
    EXPECT_EQ(picture.at(19, 5), 0xFFFFFFU);
    EXPECT_EQ(picture.at(19, 34), 0xFFFFFFU);
    const SmoothPoint right = onCircle({20.0, 20.0}, 15.0, 0.5 * kPi);
    EXPECT_NEAR(right.x, 35.0, 1e-9);
    EXPECT_NEAR(right.y, 20.0, 1e-9);
}

TEST(SmoothPainter, AWholeTurnIsARing) {
    Picture arc(40, 40);
    Picture ring(40, 40);
    arc.painter().arc({20.0, 20.0}, 12.0, 3.0, 1.0, 1.0 + 2.0 * kPi, Shade(0));
    ring.painter().ring({20.0, 20.0}, 12.0, 3.0, Shade(0));
    EXPECT_EQ(arc.copy(), ring.copy());
}

TEST(SmoothPainter, ColorsOpacityAndShading) {
    Picture picture(10, 10);
    // 0x00BBGGRR, as colors are written, becomes 0x00RRGGBB in the pixel.
    picture.painter().box({0.0, 0.0, 10.0, 10.0}, 0.0, Shade(0x112233));
    EXPECT_EQ(picture.at(5, 5), 0x332211U);
    picture.painter().clear(0xFFFFFF);
    picture.painter().box({0.0, 0.0, 10.0, 10.0}, 0.0, Shade(0).faded(0.25));
    EXPECT_EQ(picture.at(5, 5), 0xBFBFBFU);
    picture.painter().box({0.0, 0.0, 10.0, 10.0}, 0.0, Shade(0x000000, 0xFFFFFF));
    EXPECT_LT(picture.at(5, 0) & 0xFFU, 20U);
    EXPECT_GT(picture.at(5, 9) & 0xFFU, 235U);
    EXPECT_EQ(mixed(0x000000, 0xFFFFFF, 0.5), 0x808080U);
    EXPECT_EQ(mixed(0x123456, 0xFFFFFF, 0.0), 0x123456U);
    EXPECT_EQ(mixed(0x123456, 0xFEDCBA, 1.0), 0xFEDCBAU);
    EXPECT_EQ(brightness(0xFFFFFF), 1.0);
    EXPECT_LT(brightness(0xFF0000), brightness(0x00FF00));
}

TEST(SmoothPainter, AShadowFadesOverItsSoftness) {
    Picture picture(60, 60);
    picture.painter().disc({30.0, 30.0}, 15.0, Shade(0).softened(1.0, 10.0));
    EXPECT_EQ(picture.at(30, 30), 0x000000U);
    const auto shade = [&](int x) { return picture.at(x, 30) & 0xFFU; };
    EXPECT_LT(shade(42), shade(44));
    EXPECT_LT(shade(44), shade(47));
    EXPECT_EQ(shade(51), 0xFFU);
}

/// Every kind of shape with one measure.
void paintAll(const SmoothPainter& painter, double m, const Shade& shade) {
    painter.disc({m, m}, m, shade);
    painter.disc({5.0, 5.0}, m, shade);
    painter.ring({m, 5.0}, m, m, shade);
    painter.arc({5.0, m}, m, m, m, 2.0 * m, shade);
    painter.line({m, m}, {5.0, -m}, 3.0, shade);
    painter.line({1.0, 1.0}, {5.0, 5.0}, m, shade);
    painter.box({-m, -m, m, m}, m, shade);
    painter.frame({-m, 0.0, m, 10.0}, m, m, shade);
    painter.triangle({m, 0.0}, {0.0, m}, {-m, -m}, shade);
}

TEST(SmoothPainter, NothingIsTouchedOutsideOfTheSurface) {
    for (const auto& [width, height] : {std::pair{1, 1}, {1, 7}, {9, 1}, {16, 16}}) {
        Picture picture(width, height);
        for (const double measure : {0.0, 0.3, 1.0, 4.5, 100.0, 1e6, 1e300, -3.0})
            paintAll(picture.painter(), measure, Shade(0x102030).softened(0.5, 7.0));
        EXPECT_TRUE(picture.guardsIntact()) << width << 'x' << height;
    }
}

TEST(SmoothPainter, MeasuresThatAreNotNumbersPaintNothing) {
    Picture picture(10, 10);
    const std::vector<std::uint32_t> before = picture.copy();
    paintAll(picture.painter(), std::nan(""), Shade(0));
    picture.painter().disc({std::numeric_limits<double>::infinity(), 5.0}, 3.0, Shade(0));
    picture.painter().disc({5.0, 5.0}, 3.0, Shade(0).faded(std::nan("")));
    picture.painter().disc({5.0, 5.0}, -3.0, Shade(0));
    picture.painter().line({1.0, 1.0}, {5.0, 5.0}, 0.0, Shade(0));
    picture.painter().triangle({1.0, 1.0}, {5.0, 5.0}, {9.0, 9.0}, Shade(0));
    // The lines of a cross have one end that is a number.
    picture.painter().line({std::nan(""), 1.0}, {5.0, 5.0}, 2.0, Shade(0));
    EXPECT_EQ(picture.copy(), before);
}

TEST(SmoothPainter, ASurfaceWithoutPixelsIsLeftAlone) {
    for (const PixelBuffer& none : {PixelBuffer{}, PixelBuffer{nullptr, 5, 5, 5}}) {
        const SmoothPainter painter(none);
        painter.clear(0);
        paintAll(painter, 4.0, Shade(0));
        EXPECT_TRUE(painter.buffer().empty());
    }
}

TEST(SmoothPainter, PaintsTheSameEveryTime) {
    Picture first(30, 30);
    Picture second(30, 30);
    for (const Picture* picture : {&first, &second})
        paintAll(picture->painter(), 7.7, Shade(0x204060, 0xA0C0E0).faded(0.7));
    EXPECT_EQ(first.copy(), second.copy());
}

}  // namespace
