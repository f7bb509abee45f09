#pragma once

namespace kv::control {

enum class ChannelKind { TX, RX };

}  // namespace kv::control
