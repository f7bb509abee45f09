// How the stores that hold a record hear of its changes.
#pragma once

#include <cstdint>
#include <functional>

namespace kv::channels {

/// What reads the members that have changed; a set of bits.
using Changes = std::uint8_t;

namespace change {
inline constexpr Changes kNone = 0;
inline constexpr Changes kDrawing = 1;
inline constexpr Changes kMatching = 2;  ///< the search for an equal channel
inline constexpr Changes kKey = 4;
inline constexpr Changes kGroup = 8;  ///< which of its groups a channel belongs to
inline constexpr Changes kAll = kDrawing | kMatching | kKey | kGroup;
}  // namespace change

class RecordWatcher {
  public:
    virtual ~RecordWatcher() = default;
    /// The record at `place` changes: its new values can be read when the watcher needs them next, but perhaps not yet.
    virtual void recordChanges(std::int32_t place, Changes what) noexcept = 0;
};

/// The watches of one record. Nearly every record is in one list, once, so that one watch takes no memory of its own.
class RecordWatches {
  public:
    RecordWatches() = default;
    ~RecordWatches();
    RecordWatches(const RecordWatches&) = delete;
    RecordWatches& operator=(const RecordWatches&) = delete;

    /// Throws std::bad_alloc and changes nothing.
    void add(RecordWatcher& watcher, std::int32_t place);
    void remove(RecordWatcher& watcher, std::int32_t place) noexcept;
    void removeAll(RecordWatcher& watcher) noexcept;
    void move(RecordWatcher& watcher, std::int32_t from, std::int32_t to) noexcept;
    void tell(Changes what) const noexcept {
        if (only_.watcher)
            only_.watcher->recordChanges(only_.place, what);
    }

  private:
    struct Watch {
        RecordWatcher* watcher = nullptr;
        std::int32_t place = 0;
        friend bool operator==(const Watch&, const Watch&) = default;
        friend bool operator<(const Watch& a, const Watch& b) noexcept {
            return a.watcher == b.watcher ? a.place < b.place : std::less<>()(a.watcher, b.watcher);
        }
    };
    class Several;
    static constexpr std::int32_t kSeveral = -1;

    [[nodiscard]] Several* several() const noexcept;
    void simplify(Several* known) noexcept;

    Watch only_;  ///< with the place `kSeveral`, the watcher is a `Several` of this object
};

}  // namespace kv::channels
