#include "tests/automation/ControlFixture.h"

namespace kv::test {

namespace {

BSTR bstr(const Text& text) {
    return text.get();
}

}  // namespace

std::string nameOf(const testing::TestParamInfo<Way>& info) {
    return info.param == Way::early ? "Early" : "Late";
}

ComPtr<_FreqSlot> channel(const ChannelSpec& spec) {
    ComPtr<_FreqSlot> slot = createInstance<_FreqSlot>(CLSID_FreqSlot);
    slot->put_dFreq(spec.freq);
    slot->put_dBW(spec.bw);
    slot->put_dFreqLo(spec.lo);
    slot->put_dFreqHi(spec.hi);
    slot->put_dPwrDBM(spec.power);
    slot->put_sKey(bstr(Text(spec.key)));
    slot->put_sLabel(bstr(Text(spec.label)));
    slot->put_sFreqUnits(bstr(Text(spec.units)));
    slot->put_sBWUnits(bstr(Text(spec.bwUnits)));
    slot->put_lColor(spec.color);
    slot->put_lColorLine(spec.line);
    slot->put_bVisible(spec.visible ? VARIANT_TRUE : VARIANT_FALSE);
    return slot;
}

std::wstring keyOf(_FreqSlot* slot) {
    Text key;
    if (slot)
        slot->get_sKey(key.put());
    return key.str();
}

double freqLo(_FreqSlot* slot) {
    double value = 0.0;
    EXPECT_EQ(slot->get_dFreqLo(&value), S_OK);
    return value;
}

double freqHi(_FreqSlot* slot) {
    double value = 0.0;
    EXPECT_EQ(slot->get_dFreqHi(&value), S_OK);
    return value;
}

short fillStyle(_FreqSlot* slot) {
    short value = 0;
    EXPECT_EQ(slot->get_iFillStyle(&value), S_OK);
    return value;
}

bool isDrawn(_FreqSlot* slot) {
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ(slot->get_bDrawn(&value), S_OK);
    return value != VARIANT_FALSE;
}

Scope::Scope(Way way) : way_(way), scope_(createInstance<_kvBandscope>(CLSID_kvBandscope)) {
    if (!scope_)
        ADD_FAILURE() << "no control";
}

bool Scope::flag(Getter<VARIANT_BOOL> getter, const wchar_t* name, WORD how) {
    const VARIANT_BOOL value = number<VARIANT_BOOL>(getter, name, VT_BOOL, how);
    EXPECT_TRUE(value == VARIANT_TRUE || value == VARIANT_FALSE) << name << " " << value;
    return value != VARIANT_FALSE;
}

void Scope::run(HRESULT (STDMETHODCALLTYPE _kvBandscope::*member)(), const wchar_t* name) {
    EXPECT_EQ(way_ == Way::early ? (scope_.Get()->*member)() : call(scope_.Get(), name).hr, S_OK) << name;
}

long Scope::index(Function<_FreqSlot*, long> member, const wchar_t* name, const ComPtr<_FreqSlot>& slot) {
    long result = -1;
    if (way_ == Way::early) {
        EXPECT_EQ((scope_.Get()->*member)(slot.Get(), &result), S_OK) << name;
        return result;
    }
    const Outcome outcome = call(scope_.Get(), name, {Var(slot.Get())});
    EXPECT_EQ(outcome.hr, S_OK) << name;
    EXPECT_EQ(outcome.result.vt, VT_I4) << name;
    return outcome.result.lVal;
}

ComPtr<_FreqSlot> Scope::byKey(Function<BSTR, _FreqSlot*> member, const wchar_t* name, const wchar_t* key) {
    const Text text{std::wstring(key)};
    return found(member, name, text.get(), Var(key));
}

void Scope::RemoveChnlByKey(const wchar_t* key) {
    const Text text{std::wstring(key)};
    EXPECT_EQ(way_ == Way::early ? scope_->RemoveChnlByKey(text.get())
                                 : call(scope_.Get(), L"RemoveChnlByKey", {Var(key)}).hr,
              S_OK);
}

bool Scope::ReDrawChnl(const ComPtr<_FreqSlot>& slot) {
    VARIANT_BOOL result = VARIANT_FALSE;
    if (way_ == Way::early) {
        EXPECT_EQ(scope_->ReDrawChnl(slot.Get(), &result), S_OK);
        return result == VARIANT_TRUE;
    }
    const Outcome outcome = call(scope_.Get(), L"ReDrawChnl", {Var(slot.Get())});
    EXPECT_EQ(outcome.hr, S_OK);
    EXPECT_EQ(outcome.result.vt, VT_BOOL);
    return outcome.result.boolVal == VARIANT_TRUE;
}

void Scope::DrawByRange(double minimum, double maximum) {
    EXPECT_EQ(way_ == Way::early ? scope_->DrawByRange(minimum, maximum)
                                 : call(scope_.Get(), L"DrawByRange", {minimum, maximum}).hr,
              S_OK);
}

}  // namespace kv::test
