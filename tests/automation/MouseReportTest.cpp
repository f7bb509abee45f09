// The report of what is under the mouse, in its real window.
#include "tests/automation/UserInput.h"

namespace kv::test {
namespace {

using testing::HasSubstr;

struct Windows {
    std::vector<HWND> found;
};

BOOL CALLBACK collectReports(HWND window, LPARAM parameter) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && windowText(window) == L"Mouse Information")
        reinterpret_cast<Windows*>(parameter)->found.push_back(window);
    return TRUE;
}

/// The windows of reports, hidden or not.
std::vector<HWND> reports() {
    Windows windows;
    EnumWindows(&collectReports, reinterpret_cast<LPARAM>(&windows));
    return windows.found;
}

class MouseReportWindow : public UserInput {
  protected:
    void SetUp() override {
        UserInput::SetUp();
        fill();
    }
    [[nodiscard]] HWND tickBox() const { return container.child(L"Button", L"Show Mouse Info"); }
    [[nodiscard]] bool isTicked() const {
        pump();
        return SendMessageW(tickBox(), BM_GETCHECK, 0, 0) == BST_CHECKED;
    }
    void clickTickBox() const {
        SendMessageW(tickBox(), BM_CLICK, 0, 0);
        pump();
    }
    /// The only report window.
    [[nodiscard]] HWND report() const {
        const std::vector<HWND> all = reports();
        EXPECT_EQ(all.size(), 1U);
        return all.empty() ? nullptr : all.front();
    }
    [[nodiscard]] static bool isOpen() {
        pump();
        const std::vector<HWND> all = reports();
        return all.size() == 1 && IsWindowVisible(all.front());
    }
    [[nodiscard]] std::wstring text() const {
        pump();
        const HWND edit = FindWindowExW(report(), nullptr, L"EDIT", nullptr);
        return windowText(edit);
    }
    [[nodiscard]] HWND button(const wchar_t* caption) const {
        return FindWindowExW(report(), nullptr, L"BUTTON", caption);
    }
    void pointAt(double frequency) const {
        RECT client{};
        GetClientRect(spectrum(), &client);
        const int x = static_cast<int>(std::lround((frequency - 380.0) / 100.0 * client.right));
        SendMessageW(spectrum(), WM_MOUSEMOVE, 0, MAKELPARAM(x, 20));
        pump();
    }
};

TEST_F(MouseReportWindow, OpensAtATickAndShowsWhatIsUnderThePointer) {
    EXPECT_TRUE(reports().empty());
    clickTickBox();
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(text(), L"");
    pointAt(400.5);
    EXPECT_TRUE(text().starts_with(L"Mouse Location:\r\n400.")) << testing::PrintToString(text());
    EXPECT_THAT(text(), HasSubstr(L"\r\n\r\nTX Channels:\r\n400.00000 MHz "));
    EXPECT_THAT(text(), HasSubstr(L"\r\n     30.00"));
    pointAt(459.5);
    EXPECT_THAT(text(), HasSubstr(L"\r\n\r\nRX Channels:\r\n460.00000 MHz "));
    pointAt(440.0);
    EXPECT_EQ(text(), L"");
}

TEST_F(MouseReportWindow, TheHostOpensItWithoutAReport) {
    EXPECT_EQ(container.control->put_bMouseInfo(VARIANT_FALSE), S_OK);
    EXPECT_TRUE(reports().empty());
    EXPECT_EQ(container.control->put_bMouseInfo(VARIANT_TRUE), S_OK);
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(isTicked());
    EXPECT_EQ(text(), L"");
    EXPECT_EQ(container.control->put_bMouseInfo(VARIANT_FALSE), S_OK);
    EXPECT_FALSE(isOpen());
    EXPECT_FALSE(isTicked());
}

TEST_F(MouseReportWindow, HasACloseButtonAndOneToPrintAndCannotBeEdited) {
    clickTickBox();
    EXPECT_TRUE(IsWindowVisible(button(L"Close")));
    EXPECT_TRUE(IsWindowVisible(button(L"&Print")));
    EXPECT_FALSE(IsWindowVisible(button(L"&Cancel")));
    EXPECT_FALSE(IsWindowVisible(button(L"Editing Enabled")));
    const HWND edit = FindWindowExW(report(), nullptr, L"EDIT", nullptr);
    EXPECT_TRUE(GetWindowLongW(edit, GWL_STYLE) & ES_READONLY);
}

TEST_F(MouseReportWindow, DoesNotTakeTheFocus) {
    SetFocus(gridKnob());
    ASSERT_EQ(GetFocus(), gridKnob());
    EXPECT_EQ(container.control->put_bMouseInfo(VARIANT_TRUE), S_OK);
    pointAt(400.5);
    EXPECT_EQ(GetFocus(), gridKnob());
}

TEST_F(MouseReportWindow, CloseHidesItAndUnticksTheBox) {
    clickTickBox();
    const HWND window = report();
    SendMessageW(button(L"Close"), BM_CLICK, 0, 0);
    EXPECT_FALSE(isOpen());
    EXPECT_FALSE(isTicked());
    pointAt(400.5);
    EXPECT_FALSE(isOpen());
    clickTickBox();
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(report(), window) << "the same window again";
}

TEST_F(MouseReportWindow, EscapeHidesItAndUnticksTheBox) {
    clickTickBox();
    PostMessageW(FindWindowExW(report(), nullptr, L"EDIT", nullptr), WM_KEYDOWN, VK_ESCAPE, 1);
    pump();
    EXPECT_FALSE(isOpen());
    EXPECT_FALSE(isTicked());
}

TEST_F(MouseReportWindow, ItsCloseBoxUnticksTheBoxAndATickBringsAnother) {
    clickTickBox();
    SendMessageW(report(), WM_CLOSE, 0, 0);
    EXPECT_TRUE(reports().empty());
    EXPECT_FALSE(isTicked());
    clickTickBox();
    EXPECT_TRUE(isOpen());
    pointAt(400.5);
    EXPECT_THAT(text(), HasSubstr(L"TX Channels:"));
}

TEST_F(MouseReportWindow, IsDestroyedWhenTheControlCloses) {
    clickTickBox();
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(container.as<IOleObject>()->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_TRUE(reports().empty());
}

TEST_F(MouseReportWindow, IsDestroyedWithTheHostsWindow) {
    clickTickBox();
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(GetWindow(report(), GW_OWNER), container.host.get());
    container.host.destroy();
    pump();
    EXPECT_TRUE(reports().empty());
}

TEST_F(MouseReportWindow, IsDestroyedWithTheLastReference) {
    {
        Scope unsited;
        unsited.setBMouseInfo(true);
        EXPECT_TRUE(isOpen());
    }
    pump();
    EXPECT_TRUE(reports().empty());
}

}  // namespace
}  // namespace kv::test
