// The numbers of the members and the names of their arguments, by which hosts call them.
#include <gmock/gmock.h>

#include "tests/automation/Module.h"

namespace kv::test {
namespace {

class TypeLibraryNames : public testing::Test {
  protected:
    ComPtr<ITypeLib> library;

    void SetUp() override {
        ASSERT_EQ(LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, library.GetAddressOf()), S_OK);
    }
    ComPtr<ITypeInfo> describe(REFIID iid) {
        ComPtr<ITypeInfo> info;
        EXPECT_EQ(library->GetTypeInfoOfGuid(iid, info.GetAddressOf()), S_OK);
        return info;
    }
    /// The member's name and, in parentheses, those of its arguments.
    static std::wstring signature(ITypeInfo* info, DISPID member) {
        BSTR names[8] = {};
        UINT count = 0;
        info->GetNames(member, names, static_cast<UINT>(std::size(names)), &count);
        std::wstring result;
        for (UINT i = 0; i < count; ++i) {
            Text name;
            *name.put() = names[i];
            if (i > 0)
                result.push_back(i == 1 ? L'(' : L',');
            result += name.str();
        }
        if (count > 1)
            result.push_back(L')');
        return result;
    }
};

TEST_F(TypeLibraryNames, NumbersCountUpFromOne) {
    const std::pair<IID, const wchar_t*> last[] = {{IID__kvBandscope, L"lColorSpecBack"},
                                                   {IID__FreqSlot, L"iFillStyle"},
                                                   {IID__BandscopeView, L"PrintPicture(hdc,left,top,width,height)"},
                                                   {DIID___kvBandscope, L"ChgFreqRange(dMin,dMax)"}};
    for (const auto& [iid, lastName] : last) {
        const ComPtr<ITypeInfo> info = describe(iid);
        DISPID count = 0;
        while (!signature(info.Get(), count + 1).empty())
            ++count;
        EXPECT_EQ(count, iid == IID__kvBandscope ? 60 : iid == IID__FreqSlot ? 19 : iid == IID__BandscopeView ? 24 : 3);
        EXPECT_EQ(signature(info.Get(), count), lastName);
    }
}

TEST_F(TypeLibraryNames, ArgumentsOfTheControl) {
    const std::pair<DISPID, const wchar_t*> expected[] = {
        {1, L"AddTXChnl(chnl)"},
        {2, L"AddRXChnl(chnl)"},
        {3, L"GetTXChnl(i)"},
        {4, L"GetRXChnl(i)"},
        {19, L"ReDrawChnl(chnl)"},
        {38, L"nFindMatchRX(chnl)"},
        {43, L"DisplayToBMP(dHgt,dWid,sFName)"},
        {51, L"GetTXbyKey(sKey)"},
        {52, L"GetRXbyKey(sKey)"},
        {53, L"GetChnlByKey(sKey)"},
        {55, L"DrawByRange(dFMin,dFMax)"},
        {57, L"RemoveChnlByKey(sID)"},
    };
    const ComPtr<ITypeInfo> info = describe(IID__kvBandscope);
    for (const auto& [member, text] : expected)
        EXPECT_EQ(signature(info.Get(), member), text);
}

TEST_F(TypeLibraryNames, ArgumentsOfTheView) {
    const std::pair<DISPID, const wchar_t*> expected[] = {{1, L"Scope"},
                                                          {2, L"ShowRange(min,max)"},
                                                          {3, L"ZoomBy(factor,around)"},
                                                          {4, L"PanBy(MHz)"},
                                                          {5, L"HitTest(freq,tolerance)"},
                                                          {6, L"AddTXChannels(channels)"},
                                                          {7, L"AddRXChannels(channels)"},
                                                          {8, L"RenderTimeMs"},
                                                          {19, L"PowerAxis"},
                                                          {20, L"Legend"},
                                                          {21, L"ChannelLabels"},
                                                          {22, L"SavePicture(file,width,height,dpi)"},
                                                          {23, L"CopyPicture"},
                                                          {24, L"PrintPicture(hdc,left,top,width,height)"}};
    const ComPtr<ITypeInfo> info = describe(IID__BandscopeView);
    for (const auto& [member, text] : expected)
        EXPECT_EQ(signature(info.Get(), member), text);
}

TEST_F(TypeLibraryNames, ArgumentsOfTheEvents) {
    const ComPtr<ITypeInfo> info = describe(DIID___kvBandscope);
    EXPECT_EQ(signature(info.Get(), 1), L"ChgGridRange");
    EXPECT_EQ(signature(info.Get(), 2), L"ChgHeight(iHgt)");
}

// What containers have by the same names on the object around a control, so that the control's own member is reached
// another way. See docs/host-guide.md.
const wchar_t* const kContainerNames[] = {
    L"Anchor",     L"BackColor",     L"Bounds",  L"Cancel",   L"Click",   L"Container",  L"Controls", L"Cursor",
    L"DataFormat", L"Default",       L"Destroy", L"Dock",     L"DoVerb",  L"Drag",       L"EditMode", L"Enabled",
    L"Enter",      L"Error",         L"Exit",    L"Focus",    L"Font",    L"ForeColor",  L"GotFocus", L"Handle",
    L"Height",     L"HelpContext",   L"Hide",    L"Index",    L"Init",    L"Invalidate", L"Layout",   L"Left",
    L"Location",   L"LostFocus",     L"Move",    L"Name",     L"Object",  L"Parent",     L"Refresh",  L"Region",
    L"Resize",     L"Scale",         L"Select",  L"SetFocus", L"Show",    L"Site",       L"Size",     L"State",
    L"TabIndex",   L"TabStop",       L"Tag",     L"Text",     L"ToolTip", L"Top",        L"Update",   L"Updated",
    L"Visible",    L"WhatsThisHelp", L"Width",   L"ZOrder"};

TEST_F(TypeLibraryNames, OnlyOneMemberIsHiddenByAContainersOwn) {
    std::vector<std::wstring> hidden;
    for (const IID* iid : {&IID__kvBandscope, &DIID___kvBandscope}) {
        const ComPtr<ITypeInfo> info = describe(*iid);
        for (DISPID member = 1; !signature(info.Get(), member).empty(); ++member) {
            const std::wstring text = signature(info.Get(), member);
            const std::wstring name = text.substr(0, text.find(L'('));
            for (const wchar_t* other : kContainerNames)
                if (lstrcmpiW(name.c_str(), other) == 0)
                    hidden.push_back(name);
        }
    }
    EXPECT_EQ(hidden, std::vector<std::wstring>{L"Refresh"});
}

TEST_F(TypeLibraryNames, NoMemberHasTheNameOfAnotherMembersSetter) {
    // Some languages call the setter of a property Prop "SetProp".
    for (const IID* iid : {&IID__kvBandscope, &IID__FreqSlot}) {
        const ComPtr<ITypeInfo> info = describe(*iid);
        std::vector<std::wstring> names;
        for (DISPID member = 1; !signature(info.Get(), member).empty(); ++member) {
            const std::wstring text = signature(info.Get(), member);
            names.push_back(text.substr(0, text.find(L'(')));
        }
        for (const std::wstring& name : names)
            for (const std::wstring& other : names)
                EXPECT_NE(lstrcmpiW(name.c_str(), (L"Set" + other).c_str()), 0) << testing::PrintToString(name);
    }
}

}  // namespace
}  // namespace kv::test
