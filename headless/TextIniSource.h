// INI files as texts in memory, read as the system's own calls read them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "util/Ini.h"
#include "util/IniText.h"

namespace kv::headless {

/// INI files held in memory.
class TextIniSource : public util::IniSource {
  public:
    /// Makes `text` the content of the file at `path`, replacing what was there. Paths differ in more than case.
    void setFile(std::wstring_view path, std::wstring_view text);

    [[nodiscard]] std::optional<std::wstring> read(std::wstring_view key, std::wstring_view section,
                                                   std::wstring_view file) override;
    void write(std::wstring_view key, std::wstring_view section, std::wstring_view file,
               std::wstring_view value) override;

  private:
    std::map<std::wstring, util::IniText> files_;
};

}  // namespace kv::headless
