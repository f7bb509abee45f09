// The text window: its parts, its text and its buttons.
#include <algorithm>
#include <cmath>

#include "tests/unit/TextEditorFixture.h"

namespace kv::forms {
namespace {

using formenv::MessageAnswer;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(TextEditor, HasItsCaptionsAndNoWindowAtFirst) {
    EXPECT_EQ(form->cmdSave.caption(), L"&Save");
    EXPECT_EQ(form->cmdPrint.caption(), L"&Print");
    EXPECT_EQ(form->cmdCancel.caption(), L"&Cancel");
    EXPECT_EQ(form->chkEnabled.caption(), L"Editing Enabled");
    EXPECT_EQ(form->lblCntChar.caption(), L"0 characters");
    EXPECT_TRUE(form->txtEdit.multiLine);
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(form->changed());
    EXPECT_FALSE(form->cancelled());
    EXPECT_THAT(platform.formCalls, IsEmpty());
}

TEST_F(TextEditor, InitFormSetsEverythingUp) {
    form->InitForm(L"Mouse Information", L"Close", false, false, false, L"two\r\nlines", true, kIni);
    EXPECT_EQ(form->Mode(), L"Mouse Information");
    EXPECT_EQ(form->sINI(), kIni);
    EXPECT_EQ(form->form().caption(), L"Mouse Information");
    EXPECT_EQ(form->cmdSave.caption(), L"Close");
    EXPECT_TRUE(form->cmdSave.visible());
    EXPECT_TRUE(form->cmdPrint.visible());
    EXPECT_FALSE(form->cmdCancel.visible());
    EXPECT_FALSE(form->chkEnabled.visible());
    EXPECT_FALSE(form->lblCntChar.visible());
    EXPECT_EQ(form->text(), L"two\r\nlines");
    EXPECT_TRUE(form->txtEdit.locked());
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(form->changed());
}

TEST_F(TextEditor, InitFormShowsWhatTheLastOneHid) {
    form->InitForm(L"A", L"Close", false, false, false, L"", true, kIni);
    initNotes();
    EXPECT_TRUE(form->cmdCancel.visible());
    EXPECT_TRUE(form->chkEnabled.visible());
    EXPECT_TRUE(form->lblCntChar.visible());
    EXPECT_FALSE(form->txtEdit.locked());
}

TEST_F(TextEditor, InitFormPlacesTheFormLast) {
    files.settings.setFile(kIni, L"[CONFIG]\nNotesLeft=3000\nNotesTop=1500\nNotesWidth=9000\nNotesHeight=6000\n");
    form->txtEdit.onChange = [this] { note(form->form().width() == 9000.0 ? "placed" : "not placed"); };
    initNotes(L"text");
    EXPECT_THAT(heard, ElementsAre("not placed"));
    EXPECT_EQ(form->form().place(), (formenv::Place{3000.0, 1500.0, 9000.0, 6000.0}));
}

TEST_F(TextEditor, AFormWithoutASavedPlaceIsInTheMiddle) {
    const double width = form->form().width();
    initNotes();
    EXPECT_EQ(form->form().width(), width);
    EXPECT_NEAR(form->form().left() + width / 2.0, 1920.0 * 15.0 / 2.0, 15.0);
}

TEST_F(TextEditor, ResizingKeepsTheMargins) {
    const double right = rightSpace();
    const double bottom = bottomSpace();
    const double cancel = form->form().scaleHeight() - form->cmdCancel.top();
    initNotes();
    for (const auto& [width, height] : {std::pair{12000.0, 9000.0}, std::pair{7000.0, 2500.0}}) {
        form->form().move({100.0, 100.0, width, height});
        EXPECT_NEAR(rightSpace(), right, 1e-9);
        EXPECT_NEAR(bottomSpace(), bottom, 1e-9);
        EXPECT_EQ(form->txtEdit.left(), 120.0);
        EXPECT_EQ(form->form().scaleHeight() - form->cmdCancel.top(), cancel);
        for (const formenv::Widget* widget : std::initializer_list<formenv::Widget*>{
                 &form->cmdSave, &form->chkEnabled, &form->lblCntChar, &form->cmdPrint})
            EXPECT_EQ(widget->top(), form->cmdCancel.top());
    }
}

TEST_F(TextEditor, AFormSmallerThanItsMarginsHasNoTextLeft) {
    initNotes();
    form->form().move({0.0, 0.0, 200.0, 300.0});
    EXPECT_EQ(form->txtEdit.width(), 0.0);
    EXPECT_EQ(form->txtEdit.height(), 0.0);
    form->form().move({0.0, 0.0, 6900.0, 4500.0});
    EXPECT_GT(form->txtEdit.width(), 6000.0);
}

TEST_F(TextEditor, AnEditSetsTheFlagsAndCountsWithoutBlanksAtTheEnds) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"12345", L"5 chars"}, {L"  two words   ", L"9 chars"}, {L" \r\n ", L"2 chars"}, {L"     ", L"0 chars"}};
    for (const auto& [text, count] : cases) {
        initNotes();
        EXPECT_FALSE(form->changed() || form->unsaved());
        type(text);
        EXPECT_TRUE(form->changed() && form->unsaved());
        EXPECT_EQ(form->lblCntChar.caption(), count);
    }
}

TEST_F(TextEditor, ATextFromInitFormIsCountedAndIsNoChange) {
    initNotes(L"seven ..");
    EXPECT_EQ(form->lblCntChar.caption(), L"8 chars");
    EXPECT_FALSE(form->changed());
    EXPECT_FALSE(form->unsaved());
}

TEST_F(TextEditor, ATextSetByTheProgramIsAChangeUnlessItIsTheSame) {
    initNotes(L"one");
    form->setText(L"one");
    EXPECT_FALSE(form->changed());
    form->setText(L"other");
    EXPECT_TRUE(form->changed());
    EXPECT_EQ(form->text(), L"other");
    EXPECT_EQ(form->lblCntChar.caption(), L"5 chars");
    form->ClearChange();
    EXPECT_FALSE(form->changed());
    EXPECT_FALSE(form->unsaved());
}

TEST_F(TextEditor, SaveRaisesHideMeBeforeTheFormHides) {
    initNotes(L"text");
    listen();
    form->Show();
    type(L"text, and more");
    click(form->cmdSave);
    EXPECT_THAT(heard, ElementsAre("HideMe shown"));
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(form->cancelled());
    EXPECT_TRUE(form->changed());
    EXPECT_FALSE(form->unsaved());
    EXPECT_EQ(form->text(), L"text, and more");
    EXPECT_TRUE(form->Unload());
    EXPECT_THAT(platform.messages, IsEmpty());
}

TEST_F(TextEditor, CancelledStaysTrueUntilASave) {
    initNotes(L"text");
    listen();
    form->Show();
    click(form->cmdCancel);
    EXPECT_THAT(heard, ElementsAre("HideMe shown"));
    EXPECT_TRUE(form->cancelled());
    EXPECT_FALSE(form->isVisible());
    form->Show();
    EXPECT_TRUE(form->isVisible());
    click(form->cmdSave);
    EXPECT_FALSE(form->cancelled());
}

TEST_F(TextEditor, EscapeActsAsCancelEvenWithoutAButton) {
    form->InitForm(L"A", L"Close", false, false, false, L"", true, kIni);
    listen();
    form->Show();
    EXPECT_FALSE(form->form().keyPressed(13, 0));
    EXPECT_TRUE(form->isVisible());
    EXPECT_TRUE(form->form().keyPressed(27, 0));
    EXPECT_THAT(heard, ElementsAre("HideMe shown"));
    EXPECT_TRUE(form->cancelled());
    EXPECT_FALSE(form->isVisible());
}

TEST_F(TextEditor, TheCheckBoxSetsTheSettingOfAllFormsAndUnlocksNothing) {
    form->InitForm(L"A", L"&Save", true, true, true, L"text", true, kIni);
    form->chkEnabled.setValue(1);
    EXPECT_EQ(frmTextEditor::nEditingEnabled(), 0) << "only a click counts";
    click(form->chkEnabled);
    EXPECT_EQ(frmTextEditor::nEditingEnabled(), 1);
    EXPECT_TRUE(form->txtEdit.locked());
    form.reset();
    EXPECT_EQ(frmTextEditor::nEditingEnabled(), 1);
    form = std::make_unique<frmTextEditor>(platform, files, errors);
    click(form->chkEnabled);
    EXPECT_EQ(frmTextEditor::nEditingEnabled(), 0);
}

TEST_F(TextEditor, PrintWritesTheTextAndStartsTheViewer) {
    initNotes(L"Gr\u00F6\u00DFe \u0416 \u20AC\r\nline 2");
    files.files[L"C:\\Work\\KVPrnFil.TXT"] = "something much longer from an earlier printing, to be replaced";
    click(form->cmdPrint);
    EXPECT_EQ(files.files.at(L"C:\\Work\\KVPrnFil.TXT"),
              "\xEF\xBB\xBFGr\xC3\xB6\xC3\x9F"
              "e \xD0\x96 \xE2\x82\xAC\r\nline 2");
    EXPECT_THAT(platform.programs, ElementsAre(L"NOTEPAD C:\\Work\\KVPrnFil.TXT"));
}

TEST_F(TextEditor, TheViewersCommandQuotesAPathWithBlanks) {
    EXPECT_EQ(forms::viewerCommand(L"WRITE", L"C:\\a\\b.txt"), L"WRITE C:\\a\\b.txt");
    EXPECT_EQ(forms::viewerCommand(L"WRITE", L"C:\\my files\\b.txt"), L"WRITE \"C:\\my files\\b.txt\"");
    EXPECT_EQ(forms::viewerCommand(L"", L"b.txt"), L"NOTEPAD b.txt");
    EXPECT_EQ(forms::viewerCommand(L"  ", L"b.txt"), L"NOTEPAD b.txt");
}

TEST_F(TextEditor, SettingTheModeChangesTheCaption) {
    initNotes();
    form->setMode(L"Other");
    EXPECT_EQ(form->form().caption(), L"Other");
    form->setSINI(L"C:\\Second.INI");
    form->Unload();
    EXPECT_NE(saved(L"OtherLeft", L"C:\\Second.INI"), L"(none)");
    EXPECT_EQ(saved(L"NotesLeft"), L"(none)");
}

}  // namespace
}  // namespace kv::forms
