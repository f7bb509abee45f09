// The heading of a printed page.
#pragma once

#include <windows.h>

#include "host/plan/PageHeading.h"

namespace kv::host {

/// Draws the heading on a device and returns the place of the picture below it, in device units.
[[nodiscard]] RECT drawHeading(HDC dc, const PageHeading& heading);

}  // namespace kv::host
