// The looks of the knobs, compared with a sheet of approved pictures: tests/unit/looks. After an intended change of the
// looks, review the sheet that the failed test has written, then replace the old one by it.
#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>

#include "KnobFixture.h"

namespace {

using namespace kv::turndial;

// One and a half times the usual resolution, so that sizes that do not follow the resolution are noticed.
constexpr int kDpi = 144;
constexpr int kWidth = 171;
constexpr int kHeight = 183;
constexpr int kColumns = 4;
constexpr int kRows = 4;
/// The sheet keeps the mean of so many pixels each way, in which differences between two systems' sines disappear.
constexpr int kCell = 3;
constexpr double kTolerance = 1.5;  // of 255

/// A picture as red, green and blue bytes.
struct Sheet {
    int width = kColumns * kWidth / kCell;
    int height = kRows * kHeight / kCell;
    std::vector<unsigned char> bytes;
};

std::unique_ptr<tdKnob> dial(double value) {
    auto knob = std::make_unique<tdKnob>(nullptr, L"");
    knob->dMinVal = 430.0;
    knob->dMaxVal = 450.0;
    knob->dStep = 2.0;
    knob->bOption1 = true;
    knob->bShowValue = true;
    knob->sFormat = L"0.00000";
    knob->setSCaption(L"Center Freq");
    knob->setDVal(value);
    return knob;
}

std::unique_ptr<tdKnob> selector(double value) {
    auto knob = std::make_unique<tdKnob>(nullptr, L"");
    addDecades(*knob);
    knob->bShowValue = true;
    knob->setSCaption(L"Grid (Hz)");
    knob->setDVal(value);
    return knob;
}

std::unique_ptr<tdKnob> crowdedSelector() {
    auto knob = std::make_unique<tdKnob>(nullptr, L"");
    knob->bOption2 = true;
    for (int stop = 0; stop <= 28; ++stop)
        knob->AddStop(stop == 0, std::to_wstring(stop) + L"00K", stop);
    knob->setDVal(14.0);
    return knob;
}

std::unique_ptr<tdKnMover> wheelKnob() {
    auto knob = std::make_unique<tdKnMover>(nullptr, L"");
    knob->bShowValue = true;
    knob->setSCaption(L"Center Freq (MHz) of the display");
    knob->sFormat = L"##0.00000";
    knob->setDVal(450.0);
    knob->wheel(120, kPlain);
    return knob;
}

KnobPalette darkPalette() {
    KnobPalette palette;
    palette.face = 0x302828;
    palette.text = 0xE8E8E8;
    palette.shadow = 0x101010;
    palette.highlight = 0x505050;
    palette.accent = 0xFFB060;
    palette.grayText = 0x808080;
    return palette;
}

class KnobLooks : public testing::Test {
  protected:
    /// Paints a knob into the next field of the sheet; a smaller one at its upper left corner.
    void show(KnobBase& knob, const KnobPalette& palette = {}, int width = kWidth, int height = kHeight) {
        const int field = shown_++;
        ASSERT_LT(field, kColumns * kRows);
        const int stride = kColumns * kWidth;
        const auto offset = static_cast<std::size_t>(field / kColumns * kHeight * stride + field % kColumns * kWidth);
        kv::headless::BlockTextPainter letters;
        knob.paint({pixels_.data() + offset, width, height, stride}, letters, kDpi, palette);
    }

    /// Paints a knob once more where the last one is.
    void again(KnobBase& knob, int width, int height) {
        --shown_;
        show(knob, {}, width, height);
    }

    /// Compares what was shown with the approved sheet; a difference leaves the new sheet in a file.
    void expectApproved() const;
    [[nodiscard]] Sheet painted() const {
        Sheet sheet;
        for (int y = 0; y < sheet.height; ++y) {
            for (int x = 0; x < sheet.width; ++x) {
                for (const int shift : {16, 8, 0})
                    sheet.bytes.push_back(static_cast<unsigned char>(std::lround(mean(x, y, shift))));
            }
        }
        return sheet;
    }

    /// Of one color over a cell.
    [[nodiscard]] double mean(int x, int y, int shift) const {
        unsigned sum = 0;
        for (int row = y * kCell; row < (y + 1) * kCell; ++row) {
            for (int column = x * kCell; column < (x + 1) * kCell; ++column)
                sum += pixels_[static_cast<std::size_t>(row * kColumns * kWidth + column)] >> shift & 0xFFU;
        }
        return sum / static_cast<double>(kCell * kCell);
    }

  private:
    std::vector<std::uint32_t> pixels_ =
        std::vector<std::uint32_t>(static_cast<std::size_t>(kColumns * kWidth * kRows * kHeight), 0xFFFFFF);
    int shown_ = 0;
};

void write(const Sheet& sheet, const std::filesystem::path& path) {
    std::ofstream file(path, std::ios::binary);
    file << "P6\n" << sheet.width << ' ' << sheet.height << "\n255\n";
    file.write(reinterpret_cast<const char*>(sheet.bytes.data()), static_cast<std::streamsize>(sheet.bytes.size()));
}

Sheet read(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    Sheet sheet;
    std::string kind;
    int most = 0;
    file >> kind >> sheet.width >> sheet.height >> most;
    file.get();
    sheet.bytes.assign(std::istreambuf_iterator<char>(file), {});
    return sheet;
}

void KnobLooks::expectApproved() const {
    const Sheet now = painted();
    const Sheet good = read(std::filesystem::path(KV_SOURCE_DIR) / "tests" / "unit" / "looks" / "knobs.ppm");
    std::size_t different = good.bytes.size() == now.bytes.size() ? 0 : now.bytes.size();
    for (std::size_t i = 0; different == 0 && i < now.bytes.size(); ++i) {
        const auto cell = static_cast<int>(i / 3);
        const double is = mean(cell % now.width, cell / now.width, 16 - 8 * static_cast<int>(i % 3));
        if (std::abs(is - good.bytes[i]) > kTolerance)
            different = i + 1;
    }
    if (different != 0) {
        const std::filesystem::path path = std::filesystem::path(testing::TempDir()) / "knobs.ppm";
        write(now, path);
        FAIL() << "the picture differs in cell " << (different - 1) / 3 % static_cast<std::size_t>(now.width) << ", "
               << (different - 1) / 3 / static_cast<std::size_t>(now.width) << "; it is in " << path.string();
    }
}

TEST_F(KnobLooks, AreThoseOfTheApprovedSheet) {
    const auto plain = dial(437.5);
    show(*plain);
    const auto pointedAt = dial(446.0);
    pointedAt->iKnobStyle = 1;
    pointedAt->hover(true);
    pointedAt->focus(true);
    show(*pointedAt);
    const auto disabled = dial(434.0);
    disabled->iKnobStyle = 1;
    disabled->setEnabled(false);
    show(*disabled);
    const auto choice = selector(5.0);
    show(*choice);

    const auto dark = dial(437.5);
    dark->mouseDown(1, 1, kPlain);
    show(*dark, darkPalette());
    const auto darkChoice = selector(1000.0);
    darkChoice->setEnabled(false);
    show(*darkChoice, darkPalette());
    const auto contrast = dial(449.0);
    contrast->hover(true);
    show(*contrast, contrastPalette());
    const auto contrastOff = selector(0.5);
    contrastOff->setEnabled(false);
    contrastOff->focus(true);
    show(*contrastOff, contrastPalette());

    const auto wheel = wheelKnob();
    show(*wheel);
    // On its right arrow.
    wheel->hover(true);
    wheel->mouseMove(150, 92, kPlain);
    wheel->wheel(120, kPlain);
    show(*wheel);
    const auto darkWheel = wheelKnob();
    darkWheel->setEnabled(false);
    show(*darkWheel, darkPalette());
    const auto narrow = wheelKnob();
    show(*narrow, {}, 75, 120);

    // Small, of many detents with its value off the scale, flat with the pointer on its left arrow, of many stops.
    const auto small = dial(449.0);
    small->hover(true);
    show(*small, {}, 84, 132);
    const auto fine = dial(470.0);
    fine->dStep = 0.5;
    fine->bShowValue = false;
    show(*fine);
    const auto flat = wheelKnob();
    flat->setSCaption(L"");
    flat->sFormat = L"0";
    flat->setDVal(1.0);
    flat->hover(true);
    show(*flat, {}, kWidth, 84);
    flat->mouseMove(20, 28, kPlain);
    flat->wheel(-120, kPlain);
    again(*flat, kWidth, 84);
    const auto crowded = crowdedSelector();
    show(*crowded);

    expectApproved();
}

/// The share of a picture's pixels that another one has at the same position.
double alike(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b) {
    std::size_t same = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        same += a[i] == b[i] ? 1 : 0;
    return static_cast<double>(same) / static_cast<double>(a.size());
}

TEST(KnobReadOut, OfATextThatIsNotTheKnobsValueLooksDifferent) {
    const auto painted = [](bool borrowed) {
        const auto knob = wheelKnob();
        if (borrowed)
            knob->setSValText(L"450.00000");
        std::vector<std::uint32_t> pixels(static_cast<std::size_t>(kWidth * kHeight));
        kv::headless::BlockTextPainter letters;
        knob->paint({pixels.data(), kWidth, kHeight, kWidth}, letters, kDpi, {});
        return pixels;
    };
    const double same = alike(painted(false), painted(true));
    EXPECT_LT(same, 1.0);
    EXPECT_GT(same, 0.8) << "only the read-out";
}

}  // namespace
