#include "host/plan/Plan.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <map>

#include "host/plan/Csv.h"
#include "host/plan/Quoted.h"
#include "util/NumberFormat.h"
#include "util/Text.h"

namespace kv::host {

namespace {

enum Column : std::size_t {
    kKind,
    kKey,
    kLabel,
    kFrequency,
    kBandwidth,
    kFrequencyUnit,
    kBandwidthUnit,
    kPower,
    kBoxColour,
    kLineColour,
    kColumnCount
};

struct ColumnName {
    const wchar_t* name;
    bool needed;
};

constexpr std::array<ColumnName, kColumnCount> kColumns = {{{L"kind", true},
                                                            {L"key", true},
                                                            {L"label", false},
                                                            {L"frequency", true},
                                                            {L"bandwidth", true},
                                                            {L"frequency unit", false},
                                                            {L"bandwidth unit", false},
                                                            {L"power", false},
                                                            {L"box colour", false},
                                                            {L"line colour", false}}};

// Allowed frequencies. A frequency in the wrong unit is usually below 1 kHz, and the Radio Regulations end at 3,000
// GHz.
constexpr double kLowestHz = 1e3;
constexpr double kHighestHz = 3e12;
constexpr double kLowestDbm = -200.0;
constexpr double kHighestDbm = 120.0;
constexpr const wchar_t* kProductPrefix = L"txim";
constexpr std::uintmax_t kMostMegabytes = 64;
constexpr std::uintmax_t kMostBytes = kMostMegabytes * 1024 * 1024;
// A site has far fewer. They are added to the control in one go, while the window handles no messages.
constexpr std::size_t kMostChannels = 100'000;

/// Reads one file: knows the columns and the line that is being read.
class Reader {
  public:
    explicit Reader(std::wstring fileName) : fileName_(std::move(fileName)) { places_.fill(kAbsent); }

    Plan read(std::string_view bytes) {
        CsvReader reader(bytes);
        std::optional<CsvLine> line = next(reader);
        if (!line) {
            failFile(L"expected a line that names the columns, but the file has none");
        }
        readHeader(*line);
        Plan plan;
        while ((line = next(reader))) {
            if (plan.channels.size() == kMostChannels) {
                throw PlanError(fileName_, line->number, 1, {},
                                L"expected at most " + std::to_wstring(kMostChannels) + L" channels in a plan");
            }
            plan.channels.push_back(readChannel(*line));
        }
        if (plan.channels.empty()) {
            failFile(L"expected at least one channel below the line that names the columns");
        }
        return plan;
    }

  private:
    static constexpr std::size_t kAbsent = static_cast<std::size_t>(-1);

    std::optional<CsvLine> next(CsvReader& reader) const {
        try {
            return reader.next();
        } catch (const CsvFault& fault) {
            throw PlanError(fileName_, fault.line, fault.column, {}, fault.message);
        }
    }

    void readHeader(const CsvLine& line) {
        for (std::size_t i = 0; i < line.fields.size(); ++i) {
            const CsvField& field = line.fields[i];
            const std::wstring name = util::foldCase(field.text);
            const auto known = std::find_if(kColumns.begin(), kColumns.end(),
                                            [&](const ColumnName& column) { return name == column.name; });
            if (known == kColumns.end()) {
                failColumnName(line, field);
            }
            std::size_t& place = places_[static_cast<std::size_t>(known - kColumns.begin())];
            if (place != kAbsent) {
                throw PlanError(fileName_, line.number, field.column, field.text,
                                L"expected each column only once, but this name occurs twice");
            }
            place = i;
        }
        for (std::size_t i = 0; i < kColumnCount; ++i) {
            if (kColumns[i].needed && places_[i] == kAbsent) {
                throw PlanError(fileName_, line.number, 1, kColumns[i].name,
                                L"expected a column with this name, because every plan needs it");
            }
        }
        width_ = line.fields.size();
    }

    [[noreturn]] void failColumnName(const CsvLine& line, const CsvField& field) const {
        if (std::wstring hint = wrongSeparator(field.text); !hint.empty()) {
            throw PlanError(fileName_, line.number, field.column, {}, std::move(hint));
        }
        throw PlanError(fileName_, line.number, field.column, field.text,
                        L"expected the name of a column (kind, key, label, frequency, bandwidth, frequency unit, "
                        L"bandwidth unit, power, box colour or line colour), found " +
                            inQuotes(field.text));
    }

    void checkWidth(const CsvLine& line) const {
        if (line.fields.size() == width_) {
            return;
        }
        std::wstring message = wrongSeparator(line.fields.front().text);
        if (message.empty()) {
            message = L"expected " + std::to_wstring(width_) +
                      L" fields, as in the line that names the columns, found " + std::to_wstring(line.fields.size());
        }
        const std::size_t column = line.fields[std::min(line.fields.size(), width_ + 1) - 1].column;
        throw PlanError(fileName_, line.number, column, {}, std::move(message));
    }

    PlanChannel readChannel(const CsvLine& line) {
        line_ = &line;
        checkWidth(line);
        PlanChannel channel;
        channel.transmits = kind();
        channel.key = key(channel.transmits);
        channel.label = text(kLabel).empty() ? channel.key : text(kLabel);
        channel.frequencyHz = frequency();
        channel.bandwidthHz = bandwidth(channel.frequencyHz);
        channel.powerDbm = power();
        channel.boxColour = colour(kBoxColour);
        channel.lineColour = colour(kLineColour);
        return channel;
    }

    bool kind() const {
        const std::wstring name = util::foldCase(text(kKind));
        if (name != L"tx" && name != L"rx") {
            fail(kKind, L"expected TX or RX, found " + inQuotes(text(kKind)));
        }
        return name == L"tx";
    }

    std::wstring key(bool transmits) {
        const std::wstring& name = text(kKey);
        const std::wstring folded = util::foldCase(name);
        const std::wstring prefix = transmits ? L"TX" : L"RX";
        if (!folded.starts_with(util::foldCase(prefix)) || folded.size() == prefix.size()) {
            fail(kKey, L"expected a key that begins with " + prefix + L" and has more characters after it, found " +
                           inQuotes(name));
        }
        if (folded.starts_with(kProductPrefix)) {
            fail(kKey, L"expected another key than " + inQuotes(name) +
                           L": keys that begin with TXIM are reserved for intermodulation products");
        }
        const auto [other, fresh] = keys_.try_emplace(folded, line_->number);
        if (!fresh) {
            fail(kKey, L"expected a unique key, found " + inQuotes(name) + L", which line " +
                           std::to_wstring(other->second) + L" already uses");
        }
        return name;
    }

    std::int64_t frequency() const {
        const double hertz = number(kFrequency) * unit(kFrequencyUnit, 1e6);
        if (!(hertz >= kLowestHz && hertz <= kHighestHz)) {
            fail(kFrequency, L"expected a frequency between 1 kHz and 3000 GHz, found " + inQuotes(text(kFrequency)) +
                                 L" " + unitName(kFrequencyUnit, L"MHz"));
        }
        return std::llround(hertz);
    }

    std::int64_t bandwidth(std::int64_t frequencyHz) const {
        const double hertz = number(kBandwidth) * unit(kBandwidthUnit, 1e3);
        // The lower edge of a channel must be above 0. A bandwidth below 1 Hz is a sign of a wrong unit.
        if (!(hertz >= 1.0 && std::round(hertz) / 2.0 < static_cast<double>(frequencyHz))) {
            fail(kBandwidth, L"expected a bandwidth of at least 1 Hz and less than twice the frequency, found " +
                                 inQuotes(text(kBandwidth)) + L" " + unitName(kBandwidthUnit, L"KHz"));
        }
        return std::llround(hertz);
    }

    double power() const {
        if (text(kPower).empty()) {
            return 0.0;
        }
        const double dbm = number(kPower);
        if (!(dbm >= kLowestDbm && dbm <= kHighestDbm)) {
            fail(kPower, L"expected a power between -200 and 120 dBm, found " + inQuotes(text(kPower)));
        }
        return dbm;
    }

    std::optional<Colour> colour(Column column) const {
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

    double number(Column column) const {
        const std::optional<double> result = util::parseNumber(text(column));
        if (!result) {
            fail(column, L"expected a number such as 462.55, found " + inQuotes(text(column)));
        }
        return *result;
    }

    /// The number of hertz in the unit that the field names.
    double unit(Column column, double otherwise) const {
        const std::wstring name = util::foldCase(text(column));
        if (name.empty()) {
            return otherwise;
        }
        if (name == L"hz") {
            return 1.0;
        }
        if (name == L"khz") {
            return 1e3;
        }
        if (name == L"mhz") {
            return 1e6;
        }
        if (name == L"ghz") {
            return 1e9;
        }
        fail(column, L"expected Hz, KHz, MHz or GHz, found " + inQuotes(text(column)));
    }

    std::wstring unitName(Column column, const wchar_t* otherwise) const {
        return text(column).empty() ? otherwise : text(column);
    }

    const std::wstring& text(Column column) const {
        static const std::wstring kNothing;
        return places_[column] == kAbsent ? kNothing : line_->fields[places_[column]].text;
    }

    [[noreturn]] void fail(Column column, std::wstring message) const {
        const std::size_t at = places_[column] == kAbsent ? 1 : line_->fields[places_[column]].column;
        throw PlanError(fileName_, line_->number, at, kColumns[column].name, std::move(message));
    }

    [[noreturn]] void failFile(std::wstring message) const { throw PlanError(fileName_, 0, 0, {}, std::move(message)); }

    std::wstring fileName_;
    std::array<std::size_t, kColumnCount> places_{};
    std::size_t width_ = 0;
    const CsvLine* line_ = nullptr;
    /// Lines by key, in lower case. Ordered, because a file can be written so that all of its keys have the same hash.
    std::map<std::wstring, std::size_t> keys_;
};

/// The file's name without its folder. Where wide characters are not the native ones, path::wstring() depends on the
/// locale; UTF-32 does not.
std::wstring wideName(const std::filesystem::path& file) {
    if constexpr (sizeof(wchar_t) == 2) {
        return file.filename().wstring();
    } else {
        const std::u32string name = file.filename().u32string();
        return {name.begin(), name.end()};
    }
}

}  // namespace

std::size_t Plan::transmitterCount() const noexcept {
    return static_cast<std::size_t>(
        std::count_if(channels.begin(), channels.end(), [](const PlanChannel& channel) { return channel.transmits; }));
}

PlanError::PlanError(std::wstring file, std::size_t line, std::size_t column, std::wstring field, std::wstring message)
    : file_(std::move(file)), line_(line), column_(column), field_(std::move(field)), message_(std::move(message)) {}

std::wstring PlanError::text() const {
    std::wstring result = singleLine(file_);
    if (line_ != 0) {
        result += L", line " + std::to_wstring(line_) + L", column " + std::to_wstring(column_);
    }
    if (!field_.empty()) {
        result += L" (" + shortened(field_) + L")";
    }
    return result + L": " + message_ + L".";
}

Plan parsePlan(std::string_view bytes, const std::wstring& fileName) {
    return Reader(fileName).read(bytes);
}

Plan loadPlan(const std::filesystem::path& file) {
    const std::wstring name = wideName(file);
    std::ifstream stream(file, std::ios::binary);
    const auto checkSize = [&name](std::uintmax_t size) {
        if (size > kMostBytes) {
            throw PlanError(
                name, 0, 0, {},
                L"expected a file of at most " + std::to_wstring(kMostMegabytes) + L" MB, but the file is larger");
        }
    };
    std::error_code unknown;  // not every file has a size that is known before it is read
    if (const std::uintmax_t size = std::filesystem::file_size(file, unknown); !unknown) {
        checkSize(size);
    }
    std::string bytes;
    std::array<char, 65536> block;
    while (stream.read(block.data(), block.size()), stream.gcount() > 0) {
        checkSize(bytes.size() + static_cast<std::size_t>(stream.gcount()));
        bytes.append(block.data(), static_cast<std::size_t>(stream.gcount()));
    }
    if (!stream.is_open() || stream.bad()) {
        throw PlanError(name, 0, 0, {}, L"the file cannot be opened or read");
    }
    return parsePlan(bytes, name);
}

}  // namespace kv::host
