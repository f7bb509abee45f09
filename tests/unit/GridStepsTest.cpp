// The choice of grid steps, without a widget.
#include "control/GridSteps.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace kv::control {
namespace {

TEST(GridStepsTest, EachUnitHasElevenStopsInAscendingOrder) {
    struct {
        const wchar_t* unit;
        const wchar_t* first;
        const wchar_t* last;
    } const expected[] = {{L"KHz", L"500", L"1M"}, {L"MHz", L"500K", L"1G"}, {L"GHz", L"500M", L"10T"}};
    for (const auto& row : expected) {
        const std::span<const GridStop> stops = gridStops(row.unit);
        ASSERT_EQ(stops.size(), 11U);
        EXPECT_EQ(std::wstring(stops.front().label), row.first);
        EXPECT_EQ(std::wstring(stops.back().label), row.last);
        for (std::size_t i = 1; i < stops.size(); ++i)
            EXPECT_GT(stops[i].step, stops[i - 1].step);
    }
}

TEST(GridStepsTest, AnyOtherUnitCountsAsMHz) {
    for (const wchar_t* unit : {L"", L"Hz", L"mhz"})
        EXPECT_EQ(gridStops(unit).data(), gridStops(L"MHz").data());
}

TEST(GridStepsTest, EveryLabelSaysItsStep) {
    for (const wchar_t* unit : kGridUnits)
        for (const GridStop& stop : gridStops(unit))
            EXPECT_EQ(stepText(stop.step), stop.label);
}

TEST(GridStepsTest, TheUnitStaysAsLongAsItsStopsReachAroundTheStep) {
    constexpr int kKHz = 0;
    constexpr int kMHz = 1;
    constexpr int kGHz = 2;
    struct {
        double step;
        int present;
        int unit;
    } const expected[] = {
        {0.7, kKHz, kKHz},    {0.7, kMHz, kMHz},    {0.7, kGHz, kMHz},       {0.5, kMHz, kMHz},    {0.4999, kMHz, kKHz},
        {1.0, kKHz, kKHz},    {1.0001, kKHz, kMHz}, {1000.0, kMHz, kMHz},    {1000.1, kMHz, kGHz}, {1000.0, kGHz, kGHz},
        {0.0001, kKHz, kKHz}, {0.0001, kGHz, kKHz}, {2e7, kKHz, kGHz},       {2e7, kGHz, kGHz},    {499.9, kGHz, kMHz},
        {500.0, kGHz, kGHz},  {0.7, -1, kMHz},      {std::nan(""), kGHz, 1},
    };
    for (const auto& row : expected)
        EXPECT_EQ(gridUnitFor(row.step, row.present), row.unit) << row.step << " with unit " << row.present;
}

TEST(GridStepsTest, StepsThatDifferByARoundingAreTheSame) {
    EXPECT_TRUE(isSameStep(0.1 + 0.2, 0.3));
    EXPECT_TRUE(isSameStep(1.0 + 0.9e-9, 1.0));
    EXPECT_FALSE(isSameStep(1.0 + 3e-9, 1.0));
    EXPECT_TRUE(isSameStep(1e7, 1e7 + 0.001));
}

TEST(GridStepsTest, AStepIsWrittenInHertzWithASuffixAndUpToSixDigits) {
    struct {
        double step;  // MHz
        const wchar_t* text;
    } const expected[] = {
        {0.025, L"25K"},          {0.0000005, L"0.5"},      {0.000999, L"999"},       {0.0009999999, L"1K"},
        {0.3333333, L"333.333K"}, {3.3333333, L"3.33333M"}, {33.333333, L"33.3333M"}, {1234567.8, L"1.23457T"},
        {9.9999999, L"10M"},      {2e9, L"2000T"},
    };
    for (const auto& row : expected)
        EXPECT_EQ(stepText(row.step), row.text) << row.step;
}

}  // namespace
}  // namespace kv::control
