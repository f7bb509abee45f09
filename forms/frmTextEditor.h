// A small window with a block of text that the user can read, edit, save or print.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "formenv/FileServices.h"
#include "formenv/Form.h"
#include "formenv/Platform.h"
#include "formenv/Widget.h"
#include "forms/FormPlacement.h"
#include "util/ErrHand.h"

namespace kv::forms {

/// The command that opens a file in the text viewer: program, blank, path, the path in quotes when it contains a blank.
/// Without a viewer the program is "NOTEPAD".
[[nodiscard]] std::wstring viewerCommand(std::wstring_view viewer, std::wstring_view path);

/// `InitForm` sets it up and its owner shows it. Save and Cancel raise `onHideMe` and hide it. Closing asks about
/// unsaved changes, raises `onUnload` and unloads it. It can be set up and shown again after either.
///
/// The handlers may do anything, also destroy the form. Only the constructor throws: all other errors go to the
/// reporter.
class frmTextEditor {
  public:
    /// All three have to live longer.
    frmTextEditor(formenv::Platform& platform, formenv::FileServices& files, util::ErrorReporter& errors);
    /// Asks nothing and raises no event; the placement of a form that was shown is saved.
    ~frmTextEditor();
    frmTextEditor(const frmTextEditor&) = delete;
    frmTextEditor& operator=(const frmTextEditor&) = delete;

    void InitForm(const std::wstring& sMode, const std::wstring& sSaveCaption, bool bCancelVisible, bool bChkVisible,
                  bool bLblVisible, const std::wstring& sText, bool bLocked, const std::wstring& sINIFile);
    /// The text counts as unchanged from now on.
    void ClearChange() noexcept;
    /// Lays the controls out for the present size.
    void FormResize();

    /// The caller's name for this use of the form: its caption, and the key of its placement.
    [[nodiscard]] const std::wstring& Mode() const noexcept { return sMode_; }
    void setMode(const std::wstring& value);
    /// The file of the placement; if empty, the common file for the places of all windows.
    [[nodiscard]] const std::wstring& sINI() const noexcept { return sINI_; }
    void setSINI(const std::wstring& value) { sINI_ = value; }

    /// Shows the form and does not take the focus from where it is.
    void Show();
    void Hide();
    [[nodiscard]] bool isVisible() const noexcept { return form_.visible(); }
    /// Closes the form as its close button does. False when the user chose to continue editing.
    bool Unload();

    [[nodiscard]] const std::wstring& text() const noexcept { return txtEdit.text(); }
    /// A text equal to the one shown changes nothing. A different one keeps the scroll position and the selection
    /// if possible, and counts as a change like an edit by the user: see `ClearChange`.
    void setText(const std::wstring& text);
    /// The user left by Cancel or abandoned changes.
    [[nodiscard]] bool cancelled() const noexcept { return bCancelled_; }
    /// The text was changed since `ClearChange`; stays true after Save, so that the caller knows if Save saved a
    /// change.
    [[nodiscard]] bool changed() const noexcept { return bChanged_; }
    /// The same, but Save clears it; closing asks while it is true.
    [[nodiscard]] bool unsaved() const noexcept { return bUnsaved_; }

    /// What the check box was last set to by a user in any form of the process: 0 or 1.
    [[nodiscard]] static std::int16_t nEditingEnabled() noexcept;

    /// The user clicked Save or Cancel: event `HideMe`. Raised before the form is hidden.
    formenv::Handler onHideMe;
    /// The form is closed: by the user, or by the system together with its owner window.
    formenv::Handler onUnload;

  private:
    formenv::Form form_;

  public:
    // In the order of the Tab key.
    formenv::TextBox txtEdit{&form_, L"txtEdit"};
    formenv::Button cmdSave{&form_, L"cmdSave"};
    formenv::Button cmdPrint{&form_, L"cmdPrint"};
    formenv::Button cmdCancel{&form_, L"cmdCancel"};
    formenv::CheckBox chkEnabled{&form_, L"chkEnabled"};
    formenv::Label lblCntChar{&form_, L"lblCntChar"};

    [[nodiscard]] formenv::Form& form() noexcept { return form_; }

  private:
    void design();
    void connectHandlers();
    void rememberMargins();
    void restorePlacement();
    void savePlacement() noexcept;
    [[nodiscard]] PlacementStore placementStore(const std::wstring& key);
    void txtEdit_Change();
    void chkEnabled_Click();
    void cmdSave_Click();
    void cmdCancel_Click();
    void cmdPrint_Click();
    bool Form_QueryUnload();
    void Form_Unload();
    void setLeastSize();
    void leave(const wchar_t* procedure);

    /// The design's distances, twips.
    struct Margins {
        double left = 0.0;
        double top = 0.0;
        double right = 0.0;
        double bottom = 0.0;
        double buttons = 0.0;  ///< top of cmdCancel from the form's bottom
    };

    formenv::Platform& platform_;
    formenv::FileServices& files_;
    util::ErrorReporter& errors_;
    std::wstring sMode_;
    std::wstring sINI_;
    bool bChanged_ = false;
    bool bUnsaved_ = false;
    bool bCancelled_ = false;
    bool bShown_ = false;  ///< since the placement was last saved
    Margins margins_;
    /// A handler may destroy the form under the procedure that called it.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace kv::forms
