#include "win32/WinFiles.h"

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

constexpr int kClipboardTries = 10;
constexpr DWORD kClipboardPause = 20;  // milliseconds

struct HandleCloser {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using FileHandle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

/// The clipboard for the time of a block. Another program may hold it for a moment.
class OpenedClipboard {
  public:
    explicit OpenedClipboard(HWND owner) {
        for (int i = 0; i < kClipboardTries && !open_; ++i) {
            open_ = OpenClipboard(owner) != FALSE;
            if (!open_)
                Sleep(kClipboardPause);
        }
        if (!open_)
            throw RuntimeError(kCannotOpenClipboard);
    }
    ~OpenedClipboard() { CloseClipboard(); }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;

  private:
    bool open_ = false;
};

/// A hidden window that owns what lies on the clipboard while it is placed there.
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

}  // namespace

std::wstring WinFiles::scratchFolder() {
    return configuration().getScratchFolder();
}

void WinFiles::writeFile(const std::wstring& path, const std::string& bytes) {
    // Under another name first: whoever opens the file finds the old one or the whole new one.
    const std::wstring partial = path + L".tmp" + std::to_wstring(GetCurrentProcessId());
    FileHandle file;
    const HANDLE made =
        CreateFileW(partial.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (made == INVALID_HANDLE_VALUE)
        throw RuntimeError(kPathFileAccess);
    file.reset(made);
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

std::wstring WinFiles::workFolder() {
    return configuration().getWorkFolder();
}

std::wstring WinFiles::placementFile() {
    return configuration().getPlacementINI();
}

void WinFiles::bitmapFileToClipboard(const std::wstring& path) {
    const OwnerWindow owner;
    const OpenedClipboard clipboard(owner.get());
    EmptyClipboard();
    if (path.empty())
        return;
    GdiObject<HBITMAP> bitmap(static_cast<HBITMAP>(
        LoadImageW(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE | LR_CREATEDIBSECTION)));
    if (!bitmap || !SetClipboardData(CF_BITMAP, bitmap.get()))
        throw RuntimeError(kInvalidPicture);
    static_cast<void>(bitmap.release());  // the clipboard's from now on
}

}  // namespace kv::win32
