// Every member of the control can be called by name with the declared arguments and returns the declared type. The
// effects of the members are tested in the other files.
#include <gmock/gmock.h>

#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr UINT kMemberCount = 71;

/// The type of a parameter or result without references and aliases; an object is VT_DISPATCH.
VARTYPE plainType(ITypeInfo* info, const TYPEDESC& type) {
    if (type.vt == VT_PTR) {
        const VARTYPE inner = plainType(info, *type.lptdesc);
        return inner == VT_USERDEFINED ? static_cast<VARTYPE>(VT_DISPATCH) : inner;
    }
    if (type.vt != VT_USERDEFINED)
        return type.vt;
    ComPtr<ITypeInfo> named;
    TYPEATTR* attributes = nullptr;
    if (FAILED(info->GetRefTypeInfo(type.hreftype, named.GetAddressOf())) || FAILED(named->GetTypeAttr(&attributes)))
        return VT_EMPTY;
    const VARTYPE result =
        attributes->typekind == TKIND_ALIAS ? attributes->tdescAlias.vt : static_cast<VARTYPE>(VT_USERDEFINED);
    named->ReleaseTypeAttr(attributes);
    return result;
}

/// The type that calls by name pass for a declared type.
VARTYPE passedType(VARTYPE type) {
    return type == VT_UI4 ? static_cast<VARTYPE>(VT_I4) : type;
}

Var sample(VARTYPE type, IDispatch* slot) {
    switch (type) {
        case VT_R8:
            return Var(450.0);
        case VT_BOOL:
            return Var(true);
        case VT_BSTR:
            return Var(L"TX1");
        case VT_DISPATCH:
            return Var(slot);
        default:
            return Var(1);
    }
}

struct DeclaredMember {
    std::wstring name;
    DISPID id = 0;
    INVOKEKIND kind = INVOKE_FUNC;
    std::vector<VARTYPE> parameters;
    VARTYPE result = VT_VOID;
};

DeclaredMember describe(ITypeInfo* info, UINT index) {
    DeclaredMember member;
    FUNCDESC* function = nullptr;
    if (FAILED(info->GetFuncDesc(index, &function)))
        return member;
    Text name;
    UINT count = 0;
    info->GetNames(function->memid, name.put(), 1, &count);
    member.name = name.str();
    member.id = function->memid;
    member.kind = function->invkind;
    member.result = plainType(info, function->elemdescFunc.tdesc);
    for (SHORT i = 0; i < function->cParams; ++i) {
        const ELEMDESC& parameter = function->lprgelemdescParam[i];
        const VARTYPE type = plainType(info, parameter.tdesc);
        if (parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL)
            member.result = type;
        else
            member.parameters.push_back(type);
    }
    info->ReleaseFuncDesc(function);
    return member;
}

std::vector<DeclaredMember> allMembers(IDispatch* object) {
    std::vector<DeclaredMember> members;
    ComPtr<ITypeInfo> info;
    TYPEATTR* attributes = nullptr;
    if (FAILED(object->GetTypeInfo(0, LOCALE_NEUTRAL, info.GetAddressOf())) || FAILED(info->GetTypeAttr(&attributes)))
        return members;
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        DeclaredMember member = describe(info.Get(), i);
        // The dispatch view lists IDispatch's own members too.
        if (member.id > 0 && member.id < 0x60000000)
            members.push_back(std::move(member));
    }
    info->ReleaseTypeAttr(attributes);
    return members;
}

TEST(Members, EachMemberCanBeCalledByNameAndReturnsItsDeclaredType) {
    const Scope listed;
    const std::vector<DeclaredMember> members = allMembers(listed.get());
    ASSERT_EQ(members.size(), kMemberCount);
    const MessageBoxes boxes;
    for (const DeclaredMember& member : members) {
        SCOPED_TRACE(testing::PrintToString(member.name));
        Scope scope;
        const auto slot = channel({.freq = 450.0, .key = L"TX1"});
        scope.AddTXChnl(channel({.freq = 460.0, .key = L"TX0"}));
        EXPECT_EQ(idOf(scope.get(), member.name.c_str()), member.id);
        std::vector<Var> arguments;
        for (const VARTYPE type : member.parameters)
            arguments.push_back(sample(type, slot.Get()));
        if (member.name == L"DisplayToBMP")
            arguments.back() = Var((tempFolder() + L"kv members.bmp").c_str());
        std::vector<DISPID> named;
        if (member.kind == INVOKE_PROPERTYPUT)
            named.push_back(DISPID_PROPERTYPUT);
        const Outcome outcome =
            invoke(scope.get(), member.id, static_cast<WORD>(member.kind), std::move(arguments), std::move(named));
        EXPECT_EQ(outcome.hr, S_OK);
        const bool answers = member.result != VT_VOID && member.result != VT_HRESULT && member.result != VT_EMPTY;
        EXPECT_EQ(outcome.result.vt, answers ? passedType(member.result) : static_cast<VARTYPE>(VT_EMPTY));
        // The control still works.
        EXPECT_TRUE(scope.DrawDisplay());
    }
    DeleteFileW((tempFolder() + L"kv members.bmp").c_str());
    // DrawAll has a message box, but the control is in no container.
    EXPECT_TRUE(boxes.seen().empty());
}

TEST(Members, EachMemberNeedsItsArguments) {
    const Scope scope;
    for (const DeclaredMember& member : allMembers(scope.get())) {
        if (member.parameters.empty() || member.name == L"DrawByRange")
            continue;
        SCOPED_TRACE(testing::PrintToString(member.name));
        const Outcome none = invoke(scope.get(), member.id, static_cast<WORD>(member.kind), {});
        EXPECT_TRUE(none.hr == DISP_E_BADPARAMCOUNT || none.hr == DISP_E_PARAMNOTFOUND) << std::hex << none.hr;
    }
}

TEST(Members, NamesAreFoundWhateverTheirCase) {
    const Scope scope;
    EXPECT_EQ(idOf(scope.get(), L"drawbyrange"), idOf(scope.get(), L"DrawByRange"));
    EXPECT_EQ(idOf(scope.get(), L"NUMTX"), idOf(scope.get(), L"NumTX"));
    EXPECT_EQ(idOf(scope.get(), L"NoSuchMember"), DISPID_UNKNOWN);
}

TEST(Members, ReadOnlyPropertiesCannotBeSetAndWriteOnlyOnesCannotBeRead) {
    Scope scope;
    for (const wchar_t* name : {L"NumTX", L"dFreqMin", L"DisplayMinFreq", L"MinWid"})
        EXPECT_EQ(put(scope.get(), name, {1}).hr, DISP_E_MEMBERNOTFOUND) << testing::PrintToString(name);
    for (const wchar_t* name : {L"bMouseInfo", L"bChkVisShowAll", L"lColorSpecBack", L"ShowAll_REPLACED_20070521_1637"})
        EXPECT_EQ(get(scope.get(), name).hr, DISP_E_MEMBERNOTFOUND) << testing::PrintToString(name);
    EXPECT_EQ(scope.NumTX(), 0);
}

TEST(Members, ANullResultPointerIsAnError) {
    const Scope scope;
    EXPECT_EQ(scope->get_NumTX(nullptr), E_POINTER);
    EXPECT_EQ(scope->get_dFreqMin(nullptr), E_POINTER);
    EXPECT_EQ(scope->DrawDisplay(nullptr), E_POINTER);
    EXPECT_EQ(scope->GetTXChnl(0, nullptr), E_POINTER);
    EXPECT_EQ(scope->GetChnlByKey(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(scope->AddTXChnl(nullptr, nullptr), E_POINTER);
}

TEST(Members, ANullTextIsAnEmptyOne) {
    Scope scope;
    const auto slot = channel({.freq = 450.0});
    scope.AddTXChnl(slot);
    ComPtr<_FreqSlot> found;
    EXPECT_EQ(scope->GetTXbyKey(nullptr, found.GetAddressOf()), S_OK);
    EXPECT_TRUE(sameObject(found.Get(), slot.Get()));
    EXPECT_EQ(scope->RemoveChnlByKey(nullptr), S_OK);
    EXPECT_FALSE(scope.GetTXbyKey(L""));
}

}  // namespace
}  // namespace kv::test
