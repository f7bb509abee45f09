#include "host/selfcheck/Undo.h"

#include <windows.h>

#include <array>
#include <filesystem>
#include <utility>

#include "host/Com.h"

namespace kv::host {

namespace {

using Path = std::array<wchar_t, 32768>;

std::wstring variable(const wchar_t* name) {
    Path text{};
    const DWORD length = GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size()));
    return {text.data(), length};
}

void setVariableFor(Undo& undo, const wchar_t* name, const std::wstring& value) {
    const std::wstring before = variable(name);
    undo.add([name, before] { SetEnvironmentVariableW(name, before.empty() ? nullptr : before.c_str()); });
    SetEnvironmentVariableW(name, value.c_str());
}

void truncate(const std::wstring& path, LARGE_INTEGER length) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        SetFilePointerEx(file, length, nullptr, FILE_BEGIN);
        SetEndOfFile(file);
        CloseHandle(file);
    }
}

}  // namespace

void Undo::add(std::function<void()> step) {
    const std::lock_guard lock(mutex_);
    steps_.push_back(std::move(step));
}

void Undo::run() noexcept {
    const std::lock_guard lock(mutex_);
    while (!steps_.empty()) {
        try {
            steps_.back()();
        } catch (...) {
            // The other changes are undone all the same.
        }
        steps_.pop_back();
    }
}

std::wstring enterWorkFolder(Undo& undo) {
    Path temporary{};
    Path current{};
    GetTempPathW(static_cast<DWORD>(temporary.size()), temporary.data());
    GetCurrentDirectoryW(static_cast<DWORD>(current.size()), current.data());
    const std::wstring folder =
        std::wstring(temporary.data()) + L"kvBandscope-check-" + std::to_wstring(GetCurrentProcessId());
    if (!CreateDirectoryW(folder.c_str(), nullptr)) {
        throw Failure{kExitOther, L"The folder \"" + folder + L"\" cannot be created."};
    }
    undo.add([folder] {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    });
    undo.add([before = std::wstring(current.data())] { SetCurrentDirectoryW(before.c_str()); });
    SetCurrentDirectoryW(folder.c_str());
    setVariableFor(undo, L"TMP", folder);
    setVariableFor(undo, L"TEMP", folder);
    return folder + L"\\";
}

void keepFile(Undo& undo, const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA before{};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &before)) {
        undo.add([path] { DeleteFileW(path.c_str()); });
        return;
    }
    LARGE_INTEGER length{};
    length.LowPart = before.nFileSizeLow;
    length.HighPart = static_cast<LONG>(before.nFileSizeHigh);
    undo.add([path, length] { truncate(path, length); });
}

}  // namespace kv::host
