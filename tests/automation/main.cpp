// The identifiers are defined here once; the tests run in an OLE apartment as hosts do.
#include <windows.h>

#include <objsafe.h>
#include <ocidl.h>
#include <ole2.h>

#include <initguid.h>

#include "kvBandscope.h"

#include <gmock/gmock.h>

#include <string>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    // The control's error log goes to the current folder if there is no maker's folder.
    wchar_t temp[MAX_PATH + 1] = L"";
    if (GetTempPathW(MAX_PATH + 1, temp) != 0)
        SetCurrentDirectoryW(temp);
    // The sample host can neither read nor write this file, so the user's settings do not affect the tests.
    SetEnvironmentVariableW(L"BANDSCOPEHOST_SETTINGS",
                            (std::wstring(temp) + L"no folder\\no folder\\none.ini").c_str());
    const HRESULT started = OleInitialize(nullptr);
    const int result = RUN_ALL_TESTS();
    if (SUCCEEDED(started))
        OleUninitialize();
    return SUCCEEDED(started) ? result : 3;
}
