#include "util/ConvertFreq.h"

#include <array>
#include <cmath>
#include <optional>

#include "util/RuntimeError.h"

namespace kv::util {

namespace {

struct Unit {
    std::wstring_view name;
    FreqUnit number;
    int stepsToMHz;  // Steps of 1000: divisions when above 0, multiplications when below.
};

/// By number.
constexpr std::array<Unit, 4> kUnits{
    {{L"MHz", FreqUnit::MHz, 0}, {L"Hz", FreqUnit::Hz, 2}, {L"KHz", FreqUnit::KHz, 1}, {L"GHz", FreqUnit::GHz, -1}}};

std::optional<int> stepsToMHz(FreqUnit unit) {
    return unit == FreqUnit::Other ? std::nullopt : std::optional(kUnits[static_cast<std::size_t>(unit)].stepsToMHz);
}

std::optional<int> stepsToMHz(std::wstring_view name) {
    return stepsToMHz(freqUnitOf(name));
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
    for (const Unit& unit : kUnits) {
        if (unit.name == name)
            return unit.number;
    }
    return FreqUnit::Other;
}

double toMHz(FreqUnit from, double dValue) noexcept {
    if (from == FreqUnit::MHz)
        return dValue;
    const std::optional<int> steps = stepsToMHz(from);
    return steps ? scale(dValue, *steps) : kInvalidFreq;
}

double toMHz(std::wstring_view sFromUnits, double dValue) {
    return ConvertFreq(sFromUnits, L"MHz", dValue);
}

}  // namespace kv::util
