#include "turndial/Knob.h"

namespace kv::turndial {

void KnobBase::setDVal(double value) {
    if (dVal_ == value)
        return;
    dVal_ = value;
    tellPeer(formenv::Change::Value);
}

void tdKnob::AddStop(bool bFirst, std::wstring sLabel, double dValue) {
    if (bFirst)
        stops_.clear();
    stops_.push_back({std::move(sLabel), dValue});
}

}  // namespace kv::turndial
