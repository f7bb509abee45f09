// Finds the receivers whose band overlaps another band, without comparing each of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "host/plan/Plan.h"

namespace kv::host {

/// The edges of a channel in half hertz, because half of an odd bandwidth is not a whole number of hertz.
struct Band {
    std::int64_t lowest = 0;
    std::int64_t highest = 0;
};

[[nodiscard]] inline Band bandOf(std::int64_t frequencyHz, std::int64_t bandwidthHz) noexcept {
    return {2 * frequencyHz - bandwidthHz, 2 * frequencyHz + bandwidthHz};
}

/// The receivers in the order of their lower edges. They are the nodes of a balanced tree: the middle of a part is the
/// root of it, and each root has the highest upper edge of its part.
class ReceiverEdges {
  public:
    explicit ReceiverEdges(const std::vector<PlanChannel>& receivers);

    /// Calls `found` with the index of each receiver whose band overlaps `band`, in the order of their lower edges.
    /// Bands that only touch do not overlap.
    template <class Found>
    void overlapping(const Band& band, Found found) const {
        search(0, nodes_.size(), band, found);
    }

  private:
    struct Node {
        Band band;
        std::int64_t highestOfPart = 0;
        std::uint32_t receiver = 0;
    };

    std::int64_t findHighest(std::size_t from, std::size_t to);

    template <class Found>
    void search(std::size_t from, std::size_t to, const Band& band, Found& found) const {
        while (from < to) {
            const std::size_t middle = from + (to - from) / 2;
            const Node& node = nodes_[middle];
            if (node.highestOfPart <= band.lowest) {
                return;
            }
            search(from, middle, band, found);
            if (node.band.lowest >= band.highest) {
                return;
            }
            if (node.band.highest > band.lowest) {
                found(node.receiver);
            }
            from = middle + 1;
        }
    }

    std::vector<Node> nodes_;
};

}  // namespace kv::host
