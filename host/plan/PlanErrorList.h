// Collects the errors of a plan while it is read.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "host/plan/PlanErrors.h"

namespace kv::host {

class PlanErrorList {
  public:
    explicit PlanErrorList(std::wstring fileName) : fileName_(std::move(fileName)) {}

    void add(std::size_t line, std::size_t column, std::wstring field, std::wstring message) {
        if (list_.size() == kMostPlanErrors) {
            hasMore_ = true;
            return;
        }
        list_.emplace_back(fileName_, line, column, std::move(field), std::move(message));
    }
    /// Of the whole file.
    void add(std::wstring message) { add(0, 0, {}, std::move(message)); }
    [[nodiscard]] std::size_t size() const noexcept { return list_.size(); }
    /// There are more errors than are listed, so that nothing is won by reading on.
    [[nodiscard]] bool isFull() const noexcept { return hasMore_; }
    /// Throws PlanErrors unless the list is empty.
    void throwIfAny() {
        if (!list_.empty()) {
            throw PlanErrors(std::move(list_), hasMore_);
        }
    }

  private:
    std::wstring fileName_;
    std::vector<PlanError> list_;
    bool hasMore_ = false;
};

}  // namespace kv::host
