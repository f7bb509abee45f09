// Adding channels by name, as a script does it: one by one, and all in one call with an array. Counters:
//   times_single     a call with an array, compared with the single calls of the same run
#include <windows.h>

#include <oleauto.h>
#include <wrl/client.h>

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/Benchmarks.h"
#include "bench/Median.h"
#include "kvBandscope.h"

namespace kv::bench {

namespace {

using Microsoft::WRL::ComPtr;

constexpr int kRounds = 7;

void check(HRESULT hr, const char* what) {
    if (FAILED(hr))
        throw std::runtime_error(what);
}

ComPtr<IDispatch> make(REFCLSID classId) {
    static const HMODULE module = LoadLibraryW(L"kvBandscope.ocx");
    using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
    static const auto classObject =
        reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    ComPtr<IClassFactory> factory;
    ComPtr<IDispatch> object;
    check(classObject(classId, IID_PPV_ARGS(factory.GetAddressOf())), "class object");
    check(factory->CreateInstance(nullptr, IID_PPV_ARGS(object.GetAddressOf())), "object");
    return object;
}

VARIANT number(double value) {
    VARIANT result;
    VariantInit(&result);
    result.vt = VT_R8;
    result.dblVal = value;
    return result;
}

VARIANT color(std::uint32_t value) {
    VARIANT result;
    VariantInit(&result);
    result.vt = VT_I4;
    result.lVal = static_cast<LONG>(value);
    return result;
}

VARIANT text(const std::wstring& value) {
    VARIANT result;
    VariantInit(&result);
    result.vt = VT_BSTR;
    result.bstrVal = SysAllocStringLen(value.data(), static_cast<UINT>(value.size()));
    return result;
}

/// The columns of one channel, in the order of the array.
std::vector<VARIANT> cells(const Channel& channel, std::size_t number1) {
    return {text(Channel::key(number1)), text(channel.sLabel),  number(channel.dFreq),    number(channel.dBW),
            number(channel.dPwrDBM),     color(channel.lColor), color(channel.lColorLine)};
}

DISPID idOf(IDispatch& object, const wchar_t* name) {
    std::wstring writable = name;
    LPOLESTR names = writable.data();
    DISPID id = DISPID_UNKNOWN;
    check(object.GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id), "GetIDsOfNames");
    return id;
}

/// A script looks each name up at each call.
void invoke(IDispatch& object, const wchar_t* name, WORD flags, VARIANT& argument) {
    DISPID put = DISPID_PROPERTYPUT;
    const bool isPut = flags == DISPATCH_PROPERTYPUT || flags == DISPATCH_PROPERTYPUTREF;
    DISPPARAMS params{&argument, isPut ? &put : nullptr, 1, isPut ? 1U : 0U};
    VARIANT result;
    VariantInit(&result);
    check(object.Invoke(idOf(object, name), IID_NULL, LOCALE_USER_DEFAULT, flags, &params, isPut ? nullptr : &result,
                        nullptr, nullptr),
          "Invoke");
}

void addSingly(IDispatch& control, const ChannelSet& set) {
    static constexpr const wchar_t* kMembers[] = {L"sKey",    L"sLabel", L"dFreq",     L"dBW",
                                                  L"dPwrDBM", L"lColor", L"lColorLine"};
    for (std::size_t i = 0; i < set.channels.size(); ++i) {
        const ComPtr<IDispatch> slot = make(CLSID_FreqSlot);
        std::vector<VARIANT> values = cells(set.channels[i], i + 1);
        for (std::size_t member = 0; member < values.size(); ++member) {
            invoke(*slot.Get(), kMembers[member], DISPATCH_PROPERTYPUT, values[member]);
            VariantClear(&values[member]);
        }
        VARIANT argument;
        VariantInit(&argument);
        argument.vt = VT_DISPATCH;
        argument.pdispVal = slot.Get();
        invoke(control, L"AddTXChnl", DISPATCH_METHOD, argument);
    }
}

/// Filling the array is part of the step.
void addRows(IDispatch& view, const ChannelSet& set) {
    SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(set.channels.size()), 0}, {7, 0}};
    VARIANT rows;
    VariantInit(&rows);
    rows.vt = VT_ARRAY | VT_VARIANT;
    rows.parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
    if (!rows.parray)
        throw std::bad_alloc();
    for (std::size_t i = 0; i < set.channels.size(); ++i) {
        std::vector<VARIANT> values = cells(set.channels[i], i + 1);
        for (std::size_t column = 0; column < values.size(); ++column) {
            LONG at[] = {static_cast<LONG>(i), static_cast<LONG>(column)};
            check(SafeArrayPutElement(rows.parray, at, &values[column]), "SafeArrayPutElement");
            VariantClear(&values[column]);
        }
    }
    invoke(view, L"AddTXChannels", DISPATCH_METHOD, rows);
    VariantClear(&rows);
}

void addArray(benchmark::State& state, SetKind kind) {
    const ChannelSet& set = channelSet(kind, static_cast<std::size_t>(state.range(0)));
    ComPtr<_kvBandscope> control;
    check(make(CLSID_kvBandscope).As(&control), "control");
    const ComPtr<IDispatch> view = make(CLSID_View);
    VARIANT scope;
    VariantInit(&scope);
    scope.vt = VT_DISPATCH;
    scope.pdispVal = control.Get();
    invoke(*view.Get(), L"Scope", DISPATCH_PROPERTYPUTREF, scope);
    for (auto _ : state) {
        Times single;
        Times array;
        for (int round = 0; round < kRounds; ++round) {
            single.measure([&] { addSingly(*control.Get(), set); });
            control->ClearAllChnls();
            array.measure([&] { addRows(*view.Get(), set); });
            long added = 0;
            control->get_NumTX(&added);
            if (added != static_cast<long>(set.channels.size()))
                throw std::runtime_error("not all channels were added");
            control->ClearAllChnls();
        }
        state.SetIterationTime(array.median());
        state.counters["times_single"] = array.median() / single.median();
    }
}

}  // namespace

void enlistBatches() {
    for (const std::size_t count : {1'000U, 10'000U, 100'000U})
        enlist("AddArray", addArray, SetKind::Narrow, count)->Iterations(1);
}

}  // namespace kv::bench
