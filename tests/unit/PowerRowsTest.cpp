// The rows of the tops of boxes, and which of them are computed again.
#include "channels/PowerRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

namespace kv::channels {
namespace {

using Rows = std::vector<std::int16_t>;

/// 20 dBm is row 0, each dB below it is a row.
PowerMap powers() {
    PowerMap map;
    map.pixels.scale = {0.0, 20.0, 1.0, -100.0};
    map.pixels.size = {10, 100};
    map.floor = -80.0;
    map.markHeight = 10.0;
    return map;
}

DrawRecord record(double power) {
    DrawRecord made;
    made.dFreq = made.dFreqLo = made.dFreqHi = 100.0;
    made.dPwrDBM = power;
    return made;
}

TEST(PowerRows, ARowIsThatOfTheTopInsideThePicture) {
    DrawRecord hidden = record(0.0);
    hidden.bVisible = false;
    DrawRecord irregular = record(0.0);
    irregular.dFreqHi = 1.0;
    PowerMap map = powers();
    map.pixels.size.height = 1'000'000;
    map.floor = -1e6;
    PowerRows rows;
    EXPECT_EQ(rows.rows({record(20.0), record(19.0), record(30.0), record(-1e5), hidden, irregular}, map),
              Rows({0, 10'000, 0, PowerRows::kNotShown - 1, PowerRows::kNotShown, PowerRows::kIrregular}));
}

TEST(PowerRows, ARecordAtTheFloorHasTheHeightOfTheMark) {
    PowerRows rows;
    EXPECT_EQ(rows.rows({record(-79.0), record(-80.0), record(-81.0)}, powers()), Rows({99, 10, 10}));
}

TEST(PowerRows, OnlyRowsThatAreNotKnownAreComputed) {
    constexpr std::size_t kBlock = BandBlocks::kSize;
    PowerRows rows;
    EXPECT_EQ(rows.rows(std::vector<DrawRecord>(kBlock + 2, record(20.0)), powers()).capacity(), kBlock + 2);
    std::vector<DrawRecord> changed(kBlock + 2, record(10.0));
    Rows known(kBlock + 2, 0);
    EXPECT_EQ(rows.rows(changed, powers()), known);
    rows.forget(1);
    known[kBlock] = known[kBlock + 1] = 10;
    EXPECT_EQ(rows.rows(changed, powers()), known);
    rows.forget(9);
    rows.hide(kBlock);
    rows.hide(100'000'000);
    known[kBlock] = PowerRows::kNotShown;
    EXPECT_EQ(rows.rows(changed, powers()), known);
    rows.forget(0);
    std::fill_n(known.begin(), kBlock, std::int16_t{10});
    EXPECT_EQ(rows.rows(changed, powers()), known);
}

TEST(PowerRows, RowsOfAddedRecordsAreComputed) {
    constexpr std::size_t kBlock = BandBlocks::kSize;
    PowerRows rows;
    std::vector<DrawRecord> records;
    Rows expected;
    for (const std::size_t count : {kBlock - 1, kBlock, kBlock + 1, 3 * kBlock}) {
        const double power = 20.0 - static_cast<double>(count % 19);
        records.resize(count, record(power));
        expected.resize(count, static_cast<std::int16_t>(count % 19));
        EXPECT_EQ(rows.rows(records, powers()), expected);
    }
    records.resize(kBlock + 5);
    expected.resize(kBlock + 5);
    EXPECT_EQ(rows.rows(records, powers()), expected);
}

TEST(PowerRows, AnotherVerticalScaleComputesAllRowsAgain) {
    const std::vector<std::function<void(PowerMap&)>> vertical{
        [](PowerMap& map) { map.pixels.scale.top = 30.0; }, [](PowerMap& map) { map.pixels.scale.height = -50.0; },
        [](PowerMap& map) { map.pixels.size.height = 50; }, [](PowerMap& map) { map.floor = -70.0; },
        [](PowerMap& map) { map.markHeight = 11.0; }};
    const std::vector<DrawRecord> before(1, record(20.0));
    const std::vector<DrawRecord> after(1, record(0.0));
    for (std::size_t i = 0; i < vertical.size(); ++i) {
        PowerRows rows;
        static_cast<void>(rows.rows(before, powers()));
        PowerMap map = powers();
        vertical[i](map);
        EXPECT_EQ(rows.rows(after, map)[0], map.pixels.y(0.0)) << i;
    }
    PowerRows rows;
    static_cast<void>(rows.rows(before, powers()));
    PowerMap map = powers();
    map.pixels.scale.left = 5.0;
    map.pixels.size.width = 20;
    EXPECT_EQ(rows.rows(after, map)[0], 0) << "the horizontal scale does not matter";
}

}  // namespace
}  // namespace kv::channels
