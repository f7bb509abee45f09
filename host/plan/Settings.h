// What the host remembers from one run to the next, as the text of an INI file.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/plan/CommandLine.h"
#include "host/plan/WindowPlace.h"

namespace kv::host {

/// Options that the user has chosen in the menu. The host decides about the others.
struct ChosenOptions {
    std::optional<bool> secondOrder;
    std::optional<bool> thirdOrder;
    std::optional<bool> fifthOrder;
    std::optional<bool> everyFifthForm;
    std::optional<bool> wheelZoom;
    std::optional<bool> powerAxis;
    std::optional<bool> legend;
    std::optional<bool> labels;
    std::optional<bool> snap;

    bool operator==(const ChosenOptions&) const = default;
};

struct Settings {
    std::vector<std::wstring> recentPlans;
    std::optional<WindowPlace> place;
    ChosenOptions options;

    bool operator==(const Settings&) const = default;
};

/// Reads any text. Whatever is missing or wrong in it is left out.
[[nodiscard]] Settings settingsOf(std::wstring_view text);

/// The text from which settingsOf reads the same settings.
[[nodiscard]] std::wstring settingsText(const Settings& settings);

/// Adds the options that were chosen later.
void addOptions(ChosenOptions& options, const ChosenOptions& later);

/// The products to compute: what the command line says, and otherwise what was chosen.
[[nodiscard]] ProductOptions productsOf(const CommandLine& line, const ChosenOptions& options);

}  // namespace kv::host
