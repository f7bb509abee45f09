// What the sample host remembers: the text of the file, recent plans, and which option counts.
#include "host/plan/Settings.h"

#include <gmock/gmock.h>

#include <random>

#include "host/plan/RecentPlans.h"

namespace kv::test {
namespace {

using host::addRecentPlan;
using host::CommandLine;
using host::parseCommandLine;
using host::ProductOptions;
using host::removeRecentPlan;
using host::Settings;
using host::settingsOf;
using host::settingsText;
using host::WindowPlace;
using testing::ElementsAre;
using testing::IsEmpty;

Settings someSettings() {
    Settings settings;
    settings.recentPlans = {L"C:\\Plans\\K\u00F6ln & Bonn.csv", L"\\\\server\\plans\\a=b;c.csv", L"D:\\[x].csv"};
    settings.place = WindowPlace{{-800, 20, 300, 780}, true};
    settings.options.secondOrder = true;
    settings.options.thirdOrder = false;
    settings.options.everyFifthForm = false;
    settings.options.legend = false;
    settings.options.snap = true;
    return settings;
}

TEST(HostSettings, WhatIsWrittenIsReadBack) {
    EXPECT_EQ(settingsOf(settingsText(someSettings())), someSettings());
    EXPECT_EQ(settingsOf(settingsText(Settings())), Settings());
}

TEST(HostSettings, TheFileHasNamesThatCanBeEdited) {
    const Settings settings = settingsOf(
        L"[window]\nleft=10\ntop = 20\nWidth=300\nHeight=200\nMaximized=1\n[Options]\nThirdOrder=0\nWheelZoom=1\n"
        L"[Recent plans]\n1=C:\\a.csv\n3=C:\\b.csv\n");
    EXPECT_EQ(settings.place, (WindowPlace{{10, 20, 310, 220}, true}));
    EXPECT_EQ(settings.options.thirdOrder, false);
    EXPECT_EQ(settings.options.wheelZoom, true);
    EXPECT_EQ(settings.options.fifthOrder, std::nullopt);
    EXPECT_THAT(settings.recentPlans, ElementsAre(L"C:\\a.csv", L"C:\\b.csv"));
}

TEST(HostSettings, WhatIsWrongIsLeftOut) {
    for (const wchar_t* width : {L"", L"0", L"-1", L"1.5", L"abc", L"1e9", L"nan"}) {
        const std::wstring text = L"[Window]\nLeft=1\nTop=1\nHeight=200\nWidth=" + std::wstring(width) + L"\n";
        EXPECT_EQ(settingsOf(text).place, std::nullopt) << testing::PrintToString(std::wstring(width));
    }
    EXPECT_EQ(settingsOf(L"[Window]\nLeft=1\nTop=1\nWidth=200\n").place, std::nullopt);
    EXPECT_EQ(settingsOf(L"[Window]\nTop=1\nLeft=1\nWidth=9\nHeight=9\nMaximized=yes").place,
              (WindowPlace{{1, 1, 10, 10}, false}));
    EXPECT_EQ(settingsOf(L"[Options]\nLegend=2\nSnap=on\nPowerAxis=\n").options, host::ChosenOptions());
    EXPECT_THAT(settingsOf(L"[Recent plans]\n0=a\n1=\n10=b\nx=c\n").recentPlans, IsEmpty());
}

TEST(HostSettings, ADamagedTextGivesSettingsThatCanBeWritten) {
    const std::wstring good = settingsText(someSettings());
    std::mt19937 random(11);
    for (int i = 0; i < 3000; ++i) {
        std::wstring text = good;
        for (int changes = 0; changes < 8; ++changes) {
            const std::size_t at = random() % text.size();
            if (random() % 2 == 0)
                text[at] = static_cast<wchar_t>(random() % 300);
            else
                text.erase(at, 1 + random() % 9);
        }
        const Settings settings = settingsOf(text);
        EXPECT_LE(settings.recentPlans.size(), host::kMostRecentPlans);
        const Settings again = settingsOf(settingsText(settings));
        EXPECT_EQ(again.place, settings.place);
        EXPECT_EQ(again.options, settings.options);
        EXPECT_LE(again.recentPlans.size(), settings.recentPlans.size());
    }
}

TEST(HostSettings, APathThatWouldNotBeReadBackIsNotWritten) {
    Settings settings;
    settings.recentPlans = {L"C:\\a\r\n[Options]\r\nLegend=1.csv", L" C:\\b.csv", L"\"C:\\c.csv\"", L"", L"C:\\d.csv"};
    const Settings again = settingsOf(settingsText(settings));
    EXPECT_THAT(again.recentPlans, ElementsAre(L"C:\\d.csv"));
    EXPECT_EQ(again.options, host::ChosenOptions());
}

TEST(HostSettings, AnOptionThatWasChosenLaterCounts) {
    host::ChosenOptions options;
    options.legend = true;
    options.snap = true;
    host::ChosenOptions later;
    later.legend = false;
    later.labels = true;
    addOptions(options, later);
    EXPECT_EQ(options.legend, false);
    EXPECT_EQ(options.labels, true);
    EXPECT_EQ(options.snap, true);
    EXPECT_EQ(options.wheelZoom, std::nullopt);
}

std::wstring ordersOf(const std::vector<std::wstring>& arguments, const host::ChosenOptions& options) {
    const ProductOptions products = productsOf(parseCommandLine(arguments), options);
    return std::wstring(products.second ? L"2" : L"") + (products.third ? L"3" : L"") + (products.fifth ? L"5" : L"") +
           (products.everyFifthForm ? L" every" : L"");
}

TEST(HostSettings, TheCommandLineWinsOverRememberedOrders) {
    host::ChosenOptions options;
    EXPECT_EQ(ordersOf({}, options), L"3");
    options.secondOrder = true;
    options.thirdOrder = false;
    options.everyFifthForm = true;
    EXPECT_EQ(ordersOf({}, options), L"2 every");
    EXPECT_EQ(ordersOf({L"--orders", L"3,5"}, options), L"35");
    EXPECT_EQ(ordersOf({L"--orders", L"0"}, options), L"");
    options.everyFifthForm = false;
    EXPECT_EQ(ordersOf({L"--every-form"}, options), L"2 every");
}

TEST(RecentPlans, TheLatestIsTheFirstOfNine) {
    std::vector<std::wstring> plans;
    for (const wchar_t c : std::wstring(L"abcdefghijk"))
        addRecentPlan(plans, std::wstring(L"C:\\") + c);
    ASSERT_EQ(plans.size(), 9U);
    EXPECT_EQ(plans.front(), L"C:\\k");
    EXPECT_EQ(plans.back(), L"C:\\c");
    addRecentPlan(plans, L"c:\\E");
    EXPECT_EQ(plans.size(), 9U) << "a path in another case is the same file";
    EXPECT_EQ(plans.front(), L"c:\\E");
    removeRecentPlan(plans, L"C:\\K");
    EXPECT_EQ(plans.size(), 8U);
    EXPECT_EQ(plans[1], L"C:\\j");
}

TEST(RecentPlans, ALabelHasTheDigitAndTheFileName) {
    EXPECT_EQ(host::recentPlanLabel(1, L"C:\\plans\\gmrs.csv"), L"&1 C:\\plans\\gmrs.csv");
    EXPECT_EQ(host::recentPlanLabel(9, L"C:\\R&D\\a\tb.csv"), L"&9 C:\\R&&D\\a\\tb.csv");
}

TEST(RecentPlans, ALongPathIsShortenedInTheMiddle) {
    const std::wstring folders = L"first folder\\second folder\\third folder\\fourth folder\\fifth folder\\";
    EXPECT_EQ(host::recentPlanLabel(2, L"C:\\" + folders + L"gmrs.csv"),
              L"&2 C:\\...\\third folder\\fourth folder\\fifth folder\\gmrs.csv");
    EXPECT_EQ(host::recentPlanLabel(2, L"\\\\server\\" + folders + L"gmrs.csv"),
              L"&2 \\\\server\\...\\fourth folder\\fifth folder\\gmrs.csv");
    const std::wstring longName = std::wstring(80, L'n') + L".csv";
    EXPECT_EQ(host::recentPlanLabel(2, L"C:\\folder\\" + longName), L"&2 C:\\...\\" + longName);
    EXPECT_EQ(host::recentPlanLabel(2, longName), L"&2 " + longName);
    EXPECT_EQ(host::recentPlanLabel(3, L"\\\\" + std::wstring(90, L's') + L"\\a.csv").substr(0, 5), L"&3 \\\\");
}

}  // namespace
}  // namespace kv::test
