#include "headless/HeadlessBitmaps.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "util/RuntimeError.h"

namespace kv::headless {

namespace {

std::string pair(std::int32_t x, std::int32_t y, char between = ',') {
    return std::to_string(x) + between + std::to_string(y);
}

std::string hex(std::int32_t value) {
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, static_cast<std::uint32_t>(value), 16).ptr;
    return {digits, end};
}

/// The picture of one bitmap; `bitmaps` has to live longer.
class MemoryPicture final : public formenv::PictureObject {
  public:
    MemoryPicture(formenv::BitmapCalls& bitmaps, formenv::Handle bitmap, bool own)
        : bitmaps_(bitmaps), bitmap_(bitmap), own_(own) {}
    ~MemoryPicture() override {
        if (own_)
            bitmaps_.DeleteObject(bitmap_);
    }
    MemoryPicture(const MemoryPicture&) = delete;
    MemoryPicture& operator=(const MemoryPicture&) = delete;

    [[nodiscard]] formenv::Handle handle() const override { return bitmap_; }
    [[nodiscard]] bool offers(formenv::InterfaceName name) const override {
        return std::wstring_view(name) == formenv::kDispatchInterface ||
               std::wstring_view(name) == formenv::kPictureInterface;
    }

  private:
    formenv::BitmapCalls& bitmaps_;
    formenv::Handle bitmap_;
    bool own_;
};

}  // namespace

formenv::Handle HeadlessBitmaps::contextOf(const raster::PixelBuffer& pixels) {
    surfaces_.emplace(++last_, pixels);
    return last_;
}

void HeadlessBitmaps::forget(formenv::Handle context) noexcept {
    surfaces_.erase(context);
}

template <class Arguments>
bool HeadlessBitmaps::begin(std::string_view call, Arguments&& arguments) noexcept {
    try {
        calls.push_back(std::string(call) + ' ' + arguments());
    } catch (...) {
        // Some of the calls free what others took; they must do so without memory, too.
    }
    const bool failing = fails && fails(call);
    record(failing ? kMadeToFail : 0);
    return !failing;
}

bool HeadlessBitmaps::invalid() {
    record(kInvalidHandle);
    return false;
}

raster::PixelBuffer HeadlessBitmaps::pixelsOf(formenv::Handle context) {
    if (const auto surface = surfaces_.find(context); surface != surfaces_.end())
        return surface->second;
    const auto memory = memory_.find(context);
    const auto bitmap = memory == memory_.end() ? bitmaps_.end() : bitmaps_.find(memory->second);
    if (bitmap == bitmaps_.end())
        return {};
    formenv::BitmapImage& image = bitmap->second;
    return {image.pixels.data(), image.width, image.height, image.width};
}

formenv::Handle HeadlessBitmaps::CreateCompatibleDC(formenv::Handle reference) {
    if (!begin("CreateCompatibleDC", [&] { return std::to_string(reference); }))
        return 0;
    memory_.emplace(++last_, kStockBitmap);
    return last_;
}

formenv::Handle HeadlessBitmaps::CreateCompatibleBitmap(formenv::Handle reference, std::int32_t width,
                                                        std::int32_t height) {
    if (!begin("CreateCompatibleBitmap", [&] { return std::to_string(reference) + ' ' + pair(width, height, 'x'); }))
        return 0;
    if (width < 1 || height < 1 || (!surfaces_.contains(reference) && !memory_.contains(reference))) {
        invalid();
        return 0;
    }
    const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    bitmaps_.emplace(++last_, formenv::BitmapImage{width, height, std::vector<std::uint32_t>(pixels)});
    return last_;
}

bool HeadlessBitmaps::DeleteDC(formenv::Handle context) {
    return begin("DeleteDC", [&] { return std::to_string(context); }) && (memory_.erase(context) != 0 || invalid());
}

formenv::Handle HeadlessBitmaps::SelectObject(formenv::Handle context, formenv::Handle object) {
    if (!begin("SelectObject", [&] { return std::to_string(context) + ' ' + std::to_string(object); }))
        return 0;
    const auto memory = memory_.find(context);
    if (memory == memory_.end() || (object != kStockBitmap && !bitmaps_.contains(object))) {
        invalid();
        return 0;
    }
    return std::exchange(memory->second, object);
}

bool HeadlessBitmaps::BitBlt(formenv::Handle to, std::int32_t x, std::int32_t y, std::int32_t width,
                             std::int32_t height, formenv::Handle from, std::int32_t fromX, std::int32_t fromY,
                             std::int32_t operation) {
    const auto arguments = [&] {
        return std::to_string(to) + ' ' + pair(x, y) + ' ' + pair(width, height, 'x') + ' ' + std::to_string(from) +
               ' ' + pair(fromX, fromY) + ' ' + hex(operation);
    };
    if (!begin("BitBlt", arguments))
        return false;
    const raster::PixelBuffer target = pixelsOf(to);
    const raster::PixelBuffer source = pixelsOf(from);
    if (target.empty() || source.empty() || operation != formenv::kSourceCopy)
        return invalid();
    const int left = std::max({0, -x, -fromX});
    const int right = std::min({width, target.width - x, source.width - fromX});
    const int top = std::max({0, -y, -fromY});
    const int bottom = std::min({height, target.height - y, source.height - fromY});
    for (int row = top; row < bottom && left < right; ++row) {
        const std::uint32_t* pixels = source.row(fromY + row) + fromX;
        std::copy(pixels + left, pixels + right, target.row(y + row) + x + left);
    }
    return true;
}

std::unique_ptr<formenv::PictureObject> HeadlessBitmaps::OleCreatePictureIndirect(
    const formenv::PictureDescription& description, formenv::InterfaceName name, bool own) {
    const auto arguments = [&] {
        std::string interfaceName;
        for (const wchar_t* letter = name; *letter != L'\0'; ++letter)
            interfaceName += static_cast<char>(*letter);
        return std::to_string(description.size) + ' ' + std::to_string(description.type) + ' ' +
               std::to_string(description.bitmap) + ' ' + std::to_string(description.palette) + ' ' + interfaceName +
               (own ? " own" : " lent");
    };
    if (!begin("OleCreatePictureIndirect", arguments))
        return nullptr;
    if (!bitmaps_.contains(description.bitmap)) {
        invalid();
        return nullptr;
    }
    return std::make_unique<MemoryPicture>(*this, description.bitmap, own);
}

bool HeadlessBitmaps::DeleteObject(formenv::Handle object) {
    return begin("DeleteObject", [&] { return std::to_string(object); }) && (bitmaps_.erase(object) != 0 || invalid());
}

formenv::BitmapImage HeadlessBitmaps::imageOf(formenv::Handle bitmap) {
    const auto found = bitmaps_.find(bitmap);
    if (!begin("imageOf", [&] { return std::to_string(bitmap); }) || found == bitmaps_.end())
        throw util::RuntimeError(util::error_number::kInvalidPicture);
    return found->second;
}

}  // namespace kv::headless
