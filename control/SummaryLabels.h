// What the panel says of the channels: how many there are and which frequencies they span.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "channels/ChannelKind.h"
#include "channels/ChannelStore.h"
#include "control/Children.h"

namespace kv::control {

class SummaryLabels {
  public:
    explicit SummaryLabels(Children& parts) noexcept : ui_(parts) {}
    SummaryLabels(const SummaryLabels&) = delete;
    SummaryLabels& operator=(const SummaryLabels&) = delete;

    /// The transmit channels have changed; `sLabel` is the label of the one that was added, if one was. The first
    /// label after `forgetTX` decides whether they are called channels or products.
    void ShowTXLabels(const channels::ChannelStore& store, std::wstring_view sLabel);
    void ShowRXLabels(const channels::ChannelStore& store);
    void forgetTX();
    void forgetRX();

    /// The word for the transmit channels; empty before the first one. No caption shows it.
    [[nodiscard]] std::wstring_view sTXNoun() const noexcept { return sTXNoun_; }

  private:
    /// Nothing to tell when the minimum is above the maximum (MHz).
    struct Summary {
        std::int32_t count = 0;
        double minimum = 0.0;
        double maximum = -1.0;
        [[nodiscard]] bool isAny() const noexcept { return minimum <= maximum; }
        [[nodiscard]] std::wstring countText(const wchar_t* noun) const;
        [[nodiscard]] std::wstring rangeText() const;
    };
    void note(channels::ChannelKind kind, const Summary& summary);

    Children& ui_;
    Summary tx_;
    Summary rx_;
    std::wstring_view sTXNoun_;
};

}  // namespace kv::control
