// The messages of the window with the hits.
#include <algorithm>

#include "host/HitsWindow.h"
#include "host/hits/HitTexts.h"
#include "host/resource.h"

namespace kv::host {

namespace {

constexpr DWORD kFindingMilliseconds = 30;

}  // namespace

LRESULT CALLBACK HitsWindow::procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    const auto self = reinterpret_cast<HitsWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr || self->controls_ == nullptr) {
        return DefWindowProcW(window, message, first, second);
    }
    LRESULT result = 0;
    self->guarded([&] { result = self->handle(message, first, second); });
    return result;
}

/// No exception may leave a call from the system. After a failure no more hits are searched.
template <class Work>
void HitsWindow::guarded(Work work) noexcept {
    try {
        work();
    } catch (...) {
        if (finder_ != nullptr) {
            finder_->stop();
        }
        owner_.reportHitsFailure();
        afterFailure();
    }
}

void HitsWindow::continueFinding() noexcept {
    guarded([this] {
        const DWORD start = GetTickCount();
        while (finder_->step() == HitFinder::State::kFinding && GetTickCount() - start < kFindingMilliseconds) {
        }
        const bool first = rows_->size() == 0;
        rows_->extend();
        if (!fitted_ && rows_->size() != 0) {
            fitted_ = true;
            controls_->fitColumns(*finder_, *rows_);
        }
        controls_->setRowCount(rows_->size(), true);
        if (!finding()) {
            sortAgain();
        }
        describe();
        if (first) {
            UpdateWindow(controls_->list());
        }
    });
}

/// Shows that the search has ended.
void HitsWindow::afterFailure() noexcept {
    try {
        if (rows_ != nullptr) {
            controls_->setRowCount(rows_->size(), false);
            describe();
        }
    } catch (...) {
        // There is not even enough memory for that. The window stays as it is.
    }
}

LRESULT HitsWindow::handle(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_SIZE:
            if (first != SIZE_MINIMIZED) {
                controls_->layOut();
            }
            return 0;
        case WM_GETMINMAXINFO: {
            const SIZE smallest = controls_->smallestSize();
            RECT rect = {0, 0, smallest.cx, smallest.cy};
            AdjustWindowRectEx(&rect, static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE)), FALSE, 0);
            reinterpret_cast<MINMAXINFO*>(second)->ptMinTrackSize = {rect.right - rect.left, rect.bottom - rect.top};
            return 0;
        }
        case WM_ACTIVATE:
            if (LOWORD(first) == WA_INACTIVE) {
                lastFocus_ = GetFocus();
            }
            return DefWindowProcW(window_, message, first, second);
        case WM_SETFOCUS:
            SetFocus(IsChild(window_, lastFocus_) ? lastFocus_ : controls_->list());
            return 0;
        case WM_CTLCOLORSTATIC:
            if (reinterpret_cast<HWND>(second) == controls_->emptyText()) {
                SetBkColor(reinterpret_cast<HDC>(first), GetSysColor(COLOR_WINDOW));
                SetTextColor(reinterpret_cast<HDC>(first), GetSysColor(COLOR_WINDOWTEXT));
                return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
            }
            return DefWindowProcW(window_, message, first, second);
        case WM_COMMAND:
            command(LOWORD(first), HIWORD(first));
            return 0;
        case WM_NOTIFY:
            return notified(*reinterpret_cast<const NMHDR*>(second));
        case WM_CLOSE:
            close();
            return 0;
        default:
            return DefWindowProcW(window_, message, first, second);
    }
}

void HitsWindow::command(int id, int code) {
    switch (id) {
        case IDOK:
            return enter();
        case IDCANCEL:
            return finding() ? stop() : close();
        case IDC_HITS_CANCEL:
            return stop();
        case IDC_HITS_EXPORT:
            return owner_.saveShownHits();
        case IDC_HITS_CLEAR:
            return clearFilter();
        case IDC_HITS_ORDER:
        case IDC_HITS_RECEIVER:
            if (code == CBN_SELCHANGE) {
                // The edit field of the drop-down list has its new text only after this message.
                filter(id == IDC_HITS_RECEIVER ? controls_->chosenReceiver() : controls_->receiver());
            } else if (code == CBN_EDITCHANGE) {
                filter(controls_->receiver());
            }
            return;
        case IDC_HITS_POWER:
            if (code == EN_CHANGE) {
                filter(controls_->receiver());
            }
            return;
        default:
            return;
    }
}

/// Enter in the list shows the row. Elsewhere it moves to the list.
void HitsWindow::enter() {
    if (GetFocus() == controls_->list()) {
        showRow(ListView_GetNextItem(controls_->list(), -1, LVNI_FOCUSED));
    } else {
        SetFocus(controls_->list());
    }
}

LRESULT HitsWindow::notified(const NMHDR& header) {
    if (header.hwndFrom != controls_->list()) {
        return 0;
    }
    switch (header.code) {
        case LVN_GETDISPINFOW:
            fillCell(reinterpret_cast<NMLVDISPINFOW*>(const_cast<NMHDR*>(&header))->item);
            return 0;
        case LVN_COLUMNCLICK: {
            const auto column = static_cast<HitColumn>(reinterpret_cast<const NMLISTVIEW&>(header).iSubItem);
            sort(column, column_ == column && !descending_);
            return 0;
        }
        case LVN_ODFINDITEMW:
            return findRow(reinterpret_cast<const NMLVFINDITEMW&>(header));
        case NM_CLICK:
        case NM_DBLCLK:
            showRow(reinterpret_cast<const NMITEMACTIVATE&>(header).iItem);
            return 0;
        default:
            return 0;
    }
}

void HitsWindow::fillCell(LVITEMW& item) const {
    if ((item.mask & LVIF_TEXT) == 0 || item.pszText == nullptr || item.cchTextMax <= 0) {
        return;
    }
    std::wstring text;
    if (rows_ != nullptr && item.iItem >= 0 && static_cast<std::size_t>(item.iItem) < rows_->size()) {
        text = cellOf(static_cast<HitColumn>(item.iSubItem), finder_->site(),
                      rows_->at(static_cast<std::size_t>(item.iItem)));
    }
    lstrcpynW(item.pszText, text.c_str(), item.cchTextMax);
}

/// The row whose receiver begins with the characters that the user has typed; -1 without one.
LRESULT HitsWindow::findRow(const NMLVFINDITEMW& search) const {
    if (rows_ == nullptr || rows_->size() == 0 || (search.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0) {
        return -1;
    }
    const std::wstring wanted = search.lvfi.psz;
    const auto length = static_cast<int>(wanted.size());
    const std::size_t start = search.iStart < 0 ? 0 : static_cast<std::size_t>(search.iStart);
    for (std::size_t i = 0; i < rows_->size(); ++i) {
        const std::size_t row = (start + i) % rows_->size();
        const std::wstring& key = finder_->site().receiverOf(rows_->at(row)).key;
        if (CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, key.c_str(),
                           std::min(length, static_cast<int>(key.size())), wanted.c_str(), length) == CSTR_EQUAL) {
            return static_cast<LRESULT>(row);
        }
    }
    return -1;
}

bool HitsWindow::translate(MSG& message) {
    if (!isOpen() || (message.hwnd != window_ && !IsChild(window_, message.hwnd))) {
        return false;
    }
    if (message.message == WM_KEYDOWN && message.wParam == VK_F4) {
        guarded([this] { owner_.focusSpectrum(); });
        return true;
    }
    if (message.message == WM_KEYDOWN && message.wParam == VK_F5) {
        guarded([this] { owner_.findHits(); });
        return true;
    }
    // The other keys are those of a dialog. The accelerators of the main window do not apply, because Ctrl+C in a field
    // must copy its text.
    if (IsDialogMessageW(window_, &message) == 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return true;
}

}  // namespace kv::host
