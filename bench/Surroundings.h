// What a program that uses the control sets up around itself.
#pragma once

#ifdef _WIN32
#include <windows.h>

#include <ole2.h>
#endif

namespace kv::bench {

#ifdef _WIN32
/// OLE, and the current folder where nothing can be spoilt: an error log may go there.
class Surroundings {
  public:
    Surroundings() {
        wchar_t temp[MAX_PATH + 1] = L"";
        if (GetTempPathW(MAX_PATH + 1, temp) != 0)
            SetCurrentDirectoryW(temp);
        OleInitialize(nullptr);
    }
    ~Surroundings() { OleUninitialize(); }
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;
};
#else
struct Surroundings {};
#endif

}  // namespace kv::bench
