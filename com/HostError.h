// Failures of a host's object, as run-time errors.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

namespace kv::com {

/// Throws the util::RuntimeError for a failed call to a host's object: with the object's own number if the HRESULT
/// contains one; 438 for a member that the object lacks; 13, 6, 7 and 9 for wrong types, overflow, memory and index;
/// 440 otherwise. `description` replaces the usual text of the number unless it is empty.
[[noreturn]] void throwHostError(HRESULT hr, const std::wstring& description = {});

/// The same for a call through IDispatch. The texts in `exception` are freed.
[[noreturn]] void throwHostException(HRESULT hr, EXCEPINFO& exception);

/// The same for a call through the vtable of interface `iid`, with the error information that the object has set.
[[noreturn]] void throwHostErrorInfo(HRESULT hr, IUnknown* object, REFIID iid);

}  // namespace kv::com
