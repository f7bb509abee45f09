#include "host/Console.h"

#include <windows.h>

namespace kv::host {

namespace {

std::wstring withCarriageReturns(const std::wstring& text) {
    std::wstring result;
    for (const wchar_t c : text) {
        if (c == L'\n') {
            result += L'\r';
        }
        result += c;
    }
    return result;
}

bool writeTo(HANDLE stream, const std::wstring& text) {
    DWORD written = 0;
    DWORD mode = 0;
    if (stream == nullptr || stream == INVALID_HANDLE_VALUE) {
        return false;
    }
    if (GetConsoleMode(stream, &mode)) {
        return WriteConsoleW(stream, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != FALSE;
    }
    const std::string bytes = utf8Of(text);
    return WriteFile(stream, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE;
}

bool writeToParentsConsole(const std::wstring& text) {
    if (!AttachConsole(ATTACH_PARENT_PROCESS)) {
        return false;
    }
    bool done = false;
    const HANDLE console = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                       nullptr, OPEN_EXISTING, 0, nullptr);
    if (console != INVALID_HANDLE_VALUE) {
        // The command interpreter does not wait for a program with windows and has already written its prompt.
        done = writeTo(console, L"\r\n" + text);
        CloseHandle(console);
    }
    FreeConsole();
    return done;
}

bool write(DWORD stream, const std::wstring& text) {
    const std::wstring lines = withCarriageReturns(text);
    return writeTo(GetStdHandle(stream), lines) || writeToParentsConsole(lines);
}

}  // namespace

bool writeOutput(const std::wstring& text) {
    return write(STD_OUTPUT_HANDLE, text);
}

bool writeError(const std::wstring& text) {
    return write(STD_ERROR_HANDLE, text);
}

std::string utf8Of(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    std::string bytes(
        static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr)),
        '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), static_cast<int>(bytes.size()), nullptr,
                        nullptr);
    return bytes;
}

}  // namespace kv::host
