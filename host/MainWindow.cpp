#include "host/MainWindow.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "host/Dialogs.h"
#include "host/resource.h"

namespace kv::host {

namespace {

constexpr wchar_t kMainClass[] = L"BandscopeHost";
constexpr UINT kFollowHeight = WM_APP + 1;
constexpr UINT kDropped = WM_APP + 2;
// Inner size of the window in twips when the command line gives none.
constexpr int kWidthTwips = 16500;
constexpr int kHeightTwips = 11400;

constexpr COLORREF kGrid = RGB(0xD5, 0xDA, 0xE1);
constexpr COLORREF kSpectrumBack = RGB(0xFF, 0xFF, 0xFF);
constexpr COLORREF kLabelBack = RGB(0xF4, 0xF6, 0xF8);
constexpr COLORREF kLabelFore = RGB(0x33, 0x3D, 0x4A);
constexpr COLORREF kCursor = RGB(0xB0, 0x30, 0x30);

/// Sets the colors of the control, and what it draws over the channels.
void dress(_kvBandscope& control, _BandscopeView& view) {
    check(control.put_GridColor(kGrid), L"Setting GridColor");
    check(control.put_lCursorColor(kCursor), L"Setting lCursorColor");
    check(control.put_lColorSpecBack(kSpectrumBack), L"Setting lColorSpecBack");
    check(control.put_lColorLblBack(kLabelBack), L"Setting lColorLblBack");
    check(control.put_lColorLblFore(kLabelFore), L"Setting lColorLblFore");
    check(view.put_PowerAxis(VARIANT_TRUE), L"Setting PowerAxis");
    check(view.put_Legend(VARIANT_TRUE), L"Setting Legend");
}

}  // namespace

MainWindow::MainWindow(const CommandLine& options)
    : options_(options),
      settings_(options.quit || options.noSettings ? std::wstring() : SettingsFile::usualPath()),
      classes_(findControlClasses()) {
    options_.products = productsOf(options, settings_.read().options);
    shown_.products = options_.products;
    create();
    try {
        status_.emplace(window_);
        RECT client{};
        GetClientRect(window_, &client);
        spectrum_ = std::make_unique<Spectrum>(classes_, window_, client, *this);
        dress(spectrum_->control(), spectrum_->view());
        restoreOptions();
        drop_ = std::make_unique<FileDrop>(window_, kDropped);
        showWindow();
    } catch (...) {
        close();
        throw;
    }
}

MainWindow::~MainWindow() {
    close();
}

void MainWindow::create() {
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = &MainWindow::procedure;
    windowClass.hInstance = instance;
    windowClass.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(IDI_BANDSCOPE));
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
    windowClass.lpszMenuName = MAKEINTRESOURCEW(IDM_MENU);
    windowClass.lpszClassName = kMainClass;
    RegisterClassExW(&windowClass);
    keys_ = LoadAcceleratorsW(instance, MAKEINTRESOURCEW(IDA_KEYS));
    const PixelSize inner = options_.size.value_or(PixelSize{pixelsOfTwips(kWidthTwips), pixelsOfTwips(kHeightTwips)});
    RECT rect = {0, 0, inner.width, inner.height};
    const DWORD style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    AdjustWindowRectEx(&rect, style, TRUE, 0);
    window_ = CreateWindowExW(0, kMainClass, L"BandscopeHost", style, CW_USEDEFAULT, CW_USEDEFAULT,
                              rect.right - rect.left, rect.bottom - rect.top, nullptr, nullptr, instance, nullptr);
    if (window_ == nullptr) {
        throw Failure{kExitOther, L"The main window could not be created."};
    }
    restorePlace();
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

void MainWindow::showWindow() {
    if (settings_.read().place && !options_.size) {
        keepLeastSize();
    }
    layOut();
    status_->setProgress(-1.0);
    status_->setMessage(L"To show a channel plan, choose Open plan... in the menu File.");
    if (!options_.quit) {  // with --quit the program runs without a user
        ShowWindow(window_, startsMaximized_ ? SW_SHOWMAXIMIZED : SW_SHOWDEFAULT);
        spectrum_->focus();
    }
}

void MainWindow::close() noexcept {
    if (window_ != nullptr) {
        ShowWindow(window_, SW_HIDE);  // releasing half a million records takes a moment
    }
    opening_.reset();
    hits_.reset();
    drop_.reset();
    spectrum_.reset();
    if (window_ != nullptr) {
        const HWND window = std::exchange(window_, nullptr);
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        DestroyWindow(window);
    }
}

int MainWindow::run() {
    openFirst();
    while (!ended_) {
        handleQueued();
        if (ended_) {
            break;
        }
        if (opening_ != nullptr) {
            continueOpening();
        } else if (hits_ != nullptr && hits_->finding()) {
            hits_->continueFinding();
        } else {
            WaitMessage();
        }
    }
    rememberWindow();
    return exitCode_;
}

void MainWindow::handleQueued() {
    MSG message{};
    while (!ended_ && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            finish(static_cast<int>(message.wParam));
        } else {
            dispatch(message);
        }
    }
}

void MainWindow::dispatch(MSG& message) {
    if (opening_ != nullptr && message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) {
        cancelProducts();
        return;
    }
    if (hits_ != nullptr && hits_->translate(message)) {
        return;
    }
    // The active control gets a key first, then the accelerators of this window.
    if ((spectrum_ != nullptr && spectrum_->translate(message)) ||
        TranslateAcceleratorW(window_, keys_, &message) != 0) {
        return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

LRESULT CALLBACK MainWindow::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    const auto self = reinterpret_cast<MainWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr || self->spectrum_ == nullptr) {
        return DefWindowProcW(window, message, first, second);
    }
    // No exception may leave a call from the system.
    try {
        return self->handle(message, first, second);
    } catch (...) {
        self->reportCurrent();
    }
    return 0;
}

LRESULT MainWindow::handle(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_SIZE:
            if (first != SIZE_MINIMIZED) {
                layOut();
                redraw();  // the picture was drawn for the previous size
            }
            return 0;
        case WM_GETMINMAXINFO: {
            const SIZE smallest = spectrum_->smallestSize();
            RECT rect = {0, 0, smallest.cx, smallest.cy + status_->height()};
            AdjustWindowRectEx(&rect, WS_OVERLAPPEDWINDOW, TRUE, 0);
            auto& limits = *reinterpret_cast<MINMAXINFO*>(second);
            // On a small screen the window must stay as large as the screen at most.
            limits.ptMinTrackSize = {std::min(rect.right - rect.left, limits.ptMaxTrackSize.x),
                                     std::min(rect.bottom - rect.top, limits.ptMaxTrackSize.y)};
            return 0;
        }
        case WM_INITMENUPOPUP:
            fillRecentPlans(reinterpret_cast<HMENU>(first));
            enableCommands(reinterpret_cast<HMENU>(first));
            return 0;
        case WM_COMMAND:
            command(LOWORD(first));
            return 0;
        case WM_SETFOCUS:
            spectrum_->focus();
            return 0;
        case kFollowHeight:
            followHeight(static_cast<int>(first));
            return 0;
        case kDropped:
            openDropped();
            return 0;
        case WM_ENDSESSION:
            if (first != FALSE) {
                rememberWindow();  // the process may end as soon as this message is handled
            }
            return 0;
        case WM_CLOSE:
            finish(kExitOk);
            return 0;
        default:
            return DefWindowProcW(window_, message, first, second);
    }
}

void MainWindow::layOut() {
    status_->place();
    RECT client{};
    GetClientRect(window_, &client);
    client.bottom = std::max(client.bottom - status_->height(), 1L);
    spectrum_->place(client);
}

void MainWindow::reportCurrent() noexcept {
    try {
        try {
            throw;
        } catch (const Failure& failure) {
            report(failure);
        } catch (...) {
            report({kExitOther, L"There is not enough memory."});
        }
    } catch (...) {
        // There is not even enough memory for the message.
        if (options_.quit) {
            finish(kExitOther);
        }
    }
}

void MainWindow::report(const Failure& failure) {
    if (options_.quit) {
        finish(failure.code);
        writeFailure(failure);
    } else {
        status_->setMessage(L"");
        showFailure(window_, failure);
    }
}

void MainWindow::finish(int exitCode) {
    exitCode_ = exitCode;
    ended_ = true;
}

void MainWindow::gridRangeChosen() {
    status_->setMessage(L"The grid step was chosen.");
}

void MainWindow::heightChanged(int twips) {
    status_->setMessage(L"Height of the control: " + std::to_wstring(twips) + L" twips.");
    // The control has not finished its change yet, so the window follows later.
    PostMessageW(window_, kFollowHeight, static_cast<WPARAM>(pixelsOfTwips(twips)), 0);
}

void MainWindow::rangeChanged(double lowest, double highest) {
    status_->setRange(lowest, highest);
    status_->setMessage(L"The displayed range was changed.");
}

/// Gives the window the new height of its control. A maximized window keeps its size.
void MainWindow::followHeight(int pixels) {
    if (IsZoomed(window_)) {
        layOut();
        return redraw();
    }
    RECT rect{};
    RECT client{};
    GetWindowRect(window_, &rect);
    GetClientRect(window_, &client);
    const int height = rect.bottom - rect.top - client.bottom + pixels + status_->height();
    SetWindowPos(window_, nullptr, 0, 0, rect.right - rect.left, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace kv::host
