#include "host/hits/HitTexts.h"

#include <algorithm>

#include "util/NumberFormat.h"
#include "util/Text.h"

namespace kv::host {

namespace {

std::wstring grouped(std::size_t number) {
    return util::formatNumber(static_cast<double>(number), L"#,##0");
}

std::wstring counted(std::size_t number, const wchar_t* noun) {
    return grouped(number) + L" " + noun + (number == 1 ? L"" : L"s");
}

std::wstring kilohertz(double hertz) {
    // A fourth decimal is needed for the half hertz of an odd bandwidth only.
    return util::formatNumber(hertz / 1e3, L"0.000#");
}

}  // namespace

const wchar_t* headingOf(HitColumn column) noexcept {
    switch (column) {
        case HitColumn::kReceiver:
            return L"Receiver";
        case HitColumn::kLabel:
            return L"Label";
        case HitColumn::kFrequency:
            return L"Product (MHz)";
        case HitColumn::kOffset:
            return L"Offset (kHz)";
        case HitColumn::kOrder:
            return L"Order";
        case HitColumn::kFormula:
            return L"Formula";
        case HitColumn::kPower:
            return L"Power (dBm)";
        case HitColumn::kOverlap:
            return L"Overlap (kHz)";
    }
    return L"";
}

std::wstring cellOf(HitColumn column, const HitSite& site, const Hit& hit) {
    switch (column) {
        case HitColumn::kReceiver:
            return site.receiverOf(hit).key;
        case HitColumn::kLabel:
            return site.receiverOf(hit).label;
        case HitColumn::kFrequency:
            return util::formatNumber(static_cast<double>(site.frequencyOf(hit)) / 1e6, L"0.000000");
        case HitColumn::kOffset:
            return (site.offsetOf(hit) > 0 ? L"+" : L"") + kilohertz(static_cast<double>(site.offsetOf(hit)));
        case HitColumn::kOrder:
            return std::to_wstring(orderOf(hit));
        case HitColumn::kFormula:
            return site.formulaOf(hit);
        case HitColumn::kPower:
            return util::formatNumber(hit.hundredthsDbm / 100.0, L"0.00");
        case HitColumn::kOverlap:
            return kilohertz(static_cast<double>(site.overlapOf(hit)) / 2.0);
    }
    return {};
}

std::wstring summaryOf(const HitFinder& finder, const HitRows& rows) {
    const std::size_t found = finder.hits().size();
    if (finder.state() == HitFinder::State::kFinding) {
        return L"Finding hits: " + grouped(found) + L" so far.";
    }
    std::wstring text;
    if (finder.state() == HitFinder::State::kStopped) {
        text = L"Stopped before all hits were found. ";
    } else if (finder.state() == HitFinder::State::kFull) {
        text = tooManyHits(finder) + L" ";
    }
    if (found == 0) {
        return text + L"No hits.";
    }
    const HitCounts shown = rows.counts();
    text += rows.filter().selects() ? grouped(shown.hits) + L" of " + counted(found, L"hit") + L" shown"
                                    : counted(found, L"hit");
    if (shown.hits == 0) {
        return text + L".";
    }
    return text + L": " + counted(shown.products, L"product") + (shown.products == 1 ? L" overlaps " : L" overlap ") +
           grouped(shown.receivers) + L" of " + counted(finder.site().receivers().size(), L"receiver") + L".";
}

std::wstring whyEmpty(const HitFinder& finder, const HitRows& rows) {
    if (rows.size() != 0 || finder.state() == HitFinder::State::kFinding) {
        return {};
    }
    if (!finder.hits().empty()) {
        return L"None of the hits passes the filter. Clear the filter to see all of them.";
    }
    const HitSite& site = finder.site();
    if (site.transmitters().empty() && site.receivers().empty()) {
        return L"No channel plan is open. Choose Open plan... in the menu File.";
    }
    if (site.receivers().empty()) {
        return L"This plan has no receivers that a product could hit. Receivers are the channels of the kind RX.";
    }
    const ProductOptions& options = finder.options();
    if (!options.second && !options.third && !options.fifth) {
        return L"No products are computed. Choose their orders in the menu View, Products.";
    }
    if (site.transmitters().size() < 2) {
        return L"This plan has no products, because it has fewer than two transmitters.";
    }
    if (finder.state() == HitFinder::State::kStopped) {
        return L"No hits were found before the search was stopped. Press F5 to start it again.";
    }
    if (finder.productCount() == 0) {
        return L"There is no product in the range that was selected.";
    }
    return finder.productCount() == 1
               ? L"The only product overlaps no receiver."
               : L"None of the " + counted(finder.productCount(), L"product") + L" overlaps a receiver.";
}

std::wstring tooManyHits(const HitFinder& finder) {
    return L"There are more than " + counted(finder.mostHits(), L"hit") +
           L", which is the most that the list can have. Select fewer orders or a smaller range.";
}

std::wstring spotText(const HitSite& site, const Hit& hit) {
    return site.formulaOf(hit) + L" hits " + site.receiverOf(hit).key + L" with an overlap of " +
           cellOf(HitColumn::kOverlap, site, hit) + L" kHz.";
}

EnteredPower enteredPower(const std::wstring& text) {
    if (util::trim(text).empty()) {
        return {};
    }
    const std::optional<double> dbm = util::parseNumber(text);
    return {dbm, dbm.has_value()};
}

}  // namespace kv::host
