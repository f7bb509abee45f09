// The outer shape of a plan file: UTF-8 text cut into lines and fields, each with its place for error messages.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kv::host {

/// A field without its quotes and outer blanks.
struct CsvField {
    std::wstring text;
    std::size_t column = 0;  ///< of its first character, counted from 1
};

struct CsvLine {
    std::size_t number = 0;  ///< counted from 1, comments and empty lines included
    std::vector<CsvField> fields;
};

/// What is wrong with the shape, and where; the caller knows the file.
struct CsvFault {
    std::size_t line = 0;
    std::size_t column = 0;
    std::wstring message;
};

/// Cuts a whole file; throws CsvFault for text that is not UTF-8 and for quotes that do not match.
[[nodiscard]] std::vector<CsvLine> readCsv(std::string_view bytes);

}  // namespace kv::host
