#include "tests/fuzz/lives/Deeds.h"

#include <algorithm>
#include <array>
#include <limits>

namespace kv::fuzz {

using channels::ChannelKind;
using formenv::mouse_button::kLeft;
using formenv::mouse_button::kRight;

namespace {

constexpr double kHostile[] = {0.0,
                               -1.0,
                               1e-300,
                               1e308,
                               -1e308,
                               8888888888888.0,
                               -8888888888888.0,
                               std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()};

}  // namespace

double Deeds::frequency() {
    return oneIn(25) ? kHostile[upTo(std::size(kHostile))] : between(430.0, 470.0);
}

double Deeds::power() {
    return oneIn(40) ? kHostile[upTo(std::size(kHostile))] : between(-120.0, 60.0);
}

channels::FreqSlotFields Deeds::fields() {
    channels::FreqSlotFields made;
    made.dFreq = frequency();
    made.dBW = between(0.0, 800.0);
    if (oneIn(4)) {
        made.dFreqLo = frequency();
        made.dFreqHi = frequency();
    }
    made.dPwrDBM = power();
    made.lColor = static_cast<std::uint32_t>(upTo(0x1000000));
    made.lColorLine = static_cast<std::uint32_t>(upTo(0x1000000));
    made.bVisible = !oneIn(8);
    return made;
}

Deeds::Deed Deeds::ofTheStore(Twin& twin) {
    const ChannelKind kind = oneIn(2) ? ChannelKind::TX : ChannelKind::RX;
    std::vector<std::wstring>& keys = twin.keys[kind];
    switch (upTo(8)) {
        case 0: {
            if (keys.empty())
                return {"nothing to remove", [](Life&) {}};
            const auto at = static_cast<std::ptrdiff_t>(upTo(keys.size()));
            const std::wstring key = keys[static_cast<std::size_t>(at)];
            keys.erase(keys.begin() + at);
            return {"remove", [key](Life& life) { life.scope.RemoveChnlByKey(key); }};
        }
        case 1:
            if (!oneIn(10))
                return {"remove an unknown key", [](Life& life) { life.scope.RemoveChnlByKey(L"TX unknown"); }};
            twin.keys.clear();
            return {"clear", [](Life& life) { life.scope.ClearAllChnls(); }};
        case 2:
            return hasOther_ && oneIn(2) ? ofTheOther() : ofTheRecords();
        default: {
            channels::FreqSlotFields made = fields();
            made.sKey = (kind == ChannelKind::TX ? L"TX" : L"RX") + std::to_wstring(++lastKey_);
            keys.push_back(made.sKey);
            const bool foreign = foreign_ != 0 && oneIn(foreign_);
            return {foreign ? "add a foreign record" : "add",
                    [kind, made, foreign](Life& life) { life.add(kind, made, foreign); }};
        }
    }
}

Deeds::Deed Deeds::ofTheHost() {
    const double a = frequency();
    const double b = frequency();
    const double dbm = power();
    const std::size_t number = upTo(1000);
    const double top = between(-60.0, 60.0);
    const double floor = oneIn(2) ? between(top / 2.0, top) : between(-130.0, top);
    constexpr std::array<std::int16_t, 4> kDivisions{401, 0, -1, -32768};
    const std::int16_t divisions = kDivisions[upTo(kDivisions.size())];
    const Deed all[] = {
        {"DrawDisplay", [](Life& life) { life.scope.DrawDisplay(); }},
        {"DrawInitialDisplay", [](Life& life) { life.scope.DrawInitialDisplay(); }},
        {"JustDrawIt", [](Life& life) { life.scope.JustDrawIt(); }},
        {"Refresh", [](Life& life) { life.scope.Refresh(); }},
        {"RescaleAll", [](Life& life) { life.scope.RescaleAll(); }},
        {"ReScaleChannels", [](Life& life) { life.scope.ReScaleChannels(); }},
        {"ClearDisplay", [](Life& life) { life.scope.ClearDisplay(); }},
        {"DrawByRange", [a, b](Life& life) { life.scope.DrawByRange(std::min(a, b), std::max(a, b)); }},
        {"DrawByRange in any order", [a, b](Life& life) { life.scope.DrawByRange(a, b); }},
        {"DrawNewCenterFreq",
         [a](Life& life) {
             life.scope.setDisplayCenterFreq(a);
             life.scope.DrawNewCenterFreq();
         }},
        {"DisplayMinPwr", [dbm](Life& life) { life.scope.setDisplayMinPwr(dbm); }},
        {"DisplayMaxPwr", [dbm](Life& life) { life.scope.setDisplayMaxPwr(dbm); }},
        {"both powers",
         [top, floor](Life& life) {
             life.scope.setDisplayMaxPwr(top);
             life.scope.setDisplayMinPwr(floor);
         }},
        {"unusual nGridX", [divisions](Life& life) { life.scope.setNGridX(divisions); }},
        {"drawing with many divisions",
         [number](Life& life) {
             const std::int16_t before = life.scope.nGridX();
             life.scope.setNGridX(number % 8 == 0 ? 32767 : 4000);
             life.scope.DrawDisplay();
             life.scope.setNGridX(before);
         }},
        {"FreqEndBuffer", [a](Life& life) { life.scope.setFreqEndBuffer(a / 50.0); }},
        {"nGridX", [number](Life& life) { life.scope.setNGridX(static_cast<std::int16_t>(number % 40)); }},
        {"CursorVal", [a](Life& life) { life.scope.setCursorVal(a); }},
        {"ShowAll", [](Life& life) { life.scope.setShowAll(true); }},
        {"lColorSpecBack",
         [number](Life& life) { life.scope.setLColorSpecBack(static_cast<raster::OleColor>(number * 16411)); }},
        {"ReDrawChnl",
         [number](Life& life) {
             if (control::CountedSlot* const record = life.record(number))
                 life.scope.ReDrawChnl(channels::FreqSlotRef(record));
         }},
        {"resize",
         [number](Life& life) {
             life.scope.resize(7200.0 + 15.0 * static_cast<double>(number % 100),
                               4500.0 + 15.0 * static_cast<double>(number % 77));
         }},
        {"ToggleControlsSection", [](Life& life) { life.scope.ToggleControlsSection(); }},
        {"bMouseInfo", [number](Life& life) { life.scope.setBMouseInfo(number % 2 == 0); }},
        {"DisplayToBMP",
         [](Life& life) {
             double height = 0.0;
             double width = 0.0;
             std::wstring name;
             life.scope.DisplayToBMP(height, width, name);
         }},
    };
    return all[upTo(std::size(all))];
}

Deeds::Deed Deeds::ofTheMouse() {
    const double x = frequency();
    const double to = frequency();
    const double pixels = between(0.0, 9000.0);
    const Deed all[] = {
        {"mouse move", [x](Life& life) { life.ui().picSpectrum.onMouseMove(0, 0, x, 0.0); }},
        {"drag",
         [x, to](Life& life) {
             life.ui().picSpectrum.onMouseDown(kLeft, 0, x, 0.0);
             life.ui().picSpectrum.onMouseMove(kLeft, 0, x, 0.0);
             life.ui().picSpectrum.onMouseMove(kLeft, 0, to, 0.0);
             life.ui().picSpectrum.onMouseUp(kLeft, 0, to, 0.0);
         }},
        {"begin of a drag", [x](Life& life) { life.ui().picSpectrum.onMouseMove(kLeft, 0, x, 0.0); }},
        {"end of a drag", [x](Life& life) { life.ui().picSpectrum.onMouseUp(kLeft, 0, x, 0.0); }},
        {"right button", [x](Life& life) { life.ui().picSpectrum.onMouseDown(kRight, 0, x, 0.0); }},
        {"lost mouse", [](Life& life) { life.ui().picSpectrum.onMouseLost(); }},
        {"double-click", [x](Life& life) { life.ui().picSpectrum.onDblClick(kLeft, 0, x, 0.0); }},
        {"mouse over the labels", [pixels](Life& life) { life.ui().picUnits.onMouseMove(0, 0, pixels, 0.0); }},
        {"right-click on the panel",
         [pixels](Life& life) { life.ui().fraControl.onMouseDown(kRight, 0, pixels / 20.0, pixels / 30.0); }},
    };
    return all[upTo(std::size(all))];
}

Deeds::Deed Deeds::ofTheHands() {
    constexpr std::array kKeys{37, 39, 33, 34, 38, 40, 36, 32, 66, 77, 67, 27};
    const int key = kKeys[upTo(kKeys.size())];
    const int shift = static_cast<int>(upTo(3));
    const int notches = static_cast<int>(upTo(5)) - 2;
    const auto wheel = [notches](turndial::KnobBase& knob) { knob.wheel(120 * notches, {}); };
    const Deed all[] = {
        {"key " + std::to_string(key), [key, shift](Life& life) { life.ui().picSpectrum.onKeyDown(key, shift); }},
        {"key " + std::to_string(key), [key](Life& life) { life.ui().picSpectrum.onKeyDown(key, 0); }},
        {"grid knob", [wheel](Life& life) { wheel(life.ui().tdKnGrid); }},
        {"center mover", [wheel](Life& life) { wheel(life.ui().tdKnMovCenter); }},
        {"cursor mover", [wheel](Life& life) { wheel(life.ui().tdKnMovCursor); }},
        {"grid units",
         [key](Life& life) {
             const auto count = static_cast<int>(life.ui().cboGridRange.items().size());
             life.ui().cboGridRange.setListIndex(key % count);
             life.ui().cboGridRange.onClick();
         }},
        {"view all",
         [](Life& life) {
             life.ui().chkViewAllxx.setValue(1 - life.ui().chkViewAllxx.value());
             life.ui().chkViewAllxx.onClick();
         }},
        {"center of the cursor", [](Life& life) { life.ui().cmdCenterCursor.onClick(); }},
        {"draw TX", [](Life& life) { life.ui().cmdDrawTX.onClick(); }},
        {"clear button", [](Life& life) { life.ui().cmdClear.onClick(); }},
    };
    return all[upTo(std::size(all))];
}

Action Deeds::interruption() {
    if (oneIn(6))
        return [](Life&) { throw util::RuntimeError(util::error_number::kAutomation, L"the host's own"); };
    return (oneIn(3) ? ofTheMouse() : ofTheHost()).action;
}

Deeds::Deed Deeds::next(Twin& twin) {
    Deed deed = oneIn(3) ? ofTheStore(twin) : oneIn(3) ? ofTheMouse() : oneIn(3) ? ofTheHands() : ofTheHost();
    if (!oneIn(6))
        return deed;
    // What interrupts it is chosen here, so that it is the same for both twins.
    std::vector<Action> pumps;
    std::vector<Action> events;
    for (std::size_t i = upTo(3); i > 0; --i)
        pumps.push_back(interruption());
    if (oneIn(2))
        events.push_back(interruption());
    return {deed.name + ", interrupted", [pumps, events, action = std::move(deed.action)](Life& life) {
                life.atPump = pumps;
                life.atEvent = events;
                try {
                    action(life);
                } catch (...) {
                    life.atPump.clear();
                    life.atEvent.clear();
                    throw;
                }
                life.atPump.clear();
                life.atEvent.clear();
            }};
}

}  // namespace kv::fuzz
