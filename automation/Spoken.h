// What screen readers say of the control's parts.
#pragma once

#include "control/Bandscope.h"

namespace kv::automation {

/// Names the parts, once; `scope` must outlive them.
void nameParts(control::Bandscope& scope);

}  // namespace kv::automation
