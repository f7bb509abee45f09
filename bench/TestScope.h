// The display on a platform without a screen, with a picture of the size that all benchmarks use.
#pragma once

#include <cstdlib>
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

class NoErrors final : public util::ErrorReporter {
  public:
    explicit NoErrors(bool fatal) : isFatal(fatal) {}

  private:
    void ErrHand(std::int16_t, std::wstring_view, std::wstring_view, const util::RuntimeError&) noexcept override {
        if (isFatal)
            std::abort();
    }
    bool isFatal;
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

struct TestScope {
    /// Without `fatalErrors` a reported error is ignored. Otherwise it ends the program.
    explicit TestScope(bool fatalErrors) : errors(fatalErrors) {
        constexpr double kTwips = 15.0;
        scope.children().picSpectrum.move({0.0, 0.0, kPictureWidth * kTwips, kPictureHeight * kTwips});
    }

    headless::HeadlessPlatform platform;
    NoEvents events;
    NoErrors errors;
    NoFiles files;
    control::Bandscope scope{control::Services{platform, events, errors, files,
                                               [] { return util::Ref<channels::FreqSlotBase>(new SimpleSlot); }}};
};

}  // namespace kv::bench
