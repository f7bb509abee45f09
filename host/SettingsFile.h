// The file with what the host remembers from one run to the next.
#pragma once

#include <functional>
#include <string>

#include "host/plan/Settings.h"

namespace kv::host {

/// Settings are a convenience: a file that is damaged or cannot be read or written is no error.
class SettingsFile {
  public:
    /// With an empty path, changes are kept in memory only.
    explicit SettingsFile(std::wstring path) : path_(std::move(path)) {}

    /// The path in the environment variable BANDSCOPEHOST_SETTINGS, otherwise BandscopeHost\BandscopeHost.ini in the
    /// user's folder for the data of programs. Empty if the system has none.
    [[nodiscard]] static std::wstring usualPath();

    /// The settings as they are now. Another instance of the program may have changed them.
    [[nodiscard]] Settings read() const;
    /// Reads, changes and writes the settings.
    void change(const std::function<void(Settings&)>& work);

  private:
    std::wstring path_;
    Settings inMemory_;
};

}  // namespace kv::host
