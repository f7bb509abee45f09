// Finds the products that overlap receivers, in small steps.
#pragma once

#include <cstddef>
#include <vector>

#include "host/hits/Hit.h"
#include "host/hits/HitSite.h"
#include "host/hits/ReceiverEdges.h"
#include "host/plan/Products.h"

namespace kv::host {

/// How many hits there are, and what they are about.
struct HitCounts {
    std::size_t hits = 0;
    std::size_t products = 0;   ///< different products; one product can hit several receivers
    std::size_t receivers = 0;  ///< different receivers
};

/// A product hits a receiver if their bands overlap. Bands that only touch at an edge do not overlap, because the part
/// that they have in common has no width. Both bands are computed from center and bandwidth, in exact integers. The
/// hits are in the order in which the products are generated, and those of a product by the lower edges of the
/// receivers.
class HitFinder {
  public:
    enum class State {
        kFinding,
        kDone,
        kFull,    ///< there are more hits than the list can have; it has the first ones
        kStopped  ///< by stop()
    };

    /// Finds nothing yet. Throws std::length_error for more than 65,535 transmitters if there are products to compute.
    HitFinder(const Plan& plan, const ProductOptions& options, std::size_t mostHits = kMostHits);
    HitFinder(const HitFinder&) = delete;
    HitFinder& operator=(const HitFinder&) = delete;

    /// Works for a few milliseconds.
    State step();
    /// Ends the search. The hits that were found stay.
    void stop() noexcept;

    [[nodiscard]] State state() const noexcept { return state_; }
    [[nodiscard]] double fractionDone() const noexcept;
    [[nodiscard]] const HitSite& site() const noexcept { return site_; }
    [[nodiscard]] const std::vector<Hit>& hits() const noexcept { return hits_; }
    [[nodiscard]] const ProductOptions& options() const noexcept { return options_; }
    /// The products compared so far, with and without hits.
    [[nodiscard]] std::size_t productCount() const noexcept { return products_; }
    [[nodiscard]] std::size_t mostHits() const noexcept { return mostHits_; }

  private:
    [[nodiscard]] bool add(const Product& product);

    HitSite site_;
    ProductOptions options_;
    std::size_t mostHits_;
    ReceiverEdges edges_;
    std::uint64_t combinations_;
    ProductGenerator generator_;
    std::vector<Hit> hits_;
    std::size_t products_ = 0;
    State state_ = State::kFinding;
};

}  // namespace kv::host
