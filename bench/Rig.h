// A control with a picture of 1600 by 600 pixels, as its host has it.
#pragma once

#include <memory>
#include <string>

#include "bench/NaivePainter.h"

namespace kv::bench {

/// What is drawn over the spectrum.
struct Overlaid {
    bool powerAxis = false;
    bool legend = false;
    bool channelLabels = false;
};

class Rig {
  public:
    virtual ~Rig() = default;

    /// Records of the host's for all channels of a set, keyed by their numbers from 1; those before are let go.
    virtual void makeRecords(const ChannelSet& set) = 0;
    /// All records into the control, as TX channels.
    virtual void addAll() = 0;
    /// The same by the member's name; natively as `addAll`.
    virtual void addAllByName() = 0;
    /// As many calls by name of a member that does nothing, with the same arguments.
    virtual void callEmptyByName() = 0;
    virtual void clear() = 0;

    virtual void showRange(const ChannelSet& set) = 0;
    virtual void drawDisplay() = 0;
    virtual void panTo(double center) = 0;
    virtual void turnGridKnob(bool up) = 0;
    virtual void showOverlays(const Overlaid& wanted) = 0;
    virtual void showMouseInfo(bool on) = 0;
    virtual void moveMouseTo(double frequency) = 0;
    /// Puts a text into a window for many lines, as the report has one; nothing where there are no windows.
    virtual void showText(const std::wstring& text) = 0;
    [[nodiscard]] virtual View view() = 0;

    [[nodiscard]] virtual bool find(const std::wstring& key) = 0;
    virtual void remove(const std::wstring& key) = 0;
    /// The power, in dBm, of the record of a number from 1; nothing is drawn.
    virtual void setPower(std::size_t number, double dbm) = 0;
    /// Writes the picture to a file; natively nothing is written.
    virtual void exportPicture() = 0;
};

[[nodiscard]] std::unique_ptr<Rig> makeRig();

/// Bytes that the process has taken for itself; 0 where the system does not tell.
[[nodiscard]] std::size_t privateBytes();

}  // namespace kv::bench
