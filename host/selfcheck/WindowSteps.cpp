// The control in a window: what the window shows, sizes, hiding, another parent window, another resolution.
#include <algorithm>
#include <array>

#include "host/selfcheck/CheckWindow.h"
#include "host/selfcheck/Comparison.h"
#include "host/selfcheck/PlainDpi.h"

namespace kv::host {

namespace {

/// Screens with fewer colors cannot show the picture exactly.
bool showsAllColors() {
    const HDC screen = GetDC(nullptr);
    const int bits = GetDeviceCaps(screen, BITSPIXEL) * GetDeviceCaps(screen, PLANES);
    ReleaseDC(nullptr, screen);
    return bits >= 24;
}

/// The inside of the control's window, without a border.
Pixels shownChannels(const CheckWindow& window) {
    return shownPixels(window.picture());
}

/// The saved picture, where the window with the channels is.
Pixels savedChannels(const CheckWindow& window) {
    const HWND picture = window.picture();
    const RECT place = placeInParent(picture);
    RECT client{};
    GetClientRect(picture, &client);
    const LONG border = (place.right - place.left - client.right) / 2;
    return cut(window.saved(), {place.left + border, place.top + border}, client.right, client.bottom);
}

/// The control is as large as the window, but not narrower than its smallest width. `more` is the size of the client
/// area beyond the smallest size of the control.
void checkSize(Context& context, CheckWindow& window, SIZE more) {
    const SIZE least = window.spectrum().smallestSize();
    RECT outer = {0, 0, least.cx + more.cx, least.cy + more.cy};
    AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongPtrW(window.window(), GWL_STYLE)), FALSE, 0);
    window.resize(outer.right - outer.left, outer.bottom - outer.top);
    RECT client{};
    GetClientRect(window.window(), &client);
    const RECT place = placeInParent(window.controlWindow());
    const SIZE control = {place.right - place.left, place.bottom - place.top};
    const Pixels saved = window.saved();
    const bool fits = control.cx == std::max(client.right, least.cx) && control.cy == client.bottom;
    context.report.expect(fits && saved.width > 0 && saved.width <= control.cx,
                          L"Size " + std::to_wstring(client.right) + L" x " + std::to_wstring(client.bottom),
                          L"control " + std::to_wstring(control.cx) + L" x " + std::to_wstring(control.cy) +
                              L", picture " + saved.sizeText());
}

HRESULT doVerb(const CheckWindow& window, LONG verb, IOleClientSite* site, HWND parent, const RECT& place) {
    ComPtr<IOleObject> object;
    check(window.control().QueryInterface(IID_PPV_ARGS(object.GetAddressOf())), L"Getting IOleObject of the control");
    return object->DoVerb(verb, nullptr, site, 0, parent, &place);
}

ComPtr<IOleClientSite> siteOf(const CheckWindow& window) {
    ComPtr<IOleObject> object;
    ComPtr<IOleClientSite> site;
    check(window.control().QueryInterface(IID_PPV_ARGS(object.GetAddressOf())), L"Getting IOleObject of the control");
    check(object->GetClientSite(site.GetAddressOf()), L"Getting the site of the control");
    return site;
}

/// A window of its own for a control that moves there. The control is taken off before the window is destroyed.
class OtherParent {
  public:
    explicit OtherParent(const CheckWindow& first) : window_(newTopWindow()), site_(new ControlSite(window_)) {
        check(first.control().QueryInterface(IID_PPV_ARGS(object_.GetAddressOf())), L"Getting IOleObject");
        check(object_.As(&inPlace_), L"Getting IOleInPlaceObject of the control");
        ShowWindow(window_, SW_SHOWNOACTIVATE);
    }
    OtherParent(const OtherParent&) = delete;
    OtherParent& operator=(const OtherParent&) = delete;
    ~OtherParent() {
        inPlace_->InPlaceDeactivate();
        object_->SetClientSite(nullptr);
        site_->setInPlaceObject(nullptr);
        DestroyWindow(window_);
    }

    void takeOver(const RECT& place) {
        check(inPlace_->InPlaceDeactivate(), L"InPlaceDeactivate");
        check(object_->SetClientSite(site_.Get()), L"SetClientSite");
        site_->setRect(place);
        site_->setInPlaceObject(inPlace_);
        check(object_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site_.Get(), 0, window_, &place), L"Activation");
        check(inPlace_->SetObjectRects(&place, &place), L"SetObjectRects");
        runMessages(50);
    }
    [[nodiscard]] HWND window() const noexcept { return window_; }

  private:
    HWND window_;
    ComPtr<ControlSite> site_;
    ComPtr<IOleObject> object_;
    ComPtr<IOleInPlaceObject> inPlace_;
};

}  // namespace

void checkWindow(Context& context) {
    const CheckWindow window(context);
    if (!showsAllColors()) {
        context.report.notPossible(L"Window shows the picture", L"the screen has less than 24 bits a pixel");
        return;
    }
    SetWindowPos(window.window(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    runMessages(200);
    const Pixels shown = shownChannels(window);
    const std::size_t different = countDifferent(shown, savedChannels(window));
    context.report.add(different == 0 ? Verdict::kPassed : Verdict::kDiffers, L"Window shows the picture",
                       differenceText(different, shown));
}

void checkSizes(Context& context) {
    CheckWindow window(context);
    constexpr std::array<SIZE, 8> kMore = {
        {{-120, 0}, {180, 20}, {300, 200}, {81, 101}, {-80, 300}, {380, 7}, {0, 0}, {333, 111}}};
    for (const SIZE more : kMore) {
        checkSize(context, window, more);
    }
}

void checkHideAndShow(Context& context) {
    const CheckWindow window(context);
    const ComPtr<IOleClientSite> site = siteOf(window);
    const RECT place = placeInParent(window.controlWindow());
    const Pixels before = window.saved();
    check(doVerb(window, OLEIVERB_HIDE, site.Get(), window.window(), place), L"The verb HIDE");
    runMessages(20);
    const HWND hidden = window.controlWindow();
    context.report.expect(hidden == nullptr || !IsWindowVisible(hidden), L"Verb HIDE hides the control");
    check(doVerb(window, OLEIVERB_SHOW, site.Get(), window.window(), place), L"The verb SHOW");
    runMessages(50);
    context.report.expect(IsWindowVisible(window.controlWindow()) != FALSE, L"Verb SHOW shows it again");
    const std::size_t different = countDifferent(before, window.saved());
    context.report.expect(different == 0, L"Its picture is the same", differenceText(different, before));
}

void checkNewParent(Context& context) {
    const CheckWindow window(context);
    const RECT place = placeInParent(window.controlWindow());
    const Pixels before = window.saved();
    OtherParent other(window);
    other.takeOver(place);
    context.report.expect(GetParent(window.controlWindow()) == other.window(),
                          L"Control moves to another parent window");
    const std::size_t different = countDifferent(before, window.saved());
    context.report.expect(different == 0, L"Its picture there is the same", differenceText(different, before));
}

}  // namespace kv::host
