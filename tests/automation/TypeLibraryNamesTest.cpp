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
                                                   {DIID___kvBandscope, L"ChgFreqRange(dMin,dMax)"}};
    for (const auto& [iid, lastName] : last) {
        const ComPtr<ITypeInfo> info = describe(iid);
        DISPID count = 0;
        while (!signature(info.Get(), count + 1).empty())
            ++count;
        EXPECT_EQ(count, iid == IID__kvBandscope ? 60 : iid == IID__FreqSlot ? 19 : 3);
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

TEST_F(TypeLibraryNames, ArgumentsOfTheEvents) {
    const ComPtr<ITypeInfo> info = describe(DIID___kvBandscope);
    EXPECT_EQ(signature(info.Get(), 1), L"ChgGridRange");
    EXPECT_EQ(signature(info.Get(), 2), L"ChgHeight(iHgt)");
}

}  // namespace
}  // namespace kv::test
