#include "formenv/Widget.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "util/AtExit.h"
#include "util/RuntimeError.h"
#include "util/Text.h"

namespace kv::formenv {

namespace {

void demandSize(double twips) {
    if (!std::isfinite(twips))
        throw util::RuntimeError(util::error_number::kOverflow);
    if (twips < 0.0)
        throw util::RuntimeError(util::error_number::kInvalidPropertyValue);
}

}  // namespace

Widget::Widget(WidgetKind kind, Widget* parent, std::wstring name)
    : kind_(kind), parent_(parent), name_(std::move(name)) {
    if (parent_)
        parent_->children_.push_back(this);
}

Widget::~Widget() {
    if (parent_)
        std::erase(parent_->children_, this);
    for (Widget* child : children_)
        child->parent_ = nullptr;
}

void Widget::move(const Place& place) {
    if (!std::isfinite(place.left) || !std::isfinite(place.top))
        throw util::RuntimeError(util::error_number::kOverflow);
    demandSize(place.width);
    demandSize(place.height);
    if (place == place_)
        return;
    place_ = place;
    placed();
    tellPeer(Change::Place);
}

void Widget::adoptPlace(const Place& place) {
    if (place == place_)
        return;
    place_ = place;
    placed();
}

void Widget::setVisible(bool visible) {
    settle();
    if (visible_ == visible)
        return;
    visible_ = visible;
    tellPeer(Change::Visible);
}

void Widget::setEnabled(bool enabled) {
    if (enabled_ == enabled)
        return;
    enabled_ = enabled;
    tellPeer(Change::Enabled);
}

void Widget::setCaption(std::wstring caption) {
    settle();
    if (caption_ == caption)
        return;
    caption_ = std::move(caption);
    tellPeer(Change::Caption);
}

void Widget::describeLater(Handler describe) {
    const bool told = static_cast<bool>(later_);
    later_ = std::move(describe);
    if (told)
        return;
    tellPeer(Change::Caption);
    tellPeer(Change::Visible);
}

// The window is not told: it was told when the description was deferred.
void Widget::describe() const {
    Handler waiting = std::exchange(later_, nullptr);
    const util::AtExit restore([this, peer = std::exchange(peer_, nullptr)] { peer_ = peer; });
    try {
        waiting();
    } catch (...) {
        // A text for which there was no memory is made at the next look.
        if (!later_)
            later_ = std::move(waiting);
        throw;
    }
}

void Widget::setToolTip(std::wstring toolTip) {
    if (toolTip_ == toolTip)
        return;
    toolTip_ = std::move(toolTip);
    tellPeer(Change::ToolTip);
}

void Widget::setBackColor(raster::OleColor color) {
    backColor_ = color;
    tellPeer(Change::Colors);
}

void Widget::setForeColor(raster::OleColor color) {
    foreColor_ = color;
    tellPeer(Change::Colors);
}

void Widget::setFont(const raster::Font& font) {
    if (font_ == font)
        return;
    font_ = font;
    tellPeer(Change::Font);
}

void Widget::countChange(Change what) noexcept {
    if (what == Change::ToolTip)
        return;
    Widget* root = this;
    while (root->parent_)
        root = root->parent_;
    ++(what == Change::Caption || what == Change::Visible ? root->looks_.captions : root->looks_.changes);
}

void Widget::tellPeer(Change what) {
    countChange(what);
    if (peer_)
        peer_->changed(what);
}

wchar_t accessKey(std::wstring_view caption) noexcept {
    for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
        if (caption[i] != L'&')
            continue;
        if (caption[i + 1] != L'&')
            return util::upperCase(caption[i + 1]);
        ++i;
    }
    return L'\0';
}

void TextBox::setText(std::wstring text) {
    if (text == text_)
        return;
    text_ = std::move(text);
    tellPeer(Change::Text);
    // A copy, because the handler may destroy the box.
    if (const Handler handler = onChange)
        handler();
}

void TextBox::setLocked(bool locked) {
    if (locked_ == locked)
        return;
    locked_ = locked;
    tellPeer(Change::Locked);
}

void TextBox::typed(std::wstring text) {
    if (text == text_)
        return;
    text_ = std::move(text);
    if (const Handler handler = onChange)
        handler();
}

void CheckBox::setValue(int value) {
    if (value != 0 && value != 1)
        throw util::RuntimeError(util::error_number::kInvalidPropertyValue);
    if (value_ == value)
        return;
    value_ = value;
    tellPeer(Change::Value);
}

void ComboBox::clear() {
    items_.clear();
    listIndex_ = -1;
    tellPeer(Change::Items);
}

void ComboBox::addItem(std::wstring item) {
    items_.push_back(std::move(item));
    tellPeer(Change::Items);
}

void ComboBox::setListIndex(int index) {
    if (index < -1 || index >= static_cast<int>(items_.size()))
        throw util::RuntimeError(util::error_number::kInvalidPropertyValue);
    if (listIndex_ == index)
        return;
    listIndex_ = index;
    tellPeer(Change::Value);
}

std::wstring ComboBox::text() const {
    return listIndex_ < 0 ? std::wstring() : items_[static_cast<std::size_t>(listIndex_)];
}

}  // namespace kv::formenv
