#include "automation/BandscopeControl.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <new>
#include <string>
#include <utility>

#include "automation/FreqSlotObject.h"
#include "com/TypeLib.h"
#include "control/Spoken.h"
#include "util/RuntimeError.h"

namespace kv::automation {

namespace {

constexpr DISPID kChgGridRange = 1;
constexpr DISPID kChgHeight = 2;
constexpr DISPID kChgFreqRange = 3;

}  // namespace

BandscopeControl::BandscopeControl() : ConnectionPointsImpl(DIID___kvBandscope) {
    platform_.setKeeper(static_cast<IOleObject*>(this));
    platform_.setBoxHost(this);
    // No other part of the program may run before it has the object. Where it waits for its first control, it would
    // create a second one.
    const win32::EventPump::Limit creating(platform_.pump(), win32::PumpScope::None);
    scope_ = std::make_unique<control::Bandscope>(
        control::Services{platform_, *this, errors_, files_, [] { return makeFreqSlot(); }});
    control::nameParts(*scope_);
    told_ = scope_->children().userControl.looks();
    sizing_.extent = naturalExtent();
}

BandscopeControl::~BandscopeControl() {
    // The last reference has been released, so the container must not be called any more. With the count at 1, calls of
    // AddRef and Release have no effect.
    references_ = 1;
    platform_.setKeeper(nullptr);
    platform_.setBoxHost(nullptr);
    ++atWork_;
    inPlaceActive_ = false;
    windows_.reset();
    scope_.reset();
}

HRESULT createBandscopeControl(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    BandscopeControl* control = nullptr;
    const HRESULT made = com::firewall(controlErrors(__uuidof(_kvBandscope)), [&] { control = new BandscopeControl; });
    if (FAILED(made))
        return made;
    const HRESULT result = control->QueryInterface(iid, object);
    control->Release();
    return result;
}

void* BandscopeControl::offered(REFIID iid) noexcept {
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(_kvBandscope))
        return static_cast<_kvBandscope*>(this);
    if (iid == __uuidof(_BandscopeView))
        return static_cast<_BandscopeView*>(&view_);
    if (iid == IID_ISupportErrorInfo)
        return static_cast<ISupportErrorInfo*>(this);
    if (iid == IID_IConnectionPointContainer)
        return static_cast<IConnectionPointContainer*>(this);
    if (iid == IID_IOleObject)
        return static_cast<IOleObject*>(this);
    if (iid == IID_IOleControl)
        return static_cast<IOleControl*>(this);
    if (iid == IID_IOleWindow || iid == IID_IOleInPlaceObject)
        return static_cast<IOleInPlaceObject*>(this);
    if (iid == IID_IOleInPlaceActiveObject)
        return static_cast<IOleInPlaceActiveObject*>(this);
    if (iid == IID_IViewObject || iid == IID_IViewObject2 || iid == IID_IViewObjectEx)
        return static_cast<IViewObjectEx*>(this);
    if (iid == IID_IDataObject)
        return static_cast<IDataObject*>(this);
    if (iid == IID_IQuickActivate)
        return static_cast<IQuickActivate*>(this);
    if (iid == IID_IPersist || iid == IID_IPersistStreamInit)
        return static_cast<IPersistStreamInit*>(this);
    if (iid == IID_IPersistStorage)
        return static_cast<IPersistStorage*>(this);
    if (iid == IID_IPersistPropertyBag)
        return static_cast<IPersistPropertyBag*>(this);
    if (iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2)
        return static_cast<IProvideClassInfo2*>(this);
    return nullptr;
}

HRESULT BandscopeControl::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = offered(iid);
    if (!*object)
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

HRESULT BandscopeControl::InterfaceSupportsErrorInfo(REFIID iid) {
    return iid == __uuidof(_kvBandscope) || iid == __uuidof(_BandscopeView) ? S_OK : S_FALSE;
}

ULONG BandscopeControl::AddRef() {
    return ++references_;
}

ULONG BandscopeControl::Release() {
    const ULONG left = --references_;
    if (left == 0)
        delete this;
    return left;
}

void BandscopeControl::ChgGridRange() {
    if (!silent_)
        fire(kChgGridRange);
}

void BandscopeControl::ChgHeight(std::int16_t iHgt) {
    constexpr double kMost = std::numeric_limits<short>::max();
    const double height = std::min(std::round(toHostTwips(iHgt)), kMost);
    const std::array<com::Variant, 1> arguments{com::Variant(static_cast<short>(height))};
    if (!silent_)
        fire(kChgHeight, arguments);
}

void BandscopeControl::ChgFreqRange(double dMin, double dMax) {
    const std::array<com::Variant, 2> arguments{com::Variant(dMin), com::Variant(dMax)};
    if (!silent_)
        fire(kChgFreqRange, arguments);
}

/// Captions and their visibility change with every channel that a host adds. They are reported when their windows are
/// updated, and with the next drawing.
void BandscopeControl::tellPicture(bool captionsToo) noexcept {
    const formenv::Widget::Looks& now = scope_->children().userControl.looks();
    if (now.changes == told_.changes && (!captionsToo || now.captions == told_.captions))
        return;
    told_ = now;
    tellSpectrum();
    tellViewChanged();
}

/// Notifies screen readers if the value of the picture has changed.
void BandscopeControl::tellSpectrum() noexcept {
    if (!rootWindow())
        return;
    formenv::Widget& spectrum = scope_->children().picSpectrum;
    static_cast<void>(com::firewall(controlErrors(IID_IOleObject), [&] {
        std::wstring value = spectrum.spoken.value();
        if (value == spokenValue_)
            return;
        spokenValue_ = std::move(value);
        spectrum.tellSpoken();
    }));
}

HRESULT BandscopeControl::GetClassInfo(ITypeInfo** info) {
    return com::getClassInfo(CLSID_kvBandscope, info);
}

HRESULT BandscopeControl::GetGUID(DWORD kind, GUID* guid) {
    if (!guid)
        return E_POINTER;
    *guid = GUID{};
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID)
        return E_INVALIDARG;
    *guid = DIID___kvBandscope;
    return S_OK;
}

}  // namespace kv::automation
