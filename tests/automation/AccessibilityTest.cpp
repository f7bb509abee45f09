// What a screen reader learns of the control through its windows on the screen.
#include <gmock/gmock.h>
#include <oleacc.h>

#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

Var self() {
    return Var(static_cast<int>(CHILDID_SELF));
}

ComPtr<IAccessible> accessible(HWND window) {
    ComPtr<IAccessible> object;
    EXPECT_EQ(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                         reinterpret_cast<void**>(object.GetAddressOf())),
              S_OK);
    return object;
}

using TextOf = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, BSTR*);
std::wstring text(IAccessible* object, TextOf member) {
    Text text;
    (object->*member)(self(), text.put());
    return text.str();
}
std::wstring name(HWND window) {
    return text(accessible(window).Get(), &IAccessible::get_accName);
}
std::wstring value(HWND window) {
    return text(accessible(window).Get(), &IAccessible::get_accValue);
}
LONG role(HWND window) {
    Var role;
    EXPECT_EQ(accessible(window)->get_accRole(self(), &role), S_OK);
    EXPECT_EQ(role.vt, VT_I4);
    return role.lVal;
}
LONG state(HWND window) {
    Var state;
    EXPECT_EQ(accessible(window)->get_accState(self(), &state), S_OK);
    EXPECT_EQ(state.vt, VT_I4);
    return state.lVal;
}

/// Collects the value-change events of this process during its lifetime.
class ValueChanges {
  public:
    ValueChanges()
        : hook_(SetWinEventHook(EVENT_OBJECT_VALUECHANGE, EVENT_OBJECT_VALUECHANGE, nullptr, &ValueChanges::heard,
                                GetCurrentProcessId(), 0, WINEVENT_OUTOFCONTEXT)) {
        EXPECT_TRUE(hook_);
        windows().clear();
    }
    ~ValueChanges() { UnhookWinEvent(hook_); }
    ValueChanges(const ValueChanges&) = delete;
    ValueChanges& operator=(const ValueChanges&) = delete;

    [[nodiscard]] static int count(HWND window) {
        pump();
        return static_cast<int>(std::count(windows().begin(), windows().end(), window));
    }

  private:
    static std::vector<HWND>& windows() {
        static std::vector<HWND> all;
        return all;
    }
    static void CALLBACK heard(HWINEVENTHOOK, DWORD, HWND window, LONG object, LONG child, DWORD, DWORD) {
        if (object == OBJID_CLIENT && child == CHILDID_SELF)
            windows().push_back(window);
    }
    HWINEVENTHOOK hook_;
};

class Accessibility : public testing::Test {
  protected:
    FullContainer container;

    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(container.activate());
        EXPECT_EQ(container.control->put_FreqEndBuffer(0.0), S_OK);
        container.addTx({.freq = 400.0, .power = 30.0, .key = L"TX1"});
        container.addTx({.freq = 410.0, .power = 30.0, .key = L"TX2"});
        container.addRx({.freq = 405.0, .power = 30.0, .key = L"RX1"});
        EXPECT_EQ(container.control->DrawByRange(400.0, 410.0), S_OK);
        pump();
    }
    HWND part(const wchar_t* className, const wchar_t* text = nullptr) const { return container.part(className, text); }
    HWND spectrum() const { return part(L"kvPictureBox", L"picSpectrum"); }
    HWND mover() const { return part(L"tdKnMover"); }
};

TEST_F(Accessibility, TheSpectrumDescribesWhatItShows) {
    EXPECT_EQ(name(spectrum()), L"Spectrum");
    EXPECT_EQ(role(spectrum()), ROLE_SYSTEM_CHART);
    // The cursor begins at the center.
    EXPECT_EQ(value(spectrum()),
              L"400.00000 to 410.00000 MHz, cursor at 405.00000 MHz, 2 transmit channels, 1 receive channel");
    EXPECT_EQ(container.control->put_CursorVal(404.5), S_OK);
    EXPECT_EQ(value(spectrum()),
              L"400.00000 to 410.00000 MHz, cursor at 404.50000 MHz, 2 transmit channels, 1 receive channel");
    EXPECT_THAT(text(accessible(spectrum()).Get(), &IAccessible::get_accHelp),
                testing::AllOf(testing::HasSubstr(L"Home shows all channels"), testing::HasSubstr(L"Space")));
}

TEST_F(Accessibility, AnEmptyControlReportsNoRange) {
    FullContainer fresh;
    ASSERT_NO_FATAL_FAILURE(fresh.activate());
    EXPECT_EQ(value(fresh.pictureBox(L"picSpectrum")), L"0 transmit channels, 0 receive channels");
}

TEST_F(Accessibility, KnobsAreDialsWithTheValuesTheyShow) {
    EXPECT_EQ(role(mover()), ROLE_SYSTEM_DIAL);
    EXPECT_EQ(name(mover()), L"Center Freq (MHz)");
    EXPECT_EQ(name(mover()), windowText(mover()));
    EXPECT_EQ(value(mover()), L"405.00000");
    const HWND grid = part(L"tdKnob");
    EXPECT_EQ(role(grid), ROLE_SYSTEM_DIAL);
    EXPECT_EQ(name(grid), L"Grid (Hz)");
    EXPECT_NE(value(grid), L"");
    EXPECT_THAT(text(accessible(grid).Get(), &IAccessible::get_accHelp), testing::HasSubstr(L"Escape"));
}

TEST_F(Accessibility, EveryVisiblePartHasARoleAndEveryFocusablePartHasAName) {
    std::vector<HWND> parts{container.root()};
    for (const HWND window : container.children())
        if (IsWindowVisible(window))
            parts.push_back(window);
    EXPECT_GT(parts.size(), 20U);
    for (const HWND window : parts) {
        SCOPED_TRACE(testing::PrintToString(windowClass(window)) + " " + testing::PrintToString(windowText(window)));
        EXPECT_NE(role(window), 0);
        // The system names the list after the label before it.
        if ((GetWindowLongPtrW(window, GWL_STYLE) & WS_TABSTOP) && windowClass(window) != L"ComboBox") {
            EXPECT_NE(name(window), L"");
        }
    }
    EXPECT_EQ(name(container.root()), L"Spectrum display");
    EXPECT_EQ(role(container.root()), ROLE_SYSTEM_PANE);
    EXPECT_EQ(name(GetParent(mover())), L"Controls");
    EXPECT_EQ(role(GetParent(mover())), ROLE_SYSTEM_GROUPING);
    EXPECT_EQ(name(part(L"Button", L"Move cursor to center frequency")), L"Move cursor to center frequency");
    EXPECT_EQ(name(part(L"Button", L"Show Mouse Info")), L"Show Mouse Info");
    const HWND combo = part(L"ComboBox");
    EXPECT_EQ(windowText(GetWindow(combo, GW_HWNDPREV)), L"Grid Step") << "the label that names the list";
}

TEST_F(Accessibility, EveryPartReportsTheFocus) {
    EXPECT_EQ(state(spectrum()) & (STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_FOCUSED), STATE_SYSTEM_FOCUSABLE);
    SetFocus(spectrum());
    EXPECT_EQ(state(spectrum()) & STATE_SYSTEM_FOCUSED, STATE_SYSTEM_FOCUSED);
    EXPECT_EQ(state(mover()) & STATE_SYSTEM_FOCUSED, 0);
    Var focus;
    EXPECT_EQ(accessible(spectrum())->get_accFocus(&focus), S_OK);
    EXPECT_EQ(focus.vt, VT_I4);
    EXPECT_EQ(focus.lVal, CHILDID_SELF);
    Var inside;
    EXPECT_EQ(accessible(container.root())->get_accFocus(&inside), S_OK);
    ASSERT_EQ(inside.vt, VT_DISPATCH);
    ComPtr<IAccessible> found;
    ASSERT_EQ(inside.pdispVal->QueryInterface(IID_PPV_ARGS(found.GetAddressOf())), S_OK);
    EXPECT_EQ(text(found.Get(), &IAccessible::get_accName), L"Spectrum");
    Var nowhere;
    EXPECT_EQ(accessible(mover())->get_accFocus(&nowhere), S_FALSE);
    EXPECT_EQ(nowhere.vt, VT_EMPTY);
}

TEST_F(Accessibility, TheFrameReportsThatItsPictureHasTheFocus) {
    SetFocus(mover());
    pump();
    const HWND units = GetParent(spectrum());
    const HWND frame = GetParent(units);
    const COLORREF cue = GetSysColor(COLOR_HIGHLIGHT);
    const Picture without = windowPicture(frame);
    const Picture scale = windowPicture(units);
    EXPECT_EQ(without.count(cue, without.all()), 0);
    SetFocus(spectrum());
    pump();
    const Picture with = windowPicture(frame);
    RECT size{};
    GetClientRect(frame, &size);
    EXPECT_EQ(with.count(cue, with.all()), 2 * 3 * (size.right + size.bottom) - 4 * 3 * 3) << "three pixels all round";
    EXPECT_EQ(windowPicture(units), scale) << "nothing of it on the pictures";
    SetFocus(mover());
    pump();
    EXPECT_EQ(windowPicture(frame), without);
}

TEST_F(Accessibility, AScreenReaderMovesTheFocus) {
    EXPECT_EQ(accessible(mover())->accSelect(SELFLAG_TAKEFOCUS, self()), S_OK);
    EXPECT_EQ(GetFocus(), mover());
    EXPECT_EQ(accessible(spectrum())->accSelect(SELFLAG_TAKEFOCUS, self()), S_OK);
    EXPECT_EQ(GetFocus(), spectrum());
    EXPECT_EQ(accessible(GetParent(mover()))->accSelect(SELFLAG_TAKEFOCUS, self()), S_FALSE);
    EXPECT_EQ(accessible(mover())->accSelect(SELFLAG_EXTENDSELECTION, self()), E_INVALIDARG);
    EXPECT_EQ(GetFocus(), spectrum());
}

TEST_F(Accessibility, HiddenPartsReportTheInvisibleState) {
    HWND hidden = nullptr;
    for (const HWND window : container.children())
        if (windowClass(window) == L"tdKnob" && !IsWindowVisible(window))
            hidden = window;
    ASSERT_TRUE(hidden);
    EXPECT_NE(state(hidden) & STATE_SYSTEM_INVISIBLE, 0);
    EXPECT_EQ(state(mover()) & STATE_SYSTEM_INVISIBLE, 0);
    EXPECT_EQ(accessible(hidden)->accSelect(SELFLAG_TAKEFOCUS, self()), S_FALSE);
}

TEST_F(Accessibility, LocationsAreThoseOfTheWindows) {
    RECT area{};
    GetWindowRect(spectrum(), &area);
    LONG left = 0;
    LONG top = 0;
    LONG width = 0;
    LONG height = 0;
    EXPECT_EQ(accessible(spectrum())->accLocation(&left, &top, &width, &height, self()), S_OK);
    EXPECT_EQ(left, area.left);
    EXPECT_EQ(top, area.top);
    EXPECT_EQ(width, area.right - area.left);
    EXPECT_EQ(height, area.bottom - area.top);
}

TEST_F(Accessibility, OnlyChangesOfValuesRaiseEvents) {
    const ValueChanges changes;
    EXPECT_EQ(container.control->DrawByRange(401.0, 409.0), S_OK);
    EXPECT_EQ(changes.count(spectrum()), 1);
    const int before = changes.count(mover());
    // Drawing the same again changes no value.
    EXPECT_EQ(container.control->JustDrawIt(), S_OK);
    EXPECT_EQ(changes.count(spectrum()), 1);
    EXPECT_EQ(container.control->put_CursorVal(404.0), S_OK);
    EXPECT_EQ(changes.count(spectrum()), 2);
    SendMessageW(mover(), WM_KEYDOWN, VK_UP, 1);
    SendMessageW(mover(), WM_KEYUP, VK_UP, 1);
    EXPECT_GT(changes.count(mover()), before);
    EXPECT_EQ(changes.count(spectrum()), 3);
}

TEST_F(Accessibility, AccessibleObjectsCanOutliveTheControl) {
    const ComPtr<IAccessible> picture = accessible(spectrum());
    ComPtr<IAccessible> knob = accessible(mover());
    EXPECT_EQ(container.as<IOleObject>()->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_EQ(container.as<IOleObject>()->SetClientSite(nullptr), S_OK);
    EXPECT_EQ(container.control.Reset(), 0U);
    EXPECT_EQ(canUnloadNow(), S_FALSE) << "its code is still needed";
    Text said;
    Var told;
    EXPECT_EQ(picture->get_accName(self(), said.put()), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(said.get(), nullptr);
    EXPECT_EQ(knob->get_accState(self(), &told), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(knob->accSelect(SELFLAG_TAKEFOCUS, self()), CO_E_OBJNOTCONNECTED);
    knob.Reset();
}

TEST_F(Accessibility, OtherRequestsAreAnsweredByTheSystem) {
    EXPECT_EQ(SendMessageW(spectrum(), WM_GETOBJECT, 0, OBJID_NATIVEOM), 0);
    // Some callers leave the upper half undefined.
    const LRESULT answer = SendMessageW(spectrum(), WM_GETOBJECT, 0, static_cast<LPARAM>(OBJID_CLIENT));
    ASSERT_GT(answer, 0);
    ComPtr<IAccessible> object;
    EXPECT_EQ(ObjectFromLresult(answer, __uuidof(IAccessible), 0, reinterpret_cast<void**>(object.GetAddressOf())),
              S_OK);
    EXPECT_EQ(text(object.Get(), &IAccessible::get_accName), L"Spectrum");
    Text none;
    EXPECT_EQ(object->get_accName(Var(1), none.put()), E_INVALIDARG);
    EXPECT_EQ(object->get_accName(self(), nullptr), E_POINTER);
    EXPECT_EQ(object->put_accValue(self(), nullptr), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(object->accDoDefaultAction(self()), DISP_E_MEMBERNOTFOUND);
}

}  // namespace
}  // namespace kv::test
