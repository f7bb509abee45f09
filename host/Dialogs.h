// What the user is asked and told.
#pragma once

#include <string>

#include "host/Com.h"

namespace kv::host {

/// The plan to open; empty when the user would rather not.
[[nodiscard]] std::wstring askForPlan(HWND owner);

/// Where to save the picture; empty when the user would rather not.
[[nodiscard]] std::wstring askForPicture(HWND owner);

/// A message that waits for its button.
void showFailure(HWND owner, const Failure& failure);

/// A message to standard error, or to the console that the program was started from.
void writeFailure(const Failure& failure);

}  // namespace kv::host
