#include "host/Dialogs.h"

#include <commdlg.h>

#include <array>

namespace kv::host {

namespace {

OPENFILENAMEW dialog(HWND owner, std::array<wchar_t, 32768>& file, const wchar_t* filter, const wchar_t* extension) {
    OPENFILENAMEW result{};
    result.lStructSize = sizeof result;
    result.hwndOwner = owner;
    result.lpstrFile = file.data();
    result.nMaxFile = static_cast<DWORD>(file.size());
    result.lpstrFilter = filter;
    result.lpstrDefExt = extension;
    return result;
}

}  // namespace

std::string utf8Of(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    std::string bytes(
        static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr)),
        '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                        nullptr);
    return bytes;
}

std::wstring askForPlan(HWND owner) {
    std::array<wchar_t, 32768> file{};
    OPENFILENAMEW question = dialog(owner, file, L"Channel plans (*.csv)\0*.csv\0All files\0*.*\0", L"csv");
    question.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    return GetOpenFileNameW(&question) ? file.data() : L"";
}

std::wstring askForPicture(HWND owner) {
    std::array<wchar_t, 32768> file{};
    OPENFILENAMEW question = dialog(
        owner, file,
        L"PNG pictures (*.png)\0*.png\0Bitmaps (*.bmp)\0*.bmp\0Enhanced metafiles, vectors (*.emf)\0*.emf\0", L"png");
    question.Flags = OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR;
    return GetSaveFileNameW(&question) ? file.data() : L"";
}

std::wstring askForHits(HWND owner) {
    std::array<wchar_t, 32768> file{};
    OPENFILENAMEW question = dialog(owner, file, L"Comma-separated values (*.csv)\0*.csv\0", L"csv");
    question.Flags = OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR;
    return GetSaveFileNameW(&question) ? file.data() : L"";
}

void showFailure(HWND owner, const Failure& failure) {
    MessageBoxW(owner, failure.text.c_str(), L"BandscopeHost", MB_OK | MB_ICONWARNING);
}

void writeFailure(const Failure& failure) {
    const std::wstring line = L"BandscopeHost: " + failure.text + L"\r\n";
    DWORD written = 0;
    // A program with windows has a standard error stream only if its caller has passed one to it.
    const HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
    const std::string bytes = utf8Of(line);
    if (error != nullptr && error != INVALID_HANDLE_VALUE &&
        WriteFile(error, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr)) {
        return;
    }
    if (AttachConsole(ATTACH_PARENT_PROCESS)) {
        const HANDLE console = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                           nullptr, OPEN_EXISTING, 0, nullptr);
        if (console != INVALID_HANDLE_VALUE) {
            WriteConsoleW(console, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
            CloseHandle(console);
        }
        FreeConsole();
    }
}

}  // namespace kv::host
