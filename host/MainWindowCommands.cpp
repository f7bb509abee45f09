// The commands of the window's menu.
#include "host/Dialogs.h"
#include "host/MainWindow.h"
#include "host/Printing.h"
#include "host/resource.h"

namespace kv::host {

namespace {

std::wstring fullPath(const std::wstring& file) {
    std::wstring result(32768, L'\0');
    const DWORD length = GetFullPathNameW(file.c_str(), static_cast<DWORD>(result.size()), result.data(), nullptr);
    result.resize(length < result.size() ? length : 0);
    return result.empty() ? file : result;
}

bool hasExtension(const std::wstring& file, const std::wstring& extension) {
    return file.size() >= extension.size() &&
           lstrcmpiW(file.c_str() + (file.size() - extension.size()), extension.c_str()) == 0;
}

}  // namespace

void MainWindow::command(int id) {
    if (opening_ != nullptr && id != IDC_EXIT) {
        return;
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
            return redraw();
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
                          IDC_THIRD, IDC_FIFTH}) {
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
        // The range of the command line was for the first plan.
        ProductOptions products = shown_.products;
        products.lowestHz = ProductOptions().lowestHz;
        products.highestHz = ProductOptions().highestHz;
        load(file, products, std::nullopt);
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
    PrintJob job(printer->dc(), shown_.name.empty() ? L"Spectrum" : shown_.name);
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
        open({shown_.plan, shown_.name, products, shown_.range});
    }
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
