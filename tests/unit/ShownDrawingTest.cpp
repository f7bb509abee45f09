// What a window of the spectrum shows while `DrawDisplay` lets events run between its steps.
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

/// A window that is painted when events run, as the system paints it, or at once.
class PaintedPeer final : public formenv::Peer {
  public:
    explicit PaintedPeer(formenv::PictureBox& box) : box_(box) { box_.setPeer(this); }
    ~PaintedPeer() override { box_.setPeer(nullptr); }
    PaintedPeer(const PaintedPeer&) = delete;
    PaintedPeer& operator=(const PaintedPeer&) = delete;

    void changed(formenv::Change what) override {
        invalid_ = invalid_ || what == formenv::Change::Picture || what == formenv::Change::PictureNow;
        if (what == formenv::Change::PictureNow)
            paintPending();
    }
    void paintPending() {
        if (!std::exchange(invalid_, false))
            return;
        ++paints;
        shown = headless::pixelsOf(box_.surface().pixels());
        box_.shown();
    }

    int paints = 0;
    std::vector<std::uint32_t> shown;

  private:
    formenv::PictureBox& box_;
    bool invalid_ = false;
};

class ShownDrawingTest : public ScopeTest {
  protected:
    ShownDrawingTest() {
        channel = addTX(450.0, 2.0, 20.0);
        scope.DrawDisplay();
        platform.onPump = [this] {
            if (const std::function<void()> happens = std::exchange(event, nullptr))
                happens();
            spectrum.paintPending();
            labels.paintPending();
        };
        scope.DrawDisplay();
        spectrum.paints = labels.paints = 0;
    }

    SlotRef channel;
    std::function<void()> event;
    PaintedPeer spectrum{ui.picSpectrum};
    PaintedPeer labels{ui.picUnits};
};

TEST_F(ShownDrawingTest, EachWindowIsPaintedOnceWithTheWholePicture) {
    channel->fields().dPwrDBM = 30.0;
    scope.setNGridX(6);
    scope.DrawDisplay();
    EXPECT_EQ(spectrum.paints, 1);
    EXPECT_EQ(labels.paints, 1);
    EXPECT_TRUE(spectrum.shown == pixelsOf(ui.picSpectrum));
    EXPECT_TRUE(labels.shown == pixelsOf(ui.picUnits));
}

TEST_F(ShownDrawingTest, LabelsThatStayTheSameAreNotPainted) {
    channel->fields().dPwrDBM = 30.0;
    scope.DrawDisplay();
    EXPECT_EQ(spectrum.paints, 1);
    EXPECT_EQ(labels.paints, 0);
}

TEST_F(ShownDrawingTest, WhatAnEventDrawsBetweenTheStepsIsShownAtOnce) {
    scope.setCursorVal(455.0);
    spectrum.paintPending();
    spectrum.paints = 0;
    event = [&] {
        event = [&] {
            scope.setCursorVal(452.0);
            spectrum.paintPending();
            EXPECT_EQ(spectrum.paints, 1);
        };
    };
    scope.DrawDisplay();
    EXPECT_FALSE(event) << "no event ran between the steps";
    EXPECT_TRUE(spectrum.shown == pixelsOf(ui.picSpectrum));
}

TEST_F(ShownDrawingTest, WhatWasDrawnBeforeAnErrorIsShown) {
    event = [&] { event = [] { throw util::RuntimeError(util::error_number::kInternal); }; };
    EXPECT_FALSE(scope.DrawDisplay());
    EXPECT_EQ(takeReport().procedure, L"DrawDisplay");
    spectrum.paintPending();
    EXPECT_EQ(spectrum.paints, 1);
    EXPECT_TRUE(spectrum.shown == pixelsOf(ui.picSpectrum));
}

TEST_F(ShownDrawingTest, NothingIsHeldBackWhileAChannelsErrorIsReported) {
    channel->onRead = [&](std::string_view member) {
        if (member == "drawRecord")
            throw util::RuntimeError(util::error_number::kInternal);
    };
    scope.DrawDisplay();
    EXPECT_EQ(takeReport().procedure, L"DrawDisplayTX");
    EXPECT_EQ(spectrum.paints, 1);
    EXPECT_TRUE(spectrum.shown == pixelsOf(ui.picSpectrum));
}

TEST_F(ShownDrawingTest, JustDrawItShowsThePictureWhenItsEventsRun) {
    scope.JustDrawIt();
    EXPECT_EQ(spectrum.paints, 1);
}

}  // namespace
}  // namespace kv::control
