// The positions of the labels and ticks of a dial.
#include "turndial/DialLayout.h"

#include <gmock/gmock.h>

#include <cmath>
#include <string>

#include "KnobFixture.h"

namespace {

using namespace kv::turndial;
using kv::raster::PixelRect;
using kv::raster::PixelSize;
using kv::raster::SmoothBox;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Characters are 6 pixels wide and 11 high.
PixelSize measured(std::wstring_view text) {
    return {static_cast<int>(text.size()) * 6, 11};
}

KnobScale grid() {
    tdKnob knob(nullptr, L"");
    addDecades(knob);
    return knob.scale();
}

std::vector<std::wstring> textsOf(const DialLayout& layout) {
    std::vector<std::wstring> texts;
    for (const DialLabel& label : layout.labels)
        texts.push_back(label.text);
    return texts;
}

bool overlap(const PixelRect& a, const PixelRect& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

void expectTidy(const DialLayout& layout, const SmoothBox& area) {
    for (std::size_t i = 0; i < layout.labels.size(); ++i) {
        const PixelRect& box = layout.labels[i].box;
        EXPECT_GE(box.left, area.left);
        EXPECT_GE(box.top, area.top);
        EXPECT_LE(box.right, area.right);
        EXPECT_LE(box.bottom, area.bottom);
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_FALSE(overlap(box, layout.labels[j].box)) << i << ' ' << j;
        // Outside of the scale.
        const double dx = std::max({box.left - layout.center.x, 0.0, layout.center.x - box.right});
        const double dy = std::max({box.top - layout.center.y, 0.0, layout.center.y - box.bottom});
        EXPECT_GE(std::hypot(dx, dy), layout.radius - 0.5);
    }
}

TEST(KnobLayout, LabelsNeverOverlapAtAnySize) {
    std::size_t most = 0;
    for (int width = 1; width <= 260; width += 7) {
        for (int height = 1; height <= 220; height += 6) {
            const SmoothBox area{3.0, 20.0, 3.0 + width, 20.0 + height};
            for (const double unit : {1.0, 1.25, 1.5, 2.0}) {
                const DialLayout layout = layOutDial(area, grid(), unit, measured);
                expectTidy(layout, area);
                EXPECT_LE(2.0 * layout.radius, std::max(width, height));
                EXPECT_TRUE(layout.labels.empty() || layout.radius >= 12.0 * unit);
                most = std::max(most, layout.labels.size());
            }
        }
    }
    EXPECT_EQ(most, 11U);
}

TEST(KnobLayout, ALongFirstLabelIsApartFromTheOthers) {
    tdKnob knob(nullptr, L"");
    knob.bOption2 = true;
    knob.AddStop(true, L"the lowest of all", 0.0);
    for (int stop = 1; stop <= 4; ++stop)
        knob.AddStop(false, std::to_wstring(stop), stop);
    for (int width = 60; width <= 260; ++width) {
        for (int height = 60; height <= 200; height += 4) {
            const SmoothBox area{0.0, 0.0, double(width), double(height)};
            expectTidy(layOutDial(area, knob.scale(), 1.0, measured), area);
        }
    }
}

TEST(KnobLayout, CrampedScalesKeepEverySecondLabel) {
    EXPECT_THAT(layOutDial({0, 0, 240, 200}, grid(), 1.0, measured).labels, SizeIs(11));
    const DialLayout usual = layOutDial({0, 0, 112, 76}, grid(), 1.0, measured);
    EXPECT_THAT(textsOf(usual), ElementsAre(L"500K", L"2M", L"10M", L"50M", L"200M", L"1G"));
    EXPECT_GT(usual.radius, 20.0);
    EXPECT_THAT(layOutDial({0, 0, 30, 26}, grid(), 1.0, measured).labels, IsEmpty());
}

TEST(KnobLayout, ARangeShowsBothOfItsEndsOrNone) {
    const KnobScale range{430.0, 450.0, 2.0, {}, true, false};
    EXPECT_THAT(textsOf(layOutDial({0, 0, 112, 76}, range, 1.0, measured)), ElementsAre(L"430", L"450"));
    const KnobScale narrow{433.05, 434.79, 0.1, {}, true, false};
    EXPECT_THAT(textsOf(layOutDial({0, 0, 112, 76}, narrow, 1.0, measured)), ElementsAre(L"433.05", L"434.79"));
    for (int size = 1; size < 80; ++size) {
        const SmoothBox area{0.0, 0.0, double(size), double(size)};
        const DialLayout layout = layOutDial(area, range, 1.0, measured);
        EXPECT_TRUE(layout.labels.empty() || layout.labels.size() == 2) << size;
        expectTidy(layout, area);
    }
    EXPECT_THAT(layOutDial({0, 0, 112, 76}, KnobScale{9.0, 1.0, 1.0, {}, true, false}, 1.0, measured).labels,
                IsEmpty());
}

TEST(KnobLayout, LabelsOnOneLevelAreAtLeastThreePixelsApart) {
    const KnobScale range{430.0, 450.0, 2.0, {}, true, false};
    const auto broad = [](std::wstring_view) { return PixelSize{80, 11}; };
    const DialLayout enough = layOutDial({0, 0, 163, 71}, range, 1.0, broad);
    ASSERT_THAT(enough.labels, SizeIs(2));
    EXPECT_EQ(enough.labels[1].box.left - enough.labels[0].box.right, 3);
    EXPECT_THAT(layOutDial({0, 0, 162, 71}, range, 1.0, broad).labels, IsEmpty());
}

TEST(KnobLayout, LabelsOneAboveTheOtherMayTouch) {
    int touching = 0;
    for (int height = 40; height <= 120; ++height) {
        const std::vector<DialLabel> labels = layOutDial({0, 0, 160, double(height)}, grid(), 1.0, measured).labels;
        for (std::size_t i = 1; i < labels.size(); ++i) {
            const PixelRect& a = labels[i - 1].box;
            const PixelRect& b = labels[i].box;
            const bool together = a.left < b.right && b.left < a.right;
            touching += together && (a.top == b.bottom || b.top == a.bottom) ? 1 : 0;
        }
    }
    EXPECT_GT(touching, 0);
}

TEST(KnobLayout, WithoutRoomThereIsNoDial) {
    EXPECT_EQ(layOutDial({}, grid(), 1.0, measured).radius, 0.0);
    EXPECT_EQ(layOutDial({5, 5, 3, 3}, grid(), 1.0, measured).radius, 0.0);
    EXPECT_GT(layOutDial({0, 0, 1, 1}, grid(), 1.0, measured).radius, 0.0);
}

TEST(KnobLayout, TicksAreAtDetentsIfThereIsRoom) {
    const KnobScale tens{0.0, 100.0, 10.0, {}, false, false};
    EXPECT_THAT(ticksOf(tens, 100.0, 5.0), SizeIs(11));
    EXPECT_THAT(ticksOf(tens, 100.0, 15.0), ElementsAre(0.0, 0.2, 0.4, 0.6, 0.8, 1.0));
    EXPECT_THAT(ticksOf(tens, 100.0, 40.0), ElementsAre(0.0, 0.5, 1.0));
    EXPECT_THAT(ticksOf(tens, 3.0, 40.0), ElementsAre(0.0, 1.0));
    // The last detent is cut short, and too short for a tick before the end.
    EXPECT_THAT(ticksOf({0.0, 10.0, 4.9, {}, false, false}, 100.0, 5.0), ElementsAre(0.0, 0.49, 1.0));
    EXPECT_THAT(ticksOf({0.0, 1.0, 1e-12, {}, false, false}, 1e6, 1.0).size(), testing::Le(362U));
    EXPECT_THAT(ticksOf({1.0, 1.0, 1.0, {}, false, false}, 100.0, 5.0), SizeIs(11));
    EXPECT_THAT(ticksOf(grid(), 100.0, 1.0), SizeIs(11));
}

}  // namespace
