// What code of the host does while one of its records is read, told or released by the store or a drawing.
#include "tests/unit/QuietSlot.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using channels::ChannelKind;

class HostCodeTest : public ScopeTest {
  protected:
    HostCodeTest() { scope.setMany(20); }
    util::Ref<QuietSlot> addOwn(ChannelKind kind, double frequency) {
        util::Ref<QuietSlot> slot(new QuietSlot);
        fill(*slot, frequency);
        add(kind, channels::FreqSlotRef(slot.get()));
        return slot;
    }
    SlotRef addForeign(ChannelKind kind, double frequency) {
        const SlotRef slot(new PlainSlot);
        fill(*slot, frequency);
        // To be told apart from the others in the picture.
        slot->fields().dPwrDBM = 40.0;
        slot->fields().lColor = slot->fields().lColorLine = 0x00FF00;
        add(kind, asChannel(slot));
        return slot;
    }
    void addOwns(int count) {
        for (int i = 0; i < count; ++i)
            addOwn(ChannelKind::TX, 440.0 + 20.0 * i / count);
    }
    static void fill(channels::FreqSlotBase& slot, double frequency) {
        channels::FreqSlotFields& fields = slot.fields();
        fields.dFreq = frequency;
        fields.dBW = 100.0;
        fields.dPwrDBM = 30.0;
        fields.lColor = fields.lColorLine = 0x0000FF;
    }
    void add(ChannelKind kind, const channels::FreqSlotRef& channel) {
        static int key = 0;
        static_cast<channels::FreqSlotBase&>(*channel).fields().sKey =
            (kind == ChannelKind::TX ? L"TX" : L"RX") + std::to_wstring(++key);
        kind == ChannelKind::TX ? scope.AddTXChnl(channel) : scope.AddRXChnl(channel);
    }
    /// `DrawDisplay` is not repeated when it ends outdated, so that what it has left out stays missing.
    void expectPictureOfOneByOne() {
        errors.reports.clear();
        const std::vector<std::uint32_t> painted = pixelsOf(ui.picSpectrum);
        scope.setMany(1'000'000);
        scope.DrawDisplay();
        EXPECT_TRUE(painted == pixelsOf(ui.picSpectrum));
    }
};

/// Runs the host's code when it is released.
class PartingSlot final : public CountedSlot {
  public:
    std::function<void()> onRelease;

  private:
    ~PartingSlot() override {
        if (onRelease)
            onRelease();
    }
};

/// Runs the host's code when it is told that it is drawn.
class ToldSlot final : public CountedSlot {
  public:
    void setBDrawn(bool value) override {
        channels::FreqSlotBase::setBDrawn(value);
        if (onTold)
            onTold();
    }
    std::function<void()> onTold;
};

TEST_F(HostCodeTest, ARecordMayChangeWhileAClearReleasesAnotherOne) {
    scope.setMany(1);
    for (const ChannelKind kind : {ChannelKind::TX, ChannelKind::RX}) {
        auto* const parting = new PartingSlot;
        fill(*parting, 450.0);
        add(kind, channels::FreqSlotRef(parting));
        const util::Ref<QuietSlot> own = addOwn(kind, 451.0);
        parting->onRelease = [&] {
            addForeign(kind, 452.0);
            addForeign(kind, 453.0);
            own->setDFreq(454.0);
        };
        kind == ChannelKind::TX ? scope.ClearTXChnls() : scope.ClearRXChnls();
        EXPECT_EQ(kind == ChannelKind::TX ? scope.NumTX() : scope.NumRX(), 2);
        EXPECT_TRUE(scope.DrawDisplay());
        EXPECT_EQ(scope.nFindMatchRX(channels::FreqSlotRef(own.get())), -88);
    }
}

TEST_F(HostCodeTest, AForeignRecordIsNotToldInTheMiddleOfPainting) {
    const util::Ref<ToldSlot> outside(new ToldSlot);
    fill(*outside, 900.0);
    add(ChannelKind::TX, channels::FreqSlotRef(outside.get()));
    addOwns(100);
    const SlotRef inside = addForeign(ChannelKind::TX, 450.0);
    scope.DrawByRange(440.0, 460.0);
    int told = 0;
    outside->onTold = [&] {
        ++told;
        scope.ClearAllChnls();
    };
    bool once = false;
    inside->onRead = [&](std::string_view) {
        if (!std::exchange(once, true))
            scope.DrawByRange(440.0, 1000.0);
    };
    scope.JustDrawIt();
    EXPECT_EQ(told, 1) << "the range has it now";
    EXPECT_EQ(scope.NumTX(), 0);
    errors.reports.clear();
}

TEST_F(HostCodeTest, AForeignRecordMayRemoveItselfAndChangeTheRange) {
    addOwns(100);
    const SlotRef foreign = addForeign(ChannelKind::TX, 450.0);
    scope.DrawByRange(440.0, 460.0);
    bool once = false;
    foreign->onRead = [&](std::string_view) {
        if (std::exchange(once, true))
            return;
        scope.RemoveChnlByKey(std::as_const(*foreign).fields().sKey);
        addOwn(ChannelKind::TX, 445.0);
        scope.DrawByRange(400.0, 460.0);
    };
    scope.DrawDisplay();
    EXPECT_TRUE(once);
    expectPictureOfOneByOne();
}

TEST_F(HostCodeTest, ADrawingInsideADrawingMayEndEarly) {
    addOwns(100);
    const SlotRef first = addForeign(ChannelKind::TX, 445.0);
    const SlotRef second = addForeign(ChannelKind::TX, 455.0);
    scope.DrawByRange(440.0, 460.0);
    bool inner = false;
    first->onRead = [&](std::string_view) {
        if (inner)
            throw util::RuntimeError(440);
    };
    bool once = false;
    second->onRead = [&](std::string_view) {
        if (std::exchange(once, true))
            return;
        inner = true;
        scope.JustDrawIt();
        inner = false;
    };
    scope.DrawDisplay();
    first->onRead = second->onRead = nullptr;
    EXPECT_TRUE(once);
    expectPictureOfOneByOne();
}

TEST_F(HostCodeTest, ExtremesCountWhatTheHostAddsAndMovesMeanwhile) {
    std::vector<std::wstring> keys;
    for (int i = 0; i < 600; ++i)
        keys.push_back(std::as_const(*addOwn(ChannelKind::TX, 100.0)).fields().sKey);
    const SlotRef reader = addForeign(ChannelKind::TX, 100.0);
    addForeign(ChannelKind::TX, 901.0);
    bool once = false;
    reader->onRead = [&](std::string_view member) {
        if (member != "dFreqHi" || std::exchange(once, true))
            return;
        for (std::size_t i = 0; i < 590; ++i)
            scope.RemoveChnlByKey(keys[i]);
        addOwn(ChannelKind::TX, 50.0);
    };
    scope.RemoveChnlByKey(keys.back());
    reader->onRead = nullptr;
    EXPECT_TRUE(once);
    EXPECT_NEAR(scope.extremes().dTXFreqMax, 901.1, 1e-9);
    EXPECT_NEAR(scope.extremes().dTXFreqMin, 49.9, 1e-9);
}

}  // namespace
}  // namespace kv::control
