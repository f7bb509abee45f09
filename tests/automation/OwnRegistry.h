// A registry of the test's own, and what registration has put into it.
#pragma once

#include <gmock/gmock.h>

#include <map>
#include <string>

#include "tests/automation/Module.h"

namespace kv::test {

/// Registry names are not case-sensitive: systems spell "TypeLib" differently.
struct NameLess {
    bool operator()(const std::wstring& a, const std::wstring& b) const {
        return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_LESS_THAN;
    }
};
/// Keys below Software\Classes with their default values, and other values as key@name.
using Snapshot = std::map<std::wstring, std::wstring, NameLess>;

inline const std::wstring kControlClsid = L"{3C676CE2-05C1-42D9-9D9B-E86519090CF2}";
inline const std::wstring kSlotClsid = L"{5399D6D5-00E6-4ED8-B089-74B4D5760492}";
inline const std::wstring kViewClsid = L"{A3981632-DBFD-4DB9-83E0-BDF2BEE762E6}";
inline const std::wstring kLibraryId = L"{221D1500-C8C3-4EFD-AE3C-0DE90FB9A204}";
inline const std::wstring kControlInterface = L"{BE00EA69-42B9-4444-906A-75034DF66A6E}";
inline const std::wstring kSlotInterface = L"{425D1FE5-512D-4D80-8369-0FD953B2B465}";
inline const std::wstring kViewInterface = L"{540DDED9-E952-4AFF-95B4-69DB6C47886F}";
inline const std::wstring kEventInterface = L"{0DBCF754-BC64-45C6-8C2F-8BF2E1C974D2}";

[[nodiscard]] HRESULT registerServer();
[[nodiscard]] HRESULT unregisterServer();
[[nodiscard]] HRESULT install(bool on, const wchar_t* commandLine);

/// Redirects the system's root keys to a key of the test, so that the machine's registry does not change.
class OwnRegistry : public testing::Test {
  protected:
    HKEY machine = nullptr;
    HKEY user = nullptr;

    void SetUp() override;
    void TearDown() override;
    static Snapshot classesOf(HKEY root);
    static void write(HKEY root, const std::wstring& path, const std::wstring& value, const wchar_t* name = nullptr);
    static void remove(HKEY root, const std::wstring& path);
};

}  // namespace kv::test
