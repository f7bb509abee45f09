// SavePicture, CopyPicture and PrintPicture, on the control's own view and by name on a View.
#include <gmock/gmock.h>
#include <wincodec.h>

#include <cmath>
#include <fstream>
#include <iterator>

#include "tests/automation/Colors.h"
#include "tests/automation/Container.h"
#include "tests/automation/Errors.h"
#include "tests/automation/GdiOracle.h"
#include "tests/automation/OtherClipboard.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr auto kInvalid = static_cast<HRESULT>(0x800A0005L);
constexpr auto kNoAccess = static_cast<HRESULT>(0x800A004BL);

std::string bytesOf(const std::wstring& path) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(file, INVALID_HANDLE_VALUE);
    std::string bytes(GetFileSize(file, nullptr), '\0');
    DWORD read = 0;
    EXPECT_TRUE(ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr));
    CloseHandle(file);
    return bytes;
}

std::uint32_t bigEndian(const std::string& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8U | static_cast<unsigned char>(bytes.at(at + i));
    return value;
}

/// A picture of a file that the imaging component reads; empty if it cannot.
Picture decoded(const std::wstring& path, double& dpi) {
    ComPtr<IWICImagingFactory> factory;
    ComPtr<IWICBitmapDecoder> decoder;
    ComPtr<IWICBitmapFrameDecode> frame;
    ComPtr<IWICFormatConverter> converter;
    UINT width = 0;
    UINT height = 0;
    double down = 0.0;
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                IID_PPV_ARGS(factory.GetAddressOf()))) ||
        FAILED(factory->CreateDecoderFromFilename(path.c_str(), nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand,
                                                  &decoder)) ||
        FAILED(decoder->GetFrame(0, &frame)) || FAILED(frame->GetSize(&width, &height)) ||
        FAILED(frame->GetResolution(&dpi, &down)) || FAILED(factory->CreateFormatConverter(&converter)) ||
        FAILED(converter->Initialize(frame.Get(), GUID_WICPixelFormat32bppBGR, WICBitmapDitherTypeNone, nullptr, 0.0,
                                     WICBitmapPaletteTypeCustom)))
        return {};
    EXPECT_EQ(dpi, down);
    Picture picture{static_cast<int>(width), static_cast<int>(height), {}};
    picture.pixels.resize(static_cast<std::size_t>(width) * height);
    EXPECT_EQ(
        converter->CopyPixels(nullptr, width * 4, width * height * 4, reinterpret_cast<BYTE*>(picture.pixels.data())),
        S_OK);
    for (std::uint32_t& pixel : picture.pixels)
        pixel = (pixel & 0xFFU) << 16U | (pixel & 0xFF00U) | (pixel >> 16U & 0xFFU);
    return picture;
}

class PictureMembers : public testing::TestWithParam<Way> {
  protected:
    Plot plot;
    ComPtr<_BandscopeView> view;

    void SetUp() override {
        plot.scope.AddTXChnl(channel({.freq = 450.0, .lo = 445.0, .hi = 455.0, .power = 30.0, .color = kBox}));
        plot.scope.DrawByRange(430.0, 470.0);
        if (GetParam() == Way::early) {
            ASSERT_EQ(plot.scope.get()->QueryInterface(IID_PPV_ARGS(view.GetAddressOf())), S_OK);
        } else {
            view = createInstance<_BandscopeView>(CLSID_View);
            ASSERT_EQ(view->putref_Scope(plot.scope.get()), S_OK);
        }
    }
    struct Result {
        HRESULT hr = E_FAIL;
        std::wstring text;
    };
    Result byName(const wchar_t* name, std::vector<Var> arguments) {
        const Outcome outcome = call(view.Get(), name, std::move(arguments));
        return {outcome.hr == DISP_E_EXCEPTION ? outcome.errorCode : outcome.hr, outcome.description};
    }
    static Result early(HRESULT hr) { return {hr, FAILED(hr) ? takeErrorText() : std::wstring()}; }
    Result save(const std::wstring& file, int width = 0, int height = 0, int dpi = 0) {
        if (GetParam() == Way::early)
            return early(view->SavePicture(Text(file).get(), width, height, dpi));
        std::vector<Var> arguments{Var(file.c_str())};
        if (width != 0 || height != 0 || dpi != 0) {
            arguments.emplace_back(width);
            arguments.emplace_back(height);
            arguments.emplace_back(dpi);
        }
        return byName(L"SavePicture", std::move(arguments));
    }
    Result copy() { return GetParam() == Way::early ? early(view->CopyPicture()) : byName(L"CopyPicture", {}); }
    Result print(double hdc, int left, int top, int width, int height) {
        if (GetParam() == Way::early)
            return early(view->PrintPicture(hdc, left, top, width, height));
        return byName(L"PrintPicture", {Var(hdc), Var(left), Var(top), Var(width), Var(height)});
    }
    /// The number of files whose names begin as those of files that are being written.
    static int partialFiles() {
        WIN32_FIND_DATAW found{};
        const HANDLE search = FindFirstFileW((tempFolder() + L"kv*.tmp").c_str(), &found);
        if (search == INVALID_HANDLE_VALUE)
            return 0;
        int count = 1;
        while (FindNextFileW(search, &found))
            ++count;
        FindClose(search);
        return count;
    }
};

INSTANTIATE_TEST_SUITE_P(, PictureMembers, testing::Values(Way::early, Way::late), nameOf);

TEST_P(PictureMembers, ABitmapFileHasThePixelsOfTheScreen) {
    const TempFile file(L"kv members.bmp");
    const Picture screen = plot.picture();
    EXPECT_EQ(save(file.path()).hr, S_OK);
    EXPECT_EQ(Picture::read(file.path()), screen);
    EXPECT_EQ(save(file.path(), screen.width + 100, screen.height + 50).hr, S_OK);
    const Picture larger = Picture::read(file.path());
    EXPECT_EQ(larger.width, screen.width + 100);
    EXPECT_EQ(larger.height, screen.height + 50);
    EXPECT_GT(larger.count(kBox, larger.all()), screen.count(kBox, screen.all()));
    EXPECT_EQ(partialFiles(), 0);
}

TEST_P(PictureMembers, APngFileHasThePixelsOfTheScreenAndTheResolution) {
    const TempFile file(L"kv members.PNG");
    EXPECT_EQ(save(file.path()).hr, S_OK);
    double dpi = 0.0;
    EXPECT_EQ(decoded(file.path(), dpi), plot.picture());
    EXPECT_NEAR(dpi, 96.0, 0.1);
    const std::string bytes = bytesOf(file.path());
    EXPECT_THAT(bytes, StartsWith("\x89PNG"));
    const std::size_t phys = bytes.find("pHYs");
    ASSERT_NE(phys, std::string::npos);
    EXPECT_EQ(bigEndian(bytes, phys + 4), 3780U) << "pixels per meter";
}

TEST_P(PictureMembers, APngFileForAPrinterHasItsPixelsAndReadableHatches) {
    const ComPtr<_FreqSlot> hatched =
        channel({.freq = 462.0, .lo = 458.0, .hi = 468.0, .power = 30.0, .color = RGB(0, 0, 250)});
    plot.scope.AddTXChnl(hatched);
    hatched->put_iFillStyle(3);
    plot.scope.DrawByRange(430.0, 470.0);
    const TempFile file(L"kv members.png");
    const Picture screen = plot.picture();
    EXPECT_EQ(save(file.path(), 0, 0, 600).hr, S_OK);
    double dpi = 0.0;
    const Picture printed = decoded(file.path(), dpi);
    EXPECT_NEAR(dpi, 600.0, 0.1);
    EXPECT_EQ(printed.width, std::lround(screen.width * 6.25));
    EXPECT_EQ(printed.height, std::lround(screen.height * 6.25));
    // The same share of the picture is in the color of the hatch, because lines are as wide as on the screen.
    const double pixels = 6.25 * 6.25;
    EXPECT_NEAR(printed.count(RGB(0, 0, 250), printed.all()) / pixels, screen.count(RGB(0, 0, 250), screen.all()),
                screen.count(RGB(0, 0, 250), screen.all()) * 0.1);
    EXPECT_NEAR(printed.count(kBox, printed.all()) / pixels, screen.count(kBox, screen.all()),
                screen.count(kBox, screen.all()) * 0.1);
}

TEST_P(PictureMembers, WhatCannotBeSavedIsRefusedAndLeavesNoFile) {
    const TempFile file(L"kv members.jpg");
    const Result wrong = save(file.path());
    EXPECT_EQ(wrong.hr, kInvalid);
    EXPECT_EQ(wrong.text,
              L"SavePicture: the file is \"" + file.path() + L"\". Its name must end in .bmp, .png or .emf.");
    EXPECT_FALSE(file.exists());
    const TempFile good(L"kv members.bmp");
    EXPECT_EQ(save(good.path(), -5).hr, kInvalid);
    EXPECT_EQ(save(good.path(), 0, 0, 5000).hr, kInvalid);
    EXPECT_FALSE(good.exists());
    const std::wstring nowhere = tempFolder() + L"kv no such folder\\a.png";
    const Result lost = save(nowhere);
    EXPECT_EQ(lost.hr, kNoAccess);
    EXPECT_THAT(lost.text, HasSubstr(L"\"" + nowhere + L"\" cannot be written"));
    EXPECT_EQ(partialFiles(), 0);
}

TEST_P(PictureMembers, AProtectedFileStaysAsItIs) {
    const TempFile file(L"kv members.emf");
    EXPECT_EQ(save(file.path()).hr, S_OK);
    const std::string before = bytesOf(file.path());
    EXPECT_TRUE(SetFileAttributesW(file.path().c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(save(file.path(), 900, 700).hr, kNoAccess);
    EXPECT_EQ(bytesOf(file.path()), before);
    SetFileAttributesW(file.path().c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(partialFiles(), 0);
}

TEST_P(PictureMembers, TheClipboardHasThreeFormsOfThePicture) {
    warmUpClipboard();
    putText(L"what was there before");
    const Result copied = copy();
    ASSERT_EQ(copied.hr, S_OK) << testing::PrintToString(copied.text);
    EXPECT_FALSE(IsClipboardFormatAvailable(CF_UNICODETEXT));
    const Picture screen = plot.picture();
    EXPECT_EQ(readClipboardElsewhere().bitmap, screen);
    ASSERT_TRUE(OpenClipboard(nullptr));
    const auto vectors = static_cast<HENHMETAFILE>(GetClipboardData(CF_ENHMETAFILE));
    ASSERT_TRUE(vectors);
    const GdiPicture paper(screen.width, screen.height, kPaper);
    const RECT all{0, 0, screen.width, screen.height};
    EXPECT_TRUE(PlayEnhMetaFile(paper.dc(), vectors, &all));
    const HGLOBAL png = GetClipboardData(RegisterClipboardFormatW(L"PNG"));
    ASSERT_TRUE(png);
    const std::string bytes(static_cast<const char*>(GlobalLock(png)), GlobalSize(png));
    GlobalUnlock(png);
    CloseClipboard();
    EXPECT_NEAR(paper.read().count(kBox, screen.all()), screen.count(kBox, screen.all()), 50);
    const TempFile file(L"kv clipboard.png");
    std::FILE* const out = _wfopen(file.path().c_str(), L"wb");
    ASSERT_TRUE(out);
    EXPECT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), out), bytes.size());
    std::fclose(out);
    double dpi = 0.0;
    EXPECT_EQ(decoded(file.path(), dpi), screen);
}

TEST_P(PictureMembers, ABusyClipboardIsAnErrorAndKeepsItsContent) {
    warmUpClipboard();
    putText(L"what was there before");
    {
        const HeldElsewhere held(2000);
        const Result busy = copy();
        EXPECT_EQ(busy.hr, static_cast<HRESULT>(0x800A0209L));
        EXPECT_THAT(busy.text, StartsWith(L"CopyPicture: another program has the clipboard open."));
    }
    EXPECT_TRUE(IsClipboardFormatAvailable(CF_UNICODETEXT));
    EXPECT_FALSE(IsClipboardFormatAvailable(CF_ENHMETAFILE));
}

TEST_P(PictureMembers, APictureIsPrintedInTheRectangleWhateverTheMapping) {
    const Picture screen = plot.picture();
    GdiPicture paper(screen.width + 60, screen.height + 40, kPaper);
    SetMapMode(paper.dc(), MM_LOMETRIC);
    SetWindowOrgEx(paper.dc(), 33, -44, nullptr);
    SetViewportOrgEx(paper.dc(), 7, 9, nullptr);
    const auto number = static_cast<double>(reinterpret_cast<std::intptr_t>(paper.dc()));
    ASSERT_EQ(print(number, 40, 25, screen.width, screen.height).hr, S_OK);
    EXPECT_EQ(GetMapMode(paper.dc()), MM_LOMETRIC);
    POINT origin{};
    GetViewportOrgEx(paper.dc(), &origin);
    EXPECT_EQ(origin.x, 7);
    EXPECT_EQ(GetGraphicsMode(paper.dc()), GM_COMPATIBLE);
    const Picture printed = paper.read();
    EXPECT_EQ(printed.count(kPaper, printed.all()), printed.width * printed.height - screen.width * screen.height);
    int different = 0;
    for (int y = 0; y < screen.height; ++y)
        for (int x = 0; x < screen.width; ++x)
            different += printed.at(40 + x, 25 + y) != screen.at(x, y) ? 1 : 0;
    EXPECT_LE(different, screen.width * screen.height / 500);
}

TEST_P(PictureMembers, WhatIsNoDeviceContextIsRefused) {
    const Result wrong = print(12345.0, 0, 0, 500, 400);
    EXPECT_EQ(wrong.hr, kInvalid);
    EXPECT_THAT(wrong.text, StartsWith(L"PrintPicture: hdc is 12345."));
    const GdiPicture paper(100, 100, kPaper);
    const auto number = static_cast<double>(reinterpret_cast<std::intptr_t>(paper.dc()));
    EXPECT_EQ(print(number, 0, 0, 0, 400).hr, kInvalid);
    EXPECT_EQ(print(number, 0, 0, 40, 40).hr, kInvalid);
    EXPECT_EQ(paper.read().count(kPaper, paper.read().all()), 10000);
}

TEST_P(PictureMembers, WithoutAControlThereIsNoPicture) {
    if (GetParam() == Way::early)
        return;
    ASSERT_EQ(view->putref_Scope(nullptr), S_OK);
    EXPECT_EQ(save(L"a.bmp").hr, kNotSet);
    EXPECT_EQ(copy().hr, kNotSet);
    EXPECT_EQ(print(1.0, 0, 0, 500, 400).hr, kNotSet);
}

TEST_P(PictureMembers, RecordsAreNotMarkedAsDrawn) {
    const ComPtr<_FreqSlot> added = channel({.freq = 452.0, .lo = 451.0, .hi = 453.0, .power = 10.0, .color = 5});
    plot.scope.AddTXChnl(added);
    const TempFile file(L"kv members.emf");
    EXPECT_EQ(save(file.path(), 900, 700, 300).hr, S_OK);
    EXPECT_FALSE(isDrawn(added.Get()));
    double time = 0.0;
    EXPECT_EQ(view->get_RenderTimeMs(&time), S_OK);
    EXPECT_EQ(save(file.path(), 900, 700).hr, S_OK);
    double after = 0.0;
    EXPECT_EQ(view->get_RenderTimeMs(&after), S_OK);
    EXPECT_EQ(after, time);
}

}  // namespace
}  // namespace kv::test
