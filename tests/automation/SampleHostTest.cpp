// The sample host in a process of its own, operated through its menu.
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <string>

#include "host/resource.h"
#include "tests/automation/ChildProcess.h"
#include "tests/automation/HostProcess.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Module.h"
#include "tests/automation/OtherClipboard.h"
#include "tests/automation/Picture.h"
#include "tests/win32/TempFolder.h"

namespace kv::test {
namespace {

constexpr wchar_t kReportTitle[] = L"Mouse Information";

std::wstring saveCommand(const std::wstring& picture) {
    return L"\"" + hostProgram() + L"\" --plan \"" + samplePlan(L"gmrs.csv") + L"\" --save \"" + picture + L"\"";
}

int countDifferent(const Picture& a, const Picture& b) {
    int count = 0;
    for (std::size_t i = 0; i < std::min(a.pixels.size(), b.pixels.size()); ++i)
        count += a.pixels[i] != b.pixels[i] ? 1 : 0;
    return count;
}

std::wstring messageOf(HWND box) {
    std::wstring text;
    for (HWND label = nullptr; (label = FindWindowExW(box, label, L"Static", nullptr)) != nullptr;)
        text += windowText(label);
    // The list of errors, if the dialog has one.
    std::wstring list(40000, L'\0');
    list.resize(static_cast<std::size_t>(SendMessageW(FindWindowExW(box, nullptr, L"Edit", nullptr), WM_GETTEXT,
                                                      list.size(), reinterpret_cast<LPARAM>(list.data()))));
    return text + list;
}

class SampleHost : public testing::Test {
  protected:
    void SetUp() override {
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
        ASSERT_TRUE(waitFor([this] { return (main = window(L"BandscopeHost")) != nullptr && fileExists(picture); }));
    }
    [[nodiscard]] HWND window(const wchar_t* title) const {
        return findWindow(host.id(), [&](HWND each) { return windowText(each).find(title) != std::wstring::npos; });
    }
    [[nodiscard]] HWND report() const { return window(kReportTitle); }
    [[nodiscard]] bool waitForReport(bool open) const {
        return waitFor([&] { return (report() != nullptr) == open; });
    }
    void choose(int command) const { SendMessageW(main, WM_COMMAND, static_cast<WPARAM>(command), 0); }
    [[nodiscard]] HWND inside(const wchar_t* name) const {
        return findInner(main, [&](HWND each) { return windowText(each) == name; });
    }
    [[nodiscard]] std::wstring reportedText() const {
        const HWND edit = FindWindowExW(report(), nullptr, L"EDIT", nullptr);
        std::wstring text(40000, L'\0');
        text.resize(static_cast<std::size_t>(
            SendMessageW(edit, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
        return text;
    }

    /// The dialog or message box that the host shows; null without one.
    [[nodiscard]] HWND dialog() const { return windowOfClass(host.id(), L"#32770"); }
    [[nodiscard]] HWND waitForDialog() const {
        HWND found = nullptr;
        EXPECT_TRUE(waitFor([&] { return (found = dialog()) != nullptr; }));
        return found;
    }
    void closeDialog(HWND shown) const {
        PostMessageW(shown, WM_COMMAND, IDOK, 0);
        EXPECT_TRUE(waitFor([&] { return !IsWindow(shown); }));
    }
    /// Opens a plan by the menu and the file dialog.
    void openPlan(const std::wstring& path) const {
        PostMessageW(main, WM_COMMAND, IDC_OPEN, 0);
        const HWND question = waitForDialog();
        HWND name = nullptr;
        EXPECT_TRUE(waitFor([&] {
            name = findInner(question, [](HWND each) { return windowClass(each) == L"Edit" && IsWindowVisible(each); });
            return name != nullptr;
        }));
        SendMessageW(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
        closeDialog(question);
    }

    TempFile file{L"sample host.bmp"};
    std::wstring picture = file.path();
    ChildProcess host{saveCommand(picture)};
    HWND main = nullptr;
};

TEST_F(SampleHost, CopiesThePictureThatItSaves) {
    warmUpClipboard();
    const Picture saved = Picture::read(picture);
    ASSERT_GT(saved.width, 300);
    putText(L"what was there before");
    choose(IDC_COPY);
    const ClipboardContent content = readClipboardElsewhere();
    EXPECT_TRUE(content.bitmap == saved);
    EXPECT_TRUE(content.dib == saved);
}

TEST_F(SampleHost, OpensTheMouseReportWhichListsWhatIsUnderThePointer) {
    EXPECT_EQ(report(), nullptr);
    choose(IDC_MOUSE_REPORT);
    ASSERT_TRUE(waitForReport(true));
    const HWND spectrum = inside(L"picSpectrum");
    ASSERT_NE(spectrum, nullptr);
    RECT client{};
    GetClientRect(spectrum, &client);
    std::wstring listed;
    for (int x = 0; x < client.right && listed.empty(); x += 2) {
        SendMessageW(spectrum, WM_MOUSEMOVE, 0, MAKELPARAM(x, 20));
        listed = reportedText();
    }
    EXPECT_THAT(listed, testing::StartsWith(L"Mouse Location:\r\n4"));
    EXPECT_THAT(listed, testing::HasSubstr(L" MHz"));
}

TEST_F(SampleHost, OpensTheReportAgainAfterTheUserClosedIt) {
    choose(IDC_MOUSE_REPORT);
    ASSERT_TRUE(waitForReport(true));
    SendMessageW(FindWindowExW(report(), nullptr, L"BUTTON", L"Close"), BM_CLICK, 0, 0);
    ASSERT_TRUE(waitForReport(false));
    choose(IDC_MOUSE_REPORT);
    EXPECT_TRUE(waitForReport(true));
}

TEST_F(SampleHost, ExitsNormallyWithTheReportOpen) {
    choose(IDC_MOUSE_REPORT);
    ASSERT_TRUE(waitForReport(true));
    PostMessageW(main, WM_CLOSE, 0, 0);
    EXPECT_EQ(host.wait(), 0U);
}

TEST_F(SampleHost, PlansThatCannotBeOpenedLeaveTheTitleAndThePicture) {
    warmUpClipboard();
    const Picture before = Picture::read(picture);
    const std::wstring title = windowText(main);
    ASSERT_EQ(title, L"gmrs.csv - BandscopeHost");
    const std::string header = "kind,key,frequency,bandwidth\n";
    std::string many = header;
    for (int i = 0; i < 200; ++i)
        many += "TX,TX" + std::to_string(i) + "," + std::to_string(100 + i) + ",10\n";
    const std::pair<std::string, const wchar_t*> plans[] = {
        {"kind;key;frequency;bandwidth\n", L"semicolons"},
        {header + "TX,TX1,160,20\nTX,TX2,160.1,20\nTX,tx1,160.2,20\n", L"line 4, column 4 (key)"},
        {many, L"at most 2000000"},
    };
    for (const auto& [text, problem] : plans) {
        const TempFile plan(L"host plan.csv");
        writeContent(plan.path(), text);
        openPlan(plan.path());
        const HWND box = waitForDialog();
        EXPECT_THAT(messageOf(box), testing::HasSubstr(problem));
        closeDialog(box);
        EXPECT_EQ(windowText(main), title);
        choose(IDC_COPY);
        EXPECT_TRUE(readClipboardElsewhere().dib == before);
    }
}

TEST_F(SampleHost, OpensAnotherPlanAfterOneThatCannotBeOpened) {
    const TempFile bad(L"bad plan.csv");
    writeContent(bad.path(), "kind,key\n");
    openPlan(bad.path());
    closeDialog(waitForDialog());
    const TempFile good(L"good plan.csv");
    writeContent(good.path(), "kind,key,frequency,bandwidth\nTX,TX1,160,20\nTX,TX2,160.1,20\n");
    openPlan(good.path());
    EXPECT_TRUE(waitFor([&] { return windowText(main).find(L"good plan.csv - BandscopeHost") != std::wstring::npos; }));
}

TEST_F(SampleHost, ZoomsByMenuAndGoesBackToARangeThatTheUserLeft) {
    warmUpClipboard();
    const auto copied = [this] {
        choose(IDC_COPY);
        return readClipboardElsewhere().dib;
    };
    const Picture opened = copied();
    choose(IDC_BACK);
    EXPECT_TRUE(copied() == opened) << "the user has left no range";
    choose(IDC_ZOOM_IN);
    const int zoomed = countDifferent(copied(), opened);
    EXPECT_GT(zoomed, 0);
    choose(IDC_ZOOM_OUT);
    // The range is the same but for rounding, which may move an edge that is between two pixels.
    const Picture first = copied();
    EXPECT_LT(countDifferent(first, opened), zoomed / 10);
    SendMessageW(inside(L"picSpectrum"), WM_KEYDOWN, VK_RIGHT, 1);
    const Picture right = copied();
    EXPECT_FALSE(right == first);
    choose(IDC_BACK);
    EXPECT_TRUE(copied() == first);
    choose(IDC_FORWARD);
    EXPECT_TRUE(copied() == right);
}

TEST_F(SampleHost, ShowsAndHidesTheMarker) {
    const HWND readOut = FindWindowExW(inside(L"picSpectrum"), nullptr, L"STATIC", nullptr);
    ASSERT_NE(readOut, nullptr);
    EXPECT_FALSE(IsWindowVisible(readOut));
    choose(IDC_MARKER);
    EXPECT_TRUE(waitFor([&] { return IsWindowVisible(readOut) != FALSE; }));
    choose(IDC_MARKER);
    EXPECT_TRUE(waitFor([&] { return IsWindowVisible(readOut) == FALSE; }));
}

}  // namespace
}  // namespace kv::test
