// An intermodulation product whose band overlaps that of a receiver.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kv::host {

/// One product and one receiver. There may be millions, so a hit has only what the rest can be computed from, apart
/// from the power, which is kept because it takes a logarithm. Indexes are those of the transmitters and receivers of a
/// HitSite.
struct Hit {
    std::uint32_t receiver = 0;
    std::int32_t hundredthsDbm = 0;  ///< power of the product as it is shown: filters and sorting use no other digits
    std::array<std::uint16_t, 5> transmitters{};
    std::array<std::int8_t, 5> coefficients{};  ///< one for each term of the product, and zeros behind them
};

static_assert(sizeof(Hit) == 24);

/// A longer list is of no use to a reader, and it would take memory that the control needs for the products.
constexpr std::size_t kMostHits = 2'000'000;

}  // namespace kv::host
