// What the naive painters of both platforms have in common: which pixels a channel takes.
#pragma once

#include <algorithm>
#include <cmath>

#include "bench/NaivePainter.h"

namespace kv::bench {

class NaiveScale {
  public:
    explicit NaiveScale(const View& view) : view_(view) {}

    [[nodiscard]] int column(double frequency) const {
        return nearest((frequency - view_.minFreq) / (view_.maxFreq - view_.minFreq) * kPictureWidth);
    }
    [[nodiscard]] int row(double power) const {
        return nearest((power - view_.maxPwr) / (view_.minPwr - view_.maxPwr) * kPictureHeight);
    }

    /// Calls box(left, top, right, bottom), corners included, and line(x, from, to).
    template <class Box, class Line>
    void shapes(const Channel& channel, Box&& box, Line&& line) const {
        if (channel.dFreqLo > view_.maxFreq || channel.dFreqHi < view_.minFreq)
            return;
        const int bottom = row(view_.minPwr);
        const int top = row(channel.dPwrDBM > view_.minPwr ? channel.dPwrDBM : view_.maxPwr / 2.0);
        box(column(std::max(channel.dFreqLo, view_.minFreq)), top, column(std::min(channel.dFreqHi, view_.maxFreq)),
            bottom);
        if (channel.dFreq >= view_.minFreq && channel.dFreq <= view_.maxFreq)
            line(column(channel.dFreq), bottom, top);
    }

  private:
    static int nearest(double value) { return static_cast<int>(std::floor(value + 0.5)); }
    View view_;
};

}  // namespace kv::bench
