// Redrawing, with the naive painter beside it. Manual times are those of the control; the counters tell the medians of
// both in milliseconds and how many times faster the control is.
#include <benchmark/benchmark.h>

#include <initializer_list>
#include <string>
#include <utility>

#include "bench/Benchmarks.h"
#include "bench/Median.h"
#include "bench/Rig.h"
#include "bench/SimpleSlot.h"
#include "control/MouseReport.h"

namespace kv::bench {

namespace {

constexpr double kReachPixels = 1.5;  // that a channel counts as hit beside its edges

struct Loaded {
    SetKind kind{};
    std::size_t count = 0;
    std::unique_ptr<Rig> rig;
    View view;
    double naive = 0.0;
};

double naiveSeconds(const ChannelSet& set, const View& view) {
    const std::unique_ptr<NaivePainter> painter = makeNaivePainter();
    Times times;
    const std::size_t rounds = set.channels.size() <= 10'000 ? 11 : set.channels.size() <= 100'000 ? 5 : 3;
    for (std::size_t i = 0; i < rounds; ++i)
        times.measure([&] { painter->draw(set.channels, view); });
    benchmark::DoNotOptimize(painter->checksum());
    return times.median();
}

/// A control with the set drawn once, kept for the benchmarks of the same set.
Loaded& loaded(SetKind kind, std::size_t count) {
    static Loaded kept;
    if (kept.rig && kept.kind == kind && kept.count == count)
        return kept;
    kept = {};
    const ChannelSet& set = channelSet(kind, count);
    kept.kind = kind;
    kept.count = count;
    kept.rig = makeRig();
    kept.rig->makeRecords(set);
    kept.rig->addAll();
    kept.rig->showRange(set);
    kept.rig->drawDisplay();
    kept.view = kept.rig->view();
    kept.naive = naiveSeconds(set, kept.view);
    return kept;
}

void tell(benchmark::State& state, Times& times, double naive) {
    state.counters["median_ms"] = times.median() * 1e3;
    state.counters["naive_ms"] = naive * 1e3;
    state.counters["times_faster"] = naive / times.median();
}

template <class Step>
void measure(benchmark::State& state, SetKind kind, Step step) {
    const auto count = static_cast<std::size_t>(state.range(0));
    Loaded& control = loaded(kind, count);
    const ChannelSet& set = channelSet(kind, count);
    Times times;
    int round = 0;
    for (auto _ : state) {
        state.SetIterationTime(times.measure([&] { step(*control.rig, control.view, round); }));
        ++round;
    }
    control.rig->showRange(set);
    tell(state, times, control.naive);
}

void redraw(benchmark::State& state, SetKind kind) {
    measure(state, kind, [](Rig& rig, const View&, int) { rig.drawDisplay(); });
}

void pan(benchmark::State& state, SetKind kind) {
    measure(state, kind, [](Rig& rig, const View& view, int round) {
        const double step = (view.maxFreq - view.minFreq) / 137.0;
        rig.panTo((view.minFreq + view.maxFreq) / 2.0 + (round % 2 != 0 ? step : -step));
    });
}

void zoom(benchmark::State& state, SetKind kind) {
    measure(state, kind, [](Rig& rig, const View&, int round) { rig.turnGridKnob(round % 2 == 0); });
}

/// From the last added record to the first picture.
void firstDraw(benchmark::State& state, SetKind kind) {
    const auto count = static_cast<std::size_t>(state.range(0));
    Loaded& control = loaded(kind, count);
    const ChannelSet& set = channelSet(kind, count);
    Times times;
    for (auto _ : state) {
        control.rig->clear();
        control.rig->makeRecords(set);
        control.rig->addAll();
        state.SetIterationTime(times.measure([&] { control.rig->drawDisplay(); }));
    }
    tell(state, times, control.naive);
}

/// Records of the channels around a frequency, as far as a report of them goes.
std::vector<channels::FreqSlotRef> recordsAround(const ChannelSet& set, const View& view, double frequency) {
    constexpr std::size_t kMost = 5000;
    const double reach = kReachPixels * (view.maxFreq - view.minFreq) / kPictureWidth;
    std::vector<channels::FreqSlotRef> records;
    for (std::size_t i = 0; i < set.channels.size() && records.size() < kMost; ++i) {
        const Channel& channel = set.channels[i];
        if (channel.dFreqLo - reach <= frequency && frequency <= channel.dFreqHi + reach)
            records.push_back(reference(makeSimpleSlot(channel, i + 1)));
    }
    return records;
}

std::wstring reportOf(const std::vector<channels::FreqSlotRef>& records, double frequency) {
    control::MouseReport report;
    report.begin(std::to_wstring(frequency) + L" MHz");
    for (const channels::FreqSlotRef& record : records) {
        report.add(channels::ChannelKind::TX, *record);
        if (report.isFull())
            break;
    }
    return report.text();
}

/// A move inside a pixel looks the channels up and builds the text, which its window has already; a move further on
/// changes the text as well. They are compared with the same text of records that are at hand, without and with a
/// window that shows it.
void mouseMove(benchmark::State& state, SetKind kind) {
    const auto count = static_cast<std::size_t>(state.range(0));
    Loaded& control = loaded(kind, count);
    const ChannelSet& set = channelSet(kind, count);
    const double pixel = (control.view.maxFreq - control.view.minFreq) / kPictureWidth;
    control.rig->showMouseInfo(true);
    control.rig->moveMouseTo(set.densest);
    Times inside;
    int round = 0;
    for (auto _ : state) {
        const double frequency = set.densest + (++round % 2) * pixel * 1e-3;
        state.SetIterationTime(inside.measure([&] { control.rig->moveMouseTo(frequency); }));
    }
    Times further;
    Times text;
    Times shown;
    for (int i = 0; i < 24; ++i) {
        const double frequency = set.densest + (i % 2) * 8.0 * pixel;
        further.measure([&] { control.rig->moveMouseTo(frequency); });
        const std::vector<channels::FreqSlotRef> densest = recordsAround(set, control.view, set.densest);
        std::wstring report;
        text.measure([&] { report = reportOf(densest, set.densest); });
        const std::vector<channels::FreqSlotRef> around = recordsAround(set, control.view, frequency);
        shown.measure([&] {
            report = reportOf(around, frequency);
            control.rig->showText(report);
        });
    }
    control.rig->showMouseInfo(false);
    state.counters["median_ms"] = inside.median() * 1e3;
    state.counters["text_ms"] = text.median() * 1e3;
    state.counters["times_text"] = inside.median() / text.median();
    state.counters["times_text_least"] = inside.least() / text.least();
    state.counters["further_ms"] = further.median() * 1e3;
    state.counters["text_shown_ms"] = shown.median() * 1e3;
    state.counters["times_shown"] = further.median() / shown.median();
}

}  // namespace

void enlistDrawing(SetKind kind, std::size_t count) {
    for (const auto& [name, function] :
         std::initializer_list<std::pair<const char*, Function>>{{"DrawDisplay", redraw},
                                                                 {"Pan", pan},
                                                                 {"GridKnob", zoom},
                                                                 {"MouseMove", mouseMove},
                                                                 {"FirstDraw", firstDraw}}) {
        enlist(name, function, kind, count)->MinTime(0.3);
    }
}

}  // namespace kv::bench
