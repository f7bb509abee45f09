// The control inside a window of the host: its creation, placement and closing.
#pragma once

#include <memory>

#include "host/ControlClasses.h"
#include "host/ControlSite.h"
#include "host/EventSink.h"
#include "kvBandscope.h"

namespace kv::host {

class Spectrum {
  public:
    /// Creates the control, activates it in place at rect (pixels of the parent's client area) and connects its events.
    Spectrum(const ControlClasses& classes, HWND parent, const RECT& rect, ControlEvents& events);
    Spectrum(const Spectrum&) = delete;
    Spectrum& operator=(const Spectrum&) = delete;
    ~Spectrum();

    [[nodiscard]] _kvBandscope& control() const noexcept { return *control_.Get(); }
    [[nodiscard]] _BandscopeView& view() const noexcept { return *view_.Get(); }
    void place(const RECT& rect);
    [[nodiscard]] bool translate(MSG& message) { return site_->translate(message); }
    void focus();
    /// The smallest size of the control, in pixels.
    [[nodiscard]] SIZE smallestSize() const;

  private:
    void close() noexcept;

    ComPtr<ControlSite> site_;
    ComPtr<IOleObject> object_;
    ComPtr<IOleInPlaceObject> inPlace_;
    ComPtr<_kvBandscope> control_;
    ComPtr<_BandscopeView> view_;
    std::unique_ptr<EventConnection> events_;
};

/// Twips, the unit of the control's heights and widths, to pixels.
[[nodiscard]] int pixelsOfTwips(int twips);

}  // namespace kv::host
