// The members that hosts compile against, in their order. A change here breaks hosts, except at the end of kView.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <iterator>
#include <utility>

namespace kv::test {

enum Kind {
    kFunction = INVOKE_FUNC,
    kGet = INVOKE_PROPERTYGET,
    kLet = INVOKE_PROPERTYPUT,
    kSet = INVOKE_PROPERTYPUTREF
};

struct Expected {
    const char* name;
    Kind kind;
    const char* parameters;  ///< types with commas between; "[...]": optional
    const char* result;      ///< "" without a result
};

// double, int16, int32, bool, color, string, FreqSlot, object, variant; "&" for what is given back through a parameter.
inline constexpr Expected kControl[] = {
    {"AddTXChnl", kFunction, "FreqSlot", "int32"},
    {"AddRXChnl", kFunction, "FreqSlot", "int32"},
    {"GetTXChnl", kFunction, "int32", "FreqSlot"},
    {"GetRXChnl", kFunction, "int32", "FreqSlot"},
    {"dTXFreqMin", kGet, "", "double"},
    {"dTXFreqMax", kGet, "", "double"},
    {"dRXFreqMin", kGet, "", "double"},
    {"dRXFreqMax", kGet, "", "double"},
    {"dTXPwrDBMMin", kGet, "", "double"},
    {"dTXPwrDBMMax", kGet, "", "double"},
    {"NumTX", kGet, "", "int32"},
    {"NumRX", kGet, "", "int32"},
    {"dFreqMin", kGet, "", "double"},
    {"dFreqMax", kGet, "", "double"},
    {"dPwrMin", kGet, "", "double"},
    {"dPwrMax", kGet, "", "double"},
    {"DrawDisplay", kFunction, "", "bool"},
    {"bXLog", kLet, "bool", ""},
    {"bXLog", kGet, "", "bool"},
    {"ReDrawChnl", kFunction, "FreqSlot", "bool"},
    {"ClearDisplay", kFunction, "", ""},
    {"ClearDisplayLabels", kFunction, "", ""},
    {"ClearAllChnls", kFunction, "", ""},
    {"ClearTXChnls", kFunction, "", ""},
    {"ClearRXChnls", kFunction, "", ""},
    {"nGridX", kLet, "int16", ""},
    {"nGridX", kGet, "", "int16"},
    {"DisplayCenterFreq", kGet, "", "double"},
    {"DisplayCenterFreq", kLet, "double", ""},
    {"DisplayMinFreq", kGet, "", "double"},
    {"DisplayMaxFreq", kGet, "", "double"},
    {"DisplayMinPwr", kLet, "double", ""},
    {"DisplayMinPwr", kGet, "", "double"},
    {"DisplayMaxPwr", kLet, "double", ""},
    {"DisplayMaxPwr", kGet, "", "double"},
    {"GridColor", kLet, "color", ""},
    {"GridColor", kGet, "", "color"},
    {"FreqEndBuffer", kLet, "double", ""},
    {"FreqEndBuffer", kGet, "", "double"},
    {"ReScaleChannels", kFunction, "", "bool"},
    {"DrawInitialDisplay", kFunction, "", ""},
    {"JustDrawIt", kFunction, "", ""},
    {"DrawAll", kFunction, "", ""},
    {"RescaleAll", kFunction, "", ""},
    {"nFindMatchRX", kFunction, "FreqSlot", "int32"},
    {"MinHgt", kGet, "", "int16"},
    {"MinWid", kGet, "", "int16"},
    {"CursorVal", kLet, "double", ""},
    {"CursorVal", kGet, "", "double"},
    {"lCursorColor", kLet, "color", ""},
    {"lCursorColor", kGet, "", "color"},
    {"DisplayToBMP", kFunction, "double&,double&,[string&]", "string"},
    {"CopyDisplayToClipboard", kFunction, "", ""},
    {"bMouseInfo", kLet, "bool", ""},
    {"bChkVisMouseInfo", kLet, "bool", ""},
    {"ShowAll", kGet, "", "bool"},
    {"ShowAll", kLet, "bool", ""},
    {"ShowAll_REPLACED_20070521_1637", kLet, "bool", ""},
    {"bChkVisShowAll", kLet, "bool", ""},
    {"bLoadingAll", kGet, "", "bool"},
    {"bLoadingAll", kLet, "bool", ""},
    {"GetTXbyKey", kFunction, "string", "FreqSlot"},
    {"GetRXbyKey", kFunction, "string", "FreqSlot"},
    {"GetChnlByKey", kFunction, "string", "FreqSlot"},
    {"Refresh", kFunction, "", ""},
    {"DrawByRange", kFunction, "[double],[double]", ""},
    {"DrawNewCenterFreq", kFunction, "", ""},
    {"RemoveChnlByKey", kFunction, "string", ""},
    {"lColorLblBack", kLet, "color", ""},
    {"lColorLblFore", kLet, "color", ""},
    {"lColorSpecBack", kLet, "color", ""},
};
static_assert(std::size(kControl) == 71);

inline constexpr Expected kView[] = {
    {"Scope", kGet, "", "object"},
    {"Scope", kLet, "object", ""},
    {"Scope", kSet, "object", ""},
    {"ShowRange", kFunction, "double,double", ""},
    {"ZoomBy", kFunction, "double,[double]", ""},
    {"PanBy", kFunction, "double", ""},
    {"HitTest", kFunction, "double,[double]", "variant"},
    {"AddTXChannels", kFunction, "variant", "int32"},
    {"AddRXChannels", kFunction, "variant", "int32"},
    {"RenderTimeMs", kGet, "", "double"},
    {"BeginUpdate", kFunction, "", ""},
    {"EndUpdate", kFunction, "", ""},
    {"Back", kFunction, "", "bool"},
    {"Forward", kFunction, "", "bool"},
    {"CanGoBack", kGet, "", "bool"},
    {"CanGoForward", kGet, "", "bool"},
    {"Marker", kGet, "", "double"},
    {"Marker", kLet, "double", ""},
    {"MarkerVisible", kGet, "", "bool"},
    {"MarkerVisible", kLet, "bool", ""},
    {"WheelZoom", kGet, "", "bool"},
    {"WheelZoom", kLet, "bool", ""},
    {"SnapToChannels", kGet, "", "bool"},
    {"SnapToChannels", kLet, "bool", ""},
    {"PowerAxis", kGet, "", "bool"},
    {"PowerAxis", kLet, "bool", ""},
    {"Legend", kGet, "", "bool"},
    {"Legend", kLet, "bool", ""},
    {"ChannelLabels", kGet, "", "bool"},
    {"ChannelLabels", kLet, "bool", ""},
    {"SavePicture", kFunction, "string,[int32],[int32],[int32]", ""},
    {"CopyPicture", kFunction, "", ""},
    {"PrintPicture", kFunction, "double,int32,int32,int32,int32", ""},
};

inline constexpr Expected kEvents[] = {
    {"ChgGridRange", kFunction, "", ""},
    {"ChgHeight", kFunction, "int16", ""},
    {"ChgFreqRange", kFunction, "double,double", ""},
};

// A property's set comes before its get.
inline constexpr std::pair<const char*, const char*> kChannel[] = {
    {"dFreq", "double"},    {"dFreqAlt", "double"},    {"dBW", "double"},          {"dFreqHi", "double"},
    {"dFreqLo", "double"},  {"dPwrDBM", "double"},     {"sLabel", "string"},       {"sFreqUnits", "string"},
    {"sBWUnits", "string"}, {"lColorLine", "color"},   {"lColor", "color"},        {"nIMComps", "int16"},
    {"nIMComp", "int16"},   {"dIMCompFreq", "double"}, {"sIMCompLabel", "string"}, {"sKey", "string"},
    {"bVisible", "bool"},   {"bDrawn", "bool"},        {"iFillStyle", "int16"},
};

}  // namespace kv::test
