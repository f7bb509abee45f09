#include "host/EarlierContents.h"

namespace kv::host {

namespace {

using GetChannel = HRESULT (STDMETHODCALLTYPE _kvBandscope::*)(LONG, _FreqSlot**);

std::vector<ComPtr<_FreqSlot>> channelsOf(_kvBandscope& control, LONG count, GetChannel get) {
    std::vector<ComPtr<_FreqSlot>> result(static_cast<std::size_t>(count));
    LONG i = 0;
    for (ComPtr<_FreqSlot>& channel : result) {
        check((control.*get)(i++, channel.GetAddressOf()), L"Reading a channel");
        if (channel == nullptr) {
            throw Failure{kExitOther, L"The control does not return a channel that it has counted."};
        }
    }
    return result;
}

}  // namespace

EarlierContents::EarlierContents(_kvBandscope& control) : control_(control) {
    readChannels();
    readView();
}

void EarlierContents::readChannels() {
    LONG transmit = 0;
    LONG receive = 0;
    check(control_.get_NumTX(&transmit), L"Reading NumTX");
    check(control_.get_NumRX(&receive), L"Reading NumRX");
    transmit_ = channelsOf(control_, transmit, &_kvBandscope::GetTXChnl);
    receive_ = channelsOf(control_, receive, &_kvBandscope::GetRXChnl);
}

void EarlierContents::readView() {
    check(control_.get_nGridX(&view_.divisions), L"Reading nGridX");
    check(control_.get_FreqEndBuffer(&view_.endBufferMhz), L"Reading FreqEndBuffer");
    check(control_.get_DisplayMinPwr(&view_.lowestDbm), L"Reading DisplayMinPwr");
    check(control_.get_DisplayMaxPwr(&view_.highestDbm), L"Reading DisplayMaxPwr");
    check(control_.get_DisplayMinFreq(&view_.lowestMhz), L"Reading DisplayMinFreq");
    check(control_.get_DisplayMaxFreq(&view_.highestMhz), L"Reading DisplayMaxFreq");
    check(control_.get_CursorVal(&view_.cursorMhz), L"Reading CursorVal");
}

void EarlierContents::putBack() noexcept {
    control_.ClearAllChnls();
    LONG index = 0;
    for (const ComPtr<_FreqSlot>& channel : transmit_) {
        control_.AddTXChnl(channel.Get(), &index);
    }
    for (const ComPtr<_FreqSlot>& channel : receive_) {
        control_.AddRXChnl(channel.Get(), &index);
    }
    control_.put_nGridX(view_.divisions);
    control_.put_DisplayMaxPwr(view_.highestDbm);
    control_.put_DisplayMinPwr(view_.lowestDbm);
    drawView();
    control_.put_FreqEndBuffer(view_.endBufferMhz);
}

void EarlierContents::drawView() noexcept {
    if (transmit_.empty() && receive_.empty()) {
        control_.DrawInitialDisplay();  // without channels it clears the picture
        return;
    }
    control_.put_FreqEndBuffer(0.0);  // the range contains the margin already
    const double span = view_.highestMhz - view_.lowestMhz;
    if (view_.lowestMhz > 0.0) {
        control_.DrawByRange(view_.lowestMhz, view_.highestMhz);
    } else {
        // DrawByRange would take an edge that is not above 0 from the channels, so the range is moved there.
        control_.DrawByRange(span, 2.0 * span);
        control_.put_DisplayCenterFreq(view_.lowestMhz + span / 2.0);
        control_.DrawNewCenterFreq();
    }
    control_.put_CursorVal(view_.cursorMhz);
}

}  // namespace kv::host
