// Class objects, created from a table of classes.
#include "com/ClassFactory.h"

#include <gtest/gtest.h>
#include <wrl/client.h>

#include <new>

#include "Probe.h"
#include "com/Module.h"
#include "tests/automation/Module.h"
#include "tests/automation/plumbing/ProbeObject.h"

namespace kv::test {
namespace {

HRESULT createProbe(REFIID iid, void** object) {
    const ComPtr<ProbeObject> probe = adopt(new ProbeObject);
    return probe->QueryInterface(iid, object);
}

HRESULT failToCreate(REFIID /*iid*/, void** /*object*/) {
    throw std::bad_alloc();
}

// Any identifiers serve as those of classes.
const com::ClassEntry kClasses[] = {{&IID_IProbe, createProbe}, {&IID_IPart, failToCreate}};

ComPtr<IClassFactory> factoryOf(REFCLSID clsid) {
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(com::getClassObject(kClasses, clsid, IID_PPV_ARGS(factory.GetAddressOf())), S_OK);
    return factory;
}

TEST(ClassFactory, CreatesObjectsOfTheClassesInTheTable) {
    ComPtr<IProbe> probe;
    EXPECT_EQ(factoryOf(IID_IProbe)->CreateInstance(nullptr, IID_PPV_ARGS(probe.GetAddressOf())), S_OK);
    EXPECT_EQ(probe->put_Step(3), S_OK);
}

TEST(ClassFactory, OtherClassesAreNotAvailable) {
    void* factory = &factory;
    EXPECT_EQ(com::getClassObject(kClasses, IID_IDispatch, IID_IClassFactory, &factory), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(factory, nullptr);
    EXPECT_EQ(com::getClassObject(kClasses, IID_IProbe, IID_IDispatch, &factory), E_NOINTERFACE);
    EXPECT_EQ(com::getClassObject(kClasses, IID_IProbe, IID_IClassFactory, nullptr), E_POINTER);
}

TEST(ClassFactory, AggregationIsRefused) {
    const ComPtr<IUnknown> outer = adopt(static_cast<IProbe*>(new ProbeObject));
    void* object = &object;
    EXPECT_EQ(factoryOf(IID_IProbe)->CreateInstance(outer.Get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
}

TEST(ClassFactory, ExceptionsBecomeErrors) {
    void* object = nullptr;
    EXPECT_EQ(factoryOf(IID_IPart)->CreateInstance(nullptr, IID_IUnknown, &object), E_OUTOFMEMORY);
}

TEST(ClassFactory, ALockOrAFactoryKeepsTheModuleLoaded) {
    ASSERT_TRUE(com::Module::isIdle());
    ComPtr<IClassFactory> factory = factoryOf(IID_IProbe);
    EXPECT_FALSE(com::Module::isIdle());
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    factory.Reset();
    EXPECT_FALSE(com::Module::isIdle());
    EXPECT_EQ(factoryOf(IID_IProbe)->LockServer(FALSE), S_OK);
    EXPECT_TRUE(com::Module::isIdle());
}

TEST(ClassFactory, AnExtraUnlockDoesNotCancelTheNextLock) {
    EXPECT_EQ(factoryOf(IID_IProbe)->LockServer(FALSE), S_OK);
    EXPECT_EQ(factoryOf(IID_IProbe)->LockServer(TRUE), S_OK);
    EXPECT_FALSE(com::Module::isIdle());
    EXPECT_EQ(factoryOf(IID_IProbe)->LockServer(FALSE), S_OK);
    EXPECT_TRUE(com::Module::isIdle());
}

}  // namespace
}  // namespace kv::test
