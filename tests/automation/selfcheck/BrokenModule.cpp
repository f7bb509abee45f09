// A module with the name of the control's that hangs or crashes when it is asked for a class. The environment variable
// KV_BROKEN_MODULE chooses.
#include <windows.h>

#include <objbase.h>

#include <cwchar>

extern "C" HRESULT WINAPI DllGetClassObject(REFCLSID, REFIID, void**) {
    wchar_t way[16] = L"";
    GetEnvironmentVariableW(L"KV_BROKEN_MODULE", way, 16);
    if (std::wcscmp(way, L"crash") == 0)
        RaiseException(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE, 0, nullptr);
    if (std::wcscmp(way, L"hang") == 0)
        Sleep(INFINITE);
    return CLASS_E_CLASSNOTAVAILABLE;
}
