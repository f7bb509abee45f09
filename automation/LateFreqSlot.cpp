#include "automation/LateFreqSlot.h"

#include "com/HostError.h"

namespace kv::automation {

namespace {

const wchar_t* const kNames[] = {
    L"dFreq",        L"dFreqAlt", L"dBW",        L"dFreqHi", L"dFreqLo",    L"dPwrDBM", L"sLabel",
    L"sFreqUnits",   L"sBWUnits", L"lColorLine", L"lColor",  L"nIMComps",   L"nIMComp", L"dIMCompFreq",
    L"sIMCompLabel", L"sKey",     L"bVisible",   L"bDrawn",  L"iFillStyle",
};

}  // namespace

HRESULT LateFreqSlot::QueryInterface(REFIID iid, void** object) {
    static_assert(std::size(kNames) == kNameCount);
    if (!object)
        return E_POINTER;
    if (iid == IID__FreqSlot) {
        *object = static_cast<_FreqSlot*>(this);
    } else if (iid == kIidChannelAccess) {
        *object = static_cast<IChannelAccess*>(this);
    } else {
        return object_->QueryInterface(iid, object);
    }
    AddRef();
    return S_OK;
}

ULONG LateFreqSlot::Release() {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0)
        delete this;
    return static_cast<ULONG>(left);
}

channels::ImComponent LateFreqSlot::imComponent(std::int32_t i) {
    const Index index = i;
    return {read(Name::nIMComp, VT_I2, index).iVal, read(Name::dIMCompFreq, VT_R8, index).dblVal,
            com::toWide(read(Name::sIMCompLabel, VT_BSTR, index).bstrVal)};
}

DISPID LateFreqSlot::idOf(Name name) {
    const auto place = static_cast<std::size_t>(name);
    const std::uint32_t bit = 1U << place;
    if (known_ & bit)
        return ids_[place];
    com::Bstr text(kNames[place]);
    LPOLESTR names = text.get();
    DISPID id = DISPID_UNKNOWN;
    HRESULT hr = object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    // Objects of some script engines implement the names only in IDispatchEx.
    if (hr == E_NOTIMPL && (extended_ || SUCCEEDED(object_.As(&extended_))))
        hr = extended_->GetDispID(text.get(), fdexNameCaseInsensitive, &id);
    if (FAILED(hr))
        com::throwHostError(hr);
    ids_[place] = id;
    known_ |= bit;
    return id;
}

void LateFreqSlot::invoke(DISPID id, WORD flags, DISPPARAMS& params, VARIANT* value) {
    EXCEPINFO exception{};
    const auto attempt = [&](WORD how) {
        UINT argError = 0;
        return extended_
                   ? extended_->InvokeEx(id, LOCALE_USER_DEFAULT, how, &params, value, &exception, nullptr)
                   : object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, how, &params, value, &exception, &argError);
    };
    HRESULT hr = attempt(flags);
    // Some engines take "method or property" as a method and reject it for plain data.
    if (FAILED(hr) && hr != DISP_E_EXCEPTION && (flags & DISPATCH_METHOD) != 0)
        hr = attempt(DISPATCH_PROPERTYGET);
    if (FAILED(hr))
        com::throwHostException(hr, exception);
}

com::Variant LateFreqSlot::read(Name name, VARTYPE type, Index index) {
    com::Variant argument(index.value_or(0));
    DISPPARAMS params{&argument, nullptr, index ? 1U : 0U, 0};
    com::Variant value;
    invoke(idOf(name), DISPATCH_METHOD | DISPATCH_PROPERTYGET, params, &value);
    // Numbers in texts have the same meaning on all systems, independent of the user's decimal separator.
    if (const HRESULT hr = com::coerce(value, value, type, LOCALE_INVARIANT); FAILED(hr))
        com::throwHostError(hr);
    return value;
}

void LateFreqSlot::write(Name name, com::Variant value, Index index) {
    com::Variant arguments[] = {std::move(value), com::Variant(index.value_or(0))};
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{arguments, &put, index ? 2U : 1U, 1};
    invoke(idOf(name), DISPATCH_PROPERTYPUT, params, nullptr);
}

}  // namespace kv::automation
