// The word for the transmit channels of a store, which its first channel chooses.
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

class TransmitNounTest : public ScopeTest {
  protected:
    void add(const std::wstring& label) {
        const SlotRef slot = makeSlot(450.0, 0.0, 0.0, L"TX" + std::to_wstring(scope.NumTX()));
        slot->fields().sLabel = label;
        scope.AddTXChnl(asChannel(slot));
    }
};

TEST_F(TransmitNounTest, AProductFirstMakesThemProducts) {
    EXPECT_EQ(scope.sTXNoun(), L"");
    add(L"Intermod Product [3rd order product]");
    EXPECT_EQ(scope.sTXNoun(), L" IM Products");
    add(L"GMRS 1");
    EXPECT_EQ(scope.sTXNoun(), L" IM Products");
    EXPECT_EQ(ui.lblNumTX.caption(), L"2 tx Channels") << "the count has one word for all";
}

TEST_F(TransmitNounTest, AnyOtherChannelFirstMakesThemChannels) {
    add(L"Intermod Product [");
    EXPECT_EQ(scope.sTXNoun(), L" TX Channels");
    add(L"Intermod Product [3rd order product]");
    EXPECT_EQ(scope.sTXNoun(), L" TX Channels");
}

TEST_F(TransmitNounTest, ClearingTheTransmitChannelsResetsTheNoun) {
    add(L"GMRS 1");
    scope.ClearTXChnls();
    EXPECT_EQ(scope.sTXNoun(), L"");
    scope.Refresh();
    EXPECT_EQ(scope.sTXNoun(), L"") << "without a channel there is nothing to choose by";
}

}  // namespace
}  // namespace kv::control
