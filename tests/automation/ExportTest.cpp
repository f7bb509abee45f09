// The bitmap file and the clipboard, with the arguments that each kind of host passes.
#include <gmock/gmock.h>

#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

/// Twips at the 96 dots per inch of the tests' display.
double twips(int pixels) {
    return pixels * 15.0;
}

class Export : public testing::Test {
  protected:
    Export() {
        scope.AddTXChnl(channel({.freq = 450.0, .bw = 5000.0, .power = 2.0, .key = L"TX1", .color = 0x000000FF}));
        scope.DrawDisplay();
    }
    void expectWritten(const TempFile& file, double height, double width) {
        ASSERT_TRUE(file.exists());
        const Picture picture = Picture::read(file.path());
        EXPECT_TRUE(picture.find(0x000000FF, picture.all()));
        EXPECT_DOUBLE_EQ(height, twips(picture.height));
        EXPECT_DOUBLE_EQ(width, twips(picture.width));
    }
    Scope scope;
};

TEST_F(Export, EarlyBoundHostGetsSizeAndName) {
    const TempFile file(L"early.bmp");
    double height = -1.0;
    double width = -1.0;
    BSTR name = SysAllocString(file.path().c_str());
    Text written;
    EXPECT_EQ(scope->DisplayToBMP(&height, &width, &name, written.put()), S_OK);
    EXPECT_EQ(written.str(), file.path());
    EXPECT_EQ(std::wstring(name, SysStringLen(name)), file.path());
    SysFreeString(name);
    expectWritten(file, height, width);
}

TEST_F(Export, TypedReferencesAreFilledIn) {
    const TempFile file(L"typed.bmp");
    double height = -1.0;
    double width = -1.0;
    BSTR name = SysAllocString(file.path().c_str());
    const Outcome outcome = call(scope.get(), L"DisplayToBMP",
                                 {Var::typed(VT_BYREF | VT_R8, &height), Var::typed(VT_BYREF | VT_R8, &width),
                                  Var::typed(VT_BYREF | VT_BSTR, &name)});
    EXPECT_EQ(outcome.hr, S_OK);
    EXPECT_EQ(outcome.result.text(), file.path());
    EXPECT_EQ(std::wstring(name, SysStringLen(name)), file.path());
    SysFreeString(name);
    expectWritten(file, height, width);
}

TEST_F(Export, EmptyScriptVariablesAreFilledIn) {
    const TempFile file(L"variables.bmp");
    Var height;
    Var width;
    Var name(file.path().c_str());
    const Outcome outcome =
        call(scope.get(), L"DisplayToBMP", {Var::variable(height), Var::variable(width), Var::variable(name)});
    EXPECT_EQ(outcome.hr, S_OK);
    EXPECT_EQ(outcome.result.text(), file.path());
    EXPECT_EQ(name.text(), file.path());
    ASSERT_EQ(height.vt, VT_R8);
    ASSERT_EQ(width.vt, VT_R8);
    expectWritten(file, height.dblVal, width.dblVal);
}

TEST_F(Export, ReferencesToOtherNumbersAreConverted) {
    const TempFile file(L"converted.bmp");
    long height = -1;
    float width = -1.0F;
    const Outcome outcome =
        call(scope.get(), L"DisplayToBMP",
             {Var::typed(VT_BYREF | VT_I4, &height), Var::typed(VT_BYREF | VT_R4, &width), Var(file.path().c_str())});
    EXPECT_EQ(outcome.hr, S_OK);
    expectWritten(file, static_cast<double>(height), static_cast<double>(width));
}

TEST_F(Export, PlainValuesAreTakenAndNothingComesBack) {
    const TempFile file(L"plain.bmp");
    const Outcome outcome = call(scope.get(), L"DisplayToBMP", {1.0, 2, Var(file.path().c_str())});
    EXPECT_EQ(outcome.hr, S_OK);
    EXPECT_EQ(outcome.result.text(), file.path());
    EXPECT_TRUE(file.exists());
}

TEST_F(Export, AnEmptyNameMeansTheFileInTheScratchFolder) {
    Var height;
    Var width;
    Var name(L"");
    const Outcome outcome =
        call(scope.get(), L"DisplayToBMP", {Var::variable(height), Var::variable(width), Var::variable(name)});
    EXPECT_EQ(outcome.hr, S_OK);
    EXPECT_TRUE(outcome.result.text().ends_with(L"\\NXBandscope.BMP")) << testing::PrintToString(outcome.result.text());
    EXPECT_EQ(name.text(), outcome.result.text());
    const Picture picture = Picture::read(outcome.result.text());
    EXPECT_DOUBLE_EQ(height.dblVal, twips(picture.height));
    DeleteFileW(outcome.result.text().c_str());
}

TEST_F(Export, TheNameMayBeLeftOut) {
    for (const std::vector<Var>& arguments : {std::vector<Var>{0.0, 0.0}, std::vector<Var>{0.0, 0.0, Var::missing()}}) {
        const Outcome outcome = call(scope.get(), L"DisplayToBMP", arguments);
        EXPECT_EQ(outcome.hr, S_OK);
        EXPECT_TRUE(outcome.result.text().ends_with(L"\\NXBandscope.BMP"));
        EXPECT_TRUE(DeleteFileW(outcome.result.text().c_str()));
    }
    double height = 0.0;
    double width = 0.0;
    Text written;
    EXPECT_EQ(scope->DisplayToBMP(&height, &width, nullptr, written.put()), S_OK);
    EXPECT_GT(height, 0.0);
    EXPECT_TRUE(DeleteFileW(written.str().c_str()));
}

TEST_F(Export, ANullPointerForTheSizeIsAnError) {
    double size = 0.0;
    Text written;
    EXPECT_EQ(scope->DisplayToBMP(nullptr, &size, nullptr, written.put()), E_POINTER);
    EXPECT_EQ(scope->DisplayToBMP(&size, nullptr, nullptr, written.put()), E_POINTER);
    EXPECT_EQ(call(scope.get(), L"DisplayToBMP", {1.0}).hr, DISP_E_BADPARAMCOUNT);
}

TEST_F(Export, FreshControlExportsToo) {
    Scope fresh;
    const Picture picture = capture(fresh);
    EXPECT_GT(picture.width, 300);
}

TEST_F(Export, ClipboardHoldsThePictureAndNoFileStays) {
    const Picture picture = capture(scope);
    double height = 0.0;
    double width = 0.0;
    Text written;
    ASSERT_EQ(scope->DisplayToBMP(&height, &width, nullptr, written.put()), S_OK);
    const std::wstring scratch = written.str().substr(0, written.str().find_last_of(L'\\') + 1);
    DeleteFileW(written.str().c_str());
    scope.CopyDisplayToClipboard();
    EXPECT_EQ(GetFileAttributesW((scratch + L"TempClip.BMP").c_str()), INVALID_FILE_ATTRIBUTES);
    ASSERT_TRUE(OpenClipboard(nullptr));
    const auto handle = static_cast<HBITMAP>(GetClipboardData(CF_BITMAP));
    BITMAP bitmap{};
    EXPECT_EQ(GetObjectW(handle, sizeof bitmap, &bitmap), static_cast<int>(sizeof bitmap));
    CloseClipboard();
    EXPECT_EQ(bitmap.bmWidth, picture.width);
    EXPECT_EQ(bitmap.bmHeight, picture.height);
}

TEST_F(Export, UnsitedControlDrawsItselfWhereItIsTold) {
    ComPtr<IViewObject2> view;
    ASSERT_EQ(scope->QueryInterface(IID_PPV_ARGS(view.GetAddressOf())), S_OK);
    constexpr int kWidth = 700;
    constexpr int kHeight = 500;
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), kWidth, -kHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HDC dc = CreateCompatibleDC(nullptr);
    const HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(dc, bitmap);
    const RECTL bounds{50, 50, 650, 450};
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr, nullptr, 0), S_OK);
    GdiFlush();
    const auto* pixels = static_cast<const std::uint32_t*>(bits);
    int inside = 0;
    int outside = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            const bool painted = (pixels[y * kWidth + x] & 0x00FFFFFFU) != 0;
            const bool within = x >= bounds.left && x < bounds.right && y >= bounds.top && y < bounds.bottom;
            (within ? inside : outside) += painted ? 1 : 0;
        }
    EXPECT_EQ(outside, 0);
    EXPECT_GT(inside, 600 * 400 * 3 / 4);
    SelectObject(dc, before);
    DeleteObject(bitmap);
    DeleteDC(dc);
}

}  // namespace
}  // namespace kv::test
