// Grid divisions, and the grid-range box with the events that follow a choice in it.
#include <gmock/gmock.h>

#include "tests/automation/HostedControl.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr int kKHz = 0;
constexpr int kMHz = 1;
constexpr int kGHz = 2;

class Grid : public BothWays {};
INSTANTIATE_TEST_SUITE_P(Ways, Grid, testing::Values(Way::early, Way::late), nameOf);

TEST_P(Grid, DivisionsBelowOneReadAs20) {
    EXPECT_EQ(scope.nGridX(), 20);
    for (const short given : {short{0}, short{-1}, short{-32768}}) {
        scope.setNGridX(5);
        scope.setNGridX(given);
        EXPECT_EQ(scope.nGridX(), 20) << given;
    }
    scope.setNGridX(1);
    EXPECT_EQ(scope.nGridX(), 1);
}

std::vector<std::wstring> itemsOf(HWND box) {
    std::vector<std::wstring> items;
    const auto count = SendMessageW(box, CB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        std::wstring text(64, L'\0');
        text.resize(static_cast<std::size_t>(
            SendMessageW(box, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()))));
        items.push_back(text);
    }
    return items;
}

class GridHosted : public testing::Test {
  protected:
    Scope scope;
    HostedControl host{scope};

    double span() { return scope.DisplayMaxFreq() - scope.DisplayMinFreq(); }
    int events(DISPID id) { return host.log.count(id); }
};

TEST_F(GridHosted, BoxOffersThreeUnitsAndStartsWithMHz) {
    const HWND box = host.gridRangeBox();
    ASSERT_TRUE(box);
    EXPECT_THAT(itemsOf(box), testing::ElementsAre(L"KHz", L"MHz", L"GHz"));
    EXPECT_EQ(SendMessageW(box, CB_GETCURSEL, 0, 0), kMHz);
}

TEST_F(GridHosted, ChoiceOnAnEmptyDisplayRaisesItsEventOnly) {
    host.chooseGridRange(kGHz);
    EXPECT_EQ(events(HostedControl::kChgGridRange), 1);
    EXPECT_EQ(events(HostedControl::kChgFreqRange), 0);
    EXPECT_EQ(scope.DisplayMinFreq(), kUnset);
    EXPECT_EQ(scope.DisplayMaxFreq(), -kUnset);
}

TEST_F(GridHosted, ChoiceKeepsTheKnobsValueAsTheStep) {
    scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
    ASSERT_TRUE(scope.DrawDisplay());
    ASSERT_EQ(span(), 200.0);
    // The knob stands at 0.5 MHz, the first stop of the MHz slice, whichever slice follows: 20 divisions of it.
    for (const int item : {kKHz, kGHz, kMHz}) {
        host.chooseGridRange(item);
        EXPECT_DOUBLE_EQ(span(), 10.0) << item;
        EXPECT_DOUBLE_EQ(scope.DisplayMinFreq(), 445.0) << item;
        EXPECT_EQ(scope.DisplayCenterFreq(), 450.0) << item;
    }
    EXPECT_EQ(events(HostedControl::kChgGridRange), 3);
}

TEST_F(GridHosted, ChoiceThatChangesTheRangeTellsItFirst) {
    scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
    ASSERT_TRUE(scope.DrawDisplay());
    host.chooseGridRange(kKHz);
    ASSERT_EQ(host.log.events.size(), 2U);
    EXPECT_EQ(host.log.events[0].id, HostedControl::kChgFreqRange);
    ASSERT_EQ(host.log.events[0].arguments.size(), 2U);
    EXPECT_EQ(host.log.events[0].arguments[0].dblVal, 445.0);
    EXPECT_EQ(host.log.events[0].arguments[1].dblVal, 455.0);
    EXPECT_EQ(host.log.events[1].id, HostedControl::kChgGridRange);
    EXPECT_TRUE(host.log.events[1].arguments.empty());
    // The same step again changes nothing, but was a choice.
    host.chooseGridRange(kMHz);
    EXPECT_EQ(events(HostedControl::kChgFreqRange), 1);
    EXPECT_EQ(events(HostedControl::kChgGridRange), 2);
}

TEST_F(GridHosted, ChoiceRedrawsThePicture) {
    scope.AddTXChnl(channel({.freq = 450.0, .bw = 1000.0, .power = 2.0, .key = L"TX1", .color = 0x000000FF}));
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture before = capture(scope);
    host.chooseGridRange(kKHz);
    const Picture after = capture(scope);
    ASSERT_TRUE(before.find(0x000000FF, before.all()));
    ASSERT_TRUE(after.find(0x000000FF, after.all()));
    EXPECT_GT(after.find(0x000000FF, after.all())->width(), 5 * before.find(0x000000FF, before.all())->width());
}

TEST_F(GridHosted, StepTimesDivisionsMakesTheRange) {
    scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
    ASSERT_TRUE(scope.DrawDisplay());
    scope.setNGridX(8);
    host.chooseGridRange(kMHz);
    EXPECT_DOUBLE_EQ(span(), 4.0);
    EXPECT_DOUBLE_EQ(scope.DisplayMinFreq(), 448.0);
}

TEST_F(GridHosted, StepIsDerivedAfterShowAllAndByRange) {
    scope.setFreqEndBuffer(0.0);
    scope.AddTXChnl(channel({.freq = 440.0, .key = L"TX1"}));
    scope.AddTXChnl(channel({.freq = 460.0, .key = L"TX2"}));
    ASSERT_TRUE(scope.DrawDisplay());
    host.chooseGridRange(kKHz);
    EXPECT_DOUBLE_EQ(span(), 10.0);
    const MessageBoxes boxes;
    scope.setShowAll(true);
    EXPECT_DOUBLE_EQ(span(), 20.0);
    scope.DrawByRange(400.0, 500.0);
    EXPECT_DOUBLE_EQ(span(), 100.0);
    EXPECT_TRUE(boxes.seen().empty());
}

TEST(GridPicture, DivisionsAreSeenWithTheNextDrawing) {
    Plot plot;
    plot.scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
    plot.scope.setNGridX(5);
    ASSERT_TRUE(plot.scope.DrawDisplay());
    const Picture picture = plot.picture();
    int lines = 0;
    for (int x = plot.spectrum.left; x <= plot.spectrum.right; ++x)
        lines += plot.isGridColumn(picture, x) && !plot.isGridColumn(picture, x - 1) ? 1 : 0;
    // The last of the six stands at the right edge, one pixel outside.
    EXPECT_THAT(lines, testing::AnyOf(5, 6));
}

}  // namespace
}  // namespace kv::test
