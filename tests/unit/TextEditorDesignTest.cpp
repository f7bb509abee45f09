// The text window's design, and the procedures and steps that it reports errors with.
#include "tests/unit/TextEditorFixture.h"

namespace kv::forms {
namespace {

using util::error_number::kAutomation;
using util::error_number::kPathFileAccess;

TEST_F(TextEditor, ThePartsHaveTheirDesignedPlaces) {
    EXPECT_EQ(form->form().name(), L"frmTextEditor");
    EXPECT_EQ(form->form().place(), (formenv::Place{0.0, 0.0, 7050.0, 4500.0}));
    // The border of the test's system takes 180 twips of the width and 540 of the height.
    EXPECT_EQ(form->txtEdit.place(), (formenv::Place{120.0, 120.0, 6630.0, 3225.0}));
    EXPECT_EQ(form->cmdSave.place(), (formenv::Place{120.0, 3465.0, 1095.0, 375.0}));
    EXPECT_EQ(form->cmdPrint.place(), (formenv::Place{1305.0, 3465.0, 1095.0, 375.0}));
    EXPECT_EQ(form->cmdCancel.place(), (formenv::Place{2490.0, 3465.0, 1095.0, 375.0}));
    EXPECT_EQ(form->chkEnabled.place(), (formenv::Place{3765.0, 3465.0, 1560.0, 375.0}));
    EXPECT_EQ(form->lblCntChar.place(), (formenv::Place{5415.0, 3465.0, 1200.0, 375.0}));
    EXPECT_TRUE(form->lblCntChar.middle);
    EXPECT_EQ(form->txtEdit.font().face, L"Courier New") << "columns need characters of one width";
    EXPECT_EQ(form->txtEdit.font().points, 9.0);
    EXPECT_FALSE(form->txtEdit.font().bold);
}

TEST_F(TextEditor, TheLeastSizeIsThatOfTheRowWithItsMarginAndTheBorder) {
    initNotes();
    EXPECT_EQ(form->form().leastWidth(), 6615.0 + 120.0 + 180.0);
    EXPECT_EQ(form->form().leastHeight(), 2400.0);
    form->InitForm(L"A", L"Close", false, false, false, L"", true, kIni);
    EXPECT_EQ(form->form().leastWidth(), 2400.0 + 120.0 + 180.0);
}

/// A widget's window that fails at every change.
class FailingPeer final : public formenv::Peer {
  public:
    void changed(formenv::Change) override { throw util::RuntimeError(kAutomation); }
};

TEST_F(TextEditor, ErrorsAreReportedWithTheProcedureAndItsStep) {
    FailingPeer window;
    initNotes();
    form->txtEdit.setPeer(&window);
    form->setText(L"other");
    expectReport(L"setText", 100, kAutomation);
    form->InitForm(L"Notes", L"&Save", true, true, true, L"another", false, kIni);
    expectReport(L"InitForm", 300, kAutomation);
    form->form().move({0.0, 0.0, 9000.0, 6000.0});
    expectReport(L"FormResize", 100, kAutomation);
    form->txtEdit.setPeer(nullptr);
    form->cmdCancel.setPeer(&window);
    form->form().move({0.0, 0.0, 9000.0, 7000.0});
    expectReport(L"FormResize", 200, kAutomation);
    form->InitForm(L"Notes", L"&Save", false, true, true, L"", false, kIni);
    expectReport(L"InitForm", 200, kAutomation);
    form->cmdCancel.setPeer(nullptr);
    form->lblCntChar.setPeer(&window);
    type(L"12");
    expectReport(L"txtEdit_Change", 100, kAutomation);
    form->lblCntChar.setPeer(nullptr);
    form->onHideMe = [] { throw util::RuntimeError(kAutomation); };
    click(form->cmdSave);
    expectReport(L"cmdSave_Click", 100, kAutomation);
    click(form->cmdCancel);
    expectReport(L"cmdCancel_Click", 100, kAutomation);
    form->onHideMe = nullptr;
    form->onUnload = [] { throw util::RuntimeError(kAutomation); };
    form->ClearChange();
    form->Show();
    form->Unload();
    expectReport(L"Form_Unload", 200, kAutomation);
    form->onUnload = nullptr;
    form->Show();
    files.readOnly = true;
    EXPECT_TRUE(form->Unload());
    expectReport(L"Form_Unload", 100, kPathFileAccess);
    click(form->cmdPrint);
    expectReport(L"cmdPrint_Click", 200, kPathFileAccess);
    EXPECT_THAT(platform.programs, testing::IsEmpty()) << "an older print file must not be shown for this text";
    files.readOnly = false;
    platform.programsFail = true;
    click(form->cmdPrint);
    expectReport(L"cmdPrint_Click", 300, util::error_number::kFileNotFound);
    platform.formsFail = true;
    form->Show();
    expectReport(L"Show", 100, util::error_number::kOutOfMemory);
    initNotes(L"text");
    expectReport(L"InitForm", 500, util::error_number::kOutOfMemory);
    EXPECT_EQ(form->text(), L"text");
    platform.formsFail = false;
    form->Show();
    EXPECT_TRUE(form->isVisible());
}

}  // namespace
}  // namespace kv::forms
