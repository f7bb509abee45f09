#include "formenv/Form.h"

#include <algorithm>
#include <utility>

#include "util/AtExit.h"

namespace kv::formenv {

Form::Form(Platform& platform, std::wstring name)
    : Widget(WidgetKind::Form, nullptr, std::move(name)), platform_(platform) {
    setVisible(false);
}

Form::~Form() {
    dropWindow();
}

void Form::load() {
    if (!window_)
        window_ = platform_.createFormWindow(*this);
}

void Form::show() {
    load();
    if (visible() || !window_)
        return;
    setVisible(true);
    window_->show();
}

void Form::hide() {
    if (!visible())
        return;
    setVisible(false);
    if (window_)
        window_->hide();
}

bool Form::unload() {
    if (!window_)
        return true;
    // The question lets events run: the user may click the close button again.
    if (unloading_)
        return false;
    const std::weak_ptr<bool> alive = alive_;
    unloading_ = true;
    const util::AtExit finish([this, alive] {
        if (!alive.expired())
            unloading_ = false;
    });
    if (const std::function<bool()> query = onQueryUnload; query && !query())
        return false;
    // The window and the form may have been destroyed while the question was open.
    if (!alive.expired() && window_)
        goneByNow();
    return true;
}

void Form::goneByNow() {
    const std::weak_ptr<bool> alive = alive_;
    if (const Handler handler = onUnload)
        handler();
    if (!alive.expired())
        dropWindow();
}

void Form::dropWindow() noexcept {
    setVisible(false);
    // Its destruction may cause messages: for them the form has no window.
    const std::unique_ptr<FormWindow> window = std::move(window_);
}

void Form::windowLost() {
    if (window_)
        goneByNow();
}

void Form::setWindowState(WindowState state) {
    if (state_ == state)
        return;
    state_ = state;
    if (window_ && visible())
        window_->setState(state);
}

void Form::setLeastSize(double width, double height) noexcept {
    leastWidth_ = width;
    leastHeight_ = height;
}

MessageAnswer Form::messageBox(const std::wstring& text, const std::wstring& title, MessageIcon icon,
                               MessageButtons buttons) {
    if (visible() && window_)
        return platform_.messageBoxBefore(window_->handle(), text, title, icon, buttons);
    return platform_.messageBox(text, title, icon, buttons);
}

void Form::placed() {
    if (window_)
        return;
    const FormBorder border = platform_.formBorder();
    clientResized(std::max(width() - border.width, 0.0), std::max(height() - border.height, 0.0));
}

void Form::clientResized(double width, double height) {
    if (width == scaleWidth_ && height == scaleHeight_)
        return;
    scaleWidth_ = width;
    scaleHeight_ = height;
    if (const Handler handler = onResize)
        handler();
}

void Form::movedByUser(const Place& place, WindowState state) {
    state_ = state;
    adoptPlace(place);
}

bool Form::keyPressed(int key, int shift) {
    const std::function<bool(int, int)> handler = onKeyDown;
    return handler && handler(key, shift);
}

}  // namespace kv::formenv
