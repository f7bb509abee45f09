// The step between two grid lines: chosen on the grid knob, whose stops the grid-range box selects, or derived from
// the displayed range.
#include <array>
#include <cmath>
#include <iterator>
#include <string>

#include "control/Bandscope.h"
#include "util/NumberFormat.h"

namespace kv::control {

namespace {

struct GridRow {
    const wchar_t* label;  ///< Hz
    double step;           ///< MHz
};

// A 1-2-5 sequence but for the gaps at its top; the slices below depend on the places in this table.
constexpr std::array<GridRow, 29> kGridTable = {{
    {L"500", 0.0005}, {L"1K", 0.001},     {L"2K", 0.002},     {L"5K", 0.005},     {L"10K", 0.01},    {L"20K", 0.02},
    {L"50K", 0.05},   {L"100K", 0.1},     {L"200K", 0.2},     {L"500K", 0.5},     {L"1M", 1.0},      {L"2M", 2.0},
    {L"5M", 5.0},     {L"10M", 10.0},     {L"20M", 20.0},     {L"50M", 50.0},     {L"100M", 100.0},  {L"200M", 200.0},
    {L"500M", 500.0}, {L"1G", 1000.0},    {L"2G", 2000.0},    {L"5G", 5000.0},    {L"10G", 10000.0}, {L"50G", 50000.0},
    {L"100G", 1.0e5}, {L"1T", 1000000.0}, {L"2T", 2000000.0}, {L"5T", 5000000.0}, {L"10T", 1.0e7},
}};

struct Slice {
    std::size_t first;
    std::size_t last;
};

Slice sliceOf(const std::wstring& unit) {
    if (unit == L"KHz")
        return {0, 10};
    if (unit == L"GHz")
        return {18, 28};
    return {9, 19};
}

constexpr std::int16_t kUsualGridX = 20;

/// Steps whose difference is the rounding of a division are the same.
bool sameStep(double a, double b) {
    constexpr double kHair = 1e-9;
    return std::abs(a - b) <= kHair * std::abs(b);
}

/// A step in MHz as the stops of the grid knob are labeled, in Hz with a suffix and six significant digits: "25K".
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

}  // namespace

std::int16_t Bandscope::nGridX() noexcept {
    if (grid_.nGridX < 1)
        grid_.nGridX = kUsualGridX;
    return grid_.nGridX;
}

void Bandscope::SetGridRange() {
    ui_.cboGridRange.clear();
    for (const wchar_t* unit : {L"KHz", L"MHz", L"GHz"})
        ui_.cboGridRange.addItem(unit);
    ui_.cboGridRange.setListIndex(1);
}

void Bandscope::SetGridKnob() {
    turndial::tdKnob& knob = ui_.tdKnGrid;
    knob.setSCaption(L"Grid (Hz)");
    knob.dStep = 0.0;
    knob.iKnobStyle = 0;
    knob.bOption1 = false;
    knob.bShowValue = true;
    knob.textOffStops = stepText;
    const Slice slice = sliceOf(ui_.cboGridRange.text());
    knob.dMinVal = kGridTable.at(slice.first).step;
    knob.dMaxVal = kGridTable.at(slice.last).step;
    knob.bOption2 = true;
    knob.dStep = 10.0;
    for (std::size_t row = slice.first; row <= slice.last; ++row)
        knob.AddStop(row == slice.first, kGridTable.at(row).label, kGridTable.at(row).step);
    knob.setDVal(kGridTable.at(slice.first).step);
    knob.Refresh();
}

double Bandscope::GridStepX() {
    if (channels::isUnsetFrequency(grid_.step)) {
        grid_.step = (range_.maxFreq - range_.minFreq) / nGridX();
        grid_.chosen = false;
    }
    return grid_.step;
}

// The lines are as many as `nGridX` says, whatever step was chosen: the read-out tells what is drawn.
void Bandscope::showGridStep() {
    if (!(range_.maxFreq > range_.minFreq))
        return;
    const double drawn = (range_.maxFreq - range_.minFreq) / nGridX();
    ui_.tdKnGrid.setSValText(grid_.chosen && sameStep(grid_.step, drawn) ? std::wstring() : stepText(drawn));
}

// A chosen step makes the range: as many divisions as there are, around the center. So turning the grid knob zooms,
// and the middle line goes on marking the center.
void Bandscope::applyChosenStep() {
    if (!deriveRange() || channels::isUnsetFrequency(grid_.step))
        return;
    showAround(DisplayCenterFreq(), grid_.step * nGridX() / 2.0);
    applyHorizontalScale();
}

// The other way round: the range stays and makes the step.
void Bandscope::deriveGridStep() {
    grid_.step = 0.0;
    GridStepX();
}

void Bandscope::stepChosenByHand() {
    applyChosenStep();
    drawUnlessDrawing();
}

// What was chosen under a running drawing starts none inside it; that one is repeated at its end.
void Bandscope::drawUnlessDrawing() {
    if (drawing_.bDrawing)
        drawing_.bAgain = true;
    else
        JustDrawIt();
}

// The knob's stops are those of the box's choice: another choice when the step lies beyond them.
void Bandscope::selectGridRange() {
    const Slice present = sliceOf(ui_.cboGridRange.text());
    const auto holds = [this](const Slice& slice) {
        return grid_.step >= kGridTable.at(slice.first).step && grid_.step <= kGridTable.at(slice.last).step;
    };
    if (!holds(present)) {
        const bool fine = grid_.step < kGridTable.at(sliceOf(L"MHz").first).step;
        const bool coarse = grid_.step > kGridTable.at(sliceOf(L"MHz").last).step;
        ui_.cboGridRange.setListIndex(fine ? 0 : (coarse ? 2 : 1));
        SetGridKnob();
    }
    ui_.tdKnGrid.setDVal(grid_.step);
    ui_.tdKnGrid.Refresh();
}

void Bandscope::cboGridRange_Click() {
    std::int16_t flag = 100;
    double minimum = 0.0;
    double maximum = 0.0;
    reported(L"cboGridRange_Click", L"", flag, [&] {
        const double kept = ui_.tdKnGrid.dVal();
        SetGridKnob();
        ui_.tdKnGrid.setDVal(kept);
        flag = 200;
        if (!deriveRange())
            return;
        minimum = range_.minFreq;
        maximum = range_.maxFreq;
        setGridStepX(ui_.tdKnGrid.dVal());
        stepChosenByHand();
    });
    if (hasUsableRange() && (range_.minFreq != minimum || range_.maxFreq != maximum))
        services_.events.ChgFreqRange(range_.minFreq, range_.maxFreq);
    services_.events.ChgGridRange();
}

void Bandscope::tdKnGrid_ValueChanged(double dNewVal) {
    std::int16_t flag = 100;
    reported(L"tdKnGrid_ValueChanged", L"", flag, [&] {
        setGridStepX(dNewVal);
        flag = 200;
        stepChosenByHand();
    });
}

void Bandscope::tdKnGrid_TurnEnd() {
    std::int16_t flag = 100;
    reported(L"tdKnGrid_TurnEnd", L"", flag, [&] {
        setGridStepX(ui_.tdKnGrid.dVal());
        flag = 200;
        stepChosenByHand();
        flag = 300;
        rescaleKnobsToRange();
    });
    tellRangeChanged();
}

// A derived step stands on no stop of the knob: the knob's value alone would not bring the display back.
void Bandscope::rememberBeforeTurn() noexcept {
    grid_.beforeTurn = {range_.minFreq, range_.maxFreq, grid_.step, grid_.chosen};
}

void Bandscope::takeGridTurnBack() {
    std::int16_t flag = 100;
    reported(L"tdKnGrid_GivenUp", L"", flag, [&] {
        range_.minFreq = grid_.beforeTurn.minFreq;
        range_.maxFreq = grid_.beforeTurn.maxFreq;
        grid_.step = grid_.beforeTurn.step;
        grid_.chosen = grid_.beforeTurn.chosen;
        flag = 200;
        drawUnlessDrawing();
    });
}

}  // namespace kv::control
