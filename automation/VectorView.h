// The picture of the whole control on printers and metafiles: the spectrum and its labels in vectors, the rest in
// pixels.
#pragma once

#include <windows.h>

#include <functional>

#include "automation/Snapshot.h"
#include "formenv/PictureOutput.h"

namespace kv::automation {

/// The device records calls or has finer pixels than the screen, and it can transform coordinates. Metafiles of the old
/// kind cannot.
[[nodiscard]] bool takesVectors(HDC dc);

/// The part of the control that is drawn in vectors.
struct VectorPart {
    RECT place;  ///< pixels of the snapshot
    /// With this many units for each pixel of the snapshot.
    std::function<formenv::VectorPicture(double scale)> picture;
};

/// Draws into `bounds`, in the logical units of `dc`. False if the system fails; throws what drawing throws.
[[nodiscard]] bool drawWithVectors(HDC dc, const RECTL& bounds, const Snapshot& whole, const VectorPart& part);

}  // namespace kv::automation
