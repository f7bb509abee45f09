// A program started by a test.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace kv::test {

class ChildProcess {
  public:
    /// `command` as on a command line. If the program does not start, the test fails.
    explicit ChildProcess(std::wstring command) {
        STARTUPINFOW start{};
        start.cb = sizeof start;
        PROCESS_INFORMATION process{};
        if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process)) {
            ADD_FAILURE() << "the program does not start, error " << GetLastError();
            return;
        }
        CloseHandle(process.hThread);
        process_ = process.hProcess;
        id_ = process.dwProcessId;
    }
    ~ChildProcess() {
        if (!process_)
            return;
        if (WaitForSingleObject(process_, 0) != WAIT_OBJECT_0)
            TerminateProcess(process_, 99);
        CloseHandle(process_);
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] DWORD id() const noexcept { return id_; }
    /// The exit code; a high number when the program did not start, and 98 when it does not end.
    [[nodiscard]] DWORD wait() const noexcept {
        DWORD code = ~0U;
        if (!process_)
            return code;
        if (WaitForSingleObject(process_, 60000) != WAIT_OBJECT_0)
            return 98;
        GetExitCodeProcess(process_, &code);
        return code;
    }

  private:
    HANDLE process_ = nullptr;
    DWORD id_ = 0;
};

}  // namespace kv::test
