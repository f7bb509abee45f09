// The control's image in a host's file: it keeps no settings, so the image is a header and nothing else.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

namespace kv::automation {

/// Persistence in streams, storages and property bags. IUnknown is left to the class.
///
/// The image: the four letters "kvBS", then three numbers, low byte first: the version (16 bits, now 1), 0 (16 bits),
/// and the number of bytes that follow (32 bits, now 0). An empty stream is a control that was saved before there was
/// an image. A later version's bytes are read over and have no effect; what is damaged, cut off or somebody else's is
/// refused, and nothing has changed then.
class PersistImpl : public IPersistStreamInit, public IPersistStorage, public IPersistPropertyBag {
  public:
    PersistImpl(const PersistImpl&) = delete;
    PersistImpl& operator=(const PersistImpl&) = delete;

    // IPersist
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override;

    // All three. A control is made new or loaded; a host that does neither has a new one. A container may do the same
    // again at any time, as some do with each new site: there are no settings to set back, and channels and pictures
    // belong to the running host. Only the other one of the two is refused.
    HRESULT STDMETHODCALLTYPE IsDirty() override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE InitNew() override;

    // IPersistStreamInit
    HRESULT STDMETHODCALLTYPE Load(IStream* stream) override;
    HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) override;
    HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) override;

    // IPersistStorage. The storage is used during the calls only, but its turns are kept all the same. Here a second
    // beginning is an error of its own.
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

    /// E_UNEXPECTED when the control has the other origin.
    [[nodiscard]] HRESULT begin(Origin origin) noexcept;

    Origin origin_ = Origin::None;
    Turn turn_ = Turn::None;
};

}  // namespace kv::automation
