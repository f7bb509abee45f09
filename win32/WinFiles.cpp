#include "win32/WinFiles.h"

#include <atomic>
#include <cwchar>
#include <iterator>
#include <string>

#include "util/RuntimeError.h"
#include "win32/Gdi.h"
#include "win32/WinSystem.h"

namespace kv::win32 {

using util::RuntimeError;
using util::error_number::kCannotOpenClipboard;
using util::error_number::kInvalidPicture;
using util::error_number::kPathFileAccess;

namespace {

constexpr DWORD kClipboardPatience = 500;  // milliseconds, for another program that holds the clipboard
constexpr DWORD kClipboardPause = 20;
constexpr int kNameTries = 100;

/// Lets time pass without leaving the windows of this thread deaf: whoever holds the clipboard may be waiting for an
/// answer of theirs. Only what other threads have sent is handled; input and everything posted stays in the queue.
void waitForClipboard() {
    const ULONGLONG end = GetTickCount64() + kClipboardPause;
    for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_SENDMESSAGE);
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
}

struct HandleCloser {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using FileHandle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

/// The clipboard for the time of a block. Another program may hold it for a moment.
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

/// A hidden window that owns what lies on the clipboard while it is placed there; without an owner the system would
/// not take it.
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

/// A fresh file beside `path`. Its name is no longer than those that every folder has room for, so that it can be
/// made wherever the file itself can.
FileHandle createBeside(const std::wstring& path, std::wstring& name) {
    static std::atomic<unsigned> count{0};
    const std::wstring folder = path.substr(0, path.find_last_of(L"\\/:") + 1);
    for (int i = 0; i < kNameTries; ++i) {
        wchar_t file[] = L"kv000000.tmp";
        swprintf(file, std::size(file), L"kv%06x.tmp", (GetCurrentProcessId() * 0x9E3779B1U + ++count) & 0xFFFFFFU);
        name = folder + file;
        const HANDLE made =
            CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (made != INVALID_HANDLE_VALUE)
            return FileHandle(made);
        if (GetLastError() != ERROR_FILE_EXISTS)
            break;
    }
    throw RuntimeError(kPathFileAccess);
}

/// Neither a folder nor protected. Not every system refuses to put another file in the place of a protected one.
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
    // Under another name first: whoever opens the file finds the old one or the whole new one.
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
    // A bitmap of the screen's kind: one whose bits lie in this process could not be handed to another.
    GdiObject<HBITMAP> bitmap(
        static_cast<HBITMAP>(LoadImageW(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE)));
    if (!bitmap)
        throw RuntimeError(kInvalidPicture);
    const OwnerWindow owner;
    const OpenedClipboard clipboard(owner.get());
    EmptyClipboard();
    if (!SetClipboardData(CF_BITMAP, bitmap.get()))
        throw RuntimeError(kInvalidPicture);
    static_cast<void>(bitmap.release());  // the clipboard's from now on
}

}  // namespace kv::win32
