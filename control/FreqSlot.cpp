#include "control/FreqSlot.h"

#include "util/RuntimeError.h"

namespace kv::control {

ImComponent FreqSlotBase::imComponent(std::int32_t i) {
    return component(i);
}

ImComponent& FreqSlotBase::component(std::int32_t i) {
    if (i < 0 || static_cast<std::size_t>(i) >= fields_.components.size())
        throw util::RuntimeError(util::error_number::kSubscriptOutOfRange);
    return fields_.components[static_cast<std::size_t>(i)];
}

void FreqSlotBase::setNIMComps(std::int16_t count) {
    if (count < 0)
        throw util::RuntimeError(util::error_number::kInvalidProcedureCall);
    fields_.components.resize(static_cast<std::size_t>(count));
}

DrawRecord FreqSlotBase::drawRecord() {
    const FreqSlotFields& f = fields_;
    return {f.dFreq, f.dFreqLo, f.dFreqHi, f.dPwrDBM, f.lColor, f.lColorLine, f.iFillStyle, f.bVisible, f.bDrawn};
}

}  // namespace kv::control
