#include "channels/RecordWatch.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace kv::channels {

/// Passes on what it hears.
class RecordWatches::Several final : public RecordWatcher {
  public:
    void recordChanges(std::int32_t, Changes what) noexcept override {
        for (const Watch& watch : watches)
            watch.watcher->recordChanges(watch.place, what);
    }
    std::vector<Watch> watches;
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
        known->watches.push_back(added);
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
    const auto found = std::ranges::find(known->watches, removed);
    if (found == known->watches.end())
        return;
    *found = known->watches.back();
    known->watches.pop_back();
    simplify(known);
}

void RecordWatches::removeAll(RecordWatcher& watcher) noexcept {
    if (Several* const known = several()) {
        std::erase_if(known->watches, [&watcher](const Watch& watch) { return watch.watcher == &watcher; });
        simplify(known);
    } else if (only_.watcher == &watcher) {
        only_ = {};
    }
}

void RecordWatches::simplify(Several* known) noexcept {
    if (known->watches.size() > 1)
        return;
    const std::unique_ptr<Several> ended(known);
    only_ = ended->watches.empty() ? Watch() : ended->watches.front();
}

void RecordWatches::move(RecordWatcher& watcher, std::int32_t from, std::int32_t to) noexcept {
    const Watch moved{&watcher, from};
    if (only_ == moved) {
        only_.place = to;
    } else if (Several* const known = several()) {
        const auto found = std::ranges::find(known->watches, moved);
        if (found != known->watches.end())
            found->place = to;
    }
}

}  // namespace kv::channels
