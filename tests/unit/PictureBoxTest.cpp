// The picture box: user scale, drawing properties, the map to pixels, and the picture that is kept.
#include "formenv/PictureBox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

#include "headless/HeadlessPlatform.h"
#include "headless/RecordingCanvas.h"
#include "tests/unit/WidgetFixture.h"
#include "util/RuntimeError.h"

namespace kv::formenv {
namespace {

using ::testing::ElementsAre;

/// 100 by 50 pixels.
class PictureBoxTest : public ::testing::Test {
  protected:
    PictureBoxTest() {
        box.move({0.0, 0.0, 1500.0, 750.0});
        box.setBackColor(0xFFFFFF);
    }
    void setScale(const raster::UserScale& scale) {
        box.setScaleLeft(scale.left);
        box.setScaleTop(scale.top);
        box.setScaleWidth(scale.width);
        box.setScaleHeight(scale.height);
    }
    std::uint32_t pixelAt(int x, int y) { return box.surface().pixels().row(y)[x] & 0xFFFFFFU; }

    headless::HeadlessPlatform platform;
    PictureBox box{platform, nullptr, L"box"};
    headless::RecordingCanvas canvas{{100, 50}};
    RecordingPeer peer;
};

TEST_F(PictureBoxTest, TheScaleIsTwipsUntilAUserScaleIsChosen) {
    EXPECT_FALSE(box.hasUserScale());
    EXPECT_EQ(box.scale(), (raster::UserScale{0.0, 0.0, 1500.0, 750.0}));
    box.setWidth(3000.0);
    EXPECT_EQ(box.scaleWidth(), 3000.0);
    box.setUserScaleMode();
    EXPECT_TRUE(box.hasUserScale());
    box.setWidth(1500.0);
    EXPECT_EQ(box.scaleWidth(), 3000.0);
}

TEST_F(PictureBoxTest, SettingAnyMemberMakesAUserScale) {
    box.setScaleTop(5.0);
    EXPECT_TRUE(box.hasUserScale());
    EXPECT_EQ(box.scale(), (raster::UserScale{0.0, 5.0, 1500.0, 750.0}));
}

TEST_F(PictureBoxTest, ABoxWithoutASizeStillHasAScale) {
    PictureBox empty(platform, nullptr, L"empty");
    empty.setUserScaleMode();
    EXPECT_EQ(empty.scale(), (raster::UserScale{0.0, 0.0, 1.0, 1.0}));
    EXPECT_EQ(empty.surface().pixels().width, 1);
    EXPECT_EQ(empty.surface().pixels().height, 1);
}

TEST_F(PictureBoxTest, InvalidScalesAreErrorsAndChangeNothing) {
    setScale({1.0, 2.0, 3.0, -4.0});
    for (const double value : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(errorOf([&] { box.setScaleLeft(value); }), 6);
        EXPECT_EQ(errorOf([&] { box.setScaleTop(value); }), 6);
        EXPECT_EQ(errorOf([&] { box.setScaleWidth(value); }), 6);
        EXPECT_EQ(errorOf([&] { box.setScaleHeight(value); }), 6);
    }
    EXPECT_EQ(errorOf([&] { box.setScaleWidth(0.0); }), 380);
    EXPECT_EQ(errorOf([&] { box.setScaleHeight(0.0); }), 380);
    EXPECT_EQ(box.scale(), (raster::UserScale{1.0, 2.0, 3.0, -4.0}));
}

TEST_F(PictureBoxTest, DrawingPropertiesOutOfRangeAreErrorsAndChangeNothing) {
    for (const int style : {-1, 8})
        EXPECT_EQ(errorOf([&] { box.setFillStyle(style); }), 380);
    for (const int width : {0, -3})
        EXPECT_EQ(errorOf([&] { box.setDrawWidth(width); }), 380);
    for (const double points : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(errorOf([&] { box.setFontSize(points); }), 380);
    EXPECT_EQ(box.fillStyle(), 1);
    EXPECT_EQ(box.drawMode(), 13);
    EXPECT_EQ(box.drawWidth(), 1);
    EXPECT_EQ(box.font().points, 8.0);
}

TEST_F(PictureBoxTest, OneMapLeadsFromUserUnitsToPixels) {
    setScale({350.0, 100.0, 200.0, -100.0});
    EXPECT_EQ(box.pixelX(350.0), 0);
    EXPECT_EQ(box.pixelX(550.0), 100);
    EXPECT_EQ(box.pixelX(450.0), 50);
    EXPECT_EQ(box.pixelY(100.0), 0);
    EXPECT_EQ(box.pixelY(0.0), 50);
    EXPECT_EQ(box.userX(50), 450.0);
    EXPECT_EQ(box.userY(50), 0.0);
}

TEST_F(PictureBoxTest, HalvesRoundUpOnBothSidesOfTheOrigin) {
    setScale({0.0, 0.0, 100.0, 50.0});
    EXPECT_EQ(box.pixelX(2.5), 3);
    EXPECT_EQ(box.pixelX(2.4999), 2);
    EXPECT_EQ(box.pixelX(-2.5), -2);
    EXPECT_EQ(box.pixelX(-2.5001), -3);
}

TEST_F(PictureBoxTest, FarCoordinatesSaturateAndNanIsTheOrigin) {
    setScale({0.0, 0.0, 1e-300, 1.0});
    EXPECT_EQ(box.pixelX(1e300), 1 << 24);
    EXPECT_EQ(box.pixelX(-1e300), -(1 << 24));
    EXPECT_EQ(box.pixelX(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST_F(PictureBoxTest, PixelSizeFollowsTheRoundedEdgesAtAnyResolution) {
    box.move({7.0, 0.0, 15.0, 15.0});
    EXPECT_EQ(box.pixelSize().width, 1);
    box.move({8.0, 0.0, 15.0, 15.0});
    EXPECT_EQ(box.pixelSize().width, 1);
    platform.dots = 144;
    box.move({0.0, 0.0, 1500.0, 750.0});
    EXPECT_EQ(box.pixelSize(), (raster::PixelSize{150, 75}));
}

TEST_F(PictureBoxTest, StrokesReachTheCanvasWithTheirProperties) {
    setScale({0.0, 0.0, 100.0, 50.0});
    box.divert(&canvas);
    box.setDrawWidth(3);
    box.setDrawMode(raster::DrawMode::NotXorPen);
    box.line(1.0, 2.0, 30.0, 40.0, 0x0000FF);
    EXPECT_EQ(box.currentX, 30.0);
    EXPECT_EQ(box.currentY, 40.0);
    box.setFillStyle(5);
    box.setFillColor(0x00FF00);
    box.setDrawMode(raster::DrawMode::CopyPen);
    box.setDrawWidth(1);
    box.box(30.0, 40.0, 10.0, 20.0, 0xFF0000);
    box.filledBox(10.0, 20.0, 10.0, 20.0, 0xFF00FF);
    EXPECT_THAT(canvas.lines(), ElementsAre("line 1,2 30,40 pen 0000ff w3 mode 10",
                                            "rectangle 10,20 31,41 pen ff0000 w1 brush 5 00ff00 mode 13",
                                            "rectangle 10,20 11,21 pen ff00ff w1 brush 0 ff00ff mode 13"));
}

TEST_F(PictureBoxTest, SystemColorsAreResolvedWhenDrawing) {
    box.divert(&canvas);
    box.line(0.0, 0.0, 15.0, 0.0, raster::system_color::kButtonFace);
    EXPECT_THAT(canvas.lines(), ElementsAre("line 0,0 1,0 pen f0f0f0 w1 mode 13"));
}

TEST_F(PictureBoxTest, ClearingUsesTheBackColorAndMovesToTheOrigin) {
    setScale({350.0, 100.0, 200.0, -100.0});
    box.divert(&canvas);
    box.currentX = 5.0;
    box.setBackColor(0x112233);
    box.cls();
    EXPECT_THAT(canvas.lines(), ElementsAre("clear 112233", "clear 112233"));
    EXPECT_EQ(box.currentX, 350.0);
    EXPECT_EQ(box.currentY, 100.0);
}

TEST_F(PictureBoxTest, PrintingMovesToTheNextLine) {
    setScale({0.0, 50.0, 100.0, -50.0});
    box.divert(&canvas);
    box.setForeColor(0x0000FF);
    box.currentX = 10.0;
    box.currentY = 40.0;
    box.print(L"ab");
    EXPECT_THAT(canvas.lines(), ElementsAre("text 10,10 \"ab\" font \"Tahoma\" 8 color 0000ff"));
    EXPECT_EQ(box.currentX, 0.0);
    EXPECT_EQ(box.currentY, 40.0 - box.textHeight(L"ab"));
}

TEST_F(PictureBoxTest, TextIsMeasuredInThePicturesScale) {
    const double pixels = platform.textSize(L"0.000", box.font()).width;
    EXPECT_EQ(box.textWidth(L"0.000"), pixels * 15.0);
    setScale({0.0, 0.0, 200.0, -50.0});
    EXPECT_EQ(box.textWidth(L"0.000"), pixels * 2.0);
    EXPECT_EQ(box.textHeight(L"0.000"), platform.textSize(L"0.000", box.font()).height);
}

TEST_F(PictureBoxTest, AClippedBoxFillsItsVisiblePart) {
    setScale({0.0, 0.0, 100.0, 50.0});
    box.filledBox(-1000.0, -1000.0, 4.0, 3.0, 0x0000FF);
    EXPECT_EQ(pixelAt(0, 0), 0xFF0000U);
    EXPECT_EQ(pixelAt(4, 3), 0xFF0000U);
    EXPECT_EQ(pixelAt(5, 3), 0xFFFFFFU);
    EXPECT_EQ(pixelAt(4, 4), 0xFFFFFFU);
    box.filledBox(98.0, 48.0, 1e9, 1e9, 0x00FF00);
    EXPECT_EQ(pixelAt(99, 49), 0x00FF00U);
    EXPECT_EQ(pixelAt(97, 49), 0xFFFFFFU);
}

TEST_F(PictureBoxTest, NotXorTwiceRestoresThePicture) {
    setScale({0.0, 0.0, 100.0, 50.0});
    box.filledBox(0.0, 0.0, 60.0, 30.0, 0x336699);
    const auto pixels = [&] {
        const raster::PixelBuffer buffer = box.surface().pixels();
        return std::vector<std::uint32_t>(buffer.pixels, buffer.pixels + buffer.width * buffer.height);
    };
    const std::vector<std::uint32_t> before = pixels();
    box.setDrawMode(raster::DrawMode::NotXorPen);
    box.setFillStyle(5);
    box.setFillColor(0x0000FF);
    for (const double right : {50.0, 41.0, 40.0}) {
        box.box(40.0, 10.0, right, 45.0, 0x0000FF);
        EXPECT_NE(pixels(), before);
        box.box(40.0, 10.0, right, 45.0, 0x0000FF);
        EXPECT_EQ(pixels(), before);
    }
}

TEST_F(PictureBoxTest, AnotherSizeKeepsTheOverlapAndClearsTheRest) {
    setScale({0.0, 0.0, 100.0, 50.0});
    box.filledBox(0.0, 0.0, 99.0, 49.0, 0x0000FF);
    box.move({0.0, 0.0, 1800.0, 300.0});
    EXPECT_EQ(box.surface().pixels().width, 120);
    EXPECT_EQ(box.surface().pixels().height, 20);
    EXPECT_EQ(pixelAt(99, 19), 0xFF0000U);
    EXPECT_EQ(pixelAt(100, 19), 0xFFFFFFU);
    box.move({50.0 * 15.0, 0.0, 1800.0, 300.0});  // only moved: the picture stays
    EXPECT_EQ(pixelAt(99, 19), 0xFF0000U);
    box.move({0.0, 0.0, 0.0, 0.0});
    EXPECT_EQ(box.surface().pixels().width, 1);
}

TEST_F(PictureBoxTest, StrokesRequestOneRepaintUntilThePictureIsShown) {
    box.setPeer(&peer);
    box.line(0.0, 0.0, 150.0, 0.0, 0);
    box.line(0.0, 0.0, 150.0, 150.0, 0);
    EXPECT_THAT(peer.changes, ElementsAre(Change::Picture));
    box.shown();
    box.cls();
    EXPECT_THAT(peer.changes, ElementsAre(Change::Picture, Change::Picture));
}

TEST_F(PictureBoxTest, EveryKindOfStrokeRequestsARepaint) {
    box.setPeer(&peer);
    const std::vector<std::function<void()>> strokes = {
        [&] { box.line(0.0, 0.0, 150.0, 0.0, 0); }, [&] { box.box(0.0, 0.0, 150.0, 150.0, 0); },
        [&] { box.filledBox(0.0, 0.0, 150.0, 150.0, 0); }, [&] { box.print(L"text"); }, [&] { box.cls(); }};
    for (const auto& stroke : strokes) {
        box.shown();
        peer.changes.clear();
        stroke();
        EXPECT_THAT(peer.changes, ElementsAre(Change::Picture));
    }
}

TEST_F(PictureBoxTest, ALaterWindowIsToldOfTheNextStroke) {
    box.line(0.0, 0.0, 150.0, 0.0, 0);
    box.setPeer(&peer);
    box.line(0.0, 0.0, 150.0, 0.0, 0);
    EXPECT_THAT(peer.changes, ElementsAre(Change::Picture));
}

TEST_F(PictureBoxTest, KeepDrawingRestoresAllPropertiesAfterAnError) {
    box.setFillStyle(3);
    box.setFillColor(0x123456);
    box.setDrawMode(raster::DrawMode::Invert);
    box.setDrawWidth(2);
    EXPECT_EQ(errorOf([&] {
                  const KeepDrawing keep(box);
                  box.setFillStyle(0);
                  box.setFillColor(0);
                  box.setDrawMode(raster::DrawMode::CopyPen);
                  box.setDrawWidth(9);
                  throw util::RuntimeError(6);
              }),
              6);
    EXPECT_EQ(box.fillStyle(), 3);
    EXPECT_EQ(box.fillColor(), 0x123456U);
    EXPECT_EQ(box.drawMode(), 6);
    EXPECT_EQ(box.drawWidth(), 2);
}

}  // namespace
}  // namespace kv::formenv
