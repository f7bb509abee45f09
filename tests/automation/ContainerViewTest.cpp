// The picture of the control for its container: on any device, as data, and the notifications of changes.
#include <gmock/gmock.h>

#include <cstring>

#include "tests/automation/Colors.h"
#include "tests/automation/Container.h"
#include "tests/automation/GdiOracle.h"
#include "tests/automation/MessageBoxes.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kPaperWidth = 720;
constexpr int kPaperHeight = 480;

/// Pixels in which two pictures differ by more than a shade.
int differences(const Picture& a, const Picture& b) {
    EXPECT_EQ(a.width, b.width);
    EXPECT_EQ(a.height, b.height);
    int count = 0;
    for (std::size_t i = 0; i < a.pixels.size() && i < b.pixels.size(); ++i) {
        const auto apart = [&](unsigned shift) {
            const int first = static_cast<int>(a.pixels[i] >> shift & 0xFFU);
            const int second = static_cast<int>(b.pixels[i] >> shift & 0xFFU);
            return first > second + 8 || second > first + 8;
        };
        count += apart(0) || apart(8) || apart(16) ? 1 : 0;
    }
    return count;
}

class ContainerView : public testing::Test {
  protected:
    FullContainer container;
    CallLog& log = container.log;
    ComPtr<IViewObjectEx> view;
    ComPtr<IDataObject> data;

    void SetUp() override {
        view = container.as<IViewObjectEx>();
        data = container.as<IDataObject>();
        long index = 0;
        VARIANT_BOOL drawn = VARIANT_FALSE;
        const auto slot = channel({.freq = 430.0, .lo = 400.0, .hi = 460.0, .power = 30.0, .color = kBox});
        ASSERT_EQ(container.control->AddTXChnl(slot.Get(), &index), S_OK);
        ASSERT_EQ(container.control->DrawDisplay(&drawn), S_OK);
    }
    HRESULT draw(HDC dc, RECTL bounds, const RECTL* window = nullptr, DWORD aspect = DVASPECT_CONTENT) const {
        return view->Draw(aspect, -1, nullptr, nullptr, nullptr, dc, &bounds, window, nullptr, 0);
    }
    /// What the control looks like, pixel for pixel.
    Picture look() const {
        const GdiPicture paper(kPaperWidth, kPaperHeight, kPaper);
        EXPECT_EQ(draw(paper.dc(), {0, 0, kPaperWidth, kPaperHeight}), S_OK);
        const Picture picture = paper.read();
        EXPECT_GT(picture.count(kBox, picture.all()), 1000);
        EXPECT_EQ(picture.count(kPaper, picture.all()), 0);
        return picture;
    }
    static FORMATETC format(CLIPFORMAT clip, DWORD medium) { return {clip, nullptr, DVASPECT_CONTENT, -1, medium}; }
    void change() const { EXPECT_EQ(container.control->ClearDisplay(), S_OK); }
};

TEST_F(ContainerView, AnyMappingShowsTheSamePicture) {
    const Picture expected = look();
    const GdiPicture paper(kPaperWidth, kPaperHeight, kPaper);
    // Upwards, in other units and with another origin, as containers with metric coordinates draw.
    SetMapMode(paper.dc(), MM_ANISOTROPIC);
    SetWindowExtEx(paper.dc(), 2 * kPaperWidth, -2 * kPaperHeight, nullptr);
    SetViewportExtEx(paper.dc(), kPaperWidth, kPaperHeight, nullptr);
    SetWindowOrgEx(paper.dc(), 100, 1000, nullptr);
    EXPECT_EQ(draw(paper.dc(), {100, 1000, 100 + 2 * kPaperWidth, 1000 - 2 * kPaperHeight}), S_OK);
    EXPECT_EQ(paper.read(), expected);
    SIZE extent{};
    EXPECT_TRUE(GetWindowExtEx(paper.dc(), &extent));
    EXPECT_EQ(extent.cy, -2 * kPaperHeight) << "the container's mapping is its own";
}

TEST_F(ContainerView, AnEnhancedMetafileHoldsTheWholeControl) {
    const Picture expected = look();
    const HDC recording = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(recording);
    const RECTL window{0, 0, 1000, 1000};
    EXPECT_EQ(draw(recording, {40, 60, 40 + kPaperWidth, 60 + kPaperHeight}, &window), S_OK);
    const HENHMETAFILE file = CloseEnhMetaFile(recording);
    ASSERT_TRUE(file);
    ENHMETAHEADER header{};
    GetEnhMetaFileHeader(file, sizeof header, &header);
    EXPECT_NEAR(static_cast<double>(header.rclBounds.left), 40.0, 1.0);
    EXPECT_NEAR(static_cast<double>(header.rclBounds.top), 60.0, 1.0);
    EXPECT_NEAR(static_cast<double>(header.rclBounds.right), 40.0 + kPaperWidth, 1.0);
    EXPECT_NEAR(static_cast<double>(header.rclBounds.bottom), 60.0 + kPaperHeight, 1.0);
    const GdiPicture paper(kPaperWidth, kPaperHeight, kPaper);
    const RECT all{0, 0, kPaperWidth, kPaperHeight};
    EXPECT_TRUE(PlayEnhMetaFile(paper.dc(), file, &all));
    DeleteEnhMetaFile(file);
    // The player may stretch by a pixel.
    const Picture played = paper.read();
    EXPECT_NEAR(played.count(kBox, played.all()), expected.count(kBox, expected.all()), 1500);
    EXPECT_LE(played.count(kPaper, played.all()), 2 * (kPaperWidth + kPaperHeight));
}

TEST_F(ContainerView, AnOldMetafileHoldsTheWholeControl) {
    const Picture expected = look();
    const HDC recording = CreateMetaFileW(nullptr);
    ASSERT_TRUE(recording);
    const RECTL window{-50, -70, 2 * kPaperWidth, 2 * kPaperHeight};
    SetMapMode(recording, MM_ANISOTROPIC);
    SetWindowOrgEx(recording, window.left, window.top, nullptr);
    SetWindowExtEx(recording, window.right, window.bottom, nullptr);
    EXPECT_EQ(draw(recording, {-50, -70, -50 + kPaperWidth, -70 + kPaperHeight}, &window), S_OK);
    const HMETAFILE file = CloseMetaFile(recording);
    ASSERT_TRUE(file);
    const GdiPicture paper(2 * kPaperWidth, 2 * kPaperHeight, kPaper);
    SetMapMode(paper.dc(), MM_ANISOTROPIC);
    SetViewportExtEx(paper.dc(), 2 * kPaperWidth, 2 * kPaperHeight, nullptr);
    EXPECT_TRUE(PlayMetaFile(paper.dc(), file));
    DeleteMetaFile(file);
    const Picture played = paper.read();
    Picture quarter{kPaperWidth, kPaperHeight, {}};
    for (int y = 0; y < kPaperHeight; ++y)
        for (int x = 0; x < kPaperWidth; ++x)
            quarter.pixels.push_back(played.at(x, y));
    EXPECT_EQ(differences(quarter, expected), 0);
    EXPECT_EQ(played.count(kPaper, {kPaperWidth, 0, 2 * kPaperWidth - 1, 2 * kPaperHeight - 1}),
              kPaperWidth * 2 * kPaperHeight);
}

TEST_F(ContainerView, AnActiveControlLooksTheSame) {
    const Picture expected = look();
    ASSERT_NO_FATAL_FAILURE(container.activate());
    EXPECT_EQ(look(), expected);
    // The focus on the spectrum shows in its window only.
    for (const HWND part : container.children())
        if (windowText(part) == L"picSpectrum")
            SetFocus(part);
    ASSERT_EQ(windowText(GetFocus()), L"picSpectrum");
    EXPECT_EQ(look(), expected);
}

BOOL STDMETHODCALLTYPE answerDraw(ULONG_PTR argument) {
    ++*reinterpret_cast<int*>(argument);
    return *reinterpret_cast<int*>(argument) > 1;
}

TEST_F(ContainerView, ADrawingCanBeCanceled) {
    const GdiPicture paper(kPaperWidth, kPaperHeight, kPaper);
    const RECTL bounds{0, 0, kPaperWidth, kPaperHeight};
    int asked = 0;
    const auto once = [&] {
        return view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, paper.dc(), &bounds, nullptr, &answerDraw,
                          reinterpret_cast<ULONG_PTR>(&asked));
    };
    EXPECT_EQ(once(), E_ABORT);
    const Picture untouched = paper.read();
    EXPECT_EQ(untouched.count(kPaper, untouched.all()), kPaperWidth * kPaperHeight);
    EXPECT_EQ(once(), S_OK);
}

TEST_F(ContainerView, ContentPrintAndOpaqueAspectsAreDrawn) {
    const Picture expected = look();
    for (const DWORD aspect : std::initializer_list<DWORD>{DVASPECT_CONTENT, DVASPECT_DOCPRINT, DVASPECT_OPAQUE}) {
        const GdiPicture paper(kPaperWidth, kPaperHeight, kPaper);
        EXPECT_EQ(draw(paper.dc(), {0, 0, kPaperWidth, kPaperHeight}, nullptr, aspect), S_OK) << aspect;
        EXPECT_EQ(paper.read(), expected) << aspect;
    }
    const GdiPicture paper(10, 10, kPaper);
    for (const DWORD aspect : std::initializer_list<DWORD>{DVASPECT_ICON, DVASPECT_THUMBNAIL, DVASPECT_TRANSPARENT})
        EXPECT_EQ(draw(paper.dc(), {0, 0, 10, 10}, nullptr, aspect), DV_E_DVASPECT) << aspect;
    DWORD status = 0;
    EXPECT_EQ(view->GetViewStatus(&status), S_OK);
    EXPECT_EQ(status, static_cast<DWORD>(VIEWSTATUS_OPAQUE | VIEWSTATUS_DVASPECTOPAQUE));
}

TEST_F(ContainerView, PlacesAndHits) {
    RECTL rect{};
    EXPECT_EQ(view->GetRect(DVASPECT_CONTENT, &rect), S_OK);
    EXPECT_EQ(rect.left, 0);
    EXPECT_EQ(rect.top, 0);
    EXPECT_EQ(rect.right, kPaperWidth * 2540 / 96);
    EXPECT_EQ(rect.bottom, kPaperHeight * 2540 / 96);
    EXPECT_EQ(view->GetRect(DVASPECT_TRANSPARENT, &rect), DV_E_DVASPECT);
    const RECT bounds{100, 100, 100 + kPaperWidth, 100 + kPaperHeight};
    DWORD hit = 99;
    // 265 hundredths of a millimeter are ten pixels.
    for (const auto& [at, close, expected] : {std::tuple<POINT, LONG, HITRESULT>{{100, 100}, 0, HITRESULT_HIT},
                                              {{99, 100}, 0, HITRESULT_OUTSIDE},
                                              {{91, 100}, 265, HITRESULT_CLOSE},
                                              {{89, 100}, 265, HITRESULT_OUTSIDE},
                                              {{400, 300}, 265, HITRESULT_HIT}}) {
        EXPECT_EQ(view->QueryHitPoint(DVASPECT_CONTENT, &bounds, at, close, &hit), S_OK);
        EXPECT_EQ(hit, static_cast<DWORD>(expected)) << at.x;
    }
    const RECT inside{200, 200, 210, 210};
    const RECT beside{0, 0, 95, 95};
    EXPECT_EQ(view->QueryHitRect(DVASPECT_CONTENT, &bounds, &inside, 0, &hit), S_OK);
    EXPECT_EQ(hit, static_cast<DWORD>(HITRESULT_HIT));
    EXPECT_EQ(view->QueryHitRect(DVASPECT_CONTENT, &bounds, &beside, 0, &hit), S_OK);
    EXPECT_EQ(hit, static_cast<DWORD>(HITRESULT_OUTSIDE));
    EXPECT_EQ(view->QueryHitRect(DVASPECT_CONTENT, &bounds, &beside, 265, &hit), S_OK);
    EXPECT_EQ(hit, static_cast<DWORD>(HITRESULT_CLOSE));
    EXPECT_EQ(view->QueryHitRect(DVASPECT_ICON, &bounds, &inside, 0, &hit), DV_E_DVASPECT);
}

TEST_F(ContainerView, ItsNaturalExtentIsTheOneItStartsWith) {
    SIZEL size{40000, 20000};
    EXPECT_EQ(container.as<IOleObject>()->SetExtent(DVASPECT_CONTENT, &size), S_OK);
    DVEXTENTINFO info{sizeof info, DVEXTENT_CONTENT, {}};
    SIZEL natural{};
    EXPECT_EQ(view->GetNaturalExtent(DVASPECT_CONTENT, -1, nullptr, nullptr, &info, &natural), S_OK);
    EXPECT_EQ(natural.cx, 19050);
    EXPECT_EQ(natural.cy, 12700);
    info = {sizeof info, DVEXTENT_INTEGRAL, {10000, 9000}};
    EXPECT_EQ(view->GetNaturalExtent(DVASPECT_CONTENT, -1, nullptr, nullptr, &info, &natural), S_OK);
    EXPECT_EQ(natural.cx, 19050) << "never narrower";
    EXPECT_EQ(natural.cy, 9000);
    EXPECT_EQ(view->GetNaturalExtent(DVASPECT_ICON, -1, nullptr, nullptr, &info, &natural), DV_E_DVASPECT);
    EXPECT_EQ(natural.cx, 0);
}

TEST_F(ContainerView, DataIsOfferedInThreeFormats) {
    ComPtr<IEnumFORMATETC> formats;
    ASSERT_EQ(data->EnumFormatEtc(DATADIR_GET, &formats), S_OK);
    std::vector<CLIPFORMAT> offered;
    for (FORMATETC one{}; formats->Next(1, &one, nullptr) == S_OK;) {
        EXPECT_EQ(data->QueryGetData(&one), S_OK) << one.cfFormat;
        STGMEDIUM medium{};
        EXPECT_EQ(data->GetData(&one, &medium), S_OK) << one.cfFormat;
        EXPECT_EQ(medium.tymed, one.tymed);
        ReleaseStgMedium(&medium);
        offered.push_back(one.cfFormat);
    }
    EXPECT_THAT(offered, ElementsAre(CF_ENHMETAFILE, CF_DIB, CF_BITMAP));
    const auto query = [&](FORMATETC asked) { return data->QueryGetData(&asked); };
    EXPECT_EQ(query(format(CF_DIB, TYMED_HGLOBAL | TYMED_ISTREAM)), S_OK);
    EXPECT_EQ(query(format(CF_DIB, TYMED_ISTREAM)), DV_E_TYMED);
    EXPECT_EQ(query(format(CF_BITMAP, TYMED_HGLOBAL)), DV_E_TYMED);
    EXPECT_EQ(query(format(CF_TEXT, TYMED_HGLOBAL)), DV_E_FORMATETC);
    EXPECT_EQ(query({CF_DIB, nullptr, DVASPECT_CONTENT, 3, TYMED_HGLOBAL}), DV_E_LINDEX);
    EXPECT_EQ(query({CF_DIB, nullptr, DVASPECT_ICON, -1, TYMED_HGLOBAL}), DV_E_DVASPECT);
    FORMATETC canonical{};
    FORMATETC dib = format(CF_DIB, TYMED_HGLOBAL);
    EXPECT_EQ(data->GetCanonicalFormatEtc(&dib, &canonical), DATA_S_SAMEFORMATETC);
    EXPECT_EQ(canonical.cfFormat, CF_DIB);
    STGMEDIUM none{};
    EXPECT_EQ(data->SetData(&dib, &none, FALSE), E_NOTIMPL);
}

TEST_F(ContainerView, ADibIsThePicture) {
    const Picture expected = look();
    FORMATETC asked = format(CF_DIB, TYMED_HGLOBAL);
    STGMEDIUM medium{};
    ASSERT_EQ(data->GetData(&asked, &medium), S_OK);
    const auto* header = static_cast<const BITMAPINFOHEADER*>(GlobalLock(medium.hGlobal));
    ASSERT_TRUE(header);
    EXPECT_EQ(header->biSize, sizeof *header);
    EXPECT_EQ(header->biWidth, kPaperWidth);
    EXPECT_EQ(header->biHeight, kPaperHeight);
    EXPECT_EQ(header->biBitCount, 24);
    EXPECT_EQ(header->biCompression, static_cast<DWORD>(BI_RGB));
    constexpr std::size_t kRow = (kPaperWidth * 3 + 3) / 4 * 4;
    const std::size_t needed = sizeof *header + kRow * kPaperHeight;
    EXPECT_GE(GlobalSize(medium.hGlobal), needed);
    const auto* pixels = reinterpret_cast<const unsigned char*>(header + 1);
    Picture picture{kPaperWidth, kPaperHeight, {}};
    for (std::size_t y = kPaperHeight; y-- > 0;)
        for (std::size_t x = 0; x < kPaperWidth; ++x) {
            const unsigned char* at = pixels + y * kRow + x * 3;
            picture.pixels.push_back(RGB(at[2], at[1], at[0]));
        }
    EXPECT_EQ(picture, expected);
    // Memory of the caller is filled only if it is large enough.
    STGMEDIUM own{};
    own.tymed = TYMED_HGLOBAL;
    own.hGlobal = GlobalAlloc(GMEM_MOVEABLE, needed);
    EXPECT_EQ(data->GetDataHere(&asked, &own), S_OK);
    EXPECT_EQ(std::memcmp(GlobalLock(own.hGlobal), header, needed), 0);
    GlobalUnlock(own.hGlobal);
    GlobalFree(own.hGlobal);
    own.hGlobal = GlobalAlloc(GMEM_MOVEABLE, 100);
    EXPECT_EQ(data->GetDataHere(&asked, &own), STG_E_MEDIUMFULL);
    GlobalFree(own.hGlobal);
    FORMATETC bitmap = format(CF_BITMAP, TYMED_GDI);
    own.tymed = TYMED_GDI;
    EXPECT_EQ(data->GetDataHere(&bitmap, &own), DV_E_TYMED);
    GlobalUnlock(medium.hGlobal);
    ReleaseStgMedium(&medium);
}

TEST_F(ContainerView, ABitmapIsThePicture) {
    const Picture expected = look();
    FORMATETC asked = format(CF_BITMAP, TYMED_GDI);
    STGMEDIUM medium{};
    ASSERT_EQ(data->GetData(&asked, &medium), S_OK);
    BITMAP info{};
    EXPECT_NE(GetObjectW(medium.hBitmap, sizeof info, &info), 0);
    EXPECT_EQ(info.bmWidth, kPaperWidth);
    EXPECT_EQ(info.bmHeight, kPaperHeight);
    const GdiPicture paper(kPaperWidth, kPaperHeight, kPaper);
    const HDC memory = CreateCompatibleDC(nullptr);
    const HGDIOBJ before = SelectObject(memory, medium.hBitmap);
    EXPECT_TRUE(BitBlt(paper.dc(), 0, 0, kPaperWidth, kPaperHeight, memory, 0, 0, SRCCOPY));
    SelectObject(memory, before);
    DeleteDC(memory);
    EXPECT_EQ(paper.read(), expected);
    ReleaseStgMedium(&medium);
}

TEST_F(ContainerView, AMetafileHasTheControlsSize) {
    const Picture expected = look();
    FORMATETC asked = format(CF_ENHMETAFILE, TYMED_ENHMF);
    STGMEDIUM medium{};
    ASSERT_EQ(data->GetData(&asked, &medium), S_OK);
    ENHMETAHEADER header{};
    ASSERT_NE(GetEnhMetaFileHeader(medium.hEnhMetaFile, sizeof header, &header), 0U);
    EXPECT_EQ(header.rclFrame.left, 0);
    EXPECT_NEAR(static_cast<double>(header.rclFrame.right), 19050.0, 30.0);
    EXPECT_NEAR(static_cast<double>(header.rclFrame.bottom), 12700.0, 30.0);
    const GdiPicture paper(kPaperWidth, kPaperHeight, kPaper);
    const RECT all{0, 0, kPaperWidth, kPaperHeight};
    EXPECT_TRUE(PlayEnhMetaFile(paper.dc(), medium.hEnhMetaFile, &all));
    const Picture played = paper.read();
    EXPECT_NEAR(played.count(kBox, played.all()), expected.count(kBox, expected.all()), 1500);
    EXPECT_LE(played.count(kPaper, played.all()), 2 * (kPaperWidth + kPaperHeight));
    ReleaseStgMedium(&medium);
}

TEST_F(ContainerView, TheViewSinkIsNotifiedByItsFlags) {
    EXPECT_EQ(view->SetAdvise(DVASPECT_ICON, 0, container.sink.Get()), DV_E_DVASPECT);
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, ADVF_PRIMEFIRST, container.sink.Get()), S_OK);
    EXPECT_THAT(log.take(), ElementsAre("OnViewChange"));
    change();
    change();
    EXPECT_THAT(log.take(), ElementsAre("OnViewChange", "OnViewChange"));
    DWORD aspects = 0;
    DWORD flags = 0;
    ComPtr<IAdviseSink> sink;
    EXPECT_EQ(view->GetAdvise(&aspects, &flags, &sink), S_OK);
    EXPECT_EQ(aspects, static_cast<DWORD>(DVASPECT_CONTENT));
    EXPECT_EQ(flags, static_cast<DWORD>(ADVF_PRIMEFIRST));
    EXPECT_EQ(sink.Get(), container.sink.Get());
    sink.Reset();
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, ADVF_ONLYONCE, container.sink.Get()), S_OK);
    change();
    change();
    EXPECT_THAT(log.take(), ElementsAre("OnViewChange"));
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, ADVF_ONLYONCE | ADVF_PRIMEFIRST, container.sink.Get()), S_OK);
    change();
    EXPECT_THAT(log.take(), ElementsAre("OnViewChange"));
    EXPECT_EQ(view->GetAdvise(nullptr, nullptr, &sink), S_OK);
    EXPECT_FALSE(sink);
    EXPECT_EQ(container.sink->references(), 1U);
}

TEST_F(ContainerView, DataSinksGetTheData) {
    FORMATETC asked = format(CF_DIB, TYMED_HGLOBAL);
    DWORD connection = 0;
    ASSERT_EQ(data->DAdvise(&asked, 0, container.sink.Get(), &connection), S_OK);
    EXPECT_NE(connection, 0U);
    change();
    EXPECT_THAT(log.take(), ElementsAre("OnDataChange"));
    EXPECT_EQ(container.sink->format.cfFormat, CF_DIB);
    EXPECT_EQ(container.sink->medium, static_cast<DWORD>(TYMED_HGLOBAL));
    ComPtr<IEnumSTATDATA> all;
    EXPECT_EQ(data->EnumDAdvise(&all), S_OK);
    EXPECT_TRUE(all);
    all.Reset();
    EXPECT_EQ(data->DUnadvise(connection), S_OK);
    EXPECT_EQ(data->DUnadvise(connection), OLE_E_NOCONNECTION);
    change();
    EXPECT_THAT(log.take(), IsEmpty());
    asked.cfFormat = CF_TEXT;
    EXPECT_EQ(data->DAdvise(&asked, 0, container.sink.Get(), &connection), DV_E_FORMATETC);
    EXPECT_EQ(connection, 0U);
    EXPECT_EQ(container.sink->references(), 1U);
}

TEST_F(ContainerView, DataOnStopIsSentWhenTheControlCloses) {
    FORMATETC asked = format(CF_DIB, TYMED_HGLOBAL);
    DWORD connection = 0;
    ASSERT_EQ(data->DAdvise(&asked, ADVF_DATAONSTOP, container.sink.Get(), &connection), S_OK);
    EXPECT_EQ(container.as<IOleObject>()->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_THAT(log.take(), ElementsAre("OnDataChange"));
    EXPECT_EQ(data->DUnadvise(connection), S_OK);
}

}  // namespace
}  // namespace kv::test
