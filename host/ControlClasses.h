// Where the control and its channel records come from.
#pragma once

#include "host/Com.h"

namespace kv::host {

/// The class factories of the control and of FreqSlot. A host that makes many records asks for the factory once and
/// not for each record.
struct ControlClasses {
    ComPtr<IClassFactory> control;
    ComPtr<IClassFactory> freqSlot;
};

/// By ProgID, as any host does; when the control is not registered, from kvBandscope.ocx beside the program, so that a
/// copied folder works at once. Throws Failure with kExitControlMissing.
[[nodiscard]] ControlClasses findControlClasses();

}  // namespace kv::host
