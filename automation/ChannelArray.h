// Channels in the arrays of hosts.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <vector>

#include "channels/FreqSlot.h"
#include "com/OleTypes.h"

namespace kv::automation {

/// The channels of an array argument: a one-dimensional array of FreqSlot objects, or a two-dimensional array with one
/// row for each channel and the columns key, label, frequency (MHz), bandwidth (kHz), power (dBm), box color and line
/// color. `member` begins the text of errors. Throws util::RuntimeError 5 for an array of another shape and 13 for an
/// element of a wrong type.
[[nodiscard]] std::vector<channels::FreqSlotRef> channelsFromArray(const wchar_t* member, const VARIANT& given);

/// An array of variants with the hosts' objects for these channels.
[[nodiscard]] com::Variant arrayOfChannels(const std::vector<channels::FreqSlotRef>& list);

}  // namespace kv::automation
