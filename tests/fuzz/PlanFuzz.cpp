// Channel plans of any bytes: a plan that keeps its promises, or an error at a position inside the file.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/plan/Plan.h"
#include "tests/fuzz/Fuzz.h"
#include "util/Utf8.h"

namespace kv::host {
namespace {

using fuzz::require;

constexpr wchar_t kFile[] = L"fuzz.csv";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

using Result = std::variant<Plan, PlanErrors>;

Result parsed(const std::string& bytes) {
    try {
        return parsePlan(bytes, kFile);
    } catch (const PlanErrors& errors) {
        return errors;
    }
}

bool sameChannel(const PlanChannel& a, const PlanChannel& b) {
    return a.transmits == b.transmits && a.key == b.key && a.label == b.label && a.frequencyHz == b.frequencyHz &&
           a.bandwidthHz == b.bandwidthHz && a.powerDbm == b.powerDbm && a.boxColour == b.boxColour &&
           a.lineColour == b.lineColour;
}

bool samePlan(const Plan& a, const Plan& b) {
    return std::equal(a.channels.begin(), a.channels.end(), b.channels.begin(), b.channels.end(), sameChannel);
}

/// ASCII only: two keys that are equal by it are equal by every rule of case.
std::wstring lowered(std::wstring text) {
    for (wchar_t& c : text)
        c = c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c;
    return text;
}

void checkChannel(const PlanChannel& channel) {
    const std::wstring key = lowered(channel.key);
    require(key.size() > 2 && key.starts_with(channel.transmits ? L"tx" : L"rx"), "the key says the kind");
    require(!key.starts_with(L"txim"), "keys of products are reserved");
    require(!channel.label.empty(), "every channel has a label");
    require(channel.frequencyHz >= 1000 && channel.frequencyHz <= 3'000'000'000'000, "the frequency is allowed");
    require(channel.bandwidthHz >= 1, "the bandwidth is at least 1 Hz");
    require(channel.bandwidthHz < 2 * channel.frequencyHz, "the lower edge is above 0");
    require(channel.powerDbm >= -200.0 && channel.powerDbm <= 120.0, "the power is allowed");
    require(channel.boxColour.value_or(0) <= 0xFFFFFF && channel.lineColour.value_or(0) <= 0xFFFFFF,
            "a color has 24 bits");
}

void checkPlan(const Plan& plan) {
    require(!plan.channels.empty(), "a plan has channels");
    require(plan.transmitterCount() + plan.receiverCount() == plan.channels.size(), "every channel is counted");
    std::set<std::wstring> keys;
    for (const PlanChannel& channel : plan.channels) {
        checkChannel(channel);
        require(keys.insert(lowered(channel.key)).second, "keys are unique");
    }
}

/// The line's bytes without its end, counted from 1; nothing when there is no such line.
std::optional<std::string_view> lineOf(std::string_view bytes, std::size_t number) {
    if (bytes.starts_with(kByteOrderMark))
        bytes.remove_prefix(kByteOrderMark.size());
    for (; number > 1; --number) {
        const std::size_t end = bytes.find('\n');
        if (end == std::string_view::npos)
            return std::nullopt;
        bytes.remove_prefix(end + 1);
    }
    return bytes.substr(0, bytes.find('\n'));
}

bool breaksLine(wchar_t c) {
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029;
}

void checkError(const PlanError& error, std::string_view bytes) {
    require(error.file() == kFile, "the error names the file");
    require(error.message().starts_with(L"expected"), "the message says what was expected");
    require(std::ranges::none_of(error.text(), breaksLine), "the message is one line");
    require((error.line() == 0) == (error.column() == 0), "the position is complete");
    if (error.line() == 0)
        return;
    const std::optional<std::string_view> line = lineOf(bytes, error.line());
    require(line.has_value(), "the line is in the file");
    const auto characters = std::ranges::count_if(*line, [](char c) { return (c & 0xC0) != 0x80; });
    require(error.column() <= static_cast<std::size_t>(characters) + 1, "the column is in the line");
}

bool holdsNoFields(std::string_view line) {
    return line.starts_with('#') || line.find_first_not_of(" \t\r") == std::string_view::npos;
}

/// The number of the line that names the columns; 0 without one.
std::size_t headerOf(std::string_view bytes) {
    for (std::size_t number = 1;; ++number) {
        const std::optional<std::string_view> line = lineOf(bytes, number);
        if (!line)
            return 0;
        if (!holdsNoFields(*line))
            return number;
    }
}

/// The text with these lines emptied.
std::string without(const std::set<std::size_t>& lines, const std::string& bytes) {
    std::string kept;
    std::size_t number = 1;
    for (const char c : bytes) {
        if (c == '\n' || !lines.contains(number))
            kept += c;
        number += c == '\n' ? 1 : 0;
    }
    return kept;
}

/// Every line that is not in the list is good.
void checkOtherLines(const PlanErrors& errors, const std::string& bytes) {
    std::set<std::size_t> lines;
    for (const PlanError& error : errors.list())
        lines.insert(error.line());
    const std::size_t header = headerOf(bytes);
    if (header == 0 || *lines.begin() <= header || errors.hasMore())
        return;
    const Result rest = parsed(without(lines, bytes));
    const PlanErrors* const others = std::get_if<PlanErrors>(&rest);
    require(others == nullptr || (others->list().size() == 1 && others->line() == 0), "all wrong lines are listed");
}

void checkErrors(const PlanErrors& errors, const std::string& bytes) {
    require(!errors.list().empty() && errors.list().size() <= kMostPlanErrors, "the list is limited");
    require(!errors.hasMore() || errors.list().size() == kMostPlanErrors, "the list is filled");
    require(errors.text() == errors.list().front().text(), "the first error is the one that is named");
    require(std::ranges::is_sorted(errors.list(), {}, &PlanError::line), "the list has the order of the file");
    for (const PlanError& error : errors.list())
        checkError(error, bytes);
    checkOtherLines(errors, bytes);
}

std::string quoted(const std::wstring& text) {
    std::string result = "\"";
    for (const char c : util::toUtf8(text))
        result += c == '"' ? "\"\"" : std::string(1, c);
    return result + '"';
}

std::string colorText(const std::optional<Colour>& color) {
    if (!color)
        return {};
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", *color & 0xFFU, *color >> 8U & 0xFFU,
                  *color >> 16U & 0xFFU);
    return text.data();
}

/// The plan with every column, every text in quotes and every frequency in Hz.
std::string written(const Plan& plan) {
    std::string text =
        "kind,key,label,frequency,frequency unit,bandwidth,bandwidth unit,power,box colour,line colour\n";
    for (const PlanChannel& channel : plan.channels) {
        std::array<char, 32> power{};
        const auto end = std::to_chars(power.begin(), power.end(), channel.powerDbm).ptr;
        text += channel.transmits ? "TX," : "RX,";
        text += quoted(channel.key) + "," + quoted(channel.label) + ",";
        text += std::to_string(channel.frequencyHz) + ",Hz," + std::to_string(channel.bandwidthHz) + ",Hz,";
        text += std::string(power.begin(), end) + ",";
        text += colorText(channel.boxColour) + "," + colorText(channel.lineColour) + "\n";
    }
    return text;
}

/// The same text in another form gives the same result, `lines` further down.
void checkSame(const Result& result, const std::string& other, std::size_t lines) {
    const Result otherResult = parsed(other);
    require(result.index() == otherResult.index(), "the form of the file does not matter");
    if (const Plan* plan = std::get_if<Plan>(&result)) {
        require(samePlan(*plan, std::get<Plan>(otherResult)), "the form of the file does not change a channel");
        return;
    }
    const std::vector<PlanError>& errors = std::get<PlanErrors>(result).list();
    const std::vector<PlanError>& others = std::get<PlanErrors>(otherResult).list();
    require(errors.size() == others.size(), "the form of the file does not add an error");
    for (std::size_t i = 0; i < errors.size(); ++i) {
        require(errors[i].column() == others[i].column() && errors[i].field() == others[i].field(),
                "the form of the file does not move an error");
        require(others[i].line() == (errors[i].line() == 0 ? 0 : errors[i].line() + lines), "lines are counted");
    }
}

void checkForms(const Result& result, const std::string& bytes) {
    if (bytes.starts_with(kByteOrderMark))
        return;
    checkSame(result, std::string(kByteOrderMark) + bytes, 0);
    checkSame(result, "# a comment, \"with a quote\n \t\n" + bytes, 2);
    if (bytes.find('\r') == std::string::npos) {
        std::string windows;
        for (const char c : bytes)
            windows += c == '\n' ? "\r\n" : std::string(1, c);
        checkSame(result, windows, 0);
    }
}

void check(const std::string& bytes) {
    const Result result = parsed(bytes);
    if (const Plan* plan = std::get_if<Plan>(&result)) {
        checkPlan(*plan);
        const Result again = parsed(written(*plan));
        require(std::holds_alternative<Plan>(again), "a plan that is written again is readable");
        require(samePlan(*plan, std::get<Plan>(again)), "a plan that is written again is the same");
    } else {
        checkErrors(std::get<PlanErrors>(result), bytes);
    }
    checkForms(result, bytes);
}

}  // namespace
}  // namespace kv::host

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kv::host::check(std::string(data, data + size));
    return 0;
}
