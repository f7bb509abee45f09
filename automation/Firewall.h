// The border between exceptions inside and HRESULTs outside: no method of ours lets anything through.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <type_traits>
#include <utility>

#include "automation/OleTypes.h"
#include "util/RuntimeError.h"

namespace kv::automation {

/// The HRESULT by which a run-time error travels: error 9 is 0x800A0009.
[[nodiscard]] constexpr HRESULT hresultOf(int errorNumber) noexcept {
    return static_cast<HRESULT>(0x800A0000UL | (static_cast<unsigned long>(errorNumber) & 0xFFFFUL));
}

/// Turns the exception being handled into an HRESULT; a util::RuntimeError also into error information for `iid`
/// (description, source, interface). Call it inside a catch block only.
[[nodiscard]] HRESULT reportCurrentException(REFIID iid) noexcept;

/// Runs the body of a COM method of interface `iid`. The body returns nothing, which is S_OK, or an HRESULT.
template <class F>
[[nodiscard]] HRESULT firewall(REFIID iid, F&& body) noexcept {
    try {
        if constexpr (std::is_void_v<std::invoke_result_t<F>>) {
            std::forward<F>(body)();
            return S_OK;
        } else {
            return std::forward<F>(body)();
        }
    } catch (...) {
        return reportCurrentException(iid);
    }
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

/// Runs the body of a COM method that gives back one value. `*out` is zero, null or empty after a failure; a null
/// `out` is E_POINTER.
template <class Out, class F>
[[nodiscard]] HRESULT firewallReturn(REFIID iid, Out* out, F&& body) noexcept {
    if (!out)
        return E_POINTER;
    *out = Out{};
    return firewall(iid, [&] { assignOut(out, std::forward<F>(body)()); });
}

/// Text, flag or number of an [in] parameter as the inside wants it.
[[nodiscard]] inline std::wstring fromIn(BSTR value) {
    return toWide(value);
}
[[nodiscard]] constexpr bool boolFromIn(VARIANT_BOOL value) noexcept {
    return value != VARIANT_FALSE;
}

}  // namespace kv::automation
