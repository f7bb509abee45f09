// The names of the window classes that the module registers. Hosts and test tools find the windows by them.
#pragma once

namespace kv::win32 {

inline constexpr wchar_t kRootClass[] = L"kvBandscope";
inline constexpr wchar_t kFormClass[] = L"kvForm";
inline constexpr wchar_t kFrameClass[] = L"kvFrame";
inline constexpr wchar_t kPictureClass[] = L"kvPictureBox";

}  // namespace kv::win32
