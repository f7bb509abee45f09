// Other system colors, in containers that pass the message on and in those that do not.
#include <gmock/gmock.h>

#include "tests/automation/Container.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

/// Another system color for the time of a block.
class OtherColor {
  public:
    OtherColor(int index, COLORREF color) : index_(index), before_(GetSysColor(index)) { set(color); }
    ~OtherColor() { set(before_); }
    OtherColor(const OtherColor&) = delete;
    OtherColor& operator=(const OtherColor&) = delete;

  private:
    void set(COLORREF color) const {
        EXPECT_TRUE(SetSysColors(1, &index_, &color));
        EXPECT_EQ(GetSysColor(index_), color);
        pump();
    }
    int index_;
    COLORREF before_;
};

constexpr COLORREF kTestColor = RGB(190, 220, 170);

class SystemColors : public testing::Test {
  protected:
    Container container;

    void SetUp() override {
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
        ASSERT_NO_FATAL_FAILURE(container.activate());
    }
    void fill() {
        container.addTx({.freq = 430.0, .lo = 400.0, .hi = 460.0, .power = 30.0, .color = RGB(200, 30, 40)});
        EXPECT_TRUE(container.draw());
    }
    Picture spectrum() const { return windowPicture(container.pictureBox(L"picSpectrum")); }
    static int share(const Picture& picture, COLORREF color) {
        return 100 * picture.count(color, picture.all()) / (picture.width * picture.height);
    }
};

TEST_F(SystemColors, ADrawnSpectrumIsDrawnAgain) {
    fill();
    const Picture before = spectrum();
    const COLORREF former = GetSysColor(COLOR_WINDOW);
    {
        const OtherColor other(COLOR_WINDOW, kTestColor);
        const Picture now = spectrum();
        EXPECT_GT(share(now, kTestColor), 10);
        EXPECT_EQ(now.count(kTestColor, now.all()), before.count(former, before.all()));
        EXPECT_GT(now.count(RGB(200, 30, 40), now.all()), 100) << "the channel is still there";
    }
    EXPECT_EQ(spectrum(), before);
}

TEST_F(SystemColors, TheStripOfLabelsFollows) {
    fill();
    const HWND strip = container.pictureBox(L"picUnits");
    const Picture before = windowPicture(strip);
    const OtherColor other(COLOR_BTNFACE, kTestColor);
    const Picture now = windowPicture(strip);
    EXPECT_NE(now, before);
    EXPECT_GT(now.count(kTestColor, now.all()), 1000);
}

TEST_F(SystemColors, AClearedSpectrumStaysClear) {
    fill();
    EXPECT_EQ(container.control->ClearDisplay(), S_OK);
    EXPECT_EQ(container.control->ClearDisplayLabels(), S_OK);
    const OtherColor other(COLOR_WINDOW, kTestColor);
    EXPECT_EQ(share(spectrum(), kTestColor), 100);
}

TEST_F(SystemColors, AColorSetByTheHostStays) {
    EXPECT_EQ(container.control->put_lColorSpecBack(RGB(250, 240, 230)), S_OK);
    fill();
    const Picture before = spectrum();
    const OtherColor other(COLOR_WINDOW, kTestColor);
    EXPECT_EQ(spectrum(), before);
}

TEST_F(SystemColors, ChangesWhileInactiveAreShownAfterwards) {
    fill();
    EXPECT_EQ(container.as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    const OtherColor other(COLOR_WINDOW, kTestColor);
    EXPECT_EQ(container.as<IOleObject>()->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, container.site.Get(), 0,
                                                 container.host.get(), &container.site->place),
              S_OK);
    pump();
    EXPECT_GT(share(spectrum(), kTestColor), 10);
}

}  // namespace
}  // namespace kv::test
