#include "host/HitsControls.h"

#include <algorithm>

#include "host/Com.h"
#include "host/hits/HitTexts.h"
#include "host/resource.h"

namespace kv::host {

namespace {

// A drop-down list with more entries is of no use. Other receivers can be typed.
constexpr std::size_t kMostNames = 2000;
constexpr int kProgressSteps = 1000;
constexpr std::size_t kRowsToMeasure = 100;

// Widths in average characters.
constexpr int kWidestColumn = 60;
constexpr int kArrow = 4;  // in the heading

struct ColumnLook {
    const wchar_t* widest;  ///< the column is as wide as this text, or as its heading
    int format;
};

constexpr std::array<ColumnLook, kHitColumns> kLooks = {{{L"RX0000", LVCFMT_LEFT},
                                                         {L"A receiver with a label that is quite long", LVCFMT_LEFT},
                                                         {L"00000.000000", LVCFMT_RIGHT},
                                                         {L"+000.000", LVCFMT_RIGHT},
                                                         {L"0", LVCFMT_RIGHT},
                                                         {L"TX000 + TX000 - TX000", LVCFMT_LEFT},
                                                         {L"-000.00", LVCFMT_RIGHT},
                                                         {L"000.000", LVCFMT_RIGHT}}};

std::wstring textOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

HFONT messageFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
    return CreateFontIndirectW(&metrics.lfMessageFont);
}

}  // namespace

HitsControls::HitsControls(HWND window) : window_(window), font_(messageFont()) {
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_LISTVIEW_CLASSES | ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&classes);
    const HDC context = GetDC(window_);
    const HGDIOBJ before = SelectObject(context, font_);
    TEXTMETRICW metrics{};
    GetTextMetricsW(context, &metrics);
    SelectObject(context, before);
    ReleaseDC(window_, context);
    line_ = metrics.tmHeight;
    character_ = widthOf(L"abcdefghijklmnopqrstuvwxyz") / 26 + 1;
    createFilter();
    createList();
    createStatus();
}

HitsControls::~HitsControls() {
    DeleteObject(font_);
}

HWND HitsControls::add(const wchar_t* windowClass, const wchar_t* text, DWORD style, int id, DWORD extendedStyle) {
    const HWND child =
        CreateWindowExW(extendedStyle, windowClass, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, window_,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    if (child == nullptr) {
        throw Failure{kExitOther, L"A part of the window with the hits could not be created."};
    }
    SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
    return child;
}

// The order of creation is that of the Tab key. A label gives the next control its access key.
void HitsControls::createFilter() {
    orderLabel_ = add(L"STATIC", L"&Order:", SS_LEFT, -1);
    order_ = add(L"COMBOBOX", L"", WS_TABSTOP | CBS_DROPDOWNLIST, IDC_HITS_ORDER);
    for (const wchar_t* const entry : {L"All", L"2", L"3", L"5"}) {
        SendMessageW(order_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry));
    }
    SendMessageW(order_, CB_SETCURSEL, 0, 0);
    powerLabel_ = add(L"STATIC", L"Minimum &power (dBm):", SS_LEFT, -1);
    power_ = add(L"EDIT", L"", WS_TABSTOP | ES_AUTOHSCROLL, IDC_HITS_POWER, WS_EX_CLIENTEDGE);
    receiverLabel_ = add(L"STATIC", L"&Receiver:", SS_LEFT, -1);
    receiver_ = add(L"COMBOBOX", L"", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL, IDC_HITS_RECEIVER);
    clear_ = add(L"BUTTON", L"&Show all", WS_TABSTOP | BS_PUSHBUTTON, IDC_HITS_CLEAR);
    RECT field{};
    GetWindowRect(order_, &field);
    row_ = std::max(static_cast<int>(field.bottom - field.top), line_ * 3 / 2);
}

void HitsControls::createList() {
    empty_ = add(L"STATIC", L"", SS_CENTER | SS_NOPREFIX, IDC_HITS_EMPTY);
    list_ = add(WC_LISTVIEWW, L"Hits",
                WS_TABSTOP | WS_CLIPSIBLINGS | LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS,
                IDC_HITS_LIST, WS_EX_CLIENTEDGE);
    ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP);
    for (std::size_t i = 0; i < kHitColumns; ++i) {
        std::wstring heading = headingOf(static_cast<HitColumn>(i));
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_FMT | LVCF_WIDTH;
        column.fmt = kLooks[i].format;
        column.pszText = heading.data();
        column.cx = std::max(widthOf(heading) + kArrow * character_, widthOf(kLooks[i].widest)) + 2 * character_;
        SendMessageW(list_, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
    }
}

void HitsControls::createStatus() {
    summary_ = add(L"STATIC", L"", SS_LEFT | SS_NOPREFIX | SS_ENDELLIPSIS, IDC_HITS_SUMMARY);
    progress_ = add(PROGRESS_CLASSW, L"", PBS_SMOOTH, IDC_HITS_PROGRESS);
    SendMessageW(progress_, PBM_SETRANGE32, 0, kProgressSteps);
    cancel_ = add(L"BUTTON", L"Cancel", WS_TABSTOP | BS_PUSHBUTTON, IDC_HITS_CANCEL);
    export_ = add(L"BUTTON", L"&Export...", WS_TABSTOP | BS_PUSHBUTTON, IDC_HITS_EXPORT);
    ShowWindow(progress_, SW_HIDE);
    ShowWindow(cancel_, SW_HIDE);
}

int HitsControls::order() const {
    constexpr std::array<int, 4> kOrders = {0, 2, 3, 5};
    const LRESULT chosen = SendMessageW(order_, CB_GETCURSEL, 0, 0);
    return chosen < 0 ? 0 : kOrders[static_cast<std::size_t>(chosen)];
}

std::wstring HitsControls::minimumPower() const {
    return textOf(power_);
}

std::wstring HitsControls::receiver() const {
    return textOf(receiver_);
}

std::wstring HitsControls::chosenReceiver() const {
    const LRESULT chosen = SendMessageW(receiver_, CB_GETCURSEL, 0, 0);
    const LRESULT length =
        chosen < 0 ? CB_ERR : SendMessageW(receiver_, CB_GETLBTEXTLEN, static_cast<WPARAM>(chosen), 0);
    if (length == CB_ERR) {
        return receiver();
    }
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    SendMessageW(receiver_, CB_GETLBTEXT, static_cast<WPARAM>(chosen), reinterpret_cast<LPARAM>(text.data()));
    return text;
}

void HitsControls::clearFilter() {
    SendMessageW(order_, CB_SETCURSEL, 0, 0);
    SetWindowTextW(power_, L"");
    SendMessageW(receiver_, CB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    SetWindowTextW(receiver_, L"");
}

void HitsControls::setReceivers(const std::vector<PlanChannel>& receivers) {
    const std::wstring text = receiver();
    SendMessageW(receiver_, WM_SETREDRAW, FALSE, 0);
    SendMessageW(receiver_, CB_RESETCONTENT, 0, 0);
    int widest = 0;
    for (std::size_t i = 0; i < std::min(receivers.size(), kMostNames); ++i) {
        const std::wstring name = receiverName(receivers[i]);
        SendMessageW(receiver_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
        widest = std::max(widest, widthOf(name));
    }
    SendMessageW(receiver_, CB_SETDROPPEDWIDTH,
                 static_cast<WPARAM>(std::min(widest, kWidestColumn * character_) + row_), 0);
    SetWindowTextW(receiver_, text.c_str());
    SendMessageW(receiver_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(receiver_, nullptr, TRUE);
}

void HitsControls::showSorting(std::optional<HitColumn> column, bool descending) {
    const HWND header = ListView_GetHeader(list_);
    for (std::size_t i = 0; i < kHitColumns; ++i) {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        SendMessageW(header, HDM_GETITEMW, i, reinterpret_cast<LPARAM>(&item));
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (column == static_cast<HitColumn>(i)) {
            item.fmt |= descending ? HDF_SORTDOWN : HDF_SORTUP;
        }
        SendMessageW(header, HDM_SETITEMW, i, reinterpret_cast<LPARAM>(&item));
    }
}

void HitsControls::fitColumns(const HitFinder& finder, const HitRows& rows) {
    for (const HitColumn column : {HitColumn::kReceiver, HitColumn::kFormula}) {
        int width = widthOf(headingOf(column)) + kArrow * character_;
        for (std::size_t row = 0; row < std::min(rows.size(), kRowsToMeasure); ++row) {
            width = std::max(width, widthOf(cellOf(column, finder.site(), rows.at(row))));
        }
        setColumnWidth(column, std::min(width, kWidestColumn * character_) + 2 * character_);
    }
    fillLabelColumn();
}

void HitsControls::setRowCount(std::size_t rows, bool othersStay) {
    SendMessageW(list_, LVM_SETITEMCOUNT, rows,
                 othersStay ? LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL : LVSICF_NOSCROLL);
    if (!othersStay) {
        InvalidateRect(list_, nullptr, FALSE);
    }
}

void HitsControls::setEmptyText(const std::wstring& text) {
    if (textOf(empty_) != text) {
        SetWindowTextW(empty_, text.c_str());
        placeEmptyText();
    }
    ShowWindow(empty_, text.empty() ? SW_HIDE : SW_SHOWNA);
}

void HitsControls::setSummary(const std::wstring& text) {
    if (textOf(summary_) != text) {
        SetWindowTextW(summary_, text.c_str());
    }
}

void HitsControls::setProgress(std::optional<double> fraction) {
    SendMessageW(progress_, PBM_SETPOS, static_cast<WPARAM>(fraction.value_or(0.0) * kProgressSteps), 0);
    if (finding_ == fraction.has_value()) {
        return;
    }
    finding_ = fraction.has_value();
    // A hidden window must not keep the focus.
    if (!finding_ && GetFocus() == cancel_) {
        SetFocus(list_);
    }
    ShowWindow(progress_, finding_ ? SW_SHOWNA : SW_HIDE);
    ShowWindow(cancel_, finding_ ? SW_SHOWNA : SW_HIDE);
    EnableWindow(export_, !finding_);
    layOut();
}

}  // namespace kv::host
