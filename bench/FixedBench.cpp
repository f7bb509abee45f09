// The part of drawing and pointing that does not depend on the number of channels, compared with the least that the
// system needs for the same result.
#include <windows.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/Benchmarks.h"
#include "bench/Median.h"
#include "bench/PlainLoops.h"
#include "bench/Rig.h"
#include "win32/Gdi.h"

namespace kv::bench {

namespace {

constexpr std::size_t kChannels = 20;
constexpr int kStripWidth = 1660;
constexpr int kStripHeight = 624;
constexpr int kLabels = 11;

/// A picture in memory, of the kind that GDI and the program both draw on.
class Picture {
  public:
    Picture(int width, int height) : width_(width), height_(height), dc_(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        bitmap_.reset(CreateDIBSection(dc_.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
        bits_ = static_cast<std::uint32_t*>(bits);
        SelectObject(dc_.get(), bitmap_.get());
        SetBkMode(dc_.get(), TRANSPARENT);
    }
    [[nodiscard]] HDC dc() const noexcept { return dc_.get(); }
    void clear(std::uint32_t color) const { std::fill_n(bits_, static_cast<std::size_t>(width_) * height_, color); }
    void copyTo(HWND window) const {
        const HDC dc = GetDC(window);
        BitBlt(dc, 0, 0, width_, height_, dc_.get(), 0, 0, SRCCOPY);
        ReleaseDC(window, dc);
    }

  private:
    int width_;
    int height_;
    win32::GdiObject<HBITMAP> bitmap_;
    win32::MemoryDc dc_;
    std::uint32_t* bits_ = nullptr;
};

/// What no drawing of a display with labels can do without: clears the spectrum and the label strip, prints the labels,
/// and copies both to their windows.
class BareDisplay {
  public:
    explicit BareDisplay(bool shown)
        : page_(CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_CLIPCHILDREN | (shown ? WS_VISIBLE : 0), 0, 0,
                                kStripWidth, kStripHeight, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr)),
          inner_(CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 30, 4, kPictureWidth, kPictureHeight, page_,
                                 nullptr, GetModuleHandleW(nullptr), nullptr)),
          font_(CreateFontW(-11, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, 0, 0, 0, 0, L"Arial")) {
        SelectObject(strip_.dc(), font_.get());
    }
    ~BareDisplay() { DestroyWindow(page_); }
    BareDisplay(const BareDisplay&) = delete;
    BareDisplay& operator=(const BareDisplay&) = delete;

    void draw(double lowest, double highest) {
        picture_.clear(0xFFFFFF);
        strip_.clear(0xF0F0F0);
        for (int i = 0; i < kLabels; ++i) {
            const std::wstring label = std::to_wstring(lowest + (highest - lowest) * i / kLabels).substr(0, 7);
            ExtTextOutW(strip_.dc(), i * 150, kPictureHeight + 5, 0, nullptr, label.data(),
                        static_cast<UINT>(label.size()), nullptr);
        }
        GdiFlush();
        strip_.copyTo(page_);
        picture_.copyTo(inner_);
    }

  private:
    HWND page_;
    HWND inner_;
    win32::GdiObject<HFONT> font_;
    Picture picture_{kPictureWidth, kPictureHeight};
    Picture strip_{kStripWidth, kStripHeight};
};

/// Goes on until a picture box is found.
BOOL CALLBACK findPictureBox(HWND child, LPARAM found) {
    wchar_t name[32] = L"";
    GetClassNameW(child, name, 32);
    *reinterpret_cast<bool*>(found) = lstrcmpiW(name, L"kvPictureBox") == 0;
    return !*reinterpret_cast<bool*>(found);
}

BOOL CALLBACK showControl(HWND window, LPARAM shown) {
    bool found = false;
    EnumChildWindows(window, &findPictureBox, reinterpret_cast<LPARAM>(&found));
    if (found)
        ShowWindow(window, shown ? SW_SHOWNOACTIVATE : SW_HIDE);
    return TRUE;
}

void pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

/// A control with the narrow set drawn, in a window that is shown or not.
std::unique_ptr<Rig> drawnRig(const ChannelSet& set, bool shown) {
    std::unique_ptr<Rig> rig = makeRig();
    EnumThreadWindows(GetCurrentThreadId(), &showControl, shown);
    rig->makeRecords(set);
    rig->addAll();
    rig->showRange(set);
    rig->drawDisplay();
    pump();
    return rig;
}

/// Rounds of the steps in turn, so that what else the machine does affects them alike.
template <std::size_t n>
std::array<Times, n> timesInTurn(const std::array<std::function<void(int)>, n>& steps, int rounds) {
    std::array<Times, n> times;
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < n; ++i) {
            times[i].measure([&] { steps[i](round); });
            pump();
        }
    }
    return times;
}

void drawing(benchmark::State& state, bool shown) {
    const ChannelSet& set = channelSet(SetKind::Narrow, kChannels);
    const std::unique_ptr<Rig> rig = drawnRig(set, shown);
    const View view = rig->view();
    BareDisplay bare(shown);
    const double middle = (view.minFreq + view.maxFreq) / 2.0;
    for (auto _ : state) {
        std::array<Times, 4> times =
            timesInTurn<4>({[&](int) { rig->drawDisplay(); }, [&](int) { bare.draw(view.minFreq, view.maxFreq); },
                            [&](int round) { rig->panTo(middle + (round % 2 == 0 ? 0.5 : -0.5)); },
                            [&](int round) { rig->turnGridKnob(round % 2 == 0); }},
                           150);
        auto& [draw, least, pan, step] = times;
        state.counters["draw_ms"] = draw.median() * 1e3;
        state.counters["bare_ms"] = least.median() * 1e3;
        state.counters["pan_ms"] = pan.median() * 1e3;
        state.counters["step_ms"] = step.median() * 1e3;
        state.counters["times_bare"] = draw.median() / least.median();
        state.counters["pan_times_bare"] = pan.median() / least.median();
        state.counters["step_times_pan"] = step.median() / pan.median();
        state.counters["draw_least_ms"] = draw.least() * 1e3;
        state.counters["bare_least_ms"] = least.least() * 1e3;
        state.counters["times_bare_least"] = draw.least() / least.least();
        state.SetIterationTime(draw.median());
    }
}

/// Twenty channels by name, many times: a single round is too short for the clock. The first channel that is added
/// after events ran posts one message, after which the labels are updated; that message is measured alone as well.
void addingByName(benchmark::State& state) {
    const ChannelSet& set = channelSet(SetKind::Narrow, kChannels);
    const std::unique_ptr<Rig> rig = makeRig();
    const HWND other = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    for (auto _ : state) {
        Times added;
        Times empty;
        Times early;
        Times post;
        Times posted;
        for (int round = 0; round < 400; ++round) {
            rig->makeRecords(set);
            pump();
            posted.measure([&] { rig->addAllByName(); });
            rig->clear();
            rig->makeRecords(set);
            added.measure([&] { rig->addAllByName(); });
            rig->clear();
            empty.measure([&] { rig->callEmptyByName(); });
            rig->makeRecords(set);
            early.measure([&] { rig->addAll(); });
            rig->clear();
            pump();
            post.measure([&] { PostMessageW(other, WM_NULL, 0, 0); });
            pump();
        }
        const double plain = plainAddSeconds(set);
        state.counters["plain_us"] = plain * 1e6;
        state.counters["post_us"] = post.median() * 1e6;
        state.counters["posted_us"] = posted.median() * 1e6;
        state.counters["times_plain"] = added.median() / (plain + empty.median());
        state.counters["times_plain_and_post"] = posted.median() / (plain + empty.median() + post.median());
        state.counters["by_name_us"] = added.median() * 1e6;
        state.counters["empty_us"] = empty.median() * 1e6;
        state.counters["early_us"] = early.median() * 1e6;
        state.SetIterationTime(added.median());
    }
    DestroyWindow(other);
}

}  // namespace

void enlistFixed() {
    for (const bool shown : {true, false}) {
        const std::string name = std::string("Fixed/draw20/") + (shown ? "shown" : "hidden");
        benchmark::RegisterBenchmark(name.c_str(), [shown](benchmark::State& state) { drawing(state, shown); })
            ->UseManualTime()
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("Fixed/add20ByName", addingByName)
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

}  // namespace kv::bench
