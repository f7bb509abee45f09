#include "win32/WinPlatform.h"

#include <algorithm>

#include "win32/DibSurface.h"

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

}  // namespace

WinPlatform::WinPlatform() : dpi_(screenDpi()), fonts_(dpi_), tiles_(systemHatchTiles()) {}

std::unique_ptr<formenv::Surface> WinPlatform::createSurface(formenv::PixelSize size) {
    return std::make_unique<DibSurface>(size, fonts_, tiles_);
}

formenv::PixelSize WinPlatform::textSize(std::wstring_view text, const formenv::Font& font) {
    const ScreenDc screen;
    return fonts_.textSize(screen.get(), text, font);
}

void WinPlatform::pumpEvents() {
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
    const UINT kind = buttons == formenv::MessageButtons::Ok ? MB_OK : MB_YESNO | MB_DEFBUTTON2;
    const HWND owner = owner_ ? GetAncestor(owner_, GA_ROOT) : nullptr;
    const int answer = MessageBoxW(owner, text.c_str(), title.c_str(), kind | iconFlag(icon));
    if (answer == IDYES)
        return formenv::MessageAnswer::Yes;
    return answer == IDNO ? formenv::MessageAnswer::No : formenv::MessageAnswer::Ok;
}

}  // namespace kv::win32
