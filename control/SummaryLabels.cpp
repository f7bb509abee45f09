#include "control/SummaryLabels.h"

#include "channels/Intermodulation.h"
#include "control/Formats.h"
#include "util/NumberFormat.h"

namespace kv::control {

using channels::ChannelKind;

namespace {

/// Puts the text into the label, or hides the label when there is none.
void describe(formenv::Label& label, const std::wstring& text) {
    label.setCaption(text);
    label.setVisible(!text.empty());
}

}  // namespace

std::wstring SummaryLabels::Summary::countText(const wchar_t* noun) const {
    return isAny() ? std::to_wstring(count) + noun : std::wstring();
}

std::wstring SummaryLabels::Summary::rangeText() const {
    return isAny() ? util::formatNumber(minimum, kKnobFormat) + L" to " + util::formatNumber(maximum, kKnobFormat)
                   : std::wstring();
}

void SummaryLabels::ShowTXLabels(const channels::ChannelStore& store, std::wstring_view sLabel) {
    if (store.count(ChannelKind::TX) > 0 && sTXNoun_.empty())
        sTXNoun_ = channels::isIntermodProduct(sLabel) ? L" IM Products" : L" TX Channels";
    const channels::Extremes& e = store.extremes();
    note(ChannelKind::TX, {store.count(ChannelKind::TX), e.dTXFreqMin, e.dTXFreqMax});
}

void SummaryLabels::ShowRXLabels(const channels::ChannelStore& store) {
    const channels::Extremes& e = store.extremes();
    note(ChannelKind::RX, {store.count(ChannelKind::RX), e.dRXFreqMin, e.dRXFreqMax});
}

// Each added channel changes the labels, and formatting the numbers takes longer than all the rest of adding. The
// handlers are small enough to be kept without memory of their own.
void SummaryLabels::note(ChannelKind kind, const Summary& summary) {
    const bool tx = kind == ChannelKind::TX;
    (tx ? tx_ : rx_) = summary;
    (tx ? ui_.lblNumTX : ui_.lblNumRX).describeLater([this, tx] {
        if (tx) {
            describe(ui_.lblNumTX, tx_.countText(L" tx Channels"));
        } else {
            describe(ui_.lblNumRX, rx_.countText(L" RX Channels"));
        }
    });
    (tx ? ui_.lblTXRange : ui_.lblRXRange).describeLater([this, tx] {
        describe(tx ? ui_.lblTXRange : ui_.lblRXRange, (tx ? tx_ : rx_).rangeText());
    });
}

void SummaryLabels::forgetTX() {
    sTXNoun_ = {};
    ui_.lblNumTX.setCaption(L"");
    ui_.lblTXRange.setCaption(L"");
}

void SummaryLabels::forgetRX() {
    ui_.lblNumRX.setCaption(L"");
    ui_.lblRXRange.setCaption(L"");
}

}  // namespace kv::control
