// What all knobs do: one turn at a time, from the first touch to the events at its end.
#include <algorithm>
#include <cmath>
#include <utility>

#include "turndial/Knob.h"
#include "util/NumberFormat.h"

namespace kv::turndial {

using raster::SmoothPoint;

namespace {

constexpr int kNotch = 120;
// Pixels at 96 dpi that the pointer may move in a click.
constexpr double kStray = 2.0;

/// Detents that a key turns by, 0 for none.
int detentsOf(Key key, int page) {
    switch (key) {
        case Key::Right:
        case Key::Up:
            return 1;
        case Key::Left:
        case Key::Down:
            return -1;
        case Key::PageUp:
            return page;
        case Key::PageDown:
            return -page;
        default:
            return 0;
    }
}

/// The value to 12 significant digits: the digits after them are only rounding errors.
double withoutRounding(double value) {
    constexpr int kDigits = 12;
    const double exponent = std::floor(std::log10(std::abs(value)));
    // Zeros and values that are not finite are not rounded, nor are those for which the scale would not be exact.
    if (!(std::abs(exponent) < 10.0))
        return value;
    const double scale = std::pow(10.0, kDigits - 1 - exponent);
    return std::round(value * scale) / scale;
}

SmoothPoint middleOfPixel(int x, int y) {
    return {x + 0.5, y + 0.5};
}

}  // namespace

void KnobBase::setDVal(double value) {
    if (dVal_ == value || (std::isnan(dVal_) && std::isnan(value)))
        return;
    dVal_ = value;
    valText_.clear();
    tellPeer(formenv::Change::Value);
}

void KnobBase::setSValText(std::wstring text) {
    if (valText_ == text)
        return;
    valText_ = std::move(text);
    tellPeer(formenv::Change::Value);
}

std::wstring KnobBase::readOut() const {
    return util::formatNumber(sFormat.empty() ? withoutRounding(dVal_) : dVal_, sFormat);
}

void KnobBase::begin(Hold hold) {
    endTurn();
    hold_ = hold;
    ++turn_;
    told_ = false;
    moved_ = false;
    turnBegins();
    if (const std::function<void()> handler = onTurnBegin)
        handler();
    Refresh();
}

void KnobBase::letGo() {
    hold_ = Hold::None;
    ++turn_;
    Refresh();
}

void KnobBase::endTurn() {
    if (hold_ == Hold::None)
        return;
    const bool told = told_;
    letGo();
    // A copy, because the handler may replace itself.
    const std::function<void()> handler = onTurnEnd;
    if (told && handler)
        handler();
}

bool KnobBase::tell(double value) {
    told_ = true;
    const unsigned mine = turn_;
    const std::function<void(double)> handler = onValueChanged;
    if (!handler)
        return true;
    try {
        handler(value);
    } catch (...) {
        if (turn_ == mine)
            letGo();
        throw;
    }
    return turn_ == mine;
}

void KnobBase::mouseDown(int x, int y, Modifiers /*modifiers*/) {
    if (!enabled())
        return;
    begin(Hold::Mouse);
    last_ = middleOfPixel(x, y);
    press(last_);
}

void KnobBase::mouseMove(int x, int y, Modifiers modifiers) {
    const SmoothPoint at = middleOfPixel(x, y);
    if (hold_ != Hold::Mouse) {
        point(at);
        return;
    }
    if (!enabled()) {
        endTurn();
        return;
    }
    const double unit = pixelUnit(dpi_);
    if (!moved_) {
        moved_ = std::hypot(at.x - last_.x, at.y - last_.y) > kStray * unit;
        if (moved_)
            last_ = at;
        return;
    }
    const SmoothPoint from = std::exchange(last_, at);
    drag(from, at, ((at.x - from.x) + (from.y - at.y)) / unit, modifiers.control);
}

void KnobBase::mouseUp(int x, int y, Modifiers modifiers) {
    if (hold_ != Hold::Mouse)
        return;
    const unsigned mine = turn_;
    mouseMove(x, y, modifiers);
    if (turn_ == mine)
        endTurn();
}

void KnobBase::wheel(int delta, Modifiers modifiers) {
    // While the mouse drags the knob, the wheel is ignored, because it can be moved by accident.
    if (!enabled() || hold_ == Hold::Mouse)
        return;
    if ((delta > 0) != (wheelRest_ > 0))
        wheelRest_ = 0;
    const int notches = delta / kNotch + (wheelRest_ + delta % kNotch) / kNotch;
    wheelRest_ = (wheelRest_ + delta % kNotch) % kNotch;
    if (notches == 0)
        return;
    begin(Hold::Wheel);
    const unsigned mine = turn_;
    turnBy(notches, modifiers.control);
    if (turn_ == mine)
        endTurn();
}

bool KnobBase::wantsKey(Key key) const {
    if (!enabled())
        return false;
    if (key == Key::Escape)
        return hold_ != Hold::None;
    if (key == Key::Home || key == Key::End)
        return hasEnds();
    return detentsOf(key, page()) != 0;
}

bool KnobBase::keyDown(Key key, Modifiers modifiers) {
    if (!wantsKey(key))
        return false;
    if (key == Key::Escape) {
        cancel();
        return true;
    }
    if (hold_ == Hold::Mouse)
        return true;
    if (hold_ != Hold::Key)
        begin(Hold::Key);
    heldKey_ = key;
    if (const int detents = detentsOf(key, page())) {
        turnBy(detents, modifiers.control);
    } else {
        turnToEnd(key == Key::End);
    }
    return true;
}

void KnobBase::keyUp(Key key) {
    if (hold_ == Hold::Key && key == heldKey_)
        endTurn();
}

void KnobBase::focus(bool has) {
    focus_ = has;
    wheelRest_ = 0;
    Refresh();
    if (!has)
        endTurn();
}

void KnobBase::hover(bool over) {
    hover_ = over;
    Refresh();
}

void KnobBase::captureLost() {
    if (hold_ == Hold::Mouse)
        endTurn();
}

void KnobBase::cancel() {
    const bool told = told_;
    letGo();
    if (!told)
        return;
    takeBack();
    if (const std::function<void()> handler = onGivenUp)
        handler();
}

void KnobBase::paint(const raster::PixelBuffer& buffer, raster::TextPainter& text, int dpi,
                     const KnobPalette& palette) {
    dpi_ = std::max(dpi, 1);
    const KnobLook look{enabled(), hover_, focus_, hold_ != Hold::None};
    const KnobPicture picture(buffer, text, dpi_, inkFor(palette, look), look, font());
    paintBody(picture, paintPanel(picture, caption(), bShowValue ? sValText() : std::wstring(), isReadOutBorrowed()));
    if (look.focus && look.enabled)
        paintFocus(picture);
}

}  // namespace kv::turndial
