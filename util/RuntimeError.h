// The one exception type of the control: a run-time error with the number and text that hosts know.
#pragma once

#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace kv::util {

namespace error_number {
inline constexpr int kInvalidProcedureCall = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kOutOfMemory = 7;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kInternal = 51;
inline constexpr int kFileNotFound = 53;
inline constexpr int kPathFileAccess = 75;
inline constexpr int kObjectNotSet = 91;
inline constexpr int kInvalidPropertyValue = 380;
inline constexpr int kCannotCreateObject = 429;
inline constexpr int kObjectLacksMember = 438;
inline constexpr int kAutomation = 440;
inline constexpr int kKeyInUse = 457;
inline constexpr int kInvalidPicture = 481;
inline constexpr int kCannotOpenClipboard = 521;
}  // namespace error_number

/// The text that goes with an error number, for example 6 "Overflow"; "Application-defined or object-defined error"
/// for a number that has none.
[[nodiscard]] const wchar_t* errorText(int number) noexcept;

/// Copying one and reading it needs no memory, so that also the error of having none can be passed on.
class RuntimeError : public std::exception {
  public:
    explicit RuntimeError(int number) noexcept : number_(number), usual_(errorText(number)) {}
    /// With the text of its origin, such as the host's.
    RuntimeError(int number, std::wstring text)
        : number_(number), own_(std::make_shared<const std::wstring>(std::move(text))) {}

    [[nodiscard]] int number() const noexcept { return number_; }
    /// Ends with a null character. Valid as long as the error or a copy of it.
    [[nodiscard]] std::wstring_view text() const noexcept { return own_ ? std::wstring_view(*own_) : usual_; }
    [[nodiscard]] const char* what() const noexcept override { return "run-time error"; }

  private:
    int number_;
    std::wstring_view usual_;
    std::shared_ptr<const std::wstring> own_;
};

/// The error in force, whatever was thrown: memory exhaustion becomes 7, any other foreign exception 51. Needs no
/// memory. Call it inside a catch block only.
[[nodiscard]] RuntimeError currentError() noexcept;

}  // namespace kv::util
