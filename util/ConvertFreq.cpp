#include "util/ConvertFreq.h"

#include <array>
#include <cmath>
#include <optional>

#include "util/RuntimeError.h"

namespace kv::util {

namespace {

struct Unit {
    std::wstring_view name;
    int stepsToMHz;  // Steps of 1000: divisions when above 0, multiplications when below.
};

constexpr std::array<Unit, 4> kUnits{{{L"Hz", 2}, {L"KHz", 1}, {L"MHz", 0}, {L"GHz", -1}}};

constexpr int kNoUnit = 9;

std::optional<int> stepsToMHz(std::wstring_view name) {
    for (const Unit& unit : kUnits) {
        if (unit.name == name)
            return unit.stepsToMHz;
    }
    return std::nullopt;
}

/// `value` / 1000 per step above 0, × 1000 per step below 0.
double scale(double value, int steps) {
    // Stored after each step: a processor that calculates with more bits than a double has must round here.
    volatile double result = value;
    for (; steps > 0; --steps)
        result = result / 1000.0;
    for (; steps < 0; ++steps)
        result = result * 1000.0;
    return result;
}

}  // namespace

double ConvertFreq(std::wstring_view sFromUnits, std::wstring_view sToUnits, double dValue, bool& bErr) {
    bErr = false;
    if (sFromUnits == sToUnits)
        return dValue;
    const std::optional<int> from = stepsToMHz(sFromUnits);
    const std::optional<int> to = stepsToMHz(sToUnits);
    if (!from || !to) {
        bErr = true;
        return kInvalidFreq;
    }
    const double result = scale(scale(dValue, *from), -*to);
    if (std::isfinite(dValue) && !std::isfinite(result))
        throw RuntimeError(error_number::kOverflow);
    return result;
}

double ConvertFreq(std::wstring_view sFromUnits, std::wstring_view sToUnits, double dValue) {
    bool unknown = false;
    return ConvertFreq(sFromUnits, sToUnits, dValue, unknown);
}

FreqUnit freqUnitOf(std::wstring_view name) noexcept {
    switch (stepsToMHz(name).value_or(kNoUnit)) {
        case 0:
            return FreqUnit::MHz;
        case 1:
            return FreqUnit::KHz;
        case 2:
            return FreqUnit::Hz;
        case -1:
            return FreqUnit::GHz;
        default:
            return FreqUnit::Other;
    }
}

double toMHz(FreqUnit from, double dValue) noexcept {
    switch (from) {
        case FreqUnit::MHz:
            return dValue;
        case FreqUnit::KHz:
            return scale(dValue, 1);
        case FreqUnit::Hz:
            return scale(dValue, 2);
        case FreqUnit::GHz:
            return scale(dValue, -1);
        case FreqUnit::Other:
            break;
    }
    return kInvalidFreq;
}

double toMHz(std::wstring_view sFromUnits, double dValue) {
    return ConvertFreq(sFromUnits, L"MHz", dValue);
}

}  // namespace kv::util
