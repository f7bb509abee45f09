// How a host's records and drawing members show in the picture, read from the bitmap file that the control writes. That
// every pixel is right is proved in SpectrumPictureTest.cpp.
#include <gmock/gmock.h>

#include "tests/automation/Colors.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr short kSolid = 0;

class Drawing : public testing::Test {
  protected:
    /// A display from 400 to 500 MHz and -40 to 40 dBm.
    void SetUp() override {
        scope.setDisplayMinPwr(-40.0);
        scope.setDisplayMaxPwr(40.0);
        scope.setFreqEndBuffer(0.0);
        scope.AddTXChnl(channel({.freq = 400.0, .key = L"TXlow", .visible = false}));
        scope.AddTXChnl(channel({.freq = 500.0, .key = L"TXhigh", .visible = false}));
        ASSERT_TRUE(scope.DrawDisplay());
        ASSERT_EQ(scope.DisplayMinFreq(), 400.0);
        ASSERT_EQ(scope.DisplayMaxFreq(), 500.0);
    }
    /// A filled box, so that its color shows everywhere in it.
    ComPtr<_FreqSlot> addSolid(const ChannelSpec& spec) {
        const auto slot = channel(spec);
        scope.AddTXChnl(slot);
        EXPECT_EQ(slot->put_iFillStyle(kSolid), S_OK);
        return slot;
    }
    /// The place of a box from `low` to `high` MHz and from the floor up to `power`, give or take a pixel.
    void expectBox(const Picture& picture, OLE_COLOR color, double low, double high, double power) {
        const auto found = picture.find(color, plot.spectrum);
        ASSERT_TRUE(found) << std::hex << color;
        EXPECT_NEAR(found->left, plot.column(low), 1);
        EXPECT_NEAR(found->right, std::min(plot.column(high), plot.spectrum.right), 1);
        EXPECT_NEAR(found->top, plot.row(power), 1);
        EXPECT_NEAR(found->bottom, plot.spectrum.bottom, 1);
    }
    bool isThere(const Picture& picture, OLE_COLOR color) { return picture.find(color, plot.spectrum).has_value(); }
    Plot plot;
    Scope& scope = plot.scope;
};

TEST_F(Drawing, ChannelIsABoxFromTheFloorToItsPowerWithItsCenterLine) {
    addSolid({.freq = 452.0, .lo = 442.0, .hi = 458.0, .power = 20.0, .key = L"TX1", .color = kRed, .line = kBlue});
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture picture = plot.picture();
    expectBox(picture, kRed, 442.0, 458.0, 20.0);
    expectBox(picture, kBlue, 452.0, 452.0, 20.0);
    EXPECT_EQ(picture.find(kBlue, plot.spectrum)->width(), 1);
    EXPECT_TRUE(isDrawn(scope.GetTXbyKey(L"TX1").Get()));
}

TEST_F(Drawing, AnInvisibleChannelThatWasNotDrawnIsNotDrawn) {
    const auto slot = addSolid({.freq = 450.0,
                                .lo = 444.0,
                                .hi = 456.0,
                                .power = 30.0,
                                .key = L"TX1",
                                .color = kRed,
                                .line = kRed,
                                .visible = false});
    scope.Refresh();
    EXPECT_TRUE(scope.ReDrawChnl(slot));
    EXPECT_FALSE(isThere(plot.picture(), kRed));
}

TEST_F(Drawing, HostsChangesShowWithTheNextDrawing) {
    const auto slot =
        addSolid({.freq = 450.0, .lo = 440.0, .hi = 460.0, .power = 20.0, .key = L"TX1", .color = kRed, .line = kRed});
    ASSERT_TRUE(scope.DrawDisplay());
    slot->put_dPwrDBM(-10.0);
    slot->put_lColor(kBlue);
    slot->put_lColorLine(kBlue);
    slot->put_dFreqLo(430.0);
    EXPECT_TRUE(isThere(plot.picture(), kRed));
    ASSERT_TRUE(scope.DrawDisplay());
    EXPECT_FALSE(isThere(plot.picture(), kRed));
    expectBox(plot.picture(), kBlue, 430.0, 460.0, -10.0);
}

TEST_F(Drawing, RedrawingOneChannelLeavesTheRestAlone) {
    const auto slot =
        addSolid({.freq = 450.0, .lo = 440.0, .hi = 460.0, .power = 20.0, .key = L"TX1", .color = kRed, .line = kRed});
    scope.ClearDisplay();
    scope.ClearDisplayLabels();
    const Picture empty = plot.picture();
    EXPECT_TRUE(scope.ReDrawChnl(slot));
    const Picture picture = plot.picture();
    EXPECT_FALSE(isThere(picture, Plot::kGrid));
    EXPECT_EQ(picture.count(Plot::kText, plot.strip(picture)), 0);
    const Area box = *picture.find(kRed, picture.all());
    Picture rest = picture;
    for (int y = box.top; y <= box.bottom; ++y)
        for (int x = box.left; x <= box.right; ++x)
            rest.pixels.at(static_cast<std::size_t>(y * picture.width + x)) = empty.at(x, y);
    EXPECT_TRUE(rest == empty);
}

TEST_F(Drawing, ChannelThatIsInNoStoreCanBeRedrawn) {
    const auto slot =
        channel({.freq = 450.0, .lo = 440.0, .hi = 460.0, .power = 20.0, .key = L"any", .color = kRed, .line = kRed});
    EXPECT_TRUE(scope.ReDrawChnl(slot));
    EXPECT_TRUE(isThere(plot.picture(), kRed));
    EXPECT_EQ(scope.NumTX(), 2);
}

}  // namespace
}  // namespace kv::test
