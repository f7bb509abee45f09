// The text window: closing, the question about changes, the saved place, and destruction.
#include <stdexcept>

#include "tests/unit/TextEditorFixture.h"

namespace kv::forms {
namespace {

using formenv::MessageAnswer;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(TextEditor, ClosingWithoutAnyEditAsksNothing) {
    initNotes(L"text");
    listen();
    form->Show();
    EXPECT_TRUE(form->Unload());
    EXPECT_THAT(platform.messages, IsEmpty());
    EXPECT_THAT(heard, ElementsAre("Unload"));
    EXPECT_FALSE(form->cancelled());
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(form->form().loaded());
}

TEST_F(TextEditor, ClosingAfterAnEditAsks) {
    initNotes(L"text");
    form->Show();
    type(L"text!");
    platform.answer = MessageAnswer::No;
    EXPECT_FALSE(form->Unload());
    ASSERT_EQ(platform.messages.size(), 1U);
    const auto& question = platform.messages[0];
    EXPECT_EQ(question.title, L"Abandon Changes?");
    EXPECT_EQ(question.text,
              L"You changed the text and have not saved the changes.\r\n\r\nDo you want to ABANDON the changes?\r\n\r\n"
              L"Click YES to ABANDON the changes\r\nClick NO to return to editing the text");
    EXPECT_EQ(question.icon, formenv::MessageIcon::Question);
    EXPECT_EQ(question.buttons, formenv::MessageButtons::YesNoDefaultNo);
    EXPECT_EQ(question.before, form->form().hWnd());
    EXPECT_NE(question.before, 0);
}

TEST_F(TextEditor, AnyAnswerButYesKeepsTheFormWithItsText) {
    initNotes(L"text");
    listen();
    form->Show();
    type(L"text!");
    for (const MessageAnswer answer : {MessageAnswer::No, MessageAnswer::Ok}) {
        platform.answer = answer;
        EXPECT_FALSE(form->Unload());
        EXPECT_TRUE(form->isVisible());
        EXPECT_EQ(form->text(), L"text!");
        EXPECT_FALSE(form->cancelled());
    }
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_EQ(saved(L"Left"), L"(none)");
}

TEST_F(TextEditor, YesAbandonsTheChanges) {
    initNotes(L"text");
    listen();
    form->Show();
    type(L"text!");
    platform.answer = MessageAnswer::Yes;
    EXPECT_TRUE(form->Unload());
    EXPECT_TRUE(form->cancelled());
    EXPECT_THAT(heard, ElementsAre("Unload"));
    EXPECT_FALSE(form->isVisible());
}

TEST_F(TextEditor, OnlyAVisibleButtonThatSaysSaveMakesClosingAsk) {
    const std::tuple<const wchar_t*, bool, std::size_t> cases[] = {
        {L"Save", true, 1},    {L"&Save", true, 1}, {L"SAVE", true, 1}, {L"&sAvE", true, 1}, {L"Close", true, 0},
        {L"Save as", true, 0}, {L"S&ave", true, 0}, {L"", true, 0},     {L"&Save", false, 0}};
    platform.answer = MessageAnswer::Yes;
    for (const auto& [caption, visible, questions] : cases) {
        initNotes(L"", caption);
        form->cmdSave.setVisible(visible);
        type(L"x");
        platform.messages.clear();
        EXPECT_TRUE(form->Unload());
        EXPECT_EQ(platform.messages.size(), questions) << testing::PrintToString(std::wstring(caption));
    }
}

TEST_F(TextEditor, ThePlacementIsSavedUnderBothKeys) {
    initNotes();
    form->Show();
    form->form().movedByUser({1500.0, 900.0, 7500.0, 5100.0}, formenv::WindowState::Maximized);
    form->Unload();
    EXPECT_EQ(saved(L"Left"), L"1500");
    EXPECT_EQ(saved(L"Width"), L"7500");
    EXPECT_EQ(saved(L"NotesLeft"), L"1500");
    EXPECT_EQ(saved(L"NotesWidth"), L"7500");
    EXPECT_EQ(saved(L"NotesHeight"), L"5100");
    EXPECT_EQ(saved(L"NotesWindowState"), L"2");
}

TEST_F(TextEditor, AnEmptyModeSavesUnderTheEmptyKeyOnly) {
    form->InitForm(L"", L"&Save", true, true, true, L"", false, kIni);
    form->form().movedByUser({1500.0, 900.0, 7500.0, 5100.0}, formenv::WindowState::Normal);
    form->Unload();
    EXPECT_EQ(saved(L"Left"), L"1500");
    EXPECT_EQ(files.keys.size(), 6U) << "one set of settings";
}

TEST_F(TextEditor, WithoutAFileOfItsOwnThePlacementGoesToTheCommonOne) {
    form->InitForm(L"Notes", L"&Save", true, true, true, L"", false, L"");
    form->Unload();
    EXPECT_NE(saved(L"NotesLeft", L"C:\\Places.INI"), L"(none)");
}

TEST_F(TextEditor, ADestroyedFormKeepsItsPlaceAndAsksNothing) {
    initNotes(L"text");
    listen();
    form->Show();
    type(L"text!");
    form->form().movedByUser({1500.0, 900.0, 7500.0, 5100.0}, formenv::WindowState::Normal);
    form.reset();
    EXPECT_THAT(platform.messages, IsEmpty());
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_EQ(saved(L"NotesLeft"), L"1500");
    EXPECT_EQ(platform.formCalls.back(), "destroy");
}

TEST_F(TextEditor, AFormThatWasNeverShownLeavesTheSettingsAlone) {
    initNotes();
    form.reset();
    EXPECT_EQ(saved(L"Left"), L"(none)");
}

TEST_F(TextEditor, ShowingDoesNotRepeatItself) {
    initNotes();
    form->Show();
    form->Show();
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(std::ranges::count(platform.formCalls, "show"), 1);
    form->Hide();
    form->Hide();
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(std::ranges::count(platform.formCalls, "hide"), 1);
}

TEST_F(TextEditor, CanBeShownAgainAfterItWasClosed) {
    initNotes(L"text");
    form->Show();
    form->Unload();
    form->Show();
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(form->text(), L"text");
    EXPECT_EQ(std::ranges::count(platform.formCalls, "create"), 2);
}

TEST_F(TextEditor, AWindowThatTheSystemDestroysRaisesUnloadAndAsksNothing) {
    initNotes(L"text");
    listen();
    form->Show();
    type(L"text!");
    form->form().windowLost();
    EXPECT_THAT(platform.messages, IsEmpty());
    EXPECT_THAT(heard, ElementsAre("Unload"));
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(form->text(), L"text!");
    EXPECT_NE(saved(L"NotesLeft"), L"(none)");
}

TEST_F(TextEditor, TheSystemMayDestroyTheWindowDuringTheQuestion) {
    initNotes(L"text");
    listen();
    form->Show();
    type(L"text!");
    platform.onMessage = [this] { form->form().windowLost(); };
    platform.answer = MessageAnswer::Yes;
    EXPECT_TRUE(form->Unload());
    EXPECT_THAT(heard, ElementsAre("Unload"));
    EXPECT_FALSE(form->isVisible());
}

TEST_F(TextEditor, TheCloseButtonDoesNothingDuringTheQuestion) {
    initNotes(L"text");
    form->Show();
    type(L"text!");
    platform.onMessage = [this] { EXPECT_FALSE(form->Unload()); };
    platform.answer = MessageAnswer::No;
    EXPECT_FALSE(form->Unload());
    EXPECT_EQ(platform.messages.size(), 1U);
    platform.onMessage = nullptr;
    EXPECT_FALSE(form->Unload()) << "and asks again afterwards";
    EXPECT_EQ(platform.messages.size(), 2U);
}

// An error in any of these would be a use of freed memory, which the sanitizers report.
TEST_F(TextEditor, AHandlerMayDestroyTheForm) {
    initNotes();
    form->Show();
    form->onHideMe = [this] { form.reset(); };
    form->form().keyPressed(27, 0);
    EXPECT_FALSE(form);

    form = std::make_unique<frmTextEditor>(platform, files, errors);
    initNotes();
    form->Show();
    form->onUnload = [this] { form.reset(); };
    form->Unload();
    EXPECT_FALSE(form);

    form = std::make_unique<frmTextEditor>(platform, files, errors);
    initNotes();
    form->Show();
    type(L"x");
    platform.onMessage = [this] { form.reset(); };
    platform.answer = MessageAnswer::No;
    EXPECT_TRUE(form->Unload()) << "it is gone, whatever the answer";
    EXPECT_FALSE(form);
}

TEST_F(TextEditor, AFailedHandlerIsReportedAndTheFormHides) {
    initNotes();
    form->Show();
    form->onHideMe = [] { throw std::runtime_error("host"); };
    click(form->cmdSave);
    expectReport(L"cmdSave_Click", 100, util::error_number::kInternal);
    EXPECT_FALSE(form->isVisible());
}

}  // namespace
}  // namespace kv::forms
