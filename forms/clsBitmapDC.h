// Pictures from device contexts: the system's calls in the three combinations that the capture needs.
#pragma once

#include <cstdint>
#include <memory>

#include "formenv/BitmapCalls.h"

namespace kv::forms {

/// No state of its own; one for each export. No call is tested for success here: each leaves its error code with
/// `calls`, and what became of the handles tells the caller.
class clsBitmapDC {
  public:
    /// `calls` has to live longer.
    explicit clsBitmapDC(formenv::BitmapCalls& calls) noexcept : calls_(calls) {}

    /// A standard picture that owns the bitmap from here on; null, and the bitmap is still the caller's, when the
    /// system makes none.
    [[nodiscard]] std::unique_ptr<formenv::PictureObject> CreateBitmapPicture(formenv::Handle hBmp,
                                                                              formenv::Handle hPal);

    /// A bitmap of `lWid` by `lHgt` pixels for pictures of the kind that `hDCRef` draws; the caller's to free. 0 when
    /// there is none to be had.
    [[nodiscard]] formenv::Handle CreateBitmapInMemory(std::int32_t lWid, std::int32_t lHgt, formenv::Handle hDCRef);

    /// Copies a rectangle of `hDCSrc` into the bitmap. `hBmp` becomes the handle that comes back when the bitmap is
    /// taken out of its context again: the same one, or 0 when it never was in. Always false.
    bool PasteBitmap(formenv::Handle& hBmp, std::int32_t xDest, std::int32_t yDest, formenv::Handle hDCSrc,
                     std::int32_t xSrc, std::int32_t ySrc, std::int32_t lWid, std::int32_t lHgt, double dRasterOp);

  private:
    formenv::BitmapCalls& calls_;
};

}  // namespace kv::forms
