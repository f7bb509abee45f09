// The control on a window of the system's own container, with its child windows and events in reach.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/automation/ControlFixture.h"

namespace kv::test {

/// Notes the events of a control, by their numbers.
class EventLog final : public IDispatch {
  public:
    struct Event {
        DISPID id = 0;
        std::vector<Var> arguments;  ///< in the order of the declaration
    };
    std::vector<Event> events;

    [[nodiscard]] int count(DISPID id) const;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    // It belongs to the test, which lets it live longer than the control.
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                     UINT*) override;
};

class HostedControl {
  public:
    static constexpr DISPID kChgGridRange = 1;
    static constexpr DISPID kChgHeight = 2;
    static constexpr DISPID kChgFreqRange = 3;

    explicit HostedControl(const Scope& scope);
    HostedControl(const HostedControl&) = delete;
    HostedControl& operator=(const HostedControl&) = delete;
    ~HostedControl();

    EventLog log;

    [[nodiscard]] HWND control() const noexcept { return control_; }
    /// The first window inside the control that fits; null when there is none.
    [[nodiscard]] HWND child(const std::function<bool(HWND)>& fits) const;
    /// Neither the window nor one that it stands in, up to the control, is hidden.
    [[nodiscard]] bool isToBeSeen(HWND window) const;
    [[nodiscard]] HWND gridRangeBox() const;
    /// A label with this text is to be seen.
    [[nodiscard]] bool showsLabel(const std::wstring& text) const;
    /// A label that ends so is there, seen or not.
    [[nodiscard]] bool hasLabelEnding(const std::wstring& ending) const;
    void clickBackground() const;
    /// What a user's choice in the box sends.
    void chooseGridRange(int item) const;
    void resize(int width, int height) const;

  private:
    HWND window_ = nullptr;
    HWND control_ = nullptr;
    ComPtr<IUnknown> container_;
    ComPtr<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};

/// Lets everything that waits in the queue happen.
void pumpMessages();

}  // namespace kv::test
