// Calls by name: arguments in variables, arguments that are left out or named, objects, and errors.
#include <gmock/gmock.h>

#include "tests/automation/Module.h"
#include "tests/automation/plumbing/ProbeControl.h"

namespace kv::test {
namespace {

constexpr HRESULT kError9 = static_cast<HRESULT>(0x800A0009);

class DispatchTest : public testing::Test {
  protected:
    ComPtr<ProbeControl> control;
    void SetUp() override { control = adopt(new ProbeControl); }
    IDispatch* dispatch() { return static_cast<_kvBandscope*>(control.Get()); }
};

TEST_F(DispatchTest, ResultsAreStoredInVariables) {
    Var height;
    Var width(L"12.5");
    Var name(7);
    const Outcome outcome =
        call(dispatch(), L"DisplayToBMP", {Var::variable(height), Var::variable(width), Var::variable(name)});
    ASSERT_EQ(outcome.hr, S_OK);
    EXPECT_EQ(outcome.result.text(), L"result.bmp");
    EXPECT_EQ(control->givenHeight, 0.0);
    EXPECT_EQ(control->givenWidth, 12.5);
    EXPECT_EQ(control->givenName, L"7");
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
    const Outcome outcome = call(dispatch(), L"DisplayToBMP",
                                 {Var::typed(VT_BYREF | VT_R8, &height), Var::typed(VT_BYREF | VT_I4, &width),
                                  Var::typed(VT_BYREF | VT_BSTR, &name)});
    ASSERT_EQ(outcome.hr, S_OK);
    EXPECT_EQ(control->givenHeight, 3.0);
    EXPECT_EQ(control->givenWidth, 4.0);
    EXPECT_EQ(control->givenName, L"old.bmp");
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
    EXPECT_EQ(call(dispatch(), L"DisplayToBMP",
                   {Var::typed(VT_BYREF | VT_R4, &height), Var::typed(VT_BYREF | VT_I2, &width),
                    Var::typed(VT_BYREF | VT_BSTR, &text)})
                  .hr,
              S_OK);
    EXPECT_EQ(height, 1234.5F);
    EXPECT_EQ(width, 4321);
    EXPECT_STREQ(text, L"new.bmp");
    SysFreeString(text);
    double value = 0.0;
    EXPECT_EQ(call(dispatch(), L"DisplayToBMP",
                   {Var::typed(VT_BYREF | VT_DECIMAL, &name), Var::typed(VT_BYREF | VT_R8, &value)})
                  .hr,
              S_OK);
    EXPECT_EQ(control->givenHeight, 5.0);
    EXPECT_EQ(VarR8FromDec(&name, &value), S_OK);
    EXPECT_EQ(value, 1234.5);
}

TEST_F(DispatchTest, ResultsThatDoNotFitAreAnOverflow) {
    double height = 0.0;
    unsigned char width = 0;
    const Outcome outcome = call(dispatch(), L"DisplayToBMP",
                                 {Var::typed(VT_BYREF | VT_R8, &height), Var::typed(VT_BYREF | VT_UI1, &width)});
    EXPECT_EQ(outcome.hr, DISP_E_OVERFLOW);
    EXPECT_EQ(outcome.argError, 0U);
    EXPECT_EQ(outcome.result.vt, VT_EMPTY);
    EXPECT_EQ(width, 0);
}

TEST_F(DispatchTest, ValuesAreConvertedAndTextsThatAreLeftOutAreEmpty) {
    EXPECT_EQ(call(dispatch(), L"DisplayToBMP", {1, L"2"}).hr, S_OK);
    EXPECT_EQ(control->givenHeight, 1.0);
    EXPECT_EQ(control->givenWidth, 2.0);
    EXPECT_EQ(control->givenName, L"");
    EXPECT_EQ(call(dispatch(), L"DisplayToBMP", {1.0, 2.0, Var::missing()}).hr, S_OK);
    EXPECT_EQ(control->givenName, L"");
    const Outcome outcome = call(dispatch(), L"DisplayToBMP", {1.0, Var::missing()});
    EXPECT_EQ(outcome.hr, DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(outcome.argError, 0U);
    EXPECT_EQ(call(dispatch(), L"DisplayToBMP", {1.0}).hr, DISP_E_BADPARAMCOUNT);
}

TEST_F(DispatchTest, NumbersThatAreLeftOutAreZero) {
    EXPECT_EQ(call(dispatch(), L"DrawByRange").hr, S_OK);
    EXPECT_EQ(control->rangeMin, 0.0);
    EXPECT_EQ(control->rangeMax, 0.0);
    EXPECT_EQ(call(dispatch(), L"DrawByRange", {100.5}).hr, S_OK);
    EXPECT_EQ(control->rangeMin, 100.5);
    EXPECT_EQ(control->rangeMax, 0.0);
    EXPECT_EQ(call(dispatch(), L"DrawByRange", {Var::missing(), 200}).hr, S_OK);
    EXPECT_EQ(control->rangeMin, 0.0);
    EXPECT_EQ(control->rangeMax, 200.0);
    EXPECT_EQ(call(dispatch(), L"DrawByRange", {L"1", L"2"}).hr, S_OK);
    EXPECT_EQ(control->rangeMax, 2.0);
    EXPECT_EQ(call(dispatch(), L"DrawByRange", {1.0, 2.0, 3.0}).hr, DISP_E_BADPARAMCOUNT);
}

TEST_F(DispatchTest, NamedArgumentsAreMatchedByTheirIds) {
    wchar_t member[] = L"DrawByRange";
    wchar_t first[] = L"dFMin";
    wchar_t second[] = L"dFMax";
    LPOLESTR names[] = {member, second, first};
    DISPID ids[3] = {};
    ASSERT_EQ(dispatch()->GetIDsOfNames(IID_NULL, names, 3, LOCALE_USER_DEFAULT, ids), S_OK);
    EXPECT_EQ(invoke(dispatch(), ids[0], DISPATCH_METHOD, {7.0, 3.0}, {ids[1], ids[2]}).hr, S_OK);
    EXPECT_EQ(control->rangeMin, 3.0);
    EXPECT_EQ(control->rangeMax, 7.0);
    EXPECT_EQ(invoke(dispatch(), ids[0], DISPATCH_METHOD, {9.0}, {ids[1]}).hr, S_OK);
    EXPECT_EQ(control->rangeMin, 0.0);
    EXPECT_EQ(control->rangeMax, 9.0);
    EXPECT_EQ(invoke(dispatch(), ids[0], DISPATCH_METHOD, {4.0, 9.0}, {ids[1]}).hr, S_OK);
    EXPECT_EQ(control->rangeMin, 4.0);
    Outcome wrong = invoke(dispatch(), ids[0], DISPATCH_METHOD, {4.0, 9.0}, {ids[2]});
    EXPECT_EQ(wrong.hr, DISP_E_BADPARAMCOUNT);
    wrong = invoke(dispatch(), ids[0], DISPATCH_METHOD, {4.0, 9.0}, {17});
    EXPECT_EQ(wrong.hr, DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(wrong.argError, 0U);
}

TEST_F(DispatchTest, WrongTypesReportTheIndexOfTheArgument) {
    Outcome wrong = call(dispatch(), L"DrawByRange", {L"one", 2.0});
    EXPECT_EQ(wrong.hr, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong.argError, 1U);
    wrong = call(dispatch(), L"DrawByRange", {1.0, L"two"});
    EXPECT_EQ(wrong.hr, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong.argError, 0U);
    wrong = call(dispatch(), L"AddTXChnl", {5});
    EXPECT_EQ(wrong.hr, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong.argError, 0U);
    EXPECT_EQ(call(dispatch(), L"GetTXChnl", {4294967296.0}).hr, DISP_E_OVERFLOW);
    EXPECT_EQ(control->rangeMin, -1.0);
}

TEST_F(DispatchTest, MembersAreFoundByMethodAndPropertyFlagsTogether) {
    control->gridX = 12;
    constexpr WORD kEither = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
    const Outcome grid = invoke(dispatch(), idOf(dispatch(), L"nGridX"), kEither, {});
    EXPECT_EQ(grid.hr, S_OK);
    EXPECT_EQ(grid.result.vt, VT_I2);
    EXPECT_EQ(grid.result.iVal, 12);
    EXPECT_EQ(invoke(dispatch(), idOf(dispatch(), L"DrawByRange"), kEither, {1.0}).hr, S_OK);
    EXPECT_EQ(get(dispatch(), L"bMouseInfo").hr, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(put(dispatch(), L"NumTX", {3}).hr, DISP_E_MEMBERNOTFOUND);
}

TEST_F(DispatchTest, ColorsArePassedBitForBit) {
    EXPECT_EQ(put(dispatch(), L"GridColor", {static_cast<int>(0x8000000F)}).hr, S_OK);
    EXPECT_EQ(control->gridColor, 0x8000000FU);
    EXPECT_EQ(put(dispatch(), L"GridColor", {2147483663.0}).hr, S_OK);
    EXPECT_EQ(control->gridColor, 0x8000000FU);
    const Outcome color = get(dispatch(), L"GridColor");
    EXPECT_EQ(color.result.vt, VT_I4);
    EXPECT_EQ(color.result.lVal, static_cast<int>(0x8000000F));
    EXPECT_EQ(put(dispatch(), L"GridColor", {5000000000.0}).hr, DISP_E_OVERFLOW);
}

TEST_F(DispatchTest, FlagsAndTextsAreConverted) {
    EXPECT_EQ(put(dispatch(), L"bXLog", {0}).hr, S_OK);
    EXPECT_EQ(control->xLog, VARIANT_FALSE);
    EXPECT_EQ(put(dispatch(), L"bXLog", {1}).hr, S_OK);
    EXPECT_EQ(control->xLog, VARIANT_TRUE);
    EXPECT_EQ(get(dispatch(), L"bXLog").result.vt, VT_BOOL);
    EXPECT_EQ(call(dispatch(), L"RemoveChnlByKey", {5}).hr, S_OK);
    EXPECT_EQ(control->removedKey, L"5");
    Var noText;
    noText.vt = VT_BSTR;
    noText.bstrVal = nullptr;
    EXPECT_EQ(call(dispatch(), L"RemoveChnlByKey", {noText}).hr, S_OK);
    EXPECT_EQ(control->removedKey, L"");
}

TEST_F(DispatchTest, RunTimeErrorsFillTheException) {
    control->failure = 9;
    const Outcome outcome = call(dispatch(), L"Refresh");
    EXPECT_EQ(outcome.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.errorCode, kError9);
    EXPECT_EQ(outcome.errorNumber, 0);
    EXPECT_EQ(outcome.description, L"Subscript out of range");
    EXPECT_EQ(outcome.source, L"kvBandscope.kvBandscope");
    control->failure = -1;
    const Outcome memory = call(dispatch(), L"Refresh");
    EXPECT_EQ(memory.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(memory.errorCode, E_OUTOFMEMORY);
    EXPECT_EQ(memory.description, L"");
    control->failure = -2;
    EXPECT_EQ(call(dispatch(), L"Refresh").errorCode, E_UNEXPECTED);
    DISPPARAMS none{};
    EXPECT_EQ(dispatch()->Invoke(54, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr), DISP_E_EXCEPTION);
    EXPECT_EQ(dispatch()->Invoke(54, IID_IDispatch, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(dispatch()->Invoke(54, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG);
}

TEST_F(DispatchTest, RunTimeErrorsOfVtableCallsSetErrorInformation) {
    control->failure = 457;
    EXPECT_EQ(control->Refresh(), static_cast<HRESULT>(0x800A01C9));
    GUID iid{};
    EXPECT_EQ(takeErrorText(&iid), L"This key is already associated with an element of this collection");
    EXPECT_TRUE(iid == IID__kvBandscope);
    control->failure = -1;
    EXPECT_EQ(control->Refresh(), E_OUTOFMEMORY);
    control->failure = -2;
    EXPECT_EQ(control->Refresh(), E_UNEXPECTED);
    control->failure = 0;
    EXPECT_EQ(control->Refresh(), S_OK);
}

TEST_F(DispatchTest, AMissingObjectIsError91) {
    for (const Var& nothing : {Var(static_cast<IDispatch*>(nullptr)), Var::null()}) {
        const Outcome outcome = call(dispatch(), L"AddTXChnl", {nothing});
        EXPECT_EQ(outcome.hr, DISP_E_EXCEPTION);
        EXPECT_EQ(outcome.errorCode, static_cast<HRESULT>(0x800A005B));
    }
    const Outcome none = call(dispatch(), L"GetTXChnl", {0});
    EXPECT_EQ(none.hr, S_OK);
    EXPECT_EQ(none.result.vt, VT_DISPATCH);
    EXPECT_EQ(none.result.pdispVal, nullptr);
}

}  // namespace
}  // namespace kv::test
