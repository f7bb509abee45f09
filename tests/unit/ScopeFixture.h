// A control on a platform without a screen, with hosts, reports and files that only write down what they are told.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "control/Bandscope.h"
#include "headless/HeadlessPlatform.h"
#include "headless/Pixels.h"
#include "headless/RecordingCanvas.h"
#include "headless/TextIniSource.h"
#include "util/Ini.h"
#include "util/RuntimeError.h"

namespace kv::control {

/// A channel in plain memory. `onRead` hears the name of each member before it is read and may throw or act as a host
/// whose code runs at that moment.
class PlainSlot final : public channels::FreqSlotBase {
  public:
    void retain() noexcept override { ++references_; }
    /// Out of line: inlined into a test, it makes the compiler see uses after the deletion where there are none.
    [[gnu::noinline]] void release() noexcept override {
        if (--references_ == 0)
            delete this;
    }
    [[nodiscard]] int references() const noexcept { return references_; }

    double dFreq() override { return (tell("dFreq"), channels::FreqSlotBase::dFreq()); }
    double dFreqHi() override { return (tell("dFreqHi"), channels::FreqSlotBase::dFreqHi()); }
    double dPwrDBM() override { return (tell("dPwrDBM"), channels::FreqSlotBase::dPwrDBM()); }
    std::wstring sKey() override { return (tell("sKey"), channels::FreqSlotBase::sKey()); }
    std::wstring sLabel() override { return (tell("sLabel"), channels::FreqSlotBase::sLabel()); }
    bool bVisible() override { return (tell("bVisible"), channels::FreqSlotBase::bVisible()); }
    channels::DrawRecord drawRecord() override { return (tell("drawRecord"), channels::FreqSlotBase::drawRecord()); }

    std::function<void(std::string_view member)> onRead;

  private:
    void tell(std::string_view member) const {
        if (onRead)
            onRead(member);
    }
    int references_ = 0;
};

using SlotRef = util::Ref<PlainSlot>;

inline channels::FreqSlotRef asChannel(const SlotRef& slot) {
    return channels::FreqSlotRef(slot.get());
}

/// A channel with its band edges `halfBand` MHz on each side of the center.
inline SlotRef makeSlot(double frequency, double halfBand = 0.0, double power = 0.0, const std::wstring& key = L"") {
    SlotRef slot(new PlainSlot);
    channels::FreqSlotFields& fields = slot->fields();
    fields.dFreq = frequency;
    fields.dBW = halfBand * 1000.0;
    fields.dPwrDBM = power;
    fields.sKey = key;
    fields.lColor = 0x0000FF;
    fields.lColorLine = 0x00FF00;
    return slot;
}

/// An error for `onRead`: fails at `member`.
inline std::function<void(std::string_view)> failsAt(std::string_view member, int number) {
    return [member, number](std::string_view read) {
        if (read == member)
            throw util::RuntimeError(number);
    };
}

class RecordingEvents final : public HostEvents {
  public:
    void ChgGridRange() override { heard.emplace_back("ChgGridRange"); }
    void ChgHeight(std::int16_t iHgt) override { heard.push_back("ChgHeight " + std::to_string(iHgt)); }
    void ChgFreqRange(double dMin, double dMax) override {
        std::ostringstream text;
        text << "ChgFreqRange " << dMin << ' ' << dMax;
        heard.push_back(text.str());
    }
    std::vector<std::string> heard;
};

class RecordingErrors final : public util::ErrorReporter {
  public:
    struct Report {
        std::int16_t flag;
        std::wstring procedure;
        std::wstring detail;
        int number;
    };
    void ErrHand(std::int16_t flag, std::wstring_view sProc, std::wstring_view sDetail,
                 const util::RuntimeError& error) noexcept override {
        reports.push_back({flag, std::wstring(sProc), std::wstring(sDetail), error.number()});
    }
    void wrtTechSupNoMak(std::wstring_view sMsg, bool bStamp) noexcept override {
        lines.push_back(std::wstring(sMsg) + (bStamp ? L" (stamped)" : L""));
    }
    std::vector<Report> reports;
    std::vector<std::wstring> lines;
};

class MemoryFiles : public formenv::FileServices {
  public:
    std::wstring scratchFolder() override { return L"C:\\Scratch"; }
    void writeFile(const std::wstring& path, const std::string& bytes) override {
        if (readOnly)
            throw util::RuntimeError(util::error_number::kPathFileAccess);
        files[path] = bytes;
        happened.push_back("write");
    }
    void deleteFile(const std::wstring& path) noexcept override {
        files.erase(path);
        happened.push_back("delete");
    }
    void bitmapFileToClipboard(const std::wstring& path) override {
        if (busyClipboard)
            throw util::RuntimeError(util::error_number::kCannotOpenClipboard);
        clipboard = files.at(path);
        happened.push_back("place");
    }
    bool fileExists(const std::wstring& path) override { return files.contains(path); }
    void clearClipboard() override {
        if (busyClipboard)
            throw util::RuntimeError(util::error_number::kCannotOpenClipboard);
        clipboard.clear();
        happened.push_back("clear");
    }
    std::optional<std::wstring> readSetting(const std::wstring& key, const std::wstring& section,
                                            const std::wstring& file) override {
        return settings.read(key, section, file);
    }
    void writeSetting(const std::wstring& key, const std::wstring& section, const std::wstring& file,
                      const std::wstring& value) override {
        if (readOnly)
            throw util::RuntimeError(util::error_number::kPathFileAccess);
        settings.write(key, section, file, value);
    }
    std::wstring printFolder() override { return L"C:\\Work"; }
    std::wstring placementFile() override { return L"C:\\Places.INI"; }
    headless::TextIniSource settings;
    std::map<std::wstring, std::string> files;
    std::vector<std::string> happened;
    std::string clipboard = "what another program left";
    bool readOnly = false;
    bool busyClipboard = false;
};

/// Any error report that a test does not take with `takeReport` fails it.
class ScopeTest : public ::testing::Test {
  protected:
    SlotRef addTX(double frequency, double halfBand = 0.0, double power = 0.0, const std::wstring& key = L"") {
        return added(channels::ChannelKind::TX, makeSlot(frequency, halfBand, power, key));
    }
    SlotRef addRX(double frequency, double halfBand = 0.0, double power = 0.0, const std::wstring& key = L"") {
        return added(channels::ChannelKind::RX, makeSlot(frequency, halfBand, power, key));
    }

    /// A picture of 400 by 200 pixels that shows 350 to 550 MHz and 0 to 100 dBm: two pixels a unit both ways.
    void showTwoPixelsAUnit() {
        ui.picSpectrum.move({0.0, 0.0, 400.0 * 15.0, 200.0 * 15.0});
        scope.setDisplayMaxPwr(100.0);
        scope.setDisplayMinPwr(0.0);
        scope.DrawByRange(450.0, 450.0);
        ASSERT_EQ(scope.DisplayMinFreq(), 350.0);
        ASSERT_EQ(scope.DisplayMaxFreq(), 550.0);
    }

    /// The kept pixels of a picture box.
    static std::vector<std::uint32_t> pixelsOf(formenv::PictureBox& box) {
        return headless::pixelsOf(box.surface().pixels());
    }
    static std::uint32_t pixelAt(formenv::PictureBox& box, int x, int y) {
        return box.surface().pixels().row(y)[x] & 0xFFFFFFU;
    }

    /// The one report there is; it is forgotten.
    RecordingErrors::Report takeReport() {
        EXPECT_EQ(errors.reports.size(), 1U);
        const RecordingErrors::Report report =
            errors.reports.empty() ? RecordingErrors::Report{} : errors.reports.front();
        errors.reports.clear();
        return report;
    }

    void TearDown() override {
        for (const RecordingErrors::Report& report : errors.reports)
            ADD_FAILURE() << "error " << report.number << " in " << ::testing::PrintToString(report.procedure)
                          << ", flag " << report.flag << ", " << ::testing::PrintToString(report.detail);
    }

    headless::HeadlessPlatform platform;
    RecordingEvents events;
    RecordingErrors errors;
    MemoryFiles files;
    Bandscope scope{
        Services{platform, events, errors, files, [] { return util::Ref<channels::FreqSlotBase>(new PlainSlot); }}};
    Children& ui = scope.children();

  private:
    SlotRef added(channels::ChannelKind kind, const SlotRef& slot) {
        if (slot->fields().sKey.empty())
            slot->fields().sKey = (kind == channels::ChannelKind::TX ? L"TX#" : L"RX#") + std::to_wstring(++lastKey_);
        if (kind == channels::ChannelKind::TX)
            scope.AddTXChnl(asChannel(slot));
        else
            scope.AddRXChnl(asChannel(slot));
        return slot;
    }
    int lastKey_ = 0;
};

}  // namespace kv::control
