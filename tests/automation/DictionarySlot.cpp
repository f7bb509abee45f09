#include "tests/automation/DictionarySlot.h"

#include <algorithm>

namespace kv::test {

namespace {

// Numbers of its own, far from those of the type library.
constexpr DISPID kFirstId = 1000;

}  // namespace

ComPtr<DictionarySlot> DictionarySlot::create() {
    ComPtr<DictionarySlot> slot = adopt(new DictionarySlot);
    for (const wchar_t* name : {L"dFreq", L"dFreqAlt", L"dBW", L"dFreqHi", L"dFreqLo", L"dPwrDBM"})
        slot->values.emplace(name, 0.0);
    for (const wchar_t* name : {L"sLabel", L"sFreqUnits", L"sBWUnits", L"sKey"})
        slot->values.emplace(name, L"");
    for (const wchar_t* name : {L"lColorLine", L"lColor", L"nIMComps", L"iFillStyle"})
        slot->values.emplace(name, 0);
    slot->values.emplace(L"bVisible", true);
    slot->values.emplace(L"bDrawn", false);
    for (const wchar_t* name : {L"nIMComp", L"dIMCompFreq", L"sIMCompLabel"})
        slot->values.emplace(name, Var());
    return slot;
}

HRESULT DictionarySlot::QueryInterface(REFIID iid, void** object) {
    *object = nullptr;
    const bool isExtended = answersExtendedOnly && iid == __uuidof(IDispatchEx);
    if (iid != IID_IUnknown && iid != IID_IDispatch && !isExtended)
        return E_NOINTERFACE;
    *object = static_cast<IDispatchEx*>(this);
    AddRef();
    return S_OK;
}

ULONG DictionarySlot::Release() {
    const ULONG left = --references_;
    if (left == 0) {
        ++*destroyed;
        delete this;
    }
    return left;
}

HRESULT DictionarySlot::GetTypeInfoCount(UINT* count) {
    *count = 0;
    return S_OK;
}

HRESULT DictionarySlot::numberOf(const std::wstring& name, DISPID* id) {
    ++nameQuestions;
    *id = DISPID_UNKNOWN;
    if (!values.contains(name))
        return DISP_E_UNKNOWNNAME;
    auto found = std::find(names_.begin(), names_.end(), name);
    if (found == names_.end())
        found = names_.insert(names_.end(), name);
    *id = kFirstId + static_cast<DISPID>(found - names_.begin());
    return S_OK;
}

HRESULT DictionarySlot::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    if (answersExtendedOnly)
        return E_NOTIMPL;
    return count == 1 ? numberOf(names[0], ids) : DISP_E_UNKNOWNNAME;
}

HRESULT DictionarySlot::GetDispID(BSTR name, DWORD, DISPID* id) {
    return numberOf(name, id);
}

HRESULT DictionarySlot::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                               EXCEPINFO* exception, UINT*) {
    return answersExtendedOnly ? E_NOTIMPL : invokeMember(id, flags, params, result, exception);
}

HRESULT DictionarySlot::invokeMember(DISPID id, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception) {
    const auto place = static_cast<std::size_t>(id - kFirstId);
    if (place >= names_.size())
        return DISP_E_MEMBERNOTFOUND;
    std::wstring name = names_[place];
    if (const auto failure = failing.find(name); failure != failing.end()) {
        exception->scode = failure->second;
        exception->bstrDescription = SysAllocString(L"the host's own trouble");
        return DISP_E_EXCEPTION;
    }
    const bool isPut = (flags & DISPATCH_PROPERTYPUT) != 0;
    if (isPut && (params->cNamedArgs != 1 || params->rgdispidNamedArgs[0] != DISPID_PROPERTYPUT))
        return DISP_E_PARAMNOTFOUND;
    if (params->cArgs == (isPut ? 2U : 1U))
        name += L"(" + std::to_wstring(params->rgvarg[isPut ? 1 : 0].lVal) + L")";
    if (isPut) {
        Var copy;
        VariantCopy(&copy, &params->rgvarg[0]);
        values[name] = copy;
        return S_OK;
    }
    const auto value = values.find(name);
    if (value == values.end())
        return DISP_E_BADINDEX;
    return VariantCopy(result, &value->second);
}

}  // namespace kv::test
