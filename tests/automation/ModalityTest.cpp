// Message boxes and the container: its windows are disabled while one is open, and the control's own ones while the
// container shows one.
#include <gmock/gmock.h>

#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Modality : public testing::Test {
  protected:
    FullContainer container;
    CallLog& log = container.log;
    MessageBoxes boxes;

    void activate() {
        ASSERT_NO_FATAL_FAILURE(container.activate());
        container.drawChannel();
        pump();
        log.calls.clear();
    }
    void showText(bool show) const {
        EXPECT_EQ(container.control->put_bMouseInfo(show ? VARIANT_TRUE : VARIANT_FALSE), S_OK);
        pump();
    }
};

TEST_F(Modality, TheFrameIsDisabledWhileAMessageBoxIsOpen) {
    ASSERT_NO_FATAL_FAILURE(activate());
    boxes.onBox = [this] { EXPECT_THAT(log.take(), ElementsAre("frame.EnableModeless(false)")); };
    EXPECT_EQ(container.control->DrawAll(), S_OK);
    EXPECT_THAT(log.take(), ElementsAre("frame.EnableModeless(true)"));
    ASSERT_EQ(boxes.seen().size(), 1U);
    EXPECT_EQ(boxes.seen()[0].owner, container.host.get());
    // A second one, that the range is shown already.
    EXPECT_EQ(container.control->AddTXChnl(channel({.freq = 401.0, .key = L"TX2"}).Get(), nullptr), E_POINTER);
    long index = -1;
    EXPECT_EQ(container.control->AddTXChnl(channel({.freq = 401.0, .key = L"TX3"}).Get(), &index), S_OK);
    log.calls.clear();
    EXPECT_EQ(container.control->put_ShowAll(VARIANT_TRUE), S_OK);
    EXPECT_EQ(log.count("frame.EnableModeless(true)"), 1);
    EXPECT_EQ(boxes.seen().size(), 2U);
}

TEST_F(Modality, TheFrameIsEnabledAgainEvenIfTheControlWasClosedMeanwhile) {
    ASSERT_NO_FATAL_FAILURE(activate());
    boxes.onBox = [this] {
        EXPECT_EQ(container.as<IOleObject>()->Close(OLECLOSE_NOSAVE), S_OK);
        EXPECT_EQ(container.as<IOleObject>()->SetClientSite(nullptr), S_OK);
    };
    EXPECT_EQ(container.control->DrawAll(), S_OK);
    EXPECT_EQ(log.count("frame.EnableModeless(false)"), 1);
    EXPECT_EQ(log.count("frame.EnableModeless(true)"), 1);
}

TEST_F(Modality, ABoxOfAControlThatIsNotActiveBelongsToTheWindowOfItsSite) {
    ASSERT_EQ(container.setSite(), S_OK);
    EXPECT_EQ(container.control->DrawAll(), S_OK);
    ASSERT_EQ(boxes.seen().size(), 1U);
    EXPECT_EQ(boxes.seen()[0].owner, container.host.get());
    EXPECT_EQ(log.count("frame.EnableModeless(false)"), 0) << "it has not met the frame yet";
}

TEST_F(Modality, AControlInNoContainerShowsNoBox) {
    EXPECT_EQ(container.control->DrawAll(), S_OK);
    EXPECT_THAT(boxes.seen(), IsEmpty());
    ASSERT_NO_FATAL_FAILURE(activate());
    EXPECT_EQ(container.as<IOleObject>()->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_EQ(container.as<IOleObject>()->SetClientSite(nullptr), S_OK);
    EXPECT_EQ(container.control->DrawAll(), S_OK);
    EXPECT_THAT(boxes.seen(), IsEmpty());
}

TEST_F(Modality, TheContainersModalWindowsDisableTheTextWindow) {
    ASSERT_NO_FATAL_FAILURE(activate());
    const auto active = container.as<IOleInPlaceActiveObject>();
    showText(true);
    const HWND text = textWindow();
    ASSERT_TRUE(text);
    EXPECT_TRUE(IsWindowEnabled(text));
    EXPECT_EQ(active->EnableModeless(FALSE), S_OK);
    EXPECT_EQ(active->EnableModeless(FALSE), S_OK);
    EXPECT_FALSE(IsWindowEnabled(text));
    EXPECT_EQ(active->EnableModeless(TRUE), S_OK);
    EXPECT_TRUE(IsWindowEnabled(text));
    showText(false);
}

TEST_F(Modality, ATextWindowThatOpensMeanwhileIsDisabledToo) {
    ASSERT_NO_FATAL_FAILURE(activate());
    const auto active = container.as<IOleInPlaceActiveObject>();
    EXPECT_EQ(active->EnableModeless(FALSE), S_OK);
    showText(true);
    const HWND text = textWindow();
    ASSERT_TRUE(text);
    EXPECT_FALSE(IsWindowEnabled(text));
    EXPECT_EQ(active->EnableModeless(TRUE), S_OK);
    EXPECT_TRUE(IsWindowEnabled(text));
    // A text window that no longer exists is not enabled.
    showText(false);
    EXPECT_EQ(active->EnableModeless(FALSE), S_OK);
    EXPECT_EQ(active->EnableModeless(TRUE), S_OK);
}

TEST_F(Modality, TheTextWindowOfAControlThatIsNotActiveBelongsToTheWindowOfItsSite) {
    ASSERT_EQ(container.setSite(), S_OK);
    showText(true);
    const HWND text = textWindow();
    ASSERT_TRUE(text);
    EXPECT_EQ(GetWindow(text, GW_OWNER), container.host.get());
    showText(false);
}

}  // namespace
}  // namespace kv::test
