#include "forms/frmTextEditor.h"

#include <algorithm>
#include <atomic>

#include "util/Product.h"
#include "util/Text.h"
#include "util/Trapped.h"
#include "util/Utf8.h"

namespace kv::forms {

using formenv::MessageAnswer;
using formenv::MessageButtons;
using formenv::MessageIcon;
using util::noted;
using util::reported;
using util::Step;

namespace {

constexpr int kEscape = 27;
constexpr wchar_t kPrintFile[] = L"KVPrnFil.TXT";
constexpr char kUtf8Mark[] = "\xEF\xBB\xBF";

// The design, twips.
constexpr double kWidth = 7050.0;
constexpr double kHeight = 4500.0;
constexpr double kLeastEditorHeight = 2400.0;
constexpr double kMargin = 120.0;
constexpr double kGap = 90.0;
constexpr double kButtonWidth = 1095.0;
constexpr double kButtonHeight = 375.0;
constexpr double kCheckWidth = 1560.0;
constexpr double kCountWidth = 1200.0;

/// The same in all forms of the process, on whatever thread.
std::atomic<std::int16_t> editingEnabled{0};

constexpr wchar_t kAbandonTitle[] = L"Abandon Changes?";
constexpr wchar_t kAbandonText[] =
    L"You changed the text and have not saved the changes.\r\n\r\n"
    L"Do you want to ABANDON the changes?\r\n\r\n"
    L"Click YES to ABANDON the changes\r\n"
    L"Click NO to return to editing the text";

}  // namespace

std::wstring viewerCommand(std::wstring_view viewer, std::wstring_view path) {
    const bool blank = path.find(L' ') != std::wstring_view::npos;
    std::wstring command(util::getLenTrim(viewer) < 1 ? std::wstring_view(L"NOTEPAD") : util::trim(viewer));
    command += blank ? L" \"" : L" ";
    command += path;
    if (blank)
        command += L'"';
    return command;
}

frmTextEditor::frmTextEditor(formenv::Platform& platform, formenv::FileServices& files, util::ErrorReporter& errors)
    : form_(platform, L"frmTextEditor"), platform_(platform), files_(files), errors_(errors) {
    design();
    rememberMargins();
    connectHandlers();
}

frmTextEditor::~frmTextEditor() {
    if (bShown_)
        savePlacement();
    // The window is destroyed before the controls that it shows.
    form_.dropWindow();
}

void frmTextEditor::design() {
    txtEdit.multiLine = true;
    txtEdit.setFont({L"Courier New", 9.0, false});
    cmdSave.setCaption(L"&Save");
    cmdPrint.setCaption(L"&Print");
    cmdCancel.setCaption(L"&Cancel");
    chkEnabled.setCaption(L"Editing Enabled");
    lblCntChar.setCaption(L"0 characters");
    lblCntChar.middle = true;
    form_.move({0.0, 0.0, kWidth, kHeight});
    const double width = form_.scaleWidth();
    const double height = form_.scaleHeight();
    const double top = std::max(height - kMargin - kButtonHeight, 0.0);
    txtEdit.move({kMargin, kMargin, std::max(width - 2.0 * kMargin, 0.0), std::max(top - 2.0 * kMargin, 0.0)});
    double left = kMargin;
    const auto place = [&](formenv::Widget& widget, double wide, double gap) {
        widget.move({left, top, wide, kButtonHeight});
        left += wide + gap;
    };
    place(cmdSave, kButtonWidth, kGap);
    place(cmdPrint, kButtonWidth, kGap);
    place(cmdCancel, kButtonWidth, 2.0 * kGap);
    place(chkEnabled, kCheckWidth, kGap);
    place(lblCntChar, kCountWidth, kMargin);
}

void frmTextEditor::rememberMargins() {
    margins_.left = txtEdit.left();
    margins_.top = txtEdit.top();
    margins_.right = form_.scaleWidth() - txtEdit.left() - txtEdit.width();
    margins_.bottom = form_.scaleHeight() - txtEdit.top() - txtEdit.height();
    margins_.buttons = form_.scaleHeight() - cmdCancel.top();
}

void frmTextEditor::connectHandlers() {
    form_.onResize = [this] { FormResize(); };
    form_.onQueryUnload = [this] { return Form_QueryUnload(); };
    form_.onUnload = [this] { Form_Unload(); };
    form_.onKeyDown = [this](int key, int) {
        if (key != kEscape)
            return false;
        cmdCancel_Click();
        return true;
    };
    txtEdit.onChange = [this] { txtEdit_Change(); };
    chkEnabled.onClick = [this] { chkEnabled_Click(); };
    cmdSave.onClick = [this] { cmdSave_Click(); };
    cmdPrint.onClick = [this] { cmdPrint_Click(); };
    cmdCancel.onClick = [this] { cmdCancel_Click(); };
}

void frmTextEditor::setMode(const std::wstring& value) {
    sMode_ = value;
    form_.setCaption(value);
}

void frmTextEditor::InitForm(const std::wstring& sMode, const std::wstring& sSaveCaption, bool bCancelVisible,
                             bool bChkVisible, bool bLblVisible, const std::wstring& sText, bool bLocked,
                             const std::wstring& sINIFile) {
    reported(errors_, L"InitForm", [&](Step& step) {
        setMode(sMode);
        setSINI(sINIFile);
        bCancelled_ = false;
        step = 200;
        cmdSave.setCaption(sSaveCaption);
        cmdCancel.setVisible(bCancelVisible);
        chkEnabled.setVisible(bChkVisible);
        lblCntChar.setVisible(bLblVisible);
        setLeastSize();
        step = 300;
        txtEdit.setText(sText);
        txtEdit.setLocked(bLocked);
        ClearChange();
        step = 400;
        restorePlacement();
        step = 500;
        form_.load();
    });
}

/// The visible controls of the row always fit.
void frmTextEditor::setLeastSize() {
    double right = 0.0;
    for (const formenv::Widget* child : form_.children()) {
        if (child != &txtEdit && child->visible())
            right = std::max(right, child->left() + child->width());
    }
    form_.setLeastSize(right + kMargin + platform_.formBorder().width, kLeastEditorHeight);
}

void frmTextEditor::ClearChange() noexcept {
    bChanged_ = false;
    bUnsaved_ = false;
}

void frmTextEditor::FormResize() {
    reported(errors_, L"FormResize", [&](Step& step) {
        txtEdit.move({margins_.left, margins_.top, std::max(form_.scaleWidth() - margins_.left - margins_.right, 0.0),
                      std::max(form_.scaleHeight() - margins_.top - margins_.bottom, 0.0)});
        step = 200;
        cmdCancel.setTop(form_.scaleHeight() - margins_.buttons);
        for (formenv::Widget* beside :
             std::initializer_list<formenv::Widget*>{&cmdSave, &chkEnabled, &lblCntChar, &cmdPrint})
            beside->setTop(cmdCancel.top());
    });
}

void frmTextEditor::Show() {
    reported(errors_, L"Show", [&](Step&) {
        form_.show();
        bShown_ = true;
    });
}

void frmTextEditor::Hide() {
    reported(errors_, L"Hide", [&](Step&) { form_.hide(); });
}

bool frmTextEditor::Unload() {
    bool gone = false;
    reported(errors_, L"Unload", [&](Step&) { gone = form_.unload(); });
    return gone;
}

void frmTextEditor::setText(const std::wstring& text) {
    reported(errors_, L"setText", [&](Step&) { txtEdit.setText(text); });
}

std::int16_t frmTextEditor::nEditingEnabled() noexcept {
    return editingEnabled;
}

void frmTextEditor::txtEdit_Change() {
    reported(errors_, L"txtEdit_Change", [&](Step&) {
        bChanged_ = true;
        bUnsaved_ = true;
        lblCntChar.setCaption(std::to_wstring(util::getLenTrim(txtEdit.text())) + L" chars");
    });
}

/// Only stores the setting: InitForm decides whether the text can be edited.
void frmTextEditor::chkEnabled_Click() {
    editingEnabled = static_cast<std::int16_t>(chkEnabled.value());
}

void frmTextEditor::cmdSave_Click() {
    bUnsaved_ = false;
    bCancelled_ = false;
    leave(L"cmdSave_Click");
}

void frmTextEditor::cmdCancel_Click() {
    bCancelled_ = true;
    leave(L"cmdCancel_Click");
}

void frmTextEditor::leave(const wchar_t* procedure) {
    const std::weak_ptr<bool> alive = alive_;
    reported(errors_, procedure, [&](Step&) {
        if (const formenv::Handler handler = onHideMe)
            handler();
    });
    if (alive.expired())
        return;
    const auto hide = [&](Step&) { form_.hide(); };
    reported(errors_, procedure, hide, {}, 200);
}

void frmTextEditor::cmdPrint_Click() {
    reported(errors_, L"cmdPrint_Click", [&](Step& step) {
        const std::wstring path = util::setPathName(files_.printFolder(), kPrintFile);
        step = 200;
        // With a byte order mark, so that every viewer shows every character.
        files_.writeFile(path, kUtf8Mark + util::toUtf8(txtEdit.text()));
        step = 300;
        platform_.startProgram(viewerCommand(util::product::kTextViewer, path));
    });
}

bool frmTextEditor::Form_QueryUnload() {
    const std::wstring save = util::upperCase(cmdSave.caption());
    if (!bUnsaved_ || !cmdSave.visible() || (save != L"SAVE" && save != L"&SAVE"))
        return true;
    const std::weak_ptr<bool> alive = alive_;
    const MessageAnswer answer =
        form_.messageBox(kAbandonText, kAbandonTitle, MessageIcon::Question, MessageButtons::YesNoDefaultNo);
    if (alive.expired())
        return true;
    if (answer != MessageAnswer::Yes)
        return false;
    bCancelled_ = true;
    return true;
}

void frmTextEditor::Form_Unload() {
    savePlacement();
    const auto tell = [&](Step&) {
        if (const formenv::Handler handler = onUnload)
            handler();
    };
    reported(errors_, L"Form_Unload", tell, {}, 200);
}

/// Without a saved place it is on the monitor of the control.
void frmTextEditor::restorePlacement() {
    RestoreFormPlacement(form_, placementStore(sMode_), platform_.formOwner());
}

/// A place that cannot be saved is recorded, but causes no message each time the form is closed.
void frmTextEditor::savePlacement() noexcept {
    bShown_ = false;
    noted(errors_, L"Form_Unload", [&](Step&) {
        const PlacementStore common = placementStore(L"");
        if (common.ini.empty())
            return;
        bool kept = SaveFormPlacement(form_, common);
        if (!sMode_.empty())
            kept = SaveFormPlacement(form_, placementStore(sMode_)) && kept;
        if (!kept)
            throw util::RuntimeError(util::error_number::kPathFileAccess);
    });
}

PlacementStore frmTextEditor::placementStore(const std::wstring& key) {
    return {files_, platform_.desktop(), sINI_.empty() ? files_.placementFile() : sINI_, key};
}

}  // namespace kv::forms
