#include "win32/ToolTips.h"

#include <commctrl.h>

namespace kv::win32 {

namespace {

constexpr int kMostWidth = 400;  // pixels; longer texts are broken into lines

TTTOOLINFOW toolOf(HWND root, HWND window) {
    TTTOOLINFOW tool{};
    // The size without the last member, which the oldest common controls do not support.
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = root;
    tool.uId = reinterpret_cast<UINT_PTR>(window);
    return tool;
}

}  // namespace

bool ToolTips::open(HWND root) {
    if (tips_)
        return true;
    INITCOMMONCONTROLSEX wanted{sizeof wanted, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&wanted);
    tips_ =
        CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
                        CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, root, nullptr, nullptr, nullptr);
    if (tips_)
        SendMessageW(tips_, TTM_SETMAXTIPWIDTH, 0, kMostWidth);
    return tips_ != nullptr;
}

void ToolTips::set(HWND root, HWND window, const std::wstring& text) {
    const bool known = tools_.count(window) != 0;
    TTTOOLINFOW tool = toolOf(root, window);
    if (text.empty()) {
        if (known) {
            SendMessageW(tips_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
            tools_.erase(window);
        }
        return;
    }
    if (!open(root))
        return;
    // The system copies the text. The structure lacks a const because it is also used for reading texts.
    tool.lpszText = const_cast<wchar_t*>(text.c_str());
    if (known) {
        SendMessageW(tips_, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
    } else if (SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool))) {
        tools_.insert(window);
    }
}

void ToolTips::close() noexcept {
    if (tips_)
        DestroyWindow(tips_);
    tips_ = nullptr;
    tools_.clear();
}

}  // namespace kv::win32
