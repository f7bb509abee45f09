// When a knob's turn begins and ends, also when the program acts in its events.
#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <random>
#include <stdexcept>
#include <utility>

#include "KnobFixture.h"

namespace {

using namespace kv::turndial;
using testing::ElementsAre;
using testing::IsEmpty;

using KnobEvents = KnobTurn;

TEST_F(KnobEvents, EscapeCancelsATurn) {
    knob.setDVal(43.0);
    takeAnywhere(4, 50);
    knob.mouseMove(4, 0, kPlain);
    taken(heard);
    EXPECT_TRUE(knob.keyDown(Key::Escape, kPlain));
    EXPECT_THAT(taken(heard), ElementsAre("v 43"));
    EXPECT_EQ(knob.dVal(), 43.0);
    EXPECT_FALSE(knob.holdsMouse());
    // The button is still pressed, but turns nothing now.
    knob.mouseMove(4, -50, kPlain);
    knob.mouseUp(4, -50, kPlain);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(KnobEvents, EscapeUndoesAllStepsOfAKeysTurn) {
    for (int i = 0; i < 3; ++i)
        knob.keyDown(Key::Left, kPlain);
    taken(heard);
    EXPECT_TRUE(knob.keyDown(Key::Escape, kPlain));
    knob.keyUp(Key::Left);
    EXPECT_THAT(heard, ElementsAre("v 50"));
}

TEST_F(KnobEvents, CancelingATurnWithoutAChangeRaisesNoEvent) {
    knob.mouseDown(4, 4, kPlain);
    knob.cancel();
    knob.cancel();
    EXPECT_FALSE(knob.bMouseDown());
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(KnobEvents, LosingTheCaptureOrTheFocusEndsATurn) {
    takeAnywhere(4, 50);
    knob.mouseMove(4, 30, kPlain);
    knob.captureLost();
    knob.captureLost();
    EXPECT_THAT(taken(heard), ElementsAre("v 60", "end"));
    EXPECT_FALSE(knob.bMouseDown());
    knob.keyDown(Key::Up, kPlain);
    knob.captureLost();
    EXPECT_THAT(taken(heard), ElementsAre("v 70"));
    knob.focus(false);
    EXPECT_THAT(taken(heard), ElementsAre("end"));
}

TEST_F(KnobEvents, ADisabledKnobCannotBeTurned) {
    knob.setEnabled(false);
    knob.mouseDown(4, 50, kPlain);
    EXPECT_FALSE(knob.bMouseDown());
    knob.wheel(120, kPlain);
    EXPECT_FALSE(knob.keyDown(Key::Up, kPlain));
    EXPECT_FALSE(knob.wantsKey(Key::Up));
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(KnobEvents, DisablingAKnobEndsItsTurn) {
    takeAnywhere(4, 50);
    knob.mouseMove(4, 30, kPlain);
    taken(heard);
    knob.setEnabled(false);
    knob.mouseMove(4, 0, kPlain);
    EXPECT_THAT(heard, ElementsAre("end"));
    EXPECT_FALSE(knob.holdsMouse());
}

TEST_F(KnobEvents, TheScaleOfAHeldKnobStaysAsItWas) {
    knob.onValueChanged = [this](double value) {
        knob.dMinVal = value - 1000.0;
        knob.dMaxVal = value + 1000.0;
        knob.setDVal(value);
        heard.push_back("v " + std::to_string(static_cast<int>(value)));
    };
    takeAnywhere(4, 50);
    knob.mouseMove(4, 30, kPlain);
    knob.mouseMove(4, 10, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 60", "v 70"));
    EXPECT_EQ(knob.scale().max, 100.0);
    knob.mouseUp(4, 10, kPlain);
    EXPECT_EQ(knob.scale().max, 1070.0);
}

TEST_F(KnobEvents, TheKnobIsReleasedBeforeTurnEnd) {
    bool held = true;
    knob.onTurnEnd = [&] { held = knob.bMouseDown(); };
    bool heldWhileTurning = false;
    knob.onValueChanged = [&](double) { heldWhileTurning = knob.bMouseDown(); };
    takeAnywhere(4, 50);
    knob.mouseUp(4, 30, kPlain);
    EXPECT_TRUE(heldWhileTurning);
    EXPECT_FALSE(held);
}

TEST_F(KnobEvents, AThrowingHandlerDoesNotKeepTheKnobHeld) {
    knob.onValueChanged = [](double) { throw std::runtime_error("program's fault"); };
    takeAnywhere(4, 50);
    EXPECT_THROW(knob.mouseMove(4, 30, kPlain), std::runtime_error);
    EXPECT_FALSE(knob.bMouseDown());
    EXPECT_FALSE(knob.wantsKey(Key::Escape));
    knob.mouseUp(4, 30, kPlain);
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_THROW(knob.keyDown(Key::Up, kPlain), std::runtime_error);
    EXPECT_FALSE(knob.wantsKey(Key::Escape));
    EXPECT_THROW(knob.wheel(120, kPlain), std::runtime_error);
    EXPECT_FALSE(knob.wantsKey(Key::Escape));
    listen(knob, heard);
    knob.onTurnEnd = [] { throw std::runtime_error("program's fault"); };
    takeAnywhere(4, 50);
    EXPECT_THROW(knob.mouseUp(4, 30, kPlain), std::runtime_error);
    EXPECT_FALSE(knob.bMouseDown());
}

TEST_F(KnobEvents, EventsDuringAHandlerKeepTheirOrder) {
    // The program lets events run while it draws: the release arrives before the handler returns.
    knob.onValueChanged = [this](double value) {
        heard.push_back("v " + std::to_string(static_cast<int>(value)));
        knob.mouseUp(4, 30, kPlain);
    };
    takeAnywhere(4, 50);
    knob.mouseMove(4, 30, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 60", "end"));
    // A second notch during the first one's drawing is a turn of its own.
    bool nested = false;
    knob.onValueChanged = [&](double value) {
        heard.push_back("v " + std::to_string(static_cast<int>(value)));
        if (!std::exchange(nested, true))
            knob.wheel(120, kPlain);
    };
    knob.wheel(120, kPlain);
    EXPECT_THAT(taken(heard), ElementsAre("v 70", "end", "v 80", "end"));
}

TEST_F(KnobEvents, AReleaseEndsItsOwnTurnOnly) {
    // While the last move of one turn is being drawn, that turn ends and the user presses the knob again.
    knob.onValueChanged = [this](double) {
        knob.captureLost();
        knob.mouseDown(4, 30, kPlain);
    };
    takeAnywhere(4, 50);
    knob.mouseUp(4, 30, kPlain);
    EXPECT_TRUE(knob.holdsMouse());
    EXPECT_THAT(heard, ElementsAre("end"));
}

TEST_F(KnobEvents, AHandlerMayReplaceItself) {
    knob.onValueChanged = [this](double) {
        knob.onValueChanged = nullptr;
        heard.emplace_back("first");
    };
    knob.wheel(240, kPlain);
    knob.wheel(120, kPlain);
    EXPECT_THAT(heard, ElementsAre("first", "end", "end"));
}

TEST_F(KnobEvents, WheelAndKeysDoNotDisturbADrag) {
    takeAnywhere(4, 50);
    knob.wheel(120, kPlain);
    EXPECT_TRUE(knob.keyDown(Key::Up, kPlain));
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_TRUE(knob.holdsMouse());
}

TEST_F(KnobEvents, AnInvalidRangeCannotBeTurned) {
    const double nan = std::nan("");
    for (const auto& [min, max] : {std::pair{5.0, 5.0}, {9.0, 1.0}, {nan, 3.0}, {0.0, nan}, {nan, nan}}) {
        knob.dMinVal = min;
        knob.dMaxVal = max;
        knob.setDVal(3.0);
        image.paint(knob);
        takeAnywhere(4, 50);
        knob.mouseMove(4, -100, kPlain);
        knob.mouseUp(4, 200, kPlain);
        knob.wheel(1200, kPlain);
        for (const Key key : {Key::Up, Key::PageDown, Key::Home, Key::End}) {
            knob.keyDown(key, kPlain);
            knob.keyUp(key);
        }
        EXPECT_THAT(heard, IsEmpty());
        EXPECT_EQ(knob.dVal(), 3.0);
    }
}

TEST_F(KnobEvents, AValueThatIsNoNumberIsTurnedOntoTheScale) {
    knob.setDVal(std::nan(""));
    EXPECT_EQ(knob.sValText(), L"NaN");
    knob.wheel(-120, kPlain);
    EXPECT_THAT(heard, IsEmpty());
    knob.wheel(120, kPlain);
    EXPECT_THAT(heard, ElementsAre("v 0", "end"));
}

TEST_F(KnobEvents, TheReadOutFollowsTheFormat) {
    knob.setDVal(437.5);
    EXPECT_EQ(knob.sValText(), L"437.5");
    knob.setDVal(1.0 / 3.0);
    EXPECT_EQ(knob.sValText(), L"0.333333333333") << "twelve digits at most";
    knob.setDVal(437.5);
    knob.sFormat = L"##0.00000";
    EXPECT_EQ(knob.sValText(), L"437.50000");
    knob.setSValText(L"somewhere");
    EXPECT_EQ(knob.sValText(), L"somewhere");
    knob.setDVal(438.0);
    EXPECT_EQ(knob.sValText(), L"438.00000");
    addDecades(knob);
    knob.setDVal(2.0);
    EXPECT_EQ(knob.sValText(), L"2.00000");
    knob.sFormat.clear();
    EXPECT_EQ(knob.sValText(), L"2M");
    knob.setDVal(2.5);
    EXPECT_EQ(knob.sValText(), L"2.5");
}

TEST_F(KnobEvents, UnusedStopsChangeNothing) {
    addDecades(knob);
    knob.bOption2 = false;
    knob.wheel(120, kPlain);
    EXPECT_THAT(heard, ElementsAre("v 60", "end"));
    EXPECT_EQ(knob.stops().size(), 11U);
    knob.AddStop(true, L"a", 1.0);
    EXPECT_EQ(knob.stops().size(), 1U);
}

TEST_F(KnobEvents, RandomInputMakesWholeTurns) {
    std::mt19937 random(20240);
    const auto below = [&random](int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); };
    constexpr std::array kKeys{Key::Left,     Key::Right, Key::Up,  Key::Down,   Key::PageUp,
                               Key::PageDown, Key::Home,  Key::End, Key::Escape, Key::Tab};
    int turns = 0;
    for (int round = 0; round < 20000; ++round) {
        const Modifiers modifiers{below(4) == 0};
        const Key key = kKeys[static_cast<std::size_t>(below(kKeys.size()))];
        switch (below(10)) {
            case 0:
                knob.mouseDown(below(120), below(110), modifiers);
                break;
            case 1:
                knob.mouseUp(below(200) - 40, below(200) - 40, modifiers);
                break;
            case 2:
                knob.wheel(below(600) - 300, modifiers);
                break;
            case 3:
                knob.keyDown(key, modifiers);
                break;
            case 4:
                knob.keyUp(key);
                break;
            case 5:
                below(4) == 0 ? knob.focus(below(2) == 0) : knob.captureLost();
                break;
            case 6:
                knob.bOption1 = below(2) == 0;
                knob.bOption3 = below(8) == 0;
                break;
            default:
                knob.mouseMove(below(200) - 40, below(200) - 40, modifiers);
                break;
        }
        ASSERT_GE(knob.dVal(), 0.0);
        ASSERT_LE(knob.dVal(), 100.0);
        bool changed = false;
        for (const std::string& event : heard) {
            if (event != "end") {
                changed = true;
                continue;
            }
            // No end without a change since the end before it.
            ASSERT_TRUE(changed) << round;
            changed = false;
            ++turns;
        }
        // The events since the last end may belong to a turn that still runs.
        heard.assign(changed ? 1U : 0U, "v");
    }
    EXPECT_GT(turns, 1000);
}

}  // namespace
