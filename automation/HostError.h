// Failures of a host's object, as run-time errors of ours.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

namespace kv::automation {

/// Throws the util::RuntimeError that a failed call to a host's object stands for: its own number when the HRESULT
/// carries one; 438 for a member that it lacks; 13, 6, 7 and 9 for wrong types, overflow, memory and index; 440
/// otherwise. `description` replaces our text for the number unless it is empty.
[[noreturn]] void throwHostError(HRESULT hr, const std::wstring& description = {});

/// The same for a call through IDispatch. The texts in `exception` are freed.
[[noreturn]] void throwHostException(HRESULT hr, EXCEPINFO& exception);

/// The same for a call through the vtable of interface `iid`, with the error information that the object left.
[[noreturn]] void throwHostErrorInfo(HRESULT hr, IUnknown* object, REFIID iid);

}  // namespace kv::automation
