// Plans with several errors: which are listed, and where the list ends.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "host/plan/Plan.h"
#include "tests/unit/PlanTexts.h"

namespace kv::test {
namespace {

using host::kMostPlanErrors;
using host::PlanErrors;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

PlanErrors errorsOf(const std::string& text) {
    try {
        (void)parse(text);
    } catch (const PlanErrors& errors) {
        return errors;
    }
    ADD_FAILURE() << "accepted: " << text.substr(0, 200);
    return PlanErrors({{L"", 0, 0, L"", L""}});
}

PlanErrors errorsOfRows(const std::string& rows) {
    return errorsOf(kHeader + rows);
}

/// "line:column field" of each.
std::vector<std::wstring> placesOf(const PlanErrors& errors) {
    std::vector<std::wstring> places;
    for (const host::PlanError& error : errors.list()) {
        places.push_back(std::to_wstring(error.line()) + L":" + std::to_wstring(error.column()) + L" " + error.field());
    }
    return places;
}

const std::string kGood = "TX,TX1,,100,MHz,10,KHz,,,\n";

TEST(PlanErrorList, LinesBelowAWrongOneAreRead) {
    const PlanErrors errors =
        errorsOfRows("TX,TX1,,abc,MHz,10,KHz,,,\nTX,TX2,,100,MHz,10,KHz,,,\nTX,RX1,,1,MHz,1,KHz,,,\n");
    EXPECT_THAT(placesOf(errors), ElementsAre(L"2:9 frequency", L"4:4 key"));
    EXPECT_FALSE(errors.hasMore());
    EXPECT_EQ(errors.text(), errors.list().front().text());
}

TEST(PlanErrorList, EachFieldOfALineIsChecked) {
    EXPECT_THAT(placesOf(errorsOfRows("FM,TXIM1,,abc,furlong,10,yard,500,red,blue\n")),
                ElementsAre(L"2:1 kind", L"2:4 key", L"2:11 frequency", L"2:15 frequency unit", L"2:26 bandwidth unit",
                            L"2:31 power", L"2:35 box colour", L"2:39 line colour"));
}

TEST(PlanErrorList, AnErrorDoesNotCauseOthersInItsLine) {
    // The kind decides how a key begins, and the frequency how large a bandwidth may be.
    EXPECT_THAT(placesOf(errorsOfRows("FM,TX1,,100,MHz,10,KHz,,,\n")), ElementsAre(L"2:1 kind"));
    EXPECT_THAT(placesOf(errorsOfRows("TX,TX1,,x,MHz,10,KHz,,,\n")), ElementsAre(L"2:9 frequency"));
    EXPECT_THAT(placesOf(errorsOfRows("TX,TX1,,x,MHz,0,KHz,,,\n")), ElementsAre(L"2:9 frequency", L"2:15 bandwidth"));
    EXPECT_THAT(placesOf(errorsOfRows("TX,TX1\n")), ElementsAre(L"2:4 "));
}

TEST(PlanErrorList, AKeyOfAWrongLineIsTaken) {
    const PlanErrors errors = errorsOfRows("TX,TX1,,x,MHz,10,KHz,,,\n" + kGood);
    EXPECT_THAT(placesOf(errors), ElementsAre(L"2:9 frequency", L"3:4 key"));
    EXPECT_THAT(errors.list()[1].message(), HasSubstr(L"line 2"));
}

TEST(PlanErrorList, LinesThatCannotBeCutIntoFieldsAreListedToo) {
    EXPECT_THAT(
        placesOf(errorsOfRows("TX,\"TX1,,1,MHz,10,KHz,,,\nTX,T\xFFX,,1,MHz,10,KHz,,,\nTX,TX3,,y,MHz,10,KHz,,,\n")),
        ElementsAre(L"2:4 ", L"3:5 ", L"4:9 frequency"));
}

TEST(PlanErrorList, AllNamesOfColumnsAreChecked) {
    EXPECT_THAT(placesOf(errorsOf("kind,key,freqency,bandwith,Key\nTX,TX1,x\n")),
                ElementsAre(L"1:10 freqency", L"1:19 bandwith", L"1:28 Key", L"1:1 frequency", L"1:1 bandwidth"));
}

TEST(PlanErrorList, LinesAreReadWhenOnlyAColumnTooManyIsWrong) {
    EXPECT_THAT(placesOf(errorsOf("kind,key,frequency,bandwidth,note\nTX,TX1,x,10,any\nTX,TX2,5,10,any\n")),
                ElementsAre(L"1:30 note", L"2:8 frequency"));
}

TEST(PlanErrorList, AnotherSeparatorIsTheOnlyErrorOfItsFile) {
    EXPECT_THAT(placesOf(errorsOf("kind;key;frequency;bandwidth\nTX;TX1;5;10\nTX;TX2;5;10\n")), ElementsAre(L"1:1 "));
    EXPECT_THAT(placesOf(errorsOf("k\xFFnd,key\n\xFF\n\xFF\n")), ElementsAre(L"1:2 "));
}

std::string wrongRows(std::size_t count) {
    std::string rows;
    for (std::size_t i = 0; i < count; ++i) {
        rows += "TX,TX" + std::to_string(i + 2) + ",,?,MHz,10,KHz,,,\n";
    }
    return rows;
}

TEST(PlanErrorList, AtMost100AreListed) {
    const PlanErrors all = errorsOfRows(wrongRows(100) + kGood);
    EXPECT_EQ(all.list().size(), 100U);
    EXPECT_FALSE(all.hasMore());
    EXPECT_EQ(all.texts().size(), 100U);
    const PlanErrors more = errorsOfRows(wrongRows(101) + kGood);
    EXPECT_EQ(more.list().size(), kMostPlanErrors);
    EXPECT_TRUE(more.hasMore());
    ASSERT_EQ(more.texts().size(), 101U);
    EXPECT_THAT(more.texts()[99], StartsWith(L"test.csv, line 101, column 11 (frequency): expected a number"));
    EXPECT_EQ(more.texts()[100], L"The plan has more errors.");
}

TEST(PlanErrorList, TheLimitAlsoCountsWithinALine) {
    const PlanErrors errors = errorsOfRows(wrongRows(99) + "TX,TX1,,?,MHz,?,KHz,?,,\n" + kGood);
    EXPECT_EQ(errors.list().size(), 100U);
    EXPECT_EQ(errors.list().back().field(), L"frequency");
    EXPECT_TRUE(errors.hasMore());
}

}  // namespace
}  // namespace kv::test
