// Child controls as models: places, texts, lists, and the changes that their windows are told of.
#include "formenv/Widget.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "tests/unit/WidgetFixture.h"
#include "turndial/Knob.h"
#include "util/RuntimeError.h"

namespace kv::formenv {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WidgetTest : public ::testing::Test {
  protected:
    Widget root{WidgetKind::UserControl, nullptr, L"root"};
    Frame frame{&root, L"frame"};
    RecordingPeer peer;
};

TEST_F(WidgetTest, ChildrenAreInTheOrderOfTheirCreation) {
    Label first(&frame, L"first");
    const auto second = std::make_unique<Label>(&frame, L"second");
    Button third(&frame, L"third");
    EXPECT_THAT(frame.children(), ElementsAre(&first, second.get(), &third));
    EXPECT_EQ(first.parent(), &frame);
    EXPECT_EQ(third.name(), L"third");
    EXPECT_EQ(third.kind(), WidgetKind::Button);
    EXPECT_THAT(root.children(), ElementsAre(&frame));
}

TEST_F(WidgetTest, ADestroyedChildLeavesItsParent) {
    Label stays(&frame, L"stays");
    {
        Label goes(&frame, L"goes");
        EXPECT_EQ(frame.children().size(), 2U);
    }
    EXPECT_THAT(frame.children(), ElementsAre(&stays));
}

TEST_F(WidgetTest, ADestroyedParentLeavesItsChildrenWithoutOne) {
    auto parent = std::make_unique<Frame>(&root, L"parent");
    Label child(parent.get(), L"child");
    parent.reset();
    EXPECT_EQ(child.parent(), nullptr);
    EXPECT_THAT(root.children(), ElementsAre(&frame));
}

TEST_F(WidgetTest, MovingTellsTheWindowOnce) {
    frame.setPeer(&peer);
    frame.move({10.0, 20.0, 30.0, 40.0});
    frame.move({10.0, 20.0, 30.0, 40.0});
    EXPECT_THAT(peer.changes, ElementsAre(Change::Place));
    frame.setLeft(1.0);
    frame.setTop(2.0);
    frame.setWidth(3.0);
    frame.setHeight(4.0);
    EXPECT_EQ(frame.place(), (Place{1.0, 2.0, 3.0, 4.0}));
    EXPECT_EQ(peer.changes.size(), 5U);
}

TEST_F(WidgetTest, ASizeBelowZeroIsAnErrorAndMovesNothing) {
    frame.move({1.0, 2.0, 3.0, 4.0});
    frame.setPeer(&peer);
    EXPECT_EQ(errorOf([&] { frame.setWidth(-0.5); }), 380);
    EXPECT_EQ(errorOf([&] { frame.setHeight(-1.0); }), 380);
    EXPECT_EQ(frame.place(), (Place{1.0, 2.0, 3.0, 4.0}));
    EXPECT_THAT(peer.changes, IsEmpty());
    EXPECT_EQ(errorOf([&] { frame.move({-5.0, -6.0, 0.0, 0.0}); }), 0);
}

TEST_F(WidgetTest, PlacesThatAreNotFiniteOverflow) {
    for (const double value : {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(errorOf([&] { frame.setLeft(value); }), 6);
        EXPECT_EQ(errorOf([&] { frame.setTop(value); }), 6);
        EXPECT_EQ(errorOf([&] { frame.setWidth(value); }), 6);
        EXPECT_EQ(errorOf([&] { frame.setHeight(value); }), 6);
    }
    EXPECT_EQ(frame.place(), Place{});
}

TEST_F(WidgetTest, PropertiesTellTheWindowOnlyWhenTheyChange) {
    frame.setPeer(&peer);
    frame.setVisible(true);
    frame.setEnabled(true);
    frame.setCaption(L"");
    frame.setToolTip(L"");
    frame.setFont(raster::Font{});
    EXPECT_THAT(peer.changes, IsEmpty());
    frame.setVisible(false);
    frame.setEnabled(false);
    frame.setCaption(L"caption");
    frame.setToolTip(L"tip");
    raster::Font font;
    font.bold = true;
    frame.setFont(font);
    frame.setBackColor(0x123456);
    frame.setForeColor(0x654321);
    EXPECT_THAT(peer.changes, ElementsAre(Change::Visible, Change::Enabled, Change::Caption, Change::ToolTip,
                                          Change::Font, Change::Colors, Change::Colors));
    EXPECT_FALSE(frame.visible());
    EXPECT_FALSE(frame.enabled());
    EXPECT_EQ(frame.caption(), L"caption");
    EXPECT_EQ(frame.toolTip(), L"tip");
    EXPECT_TRUE(frame.font().bold);
    EXPECT_EQ(frame.backColor(), 0x123456U);
    EXPECT_EQ(frame.foreColor(), 0x654321U);
}

TEST_F(WidgetTest, ACheckBoxIsTickedByTheProgramWithoutAClick) {
    CheckBox box(&frame, L"box");
    int clicks = 0;
    box.onClick = [&] { ++clicks; };
    box.setPeer(&peer);
    box.setValue(1);
    box.setValue(1);
    EXPECT_EQ(box.value(), 1);
    EXPECT_EQ(clicks, 0);
    EXPECT_THAT(peer.changes, ElementsAre(Change::Value));
    for (const int value : {-1, 2})
        EXPECT_EQ(errorOf([&] { box.setValue(value); }), 380);
    EXPECT_EQ(box.value(), 1);
}

TEST_F(WidgetTest, AComboBoxHoldsItemsAndOneChoice) {
    ComboBox box(&frame, L"box");
    int clicks = 0;
    box.onClick = [&] { ++clicks; };
    EXPECT_EQ(box.listIndex(), -1);
    EXPECT_EQ(box.text(), L"");
    box.addItem(L"one");
    box.addItem(L"two");
    EXPECT_EQ(box.listIndex(), -1);
    box.setListIndex(1);
    EXPECT_EQ(box.text(), L"two");
    for (const int index : {-2, 2})
        EXPECT_EQ(errorOf([&] { box.setListIndex(index); }), 380);
    EXPECT_EQ(box.text(), L"two");
    box.setListIndex(-1);
    EXPECT_EQ(box.text(), L"");
    box.setListIndex(0);
    box.clear();
    EXPECT_EQ(box.listIndex(), -1);
    EXPECT_THAT(box.items(), IsEmpty());
    EXPECT_EQ(clicks, 0);
}

TEST_F(WidgetTest, ALateDescriptionRunsOnceAndTellsTheWindowOnce) {
    Label label(&frame, L"label");
    label.setPeer(&peer);
    int described = 0;
    for (int i = 1; i <= 3; ++i) {
        label.describeLater([&label, &described, i] {
            ++described;
            label.setCaption(std::to_wstring(i));
            label.setVisible(false);
        });
    }
    EXPECT_THAT(peer.changes, ElementsAre(Change::Caption, Change::Visible));
    EXPECT_EQ(described, 0);
    EXPECT_FALSE(label.visible());
    EXPECT_EQ(label.caption(), L"3");
    EXPECT_EQ(described, 1);
    EXPECT_EQ(peer.changes.size(), 2U);
    label.setCaption(L"4");
    EXPECT_EQ(peer.changes.size(), 3U);
}

TEST_F(WidgetTest, AValueSetAtOnceReplacesALateDescription) {
    Label label(&frame, L"label");
    label.describeLater([&label] {
        label.setCaption(L"described");
        label.setVisible(false);
    });
    label.setCaption(L"");
    EXPECT_EQ(label.caption(), L"");
    EXPECT_FALSE(label.visible());
}

TEST_F(WidgetTest, AKnobTellsItsWindowOfANewValueOnce) {
    turndial::tdKnob knob(&frame, L"knob");
    knob.setPeer(&peer);
    knob.setDVal(5.0);
    knob.setDVal(5.0);
    knob.Refresh();
    EXPECT_THAT(peer.changes, ElementsAre(Change::Value, Change::Picture));
    EXPECT_EQ(knob.dVal(), 5.0);
}

TEST_F(WidgetTest, TheFirstStopStartsAFreshList) {
    turndial::tdKnob knob(&frame, L"knob");
    knob.AddStop(true, L"a", 1.0);
    knob.AddStop(false, L"b", 2.0);
    ASSERT_EQ(knob.stops().size(), 2U);
    EXPECT_EQ(knob.stops()[1].sLabel, L"b");
    knob.AddStop(true, L"c", 3.0);
    ASSERT_EQ(knob.stops().size(), 1U);
    EXPECT_EQ(knob.stops()[0].dValue, 3.0);
}

}  // namespace
}  // namespace kv::formenv
