// Two controls that are told the same: one paints its channels all at once, the other one by one.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "control/Bandscope.h"
#include "headless/HeadlessPlatform.h"
#include "tests/unit/QuietSlot.h"
#include "util/RuntimeError.h"

namespace kv::fuzz {

/// Something that a host or a user does to a control. Run for each twin.
struct Life;
using Action = std::function<void(Life&)>;

/// Remembers the numbers of the errors in their order.
class NumberedErrors final : public util::ErrorReporter {
  public:
    void ErrHand(std::int16_t, std::wstring_view, std::wstring_view,
                 const util::RuntimeError& error) noexcept override {
        numbers.push_back(error.number());
    }
    std::vector<int> numbers;
};

class MemoryOfFiles final : public formenv::FileServices {
  public:
    std::wstring scratchFolder() override { return L"C:\\Scratch"; }
    void writeFile(const std::wstring& path, const std::string& bytes) override { files[path] = bytes; }
    void deleteFile(const std::wstring& path) noexcept override { files.erase(path); }
    void bitmapFileToClipboard(const std::wstring&) override {}
    bool fileExists(const std::wstring& path) override { return files.contains(path); }
    void clearClipboard() override {}
    std::optional<std::wstring> readSetting(const std::wstring&, const std::wstring&, const std::wstring&) override {
        return std::nullopt;
    }
    void writeSetting(const std::wstring&, const std::wstring&, const std::wstring&, const std::wstring&) override {}
    std::wstring printFolder() override { return L"C:\\Print"; }
    std::wstring placementFile() override { return L"C:\\Places.INI"; }
    std::map<std::wstring, std::string> files;
};

/// A record of a class of the host's: it reports no changes and must be read each time.
class ForeignSlot final : public control::CountedSlot {};

/// One of the twins, with the host around it.
struct Life final : control::HostEvents {
    explicit Life(std::int32_t many);

    void ChgGridRange() override { event(); }
    void ChgHeight(std::int16_t) override { event(); }
    void ChgFreqRange(double, double) override { event(); }

    void add(channels::ChannelKind kind, const channels::FreqSlotFields& fields, bool foreign);
    /// Null when there is no record yet.
    [[nodiscard]] control::CountedSlot* record(std::size_t number) const;
    /// A second control of the same host, for records that are in both; made at the first call.
    [[nodiscard]] control::Bandscope& other();
    [[nodiscard]] bool hasOther() const noexcept { return other_ != nullptr; }
    /// Runs an action as the host of the control: its errors end it.
    void act(const Action& action);

    headless::HeadlessPlatform platform;
    NumberedErrors errors;
    MemoryOfFiles files;
    std::vector<util::Ref<control::CountedSlot>> records;
    /// What the host does when the control lets events run, and in an event of the control; each once.
    std::vector<Action> atPump;
    std::vector<Action> atEvent;
    control::Bandscope scope;

    control::Children& ui() { return scope.children(); }

  private:
    [[nodiscard]] control::Services services(headless::HeadlessPlatform& on);
    void event();
    void runNext(std::vector<Action>& waiting);

    int depth_ = 0;
    std::int32_t many_;
    headless::HeadlessPlatform otherPlatform_;
    std::unique_ptr<control::Bandscope> other_;
};

/// The twins, and the keys of the channels that a simple model says there are.
class Twin {
  public:
    Twin();
    void act(const Action& action);
    /// The same things are said and shown by both, and the channels are those of the model.
    void expectAgreement();

    std::map<channels::ChannelKind, std::vector<std::wstring>> keys;

  private:
    void expectChannels(Life& life);
    void expectOthersAgree();
    Life fast_;
    Life slow_;
};

}  // namespace kv::fuzz
