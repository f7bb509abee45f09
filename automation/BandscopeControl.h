// The coclass kvBandscope: the spectrum display as automation object and as OLE control.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>
#include <wrl/client.h>

#include <array>
#include <atomic>
#include <memory>

#include "automation/ControlPersist.h"
#include "automation/ControlSizing.h"
#include "automation/ControlView.h"
#include "automation/ForeignFreqSlot.h"
#include "automation/Identity.h"
#include "automation/MessageWatch.h"
#include "automation/ScopeView.h"
#include "com/ConnectionPoints.h"
#include "com/Dispatch.h"
#include "com/Firewall.h"
#include "com/Module.h"
#include "control/Bandscope.h"
#include "formenv/PlatformPrompt.h"
#include "kvBandscope.h"
#include "util/ErrorHandler.h"
#include "win32/WinFiles.h"
#include "win32/WinPlatform.h"
#include "win32/WinSystem.h"
#include "win32/WindowTree.h"

namespace kv::automation {

// Source files: BandscopeMembers.cpp (_kvBandscope), BandscopeControl.cpp (identity, lifetime, events), ControlOle.cpp
// (IOleObject), ControlHost.cpp (IOleControl, ambient properties, IQuickActivate), ControlInPlace.cpp (windows and
// activation), ControlSize.cpp (extent and window rectangle), ControlKeys.cpp (keyboard and focus).
class BandscopeControl final : public com::DispatchImpl<_kvBandscope, &kChannelConverter>,
                               public com::ConnectionPointsImpl,
                               public PersistImpl,
                               public ViewImpl,
                               public IOleObject,
                               public IOleControl,
                               public IOleInPlaceObject,
                               public IOleInPlaceActiveObject,
                               public IQuickActivate,
                               public IProvideClassInfo2,
                               private control::HostEvents,
                               private win32::BoxHost,
                               private MessageListener {
  public:
    BandscopeControl();

    // IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    // ISupportErrorInfo
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override;

    // _kvBandscope
    HRESULT STDMETHODCALLTYPE AddTXChnl(_FreqSlot* chnl, long* value) override;
    HRESULT STDMETHODCALLTYPE AddRXChnl(_FreqSlot* chnl, long* value) override;
    HRESULT STDMETHODCALLTYPE GetTXChnl(long i, _FreqSlot** value) override;
    HRESULT STDMETHODCALLTYPE GetRXChnl(long i, _FreqSlot** value) override;
    HRESULT STDMETHODCALLTYPE get_dTXFreqMin(double* value) override;
    HRESULT STDMETHODCALLTYPE get_dTXFreqMax(double* value) override;
    HRESULT STDMETHODCALLTYPE get_dRXFreqMin(double* value) override;
    HRESULT STDMETHODCALLTYPE get_dRXFreqMax(double* value) override;
    HRESULT STDMETHODCALLTYPE get_dTXPwrDBMMin(double* value) override;
    HRESULT STDMETHODCALLTYPE get_dTXPwrDBMMax(double* value) override;
    HRESULT STDMETHODCALLTYPE get_NumTX(long* value) override;
    HRESULT STDMETHODCALLTYPE get_NumRX(long* value) override;
    HRESULT STDMETHODCALLTYPE get_dFreqMin(double* value) override;
    HRESULT STDMETHODCALLTYPE get_dFreqMax(double* value) override;
    HRESULT STDMETHODCALLTYPE get_dPwrMin(double* value) override;
    HRESULT STDMETHODCALLTYPE get_dPwrMax(double* value) override;
    HRESULT STDMETHODCALLTYPE DrawDisplay(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_bXLog(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE get_bXLog(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE ReDrawChnl(_FreqSlot* chnl, VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE ClearDisplay() override;
    HRESULT STDMETHODCALLTYPE ClearDisplayLabels() override;
    HRESULT STDMETHODCALLTYPE ClearAllChnls() override;
    HRESULT STDMETHODCALLTYPE ClearTXChnls() override;
    HRESULT STDMETHODCALLTYPE ClearRXChnls() override;
    HRESULT STDMETHODCALLTYPE put_nGridX(short value) override;
    HRESULT STDMETHODCALLTYPE get_nGridX(short* value) override;
    HRESULT STDMETHODCALLTYPE get_DisplayCenterFreq(double* value) override;
    HRESULT STDMETHODCALLTYPE put_DisplayCenterFreq(double value) override;
    HRESULT STDMETHODCALLTYPE get_DisplayMinFreq(double* value) override;
    HRESULT STDMETHODCALLTYPE get_DisplayMaxFreq(double* value) override;
    HRESULT STDMETHODCALLTYPE put_DisplayMinPwr(double value) override;
    HRESULT STDMETHODCALLTYPE get_DisplayMinPwr(double* value) override;
    HRESULT STDMETHODCALLTYPE put_DisplayMaxPwr(double value) override;
    HRESULT STDMETHODCALLTYPE get_DisplayMaxPwr(double* value) override;
    HRESULT STDMETHODCALLTYPE put_GridColor(OLE_COLOR value) override;
    HRESULT STDMETHODCALLTYPE get_GridColor(OLE_COLOR* value) override;
    HRESULT STDMETHODCALLTYPE put_FreqEndBuffer(double value) override;
    HRESULT STDMETHODCALLTYPE get_FreqEndBuffer(double* value) override;
    HRESULT STDMETHODCALLTYPE ReScaleChannels(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE DrawInitialDisplay() override;
    HRESULT STDMETHODCALLTYPE JustDrawIt() override;
    HRESULT STDMETHODCALLTYPE DrawAll() override;
    HRESULT STDMETHODCALLTYPE RescaleAll() override;
    HRESULT STDMETHODCALLTYPE nFindMatchRX(_FreqSlot* chnl, long* value) override;
    HRESULT STDMETHODCALLTYPE get_MinHgt(short* value) override;
    HRESULT STDMETHODCALLTYPE get_MinWid(short* value) override;
    HRESULT STDMETHODCALLTYPE put_CursorVal(double value) override;
    HRESULT STDMETHODCALLTYPE get_CursorVal(double* value) override;
    HRESULT STDMETHODCALLTYPE put_lCursorColor(OLE_COLOR value) override;
    HRESULT STDMETHODCALLTYPE get_lCursorColor(OLE_COLOR* value) override;
    HRESULT STDMETHODCALLTYPE DisplayToBMP(double* dHgt, double* dWid, BSTR* sFName, BSTR* value) override;
    HRESULT STDMETHODCALLTYPE CopyDisplayToClipboard() override;
    HRESULT STDMETHODCALLTYPE put_bMouseInfo(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE put_bChkVisMouseInfo(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE get_ShowAll(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_ShowAll(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE put_ShowAll_REPLACED_20070521_1637(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE put_bChkVisShowAll(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE get_bLoadingAll(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_bLoadingAll(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE GetTXbyKey(BSTR sKey, _FreqSlot** value) override;
    HRESULT STDMETHODCALLTYPE GetRXbyKey(BSTR sKey, _FreqSlot** value) override;
    HRESULT STDMETHODCALLTYPE GetChnlByKey(BSTR sKey, _FreqSlot** value) override;
    HRESULT STDMETHODCALLTYPE Refresh() override;
    HRESULT STDMETHODCALLTYPE DrawByRange(double dFMin, double dFMax) override;
    HRESULT STDMETHODCALLTYPE DrawNewCenterFreq() override;
    HRESULT STDMETHODCALLTYPE RemoveChnlByKey(BSTR sID) override;
    HRESULT STDMETHODCALLTYPE put_lColorLblBack(OLE_COLOR value) override;
    HRESULT STDMETHODCALLTYPE put_lColorLblFore(OLE_COLOR value) override;
    HRESULT STDMETHODCALLTYPE put_lColorSpecBack(OLE_COLOR value) override;

    // IOleObject
    HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) override;
    HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** site) override;
    HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Close(DWORD saveOption) override;
    HRESULT STDMETHODCALLTYPE SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) override;
    HRESULT STDMETHODCALLTYPE InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD, IDataObject** data) override;
    HRESULT STDMETHODCALLTYPE DoVerb(LONG verb, LPMSG message, IOleClientSite* site, LONG index, HWND parent,
                                     LPCRECT place) override;
    HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB** verbs) override;
    HRESULT STDMETHODCALLTYPE Update() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE IsUpToDate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID* clsid) override;
    HRESULT STDMETHODCALLTYPE GetUserType(DWORD form, LPOLESTR* type) override;
    HRESULT STDMETHODCALLTYPE SetExtent(DWORD aspect, SIZEL* size) override;
    HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, SIZEL* size) override;
    using ViewImpl::GetExtent;
    HRESULT STDMETHODCALLTYPE Advise(IAdviseSink* sink, DWORD* connection) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD connection) override;
    HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA** advise) override;
    HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD aspect, DWORD* status) override;
    HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

    // IOleControl
    HRESULT STDMETHODCALLTYPE GetControlInfo(CONTROLINFO* info) override;
    HRESULT STDMETHODCALLTYPE OnMnemonic(MSG* message) override;
    HRESULT STDMETHODCALLTYPE OnAmbientPropertyChange(DISPID property) override;
    HRESULT STDMETHODCALLTYPE FreezeEvents(BOOL freeze) override;

    // IOleWindow, IOleInPlaceObject, IOleInPlaceActiveObject
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE InPlaceDeactivate() override;
    HRESULT STDMETHODCALLTYPE UIDeactivate() override;
    HRESULT STDMETHODCALLTYPE SetObjectRects(LPCRECT place, LPCRECT clip) override;
    HRESULT STDMETHODCALLTYPE ReactivateAndUndo() override { return INPLACE_E_NOTUNDOABLE; }
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG message) override;
    HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL enable) override;

    // IQuickActivate
    HRESULT STDMETHODCALLTYPE QuickActivate(QACONTAINER* container, QACONTROL* control) override;
    HRESULT STDMETHODCALLTYPE SetContentExtent(LPSIZEL size) override;
    HRESULT STDMETHODCALLTYPE GetContentExtent(LPSIZEL size) override;

    // IProvideClassInfo2
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) override;

  private:
    friend class ScopeView;
    ~BandscopeControl();
    BandscopeControl(const BandscopeControl&) = delete;
    BandscopeControl& operator=(const BandscopeControl&) = delete;

    // control::HostEvents
    void ChgGridRange() override;
    void ChgHeight(std::int16_t iHgt) override;
    void ChgFreqRange(double dMin, double dMax) override;

    // win32::BoxHost
    bool canShowBoxes() noexcept override { return site_.Get() != nullptr; }
    HWND boxOwner() noexcept override;
    Microsoft::WRL::ComPtr<IOleInPlaceFrame> boxFrame() noexcept override { return frame_; }

    /// The interfaces that QueryInterface offers; nullptr for any other.
    [[nodiscard]] void* offered(REFIID iid) noexcept;

    // PersistImpl, ViewImpl
    void saved() noexcept override;
    SIZE viewPixels() override;
    SIZE viewStartPixels() override;
    SIZEL viewExtent() override;
    SIZEL viewNaturalExtent(const SIZEL* proposed) override;
    void paintView(HDC dc, const RECT& bounds) override;
    RECT viewStrip() override;
    formenv::VectorPicture viewVectors(double scale) override;

    // MessageListener: every message of the control's windows.
    LRESULT watched(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept override;

    /// Work that may change the picture. At the end of the outermost one, the container is notified once.
    class Work {
      public:
        explicit Work(BandscopeControl& control, bool isMessage = false) noexcept
            : control_(control), isMessage_(isMessage) {
            ++control_.atWork_;
        }
        ~Work() {
            if (--control_.atWork_ == 0)
                control_.tellPicture(isMessage_);
        }
        Work(const Work&) = delete;
        Work& operator=(const Work&) = delete;

      private:
        BandscopeControl& control_;
        bool isMessage_;
    };

    /// A call of the container that may show, hide or size the control. The container expects that no other part of the
    /// program runs during the call, and that the control does not ask it for another size.
    class ContainerCall {
      public:
        explicit ContainerCall(BandscopeControl& control) noexcept;
        ~ContainerCall();
        ContainerCall(const ContainerCall&) = delete;
        ContainerCall& operator=(const ContainerCall&) = delete;

      private:
        BandscopeControl& control_;
        Microsoft::WRL::ComPtr<IOleObject> alive_;
        Work work_;
        win32::EventPump::Limit limit_;
    };

    /// Runs a member of interface `iid` that does something. The control stays alive while pending events are
    /// processed.
    template <class F>
    HRESULT member(F&& body, REFIID iid = __uuidof(_kvBandscope)) noexcept {
        const Microsoft::WRL::ComPtr<IOleObject> alive(this);
        const Work work(*this);
        return com::firewall(controlErrors(iid), std::forward<F>(body));
    }
    /// The same with a result.
    template <class Out, class F>
    HRESULT memberReturn(Out* out, F&& body, REFIID iid = __uuidof(_kvBandscope)) noexcept {
        const Microsoft::WRL::ComPtr<IOleObject> alive(this);
        const Work work(*this);
        return com::firewallReturn(controlErrors(iid), out, std::forward<F>(body));
    }
    /// Runs an accessor: an error ends it without a report, and the result is the start value.
    template <class Out, class F>
    HRESULT quietly(Out* out, F&& body) noexcept {
        const HRESULT result = memberReturn(out, std::forward<F>(body));
        return result == E_POINTER ? result : S_OK;
    }
    template <class F>
    HRESULT quietly(F&& body) noexcept {
        static_cast<void>(member(std::forward<F>(body)));
        return S_OK;
    }

    // ControlInPlace.cpp
    /// The private message that redraws the pictures after a change of the colors or the resolution.
    static constexpr UINT kRedraw = WM_APP + 0x141;
    /// The arguments of a verb.
    struct Verb {
        IOleClientSite* site = nullptr;
        const MSG* message = nullptr;
        const RECT* place = nullptr;
    };
    HRESULT show(const Verb& verb, bool withUi) noexcept;
    HRESULT hide(const Verb& verb) noexcept;
    HRESULT activateInPlace(const Verb& verb, bool hidden);
    HRESULT makeWindows(IOleInPlaceSite& inPlaceSite, const RECT* verbPlace, unsigned epoch);
    HRESULT activateUi() noexcept;
    void deactivate() noexcept;
    win32::WindowTree& windowTree();
    [[nodiscard]] HWND rootWindow() const noexcept { return windows_ ? windows_->root() : nullptr; }

    // ControlSize.cpp
    /// The private message on which the control asks the container for more room, after the container's own call.
    static constexpr UINT kAskForRoom = WM_APP + 0x140;
    void placeWindow(const RECT& place, const RECT* clip, bool atActivation);
    void adoptSize(const SIZE& window, bool atActivation);
    void adoptExtent(const SIZEL& extent);
    void layOut();
    void followSize(raster::PixelSize size);
    void askForRoomLater() noexcept;
    void askForRoom() noexcept;
    void forgetAsking() noexcept;
    [[nodiscard]] SIZE roomFor(const SIZE& window) const noexcept;
    [[nodiscard]] SIZEL naturalExtent() const noexcept;
    [[nodiscard]] LONG pixelsOf(double twips) const noexcept;

    /// Twips in the control refer to the resolution of its window, twips of the host to that of the whole screen.
    [[nodiscard]] double toHostTwips(double twips) const noexcept {
        return twips * platform_.dpi() / platform_.hostDpi();
    }
    [[nodiscard]] double fromHostTwips(double twips) const noexcept {
        return twips * platform_.hostDpi() / platform_.dpi();
    }

    // ControlHost.cpp
    [[nodiscard]] bool ambientFlag(DISPID property, bool otherwise) noexcept;
    void adoptInputState() noexcept;

    // ControlKeys.cpp
    void focusCame(HWND window) noexcept;
    void focusLeft(HWND to) noexcept;
    void enabledChanged(bool enabled) noexcept;
    void tellFocus(bool has) noexcept;
    void takeFocus(const MSG* message) noexcept;
    [[nodiscard]] bool holdsFocus() const noexcept;
    [[nodiscard]] bool moveFocus(bool back) noexcept;

    // ControlLooks.cpp
    using SystemColors = std::array<COLORREF, COLOR_MENUBAR + 1>;
    [[nodiscard]] static SystemColors presentColors() noexcept;
    void noteLooks() noexcept;
    void followDpi() noexcept;
    void redrawPictures() noexcept;

    void tellPicture(bool captionsToo) noexcept;
    void tellSpectrum() noexcept;

    std::atomic<ULONG> references_{1};
    com::ModuleRef module_;
    win32::WinPlatform platform_;
    win32::WinFiles files_;
    // Without a container, as in a script, there may be no user who could close a message box.
    formenv::PlatformPrompt prompt_{platform_, [this] { return canShowBoxes(); }};
    util::ErrorHandler errors_{win32::techSupportLog(), prompt_};
    std::unique_ptr<control::Bandscope> scope_;
    /// Exists as long as the control: it may be in use further up the call stack while the control is activated again.
    std::unique_ptr<win32::WindowTree> windows_;
    MessageWatch watch_{*this};
    ScopeView view_{*this};

    Microsoft::WRL::ComPtr<IOleClientSite> site_;
    Microsoft::WRL::ComPtr<IOleInPlaceSite> inPlaceSite_;
    Microsoft::WRL::ComPtr<IOleInPlaceFrame> frame_;
    Microsoft::WRL::ComPtr<IOleInPlaceUIWindow> document_;
    Microsoft::WRL::ComPtr<IOleAdviseHolder> adviseHolder_;
    bool closed_ = false;
    bool silent_ = false;           ///< no events: the container has closed the control or removed its site
    bool activatedBefore_ = false;  ///< since the site was set
    bool inPlaceActive_ = false;    ///< the site was notified of the activation, not yet of its end
    bool uiActive_ = false;
    bool isActiveObject_ = false;  ///< frame and document were notified
    bool hasFocus_ = false;
    bool translating_ = false;
    bool tabLeaves_ = false;    ///< the last key was a Tab that leaves the control
    HWND lastFocus_ = nullptr;  ///< where the focus was when it left
    unsigned epoch_ = 0;        ///< counts activations and deactivations, so that an outdated one stops

    ControlSizing sizing_;

    struct Ambient {
        bool userMode = true;
        bool uiDead = false;
    };
    Ambient ambient_;  ///< for a container that has no such properties

    SystemColors colors_ = presentColors();  ///< with which the pictures were drawn
    int pictureDpi_ = platform_.dpi();       ///< at which the pictures were drawn
    HWND redrawPosted_ = nullptr;            ///< the window to which a redraw is posted

    int atWork_ = 0;
    formenv::Widget::Looks told_;
    std::wstring spokenValue_;  ///< of the spectrum, as last reported to screen readers
};

HRESULT createBandscopeControl(REFIID iid, void** object);

}  // namespace kv::automation
