// Records of a host's class that ignore what the control sets.
#include "tests/unit/QuietSlot.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

class StubbornSlot final : public CountedSlot {
  public:
    [[nodiscard]] const channels::FreqSlotFields* peek() const noexcept override { return isOwn ? &fields() : nullptr; }
    void setSFreqUnits(const std::wstring& value) override {
        if (takesUnits)
            channels::FreqSlotBase::setSFreqUnits(value);
    }
    void setSBWUnits(const std::wstring& value) override {
        if (takesBandwidthUnits)
            channels::FreqSlotBase::setSBWUnits(value);
    }
    void setDFreqHi(double value) override {
        if (takesEdges)
            channels::FreqSlotBase::setDFreqHi(value);
    }
    void setDFreqLo(double value) override {
        if (takesEdges)
            channels::FreqSlotBase::setDFreqLo(value);
    }

    bool takesUnits = true;
    bool takesBandwidthUnits = true;
    bool takesEdges = true;
    bool isOwn = false;  ///< of the control's own class, whose members can be read directly
};

class StubbornRecordTest : public ScopeTest {
  protected:
    StubbornRecordTest() {
        slot->fields().dFreq = 450.0;
        slot->fields().dBW = 25.0;
        slot->fields().dPwrDBM = 30.0;
        slot->fields().sKey = L"TX1";
    }
    void add() { scope.AddTXChnl(channels::FreqSlotRef(slot.get())); }

    util::Ref<StubbornSlot> slot{new StubbornSlot};
};

TEST_F(StubbornRecordTest, WithoutAUnitOfTheFrequencyTheEdgesAreTheCenter) {
    slot->takesUnits = false;
    add();
    EXPECT_EQ(slot->dFreqLo(), 450.0);
    EXPECT_EQ(slot->dFreqHi(), 450.0);
}

TEST_F(StubbornRecordTest, WithoutAUnitOfTheBandwidthTheEdgesAreTheCenter) {
    slot->takesBandwidthUnits = false;
    add();
    EXPECT_EQ(slot->dFreqLo(), 450.0);
    EXPECT_EQ(slot->dFreqHi(), 450.0);
}

TEST_F(StubbornRecordTest, WithoutEdgesItWidensThePowersOnly) {
    slot->takesEdges = false;
    add();
    EXPECT_EQ(scope.extremes().dTXFreqMin, channels::FREQ_UNSET);
    EXPECT_EQ(scope.extremes().dTXFreqMax, -channels::FREQ_UNSET);
    EXPECT_EQ(scope.extremes().dFreqMin, channels::FREQ_UNSET);
    EXPECT_EQ(scope.extremes().dFreqMax, -channels::FREQ_UNSET);
    EXPECT_EQ(scope.extremes().dTXPwrDBMMax, 30.0);
}

TEST_F(StubbornRecordTest, ABandwidthThatOverflowsIsAnErrorAlsoWithBothEdges) {
    for (const bool isOwn : {true, false}) {
        scope.ClearAllChnls();
        slot->isOwn = isOwn;
        slot->fields().dFreqLo = 440.0;
        slot->fields().dFreqHi = 460.0;
        slot->fields().dBW = 1e308;
        slot->fields().sFreqUnits = L"Hz";
        add();
        EXPECT_EQ(scope.NumTX(), 1);
        EXPECT_EQ(scope.extremes().dFreqMax, -channels::FREQ_UNSET) << "widened nothing";
    }
}

}  // namespace
}  // namespace kv::control
