// The form environment's platform on Windows.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include "formenv/HatchTiles.h"
#include "formenv/Platform.h"
#include "win32/EventPump.h"
#include "win32/Gdi.h"
#include "win32/WinBitmaps.h"
#include "win32/WinDesktop.h"

namespace kv::win32 {

class WinPlatform final : public formenv::Platform {
  public:
    WinPlatform();

    [[nodiscard]] int dpi() const noexcept override { return dpi_; }
    [[nodiscard]] formenv::Rgb systemColor(int index) const noexcept override { return GetSysColor(index); }
    [[nodiscard]] std::unique_ptr<formenv::Surface> createSurface(formenv::PixelSize size) override;
    [[nodiscard]] formenv::BitmapCalls& bitmapCalls() noexcept override { return bitmaps_; }
    [[nodiscard]] formenv::PixelSize textSize(std::wstring_view text, const formenv::Font& font) override;
    void pumpEvents() override;
    [[nodiscard]] bool hasUser() const noexcept override;
    formenv::MessageAnswer messageBox(const std::wstring& text, const std::wstring& title, formenv::MessageIcon icon,
                                      formenv::MessageButtons buttons) override;
    formenv::MessageAnswer messageBoxBefore(std::intptr_t window, const std::wstring& text, const std::wstring& title,
                                            formenv::MessageIcon icon, formenv::MessageButtons buttons) override;
    /// Belongs to the window that the owner stands in, and goes with it.
    [[nodiscard]] std::unique_ptr<formenv::FormWindow> createFormWindow(formenv::Form& form) override;
    [[nodiscard]] formenv::FormBorder formBorder() const noexcept override;
    [[nodiscard]] std::intptr_t formOwner() const noexcept override;
    void startProgram(const std::wstring& command) override;
    [[nodiscard]] formenv::Desktop& desktop() override { return desktop_; }

    /// The window that message boxes stand before; nullptr for none.
    void setOwner(HWND owner) noexcept { owner_ = owner; }
    /// Held through every message of a form: its handlers may make the host let go of the control. To be set before a
    /// form is loaded; must live as long as the forms.
    void setKeeper(IUnknown* keeper) noexcept { keeper_ = keeper; }
    [[nodiscard]] FontCache& fonts() noexcept { return fonts_; }
    /// For limits to what `pumpEvents` handles.
    [[nodiscard]] EventPump& pump() noexcept { return pump_; }

  private:
    int dpi_;
    FontCache fonts_;
    formenv::HatchTiles tiles_;
    WinDesktop desktop_;
    WinBitmaps bitmaps_;
    EventPump pump_;
    HWND owner_ = nullptr;
    IUnknown* keeper_ = nullptr;
};

}  // namespace kv::win32
