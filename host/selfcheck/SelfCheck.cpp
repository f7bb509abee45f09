#include "host/selfcheck/SelfCheck.h"

#include <array>
#include <cstdint>

#include "host/selfcheck/MessageBoxes.h"
#include "host/selfcheck/Progress.h"
#include "host/selfcheck/Steps.h"
#include "host/selfcheck/Watchdog.h"

namespace kv::host {

namespace {

using StepFunction = void (*)(Context&);

struct Step {
    const wchar_t* name;
    StepFunction run;
    bool needsControl;
};

constexpr std::array kSteps = {
    Step{L"System", &noteSystem, false},
    Step{L"Monitors", &noteMonitors, false},
    Step{L"Files", &noteFiles, false},
    Step{L"Registration", &checkRegistration, false},
    Step{L"Creation", &checkCreation, false},
    Step{L"Pictures of the plans", &checkPlans, true},
    Step{L"Members", &checkMembers, true},
    Step{L"Window", &checkWindow, true},
    Step{L"Sizes", &checkSizes, true},
    Step{L"Hide and show", &checkHideAndShow, true},
    Step{L"Another parent window", &checkNewParent, true},
    Step{L"Resolution", &checkResolution, true},
    Step{L"Picture files", &checkPictureFiles, true},
    Step{L"Metafile", &checkMetafile, true},
    Step{L"Clipboard", &checkClipboard, true},
    Step{L"Keys", &checkKeys, true},
    Step{L"Wheel", &checkWheel, true},
    Step{L"Redraws", &checkRedraws, true},
};

constexpr wchar_t kEndedEarly[] = L"The check ended early, in the step ";

std::wstring programFolder() {
    std::array<wchar_t, 32768> path{};
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return folderOf(std::wstring(path.data(), length));
}

/// Ends the process when a step hangs or crashes, with a complete report.
[[noreturn]] void endEarly(Report& report, Undo& undo, const std::wstring& step, const std::wstring& why) {
    try {
        report.failed(step, why);
        report.write(kEndedEarly + step + L": " + why);
    } catch (...) {
        // The report of the steps before is in the file.
    }
    undo.run();
    TerminateProcess(GetCurrentProcess(), kExitCheckFailed);
    std::abort();
}

/// For the filter of crashes, which gets no context of its own.
struct Running {
    Report* report = nullptr;
    Undo* undo = nullptr;
    const wchar_t* step = L"";
};
Running running;

std::wstring placeOf(const void* address) {
    HMODULE module = nullptr;
    std::array<wchar_t, 1024> path{};
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const wchar_t*>(address), &module);
    if (module == nullptr || GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())) == 0) {
        return L"outside of all modules";
    }
    const auto offset = reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(module);
    return nameOf(path.data()) + L"+" + hexOf(static_cast<unsigned long>(offset));
}

LONG WINAPI crashed(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    endEarly(*running.report, *running.undo, running.step,
             L"crashed with exception " + hexOf(record.ExceptionCode) + L" at " + placeOf(record.ExceptionAddress));
}

void runStep(Context& context, const Step& step) {
    if (step.needsControl && !context.classes) {
        context.report.notPossible(step.name, L"there is no control");
        return;
    }
    try {
        step.run(context);
    } catch (const Failure& failure) {
        context.report.failed(step.name, failure.text);
    } catch (const std::exception& error) {
        const std::string what = error.what();
        context.report.failed(step.name, L"exception " + std::wstring(what.begin(), what.end()));
    }
}

/// How long the steps took, as a part of the report.
class Times {
  public:
    void add(const std::wstring& step, DWORD milliseconds) {
        lines_.emplace_back(step, std::to_wstring(milliseconds) + L" ms");
    }
    void report(Report& report) const {
        report.section(L"Time of each step");
        for (const auto& [step, time] : lines_) {
            report.fact(step, time);
        }
    }

  private:
    std::vector<std::pair<std::wstring, std::wstring>> lines_;
};

void runSteps(Context& context, Watchdog& watchdog) {
    Times times;
    const Progress progress;
    for (const Step& step : kSteps) {
        if (step.run == &checkPlans) {
            context.report.section(L"Checks of the control");
        } else if (!step.needsControl) {
            context.report.section(step.name);
        }
        context.report.write(L"The check is running, or was ended from outside, in the step " +
                             std::wstring(step.name) + L".");
        running.step = step.name;
        progress.show(step.name);
        const DWORD start = GetTickCount();
        watchdog.begin(step.name);
        runStep(context, step);
        watchdog.end();
        times.add(step.name, GetTickCount() - start);
    }
    times.report(context.report);
}

}  // namespace

ExitCode runSelfCheck(const SelfCheckOptions& options) {
    Report report(options.report);
    Undo undo;
    Context context{report, undo, options, programFolder(), {}, {}};
    running = {&report, &undo, L"Start"};
    const auto earlier = SetUnhandledExceptionFilter(&crashed);
    undo.add([earlier] { SetUnhandledExceptionFilter(earlier); });
    // The control writes its own log into the folder of the program when it does not find its family's programs.
    keepFile(undo, context.programFolder + L"KVTecSup.Txt");
    context.workFolder = enterWorkFolder(undo);
    {
        const std::wstring limit = std::to_wstring(options.limitSeconds);
        Watchdog watchdog(
            std::chrono::seconds(options.limitSeconds),
            [&](const std::wstring& step) { endEarly(report, undo, step, L"hung: no end after " + limit + L" s"); },
            [&] { closeMessageBoxes(report); });
        runSteps(context, watchdog);
    }
    context.classes.reset();
    undo.run();
    report.write(L"The check is complete.");
    return report.allPassed() ? kExitOk : kExitCheckFailed;
}

}  // namespace kv::host
