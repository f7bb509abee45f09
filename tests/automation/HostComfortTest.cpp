// The sample host's description of its options, its list of errors, its About box and its printed heading.
#include <gmock/gmock.h>

#include <cstring>

#include "host/PrintedPage.h"
#include "host/resource.h"
#include "tests/automation/HostProcess.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Module.h"
#include "tests/automation/OtherClipboard.h"
#include "tests/automation/Picture.h"
#include "tests/win32/TempFolder.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::vector<std::string> linesOfBytes(const std::string& bytes) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < bytes.size();) {
        const std::size_t end = bytes.find("\r\n", begin);
        EXPECT_NE(end, std::string::npos) << "the last line is not ended";
        if (end == std::string::npos)
            break;
        lines.push_back(bytes.substr(begin, end - begin));
        begin = end + 2;
    }
    return lines;
}

TEST(HostHelp, IsWrittenToRedirectedOutput) {
    std::string first;
    for (const wchar_t* option : {L"--help", L"-h", L"/?", L"--unknown --help"}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(option)));
        const HostRun run(option);
        EXPECT_EQ(run.code, 0U);
        EXPECT_EQ(run.error, "");
        EXPECT_THAT(run.output, StartsWith("BandscopeHost [--plan FILE]"));
        for (const char* described : {"\r\n--plan FILE       channel plan", "\r\n--no-settings     ", "\r\n--quit "})
            EXPECT_THAT(run.output, HasSubstr(described));
        for (const std::string& line : linesOfBytes(run.output)) {
            EXPECT_LE(line.size(), 79U) << line;
            EXPECT_THAT(line, Not(HasSubstr("\t")));
        }
        first = first.empty() ? run.output : first;
        EXPECT_EQ(run.output, first);
    }
}

std::string wrongRows(int count) {
    std::string rows;
    for (int i = 0; i < count; ++i)
        rows += "TX,TX" + std::to_string(i) + ",?,10\n";
    return rows;
}

class HostErrors : public testing::Test {
  protected:
    void writePlan(const std::string& rows) const { writeContent(plan.path(), kPlanHeader + rows); }
    [[nodiscard]] std::wstring options() const { return L"--no-settings --plan \"" + plan.path() + L"\""; }

    TempFile plan{L"wrong plan.csv"};
};

TEST_F(HostErrors, AreAllWrittenWithQuit) {
    writePlan("TX,TX1,abc,10\nTX,TX2,100,10\nFM,TX3,100,0\n");
    const HostRun run(options() + L" --quit");
    EXPECT_EQ(run.code, 3U);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(
        linesOfBytes(run.error),
        ElementsAre(AllOf(StartsWith("BandscopeHost: "), HasSubstr(", line 2, column 8 (frequency): expected")),
                    AllOf(StartsWith("BandscopeHost: "), HasSubstr(", line 4, column 1 (kind): expected")),
                    AllOf(StartsWith("BandscopeHost: "), HasSubstr(", line 4, column 12 (bandwidth): expected"))));
}

TEST_F(HostErrors, AreLimitedTo100) {
    writePlan(wrongRows(120));
    const HostRun run(options() + L" --quit");
    const std::vector<std::string> lines = linesOfBytes(run.error);
    ASSERT_EQ(lines.size(), 101U);
    EXPECT_THAT(lines[99], HasSubstr(", line 101, "));
    EXPECT_EQ(lines[100], "BandscopeHost: The plan has more errors.");
}

std::wstring clipboardText() {
    std::wstring text;
    if (!OpenClipboard(nullptr))
        return text;
    if (const HANDLE memory = GetClipboardData(CF_UNICODETEXT)) {
        text = static_cast<const wchar_t*>(GlobalLock(memory));
        GlobalUnlock(memory);
    }
    CloseClipboard();
    return text;
}

TEST_F(HostErrors, AreListedInADialogFromWhichTheyAreCopied) {
    warmUpClipboard();
    writePlan(wrongRows(30));
    HostProcess host(options());
    const HWND dialog = host.waitForDialog();
    EXPECT_EQ(textOf(GetDlgItem(dialog, IDC_SUMMARY)), L"The plan was not opened, because it has 30 errors:");
    const HWND edit = GetDlgItem(dialog, IDC_TEXT);
    ASSERT_NE(edit, nullptr);
    const std::wstring listed = textOf(edit);
    const std::vector<std::wstring> lines = linesOf(listed);
    ASSERT_EQ(lines.size(), 30U);
    EXPECT_THAT(lines.front(), HasSubstr(L", line 2, column 8 (frequency): expected a number such as 462.55"));
    EXPECT_THAT(lines.back(), HasSubstr(L", line 31, column 9 (frequency)"));
    EXPECT_NE(GetWindowLongW(edit, GWL_STYLE) & ES_READONLY, 0);
    putText(L"what was there before");
    SendMessageW(dialog, WM_COMMAND, IDC_COPY_TEXT, 0);
    EXPECT_EQ(clipboardText(), listed);
    putText(L"what was there before");
    SendMessageW(edit, WM_CHAR, 3, 0);  // Ctrl+C
    EXPECT_EQ(clipboardText(), listed);
    SendMessageW(edit, EM_SETSEL, 0, 5);
    SendMessageW(edit, WM_CHAR, 3, 0);
    EXPECT_EQ(clipboardText(), listed.substr(0, 5));
    SendMessageW(edit, WM_CHAR, 1, 0);  // Ctrl+A
    SendMessageW(edit, WM_CHAR, 3, 0);
    EXPECT_EQ(clipboardText(), listed);
    host.closeDialog(dialog);
    EXPECT_EQ(host.title(), L"BandscopeHost");
    EXPECT_EQ(host.close(), 0U);
}

TEST_F(HostErrors, TheDialogIsResizedAndClosedByKey) {
    writePlan(wrongRows(1));
    HostProcess host(options());
    const HWND dialog = host.waitForDialog();
    EXPECT_EQ(textOf(GetDlgItem(dialog, IDC_SUMMARY)), L"The plan was not opened, because it has 1 error:");
    const HWND edit = GetDlgItem(dialog, IDC_TEXT);
    RECT before{};
    RECT frame{};
    GetWindowRect(edit, &before);
    GetWindowRect(dialog, &frame);
    const auto resize = [&](int wider, int higher) {
        SetWindowPos(dialog, nullptr, 0, 0, frame.right - frame.left + wider, frame.bottom - frame.top + higher,
                     SWP_NOMOVE | SWP_NOZORDER);
        RECT now{};
        GetWindowRect(edit, &now);
        return SIZE{now.right - now.left - (before.right - before.left),
                    now.bottom - now.top - (before.bottom - before.top)};
    };
    const SIZE larger = resize(120, 80);
    EXPECT_EQ(larger.cx, 120);
    EXPECT_EQ(larger.cy, 80);
    RECT button{};
    RECT client{};
    GetWindowRect(GetDlgItem(dialog, IDOK), &button);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&button), 2);
    GetClientRect(dialog, &client);
    EXPECT_LT(button.bottom, client.bottom);
    EXPECT_GT(button.top, client.bottom - 60);
    const SIZE smallest = resize(-200, -100);
    EXPECT_EQ(smallest.cx, 0) << "everything stays visible";
    EXPECT_EQ(smallest.cy, 0);
    PostMessageW(edit, WM_KEYDOWN, VK_ESCAPE, 1);
    EXPECT_TRUE(waitFor([&] { return !IsWindow(dialog); }));
    EXPECT_EQ(host.close(), 0U);
}

/// The fixed version in the resources of a program file.
std::wstring versionInFile(const std::wstring& path) {
    const HMODULE file = LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    const HRSRC resource = FindResourceW(file, MAKEINTRESOURCEW(1), RT_VERSION);
    const auto* const bytes = static_cast<const char*>(LockResource(LoadResource(file, resource)));
    std::wstring version;
    constexpr DWORD kSignature = 0xFEEF04BD;
    for (DWORD at = 0; bytes != nullptr && version.empty() && at + 16 < SizeofResource(file, resource); at += 4) {
        DWORD words[4];
        std::memcpy(words, bytes + at, sizeof words);
        if (words[0] == kSignature)
            version = std::to_wstring(words[2] >> 16U) + L"." + std::to_wstring(words[2] & 0xFFFFU) + L"." +
                      std::to_wstring(words[3] >> 16U) + L"." + std::to_wstring(words[3] & 0xFFFFU);
    }
    FreeLibrary(file);
    return version;
}

TEST(HostAbout, NamesTheVersionsAndTheModule) {
    warmUpClipboard();
    HostProcess host(L"--no-settings");
    host.post(IDC_ABOUT);
    const HWND dialog = host.waitForDialog();
    EXPECT_EQ(windowText(dialog), L"About BandscopeHost");
    const std::wstring text = textOf(GetDlgItem(dialog, IDC_TEXT));
    const std::wstring bits = sizeof(void*) == 8 ? L"64-bit" : L"32-bit";
    const std::wstring version = versionInFile(hostProgram());
    EXPECT_THAT(version, HasSubstr(L"."));
    ASSERT_EQ(linesOf(text).size(), 3U);
    EXPECT_EQ(linesOf(text)[0], L"BandscopeHost " + version + L", " + bits);
    EXPECT_EQ(linesOf(text)[1], L"kvBandscope control " + versionInFile(modulePath()));
    EXPECT_EQ(lstrcmpiW(linesOf(text)[2].c_str(), modulePath().c_str()), 0) << testing::PrintToString(text);
    SendMessageW(dialog, WM_COMMAND, IDC_COPY_TEXT, 0);
    EXPECT_EQ(clipboardText(), text);
    host.closeDialog(dialog, IDCANCEL);
    EXPECT_EQ(host.close(), 0U);
}

struct PageText {
    std::wstring text;
    int top = 0;
};

int CALLBACK addText(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM parameter) {
    if (record->iType == EMR_EXTTEXTOUTW) {
        const auto* const output = reinterpret_cast<const EMREXTTEXTOUTW*>(record);
        const auto* const text =
            reinterpret_cast<const wchar_t*>(reinterpret_cast<const char*>(record) + output->emrtext.offString);
        reinterpret_cast<std::vector<PageText>*>(parameter)->push_back(
            {{text, output->emrtext.nChars}, static_cast<int>(output->emrtext.ptlReference.y)});
    }
    return 1;
}

TEST(HostPrinting, TheHeadingIsAboveThePicture) {
    for (const std::wstring& name : {std::wstring(L"R&D plan.csv"), std::wstring(900, L'x') + L".csv"}) {
        const HDC dc = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
        const int width = GetDeviceCaps(dc, HORZRES);
        const int height = GetDeviceCaps(dc, VERTRES);
        const RECT place = host::drawHeading(dc, {name, L"2026-03-09 17:04, 462.3000 to 462.9500 MHz"});
        const HENHMETAFILE file = CloseEnhMetaFile(dc);
        std::vector<PageText> texts;
        EnumEnhMetaFile(nullptr, file, &addText, &texts, nullptr);
        DeleteEnhMetaFile(file);
        ASSERT_EQ(texts.size(), 2U);
        EXPECT_EQ(texts[1].text, L"2026-03-09 17:04, 462.3000 to 462.9500 MHz");
        if (name.size() < 20)
            EXPECT_EQ(texts[0].text, name);
        else
            EXPECT_THAT(texts[0].text, AllOf(StartsWith(L"xxxx"), EndsWith(L"...")));
        EXPECT_LT(texts[0].top, texts[1].top);
        EXPECT_LT(texts[1].top, place.top);
        EXPECT_EQ(place.left, 0);
        EXPECT_EQ(place.right, width);
        EXPECT_GT(place.bottom, place.top + height / 4);
        EXPECT_LE(place.bottom, height);
    }
}

}  // namespace
}  // namespace kv::test
