// Files that are no plans, or that were made to do harm: limits, separators and messages.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "host/plan/Plan.h"
#include "host/plan/Quoted.h"
#include "tests/unit/PlanTexts.h"

namespace {

using kv::host::Plan;
using kv::host::PlanError;
using kv::test::errorOf;
using kv::test::errorOfRows;
using kv::test::expectAt;
using kv::test::kHeader;
using kv::test::parseRows;
using testing::HasSubstr;

class PlanFile {
  public:
    explicit PlanFile(const std::string& bytes) { std::ofstream(path_, std::ios::binary) << bytes; }
    PlanFile(const PlanFile&) = delete;
    PlanFile& operator=(const PlanFile&) = delete;
    ~PlanFile() { std::filesystem::remove(path_); }
    void grow(std::uintmax_t size) const { std::filesystem::resize_file(path_, size); }
    [[nodiscard]] PlanError error() const {
        try {
            (void)kv::host::loadPlan(path_);
        } catch (const PlanError& error) {
            return error;
        }
        ADD_FAILURE() << "accepted";
        return {L"", 0, 0, L"", L""};
    }

  private:
    std::filesystem::path path_ = std::filesystem::temp_directory_path() / "kv plan limits.csv";
};

TEST(PlanLimits, AFileAbove64MegabytesIsNotRead) {
    constexpr std::uintmax_t kMost = 64 * 1024 * 1024;
    const PlanFile file(kHeader + "TX,TX1,,462.55,MHz,10,KHz,,,\n");
    file.grow(kMost + 1);
    EXPECT_EQ(file.error().text(), L"kv plan limits.csv: expected a file of at most 64 MB, but the file is larger.");
    file.grow(kMost);  // read, up to the first of the zeros behind the channel
    EXPECT_EQ(file.error().line(), 3u);
}

TEST(PlanLimits, AFieldHasAtMost1000Characters) {
    const std::string umlauts = [] {
        std::string text;
        for (int i = 0; i < 1000; ++i) {
            text += "\xC3\xA4";
        }
        return text;
    }();
    for (const auto& [opening, closing] : {std::pair{"", ""}, {"\"", "\""}, {" ", ""}}) {
        SCOPED_TRACE(opening);
        const auto row = [&, begin = opening, end = closing](const std::string& label) {
            return "TX,TX1," + std::string(begin) + label + end + ",462.55,MHz,10,KHz,,,\n";
        };
        EXPECT_EQ(parseRows(row(umlauts)).channels.at(0).label.size(), 1000u);
        const PlanError error = errorOfRows(row(umlauts + "x"));
        expectAt(error, 2, opening == std::string(" ") ? 9 : 8, L"");
        EXPECT_THAT(error.message(), HasSubstr(L"1000 characters"));
    }
    expectAt(errorOfRows("TX,TX1," + std::string(5'000'000, 'x')), 2, 8, L"");
    expectAt(errorOf(std::string(5'000'000, 'x')), 1, 1, L"");
}

TEST(PlanLimits, ALineHasAtMost100Fields) {
    // A line of so many fields is read, and has more than the header.
    EXPECT_THAT(errorOfRows("TX" + std::string(99, ',') + "\n").message(), HasSubstr(L"10 fields"));
    const PlanError error = errorOfRows("TX" + std::string(5'000'000, ',') + "\n");
    expectAt(error, 2, 103, L"");
    EXPECT_THAT(error.message(), HasSubstr(L"at most 100 fields"));
}

TEST(PlanLimits, APlanHasAtMost100000Channels) {
    std::string rows = "kind,key,frequency,bandwidth\n";
    for (int i = 0; i <= 100'000; ++i) {
        rows += "RX,RX" + std::to_string(i) + ",100,10\n";
    }
    const PlanError error = errorOf(rows);
    expectAt(error, 100'002, 1, L"");  // below the header and as many channels as there may be
    EXPECT_THAT(error.message(), HasSubstr(L"100000 channels"));
}

TEST(PlanErrors, AnOtherSeparatorIsNamed) {
    for (const char* text :
         {"kind;key;frequency;bandwidth\nTX;TX1;462,55;12,5\n", "\"kind\";\"key\"\n\"TX\";\"TX1\"\n",
          "kind;\"key\";frequency\n", "# plan\nkind ; key\n", "kind,key,frequency,bandwidth\nTX;TX1;462,55;12,5\n",
          "kind,key,frequency,bandwidth\n\"TX\";\"TX1\";462,55;12,5\n"}) {
        const PlanError error = errorOf(text);
        EXPECT_THAT(error.message(), HasSubstr(L"separated by commas, found semicolons (;)")) << text;
        EXPECT_TRUE(error.field().empty()) << text;
    }
    EXPECT_THAT(errorOf("kind\tkey\tfrequency\n").message(), HasSubstr(L"separated by commas, found tabs"));
    // A semicolon in a field is only text.
    EXPECT_EQ(parseRows("TX,TX1,Tower; north,462.55,MHz,10,KHz,,,\n").channels.at(0).label, L"Tower; north");
    EXPECT_THAT(errorOfRows("TX,TX1,,462.55,MHz,10,KHz,,\n").message(), HasSubstr(L"10 fields"));
}

TEST(PlanErrors, AWrongHeaderIsNamedBeforeWhatIsWrongBelowIt) {
    for (const char* below : {"TX,TX1,\"1,10\n", "TX,K\xFF,1,10\n", "TX,\"TX1\" a,1,10\n"}) {
        SCOPED_TRACE(below);
        expectAt(errorOf(std::string("kind,key,frequency,bandwith\n") + below), 1, 20, L"bandwith");
        expectAt(errorOf(std::string("kind,key,frequency\n") + below), 1, 1, L"bandwidth");
        // Errors of channels come in the order of the lines, too.
        expectAt(errorOf(std::string("kind,key,frequency,bandwidth\nTX,TX1,x,10\n") + below), 2, 8, L"frequency");
    }
}

void expectOneShortLine(const PlanError& error) {
    const std::wstring text = error.text();
    EXPECT_LT(text.size(), 400u);
    for (const wchar_t c : text) {
        EXPECT_GE(static_cast<unsigned>(c), 0x20u) << testing::PrintToString(text);
    }
}

TEST(PlanErrors, QuotedFieldsAreShortAndInOneLine) {
    const std::string bad = "\x1B[2J\rTX" + std::string(990, 'y');
    const std::string fields[] = {"TX", "TX1", "", "462.55", "MHz", "10", "KHz", "47", "#010203", "#010203"};
    for (std::size_t i = 0; i < std::size(fields); ++i) {
        if (i == 2) {
            continue;  // every text is a label
        }
        SCOPED_TRACE(i);
        std::string row;
        for (std::size_t field = 0; field < std::size(fields); ++field) {
            row += (field == 0 ? "" : ",") + (field == i ? bad : fields[field]);
        }
        const PlanError error = errorOfRows(row + "\n");
        EXPECT_EQ(error.line(), 2u);
        EXPECT_THAT(error.message(), HasSubstr(L"\"\\u001B[2J\\rTX" + std::wstring(46, L'y') + L"\u2026\""));
        expectOneShortLine(error);
    }
    expectOneShortLine(errorOf("kind,key," + bad + "\n"));
    const std::string key = "TX\x1B" + std::string(900, 'k');
    expectOneShortLine(errorOfRows("TX," + key + ",,1,MHz,10,KHz,,,\nTX," + key + ",,1,MHz,10,KHz,,,\n"));
}

TEST(PlanErrors, TheNameOfTheFileIsInOneLine) {
    EXPECT_EQ(PlanError(L"a\nb\u202Evsc.csv", 0, 0, L"", L"expected more").text(),
              L"a\\nb\\u202Evsc.csv: expected more.");
}

TEST(InQuotes, ShowsUpTo60Characters) {
    EXPECT_EQ(kv::host::inQuotes(L""), L"nothing");
    EXPECT_EQ(kv::host::inQuotes(L"462,55"), L"\"462,55\"");
    EXPECT_EQ(kv::host::inQuotes(std::wstring(60, L'x')), L"\"" + std::wstring(60, L'x') + L"\"");
    EXPECT_EQ(kv::host::inQuotes(std::wstring(61, L'x')), L"\"" + std::wstring(59, L'x') + L"\u2026\"");
}

TEST(InQuotes, CutsNoEscapeAndNoPairInHalf) {
    const std::wstring before(56, L'x');
    EXPECT_EQ(kv::host::shortened(before + L"\a\a"), before + L"\u2026");
    const std::wstring first(1, static_cast<wchar_t>(0xD83D));
    const std::wstring pair = first + static_cast<wchar_t>(0xDCE1);
    EXPECT_EQ(kv::host::shortened(std::wstring(58, L'x') + pair + L"x"), std::wstring(58, L'x') + L"\u2026");
    EXPECT_EQ(kv::host::shortened(std::wstring(58, L'x') + pair), std::wstring(58, L'x') + pair);
}

TEST(InQuotes, EscapesWhatIsNoPrintedCharacter) {
    EXPECT_EQ(kv::host::singleLine(L"a\tb\r\n\x7F\x85\u2028\u200F\u00E4"),
              L"a\\tb\\r\\n\\u007F\\u0085\\u2028\\u200F\u00E4");
}

}  // namespace
