// A channel plan: the transmitters and receivers of one site, read from a CSV file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/plan/PlanErrors.h"

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

/// Reads a plan of comma-separated values in UTF-8. Lines that begin with '#' and empty lines are skipped. The first
/// other line names the columns. The columns kind, key, frequency and bandwidth are required. The columns label,
/// "frequency unit" (otherwise MHz), "bandwidth unit" (otherwise KHz), power (dBm), "box colour" and "line colour"
/// (#RRGGBB) may be left out. A field in double quotes can contain commas; a double quote in it is written twice.
/// A field has at most 1,000 characters, a line 100 fields and a plan 100,000 channels. Throws PlanErrors, whose texts
/// name the file as fileName. An error in a line does not keep the lines below it from being read. Only an error in the
/// line that names the columns does, when a required column is not known because of it.
[[nodiscard]] Plan parsePlan(std::string_view bytes, const std::wstring& fileName);

/// The plan in a file of at most 64 MB; throws PlanErrors also when the file cannot be read or is larger.
[[nodiscard]] Plan loadPlan(const std::filesystem::path& file);

}  // namespace kv::host
