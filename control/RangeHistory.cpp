#include "control/RangeHistory.h"

namespace kv::control {

namespace {

void append(std::vector<RangeHistory::Range>& ranges, const RangeHistory::Range& range) {
    ranges.push_back(range);
    if (ranges.size() > RangeHistory::kDeepest)
        ranges.erase(ranges.begin());
}

/// Before there is a range, the first number is above the second.
bool isRange(const RangeHistory::Range& range) {
    return range.first < range.second;
}

}  // namespace

void RangeHistory::begin(const Range& present) {
    if (!before_)
        before_ = present;
}

void RangeHistory::finish(const Range& present) {
    if (!before_ || *before_ == present)
        return;
    if (isRange(*before_)) {
        append(back_, *before_);
        forward_.clear();
    }
    // What goes on after a drawing inside this one is a step of its own.
    before_ = present;
}

std::optional<RangeHistory::Range> RangeHistory::go(std::vector<Range>& from, std::vector<Range>& to,
                                                    const Range& present) {
    if (from.empty())
        return std::nullopt;
    if (isRange(present))
        append(to, present);
    const Range next = from.back();
    from.pop_back();
    return next;
}

}  // namespace kv::control
