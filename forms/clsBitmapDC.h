// Pictures from device contexts: the system's calls in the three combinations that the capture needs.
#pragma once

#include <cstdint>
#include <memory>

#include "formenv/BitmapCalls.h"

namespace kv::forms {

/// One for each export. No failure ends a procedure: each call leaves its error code with `calls`, and the caller tests
/// the handles and whether the pixels were copied.
class clsBitmapDC {
  public:
    /// `calls` has to live longer.
    explicit clsBitmapDC(formenv::BitmapCalls& calls) noexcept : calls_(calls) {}

    /// A standard picture, which takes the ownership of the bitmap. When the system cannot create it: null, and the
    /// caller still owns the bitmap.
    [[nodiscard]] std::unique_ptr<formenv::PictureObject> CreateBitmapPicture(formenv::Handle hBmp,
                                                                              formenv::Handle hPal);

    /// A bitmap of `lWid` by `lHgt` pixels with the color format of `hDCRef`; the caller frees it. 0 when the
    /// system cannot create it.
    [[nodiscard]] formenv::Handle CreateBitmapInMemory(std::int32_t lWid, std::int32_t lHgt, formenv::Handle hDCRef);

    /// Copies a rectangle of `hDCSrc` into the bitmap. `hBmp` becomes the handle that is returned when the bitmap is
    /// deselected: the same one, or 0 when it could not be selected. Always false; `pasted` is the answer.
    bool PasteBitmap(formenv::Handle& hBmp, std::int32_t xDest, std::int32_t yDest, formenv::Handle hDCSrc,
                     std::int32_t xSrc, std::int32_t ySrc, std::int32_t lWid, std::int32_t lHgt, double dRasterOp);

    /// The last paste copied the pixels.
    [[nodiscard]] bool pasted() const noexcept { return pasted_; }

  private:
    formenv::BitmapCalls& calls_;
    bool pasted_ = false;
};

}  // namespace kv::forms
