// What knobs look like: every state can be seen, and no pixel outside is changed.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <memory>
#include <set>

#include "KnobFixture.h"
#include "headless/HeadlessPlatform.h"
#include "tests/unit/WidgetFixture.h"

namespace {

using namespace kv::turndial;
using kv::raster::PixelBuffer;
using Pixels = std::vector<std::uint32_t>;

std::unique_ptr<KnobBase> dial() {
    auto knob = std::make_unique<tdKnob>(nullptr, L"");
    knob->dMinVal = 430.0;
    knob->dMaxVal = 450.0;
    knob->bOption1 = true;
    knob->setDVal(437.5);
    return knob;
}
std::unique_ptr<KnobBase> selector() {
    auto knob = std::make_unique<tdKnob>(nullptr, L"");
    addDecades(*knob);
    knob->setDVal(2.0);
    return knob;
}
std::unique_ptr<KnobBase> mover() {
    return std::make_unique<tdKnMover>(nullptr, L"");
}

class KnobPainting : public testing::TestWithParam<std::unique_ptr<KnobBase> (*)()> {
  protected:
    KnobPainting() {
        knob->setSCaption(L"Center Freq (MHz)");
        knob->bShowValue = true;
    }
    std::unique_ptr<KnobBase> knob = GetParam()();
};

TEST_P(KnobPainting, IsTheSameEveryTime) {
    KnobImage first(120, 110);
    KnobImage second(120, 110);
    const Pixels before = first.paint(*knob);
    EXPECT_EQ(before, first.paint(*knob));
    EXPECT_EQ(before, second.paint(*knob));
}

TEST_P(KnobPainting, EveryStateLooksDifferent) {
    KnobImage image(120, 110);
    std::set<Pixels> seen;
    const auto isNew = [&](const char* what) { EXPECT_TRUE(seen.insert(image.paint(*knob)).second) << what; };
    isNew("start");
    knob->hover(true);
    isNew("hover");
    knob->focus(true);
    isNew("focus and hover");
    knob->hover(false);
    isNew("focus");
    knob->setEnabled(false);
    isNew("disabled");
    knob->setEnabled(true);
    knob->focus(false);
    knob->setSCaption(L"Other");
    isNew("caption");
    knob->bShowValue = false;
    isNew("no read-out");
    knob->sFormat = L"0.000";
    knob->bShowValue = true;
    isNew("format");
    knob->setDVal(442.75);
    isNew("value");
    knob->mouseDown(1, 1, kPlain);
    isNew("held");
}

TEST_P(KnobPainting, TurningShowsInTheBody) {
    knob->bShowValue = false;
    KnobImage image(120, 110);
    Pixels last = image.paint(*knob);
    for (int i = 0; i < 5; ++i) {
        knob->wheel(120, kPlain);
        const Pixels now = image.paint(*knob);
        EXPECT_NE(now, last);
        last = now;
    }
}

TEST_P(KnobPainting, NothingOutsideIsTouchedAtAnySize) {
    for (const int dpi : {96, 120, 144, 192, 600, 1}) {
        for (int width = 1; width <= 41; width += 5) {
            for (int height = 1; height <= 41; height += 4) {
                KnobImage image(width, height);
                for (const bool focus : {false, true}) {
                    knob->focus(focus);
                    image.paint(*knob, dpi);
                }
                EXPECT_TRUE(image.guardsAreIntact()) << width << 'x' << height << " at " << dpi;
            }
        }
    }
    for (const auto& [width, height] : {std::pair{1, 300}, {300, 1}, {150, 130}, {700, 500}, {60, 200}}) {
        KnobImage image(width, height);
        image.paint(*knob);
        EXPECT_TRUE(image.guardsAreIntact()) << width << 'x' << height;
    }
}

TEST_P(KnobPainting, ASurfaceWithoutPixelsIsNotPainted) {
    kv::headless::BlockTextPainter letters;
    knob->paint(PixelBuffer{}, letters, 96, KnobPalette{});
    knob->mouseDown(3, 3, kPlain);
    knob->mouseMove(30, 30, kPlain);
    EXPECT_TRUE(knob->holdsMouse());
}

TEST_P(KnobPainting, TheWholePictureIsPainted) {
    KnobPalette palette;
    palette.face = 0x123456;
    KnobImage image(120, 110);
    image.paint(*knob, 96, palette);
    for (const auto& [x, y] : {std::pair{0, 0}, {119, 0}, {0, 109}, {119, 109}})
        EXPECT_EQ(image.buffer.row(y)[x], 0x563412U);
}

TEST_P(KnobPainting, HighContrastUsesItsColorsOnly) {
    KnobPalette palette = contrastPalette();
    palette.shadow = 0x123456;
    palette.highlight = 0x654321;
    KnobImage image(120, 110);
    knob->hover(true);
    image.paint(*knob, 96, palette);
    for (int y = 0; y < image.buffer.height; ++y) {
        for (int x = 0; x < image.buffer.width; ++x) {
            // Black, white and yellow and what smooth edges make of them: red and green stay the same.
            const std::uint32_t pixel = image.buffer.row(y)[x];
            ASSERT_EQ((pixel >> 16) & 0xFFU, (pixel >> 8) & 0xFFU) << x << ' ' << y;
        }
    }
}

TEST_P(KnobPainting, FinerScreensShowAFinerPicture) {
    KnobImage coarse(120, 110);
    KnobImage fine(240, 220);
    coarse.paint(*knob, 96);
    fine.paint(*knob, 192);
    const auto inked = [](const KnobImage& image) {
        int count = 0;
        for (int y = 0; y < image.buffer.height; ++y) {
            for (int x = 0; x < image.buffer.width; ++x)
                count += image.buffer.row(y)[x] != 0xF0F0F0U ? 1 : 0;
        }
        return count;
    };
    const double ratio = inked(fine) / static_cast<double>(inked(coarse));
    // Four times the pixels; the characters of this test do not grow, which leaves the body more room.
    EXPECT_GT(ratio, 3.0);
    EXPECT_LT(ratio, 6.5);
}

std::string nameOf(const testing::TestParamInfo<std::unique_ptr<KnobBase> (*)()>& kind) {
    return std::array<const char*, 3>{"Dial", "Selector", "Mover"}.at(kind.index);
}
INSTANTIATE_TEST_SUITE_P(All, KnobPainting, testing::Values(&dial, &selector, &mover), &nameOf);

TEST(KnobPaintingDial, EveryStyleShowsTheValueInItsWay) {
    tdKnob knob(nullptr, L"");
    knob.setDVal(70.0);
    KnobImage image(120, 110);
    std::set<Pixels> seen;
    for (const auto style : {std::int16_t{0}, std::int16_t{1}, std::int16_t{2}}) {
        knob.iKnobStyle = style;
        EXPECT_TRUE(seen.insert(image.paint(knob)).second);
    }
    knob.iKnobStyle = 77;
    EXPECT_FALSE(seen.insert(image.paint(knob)).second);
}

TEST(KnobPaintingDial, TheTicksAtBothEndsAreEquallyLong) {
    class NoLetters final : public kv::headless::BlockTextPainter {
      public:
        void draw(const PixelBuffer&, kv::raster::PixelPoint, std::wstring_view, const kv::raster::Font&,
                  kv::raster::Rgb) override {}
    } letters;
    // The last of 18 ticks is none of every fifth.
    tdKnob knob(nullptr, L"");
    knob.dMinVal = 100.0;
    knob.dMaxVal = 270.0;
    knob.dStep = 10.0;
    knob.setDVal(185.0);
    knob.iKnobStyle = 2;
    KnobImage image(200, 160);
    knob.paint(image.buffer, letters, 96, KnobPalette{});
    // These rows contain the ticks at the ends; all others are above.
    std::set<std::uint32_t> colors;
    for (int y = 124; y < 160; ++y) {
        for (int x = 0; x < 100; ++x) {
            const std::uint32_t left = image.buffer.row(y)[x];
            const std::uint32_t right = image.buffer.row(y)[199 - x];
            colors.insert(left);
            for (const unsigned shift : {0U, 8U, 16U})
                ASSERT_NEAR(int(left >> shift & 0xFFU), int(right >> shift & 0xFFU), 2) << x << ' ' << y;
        }
    }
    EXPECT_GT(colors.size(), 5U);
}

TEST(KnobPaintingDial, OnlyABodyOfMoreThan14PixelsHasGrooves) {
    kv::headless::BlockTextPainter letters;
    int with = 0;
    int without = 0;
    for (int size = 50; size < 80; ++size) {
        KnobImage image(size, size);
        const KnobLook look{true, false, false, false};
        const KnobPicture picture(image.buffer, letters, 96, inkFor({}, look), look, {});
        picture.shapes.clear(0xFFFFFF);
        // Turned to the middle, so that the pointer is straight up.
        const DialPlace place =
            paintDial(picture, {0.0, 0.0, double(size), double(size)}, {0.0, 100.0, 10.0, {}, false, false}, 50.0, 2);
        const double body = place.rimInside / 0.6;
        // Grooves are darker than what is between them. Those beside the pointer are left out.
        double darker = 0.0;
        for (int i = 5; i < 43; ++i) {
            const auto at = kv::raster::onCircle(place.center, body * 0.89, i * std::numbers::pi / 24.0);
            const std::uint32_t pixel = image.buffer.row(static_cast<int>(at.y))[static_cast<int>(at.x)];
            darker += static_cast<double>(pixel & 0xFFU) * (i % 2 == 0 ? 1.0 : -1.0) / 19.0;
        }
        EXPECT_EQ(darker > 3.0, body > 14.0) << size << ": " << body << ", " << darker;
        ++(body > 14.0 ? with : without);
    }
    EXPECT_GT(std::min(with, without), 5);
}

TEST(KnobPaintingDial, ValuesOffTheScaleAndNoNumbersArePainted) {
    tdKnob knob(nullptr, L"");
    knob.bShowValue = true;
    KnobImage image(120, 110);
    for (const double value : {-5.0, 1e300, std::nan("")}) {
        knob.setDVal(value);
        image.paint(knob);
        EXPECT_TRUE(image.guardsAreIntact());
    }
    knob.dMinVal = std::nan("");
    image.paint(knob);
    EXPECT_TRUE(image.guardsAreIntact());
}

TEST_P(KnobPainting, NoTwoTextsOverlap) {
    for (int width = 20; width <= 200; width += 10) {
        for (int height = 20; height <= 200; height += 10) {
            KnobImage image(width, height);
            NotingLetters letters;
            knob->paint(image.buffer, letters, 96, KnobPalette{});
            for (std::size_t i = 0; i < letters.boxes.size(); ++i) {
                const auto& a = letters.boxes[i];
                EXPECT_TRUE(a.left >= 0 && a.top >= 0 && a.right <= width && a.bottom <= height);
                for (std::size_t j = 0; j < i; ++j) {
                    const auto& b = letters.boxes[j];
                    EXPECT_TRUE(a.right <= b.left || b.right <= a.left || a.bottom <= b.top || b.bottom <= a.top)
                        << width << 'x' << height;
                }
            }
        }
    }
}

TEST_P(KnobPainting, LongCaptionsEndInAnEllipsis) {
    knob->setSCaption(std::wstring(500, L'W'));
    KnobImage image(120, 110);
    NotingLetters letters;
    knob->paint(image.buffer, letters, 96, KnobPalette{});
    ASSERT_FALSE(letters.texts.empty());
    const auto caption = std::find_if(letters.texts.begin(), letters.texts.end(),
                                      [](const std::wstring& text) { return text.starts_with(L"WWW"); });
    ASSERT_NE(caption, letters.texts.end());
    EXPECT_EQ(caption->back(), L'\u2026');
    EXPECT_LT(caption->size(), 25U);
}

TEST_P(KnobPainting, ASmallKnobOmitsItsCaptionBeforeItsValue) {
    KnobImage image(80, 52);
    NotingLetters letters;
    knob->setSCaption(L"Name");
    knob->setSValText(L"12345");
    knob->paint(image.buffer, letters, 96, KnobPalette{});
    EXPECT_THAT(letters.texts, testing::Contains(L"12345"));
    EXPECT_THAT(letters.texts, testing::Not(testing::Contains(L"Name")));
    KnobImage smaller(80, 47);
    NotingLetters none;
    knob->paint(smaller.buffer, none, 96, KnobPalette{});
    EXPECT_THAT(none.texts, testing::Not(testing::Contains(L"12345")));
    EXPECT_THAT(none.texts, testing::Not(testing::Contains(L"Name")));
}

TEST_P(KnobPainting, ALongReadOutKeepsItsDistanceFromTheEdges) {
    knob->setSValText(std::wstring(200, L'8'));
    for (int width = 100; width < 110; ++width) {
        KnobImage image(width, 200);
        NotingLetters letters;
        knob->paint(image.buffer, letters, 192, KnobPalette{});
        const auto readOut =
            std::ranges::find_if(letters.texts, [](const auto& text) { return text.starts_with(L"888"); });
        ASSERT_NE(readOut, letters.texts.end());
        // Four pixels inside of the field, which is six inside of the knob.
        const auto& box = letters.boxes[static_cast<std::size_t>(readOut - letters.texts.begin())];
        EXPECT_GE(box.left, 10) << width;
        EXPECT_LE(box.right, width - 10) << width;
    }
}

TEST_P(KnobPainting, WithoutRoomBetweenTheMarginsOnlyTheFaceIsPainted) {
    for (const auto& [width, height] : {std::pair{6, 100}, {5, 100}, {1, 100}, {100, 6}, {100, 5}, {6, 6}}) {
        KnobImage image(width, height);
        image.paint(*knob);
        for (int y = 0; y < height; ++y)
            EXPECT_EQ(std::count(image.buffer.row(y), image.buffer.row(y) + width, 0xF0F0F0U), width) << y;
    }
}

TEST(KnobPalette, FollowsTheSystemAndTheWidget) {
    kv::headless::HeadlessPlatform platform;
    tdKnob knob(nullptr, L"");
    KnobPalette palette = systemPalette(platform, knob);
    EXPECT_EQ(palette.face, 0xF0F0F0U);
    EXPECT_EQ(palette.text, 0x000000U);
    EXPECT_EQ(palette.shadow, 0xA0A0A0U);
    EXPECT_EQ(palette.highlight, 0xE3E3E3U);
    EXPECT_EQ(palette.accent, 0xD77800U);
    EXPECT_EQ(palette.grayText, 0x6D6D6DU);
    EXPECT_FALSE(palette.highContrast);
    platform.systemColors = {{kv::raster::system_color::kButtonShadow, 0x111111},
                             {kv::raster::system_color::kButtonHighlight, 0x222222},
                             {kv::raster::system_color::kHighlight, 0x333333},
                             {kv::raster::system_color::kGrayText, 0x444444}};
    palette = systemPalette(platform, knob);
    EXPECT_EQ(palette.shadow, 0x111111U);
    EXPECT_EQ(palette.highlight, 0x222222U);
    EXPECT_EQ(palette.accent, 0x333333U);
    EXPECT_EQ(palette.grayText, 0x444444U);
    knob.setBackColor(0x0000FF);
    knob.setForeColor(0x00FF00);
    palette = systemPalette(platform, knob);
    EXPECT_EQ(palette.face, 0x0000FFU);
    EXPECT_EQ(palette.text, 0x00FF00U);
    knob.setBackColor(0x000000);
    knob.setForeColor(0xFFFFFF);
    EXPECT_TRUE(systemPalette(platform, knob).highContrast);
    knob.setBackColor(0xFFFFFF);
    knob.setForeColor(0x808080);
    EXPECT_FALSE(systemPalette(platform, knob).highContrast);
}

TEST_P(KnobPainting, TheWindowIsToldToPaintAgain) {
    kv::formenv::RecordingPeer peer;
    knob->setPeer(&peer);
    knob->setDVal(433.0);
    knob->setDVal(433.0);
    knob->setSValText(L"x");
    knob->setSValText(L"x");
    EXPECT_EQ(std::ranges::count(peer.changes, kv::formenv::Change::Value), 2);
    for (const std::function<void()>& action : std::initializer_list<std::function<void()>>{
             [&] { knob->Refresh(); }, [&] { knob->hover(true); }, [&] { knob->focus(true); },
             [&] { knob->mouseDown(5, 5, kPlain); }, [&] { knob->cancel(); }, [&] { knob->wheel(120, kPlain); },
             [&] { knob->keyDown(Key::Left, kPlain); }, [&] { knob->keyDown(Key::Left, kPlain); }}) {
        peer.changes.clear();
        action();
        EXPECT_THAT(peer.changes, testing::Not(testing::IsEmpty()));
    }
    knob->setPeer(nullptr);
}

}  // namespace
