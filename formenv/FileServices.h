// Files, settings and the clipboard, which the system provides.
#pragma once

#include <optional>
#include <string>

namespace kv::formenv {

class FileServices {
  public:
    virtual ~FileServices() = default;

    /// The folder for scratch files, created when it does not exist; empty when there is none to be had.
    [[nodiscard]] virtual std::wstring scratchFolder() = 0;

    /// Writes the whole file or none of it, replacing an older one; throws RuntimeError 75 when it cannot be written.
    virtual void writeFile(const std::wstring& path, const std::string& bytes) = 0;

    /// Does nothing when there is no such file.
    virtual void deleteFile(const std::wstring& path) noexcept = 0;

    [[nodiscard]] virtual bool fileExists(const std::wstring& path) = 0;

    /// Throws RuntimeError 521 when the clipboard stays busy.
    virtual void clearClipboard() = 0;

    /// Places the picture of a bitmap file on the clipboard, and nothing else. Throws RuntimeError 521 when the
    /// clipboard stays busy and 481 for a file that is no bitmap.
    virtual void bitmapFileToClipboard(const std::wstring& path) = 0;

    /// The value of `key` in `section` of the INI file at path `file`; nothing when the file, the section or the key is
    /// missing.
    [[nodiscard]] virtual std::optional<std::wstring> readSetting(const std::wstring& key, const std::wstring& section,
                                                                  const std::wstring& file) = 0;

    /// Writes a setting, into a new file when there is none; throws RuntimeError 75 when it cannot.
    virtual void writeSetting(const std::wstring& key, const std::wstring& section, const std::wstring& file,
                              const std::wstring& value) = 0;

    /// The folder for print files, created when it does not exist; empty when there is none to be had.
    [[nodiscard]] virtual std::wstring printFolder() = 0;

    /// The INI file that keeps the places of windows; it need not exist. Empty when there is none to be had.
    [[nodiscard]] virtual std::wstring placementFile() = 0;
};

}  // namespace kv::formenv
