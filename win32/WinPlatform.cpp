#include "win32/WinPlatform.h"

#include <algorithm>

#include "util/RuntimeError.h"
#include "win32/DibSurface.h"
#include "win32/FormWindow.h"

namespace kv::win32 {

namespace {

// More than any burst of input; a bound, so that windows that never stop posting cannot hold up a drawing for good.
constexpr int kMostMessages = 10000;

int screenDpi() {
    const ScreenDc screen;
    const int dpi = GetDeviceCaps(screen.get(), LOGPIXELSX);
    return dpi > 0 ? dpi : 96;
}

UINT iconFlag(formenv::MessageIcon icon) {
    switch (icon) {
        case formenv::MessageIcon::Information:
            return MB_ICONINFORMATION;
        case formenv::MessageIcon::Question:
            return MB_ICONQUESTION;
        case formenv::MessageIcon::Critical:
            return MB_ICONERROR;
        case formenv::MessageIcon::None:
            break;
    }
    return 0;
}

HWND rootOf(HWND window) {
    return window ? GetAncestor(window, GA_ROOT) : nullptr;
}

}  // namespace

WinPlatform::WinPlatform() : dpi_(screenDpi()), fonts_(dpi_), tiles_(systemHatchTiles()), desktop_(dpi_) {}

std::unique_ptr<formenv::Surface> WinPlatform::createSurface(formenv::PixelSize size) {
    return std::make_unique<DibSurface>(size, fonts_, tiles_);
}

formenv::PixelSize WinPlatform::textSize(std::wstring_view text, const formenv::Font& font) {
    const ScreenDc screen;
    return fonts_.textSize(screen.get(), text, font);
}

void WinPlatform::pumpEvents() {
    if (pump_.scope() != PumpScope::All) {
        if (pump_.scope() == PumpScope::OwnWindows)
            runWindowEvents(owner_);
        return;
    }
    MSG message;
    for (int i = 0; i < kMostMessages && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
        if (message.message == WM_QUIT) {
            // Not ours to take: it ends the host's own loop.
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

bool WinPlatform::hasUser() const noexcept {
    USEROBJECTFLAGS flags{};
    return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) &&
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

formenv::MessageAnswer WinPlatform::messageBox(const std::wstring& text, const std::wstring& title,
                                               formenv::MessageIcon icon, formenv::MessageButtons buttons) {
    return messageBoxBefore(formOwner(), text, title, icon, buttons);
}

formenv::MessageAnswer WinPlatform::messageBoxBefore(std::intptr_t window, const std::wstring& text,
                                                     const std::wstring& title, formenv::MessageIcon icon,
                                                     formenv::MessageButtons buttons) {
    const UINT kind = buttons == formenv::MessageButtons::Ok ? MB_OK : MB_YESNO | MB_DEFBUTTON2;
    const int answer = MessageBoxW(reinterpret_cast<HWND>(window), text.c_str(), title.c_str(), kind | iconFlag(icon));
    if (answer == IDYES)
        return formenv::MessageAnswer::Yes;
    return answer == IDNO ? formenv::MessageAnswer::No : formenv::MessageAnswer::Ok;
}

std::unique_ptr<formenv::FormWindow> WinPlatform::createFormWindow(formenv::Form& form) {
    return std::make_unique<FormWindow>(form, *this, rootOf(owner_), keeper_);
}

formenv::FormBorder WinPlatform::formBorder() const noexcept {
    return FormWindow::border(dpi_);
}

std::intptr_t WinPlatform::formOwner() const noexcept {
    return reinterpret_cast<std::intptr_t>(rootOf(owner_));
}

void WinPlatform::startProgram(const std::wstring& command) {
    std::wstring line = command;  // the system writes into it
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESHOWWINDOW;
    start.wShowWindow = SW_SHOWNORMAL;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &started))
        throw util::RuntimeError(util::error_number::kFileNotFound);
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
}

}  // namespace kv::win32
