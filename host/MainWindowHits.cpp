// How the main window works with the list of hits.
#include "host/Dialogs.h"
#include "host/HitsFile.h"
#include "host/MainWindow.h"
#include "host/plan/TidyRange.h"

namespace kv::host {

void MainWindow::openHits() {
    if (hits_ == nullptr) {
        hits_ = std::make_unique<HitsWindow>(window_, static_cast<HitsOwner&>(*this));
    }
    if (!hits_->isOpen()) {
        findHits();
    }
    hits_->open();
}

/// The plan or the orders have changed.
void MainWindow::followHits() {
    if (hits_ != nullptr && hits_->isOpen()) {
        findHits();
    }
}

void MainWindow::findHits() {
    if (opening_ == nullptr) {
        hits_->find(shown_.plan, shown_.name, shown_.products);
    }
}

void MainWindow::saveShownHits() {
    const std::wstring file = askForHits(hits_->window());
    if (!file.empty()) {
        hits_->save(file);
    }
}

void MainWindow::focusSpectrum() {
    SetActiveWindow(window_);
    spectrum_->focus();
}

void MainWindow::reportHitsFailure() noexcept {
    reportCurrent();
}

/// Drawing handles messages, so the user can choose another hit meanwhile. It is shown next, not inside the drawing.
void MainWindow::showSpot(const Spot& spot, const std::wstring& text) {
    if (opening_ != nullptr) {
        status_->setMessage(L"Another plan is being opened. Its hits can be shown after that.");
        return;
    }
    const bool drawing = nextSpot_.has_value();
    nextSpot_ = {spot, text};
    if (drawing) {
        return;
    }
    try {
        for (std::pair<Spot, std::wstring> shown; nextSpot_->second != shown.second;) {
            shown = *nextSpot_;
            drawSpot(shown.first);
            status_->setMessage(shown.second);
        }
    } catch (...) {
        nextSpot_.reset();
        throw;
    }
    nextSpot_.reset();
}

void MainWindow::drawSpot(const Spot& spot) {
    _kvBandscope& control = spectrum_->control();
    const TidyRange range = tidyRange(spot.lowest, spot.highest);
    check(control.put_nGridX(static_cast<SHORT>(range.divisions)), L"Setting nGridX");
    check(spectrum_->view().ShowRange(range.lowest, range.highest), L"Showing the hit");
    check(control.put_CursorVal(spot.cursor), L"Setting CursorVal");
    updateRange();
}

/// Writes the list that the command line asks for.
void MainWindow::writeHits() {
    if (const std::wstring file = std::exchange(options_.hitsFile, L""); !file.empty()) {
        findAndSaveHits(file, shown_.plan, shown_.products);
    }
}

}  // namespace kv::host
