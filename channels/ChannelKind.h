#pragma once

namespace kv::channels {

enum class ChannelKind { TX, RX };

}  // namespace kv::channels
