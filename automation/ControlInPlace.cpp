// Activation in a container's window, and deactivation. Each call to the container may deactivate or activate the
// control again before it returns; a changed `epoch_` tells so.
#include <utility>

#include "automation/BandscopeControl.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

namespace {

/// What a container may write into its title bar while the control is active.
constexpr wchar_t kActiveName[] = L"kvBandscope";

}  // namespace

HRESULT BandscopeControl::DoVerb(LONG number, LPMSG message, IOleClientSite* site, LONG /*index*/, HWND /*parent*/,
                                 LPCRECT place) {
    const ContainerCall call(*this);
    const Verb verb{site, message, place};
    switch (number) {
        case OLEIVERB_PRIMARY:
        case OLEIVERB_SHOW:
        case OLEIVERB_INPLACEACTIVATE:
            return show(verb, false);
        case OLEIVERB_UIACTIVATE:
            return show(verb, true);
        case OLEIVERB_HIDE:
            return hide(verb);
        case OLEIVERB_DISCARDUNDOSTATE:
            return S_OK;
        default:
            break;
    }
    // The control has neither a window outside the container nor property pages. An unknown verb is handled like the
    // first one.
    if (number < 0)
        return E_NOTIMPL;
    const HRESULT result = show(verb, false);
    return FAILED(result) ? result : OLEOBJ_S_INVALIDVERB;
}

HRESULT BandscopeControl::show(const Verb& verb, bool withUi) noexcept {
    const bool wasActive = inPlaceActive_;
    HRESULT result = com::firewall(controlErrors(IID_IOleObject), [&] { return activateInPlace(verb, false); });
    if (FAILED(result))
        return result;
    // A verb may have hidden the window. The focus does not change.
    if (const HWND root = rootWindow(); root && wasActive)
        ShowWindow(root, SW_SHOWNA);
    if (!withUi)
        return result;
    result = activateUi();
    if (SUCCEEDED(result) && uiActive_)
        takeFocus(verb.message);
    return result;
}

/// Containers hide and show a control around each resize and keep its window handle, so the control stays active. As
/// the first verb, this one creates the window hidden; containers show it later, by a verb or by its handle.
HRESULT BandscopeControl::hide(const Verb& verb) noexcept {
    if (!inPlaceActive_) {
        if (!activatedBefore_ && !closed_)
            static_cast<void>(
                com::firewall(controlErrors(IID_IOleObject), [&] { return activateInPlace(verb, true); }));
        return S_OK;
    }
    UIDeactivate();
    const HWND root = rootWindow();
    if (!root)
        return S_OK;
    if (holdsFocus())
        SetFocus(GetParent(root));
    if (rootWindow() == root)
        ShowWindow(root, SW_HIDE);
    return S_OK;
}

HRESULT BandscopeControl::activateInPlace(const Verb& verb, bool hidden) {
    if (verb.site && !site_)
        site_ = verb.site;
    if (inPlaceActive_)
        return S_OK;
    const unsigned epoch = ++epoch_;
    const auto overtaken = [&] { return epoch_ != epoch; };
    const auto outcome = [&] { return inPlaceActive_ ? S_OK : E_ABORT; };
    const ComPtr<IOleClientSite> site = site_;
    if (!site)
        return E_UNEXPECTED;
    closed_ = false;
    silent_ = false;
    ComPtr<IOleInPlaceSite> inPlaceSite;
    HRESULT result = site.As(&inPlaceSite);
    if (FAILED(result))
        return result;
    result = inPlaceSite->CanInPlaceActivate();
    if (overtaken())
        return outcome();
    if (result != S_OK)
        return FAILED(result) ? result : E_FAIL;
    inPlaceActive_ = true;
    activatedBefore_ = true;
    inPlaceSite_ = inPlaceSite;
    result = inPlaceSite->OnInPlaceActivate();
    if (overtaken())
        return outcome();
    if (FAILED(result)) {
        inPlaceActive_ = false;
        inPlaceSite_.Reset();
        return result;
    }
    result = makeWindows(*inPlaceSite.Get(), verb.place, epoch);
    if (overtaken())
        return outcome();
    if (FAILED(result)) {
        deactivate();
        return result;
    }
    if (hidden)
        return S_OK;
    ShowWindow(rootWindow(), SW_SHOWNA);
    if (!overtaken())
        site->ShowObject();
    return outcome();
}

HRESULT BandscopeControl::makeWindows(IOleInPlaceSite& inPlaceSite, const RECT* verbPlace, unsigned epoch) {
    HWND parent = nullptr;
    ComPtr<IOleInPlaceFrame> frame;
    ComPtr<IOleInPlaceUIWindow> document;
    RECT place{};
    RECT clip{};
    OLEINPLACEFRAMEINFO info{};
    info.cb = sizeof info;
    HRESULT result = inPlaceSite.GetWindowContext(&frame, &document, &place, &clip, &info);
    if (SUCCEEDED(result) && epoch_ == epoch)
        result = inPlaceSite.GetWindow(&parent);
    if (FAILED(result) || epoch_ != epoch)
        return result;
    if (IsRectEmpty(&place) && verbPlace)
        place = *verbPlace;
    win32::WindowTree& tree = windowTree();
    if (!tree.create(parent, place) || epoch_ != epoch)
        return E_FAIL;
    frame_ = frame;
    document_ = document;
    watch_.add(tree.root());
    forgetAsking();
    adoptInputState();
    if (epoch_ == epoch)
        placeWindow(place, &clip, true);
    return S_OK;
}

win32::WindowTree& BandscopeControl::windowTree() {
    if (!windows_) {
        win32::WindowTree::Callbacks callbacks;
        callbacks.resizedByControl = [this](raster::PixelSize size) { followSize(size); };
        // The windows are gone by deactivation, or because the container destroyed its own window first.
        callbacks.destroyed = [this] { deactivate(); };
        callbacks.owner = static_cast<IOleObject*>(this);
        windows_ = std::make_unique<win32::WindowTree>(scope_->children().userControl, platform_, std::move(callbacks));
    }
    return *windows_;
}

HRESULT BandscopeControl::activateUi() noexcept {
    if (uiActive_)
        return S_OK;
    if (!inPlaceActive_ || !rootWindow())
        return E_UNEXPECTED;
    const unsigned epoch = epoch_;
    const auto isCurrent = [&] { return uiActive_ && epoch_ == epoch; };
    const ComPtr<IOleInPlaceSite> inPlaceSite = inPlaceSite_;
    const ComPtr<IOleInPlaceFrame> frame = frame_;
    const ComPtr<IOleInPlaceUIWindow> document = document_;
    uiActive_ = true;
    const HRESULT result = inPlaceSite->OnUIActivate();
    if (!isCurrent())
        return E_ABORT;
    if (FAILED(result)) {
        uiActive_ = false;
        return result;
    }
    isActiveObject_ = true;
    if (frame)
        frame->SetActiveObject(this, kActiveName);
    if (document && isCurrent())
        document->SetActiveObject(this, kActiveName);
    // The control has no toolbars of its own, so the container keeps its borders.
    if (frame && isCurrent())
        frame->SetBorderSpace(nullptr);
    if (document && isCurrent())
        document->SetBorderSpace(nullptr);
    return isCurrent() ? S_OK : E_ABORT;
}

HRESULT BandscopeControl::GetWindow(HWND* window) {
    if (!window)
        return E_POINTER;
    // While the windows are being destroyed, there is no active object any more.
    *window = inPlaceActive_ ? rootWindow() : nullptr;
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
    const ComPtr<IOleInPlaceUIWindow> document = document_;
    if (std::exchange(isActiveObject_, false)) {
        if (frame)
            frame->SetActiveObject(nullptr, nullptr);
        if (document)
            document->SetActiveObject(nullptr, nullptr);
    }
    if (inPlaceSite)
        inPlaceSite->OnUIDeactivate(FALSE);
    return S_OK;
}

/// May be called at any time and more than once, also when the windows are already destroyed.
void BandscopeControl::deactivate() noexcept {
    const unsigned epoch = ++epoch_;
    if (!inPlaceActive_)
        return;
    const ComPtr<IOleObject> alive(this);
    UIDeactivate();
    if (epoch_ == epoch)
        tellFocus(false);
    if (epoch_ != epoch)
        return;
    inPlaceActive_ = false;
    hasFocus_ = false;
    lastFocus_ = nullptr;
    const ComPtr<IOleInPlaceSite> site = std::move(inPlaceSite_);
    const ComPtr<IOleInPlaceFrame> frame = std::move(frame_);
    const ComPtr<IOleInPlaceUIWindow> document = std::move(document_);
    if (windows_)
        windows_->destroy();
    if (site)
        site->OnInPlaceDeactivate();
}

}  // namespace kv::automation
