#include "win32/WinSystem.h"

#include <shlobj.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

#include "util/RuntimeError.h"
#include "util/Utf8.h"
#include "win32/AnsiText.h"
#include "win32/FileHandle.h"

namespace kv::win32 {

using util::RuntimeError;
using util::error_number::kPathFileAccess;

namespace {

// This is never a value in an INI file, so it distinguishes a missing key from all values.
constexpr char kMissing[] = "\x01";
constexpr DWORD kFirstLength = 1024;
constexpr DWORD kMostLength = 65536;

struct KeyCloser {
    void operator()(HKEY key) const noexcept { RegCloseKey(key); }
};
using RegistryKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

[[noreturn]] void throwRegistryError(LSTATUS status) {
    throw RuntimeError(kPathFileAccess, L"Registry error " + std::to_wstring(status));
}

bool isMissing(LSTATUS status) {
    return status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND;
}

std::wstring expanded(const std::wstring& text) {
    const DWORD length = ExpandEnvironmentStringsW(text.c_str(), nullptr, 0);
    std::wstring result(length, L'\0');
    if (length == 0 || ExpandEnvironmentStringsW(text.c_str(), result.data(), length) != length)
        return text;
    result.resize(length - 1);
    return result;
}

std::optional<std::wstring> defaultValueIn(const std::wstring& path, REGSAM view) {
    HKEY opened = nullptr;
    const LSTATUS found = RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE | view, &opened);
    if (isMissing(found))
        return std::nullopt;
    if (found != ERROR_SUCCESS)
        throwRegistryError(found);
    const RegistryKey key(opened);
    std::vector<wchar_t> text(MAX_PATH);
    for (;;) {
        DWORD type = 0;
        auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        const LSTATUS status =
            RegQueryValueExW(key.get(), nullptr, nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &bytes);
        if (status == ERROR_MORE_DATA) {
            text.resize(bytes / sizeof(wchar_t) + 1);
            continue;
        }
        if (isMissing(status) || (status == ERROR_SUCCESS && type != REG_SZ && type != REG_EXPAND_SZ))
            return std::nullopt;
        if (status != ERROR_SUCCESS)
            throwRegistryError(status);
        // Most writers store the terminating null character, but not all.
        std::wstring value(text.data(), bytes / sizeof(wchar_t));
        value.erase(std::min(value.find(L'\0'), value.size()));
        return type == REG_EXPAND_SZ ? expanded(value) : value;
    }
}

std::optional<std::string> pathToAnsi(std::wstring_view path) {
    if (std::optional<std::string> plain = toCodePage(path))
        return plain;
    const std::wstring full(path);
    std::wstring shortened(MAX_PATH + 1, L'\0');
    const DWORD length = GetShortPathNameW(full.c_str(), shortened.data(), static_cast<DWORD>(shortened.size()));
    if (length == 0 || length >= shortened.size())
        return std::nullopt;
    return toCodePage(std::wstring_view(shortened).substr(0, length));
}

/// True if the path begins with a drive's root or a server's name.
bool isFullPath(std::wstring_view path) {
    const auto isSlash = [](wchar_t letter) { return letter == L'\\' || letter == L'/'; };
    return path.size() > 2 &&
           ((isSlash(path[0]) && isSlash(path[1])) || (path.size() > 3 && path[1] == L':' && isSlash(path[2])));
}

/// Checks that a file is writable. If the file had to be created for this, it is deleted again unless it is kept.
class WritableFile {
  public:
    explicit WritableFile(std::wstring path) : path_(std::move(path)) {
        // On systems with owners and modes below this attribute, the superuser could open the file all the same.
        const DWORD attributes = GetFileAttributesW(path_.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0)
            throw RuntimeError(kPathFileAccess);
        const FileHandle opened = openedFile(CreateFileW(path_.c_str(), GENERIC_READ | GENERIC_WRITE,
                                                         FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                                         nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!opened)
            throw RuntimeError(kPathFileAccess);
        fresh_ = GetLastError() != ERROR_ALREADY_EXISTS;
    }
    ~WritableFile() {
        if (fresh_)
            DeleteFileW(path_.c_str());
    }
    WritableFile(const WritableFile&) = delete;
    WritableFile& operator=(const WritableFile&) = delete;
    void keep() noexcept { fresh_ = false; }

  private:
    std::wstring path_;
    bool fresh_ = false;
};

struct Shared {
    WinRegistry registry;
    WinIni ini;
    WinFileStore files;
    util::System system{registry, ini, files, hostProgram(), &localTime};
    util::Configuration configuration{system};
    util::TechSupportLog log{configuration, system};
};

Shared& shared() {
    static Shared instance;
    return instance;
}

}  // namespace

std::optional<std::wstring> WinRegistry::defaultValue(const std::wstring& key) {
    std::optional<std::wstring> value = defaultValueIn(key, KEY_WOW64_64KEY);
    return value ? value : defaultValueIn(key, KEY_WOW64_32KEY);
}

std::optional<std::wstring> WinIni::read(std::wstring_view key, std::wstring_view section, std::wstring_view file) {
    const std::optional<std::string> path = pathToAnsi(file);
    const std::optional<std::string> inSection = toCodePage(section);
    const std::optional<std::string> name = toCodePage(key);
    if (!path || !inSection || !name)
        return std::nullopt;
    for (DWORD size = kFirstLength;; size *= 2) {
        std::string value(size, '\0');
        const DWORD length =
            GetPrivateProfileStringA(inSection->c_str(), name->c_str(), kMissing, value.data(), size, path->c_str());
        // A value that fills the buffer may be truncated.
        if (length + 1 >= size && size < kMostLength)
            continue;
        value.resize(length);
        if (value == kMissing)
            return std::nullopt;
        return fromCodePage(value);
    }
}

void WinIni::write(std::wstring_view key, std::wstring_view section, std::wstring_view file, std::wstring_view value) {
    demandWritable(key, section, value);
    if (!isFullPath(file))
        throw RuntimeError(kPathFileAccess);
    WritableFile target{std::wstring(file)};
    // Only an existing file has a short name, with which a path outside the code page can be opened.
    const std::optional<std::string> path = pathToAnsi(file);
    const std::optional<std::string> inSection = toCodePage(section);
    const std::optional<std::string> name = toCodePage(key);
    const std::optional<std::string> text = toCodePage(written(value));
    if (!path || !inSection || !name || !text ||
        !WritePrivateProfileStringA(inSection->c_str(), name->c_str(), text->c_str(), path->c_str()))
        throw RuntimeError(kPathFileAccess);
    target.keep();
}

bool WinFileStore::folderExists(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

void WinFileStore::createFolder(const std::wstring& path) {
    // Another program may have created it in the meantime.
    if (!CreateDirectoryW(path.c_str(), nullptr) && !folderExists(path))
        throw RuntimeError(kPathFileAccess);
}

std::wstring WinFileStore::userTempFolder() {
    std::wstring folder(MAX_PATH + 1, L'\0');
    const DWORD length = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    folder.resize(length > folder.size() ? 0 : length);
    return folder;
}

std::wstring WinFileStore::userDataFolder() {
    wchar_t folder[MAX_PATH + 1] = L"";
    if (FAILED(SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder)))
        return {};
    return folder;
}

void WinFileStore::append(const std::wstring& path, const std::wstring& text) {
    const FileHandle file =
        openedFile(CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                               nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        throw RuntimeError(kPathFileAccess);
    const std::string bytes = util::toUtf8(text);
    DWORD written = 0;
    if (!WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) ||
        written != bytes.size())
        throw RuntimeError(kPathFileAccess);
}

util::HostProgram hostProgram() {
    constexpr std::size_t kLongestPath = 32768;
    std::wstring path(kLongestPath, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    const std::size_t name = path.find_last_of(L'\\') + 1;
    return {path.substr(0, name), path.substr(name), fileVersion(path)};
}

std::wstring fileVersion(const std::wstring& path) {
    std::wstring result = L"0.0.0";
    DWORD ignored = 0;
    std::vector<char> block(GetFileVersionInfoSizeW(path.c_str(), &ignored));
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    if (!block.empty() && GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) &&
        VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length) && length >= sizeof *fixed)
        // The revision is the last of the four numbers; the third is not shown.
        result = std::to_wstring(HIWORD(fixed->dwFileVersionMS)) + L"." +
                 std::to_wstring(LOWORD(fixed->dwFileVersionMS)) + L"." +
                 std::to_wstring(LOWORD(fixed->dwFileVersionLS));
    return result;
}

util::DateTime localTime() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

util::Configuration& configuration() {
    return shared().configuration;
}

util::TechSupportLog& techSupportLog() {
    return shared().log;
}

}  // namespace kv::win32
