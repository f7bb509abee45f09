// What screen readers say of the control's parts.
#pragma once

#include "control/Bandscope.h"

namespace kv::control {

/// Names the parts, once; `scope` must outlive them.
void nameParts(Bandscope& scope);

}  // namespace kv::control
