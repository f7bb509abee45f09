// The self-check of the sample host, in a process of its own and in a copy of the program's folder.
#include <gmock/gmock.h>

#include <array>
#include <filesystem>

#include "host/selfcheck/Comparison.h"
#include "host/selfcheck/Privacy.h"
#include "tests/automation/ChildProcess.h"
#include "tests/automation/MachineState.h"
#include "tests/automation/Module.h"
#include "tests/automation/OtherClipboard.h"
#include "tests/win32/TempFolder.h"

namespace kv::test {
namespace {

using testing::HasSubstr;
using testing::Not;

enum ExitCode : DWORD { kPassed = 0, kCannotWrite = 5, kDiffersOrFailed = 6 };

constexpr wchar_t kQuick[] = L" --self-check-seconds 1 --self-check-limit 60";

std::wstring buildFolder() {
    const std::wstring module = modulePath();
    return module.substr(0, module.find_last_of(L'\\') + 1);
}

std::string textOf(const std::wstring& file) {
    return contentOf(file);
}

std::wstring variable(const wchar_t* name) {
    std::array<wchar_t, 1024> text{};
    return {text.data(), GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size()))};
}

/// A folder with the program, the control and one plan, as a user has them.
class SelfCheck : public testing::Test {
  protected:
    void SetUp() override {
        // The prefix may be one in which the control was registered to be used.
        ASSERT_EQ(exported<ExportedFunction>("DllUnregisterServer")(), S_OK);
        for (const wchar_t* folder : {L"plans", L"pictures"})
            ASSERT_TRUE(CreateDirectoryW(temp.file(folder).c_str(), nullptr));
        for (const wchar_t* file : {L"BandscopeHost.exe", L"kvBandscope.ocx", L"kvBandscope.manifest",
                                    L"self-check.cmd", L"plans\\gmrs.csv", L"pictures\\gmrs.png"})
            copy(file, file);
    }
    void copy(const std::wstring& from, const std::wstring& to) const {
        ASSERT_TRUE(CopyFileW((buildFolder() + from).c_str(), temp.file(to).c_str(), FALSE)) << GetLastError();
    }
    void remove(const wchar_t* name) const { ASSERT_TRUE(DeleteFileW(temp.file(name).c_str())); }
    [[nodiscard]] bool has(const wchar_t* name) const { return fileExists(temp.file(name)); }

    DWORD run(const std::wstring& file, const std::wstring& options = kQuick) {
        const ChildProcess host(L"\"" + temp.file(L"BandscopeHost.exe") + L"\" --self-check \"" + file + L"\"" +
                                options);
        return host.wait();
    }
    DWORD run() {
        const DWORD code = run(temp.file(L"report.txt"));
        report = textOf(temp.file(L"report.txt"));
        return code;
    }
    /// The program with a module that hangs or crashes instead of the control.
    DWORD runBroken(const wchar_t* way) {
        copy(L"broken\\kvBandscope.ocx", L"kvBandscope.ocx");
        SetEnvironmentVariableW(L"KV_BROKEN_MODULE", way);
        const DWORD code = run(temp.file(L"report.txt"), L" --self-check-limit 2");
        SetEnvironmentVariableW(L"KV_BROKEN_MODULE", nullptr);
        report = textOf(temp.file(L"report.txt"));
        return code;
    }

    TempFolder temp{L"self check"};
    std::string report;
};

TEST_F(SelfCheck, PassesAndLeavesTheMachineAsItWas) {
    for (const wchar_t* folder : {L"plans\\", L"pictures\\"})
        for (const auto& file : std::filesystem::directory_iterator(buildFolder() + folder))
            copy(folder + file.path().filename().wstring(), folder + file.path().filename().wstring());
    warmUpClipboard();
    putText(L"what the user copied");
    POINT pointer{};
    GetCursorPos(&pointer);
    const auto registry = registryState();
    auto files = filesBelow(temp.path());
    for (const wchar_t* earlier :
         {L"report-gmrs-drawn.png", L"report-gmrs-expected.png", L"report-gmrs-difference.png"})
        writeContent(temp.file(earlier), "of an earlier check, which would mislead");
    const auto temporary = filesBelow(variable(L"TEMP"));
    const auto data = filesBelow(variable(L"LOCALAPPDATA"));
    ASSERT_EQ(run(), kPassed) << report;
    EXPECT_THAT(report, HasSubstr(" 0 differs, 0 failed,"));
    EXPECT_THAT(report, HasSubstr("The check is complete."));
    for (const char* plan : {"frs-gmrs", "gmrs", "marine-vhf", "noaa-weather-radio", "pmr446", "site-100"})
        EXPECT_THAT(report, HasSubstr("passed             Picture of " + std::string(plan) + ".csv: 38"));
    for (const char* line :
         {"passed             Creation by the manifest: ",
          "passed             Creation from the file beside the program: ",
          "passed             Members of the control: 60 names, 71 functions",
          "passed             Members of the view: 24 names, 33 functions",
          "passed             Members of FreqSlot: 19 names, 38 functions",
          "passed             Window shows the picture: 0 of ", "passed             Verb HIDE hides the control",
          "passed             Control moves to another parent window",
          "passed             Metafile looks like the picture: ", "passed             CopyPicture: 0 of ",
          "passed             CopyDisplayToClipboard: 0 of ", "passed             Key Right moves the range up: ",
          "passed             Wheel zooms in: ", "passed             Redraws: "})
        EXPECT_THAT(report, HasSubstr(line));
    files[temp.file(L"report.txt")] = report.size();
    EXPECT_EQ(filesBelow(temp.path()), files);
    EXPECT_EQ(filesBelow(variable(L"TEMP")).size(), temporary.size() + 1 - 3)
        << "the report, without the earlier pictures";
    EXPECT_EQ(filesBelow(variable(L"LOCALAPPDATA")), data);
    EXPECT_THAT(changes(registry, registryState()), testing::IsEmpty());
    POINT after{};
    GetCursorPos(&after);
    EXPECT_EQ(after.x, pointer.x);
    EXPECT_EQ(after.y, pointer.y);
    ASSERT_TRUE(OpenClipboard(nullptr));
    const HANDLE text = GetClipboardData(CF_UNICODETEXT);
    EXPECT_TRUE(text && std::wstring(static_cast<const wchar_t*>(GlobalLock(text))) == L"what the user copied");
    CloseClipboard();
}

TEST_F(SelfCheck, TheReportIsATextThatNotepadShows) {
    remove(L"kvBandscope.ocx");
    ASSERT_EQ(run(), kDiffersOrFailed) << report;
    EXPECT_EQ(report.substr(0, 3), "\xEF\xBB\xBF");
    for (std::size_t at = report.find('\n'); at != std::string::npos; at = report.find('\n', at + 1))
        ASSERT_EQ(report[at - 1], '\r') << "at " << at;
}

TEST_F(SelfCheck, BrokenAndMissingReferencePicturesAreReported) {
    const std::wstring file = temp.file(L"pictures\\gmrs.png");
    ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr)));
    const host::Pixels original = host::readPicture(file);
    host::Pixels broken = original;
    broken.rgb[broken.indexOf(460, 100)] ^= 0x010000U;
    broken.rgb[broken.indexOf(300, 200)] ^= 0x0000FFU;
    host::writePng(file, broken);
    for (const wchar_t* plan : {L"plans\\pmr446.csv", L"plans\\noaa-weather-radio.csv"})
        copy(plan, plan);
    writeContent(temp.file(L"pictures\\pmr446.png"), "no picture");
    EXPECT_EQ(run(), kDiffersOrFailed);
    EXPECT_THAT(report, HasSubstr("1 differs, 2 failed,"));
    EXPECT_THAT(report, HasSubstr("failed             Picture of pmr446.csv: Reading"));
    EXPECT_THAT(report, HasSubstr("failed             Picture of noaa-weather-radio.csv: Reading")) << "none";
    EXPECT_THAT(report, HasSubstr("differs            Picture of gmrs.csv: 2 of "));
    EXPECT_THAT(report, HasSubstr(" pixels, the first at 460, 100; see report-gmrs-drawn.png"));
    EXPECT_TRUE(host::readPicture(temp.file(L"report-gmrs-drawn.png")) == original);
    EXPECT_TRUE(host::readPicture(temp.file(L"report-gmrs-expected.png")) == broken);
    const host::Pixels marked = host::readPicture(temp.file(L"report-gmrs-difference.png"));
    EXPECT_EQ(marked.rgb[marked.indexOf(460, 100)], marked.rgb[marked.indexOf(300, 200)]);
    EXPECT_EQ(host::countColor(marked, marked.rgb[marked.indexOf(300, 200)]), 2U);
    CoUninitialize();
}

TEST_F(SelfCheck, AMissingModuleIsReported) {
    remove(L"kvBandscope.ocx");
    EXPECT_EQ(run(), kDiffersOrFailed);
    EXPECT_THAT(report, HasSubstr("kvBandscope.ocx           missing"));
    EXPECT_THAT(report, HasSubstr("failed             Creation without registration: kvBandscope.ocx is missing"));
    EXPECT_THAT(report, HasSubstr("not possible here  Members: there is no control"));
    EXPECT_THAT(report, HasSubstr("The check is complete."));
}

TEST_F(SelfCheck, AModuleThatIsNoProgramIsReported) {
    writeContent(temp.file(L"kvBandscope.ocx"), "no module");
    EXPECT_EQ(run(), kDiffersOrFailed);
    EXPECT_THAT(
        report,
        HasSubstr(
            "failed             Creation from the file beside the program: the file cannot be loaded, error 193"));
}

TEST_F(SelfCheck, AStepThatHangsIsReported) {
    EXPECT_EQ(runBroken(L"hang"), kDiffersOrFailed);
    EXPECT_THAT(report, HasSubstr("The check ended early, in the step Creation: hung: no end after 2 s"));
    EXPECT_THAT(report, HasSubstr("failed             Creation: hung"));
    EXPECT_THAT(report, HasSubstr("Windows  "));
}

TEST_F(SelfCheck, AStepThatCrashesIsReported) {
    EXPECT_EQ(runBroken(L"crash"), kDiffersOrFailed);
    EXPECT_THAT(report, HasSubstr("The check ended early, in the step Creation: crashed with exception 0xC0000005"));
}

TEST_F(SelfCheck, AReportThatCannotBeWrittenIsAnError) {
    EXPECT_EQ(run(temp.file(L"no such folder\\report.txt")), kCannotWrite);
    EXPECT_EQ(run(temp.file(L"plans")), kCannotWrite) << "a folder";
    writeContent(temp.file(L"protected.txt"), "before");
    SetFileAttributesW(temp.file(L"protected.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(run(temp.file(L"protected.txt")), kCannotWrite);
    EXPECT_EQ(contentOf(temp.file(L"protected.txt")), "before");
}

/// The control of the build is registered for all users while the object exists.
class RegisteredControl {
  public:
    RegisteredControl() { EXPECT_EQ(exported<ExportedFunction>("DllRegisterServer")(), S_OK); }
    ~RegisteredControl() { EXPECT_EQ(exported<ExportedFunction>("DllUnregisterServer")(), S_OK); }
    RegisteredControl(const RegisteredControl&) = delete;
    RegisteredControl& operator=(const RegisteredControl&) = delete;
    /// Registers another file.
    static void setFile(const wchar_t* file) {
        HKEY key = nullptr;
        ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE,
                                L"Software\\Classes\\CLSID\\{3C676CE2-05C1-42D9-9D9B-E86519090CF2}\\InprocServer32", 0,
                                KEY_SET_VALUE, &key),
                  ERROR_SUCCESS);
        EXPECT_EQ(RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(file),
                                 static_cast<DWORD>((lstrlenW(file) + 1) * sizeof(wchar_t))),
                  ERROR_SUCCESS);
        RegCloseKey(key);
    }
};

TEST_F(SelfCheck, ARegisteredControlIsNamedAndCreated) {
    copy(L"broken\\kvBandscope.ocx", L"kvBandscope.ocx");  // the check is short then
    const RegisteredControl registered;
    EXPECT_EQ(run(), kDiffersOrFailed);
    const std::wstring path = host::withoutNames(modulePath());
    const std::string module(path.begin(), path.end());
    EXPECT_THAT(report, HasSubstr("{3C676CE2-05C1-42D9-9D9B-E86519090CF2}, " + module + ", version "));
    EXPECT_THAT(report, HasSubstr("passed             Creation by the registered name: " + module));
    EXPECT_THAT(report, HasSubstr("failed             Creation from the file beside the program: "));
}

TEST_F(SelfCheck, ARegisteredFileThatIsMissingIsAFailure) {
    copy(L"broken\\kvBandscope.ocx", L"kvBandscope.ocx");
    const RegisteredControl registered;
    registered.setFile(L"C:\\no such folder\\kvBandscope.ocx");
    EXPECT_EQ(run(), kDiffersOrFailed);
    EXPECT_THAT(report, HasSubstr("the registered file is missing"));
    EXPECT_THAT(report,
                HasSubstr("failed             Creation by the registered name: the registered file cannot be loaded"));
}

class SelfCheckCommand : public SelfCheck {
  protected:
    DWORD runCommand() {
        const ChildProcess shell(L"cmd /c \"\"" + temp.file(L"self-check.cmd") + L"\" quiet\"");
        return shell.wait();
    }
};

TEST_F(SelfCheckCommand, WritesTheReportBesideTheProgram) {
    remove(L"kvBandscope.ocx");  // the check is short then
    EXPECT_EQ(runCommand(), kDiffersOrFailed);
    EXPECT_THAT(textOf(temp.file(L"kvBandscope-report.txt")), HasSubstr("The check is complete."));
}

TEST_F(SelfCheckCommand, WritesTheReportToTheTemporaryFolderOtherwise) {
    remove(L"kvBandscope.ocx");
    writeContent(temp.file(L"kvBandscope-report.txt"), "protected");
    SetFileAttributesW(temp.file(L"kvBandscope-report.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    const std::wstring other = variable(L"TEMP") + L"\\kvBandscope-report.txt";
    DeleteFileW(other.c_str());
    EXPECT_EQ(runCommand(), kDiffersOrFailed);
    EXPECT_THAT(textOf(other), HasSubstr("The check is complete."));
    EXPECT_EQ(textOf(temp.file(L"kvBandscope-report.txt")), "protected");
    DeleteFileW(other.c_str());
}

TEST_F(SelfCheckCommand, SaysThatTheProgramIsMissing) {
    remove(L"BandscopeHost.exe");
    EXPECT_EQ(runCommand(), 1U);
    EXPECT_FALSE(has(L"kvBandscope-report.txt"));
}

}  // namespace
}  // namespace kv::test
