// What a single part of the display needs: two picture boxes, a store and a range, without the control around them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "channels/ChannelStore.h"
#include "control/DisplayRange.h"
#include "control/Marks.h"
#include "formenv/PictureBox.h"
#include "headless/HeadlessPlatform.h"
#include "headless/Pixels.h"
#include "tests/unit/QuietSlot.h"

namespace kv::control {

/// A picture of 200 by 100 pixels, inside a strip, whose scale follows the range.
class PartsTest : public ::testing::Test, private RangeView {
  protected:
    PartsTest() {
        strip.move({0.0, 0.0, 220.0 * 15.0, 140.0 * 15.0});
        picture.move({150.0, 60.0, 200.0 * 15.0, 100.0 * 15.0});
        picture.setUserScaleMode();
    }

    util::Ref<QuietSlot> add(channels::ChannelKind kind, double frequency, double power = 50.0) {
        util::Ref<QuietSlot> slot(new QuietSlot);
        channels::FreqSlotFields& fields = slot->fields();
        fields.dFreq = frequency;
        fields.dBW = 2000.0;  // kHz to each side
        fields.dPwrDBM = power;
        fields.sLabel = L"channel";
        fields.sKey = (kind == channels::ChannelKind::TX ? L"TX" : L"RX") + std::to_wstring(++added_);
        fields.lColor = 0x0000FF;
        fields.lColorLine = 0x00FF00;
        std::int32_t index = 0;
        store.add(kind, channels::FreqSlotRef(slot.get()), index);
        return slot;
    }
    /// 400 to 500 MHz and 0 to 100 dBm: two pixels to a megahertz, one to a decibel.
    void showRange() {
        range.setExactly(400.0, 500.0);
        range.setDisplayMaxPwr(100.0);
        range.setDisplayMinPwr(0.0);
    }
    std::vector<std::uint32_t> pixels() { return headless::pixelsOf(picture.surface().pixels()); }
    std::uint32_t pixelAt(int x, int y) { return picture.surface().pixels().row(y)[x] & 0xFFFFFFU; }

    headless::HeadlessPlatform platform;
    formenv::PictureBox strip{platform, nullptr, L"strip"};
    formenv::PictureBox picture{platform, &strip, L"picture"};
    channels::ChannelStore store;
    DisplayRange range{store, *this};
    Marks marks{picture};

  private:
    void setScaleLeft(double frequency) override { picture.setScaleLeft(frequency); }
    void setScaleWidth(double span) override { picture.setScaleWidth(span); }
    void setScaleTop(double power) override { picture.setScaleTop(power); }
    void setScaleHeight(double height) override { picture.setScaleHeight(height); }
    void centerChanged() override {}
    int added_ = 0;
};

}  // namespace kv::control
