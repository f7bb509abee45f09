#include "control/PowerAxis.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace kv::control {

namespace {

constexpr int kLineHeights = 2;      // from one line to the next, at least
constexpr int kAxisMargin = 3;       // pixels at 96 dots per inch, left of the labels
constexpr int kAxisDash = 1;         // pixels at 96 dots per inch
constexpr int kAxisGap = 3;          // the same
constexpr double kClosest = 1e-12;   // a span below this share of its powers has no numbers of its own
constexpr double kFixedBelow = 1e7;  // dBm; other numbers are written with an exponent
constexpr double kFixedFrom = 1e-4;  // dBm
constexpr std::wstring_view kUnit = L" dBm";

int exponentOf(double value) noexcept {
    return static_cast<int>(std::floor(std::log10(value)));
}

/// `power` with as many digits as tell it from its neighbors at the distance of `step`. `greatest` is the greatest
/// magnitude on the axis.
std::wstring textOf(double power, double step, double greatest) {
    constexpr int kMostDigits = 17;
    std::array<char, 64> digits{};
    char* const end = digits.data() + digits.size();
    std::to_chars_result written{};
    // A little above the step, so that 0.01 counts as 10 to the power of -2 although it is no exact number.
    const int stepExponent = exponentOf(step * (1.0 + 1e-9));
    const double shown = std::abs(power) < step / 2.0 ? 0.0 : power;
    if (greatest < kFixedBelow && greatest >= kFixedFrom) {
        written = std::to_chars(digits.data(), end, shown, std::chars_format::fixed, std::max(-stepExponent, 0));
    } else if (shown == 0.0) {
        return L"0";
    } else {
        const int places = std::clamp(exponentOf(std::abs(shown)) - stepExponent, 0, kMostDigits);
        written = std::to_chars(digits.data(), end, shown, std::chars_format::scientific, places);
    }
    return {digits.data(), written.ptr};
}

}  // namespace

double niceStep(double least) noexcept {
    constexpr double kRounding = 1.0 - 1e-12;
    if (!(least > 0.0) || !std::isfinite(least))
        return 0.0;
    const double decade = std::pow(10.0, exponentOf(least));
    for (const double factor : {1.0, 2.0, 5.0, 10.0}) {
        const double step = factor * decade;
        if (std::isfinite(step) && step >= least * kRounding && step > 0.0)
            return step;
    }
    return 0.0;
}

PowerAxis::PowerAxis(formenv::PictureBox& picture, OverlayInk& ink) {
    const raster::PixelMap map = picture.pixelMap();
    const raster::PixelSize character = ink.textSize(L"0");
    if (!OverlayInk::isReadable(character) || map.size.width <= 0 || map.size.height < kLineHeights * character.height)
        return;
    const double span = std::abs(map.scale.height);
    const double greatest = std::max(std::abs(map.scale.top), std::abs(map.scale.top + map.scale.height));
    if (!std::isfinite(greatest) || !(span > greatest * kClosest))
        return;
    step_ = niceStep(span / map.size.height * kLineHeights * character.height);
    if (step_ > 0.0)
        addLines(map);
    placeLabels(ink);
    if (lines_.empty())
        step_ = 0.0;
}

void PowerAxis::addLines(const raster::PixelMap& map) {
    const auto [low, high] = std::minmax({map.scale.top, map.scale.top + map.scale.height});
    const double greatest = std::max(std::abs(low), std::abs(high));
    const double first = std::ceil(low / step_);
    // Rows are counted as well, because a power as a multiple of the step is not exact.
    for (int i = 0; i <= map.size.height; ++i) {
        const double power = (first + i) * step_;
        if (!(power <= high))
            return;
        const int row = map.y(power);
        // The frame of the picture is at its first and last row.
        if (row > 0 && row < map.size.height - 1)
            lines_.push_back({power, row, textOf(power, step_, greatest), {}});
    }
}

void PowerAxis::placeLabels(OverlayInk& ink) {
    const int height = ink.size().height;
    const int left = ink.scaled(kAxisMargin);
    bool hasUnit = false;
    for (auto line = lines_.rbegin(); line != lines_.rend(); ++line) {
        std::wstring text = hasUnit ? line->text : line->text + std::wstring(kUnit);
        const raster::PixelSize size = ink.textSize(text);
        const int top = line->row - size.height / 2;
        const raster::PixelRect label{left, top, left + size.width, top + size.height};
        if (top < 0 || label.bottom > height || label.right > ink.size().width / 2) {
            line->text.clear();
            continue;
        }
        line->text = std::move(text);
        line->label = label;
        hasUnit = true;
    }
    // A line without any number beside it says nothing.
    if (!hasUnit)
        lines_.clear();
}

int PowerAxis::right() const noexcept {
    int right = 0;
    for (const Line& line : lines_)
        right = std::max(right, line.label.right);
    return right;
}

void PowerAxis::drawLines(OverlayInk& ink) const {
    const int dash = ink.scaled(kAxisDash);
    const int period = dash + ink.scaled(kAxisGap);
    const int width = ink.size().width;
    for (const Line& line : lines_) {
        for (int x = 0; x < width; x += period)
            ink.line({x, line.row}, {std::min(x + dash, width), line.row});
    }
}

void PowerAxis::drawLabels(OverlayInk& ink) const {
    for (const Line& line : lines_) {
        if (line.text.empty())
            continue;
        ink.clear(line.label);
        ink.text({line.label.left, line.label.top}, line.text);
    }
}

}  // namespace kv::control
