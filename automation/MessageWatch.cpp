#include "automation/MessageWatch.h"

#include <commctrl.h>

#include <new>

namespace kv::automation {

namespace {

constexpr UINT_PTR kId = 1;

}  // namespace

MessageWatch::MessageWatch(MessageListener& listener) : link_(std::make_shared<Link>(Link{&listener})) {}

MessageWatch::~MessageWatch() {
    link_->listener = nullptr;
}

void MessageWatch::add(HWND root) {
    addOne(root, reinterpret_cast<LPARAM>(&link_));
    EnumChildWindows(root, &MessageWatch::addOne, reinterpret_cast<LPARAM>(&link_));
}

BOOL CALLBACK MessageWatch::addOne(HWND window, LPARAM shared) {
    // Each window has a share of its own, which goes with it.
    auto* const share = new (std::nothrow) Shared(*reinterpret_cast<const Shared*>(shared));
    if (share && !SetWindowSubclass(window, &MessageWatch::procedure, kId, reinterpret_cast<DWORD_PTR>(share)))
        delete share;
    return TRUE;
}

LRESULT MessageWatch::pass(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    return DefSubclassProc(window, message, wParam, lParam);
}

LRESULT CALLBACK MessageWatch::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                         DWORD_PTR data) {
    auto* const share = reinterpret_cast<Shared*>(data);
    const Shared link = *share;
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(window, &MessageWatch::procedure, id);
        delete share;
    }
    return link->listener ? link->listener->watched(window, message, wParam, lParam)
                          : pass(window, message, wParam, lParam);
}

}  // namespace kv::automation
