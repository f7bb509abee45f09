// Which messages of the host's queue a drawing called by the host handles, and which it leaves in the queue.
#include <gmock/gmock.h>

#include "tests/automation/Container.h"

namespace kv::test {
namespace {

using testing::ElementsAre;

constexpr UINT kOwnMessage = WM_APP + 7;
const HWND kWithoutWindow = reinterpret_cast<HWND>(static_cast<LONG_PTR>(-1));

class PendingEvents : public testing::Test {
  protected:
    Container container;

    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(container.activate());
        container.addTx({.freq = 400.0, .power = 30.0, .key = L"TX1"});
        draw();
        pump();
    }
    void TearDown() override { pump(); }
    void draw() const {
        VARIANT_BOOL drawn = VARIANT_FALSE;
        EXPECT_EQ(container.control->DrawDisplay(&drawn), S_OK);
        EXPECT_EQ(drawn, VARIANT_TRUE);
    }
    /// Removes and returns the queued messages of a range, in their order.
    static std::vector<WPARAM> queued(HWND window, UINT first, UINT last) {
        std::vector<WPARAM> found;
        MSG message{};
        while (PeekMessageW(&message, window, first, last, PM_REMOVE))
            found.push_back(message.wParam);
        return found;
    }
};

TEST_F(PendingEvents, ThreadMessagesStayInTheQueueInTheirOrder) {
    const DWORD thread = GetCurrentThreadId();
    for (const WPARAM number : {1U, 2U, 3U})
        ASSERT_TRUE(PostThreadMessageW(thread, kOwnMessage, number, 0));
    draw();
    EXPECT_THAT(queued(kWithoutWindow, kOwnMessage, kOwnMessage), ElementsAre(1U, 2U, 3U));
}

TEST_F(PendingEvents, ADrawingInsideAHandlerKeepsThreadMessages) {
    const DWORD thread = GetCurrentThreadId();
    int inner = 0;
    container.host.onMessage = [&] {
        if (++inner > 1)
            return;
        ASSERT_TRUE(PostThreadMessageW(thread, kOwnMessage, 2, 0));
        draw();
    };
    ASSERT_TRUE(PostThreadMessageW(thread, kOwnMessage, 1, 0));
    ASSERT_TRUE(PostMessageW(container.host.get(), WM_APP, 0, 0));
    draw();
    EXPECT_EQ(inner, 1);
    EXPECT_THAT(queued(kWithoutWindow, kOwnMessage, kOwnMessage), testing::UnorderedElementsAre(1U, 2U));
}

TEST_F(PendingEvents, KeyMessagesStayInTheQueueForTheHost) {
    const HWND window = container.host.get();
    int heard = 0;
    container.host.onMessage = [&] { ++heard; };
    for (const auto& [message, key] : {std::pair{WM_KEYDOWN, 'A'},
                                       {WM_CHAR, 'a'},
                                       {WM_KEYUP, 'A'},
                                       {WM_SYSKEYDOWN, VK_F10},
                                       {WM_APP, 0},
                                       {WM_KEYDOWN, VK_TAB},
                                       {WM_APP, 0}})
        ASSERT_TRUE(PostMessageW(window, static_cast<UINT>(message), static_cast<WPARAM>(key), 1));
    draw();
    EXPECT_EQ(heard, 2) << "the other messages are handled";
    EXPECT_THAT(queued(window, WM_KEYFIRST, WM_KEYLAST), ElementsAre('A', 'a', 'A', VK_F10, VK_TAB));
}

TEST_F(PendingEvents, TheOrderOfOtherMessagesStays) {
    const HWND window = container.host.get();
    std::vector<int> order;
    container.host.onMessage = [&] { order.push_back(1); };
    // WM_CLOSE is below the range of the keyboard, WM_APP above it.
    ASSERT_TRUE(PostMessageW(window, WM_KEYDOWN, 'A', 1));
    ASSERT_TRUE(PostMessageW(window, WM_APP, 0, 0));
    ASSERT_TRUE(PostMessageW(window, WM_CLOSE, 0, 0));
    draw();
    EXPECT_THAT(order, ElementsAre(1)) << "heard before the window was closed";
    EXPECT_FALSE(IsWindow(window));
}

TEST_F(PendingEvents, TheQuitMessageStaysInTheQueueForTheHost) {
    PostQuitMessage(17);
    draw();
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 17U);
}

TEST_F(PendingEvents, PaintsAndTimersRunWhileAKeyWaits) {
    const HWND window = container.host.get();
    ASSERT_TRUE(PostMessageW(window, WM_KEYDOWN, 'A', 1));
    const HWND spectrum = container.pictureBox(L"picSpectrum");
    InvalidateRect(spectrum, nullptr, FALSE);
    draw();
    EXPECT_FALSE(GetUpdateRect(spectrum, nullptr, FALSE)) << "painted by the drawing";
    EXPECT_THAT(queued(window, WM_KEYFIRST, WM_KEYLAST), ElementsAre('A'));
}

}  // namespace
}  // namespace kv::test
