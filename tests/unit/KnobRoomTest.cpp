// What a knob leaves out when room is short, and the distances it keeps.
#include <gmock/gmock.h>

#include <memory>

#include "KnobFixture.h"
#include "turndial/DialLayout.h"

namespace {

using namespace kv::turndial;
using kv::raster::PixelRect;
using testing::Contains;
using testing::Not;

/// Writes down which texts were painted. A line is 13 pixels high at any resolution.
class NotingLetters final : public kv::headless::BlockTextPainter {
  public:
    void draw(const kv::raster::PixelBuffer&, kv::raster::PixelPoint, std::wstring_view text, const kv::raster::Font&,
              kv::raster::Rgb) override {
        texts.emplace_back(text);
    }
    std::vector<std::wstring> texts;
};

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

TEST_F(KnobRoom, ACaptionThatDoesNotFitHasTwoHundredLettersAtMost) {
    caption = std::wstring(500, L'W');
    const std::vector<std::wstring> shown = texts(2000, 150, 96);
    ASSERT_THAT(shown, testing::SizeIs(2));
    EXPECT_THAT(shown, Contains(std::wstring(199, L'W') + L'\u2026'));
}

TEST_F(KnobRoom, APixelOfRoomIsPainted) {
    for (const auto& [width, height] : {std::pair{7, 60}, {60, 7}}) {
        tdKnob knob(nullptr, L"");
        KnobImage image(width, height);
        EXPECT_NO_FATAL_FAILURE(image.paint(knob));
        EXPECT_TRUE(image.guardsStand());
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
