// The control in the container that the system itself offers to programs.
#include <gmock/gmock.h>

#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

using AttachControl = HRESULT(WINAPI*)(IUnknown*, HWND, IUnknown**);

AttachControl attachControl() {
    const HMODULE library = LoadLibraryW(L"atl100.dll");
    return reinterpret_cast<AttachControl>(
        reinterpret_cast<void*>(library ? GetProcAddress(library, "AtlAxAttachControl") : nullptr));
}

class SystemContainer : public testing::Test {
  protected:
    // The window is never shown: the system would wait seconds for it on a display without a window manager.
    HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 10, 10, 900, 650, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr);
    ComPtr<IUnknown> host;
    Scope scope;

    void SetUp() override {
        const AttachControl attach = attachControl();
        ASSERT_TRUE(attach) << "the system has no container of its own";
        scope.AddTXChnl(channel({.freq = 450.0, .bw = 5000.0, .power = 2.0, .key = L"TX1", .color = 0x000000FF}));
        EXPECT_TRUE(scope.DrawDisplay());
        before = capture(scope);
        ASSERT_EQ(attach(scope.get(), window, host.GetAddressOf()), S_OK);
        pump();
    }
    void TearDown() override {
        if (window)
            DestroyWindow(window);
        host.Reset();
        pump();
    }
    [[nodiscard]] HWND root() const { return FindWindowExW(window, nullptr, L"kvBandscope", nullptr); }
    Picture resized(int width, int height) {
        SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
        pump();
        EXPECT_TRUE(scope.DrawDisplay());
        return capture(scope);
    }
    Picture before;
};

TEST_F(SystemContainer, AWindowThatWasNeverShownHasTheSamePictureEachTime) {
    ASSERT_TRUE(root());
    EXPECT_TRUE(before.find(0x000000FF, before.all())) << "without a container";
    const Picture first = resized(900, 650);
    EXPECT_TRUE(first.find(0x000000FF, first.all()));
    EXPECT_NE(resized(700, 500), first);
    EXPECT_EQ(resized(900, 650), first);
}

TEST_F(SystemContainer, TheLeastSizeStaysTheSizeOfTheStart) {
    const short width = scope.MinWid();
    const short height = scope.MinHgt();
    resized(1200, 800);
    EXPECT_EQ(scope.MinWid(), width);
    EXPECT_EQ(scope.MinHgt(), height);
}

TEST_F(SystemContainer, ItsEndLeavesNothing) {
    EXPECT_TRUE(IsWindow(root()));
    DestroyWindow(std::exchange(window, nullptr));
    host.Reset();
    pump();
    scope.release();
    EXPECT_EQ(canUnloadNow(), S_OK);
}

}  // namespace
}  // namespace kv::test
