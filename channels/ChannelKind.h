#pragma once

#include <array>
#include <cstddef>

namespace kv::channels {

enum class ChannelKind { TX, RX };

/// One value for each kind.
template <class T>
class PerKind {
  public:
    [[nodiscard]] T& operator[](ChannelKind kind) noexcept { return values_[static_cast<std::size_t>(kind)]; }
    [[nodiscard]] const T& operator[](ChannelKind kind) const noexcept {
        return values_[static_cast<std::size_t>(kind)];
    }

  private:
    std::array<T, 2> values_{};
};

}  // namespace kv::channels
