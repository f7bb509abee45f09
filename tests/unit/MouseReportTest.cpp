// The text of the report, piece by piece.
#include "control/MouseReport.h"

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

const std::wstring kMarker = L" ====== Max text length exceeded ======";

std::size_t occurrences(const std::wstring& text, const std::wstring& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::wstring::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

SlotRef labelled(double frequency, double bandwidth, const std::wstring& label) {
    SlotRef slot = makeSlot(frequency);
    channels::FreqSlotFields& fields = slot->fields();
    fields.dBW = bandwidth;
    fields.sFreqUnits = L"MHz";
    fields.sBWUnits = L"KHz";
    fields.sLabel = label;
    return slot;
}

SlotRef product(const std::vector<channels::ImComponent>& components) {
    SlotRef slot = labelled(450.5, 0.0, L"Intermod Product [3rd order product]");
    slot->fields().dPwrDBM = -93.456;
    slot->fields().components = components;
    return slot;
}

class MouseReportTest : public ::testing::Test {
  protected:
    void SetUp() override { report.begin(L"450.50000 MHz"); }
    void add(channels::ChannelKind kind, const SlotRef& slot) { report.add(kind, *slot); }
    MouseReport report;
};

TEST_F(MouseReportTest, IsEmptyWithoutAChannel) {
    EXPECT_EQ(report.text(), L"");
}

TEST_F(MouseReportTest, ReceiversAreListedBeforeTransmittersEachUnderItsHeading) {
    add(channels::ChannelKind::RX, labelled(450.5, 12.5, L"Dispatch"));
    add(channels::ChannelKind::RX, labelled(450.51, 0.0, L"Paging"));
    add(channels::ChannelKind::TX, labelled(450.49, 25.0, L"Base A"));
    EXPECT_EQ(report.text(),
              L"Mouse Location:\r\n450.50000 MHz\r\n\r\nRX Channels:"
              L"\r\n450.50000 MHz \u00B112.500 KHz Dispatch"
              L"\r\n450.51000 MHz Paging"
              L"\r\n\r\nTX Channels:"
              L"\r\n450.49000 MHz \u00B125.000 KHz Base A"
              L"\r\n     0.00");
}

TEST_F(MouseReportTest, TransmittersAloneFollowTheLocation) {
    const SlotRef slot = labelled(7.1, 0.0, L"");
    slot->fields().dPwrDBM = -103.456;
    add(channels::ChannelKind::TX, slot);
    EXPECT_EQ(report.text(), L"Mouse Location:\r\n450.50000 MHz\r\n\r\nTX Channels:\r\n7.10000 MHz \r\n     -103.46");
}

TEST_F(MouseReportTest, AChannelIsWrittenInItsOwnUnits) {
    const SlotRef slot = labelled(0.4505, 0.025, L"");
    slot->fields().sFreqUnits = L"GHz";
    slot->fields().sBWUnits = L"MHz";
    add(channels::ChannelKind::RX, slot);
    EXPECT_TRUE(report.text().ends_with(L"\r\n0.45050 GHz \u00B10.025 MHz "))
        << ::testing::PrintToString(report.text());
}

TEST_F(MouseReportTest, AProductListsItsComponentsInColumns) {
    add(channels::ChannelKind::TX, product({{2, 451.25, L"Base A"}, {-1, 1451.9, L""}, {-12, 33.0, L"Link"}}));
    EXPECT_EQ(report.text(),
              L"Mouse Location:\r\n450.50000 MHz\r\n\r\nTX Channels:"
              L"\r\n450.50000 MHz Intermod Product [3rd order product]"
              L"\r\n     -93.46"
              L"\r\n     INTERMOD COMPONENTS:"
              L"\r\n      +2x    451.25000  Base A"
              L"\r\n      -1x   1451.90000"
              L"\r\n     -12x     33.00000  Link");
}

TEST_F(MouseReportTest, AProductOfOneComponentHasTheHeading) {
    add(channels::ChannelKind::TX, product({{2, 451.25, L"Base A"}}));
    EXPECT_TRUE(report.text().ends_with(L"\r\n     INTERMOD COMPONENTS:\r\n      +2x    451.25000  Base A"))
        << ::testing::PrintToString(report.text());
}

TEST_F(MouseReportTest, ComponentsAreThoseOfProductsOnly) {
    const SlotRef plain = product({{2, 451.25, L"Base A"}});
    plain->fields().sLabel = L"Base B";
    add(channels::ChannelKind::TX, plain);
    EXPECT_EQ(report.text().find(L"INTERMOD"), std::wstring::npos);
    add(channels::ChannelKind::TX, product({}));
    EXPECT_EQ(report.text().find(L"INTERMOD"), std::wstring::npos);
}

TEST_F(MouseReportTest, AProductAmongTheReceiversHasNeitherPowerNorComponents) {
    add(channels::ChannelKind::RX, product({{2, 451.25, L"Base A"}}));
    EXPECT_TRUE(report.text().ends_with(L"\r\n450.50000 MHz Intermod Product [3rd order product]"));
}

TEST_F(MouseReportTest, TheGuardCountsTheStoredTextTwice) {
    report.SetReportText(std::wstring(15499, L'a'));
    report.SetReportText(std::wstring(15500, L'b'));
    EXPECT_EQ(report.text(), std::wstring(15500, L'b')) << "30,999 together are allowed";
    report.SetReportText(std::wstring(15500, L'c'));
    EXPECT_EQ(report.text(), std::wstring(15500, L'b') + L"\r\n\r\n" + kMarker) << "31,000 are not";
}

TEST_F(MouseReportTest, AFullReportStaysAsItIsWithOneMarker) {
    const SlotRef slot = labelled(450.5, 12.5, std::wstring(200, L'x'));
    int hits = 0;
    for (; !report.isFull() && hits < 1000; ++hits)
        add(channels::ChannelKind::TX, slot);
    ASSERT_TRUE(report.isFull());
    const std::wstring full = report.text();
    EXPECT_GT(hits, 50);
    EXPECT_NEAR(static_cast<double>(full.size()), 15500.0, 250.0);
    for (int i = 0; i < 100; ++i)
        add(channels::ChannelKind::TX, slot);
    report.SetReportText(L"short");
    EXPECT_EQ(report.text(), full);
    EXPECT_EQ(occurrences(full, kMarker), 1U);
    EXPECT_TRUE(full.ends_with(L"\r\n\r\n" + kMarker));
}

TEST_F(MouseReportTest, AFullReportReadsNoFurtherComponents) {
    const SlotRef endless =
        product(std::vector<channels::ImComponent>(30000, channels::ImComponent{1, 450.0, L"Transmitter"}));
    add(channels::ChannelKind::TX, endless);
    EXPECT_TRUE(report.isFull());
    EXPECT_EQ(occurrences(report.text(), kMarker), 1U);
}

TEST_F(MouseReportTest, BeginsAnewAfterAFullOne) {
    report.SetReportText(std::wstring(40000, L'a'));
    ASSERT_TRUE(report.isFull());
    report.begin(L"451.00000 MHz");
    EXPECT_EQ(report.text(), L"");
    add(channels::ChannelKind::RX, labelled(451.0, 0.0, L"B"));
    EXPECT_EQ(report.text(), L"Mouse Location:\r\n451.00000 MHz\r\n\r\nRX Channels:\r\n451.00000 MHz B");
}

}  // namespace
}  // namespace kv::control
