// The spectrum by keyboard at the edges of the display, and the keys of the number pad.
#include "tests/unit/Keys.h"
#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

using testing::IsEmpty;

/// 350 to 550 MHz in 20 divisions of 10, with a channel on each edge.
class KeyboardEdgesTest : public RangeTest {
  protected:
    void SetUp() override {
        for (const double frequency : {350.0, 450.0, 550.0})
            addTX(frequency, 0.0, 60.0);
        showTwoPixelsAUnit();
        events.heard.clear();
    }
    bool press(int key, int shift = 0) { return ui.picSpectrum.onKeyDown(key, shift); }
};

TEST_F(KeyboardEdgesTest, AChannelOnTheEdgeIsInTheDisplay) {
    scope.setCursorVal(450.0);
    press(key::kRight, key::kCtrl);
    EXPECT_EQ(scope.CursorVal(), 550.0);
    expectRange(350.0, 550.0);
    press(key::kLeft, key::kCtrl);
    press(key::kLeft, key::kCtrl);
    EXPECT_EQ(scope.CursorVal(), 350.0);
    expectRange(350.0, 550.0);
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(KeyboardEdgesTest, ACursorThatLeavesTheDisplayTakesItAlong) {
    scope.setCursorVal(550.0);
    press(key::kRight, key::kShift);
    EXPECT_EQ(scope.CursorVal(), 551.0);
    expectRange(451.0, 651.0);
    EXPECT_EQ(ui.lblFMHz.caption(), L"551.00000 MHz");
}

TEST_F(KeyboardEdgesTest, TheNumberPadZoomsAsTheOtherKeysDo) {
    for (const auto& [in, out] :
         {std::pair{key::kPadPlus, key::kPadMinus}, {key::kPlus, key::kMinus}, {key::kUp, key::kDown}}) {
        press(in);
        expectRange(400.0, 500.0);
        press(out);
        expectRange(350.0, 550.0);
    }
}

TEST_F(KeyboardEdgesTest, TheSpectrumWantsItsKeysAndNoOthers) {
    const std::vector<int> wanted{key::kSpace,    key::kPageUp, key::kPageDown, key::kHome,   key::kLeft,
                                  key::kUp,       key::kRight,  key::kDown,     int{key::kM}, key::kPadPlus,
                                  key::kPadMinus, key::kPlus,   key::kMinus};
    int count = 0;
    for (int key = 0; key < 256; ++key)
        count += ui.picSpectrum.wantsKey(key) ? 1 : 0;
    EXPECT_GE(count, static_cast<int>(wanted.size()));
    for (const int key : wanted)
        EXPECT_TRUE(ui.picSpectrum.wantsKey(key)) << key;
    for (const int form : {9, 13, 27, 112, 121})
        EXPECT_FALSE(ui.picSpectrum.wantsKey(form)) << form;
}

TEST_F(KeyboardEdgesTest, WithoutACursorTheCenterIsWhereItStarts) {
    ui.tdKnMovCursor.setDVal(0.0);
    press(key::kRight, key::kShift);
    EXPECT_EQ(scope.CursorVal(), 451.0);
    ui.tdKnMovCursor.setDVal(0.0);
    press(key::kLeft, key::kCtrl);
    EXPECT_EQ(scope.CursorVal(), 350.0);
}

TEST_F(KeyboardEdgesTest, ACursorBelowAMegahertzIsACursor) {
    scope.setFreqEndBuffer(0.0);
    scope.DrawByRange(0.1, 0.9);
    scope.setCursorVal(0.7);
    press(key::kRight, key::kShift);
    EXPECT_DOUBLE_EQ(scope.CursorVal(), 0.704);
}

TEST_F(KeyboardEdgesTest, NoKeyMovesTheCenterToZero) {
    scope.DrawByRange(100.0, 100.0);
    expectRange(0.0, 200.0);
    press(key::kPageUp);
    expectRange(0.0, 200.0);
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(KeyboardEdgesTest, ChannelsInOtherUnitsAreFoundInMegahertz) {
    const SlotRef slot = addTX(0.46, 0.0, 60.0);
    slot->fields().sFreqUnits = L"GHz";
    const SlotRef unknown = addTX(0.455, 0.0, 60.0);
    unknown->fields().sFreqUnits = L"ghz";
    scope.setCursorVal(450.0);
    press(key::kRight, key::kCtrl);
    EXPECT_EQ(scope.CursorVal(), 460.0);
}

}  // namespace
}  // namespace kv::control
