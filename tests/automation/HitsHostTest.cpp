// The list of hits of the sample host in a process of its own.
#include <windows.h>

#include <commctrl.h>
#include <oleacc.h>
#include <wrl/client.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <string>

#include "host/resource.h"
#include "tests/automation/ChildProcess.h"
#include "tests/automation/HostProcess.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Module.h"
#include "tests/win32/TempFolder.h"

namespace kv::test {
namespace {

std::wstring hostCommand(const std::wstring& options) {
    return L"\"" + hostProgram() + L"\" " + options;
}

DWORD runHost(const std::wstring& options) {
    return ChildProcess(hostCommand(options + L" --quit")).wait();
}

TEST(HitsOfTheCommandLine, AreWrittenWithoutAUser) {
    const TempFolder folder(L"kv hits");
    const std::wstring file = folder.file(L"gmrs hits.csv");
    EXPECT_EQ(runHost(L"--plan \"" + samplePlan(L"gmrs.csv") + L"\" --hits \"" + file + L"\""), 0U);
    const std::string content = contentOf(file);
    EXPECT_THAT(content, testing::StartsWith("Receiver,Label,Product (MHz),Offset (kHz),Order,Formula,Power (dBm),"
                                             "Overlap (kHz)\r\n"));
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 1 + 224);
    EXPECT_THAT(content, testing::HasSubstr("\r\nRX01,FRS/GMRS channel 1 hand-held,462.550000,-12.500,3,2 x TX16 - "
                                            "TX17,-5.05,10.000\r\n"));
    EXPECT_FALSE(fileExists(file + L".1.tmp"));
}

TEST(HitsOfTheCommandLine, FollowOrdersAndRange) {
    const TempFolder folder(L"kv hits");
    const std::wstring file = folder.file(L"hits.csv");
    const std::wstring plan = L"--plan \"" + samplePlan(L"gmrs.csv") + L"\" --hits \"" + file + L"\" ";
    EXPECT_EQ(runHost(plan + L"--orders 2"), 0U);
    const std::string none = contentOf(file);
    EXPECT_EQ(std::count(none.begin(), none.end(), '\n'), 1) << "no hits: only the header";
    // Only the products on output 15: 3 of the form 2A-B and 9 of the form A+B-C, on channel 1.
    EXPECT_EQ(runHost(plan + L"--range 462.549,462.551"), 0U);
    const std::string content = contentOf(file);
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 1 + 12);
}

TEST(HitsOfTheCommandLine, AFailureHasItsExitCodeAndLeavesNothing) {
    const TempFolder folder(L"kv hits");
    const std::wstring plan = L"--plan \"" + samplePlan(L"gmrs.csv") + L"\" --hits ";
    EXPECT_EQ(runHost(plan + L"\"" + folder.file(L"missing\\hits.csv") + L"\""), 5U);
    EXPECT_EQ(runHost(plan + L"\"" + folder.path() + L"\""), 5U) << "a folder";
    EXPECT_EQ(runHost(L"--hits \"" + folder.file(L"hits.csv") + L"\""), 2U) << "no plan";
    EXPECT_FALSE(fileExists(folder.file(L"hits.csv")));
    EXPECT_FALSE(fileExists(folder.file(L"missing")));
}

class HitsHost : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(waitFor([this] { return (main = window(L"BandscopeHost")) != nullptr && spectrum() != nullptr; }));
        ASSERT_TRUE(waitFor([this] { return value().find(L"232 transmit channels") != std::wstring::npos; }))
            << value();
        PostMessageW(spectrum(), WM_KEYDOWN, VK_F4, 1);
        ASSERT_TRUE(waitFor([this] { return (hits = window(L"BandscopeHits")) != nullptr; }));
        ASSERT_TRUE(waitForSummary(L"224 hits: 124 products overlap 7 of 22 receivers."));
    }
    [[nodiscard]] HWND window(const wchar_t* className) const { return windowOfClass(host.id(), className); }
    [[nodiscard]] HWND spectrum() const {
        return findInner(main, [](HWND each) { return windowText(each) == L"picSpectrum"; });
    }
    [[nodiscard]] HWND list() const { return GetDlgItem(hits, IDC_HITS_LIST); }
    bool waitForSummary(const std::wstring& text) const {
        const bool came = waitFor([&] { return windowText(GetDlgItem(hits, IDC_HITS_SUMMARY)) == text; });
        EXPECT_TRUE(came) << "the summary is "
                          << testing::PrintToString(windowText(GetDlgItem(hits, IDC_HITS_SUMMARY)));
        return came;
    }
    /// What a screen reader says of the spectrum: range, cursor and number of channels.
    [[nodiscard]] std::wstring value() const {
        Microsoft::WRL::ComPtr<IAccessible> object;
        if (FAILED(AccessibleObjectFromWindow(spectrum(), static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                              reinterpret_cast<void**>(object.GetAddressOf()))))
            return L"not accessible";
        VARIANT self{};
        self.vt = VT_I4;
        self.lVal = CHILDID_SELF;
        BSTR text = nullptr;
        object->get_accValue(self, &text);
        const std::wstring result(text == nullptr ? L"" : text, SysStringLen(text));
        SysFreeString(text);
        return result;
    }
    [[nodiscard]] HWND focus() const {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(GetWindowThreadProcessId(main, nullptr), &info);
        return info.hwndFocus;
    }
    void clickFirstRow() const {
        RECT header{};
        GetClientRect(FindWindowExW(list(), nullptr, WC_HEADERW, nullptr), &header);
        const LPARAM at = MAKELPARAM(20, header.bottom + 6);
        PostMessageW(list(), WM_LBUTTONDOWN, MK_LBUTTON, at);
        PostMessageW(list(), WM_LBUTTONUP, 0, at);
    }
    void choose(int id) const { SendMessageW(main, WM_COMMAND, static_cast<WPARAM>(id), 0); }

    ChildProcess host{hostCommand(L"--plan \"" + samplePlan(L"gmrs.csv") + L"\"")};
    HWND main = nullptr;
    HWND hits = nullptr;
};

TEST_F(HitsHost, ARowMovesTheRangeAndTheCursorAndKeepsTheFocus) {
    EXPECT_THAT(value(), testing::StartsWith(L"462.35000 to 462.95000 MHz, cursor at 462.65000 MHz"));
    clickFirstRow();
    // TX15 + TX17 - TX16 on channel 1, 462.5625 MHz. The product's band ends 12.5 + 16.875 kHz from the channel's
    // center. With a tenth of that as room this is 32.3 kHz on each side, and the grid has an even number of 5 kHz
    // steps.
    EXPECT_TRUE(waitFor([this] { return value().find(L"cursor at 462.57500 MHz") != std::wstring::npos; })) << value();
    EXPECT_THAT(value(), testing::StartsWith(L"462.52500 to 462.60500 MHz"));
    EXPECT_EQ(focus(), list());
}

TEST_F(HitsHost, TheListFollowsTheOrdersOfTheProducts) {
    choose(IDC_SECOND);
    EXPECT_TRUE(waitFor([this] { return value().find(L"288 transmit channels") != std::wstring::npos; })) << value();
    waitForSummary(L"224 hits: 124 products overlap 7 of 22 receivers.");
    choose(IDC_THIRD);
    waitForSummary(L"No hits.");
    EXPECT_THAT(windowText(GetDlgItem(hits, IDC_HITS_EMPTY)),
                testing::HasSubstr(L"None of the 56 products overlaps a receiver"));
    choose(IDC_SECOND);
    EXPECT_TRUE(waitFor([this] {
        return windowText(GetDlgItem(hits, IDC_HITS_EMPTY)).find(L"No products are computed") != std::wstring::npos;
    }));
}

TEST_F(HitsHost, F4GoesBackToTheSpectrumAndEscapeClosesTheList) {
    ASSERT_TRUE(waitFor([this] { return focus() == list(); }));
    PostMessageW(list(), WM_KEYDOWN, VK_F4, 1);
    EXPECT_TRUE(waitFor([this] { return focus() != nullptr && IsChild(main, focus()); }));
    EXPECT_TRUE(IsWindowVisible(hits));
    PostMessageW(list(), WM_KEYDOWN, VK_ESCAPE, 1);
    EXPECT_TRUE(waitFor([this] { return !IsWindowVisible(hits); }));
    PostMessageW(main, WM_CLOSE, 0, 0);
    EXPECT_EQ(host.wait(), 0U);
}

TEST_F(HitsHost, ExitsNormallyWithTheListOpen) {
    PostMessageW(main, WM_CLOSE, 0, 0);
    EXPECT_EQ(host.wait(), 0U);
}

}  // namespace
}  // namespace kv::test
