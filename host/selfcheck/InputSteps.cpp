// Keys and the wheel, as the user's keyboard and mouse would send them.
#include <array>
#include <optional>

#include "host/selfcheck/CheckWindow.h"

namespace kv::host {

namespace {

struct Range {
    double lowest = 0.0;
    double highest = 0.0;
    [[nodiscard]] double span() const noexcept { return highest - lowest; }
    bool operator==(const Range&) const = default;
};

Range rangeOf(const CheckWindow& window) {
    Range range;
    check(window.control().get_DisplayMinFreq(&range.lowest), L"Reading DisplayMinFreq");
    check(window.control().get_DisplayMaxFreq(&range.highest), L"Reading DisplayMaxFreq");
    return range;
}

std::wstring textOf(const Range& range) {
    return std::to_wstring(range.lowest) + L" to " + std::to_wstring(range.highest) + L" MHz";
}

bool isInFront(const CheckWindow& window) {
    return GetForegroundWindow() == window.window();
}

/// Why input cannot be sent; empty if it can. Input goes to whatever window is in front, so it is sent only to our own.
std::wstring obstacle(CheckWindow& window) {
    SetForegroundWindow(window.window());
    runMessages(300, &window.spectrum());
    if (!isInFront(window)) {
        return L"the window does not come to the front";
    }
    for (const int key : {VK_SHIFT, VK_CONTROL, VK_MENU, VK_LBUTTON, VK_RBUTTON}) {
        if ((GetAsyncKeyState(key) & 0x8000) != 0) {
            return L"a key or mouse button is held down";
        }
    }
    window.spectrum().focus();
    runMessages(50, &window.spectrum());
    return {};
}

bool send(CheckWindow& window, INPUT* input, UINT count) {
    const bool sent = isInFront(window) && SendInput(count, input, sizeof(INPUT)) == count;
    runMessages(300, &window.spectrum());
    return sent;
}

bool press(CheckWindow& window, WORD key) {
    std::array<INPUT, 2> input{};
    for (INPUT& part : input) {
        part.type = INPUT_KEYBOARD;
        part.ki.wVk = key;
        part.ki.dwFlags = KEYEVENTF_EXTENDEDKEY;
    }
    input[1].ki.dwFlags |= KEYEVENTF_KEYUP;
    return send(window, input.data(), static_cast<UINT>(input.size()));
}

bool turnWheel(CheckWindow& window) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = MOUSEEVENTF_WHEEL;
    input.mi.mouseData = WHEEL_DELTA;
    return send(window, &input, 1);
}

/// Where the user has the pointer, when the object is destroyed.
class PointerKeeper {
  public:
    PointerKeeper() { GetCursorPos(&before_); }
    PointerKeeper(const PointerKeeper&) = delete;
    PointerKeeper& operator=(const PointerKeeper&) = delete;
    ~PointerKeeper() { SetCursorPos(before_.x, before_.y); }

  private:
    POINT before_{};
};

/// `changed` compares the range before and after.
template <class Send, class Changed>
void checkInput(Context& context, CheckWindow& window, const wchar_t* what, Send sendIt, Changed changed) {
    const Range before = rangeOf(window);
    const bool sent = sendIt();
    const Range after = rangeOf(window);
    const std::wstring values = textOf(before) + L", then " + textOf(after);
    if (changed(before, after)) {
        context.report.passed(what, values);
    } else if (!sent || !isInFront(window)) {
        context.report.notPossible(what, L"another window has come to the front, or input is blocked");
    } else {
        context.report.failed(what, values);
    }
}

}  // namespace

void checkKeys(Context& context) {
    CheckWindow window(context);
    const std::wstring why = obstacle(window);
    if (!why.empty()) {
        context.report.notPossible(L"Keys", why);
        return;
    }
    checkInput(
        context, window, L"Key Right moves the range up", [&] { return press(window, VK_RIGHT); },
        [](const Range& before, const Range& after) { return after.lowest > before.lowest; });
    checkInput(
        context, window, L"Key Left moves the range down", [&] { return press(window, VK_LEFT); },
        [](const Range& before, const Range& after) { return after.lowest < before.lowest; });
    context.report.expect(window.rangeChanges() >= 2, L"Keys raise ChgFreqRange",
                          std::to_wstring(window.rangeChanges()) + L" events");
}

void checkWheel(Context& context) {
    CheckWindow window(context);
    const std::wstring why = obstacle(window);
    if (!why.empty()) {
        context.report.notPossible(L"Wheel", why);
        return;
    }
    const PointerKeeper pointer;
    RECT place{};
    GetWindowRect(window.picture(), &place);
    SetCursorPos((place.left + place.right) / 2, (place.top + place.bottom) / 2);
    runMessages(100, &window.spectrum());
    checkInput(
        context, window, L"Wheel zooms in", [&] { return turnWheel(window); },
        [](const Range& before, const Range& after) { return after.span() < before.span(); });
}

}  // namespace kv::host
