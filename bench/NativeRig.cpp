// The display itself on a platform without a screen.
#include <malloc.h>

#include <string>
#include <vector>

#include "bench/HeadlessControl.h"
#include "bench/Rig.h"

namespace kv::bench {

namespace {

class NativeRig final : public Rig {
  public:
    void makeRecords(const ChannelSet& set) override {
        records_.clear();
        records_.reserve(set.channels.size());
        for (std::size_t i = 0; i < set.channels.size(); ++i)
            records_.push_back(makeSimpleSlot(set.channels[i], i + 1));
    }
    void addAll() override {
        for (const AnySlot& record : records_)
            scope_.AddTXChnl(reference(record));
    }
    void addAllByName() override { addAll(); }
    void callEmptyByName() override {}
    void clear() override { scope_.ClearAllChnls(); }

    void showRange(const ChannelSet& set) override { control_.showRange(set); }
    void drawDisplay() override { scope_.DrawDisplay(); }
    void panTo(double center) override { control_.panTo(center); }
    void turnGridKnob(bool up) override {
        turndial::tdKnob& knob = scope_.children().tdKnGrid;
        knob.setDVal(knob.dVal() * (up ? 2.0 : 0.5));
        knob.onValueChanged(knob.dVal());
        knob.onTurnEnd();
    }
    void showOverlays(const Overlaid& wanted) override {
        control::Overlays overlays;
        overlays.setPowerAxis(wanted.powerAxis);
        overlays.setLegend(wanted.legend);
        overlays.setChannelLabels(wanted.channelLabels);
        scope_.setOverlays(overlays);
    }
    void showMouseInfo(bool on) override { scope_.setBMouseInfo(on); }
    void moveMouseTo(double frequency) override { control_.moveMouseTo(frequency); }
    void setPower(std::size_t number, double dbm) override {
        records_[number - 1]->set<&channels::FreqSlotFields::dPwrDBM>(dbm);
    }
    void exportPicture() override { control_.exportPicture(); }
    void showText(const std::wstring&) override {}
    View view() override {
        return {scope_.DisplayMinFreq(), scope_.DisplayMaxFreq(), scope_.DisplayMinPwr(), scope_.DisplayMaxPwr()};
    }

    bool find(const std::wstring& key) override { return static_cast<bool>(scope_.GetChnlByKey(key)); }
    void remove(const std::wstring& key) override { scope_.RemoveChnlByKey(key); }

  private:
    HeadlessControl control_;
    control::Bandscope& scope_ = control_.scope;
    std::vector<AnySlot> records_;
};

}  // namespace

std::unique_ptr<Rig> makeRig() {
    return std::make_unique<NativeRig>();
}

// Of the heap: what the process has of the system does not shrink with each clear.
std::size_t privateBytes() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

}  // namespace kv::bench
