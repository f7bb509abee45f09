// The system's calls on bitmaps and device contexts, and what the capture of pictures needs besides them. Handles are
// plain numbers; 0 is none.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace kv::formenv {

using Handle = std::intptr_t;

/// Raster operation of BitBlt: the destination becomes the source.
inline constexpr std::int32_t kSourceCopy = 0x00CC0020;

/// The parts of a new picture object.
struct PictureDescription {
    std::int32_t size = 20;  ///< of the description, bytes, as the system counts them
    std::int32_t type = 1;   ///< a bitmap
    Handle bitmap = 0;
    Handle palette = 0;
};

/// An interface of a picture object, by its identifier in braces.
using InterfaceName = const wchar_t*;
inline constexpr InterfaceName kDispatchInterface = L"{00020400-0000-0000-C000-000000000046}";
inline constexpr InterfaceName kPictureInterface = L"{7BF80981-BF32-101A-8BBB-00AA00300CAB}";

/// A picture object. One that owns its bitmap frees it when it is destroyed.
class PictureObject {
  public:
    PictureObject() = default;
    PictureObject(const PictureObject&) = delete;
    PictureObject& operator=(const PictureObject&) = delete;
    virtual ~PictureObject() = default;

    /// The bitmap inside.
    [[nodiscard]] virtual Handle handle() const = 0;
    [[nodiscard]] virtual bool offers(InterfaceName name) const = 0;
};

/// The pixels of a bitmap, 0x00RRGGBB, the topmost row first, rows without a gap.
struct BitmapImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};

/// The calls have the system's names. None throws when the system fails: it returns 0, false or null, and the error
/// code can be read until the next call.
class BitmapCalls {
  public:
    BitmapCalls() = default;
    BitmapCalls(const BitmapCalls&) = delete;
    BitmapCalls& operator=(const BitmapCalls&) = delete;
    virtual ~BitmapCalls() = default;

    [[nodiscard]] virtual Handle CreateCompatibleDC(Handle reference) = 0;
    [[nodiscard]] virtual Handle CreateCompatibleBitmap(Handle reference, std::int32_t width, std::int32_t height) = 0;
    virtual bool DeleteDC(Handle context) = 0;
    /// The object that was selected before.
    virtual Handle SelectObject(Handle context, Handle object) = 0;
    virtual bool BitBlt(Handle to, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, Handle from,
                        std::int32_t fromX, std::int32_t fromY, std::int32_t operation) = 0;
    /// `own`: the picture frees the bitmap.
    [[nodiscard]] virtual std::unique_ptr<PictureObject> OleCreatePictureIndirect(const PictureDescription& description,
                                                                                  InterfaceName name, bool own) = 0;
    virtual bool DeleteObject(Handle object) = 0;

    /// Throws RuntimeError 481 for a handle that is no bitmap with pixels.
    [[nodiscard]] virtual BitmapImage imageOf(Handle bitmap) = 0;

    /// The system's error code of the last call; 0 after one that succeeded.
    [[nodiscard]] std::uint32_t lastError() const noexcept { return lastError_; }

  protected:
    void record(std::uint32_t code) noexcept { lastError_ = code; }

  private:
    std::uint32_t lastError_ = 0;
};

}  // namespace kv::formenv
