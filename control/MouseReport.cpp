#include "control/MouseReport.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "channels/Intermodulation.h"
#include "util/NumberFormat.h"

namespace kv::control {

namespace {

constexpr std::size_t kLimit = 31000;  // characters
constexpr std::wstring_view kMarker = L" ====== Max text length exceeded ======";
constexpr wchar_t kNewLine[] = L"\r\n";
constexpr wchar_t kIndented[] = L"\r\n     ";

// The columns of a component's line: " +2x" and "  462.56250"; longer ones push the rest to the right.
constexpr std::size_t kCoefficientWidth = 4;
constexpr std::size_t kFrequencyWidth = 11;
constexpr wchar_t kTermGap[] = L"  ";

std::wstring rightAligned(std::wstring text, std::size_t width) {
    if (text.size() < width)
        text.insert(0, width - text.size(), L' ');
    return text;
}

std::wstring componentText(const channels::ImComponent& component) {
    const std::wstring term = (component.coefficient < 0 ? L"-" : L"+") +
                              std::to_wstring(std::abs(static_cast<int>(component.coefficient))) + L"x";
    std::wstring text = rightAligned(term, kCoefficientWidth) + kTermGap +
                        rightAligned(util::formatNumber(component.frequency, L"##0.00000"), kFrequencyWidth);
    return component.label.empty() ? text : text + kTermGap + component.label;
}

}  // namespace

void MouseReport::begin(const std::wstring& location) {
    text_.clear();
    location_ = location;
    std::fill(std::begin(hasSection_), std::end(hasSection_), false);
}

bool MouseReport::isFull() const noexcept {
    return std::wstring_view(text_).ends_with(kMarker);
}

void MouseReport::SetReportText(const std::wstring& text) {
    if (!closes(text.size()))
        text_ = text;
}

// As SetReportText(text_ + piece), without copying the text for each of some thousand pieces.
void MouseReport::append(const std::wstring& piece) {
    if (!closes(text_.size() + piece.size()))
        text_ += piece;
}

bool MouseReport::closes(std::size_t newSize) {
    if (isFull())
        return true;
    if (newSize + text_.size() < kLimit)
        return false;
    text_.append(kNewLine).append(kNewLine).append(kMarker);
    return true;
}

void MouseReport::add(channels::ChannelKind kind, channels::FreqSlot& channel) {
    appendSection(kind);
    appendChannel(channel);
    if (kind != channels::ChannelKind::TX)
        return;
    append(kIndented + util::formatNumber(channel.dPwrDBM(), L"#0.00"));
    appendComponents(channel);
}

void MouseReport::appendSection(channels::ChannelKind kind) {
    bool& has = hasSection_[kind == channels::ChannelKind::TX ? 1 : 0];
    if (has)
        return;
    has = true;
    if (text_.empty()) {
        SetReportText(L"Mouse Location:");
        append(kNewLine + location_);
    }
    append(std::wstring(kNewLine) + kNewLine + (kind == channels::ChannelKind::TX ? L"TX Channels:" : L"RX Channels:"));
}

void MouseReport::appendChannel(channels::FreqSlot& channel) {
    append(kNewLine + util::formatNumber(channel.dFreq(), L"####0.00000") + L" " + channel.sFreqUnits());
    const double bandwidth = channel.dBW();
    if (bandwidth > 0.0)
        append(L" \u00B1" + util::formatNumber(bandwidth, L"0.000") + L" " + channel.sBWUnits());
    append(L" " + channel.sLabel());
}

void MouseReport::appendComponents(channels::FreqSlot& channel) {
    if (!channels::isIntermodProduct(channel.sLabel()))
        return;
    const std::int16_t count = channel.nIMComps();
    if (count > 0)
        append(std::wstring(kIndented) + L"INTERMOD COMPONENTS:");
    for (std::int16_t i = 0; i < count && !isFull(); ++i)
        append(kIndented + componentText(channel.imComponent(i)));
}

}  // namespace kv::control
