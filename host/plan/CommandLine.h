// What the command line of the sample host asks for.
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

struct CommandLine {
    std::wstring planFile;          ///< empty: none
    ProductOptions products;        ///< orders; the third when the command line names none
    std::optional<RangeMhz> range;  ///< products are computed and shown in it; otherwise everywhere
    std::optional<PixelSize> size;  ///< inner size of the window
    std::wstring saveFile;          ///< the picture goes there when it is drawn; empty: nowhere
    bool quit = false;              ///< ends when all is done and never waits for anybody
};

struct UsageError {
    std::wstring text;  ///< what is wrong, in one sentence
};

/// One line for each option, for messages.
extern const wchar_t* const kUsage;

/// Reads the arguments that follow the program's name; throws UsageError.
[[nodiscard]] CommandLine parseCommandLine(const std::vector<std::wstring>& arguments);

}  // namespace kv::host
