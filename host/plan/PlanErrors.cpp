#include "host/plan/PlanErrors.h"

#include <utility>

#include "host/plan/Quoted.h"

namespace kv::host {

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

PlanErrors::PlanErrors(std::vector<PlanError> list, bool hasMore)
    : PlanError(list.front()), list_(std::move(list)), hasMore_(hasMore) {}

std::vector<std::wstring> PlanErrors::texts() const {
    std::vector<std::wstring> result;
    for (const PlanError& error : list_) {
        result.push_back(error.text());
    }
    if (hasMore_) {
        result.emplace_back(L"The plan has more errors.");
    }
    return result;
}

}  // namespace kv::host
