#include "channels/FreqSlot.h"

#include <utility>

#include "util/RuntimeError.h"

namespace kv::channels {

ImComponent FreqSlotBase::imComponent(std::int32_t i) {
    return std::as_const(*this).component(i);
}

ImComponent& FreqSlotBase::component(std::int32_t i) {
    const ImComponent& found = std::as_const(*this).component(i);
    watches_.tell(kReadBy<&FreqSlotFields::components>);
    return const_cast<ImComponent&>(found);
}

const ImComponent& FreqSlotBase::component(std::int32_t i) const {
    if (i < 0 || static_cast<std::size_t>(i) >= fields_.components.size())
        throw util::RuntimeError(util::error_number::kSubscriptOutOfRange);
    return fields_.components[static_cast<std::size_t>(i)];
}

void FreqSlotBase::setNIMComps(std::int16_t count) {
    if (count < 0)
        throw util::RuntimeError(util::error_number::kInvalidProcedureCall);
    if (fields_.components.size() == static_cast<std::size_t>(count))
        return;
    fields_.components.resize(static_cast<std::size_t>(count));
    watches_.tell(kReadBy<&FreqSlotFields::components>);
}

// A copy that misses the mark of a visible record only sets it once more. Any other change matters.
void FreqSlotBase::setBDrawn(bool value) {
    const bool matters = fields_.bDrawn != value && !(value && fields_.bVisible);
    fields_.bDrawn = value;
    if (matters)
        watches_.tell(change::kDrawing);
}

bool FreqSlotBase::watch(RecordWatcher& watcher, std::int32_t place) {
    if (!peek())
        return false;
    watches_.add(watcher, place);
    return true;
}

}  // namespace kv::channels
