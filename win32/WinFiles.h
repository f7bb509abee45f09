// Files, settings and the clipboard on Windows.
#pragma once

#include <windows.h>

#include "formenv/FileServices.h"

namespace kv::win32 {

class WinFiles final : public formenv::FileServices {
  public:
    [[nodiscard]] std::wstring scratchFolder() override;
    void writeFile(const std::wstring& path, const std::string& bytes) override;
    void deleteFile(const std::wstring& path) noexcept override;
    [[nodiscard]] bool fileExists(const std::wstring& path) override;
    void clearClipboard() override;
    void bitmapFileToClipboard(const std::wstring& path) override;
    [[nodiscard]] std::optional<std::wstring> readSetting(const std::wstring& key, const std::wstring& section,
                                                          const std::wstring& file) override;
    void writeSetting(const std::wstring& key, const std::wstring& section, const std::wstring& file,
                      const std::wstring& value) override;
    [[nodiscard]] std::wstring printFolder() override;
    [[nodiscard]] std::wstring placementFile() override;
};

}  // namespace kv::win32
