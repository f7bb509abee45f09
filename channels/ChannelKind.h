#pragma once

#include <array>
#include <cstddef>
#include <utility>

namespace kv::channels {

enum class ChannelKind { TX, RX };
inline constexpr std::array<ChannelKind, 2> kBothKinds = {ChannelKind::TX, ChannelKind::RX};

/// One value for each kind.
template <class T>
class PerKind {
  public:
    PerKind() = default;
    PerKind(T tx, T rx) : values_{std::move(tx), std::move(rx)} {}

    [[nodiscard]] T& operator[](ChannelKind kind) noexcept { return values_[static_cast<std::size_t>(kind)]; }
    [[nodiscard]] const T& operator[](ChannelKind kind) const noexcept {
        return values_[static_cast<std::size_t>(kind)];
    }

  private:
    std::array<T, 2> values_{};
};

}  // namespace kv::channels
