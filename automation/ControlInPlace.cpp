// Activation in a container's window, and the end of it.
#include "automation/BandscopeControl.h"

#include "formenv/Twips.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

HRESULT BandscopeControl::DoVerb(LONG verb, LPMSG /*message*/, IOleClientSite* site, LONG /*index*/, HWND /*parent*/,
                                 LPCRECT /*place*/) {
    const ComPtr<IOleObject> alive(this);
    switch (verb) {
        case OLEIVERB_PRIMARY:
        case OLEIVERB_SHOW:
        case OLEIVERB_INPLACEACTIVATE:
            return activate(site, false);
        case OLEIVERB_UIACTIVATE:
            return activate(site, true);
        case OLEIVERB_HIDE:
            deactivate();
            return S_OK;
        case OLEIVERB_OPEN:
        case OLEIVERB_DISCARDUNDOSTATE:
            return E_NOTIMPL;
        default:
            return verb < 0 ? E_NOTIMPL : OLEOBJ_S_INVALIDVERB;
    }
}

HRESULT BandscopeControl::activate(IOleClientSite* site, bool withUi) noexcept {
    if (site && !site_)
        site_ = site;
    const HRESULT result = firewall(IID_IOleObject, [&] { return activateInPlace(); });
    if (FAILED(result) || !withUi || uiActive_ || !inPlaceSite_)
        return result;
    // The container may take the control down again in any of these calls.
    const ComPtr<IOleInPlaceSite> inPlaceSite = inPlaceSite_;
    const ComPtr<IOleInPlaceFrame> frame = frame_;
    uiActive_ = SUCCEEDED(inPlaceSite->OnUIActivate()) && inPlaceActive_;
    if (uiActive_ && frame)
        frame->SetActiveObject(this, L"kvBandscope");
    if (uiActive_ && windows_ && windows_->root())
        SetFocus(windows_->root());
    return S_OK;
}

HRESULT BandscopeControl::activateInPlace() {
    if (inPlaceActive_)
        return S_OK;
    const ComPtr<IOleClientSite> site = site_;
    if (!site)
        return E_UNEXPECTED;
    ComPtr<IOleInPlaceSite> inPlaceSite;
    HRESULT result = site.As(&inPlaceSite);
    if (FAILED(result))
        return result;
    if (inPlaceSite->CanInPlaceActivate() != S_OK)
        return E_FAIL;
    inPlaceSite->OnInPlaceActivate();
    result = makeWindows(inPlaceSite);
    if (FAILED(result)) {
        inPlaceSite->OnInPlaceDeactivate();
        return result;
    }
    // Placing the children lets events run: the container may have taken the control down again meanwhile.
    if (!inPlaceActive_)
        return E_ABORT;
    ShowWindow(windows_->root(), SW_SHOWNA);
    site->ShowObject();
    return S_OK;
}

HRESULT BandscopeControl::makeWindows(const ComPtr<IOleInPlaceSite>& inPlaceSite) {
    HWND parent = nullptr;
    ComPtr<IOleInPlaceFrame> frame;
    ComPtr<IOleInPlaceUIWindow> document;
    RECT place{};
    RECT clip{};
    OLEINPLACEFRAMEINFO info{};
    info.cb = sizeof info;
    HRESULT result = inPlaceSite->GetWindowContext(&frame, &document, &place, &clip, &info);
    if (SUCCEEDED(result))
        result = inPlaceSite->GetWindow(&parent);
    if (FAILED(result))
        return result;
    win32::WindowTree::Callbacks callbacks;
    callbacks.resizedByControl = [this](formenv::PixelSize size) { followSize(size); };
    callbacks.destroyed = [this] { windowGone(); };
    callbacks.owner = static_cast<IOleObject*>(this);
    windows_ = std::make_unique<win32::WindowTree>(scope_->children().userControl, platform_, std::move(callbacks));
    if (!windows_->create(parent, place))
        return E_FAIL;
    inPlaceActive_ = true;
    inPlaceSite_ = inPlaceSite;
    frame_ = frame;
    adoptPixelSize(place.right - place.left, place.bottom - place.top);
    return S_OK;
}

void BandscopeControl::adoptPixelSize(int width, int height) {
    const int dpi = platform_.dpi();
    scope_->resize(formenv::pixelsToTwips(width, dpi), formenv::pixelsToTwips(height, dpi));
}

/// The control gave itself another size (its least width, or the panel's collapse): the window follows, and the
/// container is asked to make room.
void BandscopeControl::followSize(formenv::PixelSize size) {
    if (followingSize_ || !windows_ || !windows_->root())
        return;
    followingSize_ = true;
    RECT place{};
    GetWindowRect(windows_->root(), &place);
    MapWindowPoints(nullptr, GetParent(windows_->root()), reinterpret_cast<POINT*>(&place), 2);
    place.right = place.left + size.width;
    place.bottom = place.top + size.height;
    SetWindowPos(windows_->root(), nullptr, 0, 0, size.width, size.height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    const ComPtr<IOleInPlaceSite> site = inPlaceSite_;
    if (site)
        site->OnPosRectChange(&place);
    followingSize_ = false;
}

HRESULT BandscopeControl::SetObjectRects(LPCRECT place, LPCRECT clip) {
    if (!place)
        return E_POINTER;
    return member([&] {
        if (!windows_ || !windows_->root())
            return;
        const HWND root = windows_->root();
        RECT visible{};
        HRGN region = nullptr;
        if (clip && IntersectRect(&visible, place, clip) && !EqualRect(&visible, place)) {
            OffsetRect(&visible, -place->left, -place->top);
            region = CreateRectRgnIndirect(&visible);
        }
        SetWindowRgn(root, region, TRUE);
        const int width = place->right - place->left;
        const int height = place->bottom - place->top;
        SetWindowPos(root, nullptr, place->left, place->top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
        // An answer to our own request brings the size that we have already.
        if (!followingSize_)
            adoptPixelSize(width, height);
    });
}

HRESULT BandscopeControl::GetWindow(HWND* window) {
    if (!window)
        return E_POINTER;
    *window = windows_ ? windows_->root() : nullptr;
    return *window ? S_OK : E_FAIL;
}

HRESULT BandscopeControl::InPlaceDeactivate() {
    const ComPtr<IOleObject> alive(this);
    deactivate();
    return S_OK;
}

HRESULT BandscopeControl::UIDeactivate() {
    const ComPtr<IOleObject> alive(this);
    if (!uiActive_)
        return S_OK;
    uiActive_ = false;
    const ComPtr<IOleInPlaceSite> inPlaceSite = inPlaceSite_;
    const ComPtr<IOleInPlaceFrame> frame = frame_;
    if (frame)
        frame->SetActiveObject(nullptr, nullptr);
    if (inPlaceSite)
        inPlaceSite->OnUIDeactivate(FALSE);
    return S_OK;
}

void BandscopeControl::deactivate() noexcept {
    if (!inPlaceActive_)
        return;
    UIDeactivate();
    if (!inPlaceActive_)
        return;
    inPlaceActive_ = false;
    if (windows_)
        windows_->destroy();
    const ComPtr<IOleInPlaceSite> site = std::move(inPlaceSite_);
    frame_.Reset();
    if (site)
        site->OnInPlaceDeactivate();
}

/// The root window is gone: by deactivation, or because the container destroyed its window first.
void BandscopeControl::windowGone() noexcept {
    if (!inPlaceActive_)
        return;
    inPlaceActive_ = false;
    uiActive_ = false;
    const ComPtr<IOleInPlaceSite> site = std::move(inPlaceSite_);
    frame_.Reset();
    if (site)
        site->OnInPlaceDeactivate();
}

}  // namespace kv::automation
