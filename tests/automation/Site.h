// What a container hands to the control: site, frame and sinks. All of them record their calls in one list, in order. A
// test can run code inside a call and choose its result.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/automation/Module.h"

namespace kv::test {

/// Numbers of the control's events.
constexpr DISPID kChgGridRange = 1;
constexpr DISPID kChgHeight = 2;
constexpr DISPID kChgFreqRange = 3;

/// Count of references, for objects of the test; the first ComPtr makes it one.
template <class... Interfaces>
class Counted : public Interfaces... {
  public:
    Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }
    [[nodiscard]] ULONG references() const noexcept { return references_; }

  protected:
    virtual ~Counted() = default;

  private:
    ULONG references_ = 0;
};

/// IDispatch of an object that is called by member numbers only.
class ByNumber : public IDispatch {
  public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
        *info = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
};

/// The calls that a container gets, and its results.
class CallLog {
  public:
    std::vector<std::string> calls;
    std::map<std::string, std::function<void()>> inside;  ///< runs during each call of this name
    std::map<std::string, HRESULT> answers;               ///< results other than the usual ones

    HRESULT note(const std::string& call, HRESULT usual = S_OK);
    /// The calls since the last time.
    [[nodiscard]] std::vector<std::string> take() { return std::exchange(calls, {}); }
    [[nodiscard]] int count(const std::string& call) const;
};

/// Frame window or document window of a container.
class ContainerFrame final : public Counted<IOleInPlaceFrame> {
  public:
    ContainerFrame(CallLog& log, HWND window, std::string name) : log_(log), window_(window), name_(std::move(name)) {}
    ComPtr<IOleInPlaceActiveObject> active;  ///< held as a real frame does

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetBorder(LPRECT) override { return INPLACE_E_NOTOOLSPACE; }
    HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS) override { return INPLACE_E_NOTOOLSPACE; }
    HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS widths) override;
    HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) override;
    HRESULT STDMETHODCALLTYPE InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetMenu(HMENU, HOLEMENU, HWND) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL enable) override {
        return log_.note(name_ + (enable ? ".EnableModeless(true)" : ".EnableModeless(false)"));
    }
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

  private:
    CallLog& log_;
    HWND window_;
    std::string name_;
};

class ViewSink final : public Counted<IAdviseSink> {
  public:
    explicit ViewSink(CallLog& log) : log_(log) {}
    FORMATETC format{};         ///< of the last data
    DWORD medium = TYMED_NULL;  ///< of the last data

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    void STDMETHODCALLTYPE OnDataChange(FORMATETC* changed, STGMEDIUM* data) override;
    void STDMETHODCALLTYPE OnViewChange(DWORD aspect, LONG) override;
    void STDMETHODCALLTYPE OnRename(IMoniker*) override { log_.note("OnRename"); }
    void STDMETHODCALLTYPE OnSave() override { log_.note("OnSave"); }
    void STDMETHODCALLTYPE OnClose() override { log_.note("OnClose"); }

  private:
    CallLog& log_;
};

/// One event as a sink received it.
struct HeardEvent {
    DISPID id = DISPID_UNKNOWN;
    std::vector<double> arguments;  ///< in the order of the declaration
    std::vector<VARTYPE> types;
    bool operator==(const HeardEvent&) const = default;
};

class EventSink final : public Counted<ByNumber> {
  public:
    std::vector<HeardEvent> heard;
    HRESULT answer = S_OK;
    std::function<void(DISPID)> onEvent;

    [[nodiscard]] std::vector<DISPID> ids() const;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO* exception, UINT* argError) override;
};

class PropertySink final : public Counted<IPropertyNotifySink> {
  public:
    std::vector<DISPID> changed;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE OnChanged(DISPID id) override;
    HRESULT STDMETHODCALLTYPE OnRequestEdit(DISPID) override { return S_OK; }
};

/// What a container offers beyond what every container has.
struct Offers {
    bool controlSite = false;  ///< IOleControlSite
    bool ambients = false;     ///< ambient properties through IDispatch
    bool document = false;     ///< a document window beside the frame window
};
constexpr Offers kOffersAll{true, true, true};

class ContainerSite final : public Counted<IOleClientSite, IOleInPlaceSite, IOleControlSite, ByNumber> {
  public:
    static constexpr int kLeft = 30;
    static constexpr int kTop = 20;

    ContainerSite(CallLog& log, HWND window, const Offers& offered);

    /// The window that the control goes into when it is activated next.
    void moveTo(HWND window) { window_ = window; }

    Offers offers;
    RECT place;                ///< of the control in the window, pixels
    std::optional<RECT> clip;  ///< instead of the place itself
    bool hasWindow = true;     ///< false: the container's window is destroyed before the control
    std::map<DISPID, Var> ambient;
    std::function<void(const RECT&)> onPosRectChange;
    ComPtr<ContainerFrame> frame;
    ComPtr<ContainerFrame> document;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE SaveObject() override { return log_.note("SaveObject"); }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker** moniker) override;
    HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** container) override;
    HRESULT STDMETHODCALLTYPE ShowObject() override { return log_.note("ShowObject"); }
    HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return log_.note("OnShowWindow"); }
    HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }

    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return log_.note("CanInPlaceActivate"); }
    HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return log_.note("OnInPlaceActivate"); }
    HRESULT STDMETHODCALLTYPE OnUIActivate() override { return log_.note("OnUIActivate"); }
    HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frameOut, IOleInPlaceUIWindow** documentOut,
                                               LPRECT placeOut, LPRECT clipOut, LPOLEINPLACEFRAMEINFO info) override;
    HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return log_.note("OnUIDeactivate"); }
    HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return log_.note("OnInPlaceDeactivate"); }
    HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT wanted) override;

    HRESULT STDMETHODCALLTYPE OnControlInfoChanged() override { return log_.note("OnControlInfoChanged"); }
    HRESULT STDMETHODCALLTYPE LockInPlaceActive(BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetExtendedControl(IDispatch** object) override;
    HRESULT STDMETHODCALLTYPE TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*, DWORD) override {
        return log_.note("TranslateAccelerator", S_FALSE);
    }
    HRESULT STDMETHODCALLTYPE OnFocus(BOOL has) override { return log_.note(has ? "OnFocus" : "OnFocus(lost)"); }
    HRESULT STDMETHODCALLTYPE ShowPropertyFrame() override { return E_NOTIMPL; }

    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO* exception, UINT* argError) override;

  private:
    CallLog& log_;
    HWND window_;
};

}  // namespace kv::test
