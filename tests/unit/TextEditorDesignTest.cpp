// The text window's design, and the names under which its procedures report errors.
#include "tests/unit/TextEditorFixture.h"

namespace kv::forms {
namespace {

using util::error_number::kAutomation;

TEST_F(TextEditor, ThePartsAreWhereTheyWereDesigned) {
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
    EXPECT_EQ(form->txtEdit.font().face, L"Courier New") << "columns need letters of one width";
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

/// A widget's window that cannot show what it is told.
class FailingPeer final : public formenv::Peer {
  public:
    void changed(formenv::Change) override { throw util::RuntimeError(kAutomation); }
};

class TextEditorErrors : public TextEditor {
  protected:
    void expectReport(const std::wstring& procedure, int flag) {
        ASSERT_EQ(errors.reports.size(), 1U) << testing::PrintToString(procedure);
        EXPECT_EQ(errors.reports[0].procedure, procedure);
        EXPECT_EQ(errors.reports[0].flag, flag) << testing::PrintToString(procedure);
        EXPECT_EQ(errors.reports[0].number, kAutomation);
        errors.reports.clear();
    }
    FailingPeer window;
};

TEST_F(TextEditorErrors, NameTheProcedureAndItsStep) {
    initNotes();
    form->txtEdit.setPeer(&window);
    form->setText(L"other");
    expectReport(L"setText", 100);
    form->InitForm(L"Notes", L"&Save", true, true, true, L"another", false, kIni);
    expectReport(L"InitForm", 300);
    form->form().move({0.0, 0.0, 9000.0, 6000.0});
    expectReport(L"FormResize", 100);
    form->txtEdit.setPeer(nullptr);
    form->cmdCancel.setPeer(&window);
    form->form().move({0.0, 0.0, 9000.0, 7000.0});
    expectReport(L"FormResize", 200);
    form->InitForm(L"Notes", L"&Save", false, true, true, L"", false, kIni);
    expectReport(L"InitForm", 200);
    form->cmdCancel.setPeer(nullptr);
    form->lblCntChar.setPeer(&window);
    type(L"12");
    expectReport(L"txtEdit_Change", 100);
    form->lblCntChar.setPeer(nullptr);
    form->onHideMe = [] { throw util::RuntimeError(kAutomation); };
    click(form->cmdSave);
    expectReport(L"cmdSave_Click", 100);
    click(form->cmdCancel);
    expectReport(L"cmdCancel_Click", 100);
    form->onHideMe = nullptr;
    form->onUnload = [] { throw util::RuntimeError(kAutomation); };
    form->ClearChange();
    form->Show();
    form->Unload();
    expectReport(L"Form_Unload", 200);
    form->onUnload = nullptr;
}

}  // namespace
}  // namespace kv::forms
