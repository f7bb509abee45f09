// The identifiers are defined here once; the tests run in an OLE apartment as hosts do.
#include <windows.h>

#include <objsafe.h>
#include <ocidl.h>
#include <ole2.h>

#include <initguid.h>

#include "kvBandscope.h"

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    // The control's error log goes to the current folder if there is no maker's folder.
    wchar_t temp[MAX_PATH + 1] = L"";
    if (GetTempPathW(MAX_PATH + 1, temp) != 0)
        SetCurrentDirectoryW(temp);
    const HRESULT started = OleInitialize(nullptr);
    const int result = RUN_ALL_TESTS();
    if (SUCCEEDED(started))
        OleUninitialize();
    return SUCCEEDED(started) ? result : 3;
}
