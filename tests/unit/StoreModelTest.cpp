// Random sequences of adding, removing and clearing, compared with a model that takes every step as it is described:
// arrays with an upper bound, one collection of keys.
#include <algorithm>
#include <array>
#include <map>
#include <random>

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

struct KeyError {};

class Model {
  public:
    std::int32_t add(bool tx, const SlotRef& channel) {
        Array& array = tx ? tx_ : rx_;
        std::size_t index = 0;
        if (array.size() == 1 && !array[0]) {
            index = 0;
        } else {
            array.resize(array.size() + 1);
            index = array.size() - 1;
        }
        array[index] = channel;
        try {
            addKey(channel->fields().sKey, static_cast<std::int32_t>(index));
            widen(tx, channel->fields());
        } catch (const KeyError&) {
        }
        return static_cast<std::int32_t>(index);
    }

    SlotRef find(bool tx, const std::wstring& key) const {
        const auto found = keys_.find(folded(key));
        if (found == keys_.end())
            return nullptr;
        const Array& array = tx ? tx_ : rx_;
        const auto index = static_cast<std::size_t>(found->second);
        if (index >= array.size() || !array[index] || array[index]->fields().sKey != key)
            return nullptr;
        return array[index];
    }

    /// False when a step of it fails.
    bool remove(const std::wstring& key) {
        if (!find(true, key) && !find(false, key))
            return true;
        const auto index = static_cast<std::size_t>(keys_.at(folded(key)));
        const std::wstring prefix = folded(key.substr(0, 2));
        try {
            if (prefix == L"tx")
                close(tx_, index);
            else if (prefix == L"rx")
                close(rx_, index);
            removeKey(key);
        } catch (const KeyError&) {
            return false;
        }
        recalc(tx_, extremes.dTXFreqMin, extremes.dTXFreqMax);
        recalc(rx_, extremes.dRXFreqMin, extremes.dRXFreqMax);
        extremes.dFreqMin = std::min(extremes.dTXFreqMin, extremes.dRXFreqMin);
        extremes.dFreqMax = std::max(extremes.dTXFreqMax, extremes.dRXFreqMax);
        return true;
    }

    void clear(bool tx) { (tx ? tx_ : rx_) = Array(1); }

    void clearAll() {
        clear(true);
        clear(false);
        keys_.clear();
        extremes.dTXFreqMin = extremes.dRXFreqMin = extremes.dFreqMin = FREQ_UNSET;
        extremes.dTXFreqMax = extremes.dRXFreqMax = extremes.dFreqMax = -FREQ_UNSET;
    }

    std::int32_t count(bool tx) const {
        const Array& array = tx ? tx_ : rx_;
        return array[0] ? static_cast<std::int32_t>(array.size()) : 0;
    }
    SlotRef at(bool tx, std::int32_t i) const { return (tx ? tx_ : rx_).at(static_cast<std::size_t>(i)); }

    Extremes extremes;

  private:
    using Array = std::vector<SlotRef>;

    static std::wstring folded(std::wstring key) {
        for (wchar_t& letter : key) {
            if (letter >= L'A' && letter <= L'Z')
                letter = static_cast<wchar_t>(letter - L'A' + L'a');
        }
        return key;
    }
    void addKey(const std::wstring& key, std::int32_t index) {
        if (!keys_.emplace(folded(key), index).second)
            throw KeyError{};
    }
    void removeKey(const std::wstring& key) {
        if (keys_.erase(folded(key)) == 0)
            throw KeyError{};
    }
    void close(Array& array, std::size_t index) {
        const std::size_t count = array[0] ? array.size() : 0;
        for (std::size_t j = index; j + 2 <= count; ++j) {
            array[j] = array[j + 1];
            removeKey(array[j]->fields().sKey);
            addKey(array[j]->fields().sKey, static_cast<std::int32_t>(j));
        }
        if (count < 2)
            array[0] = nullptr;
        else
            array.resize(count - 1);
    }
    static void recalc(const Array& array, double& minimum, double& maximum) {
        minimum = FREQ_UNSET;
        maximum = -FREQ_UNSET;
        for (const SlotRef& slot : array) {
            if (!slot)
                continue;
            maximum = std::max(maximum, slot->fields().dFreqHi);
            minimum = std::min(minimum, slot->fields().dFreqLo);
        }
    }
    void widen(bool tx, const FreqSlotFields& f) {
        if (!(f.dFreq > 0.0))
            return;
        const double high = f.dFreq + f.dBW / 1000.0;
        const double low = f.dFreq - f.dBW / 1000.0;
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
        if (!tx)
            return;
        extremes.dTXPwrDBMMax = std::max(extremes.dTXPwrDBMMax, f.dPwrDBM);
        extremes.dTXPwrDBMMin = std::min(extremes.dTXPwrDBMMin, f.dPwrDBM);
        extremes.dPwrMin = std::min(extremes.dPwrMin, f.dPwrDBM);
        extremes.dPwrMax = std::max(extremes.dPwrMax, f.dPwrDBM);
    }

    Array tx_ = Array(1);
    Array rx_ = Array(1);
    std::map<std::wstring, std::int32_t> keys_;
};

constexpr std::array<const wchar_t*, 12> kKeys = {L"TX1", L"tx1", L"TX2", L"TX3",  L"RX1", L"RX2",
                                                  L"rx2", L"RX3", L"",    L"none", L"T",   L"TX4"};

class StoreModelTest : public ScopeTest {
  protected:
    void compare() {
        for (const bool tx : {true, false}) {
            ASSERT_EQ(tx ? scope.NumTX() : scope.NumRX(), model.count(tx));
            for (std::int32_t i = 0; i < model.count(tx); ++i)
                ASSERT_EQ(tx ? scope.GetTXChnl(i) : scope.GetRXChnl(i), asChannel(model.at(tx, i)));
            for (const wchar_t* key : kKeys)
                ASSERT_EQ(tx ? scope.GetTXbyKey(key) : scope.GetRXbyKey(key), asChannel(model.find(tx, key)));
        }
        const Extremes& e = scope.extremes();
        const Extremes& m = model.extremes;
        ASSERT_EQ(e.dTXFreqMin, m.dTXFreqMin);
        ASSERT_EQ(e.dTXFreqMax, m.dTXFreqMax);
        ASSERT_EQ(e.dRXFreqMin, m.dRXFreqMin);
        ASSERT_EQ(e.dRXFreqMax, m.dRXFreqMax);
        ASSERT_EQ(e.dFreqMin, m.dFreqMin);
        ASSERT_EQ(e.dFreqMax, m.dFreqMax);
        ASSERT_EQ(e.dTXPwrDBMMin, m.dTXPwrDBMMin);
        ASSERT_EQ(e.dTXPwrDBMMax, m.dTXPwrDBMMax);
        ASSERT_EQ(e.dPwrMin, m.dPwrMin);
        ASSERT_EQ(e.dPwrMax, m.dPwrMax);
    }

    void step(std::mt19937& random) {
        const auto choice = random() % 100;
        const std::wstring key = kKeys.at(random() % kKeys.size());
        if (choice < 55) {
            const bool tx = random() % 2 == 0;
            const double frequency = random() % 8 == 0 ? 0.0 : 100.0 + static_cast<double>(random() % 900);
            const SlotRef slot = makeSlot(frequency, static_cast<double>(random() % 4),
                                          static_cast<double>(random() % 200) - 100.0, key);
            const std::int32_t expected = model.add(tx, slot);
            ASSERT_EQ(tx ? scope.AddTXChnl(asChannel(slot)) : scope.AddRXChnl(asChannel(slot)), expected);
        } else if (choice < 95) {
            errors.reports.clear();
            const bool whole = model.remove(key);
            scope.RemoveChnlByKey(key);
            ASSERT_EQ(errors.reports.empty(), whole);
            errors.reports.clear();
        } else if (choice < 97) {
            model.clear(true);
            scope.ClearTXChnls();
        } else if (choice < 99) {
            model.clear(false);
            scope.ClearRXChnls();
        } else {
            model.clearAll();
            scope.ClearAllChnls();
        }
    }

    Model model;
};

TEST_F(StoreModelTest, RandomSequencesEndAsTheDescribedStepsDo) {
    // Small surfaces: each removal redraws.
    ui.picSpectrum.move({0.0, 0.0, 300.0, 300.0});
    ui.picUnits.move({0.0, 0.0, 300.0, 300.0});
    std::mt19937 random(20260101);
    for (int i = 0; i < 6000; ++i) {
        ASSERT_NO_FATAL_FAILURE(step(random)) << "step " << i;
        ASSERT_NO_FATAL_FAILURE(compare()) << "step " << i;
    }
}

}  // namespace
}  // namespace kv::control
