// The numbers of all members. Hosts that were compiled against the type library call by number alone, so no number may
// ever change its member.
#include <gmock/gmock.h>

#include "tests/automation/ExpectedMembers.h"
#include "tests/automation/Module.h"

namespace kv::test {
namespace {

struct Numbered {
    DISPID id;
    const wchar_t* name;
    int kind;  ///< INVOKE_...
};

/// In the order of the interface, which is that of its function table.
const Numbered kControlIds[] = {
    {1, L"AddTXChnl", kFunction},
    {2, L"AddRXChnl", kFunction},
    {3, L"GetTXChnl", kFunction},
    {4, L"GetRXChnl", kFunction},
    {5, L"dTXFreqMin", kGet},
    {6, L"dTXFreqMax", kGet},
    {7, L"dRXFreqMin", kGet},
    {8, L"dRXFreqMax", kGet},
    {9, L"dTXPwrDBMMin", kGet},
    {10, L"dTXPwrDBMMax", kGet},
    {11, L"NumTX", kGet},
    {12, L"NumRX", kGet},
    {13, L"dFreqMin", kGet},
    {14, L"dFreqMax", kGet},
    {15, L"dPwrMin", kGet},
    {16, L"dPwrMax", kGet},
    {17, L"DrawDisplay", kFunction},
    {18, L"bXLog", kLet},
    {18, L"bXLog", kGet},
    {19, L"ReDrawChnl", kFunction},
    {20, L"ClearDisplay", kFunction},
    {21, L"ClearDisplayLabels", kFunction},
    {22, L"ClearAllChnls", kFunction},
    {23, L"ClearTXChnls", kFunction},
    {24, L"ClearRXChnls", kFunction},
    {25, L"nGridX", kLet},
    {25, L"nGridX", kGet},
    {26, L"DisplayCenterFreq", kGet},
    {26, L"DisplayCenterFreq", kLet},
    {27, L"DisplayMinFreq", kGet},
    {28, L"DisplayMaxFreq", kGet},
    {29, L"DisplayMinPwr", kLet},
    {29, L"DisplayMinPwr", kGet},
    {30, L"DisplayMaxPwr", kLet},
    {30, L"DisplayMaxPwr", kGet},
    {31, L"GridColor", kLet},
    {31, L"GridColor", kGet},
    {32, L"FreqEndBuffer", kLet},
    {32, L"FreqEndBuffer", kGet},
    {33, L"ReScaleChannels", kFunction},
    {34, L"DrawInitialDisplay", kFunction},
    {35, L"JustDrawIt", kFunction},
    {36, L"DrawAll", kFunction},
    {37, L"RescaleAll", kFunction},
    {38, L"nFindMatchRX", kFunction},
    {39, L"MinHgt", kGet},
    {40, L"MinWid", kGet},
    {41, L"CursorVal", kLet},
    {41, L"CursorVal", kGet},
    {42, L"lCursorColor", kLet},
    {42, L"lCursorColor", kGet},
    {43, L"DisplayToBMP", kFunction},
    {44, L"CopyDisplayToClipboard", kFunction},
    {45, L"bMouseInfo", kLet},
    {46, L"bChkVisMouseInfo", kLet},
    {47, L"ShowAll", kGet},
    {47, L"ShowAll", kLet},
    {48, L"ShowAll_REPLACED_20070521_1637", kLet},
    {49, L"bChkVisShowAll", kLet},
    {50, L"bLoadingAll", kGet},
    {50, L"bLoadingAll", kLet},
    {51, L"GetTXbyKey", kFunction},
    {52, L"GetRXbyKey", kFunction},
    {53, L"GetChnlByKey", kFunction},
    {54, L"Refresh", kFunction},
    {55, L"DrawByRange", kFunction},
    {56, L"DrawNewCenterFreq", kFunction},
    {57, L"RemoveChnlByKey", kFunction},
    {58, L"lColorLblBack", kLet},
    {59, L"lColorLblFore", kLet},
    {60, L"lColorSpecBack", kLet},
};
static_assert(std::size(kControlIds) == 71);

/// A channel's members can all be set and read, the set first.
const std::pair<DISPID, const wchar_t*> kChannelIds[] = {
    {1, L"dFreq"},   {2, L"dFreqAlt"},  {3, L"dBW"},        {4, L"dFreqHi"},      {5, L"dFreqLo"},
    {6, L"dPwrDBM"}, {7, L"sLabel"},    {8, L"sFreqUnits"}, {9, L"sBWUnits"},     {10, L"lColorLine"},
    {11, L"lColor"}, {12, L"nIMComps"}, {13, L"nIMComp"},   {14, L"dIMCompFreq"}, {15, L"sIMCompLabel"},
    {16, L"sKey"},   {17, L"bVisible"}, {18, L"bDrawn"},    {19, L"iFillStyle"},
};

const std::pair<DISPID, const wchar_t*> kEventIds[] = {{1, L"ChgGridRange"}, {2, L"ChgHeight"}, {3, L"ChgFreqRange"}};

class DispatchIds : public testing::Test {
  protected:
    /// The members of an interface that our library describes, without those of IDispatch.
    static std::vector<Numbered> described(REFIID iid, std::vector<std::wstring>& names) {
        std::vector<Numbered> members;
        ComPtr<ITypeLib> library;
        ComPtr<ITypeInfo> info;
        EXPECT_EQ(LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, library.GetAddressOf()), S_OK);
        EXPECT_EQ(library->GetTypeInfoOfGuid(iid, info.GetAddressOf()), S_OK);
        FUNCDESC* function = nullptr;
        for (UINT i = 0; SUCCEEDED(info->GetFuncDesc(i, &function)); ++i) {
            Text name;
            UINT count = 0;
            info->GetNames(function->memid, name.put(), 1, &count);
            if (!(function->wFuncFlags & FUNCFLAG_FRESTRICTED)) {
                names.push_back(name.str());
                members.push_back({function->memid, nullptr, function->invkind});
            }
            info->ReleaseFuncDesc(function);
        }
        return members;
    }
    static void expectNumber(IDispatch* object, const wchar_t* name, DISPID id) {
        EXPECT_EQ(idOf(object, name), id) << testing::PrintToString(std::wstring(name));
    }
};

TEST_F(DispatchIds, TheControlsMembersAreDescribedWithTheirNumbers) {
    std::vector<std::wstring> names;
    const std::vector<Numbered> members = described(IID__kvBandscope, names);
    ASSERT_EQ(members.size(), std::size(kControlIds));
    for (std::size_t i = 0; i < members.size(); ++i) {
        EXPECT_EQ(names[i], kControlIds[i].name) << i;
        EXPECT_EQ(members[i].id, kControlIds[i].id) << i;
        EXPECT_EQ(members[i].kind, kControlIds[i].kind) << i;
    }
}

TEST_F(DispatchIds, TheControlFindsItsMembersByName) {
    const ComPtr<IDispatch> control = createInstance<_kvBandscope>(CLSID_kvBandscope);
    for (const Numbered& member : kControlIds)
        expectNumber(control.Get(), member.name, member.id);
}

TEST_F(DispatchIds, AChannelsMembersHaveTheirNumbers) {
    std::vector<std::wstring> names;
    const std::vector<Numbered> members = described(IID__FreqSlot, names);
    const ComPtr<IDispatch> slot = createInstance<_FreqSlot>(CLSID_FreqSlot);
    ASSERT_EQ(members.size(), 2 * std::size(kChannelIds));
    for (std::size_t i = 0; i < members.size(); ++i) {
        const auto& [id, name] = kChannelIds[i / 2];
        EXPECT_EQ(names[i], name) << i;
        EXPECT_EQ(members[i].id, id) << i;
        EXPECT_EQ(members[i].kind, i % 2 == 0 ? kLet : kGet) << i;
        expectNumber(slot.Get(), name, id);
    }
}

TEST_F(DispatchIds, TheEventsHaveTheirNumbers) {
    std::vector<std::wstring> names;
    const std::vector<Numbered> members = described(DIID___kvBandscope, names);
    ASSERT_EQ(members.size(), std::size(kEventIds));
    for (std::size_t i = 0; i < members.size(); ++i) {
        EXPECT_EQ(names[i], kEventIds[i].second);
        EXPECT_EQ(members[i].id, kEventIds[i].first);
    }
}

}  // namespace
}  // namespace kv::test
