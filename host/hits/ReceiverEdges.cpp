#include "host/hits/ReceiverEdges.h"

#include <algorithm>
#include <limits>

namespace kv::host {

ReceiverEdges::ReceiverEdges(const std::vector<PlanChannel>& receivers) {
    nodes_.reserve(receivers.size());
    for (const PlanChannel& channel : receivers) {
        nodes_.push_back(
            {bandOf(channel.frequencyHz, channel.bandwidthHz), 0, static_cast<std::uint32_t>(nodes_.size())});
    }
    std::stable_sort(nodes_.begin(), nodes_.end(),
                     [](const Node& a, const Node& b) { return a.band.lowest < b.band.lowest; });
    findHighest(0, nodes_.size());
}

// The depth is that of a balanced tree, 17 for 100,000 receivers.
std::int64_t ReceiverEdges::findHighest(std::size_t from, std::size_t to) {
    if (from == to) {
        return std::numeric_limits<std::int64_t>::min();
    }
    const std::size_t middle = from + (to - from) / 2;
    Node& node = nodes_[middle];
    node.highestOfPart = std::max({node.band.highest, findHighest(from, middle), findHighest(middle + 1, to)});
    return node.highestOfPart;
}

}  // namespace kv::host
