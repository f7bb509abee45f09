// The members of _kvBandscope: conversion between automation types and those of the display.
#include <string>

#include "automation/BandscopeControl.h"
#include "automation/ForeignFreqSlot.h"

namespace kv::automation {

using channels::FreqSlotRef;

namespace {

/// The channel of an argument. Nothing becomes a null reference, which each member handles in its own way.
FreqSlotRef channelOf(_FreqSlot* chnl) {
    return chnl ? channelFromHost(chnl) : FreqSlotRef();
}

/// Returns a channel to the host, or Nothing.
HRESULT handOut(const FreqSlotRef& channel, _FreqSlot** value) {
    return channelToHost(channel.get(), value);
}

}  // namespace

HRESULT BandscopeControl::AddTXChnl(_FreqSlot* chnl, long* value) {
    return quietly(value, [&] { return scope_->AddTXChnl(channelOf(chnl)); });
}

HRESULT BandscopeControl::AddRXChnl(_FreqSlot* chnl, long* value) {
    return quietly(value, [&] { return scope_->AddRXChnl(channelOf(chnl)); });
}

HRESULT BandscopeControl::GetTXChnl(long i, _FreqSlot** value) {
    if (!value)
        return E_POINTER;
    *value = nullptr;
    return member([&] { return handOut(scope_->GetTXChnl(i), value); });
}

HRESULT BandscopeControl::GetRXChnl(long i, _FreqSlot** value) {
    if (!value)
        return E_POINTER;
    *value = nullptr;
    return member([&] { return handOut(scope_->GetRXChnl(i), value); });
}

HRESULT BandscopeControl::get_dTXFreqMin(double* value) {
    return quietly(value, [&] { return scope_->extremes().dTXFreqMin; });
}

HRESULT BandscopeControl::get_dTXFreqMax(double* value) {
    return quietly(value, [&] { return scope_->extremes().dTXFreqMax; });
}

HRESULT BandscopeControl::get_dRXFreqMin(double* value) {
    return quietly(value, [&] { return scope_->extremes().dRXFreqMin; });
}

HRESULT BandscopeControl::get_dRXFreqMax(double* value) {
    return quietly(value, [&] { return scope_->extremes().dRXFreqMax; });
}

HRESULT BandscopeControl::get_dTXPwrDBMMin(double* value) {
    return quietly(value, [&] { return scope_->extremes().dTXPwrDBMMin; });
}

HRESULT BandscopeControl::get_dTXPwrDBMMax(double* value) {
    return quietly(value, [&] { return scope_->extremes().dTXPwrDBMMax; });
}

HRESULT BandscopeControl::get_NumTX(long* value) {
    return quietly(value, [&] { return scope_->NumTX(); });
}

HRESULT BandscopeControl::get_NumRX(long* value) {
    return quietly(value, [&] { return scope_->NumRX(); });
}

HRESULT BandscopeControl::get_dFreqMin(double* value) {
    return quietly(value, [&] { return scope_->extremes().dFreqMin; });
}

HRESULT BandscopeControl::get_dFreqMax(double* value) {
    return quietly(value, [&] { return scope_->extremes().dFreqMax; });
}

HRESULT BandscopeControl::get_dPwrMin(double* value) {
    return quietly(value, [&] { return scope_->extremes().dPwrMin; });
}

HRESULT BandscopeControl::get_dPwrMax(double* value) {
    return quietly(value, [&] { return scope_->extremes().dPwrMax; });
}

HRESULT BandscopeControl::DrawDisplay(VARIANT_BOOL* value) {
    return memberReturn(value, [&] { return scope_->DrawDisplay(); });
}

HRESULT BandscopeControl::put_bXLog(VARIANT_BOOL value) {
    return quietly([&] { scope_->setBXLog(com::boolFromIn(value)); });
}

HRESULT BandscopeControl::get_bXLog(VARIANT_BOOL* value) {
    return quietly(value, [&] { return scope_->bXLog(); });
}

HRESULT BandscopeControl::ReDrawChnl(_FreqSlot* chnl, VARIANT_BOOL* value) {
    // An error with one channel is ignored; the result is always True.
    const HRESULT result = quietly(value, [&] { return scope_->ReDrawChnl(channelOf(chnl)); });
    if (result == S_OK)
        *value = VARIANT_TRUE;
    return result;
}

HRESULT BandscopeControl::ClearDisplay() {
    return quietly([&] { scope_->ClearDisplay(); });
}

HRESULT BandscopeControl::ClearDisplayLabels() {
    return quietly([&] { scope_->ClearDisplayLabels(); });
}

HRESULT BandscopeControl::ClearAllChnls() {
    return quietly([&] { scope_->ClearAllChnls(); });
}

HRESULT BandscopeControl::ClearTXChnls() {
    return quietly([&] { scope_->ClearTXChnls(); });
}

HRESULT BandscopeControl::ClearRXChnls() {
    return quietly([&] { scope_->ClearRXChnls(); });
}

HRESULT BandscopeControl::put_nGridX(short value) {
    return quietly([&] { scope_->setNGridX(value); });
}

HRESULT BandscopeControl::get_nGridX(short* value) {
    return quietly(value, [&] { return scope_->nGridX(); });
}

HRESULT BandscopeControl::get_DisplayCenterFreq(double* value) {
    return quietly(value, [&] { return scope_->DisplayCenterFreq(); });
}

HRESULT BandscopeControl::put_DisplayCenterFreq(double value) {
    return quietly([&] { scope_->setDisplayCenterFreq(value); });
}

HRESULT BandscopeControl::get_DisplayMinFreq(double* value) {
    return quietly(value, [&] { return scope_->DisplayMinFreq(); });
}

HRESULT BandscopeControl::get_DisplayMaxFreq(double* value) {
    return quietly(value, [&] { return scope_->DisplayMaxFreq(); });
}

HRESULT BandscopeControl::put_DisplayMinPwr(double value) {
    return quietly([&] { scope_->setDisplayMinPwr(value); });
}

HRESULT BandscopeControl::get_DisplayMinPwr(double* value) {
    return quietly(value, [&] { return scope_->DisplayMinPwr(); });
}

HRESULT BandscopeControl::put_DisplayMaxPwr(double value) {
    return quietly([&] { scope_->setDisplayMaxPwr(value); });
}

HRESULT BandscopeControl::get_DisplayMaxPwr(double* value) {
    return quietly(value, [&] { return scope_->DisplayMaxPwr(); });
}

HRESULT BandscopeControl::put_GridColor(OLE_COLOR value) {
    return quietly([&] { scope_->setGridColor(value); });
}

HRESULT BandscopeControl::get_GridColor(OLE_COLOR* value) {
    return quietly(value, [&] { return scope_->GridColor(); });
}

HRESULT BandscopeControl::put_FreqEndBuffer(double value) {
    return quietly([&] { scope_->setFreqEndBuffer(value); });
}

HRESULT BandscopeControl::get_FreqEndBuffer(double* value) {
    return quietly(value, [&] { return scope_->FreqEndBuffer(); });
}

HRESULT BandscopeControl::ReScaleChannels(VARIANT_BOOL* value) {
    return memberReturn(value, [&] { return scope_->ReScaleChannels(); });
}

HRESULT BandscopeControl::DrawInitialDisplay() {
    return member([&] { scope_->DrawInitialDisplay(); });
}

HRESULT BandscopeControl::JustDrawIt() {
    return member([&] { scope_->JustDrawIt(); });
}

HRESULT BandscopeControl::DrawAll() {
    return member([&] { scope_->DrawAll(); });
}

HRESULT BandscopeControl::RescaleAll() {
    return member([&] { scope_->RescaleAll(); });
}

HRESULT BandscopeControl::nFindMatchRX(_FreqSlot* chnl, long* value) {
    const HRESULT result = memberReturn(value, [&] { return scope_->nFindMatchRX(channelOf(chnl)); });
    if (result == E_POINTER)
        return result;
    // A channel that cannot be read matches no other.
    if (FAILED(result))
        *value = channels::kInvalid;
    return S_OK;
}

HRESULT BandscopeControl::get_MinHgt(short* value) {
    return quietly(value, [&] { return scope_->MinHgt(); });
}

HRESULT BandscopeControl::get_MinWid(short* value) {
    return quietly(value, [&] { return scope_->MinWid(); });
}

HRESULT BandscopeControl::put_CursorVal(double value) {
    return quietly([&] { scope_->setCursorVal(value); });
}

HRESULT BandscopeControl::get_CursorVal(double* value) {
    return quietly(value, [&] { return scope_->CursorVal(); });
}

HRESULT BandscopeControl::put_lCursorColor(OLE_COLOR value) {
    return quietly([&] { scope_->setLCursorColor(value); });
}

HRESULT BandscopeControl::get_lCursorColor(OLE_COLOR* value) {
    return quietly(value, [&] { return scope_->lCursorColor(); });
}

HRESULT BandscopeControl::DisplayToBMP(double* dHgt, double* dWid, BSTR* sFName, BSTR* value) {
    if (!dHgt || !dWid)
        return E_POINTER;
    const HRESULT result = memberReturn(value, [&] {
        std::wstring name = sFName ? com::toWide(*sFName) : std::wstring();
        const std::wstring written = scope_->DisplayToBMP(*dHgt, *dWid, name);
        *dHgt = toHostTwips(*dHgt);
        *dWid = toHostTwips(*dWid);
        if (sFName) {
            com::Bstr used(name);
            std::swap(*sFName, *used.address());
        }
        return written;
    });
    // Hosts rely on this member to raise no error. If nothing was saved, or the name cannot be returned, the result is
    // empty.
    if (FAILED(result) && value) {
        *dHgt = *dWid = 0.0;
        return S_OK;
    }
    return result;
}

HRESULT BandscopeControl::CopyDisplayToClipboard() {
    return member([&] { scope_->CopyDisplayToClipboard(); });
}

HRESULT BandscopeControl::put_bMouseInfo(VARIANT_BOOL value) {
    return quietly([&] { scope_->setBMouseInfo(com::boolFromIn(value)); });
}

HRESULT BandscopeControl::put_bChkVisMouseInfo(VARIANT_BOOL value) {
    return quietly([&] { scope_->setBChkVisMouseInfo(com::boolFromIn(value)); });
}

HRESULT BandscopeControl::get_ShowAll(VARIANT_BOOL* value) {
    return quietly(value, [&] { return scope_->ShowAll(); });
}

HRESULT BandscopeControl::put_ShowAll(VARIANT_BOOL value) {
    return member([&] { scope_->setShowAll(com::boolFromIn(value)); });
}

HRESULT BandscopeControl::put_ShowAll_REPLACED_20070521_1637(VARIANT_BOOL value) {
    return put_ShowAll(value);
}

HRESULT BandscopeControl::put_bChkVisShowAll(VARIANT_BOOL /*value*/) {
    // Older versions had a check box to show or hide. Hosts that still set this property must not fail.
    return S_OK;
}

HRESULT BandscopeControl::get_bLoadingAll(VARIANT_BOOL* value) {
    return quietly(value, [&] { return scope_->bLoadingAll(); });
}

HRESULT BandscopeControl::put_bLoadingAll(VARIANT_BOOL value) {
    return quietly([&] { scope_->setBLoadingAll(com::boolFromIn(value)); });
}

HRESULT BandscopeControl::GetTXbyKey(BSTR sKey, _FreqSlot** value) {
    if (!value)
        return E_POINTER;
    *value = nullptr;
    return member([&] { return handOut(scope_->GetTXbyKey(com::toWide(sKey)), value); });
}

HRESULT BandscopeControl::GetRXbyKey(BSTR sKey, _FreqSlot** value) {
    if (!value)
        return E_POINTER;
    *value = nullptr;
    return member([&] { return handOut(scope_->GetRXbyKey(com::toWide(sKey)), value); });
}

HRESULT BandscopeControl::GetChnlByKey(BSTR sKey, _FreqSlot** value) {
    if (!value)
        return E_POINTER;
    *value = nullptr;
    return member([&] { return handOut(scope_->GetChnlByKey(com::toWide(sKey)), value); });
}

HRESULT BandscopeControl::Refresh() {
    return member([&] { scope_->Refresh(); });
}

HRESULT BandscopeControl::DrawByRange(double dFMin, double dFMax) {
    return member([&] { scope_->DrawByRange(dFMin, dFMax); });
}

HRESULT BandscopeControl::DrawNewCenterFreq() {
    return member([&] { scope_->DrawNewCenterFreq(); });
}

HRESULT BandscopeControl::RemoveChnlByKey(BSTR sID) {
    return member([&] { scope_->RemoveChnlByKey(com::toWide(sID)); });
}

HRESULT BandscopeControl::put_lColorLblBack(OLE_COLOR value) {
    return member([&] { scope_->setLColorLblBack(value); });
}

HRESULT BandscopeControl::put_lColorLblFore(OLE_COLOR value) {
    return member([&] { scope_->setLColorLblFore(value); });
}

HRESULT BandscopeControl::put_lColorSpecBack(OLE_COLOR value) {
    return member([&] { scope_->setLColorSpecBack(value); });
}

}  // namespace kv::automation
