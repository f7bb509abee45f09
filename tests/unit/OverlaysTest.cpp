// Power axis, legend and channel labels in the drawings of the whole display.
#include "control/Overlays.h"

#include <set>

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using Pixels = std::vector<std::uint32_t>;

class OverlaysTest : public ScopeTest {
  protected:
    void SetUp() override {
        addTX(450.0, 10.0, 60.0)->fields().sLabel = L"first";
        addRX(500.0, 10.0, 60.0)->fields().sLabel = L"second";
        showTwoPixelsAUnit();
        scope.DrawDisplay();
        plain = pixels();
    }
    static Overlays all() {
        Overlays overlays;
        overlays.setPowerAxis(true);
        overlays.setLegend(true);
        overlays.setChannelLabels(true);
        return overlays;
    }
    Pixels pixels() { return pixelsOf(ui.picSpectrum); }
    /// The picture of `JustDrawIt` without a cursor line.
    Pixels drawn(const Overlays& overlays) {
        scope.setOverlays(overlays);
        scope.DrawDisplay();
        return pixels();
    }
    /// The texts that a drawing puts on the picture.
    std::vector<std::string> textsOf(const std::function<void()>& draw) {
        headless::RecordingCanvas canvas({400, 200});
        ui.picSpectrum.divert(&canvas);
        draw();
        ui.picSpectrum.divert(nullptr);
        std::vector<std::string> texts;
        for (const std::string& line : canvas.lines())
            if (line.starts_with("text"))
                texts.push_back(
                    line.substr(line.find('"') + 1, line.find('"', line.find('"') + 1) - line.find('"') - 1));
        return texts;
    }

    Pixels plain;
};

TEST_F(OverlaysTest, AreOffAtTheStartAndLeaveNothingWhenSwitchedOff) {
    EXPECT_FALSE(scope.overlays().hasPowerAxis());
    EXPECT_FALSE(scope.overlays().hasLegend());
    EXPECT_FALSE(scope.overlays().hasChannelLabels());
    EXPECT_NE(drawn(all()), plain);
    EXPECT_EQ(drawn({}), plain);
}

TEST_F(OverlaysTest, EachIsDrawnByItself) {
    std::set<Pixels> pictures{plain};
    for (void (Overlays::*const set)(bool) noexcept :
         {&Overlays::setPowerAxis, &Overlays::setLegend, &Overlays::setChannelLabels}) {
        Overlays overlays;
        (overlays.*set)(true);
        pictures.insert(drawn(overlays));
    }
    pictures.insert(drawn(all()));
    EXPECT_EQ(pictures.size(), 5U);
}

TEST_F(OverlaysTest, SettingOneDrawsTheDisplay) {
    scope.setOverlays(all());
    const Pixels shown = pixels();
    EXPECT_NE(shown, plain);
    scope.JustDrawIt();
    EXPECT_EQ(pixels(), shown);
}

TEST_F(OverlaysTest, AllDrawingsOfTheWholeDisplayHaveThem) {
    const std::vector<std::string> expected{"first", "second", "20", "40", "60", "80 dBm", "TX", "1", "RX", "1"};
    scope.setOverlays(all());
    EXPECT_EQ(textsOf([&] { scope.JustDrawIt(); }), expected);
    EXPECT_EQ(textsOf([&] { scope.DrawDisplay(); }), expected);
    EXPECT_EQ(textsOf([&] { scope.Refresh(); }), expected);
    EXPECT_EQ(textsOf([&] { scope.DrawByRange(440.0, 510.0); }), expected);
    EXPECT_EQ(textsOf([&] { scope.ClearDisplay(); }), std::vector<std::string>{});
}

TEST_F(OverlaysTest, TheCursorLineLeavesNoTraceOnThem) {
    const Pixels shown = drawn(all());
    for (double frequency = 350.0; frequency < 550.0; frequency += 0.5) {
        scope.setCursorVal(frequency);
    }
    EXPECT_NE(pixels(), shown);
    scope.setCursorVal(450.0);
    scope.DrawDisplay();
    EXPECT_EQ(pixels(), shown);
    scope.setCursorVal(440.0);
    ui.picSpectrum.onMouseDown(1, 0, 400.0, 50.0);
    ui.picSpectrum.onMouseMove(1, 0, 400.0, 50.0);
    ui.picSpectrum.onMouseMove(1, 0, 500.0, 50.0);
    ui.picSpectrum.onMouseLost();
    scope.JustDrawIt();
    const Pixels withLine = pixels();
    scope.setCursorVal(470.0);
    scope.setCursorVal(440.0);
    EXPECT_EQ(pixels(), withLine);
}

TEST_F(OverlaysTest, AMoveOfTheCursorInAnyEventOfADrawingLeavesNoTrace) {
    const Pixels shown = drawn(all());
    for (int event = 1; event <= 8; ++event) {
        int pumps = 0;
        platform.onPump = [&] {
            if (++pumps == event)
                scope.setCursorVal(449.5);
        };
        EXPECT_TRUE(scope.DrawDisplay());
        platform.onPump = nullptr;
        EXPECT_EQ(pixels(), shown) << "event " << event;
    }
}

TEST_F(OverlaysTest, HostCodeThatMovesTheCursorWhileALabelIsReadLeavesNoTrace) {
    const Pixels shown = drawn(all());
    const SlotRef slot = addTX(420.0, 5.0, 30.0);
    slot->fields().sLabel = L"third";
    scope.DrawDisplay();
    const Pixels three = pixels();
    EXPECT_NE(three, shown);
    slot->onRead = [&](std::string_view member) {
        if (member == "sLabel")
            scope.setCursorVal(449.5);
    };
    scope.DrawDisplay();
    EXPECT_EQ(pixels(), three);
    scope.Refresh();
    const Pixels refreshed = pixels();
    slot->onRead = nullptr;
    scope.Refresh();
    EXPECT_EQ(pixels(), refreshed);
}

TEST_F(OverlaysTest, HostCodeThatRemovesTheChannelsWhileALabelIsReadIsSurvived) {
    for (int i = 0; i < 5; ++i)
        addTX(400.0 + 20.0 * i, 2.0, 30.0)->fields().sLabel = L"more";
    const SlotRef slot = addTX(430.0, 5.0, 90.0);
    slot->fields().sLabel = L"removes all";
    slot->onRead = [&](std::string_view member) {
        if (member == "sLabel")
            scope.ClearAllChnls();
    };
    scope.setOverlays(all());
    EXPECT_EQ(scope.NumTX(), 0);
}

TEST_F(OverlaysTest, HostCodeThatShowsAnotherRangeWhileALabelIsReadGetsThePictureOfThatRange) {
    Overlays labels;
    labels.setChannelLabels(true);
    const SlotRef slot = addTX(430.0, 5.0, 90.0);
    slot->fields().sLabel = L"other range";
    scope.setOverlays(labels);
    scope.showExactly(400.0, 480.0);
    scope.DrawDisplay();
    const Pixels other = pixels();
    for (const auto& draw : {std::function<void()>([&] { scope.JustDrawIt(); }), {[&] { scope.DrawDisplay(); }}}) {
        slot->onRead = nullptr;
        scope.showExactly(350.0, 550.0);
        scope.setCursorVal(540.0);
        ASSERT_NE(pixels(), other);
        bool isFirst = true;
        slot->onRead = [&](std::string_view member) {
            if (member == "sLabel" && std::exchange(isFirst, false))
                scope.showExactly(400.0, 480.0);
        };
        draw();
        EXPECT_FALSE(isFirst);
        EXPECT_EQ(pixels(), other);
    }
}

TEST_F(OverlaysTest, AChannelWhoseLabelCannotBeReadHasNone) {
    const SlotRef slot = addTX(430.0, 5.0, 90.0);
    slot->fields().sLabel = L"unreadable";
    slot->onRead = failsAt("sLabel", 440);
    scope.setOverlays(all());
    EXPECT_EQ(textsOf([&] { scope.JustDrawIt(); }),
              (std::vector<std::string>{"first", "second", "20", "40", "60", "80 dBm", "TX", "1", "RX", "1"}));
}

TEST_F(OverlaysTest, WithoutARangeThereAreNone) {
    scope.ClearAllChnls();
    scope.DrawInitialDisplay();
    const Pixels blank = pixels();
    scope.setOverlays(all());
    EXPECT_EQ(pixels(), blank);
}

TEST_F(OverlaysTest, AChannelThatIsDrawnAloneIsOverThem) {
    const SlotRef slot = addTX(360.0, 9.0, 90.0);
    slot->fields().iFillStyle = 0;
    scope.setOverlays(all());
    ASSERT_NE(pixelAt(ui.picSpectrum, 10, 100), 0x0000FFU) << "the label of the axis";
    scope.ReDrawChnl(asChannel(slot));
    EXPECT_EQ(pixelAt(ui.picSpectrum, 10, 100), 0xFF0000U);
}

}  // namespace
}  // namespace kv::control
