// The texts of the list of hits, and its CSV file.
#include "host/hits/HitTexts.h"

#ifndef _WIN32
#include <sys/resource.h>
#endif

#include <gmock/gmock.h>

#include <clocale>
#include <csignal>
#include <fstream>
#include <sstream>

#include "host/hits/HitCsv.h"
#include "tests/unit/HitSites.h"

namespace {

using kv::host::Hit;
using kv::host::HitColumn;
using kv::host::HitFinder;
using kv::host::HitRows;
using kv::host::HitsNotSaved;
using kv::host::Plan;
using kv::test::channel;
using kv::test::findAll;
using kv::test::orders;

class HitTexts : public testing::Test {
  protected:
    HitTexts() {
        findAll(finder);
        rows.extend();
    }
    [[nodiscard]] const Hit* find(const std::wstring& formula, const std::wstring& receiver) const {
        for (const Hit& hit : finder.hits()) {
            if (finder.site().formulaOf(hit) == formula && finder.site().receiverOf(hit).key == receiver) {
                return &hit;
            }
        }
        return nullptr;
    }
    HitFinder finder{kv::test::samplePlan("gmrs.csv"), orders(false, true, false)};
    HitRows rows{finder};
};

TEST_F(HitTexts, CellsOfATwoSignalProduct) {
    // 2 x 462.575 - 462.600 = 462.550 MHz, 12.5 kHz below channel 1. Edges: product 462.533125 to 462.566875 MHz,
    // receiver 462.556875 to 462.568125 MHz. Power: 2 x 43.98 + 46.99 - 140 dBm.
    const Hit* const hit = find(L"2 x TX16 - TX17", L"RX01");
    ASSERT_NE(hit, nullptr);
    const wchar_t* const expected[] = {
        L"RX01",  L"FRS/GMRS channel 1 hand-held", L"462.550000", L"-12.500", L"3", L"2 x TX16 - TX17", L"-5.05",
        L"10.000"};
    for (std::size_t column = 0; column < kv::host::kHitColumns; ++column) {
        EXPECT_EQ(cellOf(static_cast<HitColumn>(column), finder.site(), *hit), expected[column]);
    }
}

TEST_F(HitTexts, CellsOfAThreeSignalProduct) {
    // 462.550 + 462.625 - 462.600 = 462.575 MHz.
    const Hit* const hit = find(L"TX15 + TX18 - TX17", L"RX01");
    ASSERT_NE(hit, nullptr);
    EXPECT_EQ(cellOf(HitColumn::kOffset, finder.site(), *hit), L"+12.500");
    EXPECT_EQ(cellOf(HitColumn::kPower, finder.site(), *hit), L"3.01") << "46.99 + 43.01 + 46.99 + 6.02 - 140";
    EXPECT_EQ(spotText(finder.site(), *hit), L"TX15 + TX18 - TX17 hits RX01 with an overlap of 10.000 kHz.");
}

TEST_F(HitTexts, Summary) {
    EXPECT_EQ(summaryOf(finder, rows), L"224 hits: 124 products overlap 7 of 22 receivers.");
    rows.filter({0, std::nullopt, L"RX01"});
    // Next to channel 1 are outputs 15 and 16. On them are 3 + 3 products 2A-B and 9 + 12 products A+B-C.
    EXPECT_EQ(summaryOf(finder, rows), L"27 of 224 hits shown: 27 products overlap 1 of 22 receivers.");
    rows.filter({5, std::nullopt, L""});
    EXPECT_EQ(summaryOf(finder, rows), L"0 of 224 hits shown.");
    EXPECT_EQ(whyEmpty(finder, rows), L"None of the hits passes the filter. Clear the filter to see all of them.");
    rows.filter({});
    EXPECT_EQ(whyEmpty(finder, rows), L"");
}

TEST(HitSummary, WhileFindingAndAfterAnEarlyEnd) {
    HitFinder finder(kv::test::samplePlan("marine-vhf.csv"), orders(false, true, false));
    HitRows rows(finder);
    EXPECT_EQ(summaryOf(finder, rows), L"Finding hits: 0 so far.");
    EXPECT_EQ(whyEmpty(finder, rows), L"") << "nothing can be said yet";
    finder.step();
    rows.extend();
    finder.stop();
    EXPECT_THAT(summaryOf(finder, rows), testing::StartsWith(L"Stopped before all hits were found. "));
    HitFinder full(kv::test::samplePlan("gmrs.csv"), orders(false, true, false), 1);
    findAll(full);
    EXPECT_EQ(summaryOf(full, HitRows(full)),
              L"There are more than 1 hit, which is the most that the list can have. Select fewer orders or a smaller "
              L"range. 1 hit: 1 product overlaps 1 of 22 receivers.");
}

std::wstring reason(const Plan& plan, const kv::host::ProductOptions& options) {
    HitFinder finder(plan, options);
    findAll(finder);
    return whyEmpty(finder, HitRows(finder));
}

TEST(HitSummary, AnEmptyListSaysWhy) {
    using testing::HasSubstr;
    const kv::host::PlanChannel one = channel(L"TX1", 1'000'000, 10);
    const kv::host::PlanChannel two = channel(L"TX2", 1'100'000, 10);
    const kv::host::PlanChannel far = channel(L"RX1", 9'000'000, 10);
    const kv::host::ProductOptions third = orders(false, true, false);
    kv::host::ProductOptions elsewhere = third;
    elsewhere.lowestHz = 5'000'000;
    EXPECT_THAT(reason({}, third), HasSubstr(L"No channel plan is open"));
    EXPECT_THAT(reason({{one, two}}, third), HasSubstr(L"no receivers"));
    EXPECT_THAT(reason({{one, two, far}}, orders(false, false, false)), HasSubstr(L"No products are computed"));
    EXPECT_THAT(reason({{one, far}}, third), HasSubstr(L"fewer than two transmitters"));
    EXPECT_THAT(reason({{one, two, far}}, elsewhere), HasSubstr(L"no product in the range"));
    EXPECT_THAT(reason({{one, two, far}}, third), HasSubstr(L"None of the 2 products overlaps a receiver"));
    HitFinder stopped({{one, two, far}}, third);
    stopped.stop();
    EXPECT_THAT(whyEmpty(stopped, HitRows(stopped)), HasSubstr(L"Press F5"));
}

TEST(HitSummary, EnteredPowers) {
    EXPECT_EQ(kv::host::enteredPower(L" -12.5 ").dbm, -12.5);
    EXPECT_FALSE(kv::host::enteredPower(L" ").dbm.has_value());
    EXPECT_TRUE(kv::host::enteredPower(L" ").valid);
    for (const wchar_t* text : {L"-", L"12,5", L"strong"}) {
        EXPECT_FALSE(kv::host::enteredPower(text).valid);
        EXPECT_FALSE(kv::host::enteredPower(text).dbm.has_value());
    }
}

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}

class HitCsv : public HitTexts {
  protected:
    void SetUp() override {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directory(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }
    [[nodiscard]] std::ptrdiff_t filesInFolder() const {
        return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
    }
    std::wstring failure(const std::filesystem::path& file) const {
        try {
            saveHits(file, finder, rows);
        } catch (const HitsNotSaved& error) {
            return error.reason();
        }
        ADD_FAILURE() << "was saved";
        return {};
    }
    std::filesystem::path folder = std::filesystem::temp_directory_path() / "kvBandscope hits";
};

TEST_F(HitCsv, HasAHeaderWithUnitsAndALineForEachRow) {
    rows.filter({0, std::nullopt, L"RX01"});
    rows.sort(HitColumn::kPower, true);
    const std::filesystem::path file = folder / "hits.csv";
    saveHits(file, finder, rows);
    std::istringstream lines(contentOf(file));
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "Receiver,Label,Product (MHz),Offset (kHz),Order,Formula,Power (dBm),Overlap (kHz)\r");
    std::vector<std::string> found;
    while (std::getline(lines, line)) {
        found.push_back(line);
    }
    EXPECT_EQ(found.size(), rows.size());
    EXPECT_THAT(found, testing::Contains("RX01,FRS/GMRS channel 1 hand-held,462.550000,-12.500,3,2 x TX16 - TX17,-5.05,"
                                         "10.000\r"));
    EXPECT_EQ(found[0] + "\n", hitLine(finder.site(), rows.at(0)));
    EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(HitCsv, LocalesMakeNoDifference) {
    const std::string before = hitLine(finder.site(), rows.at(0));
    const std::string old = std::setlocale(LC_ALL, nullptr);
    for (const char* locale : {"de_DE.UTF-8", "C.UTF-8", "German"}) {
        std::setlocale(LC_ALL, locale);
        EXPECT_EQ(hitLine(finder.site(), rows.at(0)), before);
    }
    std::setlocale(LC_ALL, old.c_str());
}

TEST(HitLine, QuotesFieldsAndWritesUtf8) {
    HitFinder finder({{channel(L"TX1", 1'000'000, 10), channel(L"TX,2", 1'100'000, 10),
                       channel(L"RX\u00e9", 1'200'000, 11, 0.0, L"the \"north\" mast")}},
                     orders(false, true, false));
    findAll(finder);
    ASSERT_EQ(finder.hits().size(), 1U);
    EXPECT_EQ(hitLine(finder.site(), finder.hits()[0]),
              "RX\xc3\xa9,\"the \"\"north\"\" mast\",1.200000,0.000,3,\"2 x TX,2 - TX1\",-20.00,0.011\r\n");
}

TEST_F(HitCsv, AnEarlierFileIsReplaced) {
    const std::filesystem::path file = folder / u8"earlier \u00e9.csv";
    std::ofstream(file) << std::string(1'000'000, 'x');
    saveHits(file, finder, rows);
    EXPECT_THAT(contentOf(file), testing::StartsWith("Receiver,"));
    EXPECT_LT(std::filesystem::file_size(file), 100'000U);
    EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(HitCsv, FailuresAreNamedAndLeaveNothing) {
    EXPECT_EQ(failure(folder / "missing" / "hits.csv"), L"its folder does not exist");
    std::filesystem::create_directory(folder / "taken.csv");
    EXPECT_EQ(failure(folder / "taken.csv"), L"a folder has this name");
    EXPECT_EQ(filesInFolder(), 1) << "only the folder";
}

#ifndef _WIN32
TEST_F(HitCsv, AFullDiskLeavesTheEarlierFile) {
    const std::filesystem::path file = folder / "hits.csv";
    std::ofstream(file) << "earlier";
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small = {1000, before.rlim_max};
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::wstring why = failure(file);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(why, L"writing failed; the disk may be full");
    EXPECT_EQ(contentOf(file), "earlier");
    EXPECT_EQ(filesInFolder(), 1);
}
#endif

TEST_F(HitCsv, OtherTemporaryFilesAreLeftAlone) {
    std::ofstream(folder / "hits.csv.1.tmp") << "another program's";
    saveHits(folder / "hits.csv", finder, rows);
    EXPECT_EQ(contentOf(folder / "hits.csv.1.tmp"), "another program's");
    EXPECT_EQ(filesInFolder(), 2);
}

}  // namespace
