// Message boxes that appear during a self-check, where no user is expected to answer them.
#pragma once

#include "host/selfcheck/Report.h"

namespace kv::host {

/// Reports each message box of this process as a failure, with its text, and closes it.
void closeMessageBoxes(Report& report);

}  // namespace kv::host
