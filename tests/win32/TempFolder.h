// A folder of a test's own, and registry keys that are removed at the end.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace kv::test {

/// In the user's temporary folder; at the end it is deleted with its content, one level of folders deep.
class TempFolder {
  public:
    explicit TempFolder(const std::wstring& name) {
        wchar_t temp[MAX_PATH + 1] = L"";
        GetTempPathW(MAX_PATH + 1, temp);
        path_ = temp + name + std::to_wstring(GetCurrentProcessId());
        clear(path_);
        EXPECT_TRUE(CreateDirectoryW(path_.c_str(), nullptr));
    }
    ~TempFolder() { clear(path_); }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    [[nodiscard]] const std::wstring& path() const noexcept { return path_; }
    [[nodiscard]] std::wstring file(const std::wstring& name) const { return path_ + L"\\" + name; }

  private:
    static void clear(const std::wstring& folder) {
        WIN32_FIND_DATAW found{};
        const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
        if (search == INVALID_HANDLE_VALUE)
            return;
        do {
            const std::wstring name = found.cFileName;
            const std::wstring path = folder + L"\\" + name;
            if (name == L"." || name == L"..")
                continue;
            SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
                clear(path);
            else
                DeleteFileW(path.c_str());
        } while (FindNextFileW(search, &found));
        FindClose(search);
        RemoveDirectoryW(folder.c_str());
    }
    std::wstring path_;
};

[[nodiscard]] inline bool fileExists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

/// A file's bytes; empty if the file is missing.
[[nodiscard]] inline std::string contentOf(const std::wstring& path) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return {};
    std::string bytes(GetFileSize(file, nullptr), '\0');
    DWORD read = 0;
    ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
    CloseHandle(file);
    bytes.resize(read);
    return bytes;
}

inline void writeContent(const std::wstring& path, const std::string& bytes) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
    CloseHandle(file);
}

/// A key under the local machine, in one of the registry's two views, for the life of the object.
class LocalMachineKey {
  public:
    LocalMachineKey(const std::wstring& path, REGSAM view) : path_(path), view_(view) {
        const LSTATUS made = RegCreateKeyExW(HKEY_LOCAL_MACHINE, path_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | view,
                                             nullptr, &key_, nullptr);
        EXPECT_EQ(made, ERROR_SUCCESS);
    }
    ~LocalMachineKey() {
        RegCloseKey(key_);
        RegDeleteKeyExW(HKEY_LOCAL_MACHINE, path_.c_str(), view_, 0);
    }
    LocalMachineKey(const LocalMachineKey&) = delete;
    LocalMachineKey& operator=(const LocalMachineKey&) = delete;

    void set(const std::wstring& text, DWORD type = REG_SZ, bool terminated = true) {
        setBytes(text.c_str(), (text.size() + (terminated ? 1 : 0)) * sizeof(wchar_t), type);
    }
    void setBytes(const void* bytes, std::size_t size, DWORD type) {
        EXPECT_EQ(RegSetValueExW(key_, nullptr, 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(size)),
                  ERROR_SUCCESS);
    }

  private:
    std::wstring path_;
    REGSAM view_;
    HKEY key_ = nullptr;
};

/// The application path of a program.
class AppPathKey final : public LocalMachineKey {
  public:
    explicit AppPathKey(const std::wstring& program) : LocalMachineKey(pathOf(program), KEY_WOW64_64KEY) {}

    static std::wstring pathOf(const std::wstring& program) {
        return L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\" + program;
    }
};

}  // namespace kv::test
