// What is printed above the picture, and where both are on the page.
#pragma once

#include <string>

#include "host/plan/CommandLine.h"
#include "host/plan/WindowPlace.h"

namespace kv::host {

/// "462.3000 to 462.9500 MHz".
[[nodiscard]] std::wstring rangeText(const RangeMhz& range);

/// Local time.
struct PrintTime {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
};

struct PageHeading {
    std::wstring title;    ///< the plan's name
    std::wstring details;  ///< "2026-03-09 17:04, 462.3000 to 462.9500 MHz", in every locale
};

/// A page without a plan is called "Spectrum".
[[nodiscard]] PageHeading headingOf(const std::wstring& planName, const PrintTime& time, const RangeMhz& range);

struct PageLayout {
    ScreenRect title;
    ScreenRect details;
    ScreenRect picture;
};

/// For a page of this size and texts of these heights, in device units. The picture is as wide as the page and not
/// higher than 9/16 of its width.
[[nodiscard]] PageLayout layOutPage(int width, int height, int titleHeight, int detailsHeight);

}  // namespace kv::host
