// How the sample host opens plans without its dialog, and what it remembers from one run to the next.
#include <gmock/gmock.h>

#include "host/resource.h"
#include "tests/automation/HostProcess.h"
#include "tests/win32/TempFolder.h"

namespace kv::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr wchar_t kVariable[] = L"BANDSCOPEHOST_SETTINGS";
const std::string kTwo = kPlanHeader + "TX,TX1,160,20\nTX,TX2,160.1,20\n";

/// Hosts with settings in a folder of the test's own.
class HostFiles : public testing::Test {
  protected:
    void SetUp() override {
        std::wstring before(MAX_PATH + 100, L'\0');
        before.resize(GetEnvironmentVariableW(kVariable, before.data(), static_cast<DWORD>(before.size())));
        earlier_ = before;
        SetEnvironmentVariableW(kVariable, settingsPath().c_str());
    }
    void TearDown() override { SetEnvironmentVariableW(kVariable, earlier_.c_str()); }

    /// In a folder that the host creates.
    [[nodiscard]] std::wstring settingsPath() const { return folder.file(L"host\\settings.ini"); }
    [[nodiscard]] std::string settings() const { return contentOf(settingsPath()); }
    void writeSettings(const std::string& text) const {
        CreateDirectoryW(folder.file(L"host").c_str(), nullptr);
        writeContent(settingsPath(), text);
    }
    [[nodiscard]] std::wstring plan(const std::wstring& name, const std::string& text = kTwo) const {
        writeContent(folder.file(name), text);
        return folder.file(name);
    }
    [[nodiscard]] static std::wstring opening(const std::wstring& path) { return L"--plan \"" + path + L"\""; }

    TempFolder folder{L"kv host files "};

  private:
    std::wstring earlier_;
};

std::string narrow(const std::wstring& text) {
    return {text.begin(), text.end()};
}

TEST_F(HostFiles, ARecentPlanIsOpenedFromTheMenu) {
    const std::wstring first = plan(L"first.csv");
    const std::wstring second = plan(L"second.csv");
    for (const std::wstring& path : {first, second}) {
        HostProcess host(opening(path));
        EXPECT_TRUE(host.showsPlan(path.substr(path.find_last_of(L'\\') + 1)));
        EXPECT_EQ(host.close(), 0U);
    }
    EXPECT_THAT(settings(), HasSubstr("\r\n1=" + narrow(second) + "\r\n2=" + narrow(first) + "\r\n"));
    HostProcess host(L"");
    EXPECT_EQ(host.title(), L"BandscopeHost");
    host.chooseFromFileMenu(L'2');
    EXPECT_TRUE(host.showsPlan(L"first.csv"));
    EXPECT_EQ(host.close(), 0U);
    EXPECT_THAT(settings(), HasSubstr("\r\n1=" + narrow(first) + "\r\n2=" + narrow(second) + "\r\n"));
}

TEST_F(HostFiles, ARecentPlanThatIsMissingIsRemovedWithAMessage) {
    const std::wstring present = plan(L"present.csv");
    writeSettings("[Recent plans]\r\n1=" + narrow(folder.file(L"missing.csv")) + "\r\n2=" + narrow(present) + "\r\n");
    HostProcess host(L"");
    host.chooseFromFileMenu(L'1');
    const HWND box = host.waitForDialog();
    std::wstring message;
    for (HWND label = nullptr; (label = FindWindowExW(box, label, L"Static", nullptr)) != nullptr;)
        message += textOf(label);
    EXPECT_THAT(message, HasSubstr(L"missing.csv\" was not found. It has been removed"));
    host.closeDialog(box);
    EXPECT_THAT(settings(), Not(HasSubstr("missing.csv")));
    EXPECT_EQ(host.title(), L"BandscopeHost");
    host.chooseFromFileMenu(L'1');
    EXPECT_TRUE(host.showsPlan(L"present.csv"));
    EXPECT_EQ(host.close(), 0U);
}

TEST_F(HostFiles, APlanWithErrorsDoesNotBecomeARecentOne) {
    HostProcess host(opening(plan(L"wrong.csv", kPlanHeader + "TX,TX1,?,10\n")));
    host.closeDialog(host.waitForDialog());
    EXPECT_EQ(host.close(), 0U);
    EXPECT_THAT(settings(), AllOf(HasSubstr("[Window]"), Not(HasSubstr("wrong.csv"))));
}

TEST_F(HostFiles, ThePlaceIsRemembered) {
    RECT placed{};
    {
        HostProcess host(L"");
        SetWindowPos(host.main(), nullptr, 60, 40, 1010, 690, SWP_NOZORDER);
        GetWindowRect(host.main(), &placed);
        EXPECT_EQ(host.close(), 0U);
    }
    const auto isThere = [&](const HostProcess& host) {
        RECT now{};
        return waitFor([&] { return GetWindowRect(host.main(), &now) && EqualRect(&now, &placed); });
    };
    {
        HostProcess host(L"");
        EXPECT_TRUE(isThere(host));
        SendMessageW(host.main(), WM_SYSCOMMAND, SC_MAXIMIZE, 0);
        EXPECT_TRUE(waitFor([&] { return IsZoomed(host.main()) != FALSE; }));
        EXPECT_EQ(host.close(), 0U);
    }
    HostProcess host(L"");
    EXPECT_TRUE(waitFor([&] { return IsZoomed(host.main()) != FALSE; }));
    SendMessageW(host.main(), WM_SYSCOMMAND, SC_RESTORE, 0);
    EXPECT_TRUE(isThere(host));
    EXPECT_EQ(host.close(), 0U);
}

TEST_F(HostFiles, AWindowOfAMonitorThatIsGoneIsMovedOntoOneThatExists) {
    writeSettings("[Window]\r\nLeft=30000\r\nTop=-20000\r\nWidth=900\r\nHeight=650\r\nMaximized=0\r\n");
    HostProcess host(L"");
    RECT rect{};
    GetWindowRect(host.main(), &rect);
    EXPECT_EQ(rect.right - rect.left, 900);
    EXPECT_EQ(rect.top, 0);
    EXPECT_LE(rect.right, GetSystemMetrics(SM_CXSCREEN));
    EXPECT_EQ(host.close(), 0U);
}

TEST_F(HostFiles, ARememberedWindowIsNotTooSmallForTheControl) {
    writeSettings("[Window]\r\nLeft=50\r\nTop=30\r\nWidth=60\r\nHeight=40\r\n");
    HostProcess host(L"");
    RECT rect{};
    GetWindowRect(host.main(), &rect);
    EXPECT_GE(rect.right - rect.left, 10800 / 15) << "MinWid in pixels";
    EXPECT_GE(rect.bottom - rect.top, 7200 / 15);
    EXPECT_EQ(host.close(), 0U);
}

TEST_F(HostFiles, TheSizeOfTheCommandLineWinsOverTheRememberedOne) {
    RECT expected{};
    {
        HostProcess host(L"--no-settings --size 1000x600");
        GetClientRect(host.main(), &expected);
        EXPECT_EQ(host.close(), 0U);
    }
    writeSettings("[Window]\r\nLeft=50\r\nTop=30\r\nWidth=900\r\nHeight=650\r\nMaximized=1\r\n");
    HostProcess host(L"--size 1000x600");
    RECT rect{};
    RECT client{};
    GetWindowRect(host.main(), &rect);
    GetClientRect(host.main(), &client);
    EXPECT_FALSE(IsZoomed(host.main()));
    EXPECT_EQ(rect.left, 50);
    EXPECT_EQ(rect.top, 30);
    EXPECT_EQ(client.right, 1000);
    EXPECT_EQ(client.bottom, expected.bottom);
    EXPECT_EQ(host.close(), 0U);
}

/// The value that the file has for an option: 0 or 1, other characters without one.
char optionOf(const std::string& settings, const std::string& name) {
    const std::size_t at = settings.find("\r\n" + name + "=");
    return at == std::string::npos ? '-' : settings[at + name.size() + 3];
}

TEST_F(HostFiles, OptionsAreRememberedAndApplied) {
    const std::pair<int, const char*> options[] = {{IDC_WHEEL_ZOOM, "WheelZoom"},
                                                   {IDC_POWER_AXIS, "PowerAxis"},
                                                   {IDC_LEGEND, "Legend"},
                                                   {IDC_LABELS, "ChannelLabels"},
                                                   {IDC_SNAP, "Snap"},
                                                   {IDC_SECOND, "SecondOrder"},
                                                   {IDC_THIRD, "ThirdOrder"},
                                                   {IDC_FIFTH, "FifthOrder"},
                                                   {IDC_EVERY_FORM, "EveryFifthForm"}};
    std::string first;
    for (const bool again : {false, true}) {
        HostProcess host(L"");
        for (const auto& [command, name] : options)
            host.choose(command);
        EXPECT_EQ(host.close(), 0U);
        for (const auto& [command, name] : options) {
            EXPECT_THAT(std::string(1, optionOf(settings(), name)), testing::AnyOf("0", "1")) << name;
            // What was switched twice is as at first only if the second run began with what the first one left.
            EXPECT_EQ(optionOf(settings(), name) != optionOf(first, name), true) << name;
        }
        first = again ? first : settings();
    }
}

TEST_F(HostFiles, RememberedOrdersCountUnlessTheCommandLineHasOthers) {
    writeSettings("[Options]\r\nSecondOrder=0\r\nThirdOrder=0\r\nFifthOrder=0\r\n");
    const std::wstring path = plan(L"two.csv");
    {
        HostProcess host(opening(path));
        EXPECT_TRUE(host.showsPlan(L"two.csv"));
        EXPECT_THAT(host.status(2), HasSubstr(L", 0 products"));
        EXPECT_EQ(host.close(), 0U);
    }
    HostProcess host(opening(path) + L" --orders 3");
    EXPECT_TRUE(host.showsPlan(L"two.csv"));
    EXPECT_THAT(host.status(2), HasSubstr(L", 2 products"));
    EXPECT_EQ(host.close(), 0U);
    EXPECT_EQ(optionOf(settings(), "ThirdOrder"), '0') << "the user has chosen nothing else";
}

TEST_F(HostFiles, ADamagedFileDoesNotStopTheStart) {
    std::string noise(5000, '\0');
    for (std::size_t i = 0; i < noise.size(); ++i)
        noise[i] = static_cast<char>(i * i * 31U + i / 7U);
    const std::string damaged[] = {
        noise, "[Window]\r\nLeft=1e300\r\nTop=nan\r\nWidth=-5\r\nHeight=", std::string(3'000'000, 'x'),
        "[Options]\r\nThirdOrder=maybe\r\n[Recent plans]\r\n1=\x01\xFF\r\n"};
    for (const std::string& text : damaged) {
        writeSettings(text);
        HostProcess host(opening(plan(L"two.csv")));
        EXPECT_TRUE(host.showsPlan(L"two.csv"));
        EXPECT_THAT(host.status(2), HasSubstr(L", 2 products"));
        EXPECT_EQ(host.close(), 0U);
        EXPECT_THAT(settings(), HasSubstr("two.csv\r\n")) << "the file was replaced by a good one";
    }
}

TEST_F(HostFiles, AFileThatCannotBeWrittenIsNoError) {
    CreateDirectoryW(folder.file(L"host").c_str(), nullptr);
    CreateDirectoryW(settingsPath().c_str(), nullptr);
    HostProcess host(opening(plan(L"two.csv")));
    EXPECT_TRUE(host.showsPlan(L"two.csv"));
    EXPECT_EQ(host.close(), 0U);
    RemoveDirectoryW(settingsPath().c_str());
}

TEST_F(HostFiles, SettingsAreNeitherReadNorWrittenWithNoSettingsOrQuit) {
    const std::string before = "[Options]\r\nThirdOrder=0\r\n";
    writeSettings(before);
    const std::wstring path = plan(L"two.csv");
    {
        HostProcess host(opening(path) + L" --no-settings");
        EXPECT_TRUE(host.showsPlan(L"two.csv"));
        EXPECT_THAT(host.status(2), HasSubstr(L", 2 products"));
        host.choose(IDC_LEGEND);
        host.chooseFromFileMenu(L'1');  // plans of the same run are in the menu
        EXPECT_TRUE(host.showsPlan(L"two.csv"));
        EXPECT_EQ(host.close(), 0U);
    }
    EXPECT_EQ(HostRun(opening(path) + L" --quit").code, 0U);
    EXPECT_EQ(settings(), before);
    DeleteFileW(settingsPath().c_str());
    EXPECT_EQ(HostRun(opening(path) + L" --quit").code, 0U);
    EXPECT_FALSE(fileExists(settingsPath()));
}

TEST_F(HostFiles, F5ReloadsAChangedPlanAndKeepsTheRange) {
    const std::wstring path = plan(L"two.csv");
    HostProcess host(opening(path));
    ASSERT_TRUE(host.showsPlan(L"two.csv"));
    host.choose(IDC_ZOOM_IN);
    const std::wstring range = host.status(1);
    host.choose(IDC_REDRAW);
    EXPECT_TRUE(host.waitForStatus(L"The file has not changed. The picture was drawn again."));
    writeContent(path, kTwo + "TX,TX3,160.2,20\n");
    host.choose(IDC_REDRAW);
    EXPECT_TRUE(host.waitForStatus(L"The file had changed. The plan was opened again."));
    EXPECT_THAT(host.status(2), HasSubstr(L"3 transmitters"));
    EXPECT_EQ(host.status(1), range);
    host.choose(IDC_REDRAW);
    EXPECT_TRUE(host.waitForStatus(L"The file has not changed. The picture was drawn again."));
    writeContent(path, kPlanHeader + "TX,TX1,470,20\nTX,TX2,470.1,20\n");
    host.choose(IDC_REDRAW);
    EXPECT_TRUE(host.waitForStatus(L"The file had changed. The plan was opened again."));
    EXPECT_THAT(host.status(1), HasSubstr(L"469.")) << "nothing of this plan is in the earlier range";
    EXPECT_EQ(host.close(), 0U);
}

TEST_F(HostFiles, AChangedFileWithErrorsLeavesThePlan) {
    const std::wstring path = plan(L"two.csv");
    HostProcess host(opening(path));
    ASSERT_TRUE(host.showsPlan(L"two.csv"));
    host.choose(IDC_ZOOM_IN);
    const std::wstring range = host.status(1);
    const std::wstring counts = host.status(2);
    writeContent(path, kTwo + "TX,TX3,?,20\nTX,TX4,?,20\n");
    host.post(IDC_REDRAW);
    const HWND dialog = host.waitForDialog();
    EXPECT_EQ(linesOf(textOf(GetDlgItem(dialog, IDC_TEXT))).size(), 2U);
    host.closeDialog(dialog);
    EXPECT_TRUE(host.waitForStatus(L"The changed file could not be opened. The earlier plan is still shown."));
    EXPECT_EQ(host.status(1), range);
    EXPECT_EQ(host.status(2), counts);
    EXPECT_EQ(host.title(), L"two.csv - BandscopeHost");
    DeleteFileW(path.c_str());
    host.choose(IDC_REDRAW);
    EXPECT_TRUE(host.waitForStatus(L"The plan's file was not found. The picture was drawn again."));
    EXPECT_EQ(host.status(2), counts);
    EXPECT_EQ(host.close(), 0U);
}

}  // namespace
}  // namespace kv::test
