// Two picture boxes, one inside the other, as a bitmap file.
#pragma once

#include <string>

#include "formenv/FileServices.h"
#include "formenv/PictureBox.h"
#include "util/ErrHand.h"

namespace kv::forms {

/// Writes the file; reports errors and the lines of the development log.
struct ExportServices {
    formenv::FileServices& files;
    util::ErrorReporter& errors;
};

/// Writes P1 with P2 over it, at P2's place inside P1 and clipped to it, in P1's size in pixels. False when any step
/// failed. The log then has the step's text; no message is shown and an existing file is unchanged.
[[nodiscard]] bool ExportToBMP2(formenv::PictureBox& P1, formenv::PictureBox& P2, const std::wstring& sFile,
                                const ExportServices& services);

}  // namespace kv::forms
