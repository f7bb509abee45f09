// The services of the operating system that the form environment uses.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "formenv/BitmapCalls.h"
#include "formenv/Desktop.h"
#include "formenv/PictureOutput.h"
#include "raster/Canvas.h"
#include "raster/Color.h"
#include "raster/RasterCanvas.h"

namespace kv::formenv {

class Form;
class FormWindow;

/// The part of a resizable form's size that its frame needs, twips.
struct FormBorder {
    double width = 0.0;
    double height = 0.0;
};

/// An off-screen 32-bit picture: the pixels behind a picture box.
class Surface {
  public:
    virtual ~Surface() = default;
    [[nodiscard]] virtual raster::PixelBuffer pixels() noexcept = 0;
    [[nodiscard]] virtual raster::Canvas& canvas() noexcept = 0;
    /// For the platform's bitmap calls; what was drawn is in it. Valid as long as the surface.
    [[nodiscard]] virtual Handle deviceContext() const noexcept = 0;
};

enum class MessageIcon { None, Information, Question, Critical };
enum class MessageButtons { Ok, YesNoDefaultNo };
enum class MessageAnswer { Ok, Yes, No };

class Platform {
  public:
    virtual ~Platform() = default;

    /// Dots per inch of the screen, the same both ways; 96 is the usual.
    [[nodiscard]] virtual int dpi() const noexcept = 0;

    /// The present value of a system color, by its number.
    [[nodiscard]] virtual raster::Rgb systemColor(int index) const noexcept = 0;

    /// A picture of the given size, at least one pixel each way; throws RuntimeError 7 when there is no memory for it.
    [[nodiscard]] virtual std::unique_ptr<Surface> createSurface(raster::PixelSize size) = 0;

    /// The system's calls on bitmaps.
    [[nodiscard]] virtual BitmapCalls& bitmapCalls() noexcept = 0;

    /// What the system does with pictures besides showing them.
    [[nodiscard]] virtual PictureOutput& pictureOutput() noexcept = 0;

    /// Measures a line of text in pixels without a picture.
    [[nodiscard]] virtual raster::PixelSize textSize(std::wstring_view text, const raster::Font& font) = 0;

    /// Lets pending events of the user interface run; returns when none is left.
    virtual void pumpEvents() = 0;

    /// A user can see and answer message boxes. False where programs run as services.
    [[nodiscard]] virtual bool hasUser() const noexcept { return true; }

    virtual MessageAnswer messageBox(const std::wstring& text, const std::wstring& title, MessageIcon icon,
                                     MessageButtons buttons) = 0;

    /// The same, owned by the window with this handle, which is disabled until the user has answered.
    virtual MessageAnswer messageBoxBefore(std::intptr_t window, const std::wstring& text, const std::wstring& title,
                                           MessageIcon icon, MessageButtons buttons) = 0;

    /// The window of a form, not yet shown. It reports its client area before this returns. Throws RuntimeError 7 when
    /// the system cannot create one. The form has to live longer.
    [[nodiscard]] virtual std::unique_ptr<FormWindow> createFormWindow(Form& form) = 0;
    [[nodiscard]] virtual FormBorder formBorder() const noexcept = 0;
    /// The handle of the window that forms loaded now belong to; 0 for none.
    [[nodiscard]] virtual std::intptr_t formOwner() const noexcept { return 0; }

    /// Starts a program in a normal window and does not wait for it. One that is named without a folder is taken from
    /// the system's folder only. Throws RuntimeError 53 when it cannot.
    virtual void startProgram(const std::wstring& command) = 0;

    /// The screens that top-level windows are on.
    [[nodiscard]] virtual Desktop& desktop() = 0;

    [[nodiscard]] raster::Rgb resolve(raster::OleColor color) const noexcept {
        return raster::isSystemColor(color) ? systemColor(raster::systemColorIndex(color)) : color & 0x00FFFFFFU;
    }
};

}  // namespace kv::formenv
