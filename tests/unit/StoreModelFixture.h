// Random steps on controls and on a simple model of their stores, which must agree after each step.
#pragma once

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <list>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/QuietSlot.h"
#include "tests/unit/ScopeFixture.h"
#include "tests/unit/StoreModel.h"

namespace kv::control {

/// A control of its own, with the model of its store.
struct Modeled {
    Modeled() {
        // Small surfaces, because each removal redraws.
        scope.children().picSpectrum.move({0.0, 0.0, 300.0, 300.0});
        scope.children().picUnits.move({0.0, 0.0, 300.0, 300.0});
    }
    channels::FreqSlotRef at(bool tx, std::int32_t i) const { return tx ? scope.GetTXChnl(i) : scope.GetRXChnl(i); }
    std::int32_t count(bool tx) const { return tx ? scope.NumTX() : scope.NumRX(); }

    headless::HeadlessPlatform platform;
    RecordingEvents events;
    RecordingErrors errors;
    MemoryFiles files;
    Bandscope scope{
        Services{platform, events, errors, files, [] { return util::Ref<channels::FreqSlotBase>(new PlainSlot); }}};
    StoreModel model;
};

/// The steps of a sequence. Shares are in percent.
struct Mixture {
    const char* name;
    unsigned own = 100;          ///< records of the control's own class
    unsigned fresh = 100;        ///< keys that no record had before
    unsigned wrongKind = 1;      ///< fresh keys with the prefix of the other kind, or with none
    unsigned again = 0;          ///< additions of a record that was added before
    unsigned changes = 0;        ///< steps that change a record
    unsigned keyChanges = 0;     ///< changes that set the key
    unsigned clears = 1;         ///< steps that empty something
    unsigned reloads = 0;        ///< steps that empty one kind and add the same keys
    unsigned unreadable = 0;     ///< additions that fail after the key was added
    std::size_t controls = 1;    ///< that share the records
    std::int32_t atFirst = 0;    ///< channels with keys of their own that are there at the beginning
    unsigned additions = 58;     ///< of the steps that change nothing and empty nothing; the others are removals
    unsigned comparisons = 100;  ///< steps after which all channels are compared, not only what is computed
};

class StoreModelTest : public ::testing::Test {
  protected:
    void run(const Mixture& mixture, int steps) {
        mix = mixture;
        controls.resize(mix.controls);
        for (std::int32_t i = 0; i < mix.atFirst; ++i)
            add(controls.front(), i % 2 == 0, newSlot(i % 2 == 0, true));
        for (int i = 0; i < steps; ++i) {
            ASSERT_NO_FATAL_FAILURE(step()) << mix.name << ", step " << i;
            for (Modeled& control : controls)
                ASSERT_NO_FATAL_FAILURE(compare(control)) << mix.name << ", step " << i;
        }
        for (Modeled& control : controls)
            compareChannels(control);
    }

    // What is compared.

    void compare(Modeled& control) {
        compareExtremes(control);
        compareMatches(control);
        for (const bool tx : {true, false})
            ASSERT_EQ(control.count(tx), control.model.count(tx));
        if (percent(mix.comparisons))
            compareChannels(control);
    }
    static void compareExtremes(Modeled& control) {
        const channels::Extremes& e = control.scope.extremes();
        const channels::Extremes& m = control.model.extremes;
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
    /// Searches for a receive channel itself, a copy of it and a copy that differs in one member.
    void compareMatches(Modeled& control) {
        if (control.model.count(false) == 0 || !percent(40))
            return;
        const AnySlot present = someChannel(control, false);
        const AnySlot copy = percent(70) ? AnySlot(new QuietSlot) : AnySlot(new PlainSlot);
        copy->fields() = look(present);
        for (const AnySlot& wanted : {present, copy})
            ASSERT_EQ(control.scope.nFindMatchRX(reference(wanted)), control.model.matchRX(look(wanted)));
        changeMember(*copy);
        ASSERT_EQ(control.scope.nFindMatchRX(reference(copy)), control.model.matchRX(look(copy)));
    }
    void compareChannels(Modeled& control) {
        for (const bool tx : {true, false}) {
            for (std::int32_t i = 0; i < control.model.count(tx); ++i)
                ASSERT_EQ(control.at(tx, i), reference(control.model.at(tx, i)));
            for (std::size_t i = 0; i < kKeys; ++i)
                compareKey(control, tx, keys[i]);
            // Of those that were made, the latest and some others.
            for (std::size_t i = keys.size() < kKeys + 20 ? kKeys : keys.size() - 20; i < keys.size(); ++i)
                compareKey(control, tx, keys[i]);
            for (int i = 0; i < 12; ++i)
                compareKey(control, tx, someKey());
        }
    }
    static void compareKey(Modeled& control, bool tx, const std::wstring& key) {
        ASSERT_EQ(tx ? control.scope.GetTXbyKey(key) : control.scope.GetRXbyKey(key),
                  reference(control.model.find(tx, key)));
    }

    // What is done.

    void step() {
        Modeled& control = controls.size() == 1 ? controls.front() : *std::next(controls.begin(), percent(50) ? 1 : 0);
        if (percent(mix.clears))
            return clearSomething(control);
        if (percent(mix.reloads))
            return reload(control, percent(50));
        if (percent(2))
            return deriveAgain(control);
        if (percent(mix.changes))
            return changeSomething(control);
        if (!percent(mix.additions))
            return remove(control, keyToRemove(control));
        const bool tx = percent(50);
        add(control, tx, percent(mix.again) && !pool.empty() ? pool[upTo(pool.size())].slot : newSlot(tx, false));
    }
    void add(Modeled& control, bool tx, const AnySlot& slot) {
        const std::int32_t expected = control.model.add(tx, slot);
        ASSERT_EQ(tx ? control.scope.AddTXChnl(reference(slot)) : control.scope.AddRXChnl(reference(slot)), expected);
        ASSERT_EQ(control.scope.nFindMatchRX(reference(slot)), control.model.matchRX(look(slot)));
    }
    static void remove(Modeled& control, const std::wstring& key) {
        control.errors.reports.clear();
        const bool whole = control.model.remove(key);
        control.scope.RemoveChnlByKey(key);
        bool reported = false;
        for (const RecordingErrors::Report& report : control.errors.reports)
            reported = reported || report.procedure == L"RemoveChnlByKey";
        ASSERT_EQ(reported, !whole);
    }
    void clearSomething(Modeled& control) {
        const std::size_t choice = upTo(4);
        if (choice < 2) {
            clear(control, choice == 0);
            return;
        }
        control.model.clearAll();
        control.scope.ClearAllChnls();
        if (controls.size() == 1)
            keys.resize(kKeys);
    }
    static void clear(Modeled& control, bool tx) {
        control.model.clear(tx);
        if (tx)
            control.scope.ClearTXChnls();
        else
            control.scope.ClearRXChnls();
    }
    /// The same channels, or others with the same keys, in the same order or from the last one to the first.
    void reload(Modeled& control, bool tx) {
        std::vector<AnySlot> slots;
        for (std::int32_t i = 0; i < control.model.count(tx); ++i)
            slots.push_back(control.model.at(tx, i));
        if (percent(20))
            std::reverse(slots.begin(), slots.end());
        const bool same = percent(50);
        clear(control, tx);
        if (percent(20))
            add(control, tx, newSlot(tx, false));
        for (const AnySlot& slot : slots) {
            const AnySlot added = same ? slot : newSlot(tx, true);
            if (!same)
                added->fields().sKey = look(slot).sKey;
            ASSERT_NO_FATAL_FAILURE(add(control, tx, added));
        }
    }
    static void deriveAgain(Modeled& control) {
        control.model.rescale();
        control.scope.ReScaleChannels();
        compareExtremes(control);
        control.model.recalculate();
        control.scope.Refresh();
    }
    void changeSomething(Modeled& control) {
        const bool tx = percent(50);
        if (control.model.count(tx) == 0)
            return;
        const AnySlot slot = someChannel(control, tx);
        if (percent(mix.keyChanges))
            changeKey(*slot, tx);
        else
            changeMember(*slot);
    }
    void changeKey(channels::FreqSlotBase& slot, bool tx) {
        std::wstring key = std::as_const(slot).fields().sKey;
        switch (upTo(5)) {
            case 0:
                key = newKey(tx, 100);
                break;
            case 1:
                key = someKey();
                break;
            case 2:
                key = firstKeyOf(slot);
                break;
            case 3:
                key = otherCase(key);
                break;
            default:  // an equal one
                break;
        }
        slot.fields().sKey = key;
    }
    void changeMember(channels::FreqSlotBase& slot) {
        switch (upTo(10)) {
            case 0:
                slot.setDFreq(100.0 + static_cast<double>(upTo(90)));
                break;
            case 1:
                slot.setDFreqHi(kEdges[upTo(kEdges.size())]);
                break;
            case 2:
                slot.setDFreqLo(kEdges[upTo(kEdges.size())]);
                break;
            case 3:
                slot.fieldsButKey().dPwrDBM = power();
                break;
            case 4:
                slot.fieldsButKey().sLabel = percent(50) ? L"a" : L"c";
                break;
            case 5:
                slot.fieldsButKey().bVisible = percent(60);
                break;
            case 6:
                slot.setSFreqUnits(kUnits[upTo(kUnits.size())]);
                break;
            case 7:
                slot.setSBWUnits(kUnits[upTo(kUnits.size())]);
                break;
            case 8:
                slot.fieldsButKey().dFreqAlt = kAlternatives[upTo(kAlternatives.size())];
                break;
            default:
                slot.fieldsButKey().lColor = static_cast<std::uint32_t>(upTo(0x1000000));
                break;
        }
    }

    // What it is done with.

    std::size_t upTo(std::size_t count) { return random() % count; }
    bool percent(unsigned share) { return random() % 100 < share; }
    double power() {
        return percent(2) ? -std::numeric_limits<double>::infinity() : static_cast<double>(upTo(200)) - 100.0;
    }
    AnySlot someChannel(Modeled& control, bool tx) {
        return control.model.at(tx, static_cast<std::int32_t>(upTo(static_cast<std::size_t>(control.model.count(tx)))));
    }
    std::wstring someKey() { return keys.at(upTo(keys.size())); }
    std::wstring newKey(bool tx, unsigned fresh) {
        if (!percent(fresh))
            return someKey();
        const wchar_t* const prefix = !percent(mix.wrongKind) ? (tx ? L"TX" : L"RX")
                                      : percent(60)           ? (tx ? L"rx" : L"tx")
                                                              : L"IM";
        keys.push_back(prefix + std::to_wstring(100 + ++made));
        return keys.back();
    }
    std::wstring keyToRemove(Modeled& control) {
        const bool tx = percent(50);
        if (percent(25) || control.model.count(tx) == 0)
            return someKey();
        const std::wstring key = look(someChannel(control, tx)).sKey;
        return percent(5) ? otherCase(key) : key;
    }
    static std::wstring otherCase(std::wstring key) {
        if (!key.empty())
            key.front() = static_cast<wchar_t>(key.front() ^ 0x20);
        return key;
    }
    std::wstring firstKeyOf(const channels::FreqSlotBase& slot) const {
        for (const Made& known : pool) {
            if (known.slot.get() == &slot)
                return known.key;
        }
        return slot.fields().sKey;
    }
    AnySlot newSlot(bool tx, bool tidy) {
        AnySlot slot(tidy || percent(mix.own) ? AnySlot(new QuietSlot) : AnySlot(new PlainSlot));
        channels::FreqSlotFields& fields = slot->fields();
        fields.dFreq = upTo(8) == 0 ? 0.0 : 100.0 + static_cast<double>(upTo(90));
        fields.dBW = static_cast<double>(upTo(4)) * 1000.0;
        fields.dPwrDBM = power();
        fields.sLabel = percent(50) ? L"a" : L"b";
        fields.sFreqUnits = kUnits[upTo(2)];
        fields.sKey = newKey(tx, tidy ? 100 : mix.fresh);
        if (!tidy && percent(mix.unreadable)) {
            fields.dFreq = 150.0;
            fields.dBW = 1e308;
            fields.sBWUnits = L"GHz";
            return slot;  // added once only
        }
        if (pool.size() == kPool)
            pool.erase(pool.begin());
        pool.push_back({slot, fields.sKey});
        return slot;
    }

    struct Made {
        AnySlot slot;
        std::wstring key;
    };
    static constexpr std::size_t kKeys = 12;
    static constexpr std::size_t kPool = 40;
    static constexpr std::array<const wchar_t*, 6> kUnits{L"", L"MHz", L"KHz", L"GHz", L"furlong", L"  "};
    static constexpr std::array<double, 8> kEdges{0.0,   -5.0,  101.0, 140.0,
                                                  188.5, 300.0, -1e9,  std::numeric_limits<double>::quiet_NaN()};
    static constexpr std::array<double, 4> kAlternatives{0.0, -0.0, 7.0, std::numeric_limits<double>::quiet_NaN()};
    std::vector<std::wstring> keys = {L"TX1", L"tx1", L"TX2", L"TX3",  L"RX1", L"RX2",
                                      L"rx2", L"RX3", L"",    L"none", L"T",   L"TX4"};
    std::vector<Made> pool;  ///< records that may be added again
    std::list<Modeled> controls;
    int made = 0;
    std::mt19937 random{20260101};
    Mixture mix{};
};

}  // namespace kv::control
