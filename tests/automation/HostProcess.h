// The sample host in a process of its own, operated from outside.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace kv::test {

/// The first line of a plan with the columns that it must have.
inline const std::string kPlanHeader = "kind,key,frequency,bandwidth\n";

/// Asks until the answer is yes, for at most a minute.
bool waitFor(const std::function<bool()>& happened);
/// A visible window of a process for which `fits` is true; null without one.
[[nodiscard]] HWND findWindow(DWORD process, const std::function<bool(HWND)>& fits);
[[nodiscard]] HWND windowOfClass(DWORD process, const std::wstring& name);
/// A window inside of `parent`; null without one.
[[nodiscard]] HWND findInner(HWND parent, const std::function<bool(HWND)>& fits);

[[nodiscard]] std::wstring hostProgram();
[[nodiscard]] std::wstring samplePlan(const std::wstring& name);

/// Runs the host with its output in files, and waits until it ends.
struct HostRun {
    explicit HostRun(const std::wstring& arguments);

    DWORD code = ~0U;
    std::string output;
    std::string error;
};

/// A host whose window is open. Its settings are in the file that the environment variable names at the start.
class HostProcess {
  public:
    explicit HostProcess(const std::wstring& arguments);
    ~HostProcess();
    HostProcess(const HostProcess&) = delete;
    HostProcess& operator=(const HostProcess&) = delete;

    [[nodiscard]] HWND main() const noexcept { return main_; }
    [[nodiscard]] std::wstring title() const;
    /// Waits for a plan's name in the title, and until the plan is open.
    [[nodiscard]] bool showsPlan(const std::wstring& name) const;
    /// Closes the window. The exit code.
    DWORD close();

    void choose(int command) const { SendMessageW(main_, WM_COMMAND, static_cast<WPARAM>(command), 0); }
    void post(int command) const { PostMessageW(main_, WM_COMMAND, static_cast<WPARAM>(command), 0); }
    /// Opens the File menu and presses the key of an item.
    void chooseFromFileMenu(wchar_t key) const;
    /// A part of the status bar: the message, the range, the counts.
    [[nodiscard]] std::wstring status(int part) const;
    [[nodiscard]] bool waitForStatus(const std::wstring& text) const;

    /// Waits for a dialog or message box.
    [[nodiscard]] HWND waitForDialog() const;
    [[nodiscard]] HWND dialog() const;
    void closeDialog(HWND shown, int button = IDOK) const;

    /// The visible window of this class, null without one.
    [[nodiscard]] HWND windowOfClass(const wchar_t* name) const;

  private:
    HANDLE process_ = nullptr;
    DWORD id_ = 0;
    HWND main_ = nullptr;
};

[[nodiscard]] std::vector<std::wstring> linesOf(const std::wstring& text);
/// The text of a window of any process.
[[nodiscard]] std::wstring textOf(HWND window);

}  // namespace kv::test
