#include "channels/RecordWatch.h"

#include <limits>
#include <memory>
#include <set>
#include <utility>

namespace kv::channels {

/// Passes on what it hears. Sorted, because a record may be many times in one list, and closing the holes of that list
/// moves each of these watches.
class RecordWatches::Several final : public RecordWatcher {
  public:
    void recordChanges(std::int32_t, Changes what) noexcept override {
        for (const Watch& watch : watches)
            watch.watcher->recordChanges(watch.place, what);
    }
    std::set<Watch> watches;
};

RecordWatches::Several* RecordWatches::several() const noexcept {
    return only_.watcher && only_.place == kSeveral ? static_cast<Several*>(only_.watcher) : nullptr;
}

RecordWatches::~RecordWatches() {
    delete several();
}

void RecordWatches::add(RecordWatcher& watcher, std::int32_t place) {
    const Watch added{&watcher, place};
    if (!only_.watcher) {
        only_ = added;
    } else if (Several* const known = several()) {
        known->watches.insert(added);
    } else {
        auto made = std::make_unique<Several>();
        made->watches = {only_, added};
        only_ = {made.release(), kSeveral};
    }
}

void RecordWatches::remove(RecordWatcher& watcher, std::int32_t place) noexcept {
    const Watch removed{&watcher, place};
    if (only_ == removed) {
        only_ = {};
        return;
    }
    Several* const known = several();
    if (!known)
        return;
    if (known->watches.erase(removed) != 0)
        simplify(known);
}

void RecordWatches::removeAll(RecordWatcher& watcher) noexcept {
    if (Several* const known = several()) {
        auto& watches = known->watches;
        watches.erase(watches.lower_bound({&watcher, std::numeric_limits<std::int32_t>::min()}),
                      watches.upper_bound({&watcher, std::numeric_limits<std::int32_t>::max()}));
        simplify(known);
    } else if (only_.watcher == &watcher) {
        only_ = {};
    }
}

void RecordWatches::simplify(Several* known) noexcept {
    if (known->watches.size() > 1)
        return;
    const std::unique_ptr<Several> ended(known);
    only_ = ended->watches.empty() ? Watch() : *ended->watches.begin();
}

void RecordWatches::move(RecordWatcher& watcher, std::int32_t from, std::int32_t to) noexcept {
    const Watch moved{&watcher, from};
    if (only_ == moved) {
        only_.place = to;
    } else if (Several* const known = several()) {
        auto node = known->watches.extract(moved);
        if (!node)
            return;
        node.value().place = to;
        known->watches.insert(std::move(node));
    }
}

}  // namespace kv::channels
