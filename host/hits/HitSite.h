// The transmitters and receivers of a plan, and what a hit says about them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/hits/Hit.h"
#include "host/plan/Plan.h"
#include "host/plan/Products.h"

namespace kv::host {

/// A copy of a plan's channels, so that a list of hits can outlive the plan.
class HitSite {
  public:
    explicit HitSite(const Plan& plan);

    [[nodiscard]] const std::vector<PlanChannel>& transmitters() const noexcept { return transmitters_; }
    [[nodiscard]] const std::vector<PlanChannel>& receivers() const noexcept { return receivers_; }
    [[nodiscard]] const PlanChannel& receiverOf(const Hit& hit) const noexcept { return receivers_[hit.receiver]; }
    /// The sum that gives the product, with the keys of the plan: "2 x TX15 - TX17", "TX1 + TX2 - TX3".
    [[nodiscard]] std::wstring formulaOf(const Hit& hit) const;
    /// The center of the product.
    [[nodiscard]] std::int64_t frequencyOf(const Hit& hit) const noexcept;
    [[nodiscard]] std::int64_t bandwidthOf(const Hit& hit) const noexcept;
    /// From the center of the receiver to that of the product, in hertz; above 0 if the product is higher.
    [[nodiscard]] std::int64_t offsetOf(const Hit& hit) const noexcept;
    /// How much of the product's band is in the receiver's band, in half hertz.
    [[nodiscard]] std::int64_t overlapOf(const Hit& hit) const noexcept;

  private:
    std::vector<PlanChannel> transmitters_;
    std::vector<PlanChannel> receivers_;
};

[[nodiscard]] Hit hitOf(const Product& product, std::uint32_t receiver) noexcept;
[[nodiscard]] bool sameProduct(const Hit& a, const Hit& b) noexcept;
[[nodiscard]] int orderOf(const Hit& hit) noexcept;

/// The part of the spectrum that shows a hit, in MHz.
struct Spot {
    double lowest = 0.0;
    double highest = 0.0;
    double cursor = 0.0;  ///< the product
};

/// The receiver in the middle with its neighborhood, which contains the whole band of the product. The range is four
/// times as wide as the receiver's band, or wider if the product's band needs more room, and it does not begin below 0.
[[nodiscard]] Spot spotOf(const HitSite& site, const Hit& hit);

}  // namespace kv::host
