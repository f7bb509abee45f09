// What the product is called and whom its users turn to: the settings a publisher changes, in one place.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace kv::util::product {

/// The executables of the product family. The first one that the system has an application path for tells where the
/// family is installed.
inline constexpr std::array<const wchar_t*, 6> kFamilyPrograms{L"KVZEP32.EXE",  L"KVPLAN32.EXE", L"KVSITE32.EXE",
                                                               L"KVLINK32.EXE", L"KVDATA32.EXE", L"KVVIEW32.EXE"};

/// Named in messages that ask the user to send the tech-support log. Those of the others that are empty are left out.
inline constexpr wchar_t kSupportContact[] = L"Korvane technical support";
inline constexpr wchar_t kSupportEmail[] = L"";
inline constexpr wchar_t kSupportTelephone[] = L"";
inline constexpr wchar_t kSalesContact[] = L"";

/// Where settings go that have no maker's directory to be in: a folder among the user's data, and the file in it.
inline constexpr wchar_t kOwnFolder[] = L"kvBandscope";
inline constexpr wchar_t kOwnINI[] = L"kvBandscope.INI";

/// The program that shows text files for printing.
inline constexpr wchar_t kTextViewer[] = L"NOTEPAD";

/// The contact with those of the ways to reach it that are not empty, in brackets.
[[nodiscard]] std::wstring supportContact(const std::wstring& contact = kSupportContact,
                                          const std::vector<std::wstring>& ways = {kSupportEmail, kSupportTelephone,
                                                                                   kSalesContact});

}  // namespace kv::util::product
