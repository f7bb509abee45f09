// The range by itself: no widget and no canvas, only the channels that it is derived from.
#include "control/DisplayRange.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "tests/unit/QuietSlot.h"
#include "util/RuntimeError.h"

namespace kv::control {
namespace {

using channels::ChannelKind;
using channels::FREQ_UNSET;

/// Keeps the scale that the range applied to it.
class ScaleView final : public RangeView {
  public:
    void setScaleLeft(double frequency) override { left = frequency; }
    void setScaleWidth(double span) override { width = span; }
    void setScaleTop(double power) override { top = power; }
    void setScaleHeight(double span) override { height = span; }
    void centerChanged() override { ++centers; }

    std::optional<double> left;
    std::optional<double> width;
    std::optional<double> top;
    std::optional<double> height;
    int centers = 0;
};

class DisplayRangeTest : public ::testing::Test {
  protected:
    /// A channel at `frequency` MHz, 2 MHz wide, of `power` dBm.
    void add(double frequency, double power = 20.0) {
        const util::Ref<QuietSlot> slot(new QuietSlot);
        channels::FreqSlotFields& fields = slot->fields();
        fields.dFreq = frequency;
        fields.dBW = 1000.0;  // kHz to each side
        fields.dPwrDBM = power;
        fields.sKey = L"TX" + std::to_wstring(++added_);
        std::int32_t index = 0;
        store.add(ChannelKind::TX, channels::FreqSlotRef(slot.get()), index);
    }
    void expectSpan(double minimum, double maximum) {
        EXPECT_DOUBLE_EQ(range.minFreq(), minimum);
        EXPECT_DOUBLE_EQ(range.maxFreq(), maximum);
    }
    static int errorOf(const std::function<void()>& body) {
        try {
            body();
        } catch (const util::RuntimeError& error) {
            return error.number();
        }
        return 0;
    }

    channels::ChannelStore store;
    ScaleView view;
    DisplayRange range{store, view};

  private:
    int added_ = 0;
};

TEST_F(DisplayRangeTest, IsUnsetWithoutChannels) {
    EXPECT_FALSE(range.derive());
    EXPECT_FALSE(range.hasSpan());
    EXPECT_FALSE(range.isComplete());
    EXPECT_FALSE(range.applyScale());
    expectSpan(FREQ_UNSET, -FREQ_UNSET);
    EXPECT_EQ(view.left, std::nullopt);
    EXPECT_EQ(view.height, std::nullopt);
}

TEST_F(DisplayRangeTest, IsDerivedFromTheBandEdgesWithTheEndBufferAtBothEnds) {
    add(450.0);
    add(460.0, 40.0);
    EXPECT_TRUE(range.derive());
    expectSpan(449.0 - 100.0, 461.0 + 100.0);
    EXPECT_EQ(view.left, 349.0);
    EXPECT_EQ(view.width, 212.0);
    EXPECT_EQ(range.DisplayCenterFreq(), 455.0);
    EXPECT_EQ(view.centers, 1);
}

TEST_F(DisplayRangeTest, ReadingEitherEndAppliesTheScaleOfANarrowRangeToo) {
    range.setExactly(450.0, 450.5);
    for (const bool lower : {true, false}) {
        view.left.reset();
        view.width.reset();
        EXPECT_EQ(lower ? range.DisplayMinFreq() : range.DisplayMaxFreq(), lower ? 450.0 : 450.5);
        EXPECT_EQ(view.left, 450.0);
        EXPECT_EQ(view.width, 0.5);
    }
}

TEST_F(DisplayRangeTest, TakesThePowersFromTheChannelsOnceThereIsOne) {
    EXPECT_EQ(range.DisplayMaxPwr(), 3.0);
    EXPECT_EQ(range.DisplayMinPwr(), 0.0);
    EXPECT_FALSE(range.isComplete());
    add(450.0, 40.0);
    EXPECT_EQ(range.DisplayMaxPwr(), 40.0);
    EXPECT_EQ(range.DisplayMinPwr(), 0.0);
    EXPECT_EQ(view.top, 40.0);
    EXPECT_EQ(view.height, -40.0);
    range.derive();
    EXPECT_TRUE(range.isComplete());
}

TEST_F(DisplayRangeTest, EqualPowersKeepTheHeightOfTheScale) {
    range.setDisplayMaxPwr(50.0);
    range.setDisplayMinPwr(10.0);
    EXPECT_EQ(view.height, -40.0);
    range.setDisplayMinPwr(50.0);
    EXPECT_EQ(view.height, -40.0);
}

TEST_F(DisplayRangeTest, IsShiftedOntoACenterThatWasSetElsewhere) {
    add(450.0);
    range.setFreqEndBuffer(9.0);
    ASSERT_TRUE(range.derive());
    expectSpan(440.0, 460.0);
    range.setDisplayCenterFreq(470.0);
    EXPECT_TRUE(range.ScaleDisplay());
    expectSpan(460.0, 480.0);
    EXPECT_EQ(view.left, 460.0);
}

TEST_F(DisplayRangeTest, ACenterWithinARoundingErrorOfTheMiddleLeavesTheRange) {
    add(450.0);
    range.setFreqEndBuffer(9.0);
    ASSERT_TRUE(range.derive());
    range.setDisplayCenterFreq(450.0 + 9e-9);
    range.shiftOntoCenter();
    expectSpan(440.0, 460.0);
    range.setDisplayCenterFreq(450.0 + 2e-8);
    range.shiftOntoCenter();
    EXPECT_GT(range.minFreq(), 440.0);
}

TEST_F(DisplayRangeTest, ACenterNotAboveZeroBecomesTheMiddle) {
    add(450.0);
    for (const double center : {0.0, -5.0}) {
        range.setDisplayCenterFreq(center);
        EXPECT_EQ(range.center(), 450.0) << center;
    }
}

TEST_F(DisplayRangeTest, NumbersThatAreNotFiniteAreAnOverflowAndChangeNothing) {
    const double infinity = std::numeric_limits<double>::infinity();
    add(450.0);
    range.derive();
    const auto before = range.span();
    EXPECT_EQ(errorOf([&] { range.setDisplayCenterFreq(infinity); }), util::error_number::kOverflow);
    EXPECT_EQ(errorOf([&] { range.setDisplayMaxPwr(infinity); }), util::error_number::kOverflow);
    EXPECT_EQ(errorOf([&] { range.setDisplayMinPwr(-infinity); }), util::error_number::kOverflow);
    EXPECT_EQ(errorOf([&] { range.SetDisplayRange(400.0, infinity); }), util::error_number::kOverflow);
    EXPECT_EQ(range.span(), before);
}

TEST_F(DisplayRangeTest, HalvesTheEndBufferUntilItIsAtMostAThirdOfTheSpan) {
    range.setFreqEndBuffer(100.0);
    range.SetDisplayRange(400.0, 460.0);
    EXPECT_EQ(range.FreqEndBuffer(), 12.5);
    expectSpan(387.5, 472.5);
    range.setFreqEndBuffer(20.0);
    range.SetDisplayRange(400.0, 460.0);
    EXPECT_EQ(range.FreqEndBuffer(), 20.0) << "exactly a third stays";
}

TEST_F(DisplayRangeTest, TheEndBufferIsAHundredUntilItIsSet) {
    EXPECT_EQ(range.exchangeFreqEndBuffer(5.0), -1.0);
    EXPECT_EQ(range.FreqEndBuffer(), 5.0);
    range.setFreqEndBuffer(-3.0);
    EXPECT_EQ(range.FreqEndBuffer(), 100.0);
}

TEST_F(DisplayRangeTest, ShowsExactlyTheSpanThatIsAskedFor) {
    EXPECT_TRUE(range.setExactly(440.0, 441.0));
    expectSpan(440.0, 441.0);
    EXPECT_EQ(view.width, 1.0);
    for (const auto& [minimum, maximum] :
         {std::pair(441.0, 440.0), std::pair(440.0, 440.0 + 5e-7), std::pair(-10.0, 0.0)})
        EXPECT_FALSE(range.setExactly(minimum, maximum)) << minimum << " to " << maximum;
    expectSpan(440.0, 441.0);
}

TEST_F(DisplayRangeTest, DerivesTheStepFromTheRangeAndKeepsIt) {
    range.setExactly(440.0, 460.0);
    EXPECT_EQ(range.nGridX(), 20);
    EXPECT_EQ(range.GridStepX(), 1.0);
    range.setExactly(440.0, 450.0);
    EXPECT_EQ(range.GridStepX(), 1.0) << "until it is derived again";
    EXPECT_EQ(range.drawnStep(), 0.5);
    range.deriveGridStep();
    EXPECT_EQ(range.GridStepX(), 0.5);
    EXPECT_FALSE(range.isDrawnStepChosen());
}

TEST_F(DisplayRangeTest, DivisionsBelowOneMeanTwenty) {
    for (const int divisions : {0, -1, -32768}) {
        range.setNGridX(static_cast<std::int16_t>(divisions));
        EXPECT_EQ(range.nGridX(), 20) << divisions;
    }
    range.setNGridX(1);
    EXPECT_EQ(range.nGridX(), 1);
}

TEST_F(DisplayRangeTest, AChosenStepMakesTheRangeAroundTheCenter) {
    add(450.0);
    range.derive();
    range.setGridStepX(0.5);
    range.setNGridX(10);
    range.applyChosenStep();
    expectSpan(447.5, 452.5);
    EXPECT_EQ(view.width, 5.0);
    EXPECT_TRUE(range.isDrawnStepChosen());
}

TEST_F(DisplayRangeTest, AChosenStepBeforeThereIsARangeChangesNothing) {
    range.setGridStepX(0.5);
    range.applyChosenStep();
    expectSpan(FREQ_UNSET, -FREQ_UNSET);
    EXPECT_EQ(range.step(), 0.5);
}

TEST_F(DisplayRangeTest, AStepThatIsLostBesideItsCenterIsAnOverflow) {
    add(450.0);
    range.setDisplayCenterFreq(1e20);
    range.setGridStepX(1.0);
    EXPECT_EQ(errorOf([&] { range.applyChosenStep(); }), util::error_number::kOverflow);
    expectSpan(349.0, 551.0);
}

TEST_F(DisplayRangeTest, ATurnThatIsTakenBackLeavesRangeAndStepAsTheTurnFoundThem) {
    add(450.0);
    range.setExactly(440.0, 460.0);
    range.deriveGridStep();
    range.rememberForTurn();
    range.setGridStepX(5.0);
    range.applyChosenStep();
    expectSpan(400.0, 500.0);
    range.takeTurnBack();
    expectSpan(440.0, 460.0);
    EXPECT_EQ(range.GridStepX(), 1.0);
    EXPECT_FALSE(range.isDrawnStepChosen());
}

TEST_F(DisplayRangeTest, ReturnsFromViewAllToTheRangeBeforeItWithItsOwnCenterAndStep) {
    EXPECT_FALSE(range.returnFromViewAll()) << "there was none";
    range.setExactly(440.0, 460.0);
    range.setDisplayCenterFreq(445.0);
    range.rememberForViewAll();
    range.setExactly(300.0, 700.0);
    EXPECT_TRUE(range.returnFromViewAll());
    expectSpan(440.0, 460.0);
    EXPECT_EQ(range.DisplayCenterFreq(), 450.0);
    EXPECT_EQ(range.GridStepX(), 1.0);
}

TEST_F(DisplayRangeTest, UnsetTakesFrequenciesCenterAndStepBack) {
    add(450.0);
    range.setExactly(440.0, 460.0);
    range.setDisplayCenterFreq(445.0);
    range.setGridStepX(2.0);
    range.setDisplayMaxPwr(80.0);
    range.unset();
    expectSpan(FREQ_UNSET, -FREQ_UNSET);
    EXPECT_EQ(range.center(), 0.0);
    EXPECT_EQ(range.step(), 0.0);
    EXPECT_EQ(range.DisplayMaxPwr(), 80.0);
}

TEST_F(DisplayRangeTest, BothEndsOfTheRangeBelongToIt) {
    range.setExactly(440.0, 460.0);
    EXPECT_TRUE(range.contains(440.0));
    EXPECT_TRUE(range.contains(460.0));
    EXPECT_FALSE(range.contains(439.999));
    EXPECT_FALSE(range.contains(460.001));
    EXPECT_FALSE(range.contains(std::numeric_limits<double>::quiet_NaN()));
}

TEST_F(DisplayRangeTest, MissingBoundsAreThoseOfTheChannels) {
    range.setFreqEndBuffer(0.0);
    EXPECT_FALSE(range.showBetween(0.0, 0.0)) << "there is no channel";
    EXPECT_FALSE(range.hasSpan());
    EXPECT_EQ(view.left, std::nullopt);
    add(450.0);
    add(460.0);
    range.setDisplayCenterFreq(1.0);
    EXPECT_TRUE(range.showBetween(0.0, 0.0));
    expectSpan(449.0, 461.0);
    EXPECT_EQ(range.center(), 0.0);
    EXPECT_TRUE(range.showBetween(400.0, 0.0));
    expectSpan(400.0, 461.0);
    EXPECT_EQ(view.left, 449.0) << "the scale of the channels";
    EXPECT_EQ(view.width, 12.0);
    EXPECT_TRUE(range.showBetween(0.25, 0.75));
    expectSpan(0.25, 0.75);
}

}  // namespace
}  // namespace kv::control
