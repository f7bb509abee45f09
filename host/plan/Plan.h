// A channel plan: the transmitters and receivers of one site, read from a CSV file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv::host {

/// 0x00BBGGRR, the colour value of the control's interface.
using Colour = std::uint32_t;

struct PlanChannel {
    bool transmits = false;  ///< kind TX; otherwise RX
    std::wstring key;        ///< begins with TX or RX, unique in the plan whatever its case
    std::wstring label;      ///< the key when the plan gives none
    std::int64_t frequencyHz = 0;
    std::int64_t bandwidthHz = 0;
    double powerDbm = 0.0;            ///< 0 when the plan has no power
    std::optional<Colour> boxColour;  ///< the host's own choice when the plan has none
    std::optional<Colour> lineColour;
};

struct Plan {
    std::vector<PlanChannel> channels;  ///< in the order of the file

    [[nodiscard]] std::size_t transmitterCount() const noexcept;
    [[nodiscard]] std::size_t receiverCount() const noexcept { return channels.size() - transmitterCount(); }
};

/// Why a plan was not read. Line and column count from 1 and are 0 when the file as a whole is meant; the column
/// counts characters, not bytes.
class PlanError : public std::exception {
  public:
    PlanError(std::wstring file, std::size_t line, std::size_t column, std::wstring field, std::wstring message);

    [[nodiscard]] const std::wstring& file() const noexcept { return file_; }
    [[nodiscard]] std::size_t line() const noexcept { return line_; }
    [[nodiscard]] std::size_t column() const noexcept { return column_; }
    /// The heading of the column at fault, empty when none is.
    [[nodiscard]] const std::wstring& field() const noexcept { return field_; }
    /// What was expected and what was found, a sentence without its place.
    [[nodiscard]] const std::wstring& message() const noexcept { return message_; }
    /// All of it in one line for the user: "gmrs.csv, line 7, column 12 (frequency): ...".
    [[nodiscard]] std::wstring text() const;
    [[nodiscard]] const char* what() const noexcept override { return "channel plan not readable"; }

  private:
    std::wstring file_;
    std::size_t line_;
    std::size_t column_;
    std::wstring field_;
    std::wstring message_;
};

/// Reads a plan of comma-separated values in UTF-8. Lines that begin with '#' and empty lines are skipped; the first
/// other line names the columns: kind, key, frequency and bandwidth are needed; label, frequency unit (MHz),
/// bandwidth unit (KHz), power (dBm), box colour and line colour (#RRGGBB) may be left out. A field in double quotes
/// may hold commas, and doubled quotes for one. Either the whole plan is good or PlanError is thrown; fileName is
/// what the error calls the file.
[[nodiscard]] Plan parsePlan(std::string_view bytes, const std::wstring& fileName);

/// The plan in a file; throws PlanError also when the file cannot be read.
[[nodiscard]] Plan loadPlan(const std::filesystem::path& file);

}  // namespace kv::host
