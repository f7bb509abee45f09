// A control that has the keyboard, for tests of keys and focus.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "tests/automation/Container.h"

namespace kv::test {

/// Keys that are down in this thread's keyboard state.
class KeysDown {
  public:
    explicit KeysDown(std::vector<int> keys) : keys_(std::move(keys)) { set(0x80); }
    ~KeysDown() { set(0); }
    KeysDown(const KeysDown&) = delete;
    KeysDown& operator=(const KeysDown&) = delete;

  private:
    void set(BYTE value) const {
        std::array<BYTE, 256> state{};
        EXPECT_TRUE(GetKeyboardState(state.data()));
        for (const int key : keys_)
            state[static_cast<std::size_t>(key)] = value;
        EXPECT_TRUE(SetKeyboardState(state.data()));
    }
    std::vector<int> keys_;
};

/// A control with one channel that is UI-active in a container, and the keys of the container's message loop.
class ActiveControl : public testing::Test {
  protected:
    FullContainer container;
    CallLog& log = container.log;
    ComPtr<IOleInPlaceActiveObject> active;

    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(container.activate());
        container.drawChannel();
        pump();
        ASSERT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
        active = container.as<IOleInPlaceActiveObject>();
        log.calls.clear();
    }
    /// Translates a key as a container's message loop does.
    HRESULT key(WPARAM code, UINT message = WM_KEYDOWN) const {
        MSG pressed{GetFocus(), message, code, 1, 0, {}};
        return active->TranslateAccelerator(&pressed);
    }
    std::vector<HWND> stops() const { return container.tabStops(); }
    HWND stop(const wchar_t* className) const { return container.part(className); }
};

}  // namespace kv::test
