// A small container of the test's own: a real window, a site and a frame that note what the control asks of them.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/automation/ControlFixture.h"

namespace kv::test {

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

/// A top-level window; `onMessage` hears WM_APP.
class HostWindow {
  public:
    HostWindow();
    ~HostWindow() { destroy(); }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    [[nodiscard]] HWND get() const noexcept { return window_; }
    void destroy();
    std::function<void()> onMessage;

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    HWND window_ = nullptr;
};

class MockFrame final : public Counted<IOleInPlaceFrame> {
  public:
    explicit MockFrame(HWND window) : window_(window) {}
    std::vector<std::string> calls;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetBorder(LPRECT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) override;
    HRESULT STDMETHODCALLTYPE InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetMenu(HMENU, HOLEMENU, HWND) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

  private:
    HWND window_;
};

class MockSite final : public Counted<IOleClientSite, IOleInPlaceSite> {
  public:
    explicit MockSite(HWND window);

    std::vector<std::string> calls;  ///< in their order
    RECT place{};                    ///< of the control in the window, pixels
    bool canActivate = true;
    bool hasContext = true;
    std::function<void(const RECT&)> onPosRectChange;
    std::function<void()> onDeactivate;
    ComPtr<MockFrame> frame;

    [[nodiscard]] int count(const std::string& call) const;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    // IOleClientSite
    HRESULT STDMETHODCALLTYPE SaveObject() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker** moniker) override;
    HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** container) override;
    HRESULT STDMETHODCALLTYPE ShowObject() override { return note("ShowObject"); }
    HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return note("OnShowWindow"); }
    HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }
    // IOleInPlaceSite
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override;
    HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return note("OnInPlaceActivate"); }
    HRESULT STDMETHODCALLTYPE OnUIActivate() override { return note("OnUIActivate"); }
    HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frameOut, IOleInPlaceUIWindow** document,
                                               LPRECT placeOut, LPRECT clip, LPOLEINPLACEFRAMEINFO info) override;
    HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return note("OnUIDeactivate"); }
    HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override;
    HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT wanted) override;

  private:
    HRESULT note(const char* call);
    HWND window_;
};

/// One event as a sink heard it.
struct HeardEvent {
    DISPID id = DISPID_UNKNOWN;
    std::vector<double> arguments;  ///< in the order of the declaration
    std::vector<VARTYPE> types;
    bool operator==(const HeardEvent&) const = default;
};

class EventSink final : public Counted<IDispatch> {
  public:
    std::vector<HeardEvent> heard;
    HRESULT answer = S_OK;
    std::function<void(DISPID)> onEvent;

    [[nodiscard]] std::vector<DISPID> ids() const;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO* exception, UINT* argError) override;
};

/// Numbers of the control's events.
constexpr DISPID kChgGridRange = 1;
constexpr DISPID kChgHeight = 2;
constexpr DISPID kChgFreqRange = 3;

/// The control in a window. The parts can be taken away one by one, in any order.
class Container {
  public:
    static constexpr int kLeft = 30;
    static constexpr int kTop = 20;

    Container();
    ~Container();
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    ComPtr<_kvBandscope> control;
    ComPtr<MockSite> site;
    HostWindow host;

    template <class Interface>
    [[nodiscard]] ComPtr<Interface> as() const {
        ComPtr<Interface> other;
        EXPECT_EQ(control.As(&other), S_OK);
        return other;
    }
    /// Sites the control and makes it active at the size it starts with.
    void activate();
    void resize(int width, int height);
    /// The number that takes the sink away again.
    DWORD connect(EventSink* sink);
    void addTx(const ChannelSpec& spec);
    void addRx(const ChannelSpec& spec);
    bool draw();

    [[nodiscard]] HWND root() const;
    [[nodiscard]] SIZE size() const;
    /// A window inside the control by class and text; fails the test when there is none.
    [[nodiscard]] HWND child(const wchar_t* className, const wchar_t* text) const;
    [[nodiscard]] HWND pictureBox(const wchar_t* name) const { return child(L"kvPictureBox", name); }
    [[nodiscard]] HWND panel() const;
    /// All windows inside the control of a class.
    [[nodiscard]] std::vector<HWND> children(const wchar_t* className) const;
};

/// A control in a container where it is not active. Must not outlive the control.
class Sited {
  public:
    explicit Sited(const Scope& scope);
    ~Sited();
    Sited(const Sited&) = delete;
    Sited& operator=(const Sited&) = delete;

    HostWindow host;
    ComPtr<MockSite> site;

  private:
    ComPtr<IOleObject> object_;
};

/// Lets pending messages run.
void pump();
/// Places of windows inside their parents, pixels.
[[nodiscard]] RECT placeOf(HWND window);
[[nodiscard]] bool isShown(HWND window);
void postClick(HWND window, int x, int y);
void postRightClick(HWND window, int x, int y);
/// The pixels that a window shows now.
[[nodiscard]] struct Picture windowPicture(HWND window);

}  // namespace kv::test
