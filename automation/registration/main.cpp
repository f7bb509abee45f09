// Prints what the module registers, for the installer packages.
//   kv_registration_list PATH    PATH is the text to write in the place of the module's path
// One line for each entry: "own" (separate for each architecture) or "shared", the key below Software\Classes, the name
// of the value ("@" for the default value, "-" when only the key is written), and the value. Tabs separate them.
#include <windows.h>

#include <cstdio>
#include <exception>
#include <vector>

#include "automation/RegistrationTable.h"

namespace com = kv::com;

namespace {

void print(const char* scope, const com::RegistryEntry& entry) {
    const wchar_t* const name = !entry.hasValue ? L"-" : entry.valueName ? entry.valueName : L"@";
    std::printf("%s\t%ls\t%ls\t%ls\n", scope, entry.key.c_str(), name, entry.value.c_str());
}

void print(const char* scope, const std::vector<com::RegistryEntry>& entries) {
    for (const com::RegistryEntry& entry : entries)
        print(scope, entry);
}

void print(const com::ModuleRegistration& table) {
    for (const com::ClassRegistration& registration : table.classes) {
        print("own", registration.classKeys);
        for (const com::ProgramName& program : registration.programNames)
            print("shared", program.keys);
    }
    print("shared", table.library.sharedKeys);
    print("own", table.library.fileKey);
    for (const com::InterfaceRegistration& described : table.library.interfaces)
        print("own", described.keys);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 2)
        return 2;
    try {
        print(kv::automation::registrationTable(argv[1]));
    } catch (const std::exception&) {
        return 1;
    }
    return 0;
}
