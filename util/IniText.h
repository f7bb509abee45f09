// The text of an INI file, read as the system's own calls read it.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kv::util {

/// The settings of one INI file.
///
/// Sections are written as "[name]" on lines of their own, settings as "key=value" below them. Names of sections and
/// keys are not case-sensitive; of two equal ones the first counts, and parts of a section that is named twice belong
/// together. Spaces and tabs around names and values do not count. A value in a pair of double or single quotes loses
/// that one pair, which keeps blanks at its ends. Lines that begin with ';' are comments; a ';' further on is part of
/// the value. Other lines, and settings above the first section, are ignored.
class IniText {
  public:
    IniText() = default;
    /// Takes the text of a whole file, with line ends of any kind.
    explicit IniText(std::wstring_view text);

    /// The value of `key` in `section`, if there is one.
    [[nodiscard]] std::optional<std::wstring> find(std::wstring_view key, std::wstring_view section) const;

    void set(std::wstring_view key, std::wstring_view section, std::wstring_view value);

  private:
    std::map<std::pair<std::wstring, std::wstring>, std::wstring> values_;  // By folded section and key.
};

}  // namespace kv::util
