// Calls by name as made by tool kits that do not know whether a name is a method or a property.
#include <gmock/gmock.h>

#include "tests/automation/ControlFixture.h"

namespace kv::test {
namespace {

constexpr WORD kEither = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

/// A call without pointers for the result and the error.
HRESULT withoutResult(IDispatch* object, const wchar_t* name, WORD flags, std::vector<Var> arguments = {}) {
    DISPPARAMS params{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    return object->Invoke(idOf(object, name), IID_NULL, LOCALE_USER_DEFAULT, flags, &params, nullptr, nullptr, nullptr);
}

class InvokeFlags : public testing::Test {
  protected:
    Scope scope;
    ComPtr<_FreqSlot> slot = channel({.freq = 450.0, .key = L"TX1"});

    HRESULT putAs(WORD flags, const wchar_t* name, const Var& value) {
        return invoke(scope.get(), idOf(scope.get(), name), flags, {value}, {DISPID_PROPERTYPUT}).hr;
    }
};

TEST_F(InvokeFlags, AMethodAndAPropertyAreFoundByBothFlags) {
    scope.AddTXChnl(slot);
    EXPECT_EQ(invoke(scope.get(), idOf(scope.get(), L"NumTX"), kEither, {}).result.lVal, 1);
    const Outcome drawn = invoke(scope.get(), idOf(scope.get(), L"DrawDisplay"), kEither, {});
    EXPECT_EQ(drawn.hr, S_OK);
    EXPECT_EQ(drawn.result.vt, VT_BOOL);
    const Outcome found = invoke(scope.get(), idOf(scope.get(), L"GetTXChnl"), kEither, {Var(0)});
    EXPECT_EQ(found.hr, S_OK);
    EXPECT_EQ(found.result.vt, VT_DISPATCH);
    // An indexed property is called like a method.
    EXPECT_EQ(slot->put_nIMComps(1), S_OK);
    EXPECT_EQ(slot->put_dIMCompFreq(0, 451.5), S_OK);
    EXPECT_EQ(invoke(slot.Get(), idOf(slot.Get(), L"dIMCompFreq"), kEither, {Var(0)}).result.dblVal, 451.5);
}

TEST_F(InvokeFlags, CallsWithoutAResultPointerAreMade) {
    for (const WORD flags : {static_cast<WORD>(DISPATCH_METHOD), kEither})
        EXPECT_EQ(withoutResult(scope.get(), L"AddTXChnl", flags, {Var(static_cast<IDispatch*>(slot.Get()))}), S_OK);
    EXPECT_EQ(scope.NumTX(), 2);
    EXPECT_EQ(withoutResult(scope.get(), L"NumTX", DISPATCH_PROPERTYGET), S_OK);
    EXPECT_EQ(withoutResult(scope.get(), L"DrawDisplay", DISPATCH_METHOD), S_OK);
    EXPECT_EQ(withoutResult(scope.get(), L"ClearDisplay", kEither), S_OK);
}

TEST_F(InvokeFlags, APropertyThatIsNoObjectIsNotSetByReference) {
    // After this result callers try the plain way.
    for (const auto& [name, value] :
         {std::pair{L"nGridX", Var(12)}, {L"GridColor", Var(255)}, {L"bXLog", Var(false)}}) {
        EXPECT_EQ(putAs(DISPATCH_PROPERTYPUTREF, name, value), DISP_E_MEMBERNOTFOUND);
        EXPECT_EQ(putAs(DISPATCH_PROPERTYPUT, name, value), S_OK);
        EXPECT_EQ(putAs(DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF, name, value), S_OK);
    }
    EXPECT_EQ(scope.nGridX(), 12);
    EXPECT_EQ(scope.GridColor(), 255U);
    EXPECT_FALSE(scope.bXLog());
}

TEST_F(InvokeFlags, NumbersOfOtherTypesAreConverted) {
    Var small;
    small.vt = VT_UINT;
    small.uintVal = 14;
    EXPECT_EQ(putAs(DISPATCH_PROPERTYPUT, L"nGridX", small), S_OK);
    EXPECT_EQ(scope.nGridX(), 14);
    Var color;
    color.vt = VT_UINT;
    color.uintVal = 0x8000000F;
    EXPECT_EQ(putAs(DISPATCH_PROPERTYPUT, L"GridColor", color), S_OK);
    EXPECT_EQ(scope.GridColor(), 0x8000000F);
    EXPECT_EQ(putAs(DISPATCH_PROPERTYPUT, L"GridColor", Var(L"16711680")), S_OK);
    EXPECT_EQ(scope.GridColor(), 0xFF0000U);
}

TEST_F(InvokeFlags, ArgumentsByReferenceComeBackInTheirOwnType) {
    double height = 0.0;
    double width = 0.0;
    const std::wstring path = L"";
    Var inner(path.c_str());
    scope.AddTXChnl(slot);
    EXPECT_TRUE(scope.DrawDisplay());
    const Outcome saved =
        call(scope.get(), L"DisplayToBMP",
             {Var::typed(VT_R8 | VT_BYREF, &height), Var::typed(VT_R8 | VT_BYREF, &width), Var::variable(inner)});
    EXPECT_EQ(saved.hr, S_OK);
    EXPECT_GT(height, 0.0);
    EXPECT_GT(width, 0.0);
    EXPECT_EQ(inner.text(), saved.result.text()) << "the name that was used";
    DeleteFileW(inner.text().c_str());
}

}  // namespace
}  // namespace kv::test
