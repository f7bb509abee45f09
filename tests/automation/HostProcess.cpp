#include "tests/automation/HostProcess.h"

#include <commctrl.h>

#include <gmock/gmock.h>

#include <algorithm>

#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Module.h"
#include "tests/automation/Picture.h"
#include "tests/win32/TempFolder.h"

namespace kv::test {

namespace {

constexpr DWORD kPatience = 60000;  // milliseconds

struct WindowSearch {
    const std::function<bool(HWND)>& fits;
    HWND found = nullptr;
};

BOOL CALLBACK tryWindow(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<WindowSearch*>(parameter);
    if (search.fits(window)) {
        search.found = window;
    }
    return search.found == nullptr;
}

PROCESS_INFORMATION start(std::wstring command, HANDLE output, HANDLE error) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    if (output) {
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = output;
        startup.hStdError = error;
    }
    PROCESS_INFORMATION process{};
    EXPECT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, output != nullptr, 0, nullptr, nullptr,
                               &startup, &process));
    CloseHandle(process.hThread);
    return process;
}

HANDLE inheritedFile(const std::wstring& path) {
    SECURITY_ATTRIBUTES security{sizeof security, nullptr, TRUE};
    return CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &security, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
}

DWORD waitForEnd(HANDLE process) {
    DWORD code = ~0U;
    if (WaitForSingleObject(process, kPatience) != WAIT_OBJECT_0) {
        ADD_FAILURE() << "the host does not end";
        TerminateProcess(process, 99);
    }
    GetExitCodeProcess(process, &code);
    return code;
}

/// Memory of another process.
class RemoteText {
  public:
    explicit RemoteText(DWORD id)
        : process_(OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id)),
          memory_(VirtualAllocEx(process_, nullptr, kSize, MEM_COMMIT, PAGE_READWRITE)) {}
    RemoteText(const RemoteText&) = delete;
    RemoteText& operator=(const RemoteText&) = delete;
    ~RemoteText() {
        VirtualFreeEx(process_, memory_, 0, MEM_RELEASE);
        CloseHandle(process_);
    }
    [[nodiscard]] LPARAM address() const noexcept { return reinterpret_cast<LPARAM>(memory_); }
    [[nodiscard]] std::wstring text() const {
        std::wstring result(kSize / sizeof(wchar_t), L'\0');
        ReadProcessMemory(process_, memory_, result.data(), kSize, nullptr);
        return result.c_str();
    }

  private:
    static constexpr SIZE_T kSize = 4096;
    HANDLE process_;
    void* memory_;
};

}  // namespace

HWND findWindow(DWORD process, const std::function<bool(HWND)>& fits) {
    const std::function<bool(HWND)> isOfProcess = [&](HWND window) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        return owner == process && IsWindowVisible(window) && fits(window);
    };
    WindowSearch search{isOfProcess};
    EnumWindows(&tryWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND windowOfClass(DWORD process, const std::wstring& name) {
    return findWindow(process, [&](HWND window) { return windowClass(window) == name; });
}

HWND findInner(HWND parent, const std::function<bool(HWND)>& fits) {
    WindowSearch search{fits};
    EnumChildWindows(parent, &tryWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

bool waitFor(const std::function<bool()>& happened) {
    const DWORD begin = GetTickCount();
    while (GetTickCount() - begin < kPatience) {
        if (happened())
            return true;
        Sleep(20);
    }
    return false;
}

std::wstring hostProgram() {
    const std::wstring module = modulePath();
    return module.substr(0, module.find_last_of(L'\\') + 1) + L"BandscopeHost.exe";
}

std::wstring samplePlan(const std::wstring& name) {
    const std::string root = KV_SOURCE_DIR;
    std::wstring path = L"Z:" + std::wstring(root.begin(), root.end()) + L"/examples/plans/" + name;
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

HostRun::HostRun(const std::wstring& arguments) {
    const TempFile outputFile(L"host output.txt");
    const TempFile errorFile(L"host error.txt");
    const HANDLE outputHandle = inheritedFile(outputFile.path());
    const HANDLE errorHandle = inheritedFile(errorFile.path());
    const PROCESS_INFORMATION process = start(L"\"" + hostProgram() + L"\" " + arguments, outputHandle, errorHandle);
    CloseHandle(outputHandle);
    CloseHandle(errorHandle);
    code = waitForEnd(process.hProcess);
    CloseHandle(process.hProcess);
    output = contentOf(outputFile.path());
    error = contentOf(errorFile.path());
}

HostProcess::HostProcess(const std::wstring& arguments) {
    const PROCESS_INFORMATION process = start(L"\"" + hostProgram() + L"\" " + arguments, nullptr, nullptr);
    process_ = process.hProcess;
    id_ = process.dwProcessId;
    EXPECT_TRUE(waitFor([this] { return (main_ = windowOfClass(L"BandscopeHost")) != nullptr; }));
}

HostProcess::~HostProcess() {
    if (WaitForSingleObject(process_, 0) != WAIT_OBJECT_0)
        TerminateProcess(process_, 99);
    CloseHandle(process_);
}

HWND HostProcess::windowOfClass(const wchar_t* name) const {
    return test::windowOfClass(id_, name);
}

std::wstring HostProcess::title() const {
    return windowText(main_);
}

bool HostProcess::showsPlan(const std::wstring& name) const {
    // While the products are computed, the counts say nothing about channels.
    return waitFor([&] {
        return title() == name + L" - BandscopeHost" && status(2).find(L"transmitter") != std::wstring::npos &&
               status(0).find(L"Computing") == std::wstring::npos;
    });
}

DWORD HostProcess::close() {
    PostMessageW(main_, WM_CLOSE, 0, 0);
    return waitForEnd(process_);
}

void HostProcess::chooseFromFileMenu(wchar_t key) const {
    // A menu is not opened, or is closed at once, while the focus moves, for example after a dialog.
    constexpr DWORD kOpening = 1000;  // milliseconds
    HWND menu = nullptr;
    DWORD posted = GetTickCount() - kOpening;
    EXPECT_TRUE(waitFor([&] {
        if (GetTickCount() - posted >= kOpening) {
            PostMessageW(main_, WM_SYSCOMMAND, SC_KEYMENU, L'f');
            posted = GetTickCount();
        }
        return (menu = windowOfClass(L"#32768")) != nullptr;
    }));
    PostMessageW(menu, WM_CHAR, key, 1);
    EXPECT_TRUE(waitFor([this] { return windowOfClass(L"#32768") == nullptr; }));
}

std::wstring HostProcess::status(int part) const {
    const HWND bar = FindWindowExW(main_, nullptr, STATUSCLASSNAMEW, nullptr);
    const RemoteText text(id_);
    SendMessageW(bar, SB_GETTEXTW, static_cast<WPARAM>(part), text.address());
    return text.text();
}

bool HostProcess::waitForStatus(const std::wstring& text) const {
    const bool came = waitFor([&] { return status(0) == text; });
    EXPECT_TRUE(came) << testing::PrintToString(status(0));
    return came;
}

HWND HostProcess::dialog() const {
    return windowOfClass(L"#32770");
}

HWND HostProcess::waitForDialog() const {
    HWND found = nullptr;
    EXPECT_TRUE(waitFor([&] { return (found = dialog()) != nullptr; }));
    return found;
}

void HostProcess::closeDialog(HWND shown, int button) const {
    PostMessageW(shown, WM_COMMAND, static_cast<WPARAM>(button), 0);
    EXPECT_TRUE(waitFor([&] { return !IsWindow(shown); }));
}

std::vector<std::wstring> linesOf(const std::wstring& text) {
    std::vector<std::wstring> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(L'\n', begin), text.size());
        std::wstring line = text.substr(begin, end - begin);
        if (!line.empty() && line.back() == L'\r')
            line.pop_back();
        lines.push_back(line);
        begin = end + 1;
    }
    return lines;
}

std::wstring textOf(HWND window) {
    std::wstring text(100000, L'\0');
    text.resize(
        static_cast<std::size_t>(SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

}  // namespace kv::test
