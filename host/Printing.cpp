#include "host/Printing.h"

#include <commdlg.h>

#include <utility>

#include "host/Com.h"
#include "host/PrintedPage.h"

namespace kv::host {

Printer::~Printer() {
    if (dc_ != nullptr) {
        DeleteDC(dc_);
    }
}

std::optional<Printer> askForPrinter(HWND owner) {
    PRINTDLGW question{};
    question.lStructSize = sizeof question;
    question.hwndOwner = owner;
    question.Flags = PD_RETURNDC | PD_NOPAGENUMS | PD_NOSELECTION | PD_USEDEVMODECOPIESANDCOLLATE;
    const bool chosen = PrintDlgW(&question) != FALSE;
    for (HGLOBAL memory : {question.hDevMode, question.hDevNames}) {
        if (memory != nullptr) {
            GlobalFree(memory);
        }
    }
    if (chosen) {
        return Printer(question.hDC);
    }
    if (CommDlgExtendedError() != 0) {
        throw Failure{kExitOther, L"There is no printer to print on."};
    }
    return std::nullopt;
}

PrintJob::PrintJob(HDC dc, const PageHeading& heading) : dc_(dc) {
    DOCINFOW document{};
    document.cbSize = sizeof document;
    document.lpszDocName = heading.title.c_str();
    if (StartDocW(dc, &document) <= 0) {
        throw Failure{kExitOther, L"The printer did not accept the picture."};
    }
    if (StartPage(dc) <= 0) {
        AbortDoc(dc);
        throw Failure{kExitOther, L"The printer did not accept the picture."};
    }
    place_ = drawHeading(dc, heading);
}

PrintJob::~PrintJob() {
    if (!finished_) {
        AbortDoc(dc_);
    }
}

void PrintJob::finish() {
    if (EndPage(dc_) <= 0 || EndDoc(dc_) <= 0) {
        throw Failure{kExitOther, L"The picture could not be printed completely."};
    }
    finished_ = true;
}

}  // namespace kv::host
