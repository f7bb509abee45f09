// Bitmaps and device contexts in plain memory. Every call is recorded, and any of them can be made to fail.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "formenv/BitmapCalls.h"
#include "raster/PixelBuffer.h"

namespace kv::headless {

class HeadlessBitmaps final : public formenv::BitmapCalls {
  public:
    /// A device context on pixels that the caller keeps until `forget`.
    [[nodiscard]] formenv::Handle contextOf(const raster::PixelBuffer& pixels);
    void forget(formenv::Handle context) noexcept;

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

    /// Calls in their order, as "BitBlt 5 0,0 30x20 1 0,0 cc0020".
    std::vector<std::string> calls;
    /// Called before each call with its name; true makes it fail.
    std::function<bool(std::string_view call)> fails;

    /// The objects that are not freed yet.
    [[nodiscard]] std::size_t bitmapCount() const noexcept { return bitmaps_.size(); }
    [[nodiscard]] std::size_t memoryContextCount() const noexcept { return memory_.size(); }

    /// The error code of a call that was made to fail, and of one with an invalid handle.
    static constexpr std::uint32_t kMadeToFail = 14;
    static constexpr std::uint32_t kInvalidHandle = 6;
    /// The bitmap that a new memory context has selected.
    static constexpr formenv::Handle kStockBitmap = 99;

  private:
    /// Records the call, if there is memory for that; false when it has to fail.
    template <class Arguments>
    bool begin(std::string_view call, Arguments&& arguments) noexcept;
    bool invalid();
    [[nodiscard]] raster::PixelBuffer pixelsOf(formenv::Handle context);

    std::map<formenv::Handle, raster::PixelBuffer> surfaces_;
    std::map<formenv::Handle, formenv::Handle> memory_;  ///< contexts, with the bitmap that is selected
    std::map<formenv::Handle, formenv::BitmapImage> bitmaps_;
    formenv::Handle last_ = 0;
};

}  // namespace kv::headless
