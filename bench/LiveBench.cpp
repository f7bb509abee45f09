// Steps with live data: some records change, then the display is drawn or the mouse moves. The counters compare the
// step with the same one without changes, measured in the same run:
//   times_pan        with a pan, which draws all channels again
//   us_per_change    what is above the pan, for each changed record
//   us_per_set       what setting the same member costs a record that is in no control, which is the host's own share
//   times_move       with a mouse move
//   times_plain      with the simplest loop that does the same work
#include <array>
#include <functional>

#include "bench/Benchmarks.h"
#include "bench/ForeignSlot.h"
#include "bench/HeadlessControl.h"
#include "bench/Median.h"
#include "bench/PlainLoops.h"
#include "bench/StoreSteps.h"

namespace kv::bench {

namespace {

using channels::ChannelKind;

constexpr std::size_t kMany = 495'000;

/// A control with all channels of the narrow set as TX channels, drawn.
struct Live {
    explicit Live(std::size_t count, const AnySlot& another = {})
        : set(channelSet(SetKind::Narrow, count)), records(makeRecords(ChannelKind::TX, count)) {
        for (const AnySlot& record : records)
            control.scope.AddTXChnl(reference(record));
        if (another)
            control.scope.AddTXChnl(reference(another));
        control.showRange(set);
        control.scope.DrawDisplay();
    }
    double pan() {
        const double middle = (set.lowest + set.highest) / 2.0;
        const double step = (set.highest - set.lowest) / 137.0;
        Times times;
        for (int i = 0; i < 15; ++i)
            times.measure([&] { control.panTo(middle + (i % 2 != 0 ? step : -step)); });
        control.showRange(set);
        return times.median();
    }
    void showReport() {
        control.scope.setBMouseInfo(true);
        // The index of the band edges is built at the second move.
        for (int i = 0; i < 3; ++i)
            move(i);
    }
    void move(int i) { control.moveMouseTo(set.densest + (i % 2) * 1e-6); }
    double moveSeconds() {
        Times times;
        for (int i = 0; i < 15; ++i)
            times.measure([&] { move(i); });
        return times.median();
    }

    const ChannelSet& set;
    HeadlessControl control;
    std::vector<AnySlot> records;
};

using Change = void (*)(channels::FreqSlotBase& slot, int round);

struct Member {
    const char* name;
    Change change;
};

constexpr std::array<Member, 6> kMembers{{
    {"power", [](channels::FreqSlotBase& slot,
                 int round) { slot.set<&channels::FreqSlotFields::dPwrDBM>(round % 2 != 0 ? -60.0 : -70.0); }},
    {"color", [](channels::FreqSlotBase& slot,
                 int round) { slot.set<&channels::FreqSlotFields::lColor>(static_cast<std::uint32_t>(round * 4111)); }},
    {"visibility",
     [](channels::FreqSlotBase& slot, int round) { slot.set<&channels::FreqSlotFields::bVisible>(round % 2 != 0); }},
    {"frequency",
     [](channels::FreqSlotBase& slot, int round) {
         const double offset = round % 2 != 0 ? 0.01 : -0.01;
         slot.set<&channels::FreqSlotFields::dFreq>(slot.dFreq() + offset);
         slot.set<&channels::FreqSlotFields::dFreqLo>(slot.dFreqLo() + offset);
         slot.set<&channels::FreqSlotFields::dFreqHi>(slot.dFreqHi() + offset);
     }},
    {"key",
     [](channels::FreqSlotBase& slot, int round) {
         std::wstring key = slot.sKey();
         key.back() = round % 2 != 0 ? L'a' : L'b';
         slot.set<&channels::FreqSlotFields::sKey>(key);
     }},
    {"label", [](channels::FreqSlotBase& slot,
                 int round) { slot.set<&channels::FreqSlotFields::sLabel>(round % 2 != 0 ? L"a" : L"b"); }},
}};

void drawAfterChanges(benchmark::State& state, Change change, std::size_t changes) {
    Live live(kMany);
    const std::vector<AnySlot> alone = makeRecords(ChannelKind::TX, kMany);
    const auto changeSome = [=](const std::vector<AnySlot>& records, int round) {
        for (std::size_t i = 0; i < changes; ++i)
            change(*records[nth(i, kMany)], round);
    };
    const double pan = live.pan();
    Times times;
    Times sets;
    int round = 0;
    for (auto _ : state) {
        ++round;
        state.SetIterationTime(times.measure([&] {
            changeSome(live.records, round);
            live.control.scope.DrawDisplay();
        }));
        sets.measure([&] { changeSome(alone, round); });
    }
    state.counters["median_ms"] = times.median() * 1e3;
    state.counters["pan_ms"] = pan * 1e3;
    state.counters["times_pan"] = times.median() / pan;
    state.counters["us_per_change"] = (times.median() - pan) * 1e6 / static_cast<double>(changes);
    state.counters["us_per_set"] = sets.median() * 1e6 / static_cast<double>(changes);
}

/// A record that is only in another control of the same process changes.
void drawAfterChangeElsewhere(benchmark::State& state) {
    Live live(kMany);
    const AnySlot elsewhere = makeSimpleSlot(live.set.channels.front(), 1);
    HeadlessControl other;
    other.scope.AddTXChnl(reference(elsewhere));
    const double pan = live.pan();
    Times times;
    int round = 0;
    for (auto _ : state) {
        elsewhere->set<&channels::FreqSlotFields::dPwrDBM>(-60.0 - ++round % 2);
        state.SetIterationTime(times.measure([&] { live.control.scope.DrawDisplay(); }));
    }
    state.counters["median_ms"] = times.median() * 1e3;
    state.counters["times_pan"] = times.median() / pan;
}

void moveAfter(benchmark::State& state, const std::function<void(Live&, int)>& before) {
    Live live(kMany);
    live.showReport();
    const double alone = live.moveSeconds();
    Times times;
    int round = 0;
    for (auto _ : state) {
        before(live, ++round);
        state.SetIterationTime(times.measure([&] { live.move(round); }));
    }
    state.counters["median_ms"] = times.median() * 1e3;
    state.counters["alone_ms"] = alone * 1e3;
    state.counters["times_move"] = times.median() / alone;
}

void addOne(Live& live, int round) {
    const AnySlot slot = makeSimpleSlot(live.set.channels[nth(static_cast<std::size_t>(round), kMany)], 1);
    slot->fields().sKey = L"TXnew" + std::to_wstring(round);
    live.control.scope.AddTXChnl(reference(slot));
}

/// Adding all channels and the first picture of them.
void addAllAndDraw(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const ChannelSet& set = channelSet(SetKind::Narrow, count);
    const double plain = plainAddSeconds(set);
    Times times;
    double pan = 0.0;
    for (auto _ : state) {
        const std::vector<AnySlot> records = makeRecords(ChannelKind::TX, count);
        HeadlessControl control;
        control.showRange(set);
        state.SetIterationTime(times.measure([&] {
            for (const AnySlot& record : records)
                control.scope.AddTXChnl(reference(record));
            control.scope.DrawDisplay();
        }));
        Times pans;
        for (int i = 0; i < 9; ++i)
            pans.measure([&] { control.panTo(150.0 + i % 2); });
        pan = pans.median();
    }
    state.counters["median_ms"] = times.median() * 1e3;
    state.counters["plain_ms"] = (plain + pan) * 1e3;
    state.counters["times_plain"] = times.median() / (plain + pan);
}

// Foreign records.

/// The members that adding a foreign record to a store calls: the fill style, the units, which are set when they are
/// empty, the key, the frequency, the bandwidth, the band edges and the power.
void callAllMembers(channels::FreqSlot& slot) {
    slot.setIFillStyle(5);
    benchmark::DoNotOptimize(slot.sFreqUnits());
    slot.setSFreqUnits(L"MHz");
    benchmark::DoNotOptimize(slot.sBWUnits());
    slot.setSBWUnits(L"KHz");
    benchmark::DoNotOptimize(slot.sKey());
    benchmark::DoNotOptimize(slot.dFreq());
    benchmark::DoNotOptimize(slot.dFreq());
    benchmark::DoNotOptimize(slot.dBW());
    benchmark::DoNotOptimize(slot.sBWUnits());
    benchmark::DoNotOptimize(slot.sFreqUnits());
    benchmark::DoNotOptimize(slot.dFreqHi());
    benchmark::DoNotOptimize(slot.dFreqLo());
    benchmark::DoNotOptimize(slot.dFreqHi());
    benchmark::DoNotOptimize(slot.dFreqLo());
    benchmark::DoNotOptimize(slot.dPwrDBM());
}

std::vector<AnySlot> makeForeign(std::size_t count) {
    std::vector<AnySlot> records = makeRecords(ChannelKind::TX, count);
    for (AnySlot& record : records) {
        AnySlot foreign(new ForeignSlot);
        foreign->fields() = std::as_const(*record).fields();
        record = foreign;
    }
    return records;
}

void addForeign(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const double plain = plainAddSeconds(channelSet(SetKind::Narrow, count));
    Times times;
    Times calls;
    for (auto _ : state) {
        const std::vector<AnySlot> records = makeForeign(count);
        channels::ChannelStore store;
        ForeignSlot::calls = 0;
        state.SetIterationTime(times.measure([&] {
            for (const AnySlot& record : records)
                addQuietly(store, ChannelKind::TX, record);
        }));
        state.counters["calls_per_add"] = static_cast<double>(ForeignSlot::calls) / static_cast<double>(count);
        const std::vector<AnySlot> others = makeForeign(count);
        calls.measure([&] {
            for (const AnySlot& record : others)
                callAllMembers(*record);
        });
    }
    state.counters["median_ms"] = times.median() * 1e3;
    state.counters["calls_ms"] = calls.median() * 1e3;
    state.counters["plain_ms"] = plain * 1e3;
    state.counters["times_calls_and_plain"] = times.median() / (calls.median() + plain);
}

/// Drawing and moving the mouse with one foreign record among all the others.
void oneForeign(benchmark::State& state) {
    double own = 0.0;
    double ownMove = 0.0;
    {
        Live live(kMany);
        Times times;
        for (int i = 0; i < 9; ++i)
            times.measure([&] { live.control.scope.DrawDisplay(); });
        own = times.median();
        live.showReport();
        ownMove = live.moveSeconds();
    }
    AnySlot foreign = filled(AnySlot(new ForeignSlot), channelSet(SetKind::Narrow, kMany).channels.front(), 1);
    foreign->fields().sKey = L"TXforeign";
    Live live(kMany, foreign);
    Times draws;
    for (auto _ : state)
        state.SetIterationTime(draws.measure([&] { live.control.scope.DrawDisplay(); }));
    live.showReport();
    const double move = live.moveSeconds();
    state.counters["draw_ms"] = draws.median() * 1e3;
    state.counters["times_own_draw"] = draws.median() / own;
    state.counters["move_ms"] = move * 1e3;
    state.counters["times_own_move"] = move / ownMove;
}

benchmark::internal::Benchmark* manual(benchmark::internal::Benchmark* one, int rounds) {
    return one->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(rounds);
}

}  // namespace

void enlistLive() {
    for (const Member& member : kMembers) {
        for (const std::size_t changes : {std::size_t{1}, std::size_t{100}, std::size_t{10'000}}) {
            const std::string name = std::string("Live/") + member.name + "/" + std::to_string(changes);
            manual(benchmark::RegisterBenchmark(name.c_str(),
                                                [change = member.change, changes](benchmark::State& state) {
                                                    drawAfterChanges(state, change, changes);
                                                }),
                   15);
        }
    }
    manual(benchmark::RegisterBenchmark("Live/elsewhere/1", drawAfterChangeElsewhere), 15);
    const auto move = [](const char* name, void (*before)(Live&, int)) {
        manual(benchmark::RegisterBenchmark(name, [before](benchmark::State& state) { moveAfter(state, before); }), 15);
    };
    move("LiveMove/add", addOne);
    move("LiveMove/power", [](Live& live, int round) {
        kMembers[0].change(*live.records[nth(static_cast<std::size_t>(round), kMany)], round);
    });
    move("LiveMove/frequency", [](Live& live, int round) {
        kMembers[3].change(*live.records[nth(static_cast<std::size_t>(round), kMany)], round);
    });
    manual(benchmark::RegisterBenchmark("AddAllAndDraw", addAllAndDraw)->Arg(static_cast<std::int64_t>(kMany)), 5);
    manual(benchmark::RegisterBenchmark("Foreign/Add", addForeign)->Arg(1'000)->Arg(16'000)->Arg(128'000), 3);
    manual(benchmark::RegisterBenchmark("Foreign/OneAmongOwn", oneForeign), 5);
}

}  // namespace kv::bench
