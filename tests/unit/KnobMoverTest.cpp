// The nudge knob: it reports detents and leaves the value to its program.
#include <gmock/gmock.h>

#include <limits>
#include <stdexcept>

#include "KnobFixture.h"

namespace {

using namespace kv::turndial;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class KnobMover : public testing::Test {
  protected:
    KnobMover() {
        mover.setDVal(437.5);
        listen(mover, heard);
        image.paint(mover);
    }
    void take(int x, int y) {
        mover.mouseDown(x - 3, y, kPlain);
        mover.mouseMove(x, y, kPlain);
    }

    tdKnMover mover{nullptr, L"tdKnMov"};
    Heard heard;
    KnobImage image{120, 60};
};

TEST_F(KnobMover, PushingRightOrUpReportsDetents) {
    take(50, 30);
    mover.mouseMove(61, 30, kPlain);
    EXPECT_THAT(taken(heard), IsEmpty());
    mover.mouseMove(62, 30, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 1"));
    mover.mouseMove(62, 18, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 1"));
    mover.mouseMove(38, 18, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v -1", "v -1"));
    mover.mouseUp(38, 18, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("end"));
    EXPECT_EQ(mover.dVal(), 437.5);
}

TEST_F(KnobMover, ControlNeedsTenTimesTheDistance) {
    take(50, 30);
    mover.mouseMove(169, 30, kControl);
    EXPECT_THAT(taken(heard), IsEmpty());
    mover.mouseMove(171, 30, kControl);
    EXPECT_THAT(taken(heard), ElementsAre("v 1"));
}

TEST_F(KnobMover, AClickOnAnArrowIsOneDetent) {
    mover.mouseDown(8, 35, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v -1"));
    mover.mouseMove(80, 35, kPlain);
    mover.mouseMove(100, 35, kPlain);
    EXPECT_THAT(taken(heard), IsEmpty());
    mover.mouseUp(100, 35, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("end"));
    mover.mouseDown(112, 35, kPlain);
    mover.mouseUp(112, 35, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 1", "end"));
}

TEST_F(KnobMover, TheArrowsAreAsHighAsTheWheel) {
    const std::tuple<int, int, Heard> cases[] = {
        {6, 13, {"v -1", "end"}}, {20, 52, {"v -1", "end"}}, {5, 13, {}},  {6, 12, {}},  {21, 52, {}},  {20, 53, {}},
        {99, 13, {"v 1", "end"}}, {113, 52, {"v 1", "end"}}, {98, 13, {}}, {99, 12, {}}, {114, 52, {}}, {113, 53, {}},
    };
    for (const auto& [x, y, events] : cases) {
        mover.mouseDown(x, y, kPlain);
        mover.mouseUp(x, y, kPlain);
        EXPECT_EQ(taken(heard), events) << x << ' ' << y;
    }
}

TEST_F(KnobMover, AClickOnTheWheelRaisesNoEvent) {
    mover.mouseDown(60, 35, kPlain);
    mover.mouseUp(61, 35, kPlain);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(KnobMover, NotchesAndKeysReportDetents) {
    mover.wheel(240, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 1", "v 1", "end"));
    mover.wheel(-60, kPlain);
    mover.wheel(-60, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v -1", "end"));
    mover.keyDown(Key::Left, kPlain);
    mover.keyDown(Key::Left, kPlain);
    mover.keyUp(Key::Left);
    EXPECT_THAT(taken(heard), ElementsAre("v -1", "v -1", "end"));
    mover.keyDown(Key::PageUp, kPlain);
    EXPECT_THAT(heard, SizeIs(10));
    EXPECT_THAT(taken(heard), Each("v 1"));
    mover.keyUp(Key::PageUp);
    EXPECT_THAT(taken(heard), ElementsAre("end"));
}

TEST_F(KnobMover, TheWheelShowsDetentsAndThePartOfOneThatAPushAdds) {
    // Three quarters of a detent, pushed in one piece and as a whole one less a quarter.
    take(50, 30);
    mover.mouseMove(59, 30, kPlain);
    const auto pushed = image.paint(mover);
    tdKnMover other(nullptr, L"");
    other.setDVal(437.5);
    image.paint(other);
    other.wheel(120, kPlain);
    other.mouseDown(65, 30, kPlain);
    other.mouseMove(62, 30, kPlain);
    EXPECT_NE(image.paint(other), pushed);
    other.mouseMove(59, 30, kPlain);
    EXPECT_EQ(image.paint(other), pushed);
}

TEST_F(KnobMover, ThreeDetentsLeadToTheSamePicture) {
    tdKnMover other(nullptr, L"");
    other.setDVal(437.5);
    const auto start = image.paint(mover);
    mover.wheel(-120, kPlain);
    other.wheel(240, kPlain);
    EXPECT_NE(image.paint(mover), start);
    EXPECT_EQ(image.paint(mover), image.paint(other));
    other.wheel(120, kPlain);
    EXPECT_EQ(image.paint(other), start);
}

TEST_F(KnobMover, HomeAndEndAreNotUsed) {
    EXPECT_FALSE(mover.wantsKey(Key::Home));
    EXPECT_FALSE(mover.wantsKey(Key::End));
    EXPECT_FALSE(mover.keyDown(Key::Home, kPlain));
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_TRUE(mover.wantsKey(Key::Left));
    EXPECT_FALSE(mover.wantsKey(Key::Escape));
}

TEST_F(KnobMover, EscapeUndoesTheDetents) {
    take(50, 30);
    mover.mouseMove(90, 30, kPlain);
    mover.mouseMove(70, 30, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 1", "v 1", "v 1", "v -1"));
    EXPECT_TRUE(mover.keyDown(Key::Escape, kPlain));
    EXPECT_THAT(taken(heard), ElementsAre("v -1", "v -1"));
    mover.mouseUp(70, 30, kPlain);
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_FALSE(mover.holdsMouse());
}

TEST_F(KnobMover, OneMovementIsAtMostAHundredDetents) {
    take(50, 30);
    mover.mouseMove(2000000000, 30, kPlain);
    EXPECT_THAT(heard, SizeIs(100));
    taken(heard);
    mover.wheel(std::numeric_limits<int>::max(), kPlain);
    EXPECT_THAT(heard, IsEmpty());
    mover.captureLost();
    EXPECT_THAT(taken(heard), ElementsAre("end"));
    mover.wheel(std::numeric_limits<int>::min(), kPlain);
    EXPECT_THAT(heard, SizeIs(101));
    EXPECT_EQ(heard.back(), "end");
}

TEST_F(KnobMover, ATurnThatEndsInAHandlerReportsNoFurtherDetents) {
    mover.onValueChanged = [this](double) {
        heard.emplace_back("v");
        mover.captureLost();
    };
    take(50, 30);
    mover.mouseMove(110, 30, kPlain);
    EXPECT_THAT(heard, ElementsAre("v", "end"));
}

TEST_F(KnobMover, AThrowingHandlerDoesNotKeepTheKnobHeld) {
    mover.onValueChanged = [](double) { throw std::runtime_error("program's fault"); };
    EXPECT_THROW(mover.mouseDown(112, 35, kPlain), std::runtime_error);
    EXPECT_FALSE(mover.holdsMouse());
    mover.mouseUp(112, 35, kPlain);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(KnobMover, TheProgramsValueIsShown) {
    mover.sFormat = L"##0.00000";
    EXPECT_EQ(mover.sValText(), L"437.50000");
    mover.onValueChanged = [this](double amount) { mover.setDVal(mover.dVal() + amount * 0.25); };
    mover.wheel(120, kPlain);
    EXPECT_EQ(mover.sValText(), L"437.75000");
}

}  // namespace
