// What the shared utilities need of the system: the registry, files and folders, the time, and the host program.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "util/Ini.h"

namespace kv::util {

/// The program that the control runs in.
struct HostProgram {
    std::wstring folder;
    std::wstring name;     ///< of the executable file, with its extension
    std::wstring version;  ///< major.minor.revision; "0.0.0" for a program that carries none
};

/// Local time.
struct DateTime {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

/// Keys under the local machine.
class RegistrySource {
  public:
    RegistrySource() = default;
    RegistrySource(const RegistrySource&) = delete;
    RegistrySource& operator=(const RegistrySource&) = delete;
    virtual ~RegistrySource() = default;

    /// The default value of a key; nothing when the key is missing or has no text as its default value. Throws
    /// RuntimeError 75 for one that exists and cannot be read.
    [[nodiscard]] virtual std::optional<std::wstring> defaultValue(const std::wstring& key) = 0;
};

class FileStore {
  public:
    FileStore() = default;
    FileStore(const FileStore&) = delete;
    FileStore& operator=(const FileStore&) = delete;
    virtual ~FileStore() = default;

    [[nodiscard]] virtual bool folderExists(const std::wstring& path) = 0;
    /// Creates the last folder of `path`; throws RuntimeError 75 when that fails.
    virtual void createFolder(const std::wstring& path) = 0;
    /// The user's folder for temporary files; empty when the system has none.
    [[nodiscard]] virtual std::wstring userTempFolder() = 0;
    /// The user's folder for the data of programs on this machine; empty when the system has none.
    [[nodiscard]] virtual std::wstring userDataFolder() = 0;
    /// Appends text to a file, which is created if it does not exist, and closes it. Throws RuntimeError 75 when that
    /// fails.
    virtual void append(const std::wstring& path, const std::wstring& text) = 0;
};

/// All of it. Refers to the parts, which must live longer.
struct System {
    RegistrySource& registry;
    IniSource& ini;
    FileStore& files;
    HostProgram host;
    std::function<DateTime()> now;
};

}  // namespace kv::util
