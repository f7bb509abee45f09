// The display as a bitmap file and on the clipboard.
#include "raster/Twips.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A 24-bit bottom-up bitmap file, read for itself.
class Bitmap {
  public:
    explicit Bitmap(const std::string& bytes) : bytes_(bytes) {}
    int width() const { return static_cast<int>(number(18)); }
    int height() const { return static_cast<int>(number(22)); }
    std::uint32_t at(int x, int y) const {
        const std::size_t row = (static_cast<std::size_t>(width()) * 3 + 3) / 4 * 4;
        const std::size_t offset =
            number(10) + row * static_cast<std::size_t>(height() - 1 - y) + static_cast<std::size_t>(x) * 3;
        return number(offset) & 0xFFFFFFU;
    }

  private:
    std::uint32_t number(std::size_t offset) const {
        std::uint32_t value = 0;
        for (std::size_t i = 4; i-- > 0;)
            value = value << 8U | static_cast<unsigned char>(offset + i < bytes_.size() ? bytes_[offset + i] : 0);
        return value;
    }
    const std::string& bytes_;
};

constexpr wchar_t kDefaultFile[] = L"C:\\Scratch\\NXBandscope.BMP";

class ExportTest : public ScopeTest {
  protected:
    double height = -1.0;
    double width = -1.0;
};

TEST_F(ExportTest, WithoutANameTheFileIsInTheScratchFolder) {
    std::wstring name;
    EXPECT_EQ(scope.DisplayToBMP(height, width, name), kDefaultFile);
    EXPECT_EQ(name, kDefaultFile);
    EXPECT_EQ(files.files.count(kDefaultFile), 1U);
    EXPECT_EQ(height, ui.picUnits.height());
    EXPECT_EQ(width, ui.picUnits.width());
}

TEST_F(ExportTest, ANameThatIsGivenIsUsed) {
    std::wstring name = L"D:\\plots\\a.bmp";
    EXPECT_EQ(scope.DisplayToBMP(height, width, name), L"D:\\plots\\a.bmp");
    EXPECT_EQ(files.files.size(), 1U);
    EXPECT_EQ(files.files.count(name), 1U);
}

TEST_F(ExportTest, AFileThatCannotBeWrittenGivesNothingAndNoMessage) {
    files.readOnly = true;
    std::wstring name = L"D:\\plots\\a.bmp";
    EXPECT_EQ(scope.DisplayToBMP(height, width, name), L"");
    EXPECT_EQ(height, 0.0);
    EXPECT_EQ(width, 0.0);
    EXPECT_THAT(files.files, IsEmpty());
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.procedure, L"ExportToBMP2");
    EXPECT_EQ(report.detail, L"SavePicture");
    EXPECT_EQ(report.number, util::error_number::kPathFileAccess);
    EXPECT_THAT(platform.messages, IsEmpty());
}

TEST_F(ExportTest, ThePictureIsTheStripWithTheSpectrumAtItsPlace) {
    addTX(450.0, 20.0, 2.0);
    scope.DrawDisplay();
    std::wstring name;
    scope.DisplayToBMP(height, width, name);
    const Bitmap picture(files.files.at(name));
    const raster::PixelSize strip = ui.picUnits.pixelSize();
    const raster::PixelSize inner = ui.picSpectrum.pixelSize();
    ASSERT_EQ(picture.width(), strip.width);
    ASSERT_EQ(picture.height(), strip.height);
    const int left = raster::twipsToPixels(ui.picSpectrum.left(), 96);
    const int top = raster::twipsToPixels(ui.picSpectrum.top(), 96);
    int different = 0;
    for (int y = 0; y < strip.height; ++y) {
        for (int x = 0; x < strip.width; ++x) {
            const bool inside = x >= left && x < left + inner.width && y >= top && y < top + inner.height;
            const std::uint32_t expected =
                inside ? pixelAt(ui.picSpectrum, x - left, y - top) : pixelAt(ui.picUnits, x, y);
            different += picture.at(x, y) == expected ? 0 : 1;
        }
    }
    EXPECT_EQ(different, 0);
}

TEST_F(ExportTest, ASpectrumThatReachesOutOfTheStripIsClipped) {
    ui.picUnits.move({0.0, 0.0, 20.0 * 15.0, 10.0 * 15.0});
    ui.picSpectrum.move({-5.0 * 15.0, 4.0 * 15.0, 15.0 * 15.0, 30.0 * 15.0});
    ui.picUnits.setBackColor(0x112233);
    ui.picSpectrum.setBackColor(0x445566);
    std::wstring name;
    scope.DisplayToBMP(height, width, name);
    const Bitmap picture(files.files.at(name));
    ASSERT_EQ(picture.width(), 20);
    ASSERT_EQ(picture.height(), 10);
    EXPECT_EQ(picture.at(0, 3), 0x332211U);
    EXPECT_EQ(picture.at(19, 3), 0x332211U);
    EXPECT_EQ(picture.at(0, 4), 0x665544U);
    EXPECT_EQ(picture.at(9, 9), 0x665544U);
    EXPECT_EQ(picture.at(10, 9), 0x332211U);
}

TEST_F(ExportTest, ASpectrumWiderThanTheRestOfTheStripIsClippedOnTheRight) {
    ui.picUnits.move({0.0, 0.0, 20.0 * 15.0, 10.0 * 15.0});
    ui.picSpectrum.move({12.0 * 15.0, 2.0 * 15.0, 15.0 * 15.0, 3.0 * 15.0});
    ui.picSpectrum.setBackColor(0x445566);
    std::wstring name;
    scope.DisplayToBMP(height, width, name);
    const Bitmap picture(files.files.at(name));
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 20; ++x)
            EXPECT_EQ(picture.at(x, y), x >= 12 && y >= 2 && y < 5 ? 0x665544U : 0xF0F0F0U) << x << ',' << y;
    }
}

TEST_F(ExportTest, ASpectrumOutsideTheStripDoesNotShow) {
    ui.picUnits.move({0.0, 0.0, 300.0, 150.0});
    ui.picSpectrum.setBackColor(0x445566);
    for (const double far : {-1000.0, 1000.0}) {
        ui.picSpectrum.move({far * 15.0, far * 15.0, 150.0, 150.0});
        std::wstring name;
        EXPECT_NE(scope.DisplayToBMP(height, width, name), L"");
        EXPECT_EQ(Bitmap(files.files.at(name)).at(0, 0), 0xF0F0F0U);
    }
}

TEST_F(ExportTest, EventsRunBeforeThePictureIsTaken) {
    platform.onPump = [&] { ui.picUnits.setBackColor(0x0000FF); };
    std::wstring name;
    scope.DisplayToBMP(height, width, name);
    platform.onPump = nullptr;
    EXPECT_EQ(Bitmap(files.files.at(name)).at(0, 0), 0xFF0000U);
}

TEST_F(ExportTest, TheClipboardHoldsThePictureAndTheScratchFileIsGone) {
    addTX(450.0, 20.0, 2.0);
    scope.DrawDisplay();
    scope.CopyDisplayToClipboard();
    const Bitmap picture(files.clipboard);
    EXPECT_EQ(picture.width(), ui.picUnits.pixelSize().width);
    EXPECT_EQ(picture.height(), ui.picUnits.pixelSize().height);
    EXPECT_THAT(files.files, IsEmpty());
}

TEST_F(ExportTest, AFailedExportLeavesTheClipboardEmpty) {
    files.readOnly = true;
    scope.CopyDisplayToClipboard();
    EXPECT_EQ(files.clipboard, "");
    EXPECT_EQ(takeReport().procedure, L"ExportToBMP2");
}

TEST_F(ExportTest, ABusyClipboardIsReportedAndTheScratchFileIsGone) {
    files.busyClipboard = true;
    scope.CopyDisplayToClipboard();
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.procedure, L"CopyDisplayToClipboard");
    EXPECT_EQ(report.number, util::error_number::kCannotOpenClipboard);
    EXPECT_THAT(files.files, IsEmpty());
}

TEST_F(ExportTest, TheClipboardIsClearedAfterTheExportAndBeforeThePictureComes) {
    scope.CopyDisplayToClipboard();
    EXPECT_THAT(files.happened, ElementsAre("write", "clear", "place", "delete"));
    files.happened.clear();
    files.readOnly = true;
    scope.CopyDisplayToClipboard();
    EXPECT_THAT(files.happened, ElementsAre("clear"));
    takeReport();
}

TEST_F(ExportTest, AFileThatIsGoneLeavesTheClipboardEmpty) {
    class Thief final : public MemoryFiles {
      public:
        void clearClipboard() override {
            MemoryFiles::clearClipboard();
            files.clear();
        }
    } thief;
    Bandscope robbed{
        Services{platform, events, errors, thief, [] { return util::Ref<channels::FreqSlotBase>(new PlainSlot); }}};
    robbed.CopyDisplayToClipboard();
    EXPECT_EQ(thief.clipboard, "");
    EXPECT_THAT(thief.happened, ElementsAre("write", "clear", "delete"));
}

TEST_F(ExportTest, AStatementThatFailsIsSkippedAndTheNextOnesRun) {
    platform.onPump = [n = 0]() mutable {
        if (n++ == 0)
            throw util::RuntimeError(util::error_number::kOverflow);
    };
    std::wstring name = L"D:\\a.bmp";
    EXPECT_EQ(scope.DisplayToBMP(height, width, name), L"D:\\a.bmp");
    EXPECT_EQ(height, ui.picUnits.height());
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.procedure, L"DisplayToBMP");
    EXPECT_EQ(report.flag, 200);
    EXPECT_EQ(report.number, util::error_number::kOverflow);
}

TEST_F(ExportTest, AScratchFolderThatFailsGivesNothing) {
    class NoScratch final : public MemoryFiles {
      public:
        std::wstring scratchFolder() override { throw util::RuntimeError(util::error_number::kPathFileAccess); }
        void writeFile(const std::wstring& path, const std::string& bytes) override {
            if (path.empty())
                throw util::RuntimeError(util::error_number::kPathFileAccess);
            MemoryFiles::writeFile(path, bytes);
        }
    } none;
    Bandscope homeless{
        Services{platform, events, errors, none, [] { return util::Ref<channels::FreqSlotBase>(new PlainSlot); }}};
    std::wstring name;
    EXPECT_EQ(homeless.DisplayToBMP(height, width, name), L"");
    EXPECT_EQ(height, 0.0);
    EXPECT_EQ(width, 0.0);
    ASSERT_EQ(errors.reports.size(), 2U);
    EXPECT_EQ(errors.reports[0].procedure, L"DisplayToBMP");
    EXPECT_EQ(errors.reports[1].procedure, L"ExportToBMP2");
    errors.reports.clear();
}

TEST_F(ExportTest, TheSizeIsThatOfTheStripAfterItsEvents) {
    platform.onPump = [&] { ui.picUnits.setHeight(100.0 * 15.0); };
    std::wstring name;
    scope.DisplayToBMP(height, width, name);
    platform.onPump = nullptr;
    EXPECT_EQ(height, 1500.0);
    EXPECT_EQ(Bitmap(files.files.at(name)).height(), 100);
}

TEST_F(ExportTest, AnExportInsideTheEventsOfAnotherGivesTwoWholeFiles) {
    int depth = 0;
    std::wstring inner = L"D:\\inner.bmp";
    platform.onPump = [&] {
        if (depth++ == 0)
            scope.DisplayToBMP(height, width, inner);
    };
    std::wstring outer = L"D:\\outer.bmp";
    EXPECT_EQ(scope.DisplayToBMP(height, width, outer), outer);
    platform.onPump = nullptr;
    EXPECT_EQ(files.files.at(inner), files.files.at(outer));
    EXPECT_EQ(platform.bitmaps.bitmapCount(), 0U);
}

}  // namespace
}  // namespace kv::control
