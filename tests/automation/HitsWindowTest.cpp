// The window with the list of hits, for an owner that records what it is asked for.
#include "host/HitsWindow.h"

#include <gmock/gmock.h>

#include <array>

#include "host/Com.h"
#include "host/HitsFile.h"
#include "host/resource.h"
#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/win32/TempFolder.h"

namespace kv::test {
namespace {

using host::Plan;
using host::PlanChannel;
using host::ProductOptions;

class RecordingOwner final : public host::HitsOwner {
  public:
    void showSpot(const host::Spot& spot, const std::wstring& text) override {
        spots.push_back(spot);
        lastText = text;
    }
    void findHits() override { ++searches; }
    void saveShownHits() override { ++saves; }
    void focusSpectrum() override { ++departures; }
    void reportHitsFailure() noexcept override { ++failures; }

    std::vector<host::Spot> spots;
    std::wstring lastText;
    int searches = 0;
    int saves = 0;
    int departures = 0;
    int failures = 0;
};

std::filesystem::path planFile(const char* name) {
    return std::filesystem::path("Z:" KV_SOURCE_DIR) / "examples" / "plans" / name;
}

class HitsWindow : public testing::Test {
  protected:
    void SetUp() override { hits.open(); }
    void TearDown() override {
        EXPECT_EQ(owner.failures, 0);
        DestroyWindow(parent);
    }

    void find(const Plan& plan, const ProductOptions& options = {}) {
        hits.find(plan, L"gmrs.csv", options);
        finish();
    }
    void finish() {
        while (hits.finding())
            hits.continueFinding();
    }
    [[nodiscard]] HWND part(int id) const { return GetDlgItem(hits.window(), id); }
    [[nodiscard]] HWND list() const { return part(IDC_HITS_LIST); }
    [[nodiscard]] int rows() const { return ListView_GetItemCount(list()); }
    [[nodiscard]] std::wstring summary() const { return windowText(part(IDC_HITS_SUMMARY)); }
    [[nodiscard]] std::wstring cell(int row, int column) const {
        std::array<wchar_t, 200> text{};
        LVITEMW item{};
        item.iSubItem = column;
        item.pszText = text.data();
        item.cchTextMax = static_cast<int>(text.size());
        SendMessageW(list(), LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
        return text.data();
    }
    [[nodiscard]] std::wstring line(int row) const {
        std::wstring result;
        for (int column = 0; column < 8; ++column)
            result += (column == 0 ? L"" : L"|") + cell(row, column);
        return result;
    }
    static void click(HWND window, int x, int y) {
        PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
        PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
        pump();
    }
    void clickHeading(int column) const {
        const HWND header = ListView_GetHeader(list());
        RECT place{};
        SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&place));
        click(header, (place.left + place.right) / 2, (place.top + place.bottom) / 2);
    }
    void clickRow(int row) const {
        RECT place{};
        ListView_GetItemRect(list(), row, &place, LVIR_BOUNDS);
        click(list(), place.left + 20, (place.top + place.bottom) / 2);
    }
    /// As the message loop of the program does it.
    void key(WPARAM code) {
        MSG message{};
        message.hwnd = GetFocus();
        message.message = WM_KEYDOWN;
        message.wParam = code;
        message.lParam = 1;
        EXPECT_TRUE(hits.translate(message));
        pump();
    }
    [[nodiscard]] int arrowOf(int column) const {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        SendMessageW(ListView_GetHeader(list()), HDM_GETITEMW, static_cast<WPARAM>(column),
                     reinterpret_cast<LPARAM>(&item));
        return item.fmt & (HDF_SORTUP | HDF_SORTDOWN);
    }
    void select(int order, const wchar_t* power) const {
        SendMessageW(part(IDC_HITS_ORDER), CB_SETCURSEL, static_cast<WPARAM>(order), 0);
        SendMessageW(hits.window(), WM_COMMAND, MAKEWPARAM(IDC_HITS_ORDER, CBN_SELCHANGE), 0);
        SetWindowTextW(part(IDC_HITS_POWER), power);
        pump();
    }

    const Plan gmrs = host::loadPlan(planFile("gmrs.csv"));
    HWND parent = CreateWindowExW(0, L"STATIC", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 600, 200, nullptr,
                                  nullptr, nullptr, nullptr);
    RecordingOwner owner;
    host::HitsWindow hits{parent, owner};
};

TEST_F(HitsWindow, ListsTheHitsOfAPlan) {
    find(gmrs);
    EXPECT_EQ(windowText(hits.window()), L"Hits - gmrs.csv");
    EXPECT_EQ(rows(), 224);
    EXPECT_EQ(summary(), L"224 hits: 124 products overlap 7 of 22 receivers.");
    // TX15 + TX17 - TX16 = 462.550 + 462.600 - 462.575 MHz.
    EXPECT_EQ(line(0), L"RX01|FRS/GMRS channel 1 hand-held|462.575000|+12.500|3|TX15 + TX17 - TX16|3.98|10.000");
    EXPECT_FALSE(IsWindowVisible(part(IDC_HITS_CANCEL)));
    EXPECT_FALSE(IsWindowVisible(part(IDC_HITS_EMPTY)));
    EXPECT_TRUE(IsWindowEnabled(part(IDC_HITS_EXPORT)));
}

TEST_F(HitsWindow, AClickOnAHeadingSortsAndASecondOneReverses) {
    find(gmrs);
    EXPECT_EQ(arrowOf(6), 0);
    clickHeading(6);
    EXPECT_EQ(arrowOf(6), HDF_SORTUP);
    // The weakest: 2 x TX21 with 41.76 dBm each, and TX18 with 43.01 dBm. It is at 462.775 MHz, which hits nothing; so
    // the weakest hit is another one, and the strongest has three transmitters of 46.99 dBm: 140.97 + 6.02 - 140.
    EXPECT_LT(std::stod(cell(0, 6)), std::stod(cell(100, 6)));
    EXPECT_EQ(cell(223, 6), L"6.99");
    clickHeading(6);
    EXPECT_EQ(arrowOf(6), HDF_SORTDOWN);
    EXPECT_EQ(cell(0, 6), L"6.99");
    clickHeading(0);
    EXPECT_EQ(arrowOf(6), 0);
    EXPECT_EQ(arrowOf(0), HDF_SORTUP);
    EXPECT_EQ(cell(0, 0), L"RX01");
    EXPECT_EQ(cell(223, 0), L"RX07");
}

TEST_F(HitsWindow, TheSelectedHitStaysSelectedWhenTheRowsAreSorted) {
    find(gmrs);
    clickRow(3);
    const std::wstring selected = line(3);
    clickHeading(5);
    clickHeading(5);
    const int row = ListView_GetNextItem(list(), -1, LVNI_SELECTED);
    EXPECT_NE(row, 3);
    EXPECT_EQ(line(row), selected);
}

TEST_F(HitsWindow, AClickShowsTheSpotAndTheFocusStaysInTheList) {
    find(gmrs);
    clickRow(0);
    ASSERT_EQ(owner.spots.size(), 1U);
    EXPECT_DOUBLE_EQ(owner.spots[0].cursor, 462.575);
    EXPECT_LT(owner.spots[0].lowest, 462.5625 - 0.025);
    EXPECT_GT(owner.spots[0].highest, 462.5625 + 0.025);
    EXPECT_EQ(owner.lastText, L"TX15 + TX17 - TX16 hits RX01 with an overlap of 10.000 kHz.");
    EXPECT_EQ(GetFocus(), list());
}

TEST_F(HitsWindow, ArrowKeysMoveAndEnterShows) {
    find(gmrs);
    SetFocus(list());
    key(VK_DOWN);
    key(VK_DOWN);
    EXPECT_TRUE(owner.spots.empty());
    const int row = ListView_GetNextItem(list(), -1, LVNI_FOCUSED);
    ASSERT_GT(row, 0);
    key(VK_RETURN);
    ASSERT_EQ(owner.spots.size(), 1U);
    EXPECT_DOUBLE_EQ(owner.spots[0].cursor, std::stod(cell(row, 2)));
    EXPECT_EQ(GetFocus(), list());
}

TEST_F(HitsWindow, TheFilterActsAtOnceAndCanBeCleared) {
    find(gmrs);
    select(0, L"6.99");
    EXPECT_GT(rows(), 0);
    EXPECT_LT(rows(), 224);
    for (int row = 0; row < rows(); ++row)
        EXPECT_EQ(cell(row, 6), L"6.99");
    select(1, L"");
    EXPECT_EQ(rows(), 0) << "the second order";
    EXPECT_EQ(summary(), L"0 of 224 hits shown.");
    EXPECT_TRUE(IsWindowVisible(part(IDC_HITS_EMPTY)));
    EXPECT_THAT(windowText(part(IDC_HITS_EMPTY)), testing::HasSubstr(L"passes the filter"));
    SendMessageW(part(IDC_HITS_CLEAR), BM_CLICK, 0, 0);
    EXPECT_EQ(rows(), 224);
    EXPECT_FALSE(IsWindowVisible(part(IDC_HITS_EMPTY)));
}

TEST_F(HitsWindow, FiltersByAReceiverOfTheDropDownListOrByText) {
    find(gmrs);
    const HWND receivers = part(IDC_HITS_RECEIVER);
    EXPECT_EQ(SendMessageW(receivers, CB_GETCOUNT, 0, 0), 22);
    SendMessageW(receivers, CB_SETCURSEL, 0, 0);
    SendMessageW(hits.window(), WM_COMMAND, MAKEWPARAM(IDC_HITS_RECEIVER, CBN_SELCHANGE), 0);
    EXPECT_EQ(summary(), L"27 of 224 hits shown: 27 products overlap 1 of 22 receivers.");
    SetWindowTextW(receivers, L"channel 7");
    SendMessageW(hits.window(), WM_COMMAND, MAKEWPARAM(IDC_HITS_RECEIVER, CBN_EDITCHANGE), 0);
    EXPECT_GT(rows(), 0);
    EXPECT_EQ(cell(0, 0), L"RX07");
}

TEST_F(HitsWindow, AMinimumThatIsNoNumberIsNamedAndFiltersNothing) {
    find(gmrs);
    select(0, L"strong");
    EXPECT_EQ(rows(), 224);
    EXPECT_EQ(summary(), L"The minimum power must be a number, such as -30.");
}

TEST_F(HitsWindow, FilterAndOrderStayWithAnotherPlan) {
    find(gmrs);
    select(0, L"0");
    clickHeading(3);
    find(host::loadPlan(planFile("marine-vhf.csv")));
    EXPECT_THAT(summary(), testing::HasSubstr(L" of 4,820 hits shown"));
    EXPECT_EQ(arrowOf(3), HDF_SORTUP);
    EXPECT_LE(std::stod(cell(0, 3)), std::stod(cell(rows() - 1, 3)));
    for (int row = 0; row < rows(); row += 50)
        EXPECT_GE(std::stod(cell(row, 6)), 0.0);
}

TEST_F(HitsWindow, AnEmptyListSaysWhy) {
    find(host::loadPlan(planFile("frs-gmrs.csv")));
    EXPECT_EQ(rows(), 0);
    EXPECT_TRUE(IsWindowVisible(part(IDC_HITS_EMPTY)));
    EXPECT_THAT(windowText(part(IDC_HITS_EMPTY)), testing::HasSubstr(L"no receivers"));
    find(gmrs);
    EXPECT_FALSE(IsWindowVisible(part(IDC_HITS_EMPTY)));
}

/// A hundred transmitters and 200 receivers. With every form of the fifth order, a search for all hits takes long.
Plan crowdedSite() {
    Plan plan = host::loadPlan(planFile("site-100.csv"));
    for (int i = 0; i < 200; ++i) {
        PlanChannel receiver;
        receiver.key = L"RX" + std::to_wstring(i);
        receiver.label = receiver.key;
        receiver.frequencyHz = 150'000'000 + 120'000 * i;
        receiver.bandwidthHz = 11'250;
        plan.channels.push_back(receiver);
    }
    return plan;
}

ProductOptions everyForm() {
    ProductOptions options;
    options.fifth = true;
    options.everyFifthForm = true;
    return options;
}

TEST_F(HitsWindow, ShowsTheFirstRowsWhileTheSearchGoesOnAndStopsOnCancel) {
    hits.find(crowdedSite(), L"site", everyForm());
    hits.continueFinding();
    ASSERT_TRUE(hits.finding());
    const int first = rows();
    EXPECT_GT(first, 0);
    EXPECT_THAT(summary(), testing::StartsWith(L"Finding hits: "));
    EXPECT_TRUE(IsWindowVisible(part(IDC_HITS_PROGRESS)));
    EXPECT_FALSE(IsWindowEnabled(part(IDC_HITS_EXPORT)));
    clickRow(0);
    EXPECT_EQ(owner.spots.size(), 1U) << "the list can be used meanwhile";
    SendMessageW(part(IDC_HITS_CANCEL), BM_CLICK, 0, 0);
    EXPECT_FALSE(hits.finding());
    EXPECT_EQ(rows(), first);
    EXPECT_THAT(summary(), testing::StartsWith(L"Stopped before all hits were found. "));
    EXPECT_FALSE(IsWindowVisible(part(IDC_HITS_PROGRESS)));
}

TEST_F(HitsWindow, EscapeStopsTheSearchAndThenClosesTheWindow) {
    hits.find(crowdedSite(), L"site", everyForm());
    hits.continueFinding();
    ASSERT_TRUE(hits.finding());
    key(VK_ESCAPE);
    EXPECT_FALSE(hits.finding());
    EXPECT_TRUE(hits.isOpen());
    key(VK_ESCAPE);
    EXPECT_FALSE(hits.isOpen());
    EXPECT_EQ(owner.departures, 1);
    EXPECT_EQ(rows(), 0);
    hits.open();
    find(gmrs);
    EXPECT_EQ(rows(), 224);
}

TEST_F(HitsWindow, TabMovesThroughFilterListAndButton) {
    find(gmrs);
    SetFocus(list());
    std::vector<int> ids;
    for (int i = 0; i < 6; ++i) {
        key(VK_TAB);
        HWND focus = GetFocus();
        if (GetParent(focus) != hits.window())
            focus = GetParent(focus);  // the edit field of a drop-down list
        ids.push_back(GetDlgCtrlID(focus));
    }
    EXPECT_THAT(ids, testing::ElementsAre(IDC_HITS_EXPORT, IDC_HITS_ORDER, IDC_HITS_POWER, IDC_HITS_RECEIVER,
                                          IDC_HITS_CLEAR, IDC_HITS_LIST));
}

TEST_F(HitsWindow, FunctionKeysSearchAgainAndGoBackToTheSpectrum) {
    find(gmrs);
    key(VK_F5);
    EXPECT_EQ(owner.searches, 1);
    key(VK_F4);
    EXPECT_EQ(owner.departures, 1);
}

TEST_F(HitsWindow, SavesTheRowsAsTheyAreShown) {
    const TempFolder folder(L"kv hits");
    find(gmrs);
    select(0, L"6.99");
    clickHeading(0);
    hits.save(folder.file(L"hits.csv"));
    const std::string content = contentOf(folder.file(L"hits.csv"));
    EXPECT_THAT(content, testing::StartsWith("Receiver,Label,Product (MHz),"));
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), rows() + 1);
    EXPECT_THAT(summary(), testing::HasSubstr(L"hits.csv"));
}

TEST_F(HitsWindow, AFileThatCannotBeReplacedStaysAsItWas) {
    const TempFolder folder(L"kv hits");
    const std::wstring file = folder.file(L"hits.csv");
    writeContent(file, "earlier");
    const HANDLE held = CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    try {
        host::findAndSaveHits(file, gmrs, {});
        ADD_FAILURE() << "was saved";
    } catch (const host::Failure& failure) {
        EXPECT_EQ(failure.code, host::kExitSaveFailed);
        EXPECT_THAT(failure.text, testing::HasSubstr(file + L": the file that has this name cannot be replaced"));
    }
    CloseHandle(held);
    EXPECT_EQ(contentOf(file), "earlier");
    EXPECT_FALSE(fileExists(file + L".1.tmp"));
}

TEST_F(HitsWindow, MoreHitsThanAListCanHaveAreNamedAndNotSaved) {
    // 40 transmitters have 31,200 products, and each hits 100 receivers.
    Plan plan;
    for (int i = 0; i < 140; ++i) {
        PlanChannel channel;
        channel.transmits = i < 40;
        channel.key = (i < 40 ? L"TX" : L"RX") + std::to_wstring(i);
        channel.frequencyHz = 150'000'000 + i;
        channel.bandwidthHz = 10'000;
        plan.channels.push_back(channel);
    }
    const TempFolder folder(L"kv hits");
    try {
        host::findAndSaveHits(folder.file(L"hits.csv"), plan, {});
        ADD_FAILURE() << "was saved";
    } catch (const host::Failure& failure) {
        EXPECT_EQ(failure.code, host::kExitUsage);
        EXPECT_THAT(failure.text, testing::HasSubstr(L"more than 2,000,000 hits"));
    }
    EXPECT_FALSE(fileExists(folder.file(L"hits.csv")));
}

}  // namespace
}  // namespace kv::test
