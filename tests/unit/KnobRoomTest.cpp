// What a knob omits where it is small, and the distances that it keeps.
#include <gmock/gmock.h>

#include <memory>

#include "KnobFixture.h"
#include "headless/Pixels.h"
#include "turndial/DialLayout.h"

namespace {

using namespace kv::turndial;
using kv::raster::PixelRect;
using testing::Contains;
using testing::Not;

class KnobRoom : public testing::Test {
  protected:
    std::vector<std::wstring> texts(int width, int height, int dpi) {
        tdKnMover knob(nullptr, L"");
        knob.setSCaption(caption);
        knob.setSValText(L"12345");
        knob.bShowValue = true;
        KnobImage image(width, height);
        NotingLetters letters;
        knob.paint(image.buffer, letters, dpi, KnobPalette{});
        return letters.texts;
    }
    std::wstring caption = L"Name";
};

TEST_F(KnobRoom, ValueAndCaptionNeedTheirHeightBesideTheBody) {
    // Two margins, the body, a gap, the field; then another gap and the caption.
    struct Needed {
        int dpi;
        int value;
        int caption;
    };
    for (const Needed& needed : {Needed{96, 6 + 24 + 3 + 16, 3 + 13}, {192, 12 + 48 + 6 + 19, 6 + 13}}) {
        SCOPED_TRACE(needed.dpi);
        EXPECT_THAT(texts(200, needed.value - 1, needed.dpi), testing::IsEmpty());
        EXPECT_THAT(texts(200, needed.value, needed.dpi), testing::ElementsAre(L"12345"));
        EXPECT_THAT(texts(200, needed.value + needed.caption - 1, needed.dpi), Not(Contains(L"Name")));
        EXPECT_THAT(texts(200, needed.value + needed.caption, needed.dpi),
                    testing::UnorderedElementsAre(L"12345", L"Name"));
    }
}

TEST_F(KnobRoom, ACaptionThatDoesNotFitHasTwoHundredCharactersAtMost) {
    caption = std::wstring(500, L'W');
    const std::vector<std::wstring> shown = texts(2000, 150, 96);
    ASSERT_THAT(shown, testing::SizeIs(2));
    EXPECT_THAT(shown, Contains(std::wstring(199, L'W') + L'\u2026'));
}

TEST_F(KnobRoom, ARoomOfOnePixelIsPainted) {
    for (const auto& [width, height] : {std::pair{7, 60}, {60, 7}}) {
        tdKnob knob(nullptr, L"");
        KnobImage image(width, height);
        EXPECT_NO_FATAL_FAILURE(image.paint(knob));
        EXPECT_TRUE(image.guardsAreIntact());
    }
}

TEST(KnobDistances, LabelsKeepThreePixelsBetweenThemAtAnyResolution) {
    KnobScale scale;
    for (int stop = 0; stop <= 28; ++stop)
        scale.stops.push_back({std::to_wstring(stop) + L"0K", static_cast<double>(stop)});
    std::size_t seen = 0;
    for (const double unit : {1.0, 2.0, 3.0}) {
        const auto measure = [unit](std::wstring_view text) {
            return kv::raster::PixelSize{static_cast<int>(static_cast<double>(text.size()) * 6.0 * unit),
                                         static_cast<int>(11.0 * unit)};
        };
        for (int size = 40; size <= 300; size += 3) {
            const DialLayout layout = layOutDial({0.0, 0.0, size * unit, size * 0.8 * unit}, scale, unit, measure);
            for (std::size_t i = 0; i < layout.labels.size(); ++i) {
                for (std::size_t j = 0; j < i; ++j) {
                    const PixelRect& a = layout.labels[i].box;
                    const PixelRect& b = layout.labels[j].box;
                    const bool beside = a.bottom > b.top && b.bottom > a.top;
                    EXPECT_TRUE(!beside || a.right + 3.0 * unit <= b.left || b.right + 3.0 * unit <= a.left)
                        << size << " at " << unit;
                    ++seen;
                }
            }
            // The first and the last label are among them, unless there are only every second ones.
            if (layout.labels.size() > 15 || (layout.labels.size() > 1 && layout.labels.size() < 15)) {
                EXPECT_EQ(layout.labels.front().place, 0.0) << size;
                EXPECT_EQ(layout.labels.back().place, 1.0) << size;
            }
        }
    }
    EXPECT_GT(seen, 1000U);
}

/// Paints a nudge wheel by itself, without a shadow.
WheelPlace paintedWheel(KnobImage& image, int dpi, const KnobLook& look = {}, int pointed = 0) {
    NotingLetters letters;
    const KnobPicture picture(image.buffer, letters, dpi, inkFor(contrastPalette(), {}), look, {});
    return paintWheel(picture, {0.0, 0.0, double(image.buffer.width), double(image.buffer.height)}, 0.0, pointed);
}

std::vector<std::uint32_t> wheelWith(const KnobLook& look, int pointed) {
    KnobImage image(100, 40);
    paintedWheel(image, 96, look, pointed);
    return kv::headless::pixelsOf(image.buffer);
}

TEST(KnobWheel, CornersAreFourPixelsOrAQuarterOfTheHeight) {
    struct Case {
        int dpi;
        int height;  ///< of the picture; the wheel has margins, and in a high picture a mark above it
        int top;     ///< of the wheel
        int corner;
    };
    for (const Case& wheel : {Case{96, 18, 3, 3}, {96, 46, 9, 4}, {192, 100, 18, 8}}) {
        SCOPED_TRACE(wheel.height);
        KnobImage image(wheel.dpi == 96 ? 40 : 80, wheel.height);
        paintedWheel(image, wheel.dpi);
        const int left = wheel.dpi == 96 ? 3 : 6;
        const std::uint32_t edge = image.buffer.row(wheel.top + wheel.corner)[left];
        EXPECT_EQ(edge & 0xFFFFFFU, 0xFFFFFFU) << "the edge is straight below the corner";
        EXPECT_NE(image.buffer.row(wheel.top + wheel.corner - 1)[left], edge) << "and round in it";
    }
}

TEST(KnobWheel, ArrowsNeedSixtyPixelsBesideTheMargins) {
    for (const int unit : {1, 2}) {
        KnobImage wide(66 * unit, 40 * unit);
        EXPECT_EQ(paintedWheel(wide, 96 * unit).left.width(), 15.0 * unit);
        KnobImage narrow(66 * unit - 1, 40 * unit);
        EXPECT_EQ(paintedWheel(narrow, 96 * unit).left.width(), 0.0);
    }
}

TEST(KnobWheel, TheArrowUnderThePointerIsLitWhileTheKnobCanBeTurned) {
    KnobLook look;
    look.hover = true;
    for (const int arrow : {-1, 1})
        EXPECT_NE(wheelWith(look, arrow), wheelWith(look, 0));
    look.hover = false;
    EXPECT_EQ(wheelWith(look, 1), wheelWith(look, 0)) << "the pointer is elsewhere";
    look = {};
    look.enabled = false;
    look.hover = true;
    EXPECT_EQ(wheelWith(look, 1), wheelWith(look, 0)) << "disabled";
}

TEST(KnobWheel, TheMarkIsNoWiderThanHalfANarrowWheel) {
    KnobImage image(12, 40);
    const std::uint32_t guard = image.buffer.row(0)[0];
    paintedWheel(image, 96);
    // The wheel is 8 pixels wide and begins at row 8. The mark ends 2.5 pixels above it, is 2.2 high and 4 wide.
    for (int x = 0; x < 12; ++x)
        EXPECT_EQ(image.buffer.row(2)[x], guard) << x;
    for (int x = 0; x < 12; ++x)
        EXPECT_EQ(image.buffer.row(3)[x] != guard, x >= 4 && x < 8) << x;
}

TEST(KnobTicks, EveryStopOfACrowdedScaleHasOne) {
    const auto painted = [](int last, double step) {
        tdKnob knob(nullptr, L"");
        knob.bOption2 = true;
        // No label fits, so that all ticks are of one length.
        for (int stop = 0; stop <= last; ++stop)
            knob.AddStop(stop == 0, std::wstring(30, L'W'), stop * step);
        knob.setDVal(50.0);
        KnobImage image(80, 70);
        return image.paint(knob);
    };
    EXPECT_NE(painted(100, 1.0), painted(50, 2.0));
}

TEST(KnobTicks, OfARangeAreFivePixelsApart) {
    NotingLetters letters;
    KnobScale scale;
    kv::raster::Font labelFont;
    labelFont.points *= 0.9;
    const auto measure = [&](std::wstring_view text) { return letters.textSize(text, labelFont); };
    const double length = layOutDial({0.0, 0.0, 80.0, 70.0}, scale, 1.0, measure).radius * kDialSweep;
    const auto painted = [&](double detents) {
        scale.step = 100.0 / detents;
        KnobImage image(80, 70);
        const KnobPicture picture(image.buffer, letters, 96, inkFor({}, {}), {}, {});
        picture.shapes.clear(0);
        paintDial(picture, {0.0, 0.0, 80.0, 70.0}, scale, 50.0, 0);
        return std::vector<std::uint32_t>(image.buffer.pixels, image.buffer.row(69) + 80);
    };
    const double detents = 2.0 * std::floor(length / 5.5 / 2.0);
    EXPECT_NE(painted(detents), painted(detents / 2.0));
    EXPECT_EQ(painted(2.0 * detents), painted(detents)) << "more do not fit";
}

TEST(KnobRim, ReachesTwoPixelsBeyondTheScale) {
    for (const int unit : {1, 2}) {
        NotingLetters letters;
        const kv::raster::SmoothBox area{0.0, 0.0, 100.0 * unit, 80.0 * unit};
        KnobImage image(100 * unit, 80 * unit);
        const KnobPicture picture(image.buffer, letters, 96 * unit, inkFor({}, {}), {}, {});
        KnobScale invalid;
        invalid.max = invalid.min;  // has no labels
        const DialPlace dial = paintDial(picture, area, invalid, 0.0, 0);
        // The dial's height is its radius above the middle and 0.86 of it below.
        EXPECT_NEAR(dial.rimOutside, 80.0 * unit / 1.86 + 2.0 * unit, 0.01 * unit);
    }
}

TEST(KnobRim, WithoutRoomOnlyTheBackgroundIsPainted) {
    tdKnob knob(nullptr, L"");
    KnobImage image(6, 6);
    image.paint(knob);
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 6; ++x)
            EXPECT_EQ(image.buffer.row(y)[x], 0xF0F0F0U) << x << ' ' << y;
    }
}

TEST(KnobGivenUp, ANudgeKnobLooksAsBeforeItsTurn) {
    tdKnMover knob(nullptr, L"");
    KnobImage image(120, 110);
    const std::vector<std::uint32_t> before = image.paint(knob);
    knob.mouseDown(60, 54, kPlain);
    knob.mouseMove(60, 50, kPlain);
    knob.mouseMove(60, 33, kPlain);
    EXPECT_NE(image.paint(knob), before);
    knob.cancel();
    EXPECT_EQ(image.paint(knob), before);
}

}  // namespace
