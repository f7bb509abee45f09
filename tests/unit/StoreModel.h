// The channels, keys and extremes as the described steps leave them: two arrays with an upper bound and one collection
// of keys, nothing that is fast.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "channels/ChannelStore.h"
#include "channels/FreqSlot.h"

namespace kv::control {

using AnySlot = util::Ref<channels::FreqSlotBase>;

inline channels::FreqSlotRef reference(const AnySlot& slot) {
    return channels::FreqSlotRef(slot.get());
}

/// Reads a record without telling it that it may change.
inline const channels::FreqSlotFields& look(const AnySlot& slot) {
    return std::as_const(*slot).fields();
}

class StoreModel {
  public:
    /// Reads the record as it is before the control adds it. Returns the index of the channel.
    std::int32_t add(bool tx, const AnySlot& channel);
    /// Returns false when a step of the removal fails.
    bool remove(const std::wstring& key);
    void clear(bool tx) { (tx ? tx_ : rx_) = Array(1); }
    void clearAll();
    /// The frequency extremes from the band edges, as after a removal.
    void recalculate();
    /// All extremes except the overall power range, by the rules of adding.
    void rescale();

    [[nodiscard]] AnySlot find(bool tx, const std::wstring& key) const;
    [[nodiscard]] std::int32_t count(bool tx) const;
    [[nodiscard]] std::int32_t matchRX(const channels::FreqSlotFields& wanted) const;
    [[nodiscard]] AnySlot at(bool tx, std::int32_t i) const { return (tx ? tx_ : rx_).at(static_cast<std::size_t>(i)); }

    channels::Extremes extremes;

  private:
    using Array = std::vector<AnySlot>;

    void addKey(const std::wstring& key, std::int32_t index);
    void removeKey(const std::wstring& key);
    bool close(Array& array, std::size_t index);
    void widen(bool tx, double low, double high, double power);

    Array tx_ = Array(1);
    Array rx_ = Array(1);
    std::map<std::wstring, std::int32_t> keys_;  ///< by lower-case key
};

}  // namespace kv::control
