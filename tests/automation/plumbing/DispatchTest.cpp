// Calls by name: arguments in variables, arguments that are left out or named, objects, and errors.
#include <gmock/gmock.h>

#include "tests/automation/DictionarySlot.h"
#include "tests/automation/Module.h"
#include "tests/automation/plumbing/ProbeObject.h"

namespace kv::test {
namespace {

constexpr HRESULT kError9 = static_cast<HRESULT>(0x800A0009);
constexpr HRESULT kError7 = static_cast<HRESULT>(0x800A0007);

class DispatchTest : public testing::Test {
  protected:
    ComPtr<ProbeObject> probe;
    void SetUp() override { probe = adopt(new ProbeObject); }
    IDispatch* dispatch() { return static_cast<IProbe*>(probe.Get()); }
};

TEST_F(DispatchTest, ResultsAreStoredInVariables) {
    Var height;
    Var width(L"12.5");
    Var name(7);
    const Outcome outcome =
        call(dispatch(), L"Measure", {Var::variable(height), Var::variable(width), Var::variable(name)});
    ASSERT_EQ(outcome.hr, S_OK);
    EXPECT_EQ(outcome.result.text(), L"result.bmp");
    EXPECT_EQ(probe->givenHeight, 0.0);
    EXPECT_EQ(probe->givenWidth, 12.5);
    EXPECT_EQ(probe->givenName, L"7");
    EXPECT_EQ(height.vt, VT_R8);
    EXPECT_EQ(height.dblVal, 1234.5);
    EXPECT_EQ(width.vt, VT_R8);
    EXPECT_EQ(width.dblVal, 4321.0);
    EXPECT_EQ(name.text(), L"new.bmp");
}

TEST_F(DispatchTest, TypedVariablesKeepTheirType) {
    double height = 3.0;
    long width = 4;
    BSTR name = SysAllocString(L"old.bmp");
    const Outcome outcome = call(dispatch(), L"Measure",
                                 {Var::typed(VT_BYREF | VT_R8, &height), Var::typed(VT_BYREF | VT_I4, &width),
                                  Var::typed(VT_BYREF | VT_BSTR, &name)});
    ASSERT_EQ(outcome.hr, S_OK);
    EXPECT_EQ(probe->givenHeight, 3.0);
    EXPECT_EQ(probe->givenWidth, 4.0);
    EXPECT_EQ(probe->givenName, L"old.bmp");
    EXPECT_EQ(height, 1234.5);
    EXPECT_EQ(width, 4321);
    EXPECT_STREQ(name, L"new.bmp");
    SysFreeString(name);
}

TEST_F(DispatchTest, VariablesOfAllSizesReceiveTheResult) {
    float height = 0.0F;
    short width = 0;
    DECIMAL name{};
    VarDecFromI4(5, &name);
    BSTR text = nullptr;
    EXPECT_EQ(call(dispatch(), L"Measure",
                   {Var::typed(VT_BYREF | VT_R4, &height), Var::typed(VT_BYREF | VT_I2, &width),
                    Var::typed(VT_BYREF | VT_BSTR, &text)})
                  .hr,
              S_OK);
    EXPECT_EQ(height, 1234.5F);
    EXPECT_EQ(width, 4321);
    EXPECT_STREQ(text, L"new.bmp");
    SysFreeString(text);
    double value = 0.0;
    EXPECT_EQ(
        call(dispatch(), L"Measure", {Var::typed(VT_BYREF | VT_DECIMAL, &name), Var::typed(VT_BYREF | VT_R8, &value)})
            .hr,
        S_OK);
    EXPECT_EQ(probe->givenHeight, 5.0);
    EXPECT_EQ(VarR8FromDec(&name, &value), S_OK);
    EXPECT_EQ(value, 1234.5);
}

TEST_F(DispatchTest, ResultsThatDoNotFitAreAnOverflow) {
    double height = 0.0;
    unsigned char width = 0;
    const Outcome outcome =
        call(dispatch(), L"Measure", {Var::typed(VT_BYREF | VT_R8, &height), Var::typed(VT_BYREF | VT_UI1, &width)});
    EXPECT_EQ(outcome.hr, DISP_E_OVERFLOW);
    EXPECT_EQ(outcome.argError, 0U);
    EXPECT_EQ(outcome.result.vt, VT_EMPTY);
    EXPECT_EQ(width, 0);
}

TEST_F(DispatchTest, ValuesAreConvertedAndTextsThatAreLeftOutAreEmpty) {
    EXPECT_EQ(call(dispatch(), L"Measure", {1, L"2"}).hr, S_OK);
    EXPECT_EQ(probe->givenHeight, 1.0);
    EXPECT_EQ(probe->givenWidth, 2.0);
    EXPECT_EQ(probe->givenName, L"");
    EXPECT_EQ(call(dispatch(), L"Measure", {1.0, 2.0, Var::missing()}).hr, S_OK);
    EXPECT_EQ(probe->givenName, L"");
    const Outcome outcome = call(dispatch(), L"Measure", {1.0, Var::missing()});
    EXPECT_EQ(outcome.hr, DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(outcome.argError, 0U);
    EXPECT_EQ(call(dispatch(), L"Measure", {1.0}).hr, DISP_E_BADPARAMCOUNT);
}

TEST_F(DispatchTest, NumbersThatAreLeftOutAreZero) {
    EXPECT_EQ(call(dispatch(), L"SetRange").hr, S_OK);
    EXPECT_EQ(probe->first, 0.0);
    EXPECT_EQ(probe->last, 0.0);
    EXPECT_EQ(call(dispatch(), L"SetRange", {100.5}).hr, S_OK);
    EXPECT_EQ(probe->first, 100.5);
    EXPECT_EQ(probe->last, 0.0);
    EXPECT_EQ(call(dispatch(), L"SetRange", {Var::missing(), 200}).hr, S_OK);
    EXPECT_EQ(probe->first, 0.0);
    EXPECT_EQ(probe->last, 200.0);
    EXPECT_EQ(call(dispatch(), L"SetRange", {L"1", L"2"}).hr, S_OK);
    EXPECT_EQ(probe->last, 2.0);
    EXPECT_EQ(call(dispatch(), L"SetRange", {1.0, 2.0, 3.0}).hr, DISP_E_BADPARAMCOUNT);
}

TEST_F(DispatchTest, NamedArgumentsAreMatchedByTheirIds) {
    wchar_t member[] = L"SetRange";
    wchar_t first[] = L"first";
    wchar_t last[] = L"last";
    LPOLESTR names[] = {member, last, first};
    DISPID ids[3] = {};
    ASSERT_EQ(dispatch()->GetIDsOfNames(IID_NULL, names, 3, LOCALE_USER_DEFAULT, ids), S_OK);
    EXPECT_EQ(invoke(dispatch(), ids[0], DISPATCH_METHOD, {7.0, 3.0}, {ids[1], ids[2]}).hr, S_OK);
    EXPECT_EQ(probe->first, 3.0);
    EXPECT_EQ(probe->last, 7.0);
    EXPECT_EQ(invoke(dispatch(), ids[0], DISPATCH_METHOD, {9.0}, {ids[1]}).hr, S_OK);
    EXPECT_EQ(probe->first, 0.0);
    EXPECT_EQ(probe->last, 9.0);
    EXPECT_EQ(invoke(dispatch(), ids[0], DISPATCH_METHOD, {4.0, 9.0}, {ids[1]}).hr, S_OK);
    EXPECT_EQ(probe->first, 4.0);
    Outcome wrong = invoke(dispatch(), ids[0], DISPATCH_METHOD, {4.0, 9.0}, {ids[2]});
    EXPECT_EQ(wrong.hr, DISP_E_BADPARAMCOUNT);
    wrong = invoke(dispatch(), ids[0], DISPATCH_METHOD, {4.0, 9.0}, {17});
    EXPECT_EQ(wrong.hr, DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(wrong.argError, 0U);
}

TEST_F(DispatchTest, WrongTypesReportTheIndexOfTheArgument) {
    Outcome wrong = call(dispatch(), L"SetRange", {L"one", 2.0});
    EXPECT_EQ(wrong.hr, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong.argError, 1U);
    wrong = call(dispatch(), L"SetRange", {1.0, L"two"});
    EXPECT_EQ(wrong.hr, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong.argError, 0U);
    wrong = call(dispatch(), L"AddPart", {5});
    EXPECT_EQ(wrong.hr, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong.argError, 0U);
    EXPECT_EQ(call(dispatch(), L"GetPart", {4294967296.0}).hr, DISP_E_OVERFLOW);
    EXPECT_EQ(probe->first, -1.0);
}

TEST_F(DispatchTest, MembersAreFoundByMethodAndPropertyFlagsTogether) {
    probe->step = 12;
    constexpr WORD kEither = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
    const Outcome grid = invoke(dispatch(), idOf(dispatch(), L"Step"), kEither, {});
    EXPECT_EQ(grid.hr, S_OK);
    EXPECT_EQ(grid.result.vt, VT_I2);
    EXPECT_EQ(grid.result.iVal, 12);
    EXPECT_EQ(invoke(dispatch(), idOf(dispatch(), L"SetRange"), kEither, {1.0}).hr, S_OK);
    EXPECT_EQ(get(dispatch(), L"Hidden").hr, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(put(dispatch(), L"Count", {3}).hr, DISP_E_MEMBERNOTFOUND);
}

TEST_F(DispatchTest, ColorsArePassedBitForBit) {
    EXPECT_EQ(put(dispatch(), L"Color", {static_cast<int>(0x8000000F)}).hr, S_OK);
    EXPECT_EQ(probe->color, 0x8000000FU);
    EXPECT_EQ(put(dispatch(), L"Color", {2147483663.0}).hr, S_OK);
    EXPECT_EQ(probe->color, 0x8000000FU);
    const Outcome color = get(dispatch(), L"Color");
    EXPECT_EQ(color.result.vt, VT_I4);
    EXPECT_EQ(color.result.lVal, static_cast<int>(0x8000000F));
    EXPECT_EQ(put(dispatch(), L"Color", {5000000000.0}).hr, DISP_E_OVERFLOW);
}

TEST_F(DispatchTest, FlagsAndTextsAreConverted) {
    EXPECT_EQ(put(dispatch(), L"Flag", {0}).hr, S_OK);
    EXPECT_EQ(probe->flag, VARIANT_FALSE);
    EXPECT_EQ(put(dispatch(), L"Flag", {1}).hr, S_OK);
    EXPECT_EQ(probe->flag, VARIANT_TRUE);
    EXPECT_EQ(get(dispatch(), L"Flag").result.vt, VT_BOOL);
    EXPECT_EQ(call(dispatch(), L"Remove", {5}).hr, S_OK);
    EXPECT_EQ(probe->removedKey, L"5");
    Var noText;
    noText.vt = VT_BSTR;
    noText.bstrVal = nullptr;
    EXPECT_EQ(call(dispatch(), L"Remove", {noText}).hr, S_OK);
    EXPECT_EQ(probe->removedKey, L"");
}

TEST_F(DispatchTest, RunTimeErrorsFillTheException) {
    probe->failure = 9;
    const Outcome outcome = call(dispatch(), L"Fail");
    EXPECT_EQ(outcome.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.errorCode, kError9);
    EXPECT_EQ(outcome.errorNumber, 0);
    EXPECT_EQ(outcome.description, L"Subscript out of range");
    EXPECT_EQ(outcome.source, kProbeSource);
    probe->failure = -1;
    const Outcome memory = call(dispatch(), L"Fail");
    EXPECT_EQ(memory.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(memory.errorCode, kError7);
    EXPECT_EQ(memory.description, L"Out of memory");
    probe->failure = -2;
    EXPECT_EQ(call(dispatch(), L"Fail").errorCode, E_UNEXPECTED);
    DISPPARAMS none{};
    EXPECT_EQ(dispatch()->Invoke(11, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr), DISP_E_EXCEPTION);
    EXPECT_EQ(dispatch()->Invoke(11, IID_IDispatch, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(dispatch()->Invoke(11, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG);
}

TEST_F(DispatchTest, RunTimeErrorsOfVtableCallsSetErrorInformation) {
    probe->failure = 457;
    EXPECT_EQ(probe->Fail(), static_cast<HRESULT>(0x800A01C9));
    GUID iid{};
    EXPECT_EQ(takeErrorText(&iid), L"This key is already associated with an element of this collection");
    EXPECT_TRUE(iid == IID_IProbe);
    probe->failure = -1;
    EXPECT_EQ(probe->Fail(), kError7);
    EXPECT_EQ(takeErrorText(&iid), L"Out of memory");
    probe->failure = -2;
    EXPECT_EQ(probe->Fail(), E_UNEXPECTED);
    probe->failure = 0;
    EXPECT_EQ(probe->Fail(), S_OK);
}

TEST_F(DispatchTest, ObjectsAreConvertedHoweverTheyArePassed) {
    const ComPtr<DictionarySlot> object = DictionarySlot::create();
    IDispatch* raw = object.Get();
    Var variable(raw);
    EXPECT_EQ(call(dispatch(), L"AddPart", {variable}).result.lVal, 0);
    EXPECT_EQ(call(dispatch(), L"AddPart", {Var::variable(variable)}).result.lVal, 1);
    EXPECT_EQ(call(dispatch(), L"AddPart", {Var::typed(VT_BYREF | VT_DISPATCH, &raw)}).result.lVal, 2);
    EXPECT_EQ(get(dispatch(), L"Count").result.lVal, 3);
    for (const ComPtr<IPart>& part : probe->parts)
        EXPECT_NE(static_cast<IDispatch*>(part.Get()), raw);
    const Outcome found = call(dispatch(), L"GetPart", {1});
    ASSERT_EQ(found.result.vt, VT_DISPATCH);
    EXPECT_EQ(found.result.pdispVal, raw);
}

TEST_F(DispatchTest, ObjectsThatTheConverterRejectsAreATypeMismatch) {
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(dispatch()->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.GetAddressOf()), S_OK);
    IUnknown* raw = info.Get();
    const Outcome outcome = call(dispatch(), L"AddPart", {Var::typed(VT_BYREF | VT_UNKNOWN, &raw)});
    EXPECT_EQ(outcome.hr, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(outcome.argError, 0U);
    EXPECT_TRUE(probe->parts.empty());
}

TEST_F(DispatchTest, AMissingObjectIsError91) {
    for (const Var& nothing : {Var(static_cast<IDispatch*>(nullptr)), Var::null()}) {
        const Outcome outcome = call(dispatch(), L"AddPart", {nothing});
        EXPECT_EQ(outcome.hr, DISP_E_EXCEPTION);
        EXPECT_EQ(outcome.errorCode, static_cast<HRESULT>(0x800A005B));
    }
    const Outcome none = call(dispatch(), L"GetPart", {0});
    EXPECT_EQ(none.hr, S_OK);
    EXPECT_EQ(none.result.vt, VT_DISPATCH);
    EXPECT_EQ(none.result.pdispVal, nullptr);
}

}  // namespace
}  // namespace kv::test
