// What drawing knows of each block of 256 records.
#include "channels/BandBlocks.h"
#include "tests/unit/Numbers.h"

#include <gtest/gtest.h>

#include <vector>

namespace kv::channels {
namespace {

DrawRecord record(double low, double high, bool drawn = false) {
    DrawRecord made;
    made.dFreq = high;
    made.dFreqLo = low;
    made.dFreqHi = high;
    made.bDrawn = drawn;
    return made;
}

DrawRecord hidden(DrawRecord made) {
    made.bVisible = false;
    return made;
}

BandBlocks blocksOf(const std::vector<DrawRecord>& records) {
    BandBlocks blocks;
    blocks.resize(records.size());
    for (std::size_t block = 0; block < blocks.blocks().size(); ++block)
        blocks.derive(records, block);
    return blocks;
}

TEST(BandBlocks, ABlockHoldsTheExtremesOfItsVisibleRecords) {
    const BandBlocks blocks = blocksOf({record(10.0, 14.0, true), record(20.0, 21.0, true), hidden(record(1.0, 99.0))});
    ASSERT_EQ(blocks.blocks().size(), 1U);
    const BandBlock& block = blocks.blocks()[0];
    EXPECT_EQ(block.lowest, 10.0);
    EXPECT_EQ(block.highest, 21.0);
    EXPECT_EQ(block.widest, 4.0);
    EXPECT_FALSE(block.hasIrregular);
    EXPECT_FALSE(block.undrawn);
}

TEST(BandBlocks, ABlockWithoutRegularRecordsIsEmpty) {
    const BandBlocks blocks = blocksOf({hidden(record(1.0, 2.0))});
    EXPECT_GT(blocks.blocks()[0].lowest, blocks.blocks()[0].highest);
    EXPECT_FALSE(blocks.blocks()[0].hasIrregular);
}

TEST(BandBlocks, ARecordThatIsNotRegularOnlySetsAFlag) {
    DrawRecord below = record(10.0, 20.0);
    below.dFreq = 9.0;
    DrawRecord above = record(10.0, 20.0);
    above.dFreq = 21.0;
    for (const DrawRecord& irregular : {record(-1.0, 0.0), record(kNaN, 5.0), record(-1.1e15, 5.0), record(5.0, 1.1e15),
                                        record(9.0, 5.0), below, above}) {
        const BandBlocks blocks = blocksOf({irregular, record(3.0, 4.0)});
        EXPECT_TRUE(blocks.blocks()[0].hasIrregular)
            << irregular.dFreqLo << " to " << irregular.dFreqHi << ", " << irregular.dFreq;
        EXPECT_EQ(blocks.blocks()[0].lowest, 3.0);
        EXPECT_EQ(blocks.blocks()[0].highest, 4.0);
        EXPECT_TRUE(blocks.blocks()[0].undrawn);
    }
}

TEST(BandBlocks, EdgesAndFrequenciesAtTheirLimitsAreRegular) {
    for (const DrawRecord& record : {record(-1e15, 5.0), record(5.0, 1e15), record(0.0, 5e-324)}) {
        const BandBlocks blocks = blocksOf({record});
        EXPECT_FALSE(blocks.blocks()[0].hasIrregular) << record.dFreqLo << " to " << record.dFreqHi;
    }
}

TEST(BandBlocks, AFillStyleThatThereIsNotSetsAFlagWhetherTheRecordIsVisibleOrNot) {
    for (const int style : {-32768, -1, 0, 7, 8, 32767}) {
        DrawRecord styled = record(5.0, 6.0);
        styled.iFillStyle = static_cast<std::int16_t>(style);
        const bool unknown = style < 0 || style > 7;
        EXPECT_EQ(blocksOf({record(3.0, 4.0), styled}).blocks()[0].hasUnknownStyle, unknown) << style;
        EXPECT_EQ(blocksOf({hidden(styled), record(3.0, 4.0)}).blocks()[0].hasUnknownStyle, unknown) << style;
    }
}

TEST(BandBlocks, ARecordThatIsHiddenAndMarkedAsDrawnSetsAFlag) {
    EXPECT_TRUE(blocksOf({hidden(record(3.0, 4.0, true)), record(3.0, 4.0)}).blocks()[0].hasHiddenButDrawn);
    EXPECT_FALSE(blocksOf({hidden(record(3.0, 4.0)), record(3.0, 4.0, true)}).blocks()[0].hasHiddenButDrawn);
}

std::vector<std::size_t> hiddenButDrawn(const BandBlocks& blocks, std::size_t block) {
    std::vector<std::size_t> places;
    blocks.forHiddenButDrawn(block, [&](std::size_t place) { places.push_back(place); });
    return places;
}

TEST(BandBlocks, RecordsThatAreHiddenAndMarkedAsDrawnAreListedInOrder) {
    using Places = std::vector<std::size_t>;
    constexpr std::size_t kSize = BandBlocks::kSize;
    std::vector<DrawRecord> records(2 * kSize, record(10.0, 11.0, true));
    for (const std::size_t place : {std::size_t{0}, std::size_t{63}, std::size_t{64}, kSize - 1, kSize + 130})
        records[place].bVisible = false;
    records[5] = hidden(record(10.0, 11.0));
    BandBlocks blocks = blocksOf(records);
    EXPECT_EQ(hiddenButDrawn(blocks, 0), (Places{0, 63, 64, kSize - 1}));
    EXPECT_EQ(hiddenButDrawn(blocks, 1), Places{kSize + 130});
    records[63].bDrawn = false;
    records[kSize + 130].bDrawn = false;
    blocks.derive(records, 0);
    EXPECT_EQ(hiddenButDrawn(blocks, 0), (Places{0, 64, kSize - 1}));
    EXPECT_EQ(hiddenButDrawn(blocks, 1), Places{kSize + 130}) << "the other block is not derived yet";
}

TEST(BandBlocks, ABlockIsDerivedByItself) {
    std::vector<DrawRecord> records(2 * BandBlocks::kSize, record(10.0, 11.0));
    BandBlocks blocks = blocksOf(records);
    ASSERT_EQ(blocks.blocks().size(), 2U);
    blocks.allDrawn(0);
    blocks.allDrawn(1);
    EXPECT_FALSE(blocks.blocks()[1].undrawn);
    records.push_back(record(12.0, 13.0));
    records[0] = record(1.0, 2.0);
    blocks.resize(records.size());
    blocks.derive(records, 1);
    blocks.derive(records, 2);
    ASSERT_EQ(blocks.blocks().size(), 3U);
    EXPECT_FALSE(blocks.blocks()[0].undrawn);
    EXPECT_EQ(blocks.blocks()[0].lowest, 10.0);
    EXPECT_TRUE(blocks.blocks()[1].undrawn);
    EXPECT_EQ(blocks.blocks()[2].lowest, 12.0);
    blocks.derive(records, 0);
    EXPECT_EQ(blocks.blocks()[0].lowest, 1.0);
    blocks.resize(BandBlocks::kSize);
    EXPECT_EQ(blocks.blocks().size(), 1U);
}

}  // namespace
}  // namespace kv::channels
