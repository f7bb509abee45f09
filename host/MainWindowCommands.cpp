// The commands of the window's menu.
#include "host/Dialogs.h"
#include "host/FileStamp.h"
#include "host/MainWindow.h"
#include "host/Printing.h"
#include "host/resource.h"

namespace kv::host {

namespace {

bool hasExtension(const std::wstring& file, const std::wstring& extension) {
    return file.size() >= extension.size() &&
           lstrcmpiW(file.c_str() + (file.size() - extension.size()), extension.c_str()) == 0;
}

}  // namespace

void MainWindow::command(int id) {
    if (opening_ != nullptr && id != IDC_EXIT) {
        return;
    }
    if (id >= IDC_RECENT_FIRST && id <= IDC_RECENT_LAST) {
        return openRecent(static_cast<std::size_t>(id - IDC_RECENT_FIRST));
    }
    switch (id) {
        case IDC_OPEN:
            return openPlan();
        case IDC_SAVE:
            return savePicture();
        case IDC_PRINT:
            return printPicture();
        case IDC_COPY:
            return copyPicture();
        case IDC_EXIT:
            return finish(kExitOk);
        case IDC_SHOW_ALL:
            return showAll();
        case IDC_BACK:
            return go(&_BandscopeView::Back);
        case IDC_FORWARD:
            return go(&_BandscopeView::Forward);
        case IDC_ZOOM_IN:
            return zoom(2.0);
        case IDC_ZOOM_OUT:
            return zoom(0.5);
        case IDC_REDRAW:
            return reloadOrRedraw();
        case IDC_ABOUT:
            return showAboutBox();
        case IDC_MOUSE_REPORT:
            return openMouseReport();
        case IDC_HITS:
            return openHits();
        case IDC_SECOND:
            return toggleOrder(&ProductOptions::second);
        case IDC_THIRD:
            return toggleOrder(&ProductOptions::third);
        case IDC_FIFTH:
            return toggleOrder(&ProductOptions::fifth);
        case IDC_EVERY_FORM:
            return toggleOrder(&ProductOptions::everyFifthForm);
        default:
            static_cast<void>(toggleView(id));
            return;
    }
}

void MainWindow::enableCommands(HMENU menu) const {
    const auto check = [menu](UINT id, bool on) { CheckMenuItem(menu, id, on ? MF_CHECKED : MF_UNCHECKED); };
    const auto enable = [menu](UINT id, bool on) { EnableMenuItem(menu, id, on ? MF_ENABLED : MF_GRAYED); };
    const bool idle = opening_ == nullptr;
    const ProductOptions& products = idle ? shown_.products : opening_->next.products;
    for (const UINT id : {IDC_OPEN, IDC_SAVE, IDC_PRINT, IDC_COPY, IDC_REDRAW, IDC_HITS, IDC_MOUSE_REPORT, IDC_SECOND,
                          IDC_THIRD, IDC_FIFTH, IDC_ABOUT}) {
        enable(id, idle);
    }
    enable(IDC_SHOW_ALL, idle && !shown_.plan.channels.empty());
    enable(IDC_EVERY_FORM, idle && products.fifth);
    check(IDC_SECOND, products.second);
    check(IDC_THIRD, products.third);
    check(IDC_FIFTH, products.fifth);
    check(IDC_EVERY_FORM, products.everyFifthForm);
    enableView(menu);
}

void MainWindow::openPlan() {
    const std::wstring file = askForPlan(window_);
    if (!file.empty()) {
        openAnother(file);
    }
}

void MainWindow::savePicture() {
    const std::wstring file = askForPicture(window_);
    if (!file.empty()) {
        writePicture(file);
        status_->setMessage(L"The picture was saved as " + file);
    }
}

void MainWindow::copyPicture() {
    check(spectrum_->view().CopyPicture(), L"Copying the picture");
    status_->setMessage(L"The picture was copied.");
}

void MainWindow::printPicture() {
    const std::optional<Printer> printer = askForPrinter(window_);
    if (!printer) {
        return;
    }
    SYSTEMTIME now{};
    GetLocalTime(&now);
    PrintJob job(printer->dc(),
                 headingOf(shown_.name, {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute}, shownRange()));
    const RECT place = job.place();
    const auto handle = static_cast<double>(reinterpret_cast<INT_PTR>(printer->dc()));
    check(spectrum_->view().PrintPicture(handle, place.left, place.top, place.right - place.left,
                                         place.bottom - place.top),
          L"Printing the picture");
    job.finish();
    status_->setMessage(L"The picture was printed.");
}

void MainWindow::showAll() {
    _kvBandscope& control = spectrum_->control();
    double lowest = 0.0;
    double highest = 0.0;
    check(control.get_dFreqMin(&lowest), L"Reading dFreqMin");
    check(control.get_dFreqMax(&highest), L"Reading dFreqMax");
    drawTidily(control, lowest, highest);
    updateRange();
    status_->setMessage(L"All channels are shown.");
}

void MainWindow::redraw() {
    // While channels are added, nothing is drawn; the picture is drawn once at the end.
    if (opening_ == nullptr && !shown_.plan.channels.empty()) {
        check(spectrum_->control().JustDrawIt(), L"Drawing");
    }
}

void MainWindow::openMouseReport() {
    // The menu item has no check mark, because the control does not report when the user closes the window.
    check(spectrum_->control().put_bMouseInfo(VARIANT_TRUE), L"Setting bMouseInfo");
    status_->setMessage(L"The mouse report shows what is under the mouse.");
}

void MainWindow::toggleOrder(bool ProductOptions::*order) {
    ProductOptions products = shown_.products;
    products.*order = !(products.*order);
    if (shown_.plan.channels.empty()) {
        shown_.products = products;
        followHits();
    } else {
        Shown next = shown_;
        next.products = products;
        open(std::move(next));
    }
    chosen_.secondOrder = products.second;
    chosen_.thirdOrder = products.third;
    chosen_.fifthOrder = products.fifth;
    chosen_.everyFifthForm = products.everyFifthForm;
}

// DisplayToBMP takes any name; a name for another format goes to the view, which tells formats by the extension.
void MainWindow::writePicture(const std::wstring& file) {
    Bstr name(fullPath(file));
    if (hasExtension(file, L".png") || hasExtension(file, L".emf")) {
        try {
            check(spectrum_->view().SavePicture(name.get(), 0, 0, 0), L"Saving the picture");
        } catch (Failure& failure) {
            failure.code = kExitSaveFailed;
            throw;
        }
        return;
    }
    double height = 0.0;
    double width = 0.0;
    Bstr written;
    check(spectrum_->control().DisplayToBMP(&height, &width, name.inOut(), written.put()), L"Saving the picture");
    if (written.text().empty()) {
        throw Failure{kExitSaveFailed, L"The picture could not be saved as " + name.text() + L"."};
    }
}

}  // namespace kv::host
