// A platform without a screen: pictures in plain memory and message boxes that are only recorded. Tests, fuzzers and
// benchmarks run the control on it.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "formenv/Platform.h"
#include "headless/BlockTextPainter.h"
#include "headless/HeadlessBitmaps.h"
#include "headless/HeadlessDesktop.h"
#include "headless/HeadlessPictures.h"

namespace kv::headless {

class HeadlessPlatform : public formenv::Platform {
  public:
    struct Message {
        std::wstring text;
        std::wstring title;
        formenv::MessageIcon icon;
        formenv::MessageButtons buttons;
        std::intptr_t before = 0;  ///< handle of the form's window that owns it; 0 for the control's
    };

    [[nodiscard]] int dpi() const noexcept override { return dots; }
    [[nodiscard]] raster::Rgb systemColor(int index) const noexcept override;
    [[nodiscard]] std::unique_ptr<formenv::Surface> createSurface(raster::PixelSize size) override;
    [[nodiscard]] formenv::BitmapCalls& bitmapCalls() noexcept override { return bitmaps; }
    [[nodiscard]] formenv::PictureOutput& pictureOutput() noexcept override { return pictures; }
    [[nodiscard]] raster::PixelSize textSize(std::wstring_view text, const raster::Font& font) override;
    void pumpEvents() override;
    formenv::MessageAnswer messageBox(const std::wstring& text, const std::wstring& title, formenv::MessageIcon icon,
                                      formenv::MessageButtons buttons) override;
    formenv::MessageAnswer messageBoxBefore(std::intptr_t window, const std::wstring& text, const std::wstring& title,
                                            formenv::MessageIcon icon, formenv::MessageButtons buttons) override;
    [[nodiscard]] std::unique_ptr<formenv::FormWindow> createFormWindow(formenv::Form& form) override;
    /// Six pixels on each side and 24 more for the title, at 96 dots per inch.
    [[nodiscard]] formenv::FormBorder formBorder() const noexcept override { return {180.0, 540.0}; }
    void startProgram(const std::wstring& command) override;
    /// Its dots per inch follow those of the platform.
    [[nodiscard]] HeadlessDesktop& desktop() override {
        desktop_.dots = dots;
        return desktop_;
    }

    /// Called with the name of each call that needs something of the system, before it is done. When it throws, the
    /// call fails.
    std::function<void(std::string_view call)> before;
    int dots = 96;
    /// System colors by name that are not those of the usual theme.
    std::map<raster::OleColor, raster::Rgb> systemColors;
    /// Texts have the size 0, as when the system cannot load any font.
    bool noFonts = false;
    HeadlessBitmaps bitmaps;
    HeadlessPictures pictures;
    std::vector<Message> messages;
    int pumps = 0;
    /// Called when the control lets events run.
    std::function<void()> onPump;
    formenv::MessageAnswer answer = formenv::MessageAnswer::Ok;
    /// Called while a message box is open.
    std::function<void()> onMessage;
    /// The calls of the windows of forms, in order: "create", "show", "hide", "place", "state 2", "destroy".
    std::vector<std::string> formCalls;
    bool formsFail = false;
    std::vector<std::wstring> programs;
    bool programsFail = false;

  private:
    class RecordedFormWindow;

    void begin(std::string_view call) const {
        if (before)
            before(call);
    }

    std::intptr_t lastHandle_ = 0;
    BlockTextPainter letters_;
    HeadlessDesktop desktop_;
};

}  // namespace kv::headless
