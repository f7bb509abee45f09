// Which messages are handled while a container calls the control. A program must not run its own handlers while it
// waits for the control.
#include <gmock/gmock.h>

#include <functional>
#include <optional>

#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Replica.h"
#include "tests/automation/WindowHook.h"

namespace kv::test {
namespace {

constexpr UINT kForeign = WM_APP;  ///< handled by the host's window

/// Posts messages to the host's window, to the control's windows and to the thread, and counts those handled.
class ContainerEvents : public testing::Test {
  protected:
    Replica container;
    int foreign = 0;
    int own = 0;  ///< messages that the control's spectrum handled
    std::function<void()> onOwn;

    void SetUp() override {
        container.site->place = {0, 0, 800, 500};
        container.host.onMessage = [this] { ++foreign; };
    }
    void TearDown() override {
        pump();
        hook.reset();
        Replica::release(container);
    }
    void activate() {
        Replica::initNew(container);
        Replica::setSite(container);
        ASSERT_EQ(container.verb(OLEIVERB_INPLACEACTIVATE), S_OK);
        container.drawChannel();
        pump();
        hookOwnWindow();
    }
    void hookOwnWindow() {
        watched = container.pictureBox(L"picSpectrum");
        hook.emplace(watched, [this] {
            ++own;
            if (onOwn)
                onOwn();
        });
    }
    void postAll() {
        PostMessageW(container.host.get(), kForeign, 0, 0);
        PostThreadMessageW(GetCurrentThreadId(), WM_APP + 1, 0, 0);
        if (watched) {
            hook->post();
            PostMessageW(watched, WM_KEYDOWN, VK_RIGHT, 1);
            own = 0;
        }
    }
    /// The host's messages are still in the queue, and its own loop gets them.
    void expectWaiting() {
        EXPECT_EQ(std::exchange(foreign, 0), 0);
        MSG message{};
        EXPECT_TRUE(PeekMessageW(&message, reinterpret_cast<HWND>(-1), WM_APP + 1, WM_APP + 1, PM_REMOVE));
        if (watched) {
            EXPECT_TRUE(PeekMessageW(&message, watched, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE));
        }
        pump();
        EXPECT_EQ(std::exchange(foreign, 0), 1);
    }
    HWND watched = nullptr;
    std::optional<WindowHook> hook;
};

TEST_F(ContainerEvents, CreationHandlesNoMessages) {
    postAll();
    const auto other = createInstance<_kvBandscope>(CLSID_kvBandscope);
    ASSERT_TRUE(other);
    expectWaiting();
}

TEST_F(ContainerEvents, AControlCreatedInAMessageHandlerIsCreatedOnce) {
    // The host creates its control when its window receives a message, unless it has one already.
    int made = 0;
    ComPtr<_kvBandscope> control;
    container.host.onMessage = [&] {
        if (control)
            return;
        ++made;
        control = createInstance<_kvBandscope>(CLSID_kvBandscope);
    };
    for (int i = 0; i < 3; ++i)
        PostMessageW(container.host.get(), kForeign, 0, 0);
    pump();
    EXPECT_EQ(made, 1);
}

TEST_F(ContainerEvents, SizesBeforeTheActivationHandleNoMessages) {
    postAll();
    container.setExtent({25000, 15000});
    EXPECT_EQ(container.place(container.site->place, nullptr), S_OK);
    expectWaiting();
}

TEST_F(ContainerEvents, ActivationHandlesNoHostMessages) {
    Replica::initNew(container);
    Replica::setSite(container);
    postAll();
    EXPECT_EQ(container.verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    expectWaiting();
}

TEST_F(ContainerEvents, SetObjectRectsHandlesTheControlsOwnMessagesOnly) {
    activate();
    postAll();
    EXPECT_EQ(container.place({0, 0, 900, 600}, nullptr), S_OK);
    EXPECT_EQ(own, 1);
    // Key messages stay in the queue as well, because the host dispatches them.
    expectWaiting();
}

TEST_F(ContainerEvents, VerbsAndExtentsHandleNoHostMessages) {
    activate();
    for (const LONG verb : {OLEIVERB_HIDE, OLEIVERB_SHOW, OLEIVERB_UIACTIVATE, OLEIVERB_PRIMARY}) {
        postAll();
        EXPECT_EQ(container.verb(verb), S_OK);
        expectWaiting();
    }
    postAll();
    container.setExtent({25000, 15000});
    expectWaiting();
}

TEST_F(ContainerEvents, ADrawingDuringSetObjectRectsHandlesNoHostMessages) {
    activate();
    int drawn = 0;
    onOwn = [&] {
        VARIANT_BOOL done = VARIANT_FALSE;
        EXPECT_EQ(container.control->DrawDisplay(&done), S_OK);
        ++drawn;
    };
    postAll();
    EXPECT_EQ(container.place({0, 0, 900, 600}, nullptr), S_OK);
    EXPECT_EQ(drawn, 1);
    expectWaiting();
}

TEST_F(ContainerEvents, ADrawingCalledByTheHostHandlesHostMessages) {
    activate();
    PostMessageW(container.host.get(), kForeign, 0, 0);
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(container.control->DrawDisplay(&done), S_OK);
    EXPECT_EQ(foreign, 1);
    // The limit during a call of the container ends with the call.
    EXPECT_EQ(container.place({0, 0, 900, 600}, nullptr), S_OK);
    PostMessageW(container.host.get(), kForeign, 0, 0);
    EXPECT_EQ(container.control->DrawDisplay(&done), S_OK);
    EXPECT_EQ(foreign, 2);
}

TEST_F(ContainerEvents, TheQuitMessageIsKeptDuringSetObjectRects) {
    activate();
    PostQuitMessage(7);
    EXPECT_EQ(container.place({0, 0, 900, 600}, nullptr), S_OK);
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 7U);
    EXPECT_TRUE(isSize(container.window(), 900, 600));
    container.expectLaidOutFor({900, 600});
}

TEST_F(ContainerEvents, ACollapseDuringSetObjectRectsAsksForNoSize) {
    activate();
    container.log.calls.clear();
    onOwn = [&] {
        const HWND panel = container.panel();
        SendMessageW(panel, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    };
    hook->post();
    EXPECT_EQ(container.place({0, 0, 900, 600}, nullptr), S_OK);
    EXPECT_EQ(container.log.count("OnPosRectChange"), 0) << "the container is not asked about a size by its own call";
    EXPECT_EQ(windowText(container.panel()), L"+");
    EXPECT_TRUE(isSize(container.window(), 900, 600));
    pump();
    container.expectLaidOutFor({900, 600});
}

TEST_F(ContainerEvents, AControlClosedDuringItsActivationLeavesNothing) {
    Replica::initNew(container);
    Replica::setSite(container);
    IOleObject* const object = container.as<IOleObject>().Get();
    container.log.inside["Ambient(-709)"] = [&] {
        // The windows exist and are not laid out yet. The layout handles their messages.
        container.log.inside.clear();
        hookOwnWindow();
        hook->post();
    };
    onOwn = [&] {
        Replica::close(container);
        Replica::unsite(container);
        Replica::release(container);
    };
    EXPECT_EQ(object->DoVerb(OLEIVERB_UIACTIVATE, nullptr, nullptr, 0, nullptr, nullptr), E_ABORT);
    EXPECT_EQ(own, 1);
    EXPECT_EQ(container.log.count("OnInPlaceActivate"), container.log.count("OnInPlaceDeactivate"));
    EXPECT_EQ(container.log.count("OnUIActivate"), container.log.count("OnUIDeactivate"));
    container.expectAllReleased();
}

}  // namespace
}  // namespace kv::test
