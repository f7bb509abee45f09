#include "control/Spoken.h"

#include "control/Formats.h"
#include "util/NumberFormat.h"

namespace kv::control {

namespace {

std::wstring megahertz(double value) {
    return util::formatNumber(value, kPointerFormat);
}

std::wstring counted(std::int32_t count, const wchar_t* noun) {
    return std::to_wstring(count) + L" " + noun + (count == 1 ? L" channel" : L" channels");
}

/// In a sentence what the eye takes from the picture.
std::wstring spectrumValue(const Bandscope& scope) {
    const auto [minimum, maximum] = scope.displaySpan();
    std::wstring text;
    if (minimum < maximum)
        text = megahertz(minimum) + L" to " + megahertz(maximum) + L" MHz, ";
    if (scope.CursorVal() > 0.0)
        text += L"cursor at " + megahertz(scope.CursorVal()) + L" MHz, ";
    if (scope.marker().isVisible())
        text += L"marker at " + megahertz(scope.marker().frequency()) + L" MHz, ";
    if (const std::wstring distance = scope.marker().distanceText(scope.CursorVal()); !distance.empty())
        text += distance + L", ";
    return text + counted(scope.NumTX(), L"transmit") + L", " + counted(scope.NumRX(), L"receive");
}

}  // namespace

void nameParts(Bandscope& scope) {
    Children& parts = scope.children();
    parts.userControl.spoken.name = L"Spectrum display";
    parts.fraPic.spoken.name = L"Display";
    parts.fraControl.spoken.name = L"Controls";
    parts.picUnits.spoken.name = L"Frequency scale";
    parts.picSpectrum.spoken = {L"Spectrum",
                                L"Left, Right, Page Up and Page Down move along. Up and Down zoom. Home shows all "
                                L"channels. Control with Left or "
                                L"Right leads the cursor to the next channel, Shift moves it by a little. Space makes "
                                L"its frequency the center. "
                                L"D puts the marker there or takes it away. "
                                L"Alt with Left or Right goes back and forward through the ranges. "
                                L"M opens the report of what is under the cursor.",
                                [&scope] { return spectrumValue(scope); }};
    const wchar_t* const turning =
        L"The arrow keys turn by a step, Page Up and Page Down by several, with Control by less. Home and End go to "
        L"the "
        L"ends. Escape gives a turn up.";
    for (formenv::Widget* knob : std::initializer_list<formenv::Widget*>{
             &parts.tdKnMovCenter, &parts.tdKnMovCursor, &parts.tdKnCenter, &parts.tdKnCursor, &parts.tdKnGrid})
        knob->spoken.help = turning;
}

}  // namespace kv::control
