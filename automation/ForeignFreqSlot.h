// Conversion between channels and the objects of hosts.
#pragma once

#include <windows.h>

#include "channels/FreqSlot.h"
#include "com/Dispatch.h"
#include "kvBandscope.h"

namespace kv::automation {

/// The channel for a host's object. An object of this module's class is used without a wrapper. All others are wrapped:
/// called through `_FreqSlot` if they implement it, otherwise by name through IDispatch. The channel keeps the object
/// alive. Throws util::RuntimeError 91 for NULL and 13 for an object that offers none of these.
[[nodiscard]] channels::FreqSlotRef channelFromHost(IUnknown* object);

/// The host's object for a channel, counted for the caller: the same object that the host passed in, not a copy. For a
/// null channel, NULL and S_OK, which hosts read as Nothing.
[[nodiscard]] HRESULT channelToHost(channels::FreqSlot* channel, _FreqSlot** out) noexcept;

/// For calls by name: where a method takes a `_FreqSlot`, accepts all objects that channelFromHost() accepts.
extern const com::ObjectConverter kChannelConverter;

}  // namespace kv::automation
