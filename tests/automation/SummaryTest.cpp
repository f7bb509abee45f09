// The summary labels of the panel, and what the control makes of Nothing for a channel.
#include <gmock/gmock.h>

#include "tests/automation/HostedControl.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

TEST(Summary, LabelsShowCountAndRangeOfEachKind) {
    Scope scope;
    const HostedControl host(scope);
    EXPECT_FALSE(host.hasLabelEnding(L" tx Channels"));
    scope.AddTXChnl(channel({.freq = 146.52, .key = L"TX1"}));
    scope.AddTXChnl(channel({.freq = 147.0, .key = L"TX2"}));
    scope.AddRXChnl(channel({.freq = 455.0, .bw = 12.5, .key = L"RX1"}));
    EXPECT_TRUE(host.showsLabel(L"2 tx Channels"));
    EXPECT_TRUE(host.showsLabel(L"146.52000 to 147.00000"));
    EXPECT_TRUE(host.showsLabel(L"1 RX Channels"));
    EXPECT_TRUE(host.showsLabel(L"454.98750 to 455.01250"));
}

TEST(Summary, FrequenciesBelowOneKeepTheirZero) {
    Scope scope;
    const HostedControl host(scope);
    scope.AddTXChnl(channel({.freq = 0.5, .key = L"TX1"}));
    EXPECT_TRUE(host.showsLabel(L"0.50000 to 0.50000"));
}

TEST(Summary, ChannelsWithoutFrequencyShowNoLabels) {
    Scope scope;
    const HostedControl host(scope);
    scope.AddTXChnl(channel({.freq = 0.0, .key = L"TX0"}));
    EXPECT_EQ(scope.NumTX(), 1);
    EXPECT_FALSE(host.hasLabelEnding(L" tx Channels"));
    // With one that has a frequency both are counted.
    scope.AddTXChnl(channel({.freq = 150.0, .key = L"TX1"}));
    EXPECT_TRUE(host.showsLabel(L"2 tx Channels"));
    EXPECT_TRUE(host.showsLabel(L"150.00000 to 150.00000"));
}

TEST(Summary, RemovingTheOnlyTransmitterEmptiesAndHidesItsLabels) {
    Scope scope;
    const HostedControl host(scope);
    scope.AddTXChnl(channel({.freq = 150.0, .key = L"TX1"}));
    ASSERT_TRUE(host.showsLabel(L"1 tx Channels"));
    scope.RemoveChnlByKey(L"TX1");
    EXPECT_FALSE(host.hasLabelEnding(L" tx Channels"));
    EXPECT_FALSE(host.hasLabelEnding(L" to 150.00000"));
}

TEST(Summary, ClearingEmptiesTheLabelsOfItsKindOnly) {
    Scope scope;
    const HostedControl host(scope);
    scope.AddTXChnl(channel({.freq = 150.0, .key = L"TX1"}));
    scope.AddRXChnl(channel({.freq = 455.0, .key = L"RX1"}));
    scope.ClearTXChnls();
    EXPECT_FALSE(host.hasLabelEnding(L" tx Channels"));
    EXPECT_TRUE(host.showsLabel(L"1 RX Channels"));
    scope.ClearRXChnls();
    EXPECT_FALSE(host.hasLabelEnding(L" RX Channels"));
    EXPECT_FALSE(host.hasLabelEnding(L" to 455.00000"));
}

TEST(Summary, CountOfIntermodulationProductsReadsAsChannelsToo) {
    Scope scope;
    const HostedControl host(scope);
    const std::wstring product = L"Intermod Product [3rd order product] A";
    scope.AddTXChnl(channel({.freq = 160.0, .key = L"TX1", .label = product}));
    EXPECT_TRUE(host.showsLabel(L"1 tx Channels"));
    scope.AddTXChnl(channel({.freq = 150.0, .key = L"TX2", .label = L"base"}));
    EXPECT_TRUE(host.showsLabel(L"2 tx Channels"));
    EXPECT_FALSE(host.hasLabelEnding(L" IM Products"));
}

TEST(Summary, ProductsAreStoredAndDrawnWithAndWithoutComponents) {
    Plot plot;
    const std::wstring product = L"Intermod Product [3rd order product] 2A-B";
    const auto bare =
        channel({.freq = 450.0, .bw = 10000.0, .power = 30.0, .key = L"TX1", .label = product, .color = 0x000000FF});
    const auto full =
        channel({.freq = 500.0, .bw = 10000.0, .power = 30.0, .key = L"TX2", .label = product, .color = 0x00FF0000});
    ASSERT_EQ(full->put_nIMComps(2), S_OK);
    ASSERT_EQ(full->put_nIMComp(0, 2), S_OK);
    ASSERT_EQ(full->put_nIMComp(1, -1), S_OK);
    plot.scope.AddTXChnl(bare);
    plot.scope.AddTXChnl(full);
    ASSERT_TRUE(plot.scope.DrawDisplay());
    const Picture picture = plot.picture();
    EXPECT_TRUE(picture.find(0x000000FF, plot.spectrum));
    EXPECT_TRUE(picture.find(0x00FF0000, plot.spectrum));
    EXPECT_EQ(plot.scope.dTXFreqMax(), 510.0);
}

class NothingAsChannel : public BothWays {};
INSTANTIATE_TEST_SUITE_P(Ways, NothingAsChannel, testing::Values(Way::early, Way::late), nameOf);

TEST_P(NothingAsChannel, IsNotAdded) {
    const MessageBoxes boxes;
    scope.AddTXChnl(nullptr);
    scope.AddRXChnl(nullptr);
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_EQ(scope.NumRX(), 0);
    EXPECT_EQ(scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"})), 0);
    EXPECT_TRUE(boxes.seen().empty());
}

TEST_P(NothingAsChannel, MatchesNoReceiver) {
    scope.AddRXChnl(channel({.freq = 450.0, .key = L"RX1"}));
    EXPECT_EQ(scope.nFindMatchRX(nullptr), kNotFound);
}

TEST_P(NothingAsChannel, IsRedrawnWithTrueAndWithoutATrace) {
    scope.AddRXChnl(channel({.freq = 450.0, .key = L"RX1"}));
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture before = capture(scope);
    EXPECT_TRUE(scope.ReDrawChnl(nullptr));
    EXPECT_TRUE(capture(scope) == before);
}

}  // namespace
}  // namespace kv::test
