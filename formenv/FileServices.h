// Files and the clipboard, which the system provides.
#pragma once

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

    /// Empties the clipboard, then places the bitmap file on it unless `path` is empty. Throws RuntimeError 521 when
    /// the clipboard stays busy and 481 for a file that is no bitmap.
    virtual void bitmapFileToClipboard(const std::wstring& path) = 0;
};

}  // namespace kv::formenv
