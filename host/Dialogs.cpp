#include "host/Dialogs.h"

#include <commdlg.h>

#include <array>
#include <vector>

#include "host/Console.h"
#include "host/TextDialog.h"
#include "host/plan/CommandLine.h"
#include "host/plan/ConsoleUsage.h"
#include "host/resource.h"

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
    if (failure.list.empty()) {
        MessageBoxW(owner, failure.text.c_str(), L"BandscopeHost", MB_OK | MB_ICONWARNING);
        return;
    }
    std::wstring text;
    for (const std::wstring& line : failure.list) {
        text += (text.empty() ? L"" : L"\r\n") + line;
    }
    showTextDialog(owner, IDD_PLAN_ERRORS, failure.text, text);
}

void writeFailure(const Failure& failure) {
    std::wstring text;
    for (const std::wstring& line : failure.list.empty() ? std::vector{failure.text} : failure.list) {
        text += L"BandscopeHost: " + line + L"\n";
    }
    writeError(text);
}

void showUsage() {
    if (!writeOutput(consoleUsage(kUsage))) {
        MessageBoxW(nullptr, kUsage, L"BandscopeHost", MB_OK | MB_ICONINFORMATION);
    }
}

}  // namespace kv::host
