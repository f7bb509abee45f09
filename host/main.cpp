// BandscopeHost: opens a channel plan, computes its intermodulation products and shows both in the kvBandscope control.
// It uses the control through its automation interface only.
//
// Exit codes: 0 success; 1 any other failure; 2 the command line is wrong or would give too many products or hits; 3
// the plan cannot be read; 4 the control is missing; 5 the picture, the list of hits or the report cannot be saved; 6
// the self-check has found a difference or a failure.
#include <windows.h>

#include <ole2.h>
#include <shellapi.h>

#include <algorithm>

#include "host/Dialogs.h"
#include "host/MainWindow.h"
#include "host/selfcheck/SelfCheck.h"

namespace {

using kv::host::Failure;

/// OLE is initialized while this object exists.
class Ole {
  public:
    Ole() { kv::host::check(OleInitialize(nullptr), L"Initializing OLE"); }
    Ole(const Ole&) = delete;
    Ole& operator=(const Ole&) = delete;
    ~Ole() { OleUninitialize(); }
};

std::vector<std::wstring> arguments() {
    int count = 0;
    wchar_t** const values = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::wstring> result;
    for (int i = 1; values != nullptr && i < count; ++i) {
        result.emplace_back(values[i]);
    }
    LocalFree(values);
    return result;
}

int hostMain(const std::vector<std::wstring>& options) {
    try {
        const kv::host::CommandLine line = kv::host::parseCommandLine(options);
        if (line.help) {
            kv::host::showUsage();
            return kv::host::kExitOk;
        }
        const Ole ole;
        if (line.selfCheck) {
            return kv::host::runSelfCheck(*line.selfCheck);
        }
        kv::host::MainWindow window(line);
        return window.run();
    } catch (const kv::host::UsageError& error) {
        throw Failure{kv::host::kExitUsage, error.text + L"\n\n" + kv::host::kUsage};
    } catch (const std::exception&) {
        throw Failure{kv::host::kExitOther, L"There is not enough memory."};
    }
}

/// True when messages are written to standard error instead of being shown.
bool isUnattended(const std::vector<std::wstring>& options) {
    const auto isOne = [](const std::wstring& option) { return option == L"--quit" || option == L"--self-check"; };
    return std::any_of(options.begin(), options.end(), isOne);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    const std::vector<std::wstring> options = arguments();
    try {
        return hostMain(options);
    } catch (const Failure& failure) {
        if (isUnattended(options)) {
            kv::host::writeFailure(failure);
        } else {
            kv::host::showFailure(nullptr, failure);
        }
        return failure.code;
    }
}
