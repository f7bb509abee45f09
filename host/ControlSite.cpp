#include "host/ControlSite.h"

#include <olectl.h>

#include <cstdlib>

namespace kv::host {

namespace {

constexpr int kHimetricPerInch = 2540;

/// Pixels per inch. The program uses the resolution of the whole screen, which does not change while the program runs.
SIZE pixelsPerInch() {
    const HDC screen = GetDC(nullptr);
    const SIZE result = {GetDeviceCaps(screen, LOGPIXELSX), GetDeviceCaps(screen, LOGPIXELSY)};
    ReleaseDC(nullptr, screen);
    return result;
}

void setBool(VARIANT& result, bool value) {
    result.vt = VT_BOOL;
    result.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
}

void setLong(VARIANT& result, LONG value) {
    result.vt = VT_I4;
    result.lVal = value;
}

/// The font of the system's dialogs as a font object.
HRESULT setFont(VARIANT& result) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
    const LOGFONTW& font = metrics.lfMessageFont;
    FONTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.lpstrName = const_cast<wchar_t*>(font.lfFaceName);
    description.cySize.int64 = 10000LL * MulDiv(std::abs(font.lfHeight), 72, pixelsPerInch().cy);  // points x 10000
    description.sWeight = static_cast<SHORT>(font.lfWeight);
    description.sCharset = font.lfCharSet;
    result.vt = VT_DISPATCH;
    result.pdispVal = nullptr;
    return OleCreateFontIndirect(&description, IID_IDispatch, reinterpret_cast<void**>(&result.pdispVal));
}

}  // namespace

SIZEL himetricOf(SIZE pixels) {
    const SIZE inch = pixelsPerInch();
    return {MulDiv(pixels.cx, kHimetricPerInch, inch.cx), MulDiv(pixels.cy, kHimetricPerInch, inch.cy)};
}

bool ControlSite::translate(MSG& message) {
    // The member may change during the call, so the object is held by a local pointer.
    const ComPtr<IOleInPlaceActiveObject> active = activeObject_;
    return active != nullptr && message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST &&
           active->TranslateAccelerator(&message) == S_OK;
}

STDMETHODIMP ControlSite::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_IOleClientSite) {
        *object = static_cast<IOleClientSite*>(this);
    } else if (iid == IID_IOleInPlaceSite || iid == IID_IOleWindow) {
        *object = static_cast<IOleInPlaceSite*>(this);
    } else if (iid == IID_IOleControlSite) {
        *object = static_cast<IOleControlSite*>(this);
    } else if (iid == IID_IDispatch) {
        *object = static_cast<IDispatch*>(this);
    } else {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) ControlSite::AddRef() {
    return static_cast<ULONG>(InterlockedIncrement(&references_));
}

STDMETHODIMP_(ULONG) ControlSite::Release() {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) {
        delete this;
    }
    return static_cast<ULONG>(left);
}

STDMETHODIMP ControlSite::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
    if (moniker != nullptr) {
        *moniker = nullptr;
    }
    return E_NOTIMPL;
}

STDMETHODIMP ControlSite::GetContainer(IOleContainer** container) {
    if (container == nullptr) {
        return E_POINTER;
    }
    *container = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP ControlSite::GetWindow(HWND* window) {
    if (window == nullptr) {
        return E_POINTER;
    }
    *window = frame_;
    return S_OK;
}

STDMETHODIMP ControlSite::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, RECT* position,
                                           RECT* clip, OLEINPLACEFRAMEINFO* info) {
    if (frame == nullptr || document == nullptr || position == nullptr || clip == nullptr || info == nullptr) {
        return E_POINTER;
    }
    *frame = this;
    AddRef();
    *document = nullptr;  // the frame is the document's window too
    *position = rect_;
    *clip = rect_;
    info->fMDIApp = FALSE;
    info->hwndFrame = frame_;
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    return S_OK;
}

STDMETHODIMP ControlSite::OnPosRectChange(const RECT* position) {
    if (position == nullptr) {
        return E_POINTER;
    }
    const ComPtr<IOleInPlaceObject> object = inPlaceObject_;
    if (object == nullptr) {
        return E_UNEXPECTED;
    }
    rect_ = *position;
    return object->SetObjectRects(position, position);
}

STDMETHODIMP ControlSite::GetExtendedControl(IDispatch** control) {
    if (control != nullptr) {
        *control = nullptr;
    }
    return E_NOTIMPL;
}

STDMETHODIMP ControlSite::TransformCoords(POINTL* himetric, POINTF* container, DWORD flags) {
    if (himetric == nullptr || container == nullptr) {
        return E_POINTER;
    }
    const SIZE inch = pixelsPerInch();
    if ((flags & XFORMCOORDS_HIMETRICTOCONTAINER) != 0) {
        container->x = static_cast<float>(himetric->x) * static_cast<float>(inch.cx) / kHimetricPerInch;
        container->y = static_cast<float>(himetric->y) * static_cast<float>(inch.cy) / kHimetricPerInch;
    } else if ((flags & XFORMCOORDS_CONTAINERTOHIMETRIC) != 0) {
        himetric->x = static_cast<LONG>(container->x * kHimetricPerInch / static_cast<float>(inch.cx));
        himetric->y = static_cast<LONG>(container->y * kHimetricPerInch / static_cast<float>(inch.cy));
    } else {
        return E_INVALIDARG;
    }
    return S_OK;
}

STDMETHODIMP ControlSite::SetBorderSpace(const BORDERWIDTHS* widths) {
    return widths == nullptr ? S_OK : OLE_E_INVALIDRECT;
}

STDMETHODIMP ControlSite::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) {
    activeObject_ = object;
    return S_OK;
}

STDMETHODIMP ControlSite::GetTypeInfoCount(UINT* count) {
    if (count == nullptr) {
        return E_POINTER;
    }
    *count = 0;
    return S_OK;
}

STDMETHODIMP ControlSite::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info != nullptr) {
        *info = nullptr;
    }
    return E_NOTIMPL;
}

STDMETHODIMP ControlSite::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) {
    if (result == nullptr || (flags & DISPATCH_PROPERTYGET) == 0) {
        return DISP_E_MEMBERNOTFOUND;
    }
    switch (id) {
        case DISPID_AMBIENT_USERMODE:
        case DISPID_AMBIENT_SUPPORTSMNEMONICS:
            setBool(*result, true);
            return S_OK;
        case DISPID_AMBIENT_UIDEAD:
        case DISPID_AMBIENT_SHOWGRABHANDLES:
        case DISPID_AMBIENT_SHOWHATCHING:
        case DISPID_AMBIENT_MESSAGEREFLECT:
            setBool(*result, false);
            return S_OK;
        case DISPID_AMBIENT_BACKCOLOR:
            setLong(*result, static_cast<LONG>(GetSysColor(COLOR_BTNFACE)));
            return S_OK;
        case DISPID_AMBIENT_FORECOLOR:
            setLong(*result, static_cast<LONG>(GetSysColor(COLOR_BTNTEXT)));
            return S_OK;
        case DISPID_AMBIENT_LOCALEID:
            setLong(*result, static_cast<LONG>(GetUserDefaultLCID()));
            return S_OK;
        case DISPID_AMBIENT_FONT:
            return setFont(*result);
        default:
            return DISP_E_MEMBERNOTFOUND;
    }
}

}  // namespace kv::host
