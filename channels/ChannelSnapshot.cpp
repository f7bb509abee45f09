#include "channels/ChannelSnapshot.h"

#include <optional>

#include "channels/ChannelStore.h"

namespace kv::channels {

bool ChannelSnapshot::update(const ChannelStore& store, ChannelKind kind) noexcept {
    if (removing_)
        return false;
    try {
        if (copy_.hasManyHoles())
            drop();
        const std::optional<std::size_t> from = copy_.update(store.list(kind));
        if (!from)
            return false;
        if (*from < copy_.size()) {
            ++version_;
            blocks_.resize(copy_.size());
            grid_.resize(copy_.size());
            for (std::size_t block = *from / kBlock; block < blocks().size(); ++block)
                derive(block);
        }
        return true;
    } catch (...) {
        drop();
        return false;
    }
}

void ChannelSnapshot::derive(std::size_t block) noexcept {
    blocks_.derive(copy_.records(), block);
    grid_.derive(copy_.records(), blocks()[block], block);
    rows_.forget(block);
}

void ChannelSnapshot::removed(std::int32_t index) noexcept {
    if (copy_.hasForeign()) {
        drop();
        return;
    }
    try {
        if (const std::optional<std::size_t> position = copy_.remove(index)) {
            rows_.hide(*position);
            ++version_;
        }
    } catch (...) {
        drop();
    }
}

void ChannelSnapshot::drop() noexcept {
    copy_ = {};
    blocks_ = {};
    grid_ = {};
    rows_ = {};
    edges_ = {};
    ++version_;
}

void ChannelSnapshot::Removal::done(std::int32_t index) noexcept {
    // Removing a record may run the host's code, which may remove another one. The order is then unknown.
    done_ = snapshot_.version_ == before_;
    if (done_)
        snapshot_.removed(index);
}

ChannelSnapshot::Removal::~Removal() {
    if (!done_)
        snapshot_.drop();
}

}  // namespace kv::channels
