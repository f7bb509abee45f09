// A WinForms control that gets a new window at run time: its host deactivates the control while the old window is being
// destroyed, and activates it again in another parent.
#include <gmock/gmock.h>

#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"
#include "tests/automation/Replica.h"

namespace kv::test {
namespace {

constexpr OLE_COLOR kOwnPaper = RGB(240, 250, 230);

class AxHostRecreation : public testing::Test {
  protected:
    Replica host;
    HostWindow parking;
    HostWindow otherForm;
    int ends = 0;

    void SetUp() override {
        current = this;
        host.site->place = {30, 20, 830, 520};
        Replica::initNew(host);
        Replica::setSite(host);
        Replica::adviseEvents(host);
        activate();
        EXPECT_EQ(host.control->put_lColorSpecBack(kOwnPaper), S_OK);
        host.drawChannel();
        EXPECT_EQ(host.control->put_CursorVal(400.0), S_OK);
        pump();
    }
    void TearDown() override {
        Replica::unsite(host);
        Replica::release(host);
        current = nullptr;
    }
    /// The host receives the messages of the control's window before the control does.
    void activate() {
        ASSERT_EQ(host.verbAt(OLEIVERB_INPLACEACTIVATE, -1, nullptr, &host.site->place), S_OK);
        inPlace = true;
        before = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(host.root(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&AxHostRecreation::procedure)));
    }
    Picture shown() const {
        pump();
        return windowPicture(host.root());
    }

  private:
    WNDPROC before = nullptr;
    bool inPlace = false;
    static inline AxHostRecreation* current = nullptr;

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        AxHostRecreation& test = *current;
        const WNDPROC controls = test.before;
        // The state changes at the end, so that the message arrives twice when the control destroys its window itself.
        if (message == WM_DESTROY && test.inPlace) {
            if (test.host.root()) {
                ++test.ends;
                SetParent(window, test.parking.get());
            }
            Replica::uiDeactivate(test.host);
            Replica::deactivate(test.host);
            test.inPlace = false;
            SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(controls));
        }
        return CallWindowProcW(controls, window, message, wParam, lParam);
    }
};

TEST_F(AxHostRecreation, KeepsChannelsRangePictureAndCursor) {
    const Picture first = shown();
    EXPECT_GT(first.count(kOwnPaper, first.all()), 10000);
    double range[2]{};
    EXPECT_EQ(host.control->get_DisplayMinFreq(&range[0]), S_OK);
    for (int round = 1; round <= 3; ++round) {
        const HWND window = host.root();
        host.site->moveTo(round % 2 ? otherForm.get() : host.host.get());
        DestroyWindow(window);
        EXPECT_EQ(ends, round);
        EXPECT_FALSE(IsWindow(window));
        ASSERT_FALSE(host.root());
        activate();
        EXPECT_EQ(GetParent(host.root()), round % 2 ? otherForm.get() : host.host.get());
        EXPECT_EQ(shown(), first);
        long count = 0;
        EXPECT_EQ(host.control->get_NumTX(&count), S_OK);
        EXPECT_EQ(count, 1);
        EXPECT_EQ(host.control->get_DisplayMinFreq(&range[1]), S_OK);
        EXPECT_EQ(range[1], range[0]);
    }
    host.events->heard.clear();
    host.chooseGridRange();
    EXPECT_FALSE(host.events->heard.empty());
    EXPECT_EQ(host.log.count("OnInPlaceActivate"), 4);
    EXPECT_EQ(host.log.count("OnInPlaceDeactivate"), 3);
}

TEST_F(AxHostRecreation, DrawingWhileThereIsNoWindowShowsInTheNextOne) {
    DestroyWindow(host.root());
    EXPECT_EQ(host.control->put_lColorSpecBack(RGB(10, 20, 30)), S_OK);
    host.drawChannel();
    activate();
    const Picture after = shown();
    EXPECT_GT(after.count(RGB(10, 20, 30), after.all()), 1000);
}

TEST_F(AxHostRecreation, AControlSurvivesTheDestructionOfItsParentWindow) {
    const Picture first = shown();
    host.host.destroy();
    EXPECT_EQ(ends, 1);
    ASSERT_FALSE(host.root());
    host.site->moveTo(otherForm.get());
    activate();
    EXPECT_EQ(shown(), first);
    otherForm.destroy();
    EXPECT_EQ(ends, 2);
    Replica::unadviseEvents(host);
}

TEST_F(AxHostRecreation, AUiActiveControlSurvivesTheDestructionOfItsWindow) {
    EXPECT_EQ(host.verbAt(OLEIVERB_UIACTIVATE, -1, nullptr, nullptr), S_OK);
    DestroyWindow(host.root());
    EXPECT_EQ(host.log.count("OnUIActivate"), 1);
    EXPECT_EQ(host.log.count("OnUIDeactivate"), 1);
    activate();
    EXPECT_EQ(host.verbAt(OLEIVERB_UIACTIVATE, -1, nullptr, nullptr), S_OK);
    EXPECT_TRUE(IsChild(host.root(), GetFocus()));
}

}  // namespace
}  // namespace kv::test
