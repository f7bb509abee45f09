// The module's exports: class objects, life time and aggregation.
#include <gmock/gmock.h>

#include "tests/automation/Module.h"

namespace kv::test {
namespace {

class EachClass : public testing::TestWithParam<const CLSID*> {};

TEST_P(EachClass, RefusesAggregation) {
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(getClassObject(*GetParam(), IID_PPV_ARGS(factory.GetAddressOf())), S_OK);
    const ComPtr<_FreqSlot> outer = createInstance<_FreqSlot>(CLSID_FreqSlot);
    void* inner = outer.Get();
    EXPECT_EQ(factory->CreateInstance(outer.Get(), IID_IUnknown, &inner), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(inner, nullptr);
}

TEST_P(EachClass, UnknownInterfaceGivesNoObject) {
    void* object = &object;
    EXPECT_EQ(createInstance(*GetParam(), IID_IClassFactory, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(canUnloadNow(), S_OK);
}

INSTANTIATE_TEST_SUITE_P(Classes, EachClass, testing::Values(&CLSID_FreqSlot, &CLSID_kvBandscope));

TEST(Module, KnowsItsOwnClassesOnly) {
    void* object = &object;
    EXPECT_EQ(getClassObject(IID__FreqSlot, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(getClassObject(CLSID_FreqSlot, IID_IClassFactory, nullptr), E_POINTER);
    object = &object;
    EXPECT_EQ(getClassObject(CLSID_FreqSlot, IID_IDispatch, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
}

TEST(Module, ObjectsKeepItLoaded) {
    ASSERT_EQ(canUnloadNow(), S_OK);
    ComPtr<_FreqSlot> slot = createInstance<_FreqSlot>(CLSID_FreqSlot);
    ASSERT_TRUE(slot);
    EXPECT_EQ(canUnloadNow(), S_FALSE);
    slot.Reset();
    EXPECT_EQ(canUnloadNow(), S_OK);
}

TEST(Module, ClassObjectsAndLocksKeepItLoaded) {
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(getClassObject(CLSID_FreqSlot, IID_PPV_ARGS(factory.GetAddressOf())), S_OK);
    EXPECT_EQ(canUnloadNow(), S_FALSE);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    factory.Reset();
    EXPECT_EQ(canUnloadNow(), S_FALSE);
    ASSERT_EQ(getClassObject(CLSID_FreqSlot, IID_PPV_ARGS(factory.GetAddressOf())), S_OK);
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    factory.Reset();
    EXPECT_EQ(canUnloadNow(), S_OK);
}

TEST(Module, CallsByNameWorkAgainAfterDllCanUnloadNow) {
    for (int round = 0; round < 2; ++round) {
        ComPtr<_FreqSlot> slot = createInstance<_FreqSlot>(CLSID_FreqSlot);
        EXPECT_EQ(put(slot.Get(), L"dFreq", {1.5}).hr, S_OK);
        EXPECT_EQ(get(slot.Get(), L"dFreq").result.dblVal, 1.5);
        slot.Reset();
        EXPECT_EQ(canUnloadNow(), S_OK);
    }
}

}  // namespace
}  // namespace kv::test
