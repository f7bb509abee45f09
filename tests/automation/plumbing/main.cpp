// These tests link the COM plumbing and the channels of hosts. This program takes the place of the module, so its own
// type library is the one that calls by name use.
#include <windows.h>

#include <gmock/gmock.h>
#include <ole2.h>

#include "com/Module.h"
#include "com/TypeLib.h"

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const HRESULT started = OleInitialize(nullptr);
    kv::com::Module::setInstance(GetModuleHandleW(nullptr));
    const int result = RUN_ALL_TESTS();
    kv::com::forgetTypeInfo();
    if (SUCCEEDED(started))
        OleUninitialize();
    return SUCCEEDED(started) ? result : 3;
}
