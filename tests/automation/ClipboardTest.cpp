// The display on the clipboard, as another program reads it.
#include <thread>

#include "tests/automation/ErrorReport.h"
#include "tests/automation/OtherClipboard.h"

namespace kv::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Clipboard : public InstalledErrorReport {
  protected:
    static void SetUpTestSuite() { warmUpClipboard(); }
    Clipboard() {
        activate();
        EXPECT_EQ(exportTo(file), file);
        written = Picture::read(file);
        EXPECT_GT(written.width, 300);
    }
    void copy() { EXPECT_EQ(container.control->CopyDisplayToClipboard(), S_OK); }
    void expectPictureElsewhere() const {
        const ClipboardContent content = readClipboardElsewhere();
        EXPECT_EQ(content.bitmap.width, written.width);
        EXPECT_EQ(content.bitmap.height, written.height);
        EXPECT_TRUE(content.bitmap == written);
        EXPECT_EQ(content.dib.width, written.width);
        EXPECT_EQ(content.dib.height, written.height);
        EXPECT_TRUE(content.dib == written);
    }
    void expectNoScratchFile() const { EXPECT_FALSE(fileExists(scratch)); }

    std::wstring file = maker.file(L"written.bmp");
    std::wstring scratch = maker.file(L"TEMP\\TempClip.BMP");
    Picture written;
    MessageBoxes boxes;
};

TEST_F(Clipboard, AnotherProgramFindsThePictureThatTheFileHolds) {
    putText(L"what was there before");
    copy();
    expectPictureElsewhere();
    EXPECT_FALSE(IsClipboardFormatAvailable(CF_UNICODETEXT));
    expectNoScratchFile();
    EXPECT_THAT(records(), IsEmpty());
}

TEST_F(Clipboard, ItsPictureIsAsLargeAsTheStripInPixels) {
    copy();
    RECT strip{};
    GetClientRect(container.pictureBox(L"picUnits"), &strip);
    const ClipboardContent content = readClipboardElsewhere();
    EXPECT_EQ(content.bitmap.width, strip.right);
    EXPECT_EQ(content.bitmap.height, strip.bottom);
}

TEST_F(Clipboard, ThePictureStaysWhenTheControlIsGone) {
    copy();
    container.control->ClearAllChnls();
    container.host.destroy();
    container.control.Reset();
    expectPictureElsewhere();
}

TEST_F(Clipboard, TheLatestPictureReplacesTheOneBefore) {
    copy();
    EXPECT_EQ(container.control->put_lColorSpecBack(0x00123456), S_OK);
    copy();
    const ClipboardContent content = readClipboardElsewhere();
    EXPECT_FALSE(content.bitmap == written);
    EXPECT_GT(content.bitmap.count(0x00123456, content.bitmap.all()), 1000);
}

TEST_F(Clipboard, TheControlWaitsForAProgramThatHoldsItForAMoment) {
    putText(L"in the way");
    {
        const HeldElsewhere held(200);
        copy();
    }
    EXPECT_THAT(boxes.seen(), IsEmpty());
    EXPECT_THAT(records(), IsEmpty());
    expectPictureElsewhere();
    expectNoScratchFile();
}

TEST_F(Clipboard, TheWaitingWindowsAnswerTheProgramThatHoldsIt) {
    const HWND window = container.root();
    const HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    LRESULT answered = 0;
    std::thread holder([&] {
        EXPECT_TRUE(OpenClipboard(nullptr));
        SetEvent(ready);
        Sleep(100);
        // As a program does that requests a format from the clipboard's owner.
        answered = SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 5000, nullptr);
        CloseClipboard();
    });
    WaitForSingleObject(ready, INFINITE);
    copy();
    holder.join();
    CloseHandle(ready);
    EXPECT_NE(answered, 0);
    EXPECT_THAT(records(), IsEmpty());
    expectPictureElsewhere();
}

TEST_F(Clipboard, AFailedExportLeavesItEmpty) {
    // A file cannot be written where a folder has its name.
    CreateDirectoryW(maker.file(L"TEMP").c_str(), nullptr);
    ASSERT_TRUE(CreateDirectoryW(scratch.c_str(), nullptr));
    putText(L"what was there before");
    copy();
    EXPECT_EQ(CountClipboardFormats(), 0);
    const ClipboardContent content = readClipboardElsewhere();
    EXPECT_EQ(content.bitmap.width, 0);
    EXPECT_EQ(content.dib.width, 0);
    EXPECT_THAT(boxes.seen(), IsEmpty());
    EXPECT_THAT(records(),
                ElementsAre(Record{"Error 75  Path/File access error", "ExportToBMP2; Flag 600", "SavePicture"}));
    EXPECT_TRUE(RemoveDirectoryW(scratch.c_str()));
}

TEST_F(Clipboard, ManyCopiesLeaveNoHandlesBehind) {
    copy();
    const DWORD before = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    for (int i = 0; i < 20; ++i)
        copy();
    // 0 means that the system does not count them; the native tests do.
    EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), before + 2);
}

// Without a window, so that no message box takes part in the time; the box is tested with the other reports.
TEST_F(InstalledErrorReport, AProgramThatHoldsTheClipboardForLongIsReported) {
    warmUpClipboard();
    putText(L"in the way");
    ULONGLONG took = 0;
    {
        const HeldElsewhere held(2500);
        const ULONGLONG start = GetTickCount64();
        EXPECT_EQ(container.control->CopyDisplayToClipboard(), S_OK);
        took = GetTickCount64() - start;
    }
    EXPECT_GE(took, 450U);
    EXPECT_LT(took, 2000U);
    EXPECT_THAT(records(),
                ElementsAre(Record{"Error 521  Can't open Clipboard", "CopyDisplayToClipboard; Flag 300", ""}));
    EXPECT_TRUE(IsClipboardFormatAvailable(CF_UNICODETEXT));
    EXPECT_FALSE(fileExists(maker.file(L"TEMP\\TempClip.BMP")));
}

class ClipboardFolder : public ErrorReport {
  protected:
    TempFolder odd{L"kv Gr\u00FC\u00DFe \u0444 \u5468 "};
    AppPathKey installed{util::product::kFamilyPrograms[0]};
};

TEST_F(ClipboardFolder, MayHaveAnyCharactersInItsName) {
    warmUpClipboard();
    installed.set(odd.file(L"KVZEP32.EXE"));
    EXPECT_EQ(container.control->CopyDisplayToClipboard(), S_OK);
    const ClipboardContent content = readClipboardElsewhere();
    EXPECT_GT(content.bitmap.width, 300);
    EXPECT_TRUE(content.bitmap == content.dib);
    EXPECT_TRUE(fileExists(odd.file(L"TEMP")));
    EXPECT_FALSE(fileExists(odd.file(L"TEMP\\TempClip.BMP")));
}

}  // namespace
}  // namespace kv::test
