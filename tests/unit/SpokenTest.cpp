// What a screen reader says of the picture.
#include "control/Spoken.h"

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

class SpokenTest : public ScopeTest {
  protected:
    SpokenTest() { nameParts(scope); }
    std::wstring said() { return ui.picSpectrum.spoken.value(); }
};

TEST_F(SpokenTest, WithoutARangeOnlyTheChannelsAreCounted) {
    EXPECT_EQ(said(), L"0 transmit channels, 0 receive channels");
}

TEST_F(SpokenTest, TheRangeTheCursorAndTheChannelsAreSaid) {
    addTX(450.0);
    addRX(455.0);
    addRX(456.0);
    showTwoPixelsAUnit();
    scope.setCursorVal(0.0);
    ui.tdKnMovCursor.setDVal(0.0);
    EXPECT_EQ(said(), L"350.00000 to 550.00000 MHz, 1 transmit channel, 2 receive channels");
    scope.setCursorVal(451.25);
    EXPECT_EQ(said(), L"350.00000 to 550.00000 MHz, cursor at 451.25000 MHz, 1 transmit channel, 2 receive channels");
}

TEST_F(SpokenTest, AskingScalesNothing) {
    addTX(450.0);
    EXPECT_EQ(said(), L"1 transmit channel, 0 receive channels");
    EXPECT_GT(scope.displaySpan().first, scope.displaySpan().second);
}

}  // namespace
}  // namespace kv::control
