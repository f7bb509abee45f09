// The registry, INI files, folders, time and host program on Windows, and the configuration and the log that all
// controls of the process share.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

#include "util/Configuration.h"
#include "util/Ini.h"
#include "util/System.h"
#include "util/TechSupportLog.h"

namespace kv::win32 {

/// Looks into the 64-bit view of the registry and then into the 32-bit one, whatever the program itself is, so that
/// every host finds the same entries.
class WinRegistry final : public util::RegistrySource {
  public:
    [[nodiscard]] std::optional<std::wstring> defaultValue(const std::wstring& key) override;
};

/// The system's private-profile calls. They work in the ANSI code page: letters outside of it do not get through in
/// keys and values, and a file under such a path is reached by its short name. A file name without a folder means a
/// file in the Windows folder.
class WinIni final : public util::IniSource {
  public:
    [[nodiscard]] std::optional<std::wstring> read(std::wstring_view key, std::wstring_view section,
                                                   std::wstring_view file) override;
    /// Names and values that the code page lacks throw, and a path that is not a full one.
    void write(std::wstring_view key, std::wstring_view section, std::wstring_view file,
               std::wstring_view value) override;
};

class WinFileStore final : public util::FileStore {
  public:
    [[nodiscard]] bool folderExists(const std::wstring& path) override;
    void createFolder(const std::wstring& path) override;
    [[nodiscard]] std::wstring userTempFolder() override;
    [[nodiscard]] std::wstring userDataFolder() override;
    /// Text is written in UTF-8. Other programs may read and write the file at the same time.
    void append(const std::wstring& path, const std::wstring& text) override;
};

/// The program of this process.
[[nodiscard]] util::HostProgram hostProgram();
/// major.minor.revision of a program file's fixed version; "0.0.0" when it has none.
[[nodiscard]] std::wstring fileVersion(const std::wstring& path);
[[nodiscard]] util::DateTime localTime();

/// One each in the process.
[[nodiscard]] util::Configuration& configuration();
[[nodiscard]] util::TechSupportLog& techSupportLog();

}  // namespace kv::win32
