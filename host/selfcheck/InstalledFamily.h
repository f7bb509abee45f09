// The programs of the control's family.
#pragma once

#include <array>
#include <string>

namespace kv::host {

/// Where one of these is installed, the control writes its log into their folder.
inline constexpr std::array<const wchar_t*, 6> kFamilyPrograms{L"KVZEP32.EXE",  L"KVPLAN32.EXE", L"KVSITE32.EXE",
                                                               L"KVLINK32.EXE", L"KVDATA32.EXE", L"KVVIEW32.EXE"};

/// True if one is installed, or if a file beside the program tells the control where they are.
[[nodiscard]] bool hasInstalledFamily(const std::wstring& programFolder);

}  // namespace kv::host
