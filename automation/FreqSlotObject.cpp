#include "automation/FreqSlotObject.h"

#include "com/TypeLib.h"

namespace kv::automation {

const void* channelHome() noexcept {
    static const char home = 0;
    return &home;
}

HRESULT FreqSlotObject::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == IID__FreqSlot)
        *object = static_cast<_FreqSlot*>(this);
    else if (iid == IID_ISupportErrorInfo)
        *object = static_cast<ISupportErrorInfo*>(this);
    else if (iid == IID_IProvideClassInfo)
        *object = static_cast<IProvideClassInfo*>(this);
    else if (iid == kIidChannelAccess)
        *object = static_cast<IChannelAccess*>(this);
    else
        *object = nullptr;
    if (!*object)
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG FreqSlotObject::AddRef() {
    return static_cast<ULONG>(InterlockedIncrement(&references_));
}

ULONG FreqSlotObject::Release() {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0)
        delete this;
    return static_cast<ULONG>(left);
}

HRESULT FreqSlotObject::GetClassInfo(ITypeInfo** info) {
    return com::getClassInfo(CLSID_FreqSlot, info);
}

HRESULT FreqSlotObject::put_nIMComps(short value) {
    return com::plainFirewall(kFreqSlotErrors, [&] { setNIMComps(value); });
}

HRESULT FreqSlotObject::get_nIMComps(short* value) {
    return com::firewallReturn(kFreqSlotErrors, value, [&] { return nIMComps(); });
}

util::Ref<channels::FreqSlotBase> makeFreqSlot() {
    return util::Ref<channels::FreqSlotBase>::adopt(new FreqSlotObject);
}

HRESULT createFreqSlot(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    return com::plainFirewall(kFreqSlotErrors, [&] {
        auto* const slot = new FreqSlotObject;
        const HRESULT hr = slot->QueryInterface(iid, object);
        slot->Release();
        return hr;
    });
}

}  // namespace kv::automation
