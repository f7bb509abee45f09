#include "util/RuntimeError.h"

#include <gtest/gtest.h>

#include <map>
#include <new>
#include <stdexcept>
#include <string>

namespace kv::util {
namespace {

template <class Exception>
RuntimeError errorAfter(const Exception& exception) {
    try {
        throw exception;
    } catch (...) {
        return currentError();
    }
}

TEST(RuntimeErrorTest, EveryNumberHasItsText) {
    const std::map<int, std::wstring> texts{
        {5, L"Invalid procedure call or argument"},
        {6, L"Overflow"},
        {7, L"Out of memory"},
        {9, L"Subscript out of range"},
        {13, L"Type mismatch"},
        {51, L"Internal error"},
        {53, L"File not found"},
        {75, L"Path/File access error"},
        {91, L"Object variable or With block variable not set"},
        {380, L"Invalid property value"},
        {438, L"Object doesn't support this property or method"},
        {440, L"Automation error"},
        {457, L"This key is already associated with an element of this collection"},
        {481, L"Invalid picture"},
        {521, L"Can't open Clipboard"},
    };
    for (const auto& [number, text] : texts)
        EXPECT_EQ(errorText(number), text) << number;
}

TEST(RuntimeErrorTest, OtherNumbersHaveTheGeneralText) {
    for (const int number : {-2147467259, -1, 0, 1, 8, 1000, 65535})
        EXPECT_EQ(std::wstring(errorText(number)), L"Application-defined or object-defined error") << number;
}

TEST(RuntimeErrorTest, TakesTheTextOfItsNumberOrItsOwn) {
    const RuntimeError standard(error_number::kOverflow);
    EXPECT_EQ(standard.number(), 6);
    EXPECT_EQ(standard.text(), L"Overflow");
    const RuntimeError own(53, L"No such drawing");
    EXPECT_EQ(own.number(), 53);
    EXPECT_EQ(own.text(), L"No such drawing");
    EXPECT_STRNE(own.what(), "");
}

TEST(RuntimeErrorTest, CurrentErrorTranslatesForeignExceptions) {
    const RuntimeError own = errorAfter(RuntimeError(13, L"Not a channel"));
    EXPECT_EQ(own.number(), 13);
    EXPECT_EQ(own.text(), L"Not a channel");
    EXPECT_EQ(errorAfter(std::bad_alloc()).number(), error_number::kOutOfMemory);
    EXPECT_EQ(errorAfter(std::bad_array_new_length()).number(), error_number::kOutOfMemory);
    EXPECT_EQ(errorAfter(std::runtime_error("other")).number(), error_number::kInternal);
    EXPECT_EQ(errorAfter(42).number(), error_number::kInternal);
}

}  // namespace
}  // namespace kv::util
