// Settings read from INI files: the reading routine, the seam to whatever holds the files, and a parser of their text.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kv::util {

/// Where settings come from. On Windows the system's private-profile calls stand behind it.
class IniSource {
  public:
    IniSource() = default;
    IniSource(const IniSource&) = delete;
    IniSource& operator=(const IniSource&) = delete;
    virtual ~IniSource() = default;

    /// The value of `key` in `section` of the INI file at path `file`; nothing when the file, the section or the key
    /// is missing. A key that is there without a value gives an empty text.
    [[nodiscard]] virtual std::optional<std::wstring> read(std::wstring_view key, std::wstring_view section,
                                                           std::wstring_view file) = 0;

    /// Sets `key` in `section` of the INI file at the full path `file`, which is made when it does not exist. Throws
    /// RuntimeError 75 when it cannot, also for names and values that would not read back; a source that is only
    /// there to be read always does.
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

/// The settings of one INI file.
///
/// Sections stand as "[name]" on lines of their own, settings as "key=value" below them. Names of sections and keys
/// are compared without regard to case; of two equal ones the first counts, and parts of a section that is named twice
/// belong together. Spaces and tabs around names and values do not count. A value in a pair of double or single quotes
/// loses that one pair, which keeps blanks at its ends. Lines that begin with ';' are comments; a ';' further on is
/// part of the value. Lines that are neither, and settings above the first section, are passed over.
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

/// INI files held in memory, for use where the system has no calls for them.
class TextIniSource : public IniSource {
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

}  // namespace kv::util
