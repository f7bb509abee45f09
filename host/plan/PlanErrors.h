// Why a plan was not read.
#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <vector>

namespace kv::host {

/// One error of a plan. Line and column are counted from 1; both are 0 when the error concerns the whole file. The
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

/// The errors that are listed for one plan. The others are not looked for.
constexpr std::size_t kMostPlanErrors = 100;

/// What is thrown for a plan that cannot be read: its errors, in the order of the file. As a PlanError it is the first.
class PlanErrors final : public PlanError {
  public:
    /// `list` has at least one error. `hasMore` when the plan has others.
    explicit PlanErrors(std::vector<PlanError> list, bool hasMore = false);

    [[nodiscard]] const std::vector<PlanError>& list() const noexcept { return list_; }
    [[nodiscard]] bool hasMore() const noexcept { return hasMore_; }
    /// The messages for the user, one line each. The last one says so when the plan has more errors.
    [[nodiscard]] std::vector<std::wstring> texts() const;

  private:
    std::vector<PlanError> list_;
    bool hasMore_;
};

}  // namespace kv::host
