// The rows of a list of hits: those that pass a filter, in the order of a column.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/hits/HitFinder.h"

namespace kv::host {

enum class HitColumn { kReceiver, kLabel, kFrequency, kOffset, kOrder, kFormula, kPower, kOverlap };
constexpr std::size_t kHitColumns = 8;

struct HitFilter {
    int order = 0;                     ///< 0: every order
    std::optional<double> minimumDbm;  ///< compared with the power as it is shown, with two decimals
    std::wstring receiver;             ///< see matchesReceiver; empty: every receiver
    [[nodiscard]] bool selects() const { return order != 0 || minimumDbm || !receiver.empty(); }
};

/// The name by which a user selects a receiver: its key, with its label if that is something else.
[[nodiscard]] std::wstring receiverName(const PlanChannel& receiver);

/// Indexes of hits. Sorting and filtering do not find the hits again. Sorting is stable, so that a list that is sorted
/// by one column and then by another one is in the order of both.
class HitRows {
  public:
    /// The finder must live at least as long as this object.
    explicit HitRows(const HitFinder& finder);

    /// Appends the hits that the finder has found since the last call. They are not sorted in.
    void extend();
    /// Keys, labels and formulas are sorted naturally: numbers in them by their value. Formulas with the same
    /// coefficients are next to each other, in the order of the keys.
    void sort(HitColumn column, bool descending);
    /// The text for receivers, in any letter case, is a key or a name, which selects this receiver, or a part of names.
    void filter(const HitFilter& filter);

    [[nodiscard]] std::size_t size() const noexcept { return rows_.size(); }
    [[nodiscard]] const Hit& at(std::size_t row) const { return finder_.hits()[rows_[row]]; }
    /// The index of a row's hit in the finder's list.
    [[nodiscard]] std::uint32_t indexAt(std::size_t row) const { return rows_[row]; }
    /// The row of a hit; none if the hit does not pass the filter.
    [[nodiscard]] std::optional<std::size_t> rowOf(std::uint32_t index) const;
    [[nodiscard]] const HitFilter& filter() const noexcept { return filter_; }
    /// Those of the rows.
    [[nodiscard]] HitCounts counts() const noexcept { return {rows_.size(), products_, receiverCount_}; }

  private:
    struct SortKey;

    void selectReceivers();
    [[nodiscard]] bool passes(const Hit& hit) const noexcept;
    void count(std::uint32_t index);
    void countAll();
    [[nodiscard]] SortKey keyOf(HitColumn column, std::uint32_t index, const std::vector<std::uint32_t>& ranks) const;
    [[nodiscard]] std::vector<std::uint32_t> ranksFor(HitColumn column) const;

    const HitFinder& finder_;
    HitFilter filter_;
    std::int32_t minimumHundredths_ = 0;
    std::vector<bool> receiverSelected_;  // empty: all are
    std::vector<std::uint32_t> order_;    // all hits, sorted
    std::vector<std::uint32_t> rows_;     // those that pass
    std::vector<bool> receiverCounted_;
    std::size_t receiverCount_ = 0;
    std::size_t products_ = 0;
    std::optional<std::uint32_t> lastCounted_;
};

}  // namespace kv::host
