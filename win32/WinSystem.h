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

/// Reads the 64-bit view of the registry and then the 32-bit one in all programs, so that all hosts find the same
/// entries.
class WinRegistry final : public util::RegistrySource {
  public:
    [[nodiscard]] std::optional<std::wstring> defaultValue(const std::wstring& key) override;
};

/// The system's private-profile functions. They use the ANSI code page: other characters in keys and values are
/// rejected, and a file with such a path is opened by its short name. A file name without a folder means a file in the
/// Windows folder.
class WinIni final : public util::IniSource {
  public:
    [[nodiscard]] std::optional<std::wstring> read(std::wstring_view key, std::wstring_view section,
                                                   std::wstring_view file) override;
    /// Throws for names and values with characters that the code page lacks, and for a path that is not complete.
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
/// major.minor.revision of the fixed version of a program file; "0.0.0" if it has none.
[[nodiscard]] std::wstring fileVersion(const std::wstring& path);
[[nodiscard]] util::DateTime localTime();

/// There is one of each in the process.
[[nodiscard]] util::Configuration& configuration();
[[nodiscard]] util::TechSupportLog& techSupportLog();

}  // namespace kv::win32
