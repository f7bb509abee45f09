// The panel as it was designed, in pixels at 96 dots an inch. Users know where things are, and test tools click there.
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

constexpr double kPixel = 15.0;  // twips

struct Designed {
    const wchar_t* name;
    double left;
    double top;
    double width;
    double height;
};

constexpr Designed kPanel[] = {
    {L"lblNumTX", 11, 25, 169, 15},        {L"lblTXRange", 11, 40, 169, 15},      {L"lblNumRX", 11, 59, 169, 15},
    {L"lblRXRange", 11, 74, 169, 15},      {L"lblFMHz", 11, 95, 169, 15},         {L"lblFromCenter", 11, 110, 169, 15},
    {L"lblPwrdBm", 11, 125, 100, 15},      {L"lblNumOther", 115, 125, 56, 15},    {L"tdKnMovCenter", 180, 21, 114, 122},
    {L"tdKnCenter", 180, 21, 114, 122},    {L"tdKnMovCursor", 300, 21, 114, 122}, {L"tdKnCursor", 300, 21, 114, 122},
    {L"cmdCenterCursor", 416, 70, 22, 22}, {L"tdKnGrid", 446, 21, 138, 122},      {L"lblGridRange", 594, 28, 52, 15},
    {L"cboGridRange", 652, 24, 54, 120},   {L"chkShowMouse", 594, 50, 112, 17},   {L"chkViewAllxx", 594, 69, 58, 17},
    {L"chkOrder", 659, 69, 51, 17},        {L"cmdDrawTX", 594, 92, 54, 23},       {L"cmdDrawRX", 652, 92, 54, 23},
    {L"cmdClear", 652, 119, 54, 23},
};

constexpr const wchar_t* kAids[] = {L"Command1", L"Command2", L"Command3", L"Command4", L"Text1",
                                    L"Text2",    L"Text3",    L"Text4",    L"Text5"};

class PanelArrangementTest : public ScopeTest {
  protected:
    void resize(double width, double height) { scope.resize(width * kPixel, height * kPixel); }
    const formenv::Widget* named(std::wstring_view name) {
        for (const formenv::Widget* child : ui.fraControl.children()) {
            if (child->name() == name)
                return child;
        }
        ADD_FAILURE() << "no " << ::testing::PrintToString(std::wstring(name));
        return &ui.fraControl;
    }
};

TEST_F(PanelArrangementTest, ThePartsAreWhereTheyWereDesigned) {
    for (const Designed& part : kPanel) {
        const formenv::Place place{part.left * kPixel, part.top * kPixel, part.width * kPixel, part.height * kPixel};
        EXPECT_EQ(named(part.name)->place(), place) << ::testing::PrintToString(std::wstring(part.name));
    }
}

/// In pixels, as `kPanel`.
formenv::Place pixels(double left, double top, double width, double height) {
    return {left * kPixel, top * kPixel, width * kPixel, height * kPixel};
}

TEST_F(PanelArrangementTest, AWidePanelHasLargeReadoutsToTheRightOfAllOtherParts) {
    const double panel = 722.0 + 220.0 + 10.0;
    resize(panel + 8.0, 480.0);
    EXPECT_EQ(ui.lblFMHz.place(), pixels(722, 44, 220, 30));
    EXPECT_EQ(ui.lblFromCenter.place(), pixels(722, 78, 220, 20));
    EXPECT_EQ(ui.lblFMHz.font().points, 16.0);
    EXPECT_EQ(ui.lblFromCenter.font().points, 10.0);
    resize(panel + 100.0 + 8.0, 480.0);
    EXPECT_EQ(ui.lblFMHz.place(), pixels(722, 44, 320, 30));
    for (const Designed& part : kPanel) {
        if (std::wstring(part.name) != L"lblFMHz" && std::wstring(part.name) != L"lblFromCenter") {
            EXPECT_EQ(named(part.name)->place(), pixels(part.left, part.top, part.width, part.height))
                << ::testing::PrintToString(std::wstring(part.name));
        }
    }
}

TEST_F(PanelArrangementTest, APanelOnePixelTooNarrowKeepsTheReadoutsInTheLeftColumn) {
    const double panel = 722.0 + 220.0 + 10.0;
    resize(panel + 8.0, 480.0);
    resize(panel - 1.0 + 8.0, 480.0);
    EXPECT_EQ(ui.lblFMHz.place(), pixels(11, 95, 169, 15));
    EXPECT_EQ(ui.lblFromCenter.place(), pixels(11, 110, 169, 15));
    EXPECT_EQ(ui.lblFMHz.font(), raster::Font());
    EXPECT_EQ(ui.lblFromCenter.font(), raster::Font());
}

TEST_F(PanelArrangementTest, TheDevelopmentAidsAreInTheUpperLeftCorner) {
    for (const wchar_t* name : kAids)
        EXPECT_EQ(named(name)->place(), (formenv::Place{0.0, 0.0, 72.0 * kPixel, 22.0 * kPixel}));
}

TEST_F(PanelArrangementTest, AFreshControlHasItsSizeAndColors) {
    EXPECT_EQ(ui.userControl.place(), (formenv::Place{0.0, 0.0, 10800.0, 7200.0}));
    EXPECT_EQ(ui.fraControl.place(), (formenv::Place{60.0, 4860.0, 10680.0, 2280.0}));
    EXPECT_EQ(ui.fraControl.caption(), L"-");
    EXPECT_EQ(ui.cmdCenterCursor.glyph, formenv::Glyph::ToCenter);
    EXPECT_EQ(ui.picUnits.backColor(), 0x8000000FU);
    EXPECT_EQ(ui.picSpectrum.backColor(), 0x80000005U);
    EXPECT_EQ(ui.picSpectrum.foreColor(), 0x00808080U);
    for (const formenv::Label* label : {&ui.lblTXRange, &ui.lblRXRange, &ui.lblNumTX, &ui.lblNumRX})
        EXPECT_FALSE(label->visible()) << ::testing::PrintToString(label->name());
    for (const formenv::Label* label : {&ui.lblTXRange, &ui.lblRXRange, &ui.lblFromCenter, &ui.lblPwrdBm, &ui.lblFMHz,
                                        &ui.lblNumOther, &ui.lblNumRX, &ui.lblNumTX})
        EXPECT_EQ(label->backColor(), 0x8000000FU);
}

}  // namespace
}  // namespace kv::control
