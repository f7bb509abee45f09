// The turning knob under mouse, wheel and keys, and the events that the program gets.
#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <stdexcept>

#include "KnobFixture.h"

namespace {

using namespace kv::turndial;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(KnobTurn, AValueSetByTheProgramRaisesNoEvent) {
    knob.setDVal(70.0);
    knob.setDVal(std::nan(""));
    knob.setDVal(-5.0);
    knob.Refresh();
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_EQ(knob.dVal(), -5.0);
}

TEST_F(KnobTurn, AClickTurnsNothing) {
    knob.mouseDown(60, 54, kPlain);
    EXPECT_TRUE(knob.bMouseDown());
    EXPECT_TRUE(knob.holdsMouse());
    knob.mouseMove(61, 53, kPlain);
    knob.mouseUp(61, 53, kPlain);
    EXPECT_FALSE(knob.bMouseDown());
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_EQ(knob.dVal(), 50.0);
}

TEST_F(KnobTurn, PushingUpOrToTheRightTurnsUp) {
    struct Case {
        const char* what;
        std::pair<int, int> from;
        std::vector<std::pair<int, int>> path;
        Heard events;
    };
    // 200 pixels are the whole range: 20 pixels a detent.
    const Case cases[] = {
        {"up", {4, 50}, {{4, 35}, {4, 34}, {4, 10}}, {"v 60", "-", "v 70", "end"}},
        {"down, left, right", {50, 4}, {{50, 24}, {30, 24}, {70, 24}}, {"v 40", "v 30", "v 50", "end"}},
        {"past the end and back", {4, 0}, {{4, -2000}, {4, -1980}}, {"v 100", "v 90", "end"}},
        {"from the middle of the dial", {60, 50}, {{60, 30}}, {"v 60", "end"}},
    };
    for (const auto& [what, from, path, events] : cases) {
        SCOPED_TRACE(what);
        knob.setDVal(50.0);
        takeAnywhere(from.first, from.second);
        EXPECT_EQ(pushed(path), events);
    }
    EXPECT_EQ(knob.dVal(), 60.0);
}

TEST_F(KnobTurn, AReleaseAtAnotherPointCountsAsAMove) {
    takeAnywhere(4, 50);
    knob.mouseUp(4, 30, kPlain);
    EXPECT_THAT(heard, ElementsAre("v 60", "end"));
}

TEST_F(KnobTurn, DraggedByItsRimItTurnsWithTheMouse) {
    const auto [x0, y0] = rim(0.0);
    knob.mouseDown(x0, y0, kPlain);
    for (int degrees = 9; degrees <= 81; degrees += 9) {
        const auto [x, y] = rim(degrees);
        knob.mouseMove(x, y, kPlain);
    }
    // 270 degrees are the whole range: about 27 degrees a detent, the first nine turn nothing.
    EXPECT_THAT(taken(heard), ElementsAre("v 60", "v 70", "v 80"));
    const auto [x1, y1] = rim(0.0);
    knob.mouseMove(x1, y1, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 50"));
    knob.mouseUp(x1, y1, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("end"));
}

TEST_F(KnobTurn, AMoveAcrossTheMiddleTurnsNothing) {
    const auto [x0, y0] = rim(-90.0);
    knob.mouseDown(x0, y0, kPlain);
    knob.mouseMove(x0 + 4, y0, kPlain);
    knob.mouseMove(59, 53, kPlain);
    const auto [x1, y1] = rim(90.0);
    knob.mouseMove(x1, y1, kPlain);
    knob.mouseUp(x1, y1, kPlain);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(KnobTurn, ASmoothKnobHasNoDetents) {
    knob.bOption1 = true;
    takeAnywhere(4, 50);
    knob.mouseMove(4, 47, kPlain);
    knob.mouseMove(4, 46, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 51.5", "v 52"));
    knob.mouseMove(4, 45, kControl);
    // Releasing Control first does not round the number again.
    knob.mouseUp(4, 45, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 52.05", "end"));
}

TEST_F(KnobTurn, StopsAreTurnedToOneByOne) {
    addDecades(knob);
    knob.setDVal(2.0);
    image.paint(knob);
    takeAnywhere(4, 60);
    for (int y = 59; y >= 20; --y)
        knob.mouseMove(4, y, kPlain);
    knob.mouseUp(4, 20, kPlain);
    EXPECT_THAT(heard, ElementsAre("v 5", "v 10", "end"));
}

TEST_F(KnobTurn, AValueBetweenStopsStaysUntilItIsTurnedToItsNeighbor) {
    addDecades(knob);
    knob.setDVal(12.5);
    takeAnywhere(4, 60);
    EXPECT_EQ(knob.dVal(), 12.5);
    knob.mouseMove(4, 62, kPlain);
    knob.mouseMove(4, 68, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 10"));
    knob.cancel();
    taken(heard);
    takeAnywhere(4, 60);
    knob.mouseMove(4, 58, kPlain);
    EXPECT_THAT(taken(heard), IsEmpty());
    knob.mouseMove(4, 56, kPlain);
    knob.mouseMove(4, 52, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 20"));
}

TEST_F(KnobTurn, AValueOffTheScaleStaysUntilTurnedTowardsIt) {
    knob.setDVal(-40.0);
    takeAnywhere(4, 20);
    knob.mouseMove(4, 60, kPlain);
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_EQ(knob.dVal(), -40.0);
    knob.mouseMove(4, 59, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 0"));
    knob.mouseUp(4, 59, kPlain);
    knob.setDVal(400.0);
    taken(heard);
    knob.keyDown(Key::Up, kPlain);
    EXPECT_THAT(heard, IsEmpty());
    knob.keyDown(Key::Down, kPlain);
    EXPECT_THAT(heard, ElementsAre("v 100"));
}

TEST_F(KnobTurn, AnEndlessKnobGoesOnAtTheOtherEnd) {
    knob.bOption3 = true;
    knob.setDVal(90.0);
    takeAnywhere(4, 50);
    knob.mouseMove(4, 20, kPlain);
    knob.mouseUp(4, 20, kPlain);
    // Half a detent before the end and one after it: 90 + 15 of 100.
    EXPECT_THAT(taken(heard), ElementsAre("v 10", "end"));
    knob.setDVal(100.0);
    knob.keyDown(Key::Right, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 0"));
}

TEST_F(KnobTurn, EachWheelNotchIsAWholeTurn) {
    knob.wheel(120, kPlain);
    knob.wheel(-240, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 60", "end", "v 40", "end"));
    EXPECT_FALSE(knob.bMouseDown());
    knob.wheel(120, kControl);
    EXPECT_THAT(taken(heard), ElementsAre("v 41", "end"));
}

TEST_F(KnobTurn, PartsOfANotchAddUp) {
    for (int i = 0; i < 7; ++i)
        knob.wheel(40, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 60", "end", "v 70", "end"));
    // A turn in the other direction starts at zero: the remaining 40 do not count against it.
    knob.wheel(-80, kPlain);
    EXPECT_THAT(taken(heard), IsEmpty());
    knob.wheel(-40, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 60", "end"));
    knob.setDVal(70.0);
    // A turn after the focus was elsewhere starts at zero too.
    knob.wheel(-110, kPlain);
    knob.focus(false);
    knob.wheel(-100, kPlain);
    EXPECT_THAT(taken(heard), IsEmpty());
    knob.wheel(-20, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 60", "end"));
    knob.wheel(290, kPlain);
    knob.wheel(70, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 80", "end", "v 90", "end"));
}

TEST_F(KnobTurn, AtTheEndTheWheelRaisesNoEvent) {
    knob.setDVal(100.0);
    knob.wheel(120, kPlain);
    knob.wheel(std::numeric_limits<int>::max(), kPlain);
    EXPECT_THAT(heard, IsEmpty());
    knob.wheel(std::numeric_limits<int>::min(), kPlain);
    EXPECT_THAT(heard, ElementsAre("v 0", "end"));
}

TEST_F(KnobTurn, KeysTurnUntilTheyAreReleased) {
    EXPECT_TRUE(knob.keyDown(Key::Up, kPlain));
    EXPECT_TRUE(knob.keyDown(Key::Up, kPlain));
    EXPECT_THAT(taken(heard), ElementsAre("v 60", "v 70"));
    knob.keyUp(Key::Down);
    EXPECT_THAT(heard, IsEmpty());
    knob.keyUp(Key::Up);
    EXPECT_THAT(taken(heard), ElementsAre("end"));
    knob.keyUp(Key::Up);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(KnobTurn, EachKeyTurnsByItsDetentsOrToItsEnd) {
    struct Case {
        Key key;
        double range;  ///< from 40 by tens
        double stops;  ///< from 20
    };
    for (const auto& [key, range, stops] : {Case{Key::Right, 50.0, 50.0},
                                            {Key::Up, 50.0, 50.0},
                                            {Key::Left, 30.0, 10.0},
                                            {Key::Down, 30.0, 10.0},
                                            {Key::PageUp, 90.0, 200.0},
                                            {Key::PageDown, 0.0, 2.0},
                                            {Key::Home, 0.0, 0.5},
                                            {Key::End, 100.0, 1000.0}}) {
        SCOPED_TRACE(static_cast<int>(key));
        knob.bOption2 = false;
        const auto pressed = [&](double from) {
            knob.setDVal(from);
            EXPECT_TRUE(knob.wantsKey(key));
            EXPECT_TRUE(knob.keyDown(key, kPlain));
            knob.keyUp(key);
            return knob.dVal();
        };
        EXPECT_EQ(pressed(40.0), range);
        addDecades(knob);
        EXPECT_EQ(pressed(20.0), stops);
    }
    knob.bOption2 = false;
    knob.setDVal(40.0);
    knob.keyDown(Key::Up, kControl);
    EXPECT_EQ(knob.dVal(), 41.0);
}

TEST_F(KnobTurn, AKeyThatChangesNothingRaisesNoEvent) {
    knob.setDVal(100.0);
    for (const Key key : {Key::Up, Key::End, Key::PageUp}) {
        EXPECT_TRUE(knob.keyDown(key, kPlain));
        knob.keyUp(key);
    }
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(KnobTurn, TabAndEnterBelongToTheFormAndEscapeOutsideOfATurn) {
    for (const Key key : {Key::Tab, Key::Enter, Key::Escape, Key::Other}) {
        EXPECT_FALSE(knob.wantsKey(key));
        EXPECT_FALSE(knob.keyDown(key, kPlain));
    }
    knob.mouseDown(4, 4, kPlain);
    EXPECT_TRUE(knob.wantsKey(Key::Escape));
    EXPECT_FALSE(knob.wantsKey(Key::Tab));
    EXPECT_FALSE(knob.wantsKey(Key::Enter));
    knob.mouseUp(4, 4, kPlain);
    EXPECT_FALSE(knob.wantsKey(Key::Escape));
}

}  // namespace
