// Channels of three kinds: the control's own class, a host's class with _FreqSlot, a host's class with names only.
#include <gmock/gmock.h>

#include "automation/ForeignFreqSlot.h"
#include "automation/FreqSlotObject.h"
#include "tests/automation/DictionarySlot.h"
#include "tests/automation/Module.h"
#include "util/RuntimeError.h"

namespace kv::test {
namespace {

using automation::channelFromHost;
using automation::channelToHost;
using channels::FreqSlotRef;

template <class Body>
util::RuntimeError errorOf(Body&& body) {
    try {
        body();
    } catch (const util::RuntimeError& error) {
        return error;
    }
    return util::RuntimeError(0, L"nothing was thrown");
}

ComPtr<_FreqSlot> newSlot() {
    ComPtr<_FreqSlot> slot;
    automation::createFreqSlot(IID_PPV_ARGS(slot.GetAddressOf()));
    return slot;
}

ComPtr<_FreqSlot> toHost(const FreqSlotRef& channel) {
    ComPtr<_FreqSlot> slot;
    EXPECT_EQ(channelToHost(channel.get(), slot.GetAddressOf()), S_OK);
    return slot;
}

ULONG referencesOf(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

/// An object of the module's copy of the class. To the copy of the code in this program, it is a foreign object with
/// _FreqSlot.
ComPtr<_FreqSlot> newEarlyBound() {
    return createInstance<_FreqSlot>(CLSID_FreqSlot);
}

TEST(OwnChannel, IsUsedWithoutAWrapper) {
    const ComPtr<_FreqSlot> slot = newSlot();
    slot->put_dFreq(151.5);
    const FreqSlotRef channel = channelFromHost(slot.Get());
    EXPECT_NE(dynamic_cast<channels::FreqSlotBase*>(channel.get()), nullptr);
    EXPECT_EQ(channel->dFreq(), 151.5);
    EXPECT_EQ(toHost(channel).Get(), slot.Get());
    EXPECT_EQ(referencesOf(slot.Get()), 2U);
}

TEST(OwnChannel, IsCreatedForTheControlItself) {
    util::Ref<channels::FreqSlotBase> made = automation::makeFreqSlot();
    made->setDFreq(5.0);
    const ComPtr<_FreqSlot> slot = toHost(FreqSlotRef(made.get()));
    made = nullptr;
    double frequency = 0.0;
    EXPECT_EQ(slot->get_dFreq(&frequency), S_OK);
    EXPECT_EQ(frequency, 5.0);
    EXPECT_EQ(referencesOf(slot.Get()), 1U);
}

TEST(OwnChannel, IsSmallerThan320Bytes) {
    EXPECT_LT(sizeof(automation::FreqSlotObject), 320U);
}

TEST(NoChannel, IsNullForHostsAndError91FromHosts) {
    _FreqSlot* slot = reinterpret_cast<_FreqSlot*>(&slot);
    EXPECT_EQ(channelToHost(nullptr, &slot), S_OK);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(channelToHost(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(errorOf([] { static_cast<void>(channelFromHost(nullptr)); }).number(), 91);
}

TEST(NoChannel, ObjectWithoutMembersIsError13) {
    ComPtr<ITypeLib> object;
    ASSERT_EQ(LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, object.GetAddressOf()), S_OK);
    EXPECT_EQ(errorOf([&] { static_cast<void>(channelFromHost(object.Get())); }).number(), 13);
}

TEST(EarlyBoundChannel, IsCalledThroughItsVtable) {
    const ComPtr<_FreqSlot> slot = newEarlyBound();
    ASSERT_TRUE(slot);
    {
        const FreqSlotRef channel = channelFromHost(slot.Get());
        EXPECT_EQ(dynamic_cast<channels::FreqSlotBase*>(channel.get()), nullptr);
        channel->setDFreq(1.5);
        channel->setDFreqHi(2.5);
        channel->setDFreqLo(0.5);
        channel->setSFreqUnits(L"MHz");
        channel->setSBWUnits(L"KHz");
        channel->setBDrawn(true);
        channel->setIFillStyle(4);
        slot->put_dFreqAlt(7.0);
        slot->put_dBW(8.0);
        slot->put_dPwrDBM(9.0);
        slot->put_sLabel(Text(L"label").get());
        slot->put_sKey(Text(L"TX9").get());
        slot->put_lColor(0x80000005U);
        slot->put_lColorLine(0x00FF00U);
        slot->put_nIMComps(1);
        slot->put_nIMComp(0, -2);
        slot->put_dIMCompFreq(0, 3.5);
        slot->put_sIMCompLabel(0, Text(L"part").get());
        EXPECT_EQ(channel->dFreq(), 1.5);
        EXPECT_EQ(channel->dFreqAlt(), 7.0);
        EXPECT_EQ(channel->dBW(), 8.0);
        EXPECT_EQ(channel->dPwrDBM(), 9.0);
        EXPECT_EQ(channel->sLabel(), L"label");
        EXPECT_EQ(channel->sKey(), L"TX9");
        EXPECT_EQ(channel->sFreqUnits(), L"MHz");
        EXPECT_EQ(channel->sBWUnits(), L"KHz");
        EXPECT_EQ(channel->nIMComps(), 1);
        EXPECT_EQ(channel->imComponent(0).coefficient, -2);
        EXPECT_EQ(channel->imComponent(0).frequency, 3.5);
        EXPECT_EQ(channel->imComponent(0).label, L"part");
        const channels::DrawRecord record = channel->drawRecord();
        EXPECT_EQ(record.dFreq, 1.5);
        EXPECT_EQ(record.dFreqLo, 0.5);
        EXPECT_EQ(record.dFreqHi, 2.5);
        EXPECT_EQ(record.dPwrDBM, 9.0);
        EXPECT_EQ(record.lColor, 0x80000005U);
        EXPECT_EQ(record.lColorLine, 0x00FF00U);
        EXPECT_EQ(record.iFillStyle, 4);
        EXPECT_TRUE(record.bVisible);
        EXPECT_TRUE(record.bDrawn);
        EXPECT_EQ(toHost(channel).Get(), slot.Get());
        const util::RuntimeError error = errorOf([&] { channel->imComponent(1); });
        EXPECT_EQ(error.number(), 9);
        EXPECT_EQ(error.text(), L"Subscript out of range");
    }
    EXPECT_EQ(referencesOf(slot.Get()), 1U);
}

class LateBoundChannel : public testing::Test {
  protected:
    ComPtr<DictionarySlot> object = DictionarySlot::create();
    FreqSlotRef channel = channelFromHost(object.Get());
};

TEST_F(LateBoundChannel, ReadsAndWritesByName) {
    object->values[L"dFreq"] = 450.5;
    object->values[L"dFreqHi"] = L"450.75";
    object->values[L"dFreqLo"] = 450;
    object->values[L"dPwrDBM"] = Var();
    object->values[L"lColor"] = static_cast<int>(0x8000000F);
    object->values[L"lColorLine"] = 255.0;
    object->values[L"bVisible"] = 0;
    object->values[L"sLabel"] = 12;
    const channels::DrawRecord record = channel->drawRecord();
    EXPECT_EQ(record.dFreq, 450.5);
    EXPECT_EQ(record.dFreqHi, 450.75);
    EXPECT_EQ(record.dFreqLo, 450.0);
    EXPECT_EQ(record.dPwrDBM, 0.0);
    EXPECT_EQ(record.lColor, 0x8000000FU);
    EXPECT_EQ(record.lColorLine, 255U);
    EXPECT_FALSE(record.bVisible);
    EXPECT_EQ(channel->sLabel(), L"12");
    channel->setDFreq(1.0);
    channel->setDFreqHi(2.0);
    channel->setDFreqLo(3.0);
    channel->setSFreqUnits(L"MHz");
    channel->setSBWUnits(L"KHz");
    channel->setBDrawn(true);
    channel->setIFillStyle(5);
    EXPECT_EQ(object->values[L"dFreq"].dblVal, 1.0);
    EXPECT_EQ(object->values[L"dFreqHi"].dblVal, 2.0);
    EXPECT_EQ(object->values[L"dFreqLo"].dblVal, 3.0);
    EXPECT_EQ(object->values[L"sFreqUnits"].text(), L"MHz");
    EXPECT_EQ(object->values[L"sBWUnits"].text(), L"KHz");
    EXPECT_EQ(object->values[L"bDrawn"].boolVal, VARIANT_TRUE);
    EXPECT_EQ(object->values[L"iFillStyle"].iVal, 5);
}

TEST_F(LateBoundChannel, ReadsComponents) {
    object->values[L"nIMComps"] = 2;
    object->values[L"nIMComp(1)"] = -3;
    object->values[L"dIMCompFreq(1)"] = 99.5;
    object->values[L"sIMCompLabel(1)"] = L"Site";
    EXPECT_EQ(channel->nIMComps(), 2);
    const channels::ImComponent component = channel->imComponent(1);
    EXPECT_EQ(component.coefficient, -3);
    EXPECT_EQ(component.frequency, 99.5);
    EXPECT_EQ(component.label, L"Site");
    EXPECT_EQ(errorOf([&] { channel->imComponent(0); }).number(), 9);
}

TEST_F(LateBoundChannel, AsksForTheIdOfANameOnce) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(channel->dFreq(), 0.0);
        channel->setDFreq(0.0);
    }
    EXPECT_EQ(object->nameQuestions, 1);
}

TEST_F(LateBoundChannel, ObjectsOfScriptEnginesAreCalledThroughIDispatchEx) {
    object->answersExtendedOnly = true;
    object->values[L"sKey"] = L"K1";
    EXPECT_EQ(channel->sKey(), L"K1");
    channel->setDFreq(7.0);
    EXPECT_EQ(channel->dFreq(), 7.0);
    object->values.erase(L"dBW");
    EXPECT_EQ(errorOf([&] { channel->dBW(); }).number(), 438);
}

TEST_F(LateBoundChannel, FailuresAreRunTimeErrors) {
    object->values.erase(L"dBW");
    EXPECT_EQ(errorOf([&] { channel->dBW(); }).number(), 438);
    object->values[L"dBW"] = 6.25;
    EXPECT_EQ(channel->dBW(), 6.25);
    object->values[L"dFreq"] = L"much";
    EXPECT_EQ(errorOf([&] { channel->dFreq(); }).number(), 13);
    object->values[L"nIMComps"] = 40000;
    EXPECT_EQ(errorOf([&] { channel->nIMComps(); }).number(), 6);
    object->failing[L"sKey"] = static_cast<HRESULT>(0x800A000B);
    const util::RuntimeError own = errorOf([&] { channel->sKey(); });
    EXPECT_EQ(own.number(), 11);
    EXPECT_EQ(own.text(), L"the host's own trouble");
    object->failing[L"bDrawn"] = E_FAIL;
    EXPECT_EQ(errorOf([&] { channel->setBDrawn(true); }).number(), 440);
}

TEST_F(LateBoundChannel, HasTheIdentityOfTheHostsObject) {
    const ComPtr<_FreqSlot> slot = toHost(channel);
    EXPECT_TRUE(sameObject(slot.Get(), object.Get()));
    ComPtr<IDispatch> dispatch;
    EXPECT_EQ(slot.As(&dispatch), S_OK);
    EXPECT_EQ(dispatch.Get(), static_cast<IDispatch*>(object.Get()));
    ComPtr<_FreqSlot> again;
    EXPECT_EQ(slot.As(&again), S_OK);
    EXPECT_EQ(again.Get(), slot.Get());
    ComPtr<IPersist> none;
    EXPECT_EQ(slot.As(&none), E_NOINTERFACE);
    EXPECT_TRUE(channelFromHost(slot.Get()) == channel);
}

TEST_F(LateBoundChannel, OffersAllMembersThroughTheVtable) {
    const ComPtr<_FreqSlot> slot = toHost(channel);
    EXPECT_EQ(slot->put_dFreqAlt(1.25), S_OK);
    EXPECT_EQ(slot->put_sKey(Text(L"RX1").get()), S_OK);
    EXPECT_EQ(slot->put_lColor(0x8000000FU), S_OK);
    EXPECT_EQ(slot->put_bVisible(VARIANT_FALSE), S_OK);
    EXPECT_EQ(slot->put_nIMComp(3, 7), S_OK);
    EXPECT_EQ(slot->put_sIMCompLabel(3, Text(L"x").get()), S_OK);
    EXPECT_EQ(object->values[L"dFreqAlt"].dblVal, 1.25);
    EXPECT_EQ(object->values[L"sKey"].text(), L"RX1");
    EXPECT_EQ(object->values[L"lColor"].lVal, static_cast<int>(0x8000000F));
    EXPECT_EQ(object->values[L"bVisible"].vt, VT_BOOL);
    double number = 0.0;
    Text text;
    OLE_COLOR color = 0;
    VARIANT_BOOL flag = VARIANT_TRUE;
    short coefficient = 0;
    EXPECT_EQ(slot->get_dFreqAlt(&number), S_OK);
    EXPECT_EQ(number, 1.25);
    EXPECT_EQ(slot->get_sKey(text.put()), S_OK);
    EXPECT_EQ(text.str(), L"RX1");
    EXPECT_EQ(slot->get_lColor(&color), S_OK);
    EXPECT_EQ(color, 0x8000000FU);
    EXPECT_EQ(slot->get_bVisible(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
    EXPECT_EQ(slot->get_nIMComp(3, &coefficient), S_OK);
    EXPECT_EQ(coefficient, 7);
    EXPECT_EQ(slot->get_sIMCompLabel(3, text.put()), S_OK);
    EXPECT_EQ(text.str(), L"x");
    object->values.erase(L"dPwrDBM");
    number = 5.0;
    EXPECT_EQ(slot->get_dPwrDBM(&number), static_cast<HRESULT>(0x800A01B6));
    EXPECT_EQ(number, 0.0);
    EXPECT_EQ(takeErrorText(), L"Object doesn't support this property or method");
}

TEST_F(LateBoundChannel, KeepsItsObjectUntilTheLastReferenceIsReleased) {
    int destroyed = 0;
    object->destroyed = &destroyed;
    object.Reset();
    EXPECT_EQ(channel->dFreq(), 0.0);
    ComPtr<_FreqSlot> slot = toHost(channel);
    channel = nullptr;
    EXPECT_EQ(destroyed, 0);
    slot.Reset();
    EXPECT_EQ(destroyed, 1);
}

_FreqSlot* convert(IUnknown* object) {
    IDispatch* converted = nullptr;
    EXPECT_EQ(automation::kChannelConverter.convert(object, &converted), S_OK);
    return static_cast<_FreqSlot*>(converted);
}

TEST(ChannelsByName, ConversionServesParametersOfTheTypeFreqSlot) {
    EXPECT_TRUE(*automation::kChannelConverter.parameterType == IID__FreqSlot);
}

TEST(ChannelsByName, ForeignObjectsAreWrappedAndKeepTheirIdentity) {
    const ComPtr<DictionarySlot> object = DictionarySlot::create();
    object->values[L"sKey"] = L"TX1";
    ComPtr<_FreqSlot> slot = adopt(convert(object.Get()));
    Text key;
    EXPECT_EQ(slot->get_sKey(key.put()), S_OK);
    EXPECT_EQ(key.str(), L"TX1");
    EXPECT_TRUE(sameObject(slot.Get(), object.Get()));
    slot.Reset();
    EXPECT_EQ(object->references(), 1U);
}

TEST(ChannelsByName, OwnObjectsAreReturnedUnchanged) {
    const ComPtr<_FreqSlot> slot = newSlot();
    const ComPtr<_FreqSlot> converted = adopt(convert(slot.Get()));
    EXPECT_EQ(converted.Get(), slot.Get());
    EXPECT_EQ(referencesOf(slot.Get()), 2U);
}

TEST(ChannelsByName, ObjectsWithoutTheMembersAreATypeMismatch) {
    ComPtr<ITypeLib> object;
    ASSERT_EQ(LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, object.GetAddressOf()), S_OK);
    IDispatch* converted = nullptr;
    EXPECT_EQ(automation::kChannelConverter.convert(object.Get(), &converted), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(converted, nullptr);
}

}  // namespace
}  // namespace kv::test
