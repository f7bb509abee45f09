// The control's picture for containers: drawing it, transferring it as data, and notifying of changes.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>
#include <wrl/client.h>

#include "formenv/PictureOutput.h"

namespace kv::automation {

class Snapshot;

/// Viewing and data transfer. The derived class implements IUnknown. All ways show the whole control as it is at that
/// moment, stretched to the requested size. Printers and enhanced metafiles get the label strip with the spectrum in
/// vectors, drawn once more. The control is opaque.
class ViewImpl : public IViewObjectEx, public IDataObject {
  public:
    ViewImpl(const ViewImpl&) = delete;
    ViewImpl& operator=(const ViewImpl&) = delete;

    // IViewObject, IViewObject2, IViewObjectEx
    HRESULT STDMETHODCALLTYPE Draw(DWORD aspect, LONG index, void* aspectInfo, DVTARGETDEVICE* device, HDC deviceDc,
                                   HDC dc, LPCRECTL bounds, LPCRECTL windowBounds,
                                   BOOL(STDMETHODCALLTYPE* goOn)(ULONG_PTR), ULONG_PTR argument) override;
    HRESULT STDMETHODCALLTYPE GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** colors) override;
    HRESULT STDMETHODCALLTYPE Freeze(DWORD, LONG, void*, DWORD* key) override;
    HRESULT STDMETHODCALLTYPE Unfreeze(DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
    HRESULT STDMETHODCALLTYPE GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;
    HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device, LPSIZEL size) override;
    HRESULT STDMETHODCALLTYPE GetRect(DWORD aspect, LPRECTL rect) override;
    HRESULT STDMETHODCALLTYPE GetViewStatus(DWORD* status) override;
    HRESULT STDMETHODCALLTYPE QueryHitPoint(DWORD aspect, LPCRECT bounds, POINT at, LONG close, DWORD* result) override;
    HRESULT STDMETHODCALLTYPE QueryHitRect(DWORD aspect, LPCRECT bounds, LPCRECT area, LONG close,
                                           DWORD* result) override;
    HRESULT STDMETHODCALLTYPE GetNaturalExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device, HDC deviceDc,
                                               DVEXTENTINFO* wanted, LPSIZEL size) override;

    // IDataObject
    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override;
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC* format, STGMEDIUM* medium) override;
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override;
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC* format, FORMATETC* canonical) override;
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override;
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC* format, DWORD flags, IAdviseSink* sink, DWORD* connection) override;
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD connection) override;
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA** advise) override;

  protected:
    ViewImpl() = default;
    ~ViewImpl() = default;

    /// Notifies all sinks that the picture has changed. The container may make any call during this.
    void tellViewChanged() noexcept;
    void forgetViewSink() noexcept;
    /// Sends the data a last time to the sinks that requested this.
    void tellDataEnds() noexcept;

    virtual SIZE viewPixels() = 0;
    virtual SIZE viewStartPixels() = 0;
    virtual SIZEL viewExtent() = 0;  ///< hundredths of a millimeter
    /// The extent that suits the control best if it is offered `proposed`; without one, the control's own choice.
    virtual SIZEL viewNaturalExtent(const SIZEL* proposed) = 0;
    virtual void paintView(HDC dc, const RECT& bounds) = 0;
    virtual RECT viewStrip() = 0;  ///< pixels
    /// The label strip with the spectrum, with this many units for each pixel.
    virtual formenv::VectorPicture viewVectors(double scale) = 0;

  private:
    [[nodiscard]] Snapshot snapshot();
    [[nodiscard]] bool drawView(HDC dc, const RECTL& bounds);
    /// Owned by the caller; null if the system fails.
    [[nodiscard]] HENHMETAFILE metafile();
    void tellViewSink() noexcept;
    [[nodiscard]] LONG closePixels(LONG himetric);

    Microsoft::WRL::ComPtr<IAdviseSink> viewSink_;
    DWORD viewAspects_ = 0;
    DWORD viewFlags_ = 0;
    Microsoft::WRL::ComPtr<IDataAdviseHolder> dataSinks_;
};

}  // namespace kv::automation
