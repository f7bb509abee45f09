// The class FreqSlot as early and late bound hosts use it.
#include <gmock/gmock.h>

#include "tests/automation/Errors.h"
#include "tests/automation/Module.h"

namespace kv::test {
namespace {

class FreqSlotTest : public testing::Test {
  protected:
    const ComPtr<_FreqSlot> slot = createInstance<_FreqSlot>(CLSID_FreqSlot);
    void SetUp() override { ASSERT_TRUE(slot); }

    template <class Value>
    Value value(HRESULT (STDMETHODCALLTYPE _FreqSlot::*getter)(Value*)) const {
        Value result{};
        EXPECT_EQ((slot.Get()->*getter)(&result), S_OK);
        return result;
    }
    std::wstring text(HRESULT (STDMETHODCALLTYPE _FreqSlot::*getter)(BSTR*)) const {
        Text result;
        EXPECT_EQ((slot.Get()->*getter)(result.put()), S_OK);
        EXPECT_NE(result.get(), nullptr);
        return result.str();
    }
};

TEST_F(FreqSlotTest, StartsVisibleAndOtherwiseEmpty) {
    EXPECT_EQ(value(&_FreqSlot::get_bVisible), VARIANT_TRUE);
    EXPECT_EQ(value(&_FreqSlot::get_bDrawn), VARIANT_FALSE);
    for (const auto getter : {&_FreqSlot::get_dFreq, &_FreqSlot::get_dFreqAlt, &_FreqSlot::get_dBW,
                              &_FreqSlot::get_dFreqHi, &_FreqSlot::get_dFreqLo, &_FreqSlot::get_dPwrDBM})
        EXPECT_EQ(value(getter), 0.0);
    for (const auto getter :
         {&_FreqSlot::get_sLabel, &_FreqSlot::get_sFreqUnits, &_FreqSlot::get_sBWUnits, &_FreqSlot::get_sKey})
        EXPECT_EQ(text(getter), L"");
    EXPECT_EQ(value(&_FreqSlot::get_lColor), 0U);
    EXPECT_EQ(value(&_FreqSlot::get_lColorLine), 0U);
    EXPECT_EQ(value(&_FreqSlot::get_nIMComps), 0);
    EXPECT_EQ(value(&_FreqSlot::get_iFillStyle), 0);
}

TEST_F(FreqSlotTest, KeepsNumbers) {
    struct Property {
        HRESULT (STDMETHODCALLTYPE _FreqSlot::*put)(double);
        HRESULT (STDMETHODCALLTYPE _FreqSlot::*get)(double*);
    };
    const Property properties[] = {
        {&_FreqSlot::put_dFreq, &_FreqSlot::get_dFreq},     {&_FreqSlot::put_dFreqAlt, &_FreqSlot::get_dFreqAlt},
        {&_FreqSlot::put_dBW, &_FreqSlot::get_dBW},         {&_FreqSlot::put_dFreqHi, &_FreqSlot::get_dFreqHi},
        {&_FreqSlot::put_dFreqLo, &_FreqSlot::get_dFreqLo}, {&_FreqSlot::put_dPwrDBM, &_FreqSlot::get_dPwrDBM},
    };
    double next = 100.25;
    for (const Property& p : properties)
        EXPECT_EQ((slot.Get()->*p.put)(next++), S_OK);
    next = 100.25;
    for (const Property& p : properties)
        EXPECT_EQ(value(p.get), next++);
}

TEST_F(FreqSlotTest, KeepsTextsWithZerosInside) {
    struct Property {
        HRESULT (STDMETHODCALLTYPE _FreqSlot::*put)(BSTR);
        HRESULT (STDMETHODCALLTYPE _FreqSlot::*get)(BSTR*);
    };
    const Property properties[] = {
        {&_FreqSlot::put_sLabel, &_FreqSlot::get_sLabel},
        {&_FreqSlot::put_sFreqUnits, &_FreqSlot::get_sFreqUnits},
        {&_FreqSlot::put_sBWUnits, &_FreqSlot::get_sBWUnits},
        {&_FreqSlot::put_sKey, &_FreqSlot::get_sKey},
    };
    const std::wstring stem(L"a\0b \x00e9\x4e00", 6);
    for (std::size_t i = 0; i < std::size(properties); ++i)
        EXPECT_EQ((slot.Get()->*properties[i].put)(Text(stem + std::to_wstring(i)).get()), S_OK);
    for (std::size_t i = 0; i < std::size(properties); ++i)
        EXPECT_EQ(text(properties[i].get), stem + std::to_wstring(i));
    EXPECT_EQ(slot->put_sKey(nullptr), S_OK);
    EXPECT_EQ(text(&_FreqSlot::get_sKey), L"");
}

TEST_F(FreqSlotTest, KeepsColorsFlagsAndStyle) {
    EXPECT_EQ(slot->put_lColor(0x8000000FU), S_OK);
    EXPECT_EQ(slot->put_lColorLine(0x00FF8040U), S_OK);
    EXPECT_EQ(slot->put_bVisible(VARIANT_FALSE), S_OK);
    EXPECT_EQ(slot->put_bDrawn(1), S_OK);
    EXPECT_EQ(slot->put_iFillStyle(-7), S_OK);
    EXPECT_EQ(value(&_FreqSlot::get_lColor), 0x8000000FU);
    EXPECT_EQ(value(&_FreqSlot::get_lColorLine), 0x00FF8040U);
    EXPECT_EQ(value(&_FreqSlot::get_bVisible), VARIANT_FALSE);
    EXPECT_EQ(value(&_FreqSlot::get_bDrawn), VARIANT_TRUE);
    EXPECT_EQ(value(&_FreqSlot::get_iFillStyle), -7);
}

TEST_F(FreqSlotTest, SizesItsComponents) {
    EXPECT_EQ(slot->put_nIMComps(2), S_OK);
    EXPECT_EQ(slot->put_nIMComp(1, -3), S_OK);
    EXPECT_EQ(slot->put_dIMCompFreq(1, 451.0125), S_OK);
    EXPECT_EQ(slot->put_sIMCompLabel(1, Text(L"Site B").get()), S_OK);
    EXPECT_EQ(slot->put_nIMComps(3), S_OK);
    EXPECT_EQ(value(&_FreqSlot::get_nIMComps), 3);
    short coefficient = 0;
    double frequency = 0.0;
    Text label;
    EXPECT_EQ(slot->get_nIMComp(1, &coefficient), S_OK);
    EXPECT_EQ(slot->get_dIMCompFreq(1, &frequency), S_OK);
    EXPECT_EQ(slot->get_sIMCompLabel(1, label.put()), S_OK);
    EXPECT_EQ(coefficient, -3);
    EXPECT_EQ(frequency, 451.0125);
    EXPECT_EQ(label.str(), L"Site B");
    EXPECT_EQ(slot->get_nIMComp(2, &coefficient), S_OK);
    EXPECT_EQ(coefficient, 0);
}

TEST_F(FreqSlotTest, AnIndexOutsideTheComponentsIsError9) {
    EXPECT_EQ(slot->put_nIMComps(2), S_OK);
    short coefficient = 5;
    GUID iid{};
    EXPECT_EQ(slot->get_nIMComp(2, &coefficient), kError9);
    EXPECT_EQ(coefficient, 0);
    EXPECT_EQ(takeErrorText(&iid), L"Subscript out of range");
    EXPECT_TRUE(iid == IID__FreqSlot);
    EXPECT_EQ(slot->put_nIMComp(-1, 1), kError9);
    double frequency = 5.0;
    EXPECT_EQ(slot->get_dIMCompFreq(-1, &frequency), kError9);
    EXPECT_EQ(frequency, 0.0);
    EXPECT_EQ(slot->put_dIMCompFreq(2, 1.0), kError9);
    BSTR label = reinterpret_cast<BSTR>(&frequency);
    EXPECT_EQ(slot->get_sIMCompLabel(2147483647, &label), kError9);
    EXPECT_EQ(label, nullptr);
    EXPECT_EQ(slot->put_sIMCompLabel(2, nullptr), kError9);
    EXPECT_EQ(slot->put_nIMComps(-1), kError5);
    EXPECT_EQ(value(&_FreqSlot::get_nIMComps), 2);
}

TEST_F(FreqSlotTest, NullOutParametersAreRefused) {
    EXPECT_EQ(slot->get_dFreq(nullptr), E_POINTER);
    EXPECT_EQ(slot->get_sKey(nullptr), E_POINTER);
    EXPECT_EQ(slot->get_nIMComps(nullptr), E_POINTER);
    EXPECT_EQ(slot->get_nIMComp(0, nullptr), E_POINTER);
    EXPECT_EQ(slot->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(FreqSlotTest, IsOneObjectThroughAllItsInterfaces) {
    const IID* const interfaces[] = {&IID_IUnknown, &IID_IDispatch, &IID__FreqSlot, &IID_ISupportErrorInfo,
                                     &IID_IProvideClassInfo};
    for (const IID* from : interfaces) {
        ComPtr<IUnknown> start;
        ASSERT_EQ(slot->QueryInterface(*from, reinterpret_cast<void**>(start.GetAddressOf())), S_OK);
        EXPECT_TRUE(sameObject(slot.Get(), start.Get()));
        for (const IID* to : interfaces) {
            ComPtr<IUnknown> end;
            EXPECT_EQ(start->QueryInterface(*to, reinterpret_cast<void**>(end.GetAddressOf())), S_OK);
        }
    }
    void* none = &none;
    EXPECT_EQ(slot->QueryInterface(IID__kvBandscope, &none), E_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
    const ComPtr<_FreqSlot> another = createInstance<_FreqSlot>(CLSID_FreqSlot);
    EXPECT_FALSE(sameObject(slot.Get(), another.Get()));
}

TEST_F(FreqSlotTest, ReportsItsClassAndItsErrors) {
    ComPtr<IProvideClassInfo> provide;
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(slot.As(&provide), S_OK);
    ASSERT_EQ(provide->GetClassInfo(info.GetAddressOf()), S_OK);
    TYPEATTR* attr = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attr), S_OK);
    EXPECT_TRUE(attr->guid == CLSID_FreqSlot);
    EXPECT_EQ(attr->typekind, TKIND_COCLASS);
    info->ReleaseTypeAttr(attr);
    ComPtr<ISupportErrorInfo> support;
    ASSERT_EQ(slot.As(&support), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__FreqSlot), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IProvideClassInfo), S_FALSE);
}

TEST_F(FreqSlotTest, KeepsPropertiesSetByName) {
    const std::pair<const wchar_t*, Var> values[] = {
        {L"dFreq", 1.25},        {L"dFreqAlt", 2.25},      {L"dBW", 12.5},        {L"dFreqHi", 4.25},
        {L"dFreqLo", 5.25},      {L"dPwrDBM", -6.25},      {L"sLabel", L"label"}, {L"sFreqUnits", L"MHz"},
        {L"sBWUnits", L"KHz"},   {L"sKey", L"TX1"},        {L"bVisible", false},  {L"bDrawn", true},
        {L"lColorLine", 0xFF00}, {L"lColor", -2147483633},
    };
    for (const auto& [name, value] : values)
        EXPECT_EQ(put(slot.Get(), name, {value}).hr, S_OK) << std::wstring(name).c_str();
    for (const auto& [name, value] : values) {
        const Outcome outcome = get(slot.Get(), name);
        EXPECT_EQ(outcome.hr, S_OK);
        EXPECT_EQ(outcome.result.vt, value.vt) << name;
        EXPECT_EQ(VarCmp(const_cast<Var*>(&outcome.result), const_cast<Var*>(&value), LOCALE_INVARIANT, 0),
                  static_cast<HRESULT>(VARCMP_EQ));
    }
    EXPECT_EQ(put(slot.Get(), L"iFillStyle", {5}).hr, S_OK);
    const Outcome style = get(slot.Get(), L"IFILLSTYLE");
    EXPECT_EQ(style.result.vt, VT_I2);
    EXPECT_EQ(style.result.iVal, 5);
    EXPECT_EQ(value(&_FreqSlot::get_lColor), 0x8000000FU);
}

TEST_F(FreqSlotTest, ComponentsByName) {
    EXPECT_EQ(put(slot.Get(), L"nIMComps", {2}).hr, S_OK);
    EXPECT_EQ(put(slot.Get(), L"nIMComp", {1, -2}).hr, S_OK);
    EXPECT_EQ(put(slot.Get(), L"dIMCompFreq", {L"1", 151.5}).hr, S_OK);
    EXPECT_EQ(put(slot.Get(), L"sIMCompLabel", {1.0, L"TX 3"}).hr, S_OK);
    EXPECT_EQ(get(slot.Get(), L"nIMComp", {1}).result.iVal, -2);
    EXPECT_EQ(get(slot.Get(), L"dIMCompFreq", {1}).result.dblVal, 151.5);
    EXPECT_EQ(get(slot.Get(), L"sIMCompLabel", {1}).result.text(), L"TX 3");
    const Outcome failed = get(slot.Get(), L"sIMCompLabel", {2});
    EXPECT_EQ(failed.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(failed.errorCode, kError9);
    EXPECT_EQ(failed.errorNumber, 0);
    EXPECT_EQ(failed.description, L"Subscript out of range");
    EXPECT_EQ(failed.source, L"kvBandscope.FreqSlot");
    EXPECT_EQ(failed.result.vt, VT_EMPTY);
}

TEST_F(FreqSlotTest, ReadsValuesFromVariables) {
    Var inner(433.5);
    EXPECT_EQ(put(slot.Get(), L"dFreq", {Var::variable(inner)}).hr, S_OK);
    EXPECT_EQ(value(&_FreqSlot::get_dFreq), 433.5);
    Var outer = Var::variable(inner);
    inner = Var(L"17");
    EXPECT_EQ(put(slot.Get(), L"dFreq", {Var::variable(outer)}).hr, S_OK);
    EXPECT_EQ(value(&_FreqSlot::get_dFreq), 17.0);
    short number = 4;
    EXPECT_EQ(put(slot.Get(), L"dFreq", {Var::typed(VT_BYREF | VT_I2, &number)}).hr, S_OK);
    EXPECT_EQ(value(&_FreqSlot::get_dFreq), 4.0);
    Var empty;
    EXPECT_EQ(put(slot.Get(), L"dFreq", {Var::variable(empty)}).hr, S_OK);
    EXPECT_EQ(value(&_FreqSlot::get_dFreq), 0.0);
}

TEST_F(FreqSlotTest, WrongCallsByName) {
    EXPECT_EQ(idOf(slot.Get(), L"dFrequency"), DISPID_UNKNOWN);
    std::wstring name = L"dFrequency";
    LPOLESTR names = name.data();
    DISPID id = 0;
    EXPECT_EQ(slot->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(slot->GetIDsOfNames(IID_IDispatch, &names, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(invoke(slot.Get(), 99, DISPATCH_PROPERTYGET, {}).hr, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(slot.Get(), 1, DISPATCH_METHOD, {}).hr, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(get(slot.Get(), L"dFreq", {1}).hr, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(get(slot.Get(), L"nIMComp").hr, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(invoke(slot.Get(), 1, DISPATCH_PROPERTYPUT, {1.0}).hr, DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(put(slot.Get(), L"iFillStyle", {40000}).hr, DISP_E_OVERFLOW);
    Outcome wrong = put(slot.Get(), L"dFreq", {L"much"});
    EXPECT_EQ(wrong.hr, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong.argError, 0U);
    EXPECT_EQ(put(slot.Get(), L"nIMComps", {1}).hr, S_OK);
    wrong = put(slot.Get(), L"nIMComp", {L"first", 1});
    EXPECT_EQ(wrong.hr, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong.argError, 1U);
    wrong = put(slot.Get(), L"dFreq", {Var::missing()});
    EXPECT_EQ(wrong.hr, DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(put(slot.Get(), L"dFreq", {Var::null()}).hr, DISP_E_TYPEMISMATCH);
    UINT count = 0;
    EXPECT_EQ(slot->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(slot->GetTypeInfo(1, LOCALE_USER_DEFAULT, info.GetAddressOf()), DISP_E_BADINDEX);
    EXPECT_EQ(slot->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.GetAddressOf()), S_OK);
}

}  // namespace
}  // namespace kv::test
