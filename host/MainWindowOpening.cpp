// How the window opens a plan, and how it stays as it was when that fails.
#include "host/Dialogs.h"
#include "host/MainWindow.h"

namespace kv::host {

namespace {

std::wstring grouped(std::size_t number) {
    std::wstring digits = std::to_wstring(number);
    for (std::size_t at = digits.size(); at > 3; at -= 3) {
        digits.insert(at - 3, 1, L',');
    }
    return digits;
}

std::wstring counted(std::size_t number, const wchar_t* noun) {
    return grouped(number) + L" " + noun + (number == 1 ? L"" : L"s");
}

std::wstring summaryOf(const PlanErrors& errors) {
    if (errors.line() == 0) {
        return L"The plan was not opened:";
    }
    return L"The plan was not opened, because it has " + std::wstring(errors.hasMore() ? L"more than " : L"") +
           counted(errors.list().size(), L"error") + L":";
}

Plan planOf(const std::wstring& file) {
    try {
        return loadPlan(file);
    } catch (const PlanErrors& errors) {
        throw Failure{kExitBadPlan, summaryOf(errors), errors.texts()};
    }
}

}  // namespace

void MainWindow::load(const std::wstring& file, const ProductOptions& products, const std::optional<RangeMhz>& range,
                      const std::optional<RangeMhz>& kept) {
    const std::wstring path = fullPath(file);
    // The stamp is taken first, so that a change while the plan is read is noticed later.
    const std::optional<FileStamp> stamp = stampOf(path);
    open({planOf(file), file.substr(file.find_last_of(L"\\/") + 1), products, range, 0, path, stamp}, kept);
}

void MainWindow::open(Shown next, const std::optional<RangeMhz>& kept) {
    opening_ = std::make_unique<Opening>(spectrum_->control(), *classes_.freqSlot.Get(), std::move(next), kept);
    try {
        describe(opening_->next);
        status_->setMessage(L"Computing products. Press Esc to stop.");
        opening_->loading.start();
    } catch (...) {
        abandonOpening();
        throw;
    }
}

void MainWindow::continueOpening() {
    guarded([this] {
        if (opening_->loading.step()) {
            opened(std::exchange(opening_->message, L""));
        } else {
            status_->setProgress(opening_->loading.fractionDone());
            status_->setCounts(counted(opening_->loading.productCount(), L"product"));
        }
    });
}

void MainWindow::cancelProducts() {
    guarded([this] {
        opening_->loading.cancel();
        ProductOptions& products = opening_->next.products;
        products.second = products.third = products.fifth = false;  // because no product is shown any more
        opened(L"Stopped: the products are not shown.");
    });
}

void MainWindow::opened(const std::wstring& message) {
    if (opening_ != nullptr) {
        // Drawing handles pending messages. While opening_ exists, their handlers start no other work.
        opening_->loading.show();
        opening_->next.productCount = opening_->loading.productCount();
        shown_ = std::move(opening_->next);
        opening_.reset();
        describe(shown_);
        followHits();
        rememberPlan();
    }
    status_->setProgress(-1.0);
    status_->setMessage(message);
    if (const std::wstring file = std::exchange(options_.saveFile, L""); !file.empty()) {
        writePicture(file);
    }
    writeHits();
    if (options_.quit) {
        finish(kExitOk);
    }
}

void MainWindow::abandonOpening() {
    if (opening_ != nullptr) {
        opening_.reset();
        status_->setProgress(-1.0);
        describe(shown_);
    }
}

void MainWindow::describe(const Shown& shown) {
    const std::wstring program = L"BandscopeHost";
    SetWindowTextW(window_, (shown.name.empty() ? program : shown.name + L" - " + program).c_str());
    status_->setCounts(shown.name.empty() ? L""
                                          : counted(shown.plan.transmitterCount(), L"transmitter") + L", " +
                                                counted(shown.plan.receiverCount(), L"receiver") + L", " +
                                                counted(shown.productCount, L"product"));
    updateRange();
}

void MainWindow::updateRange() noexcept {
    double lowest = 0.0;
    double highest = 0.0;
    if (SUCCEEDED(spectrum_->control().get_DisplayMinFreq(&lowest)) &&
        SUCCEEDED(spectrum_->control().get_DisplayMaxFreq(&highest)) && lowest < highest) {
        status_->setRange(lowest, highest);
    }
}

template <class Work>
void MainWindow::guarded(Work work) noexcept {
    try {
        try {
            work();
        } catch (...) {
            abandonOpening();
            throw;
        }
    } catch (...) {
        reportCurrent();
    }
}

/// Opens the plan of the command line. A failure is reported.
void MainWindow::openFirst() {
    guarded([this] {
        if (!options_.planFile.empty()) {
            load(options_.planFile, options_.products, options_.range);
        } else if (options_.quit || !options_.saveFile.empty()) {
            opened(L"");
        }
    });
}

}  // namespace kv::host
