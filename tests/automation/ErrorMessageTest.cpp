// The messages that report errors to the user, and the place of the log with and without the maker's installation.
#include "tests/automation/ErrorReport.h"

namespace kv::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST_F(InstalledErrorReport, TheMessageIsCompleteAndOwnedByTheHost) {
    activate();
    fail(0, L"dFreq");
    const MessageBoxes boxes;
    EXPECT_FALSE(rescale());
    EXPECT_THAT(records(),
                ElementsAre(Record{kTrouble, "ReScaleChannels; Flag 100", "Error Re-scaling Bandscope Channels"}));
    ASSERT_THAT(boxes.seen(), SizeIs(1));
    EXPECT_EQ(boxes.seen()[0].title, L"Error in kv_automation_tests.exe");
    EXPECT_EQ(boxes.seen()[0].buttons, std::vector<std::wstring>{L"OK"});
    EXPECT_EQ(boxes.seen()[0].text,
              L"Error 9  the host's own trouble\r\n\r\n"
              L"Procedure: ReScaleChannels; Flag 100\r\nDETAIL: Error Re-scaling Bandscope Channels\r\n\r\n"
              L"This information has been written to the log file\r\n" +
                  logFile +
                  L"\r\nFaxing or e-mailing this file to Korvane may be helpful in determining the cause of the error."
                  L"\r\n\r\nAdditional information you include in your email will help find the specific problem you "
                  L"encountered:"
                  L"\r\n\r\n(1) What were you trying to do (such as draw a profile or compute a coverage study)?"
                  L"\r\n\r\n(2) What part of the program were you in (which menu selection, etc.)?"
                  L"\r\n\r\n(3) Exactly when did the problem happen (e.g., right after clicking a particular button "
                  L"or menu)?"
                  L"\r\n\r\n(4) Any other details about the symptom.");
}

TEST_F(InstalledErrorReport, ErrorsAreAppendedRecordByRecord) {
    activate();
    fail(1, L"dFreq");
    const MessageBoxes boxes;
    EXPECT_FALSE(rescale());
    EXPECT_FALSE(rescale());
    const Record record{kTrouble, "ReScaleChannels; Flag 100", "Error Re-scaling Bandscope Channels"};
    EXPECT_THAT(records(), ElementsAre(record, record));
    EXPECT_THAT(boxes.seen(), SizeIs(2));
}

TEST_F(InstalledErrorReport, ErrorWhileTheMessageIsOpenShowsNoSecondOne) {
    activate();
    fail(1, L"dFreq");
    const MessageBoxes boxes;
    int inner = 0;
    container.host.onMessage = [&] {
        ++inner;
        EXPECT_FALSE(rescale());
    };
    // The open message box removes it from the queue.
    PostMessageW(container.host.get(), WM_APP, 0, 0);
    EXPECT_FALSE(rescale());
    EXPECT_EQ(inner, 1);
    EXPECT_THAT(records(), SizeIs(2));
    EXPECT_THAT(boxes.seen(), SizeIs(1));
    container.host.onMessage = nullptr;
    EXPECT_FALSE(rescale());
    EXPECT_THAT(boxes.seen(), SizeIs(2));
}

TEST_F(InstalledErrorReport, ControlMayBeClosedWhileTheMessageIsOpen) {
    activate();
    fail(1, L"dFreq");
    const MessageBoxes boxes;
    container.host.onMessage = [&] {
        const auto object = container.as<IOleObject>();
        object->Close(OLECLOSE_NOSAVE);
        object->SetClientSite(nullptr);
        // Its reference is the last one of the host.
        container.control.Reset();
    };
    PostMessageW(container.host.get(), WM_APP, 0, 0);
    VARIANT_BOOL done = VARIANT_TRUE;
    EXPECT_EQ(container.control.Get()->ReScaleChannels(&done), S_OK);
    EXPECT_EQ(done, VARIANT_FALSE);
    EXPECT_FALSE(container.control);
    EXPECT_THAT(records(), SizeIs(1));
}

TEST_F(InstalledErrorReport, WithoutASiteThereIsARecordAndNoMessage) {
    for (const double frequency : {440.0, 450.0})
        add(L"TX" + std::to_wstring(slots.size()), frequency);
    fail(1, L"lColor");
    const MessageBoxes boxes;
    EXPECT_TRUE(draw());
    EXPECT_THAT(records(), ElementsAre(Record{kTrouble, "DrawDisplayTX; Flag 200",
                                              "kvBandscope.DrawDisplayTX Flag 200 kChnl 2 of 2"}));
    EXPECT_THAT(boxes.seen(), IsEmpty());
}

TEST_F(InstalledErrorReport, AFailingEventHandlerIsNotReported) {
    activate();
    const ComPtr<EventSink> sink(new EventSink);
    sink->answer = DISP_E_EXCEPTION;
    container.connect(sink.Get());
    const MessageBoxes boxes;
    const HWND panel = container.panel();
    postRightClick(panel, 4, 4);
    pump();
    ASSERT_THAT(sink->ids(), ElementsAre(kChgHeight));
    EXPECT_THAT(records(), IsEmpty());
    EXPECT_THAT(boxes.seen(), IsEmpty());
    EXPECT_TRUE(draw());
}

TEST_F(InstalledErrorReport, AnErrorInsideAnEventHandlerIsReportedAndTheEventEnds) {
    activate();
    // If the container grants the lower height, nothing else is drawn.
    container.site->onPosRectChange = [this](const RECT& wanted) {
        EXPECT_EQ(container.as<IOleInPlaceObject>()->SetObjectRects(&wanted, &wanted), S_OK);
    };
    fail(1, L"dFreq");
    const ComPtr<EventSink> sink(new EventSink);
    sink->onEvent = [this](DISPID) { EXPECT_FALSE(rescale()); };
    container.connect(sink.Get());
    const MessageBoxes boxes;
    postRightClick(container.panel(), 4, 4);
    pump();
    ASSERT_THAT(sink->ids(), ElementsAre(kChgHeight));
    EXPECT_THAT(records(), SizeIs(1));
    EXPECT_THAT(boxes.seen(), SizeIs(1));
    sink->onEvent = nullptr;
}

TEST_F(InstalledErrorReport, TheMessageIsShownWithoutAWritableLog) {
    activate();
    fail(1, L"dFreq");
    ASSERT_TRUE(CreateDirectoryW(logFile.c_str(), nullptr));
    const MessageBoxes boxes;
    EXPECT_FALSE(rescale());
    EXPECT_THAT(boxes.seen(), SizeIs(1));
    ASSERT_TRUE(RemoveDirectoryW(logFile.c_str()));
    EXPECT_FALSE(rescale());
    EXPECT_THAT(records(), SizeIs(1));
}

TEST_F(InstalledErrorReport, ALogLockedByAnotherProgramIsIgnored) {
    activate();
    fail(1, L"dFreq");
    const MessageBoxes boxes;
    const HANDLE held =
        CreateFileW(logFile.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    EXPECT_FALSE(rescale());
    CloseHandle(held);
    EXPECT_THAT(records(), IsEmpty());
    EXPECT_THAT(boxes.seen(), SizeIs(1));
}

TEST_F(InstalledErrorReport, TheScratchFileIsInTheMakersFolder) {
    activate();
    EXPECT_EQ(exportTo(L""), maker.file(L"TEMP\\NXBandscope.BMP"));
    EXPECT_TRUE(fileExists(maker.file(L"TEMP\\NXBandscope.BMP")));
    EXPECT_THAT(records(), IsEmpty());
}

std::wstring besideHost(const wchar_t* name) {
    const std::wstring path = modulePath();
    return path.substr(0, path.find_last_of(L'\\') + 1) + name;
}

/// Without any program of the maker's, in a current folder of its own.
class LooseErrorReport : public ErrorReport {
  protected:
    LooseErrorReport() : before_(MAX_PATH + 1, L'\0') {
        before_.resize(GetCurrentDirectoryW(MAX_PATH + 1, before_.data()));
        EXPECT_TRUE(SetCurrentDirectoryW(maker.path().c_str()));
    }
    ~LooseErrorReport() override { SetCurrentDirectoryW(before_.c_str()); }

  private:
    std::wstring before_;
};

TEST_F(LooseErrorReport, TheLogIsInTheCurrentFolder) {
    const std::string notesBefore = contentOf(besideHost(L"KVTecSup.Txt"));
    activate();
    fail(1, L"dFreq");
    const MessageBoxes boxes;
    EXPECT_FALSE(rescale());
    EXPECT_THAT(records(), SizeIs(1));
    ASSERT_THAT(boxes.seen(), SizeIs(1));
    EXPECT_NE(boxes.seen()[0].text.find(L"the log file\r\nKVTECSUP.TXT\r\nFaxing"), std::wstring::npos);
    const std::string notes = contentOf(besideHost(L"KVTecSup.Txt")).substr(notesBefore.size());
    EXPECT_THAT(notes, HasSubstr(":  No Registry Entry found; try INI file\r\n"));
    EXPECT_THAT(notes, HasSubstr(":  Unable to get Korvane Directory from Windows Registry\r\n"));
    EXPECT_THAT(notes, HasSubstr(":  Empty return in getKorvaneDirectoryAny\r\n"));
    EXPECT_THAT(notes, HasSubstr(":  Registry Key: SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\"));
}

TEST_F(LooseErrorReport, TheScratchFileIsInTheUsersTemporaryFolder) {
    activate();
    wchar_t temp[MAX_PATH + 1] = L"";
    GetTempPathW(MAX_PATH + 1, temp);
    EXPECT_EQ(exportTo(L""), std::wstring(temp) + L"TEMP\\NXBandscope.BMP");
    EXPECT_TRUE(DeleteFileW((std::wstring(temp) + L"TEMP\\NXBandscope.BMP").c_str()));
}

TEST_F(LooseErrorReport, INIFileBesideTheHostLeadsToTheLog) {
    const TempFolder other(L"kvOther");
    char ansi[MAX_PATH + 1] = "";
    WideCharToMultiByte(CP_ACP, 0, other.path().c_str(), -1, ansi, MAX_PATH, nullptr, nullptr);
    writeContent(besideHost(L"KVRegistry.INI"), "[CONFIG]\r\nKorvaneDirectory=" + std::string(ansi) + "\r\n");
    activate();
    fail(1, L"dFreq");
    {
        const MessageBoxes boxes;
        EXPECT_FALSE(rescale());
    }
    DeleteFileW(besideHost(L"KVRegistry.INI").c_str());
    EXPECT_THAT(recordsOf(contentOf(other.file(L"KVTECSUP.TXT"))), SizeIs(1));
    EXPECT_THAT(records(), IsEmpty());
}

}  // namespace
}  // namespace kv::test
