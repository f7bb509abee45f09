// Reading channel plans: what is accepted, and what a bad one is told.
#include "host/plan/Plan.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <random>

#include "tests/unit/PlanTexts.h"

namespace {

using kv::host::Plan;
using kv::host::PlanError;
using kv::test::errorOf;
using kv::test::errorOfRows;
using kv::test::expectAt;
using kv::test::kHeader;
using kv::test::parse;
using kv::test::parseRows;

TEST(Plan, ReadsEveryColumn) {
    const Plan plan = parseRows("TX,TX01,Channel one,462.55,MHz,12.5,KHz,46.99,#1F5FA8,#010203\n");
    ASSERT_EQ(plan.channels.size(), 1u);
    const kv::host::PlanChannel& channel = plan.channels[0];
    EXPECT_TRUE(channel.transmits);
    EXPECT_EQ(channel.key, L"TX01");
    EXPECT_EQ(channel.label, L"Channel one");
    EXPECT_EQ(channel.frequencyHz, 462550000);
    EXPECT_EQ(channel.bandwidthHz, 12500);
    EXPECT_EQ(channel.powerDbm, 46.99);
    EXPECT_EQ(channel.boxColour, 0xA85F1Fu);  // blue is the high byte
    EXPECT_EQ(channel.lineColour, 0x030201u);
}

TEST(Plan, OptionalColumnsMayBeLeftOutAndColumnsStandInAnyOrder) {
    const Plan plan = parse("bandwidth,frequency,key,kind\n25,156.8,RX16,RX\n");
    ASSERT_EQ(plan.channels.size(), 1u);
    const kv::host::PlanChannel& channel = plan.channels[0];
    EXPECT_FALSE(channel.transmits);
    EXPECT_EQ(channel.label, L"RX16");
    EXPECT_EQ(channel.frequencyHz, 156800000);
    EXPECT_EQ(channel.bandwidthHz, 25000);
    EXPECT_EQ(channel.powerDbm, 0.0);
    EXPECT_FALSE(channel.boxColour.has_value());
    EXPECT_FALSE(channel.lineColour.has_value());
}

TEST(Plan, EmptyOptionalFieldsTakeTheirDefaults) {
    const Plan plan = parseRows("tx,tx1,,100,,10,,,,\n");
    EXPECT_EQ(plan.channels.at(0).label, L"tx1");
    EXPECT_EQ(plan.channels.at(0).frequencyHz, 100000000);
    EXPECT_EQ(plan.channels.at(0).bandwidthHz, 10000);
}

TEST(Plan, UnitsInAnyCase) {
    const Plan plan = parseRows(
        "TX,TX1,,100500,Hz,20,hz,,,\n"
        "TX,TX2,,100.5,kHz,0.02,khz,,,\n"
        "TX,TX3,,0.1005,MHZ,0.00002,MHz,,,\n"
        "TX,TX4,,0.0001005,GHz,0.00000002,ghz,,,\n");
    for (const kv::host::PlanChannel& channel : plan.channels) {
        EXPECT_EQ(channel.frequencyHz, 100500) << channel.key;
        EXPECT_EQ(channel.bandwidthHz, 20) << channel.key;
    }
}

TEST(Plan, FrequenciesAreWholeHertzWithoutDrift) {
    const Plan plan = parseRows("TX,TX1,,446.00625,MHz,12.5,KHz,,,\nTX,TX2,,467.5625,MHz,12.5,KHz,,,\n");
    EXPECT_EQ(plan.channels.at(0).frequencyHz, 446006250);
    EXPECT_EQ(plan.channels.at(1).frequencyHz, 467562500);
}

TEST(Plan, ByteOrderMarkCrLfCommentsAndEmptyLines) {
    const Plan plan = parse(
        "\xEF\xBB\xBF# a plan\r\n\r\nKind,Key,Frequency,Bandwidth\r\n# more, \"text\r\n  "
        "\r\nTX,TX1,100,10\r\nRX,RX1,101,10");
    EXPECT_EQ(plan.channels.size(), 2u);
    EXPECT_EQ(plan.transmitterCount(), 1u);
    EXPECT_EQ(plan.receiverCount(), 1u);
}

TEST(Plan, QuotedFields) {
    const Plan plan = parseRows("TX, \"TX1\" ,\"Tower \"\"A\"\", north\",100,MHz,10,KHz,,,\n");
    EXPECT_EQ(plan.channels.at(0).key, L"TX1");
    EXPECT_EQ(plan.channels.at(0).label, L"Tower \"A\", north");
}

TEST(Plan, TextBeyondAscii) {
    const Plan plan = parseRows("TX,TX1,K\xC3\xB6ln \xE2\x82\xAC \xF0\x9F\x93\xA1,100,MHz,10,KHz,,,\n");
    std::wstring expected = L"K\u00F6ln \u20AC ";
    if constexpr (sizeof(wchar_t) == 2) {
        expected += static_cast<wchar_t>(0xD83D);
        expected += static_cast<wchar_t>(0xDCE1);
    } else {
        expected += static_cast<wchar_t>(0x1F4E1);
    }
    EXPECT_EQ(plan.channels.at(0).label, expected);
}

TEST(PlanErrors, ColumnCountsCharactersNotBytes) {
    expectAt(errorOfRows("TX,TX1,K\xC3\xB6ln \xF0\x9F\x93\xA1,bad,MHz,10,KHz,,,\n"), 2, 15, L"frequency");
}

TEST(PlanErrors, LineCountsCommentsAndEmptyLines) {
    expectAt(errorOf("# one\n\n# three\nkind,key,frequency,bandwidth\n\nTX,TX1,x,10\n"), 6, 8, L"frequency");
}

TEST(PlanErrors, NotANumber) {
    for (const char* bad : {"abc", "", "1e", "0x10", "12 3", "inf", "nan", "1e999", "+-1", "--1", "462.55 MHz", "+"}) {
        SCOPED_TRACE(bad);
        const PlanError error = errorOfRows("TX,TX1,," + std::string(bad) + ",MHz,10,KHz,,,\n");
        expectAt(error, 2, 9, L"frequency");
        EXPECT_THAT(error.message(), testing::HasSubstr(L"number"));
    }
    expectAt(errorOfRows("TX,TX1,,\"462,55\",MHz,10,KHz,,,\n"), 2, 9, L"frequency");
    expectAt(errorOfRows("TX,TX1,,462,MHz,wide,KHz,,,\n"), 2, 17, L"bandwidth");
    expectAt(errorOfRows("TX,TX1,,462,MHz,12,KHz,50W,,\n"), 2, 24, L"power");
}

TEST(PlanErrors, FrequencyNotPositiveOrAbsurd) {
    for (const char* bad : {"0", "-462.55", "0.0009", "3000001"}) {
        SCOPED_TRACE(bad);
        expectAt(errorOfRows("TX,TX1,," + std::string(bad) + ",MHz,1,Hz,,,\n"), 2, 9, L"frequency");
    }
    EXPECT_EQ(parseRows("TX,TX1,,3000,GHz,1,KHz,,,\n").channels.size(), 1u);
    EXPECT_EQ(parseRows("TX,TX1,,1,kHz,1,KHz,,,\n").channels.size(), 1u);
}

TEST(PlanErrors, BandwidthNotPositiveOrAbsurd) {
    for (const char* bad : {"0", "-5", "0.0001", "925100"}) {
        SCOPED_TRACE(bad);
        expectAt(errorOfRows("TX,TX1,,462.55,MHz," + std::string(bad) + ",KHz,,,\n"), 2, 20, L"bandwidth");
    }
    EXPECT_EQ(parseRows("TX,TX1,,462.55,MHz,925099,KHz,,,\n").channels.size(), 1u);
}

TEST(PlanErrors, BandwidthThatIsRoundedToTwiceTheFrequency) {
    expectAt(errorOfRows("TX,TX1,,1000,Hz,1999.5,Hz,,,\n"), 2, 17, L"bandwidth");
    EXPECT_EQ(parseRows("TX,TX1,,1000,Hz,1999.4,Hz,,,\n").channels.at(0).bandwidthHz, 1999);
}

TEST(PlanErrors, PowerAbsurd) {
    expectAt(errorOfRows("TX,TX1,,462.55,MHz,10,KHz,120.1,,\n"), 2, 27, L"power");
    expectAt(errorOfRows("TX,TX1,,462.55,MHz,10,KHz,-201,,\n"), 2, 27, L"power");
}

TEST(PlanErrors, UnknownUnit) {
    expectAt(errorOfRows("TX,TX1,,462.55,Megahertz,10,KHz,,,\n"), 2, 16, L"frequency unit");
    const PlanError error = errorOfRows("TX,TX1,,462.55,MHz,10,furlong,,,\n");
    expectAt(error, 2, 23, L"bandwidth unit");
    EXPECT_EQ(error.text(),
              L"test.csv, line 2, column 23 (bandwidth unit): expected Hz, KHz, MHz or GHz, found \"furlong\".");
}

TEST(PlanErrors, KindAndKey) {
    expectAt(errorOfRows("TRX,TX1,,1,MHz,10,KHz,,,\n"), 2, 1, L"kind");
    expectAt(errorOfRows("RX,TX1,,1,MHz,10,KHz,,,\n"), 2, 4, L"key");
    expectAt(errorOfRows("TX,RX1,,1,MHz,10,KHz,,,\n"), 2, 4, L"key");
    expectAt(errorOfRows("TX,TX,,1,MHz,10,KHz,,,\n"), 2, 4, L"key");
    expectAt(errorOfRows("TX,,,1,MHz,10,KHz,,,\n"), 2, 4, L"key");
    expectAt(errorOfRows("TX,TxIm000001,,1,MHz,10,KHz,,,\n"), 2, 4, L"key");
}

TEST(PlanErrors, DuplicateKeyWhateverItsCase) {
    const PlanError error = errorOfRows("TX,TXa,,1,MHz,10,KHz,,,\nTX,TXb,,1,MHz,10,KHz,,,\nTX,txA,,1,MHz,10,KHz,,,\n");
    expectAt(error, 4, 4, L"key");
    EXPECT_THAT(error.message(), testing::HasSubstr(L"line 2"));
}

TEST(PlanErrors, DuplicateKeyByTheFoldingOfTheControl) {
    const std::pair<const char*, const char*> equal[] = {{"\xC3\xA4", "\xC3\x84"},  // a and A with diaeresis
                                                         {"\xCF\x82", "\xCE\xA3"},  // final and capital sigma
                                                         {"\xD1\x8F", "\xD0\xAF"},  // Cyrillic ya
                                                         {"\xC5\xBF", "S"}};        // long s
    for (const auto& [one, other] : equal) {
        SCOPED_TRACE(one);
        const PlanError error =
            errorOfRows("TX,TX" + std::string(one) + ",,1,MHz,10,KHz,,,\nTX,TX" + other + ",,1,MHz,10,KHz,,,\n");
        expectAt(error, 3, 4, L"key");
        EXPECT_THAT(error.message(), testing::HasSubstr(L"line 2"));
    }
    // Characters that the control keeps apart are different keys: the sharp s and its capital.
    EXPECT_EQ(parseRows("TX,TX\xC3\x9F,,1,MHz,10,KHz,,,\nTX,TX\xE1\xBA\x9E,,1,MHz,10,KHz,,,\n").channels.size(), 2u);
}

TEST(PlanErrors, BadColour) {
    for (const char* bad : {"1F5FA8", "#1F5FA", "#1F5FA80", "#1F5FG8", "red", "#1F5F-8"}) {
        SCOPED_TRACE(bad);
        expectAt(errorOfRows("TX,TX1,,462.55,MHz,10,KHz,," + std::string(bad) + ",\n"), 2, 28, L"box colour");
    }
    expectAt(errorOfRows("TX,TX1,,462.55,MHz,10,KHz,,#1f5fa8,blue\n"), 2, 36, L"line colour");
}

TEST(PlanErrors, Columns) {
    expectAt(errorOf("kind,key,frequency\nTX,TX1,1\n"), 1, 1, L"bandwidth");
    expectAt(errorOf("kind,key,frequency,bandwith\nTX,TX1,1,10\n"), 1, 20, L"bandwith");
    expectAt(errorOf("kind,key,frequency,bandwidth,Key\nTX,TX1,1,10,TX2\n"), 1, 30, L"Key");
}

TEST(PlanErrors, NumberOfFields) {
    expectAt(errorOf("kind,key,frequency,bandwidth\nTX,TX1,1\n"), 2, 8, L"");
    expectAt(errorOf("kind,key,frequency,bandwidth\nTX,TX1,1,10,20,30\n"), 2, 13, L"");
}

TEST(PlanErrors, Quotes) {
    expectAt(errorOfRows("TX,TX1,\"Tower,462.55,MHz,10,KHz,,,\n"), 2, 8, L"");
    expectAt(errorOfRows("TX,TX1,\"Tower\" A,462.55,MHz,10,KHz,,,\n"), 2, 16, L"");
    expectAt(errorOfRows("TX,TX1,Tower \"A\",462.55,MHz,10,KHz,,,\n"), 2, 14, L"");
}

TEST(PlanErrors, TextNotInUtf8) {
    for (const char* bad :
         {"\xFF", "\x80", "\xC0\xAF", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80"}) {
        SCOPED_TRACE(bad);
        expectAt(errorOfRows("TX,TX1,K" + std::string(bad) + "ln,462.55,MHz,10,KHz,,,\n"), 2, 9, L"");
    }
    expectAt(errorOf(std::string("k\0i\0n\0d\0", 8)), 1, 2, L"");
}

bool breaksLine(wchar_t c) {
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029;
}

TEST(PlanErrors, TheTextIsOneLineWhateverTheFieldContains) {
    for (const char* character : {"\r", "\x01", "\x1B", "\x7F", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        const std::string field = std::string("T") + character + "X";
        for (const PlanError& error : {errorOf(kHeader + field + ",TX1,,1,MHz,10,KHz,,,\n"), errorOf(field + "\n")}) {
            EXPECT_TRUE(std::ranges::none_of(error.text(), breaksLine)) << testing::PrintToString(error.text());
        }
    }
}

TEST(PlanErrors, NothingInTheFile) {
    for (const std::string& bad : {std::string(), std::string("# only a comment\n"), kHeader}) {
        SCOPED_TRACE(bad);
        expectAt(errorOf(bad), 0, 0, L"");
    }
}

TEST(PlanErrors, FileThatCannotBeRead) {
    const std::filesystem::path missing = std::filesystem::temp_directory_path() / "no such folder" / "plan.csv";
    try {
        (void)kv::host::loadPlan(missing);
        FAIL() << "loaded a file that does not exist";
    } catch (const PlanError& error) {
        EXPECT_EQ(error.text(), L"plan.csv: the file cannot be opened or read.");
    }
    EXPECT_THROW((void)kv::host::loadPlan(std::filesystem::temp_directory_path()), PlanError);
}

TEST(Plan, LoadsAFileByItsWideName) {
    const std::filesystem::path file = std::filesystem::temp_directory_path() / u8"kv plan \u00E4.csv";
    std::ofstream(file, std::ios::binary) << kHeader << "TX,TX1,,462.55,MHz,10,KHz,,,\n";
    const Plan plan = kv::host::loadPlan(file);
    std::filesystem::remove(file);
    EXPECT_EQ(plan.channels.size(), 1u);
    try {
        (void)kv::host::loadPlan(file);
        FAIL() << "loaded a file that was removed";
    } catch (const PlanError& error) {
        EXPECT_EQ(error.file(), L"kv plan \u00E4.csv");
    }
}

/// Whatever the bytes, the answer is a plan or a PlanError with a place inside the text.
TEST(Plan, DamagedFilesGiveAPlanOrAnError) {
    const std::string good =
        kHeader +
        "TX,TX1,\"Tower \"\"A\"\"\",462.55,MHz,12.5,KHz,46.99,#1F5FA8,#010203\nRX,RX1,,467.55,MHz,12.5,KHz,,,\n";
    std::mt19937 random(7);
    int errors = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string bytes = good;
        for (int changes = 1 + static_cast<int>(random() % 3); changes > 0; --changes) {
            const std::size_t at = random() % bytes.size();
            switch (random() % 3) {
                case 0:
                    bytes[at] = static_cast<char>(random() % 256);
                    break;
                case 1:
                    bytes.erase(at, 1 + random() % 4);
                    break;
                default:
                    bytes.insert(at, 1, ",\"\n\r#-"[random() % 6]);
                    break;
            }
        }
        try {
            const Plan plan = parse(bytes);
            EXPECT_GE(plan.channels.size(), 1u);
        } catch (const PlanError& error) {
            ++errors;
            EXPECT_LE(error.line(), 8u);
            EXPECT_LE(error.column(), bytes.size() + 1);
        }
    }
    EXPECT_GT(errors, 1000);
    EXPECT_LT(errors, 20000);
}

}  // namespace
