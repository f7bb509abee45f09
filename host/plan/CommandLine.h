// The command line of the sample host.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/plan/Products.h"

namespace kv::host {

struct RangeMhz {
    double lowest = 0.0;
    double highest = 0.0;
};

struct PixelSize {
    int width = 0;
    int height = 0;
};

struct SelfCheckOptions {
    std::wstring report;     ///< the file to write
    int redrawSeconds = 10;  ///< how long the display is drawn again and again
    int limitSeconds = 120;  ///< a step that takes longer counts as hung
    /// The reference pictures are written here instead of being compared; empty: compared.
    std::wstring picturesFolder;
};

struct CommandLine {
    std::wstring planFile;                      ///< empty: no plan
    ProductOptions products;                    ///< orders; the third order when the command line gives none
    std::optional<RangeMhz> range;              ///< products are computed and shown in this range only
    std::optional<PixelSize> size;              ///< inner size of the window
    std::wstring saveFile;                      ///< the picture is saved here after it is drawn; empty: not saved
    std::wstring hitsFile;                      ///< the list of hits is saved here as CSV; empty: not saved
    std::optional<SelfCheckOptions> selfCheck;  ///< the program checks the control instead of opening its window
    bool quit = false;                          ///< the program ends when all is done and never waits for the user
    bool ordersGiven = false;  ///< the command line has the orders, so that remembered ones do not count
    bool noSettings = false;   ///< settings are neither read nor written; the same with quit
    bool help = false;         ///< only the description of the options is wanted
};

struct UsageError {
    std::wstring text;  ///< what is wrong, in one sentence
};

/// A description of the options, one line for each.
extern const wchar_t* const kUsage;

/// Reads the arguments after the program's name; throws UsageError. If one of them asks for help, the others do not
/// count.
[[nodiscard]] CommandLine parseCommandLine(const std::vector<std::wstring>& arguments);

}  // namespace kv::host
