#include "control/SampleChannels.h"

#include <string>
#include <utility>

namespace kv::control {

namespace {

struct Sample {
    channels::ChannelKind kind;
    double frequency;  ///< MHz
    double bandwidthKHz;
    double power;  ///< dBm
    std::uint32_t color;
    std::uint32_t lineColor;
};

constexpr std::uint32_t rgb(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return red | green << 8U | blue << 16U;
}

constexpr std::uint32_t kBlue = rgb(31, 119, 180);
constexpr std::uint32_t kTeal = rgb(0, 150, 136);
constexpr std::uint32_t kOrange = rgb(230, 126, 34);
constexpr std::uint32_t kRed = rgb(192, 57, 43);
constexpr std::uint32_t kGreen = rgb(56, 142, 60);
constexpr std::uint32_t kViolet = rgb(126, 87, 194);
constexpr std::uint32_t kDark = rgb(40, 40, 48);

// Half a megahertz of bandwidth shows well at the scale that the set is drawn in.
constexpr Sample kSamples[] = {
    {channels::ChannelKind::TX, 144.0, 400.0, 40.0, kBlue, kDark},
    {channels::ChannelKind::TX, 147.0, 400.0, 46.99, kBlue, kDark},
    {channels::ChannelKind::TX, 150.0, 400.0, 43.0, kBlue, kDark},
    {channels::ChannelKind::TX, 155.5, 1000.0, 30.0, kTeal, kDark},
    {channels::ChannelKind::TX, 156.4, 1000.0, 36.99, kTeal, kDark},
    {channels::ChannelKind::TX, 162.4, 250.0, 50.0, kOrange, kRed},
    {channels::ChannelKind::TX, 162.55, 250.0, 47.0, kOrange, kRed},
    {channels::ChannelKind::TX, 141.0, 1200.0, 12.0, kRed, kRed},
    {channels::ChannelKind::TX, 153.0, 1200.0, 18.0, kRed, kRed},
    {channels::ChannelKind::RX, 145.5, 400.0, 22.0, kGreen, kDark},
    {channels::ChannelKind::RX, 148.5, 400.0, 22.0, kGreen, kDark},
    {channels::ChannelKind::RX, 151.5, 400.0, 22.0, kGreen, kDark},
    {channels::ChannelKind::RX, 159.0, 2500.0, 15.0, kViolet, kDark},
    {channels::ChannelKind::RX, 165.0, 1500.0, 27.0, kViolet, kDark},
};

}  // namespace

std::vector<SampleChannel> makeSampleChannels(const channels::FreqSlotFactory& newFreqSlot) {
    std::vector<SampleChannel> made;
    int number = 0;
    int tx = 0;
    int rx = 0;
    for (const Sample& sample : kSamples) {
        const auto channel = newFreqSlot();
        channels::FreqSlotFields& fields = channel->fields();
        ++number;
        const bool isTX = sample.kind == channels::ChannelKind::TX;
        int& ofKind = isTX ? tx : rx;
        ++ofKind;
        fields.dFreq = sample.frequency;
        fields.dBW = sample.bandwidthKHz;
        fields.dPwrDBM = sample.power;
        fields.lColor = sample.color;
        fields.lColorLine = sample.lineColor;
        fields.sLabel = number == 1 ? L"sample freq" : L"sample freq " + std::to_wstring(number);
        fields.sKey = (isTX ? L"TXSample" : L"RXSample") + std::to_wstring(ofKind);
        made.push_back({sample.kind, channels::FreqSlotRef(channel.get())});
    }
    return made;
}

std::vector<SampleChannel> makeTestChannels(const channels::FreqSlotFactory& newFreqSlot) {
    using channels::ChannelKind;
    std::vector<SampleChannel> made;
    for (const auto& [kind, frequency] : {std::pair{ChannelKind::TX, 100.0},
                                          {ChannelKind::TX, 110.0},
                                          {ChannelKind::TX, 150.0},
                                          {ChannelKind::RX, 455.0},
                                          {ChannelKind::RX, 460.0}}) {
        const auto channel = newFreqSlot();
        channel->setDFreq(frequency);
        made.push_back({kind, channels::FreqSlotRef(channel.get())});
    }
    return made;
}

}  // namespace kv::control
