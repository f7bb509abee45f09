#include "host/plan/CommandLine.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

#include "host/plan/Quoted.h"
#include "util/NumberFormat.h"

namespace kv::host {

const wchar_t* const kUsage =
    L"BandscopeHost [--plan FILE] [--orders LIST] [--every-form] [--range MIN,MAX] [--size WxH] [--save FILE.bmp] "
    L"[--hits FILE.csv] [--no-settings] [--quit]\n"
    L"BandscopeHost --self-check REPORT.txt\n"
    L"BandscopeHost --help\n\n"
    L"--plan FILE\tchannel plan (CSV) to open\n"
    L"--orders LIST\tintermodulation products to compute: 2, 3 and 5, separated by commas, or 0 for none; "
    L"when left out, those last chosen in the menu, at first 3\n"
    L"--every-form\tall forms of the fifth order, not only 3A-2B and 2A+B-2C\n"
    L"--range MIN,MAX\tMHz; compute products and show the spectrum in this range\n"
    L"--size WxH\tinner size of the window in pixels, such as 1100x760\n"
    L"--save FILE.bmp\tsave the picture after it is drawn\n"
    L"--hits FILE.csv\tsave the products that overlap receivers of the plan\n"
    L"--no-settings\tneither read nor write the settings (recent plans, window position and options)\n"
    L"--quit\tend when all of this is done; write errors to standard error and show no message box; "
    L"implies --no-settings\n"
    L"--self-check REPORT.txt\tcheck the control on this machine and write a report; see self-check.md\n"
    L"--help\tshow this description and end; also -h and /?\n";

namespace {

/// The two numbers around the only `separator` in `text`. The user's locale does not matter. Throws UsageError with
/// `problem` for any other text.
std::pair<double, double> twoNumbers(std::wstring_view text, wchar_t separator, const std::wstring& problem) {
    const std::size_t at = text.find(separator);
    const std::optional<double> first = util::parseNumber(text.substr(0, at));
    const std::optional<double> second =
        util::parseNumber(at == std::wstring_view::npos ? std::wstring_view() : text.substr(at + 1));
    if (!first || !second) {
        throw UsageError{problem};
    }
    return {*first, *second};
}

void readOrders(const std::wstring& text, ProductOptions& products) {
    products.second = products.third = products.fifth = false;
    bool separated = true;
    for (const wchar_t c : text) {
        if (c == L',' ? separated : !separated || std::wstring(L"0235").find(c) == std::wstring::npos) {
            separated = true;
            break;
        }
        separated = c == L',';
        products.second |= c == L'2';
        products.third |= c == L'3';
        products.fifth |= c == L'5';
    }
    if (separated) {
        throw UsageError{L"--orders expects one or more of 2, 3 and 5, separated by commas, or 0 for none, but found " +
                         inQuotes(text) + L"."};
    }
}

RangeMhz readRange(const std::wstring& argument) {
    const std::wstring problem =
        L"--range expects two frequencies above 0 in MHz, the lower one first, such as 462.3,462.95, but found " +
        inQuotes(argument) + L".";
    const auto [lowest, highest] = twoNumbers(argument, L',', problem);
    constexpr double kHighestMhz = 3e6;
    if (!(lowest > 0.0 && lowest < highest && highest <= kHighestMhz)) {
        throw UsageError{problem};
    }
    return {lowest, highest};
}

PixelSize readSize(const std::wstring& argument) {
    const std::wstring problem =
        L"--size expects a width and a height of 100 to 10000 pixels, such as 1100x760, but found " +
        inQuotes(argument) + L".";
    const auto [width, height] = twoNumbers(argument, L'x', problem);
    for (const double side : {width, height}) {
        if (!(side >= 100.0 && side <= 10000.0) || side != std::floor(side)) {
            throw UsageError{problem};
        }
    }
    return {static_cast<int>(width), static_cast<int>(height)};
}

int readSeconds(const std::wstring& option, const std::wstring& argument) {
    const std::optional<double> seconds = util::parseNumber(argument);
    if (!seconds || !(*seconds >= 1.0 && *seconds <= 3600.0) || *seconds != std::floor(*seconds)) {
        throw UsageError{option + L" expects 1 to 3600 seconds, but found " + inQuotes(argument) + L"."};
    }
    return static_cast<int>(*seconds);
}

/// The options after --self-check, which are for tests and maintainers. False for any other option.
template <class Value>
bool readSelfCheckOption(const std::wstring& option, const Value& value, SelfCheckOptions& check) {
    if (option == L"--self-check-seconds") {
        check.redrawSeconds = readSeconds(option, value());
    } else if (option == L"--self-check-limit") {
        check.limitSeconds = readSeconds(option, value());
    } else if (option == L"--self-check-pictures") {
        check.picturesFolder = value();
    } else {
        return false;
    }
    return true;
}

bool asksForHelp(const std::wstring& argument) {
    return argument == L"--help" || argument == L"-h" || argument == L"/?";
}

/// Throws UsageError for options that make no sense together.
void refuseContradictions(const CommandLine& line) {
    if (!line.hitsFile.empty() && line.planFile.empty()) {
        throw UsageError{L"--hits needs a plan: add --plan FILE."};
    }
    if (line.selfCheck && (!line.planFile.empty() || line.range || line.size || !line.saveFile.empty())) {
        throw UsageError{
            L"--self-check opens no plan and saves no picture, so it allows none of the options for them."};
    }
}

}  // namespace

CommandLine parseCommandLine(const std::vector<std::wstring>& arguments) {
    CommandLine result;
    if (std::ranges::any_of(arguments, asksForHelp)) {
        result.help = true;
        return result;
    }
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::wstring& option = arguments[i];
        const auto value = [&]() -> const std::wstring& {
            if (i + 1 == arguments.size() || arguments[i + 1].empty()) {
                throw UsageError{option + L" needs a value after it."};
            }
            return arguments[++i];
        };
        if (option == L"--plan") {
            result.planFile = value();
        } else if (option == L"--orders") {
            readOrders(value(), result.products);
            result.ordersGiven = true;
        } else if (option == L"--every-form") {
            result.products.everyFifthForm = true;
        } else if (option == L"--range") {
            result.range = readRange(value());
        } else if (option == L"--size") {
            result.size = readSize(value());
        } else if (option == L"--save") {
            result.saveFile = value();
        } else if (option == L"--hits") {
            result.hitsFile = value();
        } else if (option == L"--no-settings") {
            result.noSettings = true;
        } else if (option == L"--quit") {
            result.quit = true;
        } else if (option == L"--self-check") {
            result.selfCheck.emplace().report = value();
        } else if (!result.selfCheck || !readSelfCheckOption(option, value, *result.selfCheck)) {
            throw UsageError{inQuotes(option) + L" is not an option of this program."};
        }
    }
    refuseContradictions(result);
    if (result.range) {
        result.products.lowestHz = std::llround(result.range->lowest * 1e6);
        result.products.highestHz = std::llround(result.range->highest * 1e6);
    }
    return result;
}

}  // namespace kv::host
