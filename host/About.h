// Which host and which control run.
#pragma once

#include <string>

#include "host/Com.h"

namespace kv::host {

/// Of a program file, from its version resource: "1.0.0.0"; "unknown" if it has none.
[[nodiscard]] std::wstring versionOf(const std::wstring& file);

/// The path of the module with the code of an object.
[[nodiscard]] std::wstring moduleOf(IUnknown* object);

/// Shows the versions of the program and of the control's module.
void showAbout(HWND owner, IUnknown* control);

}  // namespace kv::host
