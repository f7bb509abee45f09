// The type library that hosts compile against: members, order, kinds, types and help.
#include <gmock/gmock.h>

#include "tests/automation/ExpectedMembers.h"
#include "tests/automation/Module.h"

namespace kv::test {
namespace {

std::string narrow(const Text& text) {
    std::string result;
    for (const wchar_t c : text.str())
        result += static_cast<char>(c);
    return result;
}

// The alias by which designers and Visual Basic know a color, and the library that has it.
constexpr GUID kOleColor = {0x66504301, 0xBE0F, 0x101A, {0x8B, 0xBB, 0x00, 0xAA, 0x00, 0x30, 0x0C, 0xAB}};
constexpr GUID kStdole = {0x00020430, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

GUID libraryOf(ITypeInfo* type) {
    ComPtr<ITypeLib> library;
    UINT index = 0;
    TLIBATTR* attr = nullptr;
    if (FAILED(type->GetContainingTypeLib(library.GetAddressOf(), &index)) || FAILED(library->GetLibAttr(&attr)))
        return {};
    const GUID result = attr->guid;
    library->ReleaseTLibAttr(attr);
    return result;
}

std::string named(ITypeInfo* info, HREFTYPE reference) {
    ComPtr<ITypeInfo> type;
    TYPEATTR* attr = nullptr;
    if (FAILED(info->GetRefTypeInfo(reference, type.GetAddressOf())) || FAILED(type->GetTypeAttr(&attr)))
        return "unreadable";
    std::string result = attr->guid == IID__FreqSlot ? "FreqSlot" : "unknown";
    if (attr->typekind == TKIND_ALIAS) {
        Text name;
        type->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
        const bool isColor = name.str() == L"OLE_COLOR" && attr->guid == kOleColor && libraryOf(type.Get()) == kStdole;
        result = isColor ? "color" : "alias " + narrow(name);
    }
    type->ReleaseTypeAttr(attr);
    return result;
}

std::string typeName(ITypeInfo* info, const TYPEDESC& type) {
    switch (type.vt) {
        case VT_R8:
            return "double";
        case VT_I2:
            return "int16";
        case VT_I4:
            return "int32";
        case VT_BOOL:
            return "bool";
        case VT_BSTR:
            return "string";
        case VT_DISPATCH:
            return "object";
        case VT_VARIANT:
            return "variant";
        case VT_VOID:
        case VT_HRESULT:
            return "";
        case VT_USERDEFINED:
            return named(info, type.hreftype);
        case VT_PTR: {
            const std::string inner = typeName(info, *type.lptdesc);
            return inner == "FreqSlot" && type.lptdesc->vt == VT_USERDEFINED ? inner : inner + "&";
        }
        default:
            return "type " + std::to_string(type.vt);
    }
}

struct Found {
    std::string name;
    int kind = 0;
    std::string parameters;
    std::string result;
    std::string help;
    DISPID id = 0;
    WORD flags = 0;
    std::size_t vtableOffset = 0;  ///< bytes
};

Found describeMember(ITypeInfo* info, const FUNCDESC& func) {
    Found found;
    Text name;
    Text help;
    EXPECT_EQ(info->GetDocumentation(func.memid, name.put(), nullptr, nullptr, nullptr), S_OK);
    found.name = narrow(name);
    found.kind = func.invkind;
    found.id = func.memid;
    found.flags = func.wFuncFlags;
    found.vtableOffset = static_cast<std::size_t>(func.oVft);
    found.result = typeName(info, func.elemdescFunc.tdesc);
    for (SHORT i = 0; i < func.cParams; ++i) {
        const ELEMDESC& element = func.lprgelemdescParam[i];
        std::string type = typeName(info, element.tdesc);
        if (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) {
            if (type.back() == '&')
                type.pop_back();
            found.result = type;
            continue;
        }
        if (element.paramdesc.wParamFlags & PARAMFLAG_FOPT)
            type = "[" + type + "]";
        found.parameters += (found.parameters.empty() ? "" : ",") + type;
    }
    return found;
}

/// The members of an interface. A dual interface is read in the order of its function table, with each help text.
std::vector<Found> membersOf(ITypeLib* library, REFIID iid, bool isDual) {
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(library->GetTypeInfoOfGuid(iid, info.GetAddressOf()), S_OK);
    if (isDual) {
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> vtable;
        EXPECT_EQ(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
        EXPECT_EQ(info->GetRefTypeInfo(reference, vtable.GetAddressOf()), S_OK);
        info = vtable;
    }
    ComPtr<ITypeInfo2> info2;
    EXPECT_EQ(info.As(&info2), S_OK);
    TYPEATTR* attr = nullptr;
    EXPECT_EQ(info->GetTypeAttr(&attr), S_OK);
    std::vector<Found> members;
    for (UINT i = 0; i < attr->cFuncs; ++i) {
        FUNCDESC* func = nullptr;
        EXPECT_EQ(info->GetFuncDesc(i, &func), S_OK);
        Found found = describeMember(info.Get(), *func);
        Text help;
        EXPECT_EQ(info->GetDocumentation(func->memid, nullptr, help.put(), nullptr, nullptr), S_OK);
        found.help = narrow(help);
        info->ReleaseFuncDesc(func);
        members.push_back(found);
    }
    info->ReleaseTypeAttr(attr);
    return members;
}

class TypeLibraryTest : public testing::Test {
  protected:
    ComPtr<ITypeLib> library;
    void SetUp() override {
        ASSERT_EQ(LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, library.GetAddressOf()), S_OK);
    }
};

void expectMember(const Found& found, const Expected& expected) {
    SCOPED_TRACE(expected.name);
    EXPECT_EQ(found.name, expected.name);
    EXPECT_EQ(found.kind, expected.kind);
    EXPECT_EQ(found.parameters, expected.parameters);
    EXPECT_EQ(found.result, expected.result);
    EXPECT_NE(found.help, "");
    EXPECT_EQ(found.flags & (FUNCFLAG_FHIDDEN | FUNCFLAG_FRESTRICTED), 0);
}

TEST_F(TypeLibraryTest, ControlHasItsMembersInOrder) {
    const std::vector<Found> members = membersOf(library.Get(), IID__kvBandscope, true);
    ASSERT_EQ(members.size(), std::size(kControl));
    for (std::size_t i = 0; i < members.size(); ++i)
        expectMember(members[i], kControl[i]);
}

TEST_F(TypeLibraryTest, NoPropertyOfTheControlIsOfferedInADesigner) {
    // Nothing that is set there would be saved.
    for (const Found& member : membersOf(library.Get(), IID__kvBandscope, true))
        EXPECT_EQ((member.flags & FUNCFLAG_FNONBROWSABLE) != 0, member.kind != kFunction) << member.name;
}

TEST_F(TypeLibraryTest, TheFunctionTableBeginsAfterIDispatch) {
    constexpr std::size_t kInherited = 7;
    for (const IID* iid : {&IID__kvBandscope, &IID__FreqSlot, &IID__BandscopeView}) {
        const std::vector<Found> members = membersOf(library.Get(), *iid, true);
        for (std::size_t i = 0; i < members.size(); ++i)
            EXPECT_EQ(members[i].vtableOffset, (kInherited + i) * sizeof(void*)) << members[i].name;
    }
}

TEST_F(TypeLibraryTest, PropertiesShareTheirNumberAndNothingElseDoes) {
    for (const IID* iid : {&IID__kvBandscope, &IID__FreqSlot, &IID__BandscopeView}) {
        const std::vector<Found> members = membersOf(library.Get(), *iid, true);
        for (std::size_t i = 0; i < members.size(); ++i)
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_EQ(members[i].id == members[j].id, members[i].name == members[j].name)
                    << members[i].name << " and " << members[j].name;
    }
}

TEST_F(TypeLibraryTest, ChannelHasItsMembersInOrder) {
    const std::vector<Found> members = membersOf(library.Get(), IID__FreqSlot, true);
    ASSERT_EQ(members.size(), 2 * std::size(kChannel));
    for (std::size_t i = 0; i < std::size(kChannel); ++i) {
        const auto& [name, type] = kChannel[i];
        const std::string text = name;
        const bool isIndexed = text == "nIMComp" || text == "dIMCompFreq" || text == "sIMCompLabel";
        const std::string index = isIndexed ? "int32" : "";
        const std::string put = (isIndexed ? index + "," : "") + type;
        expectMember(members[2 * i], {name, kLet, put.c_str(), ""});
        expectMember(members[2 * i + 1], {name, kGet, index.c_str(), type});
    }
}

TEST_F(TypeLibraryTest, ViewHasItsMembersInOrder) {
    const std::vector<Found> members = membersOf(library.Get(), IID__BandscopeView, true);
    ASSERT_EQ(members.size(), std::size(kView));
    for (std::size_t i = 0; i < members.size(); ++i)
        expectMember(members[i], kView[i]);
}

TEST_F(TypeLibraryTest, EventsInOrder) {
    const std::vector<Found> members = membersOf(library.Get(), DIID___kvBandscope, false);
    ASSERT_EQ(members.size(), std::size(kEvents));
    for (std::size_t i = 0; i < members.size(); ++i)
        expectMember(members[i], kEvents[i]);
}

struct Implemented {
    IID iid{};
    int flags = 0;
};

std::vector<Implemented> implementedBy(ITypeInfo* coclass) {
    TYPEATTR* attr = nullptr;
    EXPECT_EQ(coclass->GetTypeAttr(&attr), S_OK);
    const UINT count = attr->cImplTypes;
    coclass->ReleaseTypeAttr(attr);
    std::vector<Implemented> result(count);
    for (UINT i = 0; i < count; ++i) {
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> info;
        EXPECT_EQ(coclass->GetRefTypeOfImplType(i, &reference), S_OK);
        EXPECT_EQ(coclass->GetRefTypeInfo(reference, info.GetAddressOf()), S_OK);
        EXPECT_EQ(info->GetTypeAttr(&attr), S_OK);
        result[i].iid = attr->guid;
        info->ReleaseTypeAttr(attr);
        EXPECT_EQ(coclass->GetImplTypeFlags(i, &result[i].flags), S_OK);
    }
    return result;
}

TEST_F(TypeLibraryTest, ThreeClassesAreCreatable) {
    int classes = 0;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        TYPEKIND kind{};
        EXPECT_EQ(library->GetTypeInfoType(i, &kind), S_OK);
        if (kind != TKIND_COCLASS)
            continue;
        ++classes;
        ComPtr<ITypeInfo> info;
        TYPEATTR* attr = nullptr;
        EXPECT_EQ(library->GetTypeInfo(i, info.GetAddressOf()), S_OK);
        EXPECT_EQ(info->GetTypeAttr(&attr), S_OK);
        const bool isControl = attr->guid == CLSID_kvBandscope;
        const bool isSlot = attr->guid == CLSID_FreqSlot;
        EXPECT_TRUE(isControl || isSlot || attr->guid == CLSID_View);
        EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FCANCREATE);
        EXPECT_EQ((attr->wTypeFlags & TYPEFLAG_FCONTROL) != 0, isControl);
        info->ReleaseTypeAttr(attr);
        const std::vector<Implemented> interfaces = implementedBy(info.Get());
        ASSERT_EQ(interfaces.size(), isControl ? 2U : 1U);
        EXPECT_TRUE(interfaces[0].iid == (isControl ? IID__kvBandscope : isSlot ? IID__FreqSlot : IID__BandscopeView));
        EXPECT_EQ(interfaces[0].flags, IMPLTYPEFLAG_FDEFAULT);
        if (isControl) {
            EXPECT_TRUE(interfaces[1].iid == DIID___kvBandscope);
            EXPECT_EQ(interfaces[1].flags, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE);
        }
    }
    EXPECT_EQ(classes, 3);
}

TEST_F(TypeLibraryTest, NameVersionAndArchitecture) {
    Text name;
    EXPECT_EQ(library->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(name.str(), L"kvBandscope");
    TLIBATTR* attr = nullptr;
    ASSERT_EQ(library->GetLibAttr(&attr), S_OK);
    EXPECT_TRUE(attr->guid == LIBID_kvBandscope);
    EXPECT_EQ(attr->wMajorVerNum, 1);
    EXPECT_EQ(attr->wMinorVerNum, 0);
    EXPECT_EQ(attr->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
    library->ReleaseTLibAttr(attr);
}

}  // namespace
}  // namespace kv::test
