// The class factories of the control and of its channel records.
#pragma once

#include "host/Com.h"

namespace kv::host {

/// The class factories of the control and of FreqSlot. A host that creates many records gets the factory once, not
/// for each record.
struct ControlClasses {
    ComPtr<IClassFactory> control;
    ComPtr<IClassFactory> freqSlot;
};

/// Finds the classes by ProgID, as any host does. When the control is not registered, they come from kvBandscope.ocx in
/// the program's folder, so that a copied folder works without registration. Throws Failure with kExitControlMissing.
[[nodiscard]] ControlClasses findControlClasses();

}  // namespace kv::host
