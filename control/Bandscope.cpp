// The life of a control and its channels. Drawing, ranges and handlers are in the other files of the class.
#include "control/Bandscope.h"

#include <exception>

#include "control/SampleChannels.h"
#include "util/AtExit.h"
#include "util/Product.h"
#include "util/Text.h"

namespace kv::control {

using channels::ChannelKind;
using channels::FreqSlotRef;
using formenv::MessageButtons;
using formenv::MessageIcon;

namespace {

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

Bandscope::Bandscope(const Services& services) : services_(services) {
    std::exception_ptr failed;
    const auto kept = [&failed](auto&& body) {
        try {
            body();
        } catch (...) {
            failed = std::current_exception();
            throw;
        }
    };
    reported(L"UserControl_Initialize", [&](Step&) { kept([&] { UserControl_Initialize(); }); });
    if (!failed)
        noted(L"UserControl_Resize", [&](Step& step) { kept([&] { UserControl_Resize(step); }); });
    // A control that was set up in part would fail in later calls, so there is none.
    if (failed)
        std::rethrow_exception(failed);
    connectHandlers();
}

Bandscope::~Bandscope() = default;

void Bandscope::UserControl_Initialize() {
    panel_.initialize();
    panel_.setUpCursorKnob();
    panel_.SetCenterFreqKnob(range_.center());
    panel_.SetGridKnob();
}

void Bandscope::setBUseMovers(bool value) {
    panel_.setBUseMovers(value);
    panel_.setUpCursorKnob();
    panel_.SetCenterFreqKnob(range_.center());
}

// The host learns of a failed add by looking the channel up; its place is the answer all the same.
std::int32_t Bandscope::addQuietly(ChannelKind kind, const FreqSlotRef& chnl) {
    std::int32_t index = 0;
    quietly(false, [&] {
        store_.add(kind, chnl, index);
        if (kind == ChannelKind::RX) {
            panel_.summary().ShowRXLabels(store_);
        } else if (!sTXNoun().empty()) {
            panel_.summary().ShowTXLabels(store_, {});
        } else if (const channels::FreqSlotFields* const own = chnl->peek()) {
            panel_.summary().ShowTXLabels(store_, own->sLabel);
        } else {
            panel_.summary().ShowTXLabels(store_, chnl->sLabel());
        }
        return true;
    });
    return index;
}

FreqSlotRef Bandscope::GetTXbyKey(const std::wstring& sKey) const {
    return quietly(FreqSlotRef(), [&] { return store_.findByKey(ChannelKind::TX, sKey); });
}

FreqSlotRef Bandscope::GetRXbyKey(const std::wstring& sKey) const {
    return quietly(FreqSlotRef(), [&] { return store_.findByKey(ChannelKind::RX, sKey); });
}

FreqSlotRef Bandscope::GetChnlByKey(const std::wstring& sKey) const {
    FreqSlotRef channel = GetTXbyKey(sKey);
    return channel ? channel : GetRXbyKey(sKey);
}

std::int32_t Bandscope::nFindMatchRX(const FreqSlotRef& chnl) {
    constexpr std::int32_t kNone = channels::kInvalid;
    return quietly(kNone, [&] { return chnl ? store_.findMatchRX(*chnl) : kNone; });
}

void Bandscope::RemoveChnlByKey(const std::wstring& sID) {
    reported(L"RemoveChnlByKey", [&](Step& step) { removeByKey(sID, step); });
}

void Bandscope::removeByKey(const std::wstring& sID, Step& step) {
    const FreqSlotRef channel = GetChnlByKey(sID);
    if (!channel)
        return;
    step = 300;
    const std::wstring prefix = util::upperCase(sID.substr(0, 2));
    std::exception_ptr failed;
    if (prefix == L"TX") {
        failed = store_.closeGap(ChannelKind::TX, sID);
    } else if (prefix == L"RX") {
        failed = store_.closeGap(ChannelKind::RX, sID);
    }
    step = 400;
    store_.forgetKey(sID);
    step = 500;
    recalculateRanges();
    step = 600;
    showSummaries();
    step = 700;
    DrawDisplay();
    if (failed) {
        step = 300;
        std::rethrow_exception(failed);
    }
}

void Bandscope::recalculateRanges() {
    store_.RecalcTXFreqRange();
    store_.RecalcRXFreqRange();
    store_.RecalcFreqRange();
}

void Bandscope::showSummaries() {
    panel_.summary().ShowTXLabels(store_, L"");
    panel_.summary().ShowRXLabels(store_);
}

void Bandscope::ClearTXChnls() {
    store_.clear(ChannelKind::TX);
    panel_.summary().forgetTX();
}

void Bandscope::ClearRXChnls() {
    store_.clear(ChannelKind::RX);
    panel_.summary().forgetRX();
}

void Bandscope::ClearAllChnls() {
    ClearTXChnls();
    ClearRXChnls();
    store_.forgetAllKeys();
    store_.resetFrequencyExtremes();
}

void Bandscope::UserControl_Click() {
    if (NumTX() >= 1 || NumRX() >= 1)
        return;
    reported(L"UserControl_Click", [&](Step&) { LoadSampleChannels(); });
}

void Bandscope::LoadSampleChannels() {
    // An end buffer that suits the set, for this drawing only; the host's own is put back.
    const util::AtExit restored(
        [this, hosts = range_.exchangeFreqEndBuffer(kSampleEndBuffer)] { range_.setFreqEndBuffer(hosts); });
    for (const SampleChannel& sample : makeSampleChannels(services_.newFreqSlot))
        addQuietly(sample.kind, sample.channel);
    DrawInitialDisplay();
}

void Bandscope::addTestFrequencies() {
    for (const SampleChannel& made : makeTestChannels(services_.newFreqSlot))
        addQuietly(made.kind, made.channel);
    DrawDisplay();
}

void Bandscope::DrawAll() {
    services_.platform.messageBox(
        L"DrawAll function no longer supported.\r\n\r\nPlease email the KVTechSup.TXT file to:\r\n\r\n" +
            util::product::supportContact() +
            L" along with a description of what you were trying to do when this error occurred.",
        L"Incorrect Function Call", MessageIcon::Information, MessageButtons::Ok);
}

void Bandscope::setLColorLblBack(raster::OleColor value) {
    ui_.picUnits.setBackColor(value);
    JustDrawIt();
}

void Bandscope::setLColorLblFore(raster::OleColor value) {
    ui_.picUnits.setForeColor(value);
    JustDrawIt();
}

void Bandscope::setLColorSpecBack(raster::OleColor value) {
    // Another background erases the picture.
    ui_.picSpectrum.setBackColor(value);
    marks_.forget();
    JustDrawIt();
}

}  // namespace kv::control
