// The painter by itself: no mouse, no panel and no events.
#include "control/SpectrumPainter.h"

#include "tests/unit/PartsFixture.h"

namespace kv::control {
namespace {

using channels::ChannelKind;

constexpr std::uint32_t kRed = 0xFF0000;  // as a pixel; 0x0000FF as a color
constexpr std::uint32_t kWhite = 0xFFFFFF;

class SpectrumPainterTest : public PartsTest {
  protected:
    SpectrumPainterTest() {
        picture.setBackColor(0xFFFFFF);
        showRange();
    }
    void draw(ChannelKind kind) {
        util::Step step = 100;
        std::int32_t number = 0;
        painter.drawCollection(kind, step, number);
        EXPECT_EQ(step, 300);
    }
    Marks marks{picture};
    Overlays overlays;
    SpectrumPainter painter{picture, strip, store, range, marks, overlays};
};

TEST_F(SpectrumPainterTest, DrawsTheChannelsOfTheKindThatIsAskedFor) {
    add(ChannelKind::TX, 450.0);
    add(ChannelKind::RX, 420.0);
    draw(ChannelKind::TX);
    EXPECT_EQ(pixelAt(96, 80), kRed) << "the edge of the box from 448 to 452 MHz, up to 50 dBm";
    EXPECT_EQ(pixelAt(96, 40), kWhite);
    EXPECT_EQ(pixelAt(36, 80), kWhite);
    draw(ChannelKind::RX);
    EXPECT_EQ(pixelAt(36, 80), kRed);
}

TEST_F(SpectrumPainterTest, ManyChannelsPaintedAtOnceAreThePictureOfOneByOne) {
    for (int i = 0; i < 50; ++i)
        add(ChannelKind::TX, 400.0 + 2.1 * i, 7.0 * (i % 13));
    // These only touch the ends of the range.
    add(ChannelKind::TX, 398.0, 90.0);
    add(ChannelKind::TX, 502.0, 90.0);
    draw(ChannelKind::TX);
    const std::vector<std::uint32_t> oneByOne = pixels();
    painter.clearPicture();
    ASSERT_NE(pixels(), oneByOne);
    painter.setMany(1);
    draw(ChannelKind::TX);
    EXPECT_EQ(pixels(), oneByOne);
}

TEST_F(SpectrumPainterTest, RefreshingHidesAChannelThatIsNotVisibleAnyMore) {
    const auto slot = add(ChannelKind::TX, 450.0);
    painter.refreshCollection(ChannelKind::TX);
    EXPECT_EQ(pixelAt(96, 80), kRed);
    slot->fields().bVisible = false;
    painter.refreshCollection(ChannelKind::TX);
    EXPECT_EQ(pixelAt(96, 80), kWhite);
}

TEST_F(SpectrumPainterTest, DrawsNoGridAndNoLabelWithoutARange) {
    range.unset();
    EXPECT_FALSE(painter.DrawGrid());
    painter.DrawFreqLbls();
    EXPECT_TRUE(picture.isBlank());
    EXPECT_TRUE(strip.isBlank());
}

TEST_F(SpectrumPainterTest, TheMiddleGridLineIsThreePixelsWide) {
    painter.setGridColor(0x0000FF);
    range.setNGridX(4);
    ASSERT_TRUE(painter.DrawGrid());
    EXPECT_EQ(pixelAt(50, 50), kRed);
    EXPECT_EQ(pixelAt(51, 50), kWhite);
    for (const int x : {99, 100, 101})
        EXPECT_EQ(pixelAt(x, 50), kRed) << x;
    EXPECT_EQ(pixelAt(102, 50), kWhite);
}

TEST_F(SpectrumPainterTest, AnOutdatedDrawingIsRepeatedUntilItShowsTheRange) {
    int drawings = 0;
    painter.repeatWhileOutdated([&] {
        painter.whileDrawing([&] {
            EXPECT_TRUE(painter.bDrawing());
            painter.noteDrawnSpan();
            if (++drawings < 3) {
                range.setExactly(400.0, 500.0 + drawings);
                painter.drawAgain();
            }
        });
    });
    EXPECT_EQ(drawings, 3);
    EXPECT_FALSE(painter.bDrawing());
}

TEST_F(SpectrumPainterTest, ADrawingThatIsAskedForButShowsTheRangeIsNotRepeated) {
    int drawings = 0;
    painter.repeatWhileOutdated([&] {
        ++drawings;
        painter.noteDrawnSpan();
        painter.drawAgain();
    });
    EXPECT_EQ(drawings, 1);
}

TEST_F(SpectrumPainterTest, ARangeThatEachDrawingChangesEndsAfterEightDrawings) {
    int drawings = 0;
    painter.repeatWhileOutdated([&] {
        painter.noteDrawnSpan();
        range.setExactly(400.0, 500.0 + ++drawings);
        painter.drawAgain();
    });
    EXPECT_EQ(drawings, 8);
}

}  // namespace
}  // namespace kv::control
