// From the channels' extremes to the range on display.
#include <gmock/gmock.h>

#include <limits>

#include "tests/automation/MessageBoxes.h"
#include "tests/automation/MockSite.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

class Range : public BothWays {
  protected:
    void addAt(double frequency, const wchar_t* key) { scope.AddTXChnl(channel({.freq = frequency, .key = key})); }
    void expectRange(double minimum, double maximum) {
        EXPECT_DOUBLE_EQ(scope.DisplayMinFreq(), minimum);
        EXPECT_DOUBLE_EQ(scope.DisplayMaxFreq(), maximum);
    }
};
INSTANTIATE_TEST_SUITE_P(Ways, Range, testing::Values(Way::early, Way::late), nameOf);

TEST_P(Range, WithoutChannelsTheRangeIsUnset) {
    expectRange(kUnset, -kUnset);
    EXPECT_TRUE(scope.DrawDisplay());
    expectRange(kUnset, -kUnset);
}

TEST_P(Range, OneChannelHasTheUsualMarginOnBothSides) {
    addAt(450.0, L"TX1");
    expectRange(350.0, 550.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 450.0);
}

TEST_P(Range, MarginIsThatOfTheHost) {
    scope.setFreqEndBuffer(2.5);
    addAt(450.0, L"TX1");
    addAt(460.0, L"TX2");
    expectRange(447.5, 462.5);
    EXPECT_EQ(scope.DisplayCenterFreq(), 455.0);
}

TEST_P(Range, NoMarginAtAllIsPossible) {
    scope.setFreqEndBuffer(0.0);
    addAt(450.0, L"TX1");
    addAt(460.0, L"TX2");
    expectRange(450.0, 460.0);
}

TEST_P(Range, RangeStaysOnceItWasAskedFor) {
    addAt(450.0, L"TX1");
    expectRange(350.0, 550.0);
    addAt(900.0, L"TX2");
    expectRange(350.0, 550.0);
    scope.setFreqEndBuffer(1.0);
    expectRange(350.0, 550.0);
    EXPECT_TRUE(scope.ReScaleChannels());
    expectRange(350.0, 550.0);
}

TEST_P(Range, InitialDrawingDerivesItAnew) {
    addAt(450.0, L"TX1");
    expectRange(350.0, 550.0);
    addAt(900.0, L"TX2");
    scope.DrawInitialDisplay();
    expectRange(350.0, 1000.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 675.0);
}

TEST_P(Range, MinusOneMakesTheMargin100) {
    scope.setFreqEndBuffer(3.0);
    scope.setFreqEndBuffer(-1.0);
    EXPECT_EQ(scope.FreqEndBuffer(), 100.0);
}

TEST_P(Range, CenterNotAboveZeroIsTheMiddle) {
    addAt(450.0, L"TX1");
    for (const double given : {0.0, -3.0}) {
        scope.setDisplayCenterFreq(500.0);
        EXPECT_EQ(scope.DisplayCenterFreq(), 500.0);
        scope.setDisplayCenterFreq(given);
        EXPECT_EQ(scope.DisplayCenterFreq(), 450.0) << given;
    }
}

TEST_P(Range, SettingTheCenterLeavesTheRangeUntilItIsDrawn) {
    addAt(450.0, L"TX1");
    scope.setDisplayCenterFreq(480.0);
    expectRange(350.0, 550.0);
    EXPECT_TRUE(scope.DrawDisplay());
    expectRange(380.0, 580.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 480.0);
}

TEST_P(Range, NewCenterShiftsTheRangeAndKeepsItsSpan) {
    addAt(450.0, L"TX1");
    expectRange(350.0, 550.0);
    scope.setDisplayCenterFreq(410.0);
    scope.DrawNewCenterFreq();
    expectRange(310.0, 510.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 410.0);
}

TEST_P(Range, ByRangeHalvesTheMarginUntilItFits) {
    addAt(450.0, L"TX1");
    scope.setFreqEndBuffer(100.0);
    scope.DrawByRange(400.0, 460.0);
    expectRange(387.5, 472.5);
    EXPECT_EQ(scope.FreqEndBuffer(), 12.5);
    EXPECT_EQ(scope.DisplayCenterFreq(), 430.0);
}

TEST_P(Range, ByRangeTakesTheFullMarginWhileItIsNegative) {
    addAt(450.0, L"TX1");
    scope.DrawInitialDisplay();
    scope.setFreqEndBuffer(-3.0);
    scope.DrawByRange(400.0, 460.0);
    expectRange(300.0, 560.0);
}

TEST_P(Range, ByRangeBoundsNotAboveZeroComeFromTheChannels) {
    scope.setFreqEndBuffer(1.0);
    addAt(450.0, L"TX1");
    addAt(480.0, L"TX2");
    scope.DrawByRange(0.0, 0.0);
    expectRange(449.0, 481.0);
    scope.DrawByRange(-5.0, 600.0);
    expectRange(449.0, 601.0);
    scope.DrawByRange(420.0, -1.0);
    expectRange(419.0, 481.0);
}

TEST_P(Range, ByRangeWithTheBoundsTheWrongWayRoundKeepsTheMargin) {
    scope.setFreqEndBuffer(10.0);
    addAt(450.0, L"TX1");
    scope.DrawByRange(460.0, 450.0);
    expectRange(450.0, 460.0);
    EXPECT_EQ(scope.FreqEndBuffer(), 10.0);
}

TEST_P(Range, ByRangeWithoutChannelsAndBoundsStaysUnset) {
    scope.DrawByRange(0.0, 0.0);
    expectRange(kUnset, -kUnset);
}

TEST_P(Range, ByRangeThatIsNotFiniteEnds) {
    const MessageBoxes boxes;
    scope.setFreqEndBuffer(5.0);
    addAt(450.0, L"TX1");
    expectRange(445.0, 455.0);
    scope.DrawByRange(kInfinity, kInfinity);
    scope.DrawByRange(1.0, kInfinity);
    EXPECT_EQ(scope.FreqEndBuffer(), 5.0);
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_LT(scope.DisplayMaxFreq(), kInfinity);
}

TEST_P(Range, PowersAreThoseOfTheStoreUntilTheHostSetsThem) {
    scope.AddTXChnl(channel({.freq = 450.0, .power = 46.0, .key = L"TX1"}));
    scope.AddTXChnl(channel({.freq = 451.0, .power = -110.0, .key = L"TX2"}));
    EXPECT_EQ(scope.DisplayMinPwr(), -110.0);
    EXPECT_EQ(scope.DisplayMaxPwr(), 46.0);
    scope.setDisplayMinPwr(-140.0);
    scope.setDisplayMaxPwr(60.0);
    EXPECT_EQ(scope.DisplayMinPwr(), -140.0);
    EXPECT_EQ(scope.DisplayMaxPwr(), 60.0);
    EXPECT_EQ(scope.dPwrMin(), -110.0);
}

TEST_P(Range, UpsideDownPowersAreNotChecked) {
    addAt(450.0, L"TX1");
    scope.setDisplayMinPwr(50.0);
    scope.setDisplayMaxPwr(-50.0);
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(scope.DisplayMinPwr(), 50.0);
    EXPECT_EQ(scope.DisplayMaxPwr(), -50.0);
}

TEST_P(Range, RescalingDerivesTheExtremesAnewAndPutsTheCursorOnTheCenter) {
    const auto slot = channel({.freq = 450.0, .key = L"TX1"});
    scope.AddTXChnl(slot);
    slot->put_dFreqHi(470.0);
    slot->put_dPwrDBM(33.0);
    EXPECT_EQ(scope.dTXFreqMax(), 450.0);
    EXPECT_TRUE(scope.ReScaleChannels());
    EXPECT_EQ(scope.dTXFreqMax(), 470.0);
    EXPECT_EQ(scope.dFreqMax(), 470.0);
    EXPECT_EQ(scope.dTXPwrDBMMax(), 33.0);
    EXPECT_EQ(scope.CursorVal(), scope.DisplayCenterFreq());
    EXPECT_EQ(scope.CursorVal(), 460.0);
}

TEST_P(Range, RescalingAllDerivesTheExtremesAnew) {
    const auto slot = channel({.freq = 450.0, .key = L"TX1"});
    scope.AddTXChnl(slot);
    slot->put_dFreqHi(470.0);
    scope.RescaleAll();
    EXPECT_EQ(scope.dTXFreqMax(), 470.0);
    EXPECT_EQ(scope.NumTX(), 1);
}

TEST_P(Range, CursorStaysInsideTheRange) {
    addAt(450.0, L"TX1");
    scope.DrawInitialDisplay();
    scope.setCursorVal(430.0);
    EXPECT_EQ(scope.CursorVal(), 430.0);
    scope.setCursorVal(1000.0);
    scope.setCursorVal(349.0);
    EXPECT_EQ(scope.CursorVal(), 430.0);
}

TEST_P(Range, ShowAllDoesNothingWithoutASpan) {
    const MessageBoxes boxes;
    scope.setShowAll(true);
    EXPECT_TRUE(scope.ShowAll());
    addAt(450.0, L"TX1");
    scope.setShowAll(true);
    addAt(900.0, L"TX2");
    scope.setShowAll(false);
    EXPECT_FALSE(scope.ShowAll());
    EXPECT_TRUE(boxes.seen().empty());
}

TEST_P(Range, ShowAllShowsNoBoxThatNoUserCouldSee) {
    scope.setFreqEndBuffer(20.25);
    addAt(450.0, L"TX1");
    addAt(460.5, L"TX2");
    const MessageBoxes boxes;
    scope.setShowAll(true);
    EXPECT_TRUE(boxes.seen().empty());
    expectRange(429.75, 480.75);
}

TEST_P(Range, ShowAllTellsThatTheRangeShowsAllAlready) {
    scope.setFreqEndBuffer(20.25);
    addAt(450.0, L"TX1");
    addAt(460.5, L"TX2");
    const Sited sited(scope);
    const MessageBoxes boxes;
    scope.setShowAll(true);
    ASSERT_EQ(boxes.seen().size(), 1U);
    EXPECT_EQ(boxes.seen()[0].title, L"All Frequencies in Current Range");
    EXPECT_EQ(boxes.seen()[0].text,
              L"The current display range is:429.75000 to 480.75000\r\n\r\n"
              L"This range includes all the frequencies currently selected:450.00000 to 460.50000");
    EXPECT_EQ(boxes.seen()[0].buttons.size(), 1U);
    expectRange(429.75, 480.75);
    EXPECT_EQ(scope.FreqEndBuffer(), 20.25);
}

TEST_P(Range, ShowAllMakesRoomForEveryChannel) {
    const MessageBoxes boxes;
    scope.setFreqEndBuffer(10.0);
    addAt(450.0, L"TX1");
    expectRange(440.0, 460.0);
    addAt(465.0, L"TX2");
    scope.setShowAll(true);
    // 15 MHz of span: a margin of 10 is halved once.
    expectRange(445.0, 470.0);
    EXPECT_EQ(scope.FreqEndBuffer(), 5.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 457.5);
    EXPECT_TRUE(scope.ShowAll());
    EXPECT_TRUE(boxes.seen().empty());
}

TEST_P(Range, TheFormerShowAllDoesTheSame) {
    const MessageBoxes boxes;
    scope.setFreqEndBuffer(10.0);
    addAt(450.0, L"TX1");
    expectRange(440.0, 460.0);
    addAt(465.0, L"TX2");
    scope.setShowAllReplaced(true);
    expectRange(445.0, 470.0);
    EXPECT_TRUE(scope.ShowAll());
    EXPECT_TRUE(boxes.seen().empty());
}

class OptionalRange : public testing::Test {
  protected:
    OptionalRange() {
        scope.setFreqEndBuffer(1.0);
        scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
        scope.AddTXChnl(channel({.freq = 480.0, .key = L"TX2"}));
    }
    void expectRangeAfter(const Outcome& outcome, double minimum, double maximum) {
        EXPECT_EQ(outcome.hr, S_OK);
        EXPECT_EQ(scope.DisplayMinFreq(), minimum);
        EXPECT_EQ(scope.DisplayMaxFreq(), maximum);
    }
    /// The number of a parameter of DrawByRange.
    DISPID parameter(const wchar_t* name) {
        std::wstring member = L"DrawByRange";
        std::wstring argument = name;
        LPOLESTR names[] = {member.data(), argument.data()};
        DISPID ids[2] = {DISPID_UNKNOWN, DISPID_UNKNOWN};
        EXPECT_EQ(scope->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids), S_OK);
        return ids[1];
    }
    Outcome byName(std::vector<Var> args, std::vector<DISPID> named) {
        return invoke(scope.get(), idOf(scope.get(), L"DrawByRange"), DISPATCH_METHOD, std::move(args),
                      std::move(named));
    }
    Scope scope;
};

TEST_F(OptionalRange, NoArgumentTakesBothBoundsFromTheChannels) {
    expectRangeAfter(call(scope.get(), L"DrawByRange"), 449.0, 481.0);
}

TEST_F(OptionalRange, OneArgumentIsTheLowerBound) {
    expectRangeAfter(call(scope.get(), L"DrawByRange", {420.0}), 419.0, 481.0);
}

TEST_F(OptionalRange, TwoArgumentsAreBothBounds) {
    expectRangeAfter(call(scope.get(), L"DrawByRange", {420.0, 500}), 419.0, 501.0);
}

TEST_F(OptionalRange, ALeftOutArgumentIsNotGiven) {
    expectRangeAfter(call(scope.get(), L"DrawByRange", {Var::missing(), 500.0}), 449.0, 501.0);
}

TEST_F(OptionalRange, ArgumentsGoByTheirNames) {
    const DISPID minimum = parameter(L"dFMin");
    const DISPID maximum = parameter(L"dFMax");
    expectRangeAfter(byName({500.0}, {maximum}), 449.0, 501.0);
    expectRangeAfter(byName({510.0, 420.0}, {maximum, minimum}), 419.0, 511.0);
    expectRangeAfter(byName({430.0, 520.0}, {maximum}), 429.0, 521.0);
}

TEST_F(OptionalRange, ThreeArgumentsAreOneTooMany) {
    EXPECT_EQ(call(scope.get(), L"DrawByRange", {1.0, 2.0, 3.0}).hr, DISP_E_BADPARAMCOUNT);
}

}  // namespace
}  // namespace kv::test
