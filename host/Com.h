// What every client of the control needs: smart pointers, strings, and the handling of failed calls.
#pragma once

#include <windows.h>

#include <oleauto.h>
#include <wrl/client.h>

#include <string>
#include <utility>
#include <vector>

namespace kv::host {

using Microsoft::WRL::ComPtr;

/// The exit code of the process.
enum ExitCode : int {
    kExitOk = 0,
    kExitOther = 1,           ///< any other failure
    kExitUsage = 2,           ///< the command line is not understood, or asks for too much
    kExitBadPlan = 3,         ///< the channel plan cannot be read
    kExitControlMissing = 4,  ///< the control is neither registered nor in the program's folder
    kExitSaveFailed = 5,      ///< the picture, the list of hits or the report could not be written
    kExitCheckFailed = 6      ///< the self-check has found a difference or a failure
};

/// A failure that the user must be told.
struct Failure {
    ExitCode code = kExitOther;
    std::wstring text;
    std::vector<std::wstring> list{};  ///< what exactly is wrong, if that is more than the text says
};

/// When hr is an error, throws a Failure that names what was tried and adds the control's error description, if any.
void check(HRESULT hr, const wchar_t* tried);

/// A string in the form that automation uses.
class Bstr {
  public:
    Bstr() = default;
    explicit Bstr(const std::wstring& text) : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
        if (text_ == nullptr) {
            throw Failure{kExitOther, L"There is not enough memory."};
        }
    }
    Bstr(Bstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    Bstr& operator=(Bstr&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~Bstr() { SysFreeString(text_); }

    [[nodiscard]] BSTR get() const noexcept { return text_; }
    /// For a call that returns a string; frees the present string.
    [[nodiscard]] BSTR* put() noexcept {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }
    /// For a call that reads the string and may replace it.
    [[nodiscard]] BSTR* inOut() noexcept { return &text_; }
    [[nodiscard]] std::wstring text() const { return {text_ == nullptr ? L"" : text_, SysStringLen(text_)}; }

  private:
    BSTR text_ = nullptr;
};

}  // namespace kv::host
