// What stands in the picture, read from the bitmap file that the control writes.
#include <gmock/gmock.h>

#include <cmath>

#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr OLE_COLOR kRed = 0x000000FF;
constexpr OLE_COLOR kBlue = 0x00FF0000;
constexpr OLE_COLOR kOrange = 0x000080FF;
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
    /// A filled box, so that its colour shows everywhere in it.
    ComPtr<_FreqSlot> addSolid(const ChannelSpec& spec, bool tx = true) {
        const auto slot = channel(spec);
        tx ? scope.AddTXChnl(slot) : scope.AddRXChnl(slot);
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

TEST_F(Drawing, ChannelIsABoxFromTheFloorToItsPowerWithItsCentreLine) {
    addSolid({.freq = 452.0, .lo = 442.0, .hi = 458.0, .power = 20.0, .key = L"TX1", .color = kRed, .line = kBlue});
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture picture = plot.picture();
    expectBox(picture, kRed, 442.0, 458.0, 20.0);
    expectBox(picture, kBlue, 452.0, 452.0, 20.0);
    EXPECT_EQ(picture.find(kBlue, plot.spectrum)->width(), 1);
    EXPECT_TRUE(isDrawn(scope.GetTXbyKey(L"TX1").Get()));
}

TEST_F(Drawing, HatchesTellTheKinds) {
    // The slopes meet the same outline, so what is inside decides.
    const auto inside = [&](const wchar_t* key, bool tx) {
        const auto slot =
            channel({.freq = 450.0, .lo = 443.0, .hi = 457.0, .power = 20.0, .key = key, .color = kRed, .line = kRed});
        tx ? scope.AddTXChnl(slot) : scope.AddRXChnl(slot);
        scope.ClearDisplay();
        EXPECT_TRUE(scope.ReDrawChnl(slot));
        return plot.picture();
    };
    const Picture down = inside(L"TX1", true);
    const Picture up = inside(L"RX1", false);
    const Area box{plot.column(443.0) + 3, plot.row(20.0) + 3, plot.column(450.0) - 3, plot.row(-30.0)};
    const auto falls = [&](const Picture& picture, int dx) {
        int pairs = 0;
        for (int y = box.top; y < box.bottom; ++y)
            for (int x = box.left + 1; x < box.right - 1; ++x)
                pairs += picture.at(x, y) == kRed && picture.at(x + dx, y + 1) == kRed ? 1 : 0;
        return pairs;
    };
    EXPECT_GT(falls(down, 1), 50);
    EXPECT_EQ(falls(down, -1), 0);
    EXPECT_GT(falls(up, -1), 50);
    EXPECT_EQ(falls(up, 1), 0);
    EXPECT_GT(down.count(Plot::kBack, box), box.width() * box.height() / 2);
}

TEST_F(Drawing, PowerAtTheFloorIsDrawnUpToHalfOfTheHighestPower) {
    addSolid({.freq = 420.0, .lo = 416.0, .hi = 424.0, .power = -40.0, .key = L"TX1", .color = kRed, .line = kRed});
    addSolid({.freq = 440.0, .lo = 436.0, .hi = 444.0, .power = -90.0, .key = L"TX2", .color = kBlue, .line = kBlue});
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture picture = plot.picture();
    expectBox(picture, kRed, 416.0, 424.0, 20.0);
    expectBox(picture, kBlue, 436.0, 444.0, 20.0);
}

TEST_F(Drawing, ChannelAcrossTheLeftBorderIsClipped) {
    addSolid({.freq = 403.0, .lo = 390.0, .hi = 412.0, .power = 10.0, .key = L"TX1", .color = kRed, .line = kBlue});
    ASSERT_TRUE(scope.DrawDisplay());
    ASSERT_EQ(scope.DisplayMinFreq(), 400.0);
    const Picture picture = plot.picture();
    const auto box = picture.find(kRed, plot.spectrum);
    ASSERT_TRUE(box);
    // The grid's first line lies over the leftmost column of the box.
    EXPECT_NEAR(box->left, plot.spectrum.left, 1);
    EXPECT_NEAR(box->right, plot.column(412.0), 1);
    expectBox(picture, kBlue, 403.0, 403.0, 10.0);
}

TEST_F(Drawing, ClippedBoxHasItsOutlineAtTheBorder) {
    const auto slot =
        addSolid({.freq = 390.0, .lo = 380.0, .hi = 412.0, .power = 10.0, .key = L"TX1", .color = kRed, .line = kRed});
    slot->put_iFillStyle(1);
    scope.ClearDisplay();
    EXPECT_TRUE(scope.ReDrawChnl(slot));
    const Picture picture = plot.picture();
    // A transparent box: what is red at the border is its left side.
    const Area border{plot.spectrum.left, plot.row(10.0) + 1, plot.spectrum.left, plot.spectrum.bottom};
    EXPECT_EQ(picture.count(kRed, border), border.height());
    EXPECT_EQ(picture.count(kRed, {border.left + 2, border.top + 2, border.left + 8, border.bottom - 2}), 0);
}

TEST_F(Drawing, CentreLineOutsideTheDisplayIsLeftOut) {
    addSolid({.freq = 399.0, .lo = 390.0, .hi = 412.0, .power = 10.0, .key = L"TX1", .color = kRed, .line = kBlue});
    addSolid({.freq = 501.0, .lo = 490.0, .hi = 512.0, .power = 10.0, .key = L"RX1", .color = kOrange, .line = kBlue},
             false);
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture picture = plot.picture();
    EXPECT_TRUE(isThere(picture, kRed));
    EXPECT_TRUE(isThere(picture, kOrange));
    EXPECT_FALSE(isThere(picture, kBlue));
}

TEST_F(Drawing, CentreLineAtTheBorderIsDrawnAndAHairBeyondItIsNot) {
    const auto slot =
        addSolid({.freq = 400.0, .lo = 390.0, .hi = 412.0, .power = 10.0, .key = L"TX1", .color = kRed, .line = kBlue});
    for (const double centre : {400.0, 399.99}) {
        slot->put_dFreq(centre);
        scope.ClearDisplay();
        EXPECT_TRUE(scope.ReDrawChnl(slot));
        EXPECT_EQ(isThere(plot.picture(), kBlue), centre == 400.0);
    }
}

TEST_F(Drawing, ChannelOutsideTheDisplayIsNotDrawn) {
    const auto below = addSolid({.freq = 390.0, .lo = 380.0, .hi = 399.0, .key = L"TX1", .color = kRed, .line = kRed});
    const auto above = addSolid({.freq = 510.0, .lo = 501.0, .hi = 520.0, .key = L"TX2", .color = kRed, .line = kRed});
    ASSERT_TRUE(scope.DrawDisplay());
    EXPECT_FALSE(isThere(plot.picture(), kRed));
    EXPECT_FALSE(isDrawn(below.Get()));
    EXPECT_FALSE(isDrawn(above.Get()));
}

TEST_F(Drawing, NotXorTwiceRestoresThePicture) {
    addSolid({.freq = 450.0, .lo = 444.0, .hi = 456.0, .power = 0.0, .key = L"TX1", .color = kRed, .line = kBlue});
    const auto ghost = addSolid({.freq = 453.0,
                                 .lo = 447.0,
                                 .hi = 470.0,
                                 .power = 30.0,
                                 .key = L"TX2",
                                 .color = kOrange,
                                 .line = kBlue,
                                 .visible = false});
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture before = plot.picture();
    for (const short style : {short{0}, short{4}, short{5}, short{6}, short{7}, short{1}}) {
        ghost->put_iFillStyle(style);
        ghost->put_bDrawn(VARIANT_TRUE);
        EXPECT_TRUE(scope.ReDrawChnl(ghost));
        EXPECT_FALSE(plot.picture() == before) << style;
        EXPECT_FALSE(isDrawn(ghost.Get())) << "the show flag is written back";
        ghost->put_bDrawn(VARIANT_TRUE);
        EXPECT_TRUE(scope.ReDrawChnl(ghost));
        EXPECT_TRUE(plot.picture() == before) << style;
    }
}

TEST_F(Drawing, NeitherShownNorDrawnIsLeftOut) {
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

TEST_F(Drawing, InvisibleChannelIsLeftOutByAFullRepaintEvenWhenItCountsAsDrawn) {
    const auto slot = addSolid({.freq = 450.0,
                                .lo = 444.0,
                                .hi = 456.0,
                                .power = 30.0,
                                .key = L"TX1",
                                .color = kRed,
                                .line = kRed,
                                .visible = false});
    slot->put_bDrawn(VARIANT_TRUE);
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture picture = plot.picture();
    EXPECT_FALSE(isThere(picture, kRed));
    // Not-XOR of red on white is red.
    scope.Refresh();
    EXPECT_TRUE(isThere(plot.picture(), kRed));
}

TEST_F(Drawing, PlaceholderIsNotDrawnByAFullRepaint) {
    addSolid({.freq = 0.0, .lo = 440.0, .hi = 460.0, .power = 20.0, .key = L"TX0", .color = kRed, .line = kRed});
    addSolid({.freq = 0.0, .lo = 470.0, .hi = 480.0, .power = 20.0, .key = L"RX0", .color = kBlue, .line = kBlue},
             false);
    ASSERT_TRUE(scope.DrawDisplay());
    EXPECT_FALSE(isThere(plot.picture(), kRed));
    EXPECT_FALSE(isThere(plot.picture(), kBlue));
    scope.JustDrawIt();
    EXPECT_FALSE(isThere(plot.picture(), kRed));
}

TEST_F(Drawing, PlaceholderIsDrawnWhenItIsRedrawnOrRefreshed) {
    const auto slot =
        addSolid({.freq = 0.0, .lo = 440.0, .hi = 460.0, .power = 20.0, .key = L"TX0", .color = kRed, .line = kBlue});
    ASSERT_TRUE(scope.DrawDisplay());
    EXPECT_TRUE(scope.ReDrawChnl(slot));
    expectBox(plot.picture(), kRed, 440.0, 460.0, 20.0);
    EXPECT_FALSE(isThere(plot.picture(), kBlue)) << "a centre of 0 MHz lies outside";
    ASSERT_TRUE(scope.DrawDisplay());
    EXPECT_FALSE(isThere(plot.picture(), kRed));
    scope.Refresh();
    expectBox(plot.picture(), kRed, 440.0, 460.0, 20.0);
}

TEST_F(Drawing, ReceiversAreDrawnOverTransmitters) {
    addSolid({.freq = 450.0, .lo = 440.0, .hi = 460.0, .power = 20.0, .key = L"RX1", .color = kBlue, .line = kBlue},
             false);
    addSolid({.freq = 450.0, .lo = 440.0, .hi = 460.0, .power = 20.0, .key = L"TX1", .color = kRed, .line = kRed});
    ASSERT_TRUE(scope.DrawDisplay());
    EXPECT_FALSE(isThere(plot.picture(), kRed));
    expectBox(plot.picture(), kBlue, 440.0, 460.0, 20.0);
}

TEST_F(Drawing, LaterChannelsLieOverEarlierOnes) {
    addSolid({.freq = 450.0, .lo = 440.0, .hi = 460.0, .power = 20.0, .key = L"TX1", .color = kRed, .line = kRed});
    addSolid({.freq = 447.0, .lo = 444.0, .hi = 448.0, .power = 30.0, .key = L"TX2", .color = kBlue, .line = kBlue});
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture picture = plot.picture();
    expectBox(picture, kRed, 440.0, 460.0, 20.0);
    expectBox(picture, kBlue, 444.0, 448.0, 30.0);
    const int middle = plot.column(446.0);
    EXPECT_EQ(picture.at(middle, plot.row(-20.0)), kBlue);
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

TEST_F(Drawing, DrawingTwiceGivesTheSamePicture) {
    addSolid({.freq = 450.0, .lo = 440.0, .hi = 460.0, .power = 20.0, .key = L"TX1", .color = kRed, .line = kBlue});
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture first = plot.picture();
    ASSERT_TRUE(scope.DrawDisplay());
    EXPECT_TRUE(plot.picture() == first);
    scope.JustDrawIt();
    EXPECT_TRUE(plot.picture() == first);
}

TEST_F(Drawing, CursorLineComesAndGoesWithoutATrace) {
    addSolid({.freq = 450.0, .lo = 440.0, .hi = 460.0, .power = 20.0, .key = L"TX1", .color = kRed, .line = kBlue});
    scope.setLCursorColor(0x00A000A0);
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture before = plot.picture();
    scope.setCursorVal(433.0);
    const Picture at433 = plot.picture();
    const int x = plot.column(433.0);
    EXPECT_FALSE(at433 == before);
    EXPECT_EQ(at433.at(x, plot.row(0.0)), 0x00A000A0U) << "not-XOR on white is the colour itself";
    scope.setCursorVal(447.0);
    EXPECT_FALSE(plot.picture() == at433);
    scope.setCursorVal(433.0);
    EXPECT_TRUE(plot.picture() == at433);
}

TEST_F(Drawing, UpsideDownPowersAreDrawnFromTheTop) {
    addSolid({.freq = 450.0, .lo = 440.0, .hi = 460.0, .power = 60.0, .key = L"TX1", .color = kRed, .line = kRed});
    scope.setDisplayMaxPwr(-40.0);
    scope.setDisplayMinPwr(40.0);
    scope.JustDrawIt();
    const Picture picture = plot.picture();
    // 60 dBm lies beyond the floor of 40, which is at the bottom now; nothing of the box can be above it.
    const auto found = picture.find(kRed, plot.spectrum);
    EXPECT_TRUE(!found || found->top >= plot.spectrum.bottom - 1);
    EXPECT_TRUE(isThere(picture, Plot::kGrid));
}

}  // namespace
}  // namespace kv::test
