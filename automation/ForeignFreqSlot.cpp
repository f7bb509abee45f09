#include "automation/ForeignFreqSlot.h"

#include <wrl/client.h>

#include "automation/EarlyFreqSlot.h"
#include "automation/FreqSlotObject.h"
#include "automation/HostChannel.h"
#include "automation/LateFreqSlot.h"
#include "util/RuntimeError.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

channels::FreqSlotRef channelFromHost(IUnknown* object) {
    if (!object)
        throw util::RuntimeError(util::error_number::kObjectNotSet);
    ComPtr<IChannelAccess> access;
    if (SUCCEEDED(object->QueryInterface(kIidChannelAccess, reinterpret_cast<void**>(access.GetAddressOf()))) &&
        access->home() == channelHome())
        return channels::FreqSlotRef(access->channel());
    ComPtr<_FreqSlot> slot;
    if (SUCCEEDED(object->QueryInterface(IID_PPV_ARGS(slot.GetAddressOf()))))
        return channels::FreqSlotRef::adopt(new EarlyFreqSlot(std::move(slot)));
    ComPtr<IDispatch> dispatch;
    if (SUCCEEDED(object->QueryInterface(IID_PPV_ARGS(dispatch.GetAddressOf()))))
        return channels::FreqSlotRef::adopt(new LateFreqSlot(std::move(dispatch)));
    throw util::RuntimeError(util::error_number::kTypeMismatch);
}

HRESULT channelToHost(channels::FreqSlot* channel, _FreqSlot** out) noexcept {
    if (!out)
        return E_POINTER;
    *out = nullptr;
    if (!channel)
        return S_OK;
    if (auto* own = dynamic_cast<FreqSlotObject*>(channel)) {
        own->AddRef();
        *out = own;
    } else if (auto* foreign = dynamic_cast<HostChannel*>(channel)) {
        *out = foreign->shareWithHost();
    } else {
        return E_NOINTERFACE;
    }
    return S_OK;
}

namespace {

HRESULT convertToChannel(IUnknown* object, IDispatch** converted) {
    try {
        _FreqSlot* channel = nullptr;
        const HRESULT hr = channelToHost(channelFromHost(object).get(), &channel);
        *converted = channel;
        return hr;
    } catch (const util::RuntimeError&) {
        return DISP_E_TYPEMISMATCH;
    }
}

}  // namespace

const com::ObjectConverter kChannelConverter{&IID__FreqSlot, convertToChannel};

}  // namespace kv::automation
