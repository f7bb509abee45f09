// Objects, memory and GDI objects are all released.
#include <windows.h>

#include <psapi.h>

#include <gmock/gmock.h>

#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

SIZE_T privateBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    EXPECT_TRUE(GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters));
    return counters.PagefileUsage;
}

DWORD gdiObjects() {
    return GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
}

void addAndRemove(Scope& scope) {
    constexpr int kChannels = 1000;
    for (int i = 0; i < kChannels; ++i) {
        const std::wstring key = L"TX" + std::to_wstring(i);
        ASSERT_EQ(scope.AddTXChnl(channel({.freq = 100.0 + 0.1 * i, .bw = 12.5, .key = key, .label = L"a label"})), i);
    }
    for (int i = 0; i < 10; ++i)
        scope.RemoveChnlByKey((L"TX" + std::to_wstring(i * 7)).c_str());
    ASSERT_EQ(scope.NumTX(), kChannels - 10);
    scope.ClearAllChnls();
    ASSERT_EQ(scope.NumTX(), 0);
}

TEST(Life, TwentyThousandChannelsLeaveNoMemoryBehind) {
    ASSERT_EQ(canUnloadNow(), S_OK);
    {
        Scope scope;
        addAndRemove(scope);
        const SIZE_T before = privateBytes();
        ASSERT_GT(before, 0U);
        for (int round = 0; round < 19; ++round)
            addAndRemove(scope);
        // A record alone has some 200 bytes, so 19,000 lost ones would be several times the bound.
        EXPECT_LT(privateBytes(), before + 1024 * 1024);
    }
    EXPECT_EQ(canUnloadNow(), S_OK) << "a record is still alive";
}

TEST(Life, ControlsLeaveNeitherObjectsNorDrawingToolsBehind) {
    ASSERT_EQ(canUnloadNow(), S_OK);
    const auto useOne = [] {
        Scope scope;
        scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
        EXPECT_TRUE(scope.DrawDisplay());
        EXPECT_EQ(canUnloadNow(), S_FALSE);
    };
    useOne();
    const DWORD objectsBefore = gdiObjects();
    const SIZE_T bytesBefore = privateBytes();
    for (int i = 0; i < 200; ++i)
        useOne();
    EXPECT_EQ(canUnloadNow(), S_OK);
    // Where the system does not count (it answers 0 then), a picture that is not given back shows in the memory: each
    // has more than a megabyte.
    EXPECT_LE(gdiObjects(), objectsBefore + 2);
    EXPECT_LT(privateBytes(), bytesBefore + 16 * 1024 * 1024);
}

TEST(Life, ChannelsOutliveTheControlAndTheControlItsChannels) {
    ComPtr<_FreqSlot> kept;
    {
        Scope scope;
        scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
        kept = scope.GetTXChnl(0);
    }
    EXPECT_EQ(keyOf(kept.Get()), L"TX1");
    EXPECT_EQ(canUnloadNow(), S_FALSE);
    kept->AddRef();
    EXPECT_EQ(kept->Release(), 1U);
    kept.Reset();
    EXPECT_EQ(canUnloadNow(), S_OK);
}

TEST(Life, AChannelCanBeInTwoControls) {
    Scope first;
    Scope second;
    const auto slot = channel({.freq = 450.0, .key = L"TX1"});
    EXPECT_EQ(first.AddTXChnl(slot), 0);
    EXPECT_EQ(second.AddRXChnl(slot), 0);
    EXPECT_EQ(fillStyle(slot.Get()), 4);
    first.release();
    EXPECT_TRUE(sameObject(second.GetRXbyKey(L"TX1").Get(), slot.Get()));
}

}  // namespace
}  // namespace kv::test
