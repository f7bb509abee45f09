// The columns of a plan, as the line that names them orders them.
#pragma once

#include <array>
#include <cstddef>

#include "host/plan/Csv.h"
#include "host/plan/PlanErrorList.h"

namespace kv::host {

enum PlanColumn : std::size_t {
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

class PlanColumns {
  public:
    PlanColumns() { places_.fill(kAbsent); }

    /// Reads the line that names the columns. False if the lines below it cannot be read: a required column is missing,
    /// or another character separates the fields.
    [[nodiscard]] bool read(const CsvLine& line, PlanErrorList& errors);

    [[nodiscard]] static const wchar_t* nameOf(PlanColumn column) noexcept;
    /// The number of fields in each line.
    [[nodiscard]] std::size_t width() const noexcept { return width_; }
    /// The field of a line that has as many fields as there are columns; null for a column that the plan leaves out.
    [[nodiscard]] const CsvField* fieldOf(const CsvLine& line, PlanColumn column) const {
        return places_[column] == kAbsent ? nullptr : &line.fields[places_[column]];
    }

  private:
    static constexpr std::size_t kAbsent = static_cast<std::size_t>(-1);

    void readName(const CsvLine& line, std::size_t place, PlanErrorList& errors);

    std::array<std::size_t, kColumnCount> places_{};
    std::size_t width_ = 0;
};

}  // namespace kv::host
