// Sizes and places of the parts of the window with the hits.
#include <algorithm>

#include "host/HitsControls.h"

namespace kv::host {

namespace {

// Widths in average characters.
constexpr int kShortField = 9;
constexpr int kLongField = 34;
constexpr int kShortestField = 14;
constexpr int kProgressWidth = 22;
constexpr int kSummaryWidth = 30;
constexpr int kShortestLabel = 18;
constexpr int kStartRows = 16;
constexpr int kFewestRows = 4;

}  // namespace

void HitsControls::layOut() {
    RECT client{};
    GetClientRect(window_, &client);
    const int margin = line_ / 2;
    placeFilter(client.right);
    placeStatus(client);
    const int top = row_ + 2 * margin;
    const int bottom = client.bottom - row_ - 2 * margin;
    MoveWindow(list_, margin, top, std::max<int>(client.right - 2 * margin, 1), std::max(bottom - top, 1), TRUE);
    fillLabelColumn();
    placeEmptyText();
}

void HitsControls::placeFilter(int width) {
    const int margin = line_ / 2;
    const int gap = character_;
    const int textTop = margin + (row_ - line_) / 2;
    int left = margin;
    const auto label = [&](HWND window, const wchar_t* text) {
        const int wide = widthOf(text) + character_ / 2;
        MoveWindow(window, left, textTop, wide, line_, TRUE);
        left += wide + gap / 2;
    };
    // A drop-down list's height includes the open list.
    const int dropped = row_ + 12 * line_;
    label(orderLabel_, L"Order:");
    MoveWindow(order_, left, margin, kShortField * character_, dropped, TRUE);
    left += kShortField * character_ + 2 * gap;
    label(powerLabel_, L"Minimum power (dBm):");
    MoveWindow(power_, left, margin, kShortField * character_, row_, TRUE);
    left += kShortField * character_ + 2 * gap;
    label(receiverLabel_, L"Receiver:");
    const int room = width - left - gap - buttonWidth(clear_) - margin;
    const int field = std::clamp(room, kShortestField * character_, kLongField * character_);
    MoveWindow(receiver_, left, margin, field, dropped, TRUE);
    MoveWindow(clear_, left + field + gap, margin, buttonWidth(clear_), row_, TRUE);
}

void HitsControls::placeStatus(const RECT& client) {
    const int margin = line_ / 2;
    const int gap = character_;
    const int top = client.bottom - margin - row_;
    int right = client.right - margin - buttonWidth(export_);
    MoveWindow(export_, right, top, buttonWidth(export_), row_, TRUE);
    if (finding_) {
        right -= buttonWidth(cancel_) + gap;
        MoveWindow(cancel_, right, top, buttonWidth(cancel_), row_, TRUE);
        right -= kProgressWidth * character_ + gap;
        MoveWindow(progress_, right, top + (row_ - line_) / 2, kProgressWidth * character_, line_, TRUE);
    }
    MoveWindow(summary_, margin, top + (row_ - line_) / 2, std::max(right - gap - margin, 1), line_, TRUE);
}

void HitsControls::placeEmptyText() {
    RECT list{};
    GetClientRect(list_, &list);
    RECT header{};
    GetWindowRect(ListView_GetHeader(list_), &header);
    MapWindowPoints(list_, window_, reinterpret_cast<POINT*>(&list), 2);
    const int top = list.top + (header.bottom - header.top) + 2 * line_;
    const int height = std::clamp<int>(list.bottom - top, 0, 4 * line_);
    const int inset = 2 * character_;
    SetWindowPos(empty_, HWND_TOP, list.left + inset, top, std::max<int>(list.right - list.left - 2 * inset, 0), height,
                 SWP_NOACTIVATE);
    InvalidateRect(empty_, nullptr, TRUE);
}

/// The labels get the room that the other columns and the scroll bar leave, whether it is needed now or not.
void HitsControls::fillLabelColumn() {
    RECT list{};
    GetWindowRect(list_, &list);
    int room = list.right - list.left - GetSystemMetrics(SM_CXVSCROLL) - 2 * GetSystemMetrics(SM_CXEDGE);
    for (std::size_t i = 0; i < kHitColumns; ++i) {
        if (static_cast<HitColumn>(i) != HitColumn::kLabel) {
            room -= ListView_GetColumnWidth(list_, static_cast<int>(i));
        }
    }
    setColumnWidth(HitColumn::kLabel, std::max(room, kShortestLabel * character_));
}

void HitsControls::setColumnWidth(HitColumn column, int width) {
    if (ListView_GetColumnWidth(list_, static_cast<int>(column)) != width) {
        ListView_SetColumnWidth(list_, static_cast<int>(column), width);
    }
}

SIZE HitsControls::smallestSize() const {
    const int margin = line_ / 2;
    const int filter = widthOf(L"Order:") + widthOf(L"Minimum power (dBm):") + widthOf(L"Receiver:") +
                       (2 * kShortField + kShortestField + 9) * character_ + buttonWidth(clear_);
    const int status = (kSummaryWidth + kProgressWidth + 3) * character_ + buttonWidth(cancel_) + buttonWidth(export_);
    return {std::max(filter, status) + 2 * margin, 2 * (row_ + 2 * margin) + (kFewestRows + 2) * line_ * 3 / 2};
}

SIZE HitsControls::startSize() const {
    int width = line_ + GetSystemMetrics(SM_CXVSCROLL) + 2 * GetSystemMetrics(SM_CXEDGE);
    for (std::size_t i = 0; i < kHitColumns; ++i) {
        width += ListView_GetColumnWidth(list_, static_cast<int>(i));
    }
    const SIZE smallest = smallestSize();
    return {std::max<LONG>(width, smallest.cx), smallest.cy + (kStartRows - kFewestRows) * line_ * 5 / 4};
}

int HitsControls::widthOf(const std::wstring& text) const {
    const HDC context = GetDC(window_);
    const HGDIOBJ before = SelectObject(context, font_);
    SIZE size{};
    GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(context, before);
    ReleaseDC(window_, context);
    return size.cx;
}

int HitsControls::buttonWidth(HWND button) const {
    std::array<wchar_t, 64> text{};
    GetWindowTextW(button, text.data(), static_cast<int>(text.size()));
    return std::max(widthOf(text.data()) + 3 * character_, 11 * character_);
}

}  // namespace kv::host
