// Exact fractions of long distances.
#pragma once

#include <cstdint>

namespace kv::raster {

struct Division {
    std::int64_t quotient;
    std::int64_t rest;
};

/// a * b + c, divided by d and rounded down. The distances between any two pixels are below 2^32 and a product of two
/// does not fit into 64 bits; this is exact for 0 <= a, b, c < 2^35 and 0 < d < 2^35 as long as the quotient fits.
[[nodiscard]] constexpr Division wideProduct(std::int64_t a, std::int64_t b, std::int64_t c, std::int64_t d) noexcept {
    constexpr std::int64_t kHalf = std::int64_t{1} << 18;
    const std::int64_t high = (a / kHalf) * b;
    const std::int64_t low = (high % d) * kHalf + (a % kHalf) * b + c;
    return {(high / d) * kHalf + low / d, low % d};
}

}  // namespace kv::raster
