// The rules of COM: one identity behind every interface, correct refusals, and a module that can be unloaded when it
// is no longer used.
#include <gmock/gmock.h>
#include <objsafe.h>
#include <olectl.h>

#include "tests/automation/Container.h"

namespace kv::test {
namespace {

struct Known {
    const char* name;
    const IID* iid;
};

#define KV_KNOWN(name)     \
    Known {                \
#name, &IID_##name \
    }

const Known kOffered[] = {KV_KNOWN(IUnknown),
                          KV_KNOWN(IDispatch),
                          {"_kvBandscope", &IID__kvBandscope},
                          {"_BandscopeView", &IID__BandscopeView},
                          KV_KNOWN(ISupportErrorInfo),
                          KV_KNOWN(IProvideClassInfo),
                          KV_KNOWN(IProvideClassInfo2),
                          KV_KNOWN(IConnectionPointContainer),
                          KV_KNOWN(IOleObject),
                          KV_KNOWN(IOleControl),
                          KV_KNOWN(IOleWindow),
                          KV_KNOWN(IOleInPlaceObject),
                          KV_KNOWN(IOleInPlaceActiveObject),
                          KV_KNOWN(IViewObject),
                          KV_KNOWN(IViewObject2),
                          KV_KNOWN(IViewObjectEx),
                          KV_KNOWN(IDataObject),
                          KV_KNOWN(IPersist),
                          KV_KNOWN(IPersistStreamInit),
                          KV_KNOWN(IPersistStorage),
                          KV_KNOWN(IPersistPropertyBag),
                          KV_KNOWN(IQuickActivate)};

const Known kRefused[] = {KV_KNOWN(IObjectSafety),
                          KV_KNOWN(ISpecifyPropertyPages),
                          KV_KNOWN(IPerPropertyBrowsing),
                          KV_KNOWN(IPersistStream),
                          KV_KNOWN(IPersistFile),
                          KV_KNOWN(IPersistMemory),
                          KV_KNOWN(IOleInPlaceObjectWindowless),
                          KV_KNOWN(IPointerInactive),
                          KV_KNOWN(IRunnableObject),
                          KV_KNOWN(IOleCache),
                          KV_KNOWN(IOleLink),
                          KV_KNOWN(IExternalConnection),
                          KV_KNOWN(IMarshal),
                          KV_KNOWN(IStdMarshalInfo),
                          KV_KNOWN(IOleItemContainer),
                          KV_KNOWN(IServiceProvider),
                          KV_KNOWN(IConnectionPoint),
                          KV_KNOWN(IPropertyNotifySink),
                          KV_KNOWN(IClassFactory),
                          {"__kvBandscope", &DIID___kvBandscope},
                          {"IID_NULL", &IID_NULL}};

ComPtr<IUnknown> ask(IUnknown* from, const IID& iid) {
    ComPtr<IUnknown> found;
    from->QueryInterface(iid, reinterpret_cast<void**>(found.GetAddressOf()));
    return found;
}

/// Every interface from every other one, and one IUnknown from all.
template <std::size_t N>
void expectOneIdentity(IUnknown* object, const Known (&interfaces)[N]) {
    const ComPtr<IUnknown> identity = ask(object, IID_IUnknown);
    ASSERT_TRUE(identity);
    for (const Known& from : interfaces) {
        const ComPtr<IUnknown> first = ask(object, *from.iid);
        ASSERT_TRUE(first) << from.name;
        EXPECT_EQ(ask(first.Get(), IID_IUnknown).Get(), identity.Get()) << from.name;
        EXPECT_EQ(ask(first.Get(), *from.iid).Get(), first.Get()) << from.name << " is not itself";
        for (const Known& to : interfaces) {
            const ComPtr<IUnknown> second = ask(first.Get(), *to.iid);
            ASSERT_TRUE(second) << to.name << " from " << from.name;
            EXPECT_TRUE(ask(second.Get(), *from.iid)) << from.name << " back from " << to.name;
            EXPECT_EQ(ask(second.Get(), *to.iid).Get(), second.Get()) << to.name << " changes";
        }
    }
}

TEST(Identity, TheControlIsOneObject) {
    ComPtr<IUnknown> control = createInstance<IUnknown>(CLSID_kvBandscope);
    ASSERT_TRUE(control);
    expectOneIdentity(control.Get(), kOffered);
    EXPECT_EQ(referenceCount(control.Get()), 1U);
    EXPECT_EQ(control.Reset(), 0U);
    EXPECT_EQ(canUnloadNow(), S_OK);
}

TEST(Identity, AnActiveControlIsOneObjectToo) {
    FullContainer container;
    ASSERT_NO_FATAL_FAILURE(container.activate());
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    expectOneIdentity(container.control.Get(), kOffered);
}

TEST(Identity, AChannelIsOneObject) {
    const Known offered[] = {KV_KNOWN(IUnknown),
                             KV_KNOWN(IDispatch),
                             {"_FreqSlot", &IID__FreqSlot},
                             KV_KNOWN(ISupportErrorInfo),
                             KV_KNOWN(IProvideClassInfo)};
    const auto slot = createInstance<IUnknown>(CLSID_FreqSlot);
    ASSERT_TRUE(slot);
    expectOneIdentity(slot.Get(), offered);
    EXPECT_EQ(referenceCount(slot.Get()), 1U);
}

TEST(Identity, AViewIsOneObjectWithOrWithoutAControl) {
    const Known offered[] = {KV_KNOWN(IUnknown),
                             KV_KNOWN(IDispatch),
                             {"_BandscopeView", &IID__BandscopeView},
                             KV_KNOWN(ISupportErrorInfo),
                             KV_KNOWN(IProvideClassInfo)};
    const auto view = createInstance<_BandscopeView>(CLSID_View);
    ASSERT_TRUE(view);
    expectOneIdentity(view.Get(), offered);
    const auto control = createInstance<IDispatch>(CLSID_kvBandscope);
    ASSERT_EQ(view->putref_Scope(control.Get()), S_OK);
    expectOneIdentity(view.Get(), offered);
    EXPECT_FALSE(ask(view.Get(), IID__kvBandscope));
    EXPECT_FALSE(sameObject(view.Get(), control.Get()));
    EXPECT_EQ(referenceCount(view.Get()), 1U);
}

TEST(Identity, ConnectionPointsAreOneObjectEach) {
    const auto points = createInstance<IConnectionPointContainer>(CLSID_kvBandscope);
    const Known offered[] = {KV_KNOWN(IUnknown), KV_KNOWN(IConnectionPoint)};
    for (const IID* iid : {&DIID___kvBandscope, &IID_IPropertyNotifySink}) {
        ComPtr<IConnectionPoint> point;
        ASSERT_EQ(points->FindConnectionPoint(*iid, &point), S_OK);
        expectOneIdentity(point.Get(), offered);
        EXPECT_FALSE(sameObject(point.Get(), points.Get()));
        IID told{};
        EXPECT_EQ(point->GetConnectionInterface(&told), S_OK);
        EXPECT_TRUE(told == *iid);
        ComPtr<IConnectionPointContainer> back;
        EXPECT_EQ(point->GetConnectionPointContainer(&back), S_OK);
        EXPECT_TRUE(sameObject(back.Get(), points.Get()));
    }
    ComPtr<IConnectionPoint> none = nullptr;
    EXPECT_EQ(points->FindConnectionPoint(IID_IAdviseSink, &none), CONNECT_E_NOCONNECTION);
    ComPtr<IEnumConnectionPoints> all;
    ASSERT_EQ(points->EnumConnectionPoints(&all), S_OK);
    IConnectionPoint* listed[3]{};
    ULONG got = 0;
    EXPECT_EQ(all->Next(3, listed, &got), S_FALSE);
    EXPECT_EQ(got, 2U);
    for (ULONG i = 0; i < got; ++i)
        listed[i]->Release();
}

TEST(Identity, UnsupportedInterfacesAreRefused) {
    const auto control = createInstance<IUnknown>(CLSID_kvBandscope);
    for (const Known& refused : kRefused) {
        void* object = &object;
        EXPECT_EQ(control->QueryInterface(*refused.iid, &object), E_NOINTERFACE) << refused.name;
        EXPECT_EQ(object, nullptr) << refused.name;
    }
    EXPECT_EQ(control->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(referenceCount(control.Get()), 1U);
}

TEST(Identity, AggregationIsRefused) {
    for (const CLSID& clsid : {CLSID_kvBandscope, CLSID_FreqSlot, CLSID_View}) {
        ComPtr<IClassFactory> factory;
        ASSERT_EQ(getClassObject(clsid, IID_PPV_ARGS(&factory)), S_OK);
        const auto outer = createInstance<IUnknown>(CLSID_FreqSlot);
        for (const IID& iid : {IID_IUnknown, IID_IDispatch}) {
            void* object = &object;
            EXPECT_EQ(factory->CreateInstance(outer.Get(), iid, &object), CLASS_E_NOAGGREGATION);
            EXPECT_EQ(object, nullptr);
        }
        EXPECT_EQ(referenceCount(outer.Get()), 1U);
        void* object = &object;
        EXPECT_EQ(factory->CreateInstance(nullptr, IID_IClassFactory, &object), E_NOINTERFACE);
        EXPECT_EQ(object, nullptr);
        EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    }
    EXPECT_EQ(canUnloadNow(), S_OK);
}

/// Holds one object. The module must stay loaded until the object is released, and can be unloaded afterwards.
template <class Interface, class Make>
void expectHolds(const char* what, const Make& make) {
    EXPECT_EQ(canUnloadNow(), S_OK) << "before " << what;
    {
        const ComPtr<Interface> object = make();
        ASSERT_TRUE(object) << what;
        EXPECT_EQ(canUnloadNow(), S_FALSE) << what;
    }
    EXPECT_EQ(canUnloadNow(), S_OK) << "after " << what;
}

TEST(Identity, TheModuleStaysLoadedWhileAnyObjectExists) {
    expectHolds<IClassFactory>("class factory", [] {
        ComPtr<IClassFactory> made;
        getClassObject(CLSID_FreqSlot, IID_PPV_ARGS(&made));
        return made;
    });
    expectHolds<IUnknown>("channel", [] { return createInstance<IUnknown>(CLSID_FreqSlot); });
    expectHolds<IUnknown>("control", [] { return createInstance<IUnknown>(CLSID_kvBandscope); });
    expectHolds<IUnknown>("view", [] { return createInstance<IUnknown>(CLSID_View); });
    expectHolds<_BandscopeView>("control's view", [] { return createInstance<_BandscopeView>(CLSID_kvBandscope); });
    expectHolds<IEnumOLEVERB>("verbs", [] {
        ComPtr<IEnumOLEVERB> made;
        createInstance<IOleObject>(CLSID_kvBandscope)->EnumVerbs(&made);
        return made;
    });
    expectHolds<IEnumFORMATETC>("formats", [] {
        ComPtr<IEnumFORMATETC> made;
        ComPtr<IEnumFORMATETC> copy;
        createInstance<IDataObject>(CLSID_kvBandscope)->EnumFormatEtc(DATADIR_GET, &made);
        made->Clone(&copy);
        return copy;
    });
    expectHolds<IConnectionPoint>("connection point", [] {
        ComPtr<IConnectionPoint> made;
        createInstance<IConnectionPointContainer>(CLSID_kvBandscope)->FindConnectionPoint(DIID___kvBandscope, &made);
        return made;
    });
    expectHolds<IEnumConnectionPoints>("connection points", [] {
        ComPtr<IEnumConnectionPoints> made;
        createInstance<IConnectionPointContainer>(CLSID_kvBandscope)->EnumConnectionPoints(&made);
        return made;
    });
}

TEST(Identity, LocksHoldTheModule) {
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(getClassObject(CLSID_kvBandscope, IID_PPV_ARGS(&factory)), S_OK);
    // One unlock too many does not count.
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    factory.Reset();
    EXPECT_EQ(canUnloadNow(), S_FALSE);
    ASSERT_EQ(getClassObject(CLSID_FreqSlot, IID_PPV_ARGS(&factory)), S_OK);
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    factory.Reset();
    EXPECT_EQ(canUnloadNow(), S_FALSE);
    ASSERT_EQ(getClassObject(CLSID_FreqSlot, IID_PPV_ARGS(&factory)), S_OK);
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    factory.Reset();
    EXPECT_EQ(canUnloadNow(), S_OK);
}

TEST(Identity, OutParametersAreSetToNullWithoutAResult) {
    const auto control = createInstance<IUnknown>(CLSID_kvBandscope);
    ComPtr<IOleObject> object;
    ComPtr<IViewObjectEx> view;
    ComPtr<IDataObject> data;
    ComPtr<IOleInPlaceObject> place;
    ASSERT_EQ(control.As(&object), S_OK);
    ASSERT_EQ(control.As(&view), S_OK);
    ASSERT_EQ(control.As(&data), S_OK);
    ASSERT_EQ(control.As(&place), S_OK);
    int something = 0;
    void* const rubbish = &something;
    const auto isCleared = [&](auto* kind, const auto& method) {
        auto pointer = static_cast<decltype(kind)>(rubbish);
        EXPECT_NE(method(&pointer), S_OK);
        EXPECT_EQ(pointer, nullptr);
    };
    isCleared(static_cast<IMoniker*>(nullptr), [&](IMoniker** out) { return object->GetMoniker(1, 1, out); });
    isCleared(static_cast<IDataObject*>(nullptr), [&](IDataObject** out) { return object->GetClipboardData(0, out); });
    isCleared(static_cast<LOGPALETTE*>(nullptr),
              [&](LOGPALETTE** out) { return view->GetColorSet(1, -1, nullptr, nullptr, nullptr, out); });
    isCleared(static_cast<IEnumFORMATETC*>(nullptr),
              [&](IEnumFORMATETC** out) { return data->EnumFormatEtc(DATADIR_SET, out); });
    HWND window = static_cast<HWND>(rubbish);
    EXPECT_EQ(place->GetWindow(&window), E_FAIL);
    EXPECT_EQ(window, nullptr);
    DWORD key = 5;
    EXPECT_EQ(view->Freeze(1, -1, nullptr, &key), E_NOTIMPL);
    EXPECT_EQ(key, 0U);
    SIZEL size{5, 5};
    EXPECT_EQ(object->GetExtent(DVASPECT_ICON, &size), DV_E_DVASPECT);
    EXPECT_EQ(size.cx, 0);
    DWORD connection = 5;
    EXPECT_TRUE(FAILED(object->Advise(nullptr, &connection)));
    EXPECT_EQ(connection, 0U);
    FORMATETC format{CF_DIB, nullptr, DVASPECT_ICON, -1, TYMED_HGLOBAL};
    STGMEDIUM medium{};
    medium.tymed = TYMED_HGLOBAL;
    medium.hGlobal = rubbish;
    EXPECT_EQ(data->GetData(&format, &medium), DV_E_DVASPECT);
    EXPECT_EQ(medium.tymed, static_cast<DWORD>(TYMED_NULL));
    EXPECT_EQ(medium.hGlobal, nullptr);
    EXPECT_EQ(medium.pUnkForRelease, nullptr);
    for (const HRESULT hr : {object->GetUserType(1, nullptr), object->EnumVerbs(nullptr), object->GetExtent(1, nullptr),
                             object->GetMiscStatus(1, nullptr), view->GetViewStatus(nullptr), view->GetRect(1, nullptr),
                             data->EnumFormatEtc(DATADIR_GET, nullptr), place->GetWindow(nullptr)})
        EXPECT_EQ(hr, E_POINTER);
}

}  // namespace
}  // namespace kv::test
