#include "tests/unit/StoreModel.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "channels/Sentinels.h"
#include "util/ConvertFreq.h"
#include "util/RuntimeError.h"

namespace kv::control {

namespace {

struct KeyError {};

std::wstring folded(std::wstring key) {
    for (wchar_t& character : key) {
        if (character >= L'A' && character <= L'Z')
            character = static_cast<wchar_t>(character - L'A' + L'a');
    }
    return key;
}

std::wstring unitOr(const std::wstring& unit, const wchar_t* otherwise) {
    return unit.find_first_not_of(L' ') == std::wstring::npos ? otherwise : unit;
}

/// The edges that the control gives a channel when it adds it. Throws RuntimeError 6 for a bandwidth that is too large.
std::pair<double, double> edgesOnceAdded(const channels::FreqSlotFields& f) {
    const double offset =
        f.dBW > 0.0 ? util::ConvertFreq(unitOr(f.sBWUnits, L"KHz"), unitOr(f.sFreqUnits, L"MHz"), f.dBW) : 0.0;
    return {f.dFreqLo <= 0.0 ? f.dFreq - offset : f.dFreqLo, f.dFreqHi <= 0.0 ? f.dFreq + offset : f.dFreqHi};
}

std::pair<double, double> edgesOf(const std::vector<AnySlot>& array) {
    double minimum = channels::FREQ_UNSET;
    double maximum = -channels::FREQ_UNSET;
    for (const AnySlot& slot : array) {
        if (!slot || !(look(slot).dFreq > 0.0))
            continue;
        if (look(slot).dFreqHi > 0.0)
            maximum = std::max(maximum, look(slot).dFreqHi);
        if (look(slot).dFreqLo > 0.0)
            minimum = std::min(minimum, look(slot).dFreqLo);
    }
    return {minimum, maximum};
}

bool equal(const channels::FreqSlotFields& a, const channels::FreqSlotFields& b) {
    return a.dFreqAlt == b.dFreqAlt && a.dFreq == b.dFreq && a.dFreqHi == b.dFreqHi && a.dFreqLo == b.dFreqLo &&
           a.dBW == b.dBW && a.sBWUnits == b.sBWUnits && a.sLabel == b.sLabel && a.sFreqUnits == b.sFreqUnits;
}

}  // namespace

std::int32_t StoreModel::add(bool tx, const AnySlot& channel) {
    Array& array = tx ? tx_ : rx_;
    if (array.size() != 1 || array[0])
        array.resize(array.size() + 1);
    const std::size_t index = array.size() - 1;
    array[index] = channel;
    const channels::FreqSlotFields& fields = look(channel);
    try {
        addKey(fields.sKey, static_cast<std::int32_t>(index));
        if (fields.dFreq > 0.0) {
            const auto [low, high] = edgesOnceAdded(fields);
            widen(tx, low, high, fields.dPwrDBM);
        }
    } catch (const KeyError&) {
        // The channel is counted and drawn, but cannot be found.
    } catch (const util::RuntimeError&) {
        // It has its key, but widens nothing.
    }
    return static_cast<std::int32_t>(index);
}

AnySlot StoreModel::find(bool tx, const std::wstring& key) const {
    const auto found = keys_.find(folded(key));
    if (found == keys_.end())
        return nullptr;
    const Array& array = tx ? tx_ : rx_;
    const auto index = static_cast<std::size_t>(found->second);
    if (index >= array.size() || !array[index] || look(array[index]).sKey != key)
        return nullptr;
    return array[index];
}

bool StoreModel::remove(const std::wstring& key) {
    if (!find(true, key) && !find(false, key))
        return true;
    const auto index = static_cast<std::size_t>(keys_.at(folded(key)));
    const std::wstring prefix = folded(key.substr(0, 2));
    bool whole = true;
    if (prefix == L"tx")
        whole = close(tx_, index);
    else if (prefix == L"rx")
        whole = close(rx_, index);
    try {
        removeKey(key);
    } catch (const KeyError&) {
        return false;
    }
    recalculate();
    return whole;
}

void StoreModel::clearAll() {
    clear(true);
    clear(false);
    keys_.clear();
    extremes.dTXFreqMin = extremes.dRXFreqMin = extremes.dFreqMin = channels::FREQ_UNSET;
    extremes.dTXFreqMax = extremes.dRXFreqMax = extremes.dFreqMax = -channels::FREQ_UNSET;
}

void StoreModel::recalculate() {
    std::tie(extremes.dTXFreqMin, extremes.dTXFreqMax) = edgesOf(tx_);
    std::tie(extremes.dRXFreqMin, extremes.dRXFreqMax) = edgesOf(rx_);
    extremes.dFreqMin = std::min(extremes.dTXFreqMin, extremes.dRXFreqMin);
    extremes.dFreqMax = std::max(extremes.dTXFreqMax, extremes.dRXFreqMax);
}

void StoreModel::rescale() {
    extremes.dTXFreqMin = extremes.dRXFreqMin = extremes.dFreqMin = channels::FREQ_UNSET;
    extremes.dTXFreqMax = extremes.dRXFreqMax = extremes.dFreqMax = -channels::FREQ_UNSET;
    extremes.dTXPwrDBMMin = channels::FREQ_UNSET;
    extremes.dTXPwrDBMMax = -channels::FREQ_UNSET;
    for (const bool tx : {true, false}) {
        for (std::int32_t i = 0; i < count(tx); ++i) {
            const channels::FreqSlotFields& fields = look(at(tx, i));
            if (fields.dFreq > 0.0)
                widen(tx, fields.dFreqLo, fields.dFreqHi, fields.dPwrDBM);
        }
    }
}

std::int32_t StoreModel::count(bool tx) const {
    const Array& array = tx ? tx_ : rx_;
    return array[0] ? static_cast<std::int32_t>(array.size()) : 0;
}

std::int32_t StoreModel::matchRX(const channels::FreqSlotFields& wanted) const {
    for (std::int32_t i = 0; i < count(false); ++i) {
        if (equal(look(at(false, i)), wanted))
            return i;
    }
    return channels::kInvalid;
}

void StoreModel::addKey(const std::wstring& key, std::int32_t index) {
    if (!keys_.emplace(folded(key), index).second)
        throw KeyError{};
}

void StoreModel::removeKey(const std::wstring& key) {
    if (keys_.erase(folded(key)) == 0)
        throw KeyError{};
}

/// False when the key of a channel could not be moved with it.
bool StoreModel::close(Array& array, std::size_t index) {
    bool whole = true;
    const std::size_t count = array[0] ? array.size() : 0;
    for (std::size_t j = index; j + 2 <= count; ++j) {
        array[j] = array[j + 1];
        try {
            removeKey(look(array[j]).sKey);
            addKey(look(array[j]).sKey, static_cast<std::int32_t>(j));
        } catch (const KeyError&) {
            whole = false;
        }
    }
    if (count < 2)
        array[0] = nullptr;
    else
        array.resize(count - 1);
    return whole;
}

void StoreModel::widen(bool tx, double low, double high, double power) {
    if (high > 0.0) {
        double& own = tx ? extremes.dTXFreqMax : extremes.dRXFreqMax;
        own = std::max(own, high);
        extremes.dFreqMax = std::max(extremes.dFreqMax, high);
    }
    if (low > 0.0) {
        double& own = tx ? extremes.dTXFreqMin : extremes.dRXFreqMin;
        own = std::min(own, low);
        extremes.dFreqMin = std::min(extremes.dFreqMin, low);
    }
    if (!tx || !std::isfinite(power))
        return;
    extremes.dTXPwrDBMMax = std::max(extremes.dTXPwrDBMMax, power);
    extremes.dTXPwrDBMMin = std::min(extremes.dTXPwrDBMMin, power);
    extremes.dPwrMin = std::min(extremes.dPwrMin, power);
    extremes.dPwrMax = std::max(extremes.dPwrMax, power);
}

}  // namespace kv::control
