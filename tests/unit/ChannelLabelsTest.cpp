// The labels of the channels: which are chosen, and where they are.
#include "control/ChannelLabels.h"

#include <algorithm>
#include <random>

#include "control/SpectrumPainter.h"
#include "tests/unit/PartsFixture.h"

namespace kv::control {
namespace {

using channels::ChannelKind;
using Texts = std::vector<std::wstring>;

/// 200 by 100 pixels, two columns to a megahertz from 400 MHz on, one row to a decibel below 100 dBm. A character is 5
/// pixels wide and 13 high.
class ChannelLabelsTest : public PartsTest {
  protected:
    ChannelLabelsTest() { overlays.setChannelLabels(true); }

    util::Ref<QuietSlot> addLabeled(double frequency, double power, const std::wstring& label,
                                    ChannelKind kind = ChannelKind::TX) {
        util::Ref<QuietSlot> slot = add(kind, frequency, power);
        slot->set<&channels::FreqSlotFields::sLabel>(label);
        return slot;
    }
    /// What a drawing of the whole display offers.
    const BoxTops& topsOf(std::int32_t many) {
        painter.setMany(many);
        painter.clearPicture();
        for (const ChannelKind kind : {ChannelKind::TX, ChannelKind::RX}) {
            util::Step step = 0;
            std::int32_t kChnl = 0;
            painter.drawCollection(kind, step, kChnl);
        }
        return painter.tops();
    }
    ChannelLabels chosen(std::int32_t many = 0, std::vector<raster::PixelRect> taken = {}) {
        OverlayInk ink(picture);
        return ChannelLabels(topsOf(many), store, ink, firstColumn, std::move(taken));
    }
    static Texts textsOf(const ChannelLabels& labels) {
        Texts texts;
        for (const ChannelLabels::Label& label : labels.labels())
            texts.push_back(label.text);
        return texts;
    }

    int firstColumn = 0;  ///< for labels
    Overlays overlays;
    SpectrumPainter painter{picture, strip, store, range, marks, overlays};
};

TEST_F(ChannelLabelsTest, ALabelIsCenteredAboveItsBox) {
    showRange();
    addLabeled(450.0, 40.0, L"abcd");
    const ChannelLabels labels = chosen();
    ASSERT_EQ(textsOf(labels), Texts{L"abcd"});
    const ChannelLabels::Label& label = labels.labels().front();
    // The box reaches up to row 60.
    EXPECT_EQ(label.area, (raster::PixelRect{90, 46, 110, 59}));
    EXPECT_EQ(label.lineEnd, label.area.bottom);
}

TEST_F(ChannelLabelsTest, LabelsStayInsideThePicture) {
    showRange();
    addLabeled(400.0, 40.0, L"left end");
    addLabeled(499.0, 40.0, L"right end");
    const ChannelLabels labels = chosen();
    for (const ChannelLabels::Label& label : labels.labels()) {
        EXPECT_GE(label.area.left, 0);
        EXPECT_LE(label.area.right, 200);
        EXPECT_TRUE(label.area.left <= label.column && label.column < label.area.right);
    }
    EXPECT_EQ(labels.labels().size(), 2U);
}

TEST_F(ChannelLabelsTest, TheHigherBoxComesFirstAndTheOtherLabelMovesUpWithALineToItsBox) {
    showRange();
    addLabeled(452.0, 39.0, L"lower one");
    addLabeled(450.0, 40.0, L"higher one");
    const ChannelLabels labels = chosen();
    ASSERT_EQ(textsOf(labels), (Texts{L"higher one", L"lower one"}));
    EXPECT_EQ(labels.labels()[0].lineEnd, labels.labels()[0].area.bottom);
    const ChannelLabels::Label& second = labels.labels()[1];
    EXPECT_EQ(second.area.bottom, 46 - 1);
    EXPECT_EQ(second.lineEnd, 61);
    EXPECT_EQ(second.column, 104);
}

TEST_F(ChannelLabelsTest, ALabelIsAboveTheBoxesBesideIt) {
    showRange();
    addLabeled(450.0, 40.0, L"");
    addLabeled(440.0, 30.0, L"a label that is wide");
    const ChannelLabels labels = chosen();
    ASSERT_EQ(labels.labels().size(), 1U);
    EXPECT_EQ(labels.labels().front().area.bottom, 59);
    EXPECT_EQ(labels.labels().front().lineEnd, 70);
}

TEST_F(ChannelLabelsTest, ALabelFarBelowTheBoxesBesideItIsLeftOut) {
    showRange();
    addLabeled(450.0, 80.0, L"x");
    addLabeled(446.0, 20.0, L"wide label");
    EXPECT_EQ(textsOf(chosen()), Texts{L"x"});
}

TEST_F(ChannelLabelsTest, WithoutRoomAboveTheLabelIsInsideTheBox) {
    showRange();
    addLabeled(450.0, 150.0, L"above");
    addLabeled(452.0, 95.0, L"inside");
    const ChannelLabels labels = chosen();
    ASSERT_EQ(textsOf(labels), (Texts{L"above", L"inside"}));
    EXPECT_EQ(labels.labels()[0].area.top, 0);
    EXPECT_EQ(labels.labels()[1].area.top, 14);
    EXPECT_EQ(labels.labels()[1].lineEnd, labels.labels()[1].area.bottom);
}

TEST_F(ChannelLabelsTest, AtMostFourLabelsAreOneOverTheOther) {
    showRange();
    for (int i = 0; i < 8; ++i)
        addLabeled(450.0 + i / 2.0, 20.0, L"the same place");
    EXPECT_EQ(chosen().labels().size(), 4U);
}

TEST_F(ChannelLabelsTest, ChannelsThatCannotBeSeenHaveNone) {
    showRange();
    addLabeled(450.0, 40.0, L"hidden")->set<&channels::FreqSlotFields::bVisible>(false);
    addLabeled(380.0, 40.0, L"below the range");
    addLabeled(500.5, 40.0, L"only the edge of the box is inside");
    addLabeled(0.0, 40.0, L"no frequency");
    addLabeled(420.0, 40.0, L"");
    EXPECT_EQ(textsOf(chosen()), Texts{});
}

TEST_F(ChannelLabelsTest, ALabelWiderThanThePictureIsLeftOut) {
    showRange();
    addLabeled(450.0, 40.0, std::wstring(40, L'w'));
    addLabeled(470.0, 40.0, std::wstring(41, L'w'));
    addLabeled(430.0, 40.0, std::wstring(100'000, L'w'));
    EXPECT_EQ(textsOf(chosen()), Texts{std::wstring(40, L'w')});
}

TEST_F(ChannelLabelsTest, TheColumnsOfThePowerAxisAreLeftFree) {
    showRange();
    firstColumn = 30;
    addLabeled(410.0, 40.0, L"in these columns");
    addLabeled(416.0, 30.0, L"beside them");
    const ChannelLabels labels = chosen();
    ASSERT_EQ(textsOf(labels), Texts{L"beside them"});
    EXPECT_EQ(labels.labels().front().area.left, 30);
}

TEST_F(ChannelLabelsTest, AreasInUseAreLeftFree) {
    showRange();
    addLabeled(450.0, 40.0, L"label");
    const raster::PixelRect inUse{0, 0, 200, 50};
    EXPECT_EQ(textsOf(chosen(0, {inUse})), Texts{});
}

TEST_F(ChannelLabelsTest, OfEqualBoxesInAColumnTheOneDrawnLastHasTheLabel) {
    showRange();
    addLabeled(450.0, 40.0, L"first");
    addLabeled(450.0, 40.0, L"second");
    EXPECT_EQ(textsOf(chosen(0)), Texts{L"second"});
    EXPECT_EQ(textsOf(chosen(1000)), Texts{L"second"});
    addLabeled(450.0, 40.0, L"receive", ChannelKind::RX);
    EXPECT_EQ(textsOf(chosen(0)), Texts{L"receive"});
    EXPECT_EQ(textsOf(chosen(1000)), Texts{L"receive"});
}

TEST_F(ChannelLabelsTest, ChannelsThatWereRemovedOrReplacedSinceTheDrawingHaveNone) {
    showRange();
    addLabeled(410.0, 40.0, L"removed");
    addLabeled(450.0, 40.0, L"stays");
    const BoxTops tops = topsOf(0);
    ASSERT_FALSE(store.closeGap(ChannelKind::TX, 0));
    OverlayInk ink(picture);
    EXPECT_EQ(textsOf(ChannelLabels(tops, store, ink, 0, {})), Texts{L"stays"});
    store.clear(ChannelKind::TX);
    EXPECT_EQ(textsOf(ChannelLabels(tops, store, ink, 0, {})), Texts{});
    addLabeled(420.0, 40.0, L"at the same place");
    addLabeled(430.0, 40.0, L"at the same place");
    EXPECT_EQ(textsOf(ChannelLabels(tops, store, ink, 0, {})), Texts{});
}

TEST_F(ChannelLabelsTest, OneByOneAndAtOnceTheLabelsAreTheSame) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> frequency(390.0, 510.0);
    std::uniform_real_distribution<double> power(-20.0, 110.0);
    for (int i = 0; i < 60; ++i)
        addLabeled(frequency(random), power(random), std::to_wstring(i),
                   i % 3 == 0 ? ChannelKind::RX : ChannelKind::TX);
    showRange();
    const ChannelLabels oneByOne = chosen(1000);
    const ChannelLabels atOnce = chosen(0);
    EXPECT_EQ(textsOf(oneByOne), textsOf(atOnce));
    EXPECT_GT(atOnce.labels().size(), 5U);
}

TEST_F(ChannelLabelsTest, AnotherLabelMakesThePictureOutdatedIfLabelsOrALegendAreDrawn) {
    showRange();
    const util::Ref<QuietSlot> slot = addLabeled(450.0, 40.0, L"one");
    const SpectrumPainter::Cursor cursor{450.0, 0};
    const auto isCurrentAfterAnotherLabel = [&](const wchar_t* label) {
        painter.beginPicture(cursor);
        static_cast<void>(topsOf(0));
        painter.drawOverlays();
        painter.endPicture();
        EXPECT_TRUE(painter.isPictureCurrent(cursor));
        slot->set<&channels::FreqSlotFields::sLabel>(std::wstring(label));
        return painter.isPictureCurrent(cursor);
    };
    EXPECT_FALSE(isCurrentAfterAnotherLabel(L"two"));
    overlays = {};
    EXPECT_FALSE(painter.isPictureCurrent(cursor));
    EXPECT_TRUE(isCurrentAfterAnotherLabel(L"three"));
    overlays.setLegend(true);
    EXPECT_FALSE(isCurrentAfterAnotherLabel(L"four"));
}

TEST_F(ChannelLabelsTest, LabelsNeverOverlapWithWhateverChannels) {
    std::mt19937 random(4);
    std::uniform_real_distribution<double> frequency(390.0, 510.0);
    std::uniform_real_distribution<double> power(-20.0, 130.0);
    std::uniform_int_distribution<int> length(1, 20);
    std::size_t most = 0;
    for (int round = 0; round < 60; ++round) {
        store.clear(ChannelKind::TX);
        for (int i = 0; i < 5 * round; ++i)
            addLabeled(frequency(random), power(random), std::wstring(static_cast<std::size_t>(length(random)), L'm'));
        showRange();
        picture.move({150.0, 60.0, (100.0 + 20.0 * round) * 15.0, (50.0 + 5.0 * round) * 15.0});
        const ChannelLabels labels = chosen();
        const auto& all = labels.labels();
        most = std::max(most, all.size());
        for (std::size_t i = 0; i < all.size(); ++i) {
            const raster::PixelRect& area = all[i].area;
            EXPECT_TRUE(area.left >= 0 && area.top >= 0 && area.right <= picture.pixelSize().width &&
                        area.bottom <= picture.pixelSize().height);
            EXPECT_TRUE(i == 0 || area.bottom - area.top == all[0].area.bottom - all[0].area.top);
            for (std::size_t other = 0; other < i; ++other)
                EXPECT_FALSE(meet(area, all[other].area));
        }
    }
    EXPECT_GT(most, 15U);
}

}  // namespace
}  // namespace kv::control
