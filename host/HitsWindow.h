// The window with the list of hits: which products overlap which receivers.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "host/HitsControls.h"
#include "host/hits/HitFinder.h"
#include "host/hits/HitRows.h"

namespace kv::host {

/// What the window needs of the main window.
class HitsOwner {
  public:
    /// The user chose a hit. The focus stays where it is.
    virtual void showSpot(const Spot& spot, const std::wstring& text) = 0;
    /// Calls HitsWindow::find with what the main window shows.
    virtual void findHits() = 0;
    virtual void saveShownHits() = 0;
    /// The user wants to go back to the spectrum.
    virtual void focusSpectrum() = 0;
    /// Reports the exception that is being handled.
    virtual void reportHitsFailure() noexcept = 0;

  protected:
    ~HitsOwner() = default;
};

/// It is created hidden, and hidden when the user closes it.
class HitsWindow {
  public:
    HitsWindow(HWND ownerWindow, HitsOwner& owner);
    HitsWindow(const HitsWindow&) = delete;
    HitsWindow& operator=(const HitsWindow&) = delete;
    ~HitsWindow();

    /// Shows the window and gives the list the focus.
    void open();
    [[nodiscard]] bool isOpen() const { return IsWindowVisible(window_) != FALSE; }
    [[nodiscard]] HWND window() const noexcept { return window_; }
    /// Starts to find hits. The filter and the order of the rows stay.
    void find(const Plan& plan, const std::wstring& name, const ProductOptions& options);
    [[nodiscard]] bool finding() const noexcept {
        return finder_ != nullptr && finder_->state() == HitFinder::State::kFinding;
    }
    /// Works for a few hundredths of a second.
    void continueFinding() noexcept;
    /// Writes the rows. Throws Failure.
    void save(const std::wstring& file);
    /// Handles the keys of the window.
    [[nodiscard]] bool translate(MSG& message);

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] LRESULT handle(UINT message, WPARAM first, LPARAM second);
    [[nodiscard]] LRESULT notified(const NMHDR& header);
    void create(HWND ownerWindow);
    void place() const;
    void command(int id, int code);
    void close();
    void enter();
    void filter(const std::wstring& receiver);
    void clearFilter();
    void sort(HitColumn column, bool descending);
    void sortAgain();
    void stop();
    void describe();
    void fillCell(LVITEMW& item) const;
    [[nodiscard]] LRESULT findRow(const NMLVFINDITEMW& search) const;
    void showRow(int row);
    [[nodiscard]] std::optional<std::uint32_t> selectedHit() const;
    void selectHit(std::optional<std::uint32_t> hit);
    template <class Work>
    void guarded(Work work) noexcept;
    void afterFailure() noexcept;

    HitsOwner& owner_;
    HWND window_ = nullptr;
    std::unique_ptr<HitsControls> controls_;
    std::unique_ptr<HitFinder> finder_;
    std::unique_ptr<HitRows> rows_;
    std::optional<HitColumn> column_;  // by which the rows are sorted
    bool descending_ = false;
    bool powerIsValid_ = true;
    bool fitted_ = false;  // the columns fit the first rows
    HWND lastFocus_ = nullptr;
};

}  // namespace kv::host
