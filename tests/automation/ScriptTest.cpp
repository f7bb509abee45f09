// Scripts that drive the control by its ProgIDs, each in a process of its own. A script that stops at an error ends
// with exit code 0, so every one of them has to end with 42.
#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/automation/Module.h"

namespace kv::test {
namespace {

constexpr DWORD kAllWell = 42;
constexpr DWORD kPatience = 60000;  // milliseconds

struct ScriptRun {
    DWORD exitCode = ~0U;
    std::string output;
};

/// A path of the source tree as Windows programs name it.
std::wstring sourcePath(const std::wstring& relative) {
    const std::string root = KV_SOURCE_DIR;
    std::wstring path = L"Z:" + std::wstring(root.begin(), root.end()) + L"/" + relative;
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

/// The bytes that are in a pipe. Does not wait for its end, which another process can keep open.
std::string readAll(HANDLE pipe) {
    DWORD waiting = 0;
    PeekNamedPipe(pipe, nullptr, 0, nullptr, &waiting, nullptr);
    std::string text(waiting, '\0');
    DWORD count = 0;
    if (waiting > 0)
        ReadFile(pipe, text.data(), waiting, &count, nullptr);
    text.resize(count);
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
}

ScriptRun runScript(const std::wstring& path) {
    ScriptRun run;
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    if (!CreatePipe(&readEnd, &writeEnd, &inherited, 1 << 20))
        return run;
    SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    start.hStdOutput = writeEnd;
    start.hStdError = writeEnd;
    PROCESS_INFORMATION process{};
    std::wstring command = L"cscript.exe //nologo \"" + path + L"\"";
    const BOOL started =
        CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process);
    CloseHandle(writeEnd);
    if (started) {
        // What the scripts print fits into the pipe, so it can be read after their end.
        if (WaitForSingleObject(process.hProcess, kPatience) != WAIT_OBJECT_0)
            TerminateProcess(process.hProcess, 99);
        run.output = readAll(readEnd);
        GetExitCodeProcess(process.hProcess, &run.exitCode);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    CloseHandle(readEnd);
    return run;
}

/// The file that hosts get for the control; empty when it is not registered.
std::wstring registeredModule() {
    wchar_t path[1024] = L"";
    DWORD size = sizeof path;
    const LSTATUS status =
        RegGetValueW(HKEY_CLASSES_ROOT, L"CLSID\\{3C676CE2-05C1-42D9-9D9B-E86519090CF2}\\InprocServer32", nullptr,
                     RRF_RT_REG_SZ, nullptr, path, &size);
    return status == ERROR_SUCCESS ? std::wstring(path) : std::wstring();
}

HRESULT registerAgain(const std::wstring& path) {
    const HMODULE other = LoadLibraryW(path.c_str());
    if (!other)
        return E_FAIL;
    const auto entry =
        reinterpret_cast<ExportedFunction>(reinterpret_cast<void*>(GetProcAddress(other, "DllRegisterServer")));
    const HRESULT result = entry ? entry() : E_FAIL;
    FreeLibrary(other);
    return result;
}

class Script : public testing::Test {
  public:
    static void SetUpTestSuite() {
        before_ = registeredModule();
        ASSERT_EQ(exported<ExportedFunction>("DllRegisterServer")(), S_OK);
        ASSERT_EQ(lstrcmpiW(registeredModule().c_str(), modulePath().c_str()), 0);
    }
    /// The registry is restored.
    static void TearDownTestSuite() {
        if (lstrcmpiW(before_.c_str(), modulePath().c_str()) == 0)
            return;
        EXPECT_EQ(exported<ExportedFunction>("DllUnregisterServer")(), S_OK);
        if (!before_.empty()) {
            EXPECT_EQ(registerAgain(before_), S_OK);
        }
        EXPECT_EQ(registeredModule(), before_);
    }

  protected:
    /// Runs a script of the tests, which must print these lines among others and end without an error.
    static void expectLines(const wchar_t* name, const std::vector<std::string>& lines) {
        const ScriptRun run = runScript(sourcePath(L"tests/automation/scripts/" + std::wstring(name)));
        EXPECT_EQ(run.exitCode, kAllWell) << run.output;
        for (const std::string& line : lines)
            EXPECT_THAT(run.output, testing::HasSubstr(line + "\n"));
    }

  private:
    static std::wstring before_;
};
std::wstring Script::before_;

TEST_F(Script, TheExampleScriptsEndWithoutAnError) {
    int found = 0;
    for (const wchar_t* kind : {L"*.vbs", L"*.js"}) {
        WIN32_FIND_DATAW entry{};
        const HANDLE search = FindFirstFileW(sourcePath(L"examples/scripts/" + std::wstring(kind)).c_str(), &entry);
        if (search == INVALID_HANDLE_VALUE)
            continue;
        do {
            SCOPED_TRACE(testing::PrintToString(std::wstring(entry.cFileName)));
            const ScriptRun run = runScript(sourcePath(L"examples/scripts/" + std::wstring(entry.cFileName)));
            EXPECT_EQ(run.exitCode, kAllWell) << run.output;
            EXPECT_THAT(run.output, testing::HasSubstr("Picture saved as "));
            ++found;
        } while (FindNextFileW(search, &entry));
        FindClose(search);
    }
    EXPECT_GE(found, 2);
}

TEST_F(Script, TheFirstExampleScriptPrintsItsResult) {
    const ScriptRun basic = runScript(sourcePath(L"examples/scripts/first-look.vbs"));
    for (const char* line :
         {"Transmit channels of a new control: 0", "Index of the product: 2",
          "Lowest edge of all channels in MHz: 462.54375", "Left edge of the display in MHz: 462.48000",
          "Frequency unit that the control set: MHz", "All results are as expected."})
        EXPECT_THAT(basic.output, testing::HasSubstr(std::string(line) + "\n"));
    const ScriptRun java = runScript(sourcePath(L"examples/scripts/first-look.js"));
    EXPECT_THAT(java.output, testing::HasSubstr("2 channels from 162.392 to 162.558 MHz\n"));
    EXPECT_THAT(java.output, testing::HasSubstr("Display from 162.375 to 162.575 MHz\n"));
}

TEST_F(Script, AScriptErrorEndsTheScriptHostWithAnError) {
    // The reason for the exit code: a member that does not exist ends the script without a message.
    const ScriptRun run = runScript(sourcePath(L"tests/automation/scripts/stops.vbs"));
    EXPECT_NE(run.exitCode, kAllWell);
    EXPECT_THAT(run.output, testing::HasSubstr("begun\n"));
    EXPECT_THAT(run.output, testing::Not(testing::HasSubstr("not reached")));
}

TEST_F(Script, VariablesComeBackFromTheExport) {
    expectLines(L"variables.vbs", {"types Double Double String", "same name True", "name kept True", "failed [] 0 0",
                                   "sizes positive True", "again Double Double String True"});
}

TEST_F(Script, ErrorsHaveTheirNumbersAndTexts) {
    expectLines(L"errors.vbs", {"read 9 Subscript out of range", "write 9 Subscript out of range",
                                "text for a number 13", "no channel 13", "unknown member 438", "afterwards 2.5"});
}

TEST_F(Script, FindersReturnNothingAndMembersAcceptNothing) {
    expectLines(L"nothing.vbs", {"by index True True True", "by key True True True", "present False",
                                 "add of Nothing 0", "match -88", "redraw True"});
}

TEST_F(Script, ArgumentsMayBeLeftOut) {
    expectLines(L"optional.vbs", {"none 449 481", "one 419 481", "two 419 501", "second only 449 501"});
}

TEST_F(Script, ObjectsOfAScriptsOwnClassAreChannels) {
    expectLines(L"own-class.vbs", {"index 0", "same object True", "edges 449.9875 450.0125", "units MHz KHz",
                                   "fill style 5", "drawn True", "found 450", "removed 0"});
}

TEST_F(Script, ObjectsOfAnotherScriptLanguageAreChannels) {
    expectLines(L"own-object.js", {"index 0", "same object true", "edges 449.9875 450.0125", "units MHz KHz",
                                   "fill style 5", "drawn true", "found 450"});
}

TEST_F(Script, AViewAddsChannelsAndShowsRanges) {
    expectLines(L"view.vbs",
                {"without a control True", "same control True", "rows 2 2", "objects 1 1", "hits 2 RX1 TX1 True",
                 "no hits 0 near 1", "before a drawing 0", "range 440 450", "after a drawing True",
                 "second view 440 445", "released 91 Scope is not set. Set it to a kvBandscope control first.",
                 "wrong range 5 ShowRange: 460 to 440 MHz cannot be shown",
                 "wrong cell 13 AddTXChannels: row 1, frequency: 'none' is not a number. 2", "wrong scope 13"});
}

TEST_F(Script, AViewWorksInALanguageWithoutObjectAssignments) {
    expectLines(L"view.js", {"hits 1 TX1", "range 440 460", "wrong range 5", "released 91"});
}

}  // namespace
}  // namespace kv::test
