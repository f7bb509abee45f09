#include "host/SettingsFile.h"

#include <windows.h>

#include <shlobj.h>

#include <array>
#include <utility>

#include "host/Console.h"

namespace kv::host {

namespace {

constexpr DWORD kMostBytes = 1'000'000;  // a larger file was not written by this program

/// A file that is closed at the end.
class File {
  public:
    File(const std::wstring& path, DWORD access, DWORD share, DWORD creation)
        : handle_(CreateFileW(path.c_str(), access, share, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr)) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (isOpen()) {
            CloseHandle(handle_);
        }
    }

    [[nodiscard]] bool isOpen() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }
    [[nodiscard]] HANDLE get() const noexcept { return handle_; }

  private:
    HANDLE handle_;
};

std::string bytesOf(const std::wstring& path) {
    const File file(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING);
    LARGE_INTEGER size{};
    if (!file.isOpen() || !GetFileSizeEx(file.get(), &size) || size.QuadPart > kMostBytes) {
        return {};
    }
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD read = 0;
    if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) {
        return {};
    }
    bytes.resize(read);
    return bytes;
}

std::wstring wideOf(const std::string& bytes) {
    const int length = static_cast<int>(bytes.size());
    std::wstring text(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, bytes.data(), length, nullptr, 0)),
                      L'\0');
    MultiByteToWideChar(CP_UTF8, 0, bytes.data(), length, text.data(), static_cast<int>(text.size()));
    return text;
}

bool writeAll(const std::wstring& path, const std::string& bytes) {
    const File file(path, GENERIC_WRITE, 0, CREATE_ALWAYS);
    DWORD written = 0;
    return file.isOpen() && WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size() && FlushFileBuffers(file.get());
}

/// Some systems replace read-only files without an error.
bool isProtected(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES &&
           (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0;
}

/// Writes under another name first, so that the file is always complete.
void replaceFile(const std::wstring& path, const std::string& bytes) {
    if (isProtected(path)) {
        return;
    }
    CreateDirectoryW(path.substr(0, path.find_last_of(L"\\/")).c_str(), nullptr);
    const std::wstring partial = path + L"." + std::to_wstring(GetCurrentProcessId()) + L".tmp";
    if (!writeAll(partial, bytes) || !MoveFileExW(partial.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        DeleteFileW(partial.c_str());
    }
}

}  // namespace

std::wstring SettingsFile::usualPath() {
    std::array<wchar_t, 32768> given{};
    const DWORD length =
        GetEnvironmentVariableW(L"BANDSCOPEHOST_SETTINGS", given.data(), static_cast<DWORD>(given.size()));
    if (length > 0 && length < given.size()) {
        return given.data();
    }
    std::array<wchar_t, MAX_PATH> folder{};
    if (FAILED(
            SHGetFolderPathW(nullptr, CSIDL_APPDATA | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, folder.data()))) {
        return {};
    }
    return std::wstring(folder.data()) + L"\\BandscopeHost\\BandscopeHost.ini";
}

Settings SettingsFile::read() const {
    return path_.empty() ? inMemory_ : settingsOf(wideOf(bytesOf(path_)));
}

void SettingsFile::change(const std::function<void(Settings&)>& work) {
    const Settings before = read();
    Settings settings = before;
    work(settings);
    if (settings == before) {
        return;
    }
    inMemory_ = settings;
    if (!path_.empty()) {
        replaceFile(path_, utf8Of(settingsText(settings)));
    }
}

}  // namespace kv::host
