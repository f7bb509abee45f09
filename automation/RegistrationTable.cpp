#include "automation/RegistrationTable.h"

#include <utility>
#include <vector>

#include "automation/Identity.h"
#include "kvBandscope.h"

namespace kv::automation {

namespace {

using com::ClassRegistration;
using com::guidText;
using com::InterfaceRegistration;
using com::ProgramName;
using com::RegistryEntry;

/// The version of the type library and of the classes.
constexpr wchar_t kLibraryVersion[] = L"1.0";
constexpr wchar_t kLibraryTitle[] = L"kvBandscope spectrum display";
/// The system's marshalers, which use the type library.
constexpr wchar_t kDualMarshaler[] = L"{00020424-0000-0000-C000-000000000046}";
constexpr wchar_t kDispatchMarshaler[] = L"{00020420-0000-0000-C000-000000000046}";
constexpr wchar_t kControlCategory[] = L"{40FC6ED4-2438-11CF-A3DB-080036F12502}";
constexpr wchar_t kProgrammableCategory[] = L"{40FC6ED5-2438-11CF-A3DB-080036F12502}";
constexpr int kToolboxBitmap = 101;

struct ClassNames {
    const CLSID* clsid;
    const wchar_t* progId;  ///< version-independent; ".1" is appended for that of this version
    const wchar_t* title;
    bool isControl;
};

const ClassNames kClasses[] = {
    {&CLSID_kvBandscope, kControlProgId, kControlTitle, true},
    {&CLSID_FreqSlot, kFreqSlotProgId, L"kvBandscope FreqSlot", false},
    {&CLSID_View, kViewProgId, L"kvBandscope View", false},
};

RegistryEntry keyOnly(std::wstring key) {
    return {std::move(key), false, {}, nullptr};
}

RegistryEntry keyWith(std::wstring key, std::wstring value) {
    return {std::move(key), true, std::move(value), nullptr};
}

std::vector<RegistryEntry> classKeys(const ClassNames& names, const std::wstring& clsid, const std::wstring& path) {
    const std::wstring key = L"CLSID\\" + clsid;
    const std::wstring categories = key + L"\\Implemented Categories";
    const std::wstring progId = names.progId;
    std::vector<RegistryEntry> entries = {
        keyWith(key, names.title),
        keyWith(key + L"\\InprocServer32", path),
        {key + L"\\InprocServer32", true, L"Apartment", L"ThreadingModel"},
        keyWith(key + L"\\ProgID", progId + L".1"),
        keyWith(key + L"\\VersionIndependentProgID", progId),
        keyWith(key + L"\\Version", kLibraryVersion),
        keyWith(key + L"\\TypeLib", guidText(LIBID_kvBandscope)),
        keyOnly(key + L"\\Programmable"),
        keyOnly(categories),
        keyOnly(categories + L"\\" + kProgrammableCategory),
    };
    if (names.isControl) {
        entries.push_back(keyOnly(categories + L"\\" + kControlCategory));
        entries.push_back(keyOnly(key + L"\\Control"));
        entries.push_back(keyWith(key + L"\\MiscStatus", L"0"));
        entries.push_back(keyWith(key + L"\\MiscStatus\\1", std::to_wstring(kMiscStatus)));
        entries.push_back(keyWith(key + L"\\ToolboxBitmap32", path + L"," + std::to_wstring(kToolboxBitmap)));
    }
    return entries;
}

std::vector<ProgramName> programNames(const ClassNames& names, const std::wstring& clsid) {
    const std::wstring general = names.progId;
    const std::wstring versioned = general + L".1";
    return {
        {versioned, {}, {keyWith(versioned, names.title), keyWith(versioned + L"\\CLSID", clsid)}},
        {general,
         versioned,
         {keyWith(general, names.title), keyWith(general + L"\\CLSID", clsid),
          keyWith(general + L"\\CurVer", versioned)}},
    };
}

struct InterfaceNames {
    const IID* iid;
    const wchar_t* name;
    const wchar_t* marshaler;
};

const InterfaceNames kInterfaces[] = {
    {&IID__kvBandscope, L"_kvBandscope", kDualMarshaler},
    {&IID__FreqSlot, L"_FreqSlot", kDualMarshaler},
    {&IID__BandscopeView, L"_BandscopeView", kDualMarshaler},
    {&DIID___kvBandscope, L"__kvBandscope", kDispatchMarshaler},
};

InterfaceRegistration interfaceKeys(const InterfaceNames& names, const std::wstring& library) {
    const std::wstring key = L"Interface\\" + guidText(*names.iid);
    return {key,
            {keyWith(key, names.name),
             keyWith(key + L"\\ProxyStubClsid32", names.marshaler),
             keyWith(key + L"\\TypeLib", library),
             {key + L"\\TypeLib", true, kLibraryVersion, L"Version"}}};
}

com::TypeLibRegistration libraryKeys(const std::wstring& modulePath) {
    constexpr bool k64Bit = sizeof(void*) == 8;
    const std::wstring id = guidText(LIBID_kvBandscope);
    const std::wstring version = L"TypeLib\\" + id + L"\\" + kLibraryVersion;
    const std::wstring language = version + L"\\0";
    com::TypeLibRegistration table;
    table.id = id;
    table.version = kLibraryVersion;
    table.sharedKeys = {keyOnly(L"TypeLib\\" + id), keyWith(version, kLibraryTitle),
                        keyWith(version + L"\\FLAGS", L"0"), keyOnly(language)};
    table.fileKey = keyWith(language + (k64Bit ? L"\\win64" : L"\\win32"), modulePath);
    table.otherFileKey = language + (k64Bit ? L"\\win32" : L"\\win64");
    for (const InterfaceNames& names : kInterfaces)
        table.interfaces.push_back(interfaceKeys(names, id));
    return table;
}

}  // namespace

com::ModuleRegistration registrationTable(const std::wstring& modulePath) {
    com::ModuleRegistration table;
    for (const ClassNames& names : kClasses) {
        const std::wstring clsid = guidText(*names.clsid);
        table.classes.push_back({clsid, classKeys(names, clsid, modulePath), programNames(names, clsid)});
    }
    table.library = libraryKeys(modulePath);
    return table;
}

}  // namespace kv::automation
