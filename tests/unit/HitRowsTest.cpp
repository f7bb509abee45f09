// Sorting and filtering the list of hits.
#include "host/hits/HitRows.h"

#include <gmock/gmock.h>

#include <set>

#include "host/hits/HitTexts.h"
#include "host/hits/NaturalOrder.h"
#include "tests/unit/HitSites.h"

namespace {

using kv::host::cellOf;
using kv::host::compareNaturally;
using kv::host::Hit;
using kv::host::HitColumn;
using kv::host::HitFilter;
using kv::host::HitFinder;
using kv::host::HitRows;
using kv::host::Plan;
using kv::test::channel;
using kv::test::findAll;
using kv::test::orders;

TEST(NaturalOrder, ComparesNumbersByValueAndLettersWithoutCase) {
    const wchar_t* const sorted[] = {L"",
                                     L"10",
                                     L"a",
                                     L"RX",
                                     L"rx 1",
                                     L"RX1",
                                     L"RX1a",
                                     L"RX2",
                                     L"RX010",
                                     L"RX11",
                                     L"RX100",
                                     L"RXa",
                                     L"TX99999999999999999999998",
                                     L"tx99999999999999999999999"};
    for (std::size_t i = 0; i < std::size(sorted); ++i) {
        for (std::size_t j = 0; j < std::size(sorted); ++j) {
            const int order = compareNaturally(sorted[i], sorted[j]);
            EXPECT_EQ(order < 0, i < j) << i << " " << j;
            EXPECT_EQ(order > 0, i > j) << i << " " << j;
        }
    }
    EXPECT_EQ(compareNaturally(L"rx007", L"RX7"), 0);
    EXPECT_EQ(compareNaturally(L"0", L"000"), 0);
}

std::vector<std::wstring> cells(const HitFinder& finder, const HitRows& rows, HitColumn column) {
    std::vector<std::wstring> result;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        result.push_back(cellOf(column, finder.site(), rows.at(row)));
    }
    return result;
}

/// Numbers of a column, or the text of another column, in the order in which they must be.
bool inOrder(const std::vector<std::wstring>& cells, HitColumn column, bool descending) {
    const bool text = column == HitColumn::kReceiver || column == HitColumn::kLabel;
    for (std::size_t i = 1; i < cells.size(); ++i) {
        const double order =
            text ? compareNaturally(cells[i - 1], cells[i]) : std::stod(cells[i - 1]) - std::stod(cells[i]);
        if (descending ? order < 0 : order > 0) {
            return false;
        }
    }
    return true;
}

/// A marine plan has many hits with the same value in each column.
class HitRowsOfMarine : public testing::Test {
  protected:
    HitRowsOfMarine() { findAll(finder); }
    HitFinder finder{kv::test::samplePlan("marine-vhf.csv"), orders(false, true, false)};
};

TEST_F(HitRowsOfMarine, SortsByEachColumnInBothDirections) {
    HitRows rows(finder);
    ASSERT_EQ(rows.size(), 159U + 4661U);
    for (const HitColumn column : {HitColumn::kReceiver, HitColumn::kLabel, HitColumn::kFrequency, HitColumn::kOffset,
                                   HitColumn::kOrder, HitColumn::kPower, HitColumn::kOverlap}) {
        for (const bool descending : {false, true}) {
            rows.sort(column, descending);
            const std::vector<std::wstring> sorted = cells(finder, rows, column);
            EXPECT_EQ(sorted.size(), finder.hits().size());
            EXPECT_TRUE(inOrder(sorted, column, descending)) << static_cast<int>(column) << descending;
        }
    }
}

TEST_F(HitRowsOfMarine, SortingIsStableInBothDirections) {
    for (const bool descending : {false, true}) {
        HitRows rows(finder);
        rows.sort(HitColumn::kPower, descending);
        rows.sort(HitColumn::kReceiver, !descending);
        const std::vector<std::wstring> keys = cells(finder, rows, HitColumn::kReceiver);
        const std::vector<std::wstring> powers = cells(finder, rows, HitColumn::kPower);
        for (std::size_t from = 0; from < keys.size();) {
            std::size_t to = from;
            std::vector<std::wstring> same;
            for (; to < keys.size() && keys[to] == keys[from]; ++to) {
                same.push_back(powers[to]);
            }
            EXPECT_TRUE(inOrder(same, HitColumn::kPower, descending));
            from = to;
        }
    }
}

TEST(HitRows, SortsFormulasByTheirFormAndThenByTheKeys) {
    HitFinder finder({{channel(L"TX10", 1000, 10), channel(L"TX9", 1100, 10), channel(L"TX2", 1250, 10),
                       channel(L"RX1", 1200, 2399)}},
                     orders(true, true, false));
    findAll(finder);
    HitRows rows(finder);
    rows.sort(HitColumn::kFormula, false);
    EXPECT_THAT(cells(finder, rows, HitColumn::kFormula),
                testing::ElementsAre(L"TX2 - TX9", L"TX2 - TX10", L"TX9 - TX10", L"TX9 + TX2", L"TX10 + TX2",
                                     L"TX10 + TX9", L"TX9 + TX2 - TX10", L"TX10 + TX2 - TX9", L"TX10 + TX9 - TX2",
                                     L"2 x TX2 - TX9", L"2 x TX2 - TX10", L"2 x TX9 - TX2", L"2 x TX9 - TX10",
                                     L"2 x TX10 - TX2", L"2 x TX10 - TX9"));
}

TEST_F(HitRowsOfMarine, FiltersWithTheSameResultAsLookingAtEachHit) {
    HitRows rows(finder);
    const std::wstring receiver = finder.site().receivers()[5].key;
    for (const int order : {0, 3, 5}) {
        for (const std::optional<double> power : {std::optional<double>(), {-1.0}, {3.98}, {1e300}, {-1e300}}) {
            for (const std::wstring& name : {std::wstring(), receiver, std::wstring(L"no such receiver")}) {
                rows.filter({order, power, name});
                std::size_t hits = 0;
                std::set<std::wstring> products;
                std::set<std::uint32_t> receivers;
                for (const Hit& hit : finder.hits()) {
                    const double shown = std::stod(cellOf(HitColumn::kPower, finder.site(), hit));
                    if ((order != 5) && (!power || shown >= *power - 1e-9) &&
                        (name.empty() || finder.site().receiverOf(hit).key == name)) {
                        ++hits;
                        products.insert(finder.site().formulaOf(hit));
                        receivers.insert(hit.receiver);
                    }
                }
                EXPECT_EQ(rows.size(), hits);
                EXPECT_EQ(rows.counts().hits, hits);
                EXPECT_EQ(rows.counts().products, products.size());
                EXPECT_EQ(rows.counts().receivers, receivers.size());
            }
        }
    }
}

TEST_F(HitRowsOfMarine, TheMinimumIsComparedWithThePowerAsItIsShown) {
    HitRows rows(finder);
    rows.sort(HitColumn::kPower, true);
    for (std::size_t row = 0; row < rows.size(); row += 97) {
        const std::wstring shown = cellOf(HitColumn::kPower, finder.site(), rows.at(row));
        HitRows filtered(finder);
        filtered.filter({0, std::stod(shown), L""});
        filtered.sort(HitColumn::kPower, false);
        ASSERT_GT(filtered.size(), row);
        EXPECT_EQ(cellOf(HitColumn::kPower, finder.site(), filtered.at(0)), shown);
    }
}

TEST_F(HitRowsOfMarine, FilteringKeepsTheOrderAndSortingTheFilter) {
    HitRows rows(finder);
    rows.sort(HitColumn::kOffset, true);
    rows.filter({0, 0.0, L""});
    EXPECT_TRUE(inOrder(cells(finder, rows, HitColumn::kOffset), HitColumn::kOffset, true));
    const std::size_t filtered = rows.size();
    EXPECT_LT(filtered, finder.hits().size());
    rows.sort(HitColumn::kFrequency, false);
    EXPECT_EQ(rows.size(), filtered);
    rows.filter({});
    EXPECT_EQ(rows.size(), finder.hits().size());
    EXPECT_TRUE(inOrder(cells(finder, rows, HitColumn::kFrequency), HitColumn::kFrequency, false));
}

TEST(HitRows, SelectsReceiversByKeyOrNameOrPartOfIt) {
    const auto receiver = [](const wchar_t* key, const wchar_t* label) { return channel(key, 1200, 10, 0.0, label); };
    HitFinder finder({{channel(L"TX1", 1000, 10), channel(L"TX2", 1100, 10), receiver(L"RX1", L"Port control"),
                       receiver(L"RX10", L"Police RX1"), receiver(L"RX2", L"port CONTROL 2"), receiver(L"RX3", L"")}},
                     orders(false, true, false));
    findAll(finder);
    HitRows rows(finder);
    const auto selected = [&](const wchar_t* text) {
        rows.filter({0, std::nullopt, text});
        return cells(finder, rows, HitColumn::kReceiver);
    };
    using testing::ElementsAre;
    EXPECT_THAT(selected(L"rx1"), ElementsAre(L"RX1")) << "a key selects one receiver only";
    EXPECT_THAT(selected(L"RX10"), ElementsAre(L"RX10"));
    EXPECT_THAT(selected(L"RX1  Port control"), ElementsAre(L"RX1")) << "a name, as in the drop-down list";
    EXPECT_THAT(selected(L"control"), ElementsAre(L"RX1", L"RX2"));
    EXPECT_THAT(selected(L"RX"), ElementsAre(L"RX1", L"RX10", L"RX2", L"RX3"));
    EXPECT_THAT(selected(L"  rx3 "), ElementsAre(L"RX3"));
    EXPECT_THAT(selected(L"  "), ElementsAre(L"RX1", L"RX10", L"RX2", L"RX3")) << "blanks are no name";
    EXPECT_THAT(selected(L"RX9"), testing::IsEmpty());
}

TEST(HitRows, FollowsTheFinder) {
    Plan plan;
    for (int i = 0; i < 30; ++i) {
        plan.channels.push_back(channel(L"TX" + std::to_wstring(i), 150'000'000 + 12'500 * i, 11'250, 40.0 + i % 3));
        plan.channels.push_back(channel(L"RX" + std::to_wstring(i), 150'000'000 + 25'000 * i, 11'250));
    }
    HitFinder finder(plan, orders(false, true, false));
    HitRows rows(finder);
    rows.filter({0, -15.0, L""});
    finder.step();
    rows.extend();
    const std::size_t first = rows.size();
    EXPECT_GT(first, 0U);
    rows.sort(HitColumn::kOffset, false);
    findAll(finder);
    rows.extend();
    EXPECT_GT(rows.size(), first);
    HitRows all(finder);
    all.filter({0, -15.0, L""});
    EXPECT_EQ(rows.size(), all.size());
    EXPECT_LT(all.size(), finder.hits().size());
    EXPECT_EQ(rows.counts().products, all.counts().products);
    EXPECT_EQ(rows.counts().receivers, all.counts().receivers);
    rows.sort(HitColumn::kOffset, false);
    EXPECT_TRUE(inOrder(cells(finder, rows, HitColumn::kOffset), HitColumn::kOffset, false));
}

}  // namespace
