#include "host/plan/ChannelReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "host/plan/Quoted.h"
#include "util/NumberFormat.h"
#include "util/Text.h"

namespace kv::host {

namespace {

// Allowed frequencies. A frequency in the wrong unit is usually below 1 kHz, and the Radio Regulations end at 3,000
// GHz.
constexpr double kLowestHz = 1e3;
constexpr double kHighestHz = 3e12;
constexpr double kLowestDbm = -200.0;
constexpr double kHighestDbm = 120.0;
constexpr const wchar_t* kProductPrefix = L"txim";

struct Unit {
    const wchar_t* name;
    double hertz;
};

constexpr std::array<Unit, 4> kUnits = {{{L"hz", 1.0}, {L"khz", 1e3}, {L"mhz", 1e6}, {L"ghz", 1e9}}};

}  // namespace

std::optional<PlanChannel> ChannelReader::read(const CsvLine& line) {
    line_ = &line;
    if (!hasAllFields()) {
        return std::nullopt;
    }
    const std::size_t before = errors_.size();
    PlanChannel channel;
    readKind(channel);
    readKey(channel, errors_.size() == before);
    channel.label = text(kLabel).empty() ? channel.key : text(kLabel);
    readFrequency(channel);
    readBandwidth(channel);
    readPower(channel);
    channel.boxColour = colour(kBoxColour);
    channel.lineColour = colour(kLineColour);
    return errors_.size() == before && !errors_.isFull() ? std::optional(std::move(channel)) : std::nullopt;
}

bool ChannelReader::hasAllFields() {
    const std::size_t width = columns_.width();
    const std::vector<CsvField>& fields = line_->fields;
    if (fields.size() == width) {
        return true;
    }
    std::wstring message = wrongSeparator(fields.front().text);
    if (message.empty()) {
        message = L"expected " + std::to_wstring(width) + L" fields, as in the line that names the columns, found " +
                  std::to_wstring(fields.size());
    }
    errors_.add(line_->number, fields[std::min(fields.size(), width + 1) - 1].column, {}, std::move(message));
    return false;
}

void ChannelReader::readKind(PlanChannel& channel) {
    const std::wstring name = util::foldCase(text(kKind));
    channel.transmits = name == L"tx";
    if (name != L"tx" && name != L"rx") {
        fail(kKind, L"expected TX or RX, found " + inQuotes(text(kKind)));
    }
}

void ChannelReader::readKey(PlanChannel& channel, bool isKindKnown) {
    channel.key = text(kKey);
    const std::wstring folded = util::foldCase(channel.key);
    const std::wstring prefix = channel.transmits ? L"TX" : L"RX";
    if (isKindKnown && (!folded.starts_with(util::foldCase(prefix)) || folded.size() == prefix.size())) {
        return fail(kKey, L"expected a key that begins with " + prefix + L" and has more characters after it, found " +
                              inQuotes(channel.key));
    }
    if (folded.starts_with(kProductPrefix)) {
        return fail(kKey, L"expected another key than " + inQuotes(channel.key) +
                              L": keys that begin with TXIM are reserved for intermodulation products");
    }
    const auto [other, fresh] = keys_.try_emplace(folded, line_->number);
    if (!fresh) {
        fail(kKey, L"expected a unique key, found " + inQuotes(channel.key) + L", which line " +
                       std::to_wstring(other->second) + L" already uses");
    }
}

void ChannelReader::readFrequency(PlanChannel& channel) {
    const std::optional<double> value = hertz(kFrequency, kFrequencyUnit, 1e6);
    if (!value) {
        return;
    }
    if (!(*value >= kLowestHz && *value <= kHighestHz)) {
        return fail(kFrequency, L"expected a frequency between 1 kHz and 3000 GHz, found " +
                                    found(kFrequency, kFrequencyUnit, L"MHz"));
    }
    channel.frequencyHz = std::llround(*value);
}

void ChannelReader::readBandwidth(PlanChannel& channel) {
    const std::optional<double> value = hertz(kBandwidth, kBandwidthUnit, 1e3);
    if (!value) {
        return;
    }
    // The lower edge of a channel must be above 0. A bandwidth below 1 Hz is a sign of a wrong unit. If the frequency
    // is not known, any channel may have the bandwidth of the highest one.
    const double frequency = channel.frequencyHz == 0 ? kHighestHz : static_cast<double>(channel.frequencyHz);
    if (!(*value >= 1.0 && std::round(*value) / 2.0 < frequency)) {
        return fail(kBandwidth, L"expected a bandwidth of at least 1 Hz and less than twice the frequency, found " +
                                    found(kBandwidth, kBandwidthUnit, L"KHz"));
    }
    channel.bandwidthHz = std::llround(*value);
}

void ChannelReader::readPower(PlanChannel& channel) {
    if (text(kPower).empty()) {
        return;
    }
    const std::optional<double> dbm = number(kPower);
    if (dbm && !(*dbm >= kLowestDbm && *dbm <= kHighestDbm)) {
        return fail(kPower, L"expected a power between -200 and 120 dBm, found " + inQuotes(text(kPower)));
    }
    channel.powerDbm = dbm.value_or(0.0);
}

std::optional<Colour> ChannelReader::colour(PlanColumn column) {
    const std::wstring& value = text(column);
    if (value.empty()) {
        return std::nullopt;
    }
    std::uint32_t rgb = 0;
    bool good = value.size() == 7 && value.front() == L'#';
    for (std::size_t i = 1; good && i < value.size(); ++i) {
        static constexpr std::wstring_view kDigits = L"0123456789abcdef";
        const std::size_t digit = kDigits.find(static_cast<wchar_t>(value[i] | (value[i] > L'9' ? 0x20 : 0)));
        good = digit != std::wstring_view::npos;
        rgb = rgb * 16 + static_cast<std::uint32_t>(good ? digit : 0);
    }
    if (!good) {
        fail(column, L"expected a color such as #1F5FA8, found " + inQuotes(value));
    }
    return (rgb & 0x0000FF00U) | (rgb >> 16) | ((rgb & 0xFFU) << 16);
}

std::optional<double> ChannelReader::number(PlanColumn column) {
    std::optional<double> result = util::parseNumber(text(column));
    if (!result) {
        fail(column, L"expected a number such as 462.55, found " + inQuotes(text(column)));
    }
    return result;
}

/// The number of hertz in the unit that the field names.
std::optional<double> ChannelReader::unit(PlanColumn column, double otherwise) {
    const std::wstring name = util::foldCase(text(column));
    if (name.empty()) {
        return otherwise;
    }
    for (const Unit& unit : kUnits) {
        if (name == unit.name) {
            return unit.hertz;
        }
    }
    fail(column, L"expected Hz, KHz, MHz or GHz, found " + inQuotes(text(column)));
    return std::nullopt;
}

std::optional<double> ChannelReader::hertz(PlanColumn column, PlanColumn unitColumn, double otherwise) {
    const std::optional<double> value = number(column);
    const std::optional<double> factor = unit(unitColumn, otherwise);
    return value && factor ? std::optional(*value * *factor) : std::nullopt;
}

std::wstring ChannelReader::found(PlanColumn column, PlanColumn unitColumn, const wchar_t* otherwise) const {
    return inQuotes(text(column)) + L" " + (text(unitColumn).empty() ? otherwise : text(unitColumn));
}

const std::wstring& ChannelReader::text(PlanColumn column) const {
    static const std::wstring kNothing;
    const CsvField* const field = columns_.fieldOf(*line_, column);
    return field == nullptr ? kNothing : field->text;
}

void ChannelReader::fail(PlanColumn column, std::wstring message) {
    const CsvField* const field = columns_.fieldOf(*line_, column);
    errors_.add(line_->number, field == nullptr ? 1 : field->column, PlanColumns::nameOf(column), std::move(message));
}

}  // namespace kv::host
