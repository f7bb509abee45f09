#include "win32/WinFiles.h"

#include <atomic>
#include <cwchar>
#include <iterator>
#include <string>

#include "util/RuntimeError.h"
#include "win32/Clipboard.h"
#include "win32/FileHandle.h"
#include "win32/Gdi.h"
#include "win32/WinSystem.h"

namespace kv::win32 {

using util::RuntimeError;
using util::error_number::kInvalidPicture;
using util::error_number::kPathFileAccess;

namespace {

constexpr int kNameTries = 100;

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
    const OpenedClipboard clipboard;
    EmptyClipboard();
}

void WinFiles::bitmapFileToClipboard(const std::wstring& path) {
    // The bitmap must be compatible with the screen. Bits in the memory of this process could not be passed to another.
    GdiObject<HBITMAP> bitmap(
        static_cast<HBITMAP>(LoadImageW(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE)));
    if (!bitmap)
        throw RuntimeError(kInvalidPicture);
    const OpenedClipboard clipboard;
    EmptyClipboard();
    if (!SetClipboardData(CF_BITMAP, bitmap.get()))
        throw RuntimeError(kInvalidPicture);
    static_cast<void>(bitmap.release());  // the clipboard owns it now
}

}  // namespace kv::win32
