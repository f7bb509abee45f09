// What hosts and scripts do before the first drawing, with empty stores and with records that cannot be read.
#include <limits>

#include "tests/automation/DictionarySlot.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

class UnreadRange : public BothWays {
  protected:
    void addTX(double frequency, const wchar_t* key, double power = 0.0) {
        scope.AddTXChnl(channel({.freq = frequency, .bw = 1000.0, .power = power, .key = key, .color = 0xFF}));
    }
    void expectRange(double minimum, double maximum) {
        EXPECT_DOUBLE_EQ(scope.DisplayMinFreq(), minimum);
        EXPECT_DOUBLE_EQ(scope.DisplayMaxFreq(), maximum);
    }
    /// Neither the spectrum nor the strip shows anything.
    static void expectBlank(const Picture& picture) {
        const std::uint32_t strip = picture.at(0, 0);
        const std::uint32_t spectrum = picture.at(picture.width / 2, picture.height / 2);
        EXPECT_EQ(picture.count(strip, picture.all()) + picture.count(spectrum, picture.all()),
                  picture.width * picture.height);
    }
};

TEST_P(UnreadRange, NewCenterShiftsTheRangeThatTheChannelsGive) {
    scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
    scope.setDisplayCenterFreq(470.0);
    scope.DrawNewCenterFreq();
    expectRange(370.0, 570.0);
    EXPECT_TRUE(scope.DrawDisplay());
    expectRange(370.0, 570.0);
}

TEST_P(UnreadRange, PowersReadFromAnEmptyStoreAreDerivedAgain) {
    scope.Refresh();
    EXPECT_EQ(scope.DisplayMaxPwr(), 3.0);
    addTX(450.0, L"TX1", 47.0);
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(scope.DisplayMaxPwr(), 47.0);
}

TEST_P(UnreadRange, PowerOfZeroWattsBreaksNoDrawing) {
    addTX(450.0, L"TX1", -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(scope.dTXPwrDBMMin(), kUnset);
    EXPECT_EQ(scope.dPwrMin(), 0.0);
    scope.ClearAllChnls();
    addTX(450.0, L"TX2", 10.0);
    scope.DrawInitialDisplay();
    EXPECT_EQ(scope.DisplayMinPwr(), 0.0);
}

TEST_P(UnreadRange, InitialDisplayOfAClearedStoreIsBlank) {
    addTX(450.0, L"TX1", 40.0);
    EXPECT_TRUE(scope.DrawDisplay());
    scope.ClearAllChnls();
    scope.DrawInitialDisplay();
    expectBlank(capture(scope));
}

TEST_P(UnreadRange, ChannelWithoutAFrequencyWidensNothingAfterARemoval) {
    addTX(450.0, L"TX1");
    scope.AddTXChnl(channel({.freq = 0.0, .key = L"TX2"}));
    addTX(460.0, L"TX3");
    scope.RemoveChnlByKey(L"TX3");
    EXPECT_EQ(scope.dTXFreqMin(), 449.0);
    EXPECT_EQ(scope.dTXFreqMax(), 451.0);
    scope.Refresh();
    EXPECT_EQ(scope.dFreqMin(), 449.0);
    EXPECT_TRUE(scope.ReScaleChannels());
    EXPECT_EQ(scope.dFreqMin(), 449.0);
}

TEST_P(UnreadRange, RecordThatCannotBeReadMatchesNothing) {
    scope.AddRXChnl(channel({.freq = 450.0, .key = L"RX1"}));
    EXPECT_EQ(scope.nFindMatchRX(nullptr), kNotFound);
    const ComPtr<DictionarySlot> broken = DictionarySlot::create();
    broken->failing[L"dFreqAlt"] = E_FAIL;
    const Outcome outcome = call(scope.get(), L"nFindMatchRX", {Var(broken.Get())});
    EXPECT_EQ(outcome.hr, S_OK);
    EXPECT_EQ(outcome.result.lVal, kNotFound);
}

TEST_P(UnreadRange, RemovalBeforeARenamedKeyKeepsEveryChannel) {
    for (const wchar_t* key : {L"TXa", L"TXb", L"TXc", L"TXd"})
        addTX(450.0, key);
    const ComPtr<_FreqSlot> renamed = scope.GetTXChnl(2);
    const ComPtr<_FreqSlot> last = scope.GetTXChnl(3);
    const Text other{std::wstring(L"TXother")};
    EXPECT_EQ(renamed->put_sKey(other.get()), S_OK);
    scope.RemoveChnlByKey(L"TXa");
    ASSERT_EQ(scope.NumTX(), 3);
    EXPECT_EQ(keyOf(scope.GetTXChnl(0).Get()), L"TXb");
    EXPECT_EQ(scope.GetTXChnl(1), renamed);
    EXPECT_EQ(scope.GetTXChnl(2), last);
    EXPECT_EQ(scope.GetTXbyKey(L"TXd"), last);
    EXPECT_FALSE(scope.GetTXbyKey(L"TXa"));
}

TEST_P(UnreadRange, CursorLeavesNoTraceAfterTheHighestPowerWasLowered) {
    addTX(450.0, L"TX1", 100.0);
    scope.setDisplayMaxPwr(100.0);
    EXPECT_TRUE(scope.DrawDisplay());
    scope.setCursorVal(460.0);
    const Picture without = capture(scope);
    scope.setCursorVal(402.3);
    scope.setDisplayMaxPwr(40.0);
    scope.setCursorVal(460.0);
    const Picture after = capture(scope);
    ASSERT_EQ(after.pixels.size(), without.pixels.size());
    int columns = 0;
    for (int x = 0; x < after.width; ++x) {
        bool differs = false;
        for (int y = 0; y < after.height && !differs; ++y)
            differs = after.at(x, y) != without.at(x, y);
        columns += differs ? 1 : 0;
    }
    EXPECT_LE(columns, 1) << "only the line itself, at another height, may differ";
}

INSTANTIATE_TEST_SUITE_P(Ways, UnreadRange, testing::Values(Way::early, Way::late), nameOf);

}  // namespace
}  // namespace kv::test
