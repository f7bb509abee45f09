// Keeping the places of forms, and never putting one where nobody can reach it.
#include "forms/FormPlacement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/unit/FakeForm.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::forms {
namespace {

using formenv::Place;
using formenv::ScreenRect;
using formenv::WindowState;

constexpr wchar_t kINI[] = L"C:\\KV\\KVZEP32.INI";
constexpr wchar_t kMode[] = L"Mouse Information";
constexpr Place kDesign{-500.0, -500.0, 6000.0, 4500.0};
/// In the middle of the usual desktop's work area of 28800 by 15600 twips.
constexpr Place kMiddle{11400.0, 5550.0, 6000.0, 4500.0};

class FormPlacementTest : public ::testing::Test {
  protected:
    void arrange(const std::vector<ScreenRect>& screens, std::int32_t taskBar = 0) {
        desktop.monitors.clear();
        for (const ScreenRect& screen : screens)
            desktop.add(screen, taskBar);
    }
    std::wstring setting(const std::wstring& key, const std::wstring& file = kINI) {
        return files.settings.read(key, L"CONFIG", file).value_or(L"none");
    }
    void set(const std::wstring& name, const std::wstring& value) {
        files.settings.write(kMode + name, L"CONFIG", kINI, value);
    }
    void set(const Place& place) {
        set(L"Left", std::to_wstring(std::lround(place.left)));
        set(L"Top", std::to_wstring(std::lround(place.top)));
        set(L"Width", std::to_wstring(std::lround(place.width)));
        set(L"Height", std::to_wstring(std::lround(place.height)));
    }
    /// Where a fresh form of the usual design comes up.
    Place restored(std::intptr_t owner = 0, const Place& given = kNoPlaceGiven) {
        FakeForm fresh(kDesign);
        RestoreFormPlacement(fresh, store, owner, given);
        state = fresh.state;
        return fresh.at;
    }
    Place restoredFrom(const Place& saved) {
        set(saved);
        return restored();
    }

    AskedDesktop desktop;
    control::MemoryFiles files;
    PlacementStore store{files, desktop, kINI, kMode};
    FakeForm form{{1500.0, 750.0, 7500.0, 6000.0}};
    WindowState state = WindowState::Normal;
};

TEST_F(FormPlacementTest, PlaceAndStateAreWrittenUnderTheKeysText) {
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(setting(L"Mouse InformationLeft"), L"1500");
    EXPECT_EQ(setting(L"Mouse InformationTop"), L"750");
    EXPECT_EQ(setting(L"Mouse InformationWidth"), L"7500");
    EXPECT_EQ(setting(L"Mouse InformationHeight"), L"6000");
    EXPECT_EQ(setting(L"Mouse InformationWindowState"), L"0");
    EXPECT_EQ(setting(L"Mouse InformationMultipleMonitors"), L"0");
    EXPECT_EQ(setting(L"Left"), L"none");
}

TEST_F(FormPlacementTest, EmptyKeyGivesTheBareNames) {
    store.key.clear();
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(setting(L"Left"), L"1500");
    EXPECT_EQ(setting(L"Top"), L"750");
    EXPECT_EQ(setting(L"Width"), L"7500");
    EXPECT_EQ(setting(L"Height"), L"6000");
    EXPECT_EQ(setting(L"WindowState"), L"0");
    EXPECT_EQ(setting(L"MultipleMonitors"), L"0");
    EXPECT_EQ(restored(), form.at);
}

TEST_F(FormPlacementTest, NumbersAreWholeAndMayBeNegative) {
    form.at = {-1500.4, 0.6, 1234567.0, 6000.5};
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(setting(L"Mouse InformationLeft"), L"-1500");
    EXPECT_EQ(setting(L"Mouse InformationTop"), L"1");
    EXPECT_EQ(setting(L"Mouse InformationWidth"), L"1234567");
    EXPECT_EQ(setting(L"Mouse InformationHeight"), L"6000");
}

TEST_F(FormPlacementTest, SavedPlaceComesBack) {
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(restored(), form.at);
    EXPECT_EQ(state, WindowState::Normal);
}

TEST_F(FormPlacementTest, MaximisedFormComesBackMaximisedWithItsNormalPlace) {
    form.state = WindowState::Maximized;
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(setting(L"Mouse InformationWindowState"), L"2");
    EXPECT_EQ(restored(), form.at);
    EXPECT_EQ(state, WindowState::Maximized);
}

TEST_F(FormPlacementTest, MinimisedFormIsSavedAsANormalOne) {
    form.state = WindowState::Minimized;
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(setting(L"Mouse InformationWindowState"), L"0");
    EXPECT_EQ(restored(), form.at);
    EXPECT_EQ(state, WindowState::Normal);
}

TEST_F(FormPlacementTest, MinimisedStateInTheFileDoesNotHideTheForm) {
    set(L"WindowState", L"1");
    form.state = WindowState::Minimized;
    RestoreFormPlacement(form, store);
    EXPECT_EQ(form.state, WindowState::Normal);
}

TEST_F(FormPlacementTest, StateThatIsNoneLeavesTheForms) {
    for (const wchar_t* text : {L"", L"two", L"1E999", L"nan"}) {
        set(L"WindowState", text);
        form.state = WindowState::Maximized;
        RestoreFormPlacement(form, store);
        EXPECT_EQ(form.state, WindowState::Maximized);
    }
}

TEST_F(FormPlacementTest, SeveralMonitorsAreNoted) {
    arrange({{0, 0, 1920, 1080}, {1920, 0, 3840, 1080}});
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(setting(L"Mouse InformationMultipleMonitors"), L"1");
    desktop.monitors.pop_back();
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(setting(L"Mouse InformationMultipleMonitors"), L"0");
}

TEST_F(FormPlacementTest, FormsOfOtherKeysAndFilesAreApart) {
    EXPECT_TRUE(SaveFormPlacement(form, store));
    form.at.left = 3000.0;
    EXPECT_TRUE(SaveFormPlacement(form, {files, desktop, kINI, L"Notes"}));
    form.at.left = 4500.0;
    EXPECT_TRUE(SaveFormPlacement(form, {files, desktop, L"D:\\other.ini", kMode}));
    EXPECT_EQ(restored().left, 1500.0);
    store.key = L"Notes";
    EXPECT_EQ(restored().left, 3000.0);
    store.ini = L"D:\\other.ini";
    EXPECT_EQ(restored(), kMiddle);
}

TEST_F(FormPlacementTest, KeyTextDoesNotBreakTheFile) {
    const std::pair<std::wstring, std::wstring> keys[] = {{L"a=b", L"a_b"},
                                                          {L"[CONFIG]", L"_CONFIG_"},
                                                          {L"x]y[", L"x_y_"},
                                                          {L"one\r\nLeft=7", L"one__Left_7"},
                                                          {L";note", L"_note"},
                                                          {L"  ;;", L"_;"},
                                                          {L"tab\there", L"tab_here"},
                                                          {std::wstring(L"a\0b", 3), L"a_b"},
                                                          {L"  blank ", L"blank "}};
    for (const auto& [key, written] : keys) {
        store.key = key;
        EXPECT_TRUE(SaveFormPlacement(form, store)) << ::testing::PrintToString(key);
        EXPECT_EQ(setting(written + L"Left"), L"1500") << ::testing::PrintToString(key);
        EXPECT_EQ(restored(), form.at) << ::testing::PrintToString(key);
    }
    EXPECT_EQ(setting(L"Left"), L"none");
}

TEST_F(FormPlacementTest, WithoutAnINIFileNothingIsKept) {
    store.ini.clear();
    EXPECT_FALSE(SaveFormPlacement(form, store));
    EXPECT_EQ(setting(L"Mouse InformationLeft", L""), L"none");
    // What somebody else may keep under an empty name does not count.
    files.settings.write(L"Mouse InformationLeft", L"CONFIG", L"", L"300");
    EXPECT_EQ(restored(), kMiddle);
}

TEST_F(FormPlacementTest, SavingThatFailsLeavesTheOldPlace) {
    EXPECT_TRUE(SaveFormPlacement(form, store));
    const Place before = form.at;
    files.readOnly = true;
    form.at = {3000.0, 3000.0, 3000.0, 3000.0};
    EXPECT_FALSE(SaveFormPlacement(form, store));
    EXPECT_EQ(restored(), before);
}

TEST_F(FormPlacementTest, DesktopThatFailsDoesNotKeepFromSaving) {
    desktop.failing = "*";
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(setting(L"Mouse InformationMultipleMonitors"), L"0");
}

TEST_F(FormPlacementTest, WithNothingSavedTheFormIsCenteredInItsDesignSize) {
    EXPECT_EQ(restored(), kMiddle);
    EXPECT_EQ(state, WindowState::Normal);
}

TEST_F(FormPlacementTest, WithNothingSavedTheOwnersMonitorIsTaken) {
    arrange({{0, 0, 1920, 1080}, {-1280, 100, 0, 900}}, 40);
    desktop.windows[9] = {-1000, 200, -100, 800};
    EXPECT_EQ(restored(9), (Place{-19200.0 + 6600.0, 1500.0 + 3450.0, 6000.0, 4500.0}));
    EXPECT_EQ(restored(), kMiddle);
    EXPECT_EQ(restored(10), kMiddle);
}

TEST_F(FormPlacementTest, DesignLargerThanTheScreenIsMadeToFit) {
    arrange({{0, 0, 320, 240}}, 20);
    EXPECT_EQ(restored(), (Place{0.0, 0.0, 4800.0, 3300.0}));
}

TEST_F(FormPlacementTest, DesignLargerThanTheOwnersMonitorIsMadeToFit) {
    arrange({{0, 0, 1920, 1080}, {1920, 0, 2240, 240}});
    desktop.windows[9] = {2000, 0, 2100, 100};
    EXPECT_EQ(restored(9), (Place{28800.0, 0.0, 4800.0, 3600.0}));
}

TEST_F(FormPlacementTest, GivenValuesWinOverSavedOnes) {
    EXPECT_TRUE(SaveFormPlacement(form, store));
    const Place given{150.0, 300.0, 4500.0, 3000.0};
    EXPECT_EQ(restored(0, given), given);
}

TEST_F(FormPlacementTest, EachGivenValueCountsForItself) {
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(restored(0, {150.0, kNotGiven, kNotGiven, kNotGiven}), (Place{150.0, 750.0, 7500.0, 6000.0}));
    EXPECT_EQ(restored(0, {kNotGiven, 300.0, kNotGiven, 3000.0}), (Place{1500.0, 300.0, 7500.0, 3000.0}));
    store.ini.clear();
    EXPECT_EQ(restored(0, {kNotGiven, kNotGiven, 4500.0, kNotGiven}), (Place{12150.0, 5550.0, 4500.0, 4500.0}));
}

TEST_F(FormPlacementTest, GivenValuesThatAreNoneAreNotGiven) {
    EXPECT_TRUE(SaveFormPlacement(form, store));
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(restored(0, {kNan, kInfinity, -kInfinity, kNan}), form.at);
    EXPECT_EQ(restored(0, {1e300, -1e7, -4500.0, 0.0}), form.at);
}

TEST_F(FormPlacementTest, SavedPositionOfMinus88IsAPosition) {
    const Place saved{-88.0, -88.0, 7500.0, 6000.0};
    EXPECT_EQ(restoredFrom(saved), saved);
}

TEST_F(FormPlacementTest, SizeAloneIsCentered) {
    set(L"Width", L"9000");
    set(L"Height", L"4500");
    EXPECT_EQ(restored(), (Place{9900.0, 5550.0, 9000.0, 4500.0}));
}

TEST_F(FormPlacementTest, FormOnAMonitorThatWasUnpluggedComesToTheOneThatIsLeft) {
    arrange({{0, 0, 1920, 1080}, {1920, 0, 3840, 1080}}, 40);
    const Place saved{2500 * 15.0, 1500.0, 6000.0, 4500.0};
    EXPECT_EQ(restoredFrom(saved), saved);
    desktop.monitors.pop_back();
    EXPECT_EQ(restored(), (Place{28800.0 - 6000.0, 1500.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, FormOnAMonitorThatIsLeftOfThePrimaryIsNotLost) {
    arrange({{0, 0, 1920, 1080}, {-1920, 0, 0, 1080}}, 40);
    const Place saved{-20000.0, 1500.0, 6000.0, 4500.0};
    EXPECT_EQ(restoredFrom(saved), saved);
    desktop.monitors.pop_back();
    EXPECT_EQ(restored(), (Place{0.0, 1500.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, FormGoesToTheNearestMonitor) {
    arrange({{0, 0, 800, 600}, {800, 0, 1600, 600}});
    EXPECT_EQ(restoredFrom({30000.0, 0.0, 6000.0, 4500.0}), (Place{18000.0, 0.0, 6000.0, 4500.0}));
    EXPECT_EQ(restoredFrom({-30000.0, 20000.0, 6000.0, 4500.0}), (Place{0.0, 4500.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, SmallerScreenTakesTheFormIn) {
    const Place saved{20000.0, 10000.0, 8000.0, 5000.0};
    EXPECT_EQ(restoredFrom(saved), saved);
    arrange({{0, 0, 800, 600}}, 40);
    EXPECT_EQ(restored(), (Place{4000.0, 3400.0, 8000.0, 5000.0}));
}

TEST_F(FormPlacementTest, TaskBarMovedToTheTopDoesNotCoverTheTitle) {
    const Place saved{3000.0, 0.0, 6000.0, 4500.0};
    EXPECT_EQ(restoredFrom(saved), saved);
    desktop.monitors.front().info.work = {0, 40, 1920, 1080};
    EXPECT_EQ(restored(), (Place{3000.0, 600.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, TitleUnderTheTaskBarAtTheBottomIsMovedOutOfIt) {
    EXPECT_EQ(restoredFrom({3000.0, 15600.0, 6000.0, 4500.0}), (Place{3000.0, 11100.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, TitleAboveTheScreenIsBroughtDown) {
    EXPECT_EQ(restoredFrom({3000.0, -1000.0, 6000.0, 4500.0}), (Place{3000.0, 0.0, 6000.0, 4500.0}));
    // A window that was pushed against the edge has its frame outside.
    EXPECT_EQ(restoredFrom({-105.0, -105.0, 6000.0, 4500.0}), (Place{-105.0, -105.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, FormThatSticksOutAndCanBeTakenHoldOfStays) {
    for (const Place& saved : {Place{25800.0, 15300.0, 6000.0, 4500.0}, Place{-3000.0, 0.0, 6000.0, 4500.0}})
        EXPECT_EQ(restoredFrom(saved), saved);
    // One twip further.
    EXPECT_EQ(restoredFrom({25801.0, 300.0, 6000.0, 4500.0}), (Place{22800.0, 300.0, 6000.0, 4500.0}));
    EXPECT_EQ(restoredFrom({3000.0, 15301.0, 6000.0, 4500.0}), (Place{3000.0, 11100.0, 6000.0, 4500.0}));
    EXPECT_EQ(restoredFrom({-3001.0, 300.0, 6000.0, 4500.0}), (Place{0.0, 300.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, FormAcrossTwoMonitorsStays) {
    arrange({{0, 0, 800, 600}, {800, 0, 1600, 600}});
    const Place saved{10500.0, 300.0, 3000.0, 3000.0};
    EXPECT_EQ(restoredFrom(saved), saved);
    const Place wide{600.0, 300.0, 22000.0, 3000.0};
    EXPECT_EQ(restoredFrom(wide), wide);
}

TEST_F(FormPlacementTest, FormInTheGapBetweenMonitorsOfDifferentHeightIsMoved) {
    arrange({{0, 0, 1920, 1080}, {1920, 540, 2720, 1080}});
    // Above the second monitor, nearest to it or to the first one; both are reachable.
    EXPECT_EQ(restoredFrom({32000.0, 6000.0, 6000.0, 3000.0}), (Place{32000.0, 8100.0, 6000.0, 3000.0}));
}

TEST_F(FormPlacementTest, MonitorThatTheSearchMissesCountsAllTheSame) {
    arrange({{0, 0, 1920, 1080}, {1920, 0, 2200, 200}});
    const Place saved{1930 * 15.0, 0.0, 3000.0, 2400.0};
    EXPECT_EQ(restoredFrom(saved), saved);
}

TEST_F(FormPlacementTest, SizeBeyondTheDesktopIsCutToTheWorkAreas) {
    EXPECT_EQ(restoredFrom({0.0, 0.0, 500000.0, 400000.0}), (Place{0.0, 0.0, 28800.0, 15600.0}));
}

TEST_F(FormPlacementTest, TinySizeIsRaisedToTheLeast) {
    EXPECT_EQ(restoredFrom({300.0, 300.0, 1.0, 1.0}), (Place{300.0, 300.0, 2400.0, 1500.0}));
}

TEST_F(FormPlacementTest, SizesThatAreNoneGiveTheDesigns) {
    EXPECT_EQ(restoredFrom({300.0, 300.0, -6000.0, 0.0}), (Place{300.0, 300.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, GarbageCountsAsNotSaved) {
    for (const wchar_t* text : {L"", L"left", L"12abc", L"1,5", L"0x10", L"1e7", L"-1e7", L"99999999999999999999",
                                L"1e999", L"nan", L"inf", L"--5", L"1 2"}) {
        for (const wchar_t* name : {L"Left", L"Top", L"Width", L"Height"})
            set(name, text);
        EXPECT_EQ(restored(), kMiddle) << ::testing::PrintToString(std::wstring(text));
    }
}

TEST_F(FormPlacementTest, TwipsOfAScreenOfFinerResolution) {
    desktop.dots = 144;  // 10 twips a pixel
    EXPECT_EQ(restored(), (Place{6600.0, 2950.0, 6000.0, 4500.0}));
    EXPECT_EQ(restoredFrom({19200.0, 0.0, 6000.0, 4500.0}), (Place{13200.0, 0.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, SystemThatCountsNoMonitorsTellsOfThePrimaryOneAllTheSame) {
    desktop.countsMonitors = false;
    EXPECT_EQ(restored(), kMiddle);
    EXPECT_EQ(restoredFrom({90000.0, 0.0, 6000.0, 4500.0}), (Place{22800.0, 0.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, WithoutMonitorRecordsThePrimaryScreenIsTaken) {
    desktop.failing = "monitorInfo";
    EXPECT_EQ(restored(), (Place{11400.0, 5850.0, 6000.0, 4500.0}));
    EXPECT_EQ(restoredFrom({90000.0, 0.0, 6000.0, 4500.0}), (Place{22800.0, 0.0, 6000.0, 4500.0}));
    desktop.failing = "monitorFromRect";
    EXPECT_EQ(restored(), (Place{22800.0, 0.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, DesktopThatTellsNothingLeavesTheFormWhereItIs) {
    set({90000.0, 0.0, 7000.0, 5000.0});
    desktop.failing = "*";
    EXPECT_EQ(restored(), kDesign);
    desktop.failing = {};
    desktop.monitors.clear();
    EXPECT_EQ(restored(), kDesign);
}

TEST_F(FormPlacementTest, FormMovesOnceAndBeforeItIsMaximised) {
    set(L"WindowState", L"2");
    RestoreFormPlacement(form, store);
    EXPECT_EQ(form.moves, 1);
    EXPECT_EQ(form.state, WindowState::Maximized);
}

}  // namespace
}  // namespace kv::forms
