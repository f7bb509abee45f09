#include "tests/fuzz/faults/Scenarios.h"

namespace kv::fuzz {

namespace {

using channels::ChannelKind;
void filled(World& world) {
    world.fill();
}

void reporting(World& world) {
    world.fill();
    world.scope().setBMouseInfo(true);
    world.ui().picSpectrum.onMouseMove(0, 0, 445.0, 0.0);
}

std::wstring keyOf(World& world, std::int32_t index) {
    return world.scope().GetTXChnl(index)->sKey();
}

const Scenario kScenarios[] = {
    {"Adding", [](World&) {},
     [](World& world) {
         for (int i = 0; i < 12; ++i) {
             world.add(ChannelKind::TX, 440.0 + i);
             world.add(ChannelKind::RX, 445.0 + i);
         }
     }},
    {"DrawDisplay", filled, [](World& world) { world.scope().DrawDisplay(); }},
    {"DrawInitialDisplay", filled, [](World& world) { world.scope().DrawInitialDisplay(); }},
    {"JustDrawIt", filled, [](World& world) { world.scope().JustDrawIt(); }},
    {"DrawingOneByOne", filled,
     [](World& world) {
         world.scope().setMany(1000);
         world.scope().DrawDisplay();
         world.scope().setMany(20);
     }},
    {"Refresh", filled, [](World& world) { world.scope().Refresh(); }},
    {"DrawByRange", filled, [](World& world) { world.scope().DrawByRange(440.0, 450.0); }},
    {"DrawNewCenterFreq", filled,
     [](World& world) {
         world.scope().setDisplayCenterFreq(448.0);
         world.scope().DrawNewCenterFreq();
     }},
    {"ShowAll", filled,
     [](World& world) {
         world.scope().setShowAll(true);
         world.scope().DrawByRange(445.0, 446.0);
         world.scope().setShowAll(true);
     }},
    {"Removing", filled, [](World& world) { world.scope().RemoveChnlByKey(keyOf(world, 7)); }},
    {"RemovingStepByStep", filled,
     [](World& world) {
         world.scope().ClearRXChnls();
         world.scope().RemoveChnlByKey(keyOf(world, 3));
         world.scope().RemoveChnlByKey(keyOf(world, 4));
     }},
    {"Clearing", filled, [](World& world) { world.scope().ClearAllChnls(); }},
    {"Finding", filled,
     [](World& world) {
         const channels::FreqSlotRef channel = world.scope().GetRXChnl(3);
         world.scope().nFindMatchRX(channel);
         world.scope().GetChnlByKey(channel->sKey());
         world.scope().ReDrawChnl(channel);
     }},
    {"Resizing", filled,
     [](World& world) {
         world.scope().resize(12000.0, 9000.0);
         world.scope().resize(9000.0, 6000.0);
     }},
    {"Toggling", filled,
     [](World& world) {
         world.scope().ToggleControlsSection();
         world.scope().ToggleControlsSection();
     }},
    {"Pointing", reporting,
     [](World& world) {
         world.ui().picSpectrum.onMouseMove(0, 0, 446.0, 0.0);
         world.ui().picUnits.onMouseMove(0, 0, 900.0, 0.0);
         world.ui().fraControl.onMouseMove(0, 0, 50.0, 50.0);
     }},
    {"OpeningTheReport", filled,
     [](World& world) {
         world.scope().setBMouseInfo(true);
         world.scope().setBMouseInfo(false);
         world.scope().setBMouseInfo(true);
     }},
    {"ClosingTheReport", reporting, [](World& world) { world.scope().closeMouseInfo(); }},
    {"Dragging", filled,
     [](World& world) {
         formenv::PictureBox& picture = world.ui().picSpectrum;
         picture.onMouseMove(formenv::mouse_button::kLeft, 0, 440.0, 0.0);
         picture.onMouseMove(formenv::mouse_button::kLeft, 0, 450.0, 0.0);
         picture.onMouseUp(formenv::mouse_button::kLeft, 0, 450.0, 0.0);
         picture.onDblClick(formenv::mouse_button::kLeft, 0, 447.0, 0.0);
     }},
    {"Keys", filled,
     [](World& world) {
         for (const int key : {37, 39, 33, 34, 38, 40, 36, 32, 66, 39, 66, 77, 77, 67, 67})
             world.ui().picSpectrum.onKeyDown(key, 0);
         for (const int key : {37, 39})
             for (const int shift : {1, 2})
                 world.ui().picSpectrum.onKeyDown(key, shift);
     }},
    {"Knobs", filled,
     [](World& world) {
         control::Children& ui = world.ui();
         ui.tdKnGrid.wheel(120, {});
         ui.tdKnMovCenter.wheel(-120, {});
         ui.tdKnMovCursor.wheel(120, {});
         ui.cboGridRange.setListIndex(1);
         ui.cboGridRange.onClick();
         ui.cmdCenterCursor.onClick();
     }},
    {"RotaryKnobs", filled,
     [](World& world) {
         world.scope().setBUseMovers(false);
         world.ui().tdKnCenter.wheel(120, {});
         world.ui().tdKnCursor.wheel(120, {});
         world.scope().setBUseMovers(true);
     }},
    {"Buttons", filled,
     [](World& world) {
         control::Children& ui = world.ui();
         for (formenv::Widget* const button :
              std::initializer_list<formenv::Widget*>{&ui.cmdDrawTX, &ui.cmdDrawRX, &ui.chkOrder, &ui.chkViewAllxx,
                                                      &ui.chkShowMouse, &ui.Command2, &ui.Command4, &ui.cmdClear})
             button->onClick();
     }},
    {"SampleChannels", [](World&) {}, [](World& world) { world.scope().UserControl_Click(); }},
    {"Colors", filled,
     [](World& world) {
         world.scope().setLColorSpecBack(0x123456);
         world.scope().setLColorLblBack(0x654321);
         world.scope().setLColorLblFore(0x808080);
         world.scope().setCursorVal(447.0);
     }},
    {"Exporting", filled,
     [](World& world) {
         double height = 1.0;
         double width = 1.0;
         std::wstring name;
         if (world.scope().DisplayToBMP(height, width, name).empty()) {
             EXPECT_EQ(height, 0.0);
             EXPECT_EQ(width, 0.0);
         }
         world.scope().CopyDisplayToClipboard();
     }},
    {"Captions", filled,
     [](World& world) {
         for (const formenv::Label* const label :
              {&world.ui().lblNumTX, &world.ui().lblTXRange, &world.ui().lblNumRX, &world.ui().lblRXRange})
             static_cast<void>(label->caption());
     }},
};

}  // namespace

std::span<const Scenario> scenarios() noexcept {
    return kScenarios;
}

}  // namespace kv::fuzz
