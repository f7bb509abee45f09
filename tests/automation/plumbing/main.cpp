// These tests hold the automation code itself; its type library comes from the module beside them.
#include <windows.h>

#include <gmock/gmock.h>
#include <ole2.h>

#include "automation/Module.h"
#include "automation/TypeLib.h"
#include "tests/automation/Module.h"

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const HRESULT started = OleInitialize(nullptr);
    kv::automation::Module::setInstance(kv::test::module());
    const int result = RUN_ALL_TESTS();
    kv::automation::forgetTypeInfo();
    if (SUCCEEDED(started))
        OleUninitialize();
    return SUCCEEDED(started) ? result : 3;
}
