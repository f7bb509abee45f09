// Converts exceptions to HRESULTs at the border of COM: no exception may leave a COM method.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <type_traits>
#include <utility>

#include "com/OleTypes.h"
#include "util/QuietArithmetic.h"
#include "util/RuntimeError.h"

namespace kv::com {

/// The HRESULT of a run-time error: error 9 is 0x800A0009.
[[nodiscard]] constexpr HRESULT hresultOf(int errorNumber) noexcept {
    return static_cast<HRESULT>(0x800A0000UL | (static_cast<unsigned long>(errorNumber) & 0xFFFFUL));
}

/// What error information says about where an error comes from.
struct ErrorOrigin {
    REFIID iid;                       ///< the interface whose method failed
    const wchar_t* source = nullptr;  ///< the ProgID of the class that implements it; null: not given
};

/// Turns the exception being handled into an HRESULT, and a util::RuntimeError also into error information
/// (description, source, interface). Memory exhaustion is the run-time error 7 in the methods of a class of ours, where
/// a host expects its numbers, and E_OUTOFMEMORY in the system's interfaces. Call it inside a catch block only.
[[nodiscard]] HRESULT reportCurrentException(const ErrorOrigin& origin) noexcept;

/// Runs the body of a COM method that computes nothing. The body returns nothing, which is S_OK, or an HRESULT.
template <class F>
[[nodiscard]] HRESULT plainFirewall(const ErrorOrigin& origin, F&& body) noexcept {
    try {
        if constexpr (std::is_void_v<std::invoke_result_t<F>>) {
            std::forward<F>(body)();
            return S_OK;
        } else {
            return std::forward<F>(body)();
        }
    } catch (...) {
        return reportCurrentException(origin);
    }
}

/// The same for a body that computes. Reading the processor's settings takes about as long as ten plain bodies.
template <class F>
[[nodiscard]] HRESULT firewall(const ErrorOrigin& origin, F&& body) noexcept {
    const util::QuietArithmetic quiet;
    return plainFirewall(origin, std::forward<F>(body));
}

/// Stores a result in an out parameter of the matching automation type (bool to VARIANT_BOOL, text to BSTR).
template <class Out, class Value>
void assignOut(Out* out, const Value& value) {
    if constexpr (std::is_same_v<Out, BSTR>)
        *out = newBstr(value);
    else if constexpr (std::is_same_v<Value, bool>)
        *out = value ? VARIANT_TRUE : VARIANT_FALSE;
    else
        *out = static_cast<Out>(value);
}

/// Runs the body of a COM method that returns one value. `*out` is zero, null or empty after a failure; a null `out` is
/// E_POINTER.
template <class Out, class F>
[[nodiscard]] HRESULT firewallReturn(const ErrorOrigin& origin, Out* out, F&& body) noexcept {
    if (!out)
        return E_POINTER;
    *out = Out{};
    return firewall(origin, [&] { assignOut(out, std::forward<F>(body)()); });
}

/// A text or a flag of an [in] parameter as a C++ value.
[[nodiscard]] inline std::wstring fromIn(BSTR value) {
    return toWide(value);
}
[[nodiscard]] constexpr bool boolFromIn(VARIANT_BOOL value) noexcept {
    return value != VARIANT_FALSE;
}

}  // namespace kv::com
