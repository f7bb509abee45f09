// Files and the clipboard on Windows.
#pragma once

#include <windows.h>

#include "formenv/FileServices.h"

namespace kv::win32 {

class WinFiles final : public formenv::FileServices {
  public:
    [[nodiscard]] std::wstring scratchFolder() override;
    void writeFile(const std::wstring& path, const std::string& bytes) override;
    void deleteFile(const std::wstring& path) noexcept override;
    void bitmapFileToClipboard(const std::wstring& path) override;
};

}  // namespace kv::win32
