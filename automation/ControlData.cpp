// The control's picture as data.
#include <cmath>
#include <cstring>
#include <vector>

#include "automation/ControlView.h"
#include "automation/Identity.h"
#include "automation/Snapshot.h"
#include "com/Enumerator.h"
#include "com/Firewall.h"
#include "win32/WinPictures.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

namespace {

struct Offer {
    CLIPFORMAT format;
    DWORD medium;
};

/// The best format is first, because containers use the first one that they can.
constexpr Offer kOffers[] = {{CF_ENHMETAFILE, TYMED_ENHMF}, {CF_DIB, TYMED_HGLOBAL}, {CF_BITMAP, TYMED_GDI}};

struct FormatPolicy {
    using Stored = Offer;
    using Item = FORMATETC;
    static void copy(const Offer& offer, FORMATETC* item) noexcept {
        *item = {offer.format, nullptr, DVASPECT_CONTENT, -1, offer.medium};
    }
};

/// The medium on which a request can be answered; otherwise the error that explains why it cannot.
HRESULT answerable(const FORMATETC* format, DWORD& medium) {
    medium = TYMED_NULL;
    if (!format)
        return E_INVALIDARG;
    if (format->dwAspect != DVASPECT_CONTENT && format->dwAspect != DVASPECT_DOCPRINT)
        return DV_E_DVASPECT;
    if (format->lindex != -1)
        return DV_E_LINDEX;
    for (const Offer& offer : kOffers) {
        if (offer.format != format->cfFormat)
            continue;
        if (!(format->tymed & offer.medium))
            return DV_E_TYMED;
        medium = offer.medium;
        return S_OK;
    }
    return DV_E_FORMATETC;
}

HRESULT copyInto(HGLOBAL memory, const std::vector<BYTE>& bytes) {
    void* const target = GlobalLock(memory);
    if (!target)
        return E_INVALIDARG;
    std::memcpy(target, bytes.data(), bytes.size());
    GlobalUnlock(memory);
    return S_OK;
}

HGLOBAL globalOf(const std::vector<BYTE>& bytes) {
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    if (!memory)
        return nullptr;
    if (SUCCEEDED(copyInto(memory, bytes)))
        return memory;
    GlobalFree(memory);
    return nullptr;
}

}  // namespace

HRESULT ViewImpl::QueryGetData(FORMATETC* format) {
    DWORD medium = TYMED_NULL;
    return answerable(format, medium);
}

HENHMETAFILE ViewImpl::metafile() {
    bool drawn = false;
    win32::Metafile made = win32::recordMetafile(viewExtent(), [&](HDC dc, double width, double height) {
        drawn = drawView(dc, {0, 0, std::lround(width), std::lround(height)});
    });
    return drawn ? made.release() : nullptr;
}

HRESULT ViewImpl::GetData(FORMATETC* format, STGMEDIUM* medium) {
    if (!medium)
        return E_INVALIDARG;
    *medium = STGMEDIUM{};
    DWORD kind = TYMED_NULL;
    const HRESULT result = answerable(format, kind);
    if (FAILED(result))
        return result;
    return com::firewall(controlErrors(IID_IDataObject), [&] {
        // All handles are at the same position in the medium.
        if (kind == TYMED_ENHMF)
            medium->hEnhMetaFile = metafile();
        else if (kind == TYMED_HGLOBAL)
            medium->hGlobal = globalOf(snapshot().packedDib());
        else
            medium->hBitmap = snapshot().bitmap();
        if (!medium->hGlobal)
            return E_OUTOFMEMORY;
        medium->tymed = kind;
        return S_OK;
    });
}

HRESULT ViewImpl::GetDataHere(FORMATETC* format, STGMEDIUM* medium) {
    if (!medium)
        return E_INVALIDARG;
    DWORD kind = TYMED_NULL;
    const HRESULT result = answerable(format, kind);
    if (FAILED(result))
        return result;
    // Only memory of the caller can be filled. An existing metafile or bitmap cannot.
    if (kind != TYMED_HGLOBAL || medium->tymed != TYMED_HGLOBAL)
        return DV_E_TYMED;
    return com::firewall(controlErrors(IID_IDataObject), [&] {
        const std::vector<BYTE> dib = snapshot().packedDib();
        return GlobalSize(medium->hGlobal) < dib.size() ? STG_E_MEDIUMFULL : copyInto(medium->hGlobal, dib);
    });
}

HRESULT ViewImpl::GetCanonicalFormatEtc(FORMATETC* format, FORMATETC* canonical) {
    if (!canonical)
        return E_INVALIDARG;
    *canonical = FORMATETC{};
    if (!format)
        return E_INVALIDARG;
    // All devices get the same data.
    *canonical = *format;
    canonical->ptd = nullptr;
    return DATA_S_SAMEFORMATETC;
}

HRESULT ViewImpl::EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) {
    if (!formats)
        return E_POINTER;
    *formats = nullptr;
    if (direction != DATADIR_GET)
        return E_NOTIMPL;
    return com::firewall(controlErrors(IID_IDataObject), [&] {
        com::Enumerator<IEnumFORMATETC, FormatPolicy>::create({std::begin(kOffers), std::end(kOffers)}, formats);
    });
}

HRESULT ViewImpl::DAdvise(FORMATETC* format, DWORD flags, IAdviseSink* sink, DWORD* connection) {
    if (!connection)
        return E_POINTER;
    *connection = 0;
    if (!format || !sink)
        return E_INVALIDARG;
    // Format 0 means any format, for sinks that only need the notification.
    const HRESULT result = format->cfFormat ? QueryGetData(format) : S_OK;
    if (FAILED(result))
        return result;
    const ComPtr<IDataObject> alive(this);
    if (!dataSinks_) {
        const HRESULT made = CreateDataAdviseHolder(&dataSinks_);
        if (FAILED(made))
            return made;
    }
    const ComPtr<IDataAdviseHolder> sinks = dataSinks_;
    return sinks->Advise(this, format, flags, sink, connection);
}

HRESULT ViewImpl::DUnadvise(DWORD connection) {
    const ComPtr<IDataAdviseHolder> sinks = dataSinks_;
    return sinks ? sinks->Unadvise(connection) : OLE_E_NOCONNECTION;
}

HRESULT ViewImpl::EnumDAdvise(IEnumSTATDATA** advise) {
    if (!advise)
        return E_POINTER;
    *advise = nullptr;
    const ComPtr<IDataAdviseHolder> sinks = dataSinks_;
    return sinks ? sinks->EnumAdvise(advise) : S_OK;
}

void ViewImpl::tellDataEnds() noexcept {
    const ComPtr<IDataAdviseHolder> sinks = dataSinks_;
    ComPtr<IEnumSTATDATA> all;
    if (!sinks || FAILED(sinks->EnumAdvise(&all)) || !all)
        return;
    bool wanted = false;
    for (STATDATA one{}; all->Next(1, &one, nullptr) == S_OK; one = {}) {
        wanted = wanted || (one.advf & ADVF_DATAONSTOP) != 0;
        CoTaskMemFree(one.formatetc.ptd);
        if (one.pAdvSink)
            one.pAdvSink->Release();
    }
    if (wanted)
        sinks->SendOnDataChange(this, 0, ADVF_DATAONSTOP);
}

}  // namespace kv::automation
