// Saving and restoring the places of forms. A restored form is always within the reach of the user.
#include "forms/FormPlacement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/unit/FakeForm.h"
#include "tests/unit/Numbers.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::forms {
namespace {

using formenv::Place;
using formenv::ScreenRect;
using formenv::WindowState;
using ::testing::ElementsAre;

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
    /// Position, size, state and the note of several monitors, as written for a key.
    std::vector<std::wstring> written(const std::wstring& key = kMode) {
        std::vector<std::wstring> texts;
        for (const wchar_t* name : {L"Left", L"Top", L"Width", L"Height", L"WindowState", L"MultipleMonitors"})
            texts.push_back(setting(key + name));
        return texts;
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
    /// The place that a new form of the usual design gets.
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

TEST_F(FormPlacementTest, PlaceAndStateAreWrittenUnderTheKeysTextAndComeBack) {
    for (const wchar_t* key : {kMode, L""}) {
        store.key = key;
        EXPECT_TRUE(SaveFormPlacement(form, store));
        EXPECT_THAT(written(key), ElementsAre(L"1500", L"750", L"7500", L"6000", L"0", L"0"));
        EXPECT_EQ(setting(L"Left"), *key ? L"none" : L"1500");
        EXPECT_EQ(restored(), form.at);
        EXPECT_EQ(state, WindowState::Normal);
    }
}

TEST_F(FormPlacementTest, NumbersAreWholeAndMayBeNegative) {
    form.at = {-1500.4, 0.6, 1234567.0, 6000.5};
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_THAT(written(), ElementsAre(L"-1500", L"1", L"1234567", L"6000", L"0", L"0"));
}

TEST_F(FormPlacementTest, AMaximizedFormStaysMaximizedAndAMinimizedOneBecomesNormal) {
    for (const auto& [saved, text, back] : {std::tuple{WindowState::Maximized, L"2", WindowState::Maximized},
                                            {WindowState::Minimized, L"0", WindowState::Normal}}) {
        form.state = saved;
        EXPECT_TRUE(SaveFormPlacement(form, store));
        EXPECT_EQ(setting(L"Mouse InformationWindowState"), text);
        EXPECT_EQ(restored(), form.at);
        EXPECT_EQ(state, back);
    }
}

TEST_F(FormPlacementTest, AMinimizedStateInTheFileDoesNotHideTheForm) {
    set(L"WindowState", L"1");
    form.state = WindowState::Minimized;
    RestoreFormPlacement(form, store);
    EXPECT_EQ(form.state, WindowState::Normal);
}

TEST_F(FormPlacementTest, AnInvalidStateLeavesTheFormAsItIs) {
    for (const wchar_t* text : {L"", L"two", L"1E999", L"nan"}) {
        set(L"WindowState", text);
        form.state = WindowState::Maximized;
        RestoreFormPlacement(form, store);
        EXPECT_EQ(form.state, WindowState::Maximized);
    }
}

TEST_F(FormPlacementTest, SeveralMonitorsAreWritten) {
    arrange({{0, 0, 1920, 1080}, {1920, 0, 3840, 1080}});
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(setting(L"Mouse InformationMultipleMonitors"), L"1");
    desktop.monitors.pop_back();
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(setting(L"Mouse InformationMultipleMonitors"), L"0");
}

TEST_F(FormPlacementTest, OtherKeysAndFilesHavePlacesOfTheirOwn) {
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

TEST_F(FormPlacementTest, CharactersOfAKeyThatWouldBreakTheFileAreReplaced) {
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
    // A setting that another program keeps under an empty file name does not count.
    files.settings.write(L"Mouse InformationLeft", L"CONFIG", L"", L"300");
    EXPECT_EQ(restored(), kMiddle);
}

TEST_F(FormPlacementTest, FailedSavingLeavesTheOldPlace) {
    EXPECT_TRUE(SaveFormPlacement(form, store));
    const Place before = form.at;
    files.readOnly = true;
    form.at = {3000.0, 3000.0, 3000.0, 3000.0};
    EXPECT_FALSE(SaveFormPlacement(form, store));
    EXPECT_EQ(restored(), before);
}

TEST_F(FormPlacementTest, SavingWorksWhenTheDesktopFails) {
    desktop.failing = "*";
    EXPECT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(setting(L"Mouse InformationMultipleMonitors"), L"0");
}

TEST_F(FormPlacementTest, WithNothingSavedTheFormIsInTheMiddleOfItsOwnersMonitor) {
    EXPECT_EQ(restored(), kMiddle);
    EXPECT_EQ(state, WindowState::Normal);
    arrange({{0, 0, 1920, 1080}, {-1280, 100, 0, 900}}, 40);
    desktop.windows[1] = {-1000, 200, -100, 800};
    EXPECT_EQ(restored(1), (Place{-19200.0 + 6600.0, 1500.0 + 3450.0, 6000.0, 4500.0}));
    EXPECT_EQ(restored(), kMiddle);
    EXPECT_EQ(restored(10), kMiddle);
}

TEST_F(FormPlacementTest, ADesignLargerThanTheOwnersMonitorIsMadeToFit) {
    arrange({{0, 0, 320, 240}}, 20);
    EXPECT_EQ(restored(), (Place{0.0, 0.0, 4800.0, 3300.0}));
    arrange({{0, 0, 1920, 1080}, {1920, 0, 2240, 240}});
    desktop.windows[9] = {2000, 0, 2100, 100};
    EXPECT_EQ(restored(9), (Place{28800.0, 0.0, 4800.0, 3600.0}));
}

TEST_F(FormPlacementTest, EachGivenValueReplacesTheSavedOne) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(SaveFormPlacement(form, store));
    const std::pair<Place, Place> cases[] = {
        {{150.0, 300.0, 4500.0, 3000.0}, {150.0, 300.0, 4500.0, 3000.0}},
        {{150.0, kNotGiven, kNotGiven, kNotGiven}, {150.0, 750.0, 7500.0, 6000.0}},
        {{kNotGiven, 300.0, kNotGiven, 3000.0}, {1500.0, 300.0, 7500.0, 3000.0}},
        // Values that are not usable count as not given.
        {{kNan, kInfinity, -kInfinity, kNan}, form.at},
        {{1e300, -1e7, -4500.0, 0.0}, form.at},
    };
    for (const auto& [given, place] : cases)
        EXPECT_EQ(restored(0, given), place) << ::testing::PrintToString(given);
    store.ini.clear();
    EXPECT_EQ(restored(0, {kNotGiven, kNotGiven, 4500.0, kNotGiven}), (Place{12150.0, 5550.0, 4500.0, 4500.0}));
}

TEST_F(FormPlacementTest, ASavedSizeAloneIsCentered) {
    set(L"Width", L"9000");
    set(L"Height", L"4500");
    EXPECT_EQ(restored(), (Place{9900.0, 5550.0, 9000.0, 4500.0}));
}

TEST_F(FormPlacementTest, AFormOnAnUnpluggedMonitorComesToTheOneThatIsLeft) {
    const std::tuple<ScreenRect, Place, double> cases[] = {
        {{1920, 0, 3840, 1080}, {37500.0, 1500.0, 6000.0, 4500.0}, 22800.0},
        {{-1920, 0, 0, 1080}, {-20000.0, 1500.0, 6000.0, 4500.0}, 0.0},
    };
    for (const auto& [second, saved, left] : cases) {
        arrange({{0, 0, 1920, 1080}, second}, 40);
        EXPECT_EQ(restoredFrom(saved), saved);
        desktop.monitors.pop_back();
        EXPECT_EQ(restored(), (Place{left, 1500.0, 6000.0, 4500.0}));
    }
}

struct Arrangement {
    std::vector<ScreenRect> screens;
    std::int32_t taskBar;
};
struct SavedPlace {
    const char* name;
    Arrangement desktop;
    Place saved;
    Place restored;
};
const Arrangement kUsual{{{0, 0, 1920, 1080}}, 40};
const Arrangement kTwo{{{0, 0, 800, 600}, {800, 0, 1600, 600}}, 0};
const Arrangement kHuge{{{-70000, -70000, 70000, 70000}}, 0};

class SavedPlaceTest : public FormPlacementTest, public ::testing::WithParamInterface<SavedPlace> {};

TEST_P(SavedPlaceTest, IsRestoredWithinReach) {
    arrange(GetParam().desktop.screens, GetParam().desktop.taskBar);
    EXPECT_EQ(restoredFrom(GetParam().saved), GetParam().restored);
}

INSTANTIATE_TEST_SUITE_P(
    All, SavedPlaceTest,
    ::testing::Values(
        SavedPlace{"Minus88IsAPosition", kUsual, {-88.0, -88.0, 7500.0, 6000.0}, {-88.0, -88.0, 7500.0, 6000.0}},
        SavedPlace{"NearestMonitorAtTheRight", kTwo, {30000.0, 0.0, 6000.0, 4500.0}, {18000.0, 0.0, 6000.0, 4500.0}},
        SavedPlace{"NearestMonitorBelow", kTwo, {-30000.0, 20000.0, 6000.0, 4500.0}, {0.0, 4500.0, 6000.0, 4500.0}},
        SavedPlace{
            "TitleUnderTheTaskBar", kUsual, {3000.0, 15600.0, 6000.0, 4500.0}, {3000.0, 11100.0, 6000.0, 4500.0}},
        SavedPlace{"TitleAboveTheScreen", kUsual, {3000.0, -1000.0, 6000.0, 4500.0}, {3000.0, 0.0, 6000.0, 4500.0}},
        // A window that was pushed against the edge has its frame outside.
        SavedPlace{"FrameOutside", kUsual, {-105.0, -105.0, 6000.0, 4500.0}, {-105.0, -105.0, 6000.0, 4500.0}},
        // Enough of the title bar shows, and one twip less than enough.
        SavedPlace{"EnoughAtTheRightAndBottom",
                   kUsual,
                   {25800.0, 15300.0, 6000.0, 4500.0},
                   {25800.0, 15300.0, 6000.0, 4500.0}},
        SavedPlace{"EnoughAtTheLeft", kUsual, {-3000.0, 0.0, 6000.0, 4500.0}, {-3000.0, 0.0, 6000.0, 4500.0}},
        SavedPlace{"TooFarRight", kUsual, {25801.0, 300.0, 6000.0, 4500.0}, {22800.0, 300.0, 6000.0, 4500.0}},
        SavedPlace{"TooFarDown", kUsual, {3000.0, 15301.0, 6000.0, 4500.0}, {3000.0, 11100.0, 6000.0, 4500.0}},
        SavedPlace{"EnoughAtTheTop", kUsual, {3000.0, -150.0, 6000.0, 4500.0}, {3000.0, -150.0, 6000.0, 4500.0}},
        SavedPlace{"TooFarUp", kUsual, {3000.0, -151.0, 6000.0, 4500.0}, {3000.0, 0.0, 6000.0, 4500.0}},
        SavedPlace{"TooFarLeft", kUsual, {-3001.0, 300.0, 6000.0, 4500.0}, {0.0, 300.0, 6000.0, 4500.0}},
        SavedPlace{"AcrossTwoMonitors", kTwo, {10500.0, 300.0, 3000.0, 3000.0}, {10500.0, 300.0, 3000.0, 3000.0}},
        SavedPlace{"WiderThanAMonitor", kTwo, {600.0, 300.0, 22000.0, 3000.0}, {600.0, 300.0, 22000.0, 3000.0}},
        // Above the second monitor, nearest to it or to the first one; both are reachable.
        SavedPlace{"InTheGapAboveALowerMonitor",
                   {{{0, 0, 1920, 1080}, {1920, 540, 2720, 1080}}, 0},
                   {32000.0, 6000.0, 6000.0, 3000.0},
                   {32000.0, 8100.0, 6000.0, 3000.0}},
        SavedPlace{"OnAMonitorTooSmallToBeFound",
                   {{{0, 0, 1920, 1080}, {1920, 0, 2200, 200}}, 0},
                   {28950.0, 0.0, 3000.0, 2400.0},
                   {28950.0, 0.0, 3000.0, 2400.0}},
        SavedPlace{"PartlyOffAMonitorTooSmallToBeFound",
                   {{{0, 0, 1920, 1080}, {1920, 0, 2200, 200}}, 0},
                   {29500.0, 0.0, 4000.0, 2400.0},
                   {29500.0, 0.0, 4000.0, 2400.0}},
        SavedPlace{"MoreAboveTheSecondMonitor",
                   {{{0, 0, 1000, 800}, {1000, 900, 2000, 1700}}, 0},
                   {13500.0, 12750.0, 12000.0, 6000.0},
                   {15000.0, 13500.0, 12000.0, 6000.0}},
        SavedPlace{"AMillionTwipsRight", kHuge, {1000000.0, 0.0, 6000.0, 4500.0}, {1000000.0, 0.0, 6000.0, 4500.0}},
        SavedPlace{"AMillionTwipsLeft", kHuge, {-1000000.0, 0.0, 6000.0, 4500.0}, {-1000000.0, 0.0, 6000.0, 4500.0}},
        SavedPlace{"MoreThanAMillionTwipsIsNoPosition",
                   kHuge,
                   {1000001.0, 0.0, 6000.0, 4500.0},
                   {-3000.0, 0.0, 6000.0, 4500.0}},
        SavedPlace{"LargerThanTheDesktop", kUsual, {0.0, 0.0, 500000.0, 400000.0}, {0.0, 0.0, 28800.0, 15600.0}},
        SavedPlace{"SmallerThanTheLeastSize", kUsual, {300.0, 300.0, 1.0, 1.0}, {300.0, 300.0, 2400.0, 1500.0}},
        SavedPlace{
            "SizesNotAboveZeroGiveTheDesigns", kUsual, {300.0, 300.0, -6000.0, 0.0}, {300.0, 300.0, 6000.0, 4500.0}}),
    [](const auto& place) { return std::string(place.param.name); });

TEST_F(FormPlacementTest, TheNearestMonitorIsSearchedByTheWholeTitleBar) {
    restoredFrom({1500.0, 750.0, 7500.0, 6000.0});
    // 450 twips of title are 30 pixels.
    EXPECT_THAT(desktop.probes, ::testing::Contains(AskedDesktop::Probe{{100, 50, 600, 80}, 2}));
}

TEST_F(FormPlacementTest, AMonitorWithoutAWorkAreaIsNotUsed) {
    desktop.add({1920, 0, 3840, 1080});
    for (const ScreenRect& nothing : {ScreenRect{0, 0, 0, 1040}, ScreenRect{0, 0, 1920, 0}}) {
        desktop.monitors[0].info.work = nothing;
        EXPECT_EQ(restoredFrom({1500.0, 750.0, 7500.0, 6000.0}), (Place{28800.0, 750.0, 7500.0, 6000.0}));
    }
}

TEST_F(FormPlacementTest, ASmallerScreenTakesTheFormIn) {
    const Place saved{20000.0, 10000.0, 8000.0, 5000.0};
    EXPECT_EQ(restoredFrom(saved), saved);
    arrange({{0, 0, 800, 600}}, 40);
    EXPECT_EQ(restored(), (Place{4000.0, 3400.0, 8000.0, 5000.0}));
}

TEST_F(FormPlacementTest, ATaskBarMovedToTheTopDoesNotCoverTheTitle) {
    const Place saved{3000.0, 0.0, 6000.0, 4500.0};
    EXPECT_EQ(restoredFrom(saved), saved);
    desktop.monitors.front().info.work = {0, 40, 1920, 1080};
    EXPECT_EQ(restored(), (Place{3000.0, 600.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, TextsThatAreNoUsableNumbersCountAsNotSaved) {
    for (const wchar_t* text : {L"", L"left", L"12abc", L"1,5", L"0x10", L"1e7", L"-1e7", L"99999999999999999999",
                                L"1e999", L"nan", L"inf", L"--5", L"1 2"}) {
        for (const wchar_t* name : {L"Left", L"Top", L"Width", L"Height"})
            set(name, text);
        EXPECT_EQ(restored(), kMiddle) << ::testing::PrintToString(std::wstring(text));
    }
}

TEST_F(FormPlacementTest, AFinerScreenHasFewerTwips) {
    desktop.dots = 144;  // 10 twips a pixel
    EXPECT_EQ(restored(), (Place{6600.0, 2950.0, 6000.0, 4500.0}));
    EXPECT_EQ(restoredFrom({19200.0, 0.0, 6000.0, 4500.0}), (Place{13200.0, 0.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, WithoutACountOfMonitorsThePrimaryOneIsUsed) {
    desktop.countsMonitors = false;
    EXPECT_EQ(restored(), kMiddle);
    EXPECT_EQ(restoredFrom({90000.0, 0.0, 6000.0, 4500.0}), (Place{22800.0, 0.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, WithoutMonitorRecordsThePrimaryScreenIsUsed) {
    desktop.failing = "monitorInfo";
    EXPECT_EQ(restored(), (Place{11400.0, 5850.0, 6000.0, 4500.0}));
    EXPECT_EQ(restoredFrom({90000.0, 0.0, 6000.0, 4500.0}), (Place{22800.0, 0.0, 6000.0, 4500.0}));
    desktop.failing = "monitorFromRect";
    EXPECT_EQ(restored(), (Place{22800.0, 0.0, 6000.0, 4500.0}));
}

TEST_F(FormPlacementTest, WithoutAnyScreenTheFormStaysWhereItIs) {
    set({90000.0, 0.0, 7000.0, 5000.0});
    desktop.failing = "*";
    EXPECT_EQ(restored(), kDesign);
    desktop.failing = {};
    desktop.monitors.clear();
    EXPECT_EQ(restored(), kDesign);
}

TEST_F(FormPlacementTest, TheFormMovesOnceAndBeforeItIsMaximized) {
    set(L"WindowState", L"2");
    RestoreFormPlacement(form, store);
    EXPECT_EQ(form.moves, 1);
    EXPECT_EQ(form.state, WindowState::Maximized);
}

}  // namespace
}  // namespace kv::forms
