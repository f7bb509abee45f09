// What is drawn: the very strokes of small scenes, and pixels where they meet.
#include <algorithm>
#include <cstddef>

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

/// 400 by 200 pixels for 350 to 550 MHz and 0 to 100 dBm: x = 2 (f - 350), y = 2 (100 - p).
class SpectrumDrawingTest : public ScopeTest {
  protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(showTwoPixelsAUnit()); }

    /// The lines that begin with `word`.
    static std::vector<std::string> only(const headless::RecordingCanvas& canvas, const std::string& word) {
        std::vector<std::string> result;
        for (const std::string& line : canvas.lines()) {
            if (line.starts_with(word))
                result.push_back(line);
        }
        return result;
    }
    static std::ptrdiff_t count(const headless::RecordingCanvas& canvas, const std::string& part) {
        return std::count_if(canvas.lines().begin(), canvas.lines().end(),
                             [&](const std::string& line) { return line.find(part) != std::string::npos; });
    }
    void divert() {
        ui.picSpectrum.divert(&spectrum);
        ui.picUnits.divert(&units);
    }
    void expectPropertiesAsBefore() {
        EXPECT_EQ(ui.picSpectrum.fillStyle(), 1);
        EXPECT_EQ(ui.picSpectrum.fillColor(), 0U);
        EXPECT_EQ(ui.picSpectrum.drawMode(), 13);
        EXPECT_EQ(ui.picSpectrum.drawWidth(), 1);
    }

    headless::RecordingCanvas spectrum{{400, 200}};
    headless::RecordingCanvas units{{600, 300}};
};

TEST_F(SpectrumDrawingTest, AFullRepaintDrawsChannelsThenGridThenTicks) {
    scope.setNGridX(2);
    addTX(450.0, 10.0, 50.0);
    addRX(500.0, 5.0, 25.0);
    divert();
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_THAT(spectrum.lines(),
                ElementsAre("clear ffffff",                                                    //
                            "rectangle 180,100 221,201 pen 0000ff w1 brush 5 0000ff mode 13",  //
                            "line 200,200 200,100 pen 00ff00 w1 mode 13",                      //
                            "rectangle 290,150 311,201 pen 0000ff w1 brush 4 0000ff mode 13",  //
                            "line 300,200 300,150 pen 00ff00 w1 mode 13",                      //
                            "line 0,200 0,0 pen f0f0f0 w1 mode 13",                            //
                            "line 200,200 200,0 pen f0f0f0 w3 mode 13",                        //
                            "line 400,200 400,0 pen f0f0f0 w1 mode 13",                        //
                            "line 0,200 0,190 pen 808080 w3 mode 13",                          //
                            "line 400,200 400,190 pen 808080 w3 mode 13"));
    expectPropertiesAsBefore();
}

TEST_F(SpectrumDrawingTest, RefreshDrawsTheGridUnderTheChannels) {
    scope.setNGridX(1);
    addTX(450.0, 10.0, 50.0);
    addRX(500.0, 5.0, 25.0);
    divert();
    scope.Refresh();
    EXPECT_THAT(spectrum.lines(),
                ElementsAre("clear ffffff",                                                    //
                            "line 0,200 0,0 pen f0f0f0 w1 mode 13",                            //
                            "line 400,200 400,0 pen f0f0f0 w1 mode 13",                        //
                            "line 0,200 0,190 pen 808080 w3 mode 13",                          //
                            "rectangle 180,100 221,201 pen 0000ff w1 brush 5 0000ff mode 13",  //
                            "line 200,200 200,100 pen 00ff00 w1 mode 13",                      //
                            "rectangle 290,150 311,201 pen 0000ff w1 brush 4 0000ff mode 13",  //
                            "line 300,200 300,150 pen 00ff00 w1 mode 13"));
    expectPropertiesAsBefore();
}

TEST_F(SpectrumDrawingTest, GridPixelsLieOverTheChannelsInAFullRepaintAndUnderThemInARefresh) {
    scope.setGridColor(0xFF0000);
    const SlotRef channel = addTX(450.0, 20.0, 50.0);
    channel->fields().lColorLine = 0x0000FF;
    channel->fields().iFillStyle = 0;
    scope.DrawDisplay();
    EXPECT_EQ(pixelAt(ui.picSpectrum, 180, 150), 0x0000FFU);  // the grid's blue on the channel's red
    EXPECT_EQ(pixelAt(ui.picSpectrum, 185, 150), 0xFF0000U);
    scope.Refresh();
    EXPECT_EQ(pixelAt(ui.picSpectrum, 180, 150), 0xFF0000U);
    EXPECT_EQ(pixelAt(ui.picSpectrum, 180, 50), 0x0000FFU);
}

TEST_F(SpectrumDrawingTest, PowerAtTheFloorIsDrawnToHalfOfTheHighestPower) {
    scope.setNGridX(1);
    addTX(450.0, 10.0, 0.0);
    addTX(450.0, 10.0, -30.0);
    divert();
    scope.DrawDisplay();
    EXPECT_THAT(only(spectrum, "rectangle"), Each(StartsWith("rectangle 180,100 221,201")));
    EXPECT_EQ(only(spectrum, "rectangle").size(), 2U);
    EXPECT_EQ(count(spectrum, "line 200,200 200,100 pen 00ff00"), 2);
}

TEST_F(SpectrumDrawingTest, HalfOfTheHighestPowerIsTheValueAndNotTheMiddle) {
    scope.setDisplayMinPwr(-100.0);
    scope.setDisplayMaxPwr(100.0);
    addTX(450.0, 10.0, -100.0);
    divert();
    scope.DrawDisplay();
    // One pixel a dBm now: 50 dBm stands 50 pixels under the top.
    EXPECT_THAT(only(spectrum, "rectangle"), ElementsAre(StartsWith("rectangle 180,50 221,201")));
}

TEST_F(SpectrumDrawingTest, AChannelAcrossTheLeftEdgeIsClippedWithItsCenterLineInside) {
    addTX(355.0, 10.0, 50.0);
    divert();
    scope.DrawDisplay();
    EXPECT_THAT(only(spectrum, "rectangle"), ElementsAre(StartsWith("rectangle 0,100 31,201")));
    EXPECT_EQ(count(spectrum, "line 10,200 10,100 pen 00ff00 w1"), 1);
}

TEST_F(SpectrumDrawingTest, AChannelWhoseCenterIsLeftOfTheDisplayHasNoCenterLine) {
    addTX(345.0, 10.0, 50.0);
    divert();
    scope.DrawDisplay();
    EXPECT_THAT(only(spectrum, "rectangle"), ElementsAre(StartsWith("rectangle 0,100 11,201")));
    EXPECT_EQ(count(spectrum, "pen 00ff00"), 0);
}

TEST_F(SpectrumDrawingTest, AChannelAcrossTheRightEdgeIsClipped) {
    addTX(555.0, 10.0, 50.0);
    divert();
    scope.DrawDisplay();
    EXPECT_THAT(only(spectrum, "rectangle"), ElementsAre(StartsWith("rectangle 390,100 401,201")));
    EXPECT_EQ(count(spectrum, "pen 00ff00"), 0);
}

TEST_F(SpectrumDrawingTest, ACenterOnTheEdgeHasItsLine) {
    addTX(350.0, 10.0, 50.0);
    addTX(550.0, 10.0, 50.0);
    divert();
    scope.DrawDisplay();
    EXPECT_EQ(count(spectrum, "line 0,200 0,100 pen 00ff00"), 1);
    EXPECT_EQ(count(spectrum, "line 400,200 400,100 pen 00ff00"), 1);
}

TEST_F(SpectrumDrawingTest, ChannelsOutsideAreNotDrawnAndNotMarked) {
    const SlotRef left = addTX(300.0, 10.0, 50.0);
    const SlotRef right = addTX(600.0, 10.0, 50.0);
    left->fields().bDrawn = true;
    divert();
    scope.DrawDisplay();
    EXPECT_THAT(only(spectrum, "rectangle"), IsEmpty());
    EXPECT_TRUE(left->fields().bDrawn);
    EXPECT_FALSE(right->fields().bDrawn);
}

TEST_F(SpectrumDrawingTest, AnEdgeThatOnlyTouchesTheDisplayIsDrawn) {
    addTX(340.0, 10.0, 50.0);
    divert();
    scope.DrawDisplay();
    EXPECT_THAT(only(spectrum, "rectangle"), ElementsAre(StartsWith("rectangle 0,100 1,201")));
}

TEST_F(SpectrumDrawingTest, ANarrowChannelIsAColumn) {
    addTX(450.0, 0.0125, 50.0);
    divert();
    scope.DrawDisplay();
    EXPECT_THAT(only(spectrum, "rectangle"), ElementsAre(StartsWith("rectangle 200,100 201,201")));
}

TEST_F(SpectrumDrawingTest, AHiddenDrawnChannelIsErasedByNotXorAndDrawingItTwiceRestores) {
    const SlotRef channel = addTX(450.0, 10.3, 50.0);
    addTX(455.0, 4.0, 70.0);
    scope.DrawDisplay();
    const std::vector<std::uint32_t> before = pixelsOf(ui.picSpectrum);
    channel->fields().bVisible = false;
    ASSERT_TRUE(channel->fields().bDrawn);
    scope.ReDrawChnl(asChannel(channel));
    EXPECT_NE(pixelsOf(ui.picSpectrum), before);
    EXPECT_FALSE(channel->fields().bDrawn);
    channel->fields().bDrawn = true;
    scope.ReDrawChnl(asChannel(channel));
    EXPECT_EQ(pixelsOf(ui.picSpectrum), before);
}

TEST_F(SpectrumDrawingTest, ErasingUsesModeTenForBoxAndLine) {
    const SlotRef channel = addTX(450.0, 10.0, 50.0);
    channel->fields().bVisible = false;
    channel->fields().bDrawn = true;
    divert();
    scope.ReDrawChnl(asChannel(channel));
    EXPECT_THAT(spectrum.lines(), ElementsAre("rectangle 180,100 221,201 pen 0000ff w1 brush 5 0000ff mode 10",
                                              "line 200,200 200,100 pen 00ff00 w1 mode 10"));
    expectPropertiesAsBefore();
    spectrum.forget();
    scope.ReDrawChnl(asChannel(channel));  // neither shown nor drawn now
    EXPECT_THAT(spectrum.lines(), IsEmpty());
}

TEST_F(SpectrumDrawingTest, RedrawingOneChannelDrawsNothingElse) {
    const SlotRef channel = makeSlot(450.0, 0.0, 50.0);
    channel->fields().dFreqLo = 440.0;
    channel->fields().dFreqHi = 460.0;
    channel->fields().iFillStyle = 7;
    divert();
    scope.ReDrawChnl(asChannel(channel));
    EXPECT_THAT(spectrum.lines(), ElementsAre("rectangle 180,100 221,201 pen 0000ff w1 brush 7 0000ff mode 13",
                                              "line 200,200 200,100 pen 00ff00 w1 mode 13"));
    EXPECT_THAT(units.lines(), IsEmpty());
    EXPECT_TRUE(channel->fields().bDrawn);
    EXPECT_EQ(scope.NumTX(), 0);
}

TEST_F(SpectrumDrawingTest, APlaceholderIsDrawnByRefreshAndAloneButNotInAFullRepaint) {
    const SlotRef placeholder = addTX(0.0, 0.0, 50.0);
    placeholder->fields().dFreqLo = 440.0;
    placeholder->fields().dFreqHi = 460.0;
    divert();
    scope.DrawDisplay();
    EXPECT_THAT(only(spectrum, "rectangle"), IsEmpty());
    scope.ReDrawChnl(asChannel(placeholder));
    EXPECT_EQ(only(spectrum, "rectangle").size(), 1U);
    scope.Refresh();
    EXPECT_EQ(only(spectrum, "rectangle").size(), 2U);
    EXPECT_EQ(count(spectrum, "pen 00ff00"), 0);
}

TEST_F(SpectrumDrawingTest, HiddenChannelsAreSkippedInAFullRepaint) {
    const SlotRef channel = addTX(450.0, 10.0, 50.0);
    channel->fields().bVisible = false;
    channel->fields().bDrawn = true;
    divert();
    scope.DrawDisplay();
    EXPECT_THAT(only(spectrum, "rectangle"), IsEmpty());
    EXPECT_TRUE(channel->fields().bDrawn);
}

TEST_F(SpectrumDrawingTest, OnlyAnEvenGridHasAHeavyMiddleLine) {
    divert();
    scope.setNGridX(4);
    scope.DrawDisplay();
    EXPECT_EQ(count(spectrum, "pen f0f0f0 w1"), 4);
    EXPECT_EQ(count(spectrum, "line 200,200 200,0 pen f0f0f0 w3"), 1);
    spectrum.forget();
    scope.setNGridX(5);
    scope.DrawDisplay();
    EXPECT_EQ(count(spectrum, "pen f0f0f0 w1"), 6);
    EXPECT_EQ(count(spectrum, "pen f0f0f0 w3"), 0);
}

TEST_F(SpectrumDrawingTest, BelowZeroThereIsAFigureInsteadOfGridLinesTicksAndLabels) {
    scope.setFreqEndBuffer(100.0);
    scope.DrawByRange(50.0, 50.0);
    ASSERT_EQ(scope.DisplayMinFreq(), -50.0);
    scope.setNGridX(4);
    divert();
    scope.DrawDisplay();
    EXPECT_THAT(spectrum.lines(),
                ElementsAre("clear ffffff",                                                //
                            "line 100,200 100,0 pen f0f0f0 w1 mode 13",                    //
                            "line 200,200 200,0 pen f0f0f0 w3 mode 13",                    //
                            "line 300,200 300,0 pen f0f0f0 w1 mode 13",                    //
                            "line 400,200 400,0 pen f0f0f0 w1 mode 13",                    //
                            "rectangle 0,0 101,201 pen f0f0f0 w1 brush 6 f0f0f0 mode 13",  //
                            "line 200,200 200,190 pen 808080 w3 mode 13",                  //
                            "line 400,200 400,190 pen 808080 w3 mode 13"));
    EXPECT_EQ(count(units, "-50"), 0);
    EXPECT_EQ(count(units, "\"50.000\""), 1);
    expectPropertiesAsBefore();
}

TEST_F(SpectrumDrawingTest, LabelsAreUnderEverySecondGridLine) {
    scope.setNGridX(8);
    divert();
    ui.picSpectrum.move({3000.0, 0.0, 6000.0, 3000.0});
    ui.picUnits.move({0.0, 0.0, 12000.0, 3600.0});
    units.forget();
    scope.DrawDisplay();
    // Centerd: 7 letters of 5 pixels are 525 twips; picSpectrum begins at pixel 200.
    ASSERT_EQ(units.lines().size(), 5U);
    EXPECT_EQ(units.lines()[0], "clear f0f0f0");
    const auto expectLabel = [&](std::size_t i, const std::string& at, const std::string& text) {
        EXPECT_THAT(units.lines().at(i), StartsWith("text " + at + ","));
        EXPECT_THAT(units.lines().at(i), HasSubstr("\"" + text + "\" font \"Tahoma\" 8 color 000000"));
    };
    expectLabel(1, "183", "350.000");
    expectLabel(2, "283", "400.000");
    expectLabel(3, "383", "450.000");
    expectLabel(4, "483", "500.000");
    // 550.000 would pass the right end of the picture and is left out.
    EXPECT_EQ(ui.picUnits.font().points, 8.0);
}

TEST_F(SpectrumDrawingTest, LabelsAreUnderThePictureInsideTheStrip) {
    scope.resize(10800.0, 7200.0);
    divert();
    scope.DrawDisplay();
    const double bottom = (ui.picSpectrum.top() + ui.picSpectrum.height()) / 15.0;
    const double strip = ui.picUnits.height() / 15.0;
    std::vector<std::string> texts = only(units, "text ");
    ASSERT_THAT(texts, Not(IsEmpty()));
    for (const std::string& text : texts) {
        const int y = std::stoi(text.substr(text.find(',') + 1));
        EXPECT_GE(y, bottom);
        EXPECT_LE(y + 13, strip);
    }
}

TEST_F(SpectrumDrawingTest, LabelsTestButtonDrawsOnlyLabelsAndTicks) {
    scope.setNGridX(2);
    divert();
    ui.Command4.onClick();
    EXPECT_THAT(spectrum.lines(),
                ElementsAre("line 0,200 0,190 pen 808080 w3 mode 13", "line 400,200 400,190 pen 808080 w3 mode 13"));
    EXPECT_EQ(units.lines().at(0), "clear f0f0f0");
    expectPropertiesAsBefore();
}

TEST_F(SpectrumDrawingTest, JustDrawItDrawsChannelsGridLabelsAndTheCursorInside) {
    scope.setNGridX(1);
    addRX(500.0, 5.0, 25.0);
    addTX(450.0, 10.0, 50.0);
    scope.setLCursorColor(0xFF00FF);
    scope.setCursorVal(400.0);
    divert();
    scope.JustDrawIt();
    EXPECT_THAT(spectrum.lines(),
                ElementsAre("clear ffffff",                                                    //
                            "rectangle 180,100 221,201 pen 0000ff w1 brush 5 0000ff mode 13",  //
                            "line 200,200 200,100 pen 00ff00 w1 mode 13",                      //
                            "rectangle 290,150 311,201 pen 0000ff w1 brush 4 0000ff mode 13",  //
                            "line 300,200 300,150 pen 00ff00 w1 mode 13",                      //
                            "line 0,200 0,0 pen f0f0f0 w1 mode 13",                            //
                            "line 400,200 400,0 pen f0f0f0 w1 mode 13",                        //
                            "line 0,200 0,190 pen 808080 w3 mode 13",                          //
                            "line 100,200 100,0 pen ff00ff w1 mode 10"));
    EXPECT_THAT(units.lines().at(0), "clear f0f0f0");
    spectrum.forget();
    ui.tdKnMovCursor.setDVal(900.0);
    scope.JustDrawIt();
    EXPECT_EQ(count(spectrum, "ff00ff"), 0);
    expectPropertiesAsBefore();
}

TEST_F(SpectrumDrawingTest, EmptyTXSetLeavesItsLabelsEmptyAndHidden) {
    addRX(500.0, 5.0, 25.0);
    scope.Refresh();
    EXPECT_EQ(ui.lblNumTX.caption(), L"");
    EXPECT_EQ(ui.lblTXRange.caption(), L"");
    EXPECT_FALSE(ui.lblNumTX.visible());
    EXPECT_FALSE(ui.lblTXRange.visible());
    EXPECT_TRUE(ui.lblNumRX.visible());
}

TEST_F(SpectrumDrawingTest, OrderBoxAndRedrawTestRedrawEverything) {
    addTX(450.0, 10.0, 50.0);
    for (const formenv::Widget* button : std::initializer_list<const formenv::Widget*>{&ui.chkOrder, &ui.Command2}) {
        spectrum.forget();
        divert();
        button->onClick();
        EXPECT_EQ(spectrum.lines().at(0), "clear ffffff");
        EXPECT_EQ(only(spectrum, "rectangle").size(), 1U);
    }
}

TEST_F(SpectrumDrawingTest, DrawingPumpsEventsBetweenItsSteps) {
    std::vector<std::size_t> strokes;
    addTX(450.0, 10.0, 50.0);
    addRX(500.0, 5.0, 25.0);
    scope.setNGridX(1);
    divert();
    platform.onPump = [&] { strokes.push_back(spectrum.lines().size()); };
    scope.DrawDisplay();
    platform.onPump = nullptr;
    // Before and after clearing, after TX, twice after RX, inside and after the grid, after the labels.
    EXPECT_THAT(strokes, ElementsAre(0U, 1U, 3U, 5U, 5U, 7U, 7U, 8U));
}

}  // namespace
}  // namespace kv::control
