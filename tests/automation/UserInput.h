// Mouse and keyboard input in the windows of an active control, for the tests of what the user turns and presses.
#pragma once

#include <gmock/gmock.h>

#include <cmath>
#include <source_location>
#include <string>
#include <vector>

#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {

/// An active control in a container with an event sink. A message box fails the test.
class UserInput : public testing::Test {
  protected:
    Container container;
    ComPtr<EventSink> sink;
    MessageBoxes boxes;

    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(container.activate());
        sink = new EventSink;
        container.connect(sink.Get());
    }
    void TearDown() override { EXPECT_TRUE(boxes.seen().empty()) << "a message box came up"; }

    [[nodiscard]] double number(HRESULT (STDMETHODCALLTYPE _kvBandscope::*getter)(double*)) const {
        double value = 0.0;
        EXPECT_EQ((container.control.Get()->*getter)(&value), S_OK);
        return value;
    }
    [[nodiscard]] double minFreq() const { return number(&_kvBandscope::get_DisplayMinFreq); }
    [[nodiscard]] double maxFreq() const { return number(&_kvBandscope::get_DisplayMaxFreq); }
    [[nodiscard]] double center() const { return number(&_kvBandscope::get_DisplayCenterFreq); }
    [[nodiscard]] double cursor() const { return number(&_kvBandscope::get_CursorVal); }
    void expectRange(double minimum, double maximum) const {
        EXPECT_NEAR(minFreq(), minimum, 1e-9);
        EXPECT_NEAR(maxFreq(), maximum, 1e-9);
    }

    [[nodiscard]] HWND spectrum() const { return container.pictureBox(L"picSpectrum"); }
    [[nodiscard]] HWND gridKnob() const { return container.child(L"tdKnob", L"Grid (Hz)"); }
    [[nodiscard]] HWND centerMover() const { return container.child(L"tdKnMover", L"Center Freq (MHz)"); }
    [[nodiscard]] HWND cursorMover() const { return container.child(L"tdKnMover", L"Cursor Freq (MHz)"); }
    [[nodiscard]] Picture shown() const {
        pump();
        return windowPicture(spectrum());
    }

    /// The control shows 380 to 480 MHz in 20 divisions of 5 MHz, around 430.
    void fill() {
        EXPECT_EQ(container.control->put_FreqEndBuffer(20.0), S_OK);
        container.addTx({.freq = 400.0, .lo = 400.0, .hi = 401.0, .power = 30.0, .key = L"TX1", .color = 0xFF});
        container.addRx({.freq = 460.0, .lo = 459.0, .hi = 460.0, .key = L"RX1", .color = 0xFF00});
        EXPECT_TRUE(container.draw());
        expectRange(380.0, 480.0);
    }
    /// The grid knob is at the step that is shown, and the cursor with its line is on the center.
    void fillInStep() {
        fill();
        EXPECT_EQ(container.control->RescaleAll(), S_OK);
        EXPECT_EQ(container.control->DrawNewCenterFreq(), S_OK);
        pump();
    }
    /// The pixel column of a frequency between 380 and 480 MHz.
    [[nodiscard]] int columnOf(double frequency) const {
        return static_cast<int>(std::lround((frequency - 380.0) * shown().width / 100.0));
    }
    /// Columns in which two pictures differ.
    [[nodiscard]] static std::vector<int> changedColumns(const Picture& before, const Picture& after) {
        EXPECT_EQ(before.width, after.width);
        EXPECT_EQ(before.height, after.height);
        if (before.pixels.size() != after.pixels.size())
            return {};
        std::vector<int> columns;
        for (int x = 0; x < before.width; ++x) {
            bool differs = false;
            for (int y = 0; y < before.height && !differs; ++y)
                differs = before.at(x, y) != after.at(x, y);
            if (differs)
                columns.push_back(x);
        }
        return columns;
    }
    /// Both pictures are the same; a failure lists the columns that differ.
    static void expectSame(const Picture& now, const Picture& expected,
                           const std::source_location& from = std::source_location::current()) {
        EXPECT_THAT(changedColumns(now, expected), testing::IsEmpty()) << "in line " << from.line();
    }

    /// `notches` of the wheel, each a separate movement. Above 0 means away from the user.
    static void wheel(HWND knob, int notches) {
        for (int left = notches < 0 ? -notches : notches; left > 0; --left)
            PostMessageW(knob, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(notches < 0 ? -120 : 120)), 0);
        pump();
    }
    static void keyDown(HWND knob, WPARAM code) {
        PostMessageW(knob, WM_KEYDOWN, code, 1);
        pump();
    }
    static void keyUp(HWND knob, WPARAM code) {
        PostMessageW(knob, WM_KEYUP, code, static_cast<LPARAM>(0xC0000001));
        pump();
    }
    static void key(HWND knob, WPARAM code) {
        keyDown(knob, code);
        keyUp(knob, code);
    }
    static void mouse(HWND knob, UINT message, WPARAM buttons, int x, int y) {
        PostMessageW(knob, message, buttons, MAKELPARAM(x, y));
        pump();
    }
    /// Presses beside the dial or on the middle of the wheel, and moves past the pixels that turn nothing.
    static void take(HWND knob, int x, int y) {
        mouse(knob, WM_LBUTTONDOWN, MK_LBUTTON, x, y + 4);
        mouse(knob, WM_MOUSEMOVE, MK_LBUTTON, x, y);
    }
    static void drag(HWND knob, int x, int y) { mouse(knob, WM_MOUSEMOVE, MK_LBUTTON, x, y); }
    static void release(HWND knob, int x, int y) { mouse(knob, WM_LBUTTONUP, 0, x, y); }

    /// The user's choice in the grid-range box.
    void choose(int item) const {
        container.chooseGridRange(item);
        pump();
    }
};

}  // namespace kv::test
