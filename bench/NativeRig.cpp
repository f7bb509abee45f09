// The display itself on a platform without a screen.
#include <fstream>
#include <string>

#include "bench/Rig.h"
#include "bench/SimpleSlot.h"
#include "control/Bandscope.h"
#include "headless/HeadlessPlatform.h"

namespace kv::bench {

namespace {

class NoEvents final : public control::HostEvents {
    void ChgGridRange() override {}
    void ChgHeight(std::int16_t) override {}
    void ChgFreqRange(double, double) override {}
};

class NoErrors final : public util::ErrorReporter {
    void ErrHand(std::int16_t, std::wstring_view, std::wstring_view, const util::RuntimeError&) noexcept override {
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

class NativeRig final : public Rig {
  public:
    NativeRig() {
        constexpr double kTwips = 15.0;
        scope_.children().picSpectrum.move({0.0, 0.0, kPictureWidth * kTwips, kPictureHeight * kTwips});
    }

    void makeRecords(const ChannelSet& set) override {
        records_.clear();
        records_.reserve(set.channels.size());
        for (std::size_t i = 0; i < set.channels.size(); ++i)
            records_.push_back(makeSimpleSlot(set.channels[i], i + 1));
    }
    void addAll() override {
        for (const channels::FreqSlotRef& record : records_)
            scope_.AddTXChnl(record);
    }
    void addAllByName() override { addAll(); }
    void callEmptyByName() override {}
    void clear() override { scope_.ClearAllChnls(); }

    void showRange(const ChannelSet& set) override {
        scope_.setDisplayMaxPwr(set.top);
        scope_.setDisplayMinPwr(set.floor);
        scope_.setFreqEndBuffer(0.0);
        scope_.DrawByRange(set.lowest, set.highest);
    }
    void drawDisplay() override { scope_.DrawDisplay(); }
    void panTo(double center) override {
        scope_.setDisplayCenterFreq(center);
        scope_.DrawNewCenterFreq();
    }
    void turnGridKnob(bool up) override {
        turndial::tdKnob& knob = scope_.children().tdKnGrid;
        knob.setDVal(knob.dVal() * (up ? 2.0 : 0.5));
        knob.onValueChanged(knob.dVal());
        knob.onTurnEnd();
    }
    void showMouseInfo(bool on) override { scope_.setBMouseInfo(on); }
    void moveMouseTo(double frequency) override { scope_.children().picSpectrum.onMouseMove(0, 0, frequency, 0.0); }
    void showText(const std::wstring&) override {}
    View view() override {
        return {scope_.DisplayMinFreq(), scope_.DisplayMaxFreq(), scope_.DisplayMinPwr(), scope_.DisplayMaxPwr()};
    }

    bool find(const std::wstring& key) override { return static_cast<bool>(scope_.GetChnlByKey(key)); }
    void remove(const std::wstring& key) override { scope_.RemoveChnlByKey(key); }

  private:
    headless::HeadlessPlatform platform_;
    NoEvents events_;
    NoErrors errors_;
    NoFiles files_;
    control::Bandscope scope_{control::Services{platform_, events_, errors_, files_,
                                                [] { return util::Ref<channels::FreqSlotBase>(new SimpleSlot); }}};
    std::vector<channels::FreqSlotRef> records_;
};

}  // namespace

std::unique_ptr<Rig> makeRig() {
    return std::make_unique<NativeRig>();
}

std::size_t privateBytes() {
    std::ifstream status("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    status >> total >> resident;
    return resident * 4096;
}

}  // namespace kv::bench
