// The self-check: the program goes through what the control can do on this machine, and writes a report.
#pragma once

#include "host/Com.h"
#include "host/plan/CommandLine.h"

namespace kv::host {

/// Returns kExitOk if nothing differs or fails, otherwise kExitCheckFailed. OLE must be initialized. Throws Failure if
/// the report cannot be written.
[[nodiscard]] ExitCode runSelfCheck(const SelfCheckOptions& options);

}  // namespace kv::host
