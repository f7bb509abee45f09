#include "tests/automation/leak/Usage.h"

#include <psapi.h>

#include <gtest/gtest.h>

namespace kv::test {

namespace {

DWORD countGdiObjects() {
    if (const DWORD told = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS))
        return told;
    // If the system does not count the objects, each one is found by the low half of its handle.
    DWORD count = 0;
    for (ULONG_PTR handle = 1; handle <= 0xFFFF; ++handle)
        count += GetObjectType(reinterpret_cast<HGDIOBJ>(handle)) != 0 ? 1U : 0U;
    return count;
}

BOOL CALLBACK countInner(HWND, LPARAM count) {
    ++*reinterpret_cast<DWORD*>(count);
    return TRUE;
}

BOOL CALLBACK countWithInner(HWND window, LPARAM count) {
    EnumChildWindows(window, &countInner, count);
    return countInner(window, count);
}

DWORD countUserObjects() {
    if (const DWORD told = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS))
        return told;
    DWORD windows = 0;
    EnumThreadWindows(GetCurrentThreadId(), &countWithInner, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

}  // namespace

Usage usage() {
    PROCESS_MEMORY_COUNTERS_EX counters{};
    counters.cb = sizeof counters;
    EXPECT_TRUE(GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                                     sizeof counters));
    // Wine 8 leaves PrivateUsage at 0; both numbers are the committed memory.
    const SIZE_T committed = counters.PrivateUsage != 0 ? counters.PrivateUsage : counters.PagefileUsage;
    EXPECT_GT(committed, 0U);
    return {countGdiObjects(), countUserObjects(), committed};
}

}  // namespace kv::test
