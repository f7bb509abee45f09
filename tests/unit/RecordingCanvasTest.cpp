#include "headless/RecordingCanvas.h"

#include <gmock/gmock.h>

#include <climits>
#include <string>

namespace {

using namespace kv::headless;
using namespace kv::raster;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(RecordingCanvas, WritesALineForEveryCall) {
    RecordingCanvas canvas({200, 100});
    canvas.clear(0xFFFFFF);
    canvas.rectangle({10, 20, 30, 40}, {0x0000FF, 1}, {FillStyle::DownwardDiagonal, 0x0000FF}, DrawMode::CopyPen);
    canvas.line({1, 2}, {-3, INT_MIN}, {0xABCDEF, 3}, DrawMode::NotXorPen);
    canvas.rectangle({0, 0, 5, INT_MAX}, {0, -2}, {}, DrawMode::Invert);
    canvas.text({5, 6}, L"89.5 MHz", {L"Tahoma", 8.25, true}, 0x123456);
    canvas.text({5, 6}, L"", {L"Arial", 8, false}, 0);
    EXPECT_THAT(canvas.lines(), ElementsAre("clear ffffff",                                                     //
                                            "rectangle 10,20 30,40 pen 0000ff w1 brush 5 0000ff mode 13",       //
                                            "line 1,2 -3,-2147483648 pen abcdef w3 mode 10",                    //
                                            "rectangle 0,0 5,2147483647 pen 000000 w-2 brush 1 000000 mode 6",  //
                                            "text 5,6 \"89.5 MHz\" font \"Tahoma\" 8.25 bold color 123456",     //
                                            "text 5,6 \"\" font \"Arial\" 8 color 000000"));
}

TEST(RecordingCanvas, JoinsAndClearsItsLines) {
    RecordingCanvas canvas({1, 1});
    EXPECT_EQ(canvas.log(), "");
    canvas.clear(0);
    canvas.clear(1);
    EXPECT_EQ(canvas.log(), "clear 000000\nclear 000001\n");
    canvas.forget();
    EXPECT_THAT(canvas.lines(), IsEmpty());
}

TEST(RecordingCanvas, ShowsTheTopByteOfAnInvalidColor) {
    RecordingCanvas canvas({1, 1});
    canvas.clear(0x80000005U);  // a system color that was not resolved
    EXPECT_THAT(canvas.lines(), ElementsAre("clear 80000005"));
}

TEST(RecordingCanvas, WritesTextAsUtf8OnOneLine) {
    RecordingCanvas canvas({1, 1});
    const auto recorded = [&canvas](const std::wstring& text) {
        canvas.forget();
        canvas.text({}, text, {}, 0);
        const std::string& line = canvas.lines().front();
        return line.substr(9, line.find(" font ") - 9);
    };
    EXPECT_EQ(recorded(L"a\"b\\c"), R"("a\"b\\c")");
    EXPECT_EQ(recorded(L"a\r\nb\x7F"), R"("a\x0d\x0ab\x7f")");
    EXPECT_EQ(recorded(L"\u00B5\u2022\U0001F4E1"), "\"\xC2\xB5\xE2\x80\xA2\xF0\x9F\x93\xA1\"");
    EXPECT_EQ(recorded(std::wstring(1, static_cast<wchar_t>(0xD83D)) + L"x"), "\"\xEF\xBF\xBDx\"");
    EXPECT_EQ(recorded(std::wstring(1, static_cast<wchar_t>(0xDCE1))), "\"\xEF\xBF\xBD\"");
}

TEST(RecordingCanvas, MeasuringIsNotRecorded) {
    RecordingCanvas canvas({200, 100}, {7, 11});
    EXPECT_EQ(canvas.size(), (PixelSize{200, 100}));
    EXPECT_EQ(canvas.textSize(L"abcd", {}), (PixelSize{28, 11}));
    EXPECT_EQ(canvas.textSize(L"", {}), (PixelSize{0, 11}));
    canvas.resize({3, 4});
    EXPECT_EQ(canvas.size(), (PixelSize{3, 4}));
    EXPECT_THAT(canvas.lines(), IsEmpty());
}

}  // namespace
