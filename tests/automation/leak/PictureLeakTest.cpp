// Pictures of all kinds and resolutions leave no objects of the system behind.
#include <gmock/gmock.h>

#include "tests/automation/Picture.h"
#include "tests/automation/leak/Usage.h"

namespace kv::test {
namespace {

class PictureLeaks : public testing::Test {
  protected:
    Scope scope;
    ComPtr<_BandscopeView> view;
    TempFile png{L"leaks.png"};
    TempFile emf{L"leaks.emf"};
    HDC paper = CreateCompatibleDC(nullptr);

    void SetUp() override {
        // More colors than a drawing keeps pens for, and more channels than are drawn one by one.
        for (int i = 0; i < 500; ++i) {
            const ComPtr<_FreqSlot> slot = channel({.freq = 440.0 + 0.04 * i,
                                                    .bw = 12.5,
                                                    .power = 10.0 + i % 50,
                                                    .key = L"TX" + std::to_wstring(i),
                                                    .color = RGB(i % 250, 7, 9),
                                                    .line = RGB(9, i % 250, 7)});
            scope.AddTXChnl(slot);
            EXPECT_EQ(slot->put_iFillStyle(static_cast<short>(i % 8)), S_OK);
        }
        ASSERT_EQ(scope.get()->QueryInterface(IID_PPV_ARGS(view.GetAddressOf())), S_OK);
        ASSERT_EQ(view->ShowRange(440.0, 460.0), S_OK);
    }
    void TearDown() override { DeleteDC(paper); }
    void pictures(int i) {
        // Another resolution each time, because fonts depend on it.
        EXPECT_EQ(view->SavePicture(Text(png.path()).get(), 500, 400, 100 + i), S_OK);
        EXPECT_EQ(view->SavePicture(Text(emf.path()).get(), 500, 400, 100 + i), S_OK);
        EXPECT_EQ(view->PrintPicture(static_cast<double>(reinterpret_cast<std::intptr_t>(paper)), i, i, 500 + i, 400),
                  S_OK);
    }
};

TEST_F(PictureLeaks, AHundredPicturesLeaveNothing) {
    for (int i = 0; i < 10; ++i)
        pictures(i);
    const Usage before = usage();
    for (int i = 10; i < 110; ++i)
        pictures(i);
    const Usage after = usage();
    EXPECT_LE(after.gdi, before.gdi + 2);
    EXPECT_LE(after.user, before.user);
    EXPECT_LT(after.bytes, before.bytes + 8 * 1024 * 1024);
}

}  // namespace
}  // namespace kv::test
