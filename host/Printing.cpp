#include "host/Printing.h"

#include <commdlg.h>

#include <utility>

#include "host/Com.h"

namespace kv::host {

namespace {

constexpr int kHeadingPoints = 12;
constexpr double kGap = 0.5;            // of a line, below the heading
constexpr double kFlattest = 9.0 / 16;  // height of the picture to its width, at most

}  // namespace

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

PrintJob::PrintJob(HDC dc, const std::wstring& name) : dc_(dc) {
    DOCINFOW document{};
    document.cbSize = sizeof document;
    document.lpszDocName = name.c_str();
    if (StartDocW(dc, &document) <= 0) {
        throw Failure{kExitOther, L"The printer did not accept the picture."};
    }
    if (StartPage(dc) <= 0) {
        AbortDoc(dc);
        throw Failure{kExitOther, L"The printer did not accept the picture."};
    }
    printHeading(name);
}

PrintJob::~PrintJob() {
    if (!finished_) {
        AbortDoc(dc_);
    }
}

void PrintJob::printHeading(const std::wstring& name) {
    const int width = GetDeviceCaps(dc_, HORZRES);
    const int height = GetDeviceCaps(dc_, VERTRES);
    LOGFONTW wanted{};
    wanted.lfHeight = -MulDiv(kHeadingPoints, GetDeviceCaps(dc_, LOGPIXELSY), 72);
    wanted.lfWeight = FW_SEMIBOLD;
    lstrcpynW(wanted.lfFaceName, L"Tahoma", LF_FACESIZE);
    const HFONT font = CreateFontIndirectW(&wanted);
    const HGDIOBJ before = SelectObject(dc_, font);
    SIZE text{};
    GetTextExtentPoint32W(dc_, name.c_str(), static_cast<int>(name.size()), &text);
    TextOutW(dc_, 0, 0, name.c_str(), static_cast<int>(name.size()));
    SelectObject(dc_, before);
    DeleteObject(font);
    const int top = text.cy + static_cast<int>(text.cy * kGap);
    const int room = height - top;
    place_ = {0, top, width, top + (room < width * kFlattest ? room : static_cast<int>(width * kFlattest))};
}

void PrintJob::finish() {
    if (EndPage(dc_) <= 0 || EndDoc(dc_) <= 0) {
        throw Failure{kExitOther, L"The picture could not be printed completely."};
    }
    finished_ = true;
}

}  // namespace kv::host
