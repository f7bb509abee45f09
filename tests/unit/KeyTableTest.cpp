// Texts by number.
#include "channels/KeyTable.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "util/KeyedHash.h"

namespace kv::channels {
namespace {

TEST(KeyTable, FindsEachTextByItsNumber) {
    KeyTable table;
    EXPECT_EQ(table.find(L""), KeyTable::kNone);
    for (int i = 0; i < 5000; ++i)
        ASSERT_EQ(table.add(L"TX" + std::to_wstring(i)), i);
    EXPECT_EQ(table.size(), 5000U);
    for (int i = 0; i < 5000; ++i) {
        ASSERT_EQ(table.find(L"TX" + std::to_wstring(i)), i);
        ASSERT_EQ(table.find(L"tx" + std::to_wstring(i)), i) << "without regard to case";
        ASSERT_EQ(table.text(i), L"TX" + std::to_wstring(i));
    }
    EXPECT_EQ(table.find(L"TX"), KeyTable::kNone);
    EXPECT_EQ(table.find(L"TX5000"), KeyTable::kNone);
}

TEST(KeyTable, TellsTextsApartThatAreTheBeginningOfOthers) {
    KeyTable table;
    const std::wstring long_(1000, L'a');
    for (std::size_t length = 0; length <= long_.size(); ++length)
        table.add(long_.substr(0, length));
    for (std::size_t length = 0; length <= long_.size(); ++length)
        ASSERT_EQ(table.find(long_.substr(0, length)), static_cast<std::int32_t>(length));
    table.add(std::wstring(2, L'\0'));
    EXPECT_EQ(table.find(std::wstring(1, L'\0')), KeyTable::kNone);
    EXPECT_EQ(table.find(std::wstring(2, L'\0')), 1001);
}

TEST(KeyTable, LettersBeyondAsciiAreFoldedToo) {
    KeyTable table;
    table.add(L"\u00C4ther");
    EXPECT_EQ(table.find(L"\u00E4THER"), 0);
    EXPECT_EQ(table.find(L"ather"), KeyTable::kNone);
}

TEST(FoldedHash, TextsThatAreEqualWhenFoldedHaveOneHash) {
    EXPECT_EQ(util::foldedHash(L"TX\u00C4x"), util::foldedHash(L"tx\u00E4X"));
}

TEST(FoldedHash, TextsThatAPolynomialHashConfusesAreToldApart) {
    // With the multiplier 31, "a~" and "b_" have the same value.
    std::set<std::size_t> hashes;
    for (unsigned bits = 0; bits < 4096; ++bits) {
        std::wstring text;
        for (unsigned bit = 0; bit < 12; ++bit)
            text += (bits >> bit & 1U) != 0 ? L"a~" : L"b_";
        hashes.insert(util::foldedHash(text));
    }
    // Two of 4096 values of 32 bits are equal by chance once in 500 runs.
    EXPECT_GT(hashes.size(), 4090U);
}

TEST(FoldedHash, TheLengthCounts) {
    EXPECT_NE(util::foldedHash(L""), util::foldedHash(std::wstring(1, L'\0')));
    EXPECT_NE(util::foldedHash(std::wstring(1, L'\0')), util::foldedHash(std::wstring(2, L'\0')));
}

}  // namespace
}  // namespace kv::channels
