#include "win32/WinFiles.h"

#include <atomic>
#include <cwchar>
#include <iterator>
#include <string>

#include "util/RuntimeError.h"
#include "win32/FileHandle.h"
#include "win32/Gdi.h"
#include "win32/WinSystem.h"

namespace kv::win32 {

using util::RuntimeError;
using util::error_number::kCannotOpenClipboard;
using util::error_number::kInvalidPicture;
using util::error_number::kPathFileAccess;

namespace {

constexpr DWORD kClipboardPatience = 500;  // milliseconds, while another program has the clipboard open
constexpr DWORD kClipboardPause = 20;
constexpr int kNameTries = 100;

/// Waits while this thread's windows still handle messages that other threads send: the program that has opened the
/// clipboard may be waiting for their answers. Input and posted messages stay in the queue.
void waitForClipboard() {
    const ULONGLONG end = GetTickCount64() + kClipboardPause;
    for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_SENDMESSAGE);
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
}

/// The clipboard, opened for the duration of a block. Waits a moment if another program has opened it.
class OpenedClipboard {
  public:
    explicit OpenedClipboard(HWND owner) {
        const ULONGLONG end = GetTickCount64() + kClipboardPatience;
        while (!OpenClipboard(owner)) {
            if (GetTickCount64() >= end)
                throw RuntimeError(kCannotOpenClipboard);
            waitForClipboard();
        }
    }
    ~OpenedClipboard() { CloseClipboard(); }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
};

/// A hidden window that owns the clipboard while data is placed on it. Without an owner, the system rejects the data.
class OwnerWindow {
  public:
    OwnerWindow() noexcept
        : window_(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)) {}
    ~OwnerWindow() { DestroyWindow(window_); }
    OwnerWindow(const OwnerWindow&) = delete;
    OwnerWindow& operator=(const OwnerWindow&) = delete;
    [[nodiscard]] HWND get() const noexcept { return window_; }

  private:
    HWND window_;
};

bool writeAll(HANDLE file, const std::string& bytes) {
    DWORD written = 0;
    return WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size() && FlushFileBuffers(file);
}

/// Creates a new file in the folder of `path`. Its name is short, so that it can be created wherever the file itself
/// can.
FileHandle createBeside(const std::wstring& path, std::wstring& name) {
    static std::atomic<unsigned> count{0};
    const std::wstring folder = path.substr(0, path.find_last_of(L"\\/:") + 1);
    for (int i = 0; i < kNameTries; ++i) {
        wchar_t file[] = L"kv000000.tmp";
        swprintf(file, std::size(file), L"kv%06x.tmp", (GetCurrentProcessId() * 0x9E3779B1U + ++count) & 0xFFFFFFU);
        name = folder + file;
        FileHandle created = openedFile(
            CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (created)
            return created;
        if (GetLastError() != ERROR_FILE_EXISTS)
            break;
    }
    throw RuntimeError(kPathFileAccess);
}

/// True if the path is neither a folder nor a read-only file. Some systems replace read-only files without an error.
bool mayBeReplaced(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes == INVALID_FILE_ATTRIBUTES ||
           (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) == 0;
}

}  // namespace

std::wstring WinFiles::scratchFolder() {
    return configuration().getScratchFolder();
}

void WinFiles::writeFile(const std::wstring& path, const std::string& bytes) {
    if (path.empty() || !mayBeReplaced(path))
        throw RuntimeError(kPathFileAccess);
    // The data is written under another name first, so that programs find either the old file or the complete new one.
    std::wstring partial;
    FileHandle file = createBeside(path, partial);
    const bool written = writeAll(file.get(), bytes);
    file.reset();
    if (!written || !MoveFileExW(partial.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        DeleteFileW(partial.c_str());
        throw RuntimeError(kPathFileAccess);
    }
}

void WinFiles::deleteFile(const std::wstring& path) noexcept {
    DeleteFileW(path.c_str());
}

std::optional<std::wstring> WinFiles::readSetting(const std::wstring& key, const std::wstring& section,
                                                  const std::wstring& file) {
    return configuration().readSetting(key, section, file);
}

void WinFiles::writeSetting(const std::wstring& key, const std::wstring& section, const std::wstring& file,
                            const std::wstring& value) {
    configuration().writeSetting(key, section, file, value);
}

std::wstring WinFiles::printFolder() {
    return configuration().getPrintFolder();
}

std::wstring WinFiles::placementFile() {
    return configuration().getPlacementINI();
}

bool WinFiles::fileExists(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

void WinFiles::clearClipboard() {
    const OwnerWindow owner;
    const OpenedClipboard clipboard(owner.get());
    EmptyClipboard();
}

void WinFiles::bitmapFileToClipboard(const std::wstring& path) {
    // The bitmap must be compatible with the screen. Bits in the memory of this process could not be passed to another.
    GdiObject<HBITMAP> bitmap(
        static_cast<HBITMAP>(LoadImageW(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE)));
    if (!bitmap)
        throw RuntimeError(kInvalidPicture);
    const OwnerWindow owner;
    const OpenedClipboard clipboard(owner.get());
    EmptyClipboard();
    if (!SetClipboardData(CF_BITMAP, bitmap.get()))
        throw RuntimeError(kInvalidPicture);
    static_cast<void>(bitmap.release());  // the clipboard owns it now
}

}  // namespace kv::win32
