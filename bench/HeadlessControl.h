// The display on a platform without a screen, with a picture of 1600 by 600 pixels.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "bench/NaivePainter.h"
#include "bench/SimpleSlot.h"
#include "control/Bandscope.h"
#include "headless/HeadlessPlatform.h"

namespace kv::bench {

class NoEvents final : public control::HostEvents {
    void ChgGridRange() override {}
    void ChgHeight(std::int16_t) override {}
    void ChgFreqRange(double, double) override {}
};

/// Ends the program, because a step that fails would be measured as a fast one.
class NoErrors final : public util::ErrorReporter {
  public:
    bool areExpected = false;

  private:
    void ErrHand(std::int16_t, std::wstring_view, std::wstring_view, const util::RuntimeError&) noexcept override {
        if (!areExpected)
            std::abort();
    }
};

class NoFiles final : public formenv::FileServices {
    std::wstring scratchFolder() override { return {}; }
    void writeFile(const std::wstring&, const std::string&) override {}
    void deleteFile(const std::wstring&) noexcept override {}
    void bitmapFileToClipboard(const std::wstring&) override {}
    bool fileExists(const std::wstring&) override { return false; }
    void clearClipboard() override {}
    std::optional<std::wstring> readSetting(const std::wstring&, const std::wstring&, const std::wstring&) override {
        return std::nullopt;
    }
    void writeSetting(const std::wstring&, const std::wstring&, const std::wstring&, const std::wstring&) override {}
    std::wstring printFolder() override { return {}; }
    std::wstring placementFile() override { return {}; }
};

class HeadlessControl {
  public:
    HeadlessControl() {
        constexpr double kTwips = 15.0;
        scope.children().picSpectrum.move({0.0, 0.0, kPictureWidth * kTwips, kPictureHeight * kTwips});
    }
    void showRange(const ChannelSet& set) {
        scope.setDisplayMaxPwr(set.top);
        scope.setDisplayMinPwr(set.floor);
        scope.setFreqEndBuffer(0.0);
        scope.DrawByRange(set.lowest, set.highest);
    }
    void panTo(double center) {
        scope.setDisplayCenterFreq(center);
        scope.DrawNewCenterFreq();
    }
    void moveMouseTo(double frequency) { scope.children().picSpectrum.onMouseMove(0, 0, frequency, 0.0); }
    /// For steps that end with an error on purpose.
    void expectErrors() noexcept { errors_.areExpected = true; }
    void exportPicture() {
        double height = 0.0;
        double width = 0.0;
        std::wstring name = L"picture.bmp";
        scope.DisplayToBMP(height, width, name);
    }

  private:
    headless::HeadlessPlatform platform_;
    NoEvents events_;
    NoErrors errors_;
    NoFiles files_;

  public:
    control::Bandscope scope{control::Services{platform_, events_, errors_, files_,
                                               [] { return util::Ref<channels::FreqSlotBase>(new SimpleSlot); }}};
};

}  // namespace kv::bench
