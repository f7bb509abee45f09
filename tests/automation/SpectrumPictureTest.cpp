// Every pixel of the control's picture, against a picture that the test draws with GDI.
#include <gmock/gmock.h>
#include <oleidl.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "tests/automation/GdiOracle.h"

namespace kv::test {
namespace {

enum class SceneDrawing { display, justDrawIt, refresh };

class SceneDice {
  public:
    explicit SceneDice(unsigned seed) : engine_(seed) {}
    double real(double low, double high) { return std::uniform_real_distribution<double>(low, high)(engine_); }
    int whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }
    bool oneIn(int n) { return whole(1, n) == 1; }
    OLE_COLOR rgb() { return static_cast<OLE_COLOR>(whole(0, 0xFFFFFF)); }
    /// Sometimes a system color.
    OLE_COLOR color() { return oneIn(4) ? 0x80000000U + static_cast<OLE_COLOR>(whole(0, 30)) : rgb(); }

  private:
    std::mt19937 engine_;
};

OracleChannel oracleChannel(_FreqSlot* slot) {
    OracleChannel c;
    short fill = 0;
    VARIANT_BOOL visible = VARIANT_FALSE;
    VARIANT_BOOL drawn = VARIANT_FALSE;
    slot->get_dFreqLo(&c.lo);
    slot->get_dFreqHi(&c.hi);
    slot->get_dFreq(&c.freq);
    slot->get_dPwrDBM(&c.power);
    slot->get_iFillStyle(&fill);
    slot->get_lColor(&c.color);
    slot->get_lColorLine(&c.line);
    slot->get_bVisible(&visible);
    slot->get_bDrawn(&drawn);
    c.fill = fill;
    c.visible = visible != VARIANT_FALSE;
    c.drawn = drawn != VARIANT_FALSE;
    return c;
}

using Slots = std::vector<ComPtr<_FreqSlot>>;

std::vector<OracleChannel> statesOf(const Slots& slots) {
    std::vector<OracleChannel> states;
    for (const ComPtr<_FreqSlot>& slot : slots)
        states.push_back(oracleChannel(slot.Get()));
    return states;
}

/// A text with the first pixel that differs; empty if the pictures are equal.
std::string differenceOf(const Picture& expected, const Picture& actual) {
    char text[160];
    if (expected.width != actual.width || expected.height != actual.height) {
        std::snprintf(text, sizeof text, "size %d x %d instead of %d x %d", actual.width, actual.height, expected.width,
                      expected.height);
        return text;
    }
    if (expected == actual)
        return {};
    int wrong = 0;
    std::size_t first = 0;
    for (std::size_t i = 0; i < expected.pixels.size(); ++i) {
        if (expected.pixels[i] != actual.pixels[i] && wrong++ == 0)
            first = i;
    }
    const auto width = static_cast<std::size_t>(expected.width);
    std::snprintf(text, sizeof text, "%d pixels differ, the first at x %u, y %u: &H%06X instead of &H%06X", wrong,
                  static_cast<unsigned>(first % width), static_cast<unsigned>(first / width),
                  static_cast<unsigned>(actual.pixels[first]), static_cast<unsigned>(expected.pixels[first]));
    return text;
}

/// An unsited control with random channels, display and look.
class Scene {
  public:
    /// With `many` channels the control has painted them before, and holds copies of them when the host changes them.
    Scene(unsigned seed, SceneDrawing drawing, bool many) : seed_(seed), drawing_(drawing), many_(many), dice_(seed) {}

    void run() {
        resize();
        look();
        fill();
        range();
        if (many_)
            draw();
        mutate();
        scope_.get()->put_nGridX(static_cast<short>(dice_.whole(-1, 25)));
        const std::vector<OracleChannel> tx = statesOf(tx_);
        const std::vector<OracleChannel> rx = statesOf(rx_);
        draw();
        compare(tx, rx);
    }

  private:
    void resize() {
        ComPtr<IOleObject> object;
        ASSERT_EQ(scope_.get()->QueryInterface(IID_PPV_ARGS(object.GetAddressOf())), S_OK);
        display_.panelHeight = panelHeight();
        SIZEL size{dice_.whole(19051, 22000), dice_.whole(8400, 14000)};
        if (dice_.oneIn(8))
            size.cx = 5000;
        ASSERT_EQ(object->SetExtent(DVASPECT_CONTENT, &size), S_OK);
        display_.width = std::max<double>(size.cx * 1440.0 / 2540.0, scope_.MinWid());
        display_.height = size.cy * 1440.0 / 2540.0;
    }
    /// The height of the panel follows from the height that it leaves to the label strip.
    double panelHeight() {
        const TempFile file(L"panel.bmp");
        double height = 0.0;
        double width = 0.0;
        BSTR name = SysAllocString(file.path().c_str());
        Text written;
        EXPECT_EQ(scope_->DisplayToBMP(&height, &width, &name, written.put()), S_OK);
        SysFreeString(name);
        return scope_.MinHgt() - 60.0 - 60.0 - 165.0 - 165.0 - height;
    }
    void look() {
        display_.spectrumBack = dice_.color();
        display_.stripBack = dice_.color();
        display_.stripFore = dice_.color();
        scope_.setLColorSpecBack(display_.spectrumBack);
        scope_.setLColorLblBack(display_.stripBack);
        scope_.setLColorLblFore(display_.stripFore);
        if (!dice_.oneIn(4))
            scope_.setGridColor(dice_.color());
        if (dice_.oneIn(2))
            scope_.setLCursorColor(dice_.color());
    }
    void fill() {
        base_ = dice_.oneIn(3) ? dice_.real(1.0, 60.0) : dice_.real(100.0, 900.0);
        spread_ = dice_.oneIn(3) ? dice_.real(0.001, 0.5) : dice_.real(1.0, 60.0);
        const int transmitters = many_ ? dice_.whole(380, 600) : dice_.oneIn(20) ? 0 : dice_.whole(1, 12);
        const int receivers = dice_.whole(0, 6);
        for (int i = 0; i < transmitters + receivers; ++i) {
            const bool isTx = i < transmitters;
            ComPtr<_FreqSlot> slot = channel(spec(i));
            isTx ? scope_.AddTXChnl(slot) : scope_.AddRXChnl(slot);
            (isTx ? tx_ : rx_).push_back(std::move(slot));
        }
    }
    ChannelSpec spec(int number) {
        ChannelSpec s;
        s.freq = dice_.oneIn(12) ? 0.0 : base_ + dice_.real(0.0, spread_);
        if (dice_.oneIn(2))
            s.bw = dice_.real(0.1, 1000.0) * spread_;
        else if (dice_.oneIn(2))
            s.lo = std::max(1e-6, base_ - dice_.real(0.0, spread_));
        s.power = dice_.real(-130.0, 60.0);
        s.key = std::to_wstring(number);
        s.color = dice_.color();
        s.line = dice_.color();
        return s;
    }
    void range() {
        scope_.setFreqEndBuffer(dice_.oneIn(3) ? dice_.real(0.0, 100.0) : dice_.real(0.0, spread_));
        if (dice_.oneIn(3))
            scope_.DrawByRange(base_ + spread_ * dice_.real(0.0, 0.4), base_ + spread_ * dice_.real(0.5, 1.0));
        if (dice_.oneIn(4))
            scope_.setDisplayCenterFreq(base_ + dice_.real(-1.0, 1.0) * spread_);
        if (dice_.oneIn(2)) {
            scope_.setDisplayMaxPwr(dice_.real(-20.0, 70.0));
            scope_.setDisplayMinPwr(dice_.oneIn(8) ? dice_.real(71.0, 90.0) : dice_.real(-140.0, -21.0));
        }
        if (drawing_ != SceneDrawing::display) {
            EXPECT_TRUE(scope_.DrawDisplay());
        }
        if (dice_.oneIn(2))
            scope_.setCursorVal(base_ + dice_.real(0.0, spread_));
    }
    /// A host can change its records at any time.
    void mutate() {
        for (const Slots* slots : {&tx_, &rx_})
            for (const ComPtr<_FreqSlot>& slot : *slots)
                mutate(slot.Get());
    }
    void mutate(_FreqSlot* slot) {
        if (many_ && dice_.oneIn(2))
            return;
        if (dice_.oneIn(2))
            slot->put_iFillStyle(static_cast<short>(dice_.whole(0, 7)));
        if (dice_.oneIn(5))
            slot->put_bVisible(VARIANT_FALSE);
        if (dice_.oneIn(4))
            slot->put_bDrawn(dice_.oneIn(2) ? VARIANT_TRUE : VARIANT_FALSE);
        if (dice_.oneIn(6))
            slot->put_dFreqLo(base_ + dice_.real(-300.0, 1.0));
        if (dice_.oneIn(6))
            slot->put_dFreqHi(base_ + dice_.real(-1.0, 300.0));
        if (dice_.oneIn(6))
            slot->put_dFreq(base_ + dice_.real(-2.0, 2.0) * spread_);
        if (dice_.oneIn(6))
            slot->put_dPwrDBM(scope_.DisplayMinPwr());
        if (dice_.oneIn(8))
            slot->put_dPwrDBM(scope_.DisplayMaxPwr() + dice_.real(0.0, 200.0));
    }
    void draw() {
        switch (drawing_) {
            case SceneDrawing::display:
                EXPECT_TRUE(scope_.DrawDisplay());
                break;
            case SceneDrawing::justDrawIt:
                scope_.JustDrawIt();
                break;
            case SceneDrawing::refresh:
                scope_.Refresh();
                break;
        }
    }
    void compare(const std::vector<OracleChannel>& tx, const std::vector<OracleChannel>& rx) {
        display_.minFreq = scope_.DisplayMinFreq();
        display_.maxFreq = scope_.DisplayMaxFreq();
        display_.minPwr = scope_.DisplayMinPwr();
        display_.maxPwr = scope_.DisplayMaxPwr();
        display_.nGridX = scope_.nGridX();
        display_.gridColor = scope_.GridColor();
        display_.cursor = scope_.CursorVal();
        display_.cursorColor = scope_.lCursorColor();
        GdiOracle oracle(display_);
        if (drawing_ == SceneDrawing::refresh)
            oracle.refresh(tx, rx);
        else
            oracle.drawDisplay(tx, rx, drawing_ == SceneDrawing::justDrawIt);
        const Picture expected = oracle.picture();
        const Picture actual = capture(scope_);
        const std::string difference = differenceOf(expected, actual);
        const std::string kept = keep(expected, actual, difference);
        EXPECT_EQ(difference, "") << "seed " << seed_ << kept;
        expectDrawnFlags(oracle, tx, tx_);
        expectDrawnFlags(oracle, rx, rx_);
    }
    void expectDrawnFlags(const GdiOracle& oracle, const std::vector<OracleChannel>& before, const Slots& slots) const {
        for (std::size_t i = 0; i < slots.size(); ++i) {
            const OracleChannel& channel = before[i];
            const bool passedOn = drawing_ == SceneDrawing::refresh || (channel.visible && channel.freq > 0.0);
            EXPECT_EQ(isDrawn(slots[i].Get()), passedOn && oracle.reaches(channel) ? channel.visible : channel.drawn)
                << "seed " << seed_ << " channel " << i;
        }
    }
    /// Writes both pictures beside the test program if they differ, or if KV_KEEP_PICTURES is set.
    std::string keep(const Picture& expected, const Picture& actual, const std::string& difference) const {
        const bool wanted = GetEnvironmentVariableW(L"KV_KEEP_PICTURES", nullptr, 0) != 0;
        if (difference.empty() && !wanted)
            return {};
        const std::wstring folder = modulePath().substr(0, modulePath().find_last_of(L'\\') + 1);
        const std::wstring stem =
            folder + L"spectrum-" + std::to_wstring(static_cast<int>(drawing_)) + L"-" + std::to_wstring(seed_);
        writeBmp(expected, stem + L"-expected.bmp");
        writeBmp(actual, stem + L"-actual.bmp");
        return "; both pictures stand beside the test program";
    }

    unsigned seed_;
    SceneDrawing drawing_;
    bool many_;
    SceneDice dice_;
    Scope scope_;
    OracleDisplay display_;
    Slots tx_;
    Slots rx_;
    double base_ = 0.0;
    double spread_ = 1.0;
};

void runSeeds(SceneDrawing drawing, unsigned first, unsigned count, bool many = false) {
    for (unsigned seed = first; seed < first + count && !testing::Test::HasFailure(); ++seed)
        Scene(seed, drawing, many).run();
}

constexpr unsigned kSets = 150;
constexpr unsigned kLargeSets = 40;

TEST(SpectrumPicture, DrawDisplayIsWhatGdiDraws) {
    runSeeds(SceneDrawing::display, 1000, kSets);
}

TEST(SpectrumPicture, JustDrawItIsWhatGdiDraws) {
    runSeeds(SceneDrawing::justDrawIt, 2000, kSets);
}

TEST(SpectrumPicture, RefreshIsWhatGdiDraws) {
    runSeeds(SceneDrawing::refresh, 3000, kSets);
}

TEST(SpectrumPicture, DrawDisplayOfManyChannelsIsWhatGdiDraws) {
    runSeeds(SceneDrawing::display, 4000, kLargeSets, true);
}

TEST(SpectrumPicture, JustDrawItOfManyChannelsIsWhatGdiDraws) {
    runSeeds(SceneDrawing::justDrawIt, 5000, kLargeSets, true);
}

TEST(SpectrumPicture, RefreshOfManyChannelsIsWhatGdiDraws) {
    runSeeds(SceneDrawing::refresh, 6000, kLargeSets, true);
}

}  // namespace
}  // namespace kv::test
