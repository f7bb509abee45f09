// A knob whose program records the events.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "headless/BlockTextPainter.h"
#include "turndial/Knob.h"

namespace kv::turndial {

inline constexpr Modifiers kPlain{};
inline constexpr Modifiers kControl{true};

/// "v 5" for each ValueChanged, "end" for each TurnEnd.
using Heard = std::vector<std::string>;

inline void listen(KnobBase& knob, Heard& heard) {
    knob.onValueChanged = [&heard](double value) {
        std::ostringstream text;
        text << "v " << value;
        heard.push_back(text.str());
    };
    knob.onTurnEnd = [&heard] { heard.emplace_back("end"); };
}

inline Heard taken(Heard& heard) {
    Heard all;
    all.swap(heard);
    return all;
}

/// A knob's picture, with guard pixels on all sides.
class KnobImage {
  public:
    KnobImage(int width, int height)
        : stride_(width + 2), memory_(static_cast<std::size_t>(stride_ * (height + 2)), kGuard) {
        buffer = {memory_.data() + stride_ + 1, width, height, stride_};
    }

    std::vector<std::uint32_t> paint(KnobBase& knob, int dpi = 96, const KnobPalette& palette = {}) {
        knob.paint(buffer, letters_, dpi, palette);
        return memory_;
    }

    /// True when the pixels around the picture are as they were.
    [[nodiscard]] bool guardsAreIntact() const {
        for (int y = -1; y <= buffer.height; ++y) {
            for (int x = -1; x <= buffer.width; ++x) {
                const bool outside = x < 0 || y < 0 || x == buffer.width || y == buffer.height;
                if (outside && memory_[static_cast<std::size_t>((y + 1) * stride_ + x + 1)] != kGuard)
                    return false;
            }
        }
        return true;
    }

    raster::PixelBuffer buffer;

  private:
    static constexpr std::uint32_t kGuard = 0xDEADBEEF;

    int stride_;
    std::vector<std::uint32_t> memory_;
    headless::BlockTextPainter letters_;
};

/// Records which texts were painted, and where. A line is 13 pixels high at any resolution.
class NotingLetters final : public headless::BlockTextPainter {
  public:
    void draw(const raster::PixelBuffer& buffer, raster::PixelPoint at, std::wstring_view text,
              const raster::Font& font, raster::Rgb color) override {
        const raster::PixelSize size = textSize(text, font);
        boxes.push_back({at.x, at.y, at.x + size.width, at.y + size.height});
        texts.emplace_back(text);
        BlockTextPainter::draw(buffer, at, text, font, color);
    }
    std::vector<raster::PixelRect> boxes;
    std::vector<std::wstring> texts;
};

inline KnobPalette contrastPalette() {
    KnobPalette palette;
    palette.face = 0x000000;
    palette.text = 0xFFFFFF;
    palette.accent = 0x00FFFF;
    palette.grayText = 0x00FF00;
    palette.highContrast = true;
    return palette;
}

inline void addDecades(tdKnob& knob) {
    knob.bOption2 = true;
    bool first = true;
    for (const auto& [label, value] : {std::pair{L"500K", 0.5},
                                       {L"1M", 1.0},
                                       {L"2M", 2.0},
                                       {L"5M", 5.0},
                                       {L"10M", 10.0},
                                       {L"20M", 20.0},
                                       {L"50M", 50.0},
                                       {L"100M", 100.0},
                                       {L"200M", 200.0},
                                       {L"500M", 500.0},
                                       {L"1G", 1000.0}}) {
        knob.AddStop(first, label, value);
        first = false;
    }
}

/// A range of 0 to 100 by tens, at 50, which clicks from detent to detent.
class KnobTurn : public testing::Test {
  protected:
    KnobTurn() {
        knob.dStep = 10.0;
        knob.setDVal(50.0);
        listen(knob, heard);
        knob.setSCaption(L"Level");
        knob.bShowValue = true;
        image.paint(knob);
    }

    /// Presses, by default at the caption, far from the rim, and moves past the first pixels, which turn nothing.
    void takeAnywhere(int x = 4, int y = 4) {
        knob.mouseDown(x, y + 3, kPlain);
        knob.mouseMove(x, y, kPlain);
    }

    /// Moves from point to point and releases at the last one. Returns the events, with "-" for a move without any.
    Heard pushed(const std::vector<std::pair<int, int>>& path) {
        Heard all;
        for (const auto& [x, y] : path) {
            knob.mouseMove(x, y, kPlain);
            Heard now = taken(heard);
            if (now.empty())
                now.emplace_back("-");
            all.insert(all.end(), now.begin(), now.end());
        }
        knob.mouseUp(path.back().first, path.back().second, kPlain);
        for (const std::string& event : taken(heard))
            all.push_back(event);
        return all;
    }

    /// A point on a circle around the dial's middle; in this picture the dial is between caption and read-out.
    [[nodiscard]] std::pair<int, int> rim(double degrees, double radius = 25.0) const {
        const double angle = degrees * std::numbers::pi / 180.0;
        return {static_cast<int>(std::lround(60.0 + radius * std::sin(angle) - 0.5)),
                static_cast<int>(std::lround(54.0 - radius * std::cos(angle) - 0.5))};
    }

    tdKnob knob{nullptr, L"tdKn"};
    Heard heard;
    KnobImage image{120, 110};
};

}  // namespace kv::turndial
