// The container's side of a control: the interfaces through which the control learns its position and parent window.
#pragma once

#include "host/Com.h"

#include <ocidl.h>
#include <oleidl.h>

namespace kv::host {

/// One site for one control in one window: client site, in-place site, control site, the frame around them and the
/// ambient properties. The control keeps references to this object, so they are counted.
class ControlSite final : public IOleClientSite,
                          public IOleInPlaceSite,
                          public IOleControlSite,
                          public IOleInPlaceFrame,
                          public IDispatch {
  public:
    explicit ControlSite(HWND frame) : frame_(frame) {}
    virtual ~ControlSite() = default;

    /// The object that OnPosRectChange() moves. Set it to null when the control is closed, because it and this site
    /// hold references to each other.
    void setInPlaceObject(ComPtr<IOleInPlaceObject> object) { inPlaceObject_ = std::move(object); }
    /// The rectangle of the control, in pixels of the frame's client area.
    void setRect(const RECT& rect) { rect_ = rect; }
    /// Passes a keyboard message to the active control; true when the control has handled it.
    [[nodiscard]] bool translate(MSG& message);

    // IUnknown
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    // IOleClientSite
    STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** moniker) override;
    STDMETHODIMP GetContainer(IOleContainer** container) override;
    STDMETHODIMP ShowObject() override { return S_OK; }
    STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

    // IOleWindow, of the site and of the frame: here both are the same window
    STDMETHODIMP GetWindow(HWND* window) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }

    // IOleInPlaceSite
    STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnUIActivate() override { return S_OK; }
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, RECT* position, RECT* clip,
                                  OLEINPLACEFRAMEINFO* info) override;
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP OnUIDeactivate(BOOL) override { return S_OK; }
    STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
    STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
    STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
    STDMETHODIMP OnPosRectChange(const RECT* position) override;

    // IOleControlSite
    STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
    STDMETHODIMP LockInPlaceActive(BOOL) override { return S_OK; }
    STDMETHODIMP GetExtendedControl(IDispatch** control) override;
    STDMETHODIMP TransformCoords(POINTL* himetric, POINTF* container, DWORD flags) override;
    STDMETHODIMP TranslateAccelerator(MSG*, DWORD) override { return S_FALSE; }
    STDMETHODIMP OnFocus(BOOL) override { return S_OK; }
    STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }

    // IOleInPlaceUIWindow and IOleInPlaceFrame
    STDMETHODIMP GetBorder(RECT*) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP RequestBorderSpace(const BORDERWIDTHS*) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP SetBorderSpace(const BORDERWIDTHS* widths) override;
    STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) override;
    STDMETHODIMP InsertMenus(HMENU, OLEMENUGROUPWIDTHS*) override { return E_NOTIMPL; }
    STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
    STDMETHODIMP RemoveMenus(HMENU) override { return E_NOTIMPL; }
    STDMETHODIMP SetStatusText(LPCOLESTR) override { return S_OK; }
    STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }
    STDMETHODIMP TranslateAccelerator(MSG*, WORD) override { return S_FALSE; }

    // IDispatch: the ambient properties
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* badArgument) override;

  private:
    LONG references_ = 0;
    HWND frame_;
    RECT rect_{};
    ComPtr<IOleInPlaceObject> inPlaceObject_;
    ComPtr<IOleInPlaceActiveObject> activeObject_;
};

/// Pixels to 1/100 mm, the unit of a control's size in OLE.
[[nodiscard]] SIZEL himetricOf(SIZE pixels);

}  // namespace kv::host
