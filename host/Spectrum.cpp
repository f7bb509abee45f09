#include "host/Spectrum.h"

namespace kv::host {

Spectrum::Spectrum(const ControlClasses& classes, HWND parent, const RECT& rect, ControlEvents& events)
    : site_(new ControlSite(parent)) {
    check(classes.control->CreateInstance(nullptr, IID_PPV_ARGS(object_.GetAddressOf())), L"Creating the control");
    check(object_.As(&control_), L"Getting the interface _kvBandscope of the control");
    check(object_.As(&view_), L"Getting the interface _BandscopeView of the control");
    try {
        site_->setRect(rect);
        // The site is set first, because a control may read ambient properties while it starts.
        check(object_->SetClientSite(site_.Get()), L"Setting the site of the control");
        ComPtr<IPersistStreamInit> start;
        if (SUCCEEDED(object_.As(&start))) {
            check(start->InitNew(), L"Initializing the control");
        }
        SIZEL extent = himetricOf({rect.right - rect.left, rect.bottom - rect.top});
        object_->SetExtent(DVASPECT_CONTENT, &extent);  // only a request; the rectangle below decides
        check(object_.As(&inPlace_), L"Getting the interface IOleInPlaceObject of the control");
        site_->setInPlaceObject(inPlace_);
        check(object_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site_.Get(), 0, parent, &rect),
              L"Activating the control");
        place(rect);
        events_ = std::make_unique<EventConnection>(object_.Get(), events);
    } catch (...) {
        close();
        throw;
    }
}

Spectrum::~Spectrum() {
    close();
}

void Spectrum::close() noexcept {
    events_.reset();
    object_->Close(OLECLOSE_NOSAVE);
    object_->SetClientSite(nullptr);
    site_->setInPlaceObject(nullptr);  // control and site hold references to each other
}

void Spectrum::place(const RECT& rect) {
    site_->setRect(rect);
    check(inPlace_->SetObjectRects(&rect, &rect), L"Placing the control");
}

void Spectrum::focus() {
    HWND window = nullptr;
    if (SUCCEEDED(inPlace_->GetWindow(&window))) {
        SetFocus(window);
    }
}

SIZE Spectrum::smallestSize() const {
    SHORT width = 0;
    SHORT height = 0;
    check(control_->get_MinWid(&width), L"Reading MinWid");
    check(control_->get_MinHgt(&height), L"Reading MinHgt");
    return {pixelsOfTwips(width), pixelsOfTwips(height)};
}

int pixelsOfTwips(int twips) {
    constexpr int kTwipsPerInch = 1440;
    const HDC screen = GetDC(nullptr);
    const int pixels = MulDiv(twips, GetDeviceCaps(screen, LOGPIXELSY), kTwipsPerInch);
    ReleaseDC(nullptr, screen);
    return pixels;
}

}  // namespace kv::host
