// The window classes that the module registers. Hosts and test tools find the windows by their names.
#pragma once

#include <windows.h>

#include <span>

namespace kv::win32 {

inline constexpr wchar_t kRootClass[] = L"kvBandscope";
inline constexpr wchar_t kFormClass[] = L"kvForm";
inline constexpr wchar_t kFrameClass[] = L"kvFrame";
inline constexpr wchar_t kPictureClass[] = L"kvPictureBox";

/// The windows whose messages a tree handles, and those of the knobs.
inline constexpr const wchar_t* kTreeClasses[] = {kRootClass, kFormClass, kFrameClass, kPictureClass};
inline constexpr const wchar_t* kKnobClasses[] = {L"tdKnob", L"tdKnMover"};

/// The module that contains this code.
[[nodiscard]] HINSTANCE ownModule() noexcept;

/// Registers window classes with the same procedure and CS_ style. True also if they are registered already.
[[nodiscard]] bool registerWindowClasses(std::span<const wchar_t* const> names, WNDPROC procedure, UINT style) noexcept;

/// Unregisters all window classes before the module is unloaded.
void unregisterWindowClasses() noexcept;

}  // namespace kv::win32
