// Reads the lines and fields of a plan file in UTF-8. Each has its position in the file, for error messages.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv::host {

/// The limits keep a file that is no plan from taking much memory.
constexpr std::size_t kMostFieldCharacters = 1000;
constexpr std::size_t kMostFields = 100;  ///< of one line

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

/// Reads line by line, so that what is wrong with a line is found before the lines below it are read, and does not keep
/// them from being read.
class CsvReader {
  public:
    explicit CsvReader(std::string_view bytes);

    /// The next line that is neither empty nor a comment; none at the end. Throws CsvFault for text that is not UTF-8,
    /// for quotes that do not match, and for a line above the limits; the next call reads the line below.
    [[nodiscard]] std::optional<CsvLine> next();

  private:
    [[nodiscard]] std::string_view takeLine();

    std::string_view bytes_;  // not read yet
    std::size_t number_ = 0;
};

/// A message for the user if the text of a field contains a semicolon or a tab, which separate the fields in files of
/// other programs; otherwise empty.
[[nodiscard]] std::wstring wrongSeparator(std::wstring_view field);

}  // namespace kv::host
