#include "host/selfcheck/CheckWindow.h"

#include <array>

#include "host/selfcheck/Comparison.h"

namespace kv::host {

namespace {

constexpr wchar_t kCheckClass[] = L"BandscopeSelfCheck";
constexpr int kWindowWidth = 1100;
constexpr int kWindowHeight = 760;

struct WindowSearch {
    const wchar_t* name;
    HWND found;
};

BOOL CALLBACK compareName(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<WindowSearch*>(parameter);
    std::array<wchar_t, 64> text{};
    GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    if (std::wstring(text.data()) != search.name) {
        return TRUE;
    }
    search.found = window;
    return FALSE;
}

RECT clientOf(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return client;
}

}  // namespace

HWND newTopWindow() {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = &DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
    windowClass.lpszClassName = kCheckClass;
    RegisterClassExW(&windowClass);
    const HWND window =
        CreateWindowExW(0, kCheckClass, L"kvBandscope self-check", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 20, 20,
                        kWindowWidth, kWindowHeight, nullptr, nullptr, windowClass.hInstance, nullptr);
    if (window == nullptr) {
        throw Failure{kExitOther, L"the window could not be created"};
    }
    return window;
}

CheckWindow::CheckWindow(Context& context) : context_(context), window_(newTopWindow()) {
    try {
        spectrum_ = std::make_unique<Spectrum>(*context.classes, window_, clientOf(window_), *this);
        setColors(control());
        show(control(), *context.classes->freqSlot.Get(), samplePlan());
        ShowWindow(window_, SW_SHOWNOACTIVATE);
        runMessages(100);
    } catch (...) {
        spectrum_.reset();
        DestroyWindow(window_);
        throw;
    }
}

CheckWindow::~CheckWindow() {
    spectrum_.reset();
    DestroyWindow(window_);
    runMessages(10);
}

HWND CheckWindow::controlWindow() const {
    ComPtr<IOleWindow> object;
    HWND found = nullptr;
    check(control().QueryInterface(IID_PPV_ARGS(object.GetAddressOf())), L"Getting IOleWindow of the control");
    object->GetWindow(&found);
    return found;
}

HWND CheckWindow::picture() const {
    WindowSearch search{L"picSpectrum", nullptr};
    EnumChildWindows(window_, &compareName, reinterpret_cast<LPARAM>(&search));
    if (search.found == nullptr) {
        throw Failure{kExitOther, L"the control has no window picSpectrum"};
    }
    return search.found;
}

void CheckWindow::resize(int width, int height) {
    SetWindowPos(window_, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    spectrum_->place(clientOf(window_));
    check(control().JustDrawIt(), L"JustDrawIt");
    runMessages(20);
}

void runMessages(DWORD milliseconds, Spectrum* spectrum) {
    const DWORD start = GetTickCount();
    for (DWORD passed = 0; passed <= milliseconds; passed = GetTickCount() - start) {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (spectrum == nullptr || !spectrum->translate(message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
}

Pixels shownPixels(HWND window) {
    const RECT client = clientOf(window);
    Pixels pixels(client.right, client.bottom);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = client.right;
    info.bmiHeader.biHeight = -client.bottom;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    const HDC source = GetDC(window);
    const HDC target = CreateCompatibleDC(source);
    const HBITMAP bitmap = CreateCompatibleBitmap(source, client.right, client.bottom);
    const HGDIOBJ before = SelectObject(target, bitmap);
    const BOOL copied = BitBlt(target, 0, 0, client.right, client.bottom, source, 0, 0, SRCCOPY);
    SelectObject(target, before);
    const int rows =
        GetDIBits(target, bitmap, 0, static_cast<UINT>(client.bottom), pixels.rgb.data(), &info, DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(target);
    ReleaseDC(window, source);
    if (!copied || rows == 0) {
        throw Failure{kExitOther, L"the pixels of the window cannot be read"};
    }
    for (std::uint32_t& pixel : pixels.rgb) {
        pixel &= 0xFFFFFFU;
    }
    return pixels;
}

Pixels cut(const Pixels& picture, POINT at, int width, int height) {
    if (at.x < 0 || at.y < 0 || at.x + width > picture.width || at.y + height > picture.height) {
        throw Failure{kExitOther, L"the picture has " + picture.sizeText() + L" pixels, less than its window"};
    }
    Pixels part(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            part.rgb[part.indexOf(x, y)] = picture.rgb[picture.indexOf(at.x + x, at.y + y)];
        }
    }
    return part;
}

RECT placeInParent(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

std::wstring differenceText(std::size_t different, const Pixels& picture) {
    return std::to_wstring(different) + L" of " + std::to_wstring(picture.rgb.size()) + L" pixels differ";
}

}  // namespace kv::host
