#include "win32/WinBitmaps.h"

#include <ocidl.h>
#include <ole2.h>
#include <olectl.h>
#include <wrl/client.h>

#include <cstdlib>

#include "util/RuntimeError.h"
#include "win32/Gdi.h"

namespace kv::win32 {

using formenv::Handle;
using Microsoft::WRL::ComPtr;
using util::RuntimeError;
using util::error_number::kInvalidPicture;

namespace {

template <class Native>
Native native(Handle handle) noexcept {
    return reinterpret_cast<Native>(handle);
}

Handle portable(const void* handle) noexcept {
    return reinterpret_cast<Handle>(handle);
}

class WinPicture final : public formenv::PictureObject {
  public:
    explicit WinPicture(IUnknown* taken) noexcept { *object_.GetAddressOf() = taken; }

    [[nodiscard]] Handle handle() const override {
        ComPtr<IPicture> picture;
        OLE_HANDLE bitmap = 0;
        if (FAILED(object_.As(&picture)) || FAILED(picture->get_Handle(&bitmap)))
            throw RuntimeError(kInvalidPicture);
        // The interface returns the significant 32 bits of the handle, which are sign-extended.
        return static_cast<std::int32_t>(bitmap);
    }
    [[nodiscard]] bool offers(formenv::InterfaceName name) const override {
        IID iid{};
        ComPtr<IUnknown> found;
        return SUCCEEDED(IIDFromString(name, &iid)) &&
               SUCCEEDED(object_->QueryInterface(iid, reinterpret_cast<void**>(found.GetAddressOf())));
    }

  private:
    ComPtr<IUnknown> object_;
};

}  // namespace

/// Records the system's error code if the call failed.
template <class Result>
Result WinBitmaps::recorded(Result result) noexcept {
    record(result ? 0 : ::GetLastError());
    return result;
}

Handle WinBitmaps::CreateCompatibleDC(Handle reference) {
    return recorded(portable(::CreateCompatibleDC(native<HDC>(reference))));
}

Handle WinBitmaps::CreateCompatibleBitmap(Handle reference, std::int32_t width, std::int32_t height) {
    // For a size without pixels, the system would create a bitmap of one pixel.
    if (width < 1 || height < 1) {
        record(ERROR_INVALID_PARAMETER);
        return 0;
    }
    return recorded(portable(::CreateCompatibleBitmap(native<HDC>(reference), width, height)));
}

bool WinBitmaps::DeleteDC(Handle context) {
    return recorded(::DeleteDC(native<HDC>(context)) != FALSE);
}

Handle WinBitmaps::SelectObject(Handle context, Handle object) {
    return recorded(portable(::SelectObject(native<HDC>(context), native<HGDIOBJ>(object))));
}

bool WinBitmaps::BitBlt(Handle to, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, Handle from,
                        std::int32_t fromX, std::int32_t fromY, std::int32_t operation) {
    return recorded(::BitBlt(native<HDC>(to), x, y, width, height, native<HDC>(from), fromX, fromY,
                             static_cast<DWORD>(operation)) != FALSE);
}

std::unique_ptr<formenv::PictureObject> WinBitmaps::OleCreatePictureIndirect(
    const formenv::PictureDescription& description, formenv::InterfaceName name, bool own) {
    // The size is 20 bytes in 32 bit. In 64 bit the handles are longer, and the system requires that size.
    static_assert(sizeof(void*) != 4 || sizeof(PICTDESC) == 20);
    PICTDESC picture{};
    picture.cbSizeofstruct = sizeof(void*) == 4 ? static_cast<UINT>(description.size) : sizeof(PICTDESC);
    picture.picType = static_cast<UINT>(description.type);
    picture.bmp.hbitmap = native<HBITMAP>(description.bitmap);
    picture.bmp.hpal = native<HPALETTE>(description.palette);
    IID iid{};
    void* object = nullptr;
    HRESULT result = IIDFromString(name, &iid);
    if (SUCCEEDED(result))
        result = ::OleCreatePictureIndirect(&picture, iid, own ? TRUE : FALSE, &object);
    record(SUCCEEDED(result) ? 0 : static_cast<std::uint32_t>(result));
    if (FAILED(result) || !object)
        return nullptr;
    return std::make_unique<WinPicture>(static_cast<IUnknown*>(object));
}

bool WinBitmaps::DeleteObject(Handle object) {
    return recorded(::DeleteObject(native<HGDIOBJ>(object)) != FALSE);
}

formenv::BitmapImage WinBitmaps::imageOf(Handle bitmap) {
    BITMAP shape{};
    const auto handle = native<HBITMAP>(bitmap);
    if (GetObjectW(handle, sizeof shape, &shape) == 0 || shape.bmWidth < 1 || shape.bmHeight == 0)
        throw RuntimeError(kInvalidPicture);
    formenv::BitmapImage image{shape.bmWidth, std::abs(shape.bmHeight), {}};
    image.pixels.resize(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height));
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = image.width;
    info.bmiHeader.biHeight = -image.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    const ScreenDc screen;
    if (GetDIBits(screen.get(), handle, 0, static_cast<UINT>(image.height), image.pixels.data(), &info,
                  DIB_RGB_COLORS) != image.height)
        throw RuntimeError(kInvalidPicture);
    for (std::uint32_t& pixel : image.pixels)
        pixel &= 0x00FFFFFFU;
    return image;
}

}  // namespace kv::win32
