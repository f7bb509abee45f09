// The control's image in a host's file. The control has no settings, so the image is only a header.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

namespace kv::automation {

/// Persistence in streams, storages and property bags. The derived class implements IUnknown.
///
/// The image: the four characters "kvBS", then three little-endian numbers: the version (16 bits, now 1), 0 (16 bits),
/// and the number of bytes that follow (32 bits, now 0). An empty stream is a control that was saved before there was
/// an image. Additional bytes of a later version are skipped and have no effect. Data that is damaged, truncated or of
/// another program is rejected without any change.
class PersistImpl : public IPersistStreamInit, public IPersistStorage, public IPersistPropertyBag {
  public:
    PersistImpl(const PersistImpl&) = delete;
    PersistImpl& operator=(const PersistImpl&) = delete;

    // IPersist
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override;

    // All three. A control is either initialized or loaded; a host that does neither gets a new one. A container may
    // repeat its call at any time, as some do with each new site: there are no settings to reset, and channels and
    // pictures belong to the running host. Only a call of the other kind is rejected.
    HRESULT STDMETHODCALLTYPE IsDirty() override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE InitNew() override;

    // IPersistStreamInit
    HRESULT STDMETHODCALLTYPE Load(IStream* stream) override;
    HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) override;
    HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) override;

    // IPersistStorage. The storage is used only during the calls, but the protocol of the storage is followed. Here, a
    // second initialization is an error.
    HRESULT STDMETHODCALLTYPE InitNew(IStorage* storage) override;
    HRESULT STDMETHODCALLTYPE Load(IStorage* storage) override;
    HRESULT STDMETHODCALLTYPE Save(IStorage* storage, BOOL sameAsLoad) override;
    HRESULT STDMETHODCALLTYPE SaveCompleted(IStorage* storage) override;
    HRESULT STDMETHODCALLTYPE HandsOffStorage() override;

    // IPersistPropertyBag: one property, "_Version".
    HRESULT STDMETHODCALLTYPE Load(IPropertyBag* bag, IErrorLog* errors) override;
    HRESULT STDMETHODCALLTYPE Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll) override;

  protected:
    PersistImpl() = default;
    ~PersistImpl() = default;
    /// The container has finished a save.
    virtual void saved() noexcept = 0;

  private:
    /// What the container may do next with the storage.
    enum class Turn { None, Scribble, NoScribble, HandsOff };

    enum class Origin { None, New, Loaded };

    /// E_UNEXPECTED if the control already has the other origin.
    [[nodiscard]] HRESULT begin(Origin origin) noexcept;

    Origin origin_ = Origin::None;
    Turn turn_ = Turn::None;
};

}  // namespace kv::automation
