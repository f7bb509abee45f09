// The control in a window of a container, with its child windows and events within reach.
#pragma once

#include <vector>

#include "tests/automation/ControlFixture.h"
#include "tests/automation/Site.h"

namespace kv::test {

/// A top-level window; `onMessage` runs at WM_APP.
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

/// A new control with a container that has not sited it yet. Tests can release or destroy the parts one by one, in any
/// order.
class Container {
  public:
    static constexpr int kLeft = ContainerSite::kLeft;
    static constexpr int kTop = ContainerSite::kTop;

    explicit Container(const Offers& offers = {});
    ~Container();
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    CallLog log;
    HostWindow host;
    ComPtr<ContainerSite> site;
    ComPtr<ViewSink> sink;
    ComPtr<_kvBandscope> control;

    template <class Interface>
    [[nodiscard]] ComPtr<Interface> as() const {
        ComPtr<Interface> other;
        EXPECT_EQ(control.As(&other), S_OK);
        return other;
    }
    HRESULT setSite() const { return as<IOleObject>()->SetClientSite(site.Get()); }
    HRESULT verb(LONG number, MSG* message = nullptr) const;
    /// Sites the control and activates it in place, in the size it starts with.
    void activate();
    void resize(int width, int height) const;
    /// Connects `sink` for the events and returns the number that disconnects it.
    DWORD connect(IDispatch* sink) const;
    /// Connects the container's sink for the object, its view and its data.
    void advise() const;
    void addTx(const ChannelSpec& spec) const;
    void addRx(const ChannelSpec& spec) const;
    bool draw() const;
    /// Selects an item of the grid-range box as the user does; the control raises its events.
    void chooseGridRange(int item = 2) const;

    [[nodiscard]] HWND root() const;
    [[nodiscard]] SIZE size() const;
    /// A window inside the control by class and text (null: any text). The test fails unless there is exactly one.
    [[nodiscard]] HWND child(const wchar_t* className, const wchar_t* text) const;
    [[nodiscard]] HWND pictureBox(const wchar_t* name) const { return child(L"kvPictureBox", name); }
    [[nodiscard]] HWND panel() const;
    /// All windows inside the control of a class; null: of any class. Hidden ones count.
    [[nodiscard]] std::vector<HWND> children(const wchar_t* className = nullptr) const;
    /// The first window inside the control of a class, and with a text, that is not hidden itself.
    [[nodiscard]] HWND part(const wchar_t* className, const wchar_t* text = nullptr) const;
    /// The parts that Tab goes through, in its order.
    [[nodiscard]] std::vector<HWND> tabStops() const;
    /// All windows inside the container's.
    [[nodiscard]] std::vector<HWND> windows() const;
    /// The control has released and destroyed everything: windows, references, objects.
    void expectNothingLeft() const;
};

/// A container that offers everything. Its log begins after the activation.
class FullContainer : public Container {
  public:
    FullContainer() : Container(kOffersAll) {}
    void activate();
    /// Adds a channel and draws it.
    void drawChannel() const;
};

/// A control in a container where it is not active. Must not outlive the control.
class Sited {
  public:
    explicit Sited(const Scope& scope);
    ~Sited();
    Sited(const Sited&) = delete;
    Sited& operator=(const Sited&) = delete;

    CallLog log;
    HostWindow host;
    ComPtr<ContainerSite> site;

  private:
    ComPtr<IOleObject> object_;
};

/// Processes all pending messages.
void pump();
/// Position of a window inside its parent, pixels.
[[nodiscard]] RECT placeOf(HWND window);
[[nodiscard]] bool isShown(HWND window);
void postClick(HWND window, int x, int y);
void postRightClick(HWND window, int x, int y);
/// The pixels that a window shows now.
[[nodiscard]] struct Picture windowPicture(HWND window);

}  // namespace kv::test
