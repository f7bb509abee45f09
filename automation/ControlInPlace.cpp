// Activation in a container's window, and the end of it. Each call to the container may bring the control down, or up
// again, before it returns: `epoch_` tells.
#include <utility>

#include "automation/BandscopeControl.h"
#include "formenv/Twips.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

namespace {

/// Shows what the container leaves of a window at `place`.
void clipWindow(HWND window, const RECT& place, const RECT* clip) {
    RECT visible = place;
    HRGN region = nullptr;
    // An empty clip comes from containers that do not clip.
    if (clip && !IsRectEmpty(clip)) {
        IntersectRect(&visible, &place, clip);
        if (!EqualRect(&visible, &place)) {
            if (!IsRectEmpty(&visible))
                OffsetRect(&visible, -place.left, -place.top);
            region = CreateRectRgnIndirect(&visible);
        }
    }
    SetWindowRgn(window, region, TRUE);
}

SIZE sizeOf(const RECT& place) {
    return {place.right - place.left, place.bottom - place.top};
}

bool operator==(const SIZE& a, const SIZE& b) {
    return a.cx == b.cx && a.cy == b.cy;
}

class Flag {
  public:
    explicit Flag(bool& flag) noexcept : flag_(flag), before_(flag) { flag_ = true; }
    ~Flag() { flag_ = before_; }
    Flag(const Flag&) = delete;
    Flag& operator=(const Flag&) = delete;

  private:
    bool& flag_;
    bool before_;
};

}  // namespace

HRESULT BandscopeControl::DoVerb(LONG verb, LPMSG message, IOleClientSite* site, LONG /*index*/, HWND /*parent*/,
                                 LPCRECT /*place*/) {
    const ComPtr<IOleObject> alive(this);
    const Work work(*this);
    switch (verb) {
        case OLEIVERB_PRIMARY:
        case OLEIVERB_SHOW:
        case OLEIVERB_INPLACEACTIVATE:
            return activate(site, false, nullptr);
        case OLEIVERB_UIACTIVATE:
            return activate(site, true, message);
        case OLEIVERB_HIDE:
            deactivate();
            return S_OK;
        case OLEIVERB_DISCARDUNDOSTATE:
            return S_OK;
        default:
            break;
    }
    // Neither a window of its own nor property pages; and a number that is nobody's verb stands for the first.
    if (verb < 0)
        return E_NOTIMPL;
    const HRESULT result = activate(site, false, nullptr);
    return FAILED(result) ? result : OLEOBJ_S_INVALIDVERB;
}

HRESULT BandscopeControl::activate(IOleClientSite* site, bool withUi, const MSG* message) noexcept {
    if (site && !site_)
        site_ = site;
    closed_ = false;
    HRESULT result = firewall(IID_IOleObject, [&] { return activateInPlace(); });
    if (FAILED(result) || !withUi)
        return result;
    result = activateUi();
    if (SUCCEEDED(result) && uiActive_)
        takeFocus(message);
    return result;
}

HRESULT BandscopeControl::activateInPlace() {
    if (inPlaceActive_)
        return S_OK;
    const unsigned epoch = ++epoch_;
    const auto overtaken = [&] { return epoch_ != epoch; };
    const auto outcome = [&] { return inPlaceActive_ ? S_OK : E_ABORT; };
    const ComPtr<IOleClientSite> site = site_;
    if (!site)
        return E_UNEXPECTED;
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
    inPlaceSite_ = inPlaceSite;
    result = inPlaceSite->OnInPlaceActivate();
    if (overtaken())
        return outcome();
    if (FAILED(result)) {
        inPlaceActive_ = false;
        inPlaceSite_.Reset();
        return result;
    }
    result = makeWindows(*inPlaceSite.Get(), epoch);
    if (overtaken())
        return outcome();
    if (FAILED(result)) {
        deactivate();
        return result;
    }
    ShowWindow(rootWindow(), SW_SHOWNA);
    if (!overtaken())
        site->ShowObject();
    return outcome();
}

HRESULT BandscopeControl::makeWindows(IOleInPlaceSite& inPlaceSite, unsigned epoch) {
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
    win32::WindowTree& tree = windowTree();
    if (!tree.create(parent, place) || epoch_ != epoch)
        return E_FAIL;
    frame_ = frame;
    document_ = document;
    watch_.add(tree.root());
    clipWindow(tree.root(), place, &clip);
    adoptInputState();
    if (epoch_ != epoch)
        return S_OK;
    given_ = sizeOf(place);
    overruled_ = false;
    // Placing the children lets events run.
    adoptPixelSize(given_.cx, given_.cy);
    return S_OK;
}

win32::WindowTree& BandscopeControl::windowTree() {
    if (!windows_) {
        win32::WindowTree::Callbacks callbacks;
        callbacks.resizedByControl = [this](formenv::PixelSize size) { followSize(size); };
        // By deactivation, or because the container destroyed its window first.
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
    const auto stands = [&] { return uiActive_ && epoch_ == epoch; };
    const ComPtr<IOleInPlaceSite> inPlaceSite = inPlaceSite_;
    const ComPtr<IOleInPlaceFrame> frame = frame_;
    const ComPtr<IOleInPlaceUIWindow> document = document_;
    uiActive_ = true;
    const HRESULT result = inPlaceSite->OnUIActivate();
    if (!stands())
        return E_ABORT;
    if (FAILED(result)) {
        uiActive_ = false;
        return result;
    }
    isActiveObject_ = true;
    if (frame)
        frame->SetActiveObject(this, L"kvBandscope");
    if (document && stands())
        document->SetActiveObject(this, L"kvBandscope");
    // No tools of the control's own: the container keeps its borders as they are.
    if (frame && stands())
        frame->SetBorderSpace(nullptr);
    if (document && stands())
        document->SetBorderSpace(nullptr);
    return stands() ? S_OK : E_ABORT;
}

void BandscopeControl::adoptPixelSize(int width, int height) {
    const int dpi = platform_.dpi();
    scope_->resize(formenv::pixelsToTwips(width, dpi), formenv::pixelsToTwips(height, dpi));
}

/// The control gave itself another size (its least width, or the panel's collapse): the window follows, and the
/// container is asked to make room.
void BandscopeControl::followSize(formenv::PixelSize size) {
    const HWND root = rootWindow();
    if (followingSize_ || !root)
        return;
    const Flag following(followingSize_);
    overruled_ = true;
    RECT place{};
    GetWindowRect(root, &place);
    MapWindowPoints(nullptr, GetParent(root), reinterpret_cast<POINT*>(&place), 2);
    place.right = place.left + size.width;
    place.bottom = place.top + size.height;
    SetWindowPos(root, nullptr, 0, 0, size.width, size.height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    const ComPtr<IOleInPlaceSite> site = inPlaceSite_;
    if (site)
        site->OnPosRectChange(&place);
    RECT now{};
    // The control is in the middle of arranging its children for the size that it wanted: another one comes next.
    if (rootWindow() && GetClientRect(rootWindow(), &now) && !(sizeOf(now) == SIZE{size.width, size.height}))
        PostMessageW(rootWindow(), kAdoptSize, 0, 0);
}

/// The window's size is the container's last word, even below the control's least width: what does not fit is cut off.
void BandscopeControl::adoptWindowSize() noexcept {
    static_cast<void>(member([&] {
        const SIZE size = viewPixels();
        RECT now{};
        if (!GetClientRect(rootWindow(), &now) || sizeOf(now) == size)
            return;
        const Flag following(followingSize_);
        adoptPixelSize(now.right, now.bottom);
    }));
}

HRESULT BandscopeControl::SetObjectRects(LPCRECT place, LPCRECT clip) {
    if (!place)
        return E_POINTER;
    return member([&] {
        const HWND root = rootWindow();
        if (!root)
            return;
        const SIZE size = sizeOf(*place);
        // The same size again after the control asked for another: asking once more would never end.
        const bool insists = overruled_ && size == given_;
        given_ = size;
        overruled_ = false;
        clipWindow(root, *place, clip);
        SetWindowPos(root, nullptr, place->left, place->top, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
        if (rootWindow() != root || followingSize_)
            return;
        if (insists)
            adoptWindowSize();
        else
            adoptPixelSize(size.cx, size.cy);
    });
}

HRESULT BandscopeControl::GetWindow(HWND* window) {
    if (!window)
        return E_POINTER;
    *window = rootWindow();
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

/// Safe at any time and more than once; also when the windows are gone already.
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
