#include "win32/WinPlatform.h"

#include <algorithm>

#include "util/RuntimeError.h"
#include "util/Text.h"
#include "win32/DibSurface.h"
#include "win32/FormWindow.h"
#include "win32/Held.h"
#include "win32/PendingEvents.h"

namespace kv::win32 {

namespace {

int screenDpi() {
    const ScreenDc screen;
    const int dpi = GetDeviceCaps(screen.get(), LOGPIXELSX);
    return dpi > 0 ? dpi : USER_DEFAULT_SCREEN_DPI;
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

/// The program in a command line, without quotes.
std::wstring programOf(const std::wstring& command) {
    if (command.starts_with(L'"'))
        return command.substr(1, command.find(L'"', 1) - 1);
    return command.substr(0, command.find(L' '));
}

/// The file to start for a program that is named without a folder; empty for one with a folder. The system would first
/// search the host's folder and the current one, where another user may have put a program of that name.
std::wstring inSystemFolder(const std::wstring& program) {
    if (program.find_first_of(L"\\/:") != std::wstring::npos)
        return {};
    std::wstring folder(MAX_PATH, L'\0');
    folder.resize(GetSystemDirectoryW(folder.data(), MAX_PATH));
    const bool hasType = program.find(L'.') != std::wstring::npos;
    return util::setPathName(folder, hasType ? program : program + L".exe");
}

HWND rootOf(HWND window) {
    return window ? GetAncestor(window, GA_ROOT) : nullptr;
}

/// The answer if no user can see the box.
formenv::MessageAnswer unasked(formenv::MessageButtons buttons) {
    return buttons == formenv::MessageButtons::Ok ? formenv::MessageAnswer::Ok : formenv::MessageAnswer::No;
}

/// While it exists, the container keeps its modeless windows disabled. The same frame is notified of the start and the
/// end.
class OpenBox {
  public:
    explicit OpenBox(BoxHost* host) {
        if (host)
            frame_ = host->boxFrame();
        if (frame_)
            frame_->EnableModeless(FALSE);
    }
    ~OpenBox() {
        if (frame_)
            frame_->EnableModeless(TRUE);
    }
    OpenBox(const OpenBox&) = delete;
    OpenBox& operator=(const OpenBox&) = delete;

  private:
    Microsoft::WRL::ComPtr<IOleInPlaceFrame> frame_;
};

}  // namespace

WinPlatform::WinPlatform()
    : hostDpi_(screenDpi()), dpi_(hostDpi_), fonts_(dpi_), tiles_(systemHatchTiles()), desktop_(hostDpi_) {}

std::unique_ptr<formenv::Surface> WinPlatform::createSurface(raster::PixelSize size) {
    return std::make_unique<DibSurface>(size, fonts_, tiles_);
}

raster::PixelSize WinPlatform::textSize(std::wstring_view text, const raster::Font& font) {
    return fonts_.textSize(text, font);
}

void WinPlatform::pumpEvents() {
    if (pump_.scope() == PumpScope::All)
        runPendingEvents();
    else if (pump_.scope() == PumpScope::OwnWindows)
        runWindowEvents(owner_);
}

bool WinPlatform::hasUser() const noexcept {
    USEROBJECTFLAGS flags{};
    return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) &&
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

formenv::MessageAnswer WinPlatform::messageBox(const std::wstring& text, const std::wstring& title,
                                               formenv::MessageIcon icon, formenv::MessageButtons buttons) {
    if (boxHost_ && !boxHost_->canShowBoxes())
        return unasked(buttons);
    return messageBoxBefore(formOwner(), text, title, icon, buttons);
}

formenv::MessageAnswer WinPlatform::messageBoxBefore(std::intptr_t window, const std::wstring& text,
                                                     const std::wstring& title, formenv::MessageIcon icon,
                                                     formenv::MessageButtons buttons) {
    if (!hasUser())
        return unasked(buttons);
    const Held held(keeper_);
    const OpenBox open(boxHost_);
    const UINT kind = buttons == formenv::MessageButtons::Ok ? MB_OK : MB_YESNO | MB_DEFBUTTON2;
    const int answer = MessageBoxW(reinterpret_cast<HWND>(window), text.c_str(), title.c_str(), kind | iconFlag(icon));
    if (answer == IDYES)
        return formenv::MessageAnswer::Yes;
    return answer == IDNO ? formenv::MessageAnswer::No : formenv::MessageAnswer::Ok;
}

void WinPlatform::enableForms(bool enable) noexcept {
    formsEnabled_ = enable;
    for (const HWND form : forms_)
        EnableWindow(form, enable);
}

void WinPlatform::formMade(HWND window) {
    forms_.insert(window);
    if (!formsEnabled_)
        EnableWindow(window, FALSE);
}

void WinPlatform::formGone(HWND window) noexcept {
    forms_.erase(window);
}

std::unique_ptr<formenv::FormWindow> WinPlatform::createFormWindow(formenv::Form& form) {
    return std::make_unique<FormWindow>(form, *this, reinterpret_cast<HWND>(formOwner()), keeper_);
}

formenv::FormBorder WinPlatform::formBorder() const noexcept {
    return FormWindow::border(hostDpi_);
}

std::intptr_t WinPlatform::formOwner() const noexcept {
    const HWND window = owner_ || !boxHost_ ? owner_ : boxHost_->boxOwner();
    return reinterpret_cast<std::intptr_t>(rootOf(window));
}

void WinPlatform::startProgram(const std::wstring& command) {
    std::wstring line = command;  // the system writes into it
    const std::wstring file = inSystemFolder(programOf(command));
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESHOWWINDOW;
    start.wShowWindow = SW_SHOWNORMAL;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(file.empty() ? nullptr : file.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        nullptr, &start, &started))
        throw util::RuntimeError(util::error_number::kFileNotFound);
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
}

}  // namespace kv::win32
