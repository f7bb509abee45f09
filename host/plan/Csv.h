// Reads the lines and fields of a plan file in UTF-8. Each has its position in the file, for error messages.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kv::host {

/// A field without its quotes and without blanks at its ends.
struct CsvField {
    std::wstring text;
    std::size_t column = 0;  ///< position of its first character, counted from 1
};

struct CsvLine {
    std::size_t number = 0;  ///< counted from 1, including comments and empty lines
    std::vector<CsvField> fields;
};

/// What is wrong, and where. The caller adds the name of the file.
struct CsvFault {
    std::size_t line = 0;
    std::size_t column = 0;
    std::wstring message;
};

/// Reads a whole file; throws CsvFault for text that is not UTF-8 and for quotes that do not match.
[[nodiscard]] std::vector<CsvLine> readCsv(std::string_view bytes);

}  // namespace kv::host
