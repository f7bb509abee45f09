// The numbers of all members. Hosts that were compiled against the type library call by number alone, so no number may
// ever change its member.
#include <gmock/gmock.h>

#include "tests/automation/Module.h"

namespace kv::test {
namespace {

constexpr INVOKEKIND kCall = INVOKE_FUNC;
constexpr INVOKEKIND kGet = INVOKE_PROPERTYGET;
constexpr INVOKEKIND kLet = INVOKE_PROPERTYPUT;

struct Numbered {
    DISPID id;
    const wchar_t* name;
    INVOKEKIND kind;
};

/// In the order of the interface, which is that of its function table.
const Numbered kControl[] = {
    {1, L"AddTXChnl", kCall},
    {2, L"AddRXChnl", kCall},
    {3, L"GetTXChnl", kCall},
    {4, L"GetRXChnl", kCall},
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
    {17, L"DrawDisplay", kCall},
    {18, L"bXLog", kLet},
    {18, L"bXLog", kGet},
    {19, L"ReDrawChnl", kCall},
    {20, L"ClearDisplay", kCall},
    {21, L"ClearDisplayLabels", kCall},
    {22, L"ClearAllChnls", kCall},
    {23, L"ClearTXChnls", kCall},
    {24, L"ClearRXChnls", kCall},
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
    {33, L"ReScaleChannels", kCall},
    {34, L"DrawInitialDisplay", kCall},
    {35, L"JustDrawIt", kCall},
    {36, L"DrawAll", kCall},
    {37, L"RescaleAll", kCall},
    {38, L"nFindMatchRX", kCall},
    {39, L"MinHgt", kGet},
    {40, L"MinWid", kGet},
    {41, L"CursorVal", kLet},
    {41, L"CursorVal", kGet},
    {42, L"lCursorColor", kLet},
    {42, L"lCursorColor", kGet},
    {43, L"DisplayToBMP", kCall},
    {44, L"CopyDisplayToClipboard", kCall},
    {45, L"bMouseInfo", kLet},
    {46, L"bChkVisMouseInfo", kLet},
    {47, L"ShowAll", kGet},
    {47, L"ShowAll", kLet},
    {48, L"ShowAll_REPLACED_20070521_1637", kLet},
    {49, L"bChkVisShowAll", kLet},
    {50, L"bLoadingAll", kGet},
    {50, L"bLoadingAll", kLet},
    {51, L"GetTXbyKey", kCall},
    {52, L"GetRXbyKey", kCall},
    {53, L"GetChnlByKey", kCall},
    {54, L"Refresh", kCall},
    {55, L"DrawByRange", kCall},
    {56, L"DrawNewCenterFreq", kCall},
    {57, L"RemoveChnlByKey", kCall},
    {58, L"lColorLblBack", kLet},
    {59, L"lColorLblFore", kLet},
    {60, L"lColorSpecBack", kLet},
};
static_assert(std::size(kControl) == 71);

/// A channel's members can all be set and read, the set first.
const std::pair<DISPID, const wchar_t*> kChannel[] = {
    {1, L"dFreq"},   {2, L"dFreqAlt"},  {3, L"dBW"},        {4, L"dFreqHi"},      {5, L"dFreqLo"},
    {6, L"dPwrDBM"}, {7, L"sLabel"},    {8, L"sFreqUnits"}, {9, L"sBWUnits"},     {10, L"lColorLine"},
    {11, L"lColor"}, {12, L"nIMComps"}, {13, L"nIMComp"},   {14, L"dIMCompFreq"}, {15, L"sIMCompLabel"},
    {16, L"sKey"},   {17, L"bVisible"}, {18, L"bDrawn"},    {19, L"iFillStyle"},
};

const std::pair<DISPID, const wchar_t*> kEvents[] = {{1, L"ChgGridRange"}, {2, L"ChgHeight"}, {3, L"ChgFreqRange"}};

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
    ASSERT_EQ(members.size(), std::size(kControl));
    for (std::size_t i = 0; i < members.size(); ++i) {
        EXPECT_EQ(names[i], kControl[i].name) << i;
        EXPECT_EQ(members[i].id, kControl[i].id) << i;
        EXPECT_EQ(members[i].kind, kControl[i].kind) << i;
    }
}

TEST_F(DispatchIds, TheControlFindsItsMembersByName) {
    const ComPtr<IDispatch> control = createInstance<_kvBandscope>(CLSID_kvBandscope);
    for (const Numbered& member : kControl)
        expectNumber(control.Get(), member.name, member.id);
}

TEST_F(DispatchIds, AChannelsMembersHaveTheirNumbers) {
    std::vector<std::wstring> names;
    const std::vector<Numbered> members = described(IID__FreqSlot, names);
    const ComPtr<IDispatch> slot = createInstance<_FreqSlot>(CLSID_FreqSlot);
    ASSERT_EQ(members.size(), 2 * std::size(kChannel));
    for (std::size_t i = 0; i < members.size(); ++i) {
        const auto& [id, name] = kChannel[i / 2];
        EXPECT_EQ(names[i], name) << i;
        EXPECT_EQ(members[i].id, id) << i;
        EXPECT_EQ(members[i].kind, i % 2 == 0 ? kLet : kGet) << i;
        expectNumber(slot.Get(), name, id);
    }
}

TEST_F(DispatchIds, TheEventsHaveTheirNumbers) {
    std::vector<std::wstring> names;
    const std::vector<Numbered> members = described(DIID___kvBandscope, names);
    ASSERT_EQ(members.size(), std::size(kEvents));
    for (std::size_t i = 0; i < members.size(); ++i) {
        EXPECT_EQ(names[i], kEvents[i].second);
        EXPECT_EQ(members[i].id, kEvents[i].first);
    }
}

}  // namespace
}  // namespace kv::test
