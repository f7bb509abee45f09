#include "automation/MessageWatch.h"

#include <mutex>
#include <optional>
#include <unordered_map>

namespace kv::automation {

/// The listener of a window, and the window's own procedure.
struct MessageWatch::Watched {
    WNDPROC before = nullptr;
    std::shared_ptr<Link> link;
};

/// The watched windows of the process. The system could also store this for each window, as properties
/// (SetWindowSubclass). Some systems look those up in another process, twice for each message.
class MessageWatch::Table {
  public:
    void add(HWND window, Watched watched) {
        const std::lock_guard lock(mutex_);
        windows_.insert_or_assign(window, std::move(watched));
    }
    [[nodiscard]] std::optional<Watched> find(HWND window) {
        const std::lock_guard lock(mutex_);
        const auto found = windows_.find(window);
        return found == windows_.end() ? std::nullopt : std::optional(found->second);
    }
    void remove(HWND window) noexcept {
        const std::lock_guard lock(mutex_);
        windows_.erase(window);
    }

  private:
    std::mutex mutex_;  // controls may live in several threads
    std::unordered_map<HWND, Watched> windows_;
};

MessageWatch::Table& MessageWatch::table() {
    static Table all;
    return all;
}

MessageWatch::MessageWatch(MessageListener& listener) : link_(std::make_shared<Link>(Link{&listener})) {}

MessageWatch::~MessageWatch() {
    link_->listener = nullptr;
}

void MessageWatch::add(HWND root) {
    addOne(root, reinterpret_cast<LPARAM>(&link_));
    EnumChildWindows(root, &MessageWatch::addOne, reinterpret_cast<LPARAM>(&link_));
}

BOOL CALLBACK MessageWatch::addOne(HWND window, LPARAM shared) {
    try {
        const auto before = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
        // The entry must exist before the first message arrives.
        table().add(window, {before, *reinterpret_cast<const Shared*>(shared)});
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&MessageWatch::procedure));
    } catch (...) {
        // Without memory, this window is not watched.
        return TRUE;
    }
    return TRUE;
}

LRESULT MessageWatch::pass(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const std::optional<Watched> watched = table().find(window);
    return watched ? CallWindowProcW(watched->before, window, message, wParam, lParam)
                   : DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK MessageWatch::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const std::optional<Watched> watched = table().find(window);
    MessageListener* const listener = watched ? watched->link->listener : nullptr;
    const LRESULT result =
        listener ? listener->watched(window, message, wParam, lParam) : pass(window, message, wParam, lParam);
    // The last message of a window.
    if (message == WM_NCDESTROY)
        table().remove(window);
    return result;
}

}  // namespace kv::automation
