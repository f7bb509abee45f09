// Settings read from INI files: the reading routine, and the interface to the system that holds the files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kv::util {

/// The source of settings: on Windows the system's private-profile functions.
class IniSource {
  public:
    IniSource() = default;
    IniSource(const IniSource&) = delete;
    IniSource& operator=(const IniSource&) = delete;
    virtual ~IniSource() = default;

    /// The value of `key` in `section` of the INI file at path `file`; nothing when the file, the section or the key
    /// is missing. A key without a value gives an empty text.
    [[nodiscard]] virtual std::optional<std::wstring> read(std::wstring_view key, std::wstring_view section,
                                                           std::wstring_view file) = 0;

    /// Sets `key` in `section` of the INI file at the full path `file`, which is created if it does not exist. Throws
    /// RuntimeError 75 when that fails, and for names and values that would not be read back as they are. A read-only
    /// source always throws.
    virtual void write(std::wstring_view key, std::wstring_view section, std::wstring_view file,
                       std::wstring_view value);

  protected:
    /// Throws RuntimeError 75 for a name or a value that would end its line early or turn it into another one.
    static void demandWritable(std::wstring_view key, std::wstring_view section, std::wstring_view value);
    /// The value with quotes around it when it would lose blanks or quotes of its own without them.
    [[nodiscard]] static std::wstring written(std::wstring_view value);
};

/// The value of `key` in `section` of `file`, or `defaultValue` when the key, the section or the file is missing.
[[nodiscard]] std::wstring getINI(IniSource& source, std::wstring_view key, std::wstring_view section,
                                  std::wstring_view file, std::wstring_view defaultValue);

/// The text without the spaces and tabs at its ends.
[[nodiscard]] std::wstring_view trimBlanks(std::wstring_view text) noexcept;
/// The value without the one pair of double or single quotes around it, if there is one.
[[nodiscard]] std::wstring_view withoutQuotes(std::wstring_view value) noexcept;

}  // namespace kv::util
