// What tests of the displayed range look at.
#pragma once

#include "tests/unit/ScopeFixture.h"

namespace kv::control {

class RangeTest : public ScopeTest {
  protected:
    void expectRange(double minimum, double maximum) {
        EXPECT_DOUBLE_EQ(scope.DisplayMinFreq(), minimum);
        EXPECT_DOUBLE_EQ(scope.DisplayMaxFreq(), maximum);
    }
    void expectScale(const raster::UserScale& expected) {
        const raster::UserScale scale = ui.picSpectrum.scale();
        EXPECT_DOUBLE_EQ(scale.left, expected.left);
        EXPECT_DOUBLE_EQ(scale.top, expected.top);
        EXPECT_DOUBLE_EQ(scale.width, expected.width);
        EXPECT_DOUBLE_EQ(scale.height, expected.height);
    }
};

}  // namespace kv::control
