// Copies pictures to the clipboard, and puts back what the user has there.
#include <cwchar>
#include <memory>
#include <optional>
#include <utility>

#include "host/selfcheck/CheckWindow.h"
#include "host/selfcheck/Comparison.h"
#include "host/selfcheck/InstalledFamily.h"

namespace kv::host {

namespace {

/// Open while the object exists.
class Clipboard {
  public:
    explicit Clipboard(HWND owner) {
        constexpr int kTries = 20;
        for (int i = 0; i < kTries && !open_; ++i) {
            open_ = OpenClipboard(owner) != FALSE;
            if (!open_) {
                Sleep(50);
            }
        }
        if (!open_) {
            throw Failure{kExitOther, L"another program keeps the clipboard open"};
        }
    }
    Clipboard(const Clipboard&) = delete;
    Clipboard& operator=(const Clipboard&) = delete;
    ~Clipboard() { CloseClipboard(); }

  private:
    bool open_ = false;
};

bool isPlainText(UINT format) {
    return format == CF_TEXT || format == CF_OEMTEXT || format == CF_UNICODETEXT || format == CF_LOCALE;
}

struct ClipboardText {
    bool isEmpty = true;
    std::wstring text;
};

/// Empty if the clipboard has more than plain text.
std::optional<ClipboardText> plainContent(HWND owner) {
    const Clipboard open(owner);
    ClipboardText content;
    for (UINT format = EnumClipboardFormats(0); format != 0; format = EnumClipboardFormats(format)) {
        if (!isPlainText(format)) {
            return std::nullopt;
        }
        content.isEmpty = false;
    }
    const HANDLE data = content.isEmpty ? nullptr : GetClipboardData(CF_UNICODETEXT);
    if (data != nullptr) {
        const auto* const text = static_cast<const wchar_t*>(GlobalLock(data));
        content.text = text != nullptr ? text : L"";
        GlobalUnlock(data);
    }
    return content;
}

void putBack(HWND owner, const ClipboardText& content) {
    const Clipboard open(owner);
    EmptyClipboard();
    if (content.isEmpty) {
        return;
    }
    const std::size_t bytes = (content.text.size() + 1) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
    void* const target = memory != nullptr ? GlobalLock(memory) : nullptr;
    if (target != nullptr) {
        std::wmemcpy(static_cast<wchar_t*>(target), content.text.c_str(), content.text.size() + 1);
        GlobalUnlock(memory);
        SetClipboardData(CF_UNICODETEXT, memory);
    }
}

Pixels pixelsOf(HBITMAP bitmap) {
    BITMAP about{};
    GetObjectW(bitmap, sizeof about, &about);
    Pixels pixels(about.bmWidth, about.bmHeight);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = about.bmWidth;
    info.bmiHeader.biHeight = -about.bmHeight;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    const HDC dc = GetDC(nullptr);
    GetDIBits(dc, bitmap, 0, static_cast<UINT>(about.bmHeight), pixels.rgb.data(), &info, DIB_RGB_COLORS);
    ReleaseDC(nullptr, dc);
    for (std::uint32_t& pixel : pixels.rgb) {
        pixel &= 0xFFFFFFU;
    }
    return pixels;
}

void checkCopy(Context& context, const CheckWindow& window, const std::wstring& member, bool allForms) {
    const Clipboard open(window.window());
    const auto bitmap = static_cast<HBITMAP>(GetClipboardData(CF_BITMAP));
    const bool forms = !allForms || (IsClipboardFormatAvailable(CF_ENHMETAFILE) &&
                                     IsClipboardFormatAvailable(RegisterClipboardFormatW(L"PNG")));
    if (bitmap == nullptr || !forms) {
        context.report.failed(member, L"a form of the picture is missing on the clipboard");
        return;
    }
    const Pixels saved = window.saved();
    const std::size_t different = countDifferent(saved, pixelsOf(bitmap));
    context.report.add(different == 0 ? Verdict::kPassed : Verdict::kDiffers, member, differenceText(different, saved));
}

}  // namespace

void checkClipboard(Context& context) {
    const CheckWindow window(context);
    const std::optional<ClipboardText> before = plainContent(window.window());
    if (!before) {
        context.report.notPossible(L"Clipboard", L"it contains more than plain text, which would be lost");
        return;
    }
    // Once, at the end of this step or when the check ends early.
    const auto restore = [content = *before, isBack = std::make_shared<bool>(false)](HWND owner) {
        if (!std::exchange(*isBack, true)) {
            putBack(owner, content);
        }
    };
    context.undo.add([restore] { restore(nullptr); });
    check(viewOf(window.control())->CopyPicture(), L"CopyPicture");
    checkCopy(context, window, L"CopyPicture", true);
    if (hasInstalledFamily(context.programFolder)) {
        context.report.notPossible(L"CopyDisplayToClipboard", L"it would write to the log of installed programs");
    } else {
        check(window.control().CopyDisplayToClipboard(), L"CopyDisplayToClipboard");
        checkCopy(context, window, L"CopyDisplayToClipboard", false);
    }
    restore(window.window());
}

}  // namespace kv::host
