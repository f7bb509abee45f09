#include "host/HitsWindow.h"

#include <algorithm>

#include "host/Com.h"
#include "host/HitsFile.h"
#include "host/hits/HitTexts.h"
#include "host/resource.h"

namespace kv::host {

namespace {

constexpr wchar_t kHitsClass[] = L"BandscopeHits";
constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX | WS_CLIPCHILDREN;

}  // namespace

HitsWindow::HitsWindow(HWND ownerWindow, HitsOwner& owner) : owner_(owner) {
    create(ownerWindow);
    try {
        controls_ = std::make_unique<HitsControls>(window_);
        place();
        controls_->layOut();
    } catch (...) {
        DestroyWindow(window_);
        throw;
    }
}

HitsWindow::~HitsWindow() {
    SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    DestroyWindow(window_);
}

void HitsWindow::create(HWND ownerWindow) {
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = &HitsWindow::procedure;
    windowClass.hInstance = instance;
    windowClass.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(IDI_BANDSCOPE));
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
    windowClass.lpszClassName = kHitsClass;
    RegisterClassExW(&windowClass);
    window_ = CreateWindowExW(0, kHitsClass, L"Hits", kStyle, 0, 0, 0, 0, ownerWindow, nullptr, instance, nullptr);
    if (window_ == nullptr) {
        throw Failure{kExitOther, L"The window with the hits could not be created."};
    }
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

/// Below the main window if there is room, otherwise at the bottom of the screen.
void HitsWindow::place() const {
    const SIZE size = controls_->startSize();
    RECT outer = {0, 0, size.cx, size.cy};
    AdjustWindowRectEx(&outer, kStyle, FALSE, 0);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    const HWND ownerWindow = GetWindow(window_, GW_OWNER);
    GetMonitorInfoW(MonitorFromWindow(ownerWindow, MONITOR_DEFAULTTONEAREST), &monitor);
    RECT main{};
    GetWindowRect(ownerWindow, &main);
    const RECT& work = monitor.rcWork;
    const LONG width = std::min(outer.right - outer.left, work.right - work.left);
    const LONG height = std::min(outer.bottom - outer.top, work.bottom - work.top);
    const LONG left = std::clamp(main.left, work.left, work.right - width);
    const LONG top = std::clamp(main.bottom, work.top, work.bottom - height);
    SetWindowPos(window_, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void HitsWindow::open() {
    ShowWindow(window_, IsIconic(window_) ? SW_RESTORE : SW_SHOW);
    SetActiveWindow(window_);
    SetFocus(controls_->list());
}

/// Finding ends, and the memory of the hits is released.
void HitsWindow::close() {
    ShowWindow(window_, SW_HIDE);
    controls_->setRowCount(0, false);
    rows_.reset();
    finder_.reset();
    controls_->setProgress(std::nullopt);
    owner_.focusSpectrum();
}

void HitsWindow::find(const Plan& plan, const std::wstring& name, const ProductOptions& options) {
    auto finder = std::make_unique<HitFinder>(plan, options);
    auto rows = std::make_unique<HitRows>(*finder);
    controls_->setRowCount(0, false);
    rows_ = std::move(rows);
    finder_ = std::move(finder);
    fitted_ = false;
    SetWindowTextW(window_, (name.empty() ? L"Hits" : L"Hits - " + name).c_str());
    controls_->setReceivers(finder_->site().receivers());
    filter(controls_->receiver());
    describe();
}

void HitsWindow::save(const std::wstring& file) {
    if (finder_ == nullptr) {
        return;
    }
    saveHitsAs(file, *finder_, *rows_);
    controls_->setSummary(L"The rows were saved as " + file);
}

void HitsWindow::stop() {
    if (finding()) {
        finder_->stop();
        sortAgain();
        describe();
    }
}

void HitsWindow::filter(const std::wstring& receiver) {
    if (rows_ == nullptr) {
        return;
    }
    const EnteredPower power = enteredPower(controls_->minimumPower());
    powerIsValid_ = power.valid;
    const std::optional<std::uint32_t> selected = selectedHit();
    rows_->filter({controls_->order(), power.dbm, receiver});
    controls_->setRowCount(rows_->size(), false);
    selectHit(selected);
    describe();
}

void HitsWindow::clearFilter() {
    controls_->clearFilter();
    filter(L"");
    SetFocus(controls_->list());
}

void HitsWindow::sort(HitColumn column, bool descending) {
    column_ = column;
    descending_ = descending;
    controls_->showSorting(column, descending);
    sortAgain();
}

void HitsWindow::sortAgain() {
    if (rows_ == nullptr || !column_) {
        return;
    }
    const std::optional<std::uint32_t> selected = selectedHit();
    rows_->sort(*column_, descending_);
    controls_->setRowCount(rows_->size(), false);
    selectHit(selected);
}

/// Updates everything but the rows.
void HitsWindow::describe() {
    controls_->setProgress(finding() ? std::optional<double>(finder_->fractionDone()) : std::nullopt);
    controls_->setEmptyText(whyEmpty(*finder_, *rows_));
    controls_->setSummary(powerIsValid_ ? summaryOf(*finder_, *rows_)
                                        : L"The minimum power must be a number, such as -30.");
}

std::optional<std::uint32_t> HitsWindow::selectedHit() const {
    const int row = ListView_GetNextItem(controls_->list(), -1, LVNI_SELECTED);
    if (row < 0 || static_cast<std::size_t>(row) >= rows_->size()) {
        return std::nullopt;
    }
    return rows_->indexAt(static_cast<std::size_t>(row));
}

/// Selects the row of a hit. If there is none, the list shows its beginning.
void HitsWindow::selectHit(std::optional<std::uint32_t> hit) {
    const HWND list = controls_->list();
    const std::optional<std::size_t> row = hit ? rows_->rowOf(*hit) : std::nullopt;
    ListView_SetItemState(list, -1, 0, LVIS_SELECTED);
    const int shown = static_cast<int>(row.value_or(0));
    if (rows_->size() != 0) {
        ListView_SetItemState(list, shown, row ? LVIS_SELECTED | LVIS_FOCUSED : LVIS_FOCUSED,
                              LVIS_SELECTED | LVIS_FOCUSED);
        ListView_EnsureVisible(list, shown, FALSE);
    }
}

void HitsWindow::showRow(int row) {
    if (rows_ != nullptr && row >= 0 && static_cast<std::size_t>(row) < rows_->size()) {
        // Drawing handles messages, which can replace the list. So nothing of it is used afterwards.
        const Hit hit = rows_->at(static_cast<std::size_t>(row));
        const Spot spot = spotOf(finder_->site(), hit);
        const std::wstring text = spotText(finder_->site(), hit);
        owner_.showSpot(spot, text);
    }
}

}  // namespace kv::host
