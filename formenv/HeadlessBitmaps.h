// Bitmaps and device contexts in plain memory. Every call is written down, and any of them can be made to fail.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "formenv/BitmapCalls.h"
#include "formenv/PixelBuffer.h"

namespace kv::formenv {

class HeadlessBitmaps final : public BitmapCalls {
  public:
    /// A device context on pixels that somebody else keeps until `forget`.
    [[nodiscard]] Handle contextOf(const PixelBuffer& pixels);
    void forget(Handle context) noexcept;

    [[nodiscard]] Handle CreateCompatibleDC(Handle reference) override;
    [[nodiscard]] Handle CreateCompatibleBitmap(Handle reference, std::int32_t width, std::int32_t height) override;
    bool DeleteDC(Handle context) override;
    Handle SelectObject(Handle context, Handle object) override;
    bool BitBlt(Handle to, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, Handle from,
                std::int32_t fromX, std::int32_t fromY, std::int32_t operation) override;
    [[nodiscard]] std::unique_ptr<PictureObject> OleCreatePictureIndirect(const PictureDescription& description,
                                                                          InterfaceName name, bool own) override;
    bool DeleteObject(Handle object) override;
    [[nodiscard]] BitmapImage imageOf(Handle bitmap) override;

    /// Calls in their order, as "BitBlt 5 0,0 30x20 1 0,0 cc0020".
    std::vector<std::string> calls;
    /// Asked before each call with its name; true makes it fail.
    std::function<bool(std::string_view call)> fails;

    /// What was made and is not freed yet.
    [[nodiscard]] std::size_t bitmapCount() const noexcept { return bitmaps_.size(); }
    [[nodiscard]] std::size_t memoryContextCount() const noexcept { return memory_.size(); }

    /// The error code of a call that was made to fail, and of one with a handle that is none.
    static constexpr std::uint32_t kMadeToFail = 14;
    static constexpr std::uint32_t kInvalidHandle = 6;
    /// What a fresh memory context has selected.
    static constexpr Handle kStockBitmap = 99;

  private:
    /// Writes the call down; false when it is to fail.
    bool begin(std::string_view call, const std::string& arguments);
    bool invalid();
    [[nodiscard]] PixelBuffer pixelsOf(Handle context);

    std::map<Handle, PixelBuffer> surfaces_;
    std::map<Handle, Handle> memory_;  ///< contexts, with the bitmap that is selected
    std::map<Handle, BitmapImage> bitmaps_;
    Handle last_ = 0;
};

}  // namespace kv::formenv
