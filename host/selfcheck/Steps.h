// The steps of the self-check. Each one adds lines to the report and is independent of the others; a step that cannot
// go on throws Failure.
#pragma once

#include <optional>
#include <string>

#include "host/ControlClasses.h"
#include "host/plan/CommandLine.h"
#include "host/selfcheck/Report.h"
#include "host/selfcheck/Undo.h"

namespace kv::host {

struct Context {
    Report& report;
    Undo& undo;
    SelfCheckOptions options;
    std::wstring programFolder;  ///< with a backslash at its end, like the next
    std::wstring workFolder;     ///< for temporary files; deleted at the end
    /// The control beside the program, or the registered one if there is none. Set by the step that creates it; empty
    /// when there is no control.
    std::optional<ControlClasses> classes;
};

// About the machine; these need no control.
void noteSystem(Context& context);
void noteMonitors(Context& context);
void noteFiles(Context& context);
void checkRegistration(Context& context);
/// Sets Context::classes.
void checkCreation(Context& context);

// These need the control.
void checkPlans(Context& context);
void checkMembers(Context& context);
void checkWindow(Context& context);
void checkSizes(Context& context);
void checkHideAndShow(Context& context);
void checkNewParent(Context& context);
void checkResolution(Context& context);
void checkPictureFiles(Context& context);
void checkMetafile(Context& context);
void checkClipboard(Context& context);
void checkKeys(Context& context);
void checkWheel(Context& context);
void checkRedraws(Context& context);

}  // namespace kv::host
