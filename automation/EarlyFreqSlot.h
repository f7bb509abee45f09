// A host's record that implements _FreqSlot, called through its vtable.
#pragma once

#include <windows.h>

#include <wrl/client.h>

#include <string>
#include <utility>

#include "automation/HostChannel.h"
#include "com/OleTypes.h"

namespace kv::automation {

class EarlyFreqSlot final : public HostChannel {
  public:
    explicit EarlyFreqSlot(Microsoft::WRL::ComPtr<_FreqSlot> slot) noexcept : slot_(std::move(slot)) {}
    EarlyFreqSlot(const EarlyFreqSlot&) = delete;
    EarlyFreqSlot& operator=(const EarlyFreqSlot&) = delete;

    void retain() noexcept override { InterlockedIncrement(&references_); }
    void release() noexcept override {
        if (InterlockedDecrement(&references_) == 0)
            delete this;
    }
    _FreqSlot* shareWithHost() noexcept override {
        slot_->AddRef();
        return slot_.Get();
    }

    double dFreq() override { return get(&_FreqSlot::get_dFreq); }
    double dFreqAlt() override { return get(&_FreqSlot::get_dFreqAlt); }
    double dBW() override { return get(&_FreqSlot::get_dBW); }
    double dFreqHi() override { return get(&_FreqSlot::get_dFreqHi); }
    double dFreqLo() override { return get(&_FreqSlot::get_dFreqLo); }
    double dPwrDBM() override { return get(&_FreqSlot::get_dPwrDBM); }
    std::wstring sLabel() override { return getText(&_FreqSlot::get_sLabel); }
    std::wstring sFreqUnits() override { return getText(&_FreqSlot::get_sFreqUnits); }
    std::wstring sBWUnits() override { return getText(&_FreqSlot::get_sBWUnits); }
    std::uint32_t lColorLine() override { return get(&_FreqSlot::get_lColorLine); }
    std::uint32_t lColor() override { return get(&_FreqSlot::get_lColor); }
    std::int16_t nIMComps() override { return get(&_FreqSlot::get_nIMComps); }
    channels::ImComponent imComponent(std::int32_t i) override;
    std::wstring sKey() override { return getText(&_FreqSlot::get_sKey); }
    bool bVisible() override { return get(&_FreqSlot::get_bVisible) != VARIANT_FALSE; }
    bool bDrawn() override { return get(&_FreqSlot::get_bDrawn) != VARIANT_FALSE; }
    std::int16_t iFillStyle() override { return get(&_FreqSlot::get_iFillStyle); }

    void setDFreq(double value) override { check(slot_->put_dFreq(value)); }
    void setDFreqHi(double value) override { check(slot_->put_dFreqHi(value)); }
    void setDFreqLo(double value) override { check(slot_->put_dFreqLo(value)); }
    void setSFreqUnits(const std::wstring& value) override { check(slot_->put_sFreqUnits(com::Bstr(value).get())); }
    void setSBWUnits(const std::wstring& value) override { check(slot_->put_sBWUnits(com::Bstr(value).get())); }
    void setBDrawn(bool value) override { check(slot_->put_bDrawn(value ? VARIANT_TRUE : VARIANT_FALSE)); }
    void setIFillStyle(std::int16_t value) override { check(slot_->put_iFillStyle(value)); }

  private:
    ~EarlyFreqSlot() = default;

    /// Throws util::RuntimeError for a failed call.
    void check(HRESULT hr) const;
    template <class Value>
    Value get(HRESULT (STDMETHODCALLTYPE _FreqSlot::*getter)(Value*)) const {
        Value value{};
        check((slot_.Get()->*getter)(&value));
        return value;
    }
    std::wstring getText(HRESULT (STDMETHODCALLTYPE _FreqSlot::*getter)(BSTR*)) const {
        com::Bstr value;
        check((slot_.Get()->*getter)(value.put()));
        return value.str();
    }

    LONG references_ = 1;
    Microsoft::WRL::ComPtr<_FreqSlot> slot_;
};

}  // namespace kv::automation
