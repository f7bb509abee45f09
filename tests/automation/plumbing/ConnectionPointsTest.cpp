// Connecting to the control's events, and the firing.
#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>

#include <olectl.h>

#include "tests/automation/Module.h"
#include "tests/automation/plumbing/ProbeControl.h"

namespace kv::test {
namespace {

/// Writes down the events it gets, and does what it is told to do meanwhile.
class Sink final : public IDispatch {
  public:
    explicit Sink(REFIID iid = DIID___kvBandscope) : iid_(iid) {}
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
            exception->bstrDescription = SysAllocString(L"the sink's trouble");
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
    ComPtr<ProbeControl> control;
    ComPtr<IConnectionPoint> events;
    Sink a;
    Sink b;
    DWORD cookieA = 0;
    DWORD cookieB = 0;

    void SetUp() override {
        control = adopt(new ProbeControl);
        ASSERT_EQ(control->FindConnectionPoint(DIID___kvBandscope, events.GetAddressOf()), S_OK);
    }
    void connectBoth() {
        ASSERT_EQ(events->Advise(&a, &cookieA), S_OK);
        ASSERT_EQ(events->Advise(&b, &cookieB), S_OK);
    }
    void fireRange() {
        const automation::Variant args[] = {automation::Variant(100.0), automation::Variant(200.0)};
        control->fire(3, args);
    }
};

TEST_F(ConnectionPointsTest, EverySinkGetsItsOwnArgumentsInOrder) {
    connectBoth();
    control->fire(1);
    fireRange();
    EXPECT_THAT(a.events, testing::ElementsAre("1", "3 100 200"));
    EXPECT_THAT(b.events, testing::ElementsAre("1", "3 100 200"));
}

TEST_F(ConnectionPointsTest, DisconnectedSinksGetNothing) {
    connectBoth();
    EXPECT_NE(cookieA, cookieB);
    EXPECT_EQ(events->Unadvise(cookieA), S_OK);
    EXPECT_EQ(a.references, 1U);
    EXPECT_EQ(events->Unadvise(cookieA), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(events->Unadvise(0), CONNECT_E_NOCONNECTION);
    control->fire(1);
    EXPECT_TRUE(a.events.empty());
    EXPECT_EQ(b.events.size(), 1U);
}

TEST_F(ConnectionPointsTest, AFailingSinkDoesNotStopTheOthers) {
    connectBoth();
    a.answer = DISP_E_EXCEPTION;
    control->fire(1);
    a.during = [] { throw std::runtime_error("sink"); };
    control->fire(1);
    EXPECT_EQ(b.events.size(), 2U);
}

TEST_F(ConnectionPointsTest, SinksMayComeAndGoDuringAnEvent) {
    Sink late;
    DWORD cookieLate = 0;
    connectBoth();
    a.during = [&] {
        EXPECT_EQ(events->Unadvise(cookieA), S_OK);
        EXPECT_EQ(events->Unadvise(cookieB), S_OK);
        EXPECT_EQ(events->Advise(&late, &cookieLate), S_OK);
    };
    control->fire(1);
    EXPECT_EQ(a.events.size(), 1U);
    EXPECT_TRUE(b.events.empty());
    EXPECT_TRUE(late.events.empty());
    a.during = [] {};
    control->fire(1);
    EXPECT_EQ(a.events.size(), 1U);
    EXPECT_EQ(late.events.size(), 1U);
    EXPECT_EQ(events->Unadvise(cookieLate), S_OK);
    EXPECT_EQ(late.references, 1U);
}

TEST_F(ConnectionPointsTest, TheLastReferenceMayGoDuringAnEvent) {
    connectBoth();
    ProbeControl* const raw = control.Get();
    events.Reset();
    a.during = [&] { control.Reset(); };
    raw->fire(1);
    EXPECT_EQ(b.events.size(), 1U);
    EXPECT_EQ(a.references, 1U);
    EXPECT_EQ(b.references, 1U);
}

TEST_F(ConnectionPointsTest, LateBoundSinksAreWelcomeAndOthersAreNot) {
    Sink late(IID_IDispatch);
    DWORD cookie = 0;
    ASSERT_EQ(events->Advise(&late, &cookie), S_OK);
    control->fire(2, std::vector<automation::Variant>{automation::Variant(short{900})});
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

TEST_F(ConnectionPointsTest, PropertySinks) {
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(control->FindConnectionPoint(IID_IPropertyNotifySink, point.GetAddressOf()), S_OK);
    EXPECT_EQ(point->Advise(&a, &cookieA), CONNECT_E_CANNOTCONNECT);
    EXPECT_TRUE(control->requestEdit(25));
    PropertySink first;
    PropertySink second;
    ASSERT_EQ(point->Advise(&first, &cookieA), S_OK);
    ASSERT_EQ(point->Advise(&second, &cookieB), S_OK);
    control->notifyChanged(25);
    EXPECT_THAT(first.changed, testing::ElementsAre(25));
    EXPECT_THAT(second.changed, testing::ElementsAre(25));
    EXPECT_TRUE(control->requestEdit(25));
    first.editAnswer = S_FALSE;
    EXPECT_FALSE(control->requestEdit(25));
    EXPECT_EQ(point->Unadvise(cookieA), S_OK);
    EXPECT_TRUE(control->requestEdit(25));
    EXPECT_EQ(point->Unadvise(cookieB), S_OK);
}

TEST_F(ConnectionPointsTest, ThePointKnowsItsPlace) {
    IID iid{};
    EXPECT_EQ(events->GetConnectionInterface(&iid), S_OK);
    EXPECT_TRUE(iid == DIID___kvBandscope);
    ComPtr<IConnectionPointContainer> container;
    EXPECT_EQ(events->GetConnectionPointContainer(container.GetAddressOf()), S_OK);
    EXPECT_TRUE(sameObject(container.Get(), static_cast<_kvBandscope*>(control.Get())));
    ComPtr<IConnectionPoint> none;
    EXPECT_EQ(control->FindConnectionPoint(IID_IDispatch, none.GetAddressOf()), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(none.Get(), nullptr);
    EXPECT_FALSE(sameObject(events.Get(), container.Get()));
}

TEST_F(ConnectionPointsTest, EnumeratesPoints) {
    ComPtr<IEnumConnectionPoints> points;
    ASSERT_EQ(control->EnumConnectionPoints(points.GetAddressOf()), S_OK);
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
    EXPECT_EQ(control->references(), 1U);
}

TEST_F(ConnectionPointsTest, EnumeratesConnections) {
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
