// Folders and registry before and after a program that must leave them as they are.
#pragma once

#include <windows.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace kv::test {

using FileLengths = std::map<std::wstring, std::uintmax_t>;
/// Of all files and folders below a folder.
[[nodiscard]] FileLengths filesBelow(const std::wstring& folder);

using RegistryValues = std::map<std::wstring, std::vector<BYTE>>;
/// The user's software settings, and the parts of the machine's that registrations and installations are in.
[[nodiscard]] RegistryValues registryState();
/// Names of keys and values that are in one of the states only, or differ. Wine keeps some of its own state below its
/// own key, which is left out.
[[nodiscard]] std::vector<std::wstring> changes(const RegistryValues& before, const RegistryValues& after);

}  // namespace kv::test
