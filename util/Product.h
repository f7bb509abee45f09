// The names of the product and its support contacts: the settings that a publisher changes.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace kv::util::product {

/// The executables of the product family. The first one with an application path in the system determines where
/// the family is installed.
inline constexpr std::array<const wchar_t*, 6> kFamilyPrograms{L"KVZEP32.EXE",  L"KVPLAN32.EXE", L"KVSITE32.EXE",
                                                               L"KVLINK32.EXE", L"KVDATA32.EXE", L"KVVIEW32.EXE"};

/// Named in messages that ask the user to send the tech-support log. The others are left out when they are empty.
inline constexpr wchar_t kSupportContact[] = L"Korvane technical support";
inline constexpr wchar_t kSupportEmail[] = L"";
inline constexpr wchar_t kSupportTelephone[] = L"";
inline constexpr wchar_t kSalesContact[] = L"";

/// For settings when there is no maker's directory: a folder in the user's data, and the file in it.
inline constexpr wchar_t kOwnFolder[] = L"kvBandscope";
inline constexpr wchar_t kOwnINI[] = L"kvBandscope.INI";

/// The program that shows text files for printing.
inline constexpr wchar_t kTextViewer[] = L"NOTEPAD";

/// The contact with those of the ways to reach it that are not empty, in brackets.
[[nodiscard]] std::wstring supportContact(const std::wstring& contact = kSupportContact,
                                          const std::vector<std::wstring>& ways = {kSupportEmail, kSupportTelephone,
                                                                                   kSalesContact});

}  // namespace kv::util::product
