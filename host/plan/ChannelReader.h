// Reads the channel in a line of a plan.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "host/plan/Plan.h"
#include "host/plan/PlanColumns.h"

namespace kv::host {

class ChannelReader {
  public:
    ChannelReader(const PlanColumns& columns, PlanErrorList& errors) : columns_(columns), errors_(errors) {}

    /// The channel. Nothing for a line with errors, all of which are added to the list.
    [[nodiscard]] std::optional<PlanChannel> read(const CsvLine& line);

  private:
    [[nodiscard]] bool hasAllFields();
    void readKind(PlanChannel& channel);
    void readKey(PlanChannel& channel, bool isKindKnown);
    void readFrequency(PlanChannel& channel);
    void readBandwidth(PlanChannel& channel);
    void readPower(PlanChannel& channel);
    [[nodiscard]] std::optional<Colour> colour(PlanColumn column);
    [[nodiscard]] std::optional<double> number(PlanColumn column);
    [[nodiscard]] std::optional<double> unit(PlanColumn column, double otherwise);
    [[nodiscard]] std::optional<double> hertz(PlanColumn column, PlanColumn unitColumn, double otherwise);
    [[nodiscard]] std::wstring found(PlanColumn column, PlanColumn unitColumn, const wchar_t* otherwise) const;
    [[nodiscard]] const std::wstring& text(PlanColumn column) const;
    void fail(PlanColumn column, std::wstring message);

    const PlanColumns& columns_;
    PlanErrorList& errors_;
    const CsvLine* line_ = nullptr;
    /// Lines by key, in lower case. Ordered, because a file can be written so that all of its keys have the same hash.
    std::map<std::wstring, std::size_t> keys_;
};

}  // namespace kv::host
