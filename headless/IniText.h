// INI files as texts in memory, read as the system's own calls read them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "util/Ini.h"

namespace kv::headless {

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

/// INI files held in memory.
class TextIniSource : public util::IniSource {
  public:
    /// Makes `text` the content of the file at `path`, replacing what was there. Paths differ in more than case.
    void setFile(std::wstring_view path, std::wstring_view text);

    [[nodiscard]] std::optional<std::wstring> read(std::wstring_view key, std::wstring_view section,
                                                   std::wstring_view file) override;
    void write(std::wstring_view key, std::wstring_view section, std::wstring_view file,
               std::wstring_view value) override;

  private:
    std::map<std::wstring, IniText> files_;
};

}  // namespace kv::headless
