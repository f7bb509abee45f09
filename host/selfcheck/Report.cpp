#include "host/selfcheck/Report.h"

#include <windows.h>

#include <cwchar>

#include "host/Com.h"
#include "host/Console.h"
#include "host/selfcheck/Privacy.h"

namespace kv::host {

namespace {

constexpr std::array<const wchar_t*, 4> kVerdicts = {L"passed", L"differs", L"failed", L"not possible here"};
constexpr std::size_t kVerdictWidth = 19;
constexpr std::size_t kNameWidth = 26;
constexpr wchar_t kLineEnd[] = L"\r\n";

std::wstring fullPath(const std::wstring& file) {
    std::array<wchar_t, 32768> path{};
    const DWORD length = GetFullPathNameW(file.c_str(), static_cast<DWORD>(path.size()), path.data(), nullptr);
    return length == 0 || length >= path.size() ? file : std::wstring(path.data(), length);
}

/// With the byte order mark that makes every version of Notepad read it as UTF-8.
bool writeText(const std::wstring& file, const std::wstring& text) {
    // On systems with owners and modes below this attribute, the superuser could open the file all the same.
    const DWORD attributes = GetFileAttributesW(file.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return false;
    }
    const HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    const std::string bytes = utf8Of(L"\xFEFF" + text);
    DWORD written = 0;
    const bool complete =
        WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) && written == bytes.size();
    CloseHandle(handle);
    return complete;
}

/// Errors of the system come in several lines.
std::wstring onOneLine(std::wstring text) {
    for (wchar_t& c : text) {
        c = c < L' ' ? L' ' : c;
    }
    return text;
}

}  // namespace

Report::Report(const std::wstring& file) : file_(fullPath(file)) {
    if (!writeText(file_, L"")) {
        throw Failure{kExitSaveFailed, L"The report cannot be written to \"" + file_ +
                                           L"\". Its folder must exist and be writable, and the file must be neither "
                                           L"read-only nor in use."};
    }
}

void Report::section(const std::wstring& title) {
    const std::lock_guard lock(mutex_);
    lines_.emplace_back();
    lines_.push_back(title);
    lines_.emplace_back(title.size(), L'-');
}

void Report::addLine(const std::wstring& first, const std::wstring& second, std::size_t width) {
    std::wstring line = first;
    line.resize(first.size() < width ? width : first.size() + 1, L' ');
    lines_.push_back(withoutNames(line + onOneLine(second)));
}

void Report::fact(const std::wstring& name, const std::wstring& value) {
    const std::lock_guard lock(mutex_);
    addLine(name, value, kNameWidth);
}

void Report::add(Verdict verdict, const std::wstring& what, const std::wstring& values) {
    const std::lock_guard lock(mutex_);
    const auto index = static_cast<std::size_t>(verdict);
    ++counts_[index];
    addLine(kVerdicts[index], values.empty() ? what : what + L": " + values, kVerdictWidth);
}

void Report::expect(bool good, const std::wstring& what, const std::wstring& values) {
    add(good ? Verdict::kPassed : Verdict::kFailed, what, values);
}

std::wstring Report::text(const std::wstring& state) const {
    std::wstring text = L"kvBandscope self-check\r\n\r\n" + state + kLineEnd + L"Result:";
    for (std::size_t i = 0; i < counts_.size(); ++i) {
        text += (i == 0 ? L" " : L", ") + std::to_wstring(counts_[i]) + L" " + kVerdicts[i];
    }
    text += kLineEnd;
    for (const std::wstring& line : lines_) {
        text += line + kLineEnd;
    }
    return text;
}

void Report::write(const std::wstring& state) {
    const std::lock_guard lock(mutex_);
    if (!writeText(file_, text(state))) {
        throw Failure{kExitSaveFailed, L"The report \"" + file_ + L"\" cannot be written any more."};
    }
}

bool Report::allPassed() {
    const std::lock_guard lock(mutex_);
    return counts_[static_cast<std::size_t>(Verdict::kDiffers)] == 0 &&
           counts_[static_cast<std::size_t>(Verdict::kFailed)] == 0;
}

std::wstring Report::beside(const std::wstring& ending) const {
    const std::size_t point = file_.find_last_of(L".\\/:");
    const bool hasExtension = point != std::wstring::npos && file_[point] == L'.';
    return (hasExtension ? file_.substr(0, point) : file_) + ending;
}

std::wstring nameOf(const std::wstring& path) {
    return path.substr(path.find_last_of(L"\\/") + 1);
}

std::wstring folderOf(const std::wstring& path) {
    return path.substr(0, path.find_last_of(L"\\/") + 1);
}

std::wstring hexOf(unsigned long number) {
    std::array<wchar_t, 16> text{};
    std::swprintf(text.data(), text.size(), L"0x%08lX", number);
    return text.data();
}

}  // namespace kv::host
