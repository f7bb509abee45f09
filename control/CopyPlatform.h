// The platform of a picture that has another resolution than the screen.
#pragma once

#include <memory>
#include <string>

#include "formenv/Form.h"
#include "formenv/Platform.h"

namespace kv::control {

/// Draws like another platform, with a resolution of its own, and lets no events run.
class CopyPlatform final : public formenv::Platform {
  public:
    CopyPlatform(formenv::Platform& original, int dpi) noexcept : original_(original), dpi_(dpi) {}

    /// Texts are measured by this canvas from now on, because fonts of another resolution have other widths.
    void measureBy(raster::Canvas& canvas) noexcept { canvas_ = &canvas; }

    [[nodiscard]] int dpi() const noexcept override { return dpi_; }
    [[nodiscard]] raster::Rgb systemColor(int index) const noexcept override { return original_.systemColor(index); }
    [[nodiscard]] std::unique_ptr<formenv::Surface> createSurface(raster::PixelSize size) override {
        return original_.createSurface(size);
    }
    [[nodiscard]] formenv::BitmapCalls& bitmapCalls() noexcept override { return original_.bitmapCalls(); }
    [[nodiscard]] formenv::PictureOutput& pictureOutput() noexcept override { return original_.pictureOutput(); }
    [[nodiscard]] raster::PixelSize textSize(std::wstring_view text, const raster::Font& font) override {
        return canvas_ ? canvas_->textSize(text, font) : original_.textSize(text, font);
    }
    void pumpEvents() override {}
    formenv::MessageAnswer messageBox(const std::wstring& text, const std::wstring& title, formenv::MessageIcon icon,
                                      formenv::MessageButtons buttons) override {
        return original_.messageBox(text, title, icon, buttons);
    }
    formenv::MessageAnswer messageBoxBefore(std::intptr_t window, const std::wstring& text, const std::wstring& title,
                                            formenv::MessageIcon icon, formenv::MessageButtons buttons) override {
        return original_.messageBoxBefore(window, text, title, icon, buttons);
    }
    [[nodiscard]] std::unique_ptr<formenv::FormWindow> createFormWindow(formenv::Form& form) override {
        return original_.createFormWindow(form);
    }
    [[nodiscard]] formenv::FormBorder formBorder() const noexcept override { return original_.formBorder(); }
    void startProgram(const std::wstring& command) override { original_.startProgram(command); }
    [[nodiscard]] formenv::Desktop& desktop() override { return original_.desktop(); }

  private:
    formenv::Platform& original_;
    int dpi_;
    raster::Canvas* canvas_ = nullptr;
};

}  // namespace kv::control
