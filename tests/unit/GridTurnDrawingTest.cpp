// How often a turn of the grid knob draws: its end keeps the picture that its last value has drawn, unless that picture
// is outdated.
#include <algorithm>

#include "tests/unit/QuietSlot.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using turndial::Key;

/// 350 to 550 MHz with channels that report their changes.
class GridTurnDrawingTest : public ScopeTest {
  protected:
    GridTurnDrawingTest() {
        for (const double frequency : {440.0, 450.0, 460.0})
            slots.push_back(addQuiet(frequency));
        scope.DrawByRange(450.0, 450.0);
        scope.setCursorVal(455.0);
        canvas.emplace(ui.picSpectrum.pixelSize());
    }
    util::Ref<QuietSlot> addQuiet(double frequency) {
        util::Ref<QuietSlot> slot(new QuietSlot);
        channels::FreqSlotFields& fields = slot->fields();
        fields.dFreq = frequency;
        fields.dFreqLo = frequency - 2.0;
        fields.dFreqHi = frequency + 2.0;
        fields.dPwrDBM = 20.0;
        fields.sKey = L"TX" + std::to_wstring(frequency);
        fields.lColor = 0x0000FF;
        scope.AddTXChnl(channels::FreqSlotRef(slot.get()));
        return slot;
    }
    /// The number of drawings that `turn` leads to.
    std::ptrdiff_t drawingsIn(const std::function<void()>& turn) {
        const std::size_t before = canvas->lines().size();
        ui.picSpectrum.divert(&*canvas);
        turn();
        ui.picSpectrum.divert(nullptr);
        const std::vector<std::string> lines = canvas->lines();
        return std::count(lines.begin() + static_cast<std::ptrdiff_t>(before), lines.end(), "clear ffffff");
    }

    std::vector<util::Ref<QuietSlot>> slots;
    std::optional<headless::RecordingCanvas> canvas;
};

TEST_F(GridTurnDrawingTest, OneStepDrawsOnceAndRescalesAndTellsAtItsEnd) {
    EXPECT_EQ(drawingsIn([&] { ui.tdKnGrid.wheel(120, {}); }), 1);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 440 460"));
    EXPECT_EQ(ui.tdKnCenter.dMinVal, 440.0);
    EXPECT_EQ(drawingsIn([&] {
                  ui.tdKnGrid.keyDown(Key::Up, {});
                  ui.tdKnGrid.keyDown(Key::Up, {});
                  ui.tdKnGrid.keyUp(Key::Up);
              }),
              2)
        << "one for each value";
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 440 460", "ChgFreqRange 400 500"));
}

TEST_F(GridTurnDrawingTest, EventsRunBetweenTheLastDrawingAndTheHostsEvent) {
    ui.tdKnGrid.keyDown(Key::Up, {});
    int pumps = 0;
    platform.onPump = [&] {
        ++pumps;
        EXPECT_THAT(events.heard, ::testing::IsEmpty());
    };
    ui.tdKnGrid.keyUp(Key::Up);
    platform.onPump = nullptr;
    EXPECT_EQ(pumps, 1);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 440 460"));
}

TEST_F(GridTurnDrawingTest, TheEndDrawsAgainWhatHasChangedSinceTheLastValue) {
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"record", [&] { slots[0]->fields().dPwrDBM = 10.0; }},
        {"added", [&] { slots.push_back(addQuiet(452.0)); }},
        {"hidden", [&] { slots[1]->fields().bVisible = false; }},
        {"drawn over", [&] { scope.ReDrawChnl(channels::FreqSlotRef(slots[2].get())); }},
        {"cleared", [&] { scope.ClearDisplay(); }},
        {"labels cleared", [&] { scope.ClearDisplayLabels(); }},
        {"grid color", [&] { scope.setGridColor(0x00FF00); }},
        {"label color", [&] { ui.picUnits.setForeColor(0x0000FF); }},
        {"tick color", [&] { ui.picSpectrum.setForeColor(0x0000FF); }},
        {"cursor color", [&] { scope.setLCursorColor(0x123456); }},
        {"cursor", [&] { ui.tdKnMovCursor.setDVal(451.0); }},
        {"lowest power", [&] { scope.setDisplayMinPwr(-30.0); }},
        {"highest power", [&] { scope.setDisplayMaxPwr(30.0); }},
        {"divisions", [&] { scope.setNGridX(10); }},
        {"size", [&] { ui.picSpectrum.setWidth(ui.picSpectrum.width() - 150.0); }},
        {"foreign", [&] { addTX(451.0, 1.0, 10.0); }},
        {"all removed", [&] { scope.ClearTXChnls(); }},
    };
    for (const auto& [name, change] : changes) {
        ui.tdKnGrid.setDVal(0.5);
        ui.tdKnGrid.keyDown(Key::Up, {});
        change();
        ui.tdKnGrid.keyUp(Key::Up);
        const std::vector<std::uint32_t> spectrum = pixelsOf(ui.picSpectrum);
        const std::vector<std::uint32_t> labels = pixelsOf(ui.picUnits);
        scope.JustDrawIt();
        EXPECT_TRUE(spectrum == pixelsOf(ui.picSpectrum)) << name;
        EXPECT_TRUE(labels == pixelsOf(ui.picUnits)) << name;
        events.heard.clear();
    }
}

TEST_F(GridTurnDrawingTest, TheEndDrawsAgainWhatEventsOfTheDrawingHaveChanged) {
    // They run after the channels and the grid, so that the drawing itself shows none of it.
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"record", [&] { slots[0]->fields().dPwrDBM = 10.0; }},
        {"added", [&] { slots.push_back(addQuiet(452.0)); }},
        {"drawn over", [&] { scope.ReDrawChnl(channels::FreqSlotRef(slots[2].get())); }},
        {"drawn", [&] { scope.JustDrawIt(); }},
    };
    for (const auto& [name, change] : changes) {
        ui.tdKnGrid.setDVal(0.5);
        int pumps = 0;
        platform.onPump = [&, &change = change] {
            if (++pumps == 1)
                change();
        };
        ui.tdKnGrid.wheel(120, {});
        platform.onPump = nullptr;
        const std::vector<std::uint32_t> spectrum = pixelsOf(ui.picSpectrum);
        scope.JustDrawIt();
        EXPECT_TRUE(spectrum == pixelsOf(ui.picSpectrum)) << name;
    }
}

TEST_F(GridTurnDrawingTest, ForeignChannelsAreReadAgainAtTheEnd) {
    addTX(451.0, 1.0, 10.0);
    EXPECT_EQ(drawingsIn([&] { ui.tdKnGrid.wheel(120, {}); }), 2);
}

TEST_F(GridTurnDrawingTest, ADrawingThatFailedIsRepeatedAtTheEnd) {
    ui.tdKnGrid.setDVal(0.5);
    bool fails = true;
    platform.onPump = [&] {
        if (std::exchange(fails, false))
            throw util::RuntimeError(util::error_number::kInternal);
    };
    EXPECT_EQ(drawingsIn([&] { ui.tdKnGrid.wheel(120, {}); }), 2);
    platform.onPump = nullptr;
    EXPECT_EQ(takeReport().procedure, L"JustDrawIt");
}

}  // namespace
}  // namespace kv::control
