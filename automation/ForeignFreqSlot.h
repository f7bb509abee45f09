// Channels that come from the host and go back to it.
#pragma once

#include <windows.h>

#include "channels/FreqSlot.h"
#include "com/Dispatch.h"
#include "kvBandscope.h"

namespace kv::automation {

/// The channel behind a host's object: one of our own class as it is; otherwise a way in through `_FreqSlot` when the
/// object offers it, by name through IDispatch when not. The object is held as long as the channel is.
/// Throws util::RuntimeError 91 for NULL and 13 for an object that offers none of them.
[[nodiscard]] channels::FreqSlotRef channelFromHost(IUnknown* object);

/// The host's view of a channel, counted for the caller: the host's own object again, not a copy. A null channel gives
/// NULL and S_OK, which a host reads as Nothing.
[[nodiscard]] HRESULT channelToHost(channels::FreqSlot* channel, _FreqSlot** out) noexcept;

/// For calls by name: takes the objects that channelFromHost() takes wherever a method takes a `_FreqSlot`.
extern const com::ObjectConverter kChannelConverter;

}  // namespace kv::automation
