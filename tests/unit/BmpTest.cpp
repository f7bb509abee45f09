// The bitmap file, byte by byte.
#include "util/Bmp.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "util/RuntimeError.h"

namespace kv::util {
namespace {

std::string bytes(std::initializer_list<int> values) {
    std::string result;
    for (const int value : values)
        result.push_back(static_cast<char>(value));
    return result;
}

TEST(BmpTest, HasBothHeadersAndTheRowsFromTheBottom) {
    // Two columns and two rows in a surface that is three wide.
    const std::array<std::uint32_t, 6> pixels{0xFF010203, 0x00040506, 0xAAAAAAAA, 0x00070809, 0xFF0A0B0C, 0xBBBBBBBB};
    EXPECT_EQ(bmpFile(pixels.data(), 2, 2, 3, 96),
              bytes({'B',  'M',                          //
                     70,   0,   0,  0,                   // file size
                     0,    0,   0,  0,                   // reserved
                     54,   0,   0,  0,                   // where the pixels begin
                     40,   0,   0,  0,                   // size of this header
                     2,    0,   0,  0,                   // width
                     2,    0,   0,  0,                   // height
                     1,    0,   24, 0,                   // planes, bits a pixel
                     0,    0,   0,  0,                   // no compression
                     16,   0,   0,  0,                   // size of the pixels
                     0xC4, 14,  0,  0,  0xC4, 14, 0, 0,  // 3780 pixels a meter
                     0,    0,   0,  0,  0,    0,  0, 0,  // no palette
                     9,    8,   7,  12, 11,   10, 0, 0,  // the lower row, blue first, and its padding
                     3,    2,   1,  6,  5,    4,  0, 0}));
}

TEST(BmpTest, SizesBeyondSixteenBitsAreWrittenWhole) {
    const std::vector<std::uint32_t> pixels(200 * 200);
    const std::string file = bmpFile(pixels.data(), 200, 200, 200, 96);
    ASSERT_EQ(file.size(), 54U + 200U * 600U);
    std::uint32_t size = 0;
    for (std::size_t i = 0; i < 4; ++i)
        size |= static_cast<std::uint32_t>(static_cast<unsigned char>(file[2 + i])) << 8U * i;
    EXPECT_EQ(size, file.size());
}

TEST(BmpTest, RowsArePaddedToFourBytesAndSizesHaveFour) {
    const std::vector<std::uint32_t> pixels(300, 0x00FFFFFF);
    for (const auto& [width, row] : {std::pair{1, 4}, {2, 8}, {3, 12}, {4, 12}, {5, 16}})
        EXPECT_EQ(bmpFile(pixels.data(), width, 1, width, 96).size(), 54U + static_cast<std::size_t>(row)) << width;
    const std::string tall = bmpFile(pixels.data(), 1, 300, 1, 192);
    EXPECT_EQ(tall.capacity(), tall.size()) << "the memory is reserved once";
    EXPECT_EQ(tall.substr(2, 4), bytes({0xE6, 4, 0, 0}));   // 54 + 1200
    EXPECT_EQ(tall.substr(22, 4), bytes({0x2C, 1, 0, 0}));  // 300
    EXPECT_EQ(tall.substr(34, 4), bytes({0xB0, 4, 0, 0}));
    EXPECT_EQ(tall.substr(38, 4), bytes({0x87, 29, 0, 0}));  // 7559
}

TEST(BmpTest, APictureWithoutPixelsIsRefused) {
    const std::uint32_t pixel = 0;
    for (const auto& [width, height] : {std::pair{0, 1}, {1, 0}, {-1, 1}, {1, -1}}) {
        try {
            const std::string file = bmpFile(&pixel, width, height, 1, 96);
            ADD_FAILURE() << file.size() << " bytes";
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.number(), error_number::kInvalidProcedureCall);
        }
    }
}

}  // namespace
}  // namespace kv::util
