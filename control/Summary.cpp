// The channel store's public procedures with the summary labels and the buttons of the panel that go with them.
#include <cwctype>
#include <string>

#include "channels/Intermodulation.h"
#include "control/Bandscope.h"
#include "util/NumberFormat.h"

namespace kv::control {

using formenv::MessageButtons;
using formenv::MessageIcon;

namespace {

constexpr wchar_t kRangeFormat[] = L"##0.00000";

bool isAny(const ChannelSummary& summary) noexcept {
    return summary.minimum <= summary.maximum;
}

std::wstring countText(const ChannelSummary& summary, const wchar_t* noun) {
    return isAny(summary) ? std::to_wstring(summary.count) + noun : std::wstring();
}

std::wstring rangeText(const ChannelSummary& summary) {
    return isAny(summary) ? util::formatNumber(summary.minimum, kRangeFormat) + L" to " +
                                util::formatNumber(summary.maximum, kRangeFormat)
                          : std::wstring();
}

/// Puts the text into the label, or takes the label away when there is none.
void describe(formenv::Label& label, const std::wstring& text) {
    label.setCaption(text);
    label.setVisible(!text.empty());
}

/// Ends quietly, with the start result, when an error stops `body`.
template <class T, class F>
T quietly(T start, F&& body) {
    try {
        return body();
    } catch (...) {
        return start;
    }
}

}  // namespace

std::int32_t Bandscope::AddTXChnl(const channels::FreqSlotRef& chnl) {
    return addQuietly(channels::ChannelKind::TX, chnl);
}

std::int32_t Bandscope::AddRXChnl(const channels::FreqSlotRef& chnl) {
    return addQuietly(channels::ChannelKind::RX, chnl);
}

std::int32_t Bandscope::addQuietly(channels::ChannelKind kind, const channels::FreqSlotRef& chnl) {
    std::int32_t index = 0;
    try {
        store_.add(kind, chnl, index);
        if (kind == channels::ChannelKind::TX)
            ShowTXLabels(sTXNoun_.empty() ? chnl->sLabel() : std::wstring());
        else
            ShowRXLabels();
    } catch (...) {
        // The host learns of a failed add by looking the channel up; its place is the answer all the same.
        return index;
    }
    return index;
}

void Bandscope::chooseNoun(const std::wstring& sLabel) {
    if (!sTXNoun_.empty())
        return;
    sTXNoun_ = channels::isIntermodProduct(sLabel) ? L" IM Products" : L" TX Channels";
}

void Bandscope::ShowTXLabels(const std::wstring& sLabel) {
    if (NumTX() > 0)
        chooseNoun(sLabel);
    const channels::Extremes& e = store_.extremes();
    noteSummary(channels::ChannelKind::TX, {NumTX(), e.dTXFreqMin, e.dTXFreqMax});
}

void Bandscope::ShowRXLabels() {
    const channels::Extremes& e = store_.extremes();
    noteSummary(channels::ChannelKind::RX, {NumRX(), e.dRXFreqMin, e.dRXFreqMax});
}

// Each added channel changes the labels, and formatting numbers takes longer than all the rest of adding.
void Bandscope::noteSummary(channels::ChannelKind kind, const ChannelSummary& summary) {
    const bool tx = kind == channels::ChannelKind::TX;
    (tx ? txSummary_ : rxSummary_) = summary;
    (tx ? ui_.lblNumTX : ui_.lblNumRX).describeLater([this, tx] {
        if (tx)
            describe(ui_.lblNumTX, countText(txSummary_, L" tx Channels"));
        else
            describe(ui_.lblNumRX, countText(rxSummary_, L" RX Channels"));
    });
    (tx ? ui_.lblTXRange : ui_.lblRXRange).describeLater([this, tx] {
        if (tx)
            describe(ui_.lblTXRange, rangeText(txSummary_));
        else
            describe(ui_.lblRXRange, rangeText(rxSummary_));
    });
}

channels::FreqSlotRef Bandscope::GetTXbyKey(const std::wstring& sKey) const {
    return quietly(channels::FreqSlotRef(), [&] { return store_.findByKey(channels::ChannelKind::TX, sKey); });
}

channels::FreqSlotRef Bandscope::GetRXbyKey(const std::wstring& sKey) const {
    return quietly(channels::FreqSlotRef(), [&] { return store_.findByKey(channels::ChannelKind::RX, sKey); });
}

channels::FreqSlotRef Bandscope::GetChnlByKey(const std::wstring& sKey) const {
    channels::FreqSlotRef channel = GetTXbyKey(sKey);
    return channel ? channel : GetRXbyKey(sKey);
}

std::int32_t Bandscope::nFindMatchRX(const channels::FreqSlotRef& chnl) {
    return quietly(std::int32_t{channels::kInvalid},
                   [&] { return chnl ? store_.findMatchRX(*chnl) : std::int32_t{channels::kInvalid}; });
}

void Bandscope::RemoveChnlByKey(const std::wstring& sID) {
    std::int16_t flag = 100;
    reported(L"RemoveChnlByKey", L"", flag, [&] {
        const channels::FreqSlotRef channel = GetChnlByKey(sID);
        if (!channel)
            return;
        flag = 200;
        const std::int32_t index = store_.indexOfKey(sID).value_or(0);
        flag = 300;
        std::wstring prefix = sID.substr(0, 2);
        for (wchar_t& letter : prefix)
            letter = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(letter)));
        std::exception_ptr failed;
        if (prefix == L"TX")
            failed = store_.closeGap(channels::ChannelKind::TX, index);
        else if (prefix == L"RX")
            failed = store_.closeGap(channels::ChannelKind::RX, index);
        flag = 400;
        store_.forgetKey(sID);
        flag = 500;
        store_.RecalcTXFreqRange();
        store_.RecalcRXFreqRange();
        store_.RecalcFreqRange();
        flag = 600;
        ShowTXLabels(L"");
        ShowRXLabels();
        flag = 700;
        DrawDisplay();
        if (failed) {
            flag = 300;
            std::rethrow_exception(failed);
        }
    });
}

void Bandscope::ClearTXChnls() {
    store_.clear(channels::ChannelKind::TX);
    sTXNoun_.clear();
    ui_.lblNumTX.setCaption(L"");
    ui_.lblTXRange.setCaption(L"");
}

void Bandscope::ClearRXChnls() {
    store_.clear(channels::ChannelKind::RX);
    ui_.lblNumRX.setCaption(L"");
    ui_.lblRXRange.setCaption(L"");
}

void Bandscope::ClearAllChnls() {
    ClearTXChnls();
    ClearRXChnls();
    store_.forgetAllKeys();
    store_.resetFrequencyExtremes();
}

void Bandscope::cmdDrawTX_Click() {
    if (NumTX() < 1)
        services_.platform.messageBox(L"No TX channels to draw.", L"", MessageIcon::None, MessageButtons::Ok);
    else {
        const Marks::Aside aside(marks_);
        DrawDisplayTX();
    }
}

void Bandscope::cmdDrawRX_Click() {
    if (NumRX() < 1)
        services_.platform.messageBox(L"No RX channels to draw.", L"", MessageIcon::None, MessageButtons::Ok);
    else {
        const Marks::Aside aside(marks_);
        DrawDisplayRX();
    }
}

void Bandscope::addTestFrequencies() {
    const auto make = [this](double frequency) {
        const auto channel = services_.newFreqSlot();
        channel->setDFreq(frequency);
        return channels::FreqSlotRef(channel.get());
    };
    for (const double frequency : {100.0, 110.0, 150.0})
        AddTXChnl(make(frequency));
    for (const double frequency : {455.0, 460.0})
        AddRXChnl(make(frequency));
    DrawDisplay();
}

}  // namespace kv::control
