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

/// 0x00BBGGRR, as in the control's interface.
using Colour = std::uint32_t;

struct PlanChannel {
    bool transmits = false;  ///< kind TX; otherwise RX
    std::wstring key;    ///< begins with TX or RX, unique in the plan without regard to case, as the control's keys are
    std::wstring label;  ///< the key when the plan gives no label
    std::int64_t frequencyHz = 0;
    std::int64_t bandwidthHz = 0;
    double powerDbm = 0.0;            ///< 0 when the plan gives no power
    std::optional<Colour> boxColour;  ///< the host chooses the color when the plan gives none
    std::optional<Colour> lineColour;
};

struct Plan {
    std::vector<PlanChannel> channels;  ///< in the order of the file

    [[nodiscard]] std::size_t transmitterCount() const noexcept;
    [[nodiscard]] std::size_t receiverCount() const noexcept { return channels.size() - transmitterCount(); }
};

/// Why a plan was not read. Line and column are counted from 1; both are 0 when the error concerns the whole file. The
/// column counts characters, not bytes.
class PlanError : public std::exception {
  public:
    PlanError(std::wstring file, std::size_t line, std::size_t column, std::wstring field, std::wstring message);

    [[nodiscard]] const std::wstring& file() const noexcept { return file_; }
    [[nodiscard]] std::size_t line() const noexcept { return line_; }
    [[nodiscard]] std::size_t column() const noexcept { return column_; }
    /// The name of the column with the error; empty when the error concerns no column.
    [[nodiscard]] const std::wstring& field() const noexcept { return field_; }
    /// What was expected and what was found, without the position. Text of the file is shortened and escaped in it.
    [[nodiscard]] const std::wstring& message() const noexcept { return message_; }
    /// The complete message for the user, in one line: "gmrs.csv, line 7, column 12 (frequency): ...".
    [[nodiscard]] std::wstring text() const;
    [[nodiscard]] const char* what() const noexcept override { return "channel plan not readable"; }

  private:
    std::wstring file_;
    std::size_t line_;
    std::size_t column_;
    std::wstring field_;
    std::wstring message_;
};

/// Reads a plan of comma-separated values in UTF-8. Lines that begin with '#' and empty lines are skipped. The first
/// other line names the columns. The columns kind, key, frequency and bandwidth are required. The columns label,
/// "frequency unit" (otherwise MHz), "bandwidth unit" (otherwise KHz), power (dBm), "box colour" and "line colour"
/// (#RRGGBB) may be left out. A field in double quotes can contain commas; a double quote in it is written twice.
/// A field has at most 1,000 characters, a line 100 fields and a plan 100,000 channels. Throws PlanError for the first
/// error; its text names the file as fileName.
[[nodiscard]] Plan parsePlan(std::string_view bytes, const std::wstring& fileName);

/// The plan in a file of at most 64 MB; throws PlanError also when the file cannot be read or is larger.
[[nodiscard]] Plan loadPlan(const std::filesystem::path& file);

}  // namespace kv::host
