// An object with the interface of the control but without its display, for the tests of calls by name.
#pragma once

#include <windows.h>

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "automation/ForeignFreqSlot.h"
#include "automation/Identity.h"
#include "channels/FreqSlot.h"
#include "com/Dispatch.h"
#include "com/Firewall.h"
#include "com/Module.h"
#include "kvBandscope.h"

namespace kv::test {

class ProbeControl final : public com::DispatchImpl<_kvBandscope, &automation::kChannelConverter> {
  public:
    std::vector<channels::FreqSlotRef> channels;
    short gridX = 0;
    OLE_COLOR gridColor = 0;
    VARIANT_BOOL xLog = VARIANT_TRUE;
    double rangeMin = -1.0;
    double rangeMax = -1.0;
    double givenHeight = -1.0;  ///< what DisplayToBMP was given
    double givenWidth = -1.0;
    std::wstring givenName;
    std::wstring removedKey;
    int failure = 0;  ///< Refresh: a run-time error's number; -1: memory; -2: another exception

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (iid == IID_IUnknown || iid == IID_IDispatch || iid == IID__kvBandscope)
            *object = static_cast<_kvBandscope*>(this);
        else if (iid == IID_ISupportErrorInfo)
            *object = static_cast<ISupportErrorInfo*>(this);
        else
            *object = nullptr;
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE AddTXChnl(_FreqSlot* chnl, long* value) override {
        return com::firewallReturn(automation::controlErrors(IID__kvBandscope), value, [&] {
            channels.push_back(automation::channelFromHost(chnl));
            return channels.size() - 1;
        });
    }
    HRESULT STDMETHODCALLTYPE GetTXChnl(long i, _FreqSlot** value) override {
        const auto place = static_cast<std::size_t>(i);
        return automation::channelToHost(place < channels.size() ? channels[place].get() : nullptr, value);
    }
    HRESULT STDMETHODCALLTYPE GetTXbyKey(BSTR sKey, _FreqSlot** value) override {
        return com::firewall(automation::controlErrors(IID__kvBandscope), [&] {
            for (const channels::FreqSlotRef& channel : channels)
                if (channel->sKey() == com::toWide(sKey))
                    return automation::channelToHost(channel.get(), value);
            return automation::channelToHost(nullptr, value);
        });
    }
    HRESULT STDMETHODCALLTYPE get_NumTX(long* value) override {
        return com::firewallReturn(automation::controlErrors(IID__kvBandscope), value, [&] { return channels.size(); });
    }
    HRESULT STDMETHODCALLTYPE put_nGridX(short value) override {
        gridX = value;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_nGridX(short* value) override {
        return com::firewallReturn(automation::controlErrors(IID__kvBandscope), value, [&] { return gridX; });
    }
    HRESULT STDMETHODCALLTYPE put_GridColor(OLE_COLOR value) override {
        gridColor = value;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_GridColor(OLE_COLOR* value) override {
        return com::firewallReturn(automation::controlErrors(IID__kvBandscope), value, [&] { return gridColor; });
    }
    HRESULT STDMETHODCALLTYPE put_bXLog(VARIANT_BOOL value) override {
        xLog = value;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_bXLog(VARIANT_BOOL* value) override {
        return com::firewallReturn(automation::controlErrors(IID__kvBandscope), value,
                                   [&] { return xLog != VARIANT_FALSE; });
    }
    HRESULT STDMETHODCALLTYPE DrawByRange(double dFMin, double dFMax) override {
        rangeMin = dFMin;
        rangeMax = dFMax;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_DisplayMinFreq(double* value) override {
        return com::firewallReturn(automation::controlErrors(IID__kvBandscope), value, [&] { return rangeMin; });
    }
    HRESULT STDMETHODCALLTYPE get_DisplayMaxFreq(double* value) override {
        return com::firewallReturn(automation::controlErrors(IID__kvBandscope), value, [&] { return rangeMax; });
    }
    HRESULT STDMETHODCALLTYPE DisplayToBMP(double* dHgt, double* dWid, BSTR* sFName, BSTR* value) override {
        return com::firewallReturn(automation::controlErrors(IID__kvBandscope), value, [&] {
            givenHeight = *dHgt;
            givenWidth = *dWid;
            givenName = com::toWide(*sFName);
            *dHgt = 1234.5;
            *dWid = 4321.0;
            SysFreeString(*sFName);
            *sFName = com::newBstr(L"new.bmp");
            return std::wstring(L"result.bmp");
        });
    }
    HRESULT STDMETHODCALLTYPE RemoveChnlByKey(BSTR sID) override {
        removedKey = com::toWide(sID);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Refresh() override {
        return com::firewall(automation::controlErrors(IID__kvBandscope), [&] {
            if (failure == -1)
                throw std::bad_alloc();
            if (failure == -2)
                throw std::runtime_error("unexpected");
            if (failure != 0)
                throw util::RuntimeError(failure);
        });
    }

    // The tests do not call the other members.
    HRESULT STDMETHODCALLTYPE AddRXChnl(_FreqSlot*, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRXChnl(LONG, _FreqSlot**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_dTXFreqMin(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_dTXFreqMax(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_dRXFreqMin(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_dRXFreqMax(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_dTXPwrDBMMin(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_dTXPwrDBMMax(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_NumRX(LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_dFreqMin(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_dFreqMax(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_dPwrMin(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_dPwrMax(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DrawDisplay(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ReDrawChnl(_FreqSlot*, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ClearDisplay() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ClearDisplayLabels() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ClearAllChnls() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ClearTXChnls() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ClearRXChnls() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_DisplayCenterFreq(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_DisplayCenterFreq(double) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_DisplayMinPwr(double) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_DisplayMinPwr(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_DisplayMaxPwr(double) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_DisplayMaxPwr(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_FreqEndBuffer(double) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_FreqEndBuffer(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ReScaleChannels(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DrawInitialDisplay() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE JustDrawIt() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DrawAll() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RescaleAll() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE nFindMatchRX(_FreqSlot*, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_MinHgt(short*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_MinWid(short*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_CursorVal(double) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_CursorVal(double*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_lCursorColor(OLE_COLOR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_lCursorColor(OLE_COLOR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CopyDisplayToClipboard() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_bMouseInfo(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_bChkVisMouseInfo(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_ShowAll(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_ShowAll(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_ShowAll_REPLACED_20070521_1637(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_bChkVisShowAll(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_bLoadingAll(VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_bLoadingAll(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetRXbyKey(BSTR, _FreqSlot**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetChnlByKey(BSTR, _FreqSlot**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DrawNewCenterFreq() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_lColorLblBack(OLE_COLOR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_lColorLblFore(OLE_COLOR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_lColorSpecBack(OLE_COLOR) override { return E_NOTIMPL; }

  private:
    ~ProbeControl() = default;

    ULONG references_ = 1;
    [[no_unique_address]] com::ModuleRef module_;
};

}  // namespace kv::test
