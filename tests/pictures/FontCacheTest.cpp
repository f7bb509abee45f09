// The sizes of texts that are kept for each font.
#include <gtest/gtest.h>

#include <string>

#include "win32/Gdi.h"

namespace {

using kv::raster::PixelSize;
using kv::win32::FontCache;

constexpr int kDpi = 96;
const kv::raster::Font kSmall{L"Arial", 8.0, false};
const kv::raster::Font kLarge{L"Arial", 24.0, true};

PixelSize sizeOnScreen(FontCache& fonts, const std::wstring& text, const kv::raster::Font& font, int dpi) {
    const kv::win32::ScreenDc screen;
    const kv::win32::Selected selected(screen.get(), fonts.get(font, dpi));
    SIZE size{};
    GetTextExtentPoint32W(screen.get(), text.c_str(), static_cast<int>(text.size()), &size);
    return {static_cast<int>(size.cx), static_cast<int>(size.cy)};
}

TEST(FontCache, KeptSizesAreThoseOfTheScreen) {
    FontCache fonts(kDpi);
    for (int round = 0; round < 2; ++round) {
        for (const kv::raster::Font& font : {kSmall, kLarge}) {
            for (const wchar_t* text : {L"462.550", L"W", L"\u0416 "})
                EXPECT_EQ(fonts.textSize(text, font), sizeOnScreen(fonts, text, font, kDpi));
            EXPECT_EQ(fonts.textSize(L"", font).width, 0);
            EXPECT_EQ(fonts.textSize(L"", font).height, sizeOnScreen(fonts, L"W", font, kDpi).height);
        }
        EXPECT_EQ(fonts.measuredTexts(), 6U);
    }
}

TEST(FontCache, AnotherResolutionHasItsOwnSizes) {
    FontCache fonts(kDpi);
    const PixelSize before = fonts.textSize(L"462.550", kSmall);
    fonts.setDpi(2 * kDpi);
    EXPECT_EQ(fonts.textSize(L"462.550", kSmall), sizeOnScreen(fonts, L"462.550", kSmall, 2 * kDpi));
    EXPECT_GT(fonts.textSize(L"462.550", kSmall).width, before.width);
    fonts.setDpi(kDpi);
    EXPECT_EQ(fonts.textSize(L"462.550", kSmall), before);
}

TEST(FontCache, OldTextsAreDiscardedWhenThereAreMany) {
    FontCache fonts(kDpi);
    for (int i = 0; i < 2500; ++i)
        static_cast<void>(fonts.textSize(std::to_wstring(i), kSmall));
    EXPECT_LE(fonts.measuredTexts(), 1000U);
    EXPECT_GT(fonts.measuredTexts(), 0U);
    EXPECT_EQ(fonts.textSize(L"7", kSmall), sizeOnScreen(fonts, L"7", kSmall, kDpi));
}

}  // namespace
