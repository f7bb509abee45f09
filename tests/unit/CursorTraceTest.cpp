// The cursor line during drawings and beside them: it leaves no trace, and it stays where it is shown.
#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

/// 350 to 550 MHz on 400 pixels, 0 to 100 dBm on 200, with one box from 440 to 460 MHz and another beside it.
class CursorTraceTest : public RangeTest {
  protected:
    void SetUp() override {
        channel = addTX(450.0, 10.0, 60.0);
        addRX(500.0, 10.0, 60.0);
        showTwoPixelsAUnit();
        scope.setLCursorColor(0x00A0F0);
        scope.DrawDisplay();
        plain = pixelsOf(ui.picSpectrum);
    }
    /// The columns of the picture's middle row that differ from the picture without a line.
    std::vector<int> changedColumns() {
        const std::vector<std::uint32_t> now = pixelsOf(ui.picSpectrum);
        std::vector<int> columns;
        for (std::size_t x = 0; x < 400; ++x)
            if (now[150 * 400 + x] != plain[150 * 400 + x])
                columns.push_back(static_cast<int>(x));
        return columns;
    }

    SlotRef channel;
    std::vector<std::uint32_t> plain;
};

TEST_F(CursorTraceTest, AMoveInAnyEventOfADrawingLeavesNoTrace) {
    for (int event = 1; event <= 8; ++event) {
        for (const double cursor : {445.5, 495.5}) {
            int pumps = 0;
            platform.onPump = [&] {
                if (++pumps == event)
                    scope.setCursorVal(cursor);
            };
            EXPECT_TRUE(scope.DrawDisplay());
            platform.onPump = nullptr;
            ASSERT_GE(pumps, event);
            EXPECT_EQ(pixelsOf(ui.picSpectrum), plain) << "moved to " << cursor << " in event " << event;
        }
    }
}

TEST_F(CursorTraceTest, ALineDrawnByAnEventUnderATickIsDrawnOverTheTickAgain) {
    // Ticks are three pixels wide, and one of them is at the middle of the display.
    scope.setCursorVal(450.0);
    scope.JustDrawIt();
    const std::vector<std::uint32_t> expected = pixelsOf(ui.picSpectrum);
    scope.setCursorVal(470.0);
    platform.onPump = [&] { scope.setCursorVal(450.0); };
    scope.JustDrawIt();
    platform.onPump = nullptr;
    EXPECT_EQ(pixelsOf(ui.picSpectrum), expected);
}

TEST_F(CursorTraceTest, AMoveInAnEventOfAResizeLeavesNoTrace) {
    scope.setCursorVal(445.5);
    for (int event = 1; event <= 3; ++event) {
        int pumps = 0;
        platform.onPump = [&] {
            if (++pumps == event)
                scope.setCursorVal(446.5);
        };
        scope.resize(10800.0 + 15.0 * event, 7200.0);
        platform.onPump = nullptr;
        scope.DrawDisplay();
        const std::vector<std::uint32_t> drawn = pixelsOf(ui.picSpectrum);
        scope.setCursorVal(445.5);
        scope.ClearDisplay();
        scope.DrawDisplay();
        EXPECT_EQ(pixelsOf(ui.picSpectrum), drawn);
    }
}

TEST_F(CursorTraceTest, RedrawingAChannelKeepsTheLine) {
    // Without the grid over it, as the channel is drawn alone.
    scope.ReDrawChnl(asChannel(channel));
    plain = pixelsOf(ui.picSpectrum);
    scope.setCursorVal(400.0);
    EXPECT_EQ(changedColumns(), std::vector<int>{100});
    scope.ReDrawChnl(asChannel(channel));
    EXPECT_EQ(changedColumns(), std::vector<int>{100});
    ui.cmdDrawTX.onClick();
    EXPECT_EQ(changedColumns(), std::vector<int>{100});
    channel->onRead = failsAt("drawRecord", 440);
    scope.ReDrawChnl(asChannel(channel));
    EXPECT_EQ(changedColumns(), std::vector<int>{100}) << "also when the channel cannot be drawn";
    scope.setCursorVal(420.0);
    EXPECT_EQ(changedColumns(), std::vector<int>{140});
}

TEST_F(CursorTraceTest, TheCenterButtonMovesTheLine) {
    scope.setCursorVal(403.5);
    ui.cmdCenterCursor.onClick();
    EXPECT_EQ(scope.CursorVal(), 450.0);
    EXPECT_EQ(changedColumns(), std::vector<int>{200});
}

TEST_F(CursorTraceTest, NoPositionIsLeftBehindWhereTheDisplayShowsTheMarker) {
    scope.ClearAllChnls();
    scope.setFreqEndBuffer(0.0);
    addTX(channels::FREQ_UNSET - 100.0, 0.0, 1.0);
    addTX(channels::FREQ_UNSET + 300.0, 0.0, 1.0);
    scope.DrawInitialDisplay();
    expectRange(channels::FREQ_UNSET - 100.0, channels::FREQ_UNSET + 300.0);
    scope.setCursorVal(channels::FREQ_UNSET + 50.0);
    scope.DrawDisplay();
    plain = pixelsOf(ui.picSpectrum);
    scope.setCursorVal(channels::FREQ_UNSET + 90.0);
    EXPECT_EQ(changedColumns().size(), 1U);
}

TEST_F(CursorTraceTest, TheLineIsOnePixelWideAndNotXor) {
    scope.setCursorVal(403.5);
    constexpr int x = 107;
    EXPECT_EQ(changedColumns(), std::vector<int>{x});
    EXPECT_EQ(ui.picSpectrum.drawWidth(), 1);
    EXPECT_EQ(ui.picSpectrum.drawMode(), 13);
    // Not-XOR on white leaves the color itself.
    EXPECT_EQ(pixelAt(ui.picSpectrum, x, 20), 0xF0A000U);
}

TEST_F(CursorTraceTest, ABoundOfThePictureStillShowsTheLine) {
    scope.setCursorVal(350.0);
    EXPECT_EQ(scope.CursorVal(), 350.0);
    EXPECT_EQ(changedColumns(), std::vector<int>{0});
}

class LabelRoomTest : public RangeTest {};

TEST_F(LabelRoomTest, LabelsAreInTheMiddleOfTheRoomUnderTheSpectrum) {
    addTX(450.0);
    scope.DrawDisplay();
    headless::RecordingCanvas units({720, 300});
    ui.picUnits.divert(&units);
    scope.DrawDisplay();
    const double bottom = (ui.picSpectrum.top() + ui.picSpectrum.height()) / 15.0;
    const double height = ui.picUnits.textHeight(L"0") / 15.0;
    int labels = 0;
    for (const std::string& line : units.lines()) {
        if (!line.starts_with("text "))
            continue;
        ++labels;
        const int y = std::stoi(line.substr(line.find(',') + 1));
        EXPECT_NEAR(y - bottom, bottom + 20.0 - (y + height), 1.0) << line;
    }
    EXPECT_GT(labels, 5);
    ui.picUnits.divert(nullptr);
}

}  // namespace
}  // namespace kv::control
