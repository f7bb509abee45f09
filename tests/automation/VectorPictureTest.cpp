// The picture in vectors: what a metafile records, and how it looks at the resolution of a screen and of a printer.
#include <cmath>
#include <map>

#include "tests/automation/Colors.h"
#include "tests/automation/Container.h"
#include "tests/automation/GdiOracle.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr OLE_COLOR kSolidColor = RGB(200, 30, 40);
constexpr OLE_COLOR kFrame = RGB(20, 40, 220);
constexpr OLE_COLOR kHatch = RGB(10, 140, 120);
constexpr OLE_COLOR kLine = RGB(240, 0, 240);

int CALLBACK count(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM counts) {
    ++(*reinterpret_cast<std::map<DWORD, int>*>(counts))[record->iType];
    return 1;
}

/// A metafile in memory.
class Metafile {
  public:
    explicit Metafile(HENHMETAFILE file) : file_(file) { EXPECT_TRUE(file); }
    ~Metafile() { DeleteEnhMetaFile(file_); }
    Metafile(const Metafile&) = delete;
    Metafile& operator=(const Metafile&) = delete;

    [[nodiscard]] ENHMETAHEADER header() const {
        ENHMETAHEADER header{};
        EXPECT_NE(GetEnhMetaFileHeader(file_, sizeof header, &header), 0U);
        return header;
    }
    /// By kind.
    [[nodiscard]] std::map<DWORD, int> records() const {
        std::map<DWORD, int> counts;
        EnumEnhMetaFile(nullptr, file_, &count, &counts, nullptr);
        return counts;
    }
    [[nodiscard]] Picture played(int width, int height) const {
        const GdiPicture paper(width, height, kPaper);
        const RECT all{0, 0, width, height};
        EXPECT_TRUE(PlayEnhMetaFile(paper.dc(), file_, &all));
        return paper.read();
    }

  private:
    HENHMETAFILE file_;
};

/// The columns or rows of a color along a line of pixels, from the first to the last.
struct Extent {
    int first = -1;
    int last = -1;
    [[nodiscard]] double middle() const { return (first + last) / 2.0; }
    [[nodiscard]] int length() const { return last - first + 1; }
};

class VectorPicture : public testing::Test {
  protected:
    Plot plot;
    ComPtr<_BandscopeView> view;
    TempFile emf{L"kv vector.emf"};

    void SetUp() override {
        ASSERT_EQ(plot.scope.get()->QueryInterface(IID_PPV_ARGS(view.GetAddressOf())), S_OK);
        EXPECT_EQ(plot.scope->put_DisplayMinPwr(0.0), S_OK);
        EXPECT_EQ(plot.scope->put_DisplayMaxPwr(100.0), S_OK);
        EXPECT_EQ(plot.scope->put_GridColor(Plot::kGrid), S_OK);
    }
    void add(const ChannelSpec& spec, short style) {
        const ComPtr<_FreqSlot> slot = channel(spec);
        plot.scope.AddTXChnl(slot);
        // Adding a channel sets its style.
        EXPECT_EQ(slot->put_iFillStyle(style), S_OK);
    }
    void draw() {
        plot.scope.DrawByRange(430.0, 470.0);
        EXPECT_EQ(view->ShowRange(430.0, 470.0), S_OK);
    }
    void addThree() {
        add({.freq = 436.0, .lo = 434.0, .hi = 439.0, .power = 60.0, .color = kSolidColor, .line = kLine}, 0);
        add({.freq = 450.0, .lo = 446.97, .hi = 453.03, .power = 81.7, .color = kFrame, .line = kLine}, 1);
        add({.freq = 461.0, .lo = 457.0, .hi = 467.0, .power = 40.0, .color = kHatch, .line = kLine}, 4);
        draw();
    }
    [[nodiscard]] std::unique_ptr<Metafile> saved(long width = 0, long height = 0, long dpi = 0) {
        EXPECT_EQ(view->SavePicture(Text(emf.path()).get(), width, height, dpi), S_OK);
        return std::make_unique<Metafile>(GetEnhMetaFileW(emf.path().c_str()));
    }
    [[nodiscard]] static Extent across(const Picture& picture, int y, std::uint32_t color, int from, int to) {
        Extent extent;
        for (int x = from; x < to; ++x) {
            if (picture.at(x, y) != color)
                continue;
            extent.first = extent.first < 0 ? x : extent.first;
            extent.last = x;
        }
        return extent;
    }
    [[nodiscard]] static Extent down(const Picture& picture, int x, std::uint32_t color, int from, int to) {
        Extent extent;
        for (int y = from; y < to; ++y) {
            if (picture.at(x, y) != color)
                continue;
            extent.first = extent.first < 0 ? y : extent.first;
            extent.last = y;
        }
        return extent;
    }
    /// Where the mapping of the display puts a frequency in a picture of `scale` times the pixels.
    [[nodiscard]] double column(double frequency, double scale) const {
        return (plot.spectrum.left + (frequency - 430.0) / 40.0 * plot.spectrum.width()) * scale;
    }
    [[nodiscard]] double row(double power, double scale) const {
        return (plot.spectrum.top + (100.0 - power) / 100.0 * plot.spectrum.height()) * scale;
    }
};

TEST_F(VectorPicture, AMetafileRecordsBoxesHatchesLinesAndTexts) {
    addThree();
    const std::map<DWORD, int> records = saved()->records();
    const auto count = [&](DWORD kind) { return records.contains(kind) ? records.at(kind) : 0; };
    EXPECT_EQ(count(EMR_POLYGON16), 3) << "boxes";
    EXPECT_EQ(count(EMR_POLYPOLYLINE16), 1) << "hatches";
    // Three channels, 21 grid lines, 11 ticks and the cursor.
    EXPECT_EQ(count(EMR_LINETO), 3 + 21 + 11 + 1);
    EXPECT_GE(count(EMR_EXTTEXTOUTW), 9) << "labels";
    EXPECT_LE(count(EMR_EXTTEXTOUTW), 11) << "labels";
    EXPECT_EQ(count(EMR_STRETCHDIBITS) + count(EMR_STRETCHBLT) + count(EMR_SETDIBITSTODEVICE), 0) << "pixels";
}

TEST_F(VectorPicture, AtTheResolutionOfTheScreenItLooksAsOnTheScreen) {
    addThree();
    const Picture screen = plot.picture();
    const Picture played = saved()->played(screen.width, screen.height);
    int inSpectrum = 0;
    int inStrip = 0;
    for (int y = 0; y < screen.height; ++y) {
        for (int x = 0; x < screen.width; ++x) {
            if (played.at(x, y) == screen.at(x, y))
                continue;
            const Area& area = plot.spectrum;
            const bool inside = x >= area.left && x <= area.right && y >= area.top && y <= area.bottom;
            ++(inside ? inSpectrum : inStrip);
        }
    }
    RecordProperty("differentInSpectrum", inSpectrum);
    RecordProperty("differentInStrip", inStrip);
    // Diagonals and the ends of wide lines may be off by a pixel.
    EXPECT_LE(inSpectrum, plot.spectrum.width() * plot.spectrum.height() / 200);
    // Letters have other shapes.
    EXPECT_LE(inStrip, screen.width * screen.height / 50);
    // In front of the background, letters of another smoothness have up to twice as many pixels.
    const auto ink = [&](const Picture& picture) {
        const Area labels{0, plot.spectrum.bottom + 2, picture.width - 1, picture.height - 1};
        return labels.width() * labels.height() - picture.count(picture.at(0, picture.height - 1), labels);
    };
    EXPECT_GT(ink(screen), 500);
    EXPECT_GT(ink(played), ink(screen) * 3 / 4);
    EXPECT_LT(ink(played), ink(screen) * 2);
    EXPECT_EQ(played.find(kSolidColor, played.all()), screen.find(kSolidColor, screen.all()));
    EXPECT_EQ(played.find(kFrame, played.all()), screen.find(kFrame, screen.all()));
}

TEST_F(VectorPicture, OnAPrinterEdgesAreWhereTheMappingSays) {
    addThree();
    constexpr double kScale = 600.0 / 96.0;
    const Picture screen = plot.picture();
    const Picture played = saved()->played(static_cast<int>(std::lround(screen.width * kScale)),
                                           static_cast<int>(std::lround(screen.height * kScale)));
    const int middle = static_cast<int>(row(40.0, kScale));
    const int center = static_cast<int>(column(449.0, kScale));
    const Extent left = across(played, middle, kFrame, 0, static_cast<int>(column(447.5, kScale)));
    const Extent right = across(played, middle, kFrame, center, played.width);
    const Extent top = down(played, center, kFrame, 0, middle);
    EXPECT_NEAR(left.middle(), column(446.97, kScale), 1.0);
    EXPECT_NEAR(right.middle(), column(453.03, kScale), 1.0);
    EXPECT_NEAR(top.middle(), row(81.7, kScale), 1.0);
    for (const Extent& edge : {left, right, top})
        EXPECT_NEAR(edge.length(), 6, 1) << "as wide as a pixel of the screen";
}

TEST_F(VectorPicture, HatchesAreAsFarApartOnAPrinterAsOnTheScreen) {
    addThree();
    constexpr double kScale = 600.0 / 96.0;
    const Picture screen = plot.picture();
    const Picture played = saved()->played(static_cast<int>(std::lround(screen.width * kScale)),
                                           static_cast<int>(std::lround(screen.height * kScale)));
    // Along a row, a line in 8 pixels of the screen.
    const int y = static_cast<int>(row(17.0, kScale));
    const int first = static_cast<int>(column(457.5, kScale));
    const int last = static_cast<int>(column(460.0, kScale));
    int lines = 0;
    for (int x = first + 1; x < last; ++x)
        lines += played.at(x, y) == kHatch && played.at(x - 1, y) != kHatch ? 1 : 0;
    EXPECT_NEAR(lines, (last - first) / kScale / 8.0, 1.0);
    EXPECT_GT(lines, 4);
}

TEST_F(VectorPicture, AMetafileHasTheSizeAndResolutionThatItIsGiven) {
    addThree();
    const auto frame = [&](long width, long height, long dpi) {
        const RECTL is = saved(width, height, dpi)->header().rclFrame;
        return std::pair{is.right - is.left, is.bottom - is.top};
    };
    EXPECT_EQ(frame(1200, 600, 300), (std::pair{10160L, 5080L}));
    EXPECT_EQ(frame(1200, 600, 96), (std::pair{31750L, 15875L}));
    const Picture screen = plot.picture();
    EXPECT_NEAR(frame(0, 0, 0).first, frame(0, 0, 600).first, 5) << "the same size on paper";
    EXPECT_NEAR(frame(0, 0, 0).second, frame(0, 0, 600).second, 5) << "the same size on paper";
    EXPECT_NEAR(static_cast<double>(frame(0, 0, 0).first), screen.width * 2540.0 / 96.0, 1.0);
}

TEST_F(VectorPicture, AClearedDisplayIsEmptyInTheMetafile) {
    addThree();
    EXPECT_EQ(plot.scope->ClearDisplay(), S_OK);
    EXPECT_EQ(plot.scope->ClearDisplayLabels(), S_OK);
    const std::map<DWORD, int> records = saved()->records();
    EXPECT_FALSE(records.contains(EMR_POLYGON16));
    EXPECT_FALSE(records.contains(EMR_LINETO));
    EXPECT_FALSE(records.contains(EMR_EXTTEXTOUTW));
}

TEST_F(VectorPicture, HalfAMillionProductsMakeASmallFileQuickly) {
    constexpr int kCount = 495000;
    const ComPtr<_kvBandscope> scope(plot.scope.get());
    for (int i = 0; i < kCount; ++i) {
        // Scattered like products, without the regularity of a counter.
        const double at = std::fmod(i * 0.6180339887498949, 1.0);
        const double height = std::fmod(i * 0.7548776662466927, 1.0);
        const ComPtr<_FreqSlot> slot = createInstance<_FreqSlot>(CLSID_FreqSlot);
        slot->put_dFreq(420.0 + 60.0 * at);
        slot->put_dBW(12.5);
        slot->put_dFreqLo(420.0 + 60.0 * at - 0.00625);
        slot->put_dFreqHi(420.0 + 60.0 * at + 0.00625);
        slot->put_dPwrDBM(5.0 + 90.0 * height * height);
        slot->put_lColor(RGB(40 * (i % 5), 90, 200));
        slot->put_lColorLine(RGB(40 * (i % 5), 30, 100));
        slot->put_iFillStyle(0);
        slot->put_sKey(Text(std::to_wstring(i)).get());
        long index = 0;
        ASSERT_EQ(scope->AddTXChnl(slot.Get(), &index), S_OK);
    }
    draw();
    const ULONGLONG start = GetTickCount64();
    const std::unique_ptr<Metafile> file = saved();
    const ULONGLONG time = GetTickCount64() - start;
    RecordProperty("milliseconds", static_cast<int>(time));
    RecordProperty("bytes", static_cast<int>(file->header().nBytes));
    EXPECT_LT(file->header().nBytes, 2000000U);
    EXPECT_GT(file->records().at(EMR_LINETO), 500);
    EXPECT_LT(time, 3000U);
    const Picture screen = plot.picture();
    const Picture played = file->played(screen.width, screen.height);
    int different = 0;
    for (int y = plot.spectrum.top; y <= plot.spectrum.bottom; ++y)
        for (int x = plot.spectrum.left; x <= plot.spectrum.right; ++x)
            different += played.at(x, y) != screen.at(x, y) ? 1 : 0;
    RecordProperty("different", different);
    EXPECT_LE(different, plot.spectrum.width() * plot.spectrum.height() / 50);
}

}  // namespace
}  // namespace kv::test
