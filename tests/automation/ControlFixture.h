// A control as a host program uses it, early bound or by name, and the channels that a host adds.
#pragma once

#include <gmock/gmock.h>

#include <cstring>
#include <string>

#include "tests/automation/Module.h"

namespace kv::test {

/// The start value of a minimum; its negative is the start value of a maximum.
constexpr double kUnset = 8888888888888.0;
/// The result for an invalid or missing channel.
constexpr long kNotFound = -88;

/// How a host calls: through the function table, or by the members' names.
enum class Way { early, late };
[[nodiscard]] std::string nameOf(const testing::TestParamInfo<Way>& info);

/// What a host sets on a channel; frequencies in MHz and bandwidth in KHz unless units are given.
struct ChannelSpec {
    double freq = 0.0;
    double bw = 0.0;
    double lo = 0.0;
    double hi = 0.0;
    double power = 0.0;  ///< dBm
    std::wstring key = L"";
    std::wstring label = L"";
    std::wstring units = L"";
    std::wstring bwUnits = L"";
    OLE_COLOR color = 0;
    OLE_COLOR line = 0;
    bool visible = true;
};
[[nodiscard]] ComPtr<_FreqSlot> channel(const ChannelSpec& spec);

[[nodiscard]] std::wstring keyOf(_FreqSlot* slot);
[[nodiscard]] double freqLo(_FreqSlot* slot);
[[nodiscard]] double freqHi(_FreqSlot* slot);
[[nodiscard]] short fillStyle(_FreqSlot* slot);
[[nodiscard]] bool isDrawn(_FreqSlot* slot);

/// A new control. A call that does not return S_OK fails the test.
class Scope {
  public:
    explicit Scope(Way way = Way::early);

    [[nodiscard]] _kvBandscope* get() const noexcept { return scope_.Get(); }
    [[nodiscard]] _kvBandscope* operator->() const noexcept { return scope_.Get(); }
    /// Releases the control.
    void release() noexcept { scope_.Reset(); }

    long AddTXChnl(const ComPtr<_FreqSlot>& slot) { return index(&_kvBandscope::AddTXChnl, L"AddTXChnl", slot); }
    long AddRXChnl(const ComPtr<_FreqSlot>& slot) { return index(&_kvBandscope::AddRXChnl, L"AddRXChnl", slot); }
    long nFindMatchRX(const ComPtr<_FreqSlot>& slot) {
        return index(&_kvBandscope::nFindMatchRX, L"nFindMatchRX", slot);
    }
    ComPtr<_FreqSlot> GetTXChnl(long i) { return found(&_kvBandscope::GetTXChnl, L"GetTXChnl", i, Var(int(i))); }
    ComPtr<_FreqSlot> GetRXChnl(long i) { return found(&_kvBandscope::GetRXChnl, L"GetRXChnl", i, Var(int(i))); }
    ComPtr<_FreqSlot> GetTXbyKey(const wchar_t* key) { return byKey(&_kvBandscope::GetTXbyKey, L"GetTXbyKey", key); }
    ComPtr<_FreqSlot> GetRXbyKey(const wchar_t* key) { return byKey(&_kvBandscope::GetRXbyKey, L"GetRXbyKey", key); }
    ComPtr<_FreqSlot> GetChnlByKey(const wchar_t* key) {
        return byKey(&_kvBandscope::GetChnlByKey, L"GetChnlByKey", key);
    }
    void RemoveChnlByKey(const wchar_t* key);
    bool ReDrawChnl(const ComPtr<_FreqSlot>& slot);
    void DrawByRange(double minimum, double maximum);

    long NumTX() { return number<long>(&_kvBandscope::get_NumTX, L"NumTX", VT_I4); }
    long NumRX() { return number<long>(&_kvBandscope::get_NumRX, L"NumRX", VT_I4); }
    double dTXFreqMin() { return real(&_kvBandscope::get_dTXFreqMin, L"dTXFreqMin"); }
    double dTXFreqMax() { return real(&_kvBandscope::get_dTXFreqMax, L"dTXFreqMax"); }
    double dRXFreqMin() { return real(&_kvBandscope::get_dRXFreqMin, L"dRXFreqMin"); }
    double dRXFreqMax() { return real(&_kvBandscope::get_dRXFreqMax, L"dRXFreqMax"); }
    double dTXPwrDBMMin() { return real(&_kvBandscope::get_dTXPwrDBMMin, L"dTXPwrDBMMin"); }
    double dTXPwrDBMMax() { return real(&_kvBandscope::get_dTXPwrDBMMax, L"dTXPwrDBMMax"); }
    double dFreqMin() { return real(&_kvBandscope::get_dFreqMin, L"dFreqMin"); }
    double dFreqMax() { return real(&_kvBandscope::get_dFreqMax, L"dFreqMax"); }
    double dPwrMin() { return real(&_kvBandscope::get_dPwrMin, L"dPwrMin"); }
    double dPwrMax() { return real(&_kvBandscope::get_dPwrMax, L"dPwrMax"); }
    double DisplayMinFreq() { return real(&_kvBandscope::get_DisplayMinFreq, L"DisplayMinFreq"); }
    double DisplayMaxFreq() { return real(&_kvBandscope::get_DisplayMaxFreq, L"DisplayMaxFreq"); }
    double DisplayCenterFreq() { return real(&_kvBandscope::get_DisplayCenterFreq, L"DisplayCenterFreq"); }
    double DisplayMinPwr() { return real(&_kvBandscope::get_DisplayMinPwr, L"DisplayMinPwr"); }
    double DisplayMaxPwr() { return real(&_kvBandscope::get_DisplayMaxPwr, L"DisplayMaxPwr"); }
    double FreqEndBuffer() { return real(&_kvBandscope::get_FreqEndBuffer, L"FreqEndBuffer"); }
    double CursorVal() { return real(&_kvBandscope::get_CursorVal, L"CursorVal"); }
    short nGridX() { return number<short>(&_kvBandscope::get_nGridX, L"nGridX", VT_I2); }
    short MinHgt() { return number<short>(&_kvBandscope::get_MinHgt, L"MinHgt", VT_I2); }
    short MinWid() { return number<short>(&_kvBandscope::get_MinWid, L"MinWid", VT_I2); }
    OLE_COLOR GridColor() { return number<OLE_COLOR>(&_kvBandscope::get_GridColor, L"GridColor", VT_I4); }
    OLE_COLOR lCursorColor() { return number<OLE_COLOR>(&_kvBandscope::get_lCursorColor, L"lCursorColor", VT_I4); }
    bool bXLog() { return flag(&_kvBandscope::get_bXLog, L"bXLog"); }
    bool bLoadingAll() { return flag(&_kvBandscope::get_bLoadingAll, L"bLoadingAll"); }
    bool ShowAll() { return flag(&_kvBandscope::get_ShowAll, L"ShowAll"); }

    void setDisplayCenterFreq(double v) { put(&_kvBandscope::put_DisplayCenterFreq, L"DisplayCenterFreq", v, v); }
    void setDisplayMinPwr(double v) { put(&_kvBandscope::put_DisplayMinPwr, L"DisplayMinPwr", v, v); }
    void setDisplayMaxPwr(double v) { put(&_kvBandscope::put_DisplayMaxPwr, L"DisplayMaxPwr", v, v); }
    void setFreqEndBuffer(double v) { put(&_kvBandscope::put_FreqEndBuffer, L"FreqEndBuffer", v, v); }
    void setCursorVal(double v) { put(&_kvBandscope::put_CursorVal, L"CursorVal", v, v); }
    void setNGridX(short v) { put(&_kvBandscope::put_nGridX, L"nGridX", v, int(v)); }
    void setGridColor(OLE_COLOR v) { put(&_kvBandscope::put_GridColor, L"GridColor", v, int(v)); }
    void setLCursorColor(OLE_COLOR v) { put(&_kvBandscope::put_lCursorColor, L"lCursorColor", v, int(v)); }
    void setLColorSpecBack(OLE_COLOR v) { put(&_kvBandscope::put_lColorSpecBack, L"lColorSpecBack", v, int(v)); }
    void setLColorLblBack(OLE_COLOR v) { put(&_kvBandscope::put_lColorLblBack, L"lColorLblBack", v, int(v)); }
    void setLColorLblFore(OLE_COLOR v) { put(&_kvBandscope::put_lColorLblFore, L"lColorLblFore", v, int(v)); }
    void setBXLog(bool v) { putFlag(&_kvBandscope::put_bXLog, L"bXLog", v); }
    void setBLoadingAll(bool v) { putFlag(&_kvBandscope::put_bLoadingAll, L"bLoadingAll", v); }
    void setShowAll(bool v) { putFlag(&_kvBandscope::put_ShowAll, L"ShowAll", v); }
    void setShowAllReplaced(bool v) {
        putFlag(&_kvBandscope::put_ShowAll_REPLACED_20070521_1637, L"ShowAll_REPLACED_20070521_1637", v);
    }
    void setBChkVisShowAll(bool v) { putFlag(&_kvBandscope::put_bChkVisShowAll, L"bChkVisShowAll", v); }
    void setBChkVisMouseInfo(bool v) { putFlag(&_kvBandscope::put_bChkVisMouseInfo, L"bChkVisMouseInfo", v); }
    void setBMouseInfo(bool v) { putFlag(&_kvBandscope::put_bMouseInfo, L"bMouseInfo", v); }

    bool DrawDisplay() { return flag(&_kvBandscope::DrawDisplay, L"DrawDisplay", DISPATCH_METHOD); }
    bool ReScaleChannels() { return flag(&_kvBandscope::ReScaleChannels, L"ReScaleChannels", DISPATCH_METHOD); }
    void ClearDisplay() { run(&_kvBandscope::ClearDisplay, L"ClearDisplay"); }
    void ClearDisplayLabels() { run(&_kvBandscope::ClearDisplayLabels, L"ClearDisplayLabels"); }
    void ClearAllChnls() { run(&_kvBandscope::ClearAllChnls, L"ClearAllChnls"); }
    void ClearTXChnls() { run(&_kvBandscope::ClearTXChnls, L"ClearTXChnls"); }
    void ClearRXChnls() { run(&_kvBandscope::ClearRXChnls, L"ClearRXChnls"); }
    void DrawInitialDisplay() { run(&_kvBandscope::DrawInitialDisplay, L"DrawInitialDisplay"); }
    void JustDrawIt() { run(&_kvBandscope::JustDrawIt, L"JustDrawIt"); }
    void DrawAll() { run(&_kvBandscope::DrawAll, L"DrawAll"); }
    void RescaleAll() { run(&_kvBandscope::RescaleAll, L"RescaleAll"); }
    void Refresh() { run(&_kvBandscope::Refresh, L"Refresh"); }
    void DrawNewCenterFreq() { run(&_kvBandscope::DrawNewCenterFreq, L"DrawNewCenterFreq"); }
    void CopyDisplayToClipboard() { run(&_kvBandscope::CopyDisplayToClipboard, L"CopyDisplayToClipboard"); }

  private:
    template <class T>
    using Getter = HRESULT (STDMETHODCALLTYPE _kvBandscope::*)(T*);
    template <class T>
    using Setter = HRESULT (STDMETHODCALLTYPE _kvBandscope::*)(T);
    template <class In, class Out>
    using Function = HRESULT (STDMETHODCALLTYPE _kvBandscope::*)(In, Out*);

    template <class T>
    T number(Getter<T> getter, const wchar_t* name, VARTYPE type, WORD how = DISPATCH_PROPERTYGET) {
        T value{};
        if (way_ == Way::early) {
            EXPECT_EQ((scope_.Get()->*getter)(&value), S_OK) << name;
            return value;
        }
        const Outcome outcome = invoke(scope_.Get(), idOf(scope_.Get(), name), how, {});
        EXPECT_EQ(outcome.hr, S_OK) << name;
        EXPECT_EQ(outcome.result.vt, type) << name;
        std::memcpy(&value, &outcome.result.byref, sizeof value);
        return value;
    }
    double real(Getter<double> getter, const wchar_t* name) { return number<double>(getter, name, VT_R8); }
    bool flag(Getter<VARIANT_BOOL> getter, const wchar_t* name, WORD how = DISPATCH_PROPERTYGET);
    template <class T>
    void put(Setter<T> setter, const wchar_t* name, T value, Var late) {
        EXPECT_EQ(way_ == Way::early ? (scope_.Get()->*setter)(value) : test::put(scope_.Get(), name, {late}).hr, S_OK)
            << name;
    }
    void putFlag(Setter<VARIANT_BOOL> setter, const wchar_t* name, bool value) {
        put(setter, name, static_cast<VARIANT_BOOL>(value ? VARIANT_TRUE : VARIANT_FALSE), Var(value));
    }
    void run(HRESULT (STDMETHODCALLTYPE _kvBandscope::*member)(), const wchar_t* name);
    long index(Function<_FreqSlot*, long> member, const wchar_t* name, const ComPtr<_FreqSlot>& slot);
    template <class In>
    ComPtr<_FreqSlot> found(Function<In, _FreqSlot*> member, const wchar_t* name, In which, Var late) {
        ComPtr<_FreqSlot> slot;
        if (way_ == Way::early) {
            EXPECT_EQ((scope_.Get()->*member)(which, slot.GetAddressOf()), S_OK) << name;
            return slot;
        }
        const Outcome outcome = call(scope_.Get(), name, {late});
        EXPECT_EQ(outcome.hr, S_OK) << name;
        EXPECT_EQ(outcome.result.vt, VT_DISPATCH) << name;
        if (outcome.result.vt == VT_DISPATCH && outcome.result.pdispVal)
            outcome.result.pdispVal->QueryInterface(IID_PPV_ARGS(slot.GetAddressOf()));
        return slot;
    }
    ComPtr<_FreqSlot> byKey(Function<BSTR, _FreqSlot*> member, const wchar_t* name, const wchar_t* key);

    Way way_;
    ComPtr<_kvBandscope> scope_;
};

/// The references that an object has.
[[nodiscard]] inline ULONG referenceCount(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

/// Tests that run early bound and by name, each on a new control.
class BothWays : public testing::TestWithParam<Way> {
  protected:
    Scope scope{GetParam()};
};

}  // namespace kv::test
