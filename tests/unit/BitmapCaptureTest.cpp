// Two picture boxes captured into one bitmap: each of the system's calls with its arguments, and the pixels.
#include <gmock/gmock.h>

#include "forms/clsBitmapDC.h"
#include "forms/modPicToBMP.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::forms {
namespace {

using control::MemoryFiles;
using control::RecordingErrors;
using formenv::Handle;
using headless::HeadlessBitmaps;
using raster::PixelBuffer;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double kPixel = 15.0;  // twips

// The calls of the class, by itself.

class BitmapDCTest : public testing::Test {
  protected:
    BitmapDCTest() {
        for (std::uint32_t i = 0; i < 12; ++i)
            source[i] = 0x100000 + i;
    }
    /// A context of 4 by 3 pixels, each with a color of its own.
    std::uint32_t source[12] = {};
    HeadlessBitmaps calls;
    Handle context = calls.contextOf({source, 4, 3, 4});
    clsBitmapDC x{calls};
};

TEST_F(BitmapDCTest, AnEmptyBitmapHasTheReferencesFormatAndItsContextIsDeleted) {
    const Handle bitmap = x.CreateBitmapInMemory(30, 20, context);
    EXPECT_THAT(calls.calls, ElementsAre("CreateCompatibleDC 1", "CreateCompatibleBitmap 1 30x20", "DeleteDC 2"));
    EXPECT_EQ(bitmap, 3);
    EXPECT_EQ(calls.imageOf(bitmap).width, 30);
    EXPECT_EQ(calls.imageOf(bitmap).height, 20);
    EXPECT_EQ(calls.memoryContextCount(), 0U);
}

TEST_F(BitmapDCTest, PastingSelectsCopiesAndRestoresTheSelection) {
    Handle bitmap = x.CreateBitmapInMemory(4, 4, context);
    const Handle before = bitmap;
    calls.calls.clear();
    EXPECT_FALSE(x.PasteBitmap(bitmap, 2, 1, context, 1, 0, 3, 2, 13369376.0));
    EXPECT_EQ(bitmap, before);
    EXPECT_THAT(calls.calls, ElementsAre("CreateCompatibleDC 1", "SelectObject 4 3", "BitBlt 4 2,1 3x2 1 1,0 cc0020",
                                         "SelectObject 4 99", "DeleteDC 4"));
    EXPECT_THAT(calls.imageOf(bitmap).pixels, ElementsAre(0, 0, 0, 0,                //
                                                          0, 0, 0x100001, 0x100002,  //
                                                          0, 0, 0x100005, 0x100006,  //
                                                          0, 0, 0, 0));
    EXPECT_EQ(calls.memoryContextCount(), 0U);
}

TEST_F(BitmapDCTest, PastingIntoAnInvalidBitmapReturnsNoHandle) {
    Handle bitmap = 77;
    EXPECT_FALSE(x.PasteBitmap(bitmap, 0, 0, context, 0, 0, 4, 3, formenv::kSourceCopy));
    EXPECT_EQ(bitmap, 0);
    EXPECT_EQ(calls.memoryContextCount(), 0U);
}

TEST_F(BitmapDCTest, ThePictureIsCreatedWithItsDispatchInterfaceAndOwnsTheBitmap) {
    const Handle bitmap = x.CreateBitmapInMemory(4, 4, context);
    calls.calls.clear();
    {
        const auto picture = x.CreateBitmapPicture(bitmap, 7);
        EXPECT_THAT(calls.calls,
                    ElementsAre("OleCreatePictureIndirect 20 1 3 7 {00020400-0000-0000-C000-000000000046} own"));
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->handle(), bitmap);
        EXPECT_TRUE(picture->offers(L"{7BF80981-BF32-101A-8BBB-00AA00300CAB}"));
        EXPECT_EQ(calls.bitmapCount(), 1U);
    }
    EXPECT_EQ(calls.bitmapCount(), 0U);
}

TEST_F(BitmapDCTest, AFailedPictureLeavesTheBitmapWithTheCaller) {
    const Handle bitmap = x.CreateBitmapInMemory(4, 4, context);
    calls.fails = [](std::string_view call) { return call == "OleCreatePictureIndirect"; };
    EXPECT_FALSE(x.CreateBitmapPicture(bitmap, 0));
    EXPECT_EQ(calls.lastError(), HeadlessBitmaps::kMadeToFail);
    EXPECT_EQ(calls.bitmapCount(), 1U);
}

TEST_F(BitmapDCTest, ErrorCodesAreRecordedAndNoneIsTested) {
    calls.fails = [](std::string_view call) { return call == "CreateCompatibleDC"; };
    // The bitmap is created without a context too, and the code is that of the last call.
    const Handle bitmap = x.CreateBitmapInMemory(4, 4, context);
    EXPECT_NE(bitmap, 0);
    EXPECT_EQ(calls.lastError(), HeadlessBitmaps::kInvalidHandle);
    EXPECT_THAT(calls.calls, ElementsAre("CreateCompatibleDC 1", "CreateCompatibleBitmap 1 4x4", "DeleteDC 0"));
    calls.fails = nullptr;
    Handle same = bitmap;
    x.PasteBitmap(same, 0, 0, context, 0, 0, 4, 3, formenv::kSourceCopy);
    EXPECT_EQ(calls.lastError(), 0U);
    EXPECT_TRUE(x.pasted());
    calls.fails = [](std::string_view call) { return call == "BitBlt"; };
    EXPECT_FALSE(x.PasteBitmap(same, 0, 0, context, 0, 0, 4, 3, formenv::kSourceCopy));
    EXPECT_EQ(same, bitmap);
    EXPECT_FALSE(x.pasted());
}

// The export of two picture boxes.

class PicToBMPTest : public testing::Test {
  protected:
    PicToBMPTest() {
        outer.move({30.0 * kPixel, 40.0 * kPixel, 20.0 * kPixel, 10.0 * kPixel});
        outer.setBackColor(0x0000AA);
        inner.move({5.0 * kPixel, 2.0 * kPixel, 8.0 * kPixel, 4.0 * kPixel});
        inner.setBackColor(0x00BB00);
        calls.calls.clear();
    }

    bool run() { return ExportToBMP2(outer, inner, L"D:\\a.bmp", {files, errors}); }
    /// The colors of the file's pixels, one character each: o outer, i inner.
    std::vector<std::string> shown() const {
        const std::string& bytes = files.files.at(L"D:\\a.bmp");
        const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes.at(i)); };
        const std::size_t width = byte(18) + 256U * byte(19);
        const std::size_t height = byte(22) + 256U * byte(23);
        const std::size_t row = (width * 3 + 3) / 4 * 4;
        std::vector<std::string> rows;
        for (std::size_t y = 0; y < height; ++y) {
            std::string& text = rows.emplace_back();
            for (std::size_t x = 0; x < width; ++x) {
                const std::size_t at = 54 + (height - 1 - y) * row + x * 3;
                const std::uint32_t pixel = byte(at) + 256U * byte(at + 1) + 65536U * byte(at + 2);
                text += pixel == 0xAA0000U ? 'o' : pixel == 0x00BB00U ? 'i' : '?';
            }
        }
        return rows;
    }
    void expectFailure(std::int16_t flag, const wchar_t* step, int number) {
        EXPECT_FALSE(run());
        ASSERT_THAT(errors.reports, SizeIs(1));
        EXPECT_EQ(errors.reports[0].procedure, L"ExportToBMP2");
        EXPECT_EQ(errors.reports[0].flag, flag);
        EXPECT_EQ(errors.reports[0].detail, step);
        EXPECT_EQ(errors.reports[0].number, number);
        EXPECT_THAT(files.files, IsEmpty());
        EXPECT_THAT(platform.messages, IsEmpty());
        expectNothingLeft();
        errors.reports.clear();
    }
    void expectNothingLeft() const {
        EXPECT_EQ(calls.bitmapCount(), 0U);
        EXPECT_EQ(calls.memoryContextCount(), 0U);
    }
    /// Makes the n-th call of a name fail.
    void failAt(std::string_view name, int n) {
        calls.fails = [name, n](std::string_view call) mutable { return call == name && --n == 0; };
    }

    headless::HeadlessPlatform platform;
    HeadlessBitmaps& calls = platform.bitmaps;
    MemoryFiles files;
    RecordingErrors errors;
    formenv::PictureBox outer{platform, nullptr, L"outer"};
    formenv::PictureBox inner{platform, &outer, L"inner"};
};

TEST_F(PicToBMPTest, TheCallsAreInOrderWithTheirArguments) {
    ASSERT_EQ(outer.surface().deviceContext(), 1);
    ASSERT_EQ(inner.surface().deviceContext(), 2);
    EXPECT_TRUE(run());
    EXPECT_THAT(calls.calls,
                ElementsAre("CreateCompatibleDC 1", "CreateCompatibleBitmap 1 20x10", "DeleteDC 3",  // an empty bitmap
                            "CreateCompatibleDC 1", "SelectObject 5 4", "BitBlt 5 0,0 20x10 1 0,0 cc0020",
                            "SelectObject 5 99", "DeleteDC 5",  // the outer picture
                            "CreateCompatibleDC 2", "SelectObject 6 4", "BitBlt 6 5,2 8x4 2 0,0 cc0020",
                            "SelectObject 6 99", "DeleteDC 6",  // the inner one
                            "OleCreatePictureIndirect 20 1 4 0 {00020400-0000-0000-C000-000000000046} own", "imageOf 4",
                            "DeleteObject 4"));
    EXPECT_THAT(errors.reports, IsEmpty());
    EXPECT_EQ(platform.pumps, 1);
    expectNothingLeft();
}

TEST_F(PicToBMPTest, TheInnerPictureIsOverTheOuterOneAtItsPlace) {
    EXPECT_TRUE(run());
    const std::string plain(20, 'o');
    const std::string both = "oooooiiiiiiiiooooooo";
    EXPECT_THAT(shown(), ElementsAre(plain, plain, both, both, both, both, plain, plain, plain, plain));
}

TEST_F(PicToBMPTest, TheDevelopmentLogHasThePlacesAndTheInnerScale) {
    EXPECT_TRUE(run());
    EXPECT_THAT(errors.lines,
                ElementsAre(L"After HdcBitMap", L"Lft 450", L"Top 600", L"Lft 75", L"Top 30", L"Wid 120", L"Hgt 60"));
    errors.lines.clear();
    inner.setScaleWidth(12.5);
    inner.setScaleHeight(-100.25);
    EXPECT_TRUE(run());
    ASSERT_THAT(errors.lines, SizeIs(7));
    EXPECT_EQ(errors.lines[5], L"Wid 12.5");
    EXPECT_EQ(errors.lines[6], L"Hgt -100.25");
    EXPECT_EQ(shown()[2], "oooooiiiiiiiiooooooo");
}

TEST_F(PicToBMPTest, AnInnerPictureThatReachesBeyondTheOuterOneIsClipped) {
    inner.move({15.0 * kPixel, 8.0 * kPixel, 30.0 * kPixel, 30.0 * kPixel});
    EXPECT_TRUE(run());
    const std::string plain(20, 'o');
    EXPECT_THAT(shown(), ElementsAre(plain, plain, plain, plain, plain, plain, plain, plain, "oooooooooooooooiiiii",
                                     "oooooooooooooooiiiii"));
    inner.move({-4.0 * kPixel, -29.0 * kPixel, 6.0 * kPixel, 30.0 * kPixel});
    EXPECT_TRUE(run());
    EXPECT_EQ(shown()[0], "iioooooooooooooooooo");
    EXPECT_EQ(shown()[1], plain);
    inner.move({20.0 * kPixel, 0.0, 6.0 * kPixel, 30.0 * kPixel});
    EXPECT_TRUE(run());
    EXPECT_THAT(shown(), testing::Each(plain));
}

TEST_F(PicToBMPTest, AnOuterPictureWithAScaleOfItsOwnGivesItsSizeInPixels) {
    outer.setScaleLeft(400.0);
    outer.setScaleWidth(150.0);
    outer.setScaleTop(50.0);
    outer.setScaleHeight(-170.0);
    EXPECT_TRUE(run());
    EXPECT_THAT(shown(), SizeIs(10));
    EXPECT_THAT(shown()[2], "oooooiiiiiiiiooooooo");
}

TEST_F(PicToBMPTest, TwipsBecomePixelsOfTheScreen) {
    inner.move({});  // pictures get the new resolution when they are placed again
    platform.dots = 192;
    outer.move({0.0, 0.0, 20.0 * kPixel, 10.0 * kPixel});
    inner.move({5.0 * kPixel, 2.0 * kPixel, 8.0 * kPixel, 4.0 * kPixel});
    outer.setBackColor(0x0000AA);
    inner.setBackColor(0x00BB00);
    EXPECT_TRUE(run());
    ASSERT_THAT(shown(), SizeIs(20));
    EXPECT_EQ(shown()[4], std::string(10, 'o') + std::string(16, 'i') + std::string(14, 'o'));
    EXPECT_EQ(shown()[3], std::string(40, 'o'));
}

TEST_F(PicToBMPTest, EventsRunBetweenTheTwoPictures) {
    // Their drawing is visible in the inner picture, but no longer in the outer one.
    platform.onPump = [&] {
        outer.setBackColor(0x00BB00);
        inner.setBackColor(0x0000AA);
    };
    EXPECT_TRUE(run());
    EXPECT_THAT(shown(), testing::Each(std::string(20, 'o')));
    platform.onPump = nullptr;
}

TEST_F(PicToBMPTest, EventsMayResizeThePictures) {
    platform.onPump = [&] {
        outer.move({0.0, 0.0, 3.0 * kPixel, 3.0 * kPixel});
        inner.move({0.0, 0.0, 2.0 * kPixel, 2.0 * kPixel});
    };
    EXPECT_TRUE(run());
    ASSERT_THAT(shown(), SizeIs(10));
    EXPECT_EQ(shown()[1], "iioooooooooooooooooo");
    EXPECT_EQ(shown()[2], std::string(20, 'o'));
    expectNothingLeft();
}

TEST_F(PicToBMPTest, FailedStepsAreReportedWithTheirTextAndLeaveNothingBehind) {
    struct Case {
        const char* call;  ///< that fails
        int nth;
        std::int16_t flag;
        const wchar_t* step;
        int number;
    };
    using namespace util::error_number;
    for (const Case& c : {Case{"CreateCompatibleBitmap", 1, 200, L"Create Empty Bitmap", kOutOfMemory},
                          Case{"CreateCompatibleDC", 2, 300, L"P1 PasteBitmap", kInvalidPicture},
                          Case{"SelectObject", 1, 300, L"P1 PasteBitmap", kInvalidPicture},
                          Case{"BitBlt", 1, 300, L"P1 PasteBitmap", kInvalidPicture},
                          Case{"CreateCompatibleDC", 3, 400, L"P2 PasteBitmap", kInvalidPicture},
                          Case{"BitBlt", 2, 400, L"P2 PasteBitmap", kInvalidPicture},
                          Case{"OleCreatePictureIndirect", 1, 500, L"x.CreateBitMapPicture", kInvalidPicture},
                          Case{"imageOf", 1, 600, L"SavePicture", kInvalidPicture}}) {
        SCOPED_TRACE(std::string(c.call) + " " + std::to_string(c.nth));
        failAt(c.call, c.nth);
        expectFailure(c.flag, c.step, c.number);
    }
    calls.fails = nullptr;
    files.readOnly = true;
    expectFailure(600, L"SavePicture", kPathFileAccess);
    files.readOnly = false;
    platform.onPump = [] { throw std::bad_alloc(); };
    expectFailure(300, L"P1 PasteBitmap", kOutOfMemory);
    platform.onPump = nullptr;
    EXPECT_TRUE(run());
    files.files.clear();
    outer.move({0.0, 0.0, 20.0 * kPixel, 0.0});
    expectFailure(200, L"Create Empty Bitmap", kOutOfMemory);
}

TEST_F(PicToBMPTest, AnInnerPictureWithoutPixelsIsNotVisible) {
    inner.move({5.0 * kPixel, 2.0 * kPixel, 0.0, 0.0});
    EXPECT_TRUE(run());
    EXPECT_THAT(shown(), testing::Each(std::string(20, 'o')));
}

TEST_F(PicToBMPTest, ItWorksWithoutADevelopmentLog) {
    class WithoutLog final : public util::ErrorReporter {
        void ErrHand(std::int16_t, std::wstring_view, std::wstring_view, const util::RuntimeError&) noexcept override {}
    } withoutLog;
    EXPECT_TRUE(ExportToBMP2(outer, inner, L"D:\\a.bmp", {files, withoutLog}));
}

}  // namespace
}  // namespace kv::forms
