#include "formenv/HeadlessPlatform.h"

namespace kv::formenv {

namespace {

class MemorySurface final : public Surface {
  public:
    MemorySurface(PixelSize size, TextPainter& letters)
        : store_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height)),
          buffer_{store_.data(), size.width, size.height, size.width},
          canvas_(letters, buffer_) {}

    PixelBuffer pixels() noexcept override { return buffer_; }
    Canvas& canvas() noexcept override { return canvas_; }

  private:
    std::vector<std::uint32_t> store_;
    PixelBuffer buffer_;
    RasterCanvas canvas_;
};

}  // namespace

Rgb HeadlessPlatform::systemColor(int index) const noexcept {
    switch (0x80000000U | static_cast<unsigned>(index)) {
        case system_color::kWindowBackground:
            return 0xFFFFFF;
        case system_color::kButtonFace:
            return 0xF0F0F0;
        case system_color::kButtonShadow:
            return 0xA0A0A0;
        default:
            return 0x000000;
    }
}

std::unique_ptr<Surface> HeadlessPlatform::createSurface(PixelSize size) {
    return std::make_unique<MemorySurface>(size, letters_);
}

PixelSize HeadlessPlatform::textSize(std::wstring_view text, const Font& font) {
    return letters_.textSize(text, font);
}

void HeadlessPlatform::pumpEvents() {
    ++pumps;
    if (onPump)
        onPump();
}

MessageAnswer HeadlessPlatform::messageBox(const std::wstring& text, const std::wstring& title, MessageIcon icon,
                                           MessageButtons buttons) {
    messages.push_back({text, title, icon, buttons});
    return answer;
}

}  // namespace kv::formenv
