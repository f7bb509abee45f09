// The class factories of the control and of its channel records.
#pragma once

#include "host/Com.h"

namespace kv::host {

/// The class factories of the control and of FreqSlot. A host that creates many records gets the factory once, not
/// for each record.
struct ControlClasses {
    ComPtr<IClassFactory> control;
    ComPtr<IClassFactory> freqSlot;

    [[nodiscard]] bool complete() const noexcept { return control != nullptr && freqSlot != nullptr; }
};

/// The classes that are registered for this bitness; null pointers for those that cannot be created.
[[nodiscard]] ControlClasses registeredClasses();

/// The classes of a module, which needs no registration. Null pointers if it cannot be loaded.
[[nodiscard]] ControlClasses classesOfModule(const std::wstring& file);

/// Finds the classes by ProgID, as any host does. When the control is not registered, they come from kvBandscope.ocx in
/// the program's folder, so that a copied folder works without registration. Throws Failure with kExitControlMissing.
[[nodiscard]] ControlClasses findControlClasses();

}  // namespace kv::host
