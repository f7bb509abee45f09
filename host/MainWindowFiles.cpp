// Plans that are opened in other ways than by the dialog: recent ones, dropped ones, and the present one again.
#include <algorithm>

#include "host/About.h"
#include "host/FileStamp.h"
#include "host/MainWindow.h"
#include "host/plan/Quoted.h"
#include "host/plan/RecentPlans.h"
#include "host/resource.h"

namespace kv::host {

namespace {

/// Whether a path certainly has no file. One that is out of reach for another reason may come back.
bool isMissing(const std::wstring& path) {
    if (exists(path)) {
        return false;
    }
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME;
}

}  // namespace

void MainWindow::openAnother(const std::wstring& file) {
    // The range of the command line was for the first plan.
    ProductOptions products = shown_.products;
    products.lowestHz = ProductOptions().lowestHz;
    products.highestHz = ProductOptions().highestHz;
    load(file, products, std::nullopt);
}

void MainWindow::fillRecentPlans(HMENU menu) {
    if (GetMenuState(menu, IDC_OPEN, MF_BYCOMMAND) == static_cast<UINT>(-1)) {
        return;  // another menu
    }
    for (UINT id = IDC_RECENT_FIRST; id <= IDC_RECENT_SEPARATOR; ++id) {
        DeleteMenu(menu, id, MF_BYCOMMAND);
    }
    recentPlans_ = settings_.read().recentPlans;
    for (std::size_t i = 0; i < recentPlans_.size(); ++i) {
        InsertMenuW(menu, IDC_EXIT, MF_BYCOMMAND | (opening_ == nullptr ? MF_ENABLED : MF_GRAYED), IDC_RECENT_FIRST + i,
                    recentPlanLabel(i + 1, recentPlans_[i]).c_str());
    }
    if (!recentPlans_.empty()) {
        InsertMenuW(menu, IDC_EXIT, MF_BYCOMMAND | MF_SEPARATOR, IDC_RECENT_SEPARATOR, nullptr);
    }
}

void MainWindow::openRecent(std::size_t index) {
    if (index >= recentPlans_.size()) {
        return;
    }
    const std::wstring path = recentPlans_[index];
    if (isMissing(path)) {
        settings_.change([&](Settings& settings) { removeRecentPlan(settings.recentPlans, path); });
        throw Failure{kExitOther, L"The plan " + inQuotes(path) +
                                      L" was not found. It has been removed from the list of recent plans."};
    }
    openAnother(path);
}

void MainWindow::rememberPlan() {
    if (!shown_.path.empty()) {
        settings_.change([this](Settings& settings) { addRecentPlan(settings.recentPlans, shown_.path); });
    }
}

void MainWindow::openDropped() {
    const std::vector<std::wstring> files = drop_->take();
    if (files.empty()) {
        return;
    }
    if (opening_ != nullptr) {
        status_->setMessage(L"Another plan is being opened. Drop the file again later.");
        return;
    }
    SetForegroundWindow(window_);
    if (files.size() > 1) {
        throw Failure{kExitOther, std::to_wstring(files.size()) +
                                      L" files were dropped, but only one plan can be shown. Drop a single file."};
    }
    openAnother(files.front());
}

void MainWindow::reloadOrRedraw() {
    if (shown_.path.empty()) {
        status_->setMessage(L"There is no plan to load again.");
        return;
    }
    const std::optional<FileStamp> now = stampOf(shown_.path);
    if (now && now != shown_.stamp) {
        return reload();
    }
    redraw();
    status_->setMessage(now ? L"The file has not changed. The picture was drawn again."
                            : L"The plan's file was not found. The picture was drawn again.");
}

void MainWindow::reload() {
    try {
        const RangeMhz range = shownRange();
        load(shown_.path, shown_.products, shown_.range, range);
        opening_->message = L"The file had changed. The plan was opened again.";
    } catch (const Failure& failure) {
        report(failure);
        status_->setMessage(L"The changed file could not be opened. The earlier plan is still shown.");
    }
}

RangeMhz MainWindow::shownRange() const {
    RangeMhz range;
    check(spectrum_->control().get_DisplayMinFreq(&range.lowest), L"Reading DisplayMinFreq");
    check(spectrum_->control().get_DisplayMaxFreq(&range.highest), L"Reading DisplayMaxFreq");
    return range;
}

void MainWindow::showAboutBox() {
    showAbout(window_, &spectrum_->control());
}

}  // namespace kv::host
