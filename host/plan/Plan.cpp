#include "host/plan/Plan.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <utility>

namespace kv::host {

namespace {

constexpr std::uintmax_t kMostMegabytes = 64;
constexpr std::uintmax_t kMostBytes = kMostMegabytes * 1024 * 1024;

/// The file's name without its folder. Where wide characters are not the native ones, path::wstring() depends on the
/// locale; UTF-32 does not.
std::wstring wideName(const std::filesystem::path& file) {
    if constexpr (sizeof(wchar_t) == 2) {
        return file.filename().wstring();
    } else {
        const std::u32string name = file.filename().u32string();
        return {name.begin(), name.end()};
    }
}

[[noreturn]] void fail(const std::wstring& name, std::wstring message) {
    throw PlanErrors({PlanError(name, 0, 0, {}, std::move(message))});
}

}  // namespace

std::size_t Plan::transmitterCount() const noexcept {
    return static_cast<std::size_t>(
        std::count_if(channels.begin(), channels.end(), [](const PlanChannel& channel) { return channel.transmits; }));
}

Plan loadPlan(const std::filesystem::path& file) {
    const std::wstring name = wideName(file);
    std::ifstream stream(file, std::ios::binary);
    const auto checkSize = [&name](std::uintmax_t size) {
        if (size > kMostBytes) {
            fail(name,
                 L"expected a file of at most " + std::to_wstring(kMostMegabytes) + L" MB, but the file is larger");
        }
    };
    std::error_code unknown;  // not every file has a size that is known before it is read
    if (const std::uintmax_t size = std::filesystem::file_size(file, unknown); !unknown) {
        checkSize(size);
    }
    std::string bytes;
    std::array<char, 65536> block;
    while (stream.read(block.data(), block.size()), stream.gcount() > 0) {
        checkSize(bytes.size() + static_cast<std::size_t>(stream.gcount()));
        bytes.append(block.data(), static_cast<std::size_t>(stream.gcount()));
    }
    if (!stream.is_open() || stream.bad()) {
        fail(name, L"the file cannot be opened or read");
    }
    return parsePlan(bytes, name);
}

}  // namespace kv::host
