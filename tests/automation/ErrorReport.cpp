#include "tests/automation/ErrorReport.h"

#include <regex>

namespace kv::test {

std::vector<Record> recordsOf(const std::string& log) {
    static const std::regex line(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d:  (.*)\r\n \r\n)");
    static const std::regex stamped(R"((Error \d+  .*)  \(kv_automation_tests\.exe 0\.0\.0\))");
    static const std::regex captureLine(R"(After HdcBitMap|(Lft|Top|Wid|Hgt) -?\d+(\.\d+)?)");
    std::vector<Record> records;
    std::size_t place = 0;
    int step = 3;
    for (std::sregex_iterator i(log.begin(), log.end(), line), end; i != end; ++i) {
        EXPECT_EQ(static_cast<std::size_t>(i->position()), place) << "something between the lines";
        place += static_cast<std::size_t>(i->length());
        const std::string text = (*i)[1];
        std::smatch match;
        // A capture logs its steps; their lines are between the records.
        if (step >= 3 && std::regex_match(text, captureLine))
            continue;
        if (text == std::string(25, '*')) {
            EXPECT_GE(step, 3);
            records.emplace_back();
            step = 0;
        } else if (step == 0 && std::regex_match(text, match, stamped)) {
            records.back().error = match[1];
            step = 1;
        } else if (step == 1 && text == "Procedures:") {
            step = 2;
        } else if (step == 2 && text.starts_with("Procedure: ")) {
            records.back().procedure = text.substr(11);
            step = 3;
        } else if (step == 3 && text.starts_with("DETAIL: ")) {
            records.back().detail = text.substr(8);
            step = 4;
        } else {
            ADD_FAILURE() << "step " << step << ": " << text;
        }
    }
    EXPECT_EQ(place, log.size());
    EXPECT_GE(step, 3);
    return records;
}

}  // namespace kv::test
