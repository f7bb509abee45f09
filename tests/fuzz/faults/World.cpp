#include "tests/fuzz/faults/World.h"

#include <limits>

#include "headless/Pixels.h"

namespace kv::fuzz {

using channels::ChannelKind;

std::vector<std::uint32_t> pixelsOf(formenv::PictureBox& box) {
    return headless::pixelsOf(box.surface().pixels());
}

World::World(const std::function<void()>& start) {
    const std::function<util::Ref<channels::FreqSlotBase>()> factory = [] {
        return util::Ref<channels::FreqSlotBase>(new control::QuietSlot);
    };
    const control::Services services{platform, events, errors, files, factory};
    start();
    made.emplace(services);
}

bool World::add(ChannelKind kind, double frequency) {
    util::Ref<channels::FreqSlotBase> slot;
    std::int32_t before = 0;
    {
        const Spared spared;
        slot = util::Ref<channels::FreqSlotBase>(new control::QuietSlot);
        channels::FreqSlotFields& fields = slot->fields();
        fields.dFreq = frequency;
        fields.dBW = 500.0;
        fields.dPwrDBM = 30.0;
        fields.sLabel = L"a channel with a label that needs memory";
        fields.sKey = (kind == ChannelKind::TX ? L"TX a key that needs memory " : L"RX a key that needs memory ") +
                      std::to_wstring(++added_);
        before = scope().NumTX() + scope().NumRX();
    }
    if (kind == ChannelKind::TX)
        scope().AddTXChnl(channels::FreqSlotRef(slot.get()));
    else
        scope().AddRXChnl(channels::FreqSlotRef(slot.get()));
    return scope().NumTX() + scope().NumRX() > before;
}

void World::fill() {
    scope().setMany(20);
    for (int i = 0; i < 30; ++i)
        add(ChannelKind::TX, 430.0 + i);
    for (int i = 0; i < 10; ++i)
        add(ChannelKind::RX, 440.0 + i);
    scope().setFreqEndBuffer(5.0);
    scope().resize(7500.0, 4500.0);
    scope().DrawInitialDisplay();
}

void World::expectChannelsAgree() {
    for (const ChannelKind kind : {ChannelKind::TX, ChannelKind::RX}) {
        const bool tx = kind == ChannelKind::TX;
        const std::int32_t count = tx ? scope().NumTX() : scope().NumRX();
        for (std::int32_t i = 0; i < count; ++i) {
            const channels::FreqSlotRef channel = tx ? scope().GetTXChnl(i) : scope().GetRXChnl(i);
            ASSERT_TRUE(channel);
            EXPECT_EQ(scope().GetChnlByKey(channel->sKey()).get(), channel.get());
            EXPECT_GE(channel->dFreqLo(), scope().extremes().dFreqMin);
            EXPECT_LE(channel->dFreqHi(), scope().extremes().dFreqMax);
        }
        if (count > 0) {
            const std::wstring& caption = (tx ? ui().lblNumTX : ui().lblNumRX).caption();
            EXPECT_EQ(caption, std::to_wstring(count) + (tx ? L" tx Channels" : L" RX Channels"));
        }
    }
}

void World::expectPicturesAgree() {
    const std::vector<std::uint32_t> painted = pixelsOf(ui().picSpectrum);
    scope().setMany(std::numeric_limits<std::int32_t>::max());
    scope().JustDrawIt();
    EXPECT_EQ(pixelsOf(ui().picSpectrum), painted) << "channel by channel the picture is another one";
    scope().setMany(20);
}

void World::expectWorks() {
    EXPECT_EQ(errors.others, 0) << "only memory was short";
    expectChannelsAgree();
    EXPECT_FALSE(scope().bSizing());
    errors.memory = errors.files = 0;
    for (const double height : {5100.0, 4800.0}) {
        scope().resize(7800.0, height);
        // 60 twips above and below the panel.
        EXPECT_EQ(ui().fraPic.height() + ui().fraControl.height() + 120.0, height);
        const raster::PixelBuffer kept = ui().picSpectrum.surface().pixels();
        EXPECT_EQ((raster::PixelSize{kept.width, kept.height}), ui().picSpectrum.pixelSize());
    }
    add(ChannelKind::TX, 450.25);
    scope().DrawInitialDisplay();
    EXPECT_LT(scope().DisplayMinFreq(), scope().DisplayMaxFreq());
    scope().JustDrawIt();
    expectPicturesAgree();
    scope().ClearAllChnls();
    EXPECT_TRUE(add(ChannelKind::TX, 460.0));
    expectChannelsAgree();
    double height = 0.0;
    double width = 0.0;
    std::wstring name;
    EXPECT_NE(scope().DisplayToBMP(height, width, name), L"");
    EXPECT_GT(height, 0.0);
    EXPECT_EQ(errors.memory, 0);
    EXPECT_EQ(errors.files, 0);
    EXPECT_EQ(errors.others, 0);
}

}  // namespace kv::fuzz
