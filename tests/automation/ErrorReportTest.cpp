// Which procedures report their errors, and with which records in the tech-support log.
#include <limits>
#include <thread>

#include "tests/automation/ErrorReport.h"
#include "tests/automation/Errors.h"

namespace kv::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr double kInfinite = std::numeric_limits<double>::infinity();

TEST_F(InstalledErrorReport, ATXChannelThatFailsWhileItIsDrawn) {
    activate();
    fail(1, L"lColor");
    const MessageBoxes boxes;
    EXPECT_TRUE(draw());
    EXPECT_THAT(records(), ElementsAre(Record{kTrouble, "DrawDisplayTX; Flag 200",
                                              "kvBandscope.DrawDisplayTX Flag 200 kChnl 2 of 3"}));
    EXPECT_THAT(boxes.seen(), SizeIs(1));
}

TEST_F(InstalledErrorReport, AnRXChannelThatFailsWhileItIsDrawn) {
    activate();
    fail(4, L"lColorLine");
    const MessageBoxes boxes;
    EXPECT_TRUE(draw());
    EXPECT_THAT(records(), ElementsAre(Record{kTrouble, "DrawDisplayRX; Flag 200",
                                              "kvBandscope.DrawDisplayRX Flag 200 kChnl 2 of 2"}));
    EXPECT_THAT(boxes.seen(), SizeIs(1));
}

TEST_F(InstalledErrorReport, AnUnsupportedFillStyleOutsideTheRangeIsReportedToo) {
    activate();
    EXPECT_EQ(container.control->put_FreqEndBuffer(1.0), S_OK);
    EXPECT_EQ(container.control->DrawByRange(438.0, 455.0), S_OK);
    slots[2]->values[L"iFillStyle"] = 8;
    const MessageBoxes boxes;
    EXPECT_TRUE(draw());
    EXPECT_THAT(records(), ElementsAre(Record{"Error 380  Invalid property value", "DrawDisplayTX; Flag 200",
                                              "kvBandscope.DrawDisplayTX Flag 200 kChnl 3 of 3"}));
}

TEST_F(InstalledErrorReport, RefreshHasItsContext) {
    activate();
    const MessageBoxes boxes;
    fail(2, L"dFreqLo");
    EXPECT_EQ(container.control->Refresh(), S_OK);
    slots[2]->failing.clear();
    fail(2, L"iFillStyle");
    EXPECT_EQ(container.control->Refresh(), S_OK);
    const std::string detail = "Error Refreshing Bandscope Display";
    EXPECT_THAT(records(), ElementsAre(Record{kTrouble, "Refresh; Flag 400", detail},
                                       Record{kTrouble, "Refresh; Flag 600", detail}));
    EXPECT_THAT(boxes.seen(), SizeIs(2));
}

TEST_F(InstalledErrorReport, RemovalHasNoContext) {
    activate();
    fail(2, L"dFreqHi");
    const MessageBoxes boxes;
    const Text key{std::wstring(L"TX0")};
    EXPECT_EQ(container.control->RemoveChnlByKey(key.get()), S_OK);
    EXPECT_THAT(records(), ElementsAre(Record{kTrouble, "RemoveChnlByKey; Flag 500", ""}));
    ASSERT_THAT(boxes.seen(), SizeIs(1));
    EXPECT_EQ(boxes.seen()[0].text.find(L"DETAIL"), std::wstring::npos);
    EXPECT_EQ(get(container.control.Get(), L"NumTX").result.lVal, 2);
}

TEST_F(InstalledErrorReport, ARangeThatIsNotFiniteIsReported) {
    activate();
    const MessageBoxes boxes;
    EXPECT_EQ(container.control->DrawByRange(440.0, kInfinite), S_OK);
    EXPECT_THAT(records(), ElementsAre(Record{kOverflow, "DrawByRange; Flag 300", ""}));
    EXPECT_THAT(boxes.seen(), SizeIs(1));
    EXPECT_TRUE(draw());
}

TEST_F(InstalledErrorReport, RangeWhoseChannelsFailIsReportedByTheStepThatReadThem) {
    activate();
    fail(0, L"dPwrDBM");
    const MessageBoxes boxes;
    EXPECT_EQ(container.control->DrawByRange(440.0, 460.0), S_OK);
    const std::vector<Record> found = records();
    ASSERT_THAT(found, SizeIs(2));
    EXPECT_EQ(found[0], (Record{kTrouble, "ReScaleChannels; Flag 100", "Error Re-scaling Bandscope Channels"}));
    EXPECT_EQ(found[1],
              (Record{kTrouble, "DrawDisplayTX; Flag 200", "kvBandscope.DrawDisplayTX Flag 200 kChnl 1 of 3"}));
    EXPECT_THAT(boxes.seen(), SizeIs(2));
}

TEST_F(InstalledErrorReport, ShowAllWithABufferThatIsNoNumber) {
    activate();
    const MessageBoxes boxes;
    EXPECT_EQ(container.control->DrawByRange(441.0, 442.0), S_OK);
    EXPECT_EQ(container.control->put_FreqEndBuffer(kInfinite), S_OK);
    EXPECT_EQ(container.control->put_ShowAll(VARIANT_TRUE), S_OK);
    EXPECT_THAT(records(), ElementsAre(Record{kOverflow, "ShowAll; Flag 200", ""}));
    EXPECT_THAT(boxes.seen(), SizeIs(1));
}

TEST_F(InstalledErrorReport, FailedExportIsRecordedWithoutAMessage) {
    activate();
    const MessageBoxes boxes;
    EXPECT_EQ(exportTo(maker.file(L"none\\a.bmp")), L"");
    EXPECT_THAT(records(),
                ElementsAre(Record{"Error 75  Path/File access error", "ExportToBMP2; Flag 600", "SavePicture"}));
    EXPECT_THAT(boxes.seen(), IsEmpty());
}

/// During its lifetime another window, on another thread, has the clipboard open.
class HeldClipboard {
  public:
    HeldClipboard()
        : ready_(CreateEventW(nullptr, TRUE, FALSE, nullptr)), done_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
        thread_ = std::thread([this] {
            const HWND owner = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
            EXPECT_TRUE(OpenClipboard(owner));
            SetEvent(ready_);
            WaitForSingleObject(done_, INFINITE);
            CloseClipboard();
            DestroyWindow(owner);
        });
        WaitForSingleObject(ready_, INFINITE);
    }
    ~HeldClipboard() {
        SetEvent(done_);
        thread_.join();
        CloseHandle(ready_);
        CloseHandle(done_);
    }
    HeldClipboard(const HeldClipboard&) = delete;
    HeldClipboard& operator=(const HeldClipboard&) = delete;

  private:
    HANDLE ready_;
    HANDLE done_;
    std::thread thread_;
};

TEST_F(InstalledErrorReport, ClipboardThatStaysBusyIsReported) {
    activate();
    const MessageBoxes boxes;
    {
        const HeldClipboard held;
        EXPECT_EQ(container.control->CopyDisplayToClipboard(), S_OK);
    }
    EXPECT_THAT(records(),
                ElementsAre(Record{"Error 521  Can't open Clipboard", "CopyDisplayToClipboard; Flag 300", ""}));
    EXPECT_THAT(boxes.seen(), SizeIs(1));
    EXPECT_FALSE(fileExists(maker.file(L"TEMP\\TempClip.BMP")));
}

TEST_F(InstalledErrorReport, SizeWithoutRoomForThePicturesIsRecordedWithoutAMessage) {
    activate();
    const MessageBoxes boxes;
    container.resize(600, 20);
    EXPECT_THAT(records(),
                testing::Each(Record{"Error 380  Invalid property value", "UserControl_Resize; Flag 300", ""}));
    EXPECT_THAT(records(), testing::Not(IsEmpty()));
    EXPECT_THAT(boxes.seen(), IsEmpty());
    container.resize(600, 480);
    EXPECT_TRUE(draw());
}

TEST_F(InstalledErrorReport, AccessorsThatFailEndQuietlyWithoutARecord) {
    activate();
    const MessageBoxes boxes;
    fail(0, L"sKey");
    const Text key{std::wstring(L"TX1")};
    ComPtr<_FreqSlot> found;
    EXPECT_EQ(container.control->GetTXbyKey(key.get(), found.GetAddressOf()), S_OK);
    const ComPtr<DictionarySlot> broken = DictionarySlot::create();
    broken->failing[L"dFreq"] = kError9;
    EXPECT_EQ(call(container.control.Get(), L"AddTXChnl", {Var(broken.Get())}).hr, S_OK);
    EXPECT_EQ(call(container.control.Get(), L"ReDrawChnl", {Var(broken.Get())}).hr, S_OK);
    EXPECT_THAT(records(), IsEmpty());
    EXPECT_THAT(boxes.seen(), IsEmpty());
    container.control->ClearAllChnls();
}

}  // namespace
}  // namespace kv::test
