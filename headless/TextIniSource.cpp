#include "headless/TextIniSource.h"

#include "util/Text.h"

namespace kv::headless {

void TextIniSource::setFile(std::wstring_view path, std::wstring_view text) {
    files_.insert_or_assign(util::foldCase(path), util::IniText(text));
}

std::optional<std::wstring> TextIniSource::read(std::wstring_view key, std::wstring_view section,
                                                std::wstring_view file) {
    const auto found = files_.find(util::foldCase(file));
    return found == files_.end() ? std::nullopt : found->second.find(key, section);
}

void TextIniSource::write(std::wstring_view key, std::wstring_view section, std::wstring_view file,
                          std::wstring_view value) {
    demandWritable(key, section, value);
    files_[util::foldCase(file)].set(key, section, value);
}

}  // namespace kv::headless
