// The size of the control: the extent that the container sets, the rectangle of the window, and the layout, which is
// never narrower than the control's minimum width. docs/design.md describes how they depend on each other.
#include <algorithm>

#include "automation/BandscopeControl.h"
#include "automation/Extent.h"
#include "raster/Twips.h"
#include "util/Raised.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

namespace {

/// How often the control asks again about the same size. Otherwise, a container that gives the room and takes it back
/// each time would cause an endless loop.
constexpr int kMostAsks = 8;

/// Shows the part of a window at `place` that the container does not clip.
void clipWindow(HWND window, const RECT& place, const RECT* clip) {
    RECT visible = place;
    HRGN region = nullptr;
    // Containers that do not clip pass an empty rectangle.
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

bool operator==(const SIZE& a, const SIZE& b) {
    return a.cx == b.cx && a.cy == b.cy;
}

SIZE sizeOf(const RECT& place) {
    return {std::max<LONG>(place.right - place.left, 0), std::max<LONG>(place.bottom - place.top, 0)};
}

SIZE sizeOf(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return {client.right, client.bottom};
}

bool isEmpty(const SIZE& size) {
    return size.cx <= 0 || size.cy <= 0;
}

RECT placeInParent(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

}  // namespace

BandscopeControl::ContainerCall::ContainerCall(BandscopeControl& control) noexcept
    : control_(control),
      alive_(&control),
      work_(control),
      limit_(control.platform_.pump(), win32::PumpScope::OwnWindows) {
    ++control_.sizing_.containerCalls;
}

BandscopeControl::ContainerCall::~ContainerCall() {
    if (--control_.sizing_.containerCalls == 0)
        control_.askForRoomLater();
}

LONG BandscopeControl::pixelsOf(double twips) const noexcept {
    return raster::twipsToPixels(twips, platform_.dpi());
}

SIZEL BandscopeControl::naturalExtent() const noexcept {
    return {twipsToHimetric(toHostTwips(scope_->MinWid())), twipsToHimetric(toHostTwips(scope_->MinHgt()))};
}

SIZE BandscopeControl::viewStartPixels() {
    return {pixelsOf(scope_->MinWid()), pixelsOf(scope_->MinHgt())};
}

SIZEL BandscopeControl::viewNaturalExtent(const SIZEL* proposed) {
    const SIZEL natural = naturalExtent();
    return proposed ? SIZEL{std::max(proposed->cx, natural.cx), std::max<LONG>(proposed->cy, 0)} : natural;
}

/// The part of the layout that is visible in the container's rectangle, as in the window.
SIZE BandscopeControl::viewPixels() {
    const formenv::Widget& control = scope_->children().userControl;
    const SIZE layout{pixelsOf(control.width()), pixelsOf(control.height())};
    return {sizing_.given.cx > 0 ? std::min(sizing_.given.cx, layout.cx) : layout.cx,
            sizing_.given.cy > 0 ? std::min(sizing_.given.cy, layout.cy) : layout.cy};
}

/// A picture has a size even while the container tries an extent of 0.
SIZEL BandscopeControl::viewExtent() {
    return isEmpty(sizing_.extent) ? extentOf(viewPixels(), platform_.hostDpi(), sizing_.extent) : sizing_.extent;
}

HRESULT BandscopeControl::GetExtent(DWORD aspect, SIZEL* size) {
    if (!size)
        return E_POINTER;
    *size = SIZEL{};
    if (aspect != DVASPECT_CONTENT)
        return DV_E_DVASPECT;
    *size = sizing_.extent;
    return S_OK;
}

HRESULT BandscopeControl::SetExtent(DWORD aspect, SIZEL* size) {
    if (aspect != DVASPECT_CONTENT)
        return DV_E_DVASPECT;
    if (!size)
        return E_POINTER;
    if (size->cx < 0 || size->cy < 0)
        return E_INVALIDARG;
    const ContainerCall call(*this);
    return com::firewall(controlErrors(IID_IOleObject), [&] { adoptExtent(*size); });
}

/// The size of a window does not change, because containers also set an extent to try it. Only SetObjectRects changes
/// it.
void BandscopeControl::adoptExtent(const SIZEL& extent) {
    const SIZE pixels = himetricToPixels(extent, platform_.hostDpi());
    sizing_.extent = extent;
    sizing_.placeholder = false;
    sizing_.sized = sizing_.sized || pixels.cy >= pixelsOf(scope_->leastHeight(false));
    if (rootWindow())
        return;
    sizing_.given = pixels;
    if (!isEmpty(extent))
        scope_->resize(fromHostTwips(himetricToTwips(extent.cx)), fromHostTwips(himetricToTwips(extent.cy)));
}

HRESULT BandscopeControl::SetObjectRects(LPCRECT place, LPCRECT clip) {
    if (!place)
        return E_POINTER;
    const ContainerCall call(*this);
    // Containers treat any other result as a failure of their own resize.
    static_cast<void>(com::firewall(controlErrors(IID_IOleInPlaceObject), [&] { placeWindow(*place, clip, false); }));
    return S_OK;
}

void BandscopeControl::placeWindow(const RECT& place, const RECT* clip, bool atActivation) {
    const HWND root = rootWindow();
    if (!root)
        return;
    const SIZE size = sizeOf(place);
    clipWindow(root, place, clip);
    SetWindowPos(root, nullptr, place.left, place.top, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
    // The container may have moved the window again when it was notified of the new place.
    if (rootWindow() == root)
        adoptSize(sizeOf(root), atActivation);
}

/// Called when the window gets its first or another size, or when the container sets the same size again.
void BandscopeControl::adoptSize(const SIZE& window, bool atActivation) {
    if (atActivation)
        sizing_.first = window;
    const bool isFirst = !sizing_.sized && window == sizing_.first;
    sizing_.placeholder =
        isFirst && (atActivation || sizing_.placeholder) && window.cy < pixelsOf(scope_->leastHeight(true));
    sizing_.wantsHeight = isFirst && (atActivation || sizing_.wantsHeight) &&
                          window.cy < pixelsOf(scope_->leastHeight(scope_->isCollapsed()));
    sizing_.sized = sizing_.sized || window.cy >= pixelsOf(scope_->leastHeight(false));
    sizing_.given = sizing_.placeholder ? SIZE{} : window;
    sizing_.extent = sizing_.placeholder ? naturalExtent() : extentOf(window, platform_.hostDpi(), sizing_.extent);
    layOut();
    const bool isCut = !isEmpty(sizing_.given) && pixelsOf(scope_->children().userControl.width()) > sizing_.given.cx;
    sizing_.wantsRoom = sizing_.wantsHeight || isCut;
}

/// Lays out the control for the size that the container gave. Without room for a pixel, the layout stays as it is.
void BandscopeControl::layOut() {
    if (sizing_.followingSize)
        return;
    if (sizing_.placeholder)
        scope_->resize(scope_->MinWid(), scope_->MinHgt());
    else if (!isEmpty(sizing_.given))
        scope_->resize(raster::pixelsToTwips(sizing_.given.cx, platform_.dpi()),
                       raster::pixelsToTwips(sizing_.given.cy, platform_.dpi()));
}

/// The control changed its own size. For the height of a collapsed or expanded panel, the container is asked at once,
/// and the control is laid out in the size that the container sets. A layout that is wider than the window is clipped,
/// and the container is asked after its own call.
void BandscopeControl::followSize(raster::PixelSize size) {
    const HWND root = rootWindow();
    if (!root || !scope_->bSizing())
        return;
    const SIZE before = sizeOf(root);
    const ComPtr<IOleInPlaceSite> site = inPlaceSite_;
    if (size.height == before.cy)
        return;
    if (sizing_.containerCalls == 0 && site) {
        const util::Raised following(sizing_.followingSize);
        RECT place = placeInParent(root);
        place.bottom = place.top + size.height;
        site->OnPosRectChange(&place);
    }
    if (rootWindow() != root)
        return;
    const SIZE now = sizeOf(root);
    formenv::Widget& control = scope_->children().userControl;
    formenv::Place place = control.place();
    if (now.cx != before.cx)
        place.width = raster::pixelsToTwips(now.cx, platform_.dpi());
    if (now.cy != size.height)
        place.height = raster::pixelsToTwips(now.cy, platform_.dpi());
    control.move(place);
}

void BandscopeControl::askForRoomLater() noexcept {
    const HWND root = rootWindow();
    if (sizing_.wantsRoom && !sizing_.askPosted && root)
        sizing_.askPosted = PostMessageW(root, kAskForRoom, 0, 0) != FALSE;
}

void BandscopeControl::forgetAsking() noexcept {
    sizing_.wantsRoom = false;
    sizing_.askPosted = false;
    sizing_.refused = SIZE{-1, -1};
    sizing_.askedAt = SIZE{-1, -1};
}

/// The size that the control requests instead of the window's.
SIZE BandscopeControl::roomFor(const SIZE& window) const noexcept {
    return {std::max(window.cx, pixelsOf(scope_->MinWid())),
            sizing_.wantsHeight ? pixelsOf(scope_->MinHgt()) : window.cy};
}

void BandscopeControl::askForRoom() noexcept {
    sizing_.askPosted = false;
    const HWND root = rootWindow();
    const ComPtr<IOleInPlaceSite> site = inPlaceSite_;
    // Inside a call of the container, the container is asked at the end of that call.
    if (sizing_.containerCalls > 0 || !sizing_.wantsRoom || !root || !site)
        return;
    sizing_.wantsRoom = false;
    RECT place = placeInParent(root);
    const SIZE now = sizeOf(place);
    sizing_.asked = now == sizing_.askedAt ? sizing_.asked + 1 : 1;
    sizing_.askedAt = now;
    if (now == sizing_.refused || sizing_.asked > kMostAsks)
        return;
    const SIZE wanted = roomFor(now);
    place.right = place.left + wanted.cx;
    place.bottom = place.top + wanted.cy;
    site->OnPosRectChange(&place);
    if (rootWindow() != root)
        return;
    const SIZE after = sizeOf(root);
    if (after.cx >= wanted.cx && after.cy >= wanted.cy)
        return;
    sizing_.refused = after;
    sizing_.wantsHeight = false;
    if (!sizing_.placeholder)
        return;
    sizing_.placeholder = false;
    sizing_.given = after;
    sizing_.extent = extentOf(after, platform_.hostDpi(), sizing_.extent);
}

}  // namespace kv::automation
