// A control, and what is around it, in which allocations and calls of the platform can be made to fail.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "control/Bandscope.h"
#include "headless/HeadlessPlatform.h"
#include "tests/fuzz/faults/Faults.h"
#include "tests/unit/QuietSlot.h"
#include "util/RuntimeError.h"

namespace kv::fuzz {

/// Counts the errors by number. Needs no memory of its own in the middle of a call.
class CountedErrors final : public util::ErrorReporter {
  public:
    void ErrHand(std::int16_t, std::wstring_view, std::wstring_view,
                 const util::RuntimeError& error) noexcept override {
        switch (error.number()) {
            case util::error_number::kOutOfMemory:
                ++memory;
                break;
            case util::error_number::kPathFileAccess:
                ++files;
                break;
            default:
                ++others;
        }
    }
    int memory = 0;
    int files = 0;  ///< of a place that could not be saved, for whatever reason
    int others = 0;
};

class SilentEvents final : public control::HostEvents {
  public:
    void ChgGridRange() override {}
    void ChgHeight(std::int16_t) override {}
    void ChgFreqRange(double, double) override {}
};

/// Files that only have names.
class NamedFiles final : public formenv::FileServices {
  public:
    std::wstring scratchFolder() override { return L"C:\\A scratch folder with a long name"; }
    void writeFile(const std::wstring& path, const std::string&) override {
        const Spared spared;
        written.insert(path);
    }
    void deleteFile(const std::wstring& path) noexcept override {
        const Spared spared;
        written.erase(path);
    }
    void bitmapFileToClipboard(const std::wstring&) override {}
    bool fileExists(const std::wstring& path) override { return written.contains(path); }
    void clearClipboard() override {}
    std::optional<std::wstring> readSetting(const std::wstring& key, const std::wstring&,
                                            const std::wstring&) override {
        const auto found = settings.find(key);
        return found == settings.end() ? std::nullopt : std::optional(found->second);
    }
    void writeSetting(const std::wstring& key, const std::wstring&, const std::wstring&,
                      const std::wstring& value) override {
        const Spared spared;
        settings[key] = value;
    }
    std::wstring printFolder() override { return L"C:\\A folder for prints with a long name"; }
    std::wstring placementFile() override { return L"C:\\A file of places with a long name.INI"; }
    std::set<std::wstring> written;
    std::map<std::wstring, std::wstring> settings;
};

struct World {
    /// `start` runs immediately before the control is made.
    explicit World(const std::function<void()>& start = [] {});

    /// Adds a channel with a key of its own; false when it was not added.
    bool add(channels::ChannelKind kind, double frequency);
    /// 30 transmit and 10 receive channels, painted all at once, in a picture that was drawn.
    void fill();
    /// The control does all that it is there for, and what it says of itself agrees.
    void expectWorks();

    headless::HeadlessPlatform platform;
    SilentEvents events;
    CountedErrors errors;
    NamedFiles files;
    std::optional<control::Bandscope> made;

    control::Bandscope& scope() { return *made; }
    control::Children& ui() { return made->children(); }

  private:
    void expectChannelsAgree();
    void expectPicturesAgree();
    int added_ = 0;
};

[[nodiscard]] std::vector<std::uint32_t> pixelsOf(formenv::PictureBox& box);

}  // namespace kv::fuzz
