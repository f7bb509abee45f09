// The bitmap calls on Windows.
#pragma once

#include <windows.h>

#include "formenv/BitmapCalls.h"

namespace kv::win32 {

class WinBitmaps final : public formenv::BitmapCalls {
  public:
    [[nodiscard]] formenv::Handle CreateCompatibleDC(formenv::Handle reference) override;
    [[nodiscard]] formenv::Handle CreateCompatibleBitmap(formenv::Handle reference, std::int32_t width,
                                                         std::int32_t height) override;
    bool DeleteDC(formenv::Handle context) override;
    formenv::Handle SelectObject(formenv::Handle context, formenv::Handle object) override;
    bool BitBlt(formenv::Handle to, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                formenv::Handle from, std::int32_t fromX, std::int32_t fromY, std::int32_t operation) override;
    [[nodiscard]] std::unique_ptr<formenv::PictureObject> OleCreatePictureIndirect(
        const formenv::PictureDescription& description, formenv::InterfaceName name, bool own) override;
    bool DeleteObject(formenv::Handle object) override;
    [[nodiscard]] formenv::BitmapImage imageOf(formenv::Handle bitmap) override;

  private:
    template <class Result>
    Result recorded(Result result) noexcept;
};

}  // namespace kv::win32
