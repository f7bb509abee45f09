// Whether drawing and moving the mouse touch more records the more channels there are.
#include <functional>
#include <ostream>

#include "tests/unit/ScopeFixture.h"
#include "tests/unit/TouchedSlot.h"

namespace kv::control {
namespace {

struct Row {
    const char* name;
    bool foreign;                          ///< with one record of the host's class among the others
    std::function<void(Bandscope&)> step;  ///< after a first one that is not counted
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.name;
}

class DisplayGrowthTest : public ScopeTest, public ::testing::WithParamInterface<Row> {
  protected:
    void add(util::Ref<channels::FreqSlotBase> slot) {
        channels::FreqSlotFields& fields = slot->fields();
        fields.dFreq = 450.0 + 0.01 * scope.NumTX();
        fields.dBW = 5.0;
        fields.dPwrDBM = 30.0;
        fields.sKey = L"TX" + std::to_wstring(scope.NumTX());
        scope.AddTXChnl(channels::FreqSlotRef(slot.get()));
    }
    void fill(int count) {
        scope.ClearAllChnls();
        while (scope.NumTX() < count)
            add(util::Ref<channels::FreqSlotBase>(new TouchedOwnSlot));
        if (GetParam().foreign)
            add(util::Ref<channels::FreqSlotBase>(new TouchedForeignSlot));
        scope.DrawInitialDisplay();
    }
    int touches(int count) {
        fill(count);
        for (int i = 0; i < 3; ++i)
            GetParam().step(scope);
        TouchedSlot::touches = 0;
        GetParam().step(scope);
        return TouchedSlot::touches;
    }
};

TEST_P(DisplayGrowthTest, MoreChannelsAreNotTouchedMore) {
    constexpr int kFew = 500;
    constexpr int kMany = 2500;
    constexpr int kLogarithm = 100;  // what trees and blocks may add
    ui.picSpectrum.move({0.0, 0.0, 1500.0, 1500.0});
    const int few = touches(kFew);
    EXPECT_LE(touches(kMany), few + kLogarithm);
}

void draw(Bandscope& scope) {
    scope.DrawDisplay();
}
/// Where there is one channel, whatever their number.
void move(Bandscope& scope) {
    scope.setBMouseInfo(true);
    scope.children().picSpectrum.setScaleWidth(0.01);
    scope.children().picSpectrum.onMouseMove(0, 0, 451.0, 0.0);
}

const Row kRows[] = {
    {"Drawing", false, draw},
    {"MouseMove", false, move},
    {"DrawingWithOneForeign", true, draw},
    {"MouseMoveWithOneForeign", true, move},
};

INSTANTIATE_TEST_SUITE_P(Steps, DisplayGrowthTest, ::testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kv::control
