// The form environment's platform on Windows.
#pragma once

#include <windows.h>

#include "formenv/HatchTiles.h"
#include "formenv/Platform.h"
#include "win32/Gdi.h"

namespace kv::win32 {

class WinPlatform final : public formenv::Platform {
  public:
    WinPlatform();

    [[nodiscard]] int dpi() const noexcept override { return dpi_; }
    [[nodiscard]] formenv::Rgb systemColor(int index) const noexcept override { return GetSysColor(index); }
    [[nodiscard]] std::unique_ptr<formenv::Surface> createSurface(formenv::PixelSize size) override;
    [[nodiscard]] formenv::PixelSize textSize(std::wstring_view text, const formenv::Font& font) override;
    void pumpEvents() override;
    [[nodiscard]] bool hasUser() const noexcept override;
    formenv::MessageAnswer messageBox(const std::wstring& text, const std::wstring& title, formenv::MessageIcon icon,
                                      formenv::MessageButtons buttons) override;

    /// The window that message boxes stand before; nullptr for none.
    void setOwner(HWND owner) noexcept { owner_ = owner; }
    [[nodiscard]] FontCache& fonts() noexcept { return fonts_; }

  private:
    int dpi_;
    FontCache fonts_;
    formenv::HatchTiles tiles_;
    HWND owner_ = nullptr;
};

}  // namespace kv::win32
