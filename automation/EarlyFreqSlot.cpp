#include "automation/EarlyFreqSlot.h"

#include "com/HostError.h"

namespace kv::automation {

channels::ImComponent EarlyFreqSlot::imComponent(std::int32_t i) {
    channels::ImComponent component;
    com::Bstr label;
    check(slot_->get_nIMComp(i, &component.coefficient));
    check(slot_->get_dIMCompFreq(i, &component.frequency));
    check(slot_->get_sIMCompLabel(i, label.put()));
    component.label = label.str();
    return component;
}

void EarlyFreqSlot::check(HRESULT hr) const {
    if (FAILED(hr))
        com::throwHostErrorInfo(hr, slot_.Get(), IID__FreqSlot);
}

}  // namespace kv::automation
