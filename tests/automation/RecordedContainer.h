// A container that writes down every call it gets, in order and in one list, and that can do anything inside any of
// them.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/automation/MockSite.h"

namespace kv::test {

/// What a container hears, and how it answers.
class CallLog {
  public:
    std::vector<std::string> calls;
    std::map<std::string, std::function<void()>> inside;  ///< what happens during a call, by its name, each time
    std::map<std::string, HRESULT> answers;               ///< other answers than the usual

    HRESULT note(const std::string& call, HRESULT usual = S_OK);
    /// The calls since the last time.
    [[nodiscard]] std::vector<std::string> take() { return std::exchange(calls, {}); }
    [[nodiscard]] int count(const std::string& call) const;
};

/// Frame and document window of a container.
class RecordedFrame final : public Counted<IOleInPlaceFrame> {
  public:
    RecordedFrame(CallLog& log, HWND window, std::string name) : log_(log), window_(window), name_(std::move(name)) {}
    ComPtr<IOleInPlaceActiveObject> active;  ///< held like a real frame does

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

class RecordedSink final : public Counted<IAdviseSink> {
  public:
    explicit RecordedSink(CallLog& log) : log_(log) {}
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

class RecordedSite final : public Counted<IOleClientSite, IOleInPlaceSite, IOleControlSite, IDispatch> {
  public:
    RecordedSite(CallLog& log, HWND window);

    /// The window that the control goes into when it is activated next.
    void moveTo(HWND window) { window_ = window; }

    RECT place{};
    std::optional<RECT> clip;  ///< instead of the place itself
    bool hasWindow = true;     ///< its window can be gone before the control
    bool hasDocument = true;
    bool hasAmbients = true;
    std::map<DISPID, Var> ambient;
    std::function<void(const RECT&)> onPosRectChange;
    ComPtr<RecordedFrame> frame;
    ComPtr<RecordedFrame> document;

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

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO* exception, UINT* argError) override;

  private:
    CallLog& log_;
    HWND window_;
};

/// The control with such a container, not sited yet.
class RecordedContainer {
  public:
    RecordedContainer();
    ~RecordedContainer();
    RecordedContainer(const RecordedContainer&) = delete;
    RecordedContainer& operator=(const RecordedContainer&) = delete;

    CallLog log;
    HostWindow host;
    ComPtr<RecordedSite> site;
    ComPtr<RecordedSink> sink;
    ComPtr<_kvBandscope> control;

    template <class Interface>
    [[nodiscard]] ComPtr<Interface> as() const {
        ComPtr<Interface> other;
        EXPECT_EQ(control.As(&other), S_OK);
        return other;
    }
    HRESULT setSite() const { return as<IOleObject>()->SetClientSite(site.Get()); }
    HRESULT verb(LONG number, MSG* message = nullptr) const;
    /// Sited and active in place; the calls so far are forgotten.
    void activate();
    void advise();
    /// One channel, drawn.
    void draw() const;
    [[nodiscard]] HWND root() const;
    /// All windows inside the control's, hidden ones too.
    [[nodiscard]] std::vector<HWND> parts() const;
    /// Nothing of the control is left: windows, references, objects.
    void expectNothingLeft() const;
};

}  // namespace kv::test
