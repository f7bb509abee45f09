// Two controls are led through the same random life: the records of the one are of the control's own class and are
// painted all at once, those of the other are drawn one after the other. Nobody may see a difference.
#include <bit>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <utility>

#include "tests/unit/Numbers.h"
#include "tests/unit/QuietSlot.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

/// One of the two, with everything around it.
struct Twin {
    headless::HeadlessPlatform platform;
    RecordingEvents events;
    RecordingErrors errors;
    MemoryFiles files;
    Bandscope scope{
        Services{platform, events, errors, files, [] { return util::Ref<channels::FreqSlotBase>(new PlainSlot); }}};
    std::vector<util::Ref<channels::FreqSlotBase>> tx;
    std::vector<util::Ref<channels::FreqSlotBase>> rx;

    std::vector<util::Ref<channels::FreqSlotBase>>& list(channels::ChannelKind kind) {
        return kind == channels::ChannelKind::TX ? tx : rx;
    }
    void add(channels::ChannelKind kind, const util::Ref<channels::FreqSlotBase>& slot) {
        list(kind).push_back(slot);
        if (kind == channels::ChannelKind::TX)
            scope.AddTXChnl(channels::FreqSlotRef(slot.get()));
        else
            scope.AddRXChnl(channels::FreqSlotRef(slot.get()));
    }
};

class VisiblePaintingTest : public ::testing::Test {
  protected:
    double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }
    bool oneIn(unsigned n) { return random_() % n == 0; }
    std::size_t upTo(std::size_t n) { return random_() % n; }
    channels::ChannelKind anyKind() { return oneIn(3) ? channels::ChannelKind::RX : channels::ChannelKind::TX; }

    double anyOddNumber() {
        const double odd[] = {kNaN,
                              kInfinity,
                              -kInfinity,
                              0.0,
                              -0.0,
                              -5.0,
                              1e300,
                              -1e300,
                              1e-300,
                              1e9,
                              1e308,
                              -1e308,
                              std::numeric_limits<double>::max(),
                              std::numeric_limits<double>::lowest(),
                              std::numeric_limits<double>::denorm_min()};
        return odd[upTo(std::size(odd))];
    }

    channels::FreqSlotFields anyRecord() {
        channels::FreqSlotFields f;
        f.dFreq = oneIn(40) ? 0.0 : center_ + between(-0.8, 0.8) * span_;
        const double widest = oneIn(wide_) ? 1.0 : widest_;
        const double below = between(0.0, widest) * span_;
        f.dFreqLo = f.dFreq - below;
        f.dFreqHi = f.dFreq + (oneIn(3) ? between(0.0, widest) * span_ : below);
        // Edges and tops on the pixel borders, where rounding decides.
        if (oneIn(20))
            f.dFreqLo = center_ - span_ / 2.0;
        if (oneIn(20))
            f.dFreqHi = center_ + span_ / 2.0;
        f.dPwrDBM = oneIn(4) ? std::floor(between(-30.0, 70.0)) : between(-30.0, 70.0);
        if (oneIn(odd_)) {
            double* const members[] = {&f.dFreq, &f.dFreqLo, &f.dFreqHi, &f.dPwrDBM};
            *members[upTo(4)] = oneIn(2) ? center_ + between(-2.0, 2.0) * span_ : anyOddNumber();
        }
        f.lColor = oneIn(30) ? 0x8000000FU : static_cast<std::uint32_t>(random_()) & 0xFFFFFFU;
        f.lColorLine = static_cast<std::uint32_t>(random_()) & 0xFFFFFFU;
        f.iFillStyle = static_cast<std::int16_t>(oneIn(2) ? upTo(8) : usual_);
        f.bVisible = !oneIn(hidden_);
        f.bDrawn = oneIn(3);
        return f;
    }

    void fill() {
        for (Twin* const twin : {&quiet_, &plain_}) {
            twin->scope.ClearAllChnls();
            twin->tx.clear();
            twin->rx.clear();
        }
        center_ = oneIn(4) ? between(1.0, 60.0) : between(100.0, 6000.0);
        span_ = oneIn(3) ? between(0.01, 1.0) : between(1.0, 150.0);
        widest_ = std::pow(10.0, between(-3.0, -0.7));
        wide_ = oneIn(2) ? 1'000'000 : 4;
        odd_ = oneIn(2) ? 1000 : 10;
        hidden_ = oneIn(3) ? 1000 : oneIn(2) ? 40 : 4;
        usual_ = upTo(8);
        // One kind is always drawn one by one, both kinds share the picture.
        const std::size_t count = (oneIn(20) ? 290 : 62) + upTo(30);
        for (std::size_t i = 0; i < count; ++i)
            addOne(oneIn(12) ? channels::ChannelKind::RX : channels::ChannelKind::TX);
    }

    void addOne(channels::ChannelKind kind) { both(adding(kind)); }

    std::function<void(Twin&)> adding(channels::ChannelKind kind) {
        channels::FreqSlotFields fields = anyRecord();
        fields.sKey = (kind == channels::ChannelKind::TX ? L"TX#" : L"RX#") + std::to_wstring(++lastKey_);
        return [this, kind, fields](Twin& twin) {
            const util::Ref<channels::FreqSlotBase> slot(&twin == &quiet_
                                                             ? static_cast<channels::FreqSlotBase*>(new QuietSlot)
                                                             : static_cast<channels::FreqSlotBase*>(new PlainSlot));
            slot->fields() = fields;
            twin.add(kind, slot);
            slot->fields().iFillStyle = fields.iFillStyle;
        };
    }

    template <class Step>
    void both(Step&& step) {
        step(quiet_);
        step(plain_);
    }

    /// Something that a host may do at any time, ready to be done to both.
    std::function<void(Twin&)> anyChange() {
        const channels::ChannelKind kind = anyKind();
        const std::size_t count = quiet_.list(kind).size();
        if (count == 0)
            return adding(kind);
        const std::size_t at = upTo(count);
        const auto slot = [kind, at](Twin& twin) -> channels::FreqSlotBase& { return *twin.list(kind)[at]; };
        switch (upTo(10)) {
            case 9:
                // The channel is in the list a second time, without a key of its own.
                if (!oneIn(10))
                    return adding(kind);
                return [kind, slot](Twin& twin) { twin.add(kind, util::Ref<channels::FreqSlotBase>(&slot(twin))); };
            case 0: {
                if (oneIn(2))
                    return adding(kind);
                const std::wstring key = std::as_const(slot(quiet_)).fields().sKey;
                return [kind, at, key](Twin& twin) {
                    twin.scope.RemoveChnlByKey(key);
                    twin.list(kind).erase(twin.list(kind).begin() + static_cast<std::ptrdiff_t>(at));
                };
            }
            case 1:
                return adding(kind);
            case 2:
                return [slot, frequency = anyRecord().dFreqLo](Twin& twin) { slot(twin).setDFreqLo(frequency); };
            case 3:
                return [slot](Twin& twin) { slot(twin).setBDrawn(false); };
            case 4:
                return [slot](Twin& twin) { slot(twin).fields().bVisible = false; };
            case 5:
                return [slot](Twin& twin) { twin.scope.ReDrawChnl(channels::FreqSlotRef(&slot(twin))); };
            case 6:
                return [slot, style = static_cast<std::int16_t>(oneIn(8) ? 8 : 7)](Twin& twin) {
                    slot(twin).setIFillStyle(style);
                };
            default:
                return [slot, fields = anyRecord()](Twin& twin) {
                    const std::wstring key = std::as_const(slot(twin)).fields().sKey;
                    slot(twin).fields() = fields;
                    slot(twin).fields().sKey = key;
                };
        }
    }

    /// The next drawing lets a change through while it lets events run.
    void changeInEvent() {
        const auto step = anyChange();
        const std::size_t event = upTo(5);
        both([&](Twin& twin) {
            twin.platform.onPump = [&twin, step, left = event]() mutable {
                if (left-- != 0)
                    return;
                // The step may draw, and its events are not to do the same again; nor is this to end under way.
                const auto running = std::exchange(twin.platform.onPump, nullptr);
                step(twin);
            };
        });
    }

    void look() {
        const double top = oneIn(3) ? between(-15.0, 80.0) : 60.0;
        const double zoom = oneIn(2) ? 1.0 : std::pow(10.0, between(-7.0, 1.0));
        const double shift = between(-0.6, 0.6) * span_;
        // Above half of the top, the marks of channels without power are below the floor.
        const double floor = oneIn(4) ? top - between(0.1, 0.6) * std::abs(top) : -20.0;
        const double half = span_ / 2.0 * zoom;
        both([&](Twin& twin) {
            twin.scope.setDisplayMaxPwr(top);
            twin.scope.setDisplayMinPwr(floor);
            twin.scope.setFreqEndBuffer(span_);
            twin.scope.DrawByRange(std::max(center_ + shift - half, 0.001), center_ + shift + half);
        });
    }

    void draw() {
        // Moves the picture's top alone: until the scale follows, the boxes stand above the picture's bottom or below.
        if (oneIn(6))
            both([top = between(20.0, 90.0)](Twin& twin) { twin.scope.setDisplayMaxPwr(top); });
        switch (upTo(4)) {
            case 0:
                both([](Twin& twin) { twin.scope.DrawDisplay(); });
                break;
            case 1:
                both([](Twin& twin) { twin.scope.Refresh(); });
                break;
            case 2:
                // Nothing is drawn after the channels: the current position is still theirs.
                both([](Twin& twin) {
                    twin.scope.ClearDisplay();
                    twin.scope.children().cmdDrawTX.onClick();
                });
                break;
            default:
                both([](Twin& twin) { twin.scope.DrawNewCenterFreq(); });
        }
    }

    void compare() {
        formenv::PictureBox& ours = quiet_.scope.children().picSpectrum;
        formenv::PictureBox& theirs = plain_.scope.children().picSpectrum;
        const raster::PixelBuffer a = ours.surface().pixels();
        const raster::PixelBuffer b = theirs.surface().pixels();
        ASSERT_EQ(a.width, b.width);
        ASSERT_EQ(a.height, b.height);
        for (int y = 0; y < a.height; ++y) {
            const auto [here, there] = std::mismatch(a.row(y), a.row(y) + a.width, b.row(y));
            if (here != a.row(y) + a.width)
                FAIL() << "at " << here - a.row(y) << ',' << y << ": " << std::hex << *here << " for " << *there;
        }
        ASSERT_EQ(std::bit_cast<std::uint64_t>(ours.currentX), std::bit_cast<std::uint64_t>(theirs.currentX));
        ASSERT_EQ(std::bit_cast<std::uint64_t>(ours.currentY), std::bit_cast<std::uint64_t>(theirs.currentY));
        for (const channels::ChannelKind kind : {channels::ChannelKind::TX, channels::ChannelKind::RX}) {
            for (std::size_t i = 0; i < quiet_.list(kind).size(); ++i)
                ASSERT_EQ(quiet_.list(kind)[i]->bDrawn(), plain_.list(kind)[i]->bDrawn()) << i;
        }
        ASSERT_EQ(quiet_.errors.reports.size(), plain_.errors.reports.size());
        for (std::size_t i = 0; i < quiet_.errors.reports.size(); ++i) {
            ASSERT_EQ(quiet_.errors.reports[i].detail, plain_.errors.reports[i].detail);
            ASSERT_EQ(quiet_.errors.reports[i].number, plain_.errors.reports[i].number);
        }
        both([](Twin& twin) { twin.errors.reports.clear(); });
    }

    std::mt19937 random_{20250711};
    Twin quiet_;
    Twin plain_;
    double center_ = 0.0;
    double span_ = 0.0;
    double widest_ = 0.0;
    unsigned wide_ = 1;
    unsigned odd_ = 1;
    unsigned hidden_ = 1;
    std::size_t usual_ = 0;
    int lastKey_ = 0;
};

TEST_F(VisiblePaintingTest, PaintingAllAtOnceMakesThePictureOfDrawingOneByOne) {
    // The strip under the picture has its own tests, and would be cleared in vain here.
    both([](Twin& twin) { twin.scope.children().picUnits.move({0.0, 0.0, 300.0, 300.0}); });
    // Sets on both sides of the number from which painting goes all at once.
    both([](Twin& twin) { twin.scope.setMany(64); });
    int sets = 0;
    for (int round = 0; sets < 10'000; ++round) {
        if (round % 8 == 0) {
            const double width = oneIn(5) ? between(2000.0, 3500.0) : between(15.0, 700.0);
            const double height = between(15.0, 700.0);
            both([&](Twin& twin) { twin.scope.children().picSpectrum.move({0.0, 0.0, width, height}); });
        }
        fill();
        for (std::size_t steps = 15 + upTo(10); steps > 0; --steps, ++sets) {
            for (std::size_t changes = upTo(8); changes > 0; --changes)
                both(anyChange());
            if (oneIn(4))
                look();
            if (oneIn(8))
                changeInEvent();
            draw();
            both([](Twin& twin) { twin.platform.onPump = nullptr; });
            ASSERT_NO_FATAL_FAILURE(compare()) << "set " << sets << ", round " << round;
        }
    }
}

TEST_F(VisiblePaintingTest, EdgesAtTheEndsOfWhatADoubleHoldsHideNoOtherChannel) {
    both([](Twin& twin) { twin.scope.setMany(64); });
    const auto add = [&](double low, double frequency, double high) {
        channels::FreqSlotFields fields;
        fields.dFreq = frequency;
        fields.dFreqLo = low;
        fields.dFreqHi = high;
        fields.dPwrDBM = 20.0;
        fields.lColor = 0xFF0000U - static_cast<std::uint32_t>(lastKey_);
        fields.sKey = L"TX#" + std::to_wstring(++lastKey_);
        both([&](Twin& twin) {
            const util::Ref<channels::FreqSlotBase> slot(&twin == &quiet_
                                                             ? static_cast<channels::FreqSlotBase*>(new QuietSlot)
                                                             : static_cast<channels::FreqSlotBase*>(new PlainSlot));
            slot->fields() = fields;
            twin.add(channels::ChannelKind::TX, slot);
        });
    };
    // Several blocks of regular channels, and in the last one edges whose difference is more than a double holds.
    for (int i = 0; i < 700; ++i)
        add(440.0 + i * 0.02, 440.01 + i * 0.02, 440.015 + i * 0.02);
    add(-1e308, 450.0, 450.1);
    add(451.0, 452.0, 1e308);
    both([](Twin& twin) {
        twin.scope.setFreqEndBuffer(1.0);
        twin.scope.DrawByRange(440.0, 455.0);
    });
    compare();
}

}  // namespace
}  // namespace kv::control
