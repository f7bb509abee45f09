#include "com/DispatchCall.h"

#include <wrl/client.h>

#include <cstring>
#include <utility>

namespace kv::com {

namespace {

using Microsoft::WRL::ComPtr;

constexpr VARTYPE kVariantReference = VT_BYREF | VT_VARIANT;

/// The variant with the value. Scripts pass every variable as a reference to a variant.
template <class V>
V* readThrough(V* given) noexcept {
    while (given && given->vt == kVariantReference)
        given = given->pvarVal;
    return given;
}

bool isLeftOut(const VARIANT& value) noexcept {
    return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

bool isVariant(const Parameter& parameter) noexcept {
    return parameter.type == VT_VARIANT && !parameter.byReference;
}

/// The value of an argument that is left out: 0, the empty text, or a variant that says so.
Variant blank(VARTYPE type) {
    if (type == VT_VARIANT)
        return Variant::missing();
    if (type == VT_BSTR)
        return Variant(L"");
    Variant result;
    std::memset(static_cast<VARIANT*>(&result), 0, sizeof(VARIANT));
    result.vt = type;
    return result;
}

/// An object for a parameter that has a converter. A null pointer, Nothing and a script's null become NULL; the method
/// itself reports that the object is missing.
HRESULT toObject(const VARIANT& given, const ObjectConverter& converter, Variant& value) {
    IUnknown* object = nullptr;
    switch (given.vt) {
        case VT_DISPATCH:
        case VT_UNKNOWN:
            object = given.punkVal;
            break;
        case VT_DISPATCH | VT_BYREF:
        case VT_UNKNOWN | VT_BYREF:
            object = *given.ppunkVal;
            break;
        case VT_NULL:
            break;
        default:
            return DISP_E_TYPEMISMATCH;
    }
    value = Variant(static_cast<IDispatch*>(nullptr));
    return object ? converter.convert(object, &value.pdispVal) : S_OK;
}

/// Size in bytes of a value of a numeric type; 0 for all other types.
std::size_t plainSize(VARTYPE type) noexcept {
    switch (type) {
        case VT_I1:
        case VT_UI1:
            return 1;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            return 2;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_R4:
        case VT_ERROR:
            return 4;
        case VT_R8:
        case VT_CY:
        case VT_DATE:
        case VT_I8:
        case VT_UI8:
            return 8;
        default:
            return 0;
    }
}

HRESULT assign(VARIANT& target, Variant value) noexcept {
    if (const HRESULT hr = VariantClear(&target); FAILED(hr))
        return hr;
    value.moveTo(&target);
    return S_OK;
}

/// Stores a result in the caller's variable, converted to the variable's type if it has one. Does nothing if the
/// argument is not a variable.
HRESULT storeResult(VARIANT* given, const Variant& value, LCID locale) {
    if (!(given->vt & VT_BYREF))
        return S_OK;
    VARIANT* target = readThrough(given);
    if (!target)
        return S_OK;
    if (!(target->vt & VT_BYREF))
        return assign(*target, value);
    const auto type = static_cast<VARTYPE>(target->vt & ~VT_BYREF);
    Variant converted;
    if (const HRESULT hr = coerce(converted, value, type, locale); FAILED(hr))
        return hr;
    if (type == VT_BSTR) {
        std::swap(*target->pbstrVal, converted.bstrVal);
    } else if (type == VT_DECIMAL) {
        // In a variant, the type field shares its memory with the first two bytes of the number. In a variable, these
        // bytes are reserved and must be 0.
        *target->pdecVal = converted.decVal;
        target->pdecVal->wReserved = 0;
    } else {
        std::memcpy(target->byref, &converted.byref, plainSize(type));
    }
    return S_OK;
}

HRESULT describeFailure(HRESULT failed, EXCEPINFO* exception) noexcept {
    ComPtr<IErrorInfo> info;
    GetErrorInfo(0, info.GetAddressOf());
    if (!exception)
        return DISP_E_EXCEPTION;
    *exception = EXCEPINFO{};
    exception->scode = failed;
    if (info) {
        info->GetSource(&exception->bstrSource);
        info->GetDescription(&exception->bstrDescription);
        info->GetHelpFile(&exception->bstrHelpFile);
        info->GetHelpContext(&exception->dwHelpContext);
    }
    return DISP_E_EXCEPTION;
}

/// A color as a signed number, because some hosts have no unsigned ones, and an object as the IDispatch that it returns
/// itself: that of a wrapped object is the host's own.
HRESULT publish(Variant& result) noexcept {
    if (result.vt == VT_UI4)
        result.vt = VT_I4;
    if (result.vt != VT_DISPATCH || !result.pdispVal)
        return S_OK;
    ComPtr<IDispatch> own;
    const HRESULT hr = result.pdispVal->QueryInterface(IID_PPV_ARGS(own.GetAddressOf()));
    if (SUCCEEDED(hr))
        result = Variant(own.Get());
    return hr;
}

}  // namespace

HRESULT DispatchCall::run(void* self) {
    HRESULT hr = match();
    if (SUCCEEDED(hr))
        hr = convert();
    Variant result;
    if (SUCCEEDED(hr))
        hr = call(self, result);
    if (SUCCEEDED(hr))
        hr = writeBack();
    if (SUCCEEDED(hr))
        hr = publish(result);
    if (request_.result) {
        VariantInit(request_.result);
        if (SUCCEEDED(hr))
            result.moveTo(request_.result);
    }
    return hr;
}

HRESULT DispatchCall::badArgument(UINT index, HRESULT hr) const noexcept {
    if (request_.argError)
        *request_.argError = index;
    return hr;
}

/// Which argument is for which parameter: those with a name stand first, the others follow from last to first.
HRESULT DispatchCall::match() {
    const DISPPARAMS& params = *request_.params;
    const bool isPut = (member_.kind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) != 0;
    if (params.cNamedArgs > params.cArgs || params.cArgs > member_.parameters.size())
        return DISP_E_BADPARAMCOUNT;
    if (isPut && (params.cNamedArgs == 0 || params.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT))
        return DISP_E_PARAMNOTFOUND;
    const UINT unnamed = params.cArgs - params.cNamedArgs;
    for (UINT i = 0; i < unnamed; ++i) {
        const UINT index = params.cArgs - 1 - i;
        arguments_[i].given = &params.rgvarg[index];
        arguments_[i].index = index;
    }
    for (UINT index = 0; index < params.cNamedArgs; ++index)
        if (const HRESULT hr = matchNamed(params.rgdispidNamedArgs[index], index); FAILED(hr))
            return hr;
    return S_OK;
}

HRESULT DispatchCall::matchNamed(DISPID parameter, UINT index) {
    std::size_t position = static_cast<std::size_t>(parameter);
    if (parameter == DISPID_PROPERTYPUT)
        position = arguments_.size() - 1;
    else if (parameter < 0 || position >= arguments_.size())
        return badArgument(index, DISP_E_PARAMNOTFOUND);
    if (arguments_[position].given)
        return badArgument(index, DISP_E_BADPARAMCOUNT);
    arguments_[position].given = &request_.params->rgvarg[index];
    arguments_[position].index = index;
    return S_OK;
}

HRESULT DispatchCall::convert() {
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
        const Parameter& parameter = member_.parameters[i];
        if (!arguments_[i].given && !parameter.optional)
            return DISP_E_BADPARAMCOUNT;
        const HRESULT hr = convertOne(parameter, arguments_[i]);
        if (FAILED(hr))
            return badArgument(arguments_[i].index, hr);
    }
    return S_OK;
}

HRESULT DispatchCall::convertOne(const Parameter& parameter, Argument& argument) const {
    const VARIANT* given = readThrough(argument.given);
    if (!given || isLeftOut(*given)) {
        if (!parameter.optional)
            return DISP_E_PARAMNOTOPTIONAL;
        argument.value = blank(parameter.type);
        return S_OK;
    }
    // A variant is passed on as it is. A copy of it would copy its array.
    if (isVariant(parameter))
        return S_OK;
    if (converter_ && parameter.interfaceId == *converter_->parameterType)
        return toObject(*given, *converter_, argument.value);
    if (parameter.type == VT_DISPATCH && given->vt == VT_NULL) {
        argument.value = Variant(static_cast<IDispatch*>(nullptr));
        return S_OK;
    }
    if (parameter.byReference && (given->vt & VT_BYREF)) {
        // If the result cannot be stored later, the call must fail before the method has run.
        const auto type = static_cast<VARTYPE>(given->vt & ~VT_BYREF);
        if (type != VT_BSTR && type != VT_DECIMAL && plainSize(type) == 0)
            return DISP_E_TYPEMISMATCH;
    }
    return coerce(argument.value, *given, parameter.type, request_.locale);
}

/// Fills in an argument as the method takes it, and returns its type. The value stays with its owner.
VARTYPE DispatchCall::pass(std::size_t i, VARIANT& passed) {
    Argument& argument = arguments_[i];
    const Parameter& parameter = member_.parameters[i];
    if (isVariant(parameter)) {
        const VARIANT* given = readThrough(argument.given);
        passed = given ? *given : static_cast<const VARIANT&>(argument.value);
        return VT_VARIANT;
    }
    passed = argument.value;
    if (parameter.byReference) {
        passed.vt = static_cast<VARTYPE>(VT_BYREF | argument.value.vt);
        passed.byref = &argument.value.byref;
    }
    return passed.vt;
}

HRESULT DispatchCall::call(void* self, Variant& result) {
    const std::size_t count = arguments_.size();
    const std::size_t all = count + (member_.result != VT_EMPTY ? 1U : 0U);
    PerArgument<VARTYPE> types(all);
    PerArgument<VARIANT> passed(all);
    PerArgument<VARIANT*> pointers(all);
    for (std::size_t i = 0; i < count; ++i) {
        types[i] = pass(i, passed[i]);
        pointers[i] = &passed[i];
    }
    if (member_.result != VT_EMPTY) {
        const bool isVariant = member_.result == VT_VARIANT;
        std::memset(static_cast<VARIANT*>(&result), 0, sizeof(VARIANT));
        result.vt = isVariant ? static_cast<VARTYPE>(VT_EMPTY) : member_.result;
        passed[count].vt = static_cast<VARTYPE>(VT_BYREF | member_.result);
        passed[count].byref = isVariant ? static_cast<void*>(&result) : &result.byref;
        types[count] = passed[count].vt;
        pointers[count] = &passed[count];
    }
    // Error information of an earlier failure must not be reported for this one.
    SetErrorInfo(0, nullptr);
    Variant returned;
    const HRESULT hr = DispCallFunc(self, member_.vtableOffset, CC_STDCALL, VT_ERROR, static_cast<UINT>(all),
                                    types.data(), pointers.data(), &returned);
    if (FAILED(hr))
        return hr;
    return FAILED(returned.scode) ? describeFailure(returned.scode, request_.exception) : S_OK;
}

HRESULT DispatchCall::writeBack() {
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
        Argument& argument = arguments_[i];
        if (!member_.parameters[i].byReference || !argument.given)
            continue;
        const VARIANT* given = readThrough(argument.given);
        if (given && isLeftOut(*given))
            continue;
        if (const HRESULT hr = storeResult(argument.given, argument.value, request_.locale); FAILED(hr))
            return badArgument(argument.index, hr);
    }
    return S_OK;
}

}  // namespace kv::com
