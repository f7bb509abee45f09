// Events: an object's connection points, and the calls to the sinks that are connected to them.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

#include <span>
#include <vector>

#include "com/OleTypes.h"

namespace kv::com {

/// One outgoing interface. It lives inside its container and shares the container's reference count.
class ConnectionPoint final : public IConnectionPoint {
  public:
    ConnectionPoint(IConnectionPointContainer* container, REFIID iid, bool isDispatch) noexcept
        : container_(container), iid_(iid), isDispatch_(isDispatch) {}
    ConnectionPoint(const ConnectionPoint&) = delete;
    ConnectionPoint& operator=(const ConnectionPoint&) = delete;
    ~ConnectionPoint() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return container_->AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return container_->Release(); }

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

    [[nodiscard]] REFIID iid() const noexcept { return iid_; }

    /// Calls `visit(IUnknown*)` with every sink connected when the firing starts and still connected when its turn
    /// comes. Sinks may connect and disconnect meanwhile; one that fails or throws does not stop the others.
    template <class Visit>
    void forEachSink(Visit&& visit) noexcept {
        if (sinks_.empty())
            return;
        try {
            const Microsoft::WRL::ComPtr<IConnectionPointContainer> keepAlive(container_);
            const std::vector<Sink> snapshot = sinks_;
            for (const Sink& sink : snapshot)
                if (isConnected(sink.cookie))
                    visitGuarded(visit, sink);
        } catch (...) {
            // Without memory for the list the event is dropped, and the object's own work continues.
        }
    }

  private:
    struct Sink {
        DWORD cookie;
        Microsoft::WRL::ComPtr<IUnknown> object;  ///< the interface `iid_`, or IDispatch for a dispinterface
    };
    template <class Visit>
    static void visitGuarded(Visit& visit, const Sink& sink) noexcept {
        try {
            visit(sink.object.Get());
        } catch (...) {
            // An exception of one sink must reach neither the object nor the other sinks.
        }
    }
    [[nodiscard]] bool isConnected(DWORD cookie) const noexcept;

    IConnectionPointContainer* container_;
    const IID iid_;
    const bool isDispatch_;
    DWORD lastCookie_ = 0;
    std::vector<Sink> sinks_;
};

/// Base of a class with events: connection points for its event dispinterface and for property notifications. The
/// derived class implements IUnknown.
class ConnectionPointsImpl : public IConnectionPointContainer {
  public:
    /// `events`: the dispinterface of the events.
    explicit ConnectionPointsImpl(REFIID events) noexcept;
    ConnectionPointsImpl(const ConnectionPointsImpl&) = delete;
    ConnectionPointsImpl& operator=(const ConnectionPointsImpl&) = delete;

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

    /// Raises event `id`. `args` are in the order of the event's declaration.
    void fire(DISPID id, std::span<const Variant> args = {}) noexcept;
    /// Tells the property sinks that property `id` has changed.
    void notifyChanged(DISPID id) noexcept;
    /// Asks the property sinks whether property `id` may change. False if one of them refuses.
    [[nodiscard]] bool requestEdit(DISPID id) noexcept;

  protected:
    ~ConnectionPointsImpl() = default;

  private:
    ConnectionPoint events_;
    ConnectionPoint propertyNotify_;
};

}  // namespace kv::com
