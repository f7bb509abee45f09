// Every way in which a container can release the control. Nothing is left behind, whatever is destroyed first.
#include <gmock/gmock.h>

#include <optional>

#include "tests/automation/Container.h"
#include "tests/automation/WindowHook.h"

namespace kv::test {
namespace {

class ContainerLife : public testing::Test {
  protected:
    Container container;
    ComPtr<EventSink> sink;

    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(container.activate());
        sink = new EventSink;
        container.connect(sink.Get());
        container.addTx({.freq = 400.0, .power = 30.0, .key = L"TX1"});
        EXPECT_TRUE(container.draw());
    }
    void TearDown() override {
        EXPECT_FALSE(container.control) << "the test releases the control itself";
        container.expectNothingLeft();
        EXPECT_EQ(sink->references(), 1U);
        EXPECT_EQ(container.log.count("OnInPlaceActivate"), activations);
        EXPECT_EQ(container.log.count("OnInPlaceDeactivate"), deactivations);
    }
    int activations = 1;
    int deactivations = 1;

    /// Releases the test's reference, which must be the last one.
    void releaseLast() { EXPECT_EQ(container.control.Reset(), 0U); }
    /// Releases the last reference while the control is working: it must exist until that work is done.
    void releaseAtWork() {
        container.control.Reset();
        EXPECT_EQ(canUnloadNow(), S_FALSE);
    }
    ComPtr<IOleObject> object() const { return container.as<IOleObject>(); }
    void close() const { EXPECT_EQ(object()->Close(OLECLOSE_NOSAVE), S_OK); }
    void unsite() const { EXPECT_EQ(object()->SetClientSite(nullptr), S_OK); }
    /// The control without a counted reference; the control must keep itself alive.
    _kvBandscope* raw() const { return container.control.Get(); }
    /// `action` runs when the control next processes pending events.
    void meanwhile(std::function<void()> action) {
        container.host.onMessage = std::move(action);
        PostMessageW(container.host.get(), WM_APP, 0, 0);
    }
    /// The same while the container calls the control, when only messages of the control's own windows are handled.
    void meanwhileInside(HWND window, std::function<void()> action) {
        hook.emplace(window, std::move(action));
        hook->post();
    }
    std::optional<WindowHook> hook;
};

TEST_F(ContainerLife, ClosedThenUnsitedThenReleased) {
    close();
    EXPECT_TRUE(container.windows().empty());
    HWND window = container.host.get();
    EXPECT_EQ(container.as<IOleInPlaceObject>()->GetWindow(&window), E_FAIL);
    EXPECT_EQ(window, nullptr);
    unsite();
    releaseLast();
}

TEST_F(ContainerLife, UnsitedFirst) {
    unsite();
    EXPECT_EQ(container.log.count("OnInPlaceDeactivate"), 1);
    EXPECT_EQ(container.site->references(), 1U);
    close();
    releaseLast();
}

TEST_F(ContainerLife, DeactivatedAndActivatedAgain) {
    EXPECT_EQ(container.as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    EXPECT_EQ(container.as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    EXPECT_TRUE(container.windows().empty());
    EXPECT_TRUE(container.draw());
    ASSERT_EQ(container.verb(OLEIVERB_SHOW), S_OK);
    EXPECT_TRUE(IsWindow(container.pictureBox(L"picSpectrum")));
    EXPECT_EQ(object()->DoVerb(OLEIVERB_HIDE, nullptr, nullptr, 0, nullptr, nullptr), S_OK);
    EXPECT_FALSE(IsWindowVisible(container.root()));
    activations = 2;
    deactivations = 2;
    unsite();
    releaseLast();
}

TEST_F(ContainerLife, TheWindowIsDestroyedFirst) {
    container.host.destroy();
    EXPECT_EQ(container.log.count("OnInPlaceDeactivate"), 1);
    EXPECT_TRUE(container.draw());
    container.addTx({.freq = 410.0, .key = L"TX2"});
    close();
    unsite();
    releaseLast();
}

TEST_F(ContainerLife, ReleasedWhileActive) {
    // An object in its destructor calls nothing back.
    deactivations = 0;
    releaseLast();
}

TEST_F(ContainerLife, ClosedWhileUiActive) {
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    close();
    EXPECT_EQ(container.log.count("OnUIDeactivate"), 1);
    unsite();
    releaseLast();
}

TEST_F(ContainerLife, TheLastReleaseInsideAnEvent) {
    deactivations = 0;
    sink->onEvent = [&](DISPID) { releaseAtWork(); };
    container.chooseGridRange();
    EXPECT_FALSE(container.control);
    EXPECT_FALSE(sink->heard.empty());
}

TEST_F(ContainerLife, ClosedInsideAnEvent) {
    sink->onEvent = [&](DISPID) {
        close();
        unsite();
        releaseAtWork();
        sink->onEvent = nullptr;
    };
    container.chooseGridRange();
    EXPECT_FALSE(container.control);
}

TEST_F(ContainerLife, ClosedInsideADoubleClick) {
    sink->onEvent = [&](DISPID id) {
        EXPECT_EQ(id, kChgFreqRange);
        close();
        unsite();
        releaseAtWork();
    };
    const HWND spectrum = container.pictureBox(L"picSpectrum");
    PostMessageW(spectrum, WM_MOUSEMOVE, 0, MAKELPARAM(50, 50));
    PostMessageW(spectrum, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(50, 50));
    pump();
    EXPECT_FALSE(container.control);
}

TEST_F(ContainerLife, ClosedInsideTheCollapse) {
    sink->onEvent = [&](DISPID id) {
        EXPECT_EQ(id, kChgHeight);
        close();
        unsite();
        releaseAtWork();
    };
    postRightClick(container.panel(), 3, 3);
    EXPECT_FALSE(container.control);
}

TEST_F(ContainerLife, ReleasedInTheMiddleOfARepaint) {
    deactivations = 0;
    _kvBandscope* const control = raw();
    meanwhile([&] { releaseAtWork(); });
    VARIANT_BOOL drawn = VARIANT_FALSE;
    EXPECT_EQ(control->DrawDisplay(&drawn), S_OK);
    EXPECT_EQ(drawn, VARIANT_TRUE);
    EXPECT_FALSE(container.control);
}

TEST_F(ContainerLife, ClosedInTheMiddleOfARepaint) {
    _kvBandscope* const control = raw();
    meanwhile([&] {
        close();
        unsite();
        releaseAtWork();
    });
    VARIANT_BOOL drawn = VARIANT_FALSE;
    EXPECT_EQ(control->DrawDisplay(&drawn), S_OK);
    EXPECT_FALSE(container.control);
}

TEST_F(ContainerLife, TheWindowIsDestroyedInTheMiddleOfARepaint) {
    meanwhile([&] { container.host.destroy(); });
    EXPECT_TRUE(container.draw());
    EXPECT_EQ(container.host.get(), nullptr);
    unsite();
    releaseLast();
}

TEST_F(ContainerLife, ClosedInTheMiddleOfAResize) {
    const auto place = container.as<IOleInPlaceObject>();
    IOleInPlaceObject* const inPlace = place.Get();
    meanwhileInside(container.pictureBox(L"picSpectrum"), [&] {
        close();
        unsite();
        releaseAtWork();
    });
    const RECT wider{0, 0, 760, 500};
    EXPECT_EQ(inPlace->SetObjectRects(&wider, &wider), S_OK);
    EXPECT_FALSE(container.control);
}

TEST_F(ContainerLife, TheLastReleaseInsideOnInPlaceDeactivate) {
    IOleObject* const plain = object().Get();
    container.log.inside["OnInPlaceDeactivate"] = [&] { releaseAtWork(); };
    EXPECT_EQ(plain->SetClientSite(nullptr), S_OK);
    EXPECT_FALSE(container.control);
}

TEST_F(ContainerLife, TheLastReleaseWhileTheWindowIsDestroyed) {
    container.log.inside["OnInPlaceDeactivate"] = [&] { releaseAtWork(); };
    container.host.destroy();
    EXPECT_FALSE(container.control);
}

TEST_F(ContainerLife, AnActivationThatFailsLeavesNothing) {
    close();
    deactivations = 2;
    activations = 2;
    container.log.answers["GetWindowContext"] = E_FAIL;
    EXPECT_TRUE(FAILED(object()->DoVerb(OLEIVERB_SHOW, nullptr, container.site.Get(), 0, nullptr, nullptr)));
    EXPECT_TRUE(container.windows().empty());
    container.log.answers["CanInPlaceActivate"] = S_FALSE;
    EXPECT_TRUE(FAILED(object()->DoVerb(OLEIVERB_SHOW, nullptr, container.site.Get(), 0, nullptr, nullptr)));
    unsite();
    EXPECT_TRUE(FAILED(object()->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, nullptr, nullptr)));
    releaseLast();
}

}  // namespace
}  // namespace kv::test
