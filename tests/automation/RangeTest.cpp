// The members of the displayed range, the cursor and the powers, and the optional arguments of DrawByRange. The
// arithmetic of ranges is proved without automation, in tests/unit.
#include <gmock/gmock.h>

#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

class Range : public BothWays {
  protected:
    void addAt(double frequency, const wchar_t* key) { scope.AddTXChnl(channel({.freq = frequency, .key = key})); }
    void expectRange(double minimum, double maximum) {
        EXPECT_DOUBLE_EQ(scope.DisplayMinFreq(), minimum);
        EXPECT_DOUBLE_EQ(scope.DisplayMaxFreq(), maximum);
    }
};
INSTANTIATE_TEST_SUITE_P(Ways, Range, testing::Values(Way::early, Way::late), nameOf);

TEST_P(Range, TheEndBufferWidensTheRangeOfTheChannels) {
    expectRange(kUnset, -kUnset);
    scope.setFreqEndBuffer(2.5);
    addAt(450.0, L"TX1");
    addAt(460.0, L"TX2");
    expectRange(447.5, 462.5);
    EXPECT_EQ(scope.DisplayCenterFreq(), 455.0);
    // A range that was read stays until the initial drawing derives it again.
    addAt(900.0, L"TX3");
    expectRange(447.5, 462.5);
    scope.DrawInitialDisplay();
    expectRange(447.5, 902.5);
}

TEST_P(Range, SettingTheCenterLeavesTheRangeUntilItIsDrawn) {
    addAt(450.0, L"TX1");
    scope.setDisplayCenterFreq(480.0);
    expectRange(350.0, 550.0);
    EXPECT_TRUE(scope.DrawDisplay());
    expectRange(380.0, 580.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 480.0);
    scope.setDisplayCenterFreq(410.0);
    scope.DrawNewCenterFreq();
    expectRange(310.0, 510.0);
}

TEST_P(Range, DrawByRangeTakesTheLowerBoundFirst) {
    addAt(450.0, L"TX1");
    scope.setFreqEndBuffer(100.0);
    scope.DrawByRange(400.0, 460.0);
    expectRange(387.5, 472.5);
    EXPECT_EQ(scope.FreqEndBuffer(), 12.5);
    EXPECT_EQ(scope.DisplayCenterFreq(), 430.0);
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

TEST_P(Range, RescalingMembersDeriveTheExtremesAgain) {
    const auto slot = channel({.freq = 450.0, .key = L"TX1"});
    scope.AddTXChnl(slot);
    slot->put_dFreqHi(470.0);
    EXPECT_EQ(scope.dTXFreqMax(), 450.0);
    EXPECT_TRUE(scope.ReScaleChannels());
    EXPECT_EQ(scope.dTXFreqMax(), 470.0);
    EXPECT_EQ(scope.CursorVal(), 460.0) << "the cursor is on the center";
    slot->put_dFreqHi(480.0);
    scope.RescaleAll();
    EXPECT_EQ(scope.dTXFreqMax(), 480.0);
    slot->put_dFreqHi(490.0);
    scope.Refresh();
    EXPECT_EQ(scope.dTXFreqMax(), 490.0);
}

TEST_P(Range, TheCursorIsSetAndReadInsideTheRange) {
    addAt(450.0, L"TX1");
    scope.DrawInitialDisplay();
    scope.setCursorVal(430.0);
    EXPECT_EQ(scope.CursorVal(), 430.0);
    scope.setCursorVal(1000.0);
    EXPECT_EQ(scope.CursorVal(), 430.0);
}

TEST_P(Range, ShowAllAndItsFormerMemberShowEveryChannel) {
    const MessageBoxes boxes;
    for (const bool former : {false, true}) {
        scope.ClearAllChnls();
        scope.setFreqEndBuffer(10.0);
        addAt(450.0, L"TX1");
        scope.DrawInitialDisplay();
        expectRange(440.0, 460.0);
        addAt(465.0, L"TX2");
        scope.setShowAll(false);
        EXPECT_FALSE(scope.ShowAll());
        expectRange(440.0, 460.0);
        former ? scope.setShowAllReplaced(true) : scope.setShowAll(true);
        // 15 MHz of span: a margin of 10 is halved once.
        expectRange(445.0, 470.0);
        EXPECT_TRUE(scope.ShowAll());
    }
    // Now the range shows everything already, but there is no container whose user could see a message box.
    scope.setShowAll(true);
    EXPECT_TRUE(boxes.seen().empty());
}

TEST_P(Range, ShowAllTellsTheUserThatTheRangeShowsEverythingAlready) {
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

TEST_F(OptionalRange, AnArgumentThatIsLeftOutComesFromTheChannels) {
    expectRangeAfter(call(scope.get(), L"DrawByRange"), 449.0, 481.0);
    expectRangeAfter(call(scope.get(), L"DrawByRange", {420.0}), 419.0, 481.0);
    expectRangeAfter(call(scope.get(), L"DrawByRange", {420.0, 500}), 419.0, 501.0);
    expectRangeAfter(call(scope.get(), L"DrawByRange", {Var::missing(), 500.0}), 449.0, 501.0);
}

TEST_F(OptionalRange, ArgumentsCanBeNamed) {
    const DISPID minimum = parameter(L"dFMin");
    const DISPID maximum = parameter(L"dFMax");
    expectRangeAfter(byName({500.0}, {maximum}), 449.0, 501.0);
    expectRangeAfter(byName({510.0, 420.0}, {maximum, minimum}), 419.0, 511.0);
    expectRangeAfter(byName({430.0, 520.0}, {maximum}), 429.0, 521.0);
}

TEST_F(OptionalRange, AThirdArgumentIsAnError) {
    EXPECT_EQ(call(scope.get(), L"DrawByRange", {1.0, 2.0, 3.0}).hr, DISP_E_BADPARAMCOUNT);
}

}  // namespace
}  // namespace kv::test
