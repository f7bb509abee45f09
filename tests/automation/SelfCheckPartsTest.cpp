// Parts of the self-check by themselves.
#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "host/Com.h"
#include "host/selfcheck/Comparison.h"
#include "host/selfcheck/InstalledFamily.h"
#include "host/selfcheck/MemberCaller.h"
#include "host/selfcheck/MessageBoxes.h"
#include "host/selfcheck/Privacy.h"
#include "host/selfcheck/Report.h"
#include "host/selfcheck/Undo.h"
#include "host/selfcheck/Watchdog.h"
#include "tests/automation/Module.h"
#include "tests/win32/TempFolder.h"
#include "util/Product.h"

namespace kv::host {
namespace {

using std::chrono::seconds;
using test::contentOf;
using test::TempFolder;
using test::writeContent;
using testing::HasSubstr;

Pixels plain(int width, int height, std::uint32_t color) {
    Pixels picture(width, height);
    picture.rgb.assign(picture.rgb.size(), color);
    return picture;
}

TEST(SelfCheckPictures, TextAndABorderAroundItAreMarked) {
    const Pixels picture = plain(40, 20, 0xFFFFFF);
    Pixels other = picture;
    other.rgb[other.indexOf(20, 10)] = 0xFF0000;
    const Pixels marked = withTextMarked(picture, other);
    EXPECT_EQ(countColor(marked, kTextMark), 49U);
    EXPECT_EQ(marked.rgb[marked.indexOf(17, 7)], kTextMark);
    EXPECT_EQ(marked.rgb[marked.indexOf(23, 13)], kTextMark);
    EXPECT_EQ(marked.rgb[marked.indexOf(16, 10)], 0xFFFFFFU);
    Pixels corner = picture;
    corner.rgb[0] = 0;
    EXPECT_EQ(countColor(withTextMarked(picture, corner), kTextMark), 16U);
}

TEST(SelfCheckPictures, TextInEitherPictureIsNotCompared) {
    Pixels drawn = plain(10, 4, 0xFFFFFF);
    Pixels reference = drawn;
    drawn.rgb[drawn.indexOf(1, 0)] = kTextMark;
    reference.rgb[reference.indexOf(2, 0)] = kTextMark;
    drawn.rgb[drawn.indexOf(7, 2)] = 0xFFFFFE;
    drawn.rgb[drawn.indexOf(3, 3)] = 0;
    const Comparison result = compare(drawn, reference).value();
    EXPECT_EQ(result.compared, 38U);
    EXPECT_EQ(result.different, 2U);
    EXPECT_EQ(result.firstX, 7);
    EXPECT_EQ(result.firstY, 2);
    EXPECT_EQ(compare(reference, reference).value().different, 0U);
}

TEST(SelfCheckPictures, PicturesOfOtherSizesAreNotCompared) {
    EXPECT_FALSE(compare(plain(10, 4, 0), plain(4, 10, 0)).has_value());
    EXPECT_EQ(countDifferent(plain(10, 4, 0), plain(4, 10, 0)), 40U);
}

TEST(SelfCheckReport, NamesAreReplacedAsWholeNames) {
    const std::vector<Replacement> names = {{L"C:\\Users\\Ann", L"%USERPROFILE%"}, {L"", L"nothing"}};
    EXPECT_EQ(withReplacements(L"c:\\users\\ANN\\x.txt and C:\\Users\\Ann", names),
              L"%USERPROFILE%\\x.txt and %USERPROFILE%");
    EXPECT_EQ(withReplacements(L"C:\\Users\\Anna\\x.txt", names), L"C:\\Users\\Anna\\x.txt");
}

TEST(SelfCheckReport, ServersAndTheUserAreNotNamed) {
    EXPECT_EQ(withoutNames(L"file \\\\office-7\\tools\\a.ocx, 3 bytes"), L"file \\\\(server)\\tools\\a.ocx, 3 bytes");
    std::array<wchar_t, 256> user{};
    ASSERT_GT(GetEnvironmentVariableW(L"USERNAME", user.data(), static_cast<DWORD>(user.size())), 0U);
    EXPECT_EQ(withoutNames(std::wstring(L"D:\\homes\\") + user.data() + L"\\a.ocx"), L"D:\\homes\\(user)\\a.ocx");
    std::array<wchar_t, 256> profile{};
    ASSERT_GT(GetEnvironmentVariableW(L"USERPROFILE", profile.data(), static_cast<DWORD>(profile.size())), 0U);
    EXPECT_EQ(withoutNames(std::wstring(profile.data()) + L"\\a.ocx"), L"%USERPROFILE%\\a.ocx");
}

TEST(SelfCheckReport, CountsVerdictsAndKeepsEachOnOneLine) {
    const TempFolder folder(L"report");
    Report report(folder.file(L"r.txt"));
    report.passed(L"One");
    EXPECT_TRUE(report.allPassed());
    report.notPossible(L"Two", L"why");
    EXPECT_TRUE(report.allPassed());
    report.differs(L"Three", L"first line\r\nsecond line");
    EXPECT_FALSE(report.allPassed());
    report.write(L"State.");
    const std::string text = contentOf(folder.file(L"r.txt"));
    EXPECT_THAT(text, HasSubstr("State.\r\nResult: 1 passed, 1 differs, 0 failed, 1 not possible here\r\n"));
    EXPECT_THAT(text, HasSubstr("differs            Three: first line  second line\r\n"));
    EXPECT_EQ(report.beside(L"-a.png"), folder.file(L"r-a.png"));
}

TEST(SelfCheckReport, AFailureIsNoSuccess) {
    const TempFolder folder(L"report");
    Report report(folder.file(L"r.txt"));
    report.expect(false, L"One");
    EXPECT_FALSE(report.allPassed());
}

TEST(SelfCheckWatchdog, NamesTheStepThatDoesNotEnd) {
    std::atomic<int> alarms = 0;
    std::wstring late;
    {
        Watchdog watchdog(
            seconds(1),
            [&](const std::wstring& step) {
                late = step;
                ++alarms;
            },
            [] {});
        watchdog.begin(L"Quick");
        watchdog.end();
        watchdog.begin(L"Slow");
        std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    }
    EXPECT_EQ(alarms, 1);
    EXPECT_EQ(late, L"Slow");
}

TEST(SelfCheckWatchdog, ALimitBeginsWithEachStep) {
    std::atomic<int> alarms = 0;
    {
        Watchdog watchdog(
            seconds(2), [&](const std::wstring&) { ++alarms; }, [] {});
        for (int i = 0; i < 3; ++i) {
            watchdog.begin(L"Step");
            std::this_thread::sleep_for(std::chrono::milliseconds(1000));
        }
        watchdog.end();
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    }
    EXPECT_EQ(alarms, 0);
}

TEST(SelfCheckUndo, UndoesOnceTheLastChangeFirst) {
    std::string order;
    {
        Undo undo;
        undo.add([&] { order += 'a'; });
        undo.add([&] {
            order += 'b';
            throw Failure{};
        });
        undo.add([&] { order += 'c'; });
        undo.run();
        undo.run();
    }
    EXPECT_EQ(order, "cba");
}

TEST(SelfCheckUndo, FilesGetTheirLengthBack) {
    const TempFolder folder(L"undo");
    writeContent(folder.file(L"log.txt"), "before");
    {
        Undo undo;
        keepFile(undo, folder.file(L"log.txt"));
        keepFile(undo, folder.file(L"new.txt"));
        writeContent(folder.file(L"log.txt"), "before, and more");
        writeContent(folder.file(L"new.txt"), "new");
    }
    EXPECT_EQ(contentOf(folder.file(L"log.txt")), "before");
    EXPECT_FALSE(test::fileExists(folder.file(L"new.txt")));
}

TEST(SelfCheckMessageBoxes, AreReportedAndClosed) {
    const TempFolder folder(L"boxes");
    Report report(folder.file(L"r.txt"));
    std::atomic<bool> closed = false;
    std::thread user([&] {
        MessageBoxW(nullptr, L"Is this a question?", L"A title", MB_YESNO);
        closed = true;
    });
    for (int i = 0; i < 300 && !closed; ++i) {
        closeMessageBoxes(report);
        Sleep(20);
    }
    EXPECT_TRUE(closed);
    user.join();
    report.write(L"");
    EXPECT_THAT(contentOf(folder.file(L"r.txt")), HasSubstr("failed             Message box: A title"));
    EXPECT_THAT(contentOf(folder.file(L"r.txt")), HasSubstr("Is this a question?"));
}

TEST(SelfCheckMembers, ErrorsAreReported) {
    const test::ComPtr<_FreqSlot> slot = test::createInstance<_FreqSlot>(CLSID_FreqSlot);
    MemberHints hints;
    // Without components, the members for components are errors.
    const MemberResults errors = callMembers(slot.Get(), hints);
    EXPECT_EQ(errors.members, 19U);
    EXPECT_EQ(errors.functions, 38U);
    EXPECT_THAT(errors.problems, testing::Contains(testing::StartsWith(L"nIMComp: 0x80020009")));
    EXPECT_THAT(errors.problems, testing::Contains(testing::StartsWith(L"sIMCompLabel: 0x80020009")));
    hints.arguments[L"nIMComps"] = [] { return std::vector<Value>{Value::of(LONG{2})}; };
    EXPECT_THAT(callMembers(slot.Get(), hints).problems, testing::IsEmpty());
    // A property that should refuse a value and takes it is reported, too.
    hints.refusing.insert(L"dFreq");
    EXPECT_THAT(callMembers(slot.Get(), hints).problems, testing::ElementsAre(testing::StartsWith(L"dFreq: ")));
}

TEST(SelfCheckFamily, IsTheFamilyOfTheControl) {
    EXPECT_TRUE(std::equal(kFamilyPrograms.begin(), kFamilyPrograms.end(), util::product::kFamilyPrograms.begin(),
                           util::product::kFamilyPrograms.end(),
                           [](const wchar_t* a, const wchar_t* b) { return std::wstring(a) == b; }));
}

}  // namespace
}  // namespace kv::host
