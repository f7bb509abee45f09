#include "com/ConnectionPoints.h"

#include <olectl.h>

#include <algorithm>

#include "com/Enumerator.h"
#include "com/Firewall.h"

namespace kv::com {

namespace {

using Microsoft::WRL::ComPtr;

struct ConnectionPolicy {
    struct Stored {
        DWORD cookie;
        ComPtr<IUnknown> object;
    };
    using Item = CONNECTDATA;
    static void copy(const Stored& stored, Item* item) noexcept {
        item->pUnk = stored.object.Get();
        item->pUnk->AddRef();
        item->dwCookie = stored.cookie;
    }
};

struct PointPolicy {
    using Stored = ComPtr<IConnectionPoint>;
    using Item = IConnectionPoint*;
    static void copy(const Stored& stored, Item* item) noexcept {
        *item = stored.Get();
        (*item)->AddRef();
    }
};

/// Calls one sink. Each sink gets its own copy of the arguments, because a sink may change them.
void invokeSink(IDispatch* sink, DISPID id, std::span<const Variant> args) {
    std::vector<Variant> reversed(args.rbegin(), args.rend());
    DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    EXCEPINFO exception{};
    UINT argError = 0;
    sink->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr, &exception, &argError);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

}  // namespace

HRESULT ConnectionPoint::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IConnectionPoint)
        return E_NOINTERFACE;
    *object = static_cast<IConnectionPoint*>(this);
    AddRef();
    return S_OK;
}

HRESULT ConnectionPoint::GetConnectionInterface(IID* iid) {
    if (!iid)
        return E_POINTER;
    *iid = iid_;
    return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
    if (!container)
        return E_POINTER;
    *container = container_;
    container_->AddRef();
    return S_OK;
}

HRESULT ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
    if (!cookie)
        return E_POINTER;
    *cookie = 0;
    if (!sink)
        return E_POINTER;
    return firewall({IID_IConnectionPoint}, [&] {
        ComPtr<IUnknown> object;
        auto** const out = reinterpret_cast<void**>(object.GetAddressOf());
        HRESULT hr = sink->QueryInterface(iid_, out);
        // Late-bound sinks know the events by number only and offer IDispatch alone.
        if (FAILED(hr) && isDispatch_)
            hr = sink->QueryInterface(IID_IDispatch, out);
        if (FAILED(hr))
            return CONNECT_E_CANNOTCONNECT;
        sinks_.push_back({lastCookie_ + 1, std::move(object)});
        *cookie = ++lastCookie_;
        return S_OK;
    });
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) {
    const auto found = std::find_if(sinks_.begin(), sinks_.end(), [&](const Sink& s) { return s.cookie == cookie; });
    if (found == sinks_.end())
        return CONNECT_E_NOCONNECTION;
    // Releasing the sink may call this object again, so the entry is removed from the list first.
    const ComPtr<IUnknown> last = std::move(found->object);
    sinks_.erase(found);
    return S_OK;
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** connections) {
    if (!connections)
        return E_POINTER;
    *connections = nullptr;
    return firewall({IID_IConnectionPoint}, [&] {
        std::vector<ConnectionPolicy::Stored> list;
        for (const Sink& sink : sinks_)
            list.push_back({sink.cookie, sink.object});
        Enumerator<IEnumConnections, ConnectionPolicy>::create(std::move(list), connections);
    });
}

bool ConnectionPoint::isConnected(DWORD cookie) const noexcept {
    return std::any_of(sinks_.begin(), sinks_.end(), [&](const Sink& sink) { return sink.cookie == cookie; });
}

ConnectionPointsImpl::ConnectionPointsImpl(REFIID events) noexcept
    : events_(this, events, true), propertyNotify_(this, IID_IPropertyNotifySink, false) {}

HRESULT ConnectionPointsImpl::EnumConnectionPoints(IEnumConnectionPoints** points) {
    if (!points)
        return E_POINTER;
    *points = nullptr;
    return firewall({IID_IConnectionPointContainer}, [&] {
        Enumerator<IEnumConnectionPoints, PointPolicy>::create({&events_, &propertyNotify_}, points);
    });
}

HRESULT ConnectionPointsImpl::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
    if (!point)
        return E_POINTER;
    *point = nullptr;
    for (ConnectionPoint* candidate : {&events_, &propertyNotify_}) {
        if (candidate->iid() == iid) {
            candidate->AddRef();
            *point = candidate;
            return S_OK;
        }
    }
    return CONNECT_E_NOCONNECTION;
}

void ConnectionPointsImpl::fire(DISPID id, std::span<const Variant> args) noexcept {
    events_.forEachSink([&](IUnknown* sink) { invokeSink(static_cast<IDispatch*>(sink), id, args); });
}

void ConnectionPointsImpl::notifyChanged(DISPID id) noexcept {
    propertyNotify_.forEachSink([&](IUnknown* sink) { static_cast<IPropertyNotifySink*>(sink)->OnChanged(id); });
}

bool ConnectionPointsImpl::requestEdit(DISPID id) noexcept {
    bool allowed = true;
    propertyNotify_.forEachSink([&](IUnknown* sink) {
        if (static_cast<IPropertyNotifySink*>(sink)->OnRequestEdit(id) == S_FALSE)
            allowed = false;
    });
    return allowed;
}

}  // namespace kv::com
