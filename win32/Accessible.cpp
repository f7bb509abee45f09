#include "win32/Accessible.h"

#include <oleacc.h>

#include <atomic>
#include <new>
#include <string>

#include "util/QuietArithmetic.h"
#include "win32/WindowKind.h"

namespace kv::win32 {

using formenv::Widget;

namespace {

std::atomic<long> objects{0};

bool isSelf(const VARIANT& child) {
    return child.vt == VT_I4 && child.lVal == CHILDID_SELF;
}

const std::wstring& nameOf(const Widget& widget) {
    return widget.spoken.name.empty() ? windowKind(widget).accessibleName(widget) : widget.spoken.name;
}

/// Nothing if the widget has no value.
std::optional<std::wstring> valueOf(const Widget& widget) {
    return widget.spoken.value ? widget.spoken.value() : windowKind(widget).value(widget);
}

/// Stores the text; S_FALSE if it is empty.
HRESULT give(const std::wstring& text, BSTR* out) {
    if (text.empty())
        return S_FALSE;
    *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *out ? S_OK : E_OUTOFMEMORY;
}

void giveNumber(LONG number, VARIANT* out) {
    out->vt = VT_I4;
    out->lVal = number;
}

/// Describes the widget itself. Everything around it (parent, children, neighbors) is answered by the system's object.
class AccessibleWidget final : public IAccessible {
  public:
    AccessibleWidget(HWND window, std::shared_ptr<Widget*> widget, IAccessible* inner)
        : window_(window), widget_(std::move(widget)), inner_(inner) {
        inner_->AddRef();
        ++objects;
    }
    AccessibleWidget(const AccessibleWidget&) = delete;
    AccessibleWidget& operator=(const AccessibleWidget&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(IAccessible)) {
            *object = static_cast<IAccessible*>(this);
            AddRef();
            return S_OK;
        }
        return iid == IID_IEnumVARIANT || iid == IID_IOleWindow ? inner_->QueryInterface(iid, object) : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }

    // Calls by name use the system's type information of the interface.
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return inner_->GetTypeInfoCount(count); }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
        return inner_->GetTypeInfo(index, locale, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override {
        return inner_->GetIDsOfNames(iid, names, count, locale, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO* exception, UINT* argument) override {
        ITypeInfo* info = nullptr;
        const HRESULT described = inner_->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info);
        if (FAILED(described) || !info)
            return DISP_E_MEMBERNOTFOUND;
        const HRESULT result2 = DispInvoke(this, info, id, flags, params, result, exception, argument);
        info->Release();
        return result2;
    }

    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override { return inner_->get_accParent(parent); }
    HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override { return inner_->get_accChildCount(count); }
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override {
        return inner_->get_accChild(child, object);
    }
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
        return about(child, name, [&](const Widget& widget) { return give(nameOf(widget), name); });
    }
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override {
        return about(child, value, [&](const Widget& widget) {
            const std::optional<std::wstring> text = valueOf(widget);
            return text ? give(*text, value) : DISP_E_MEMBERNOTFOUND;
        });
    }
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* text) override {
        return about(child, text, [&](const Widget& widget) { return give(widget.toolTip(), text); });
    }
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* text) override {
        return about(child, text, [&](const Widget& widget) { return give(widget.spoken.help, text); });
    }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
        return about(child, role, [&](const Widget& widget) {
            giveNumber(windowKind(widget).role(widget).value_or(ROLE_SYSTEM_CLIENT), role);
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
        return about(child, state, [&](const Widget& widget) {
            giveNumber(stateOf(widget), state);
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT, LONG* topic) override {
        if (file)
            *file = nullptr;
        if (topic)
            *topic = 0;
        return DISP_E_MEMBERNOTFOUND;
    }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* text) override {
        return about(child, text, [](const Widget&) { return S_FALSE; });
    }
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* text) override {
        return about(child, text, [](const Widget&) { return DISP_E_MEMBERNOTFOUND; });
    }
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* focus) override {
        if (!focus)
            return E_POINTER;
        VariantInit(focus);
        const HWND has = GetFocus();
        if (has == window_) {
            giveNumber(CHILDID_SELF, focus);
            return S_OK;
        }
        if (!has || !IsChild(window_, has))
            return S_FALSE;
        const HRESULT found = AccessibleObjectFromWindow(has, static_cast<DWORD>(OBJID_CLIENT), IID_IDispatch,
                                                         reinterpret_cast<void**>(&focus->pdispVal));
        if (SUCCEEDED(found))
            focus->vt = VT_DISPATCH;
        return found;
    }
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* selection) override {
        return inner_->get_accSelection(selection);
    }
    HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT child) override {
        if (!*widget_)
            return CO_E_OBJNOTCONNECTED;
        if (!isSelf(child) || flags != SELFLAG_TAKEFOCUS)
            return E_INVALIDARG;
        if (!windowKind(**widget_).takesFocus(**widget_) || !IsWindowVisible(window_) || !IsWindowEnabled(window_))
            return S_FALSE;
        SetFocus(window_);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) override {
        return inner_->accLocation(left, top, width, height, child);
    }
    HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT start, VARIANT* end) override {
        return inner_->accNavigate(direction, start, end);
    }
    HRESULT STDMETHODCALLTYPE accHitTest(LONG left, LONG top, VARIANT* child) override {
        return inner_->accHitTest(left, top, child);
    }
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT) override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }

  private:
    ~AccessibleWidget() {
        inner_->Release();
        --objects;
    }
    static void clear(BSTR* out) noexcept { *out = nullptr; }
    static void clear(VARIANT* out) noexcept { VariantInit(out); }

    template <class Out, class F>
    HRESULT about(const VARIANT& child, Out* out, F&& answer) noexcept {
        if (!out)
            return E_POINTER;
        clear(out);
        if (!*widget_)
            return CO_E_OBJNOTCONNECTED;
        if (!isSelf(child))
            return E_INVALIDARG;
        const util::QuietArithmetic quiet;
        try {
            return answer(static_cast<const Widget&>(**widget_));
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }
    [[nodiscard]] LONG stateOf(const Widget& widget) const {
        LONG state = IsWindowVisible(window_) ? 0 : STATE_SYSTEM_INVISIBLE;
        if (!IsWindowEnabled(window_))
            return state | STATE_SYSTEM_UNAVAILABLE;
        if (windowKind(widget).takesFocus(widget))
            state |= STATE_SYSTEM_FOCUSABLE | (GetFocus() == window_ ? STATE_SYSTEM_FOCUSED : 0);
        return state;
    }

    std::atomic<ULONG> references_{1};
    HWND window_;
    std::shared_ptr<Widget*> widget_;
    IAccessible* inner_;
};

}  // namespace

Speech::Speech(Widget& widget) : widget_(std::make_shared<Widget*>(&widget)) {}

Speech::~Speech() {
    *widget_ = nullptr;
}

std::optional<LRESULT> Speech::answer(HWND window, WPARAM wParam, LPARAM lParam) const {
    const Widget& widget = **widget_;
    const bool isOurs = windowKind(widget).role(widget).has_value();
    // Only the lower 32 bits of the parameter are defined.
    if (!isOurs || static_cast<DWORD>(lParam) != static_cast<DWORD>(OBJID_CLIENT))
        return std::nullopt;
    IAccessible* inner = nullptr;
    if (FAILED(
            CreateStdAccessibleObject(window, OBJID_CLIENT, __uuidof(IAccessible), reinterpret_cast<void**>(&inner))))
        return std::nullopt;
    auto* const object = new (std::nothrow) AccessibleWidget(window, widget_, inner);
    inner->Release();
    if (!object)
        return std::nullopt;
    const LRESULT result = LresultFromObject(__uuidof(IAccessible), wParam, object);
    object->Release();
    return result;
}

void Speech::tellValue(HWND window) noexcept {
    if (window)
        NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, window, OBJID_CLIENT, CHILDID_SELF);
}

long accessibleObjects() noexcept {
    return objects;
}

}  // namespace kv::win32
