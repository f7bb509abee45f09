// The little that every client of the control needs: smart pointers, strings and what to do with a failed call.
#pragma once

#include <windows.h>

#include <oleauto.h>
#include <wrl/client.h>

#include <string>
#include <utility>

namespace kv::host {

using Microsoft::WRL::ComPtr;

/// What the process answers with.
enum ExitCode : int {
    kExitOk = 0,
    kExitOther = 1,           ///< anything that has no number of its own
    kExitUsage = 2,           ///< the command line is not understood, or asks for too much
    kExitBadPlan = 3,         ///< the channel plan cannot be read
    kExitControlMissing = 4,  ///< the control is neither registered nor beside the program
    kExitSaveFailed = 5       ///< the picture could not be written
};

/// Something the user has to be told.
struct Failure {
    ExitCode code = kExitOther;
    std::wstring text;
};

/// Throws a Failure that names what was tried when hr is an error, with the control's own words when it left any.
void check(HRESULT hr, const wchar_t* tried);

/// A string as automation passes it.
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
    /// Where a call may put a string; an earlier one is freed.
    [[nodiscard]] BSTR* put() noexcept {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }
    /// For a string that goes in and comes back changed.
    [[nodiscard]] BSTR* inOut() noexcept { return &text_; }
    [[nodiscard]] std::wstring text() const { return {text_ == nullptr ? L"" : text_, SysStringLen(text_)}; }

  private:
    BSTR text_ = nullptr;
};

}  // namespace kv::host
