// What the form environment needs of the system it runs on.
#pragma once

#include <memory>
#include <string>

#include "formenv/Canvas.h"
#include "formenv/Color.h"
#include "formenv/RasterCanvas.h"

namespace kv::formenv {

/// An off-screen 32-bit picture: the pixels behind a picture box.
class Surface {
  public:
    virtual ~Surface() = default;
    [[nodiscard]] virtual PixelBuffer pixels() noexcept = 0;
    [[nodiscard]] virtual Canvas& canvas() noexcept = 0;
};

enum class MessageIcon { None, Information, Question, Critical };
enum class MessageButtons { Ok, YesNoDefaultNo };
enum class MessageAnswer { Ok, Yes, No };

class Platform {
  public:
    virtual ~Platform() = default;

    /// Dots per inch of the screen, the same both ways; 96 is the usual.
    [[nodiscard]] virtual int dpi() const noexcept = 0;

    /// The present value of a system colour, by its number.
    [[nodiscard]] virtual Rgb systemColor(int index) const noexcept = 0;

    /// A picture of the given size, at least one pixel each way; throws RuntimeError 7 when there is no memory for it.
    [[nodiscard]] virtual std::unique_ptr<Surface> createSurface(PixelSize size) = 0;

    /// Measures a line of text in pixels without a picture.
    [[nodiscard]] virtual PixelSize textSize(std::wstring_view text, const Font& font) = 0;

    /// Lets pending events of the user interface run; returns when none is left.
    virtual void pumpEvents() = 0;

    /// Somebody can see and answer message boxes; not so where programs run as services.
    [[nodiscard]] virtual bool hasUser() const noexcept { return true; }

    virtual MessageAnswer messageBox(const std::wstring& text, const std::wstring& title, MessageIcon icon,
                                     MessageButtons buttons) = 0;

    [[nodiscard]] Rgb resolve(OleColor color) const noexcept {
        return isSystemColor(color) ? systemColor(systemColorIndex(color)) : color & 0x00FFFFFFU;
    }
};

}  // namespace kv::formenv
