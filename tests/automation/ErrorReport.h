// A control whose errors are written to a tech-support log of the test's own.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "tests/automation/Container.h"
#include "tests/automation/DictionarySlot.h"
#include "tests/automation/FreshModule.h"
#include "tests/automation/MessageBoxes.h"
#include "util/Product.h"

namespace kv::test {

struct Record {
    std::string error;
    std::string procedure;
    std::string detail;
    bool operator==(const Record&) const = default;
};
inline void PrintTo(const Record& record, std::ostream* stream) {
    *stream << '{' << record.error << " | " << record.procedure << " | " << record.detail << '}';
}

/// The records of a log. A line that belongs to no record fails the test.
[[nodiscard]] std::vector<Record> recordsOf(const std::string& log);

/// A control of a separately loaded module in a window, with channels of the host's own class whose members can fail.
class ErrorReport : public testing::Test {
  protected:
    ErrorReport() {
        container.control = module.create<_kvBandscope>(CLSID_kvBandscope);
        EXPECT_TRUE(container.control);
    }

    void activate() {
        container.activate();
        container.resize(600, 480);
        for (const double frequency : {440.0, 450.0, 460.0})
            add(L"TX" + std::to_wstring(slots.size()), frequency);
        for (const double frequency : {445.0, 455.0})
            add(L"RX" + std::to_wstring(slots.size()), frequency);
        EXPECT_TRUE(draw());
        EXPECT_THAT(records(), testing::IsEmpty());
    }
    void add(const std::wstring& key, double frequency) {
        const ComPtr<DictionarySlot> slot = DictionarySlot::create();
        slot->values[L"sKey"] = key.c_str();
        slot->values[L"dFreq"] = frequency;
        slot->values[L"dBW"] = 100.0;
        slot->values[L"dPwrDBM"] = 30.0;
        const Outcome outcome =
            call(container.control.Get(), key.starts_with(L"TX") ? L"AddTXChnl" : L"AddRXChnl", {Var(slot.Get())});
        EXPECT_EQ(outcome.hr, S_OK);
        slots.push_back(slot);
    }
    void fail(std::size_t slot, const wchar_t* member) {
        slots[slot]->failing[member] = static_cast<HRESULT>(0x800A0009UL);
    }
    bool draw() {
        VARIANT_BOOL drawn = VARIANT_FALSE;
        EXPECT_EQ(container.control->DrawDisplay(&drawn), S_OK);
        return drawn == VARIANT_TRUE;
    }
    bool rescale() {
        VARIANT_BOOL done = VARIANT_FALSE;
        EXPECT_EQ(container.control->ReScaleChannels(&done), S_OK);
        return done == VARIANT_TRUE;
    }
    /// The file name that the export returns.
    std::wstring exportTo(const std::wstring& file) {
        double height = 1.0;
        double width = 1.0;
        Text name(file);
        Var sizes[] = {Var::typed(VT_BYREF | VT_R8, &height), Var::typed(VT_BYREF | VT_R8, &width),
                       Var::typed(VT_BYREF | VT_BSTR, name.put())};
        *name.put() = SysAllocString(file.c_str());
        const Outcome outcome = call(container.control.Get(), L"DisplayToBMP", {sizes[0], sizes[1], sizes[2]});
        EXPECT_EQ(outcome.hr, S_OK);
        return outcome.result.text();
    }
    std::vector<Record> records() const { return recordsOf(contentOf(logFile)); }

    TempFolder maker{L"kvMaker"};
    std::wstring logFile = maker.file(L"KVTECSUP.TXT");
    FreshModule module;
    std::vector<ComPtr<DictionarySlot>> slots;
    Container container;
};

class InstalledErrorReport : public ErrorReport {
  protected:
    InstalledErrorReport() { installed.set(maker.file(L"KVZEP32.EXE")); }
    AppPathKey installed{util::product::kFamilyPrograms[0]};
};

/// The error that a channel reports after `fail`.
inline const std::string kTrouble = "Error 9  the host's own trouble";
inline const std::string kOverflow = "Error 6  Overflow";

}  // namespace kv::test
