// These tests link the automation code. They load its type library from the module in the same folder.
#include <windows.h>

#include <gmock/gmock.h>
#include <ole2.h>

#include "com/Module.h"
#include "com/TypeLib.h"
#include "tests/automation/Module.h"

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const HRESULT started = OleInitialize(nullptr);
    kv::com::Module::setInstance(kv::test::module());
    const int result = RUN_ALL_TESTS();
    kv::com::forgetTypeInfo();
    if (SUCCEEDED(started))
        OleUninitialize();
    return SUCCEEDED(started) ? result : 3;
}
