// Connection points: connecting sinks and calling them, on an object that has nothing but events.
#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>

#include <olectl.h>

#include "com/ConnectionPoints.h"
#include "com/Module.h"
#include "tests/automation/Module.h"

namespace kv::test {
namespace {

/// {6C0F7A12-95D4-4B7E-8E1B-2F3A4C5D6E70}: the dispinterface of the events.
constexpr GUID kEvents = {0x6C0F7A12, 0x95D4, 0x4B7E, {0x8E, 0x1B, 0x2F, 0x3A, 0x4C, 0x5D, 0x6E, 0x70}};

class EventSource final : public com::ConnectionPointsImpl {
  public:
    EventSource() noexcept : ConnectionPointsImpl(kEvents) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (iid != IID_IUnknown && iid != IID_IConnectionPointContainer)
            return E_NOINTERFACE;
        *object = static_cast<IConnectionPointContainer*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }
    [[nodiscard]] ULONG references() const noexcept { return references_; }

  private:
    ~EventSource() = default;

    ULONG references_ = 1;
    [[no_unique_address]] com::ModuleRef module_;
};

/// Records the events that it gets and runs `during` in each of them.
class Sink final : public IDispatch {
  public:
    explicit Sink(REFIID iid = kEvents) : iid_(iid) {}
    std::vector<std::string> events;
    std::function<void()> during = [] {};
    HRESULT answer = S_OK;
    ULONG references = 1;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (iid != IID_IUnknown && iid != iid_)
            return E_NOINTERFACE;
        *object = static_cast<IDispatch*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT*,
                                     EXCEPINFO* exception, UINT*) override {
        EXPECT_EQ(flags, DISPATCH_METHOD);
        std::string event = std::to_string(id);
        for (UINT i = params->cArgs; i-- > 0;) {
            const VARIANT& value = params->rgvarg[i];
            event += ' ';
            event += std::to_string(value.vt == VT_R8 ? static_cast<int>(value.dblVal) : value.iVal);
            params->rgvarg[i].dblVal = 77.0;
        }
        events.push_back(event);
        during();
        if (answer == DISP_E_EXCEPTION)
            exception->bstrDescription = SysAllocString(L"the sink failed");
        return answer;
    }

  private:
    IID iid_;
};

class PropertySink final : public IPropertyNotifySink {
  public:
    std::vector<DISPID> changed;
    HRESULT editAnswer = S_OK;
    ULONG references = 1;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (iid != IID_IUnknown && iid != IID_IPropertyNotifySink)
            return E_NOINTERFACE;
        *object = static_cast<IPropertyNotifySink*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE OnChanged(DISPID id) override {
        changed.push_back(id);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnRequestEdit(DISPID) override { return editAnswer; }
};

class ConnectionPointsTest : public testing::Test {
  protected:
    ComPtr<EventSource> source;
    ComPtr<IConnectionPoint> events;
    Sink a;
    Sink b;
    DWORD cookieA = 0;
    DWORD cookieB = 0;

    void SetUp() override {
        source = adopt(new EventSource);
        ASSERT_EQ(source->FindConnectionPoint(kEvents, events.GetAddressOf()), S_OK);
    }
    void connectBoth() {
        ASSERT_EQ(events->Advise(&a, &cookieA), S_OK);
        ASSERT_EQ(events->Advise(&b, &cookieB), S_OK);
    }
    void fireRange() {
        const com::Variant args[] = {com::Variant(100.0), com::Variant(200.0)};
        source->fire(3, args);
    }
};

TEST_F(ConnectionPointsTest, EverySinkGetsItsOwnArgumentsInOrder) {
    connectBoth();
    source->fire(1);
    fireRange();
    EXPECT_THAT(a.events, testing::ElementsAre("1", "3 100 200"));
    EXPECT_THAT(b.events, testing::ElementsAre("1", "3 100 200"));
}

TEST_F(ConnectionPointsTest, DisconnectedSinksGetNoEvents) {
    connectBoth();
    EXPECT_NE(cookieA, cookieB);
    EXPECT_EQ(events->Unadvise(cookieA), S_OK);
    EXPECT_EQ(a.references, 1U);
    EXPECT_EQ(events->Unadvise(cookieA), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(events->Unadvise(0), CONNECT_E_NOCONNECTION);
    source->fire(1);
    EXPECT_TRUE(a.events.empty());
    EXPECT_EQ(b.events.size(), 1U);
}

TEST_F(ConnectionPointsTest, AFailingSinkDoesNotStopTheOthers) {
    connectBoth();
    a.answer = DISP_E_EXCEPTION;
    source->fire(1);
    a.during = [] { throw std::runtime_error("sink"); };
    source->fire(1);
    EXPECT_EQ(b.events.size(), 2U);
}

TEST_F(ConnectionPointsTest, SinksMayConnectAndDisconnectDuringAnEvent) {
    Sink late;
    DWORD cookieLate = 0;
    connectBoth();
    a.during = [&] {
        EXPECT_EQ(events->Unadvise(cookieA), S_OK);
        EXPECT_EQ(events->Unadvise(cookieB), S_OK);
        EXPECT_EQ(events->Advise(&late, &cookieLate), S_OK);
    };
    source->fire(1);
    EXPECT_EQ(a.events.size(), 1U);
    EXPECT_TRUE(b.events.empty());
    EXPECT_TRUE(late.events.empty());
    a.during = [] {};
    source->fire(1);
    EXPECT_EQ(a.events.size(), 1U);
    EXPECT_EQ(late.events.size(), 1U);
    EXPECT_EQ(events->Unadvise(cookieLate), S_OK);
    EXPECT_EQ(late.references, 1U);
}

TEST_F(ConnectionPointsTest, TheLastReferenceMayBeReleasedDuringAnEvent) {
    connectBoth();
    EventSource* const raw = source.Get();
    events.Reset();
    a.during = [&] { source.Reset(); };
    raw->fire(1);
    EXPECT_EQ(b.events.size(), 1U);
    EXPECT_EQ(a.references, 1U);
    EXPECT_EQ(b.references, 1U);
}

TEST_F(ConnectionPointsTest, SinksWithIDispatchAloneAreAcceptedAndOthersAreRejected) {
    Sink late(IID_IDispatch);
    DWORD cookie = 0;
    ASSERT_EQ(events->Advise(&late, &cookie), S_OK);
    source->fire(2, std::vector<com::Variant>{com::Variant(short{900})});
    EXPECT_THAT(late.events, testing::ElementsAre("2 900"));
    EXPECT_EQ(events->Unadvise(cookie), S_OK);
    PropertySink wrong;
    cookie = 5;
    EXPECT_EQ(events->Advise(&wrong, &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(cookie, 0U);
    EXPECT_EQ(events->Advise(nullptr, &cookie), E_POINTER);
    EXPECT_EQ(events->Advise(&late, nullptr), E_POINTER);
    EXPECT_EQ(late.references, 1U);
}

TEST_F(ConnectionPointsTest, PropertySinksAreNotifiedAndMayRefuseAChange) {
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(source->FindConnectionPoint(IID_IPropertyNotifySink, point.GetAddressOf()), S_OK);
    EXPECT_EQ(point->Advise(&a, &cookieA), CONNECT_E_CANNOTCONNECT);
    EXPECT_TRUE(source->requestEdit(25));
    PropertySink first;
    PropertySink second;
    ASSERT_EQ(point->Advise(&first, &cookieA), S_OK);
    ASSERT_EQ(point->Advise(&second, &cookieB), S_OK);
    source->notifyChanged(25);
    EXPECT_THAT(first.changed, testing::ElementsAre(25));
    EXPECT_THAT(second.changed, testing::ElementsAre(25));
    EXPECT_TRUE(source->requestEdit(25));
    first.editAnswer = S_FALSE;
    EXPECT_FALSE(source->requestEdit(25));
    EXPECT_EQ(point->Unadvise(cookieA), S_OK);
    EXPECT_TRUE(source->requestEdit(25));
    EXPECT_EQ(point->Unadvise(cookieB), S_OK);
}

TEST_F(ConnectionPointsTest, APointReturnsItsInterfaceAndItsContainer) {
    IID iid{};
    EXPECT_EQ(events->GetConnectionInterface(&iid), S_OK);
    EXPECT_TRUE(iid == kEvents);
    ComPtr<IConnectionPointContainer> container;
    EXPECT_EQ(events->GetConnectionPointContainer(container.GetAddressOf()), S_OK);
    EXPECT_TRUE(sameObject(container.Get(), source.Get()));
    ComPtr<IConnectionPoint> none;
    EXPECT_EQ(source->FindConnectionPoint(IID_IDispatch, none.GetAddressOf()), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(none.Get(), nullptr);
    EXPECT_FALSE(sameObject(events.Get(), container.Get()));
}

TEST_F(ConnectionPointsTest, EnumeratesItsPoints) {
    ComPtr<IEnumConnectionPoints> points;
    ASSERT_EQ(source->EnumConnectionPoints(points.GetAddressOf()), S_OK);
    IConnectionPoint* found[3] = {};
    ULONG fetched = 0;
    EXPECT_EQ(points->Next(3, found, &fetched), S_FALSE);
    ASSERT_EQ(fetched, 2U);
    EXPECT_EQ(found[0], events.Get());
    IID iid{};
    EXPECT_EQ(found[1]->GetConnectionInterface(&iid), S_OK);
    EXPECT_TRUE(iid == IID_IPropertyNotifySink);
    found[0]->Release();
    found[1]->Release();
    points.Reset();
    events.Reset();
    EXPECT_EQ(source->references(), 1U);
}

TEST_F(ConnectionPointsTest, EnumeratesTheConnectionsAtTheTimeOfTheCall) {
    connectBoth();
    ComPtr<IEnumConnections> connections;
    ComPtr<IEnumConnections> copy;
    ASSERT_EQ(events->EnumConnections(connections.GetAddressOf()), S_OK);
    EXPECT_EQ(events->Unadvise(cookieB), S_OK);
    CONNECTDATA data{};
    EXPECT_EQ(connections->Skip(1), S_OK);
    EXPECT_EQ(connections->Clone(copy.GetAddressOf()), S_OK);
    EXPECT_EQ(connections->Next(1, &data, nullptr), S_OK);
    EXPECT_EQ(data.dwCookie, cookieB);
    EXPECT_EQ(data.pUnk, &b);
    data.pUnk->Release();
    EXPECT_EQ(connections->Next(1, &data, nullptr), S_FALSE);
    EXPECT_EQ(connections->Skip(1), S_FALSE);
    EXPECT_EQ(connections->Next(2, &data, nullptr), E_POINTER);
    EXPECT_EQ(connections->Reset(), S_OK);
    EXPECT_EQ(connections->Next(1, &data, nullptr), S_OK);
    EXPECT_EQ(data.dwCookie, cookieA);
    data.pUnk->Release();
    EXPECT_EQ(copy->Next(1, &data, nullptr), S_OK);
    EXPECT_EQ(data.dwCookie, cookieB);
    data.pUnk->Release();
    connections.Reset();
    copy.Reset();
    EXPECT_EQ(b.references, 1U);
    EXPECT_EQ(a.references, 2U);
}

}  // namespace
}  // namespace kv::test
