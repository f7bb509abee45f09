#include "host/plan/Settings.h"

#include <array>
#include <cmath>

#include "host/plan/RecentPlans.h"
#include "util/Ini.h"
#include "util/IniText.h"
#include "util/NumberFormat.h"

namespace kv::host {

namespace {

constexpr const wchar_t* kWindow = L"Window";
constexpr const wchar_t* kOptions = L"Options";
constexpr const wchar_t* kRecent = L"Recent plans";

struct OptionName {
    const wchar_t* name;
    std::optional<bool> ChosenOptions::*option;
};

constexpr std::array<OptionName, 9> kOptionNames{{{L"SecondOrder", &ChosenOptions::secondOrder},
                                                  {L"ThirdOrder", &ChosenOptions::thirdOrder},
                                                  {L"FifthOrder", &ChosenOptions::fifthOrder},
                                                  {L"EveryFifthForm", &ChosenOptions::everyFifthForm},
                                                  {L"WheelZoom", &ChosenOptions::wheelZoom},
                                                  {L"PowerAxis", &ChosenOptions::powerAxis},
                                                  {L"Legend", &ChosenOptions::legend},
                                                  {L"ChannelLabels", &ChosenOptions::labels},
                                                  {L"Snap", &ChosenOptions::snap}}};

std::optional<int> wholeNumber(const util::IniText& ini, const wchar_t* key, const wchar_t* section) {
    constexpr double kLargest = 100'000.0;
    const std::optional<double> value = util::parseNumber(ini.find(key, section).value_or(L""));
    const bool good = value && std::fabs(*value) <= kLargest && *value == std::floor(*value);
    return good ? std::optional(static_cast<int>(*value)) : std::nullopt;
}

std::optional<bool> flag(const util::IniText& ini, const wchar_t* key, const wchar_t* section) {
    const std::optional<int> value = wholeNumber(ini, key, section);
    return value == 0 || value == 1 ? std::optional(value == 1) : std::nullopt;
}

std::optional<WindowPlace> placeOf(const util::IniText& ini) {
    const std::optional<int> left = wholeNumber(ini, L"Left", kWindow);
    const std::optional<int> top = wholeNumber(ini, L"Top", kWindow);
    const std::optional<int> width = wholeNumber(ini, L"Width", kWindow);
    const std::optional<int> height = wholeNumber(ini, L"Height", kWindow);
    if (!left || !top || width.value_or(0) <= 0 || height.value_or(0) <= 0) {
        return std::nullopt;
    }
    return WindowPlace{{*left, *top, *left + *width, *top + *height}, flag(ini, L"Maximized", kWindow).value_or(false)};
}

/// Whether a path is read back as it is.
bool canBeWritten(std::wstring_view path) {
    return !path.empty() && path.find_first_of(std::wstring_view(L"\r\n\0", 3)) == std::wstring_view::npos &&
           util::trimBlanks(path) == path && util::withoutQuotes(path) == path;
}

std::wstring lineOf(const std::wstring& key, const std::wstring& value) {
    return key + L"=" + value + L"\r\n";
}

std::wstring sectionOf(const wchar_t* name) {
    return L"[" + std::wstring(name) + L"]\r\n";
}

}  // namespace

Settings settingsOf(std::wstring_view text) {
    const util::IniText ini(text);
    Settings settings;
    for (std::size_t i = kMostRecentPlans; i > 0; --i) {
        if (const std::optional<std::wstring> path = ini.find(std::to_wstring(i), kRecent); path && !path->empty()) {
            addRecentPlan(settings.recentPlans, *path);
        }
    }
    settings.place = placeOf(ini);
    for (const auto& [name, option] : kOptionNames) {
        settings.options.*option = flag(ini, name, kOptions);
    }
    return settings;
}

std::wstring settingsText(const Settings& settings) {
    std::wstring text;
    if (settings.place) {
        const ScreenRect& rect = settings.place->rect;
        text += sectionOf(kWindow) + lineOf(L"Left", std::to_wstring(rect.left)) +
                lineOf(L"Top", std::to_wstring(rect.top)) + lineOf(L"Width", std::to_wstring(rect.width())) +
                lineOf(L"Height", std::to_wstring(rect.height())) +
                lineOf(L"Maximized", settings.place->maximized ? L"1" : L"0");
    }
    text += sectionOf(kOptions);
    for (const auto& [name, option] : kOptionNames) {
        if (const std::optional<bool>& value = settings.options.*option) {
            text += lineOf(name, *value ? L"1" : L"0");
        }
    }
    text += sectionOf(kRecent);
    std::size_t number = 0;
    for (const std::wstring& path : settings.recentPlans) {
        if (canBeWritten(path)) {
            text += lineOf(std::to_wstring(++number), path);
        }
    }
    return text;
}

void addOptions(ChosenOptions& options, const ChosenOptions& later) {
    for (const auto& [name, option] : kOptionNames) {
        if (later.*option) {
            options.*option = later.*option;
        }
    }
}

ProductOptions productsOf(const CommandLine& line, const ChosenOptions& options) {
    ProductOptions products = line.products;
    if (line.ordersGiven) {
        return products;
    }
    products.second = options.secondOrder.value_or(products.second);
    products.third = options.thirdOrder.value_or(products.third);
    products.fifth = options.fifthOrder.value_or(products.fifth);
    products.everyFifthForm |= options.everyFifthForm.value_or(false);
    return products;
}

}  // namespace kv::host
