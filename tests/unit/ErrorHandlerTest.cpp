#include "util/ErrorHandler.h"

#include <thread>

#include "formenv/PlatformPrompt.h"
#include "tests/unit/FakeSystem.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::util {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr wchar_t kLog[] = L"C:\\KV\\KVTECSUP.TXT";
constexpr wchar_t kStars[] = L"*************************";  // 25

class ErrorHandlerTest : public ::testing::Test {
  protected:
    ErrorHandlerTest() { fake.install(); }

    /// The log's lines without those of a single space, each of which has to follow another.
    std::vector<std::wstring> record() {
        const std::vector<std::wstring> lines = fake.lines(kLog);
        std::vector<std::wstring> result;
        for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
            if (!isCaptureLine(lines[i]))
                result.push_back(lines[i]);
            EXPECT_EQ(lines[i + 1], L" ");
        }
        EXPECT_EQ(lines.size() % 2, 0U);
        return result;
    }

    FakeSystem fake;
    FakeUser user;
    Configuration configuration{fake.system};
    TechSupportLog log{configuration, fake.system};
    ErrorHandler handler{log, user};
};

TEST_F(ErrorHandlerTest, RecordHasItsLinesInOrder) {
    handler.ErrHand(300, L"Refresh", L"Error Refreshing Bandscope Display", RuntimeError(error_number::kOverflow));
    EXPECT_THAT(record(), ElementsAre(kStars, L"Error 6  Overflow  (Host.exe 1.0.2)", L"Procedures:",
                                      L"Procedure: Refresh; Flag 300", L"DETAIL: Error Refreshing Bandscope Display"));
}

TEST_F(ErrorHandlerTest, EmptyContextGivesNoDetailLine) {
    handler.ErrHand(100, L"RemoveChnlByKey", L"", RuntimeError(9));
    handler.ErrHand(-200, L"RemoveChnlByKey", L"   ", RuntimeError(440, L"the host's own error"));
    EXPECT_THAT(record(), ElementsAre(kStars, L"Error 9  Subscript out of range  (Host.exe 1.0.2)", L"Procedures:",
                                      L"Procedure: RemoveChnlByKey; Flag 100", kStars,
                                      L"Error 440  the host's own error  (Host.exe 1.0.2)", L"Procedures:",
                                      L"Procedure: RemoveChnlByKey; Flag -200"));
    ASSERT_THAT(user.messages, SizeIs(2));
    for (const FakeUser::Message& message : user.messages)
        EXPECT_EQ(message.text.find(L"DETAIL"), std::wstring::npos);
}

TEST_F(ErrorHandlerTest, MessageTellsTheUserWhatToSend) {
    handler.ErrHand(300, L"Refresh", L"Error Refreshing Bandscope Display", RuntimeError(error_number::kOverflow));
    ASSERT_THAT(user.messages, SizeIs(1));
    EXPECT_EQ(user.messages[0].kind, "warn");
    EXPECT_EQ(user.messages[0].title, L"Error in Host.exe");
    EXPECT_EQ(
        user.messages[0].text,
        L"Error 6  Overflow\r\n\r\n"
        L"Procedure: Refresh; Flag 300\r\nDETAIL: Error Refreshing Bandscope Display\r\n\r\n"
        L"This information has been written to the log file\r\nC:\\KV\\KVTECSUP.TXT\r\n"
        L"Faxing or e-mailing this file to Korvane may be helpful in determining the cause of the error.\r\n\r\n"
        L"Additional information you include in your email will help find the specific problem you encountered:"
        L"\r\n\r\n(1) What were you trying to do (such as draw a profile or compute a coverage study)?"
        L"\r\n\r\n(2) What part of the program were you in (which menu selection, etc.)?"
        L"\r\n\r\n(3) Exactly when did the problem happen (e.g., right after clicking a particular button or menu)?"
        L"\r\n\r\n(4) Any other details about the symptom.");
}

TEST_F(ErrorHandlerTest, RecordIsWrittenBeforeTheMessageShows) {
    std::size_t written = 0;
    user.meanwhile = [&] { written = record().size(); };
    handler.ErrHand(100, L"Refresh", L"", RuntimeError(6));
    EXPECT_EQ(written, 4U);
}

TEST_F(ErrorHandlerTest, ErrorWhileTheMessageIsOpenIsOnlyRecorded) {
    ErrorHandler other(log, user);
    user.meanwhile = [&] {
        handler.ErrHand(200, L"DrawDisplayTX", L"", RuntimeError(440));
        other.ErrHand(300, L"DrawDisplayRX", L"", RuntimeError(440));
    };
    handler.ErrHand(100, L"Refresh", L"", RuntimeError(6));
    EXPECT_THAT(user.messages, SizeIs(1));
    EXPECT_THAT(record(), SizeIs(12));
    EXPECT_EQ(record()[7], L"Procedure: DrawDisplayTX; Flag 200");
    user.meanwhile = nullptr;
    handler.ErrHand(400, L"Refresh", L"", RuntimeError(6));
    EXPECT_THAT(user.messages, SizeIs(2));
}

TEST_F(ErrorHandlerTest, OneMessageIsOpenInAllThreads) {
    user.meanwhile = [&] {
        std::thread([&] { handler.ErrHand(200, L"DrawDisplayTX", L"", RuntimeError(440)); }).join();
    };
    handler.ErrHand(100, L"Refresh", L"", RuntimeError(6));
    EXPECT_THAT(user.messages, SizeIs(1));
    EXPECT_THAT(record(), SizeIs(8));
}

TEST_F(ErrorHandlerTest, MessageThatFailsDoesNotBlockTheNext) {
    user.meanwhile = [] { throw RuntimeError(7); };
    handler.ErrHand(100, L"Refresh", L"", RuntimeError(6));
    handler.ErrHand(100, L"Refresh", L"", RuntimeError(6));
    EXPECT_THAT(user.messages, SizeIs(2));
}

TEST_F(ErrorHandlerTest, WithoutAUserOnlyTheRecordIsWritten) {
    user.here = false;
    handler.ErrHand(100, L"Refresh", L"", RuntimeError(6));
    EXPECT_THAT(user.messages, IsEmpty());
    EXPECT_THAT(record(), SizeIs(4));
}

TEST_F(ErrorHandlerTest, ANoteIsOnlyRecorded) {
    handler.ErrNote(400, L"DisplayToBMP", L"where", RuntimeError(75));
    EXPECT_THAT(user.messages, IsEmpty());
    EXPECT_THAT(record(), ElementsAre(kStars, L"Error 75  Path/File access error  (Host.exe 1.0.2)", L"Procedures:",
                                      L"Procedure: DisplayToBMP; Flag 400", L"DETAIL: where"));
}

TEST_F(ErrorHandlerTest, TheMessageShowsAlsoWhenTheLogCannotBeWritten) {
    fake.files.unwritable = true;
    handler.ErrHand(100, L"Refresh", L"", RuntimeError(6));
    EXPECT_THAT(user.messages, SizeIs(1));
}

TEST_F(ErrorHandlerTest, AnErrorInTheLogWriterIsRecordedWithoutAMessage) {
    int depth = 0;
    int deepest = 0;
    fake.files.onAppend = [&] {
        deepest = std::max(deepest, ++depth);
        if (depth == 1)
            handler.ErrNote(100, L"inner", L"", RuntimeError(6));
        --depth;
    };
    handler.ErrHand(100, L"outer", L"", RuntimeError(6));
    EXPECT_EQ(deepest, 2);
    EXPECT_THAT(user.messages, SizeIs(1));
}

TEST_F(ErrorHandlerTest, WithoutAMakersFolderTheMessageNamesTheFileAlone) {
    fake.registry.keys.clear();
    handler.ErrHand(100, L"Refresh", L"", RuntimeError(6));
    ASSERT_THAT(user.messages, SizeIs(1));
    EXPECT_NE(user.messages[0].text.find(L"the log file\r\nKVTECSUP.TXT\r\nFaxing"), std::wstring::npos);
    EXPECT_THAT(fake.lines(L"KVTECSUP.TXT"), SizeIs(8));
}

TEST(PlatformPromptTest, KindsOfMessagesHaveTheirIconsAndButtons) {
    headless::HeadlessPlatform platform;
    bool attended = true;
    formenv::PlatformPrompt prompt(platform, [&] { return attended; });
    EXPECT_TRUE(prompt.present());
    prompt.inform(L"a", L"A");
    prompt.warn(L"b", L"B");
    platform.answer = formenv::MessageAnswer::Yes;
    EXPECT_TRUE(prompt.confirm(L"c", L"C"));
    platform.answer = formenv::MessageAnswer::No;
    EXPECT_FALSE(prompt.confirm(L"d", L"D"));
    ASSERT_THAT(platform.messages, SizeIs(4));
    EXPECT_EQ(platform.messages[0].icon, formenv::MessageIcon::Information);
    EXPECT_EQ(platform.messages[1].icon, formenv::MessageIcon::Critical);
    EXPECT_EQ(platform.messages[1].text, L"b");
    EXPECT_EQ(platform.messages[1].title, L"B");
    EXPECT_EQ(platform.messages[2].icon, formenv::MessageIcon::Question);
    EXPECT_EQ(platform.messages[2].buttons, formenv::MessageButtons::YesNoDefaultNo);
    attended = false;
    EXPECT_FALSE(prompt.present());
}

/// The control with the real handler behind it.
class ScopeErrorsTest : public ErrorHandlerTest {
  protected:
    ScopeErrorsTest() {
        scope.setDisplayMaxPwr(100.0);
        scope.setDisplayMinPwr(0.0);
        for (const double frequency : {400.0, 450.0, 500.0}) {
            slots.push_back(control::makeSlot(frequency, 5.0, 50.0, L"TX" + std::to_wstring(slots.size())));
            scope.AddTXChnl(control::asChannel(slots.back()));
        }
        EXPECT_TRUE(scope.DrawDisplay());
        EXPECT_THAT(record(), IsEmpty());
    }

    headless::HeadlessPlatform platform;
    control::RecordingEvents events;
    control::MemoryFiles exports;
    formenv::PlatformPrompt prompt{platform, [] { return true; }};
    ErrorHandler reporter{log, prompt};
    control::Bandscope scope{control::Services{platform, events, reporter, exports,
                                               [] { return Ref<channels::FreqSlotBase>(new control::PlainSlot); }}};
    std::vector<control::SlotRef> slots;
};

TEST_F(ScopeErrorsTest, FailedExportIsRecordedAndShowsNoMessage) {
    exports.readOnly = true;
    double height = 1.0;
    double width = 1.0;
    std::wstring name = L"D:\\none\\a.bmp";
    EXPECT_EQ(scope.DisplayToBMP(height, width, name), L"");
    EXPECT_EQ(height, 0.0);
    EXPECT_EQ(width, 0.0);
    EXPECT_THAT(platform.messages, IsEmpty());
    EXPECT_THAT(record(), ElementsAre(kStars, L"Error 75  Path/File access error  (Host.exe 1.0.2)", L"Procedures:",
                                      L"Procedure: ExportToBMP2; Flag 600", L"DETAIL: SavePicture"));
}

TEST_F(ScopeErrorsTest, CopyOfAFailedExportShowsNoMessageAndABusyClipboardDoes) {
    exports.readOnly = true;
    scope.CopyDisplayToClipboard();
    EXPECT_THAT(platform.messages, IsEmpty());
    exports.readOnly = false;
    exports.busyClipboard = true;
    scope.CopyDisplayToClipboard();
    EXPECT_THAT(platform.messages, SizeIs(1));
    EXPECT_THAT(record(), SizeIs(9));
    EXPECT_EQ(record()[8], L"Procedure: CopyDisplayToClipboard; Flag 300");
}

TEST_F(ScopeErrorsTest, FailingDrawingShowsOneMessageWithTheContext) {
    slots[1]->onRead = control::failsAt("drawRecord", 440);
    EXPECT_TRUE(scope.DrawDisplay());
    ASSERT_THAT(platform.messages, SizeIs(1));
    EXPECT_THAT(record(), ElementsAre(kStars, L"Error 440  Automation error  (Host.exe 1.0.2)", L"Procedures:",
                                      L"Procedure: DrawDisplayTX; Flag 200",
                                      L"DETAIL: kvBandscope.DrawDisplayTX Flag 200 kChnl 2 of 3"));
}

TEST_F(ScopeErrorsTest, AFailedDrawingInsideTheEventsOfADrawingShowsItsMessageFirst) {
    slots[1]->onRead = control::failsAt("drawRecord", 440);
    int inner = 0;
    platform.onPump = [&] {
        if (inner++ == 0)
            scope.Refresh();
    };
    EXPECT_TRUE(scope.DrawDisplay());
    // One after the other: the inner drawing is over before the outer one fails.
    EXPECT_THAT(platform.messages, SizeIs(2));
    EXPECT_THAT(record(), SizeIs(10));
    EXPECT_EQ(record()[3], L"Procedure: Refresh; Flag 600");
    EXPECT_EQ(record()[8], L"Procedure: DrawDisplayTX; Flag 200");
}

}  // namespace
}  // namespace kv::util
