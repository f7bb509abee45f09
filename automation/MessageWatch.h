// Watches the messages of a window and of all windows inside it, of any class.
#pragma once

#include <windows.h>

#include <memory>

namespace kv::automation {

class MessageListener {
  public:
    /// Called for every message. Passes it on with MessageWatch::pass. Must not throw.
    virtual LRESULT watched(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept = 0;

  protected:
    ~MessageListener() = default;
};

/// Windows that are created later are not watched. The windows and this object may be destroyed in any order.
class MessageWatch {
  public:
    explicit MessageWatch(MessageListener& listener);
    ~MessageWatch();
    MessageWatch(const MessageWatch&) = delete;
    MessageWatch& operator=(const MessageWatch&) = delete;

    void add(HWND root);
    /// Calls the window's own procedure.
    static LRESULT pass(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

  private:
    struct Link {
        MessageListener* listener;
    };
    using Shared = std::shared_ptr<Link>;
    struct Watched;
    class Table;
    [[nodiscard]] static Table& table();
    static BOOL CALLBACK addOne(HWND window, LPARAM shared);
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    Shared link_;
};

}  // namespace kv::automation
