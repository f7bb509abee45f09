// The focus between the container and the parts of the control, also with containers that pass no message to the verb,
// and the keys that the control leaves to its container.
#include <gmock/gmock.h>
#include <olectl.h>

#include <algorithm>

#include "tests/automation/ActiveControl.h"
#include "tests/automation/MessageBoxes.h"

namespace kv::test {
namespace {

using testing::ElementsAre;

class Focus : public ActiveControl {
  protected:
    HWND spectrum() const { return container.pictureBox(L"picSpectrum"); }
    HWND outside() const { return container.host.get(); }
    void leave() const {
        SetFocus(outside());
        ASSERT_EQ(GetFocus(), outside());
    }
};

TEST_F(Focus, TabIntoTheControlByAVerbWithoutAMessage) {
    const std::vector<HWND> parts = stops();
    SetFocus(parts[2]);
    leave();
    {
        const KeysDown keys({VK_TAB});
        EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
        EXPECT_EQ(GetFocus(), parts.front());
    }
    leave();
    const KeysDown keys({VK_TAB, VK_SHIFT});
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_EQ(GetFocus(), parts.back());
}

TEST_F(Focus, TabIntoTheControlByTheFocusAlone) {
    const std::vector<HWND> parts = stops();
    SetFocus(parts[2]);
    leave();
    {
        const KeysDown keys({VK_TAB});
        SetFocus(container.root());
        EXPECT_EQ(GetFocus(), parts.front());
    }
    leave();
    const KeysDown keys({VK_TAB, VK_SHIFT});
    SetFocus(container.root());
    EXPECT_EQ(GetFocus(), parts.back());
}

TEST_F(Focus, AfterTabLeftTheControlTheNextTabBeginsAtTheFirstPart) {
    const std::vector<HWND> parts = stops();
    SetFocus(parts.back());
    {
        const KeysDown keys({VK_TAB});
        EXPECT_EQ(key(VK_TAB), S_FALSE);
        leave();
    }
    // A container may move the focus after the key was released.
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_EQ(GetFocus(), parts.front());
}

TEST_F(Focus, ATabThatTheContainerHandledCountsWithoutTheKeyboardState) {
    const std::vector<HWND> parts = stops();
    SetFocus(parts.back());
    log.inside["TranslateAccelerator"] = [this] { SetFocus(outside()); };
    log.answers["TranslateAccelerator"] = S_OK;
    EXPECT_EQ(key(VK_TAB), S_OK);
    ASSERT_EQ(GetFocus(), outside());
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_EQ(GetFocus(), parts.front());
}

TEST_F(Focus, TheFocusReturnsToItsPartWhenItDoesNotComeByTab) {
    const std::vector<HWND> parts = stops();
    SetFocus(parts[2]);
    leave();
    SetFocus(container.root());
    EXPECT_EQ(GetFocus(), parts[2]);
    leave();
    // Alt+Tab switches between programs.
    const KeysDown keys({VK_TAB, VK_MENU});
    SetFocus(container.root());
    EXPECT_EQ(GetFocus(), parts[2]);
}

TEST_F(Focus, EachFocusChangeIsReportedOnce) {
    leave();
    EXPECT_EQ(log.count("OnFocus(lost)"), 1);
    SetFocus(container.root());
    EXPECT_EQ(log.count("OnFocus"), 1);
    for (const HWND part : stops())
        SetFocus(part);
    EXPECT_EQ(log.count("OnFocus"), 1) << "the focus stays inside";
    leave();
    EXPECT_EQ(log.count("OnFocus(lost)"), 2);
    EXPECT_EQ(log.count("OnFocus"), 1);
}

TEST_F(Focus, InADesignerTheFocusReturnsToTheContainer) {
    SetFocus(stops()[1]);
    log.calls.clear();
    container.site->ambient.insert_or_assign(DISPID_AMBIENT_USERMODE, Var(false));
    EXPECT_EQ(container.as<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_USERMODE), S_OK);
    EXPECT_EQ(GetFocus(), outside());
    EXPECT_EQ(log.count("OnFocus(lost)"), 1);
    SetFocus(container.root());
    EXPECT_EQ(GetFocus(), outside());
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_EQ(GetFocus(), outside());
}

TEST_F(Focus, ADisabledControlReleasesTheFocusAndIgnoresKeys) {
    double before = 0.0;
    double after = 0.0;
    EXPECT_EQ(container.control->get_DisplayCenterFreq(&before), S_OK);
    const HWND knob = stop(L"tdKnMover");
    const HWND box = stop(L"ComboBox");
    const LRESULT chosen = SendMessageW(box, CB_GETCURSEL, 0, 0);
    SetFocus(knob);
    log.calls.clear();
    EnableWindow(container.root(), FALSE);
    EXPECT_EQ(GetFocus(), outside());
    EXPECT_EQ(log.count("OnFocus(lost)"), 1);
    EXPECT_EQ(key(VK_UP), S_FALSE);
    MSG late{knob, WM_KEYDOWN, VK_UP, 1, 0, {}};
    EXPECT_EQ(active->TranslateAccelerator(&late), S_FALSE);
    // Key messages that were already in the queue.
    for (const HWND part : stops()) {
        SendMessageW(part, WM_KEYDOWN, VK_UP, 1);
        SendMessageW(part, WM_KEYUP, VK_UP, 1);
        SendMessageW(part, WM_KEYDOWN, VK_HOME, 1);
    }
    pump();
    EXPECT_EQ(container.control->get_DisplayCenterFreq(&after), S_OK);
    EXPECT_EQ(before, after);
    EXPECT_EQ(SendMessageW(box, CB_GETCURSEL, 0, 0), chosen);
    EnableWindow(container.root(), TRUE);
    SetFocus(knob);
    EXPECT_EQ(key(VK_UP), S_OK);
    EXPECT_EQ(container.control->get_DisplayCenterFreq(&after), S_OK);
    EXPECT_NE(before, after) << "enabled again it obeys";
}

TEST_F(Focus, AKeyWithoutAUseIsOfferedToTheSiteAndItsAnswerIsReturned) {
    for (const HWND part : stops()) {
        SetFocus(part);
        for (const HRESULT answer : {S_OK, S_FALSE, E_NOTIMPL, E_FAIL}) {
            log.answers["TranslateAccelerator"] = answer;
            log.calls.clear();
            EXPECT_EQ(key(VK_F5), answer);
            EXPECT_EQ(key('M', WM_SYSCHAR), answer);
            EXPECT_EQ(key(VK_F5, WM_KEYUP), answer);
            EXPECT_EQ(log.count("TranslateAccelerator"), 3);
        }
    }
    log.answers["TranslateAccelerator"] = E_NOTIMPL;
    SetFocus(stops().back());
    log.calls.clear();
    EXPECT_EQ(key(VK_TAB), E_NOTIMPL) << "Tab out of the control";
    EXPECT_THAT(log.take(), ElementsAre("TranslateAccelerator"));
}

TEST(FocusOfASimpleContainer, GetsTheKeysThatTheControlDoesNotUse) {
    Container container;
    ASSERT_NO_FATAL_FAILURE(container.activate());
    ASSERT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    MSG pressed{GetFocus(), WM_KEYDOWN, VK_F5, 1, 0, {}};
    EXPECT_EQ(container.as<IOleInPlaceActiveObject>()->TranslateAccelerator(&pressed), S_FALSE);
}

TEST_F(Focus, AKeyWithAUseIsNotOffered) {
    // A form would take an arrow key to the next control.
    log.answers["TranslateAccelerator"] = S_OK;
    for (const HWND part : {stop(L"tdKnMover"), spectrum(), stop(L"ComboBox")}) {
        SetFocus(part);
        log.calls.clear();
        EXPECT_EQ(key(VK_DOWN), S_OK);
        EXPECT_THAT(log.take(), testing::Not(testing::Contains("TranslateAccelerator"))) << windowClass(part).c_str();
    }
}

TEST_F(Focus, ACharacterForAListIsNoMnemonicOfTheForm) {
    log.answers["TranslateAccelerator"] = S_OK;
    const HWND box = stop(L"ComboBox");
    SendMessageW(box, CB_SETCURSEL, 0, 0);
    SetFocus(box);
    log.calls.clear();
    EXPECT_EQ(key('G', WM_CHAR), S_OK);
    EXPECT_EQ(log.count("TranslateAccelerator"), 0);
    EXPECT_EQ(windowText(box), L"GHz");
    // A button uses no characters, so that the form's own access keys work.
    SetFocus(stop(L"Button"));
    EXPECT_EQ(key('G', WM_CHAR), S_OK);
    EXPECT_EQ(log.count("TranslateAccelerator"), 1);
}

TEST_F(Focus, AKeyOfTheSpectrumLeavesNoCharacterMessageBehind) {
    SetFocus(spectrum());
    EXPECT_EQ(key(VK_SPACE), S_OK);
    MSG letter{};
    EXPECT_FALSE(PeekMessageW(&letter, spectrum(), WM_CHAR, WM_CHAR, PM_REMOVE));
}

TEST_F(Focus, WithoutADocumentWindowOrAFrame) {
    EXPECT_EQ(container.as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    container.site->document.Reset();
    log.calls.clear();
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_EQ(log.count("OnUIActivate"), 1);
    EXPECT_EQ(log.count("frame.SetActiveObject"), 1);
    EXPECT_EQ(log.count("document.SetActiveObject"), 0);
    EXPECT_TRUE(IsChild(container.root(), GetFocus()));
    EXPECT_EQ(container.as<IOleInPlaceObject>()->UIDeactivate(), S_OK);
    EXPECT_EQ(log.count("frame.SetActiveObject(null)"), 1);
    EXPECT_EQ(container.as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    container.site->frame->active.Reset();
    const ComPtr<ContainerFrame> frame = std::move(container.site->frame);
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_TRUE(IsChild(container.root(), GetFocus()));
    EXPECT_EQ(container.as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
}

TEST_F(Focus, IsDialogMessageReachesEveryPart) {
    std::vector<HWND> parts = stops();
    SetFocus(parts.front());
    std::vector<HWND> reached;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        MSG tab{GetFocus(), WM_KEYDOWN, VK_TAB, 1, 0, {}};
        EXPECT_TRUE(IsDialogMessageW(outside(), &tab));
        reached.push_back(GetFocus());
    }
    // The round begins at the second part and ends at the first one.
    std::rotate(parts.begin(), parts.begin() + 1, parts.end());
    EXPECT_EQ(reached, parts);
    EXPECT_THAT(reached, testing::Contains(spectrum()));
}

}  // namespace
}  // namespace kv::test
