#include "control/GridSteps.h"

#include <array>
#include <cmath>
#include <iterator>

#include "util/NumberFormat.h"

namespace kv::control {

namespace {

// A 1-2-5 sequence except for the gaps near its end. The slices below are indices into this table.
constexpr std::array<GridStop, 29> kGridTable = {{
    {L"500", 0.0005}, {L"1K", 0.001},     {L"2K", 0.002},     {L"5K", 0.005},     {L"10K", 0.01},    {L"20K", 0.02},
    {L"50K", 0.05},   {L"100K", 0.1},     {L"200K", 0.2},     {L"500K", 0.5},     {L"1M", 1.0},      {L"2M", 2.0},
    {L"5M", 5.0},     {L"10M", 10.0},     {L"20M", 20.0},     {L"50M", 50.0},     {L"100M", 100.0},  {L"200M", 200.0},
    {L"500M", 500.0}, {L"1G", 1000.0},    {L"2G", 2000.0},    {L"5G", 5000.0},    {L"10G", 10000.0}, {L"50G", 50000.0},
    {L"100G", 1.0e5}, {L"1T", 1000000.0}, {L"2T", 2000000.0}, {L"5T", 5000000.0}, {L"10T", 1.0e7},
}};

constexpr std::span<const GridStop> slice(std::size_t first, std::size_t last) noexcept {
    return std::span(kGridTable).subspan(first, last - first + 1);
}

constexpr std::span<const GridStop> kStops[] = {slice(0, 10), slice(9, 19), slice(18, 28)};
static_assert(std::size(kStops) == std::size(kGridUnits));

}  // namespace

std::span<const GridStop> gridStops(const std::wstring& unit) noexcept {
    for (std::size_t i = 0; i < std::size(kGridUnits); ++i) {
        if (unit == kGridUnits[i])
            return kStops[i];
    }
    return kStops[kStartGridUnit];
}

int gridUnitFor(double step, int present) noexcept {
    const auto reaches = [step](std::span<const GridStop> stops) {
        return step >= stops.front().step && step <= stops.back().step;
    };
    if (present >= 0 && reaches(kStops[present]))
        return present;
    const std::span<const GridStop> middle = kStops[kStartGridUnit];
    if (step < middle.front().step)
        return 0;
    return step > middle.back().step ? 2 : kStartGridUnit;
}

bool isSameStep(double a, double b) noexcept {
    constexpr double kHair = 1e-9;
    return std::abs(a - b) <= kHair * std::abs(b);
}

std::wstring stepText(double step) {
    struct Unit {
        double hertz;
        const wchar_t* suffix;
    };
    constexpr Unit kUnits[] = {{1e12, L"T"}, {1e9, L"G"}, {1e6, L"M"}, {1e3, L"K"}, {1.0, L""}};
    constexpr double kHertzPerMHz = 1e6;
    constexpr double kLeastMantissa = 0.9999995;  // rounds to 1
    const double hertz = step * kHertzPerMHz;
    const Unit* unit = std::begin(kUnits);
    while (unit + 1 != std::end(kUnits) && hertz < unit->hertz * kLeastMantissa)
        ++unit;
    const double mantissa = hertz / unit->hertz;
    const wchar_t* const format = mantissa < 9.999995 ? L"0.#####" : mantissa < 99.99995 ? L"0.####" : L"0.###";
    return util::formatNumber(mantissa, format) + unit->suffix;
}

}  // namespace kv::control
