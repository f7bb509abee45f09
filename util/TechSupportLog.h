// The log that users send to the maker's technical support: "KVTECSUP.TXT" in the maker's folder.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "util/Configuration.h"
#include "util/System.h"

namespace kv::util {

/// A text file in UTF-8 that only grows. Logging never fails: if the file cannot be written, the line is dropped.
class TechSupportLog {
  public:
    /// Both must live longer.
    TechSupportLog(Configuration& configuration, System& system) : configuration_(configuration), system_(system) {}
    TechSupportLog(const TechSupportLog&) = delete;
    TechSupportLog& operator=(const TechSupportLog&) = delete;

    /// Adds a line with the time and `sMsg`, and with `bStamp` the host program's name and version, as in
    /// "2026-03-09 17:04:05:  Error 6  Overflow  (Host.exe 1.0.2)", and then a line of a single space.
    void wrtTechSupNoMak(std::wstring_view sMsg, bool bStamp) noexcept;

    /// The file's path, computed at its first use and kept. Without a maker's folder it is the file's name alone, and
    /// the file is in the current folder.
    [[nodiscard]] std::wstring getTechSupPath() noexcept;

    /// The executable name of the program that writes the log.
    [[nodiscard]] const std::wstring& hostName() const noexcept { return system_.host.name; }

  private:
    Configuration& configuration_;
    System& system_;
    std::mutex mutex_;
    std::wstring path_;
};

}  // namespace kv::util
