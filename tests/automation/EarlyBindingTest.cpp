// Calls as a compiler makes them that knows the control from its type library alone: by the slot in the function table
// and the declared types.
#include <gmock/gmock.h>

#include "tests/automation/ControlFixture.h"

namespace kv::test {
namespace {

struct Member {
    SHORT offset = 0;
    CALLCONV convention = CC_STDCALL;
    std::vector<VARTYPE> types;  ///< of all parameters, that of the result among them
};

/// The type that a name refers to: a color is a number; VT_USERDEFINED means an interface.
VARTYPE namedType(ITypeInfo* info, HREFTYPE reference) {
    ComPtr<ITypeInfo> named;
    TYPEATTR* attributes = nullptr;
    if (FAILED(info->GetRefTypeInfo(reference, named.GetAddressOf())) || FAILED(named->GetTypeAttr(&attributes)))
        return VT_EMPTY;
    const VARTYPE result =
        attributes->typekind == TKIND_ALIAS ? attributes->tdescAlias.vt : static_cast<VARTYPE>(VT_USERDEFINED);
    named->ReleaseTypeAttr(attributes);
    return result;
}

VARTYPE typeOf(ITypeInfo* info, const TYPEDESC& type) {
    if (type.vt == VT_USERDEFINED)
        return namedType(info, type.hreftype);
    if (type.vt != VT_PTR)
        return type.vt;
    // A pointer to an interface is an object; one to anything else is a reference.
    const VARTYPE inner = typeOf(info, *type.lptdesc);
    return inner == VT_USERDEFINED ? static_cast<VARTYPE>(VT_DISPATCH) : static_cast<VARTYPE>(VT_BYREF | inner);
}

class EarlyBinding : public testing::Test {
  protected:
    ComPtr<ITypeInfo> info;
    ComPtr<_kvBandscope> control = createInstance<_kvBandscope>(CLSID_kvBandscope);

    void SetUp() override {
        ComPtr<ITypeLib> library;
        ComPtr<ITypeInfo> dispatch;
        HREFTYPE reference = 0;
        ASSERT_EQ(LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, &library), S_OK);
        ASSERT_EQ(library->GetTypeInfoOfGuid(IID__kvBandscope, &dispatch), S_OK);
        ASSERT_EQ(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
        ASSERT_EQ(dispatch->GetRefTypeInfo(reference, &info), S_OK);
    }
    Member find(const std::wstring& name, INVOKEKIND kind) const {
        Member member;
        for (UINT i = 0;; ++i) {
            FUNCDESC* found = nullptr;
            if (FAILED(info->GetFuncDesc(i, &found)))
                break;
            Text text;
            info->GetDocumentation(found->memid, text.put(), nullptr, nullptr, nullptr);
            if (text.str() == name && found->invkind == kind) {
                member = {found->oVft, found->callconv, {}};
                for (SHORT p = 0; p < found->cParams; ++p)
                    member.types.push_back(typeOf(info.Get(), found->lprgelemdescParam[p].tdesc));
            }
            info->ReleaseFuncDesc(found);
        }
        EXPECT_NE(member.offset, 0) << testing::PrintToString(name);
        return member;
    }
    HRESULT call(const Member& member, std::vector<Var> arguments) const {
        EXPECT_EQ(member.types.size(), arguments.size());
        std::vector<VARIANTARG*> pointers;
        for (Var& argument : arguments)
            pointers.push_back(&argument);
        std::vector<VARTYPE> types = member.types;
        Var answer;
        EXPECT_EQ(DispCallFunc(control.Get(), static_cast<ULONG_PTR>(member.offset), member.convention, VT_ERROR,
                               static_cast<UINT>(types.size()), types.data(), pointers.data(), &answer),
                  S_OK);
        return answer.scode;
    }
    HRESULT run(const wchar_t* name, std::vector<Var> arguments) const {
        return call(find(name, INVOKE_FUNC), std::move(arguments));
    }
    static Var reference(VARTYPE type, void* to) { return Var::typed(static_cast<VARTYPE>(VT_BYREF | type), to); }
    void add(double frequency, const wchar_t* key) const {
        long index = -1;
        const auto slot = channel({.freq = frequency, .bw = 25.0, .power = 30.0, .key = key});
        ASSERT_EQ(run(L"AddTXChnl", {Var(slot.Get()), reference(VT_I4, &index)}), S_OK);
        ASSERT_GE(index, 0);
    }
};

TEST_F(EarlyBinding, EveryPropertyReadsAsByName) {
    ASSERT_NO_FATAL_FAILURE(add(400.0, L"TX1"));
    ASSERT_NO_FATAL_FAILURE(add(410.0, L"TX2"));
    int read = 0;
    for (UINT i = 0;; ++i) {
        FUNCDESC* found = nullptr;
        if (FAILED(info->GetFuncDesc(i, &found)))
            break;
        const MEMBERID id = found->memid;
        Member member{found->oVft, found->callconv, {}};
        if (found->invkind == INVOKE_PROPERTYGET && found->cParams == 1)
            member.types.push_back(typeOf(info.Get(), found->lprgelemdescParam[0].tdesc));
        info->ReleaseFuncDesc(found);
        if (member.types.empty())
            continue;
        const VARTYPE type = member.types[0] & static_cast<VARTYPE>(~VT_BYREF);
        Var early;
        // In calls by name colors have the integer type that scripts know.
        early.vt = type == VT_UI4 ? static_cast<VARTYPE>(VT_I4) : type;
        EXPECT_EQ(call(member, {reference(type, &early.lVal)}), S_OK);
        const Outcome late = invoke(control.Get(), id, DISPATCH_PROPERTYGET, {});
        EXPECT_EQ(late.hr, S_OK);
        ASSERT_EQ(late.result.vt, early.vt) << id;
        EXPECT_EQ(VarCmp(&early, const_cast<Var*>(&late.result), LOCALE_INVARIANT, 0), static_cast<HRESULT>(VARCMP_EQ))
            << id;
        ++read;
    }
    EXPECT_GT(read, 20);
}

TEST_F(EarlyBinding, MembersCalledThroughTheFunctionTableHaveTheirEffects) {
    ASSERT_NO_FATAL_FAILURE(add(400.0, L"TX1"));
    ASSERT_NO_FATAL_FAILURE(add(410.0, L"TX2"));
    VARIANT_BOOL drawn = VARIANT_FALSE;
    EXPECT_EQ(run(L"DrawDisplay", {reference(VT_BOOL, &drawn)}), S_OK);
    EXPECT_EQ(drawn, VARIANT_TRUE);
    EXPECT_EQ(call(find(L"FreqEndBuffer", INVOKE_PROPERTYPUT), {Var(2.5)}), S_OK);
    double buffer = 0.0;
    EXPECT_EQ(call(find(L"FreqEndBuffer", INVOKE_PROPERTYGET), {reference(VT_R8, &buffer)}), S_OK);
    EXPECT_EQ(buffer, 2.5);
    EXPECT_EQ(run(L"DrawByRange", {Var(395.0), Var(415.0)}), S_OK);
    double edge = 0.0;
    EXPECT_EQ(call(find(L"DisplayMaxFreq", INVOKE_PROPERTYGET), {reference(VT_R8, &edge)}), S_OK);
    EXPECT_GT(edge, 414.0);
    ComPtr<_FreqSlot> second;
    EXPECT_EQ(run(L"GetTXbyKey", {Var(L"TX2"), reference(VT_DISPATCH, second.GetAddressOf())}), S_OK);
    EXPECT_EQ(keyOf(second.Get()), L"TX2");
    EXPECT_EQ(run(L"RemoveChnlByKey", {Var(L"TX1")}), S_OK);
    long left = -1;
    EXPECT_EQ(call(find(L"NumTX", INVOKE_PROPERTYGET), {reference(VT_I4, &left)}), S_OK);
    EXPECT_EQ(left, 1);
}

}  // namespace
}  // namespace kv::test
