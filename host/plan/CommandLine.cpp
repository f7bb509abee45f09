#include "host/plan/CommandLine.h"

#include <cmath>
#include <cwchar>

namespace kv::host {

const wchar_t* const kUsage =
    L"BandscopeHost [--plan FILE] [--orders LIST] [--every-form] [--range MIN,MAX] [--size WxH] [--save FILE.bmp] "
    L"[--quit]\n\n"
    L"--plan FILE\tchannel plan (CSV) to open\n"
    L"--orders LIST\tintermodulation products to compute: 2, 3 and 5, separated by commas, or 0 for none; "
    L"3 when left out\n"
    L"--every-form\tall forms of the fifth order, not only 3A-2B and 2A+B-2C\n"
    L"--range MIN,MAX\tMHz; compute products and show the spectrum in this range\n"
    L"--size WxH\tinner size of the window in pixels, such as 1100x760\n"
    L"--save FILE.bmp\tsave the picture after it is drawn\n"
    L"--quit\tend when all of this is done; write errors to standard error and show no message box\n";

namespace {

/// The number at the start of `text`. Moves `text` behind it; throws UsageError when there is none.
double takeNumber(const wchar_t*& text, const std::wstring& problem) {
    wchar_t* end = nullptr;
    const double value = std::wcstod(text, &end);
    if (end == text || !std::isfinite(value)) {
        throw UsageError{problem};
    }
    text = end;
    return value;
}

void takeSeparator(const wchar_t*& text, wchar_t separator, const std::wstring& problem) {
    if (*text != separator) {
        throw UsageError{problem};
    }
    ++text;
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
        throw UsageError{
            L"--orders expects one or more of 2, 3 and 5, separated by commas, or 0 for none, but found \"" + text +
            L"\"."};
    }
}

RangeMhz readRange(const std::wstring& argument) {
    const std::wstring problem =
        L"--range expects two frequencies above 0 in MHz, the lower one first, such as 462.3,462.95, but found \"" +
        argument + L"\".";
    const wchar_t* text = argument.c_str();
    RangeMhz range;
    range.lowest = takeNumber(text, problem);
    takeSeparator(text, L',', problem);
    range.highest = takeNumber(text, problem);
    takeSeparator(text, L'\0', problem);
    constexpr double kHighestMhz = 3e6;
    if (!(range.lowest > 0.0 && range.lowest < range.highest && range.highest <= kHighestMhz)) {
        throw UsageError{problem};
    }
    return range;
}

PixelSize readSize(const std::wstring& argument) {
    const std::wstring problem =
        L"--size expects a width and a height of 100 to 10000 pixels, such as 1100x760, but found \"" + argument +
        L"\".";
    const wchar_t* text = argument.c_str();
    const double width = takeNumber(text, problem);
    takeSeparator(text, L'x', problem);
    const double height = takeNumber(text, problem);
    takeSeparator(text, L'\0', problem);
    for (const double side : {width, height}) {
        if (!(side >= 100.0 && side <= 10000.0) || side != std::floor(side)) {
            throw UsageError{problem};
        }
    }
    return {static_cast<int>(width), static_cast<int>(height)};
}

}  // namespace

CommandLine parseCommandLine(const std::vector<std::wstring>& arguments) {
    CommandLine result;
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
        } else if (option == L"--every-form") {
            result.products.everyFifthForm = true;
        } else if (option == L"--range") {
            result.range = readRange(value());
        } else if (option == L"--size") {
            result.size = readSize(value());
        } else if (option == L"--save") {
            result.saveFile = value();
        } else if (option == L"--quit") {
            result.quit = true;
        } else {
            throw UsageError{L"\"" + option + L"\" is not an option of this program."};
        }
    }
    if (result.range) {
        result.products.lowestHz = std::llround(result.range->lowest * 1e6);
        result.products.highestHz = std::llround(result.range->highest * 1e6);
    }
    return result;
}

}  // namespace kv::host
