// Events: the control's connection points and the firing of what they are connected to.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

#include <span>
#include <vector>

#include "automation/OleTypes.h"

namespace kv::automation {

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
            // Without memory for the list there is no event; the control's own work goes on.
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
            // A sink's exception is the sink's own affair.
        }
    }
    [[nodiscard]] bool isConnected(DWORD cookie) const noexcept;

    IConnectionPointContainer* container_;
    const IID iid_;
    const bool isDispatch_;
    DWORD lastCookie_ = 0;
    std::vector<Sink> sinks_;
};

/// Base of the control: connection points for its events (`__kvBandscope`) and for property notifications. IUnknown is
/// left to the class.
class ConnectionPointsImpl : public IConnectionPointContainer {
  public:
    ConnectionPointsImpl() noexcept;
    ConnectionPointsImpl(const ConnectionPointsImpl&) = delete;
    ConnectionPointsImpl& operator=(const ConnectionPointsImpl&) = delete;

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

    /// Raises event `id`; `args` in the order of its declaration.
    void fire(DISPID id, std::span<const Variant> args = {}) noexcept;
    /// Tells the property sinks that property `id` has changed.
    void notifyChanged(DISPID id) noexcept;
    /// Asks the property sinks whether property `id` may change; one "no" is enough.
    [[nodiscard]] bool requestEdit(DISPID id) noexcept;

  protected:
    ~ConnectionPointsImpl() = default;

  private:
    ConnectionPoint events_;
    ConnectionPoint propertyNotify_;
};

}  // namespace kv::automation
