#include "tests/fuzz/lives/Twin.h"

#include <cmath>
#include <limits>
#include <utility>

#include "headless/Pixels.h"

namespace kv::fuzz {

using channels::ChannelKind;

namespace {

constexpr int kDeepest = 3;

std::vector<std::uint32_t> pixelsOf(formenv::PictureBox& box) {
    return headless::pixelsOf(box.surface().pixels());
}

/// Equal as bits or both no numbers.
void expectSame(double a, double b, const char* what) {
    EXPECT_TRUE(a == b || (std::isnan(a) && std::isnan(b))) << what << ": " << a << " and " << b;
}

}  // namespace

control::Services Life::services(headless::HeadlessPlatform& on) {
    return {on, *this, errors, files, [] { return util::Ref<channels::FreqSlotBase>(new control::QuietSlot); }};
}

Life::Life(std::int32_t many) : scope(services(platform)), many_(many) {
    scope.setMany(many);
    platform.onPump = [this] { runNext(atPump); };
}

void Life::runNext(std::vector<Action>& waiting) {
    if (waiting.empty() || depth_ >= kDeepest)
        return;
    const Action next = std::move(waiting.back());
    waiting.pop_back();
    ++depth_;
    try {
        next(*this);
    } catch (...) {
        --depth_;
        throw;
    }
    --depth_;
}

void Life::event() {
    runNext(atEvent);
}

control::Bandscope& Life::other() {
    if (!other_) {
        other_ = std::make_unique<control::Bandscope>(services(otherPlatform_));
        other_->setMany(many_);
    }
    return *other_;
}

void Life::add(ChannelKind kind, const channels::FreqSlotFields& fields, bool foreign) {
    const util::Ref<control::CountedSlot> slot(foreign ? static_cast<control::CountedSlot*>(new ForeignSlot)
                                                       : new control::QuietSlot);
    slot->fields() = fields;
    records.push_back(slot);
    if (kind == ChannelKind::TX)
        scope.AddTXChnl(channels::FreqSlotRef(slot.get()));
    else
        scope.AddRXChnl(channels::FreqSlotRef(slot.get()));
}

control::CountedSlot* Life::record(std::size_t number) const {
    return records.empty() ? nullptr : records[number % records.size()].get();
}

void Life::act(const Action& action) {
    try {
        action(*this);
    } catch (const util::RuntimeError& error) {
        errors.numbers.push_back(error.number());
    }
}

Twin::Twin() : fast_(1), slow_(std::numeric_limits<std::int32_t>::max()) {}

void Twin::act(const Action& action) {
    fast_.act(action);
    slow_.act(action);
}

void Twin::expectChannels(Life& life) {
    for (const ChannelKind kind : {ChannelKind::TX, ChannelKind::RX}) {
        const bool tx = kind == ChannelKind::TX;
        const std::vector<std::wstring>& expected = keys[kind];
        ASSERT_EQ(tx ? life.scope.NumTX() : life.scope.NumRX(), static_cast<std::int32_t>(expected.size()));
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const auto index = static_cast<std::int32_t>(i);
            const channels::FreqSlotRef channel = tx ? life.scope.GetTXChnl(index) : life.scope.GetRXChnl(index);
            ASSERT_TRUE(channel);
            ASSERT_EQ(channel->sKey(), expected[i]);
            ASSERT_EQ(life.scope.GetChnlByKey(expected[i]).get(), channel.get());
        }
    }
}

void Twin::expectOthersAgree() {
    ASSERT_EQ(fast_.hasOther(), slow_.hasOther());
    if (!fast_.hasOther())
        return;
    control::Bandscope& fast = fast_.other();
    control::Bandscope& slow = slow_.other();
    EXPECT_EQ(fast.NumTX(), slow.NumTX());
    EXPECT_EQ(fast.NumRX(), slow.NumRX());
    expectSame(fast.extremes().dFreqMin, slow.extremes().dFreqMin, "lowest edge of the other control");
    expectSame(fast.extremes().dFreqMax, slow.extremes().dFreqMax, "highest edge of the other control");
    ASSERT_EQ(pixelsOf(fast.children().picSpectrum), pixelsOf(slow.children().picSpectrum)) << "the other spectrum";
}

void Twin::expectAgreement() {
    expectChannels(fast_);
    expectChannels(slow_);
    EXPECT_EQ(fast_.errors.numbers, slow_.errors.numbers);
    for (const int number : fast_.errors.numbers)
        EXPECT_NE(number, util::error_number::kInternal);
    fast_.errors.numbers.clear();
    slow_.errors.numbers.clear();
    expectSame(fast_.scope.displaySpan().first, slow_.scope.displaySpan().first, "lowest frequency");
    expectSame(fast_.scope.displaySpan().second, slow_.scope.displaySpan().second, "highest frequency");
    expectSame(fast_.scope.CursorVal(), slow_.scope.CursorVal(), "cursor");
    expectSame(fast_.scope.extremes().dFreqMin, slow_.scope.extremes().dFreqMin, "lowest edge");
    expectSame(fast_.scope.extremes().dFreqMax, slow_.scope.extremes().dFreqMax, "highest edge");
    for (std::size_t i = 0; i < fast_.records.size(); ++i)
        ASSERT_EQ(fast_.records[i]->bDrawn(), slow_.records[i]->bDrawn()) << "record " << i;
    EXPECT_EQ(fast_.ui().lblTXRange.caption(), slow_.ui().lblTXRange.caption());
    EXPECT_EQ(fast_.ui().lblRXRange.caption(), slow_.ui().lblRXRange.caption());
    ASSERT_EQ(pixelsOf(fast_.ui().picSpectrum), pixelsOf(slow_.ui().picSpectrum)) << "spectrum";
    ASSERT_EQ(pixelsOf(fast_.ui().picUnits), pixelsOf(slow_.ui().picUnits)) << "labels";
    expectOthersAgree();
}

}  // namespace kv::fuzz
