// Pictures for hosts: which ones are written, copied and printed, and what is refused.
#include <limits>

#include "control/ViewPictures.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr double kPrinter = 77.0;

class ViewPicturesTest : public ScopeTest {
  protected:
    void SetUp() override {
        addTX(450.0, 5.0, 30.0);
        scope.JustDrawIt();
        size = ui.picUnits.pixelSize();
        files.happened.clear();
    }
    /// The text of the error with this number with which `call` ends; nothing was written.
    template <class Call>
    std::wstring refusal(Call&& call, int number = util::error_number::kInvalidProcedureCall) {
        try {
            call();
        } catch (const util::RuntimeError& error) {
            EXPECT_EQ(error.number(), number);
            EXPECT_TRUE(files.files.empty());
            EXPECT_TRUE(platform.pictures.printed.empty());
            return std::wstring(error.text());
        }
        ADD_FAILURE() << "no error";
        return {};
    }
    std::wstring refusedSave(const std::wstring& file, int width = 0, int height = 0, int dpi = 0) {
        return refusal([&] { pictures.save(file, width, height, dpi); });
    }
    [[nodiscard]] static std::uint32_t number(const std::string& bytes, std::size_t at) {
        std::uint32_t value = 0;
        for (std::size_t i = 4; i-- > 0;)
            value = value << 8U | static_cast<unsigned char>(bytes.at(at + i));
        return value;
    }

    ViewPictures pictures{scope};
    raster::PixelSize size;
};

TEST_F(ViewPicturesTest, ABitmapOfTheScreensSizeHasThePixelsOfTheScreen) {
    double height = 0.0;
    double width = 0.0;
    std::wstring old = L"old.bmp";
    scope.DisplayToBMP(height, width, old);
    pictures.save(L"new.bmp", 0, 0, 0);
    EXPECT_EQ(files.files.at(L"new.bmp"), files.files.at(L"old.bmp"));
    pictures.save(L"sized.BMP", size.width, size.height, 96);
    EXPECT_EQ(files.files.at(L"sized.BMP"), files.files.at(L"old.bmp"));
}

TEST_F(ViewPicturesTest, ABitmapHasTheSizeAndTheResolutionThatItIsGiven) {
    pictures.save(L"a.bmp", 1000, 600, 0);
    const std::string& bytes = files.files.at(L"a.bmp");
    EXPECT_EQ(number(bytes, 18), 1000U);
    EXPECT_EQ(number(bytes, 22), 600U);
    EXPECT_EQ(number(bytes, 38), 3780U) << "96 dpi in pixels per meter";
    EXPECT_TRUE(platform.pictures.drawn.empty()) << "drawn in pixels, as on the screen";
}

TEST_F(ViewPicturesTest, AnotherResolutionAloneKeepsTheSizeOnPaper) {
    pictures.save(L"a.png", 0, 0, 192);
    EXPECT_EQ(files.files.at(L"a.png"),
              "PNG " + std::to_string(2 * size.width) + "x" + std::to_string(2 * size.height) + " 192");
    EXPECT_THAT(platform.pictures.drawn, Contains(HasSubstr("text")));
    pictures.save(L"b.bmp", 0, 0, 192);
    EXPECT_EQ(number(files.files.at(L"b.bmp"), 18), static_cast<unsigned>(2 * size.width));
    EXPECT_EQ(number(files.files.at(L"b.bmp"), 38), 7559U);
}

TEST_F(ViewPicturesTest, AMetafileIsDrawnInFinerUnitsThanPixels) {
    pictures.save(L"C:\\some.folder\\a.emf", 0, 0, 0);
    const std::string& lines = files.files.at(L"C:\\some.folder\\a.emf");
    const raster::PixelMap map{ui.picSpectrum.scale(),
                               {13 * ui.picSpectrum.pixelSize().width, 13 * ui.picSpectrum.pixelSize().height}};
    EXPECT_THAT(lines, HasSubstr("rectangle " + std::to_string(map.x(445.0)) + ","));
}

TEST_F(ViewPicturesTest, AnExtensionThatIsNoFormatIsRefused) {
    EXPECT_EQ(refusedSave(L"a.jpg"), L"SavePicture: the file is \"a.jpg\". Its name must end in .bmp, .png or .emf.");
    EXPECT_EQ(refusedSave(L"bmp"), L"SavePicture: the file is \"bmp\". Its name must end in .bmp, .png or .emf.");
    refusedSave(L"");
    refusedSave(L"folder.bmp\\file");
    refusedSave(L"folder.png/file");
    refusedSave(L"a.bmp.txt");
}

TEST_F(ViewPicturesTest, ASizeOrAResolutionOutOfBoundsIsRefused) {
    EXPECT_EQ(refusedSave(L"a.bmp", -1),
              L"SavePicture: the width is -1. It must be 32 to 16384 pixels, or 0 for that of the screen.");
    EXPECT_EQ(refusedSave(L"a.bmp", 500, 16385),
              L"SavePicture: the height is 16385. It must be 32 to 16384 pixels, or 0 for that of the screen.");
    EXPECT_EQ(refusedSave(L"a.bmp", 0, 0, 23),
              L"SavePicture: the resolution is 23. It must be 24 to 2400 dpi, or 0 for that of the screen.");
    refusedSave(L"a.bmp", 0, 0, 2401);
    refusedSave(L"a.bmp", 0, 0, -96);
    refusedSave(L"a.bmp", std::numeric_limits<std::int32_t>::min());
    EXPECT_THAT(refusedSave(L"a.bmp", 0, 0, 2400), StartsWith(L"SavePicture: the width is 1")) << "of the result";
    pictures.save(L"a.png", 16384, 500, 0);
    pictures.save(L"b.png", 500, 200, 24);
}

TEST_F(ViewPicturesTest, ASizeWithoutRoomForTheSpectrumIsRefusedAndTheLeastOneIsNamed) {
    const std::wstring text = refusedSave(L"a.png", 40, 40, 600);
    EXPECT_THAT(text,
                StartsWith(L"SavePicture: a picture of 40 x 40 pixels at 600 dpi has no room for the spectrum. It "
                           L"must have at least "));
    int width = 0;
    int height = 0;
    ASSERT_EQ(std::swscanf(text.c_str() + text.find(L"least ") + 6, L"%d x %d", &width, &height), 2);
    pictures.save(L"a.png", width, height, 600);
    EXPECT_TRUE(files.files.contains(L"a.png"));
    files.files.clear();
    refusedSave(L"a.png", width - 3, height, 600);
    refusedSave(L"a.png", width, height - 3, 600);
}

TEST_F(ViewPicturesTest, WithoutTheImagingComponentOnlyPngIsRefused) {
    platform.pictures.hasPng = false;
    EXPECT_THAT(refusal([&] { pictures.save(L"a.png", 0, 0, 0); }, 429), HasSubstr(L"(WIC)"));
    EXPECT_THAT(refusal([&] { pictures.copy(); }, 429), HasSubstr(L"(WIC)"));
    EXPECT_TRUE(platform.pictures.clipboardMetafile.empty());
    pictures.save(L"a.bmp", 0, 0, 0);
    pictures.save(L"a.emf", 0, 0, 0);
}

TEST_F(ViewPicturesTest, AFileThatCannotBeWrittenIsNamed) {
    files.readOnly = true;
    EXPECT_THAT(refusal([&] { pictures.save(L"Q:\\a.bmp", 0, 0, 0); }, util::error_number::kPathFileAccess),
                HasSubstr(L"\"Q:\\a.bmp\""));
}

TEST_F(ViewPicturesTest, TheClipboardGetsAllThreeForms) {
    pictures.copy();
    EXPECT_EQ(platform.pictures.clipboard.pixels, PictureCopy::shownPixels(scope.shown()).pixels);
    EXPECT_EQ(platform.pictures.clipboardPng,
              "PNG " + std::to_string(size.width) + "x" + std::to_string(size.height) + " 96");
    EXPECT_THAT(platform.pictures.clipboardMetafile, HasSubstr("rectangle"));
}

TEST_F(ViewPicturesTest, ABusyClipboardIsAnError) {
    platform.pictures.busyClipboard = true;
    EXPECT_THAT(refusal([&] { pictures.copy(); }, util::error_number::kCannotOpenClipboard),
                StartsWith(L"CopyPicture: another program has the clipboard open."));
}

TEST_F(ViewPicturesTest, APrinterGetsThePictureInItsPixels) {
    pictures.print(kPrinter, 100, 200, 4500, 2700);
    ASSERT_EQ(platform.pictures.printed.size(), 1U);
    const auto& [context, place, picture] = platform.pictures.printed.front();
    EXPECT_EQ(context, 77);
    EXPECT_EQ(place, (raster::PixelRect{100, 200, 4600, 2900}));
    EXPECT_EQ(picture.size, (raster::PixelSize{4500, 2700}));
    EXPECT_EQ(picture.dpi, 600);
    EXPECT_EQ(picture.scale, 6.25);
}

TEST_F(ViewPicturesTest, ADeviceThatRecordsGetsFinerUnits) {
    platform.pictures.onPrinter = {96, 13};
    pictures.print(kPrinter, 0, 0, 720, 480);
    pictures.print(kPrinter, 0, 0, 16000, 480);
    ASSERT_EQ(platform.pictures.printed.size(), 2U);
    EXPECT_EQ(platform.pictures.printed[0].picture.size, (raster::PixelSize{9360, 6240}));
    EXPECT_EQ(platform.pictures.printed[1].picture.size, (raster::PixelSize{16000, 480})) << "no larger coordinates";
}

TEST_F(ViewPicturesTest, WhatIsNoDeviceOrNoRectangleIsNotPrinted) {
    EXPECT_EQ(refusal([&] { pictures.print(5.0, 0, 0, 500, 500); }),
              L"PrintPicture: hdc is 5. It must be the handle of a device context, as a number.");
    refusal([&] { pictures.print(0.0, 0, 0, 500, 500); });
    refusal([&] { pictures.print(77.5, 0, 0, 500, 500); });
    refusal([&] { pictures.print(std::numeric_limits<double>::quiet_NaN(), 0, 0, 500, 500); });
    refusal([&] { pictures.print(std::numeric_limits<double>::infinity(), 0, 0, 500, 500); });
    refusal([&] { pictures.print(-1e300, 0, 0, 500, 500); });
    EXPECT_EQ(refusal([&] { pictures.print(kPrinter, 0, 0, 31, 500); }),
              L"PrintPicture: the width is 31. It must be 32 to 32000 pixels of the device.");
    refusal([&] { pictures.print(kPrinter, 0, 0, 500, -500); });
    refusal([&] { pictures.print(kPrinter, 32001, 0, 500, 500); });
    refusal([&] { pictures.print(kPrinter, 0, std::numeric_limits<std::int32_t>::max(), 500, 500); });
    EXPECT_THAT(refusal([&] { pictures.print(kPrinter, 0, 0, 100, 100); }), HasSubstr(L"at 600 dpi has no room"));
}

TEST_F(ViewPicturesTest, NothingHappensInTheDisplay) {
    const std::vector<std::uint32_t> before = pixelsOf(ui.picSpectrum);
    const int pumps = platform.pumps;
    events.heard.clear();
    pictures.save(L"a.bmp", 900, 700, 0);
    pictures.save(L"a.emf", 900, 700, 300);
    pictures.copy();
    pictures.print(kPrinter, 0, 0, 4500, 2700);
    EXPECT_EQ(pixelsOf(ui.picSpectrum), before);
    EXPECT_EQ(platform.pumps, pumps);
    EXPECT_TRUE(events.heard.empty());
}

}  // namespace
}  // namespace kv::control
