// The form environment's platform on Windows.
#pragma once

#include <windows.h>

#include <oleidl.h>
#include <unknwn.h>
#include <wrl/client.h>

#include <set>

#include "formenv/Platform.h"
#include "raster/HatchTiles.h"
#include "win32/EventPump.h"
#include "win32/Gdi.h"
#include "win32/WinBitmaps.h"
#include "win32/WinDesktop.h"
#include "win32/WinPictures.h"

namespace kv::win32 {

/// What a message box needs from the container of the control.
class BoxHost {
  public:
    /// A user is working with the container and can answer.
    [[nodiscard]] virtual bool canShowBoxes() noexcept = 0;
    /// The container's window, for a control without its own; null for none.
    [[nodiscard]] virtual HWND boxOwner() noexcept = 0;
    /// The container's frame, which disables its modeless windows while a box is open; null for none.
    [[nodiscard]] virtual Microsoft::WRL::ComPtr<IOleInPlaceFrame> boxFrame() noexcept = 0;

  protected:
    ~BoxHost() = default;
};

class WinPlatform final : public formenv::Platform {
  public:
    WinPlatform();

    /// The resolution of the control's window; of the whole screen before there is a window.
    [[nodiscard]] int dpi() const noexcept override { return dpi_; }
    /// The resolution of the whole screen, with which hosts convert on any monitor.
    [[nodiscard]] int hostDpi() const noexcept { return hostDpi_; }
    void setDpi(int dpi) noexcept {
        dpi_ = dpi;
        fonts_.setDpi(dpi);
    }
    [[nodiscard]] raster::Rgb systemColor(int index) const noexcept override { return GetSysColor(index); }
    [[nodiscard]] std::unique_ptr<formenv::Surface> createSurface(raster::PixelSize size) override;
    [[nodiscard]] formenv::BitmapCalls& bitmapCalls() noexcept override { return bitmaps_; }
    [[nodiscard]] formenv::PictureOutput& pictureOutput() noexcept override { return pictures_; }
    [[nodiscard]] raster::PixelSize textSize(std::wstring_view text, const raster::Font& font) override;
    void pumpEvents() override;
    [[nodiscard]] bool hasUser() const noexcept override;
    /// If no user can see a box, none is shown and the answer is OK or No.
    formenv::MessageAnswer messageBox(const std::wstring& text, const std::wstring& title, formenv::MessageIcon icon,
                                      formenv::MessageButtons buttons) override;
    formenv::MessageAnswer messageBoxBefore(std::intptr_t window, const std::wstring& text, const std::wstring& title,
                                            formenv::MessageIcon icon, formenv::MessageButtons buttons) override;
    /// The window is owned by the top-level window of the owner and is destroyed with it.
    [[nodiscard]] std::unique_ptr<formenv::FormWindow> createFormWindow(formenv::Form& form) override;
    [[nodiscard]] formenv::FormBorder formBorder() const noexcept override;
    [[nodiscard]] std::intptr_t formOwner() const noexcept override;
    void startProgram(const std::wstring& command) override;
    [[nodiscard]] formenv::Desktop& desktop() override { return desktop_; }

    /// The control's window, whose top-level window owns message boxes and forms; nullptr for none.
    void setOwner(HWND owner) noexcept { owner_ = owner; }
    /// With null, boxes are always shown. Must exist as long as the forms.
    void setBoxHost(BoxHost* host) noexcept { boxHost_ = host; }
    /// Enables or disables the windows of all forms, including those that are created later.
    void enableForms(bool enable) noexcept;
    void formMade(HWND window);
    void formGone(HWND window) noexcept;
    /// Kept alive during every message of a form, because a handler may make the host release the control. Must be set
    /// before a form is loaded, and must exist as long as the forms.
    void setKeeper(IUnknown* keeper) noexcept { keeper_ = keeper; }
    [[nodiscard]] FontCache& fonts() noexcept { return fonts_; }
    /// For limiting what `pumpEvents` processes.
    [[nodiscard]] EventPump& pump() noexcept { return pump_; }

  private:
    int hostDpi_;
    int dpi_;
    FontCache fonts_;
    raster::HatchTiles tiles_;
    WinDesktop desktop_;
    WinBitmaps bitmaps_;
    WinPictures pictures_;
    EventPump pump_;
    HWND owner_ = nullptr;
    IUnknown* keeper_ = nullptr;
    BoxHost* boxHost_ = nullptr;
    std::set<HWND> forms_;
    bool formsEnabled_ = true;
};

}  // namespace kv::win32
