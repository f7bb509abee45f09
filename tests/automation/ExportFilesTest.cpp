// Where a bitmap file can be written and where not, and its content in each state of the window.
#include <algorithm>

#include "tests/automation/ErrorReport.h"
#include "tests/automation/OtherClipboard.h"

namespace kv::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The names in a folder, sorted.
std::vector<std::wstring> namesIn(const std::wstring& folder) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return names;
    do
        names.emplace_back(found.cFileName);
    while (FindNextFileW(search, &found));
    FindClose(search);
    std::erase(names, L".");
    std::erase(names, L"..");
    std::sort(names.begin(), names.end());
    return names;
}

struct Exported {
    std::wstring name;
    std::wstring argument;
    double height = -1.0;
    double width = -1.0;
};

/// Early or late bound.
class ExportFiles : public testing::TestWithParam<Way> {
  protected:
    ExportFiles() {
        scope.AddTXChnl(channel({.freq = 450.0, .bw = 5000.0, .power = 2.0, .key = L"TX1", .color = 0x000000FF}));
        scope.DrawDisplay();
    }
    Exported exportTo(const std::wstring& path) {
        Exported result;
        if (GetParam() == Way::early) {
            Text written;
            BSTR name = SysAllocString(path.c_str());
            EXPECT_EQ(scope->DisplayToBMP(&result.height, &result.width, &name, written.put()), S_OK);
            result.name = written.str();
            result.argument.assign(name, SysStringLen(name));
            SysFreeString(name);
            return result;
        }
        Var height;
        Var width;
        Var name(path.c_str());
        const Outcome outcome =
            call(scope.get(), L"DisplayToBMP", {Var::variable(height), Var::variable(width), Var::variable(name)});
        EXPECT_EQ(outcome.hr, S_OK);
        EXPECT_EQ(outcome.result.vt, VT_BSTR);
        EXPECT_EQ(height.vt, VT_R8);
        EXPECT_EQ(width.vt, VT_R8);
        return {outcome.result.text(), name.text(), height.dblVal, width.dblVal};
    }
    void expectNothingWritten(const std::wstring& path) {
        const std::vector<std::wstring> before = namesIn(folder.path());
        const Exported result = exportTo(path);
        EXPECT_EQ(result.name, L"");
        EXPECT_EQ(result.argument, path);
        EXPECT_EQ(result.height, 0.0);
        EXPECT_EQ(result.width, 0.0);
        EXPECT_EQ(namesIn(folder.path()), before);
    }
    void expectWritten(const std::wstring& path) {
        const Exported result = exportTo(path);
        EXPECT_EQ(result.name, path);
        EXPECT_EQ(result.argument, path);
        const Picture picture = readBySystem(path);
        EXPECT_TRUE(picture.find(0x000000FF, picture.all()));
        EXPECT_DOUBLE_EQ(result.height, picture.height * 15.0);
        EXPECT_DOUBLE_EQ(result.width, picture.width * 15.0);
    }

    TempFolder folder{L"kvExports"};
    Scope scope;
};
INSTANTIATE_TEST_SUITE_P(Ways, ExportFiles, testing::Values(Way::early, Way::late), nameOf);

TEST_P(ExportFiles, TheSystemReadsTheFileAsTheTestsDo) {
    const std::wstring path = folder.file(L"a.bmp");
    expectWritten(path);
    EXPECT_TRUE(readBySystem(path) == Picture::read(path));
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(L"a.bmp"));
}

TEST_P(ExportFiles, ReadOnlyFileStaysAsItIs) {
    const std::wstring path = folder.file(L"protected.bmp");
    writeContent(path, "mine");
    ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
    expectNothingWritten(path);
    EXPECT_EQ(contentOf(path), "mine");
}

TEST_P(ExportFiles, AFileThatAnotherProgramHasOpenStaysAsItIs) {
    const std::wstring path = folder.file(L"open.bmp");
    writeContent(path, "mine");
    const HANDLE open =
        CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(open, INVALID_HANDLE_VALUE);
    expectNothingWritten(path);
    CloseHandle(open);
    EXPECT_EQ(contentOf(path), "mine");
    expectWritten(path);
}

TEST_P(ExportFiles, AFolderIsNotReplacedByAFile) {
    const std::wstring inner = folder.file(L"inner");
    ASSERT_TRUE(CreateDirectoryW(inner.c_str(), nullptr));
    expectNothingWritten(inner);
    expectNothingWritten(inner + L"\\");
    EXPECT_THAT(namesIn(inner), IsEmpty());
}

TEST_P(ExportFiles, AMissingFolderIsNotCreated) {
    expectNothingWritten(folder.file(L"none\\a.bmp"));
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
}

TEST_P(ExportFiles, NameBeyondTheLongestPathIsRefused) {
    expectNothingWritten(folder.file(std::wstring(300, L'x') + L".bmp"));
}

TEST_P(ExportFiles, LongestNameIsTaken) {
    // The folder's path and the name are 259 characters long.
    const std::size_t room = MAX_PATH - 1 - folder.file(L"").size();
    expectWritten(folder.file(std::wstring(room - 4, L'x') + L".bmp"));
    EXPECT_EQ(namesIn(folder.path()).size(), 1U);
}

TEST_P(ExportFiles, InvalidNamesAreRefused) {
    for (const wchar_t* name : {L"a*b.bmp", L"a?b.bmp", L"a|b.bmp"})
        expectNothingWritten(folder.file(name));
    const DWORD drives = GetLogicalDrives();
    for (wchar_t letter = L'D'; letter < L'Z'; ++letter) {
        if ((drives >> (letter - L'A') & 1U) != 0)
            continue;
        expectNothingWritten(std::wstring(1, letter) + L":\\a.bmp");
        return;
    }
    ADD_FAILURE() << "every drive letter is in use";
}

TEST_P(ExportFiles, ThePathMayHaveAnyCharacters) {
    for (const wchar_t* name :
         {L"two words.bmp", L"Gr\u00FC\u00DFe.bmp", L"\u0427\u0430\u0441\u0442\u043E\u0442\u0430.bmp",
          L"\u5468\u6CE2\u6570 \U0001F4F6.bmp"})
        expectWritten(folder.file(name));
    const std::wstring inner = folder.file(L"\u0424 \u5468 folder");
    ASSERT_TRUE(CreateDirectoryW(inner.c_str(), nullptr));
    expectWritten(inner + L"\\\u00E9.bmp");
}

TEST_P(ExportFiles, NameWithoutAFolderMeansTheCurrentOne) {
    wchar_t before[MAX_PATH + 1] = L"";
    GetCurrentDirectoryW(MAX_PATH + 1, before);
    ASSERT_TRUE(SetCurrentDirectoryW(folder.path().c_str()));
    expectWritten(L"here.bmp");
    EXPECT_TRUE(SetCurrentDirectoryW(before));
    // Without a maker's folder the log is in the current folder as well.
    std::vector<std::wstring> names = namesIn(folder.path());
    std::erase(names, L"KVTECSUP.TXT");
    EXPECT_THAT(names, ElementsAre(L"here.bmp"));
}

// The window.

class ExportWindow : public testing::Test {
  protected:
    ExportWindow() {
        container.activate();
        container.resize(740, 460);
        container.addTx({.freq = 450.0, .bw = 5000.0, .power = 2.0, .key = L"TX1", .color = 0x000000FF});
        EXPECT_TRUE(container.draw());
        pump();
        before = exported();
        EXPECT_TRUE(before.find(0x000000FF, before.all()));
    }
    Picture exported() {
        double height = 0.0;
        double width = 0.0;
        BSTR name = SysAllocString(file.path().c_str());
        Text written;
        EXPECT_EQ(container.control->DisplayToBMP(&height, &width, &name, written.put()), S_OK);
        SysFreeString(name);
        EXPECT_EQ(written.str(), file.path());
        Picture picture = readBySystem(file.path());
        EXPECT_DOUBLE_EQ(height, picture.height * 15.0);
        EXPECT_DOUBLE_EQ(width, picture.width * 15.0);
        return picture;
    }
    HWND frame() const { return GetAncestor(container.root(), GA_ROOT); }
    /// The file's pixels are those of the two windows, one inside the other.
    void expectOnScreen(const Picture& picture) {
        const HWND strip = container.pictureBox(L"picUnits");
        const HWND spectrum = container.pictureBox(L"picSpectrum");
        const Picture outer = windowPicture(strip);
        const Picture inner = windowPicture(spectrum);
        const RECT place = placeOf(spectrum);
        ASSERT_EQ(picture.width, outer.width);
        ASSERT_EQ(picture.height, outer.height);
        int different = 0;
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x) {
                const bool inside = x >= place.left && x < place.right && y >= place.top && y < place.bottom;
                const std::uint32_t shown = inside ? inner.at(x - place.left, y - place.top) : outer.at(x, y);
                different += picture.at(x, y) == shown ? 0 : 1;
            }
        }
        EXPECT_EQ(different, 0);
    }

    Container container;
    TempFile file{L"window.bmp"};
    Picture before;
};

TEST_F(ExportWindow, FileHoldsWhatTheScreenShows) {
    expectOnScreen(before);
    // The cursor line, which is drawn with another raster operation, too.
    EXPECT_EQ(container.control->put_CursorVal(450.5), S_OK);
    pump();
    const Picture after = exported();
    expectOnScreen(after);
}

TEST_F(ExportWindow, FileHoldsWhatTheScreenShowsAfterAResize) {
    container.resize(820, 520);
    EXPECT_TRUE(container.draw());
    pump();
    const Picture after = exported();
    EXPECT_GT(after.width, before.width);
    EXPECT_GT(after.height, before.height);
    expectOnScreen(after);
}

TEST_F(ExportWindow, CoveredWindowIsExportedWhole) {
    RECT area{};
    GetWindowRect(frame(), &area);
    const HWND cover =
        CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"", WS_POPUP, area.left, area.top, area.right - area.left,
                        area.bottom - area.top, nullptr, nullptr, nullptr, nullptr);
    SetWindowPos(cover, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    pump();
    EXPECT_TRUE(exported() == before);
    DestroyWindow(cover);
}

TEST_F(ExportWindow, WindowOffTheScreenIsExported) {
    SetWindowPos(frame(), nullptr, -6000, -6000, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    pump();
    EXPECT_TRUE(exported() == before);
}

TEST_F(ExportWindow, MinimizedAndHiddenWindowsAreExported) {
    ShowWindow(frame(), SW_SHOWMINNOACTIVE);
    pump();
    EXPECT_TRUE(IsIconic(frame()));
    EXPECT_TRUE(exported() == before);
    ShowWindow(frame(), SW_HIDE);
    pump();
    EXPECT_TRUE(exported() == before);
}

TEST_F(ExportWindow, APictureThatIsNotPaintedYetIsExported) {
    EXPECT_EQ(container.control->put_lColorSpecBack(0x00654321), S_OK);
    EXPECT_TRUE(container.draw());
    const Picture after = exported();
    EXPECT_GT(after.count(0x00654321, after.all()), 1000);
    pump();
    expectOnScreen(after);
}

// The log.

TEST_F(InstalledErrorReport, EachExportWritesItsStepsToTheLog) {
    activate();
    const std::string earlier = contentOf(logFile);
    EXPECT_EQ(exportTo(maker.file(L"a.bmp")), maker.file(L"a.bmp"));
    const std::string lines = contentOf(logFile).substr(earlier.size());
    EXPECT_THAT(records(), IsEmpty());
    // One line each, with the time and without the program's name, in the order of the steps.
    std::size_t place = 0;
    for (const char* label :
         {":  After HdcBitMap\r\n", ":  Lft ", ":  Top ", ":  Lft ", ":  Top ", ":  Wid ", ":  Hgt "}) {
        place = lines.find(label, place);
        ASSERT_NE(place, std::string::npos) << label;
        ++place;
    }
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 14);
    EXPECT_EQ(lines.find(".exe"), std::string::npos);
}

TEST_F(InstalledErrorReport, AnExportSucceedsWithoutAWritableLog) {
    activate();
    DeleteFileW(logFile.c_str());
    ASSERT_TRUE(CreateDirectoryW(logFile.c_str(), nullptr));
    const MessageBoxes boxes;
    EXPECT_EQ(exportTo(maker.file(L"a.bmp")), maker.file(L"a.bmp"));
    EXPECT_THAT(boxes.seen(), IsEmpty());
}

}  // namespace
}  // namespace kv::test
