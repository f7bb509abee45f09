// The text of the "Mouse Information" window: the channels and intermodulation components at one frequency.
#pragma once

#include <cstddef>
#include <string>

#include "channels/ChannelStore.h"
#include "channels/FreqSlot.h"

namespace kv::control {

class MouseReport {
  public:
    /// Forgets the text. `location`: the pointer's read-out, which heads the text once there is a channel to tell of.
    void begin(const std::wstring& location);

    /// Adds a channel that the pointer is over; all receivers first, then the transmitters.
    void add(channels::ChannelKind kind, channels::FreqSlot& channel);

    [[nodiscard]] const std::wstring& text() const noexcept { return text_; }
    /// The text ended with its marker for too much of it; nothing is added any more.
    [[nodiscard]] bool isFull() const noexcept;

    /// Takes the text that is to replace the present one, unless the two together are too long: the present one is
    /// closed with the marker then. A text that grows piece by piece so ends at about half the limit.
    void SetReportText(const std::wstring& text);

  private:
    void append(const std::wstring& piece);
    /// Is there no room for a text of this size in place of the present one? That one ends with the marker then.
    [[nodiscard]] bool closes(std::size_t newSize);
    void appendSection(channels::ChannelKind kind);
    void appendChannel(channels::FreqSlot& channel);
    void appendComponents(channels::FreqSlot& channel);

    std::wstring text_;
    std::wstring location_;
    bool hasSection_[2] = {false, false};
};

}  // namespace kv::control
