// The creatable class FreqSlot: the control's own channel record as hosts see it.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <string>
#include <utility>

#include "automation/Identity.h"
#include "channels/FreqSlot.h"
#include "com/Dispatch.h"
#include "com/Firewall.h"
#include "com/Module.h"
#include "kvBandscope.h"
#include "util/Ref.h"

namespace kv::automation {

/// {E2A9B1C4-6F0D-4E35-9B7A-51D80C3F2A68}: implemented by the channels of this module, in their own apartment.
inline constexpr GUID kIidChannelAccess = {
    0xE2A9B1C4, 0x6F0D, 0x4E35, {0x9B, 0x7A, 0x51, 0xD8, 0x0C, 0x3F, 0x2A, 0x68}};

/// Leads from a host's pointer to the channel that it refers to.
struct IChannelAccess : public IUnknown {
    /// Identifies the copy of the module in this process, because C++ objects must not be used by another copy.
    virtual const void* home() noexcept = 0;
    /// Not counted.
    virtual channels::FreqSlot* channel() noexcept = 0;
};

/// The `home` of this copy's channels.
[[nodiscard]] const void* channelHome() noexcept;

/// A channel record. Half a million of them are an everyday number, so it contains little besides its fields.
class FreqSlotObject final : public com::DispatchImpl<_FreqSlot>,
                             public IProvideClassInfo,
                             public IChannelAccess,
                             public channels::FreqSlotBase {
    using Fields = channels::FreqSlotFields;
    using Component = channels::ImComponent;

  public:
    FreqSlotObject() noexcept = default;
    FreqSlotObject(const FreqSlotObject&) = delete;
    FreqSlotObject& operator=(const FreqSlotObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    void retain() noexcept override { AddRef(); }
    void release() noexcept override { Release(); }
    [[nodiscard]] const channels::FreqSlotFields* peek() const noexcept override { return &fields(); }

    const void* home() noexcept override { return channelHome(); }
    channels::FreqSlot* channel() noexcept override { return this; }
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;

    HRESULT STDMETHODCALLTYPE put_dFreq(double value) override { return put<&Fields::dFreq>(value); }
    HRESULT STDMETHODCALLTYPE get_dFreq(double* value) override { return get(&Fields::dFreq, value); }
    HRESULT STDMETHODCALLTYPE put_dFreqAlt(double value) override { return put<&Fields::dFreqAlt>(value); }
    HRESULT STDMETHODCALLTYPE get_dFreqAlt(double* value) override { return get(&Fields::dFreqAlt, value); }
    HRESULT STDMETHODCALLTYPE put_dBW(double value) override { return put<&Fields::dBW>(value); }
    HRESULT STDMETHODCALLTYPE get_dBW(double* value) override { return get(&Fields::dBW, value); }
    HRESULT STDMETHODCALLTYPE put_dFreqHi(double value) override { return put<&Fields::dFreqHi>(value); }
    HRESULT STDMETHODCALLTYPE get_dFreqHi(double* value) override { return get(&Fields::dFreqHi, value); }
    HRESULT STDMETHODCALLTYPE put_dFreqLo(double value) override { return put<&Fields::dFreqLo>(value); }
    HRESULT STDMETHODCALLTYPE get_dFreqLo(double* value) override { return get(&Fields::dFreqLo, value); }
    HRESULT STDMETHODCALLTYPE put_dPwrDBM(double value) override { return put<&Fields::dPwrDBM>(value); }
    HRESULT STDMETHODCALLTYPE get_dPwrDBM(double* value) override { return get(&Fields::dPwrDBM, value); }
    HRESULT STDMETHODCALLTYPE put_sLabel(BSTR value) override { return put<&Fields::sLabel>(value); }
    HRESULT STDMETHODCALLTYPE get_sLabel(BSTR* value) override { return get(&Fields::sLabel, value); }
    HRESULT STDMETHODCALLTYPE put_sFreqUnits(BSTR value) override { return put<&Fields::sFreqUnits>(value); }
    HRESULT STDMETHODCALLTYPE get_sFreqUnits(BSTR* value) override { return get(&Fields::sFreqUnits, value); }
    HRESULT STDMETHODCALLTYPE put_sBWUnits(BSTR value) override { return put<&Fields::sBWUnits>(value); }
    HRESULT STDMETHODCALLTYPE get_sBWUnits(BSTR* value) override { return get(&Fields::sBWUnits, value); }
    HRESULT STDMETHODCALLTYPE put_lColorLine(OLE_COLOR value) override { return put<&Fields::lColorLine>(value); }
    HRESULT STDMETHODCALLTYPE get_lColorLine(OLE_COLOR* value) override { return get(&Fields::lColorLine, value); }
    HRESULT STDMETHODCALLTYPE put_lColor(OLE_COLOR value) override { return put<&Fields::lColor>(value); }
    HRESULT STDMETHODCALLTYPE get_lColor(OLE_COLOR* value) override { return get(&Fields::lColor, value); }
    HRESULT STDMETHODCALLTYPE put_nIMComps(short value) override;
    HRESULT STDMETHODCALLTYPE get_nIMComps(short* value) override;
    HRESULT STDMETHODCALLTYPE put_nIMComp(long i, short value) override {
        return put(i, &Component::coefficient, value);
    }
    HRESULT STDMETHODCALLTYPE get_nIMComp(long i, short* value) override {
        return get(i, &Component::coefficient, value);
    }
    HRESULT STDMETHODCALLTYPE put_dIMCompFreq(long i, double value) override {
        return put(i, &Component::frequency, value);
    }
    HRESULT STDMETHODCALLTYPE get_dIMCompFreq(long i, double* value) override {
        return get(i, &Component::frequency, value);
    }
    HRESULT STDMETHODCALLTYPE put_sIMCompLabel(long i, BSTR value) override { return put(i, &Component::label, value); }
    HRESULT STDMETHODCALLTYPE get_sIMCompLabel(long i, BSTR* value) override {
        return get(i, &Component::label, value);
    }
    HRESULT STDMETHODCALLTYPE put_sKey(BSTR value) override { return put<&Fields::sKey>(value); }
    HRESULT STDMETHODCALLTYPE get_sKey(BSTR* value) override { return get(&Fields::sKey, value); }
    HRESULT STDMETHODCALLTYPE put_bVisible(VARIANT_BOOL value) override { return put<&Fields::bVisible>(value); }
    HRESULT STDMETHODCALLTYPE get_bVisible(VARIANT_BOOL* value) override { return get(&Fields::bVisible, value); }
    HRESULT STDMETHODCALLTYPE put_bDrawn(VARIANT_BOOL value) override {
        return com::plainFirewall(kFreqSlotErrors, [&] { setBDrawn(com::boolFromIn(value)); });
    }
    HRESULT STDMETHODCALLTYPE get_bDrawn(VARIANT_BOOL* value) override { return get(&Fields::bDrawn, value); }
    HRESULT STDMETHODCALLTYPE put_iFillStyle(short value) override { return put<&Fields::iFillStyle>(value); }
    HRESULT STDMETHODCALLTYPE get_iFillStyle(short* value) override { return get(&Fields::iFillStyle, value); }

  private:
    ~FreqSlotObject() = default;

    template <class Field, class Value>
    static void store(Field& field, Value value) {
        if constexpr (std::is_same_v<Field, std::wstring>)
            field = com::fromIn(value);
        else if constexpr (std::is_same_v<Field, bool>)
            field = com::boolFromIn(value);
        else
            field = static_cast<Field>(value);
    }
    template <auto Member, class Value>
    HRESULT put(Value value) noexcept {
        return com::plainFirewall(kFreqSlotErrors, [&] {
            std::remove_cvref_t<decltype(std::declval<Fields&>().*Member)> converted{};
            store(converted, value);
            set<Member>(std::move(converted));
        });
    }
    template <class Field, class Out>
    HRESULT get(Field Fields::*field, Out* out) noexcept {
        return com::firewallReturn(kFreqSlotErrors, out,
                                   [&]() -> const Field& { return std::as_const(*this).fields().*field; });
    }
    template <class Field, class Value>
    HRESULT put(long i, Field Component::*field, Value value) noexcept {
        return com::plainFirewall(kFreqSlotErrors, [&] { store(component(i).*field, value); });
    }
    template <class Field, class Out>
    HRESULT get(long i, Field Component::*field, Out* out) noexcept {
        return com::firewallReturn(kFreqSlotErrors, out,
                                   [&]() -> const Field& { return std::as_const(*this).component(i).*field; });
    }

    LONG references_ = 1;
    [[no_unique_address]] com::ModuleRef module_;
};

/// Creates a FreqSlot for the class factory.
HRESULT createFreqSlot(REFIID iid, void** object);

/// A new record for use inside the control. Throws std::bad_alloc.
[[nodiscard]] util::Ref<channels::FreqSlotBase> makeFreqSlot();

}  // namespace kv::automation
