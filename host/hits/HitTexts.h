// The texts of the list of hits. The user's locale never matters.
#pragma once

#include <optional>
#include <string>

#include "host/hits/HitFinder.h"
#include "host/hits/HitRows.h"

namespace kv::host {

/// The heading of a column, with its unit: "Offset (kHz)".
[[nodiscard]] const wchar_t* headingOf(HitColumn column) noexcept;

[[nodiscard]] std::wstring cellOf(HitColumn column, const HitSite& site, const Hit& hit);

/// How many hits are shown, and what they are about, in one sentence.
[[nodiscard]] std::wstring summaryOf(const HitFinder& finder, const HitRows& rows);

/// Why the list is empty; an empty text if it is not, or while hits are being found.
[[nodiscard]] std::wstring whyEmpty(const HitFinder& finder, const HitRows& rows);

/// The message for a list that cannot have all hits.
[[nodiscard]] std::wstring tooManyHits(const HitFinder& finder);

/// What the status line of the spectrum says about a hit that it shows.
[[nodiscard]] std::wstring spotText(const HitSite& site, const Hit& hit);

/// The power that the user has entered. `valid` is false for a text that is neither empty nor a number.
struct EnteredPower {
    std::optional<double> dbm;
    bool valid = true;
};
[[nodiscard]] EnteredPower enteredPower(const std::wstring& text);

}  // namespace kv::host
