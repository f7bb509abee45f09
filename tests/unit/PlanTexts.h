// Channel plans as texts, and the errors that they give.
#pragma once

#include <gmock/gmock.h>

#include <string>

#include "host/plan/Plan.h"

namespace kv::test {

inline const std::string kHeader =
    "kind,key,label,frequency,frequency unit,bandwidth,bandwidth unit,power,box colour,line colour\n";

inline host::Plan parse(const std::string& text) {
    return host::parsePlan(text, L"test.csv");
}

inline host::Plan parseRows(const std::string& rows) {
    return parse(kHeader + rows);
}

/// The error that a text gives; a failed test when it gives none.
inline host::PlanError errorOf(const std::string& text) {
    try {
        (void)parse(text);
    } catch (const host::PlanError& error) {
        return error;
    }
    ADD_FAILURE() << "accepted: " << text.substr(0, 200);
    return {L"", 0, 0, L"", L""};
}

inline host::PlanError errorOfRows(const std::string& rows) {
    return errorOf(kHeader + rows);
}

inline void expectAt(const host::PlanError& error, std::size_t line, std::size_t column, const std::wstring& field) {
    EXPECT_EQ(error.line(), line);
    EXPECT_EQ(error.column(), column);
    EXPECT_EQ(error.field(), field);
    EXPECT_EQ(error.file(), L"test.csv");
    EXPECT_THAT(error.message(), testing::StartsWith(L"expected"));
}

}  // namespace kv::test
