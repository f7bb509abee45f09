// The channels that a click on an empty control shows. Pictures in the documentation were made with them.
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

constexpr std::uint32_t kBlue = 0xB4771F;  // as colors are numbered: blue, green, red
constexpr std::uint32_t kTeal = 0x889600;
constexpr std::uint32_t kOrange = 0x227EE6;
constexpr std::uint32_t kRed = 0x2B39C0;
constexpr std::uint32_t kGreen = 0x3C8E38;
constexpr std::uint32_t kViolet = 0xC2577E;
constexpr std::uint32_t kDark = 0x302828;

struct Demonstrated {
    double frequency;
    double bandwidthKHz;
    double power;
    std::uint32_t color;
    std::uint32_t line;
    const wchar_t* label;
};

constexpr Demonstrated kTransmit[] = {
    {144.0, 400.0, 40.0, kBlue, kDark, L"sample freq"},
    {147.0, 400.0, 46.99, kBlue, kDark, L"sample freq 2"},
    {150.0, 400.0, 43.0, kBlue, kDark, L"sample freq 3"},
    {155.5, 1000.0, 30.0, kTeal, kDark, L"sample freq 4"},
    {156.4, 1000.0, 36.99, kTeal, kDark, L"sample freq 5"},
    {162.4, 250.0, 50.0, kOrange, kRed, L"sample freq 6"},
    {162.55, 250.0, 47.0, kOrange, kRed, L"sample freq 7"},
    // The third-order products of the two strongest: 2 x 144 - 147 and 2 x 150 - 147.
    {141.0, 1200.0, 12.0, kRed, kRed, L"sample freq 8"},
    {153.0, 1200.0, 18.0, kRed, kRed, L"sample freq 9"},
};
constexpr Demonstrated kReceive[] = {
    {145.5, 400.0, 22.0, kGreen, kDark, L"sample freq 10"},   {148.5, 400.0, 22.0, kGreen, kDark, L"sample freq 11"},
    {151.5, 400.0, 22.0, kGreen, kDark, L"sample freq 12"},   {159.0, 2500.0, 15.0, kViolet, kDark, L"sample freq 13"},
    {165.0, 1500.0, 27.0, kViolet, kDark, L"sample freq 14"},
};

class DemonstrationSetTest : public ScopeTest {
  protected:
    static void expectChannel(const channels::FreqSlotRef& channel, const Demonstrated& expected) {
        SCOPED_TRACE(expected.frequency);
        ASSERT_TRUE(channel);
        EXPECT_EQ(channel->dFreq(), expected.frequency);
        EXPECT_EQ(channel->dBW(), expected.bandwidthKHz);
        EXPECT_EQ(channel->sBWUnits(), L"KHz");
        EXPECT_EQ(channel->dPwrDBM(), expected.power);
        EXPECT_EQ(channel->lColor(), expected.color);
        EXPECT_EQ(channel->lColorLine(), expected.line);
        EXPECT_EQ(channel->sLabel(), expected.label);
        EXPECT_TRUE(channel->bDrawn());
    }
};

TEST_F(DemonstrationSetTest, HasItsChannelsInTheirOrder) {
    scope.UserControl_Click();
    ASSERT_EQ(scope.NumTX(), static_cast<std::int32_t>(std::size(kTransmit)));
    ASSERT_EQ(scope.NumRX(), static_cast<std::int32_t>(std::size(kReceive)));
    for (std::int32_t i = 0; i < scope.NumTX(); ++i)
        expectChannel(scope.GetTXChnl(i), kTransmit[i]);
    for (std::int32_t i = 0; i < scope.NumRX(); ++i)
        expectChannel(scope.GetRXChnl(i), kReceive[i]);
}

TEST_F(DemonstrationSetTest, IsNotLoadedBesideASingleChannel) {
    addTX(450.0);
    scope.UserControl_Click();
    EXPECT_EQ(scope.NumTX(), 1);
    EXPECT_EQ(scope.NumRX(), 0);
    scope.ClearAllChnls();
    addRX(450.0);
    scope.UserControl_Click();
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_EQ(scope.NumRX(), 1);
}

TEST_F(DemonstrationSetTest, HasKeysByWhichEachChannelCanBeRemoved) {
    scope.UserControl_Click();
    EXPECT_EQ(scope.GetTXbyKey(L"TXSample1"), scope.GetTXChnl(0));
    EXPECT_EQ(scope.GetTXbyKey(L"TXSample9"), scope.GetTXChnl(8));
    EXPECT_EQ(scope.GetRXbyKey(L"RXSample1"), scope.GetRXChnl(0));
    EXPECT_EQ(scope.GetRXbyKey(L"RXSample5"), scope.GetRXChnl(4));
    scope.RemoveChnlByKey(L"TXSample1");
    EXPECT_EQ(scope.NumTX(), 8);
}

}  // namespace
}  // namespace kv::control
