// Dialogs and messages for the user.
#pragma once

#include <string>

#include "host/Com.h"

namespace kv::host {

/// The plan to open; empty when the user cancels.
[[nodiscard]] std::wstring askForPlan(HWND owner);

/// The file to save the picture in; empty when the user cancels.
[[nodiscard]] std::wstring askForPicture(HWND owner);

/// The CSV file to save hits in; empty when the user cancels.
[[nodiscard]] std::wstring askForHits(HWND owner);

/// Shows a message box and waits until the user closes it. A failure with a list is shown in a dialog from which the
/// list can be copied.
void showFailure(HWND owner, const Failure& failure);

/// Writes a message to standard error, or to the console that the program was started from.
void writeFailure(const Failure& failure);

/// Writes the description of the options to standard output or to the console. Without either it is shown in a message
/// box.
void showUsage();

}  // namespace kv::host
