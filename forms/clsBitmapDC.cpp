#include "forms/clsBitmapDC.h"

namespace kv::forms {

using formenv::Handle;
using formenv::PictureObject;

std::unique_ptr<PictureObject> clsBitmapDC::CreateBitmapPicture(Handle hBmp, Handle hPal) {
    formenv::PictureDescription description;
    description.bitmap = hBmp;
    description.palette = hPal;
    return calls_.OleCreatePictureIndirect(description, formenv::kDispatchInterface, true);
}

Handle clsBitmapDC::CreateBitmapInMemory(std::int32_t lWid, std::int32_t lHgt, Handle hDCRef) {
    const Handle memory = calls_.CreateCompatibleDC(hDCRef);
    const Handle bitmap = calls_.CreateCompatibleBitmap(hDCRef, lWid, lHgt);
    calls_.DeleteDC(memory);
    return bitmap;
}

bool clsBitmapDC::PasteBitmap(Handle& hBmp, std::int32_t xDest, std::int32_t yDest, Handle hDCSrc, std::int32_t xSrc,
                              std::int32_t ySrc, std::int32_t lWid, std::int32_t lHgt, double dRasterOp) {
    const Handle memory = calls_.CreateCompatibleDC(hDCSrc);
    const Handle previous = calls_.SelectObject(memory, hBmp);
    pasted_ = calls_.BitBlt(memory, xDest, yDest, lWid, lHgt, hDCSrc, xSrc, ySrc, static_cast<std::int32_t>(dRasterOp));
    hBmp = calls_.SelectObject(memory, previous);
    calls_.DeleteDC(memory);
    return false;
}

}  // namespace kv::forms
