#include "headless/HeadlessPlatform.h"

#include <algorithm>

#include "formenv/Form.h"
#include "util/RuntimeError.h"

namespace kv::headless {

namespace {

class MemorySurface final : public formenv::Surface {
  public:
    MemorySurface(raster::PixelSize size, raster::TextPainter& letters, HeadlessBitmaps& bitmaps)
        : store_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height)),
          buffer_{store_.data(), size.width, size.height, size.width},
          canvas_(letters, buffer_),
          bitmaps_(bitmaps),
          context_(bitmaps.contextOf(buffer_)) {}
    ~MemorySurface() override { bitmaps_.forget(context_); }
    MemorySurface(const MemorySurface&) = delete;
    MemorySurface& operator=(const MemorySurface&) = delete;

    raster::PixelBuffer pixels() noexcept override { return buffer_; }
    raster::Canvas& canvas() noexcept override { return canvas_; }
    formenv::Handle deviceContext() const noexcept override { return context_; }

  private:
    std::vector<std::uint32_t> store_;
    raster::PixelBuffer buffer_;
    raster::RasterCanvas canvas_;
    HeadlessBitmaps& bitmaps_;
    formenv::Handle context_;
};

}  // namespace

raster::Rgb HeadlessPlatform::systemColor(int index) const noexcept {
    const raster::OleColor color = 0x80000000U | static_cast<unsigned>(index);
    if (const auto own = systemColors.find(color); own != systemColors.end())
        return own->second;
    switch (color) {
        case raster::system_color::kWindowBackground:
            return 0xFFFFFF;
        case raster::system_color::kButtonFace:
            return 0xF0F0F0;
        case raster::system_color::kButtonShadow:
            return 0xA0A0A0;
        case raster::system_color::kHighlight:
            return 0xD77800;
        case raster::system_color::kGrayText:
            return 0x6D6D6D;
        case raster::system_color::kButtonHighlight:
            return 0xE3E3E3;
        default:
            return 0x000000;
    }
}

std::unique_ptr<formenv::Surface> HeadlessPlatform::createSurface(raster::PixelSize size) {
    begin("createSurface");
    return std::make_unique<MemorySurface>(size, letters_, bitmaps);
}

raster::PixelSize HeadlessPlatform::textSize(std::wstring_view text, const raster::Font& font) {
    begin("textSize");
    return noFonts ? raster::PixelSize{} : letters_.textSize(text, font);
}

void HeadlessPlatform::pumpEvents() {
    begin("pumpEvents");
    ++pumps;
    if (onPump)
        onPump();
}

formenv::MessageAnswer HeadlessPlatform::messageBox(const std::wstring& text, const std::wstring& title,
                                                    formenv::MessageIcon icon, formenv::MessageButtons buttons) {
    return messageBoxBefore(0, text, title, icon, buttons);
}

formenv::MessageAnswer HeadlessPlatform::messageBoxBefore(std::intptr_t window, const std::wstring& text,
                                                          const std::wstring& title, formenv::MessageIcon icon,
                                                          formenv::MessageButtons buttons) {
    begin("messageBox");
    messages.push_back({text, title, icon, buttons, window});
    if (const std::function<void()> during = onMessage)
        during();
    return answer;
}

/// Records its calls and gives the form the client area inside its border.
class HeadlessPlatform::RecordedFormWindow final : public formenv::FormWindow, public formenv::Peer {
  public:
    RecordedFormWindow(HeadlessPlatform& platform, formenv::Form& form)
        : platform_(platform), form_(form), handle_(++platform.lastHandle_) {
        note("create");
        form_.setPeer(this);
        try {
            tellSize();
        } catch (...) {
            form_.setPeer(nullptr);
            throw;
        }
    }
    ~RecordedFormWindow() override {
        form_.setPeer(nullptr);
        try {
            note("destroy");
        } catch (...) {
            // Without memory only the record is missing.
        }
    }
    RecordedFormWindow(const RecordedFormWindow&) = delete;
    RecordedFormWindow& operator=(const RecordedFormWindow&) = delete;

    [[nodiscard]] std::intptr_t handle() const noexcept override { return handle_; }
    void show() override { note("show"); }
    void hide() override { note("hide"); }
    void setState(formenv::WindowState state) override { note("state " + std::to_string(static_cast<int>(state))); }
    void changed(formenv::Change what) override {
        if (what != formenv::Change::Place)
            return;
        note("place");
        tellSize();
    }

  private:
    void note(std::string call) { platform_.formCalls.push_back(std::move(call)); }
    void tellSize() {
        const formenv::FormBorder border = platform_.formBorder();
        form_.clientResized(std::max(form_.width() - border.width, 0.0), std::max(form_.height() - border.height, 0.0));
    }

    HeadlessPlatform& platform_;
    formenv::Form& form_;
    std::intptr_t handle_;
};

std::unique_ptr<formenv::FormWindow> HeadlessPlatform::createFormWindow(formenv::Form& form) {
    begin("createFormWindow");
    if (formsFail)
        throw util::RuntimeError(util::error_number::kOutOfMemory);
    return std::make_unique<RecordedFormWindow>(*this, form);
}

void HeadlessPlatform::startProgram(const std::wstring& command) {
    begin("startProgram");
    if (programsFail)
        throw util::RuntimeError(util::error_number::kFileNotFound);
    programs.push_back(command);
}

}  // namespace kv::headless
