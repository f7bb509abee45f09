// Power axis, legend and channel labels as a host switches them on: on the control's own view, and by name on a View.
#include "tests/automation/Errors.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

const wchar_t* const kOverlays[] = {L"PowerAxis", L"Legend", L"ChannelLabels"};

class OverlayMembersTest : public testing::TestWithParam<Way> {
  protected:
    Plot plot;
    ComPtr<_BandscopeView> view;

    void SetUp() override {
        plot.scope.AddTXChnl(
            channel({.freq = 450.0, .bw = 500.0, .power = 40.0, .key = L"TX1", .label = L"channel one"}));
        ASSERT_EQ(plot.scope->put_DisplayMaxPwr(100.0), S_OK);
        ASSERT_EQ(plot.scope->put_DisplayMinPwr(0.0), S_OK);
        ASSERT_EQ(plot.scope.get()->QueryInterface(IID_PPV_ARGS(view.GetAddressOf())), S_OK);
        ASSERT_EQ(view->ShowRange(440.0, 460.0), S_OK);
        if (GetParam() == Way::early)
            return;
        view = createInstance<_BandscopeView>(CLSID_View);
        ASSERT_EQ(view->putref_Scope(plot.scope.get()), S_OK);
    }
    bool isOn(const wchar_t* member) {
        if (GetParam() == Way::late)
            return get(view.Get(), member).result.boolVal == VARIANT_TRUE;
        VARIANT_BOOL value = 5;
        EXPECT_EQ(read(member, value), S_OK);
        return value == VARIANT_TRUE;
    }
    HRESULT read(const wchar_t* member, VARIANT_BOOL& value) {
        return member == kOverlays[0]   ? view->get_PowerAxis(&value)
               : member == kOverlays[1] ? view->get_Legend(&value)
                                        : view->get_ChannelLabels(&value);
    }
    void set(const wchar_t* member, bool on) {
        if (GetParam() == Way::late) {
            EXPECT_EQ(put(view.Get(), member, {Var(on)}).hr, S_OK);
            return;
        }
        const VARIANT_BOOL value = on ? VARIANT_TRUE : VARIANT_FALSE;
        EXPECT_EQ(member == kOverlays[0]   ? view->put_PowerAxis(value)
                  : member == kOverlays[1] ? view->put_Legend(value)
                                           : view->put_ChannelLabels(value),
                  S_OK);
    }
};
INSTANTIATE_TEST_SUITE_P(Both, OverlayMembersTest, testing::Values(Way::early, Way::late), nameOf);

TEST_P(OverlayMembersTest, AreOffAtTheStartAndDrawAsSoonAsTheyAreSwitchedOn) {
    const Picture plain = plot.picture();
    for (const wchar_t* member : kOverlays) {
        EXPECT_FALSE(isOn(member));
        set(member, true);
        EXPECT_TRUE(isOn(member));
        EXPECT_NE(plot.picture(), plain);
        set(member, false);
        EXPECT_FALSE(isOn(member));
        EXPECT_EQ(plot.picture(), plain);
    }
}

TEST_P(OverlayMembersTest, LabelsAreAboveTheBoxAndTheLegendIsInTheCorner) {
    constexpr std::uint32_t kTextColor = 0;  // on a white background
    const ComPtr<_FreqSlot> slot = plot.scope.GetTXbyKey(L"TX1");
    ASSERT_TRUE(slot);
    slot->put_lColor(0x00C00000);
    slot->put_lColorLine(0x00C00000);
    ASSERT_EQ(plot.scope->put_lCursorColor(0x0000FFFF), S_OK);
    const auto texts = [&] { return plot.picture().find(kTextColor, plot.spectrum); };
    ASSERT_EQ(plot.scope->JustDrawIt(), S_OK);
    ASSERT_FALSE(texts());
    set(kOverlays[2], true);
    const std::optional<Area> label = texts();
    ASSERT_TRUE(label);
    EXPECT_NEAR((label->left + label->right) / 2.0, plot.column(450.0), 3.0);
    EXPECT_LT(label->bottom, plot.row(40.0));
    EXPECT_GT(label->top, plot.row(40.0) - 25);
    set(kOverlays[2], false);
    set(kOverlays[1], true);
    const std::optional<Area> legend = texts();
    ASSERT_TRUE(legend);
    EXPECT_GT(legend->left, (plot.spectrum.left + 3 * plot.spectrum.right) / 4);
    EXPECT_LT(legend->bottom, plot.spectrum.top + 40);
    set(kOverlays[1], false);
    set(kOverlays[0], true);
    const std::optional<Area> axis = texts();
    ASSERT_TRUE(axis);
    EXPECT_LT(axis->right, plot.spectrum.left + 80);
}

TEST(OverlayMembers, AViewWithoutAControlSaysSo) {
    const auto view = createInstance<_BandscopeView>(CLSID_View);
    VARIANT_BOOL value = VARIANT_TRUE;
    EXPECT_EQ(view->get_PowerAxis(&value), kNotSet);
    EXPECT_EQ(value, VARIANT_FALSE);
    EXPECT_EQ(view->get_PowerAxis(nullptr), E_POINTER);
    EXPECT_EQ(view->put_Legend(VARIANT_TRUE), kNotSet);
    EXPECT_EQ(view->put_ChannelLabels(VARIANT_TRUE), kNotSet);
}

}  // namespace
}  // namespace kv::test
