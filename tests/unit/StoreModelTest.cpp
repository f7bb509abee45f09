// Random sequences of adding, changing, removing and clearing, compared with a simple model: arrays with an upper
// bound, one collection of keys.
#include <algorithm>
#include <array>
#include <map>
#include <random>

#include "tests/unit/QuietSlot.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

struct KeyError {};

using AnySlot = util::Ref<channels::FreqSlotBase>;

channels::FreqSlotRef reference(const AnySlot& slot) {
    return channels::FreqSlotRef(slot.get());
}

const channels::FreqSlotFields& look(const AnySlot& slot) {
    return std::as_const(*slot).fields();
}

class Model {
  public:
    std::int32_t add(bool tx, const AnySlot& channel) {
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
            addKey(look(channel).sKey, static_cast<std::int32_t>(index));
            widen(tx, look(channel));
        } catch (const KeyError&) {
        }
        return static_cast<std::int32_t>(index);
    }

    AnySlot find(bool tx, const std::wstring& key) const {
        const auto found = keys_.find(folded(key));
        if (found == keys_.end())
            return nullptr;
        const Array& array = tx ? tx_ : rx_;
        const auto index = static_cast<std::size_t>(found->second);
        if (index >= array.size() || !array[index] || look(array[index]).sKey != key)
            return nullptr;
        return array[index];
    }

    /// False when a step of it fails.
    bool remove(const std::wstring& key) {
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
        recalc(tx_, extremes.dTXFreqMin, extremes.dTXFreqMax);
        recalc(rx_, extremes.dRXFreqMin, extremes.dRXFreqMax);
        extremes.dFreqMin = std::min(extremes.dTXFreqMin, extremes.dRXFreqMin);
        extremes.dFreqMax = std::max(extremes.dTXFreqMax, extremes.dRXFreqMax);
        return whole;
    }

    void clear(bool tx) { (tx ? tx_ : rx_) = Array(1); }

    void clearAll() {
        clear(true);
        clear(false);
        keys_.clear();
        extremes.dTXFreqMin = extremes.dRXFreqMin = extremes.dFreqMin = channels::FREQ_UNSET;
        extremes.dTXFreqMax = extremes.dRXFreqMax = extremes.dFreqMax = -channels::FREQ_UNSET;
    }

    std::int32_t count(bool tx) const {
        const Array& array = tx ? tx_ : rx_;
        return array[0] ? static_cast<std::int32_t>(array.size()) : 0;
    }
    std::int32_t matchRX(const channels::FreqSlotFields& f) const {
        for (std::int32_t i = 0; i < count(false); ++i) {
            const channels::FreqSlotFields& rx = look(at(false, i));
            if (rx.dFreqAlt == f.dFreqAlt && rx.dFreq == f.dFreq && rx.dFreqHi == f.dFreqHi &&
                rx.dFreqLo == f.dFreqLo && rx.dBW == f.dBW && rx.sBWUnits == f.sBWUnits && rx.sLabel == f.sLabel &&
                rx.sFreqUnits == f.sFreqUnits)
                return i;
        }
        return channels::kInvalid;
    }
    AnySlot at(bool tx, std::int32_t i) const { return (tx ? tx_ : rx_).at(static_cast<std::size_t>(i)); }

    channels::Extremes extremes;

  private:
    using Array = std::vector<AnySlot>;

    static std::wstring folded(std::wstring key) {
        for (wchar_t& character : key) {
            if (character >= L'A' && character <= L'Z')
                character = static_cast<wchar_t>(character - L'A' + L'a');
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
    /// False when the key of a channel could not be moved with it.
    bool close(Array& array, std::size_t index) {
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
    static void recalc(const Array& array, double& minimum, double& maximum) {
        minimum = channels::FREQ_UNSET;
        maximum = -channels::FREQ_UNSET;
        for (const AnySlot& slot : array) {
            if (!slot || !(look(slot).dFreq > 0.0))
                continue;
            if (look(slot).dFreqHi > 0.0)
                maximum = std::max(maximum, look(slot).dFreqHi);
            if (look(slot).dFreqLo > 0.0)
                minimum = std::min(minimum, look(slot).dFreqLo);
        }
    }
    void widen(bool tx, const channels::FreqSlotFields& f) {
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

/// The steps of a sequence, in percent.
struct Mixture {
    const char* name;
    unsigned own;      ///< records of the control's own class
    unsigned fresh;    ///< keys that no record had before
    unsigned changes;  ///< steps that change a record
    unsigned clears;   ///< steps that empty something
};

class StoreModelTest : public ScopeTest {
  protected:
    void run(const Mixture& mixture, int steps) {
        // Small surfaces, because each removal redraws.
        ui.picSpectrum.move({0.0, 0.0, 300.0, 300.0});
        ui.picUnits.move({0.0, 0.0, 300.0, 300.0});
        for (int i = 0; i < steps; ++i) {
            ASSERT_NO_FATAL_FAILURE(step(mixture)) << mixture.name << ", step " << i;
            ASSERT_NO_FATAL_FAILURE(compare()) << mixture.name << ", step " << i;
        }
    }

    void compare() {
        for (const bool tx : {true, false}) {
            ASSERT_EQ(tx ? scope.NumTX() : scope.NumRX(), model.count(tx));
            for (std::int32_t i = 0; i < model.count(tx); ++i)
                ASSERT_EQ(tx ? scope.GetTXChnl(i) : scope.GetRXChnl(i), reference(model.at(tx, i)));
            for (const std::wstring& key : keys)
                ASSERT_EQ(tx ? scope.GetTXbyKey(key) : scope.GetRXbyKey(key), reference(model.find(tx, key)));
        }
        const channels::Extremes& e = scope.extremes();
        const channels::Extremes& m = model.extremes;
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

    bool percent(unsigned share) { return random() % 100 < share; }
    std::wstring someKey() { return keys.at(random() % keys.size()); }
    /// Rarely one with the prefix of the other kind.
    std::wstring newKey(bool tx, unsigned fresh) {
        if (!percent(fresh))
            return someKey();
        keys.push_back((tx != percent(1) ? L"TX" : L"rx") + std::to_wstring(100 + ++made));
        return keys.back();
    }
    AnySlot newSlot(bool tx, const Mixture& mixture) {
        AnySlot slot(percent(mixture.own) ? static_cast<channels::FreqSlotBase*>(new QuietSlot) : new PlainSlot);
        channels::FreqSlotFields& fields = slot->fields();
        fields.dFreq = random() % 8 == 0 ? 0.0 : 100.0 + static_cast<double>(random() % 90);
        fields.dBW = static_cast<double>(random() % 4) * 1000.0;
        fields.dPwrDBM = static_cast<double>(random() % 200) - 100.0;
        fields.sLabel = random() % 2 == 0 ? L"a" : L"b";
        fields.sKey = newKey(tx, mixture.fresh);
        return slot;
    }

    void step(const Mixture& mixture) {
        if (percent(mixture.clears))
            return clearSomething();
        if (percent(mixture.changes))
            return changeSomething();
        if (percent(58)) {
            const bool tx = percent(50);
            return add(newSlot(tx, mixture), tx);
        }
        const std::wstring key = someKey();
        errors.reports.clear();
        const bool whole = model.remove(key);
        scope.RemoveChnlByKey(key);
        ASSERT_EQ(errors.reports.empty(), whole);
        errors.reports.clear();
    }
    void add(const AnySlot& slot, bool tx) {
        ASSERT_EQ(scope.nFindMatchRX(reference(slot)), model.matchRX(look(slot)));
        const std::int32_t expected = model.add(tx, slot);
        ASSERT_EQ(tx ? scope.AddTXChnl(reference(slot)) : scope.AddRXChnl(reference(slot)), expected);
        ASSERT_EQ(scope.nFindMatchRX(reference(slot)), model.matchRX(look(slot)));
    }
    void clearSomething() {
        const auto choice = random() % 4;
        if (choice == 0) {
            model.clear(true);
            scope.ClearTXChnls();
        } else if (choice == 1) {
            model.clear(false);
            scope.ClearRXChnls();
        } else {
            model.clearAll();
            scope.ClearAllChnls();
            keys.resize(kKeys);
        }
    }
    void changeSomething() {
        const bool tx = random() % 2 == 0;
        if (model.count(tx) == 0)
            return;
        channels::FreqSlotBase& slot =
            *model.at(tx, static_cast<std::int32_t>(random() % static_cast<unsigned>(model.count(tx))));
        switch (random() % 4) {
            case 0:
                slot.fieldsButKey().dFreqHi = static_cast<double>(random() % 300);
                break;
            case 1:
                slot.setDFreqLo(static_cast<double>(random() % 300));
                break;
            case 2:
                slot.fieldsButKey().sLabel = random() % 2 == 0 ? L"a" : L"c";
                break;
            default:
                if (random() % 2 == 0)
                    slot.fields().sKey = someKey();
                break;
        }
    }

    static constexpr std::size_t kKeys = 12;
    std::vector<std::wstring> keys = {L"TX1", L"tx1", L"TX2", L"TX3",  L"RX1", L"RX2",
                                      L"rx2", L"RX3", L"",    L"none", L"T",   L"TX4"};
    int made = 0;
    std::mt19937 random{20260101};
    Model model;
};

TEST_F(StoreModelTest, RandomSequencesEndAsTheDescribedStepsDo) {
    run({"foreign records, keys that meet", 0, 0, 0, 5}, 6000);
}

TEST_F(StoreModelTest, RecordsOfItsOwnClassEndAlike) {
    run({"keys that meet", 100, 10, 3, 5}, 3000);
}

TEST_F(StoreModelTest, RecordsWithKeysOfTheirOwnEndAlike) {
    run({"fresh keys", 100, 100, 0, 1}, 1500);
}

TEST_F(StoreModelTest, ChangesOfRecordsAreSeenInTime) {
    run({"fresh keys and changes", 100, 99, 10, 2}, 1500);
}

TEST_F(StoreModelTest, BothClassesOfRecordsMayMeet) {
    run({"a foreign record now and then", 95, 98, 5, 3}, 1500);
}

}  // namespace
}  // namespace kv::control
