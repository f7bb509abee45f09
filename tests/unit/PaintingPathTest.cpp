// Which way the channels of a kind are drawn: many are painted all at once from the copy of their records, few are
// asked one by one.
#include <functional>
#include <utility>

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

/// A record of our own class that counts how often it is asked for what drawing needs.
class AskedSlot final : public channels::FreqSlotBase {
  public:
    void retain() noexcept override { ++references_; }
    /// Out of line for the same reason as PlainSlot's.
    [[gnu::noinline]] void release() noexcept override {
        if (--references_ == 0)
            delete this;
    }
    [[nodiscard]] const channels::FreqSlotFields* peek() const noexcept override { return &fields(); }
    channels::DrawRecord drawRecord() override { return (++asked, channels::FreqSlotBase::drawRecord()); }

    int asked = 0;

  private:
    int references_ = 0;
};

class PaintingPathTest : public ScopeTest {
  protected:
    void add(channels::ChannelKind kind, int count) {
        for (int i = 0; i < count; ++i) {
            const util::Ref<AskedSlot> slot(new AskedSlot);
            channels::FreqSlotFields& fields = slot->fields();
            fields.dFreq = 400.0 + 0.1 * static_cast<double>(slots.size());
            fields.dFreqLo = fields.dFreq - 0.5;
            fields.dFreqHi = fields.dFreq + 0.5;
            fields.dPwrDBM = 30.0;
            fields.sKey = L"#" + std::to_wstring(slots.size());
            if (kind == channels::ChannelKind::TX)
                scope.AddTXChnl(channels::FreqSlotRef(slot.get()));
            else
                scope.AddRXChnl(channels::FreqSlotRef(slot.get()));
            slots.push_back(slot);
        }
    }
    /// How often the records were asked since the last call, and whether all are marked as drawn.
    int asked() {
        int sum = 0;
        for (const util::Ref<AskedSlot>& slot : slots) {
            sum += std::exchange(slot->asked, 0);
            EXPECT_TRUE(slot->bDrawn());
        }
        return sum;
    }
    /// The picture is that of the drawing one by one.
    void expectPictureOfOneByOne() {
        const std::vector<std::uint32_t> painted = pixelsOf(ui.picSpectrum);
        scope.setMany(1'000'000);
        scope.DrawDisplay();
        EXPECT_EQ(asked(), static_cast<int>(slots.size()));
        EXPECT_EQ(pixelsOf(ui.picSpectrum), painted);
    }

    std::vector<util::Ref<AskedSlot>> slots;
};

TEST_F(PaintingPathTest, ManyChannelsOfEitherKindArePaintedWithoutAskingThem) {
    scope.setMany(20);
    for (const channels::ChannelKind kind : {channels::ChannelKind::TX, channels::ChannelKind::RX}) {
        scope.ClearAllChnls();
        slots.clear();
        add(kind, 20);
        EXPECT_TRUE(scope.DrawDisplay());
        EXPECT_EQ(asked(), 0);
        scope.JustDrawIt();
        EXPECT_EQ(asked(), 0);
        scope.Refresh();
        EXPECT_EQ(asked(), 0);
    }
    scope.DrawDisplay();
    expectPictureOfOneByOne();
}

TEST_F(PaintingPathTest, FewChannelsAreAskedOneByOne) {
    scope.setMany(20);
    add(channels::ChannelKind::TX, 19);
    add(channels::ChannelKind::RX, 19);
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(asked(), 38);
    scope.Refresh();
    EXPECT_EQ(asked(), 38);
}

TEST_F(PaintingPathTest, AThousandChannelsArePaintedAllAtOnceByDefault) {
    add(channels::ChannelKind::TX, 1000);
    add(channels::ChannelKind::RX, 3);
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(asked(), 3);
}

TEST_F(PaintingPathTest, TheButtonPaintsManyToo) {
    scope.setMany(20);
    add(channels::ChannelKind::TX, 30);
    scope.DrawDisplay();
    asked();
    ui.cmdDrawTX.onClick();
    EXPECT_EQ(asked(), 0);
}

TEST_F(PaintingPathTest, ThePictureFollowsSizePowersAndRangeOneByOne) {
    scope.setDisplayMaxPwr(60.0);
    scope.setDisplayMinPwr(0.0);
    add(channels::ChannelKind::TX, 40);
    for (std::size_t i = 0; i < slots.size(); ++i)
        slots[i]->fields().dPwrDBM = 1.5 * static_cast<double>(i);
    const std::function<void()> changes[] = {
        [] {},
        [&] { ui.picSpectrum.setHeight(ui.picSpectrum.height() - 600.0); },
        [&] { ui.picSpectrum.setWidth(ui.picSpectrum.width() - 900.0); },
        [&] { scope.setDisplayMinPwr(10.0); },
        [&] { scope.setDisplayMaxPwr(80.0); },
        [&] { scope.setDisplayMaxPwr(20.0); },
        [&] { scope.setDisplayMinPwr(-15.0); },
        [&] { scope.setFreqEndBuffer(1.0); },
        [&] { scope.DrawByRange(399.0, 405.0); },
    };
    for (std::size_t i = 0; i < std::size(changes); ++i) {
        SCOPED_TRACE(i);
        changes[i]();
        scope.setMany(20);
        scope.DrawDisplay();
        const std::vector<std::uint32_t> painted = pixelsOf(ui.picSpectrum);
        scope.setMany(1'000'000);
        scope.DrawDisplay();
        EXPECT_EQ(pixelsOf(ui.picSpectrum), painted);
    }
}

TEST_F(PaintingPathTest, AFloorAboveHalfOfTheTopIsPaintedAllAtOnce) {
    scope.setMany(20);
    add(channels::ChannelKind::TX, 40);
    // Some of the channels are below the floor, where their mark of 20 dBm is as well.
    for (std::size_t i = 0; i < slots.size(); ++i)
        slots[i]->fields().dPwrDBM = static_cast<double>(i);
    scope.setDisplayMaxPwr(40.0);
    scope.setDisplayMinPwr(25.0);
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(asked(), 0);
    expectPictureOfOneByOne();
}

TEST_F(PaintingPathTest, OnlyTheChannelWhoseFillStyleThereIsNotIsDrawnByItself) {
    scope.setMany(20);
    add(channels::ChannelKind::TX, 600);
    slots[500]->fields().iFillStyle = 8;
    for (std::size_t i = 0; i < slots.size(); ++i)
        slots[i]->fields().bDrawn = false;
    scope.DrawDisplay();
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.number, 380);
    EXPECT_THAT(report.detail, ::testing::HasSubstr(L" kChnl 501 of 600"));
    for (std::size_t i = 0; i < slots.size(); ++i) {
        EXPECT_EQ(slots[i]->asked, i == 500 ? 1 : 0) << i;
        EXPECT_EQ(slots[i]->bDrawn(), i < 500) << i;
    }
    const std::vector<std::uint32_t> painted = pixelsOf(ui.picSpectrum);
    scope.setMany(1'000'000);
    scope.DrawDisplay();
    EXPECT_EQ(takeReport().detail, report.detail);
    EXPECT_EQ(pixelsOf(ui.picSpectrum), painted);
}

TEST_F(PaintingPathTest, RefreshingTakesHiddenChannelsOffWithoutAskingThem) {
    scope.setMany(20);
    add(channels::ChannelKind::TX, 600);
    // The last one is in the list twice.
    scope.AddTXChnl(channels::FreqSlotRef(slots.back().get()));
    ASSERT_EQ(scope.NumTX(), 601);
    scope.DrawDisplay();
    asked();
    const auto hideAndRefresh = [&] {
        for (std::size_t i = 0; i < slots.size(); ++i) {
            slots[i]->fields().bVisible = i % 3 == 0 && i + 1 != slots.size();
            slots[i]->fields().bDrawn = true;
        }
        scope.ClearDisplay();
        scope.Refresh();
        for (std::size_t i = 0; i < slots.size(); ++i)
            EXPECT_EQ(slots[i]->bDrawn(), slots[i]->bVisible()) << i;
        return pixelsOf(ui.picSpectrum);
    };
    const std::vector<std::uint32_t> painted = hideAndRefresh();
    for (const util::Ref<AskedSlot>& slot : slots)
        EXPECT_EQ(std::exchange(slot->asked, 0), 0);
    scope.setMany(1'000'000);
    EXPECT_EQ(hideAndRefresh(), painted);
    EXPECT_GT(slots.back()->asked, 0);
}

TEST_F(PaintingPathTest, UntilThePowersAreKnownChannelsAreDrawnOneByOne) {
    // The scale of this drawing is that of an empty store; the channels give another one.
    scope.DrawByRange(390.0, 410.0);
    scope.setMany(20);
    add(channels::ChannelKind::TX, 20);
    ui.cmdDrawTX.onClick();
    EXPECT_EQ(asked(), 20);
    ui.cmdDrawTX.onClick();
    EXPECT_EQ(asked(), 0);
}

TEST_F(PaintingPathTest, ThePictureIsExactFarInsideTheBandsOfAllChannels) {
    scope.setMany(20);
    scope.setDisplayMaxPwr(60.0);
    scope.setDisplayMinPwr(0.0);
    add(channels::ChannelKind::TX, 600);
    // The picture is a hundred thousandth of what the channels span, in its middle.
    for (std::size_t i = 0; i < slots.size(); ++i) {
        channels::FreqSlotFields& fields = slots[i]->fields();
        fields.dFreq = i == 0 ? 3000.0 : i == 1 ? 9000.0 : 6000.0 + 0.0002 * static_cast<double>(i * 7919 % 300);
        fields.dFreqLo = fields.dFreq - 0.00005;
        fields.dFreqHi = fields.dFreq + 0.00005;
        fields.dPwrDBM = 1.0 + static_cast<double>(i * 37 % 59);
        fields.lColor = static_cast<std::uint32_t>(i);
    }
    scope.setFreqEndBuffer(0.0);
    scope.DrawByRange(6000.0, 6000.06);
    scope.DrawDisplay();
    const std::vector<std::uint32_t> painted = pixelsOf(ui.picSpectrum);
    scope.setMany(1'000'000);
    scope.DrawDisplay();
    EXPECT_EQ(pixelsOf(ui.picSpectrum), painted);
}

TEST_F(PaintingPathTest, OnceTheForeignRecordsAreGoneRecordsAreNotAskedAnyMore) {
    class CountedSlot final : public channels::FreqSlotBase {
      public:
        void retain() noexcept override { ++references_; }
        /// Out of line for the same reason as PlainSlot's.
        [[gnu::noinline]] void release() noexcept override {
            if (--references_ == 0)
                delete this;
        }
        [[nodiscard]] const channels::FreqSlotFields* peek() const noexcept override { return &fields(); }
        double dFreqAlt() override { return (++asked, channels::FreqSlotBase::dFreqAlt()); }
        int asked = 0;

      private:
        int references_ = 0;
    };
    addRX(450.0);
    scope.ClearAllChnls();
    const util::Ref<CountedSlot> slot(new CountedSlot);
    scope.AddRXChnl(channels::FreqSlotRef(slot.get()));
    EXPECT_EQ(scope.nFindMatchRX(channels::FreqSlotRef(slot.get())), 0);
    EXPECT_EQ(slot->asked, 0);
}

TEST(PaintingPath, HiddenChannelsAreNotPainted) {
    /// Counts how often a color is looked up, which is done for each box and each line that is painted.
    class ColorCounter final : public headless::HeadlessPlatform {
      public:
        raster::Rgb systemColor(int index) const noexcept override {
            return (++asked, HeadlessPlatform::systemColor(index));
        }
        mutable int asked = 0;
    } platform;
    RecordingEvents events;
    RecordingErrors errors;
    MemoryFiles files;
    Bandscope scope(
        Services{platform, events, errors, files, [] { return util::Ref<channels::FreqSlotBase>(new PlainSlot); }});
    scope.setMany(20);
    const auto add = [&](double frequency, double halfBand, double power, raster::OleColor color) {
        const util::Ref<AskedSlot> slot(new AskedSlot);
        channels::FreqSlotFields& fields = slot->fields();
        fields.dFreq = frequency;
        fields.dFreqLo = frequency - halfBand;
        fields.dFreqHi = frequency + halfBand;
        fields.dPwrDBM = power;
        fields.lColor = fields.lColorLine = color;
        fields.sKey = L"#" + std::to_wstring(scope.NumTX());
        scope.AddTXChnl(channels::FreqSlotRef(slot.get()));
        slot->setIFillStyle(static_cast<std::int16_t>(raster::FillStyle::Solid));
        return slot;
    };
    const int count = static_cast<int>(channels::ChannelSnapshot::kBlock);
    for (int i = 0; i < count; ++i)
        add(440.0 + 0.05 * i, 0.01, 10.0, raster::system_color::kButtonFace);
    const util::Ref<AskedSlot> cover = add(450.0, 20.0, 30.0, 0x00FF00);
    EXPECT_TRUE(scope.DrawDisplay());
    const auto askedBy = [&platform](const std::function<void()>& draw) {
        platform.asked = 0;
        draw();
        return platform.asked;
    };
    const std::function<void()>& draw = scope.children().cmdDrawTX.onClick;
    EXPECT_EQ(askedBy(draw), 0);
    // An edge that is far away concerns its own block only.
    const util::Ref<AskedSlot> far = add(450.0, 1.0, 20.0, 0x0000FF);
    far->fields().dFreqLo = -1e9;
    EXPECT_EQ(askedBy(draw), 0);
    far->fields().bVisible = false;
    cover->fields().bVisible = false;
    EXPECT_GT(askedBy(draw), 0);
}

}  // namespace
}  // namespace kv::control
