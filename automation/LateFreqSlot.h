// A host's record that is called by the names of its members.
#pragma once

#include <windows.h>

#include <dispex.h>
#include <wrl/client.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "automation/FreqSlotObject.h"
#include "automation/HostChannel.h"
#include "automation/Identity.h"
#include "com/Dispatch.h"
#include "com/Firewall.h"
#include "com/Module.h"
#include "com/OleTypes.h"

namespace kv::automation {

/// The channel for the control, and a `_FreqSlot` for hosts. It adds that interface to the host's object: all other
/// interfaces are those of the object itself, so that both have the same identity.
class LateFreqSlot final : public com::DispatchImpl<_FreqSlot>, public IChannelAccess, public HostChannel {
  public:
    explicit LateFreqSlot(Microsoft::WRL::ComPtr<IDispatch> object) noexcept : object_(std::move(object)) {}
    LateFreqSlot(const LateFreqSlot&) = delete;
    LateFreqSlot& operator=(const LateFreqSlot&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG STDMETHODCALLTYPE Release() override;
    void retain() noexcept override { AddRef(); }
    void release() noexcept override { Release(); }
    const void* home() noexcept override { return channelHome(); }
    channels::FreqSlot* channel() noexcept override { return this; }
    _FreqSlot* shareWithHost() noexcept override {
        AddRef();
        return this;
    }

    double dFreq() override { return number(Name::dFreq); }
    double dFreqAlt() override { return number(Name::dFreqAlt); }
    double dBW() override { return number(Name::dBW); }
    double dFreqHi() override { return number(Name::dFreqHi); }
    double dFreqLo() override { return number(Name::dFreqLo); }
    double dPwrDBM() override { return number(Name::dPwrDBM); }
    std::wstring sLabel() override { return text(Name::sLabel); }
    std::wstring sFreqUnits() override { return text(Name::sFreqUnits); }
    std::wstring sBWUnits() override { return text(Name::sBWUnits); }
    std::uint32_t lColorLine() override { return read(Name::lColorLine, VT_UI4).ulVal; }
    std::uint32_t lColor() override { return read(Name::lColor, VT_UI4).ulVal; }
    std::int16_t nIMComps() override { return read(Name::nIMComps, VT_I2).iVal; }
    channels::ImComponent imComponent(std::int32_t i) override;
    std::wstring sKey() override { return text(Name::sKey); }
    bool bVisible() override { return read(Name::bVisible, VT_BOOL).boolVal != VARIANT_FALSE; }
    bool bDrawn() override { return read(Name::bDrawn, VT_BOOL).boolVal != VARIANT_FALSE; }
    std::int16_t iFillStyle() override { return read(Name::iFillStyle, VT_I2).iVal; }
    void setDFreq(double value) override { write(Name::dFreq, com::Variant(value)); }
    void setDFreqHi(double value) override { write(Name::dFreqHi, com::Variant(value)); }
    void setDFreqLo(double value) override { write(Name::dFreqLo, com::Variant(value)); }
    void setSFreqUnits(const std::wstring& value) override { write(Name::sFreqUnits, com::Variant(value)); }
    void setSBWUnits(const std::wstring& value) override { write(Name::sBWUnits, com::Variant(value)); }
    void setBDrawn(bool value) override { write(Name::bDrawn, com::Variant(value)); }
    void setIFillStyle(std::int16_t value) override { write(Name::iFillStyle, com::Variant(value)); }

    HRESULT STDMETHODCALLTYPE put_dFreq(double value) override { return put(Name::dFreq, value); }
    HRESULT STDMETHODCALLTYPE get_dFreq(double* value) override { return get(Name::dFreq, value); }
    HRESULT STDMETHODCALLTYPE put_dFreqAlt(double value) override { return put(Name::dFreqAlt, value); }
    HRESULT STDMETHODCALLTYPE get_dFreqAlt(double* value) override { return get(Name::dFreqAlt, value); }
    HRESULT STDMETHODCALLTYPE put_dBW(double value) override { return put(Name::dBW, value); }
    HRESULT STDMETHODCALLTYPE get_dBW(double* value) override { return get(Name::dBW, value); }
    HRESULT STDMETHODCALLTYPE put_dFreqHi(double value) override { return put(Name::dFreqHi, value); }
    HRESULT STDMETHODCALLTYPE get_dFreqHi(double* value) override { return get(Name::dFreqHi, value); }
    HRESULT STDMETHODCALLTYPE put_dFreqLo(double value) override { return put(Name::dFreqLo, value); }
    HRESULT STDMETHODCALLTYPE get_dFreqLo(double* value) override { return get(Name::dFreqLo, value); }
    HRESULT STDMETHODCALLTYPE put_dPwrDBM(double value) override { return put(Name::dPwrDBM, value); }
    HRESULT STDMETHODCALLTYPE get_dPwrDBM(double* value) override { return get(Name::dPwrDBM, value); }
    HRESULT STDMETHODCALLTYPE put_sLabel(BSTR value) override { return put(Name::sLabel, value); }
    HRESULT STDMETHODCALLTYPE get_sLabel(BSTR* value) override { return get(Name::sLabel, value); }
    HRESULT STDMETHODCALLTYPE put_sFreqUnits(BSTR value) override { return put(Name::sFreqUnits, value); }
    HRESULT STDMETHODCALLTYPE get_sFreqUnits(BSTR* value) override { return get(Name::sFreqUnits, value); }
    HRESULT STDMETHODCALLTYPE put_sBWUnits(BSTR value) override { return put(Name::sBWUnits, value); }
    HRESULT STDMETHODCALLTYPE get_sBWUnits(BSTR* value) override { return get(Name::sBWUnits, value); }
    HRESULT STDMETHODCALLTYPE put_lColorLine(OLE_COLOR value) override { return put(Name::lColorLine, value); }
    HRESULT STDMETHODCALLTYPE get_lColorLine(OLE_COLOR* value) override { return get(Name::lColorLine, value); }
    HRESULT STDMETHODCALLTYPE put_lColor(OLE_COLOR value) override { return put(Name::lColor, value); }
    HRESULT STDMETHODCALLTYPE get_lColor(OLE_COLOR* value) override { return get(Name::lColor, value); }
    HRESULT STDMETHODCALLTYPE put_nIMComps(short value) override { return put(Name::nIMComps, value); }
    HRESULT STDMETHODCALLTYPE get_nIMComps(short* value) override { return get(Name::nIMComps, value); }
    HRESULT STDMETHODCALLTYPE put_nIMComp(long i, short value) override { return put(Name::nIMComp, value, i); }
    HRESULT STDMETHODCALLTYPE get_nIMComp(long i, short* value) override { return get(Name::nIMComp, value, i); }
    HRESULT STDMETHODCALLTYPE put_dIMCompFreq(long i, double value) override {
        return put(Name::dIMCompFreq, value, i);
    }
    HRESULT STDMETHODCALLTYPE get_dIMCompFreq(long i, double* value) override {
        return get(Name::dIMCompFreq, value, i);
    }
    HRESULT STDMETHODCALLTYPE put_sIMCompLabel(long i, BSTR value) override {
        return put(Name::sIMCompLabel, value, i);
    }
    HRESULT STDMETHODCALLTYPE get_sIMCompLabel(long i, BSTR* value) override {
        return get(Name::sIMCompLabel, value, i);
    }
    HRESULT STDMETHODCALLTYPE put_sKey(BSTR value) override { return put(Name::sKey, value); }
    HRESULT STDMETHODCALLTYPE get_sKey(BSTR* value) override { return get(Name::sKey, value); }
    HRESULT STDMETHODCALLTYPE put_bVisible(VARIANT_BOOL value) override { return put(Name::bVisible, value != 0); }
    HRESULT STDMETHODCALLTYPE get_bVisible(VARIANT_BOOL* value) override { return getFlag(Name::bVisible, value); }
    HRESULT STDMETHODCALLTYPE put_bDrawn(VARIANT_BOOL value) override { return put(Name::bDrawn, value != 0); }
    HRESULT STDMETHODCALLTYPE get_bDrawn(VARIANT_BOOL* value) override { return getFlag(Name::bDrawn, value); }
    HRESULT STDMETHODCALLTYPE put_iFillStyle(short value) override { return put(Name::iFillStyle, value); }
    HRESULT STDMETHODCALLTYPE get_iFillStyle(short* value) override { return get(Name::iFillStyle, value); }

  private:
    enum class Name : std::uint8_t {
        dFreq,
        dFreqAlt,
        dBW,
        dFreqHi,
        dFreqLo,
        dPwrDBM,
        sLabel,
        sFreqUnits,
        sBWUnits,
        lColorLine,
        lColor,
        nIMComps,
        nIMComp,
        dIMCompFreq,
        sIMCompLabel,
        sKey,
        bVisible,
        bDrawn,
        iFillStyle,
    };
    static constexpr std::size_t kNameCount = 19;
    /// The array index of an indexed member.
    using Index = std::optional<long>;

    ~LateFreqSlot() = default;

    /// The object's DISPID of a member, requested once. Throws util::RuntimeError 438 if the object lacks it.
    DISPID idOf(Name name);
    /// Calls the object. Throws util::RuntimeError.
    void invoke(DISPID id, WORD flags, DISPPARAMS& params, VARIANT* value);
    /// A member's value as `type`. Throws util::RuntimeError.
    com::Variant read(Name name, VARTYPE type, Index index = std::nullopt);
    void write(Name name, com::Variant value, Index index = std::nullopt);
    double number(Name name) { return read(name, VT_R8).dblVal; }
    std::wstring text(Name name) { return com::toWide(read(name, VT_BSTR).bstrVal); }

    static com::Variant hostValue(double value) noexcept { return com::Variant(value); }
    static com::Variant hostValue(short value) noexcept { return com::Variant(value); }
    static com::Variant hostValue(bool value) noexcept { return com::Variant(value); }
    static com::Variant hostValue(BSTR value) { return com::Variant(com::toWide(value)); }
    /// A color as a signed number, because some hosts have no unsigned ones.
    static com::Variant hostValue(OLE_COLOR value) noexcept { return com::Variant(static_cast<long>(value)); }

    template <class Value>
    HRESULT put(Name name, Value value, Index index = std::nullopt) noexcept {
        return com::firewall(kFreqSlotErrors, [&] { write(name, hostValue(value), index); });
    }
    HRESULT get(Name name, double* value, Index index = std::nullopt) noexcept {
        return com::firewallReturn(kFreqSlotErrors, value, [&] { return read(name, VT_R8, index).dblVal; });
    }
    HRESULT get(Name name, short* value, Index index = std::nullopt) noexcept {
        return com::firewallReturn(kFreqSlotErrors, value, [&] { return read(name, VT_I2, index).iVal; });
    }
    HRESULT get(Name name, OLE_COLOR* value) noexcept {
        return com::firewallReturn(kFreqSlotErrors, value, [&] { return read(name, VT_UI4).ulVal; });
    }
    HRESULT get(Name name, BSTR* value, Index index = std::nullopt) noexcept {
        return com::firewallReturn(kFreqSlotErrors, value,
                                   [&] { return com::toWide(read(name, VT_BSTR, index).bstrVal); });
    }
    HRESULT getFlag(Name name, VARIANT_BOOL* value) noexcept {
        return com::firewallReturn(kFreqSlotErrors, value,
                                   [&] { return read(name, VT_BOOL).boolVal != VARIANT_FALSE; });
    }

    LONG references_ = 1;
    std::uint32_t known_ = 0;  ///< bit n: ids_[n] is known
    std::array<DISPID, kNameCount> ids_{};
    Microsoft::WRL::ComPtr<IDispatch> object_;
    Microsoft::WRL::ComPtr<IDispatchEx> extended_;  ///< for an object that implements names there only
    [[no_unique_address]] com::ModuleRef module_;
};

}  // namespace kv::automation
