// What single unusual records and settings cost, compared with a pan of ordinary records in the same run.
#include <benchmark/benchmark.h>

#include <functional>
#include <initializer_list>
#include <utility>
#include <vector>

#include "bench/Benchmarks.h"
#include "bench/HeadlessControl.h"
#include "bench/Median.h"
#include "bench/SimpleSlot.h"
#include "util/NumberFormat.h"

namespace kv::bench {

namespace {

constexpr int kRounds = 9;

/// A display with a set of channels whose records can be changed.
class Cliff {
  public:
    explicit Cliff(const ChannelSet& set) : set_(set) {
        display_.expectErrors();  // one of the records has a fill style that is none
        slots_.reserve(set.channels.size());
        for (std::size_t i = 0; i < set.channels.size(); ++i) {
            slots_.push_back(makeSimpleSlot(set.channels[i], i + 1));
            scope().AddTXChnl(reference(slots_.back()));
        }
        scope().setDisplayMaxPwr(set.top);
        scope().setDisplayMinPwr(set.floor);
        scope().setFreqEndBuffer(0.0);
        scope().DrawByRange(set.lowest, set.highest);
    }

    [[nodiscard]] control::Bandscope& scope() { return display_.scope; }
    [[nodiscard]] const ChannelSet& set() const { return set_; }
    [[nodiscard]] std::size_t size() const { return slots_.size(); }
    [[nodiscard]] channels::FreqSlotFields& record(std::size_t i) { return slots_[i]->fields(); }
    void pan(int round) {
        const double step = (set_.highest - set_.lowest) / 137.0;
        scope().setDisplayCenterFreq((set_.lowest + set_.highest) / 2.0 + (round % 2 != 0 ? step : -step));
        scope().DrawNewCenterFreq();
    }

  private:
    const ChannelSet& set_;
    HeadlessControl display_;
    std::vector<AnySlot> slots_;
};

using Prepare = std::function<void(Cliff&)>;
using Step = std::function<void(Cliff&, int)>;

void panStep(Cliff& cliff, int round) {
    cliff.pan(round);
}

/// The median of the ordinary pan comes first. Then `prepare` runs once, `before` before each step, untimed.
void measure(benchmark::State& state, SetKind kind, const Prepare& prepare, const Prepare& before, const Step& step) {
    Cliff cliff(channelSet(kind, static_cast<std::size_t>(state.range(0))));
    Times ordinary;
    for (int round = 0; round < kRounds; ++round)
        ordinary.measure([&] { cliff.pan(round); });
    prepare(cliff);
    step(cliff, 1);
    Times times;
    int round = 0;
    for (auto _ : state) {
        before(cliff);
        state.SetIterationTime(times.measure([&] { step(cliff, round); }));
        ++round;
    }
    state.counters["pan_ms"] = ordinary.median() * 1e3;
    state.counters["median_ms"] = times.median() * 1e3;
    state.counters["times_pan"] = times.median() / ordinary.median();
}

void nothing(Cliff&) {}

void farEdge(benchmark::State& state, SetKind kind) {
    measure(
        state, kind, [](Cliff& cliff) { cliff.record(cliff.size() / 2).dFreqLo = -1e9; }, nothing, panStep);
}

void highFloor(benchmark::State& state, SetKind kind) {
    const auto raise = [](Cliff& cliff) {
        // Powers from 10 dBm above zero, and a floor above half of the top.
        for (std::size_t i = 0; i < cliff.size(); ++i)
            cliff.record(i).dPwrDBM = -cliff.record(i).dPwrDBM;
        cliff.scope().setDisplayMaxPwr(130.0);
        cliff.scope().setDisplayMinPwr(70.0);
        cliff.scope().DrawByRange(cliff.set().lowest, cliff.set().highest);
    };
    measure(state, kind, raise, nothing, panStep);
}

void unknownStyle(benchmark::State& state, SetKind kind) {
    measure(
        state, kind, [](Cliff& cliff) { cliff.record(cliff.size() - 1).iFillStyle = 8; }, nothing, panStep);
}

/// Refreshing when every n-th record was hidden; all were drawn.
void refreshHidden(benchmark::State& state, SetKind kind, std::size_t every) {
    const auto hide = [every](Cliff& cliff) {
        for (std::size_t i = 0; i < cliff.size(); i += every) {
            cliff.record(i).bVisible = false;
            cliff.record(i).bDrawn = true;
        }
        // Reading the changed records again is no part of what is measured.
        cliff.pan(0);
    };
    measure(state, kind, nothing, hide, [](Cliff& cliff, int) { cliff.scope().Refresh(); });
}

void refresh(benchmark::State& state, SetKind kind) {
    measure(state, kind, nothing, nothing, [](Cliff& cliff, int) { cliff.scope().Refresh(); });
}
void refreshEvery500th(benchmark::State& state, SetKind kind) {
    refreshHidden(state, kind, 500);
}
void refreshEvery2nd(benchmark::State& state, SetKind kind) {
    refreshHidden(state, kind, 2);
}
void refreshAllHidden(benchmark::State& state, SetKind kind) {
    refreshHidden(state, kind, 1);
}

void wideBoxes(benchmark::State& state, SetKind kind) {
    const auto widen = [](Cliff& cliff) {
        for (std::size_t i = 0; i < cliff.size(); ++i) {
            cliff.record(i).dFreqLo -= 100.0;
            cliff.record(i).dFreqHi += 100.0;
        }
    };
    measure(state, kind, widen, nothing, panStep);
}

/// Boxes of about 200 pixels.
void ratherWideBoxes(benchmark::State& state, SetKind kind) {
    const auto widen = [](Cliff& cliff) {
        for (std::size_t i = 0; i < cliff.size(); ++i) {
            cliff.record(i).dFreqLo -= 6.0;
            cliff.record(i).dFreqHi += 6.0;
        }
    };
    measure(state, kind, widen, nothing, panStep);
}

constexpr int kMostDivisions = 32767;

/// Formatting and printing the labels of the finest grid: each one has a text of its own, and texts let the ones below
/// them shine through, so that none can be left out.
double labelSeconds() {
    HeadlessControl display;
    formenv::PictureBox& strip = display.scope.children().picUnits;
    strip.move({0.0, 0.0, kPictureWidth * 15.0, 300.0});
    std::wstring text;
    Times times;
    for (int round = 0; round < kRounds; ++round) {
        times.measure([&] {
            for (int i = 0; i <= kMostDivisions; i += 2) {
                util::formatNumber(100.0 + i * 100.0 / kMostDivisions, L"0.000", text);
                strip.currentX = i * strip.width() / kMostDivisions;
                strip.currentY = 0.0;
                strip.print(text);
            }
        });
    }
    return times.median();
}

void finestGrid(Cliff& cliff) {
    cliff.scope().setNGridX(kMostDivisions);
}

/// The same range again, so that the labels stay.
void gridLines(benchmark::State& state, SetKind kind) {
    measure(state, kind, finestGrid, nothing, [](Cliff& cliff, int) { cliff.scope().DrawDisplay(); });
}

/// Another range, so that all labels are written.
void gridLinesPan(benchmark::State& state, SetKind kind) {
    measure(state, kind, finestGrid, nothing, panStep);
    state.counters["labels_ms"] = labelSeconds() * 1e3;
}

}  // namespace

void enlistCliffs(std::size_t count) {
    for (const auto& [name, function] :
         std::initializer_list<std::pair<const char*, Function>>{{"CliffFarEdge", farEdge},
                                                                 {"CliffHighFloor", highFloor},
                                                                 {"CliffUnknownStyle", unknownStyle},
                                                                 {"CliffRefresh", refresh},
                                                                 {"CliffRefreshEvery500thHidden", refreshEvery500th},
                                                                 {"CliffRefreshEvery2ndHidden", refreshEvery2nd},
                                                                 {"CliffRefreshAllHidden", refreshAllHidden},
                                                                 {"CliffWideBoxes", wideBoxes},
                                                                 {"CliffRatherWideBoxes", ratherWideBoxes},
                                                                 {"CliffGridLines", gridLines},
                                                                 {"CliffGridLinesPan", gridLinesPan}}) {
        enlist(name, function, SetKind::Narrow, count)->Iterations(kRounds);
    }
}

}  // namespace kv::bench
