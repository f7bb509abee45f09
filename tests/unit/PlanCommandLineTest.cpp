// The command line of the sample host.
#include "host/plan/CommandLine.h"

#include <gmock/gmock.h>

#include <clocale>
#include <string>
#include <vector>

namespace {

using kv::host::CommandLine;
using kv::host::parseCommandLine;
using kv::host::SelfCheckOptions;
using kv::host::UsageError;

TEST(CommandLine, EmptyMeansAWindowAndThirdOrder) {
    const CommandLine line = parseCommandLine({});
    EXPECT_TRUE(line.planFile.empty());
    EXPECT_TRUE(line.saveFile.empty());
    EXPECT_FALSE(line.quit);
    EXPECT_FALSE(line.range.has_value());
    EXPECT_FALSE(line.size.has_value());
    EXPECT_FALSE(line.products.second);
    EXPECT_TRUE(line.products.third);
    EXPECT_FALSE(line.products.fifth);
}

TEST(CommandLine, AllOptions) {
    const CommandLine line =
        parseCommandLine({L"--plan", L"a b.csv", L"--orders", L"2,5", L"--every-form", L"--range", L"462.3,462.95",
                          L"--size", L"1100x760", L"--save", L"out.bmp", L"--hits", L"hits.csv", L"--quit"});
    EXPECT_EQ(line.planFile, L"a b.csv");
    EXPECT_TRUE(line.products.second);
    EXPECT_FALSE(line.products.third);
    EXPECT_TRUE(line.products.fifth);
    EXPECT_TRUE(line.products.everyFifthForm);
    EXPECT_EQ(line.range.value().lowest, 462.3);
    EXPECT_EQ(line.range.value().highest, 462.95);
    EXPECT_EQ(line.products.lowestHz, 462'300'000);
    EXPECT_EQ(line.products.highestHz, 462'950'000);
    EXPECT_EQ(line.size.value().width, 1100);
    EXPECT_EQ(line.size.value().height, 760);
    EXPECT_EQ(line.saveFile, L"out.bmp");
    EXPECT_EQ(line.hitsFile, L"hits.csv");
    EXPECT_TRUE(line.quit);
}

TEST(CommandLine, SelfCheck) {
    EXPECT_FALSE(parseCommandLine({L"--quit"}).selfCheck.has_value());
    const SelfCheckOptions usual = parseCommandLine({L"--self-check", L"my report.txt"}).selfCheck.value();
    EXPECT_EQ(usual.report, L"my report.txt");
    EXPECT_EQ(usual.redrawSeconds, 10);
    EXPECT_EQ(usual.limitSeconds, 120);
    EXPECT_EQ(usual.picturesFolder, L"");
    const SelfCheckOptions all = parseCommandLine({L"--self-check", L"r.txt", L"--self-check-seconds", L"3",
                                                   L"--self-check-limit", L"7", L"--self-check-pictures", L"folder"})
                                     .selfCheck.value();
    EXPECT_EQ(all.redrawSeconds, 3);
    EXPECT_EQ(all.limitSeconds, 7);
    EXPECT_EQ(all.picturesFolder, L"folder");
}

TEST(CommandLine, OrderZeroMeansNone) {
    const CommandLine line = parseCommandLine({L"--orders", L"0"});
    EXPECT_FALSE(line.products.second || line.products.third || line.products.fifth);
}

TEST(CommandLine, WhatIsWrongIsNamed) {
    const std::vector<std::pair<std::vector<std::wstring>, std::wstring>> cases = {
        {{L"--plan"}, L"--plan"},
        {{L"--hits"}, L"--hits"},
        {{L"--hits", L"hits.csv"}, L"--hits needs a plan"},
        {{L"--plan", L""}, L"--plan"},
        {{L"gmrs.csv"}, L"gmrs.csv"},
        {{L"--Quit"}, L"--Quit"},
        {{L"--self-check"}, L"--self-check"},
        {{L"--self-check", L"r.txt", L"--plan", L"gmrs.csv"}, L"--self-check"},
        {{L"--size", L"1100x760", L"--self-check", L"r.txt"}, L"--self-check"},
        {{L"--self-check-seconds", L"3"}, L"--self-check-seconds"},
        {{L"--self-check", L"r.txt", L"--self-check-seconds", L"0"}, L"--self-check-seconds"},
        {{L"--self-check", L"r.txt", L"--self-check-limit", L"1.5"}, L"--self-check-limit"},
        {{L"--self-check", L"r.txt", L"--self-check-limit", L"3601"}, L"--self-check-limit"},
        {{L"--self-check", L"r.txt", L"--self-check-pictures"}, L"--self-check-pictures"},
        {{L"--orders", L"4"}, L"--orders"},
        {{L"--orders", L"35"}, L"--orders"},
        {{L"--orders", L"3,"}, L"--orders"},
        {{L"--orders", L",3"}, L"--orders"},
        {{L"--orders", L"3,,5"}, L"--orders"},
        {{L"--range", L"462"}, L"--range"},
        {{L"--range", L"462,461"}, L"--range"},
        {{L"--range", L"462,462"}, L"--range"},
        {{L"--range", L"0,462"}, L"--range"},
        {{L"--range", L"nan,462"}, L"--range"},
        {{L"--range", L"1,1e300"}, L"--range"},
        {{L"--range", L"1,2,3"}, L"--range"},
        {{L"--size", L"1100"}, L"--size"},
        {{L"--size", L"1100X760"}, L"--size"},
        {{L"--size", L"1100x76"}, L"--size"},
        {{L"--size", L"1100.5x760"}, L"--size"},
        {{L"--size", L"1100x760px"}, L"--size"},
        {{L"--size", L"1e9x760"}, L"--size"},
    };
    for (const auto& [arguments, name] : cases) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        try {
            (void)parseCommandLine(arguments);
            ADD_FAILURE() << "accepted";
        } catch (const UsageError& error) {
            EXPECT_THAT(error.text, testing::HasSubstr(name));
        }
    }
}

TEST(CommandLine, HelpIsAllThatCounts) {
    for (const wchar_t* option : {L"--help", L"-h", L"/?"}) {
        EXPECT_TRUE(parseCommandLine({option}).help);
        EXPECT_TRUE(parseCommandLine({L"--unknown", L"--plan", option}).help);
    }
    EXPECT_FALSE(parseCommandLine({L"--quit"}).help);
    EXPECT_THROW((void)parseCommandLine({L"-help"}), UsageError);
}

TEST(CommandLine, SettingsAndOrdersAreMarked) {
    EXPECT_FALSE(parseCommandLine({}).noSettings);
    EXPECT_TRUE(parseCommandLine({L"--no-settings"}).noSettings);
    EXPECT_FALSE(parseCommandLine({L"--every-form"}).ordersGiven);
    EXPECT_TRUE(parseCommandLine({L"--orders", L"3"}).ordersGiven);
}

bool hasDecimalComma() {
    return std::string(std::localeconv()->decimal_point) == ",";
}

TEST(CommandLine, NumbersHaveADecimalPointInEveryLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    bool comma = false;
    for (const char* name : {"German_Germany.1252", "German", "de_DE.UTF-8", "de_DE", ""}) {
        SCOPED_TRACE(name);
        std::setlocale(LC_ALL, name);  // The system may lack some of them.
        comma = comma || hasDecimalComma();
        const CommandLine line = parseCommandLine({L"--range", L"462.3,462.95", L"--size", L"1100x760"});
        EXPECT_EQ(line.range.value().lowest, 462.3);
        EXPECT_EQ(line.range.value().highest, 462.95);
        EXPECT_THROW((void)parseCommandLine({L"--range", L"462,3,462,95"}), UsageError);
    }
    std::setlocale(LC_ALL, before.c_str());
    constexpr bool kWindows = sizeof(wchar_t) == 2;  // Windows has the German locale, other systems may have only C.
    EXPECT_TRUE(comma || !kWindows);
}

TEST(CommandLine, QuotedArgumentsAreShortAndInOneLine) {
    const std::wstring argument = L"--x\ny" + std::wstring(5000, L'z');
    const std::vector<std::vector<std::wstring>> cases = {
        {argument}, {argument, L""}, {L"--orders", argument}, {L"--range", argument}, {L"--size", argument}};
    for (const std::vector<std::wstring>& arguments : cases) {
        SCOPED_TRACE(testing::PrintToString(arguments.size()));
        try {
            (void)parseCommandLine(arguments);
            ADD_FAILURE() << "accepted";
        } catch (const UsageError& error) {
            EXPECT_THAT(error.text, testing::HasSubstr(L"--x\\nyzzz"));
            EXPECT_THAT(error.text, testing::HasSubstr(L"zz\u2026\""));
            EXPECT_EQ(error.text.find(L'\n'), std::wstring::npos);
            EXPECT_LT(error.text.size(), 250U);
        }
    }
}

}  // namespace
