// Hears the messages of a window and of all windows inside it, whatever their classes.
#pragma once

#include <windows.h>

#include <memory>

namespace kv::automation {

class MessageListener {
  public:
    /// Called for every message; passes it on by MessageWatch::pass. Must not throw.
    virtual LRESULT watched(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept = 0;

  protected:
    ~MessageListener() = default;
};

/// Windows made later are not heard. The windows may go before this object and this object before them.
class MessageWatch {
  public:
    explicit MessageWatch(MessageListener& listener);
    ~MessageWatch();
    MessageWatch(const MessageWatch&) = delete;
    MessageWatch& operator=(const MessageWatch&) = delete;

    void add(HWND root);
    /// The window's own answer to a message.
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
