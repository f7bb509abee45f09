// The channels that the benchmarks work on: plain numbers, from which each rig makes records of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kv::bench {

struct Channel {
    double dFreq = 0.0;    ///< MHz
    double dBW = 0.0;      ///< KHz
    double dFreqLo = 0.0;  ///< MHz
    double dFreqHi = 0.0;  ///< MHz
    double dPwrDBM = 0.0;  ///< dBm
    std::uint32_t lColor = 0;
    std::uint32_t lColorLine = 0;
    std::wstring sLabel;

    [[nodiscard]] static std::wstring key(std::size_t number);
};

enum class SetKind {
    Narrow,  ///< 12.5 kHz channels all over 100 MHz
    Wide,    ///< 1 MHz channels, so boxes of 2 MHz, all over 100 MHz
    Site     ///< the third-order products of the crowded example site; beyond these its fifth-order ones
};

struct ChannelSet {
    std::vector<Channel> channels;
    // What is shown of it: MHz and dBm.
    double lowest = 0.0;
    double highest = 0.0;
    double floor = 0.0;
    double top = 0.0;
    double densest = 0.0;  ///< the frequency with the most channels around it
};

[[nodiscard]] const char* nameOf(SetKind kind);

/// Made once for each kind and size and kept until another one is asked for.
[[nodiscard]] const ChannelSet& channelSet(SetKind kind, std::size_t count);

}  // namespace kv::bench
