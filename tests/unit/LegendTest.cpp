// The legend: which rows it has after any change of the channels, and when there is room for it.
#include "control/Legend.h"

#include <map>
#include <random>
#include <utility>

#include "channels/Intermodulation.h"
#include "tests/unit/PartsFixture.h"
#include "util/RuntimeError.h"

namespace kv::control {
namespace {

using channels::ChannelKind;
using Rows = std::vector<Legend::Row>;

class LegendTest : public PartsTest {
  protected:
    using Slot = util::Ref<QuietSlot>;

    /// A product with these coefficients.
    Slot addProduct(std::initializer_list<int> coefficients, std::uint32_t color) {
        const Slot slot = add(ChannelKind::TX, 450.0);
        makeProduct(*slot, coefficients);
        slot->set<&channels::FreqSlotFields::lColor>(color);
        return slot;
    }
    static void makeProduct(QuietSlot& slot, std::initializer_list<int> coefficients) {
        slot.set<&channels::FreqSlotFields::sLabel>(std::wstring(L"Intermod Product [some order product] A-B"));
        slot.setNIMComps(static_cast<std::int16_t>(coefficients.size()));
        std::int32_t i = 0;
        for (const int coefficient : coefficients)
            slot.component(i++).coefficient = static_cast<std::int16_t>(coefficient);
    }
    [[nodiscard]] Rows rows() const { return Legend::rowsOf(store); }
};

constexpr std::uint32_t kRed = 0x0000FF;

TEST_F(LegendTest, IsEmptyWithoutChannels) {
    EXPECT_EQ(rows(), Rows{});
    OverlayInk ink(picture);
    EXPECT_TRUE(Legend(rows(), ink).empty());
}

TEST_F(LegendTest, HasTransmittersReceiversAndTheProductsByTheirOrder) {
    addProduct({-3, 2}, 5);
    add(ChannelKind::RX, 460.0);
    addProduct({1, 1, -1}, 3);
    addProduct({2, -1}, 3);
    addProduct({1, -1}, 2);
    addProduct({}, 9);
    add(ChannelKind::TX, 450.0);
    add(ChannelKind::TX, 451.0);
    EXPECT_EQ(
        rows(),
        (Rows{{L"TX", kRed, 2}, {L"RX", kRed, 1}, {L"IM2", 2, 1}, {L"IM3", 3, 2}, {L"IM5", 5, 1}, {L"IM", 9, 1}}));
}

TEST_F(LegendTest, AReceiverIsNoProductWhateverItsLabel) {
    const Slot slot = add(ChannelKind::RX, 450.0);
    makeProduct(*slot, {2, -1});
    EXPECT_EQ(rows(), (Rows{{L"RX", kRed, 1}}));
}

TEST_F(LegendTest, TheColorIsTheMostFrequentOne) {
    for (const std::uint32_t color : {7U, 5U, 9U, 5U, 9U})
        add(ChannelKind::TX, 450.0)->set<&channels::FreqSlotFields::lColor>(color);
    EXPECT_EQ(rows(), (Rows{{L"TX", 5, 5}}));
    add(ChannelKind::TX, 450.0)->set<&channels::FreqSlotFields::lColor>(9U);
    EXPECT_EQ(rows(), (Rows{{L"TX", 9, 6}}));
}

TEST_F(LegendTest, FollowsLabelsComponentsColorsAndVisibility) {
    const Slot slot = add(ChannelKind::TX, 450.0);
    EXPECT_EQ(rows(), (Rows{{L"TX", kRed, 1}}));
    makeProduct(*slot, {2, -1});
    EXPECT_EQ(rows(), (Rows{{L"IM3", kRed, 1}}));
    slot->component(0).coefficient = 3;
    EXPECT_EQ(rows(), (Rows{{L"IM4", kRed, 1}}));
    slot->setNIMComps(1);
    EXPECT_EQ(rows(), (Rows{{L"IM3", kRed, 1}}));
    slot->set<&channels::FreqSlotFields::lColor>(8U);
    EXPECT_EQ(rows(), (Rows{{L"IM3", 8, 1}}));
    slot->set<&channels::FreqSlotFields::bVisible>(false);
    EXPECT_EQ(rows(), Rows{});
    slot->set<&channels::FreqSlotFields::bVisible>(true);
    slot->set<&channels::FreqSlotFields::sLabel>(std::wstring(L"channel"));
    EXPECT_EQ(rows(), (Rows{{L"TX", 8, 1}}));
    store.clear(ChannelKind::TX);
    EXPECT_EQ(rows(), Rows{});
}

/// A class of the host's: it reports no changes and is read each time.
class HostSlot final : public CountedSlot {
  public:
    std::wstring sLabel() override {
        if (fails)
            throw util::RuntimeError(util::error_number::kTypeMismatch);
        return CountedSlot::sLabel();
    }
    bool fails = false;
};

TEST_F(LegendTest, CountsChannelsOfTheHostsClassAsTheyAreNow) {
    add(ChannelKind::TX, 450.0);
    const util::Ref<HostSlot> slot(new HostSlot);
    slot->fields().lColor = 4;
    slot->fields().sKey = L"TXhost";
    std::int32_t index = 0;
    store.add(ChannelKind::TX, channels::FreqSlotRef(slot.get()), index);
    EXPECT_EQ(rows(), (Rows{{L"TX", 4, 2}}));
    slot->fields().sLabel = L"Intermod Product [third order product]";
    slot->setNIMComps(2);
    slot->component(0).coefficient = 2;
    slot->component(1).coefficient = -1;
    EXPECT_EQ(rows(), (Rows{{L"TX", kRed, 1}, {L"IM3", 4, 1}}));
    slot->fails = true;
    EXPECT_EQ(rows(), (Rows{{L"TX", kRed, 1}}));
}

TEST_F(LegendTest, AfterAnyChangesTheCountsAreThoseOfCountingAll) {
    std::mt19937 random(15);
    const auto pick = [&](std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random); };
    std::vector<Slot> slots;
    std::size_t largest = 0;
    for (int round = 0; round < 3000; ++round) {
        largest = std::max(largest, slots.size());
        const std::size_t what = pick(10);
        if (what < 4 || slots.empty()) {
            slots.push_back(add(ChannelKind::TX, 450.0));
        } else if (what == 4) {
            const std::size_t gone = pick(slots.size());
            ASSERT_FALSE(store.closeGap(ChannelKind::TX, static_cast<std::int32_t>(gone)));
            slots.erase(slots.begin() + static_cast<std::ptrdiff_t>(gone));
        } else if (what == 5 && pick(200) == 0) {
            store.clear(ChannelKind::TX);
            slots.clear();
        } else if (what < 7) {
            slots[pick(slots.size())]->set<&channels::FreqSlotFields::lColor>(static_cast<std::uint32_t>(pick(3)));
        } else if (what < 8) {
            slots[pick(slots.size())]->set<&channels::FreqSlotFields::bVisible>(pick(2) == 0);
        } else {
            makeProduct(*slots[pick(slots.size())], {static_cast<int>(pick(3)), -1});
        }
        if (pick(5) != 0)
            continue;
        std::map<int, std::map<std::uint32_t, int>> counts;
        for (const Slot& slot : slots) {
            if (slot->bVisible())
                ++counts[channels::productOrder(std::as_const(*slot).fields())][slot->lColor()];
        }
        Rows expected;
        for (const auto& [order, colors] : counts) {
            Legend::Row row{order == 0 ? L"TX" : L"IM" + std::to_wstring(order), 0, 0};
            int most = 0;
            for (const auto& [color, count] : colors) {
                row.count += count;
                if (count > most)
                    row.color = color;
                most = std::max(most, count);
            }
            expected.push_back(row);
        }
        ASSERT_EQ(rows(), expected) << "round " << round;
    }
    EXPECT_GT(largest, 300U) << "more than one block";
}

TEST_F(LegendTest, AChangeCountsItsBlockAgainAndADrawingWithoutChangesNothing) {
    std::vector<Slot> slots;
    for (int i = 0; i < 2000; ++i)
        slots.push_back(add(ChannelKind::TX, 450.0));
    static_cast<void>(rows());
    const auto counted = [&] { return store.snapshot(ChannelKind::TX).countedRecords(); };
    EXPECT_EQ(counted(), 2000U);
    static_cast<void>(rows());
    EXPECT_EQ(counted(), 2000U);
    slots[1000]->set<&channels::FreqSlotFields::lColor>(1U);
    slots[1001]->set<&channels::FreqSlotFields::dPwrDBM>(1.0);
    slots[1500]->set<&channels::FreqSlotFields::dFreq>(1.0);
    static_cast<void>(rows());
    EXPECT_EQ(counted(), 2256U);
}

TEST_F(LegendTest, IsInTheUpperRightCornerAndLeftOutWhereItWouldCoverTooMuch) {
    const Rows three{{L"TX", 1, 8}, {L"RX", 2, 20}, {L"IM3", 3, 495000}};
    for (const int dpi : {96, 120, 144, 192}) {
        platform.dots = dpi;
        picture.setFontSize(8.0 * dpi / 96.0);
        int shown = 0;
        for (int width = 50; width <= 800; width += 50) {
            for (int height = 50; height <= 600; height += 50) {
                picture.move({0.0, 0.0, width * 15.0, height * 15.0});
                OverlayInk ink(picture);
                const Legend legend(three, ink);
                if (legend.empty())
                    continue;
                ++shown;
                const raster::PixelRect area = legend.area();
                EXPECT_TRUE(area.left >= (ink.size().width - ink.scaled(6)) * 3 / 5 && area.right < ink.size().width);
                EXPECT_TRUE(area.top > 0 && area.bottom <= ink.size().height / 2 + ink.scaled(6));
            }
        }
        EXPECT_GT(shown, 80);
        EXPECT_LT(shown, 16 * 12);
    }
}

}  // namespace
}  // namespace kv::control
