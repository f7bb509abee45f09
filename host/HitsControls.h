// The parts of the window with the list of hits: filter, list, status line.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "host/hits/HitRows.h"

namespace kv::host {

class HitsControls {
  public:
    /// Creates the parts as children of `window`.
    explicit HitsControls(HWND window);
    HitsControls(const HitsControls&) = delete;
    HitsControls& operator=(const HitsControls&) = delete;
    ~HitsControls();

    /// Places the parts in the client area of the window.
    void layOut();
    /// Of the client area, in pixels. All sizes follow from the system's font for messages.
    [[nodiscard]] SIZE smallestSize() const;
    [[nodiscard]] SIZE startSize() const;

    [[nodiscard]] HWND list() const noexcept { return list_; }
    [[nodiscard]] HWND emptyText() const noexcept { return empty_; }
    [[nodiscard]] int order() const;
    [[nodiscard]] std::wstring minimumPower() const;
    [[nodiscard]] std::wstring receiver() const;
    /// For the messages of the drop-down lists, whose text changes after the message.
    [[nodiscard]] std::wstring chosenReceiver() const;
    void clearFilter();
    /// Fills the drop-down list with the names of the receivers. The text of the filter stays.
    void setReceivers(const std::vector<PlanChannel>& receivers);
    /// An arrow in the heading; without a column none.
    void showSorting(std::optional<HitColumn> column, bool descending);
    /// Makes the columns with texts as wide as the first rows need.
    void fitColumns(const HitFinder& finder, const HitRows& rows);
    void setRowCount(std::size_t rows, bool othersStay);
    /// Instead of rows; an empty text shows the list.
    void setEmptyText(const std::wstring& text);
    void setSummary(const std::wstring& text);
    /// A fraction from 0 to 1 while hits are found; none at other times.
    void setProgress(std::optional<double> fraction);

  private:
    HWND add(const wchar_t* windowClass, const wchar_t* text, DWORD style, int id, DWORD extendedStyle = 0);
    void createFilter();
    void createList();
    void createStatus();
    void placeFilter(int width);
    void placeStatus(const RECT& client);
    void placeEmptyText();
    void fillLabelColumn();
    void setColumnWidth(HitColumn column, int width);
    [[nodiscard]] int widthOf(const std::wstring& text) const;
    [[nodiscard]] int buttonWidth(HWND button) const;

    HWND window_;
    HFONT font_ = nullptr;
    int character_ = 0;  // average width, in pixels
    int line_ = 0;       // height of a line, in pixels
    int row_ = 0;        // height of an input field and of a button, in pixels
    HWND orderLabel_ = nullptr;
    HWND order_ = nullptr;
    HWND powerLabel_ = nullptr;
    HWND power_ = nullptr;
    HWND receiverLabel_ = nullptr;
    HWND receiver_ = nullptr;
    HWND clear_ = nullptr;
    HWND list_ = nullptr;
    HWND empty_ = nullptr;
    HWND summary_ = nullptr;
    HWND progress_ = nullptr;
    HWND cancel_ = nullptr;
    HWND export_ = nullptr;
    bool finding_ = false;
};

}  // namespace kv::host
