// Forms and text boxes as models, access keys, and text as bytes.
#include "formenv/Form.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "headless/HeadlessPlatform.h"
#include "tests/unit/WidgetFixture.h"
#include "util/RuntimeError.h"
#include "util/Utf8.h"

namespace {

using namespace kv;
using formenv::WindowState;
using testing::ElementsAre;
using testing::IsEmpty;

class FormModel : public testing::Test {
  protected:
    headless::HeadlessPlatform platform;
    formenv::Form form{platform, L"frmTest"};
};

TEST_F(FormModel, KnowsItsClientAreaBeforeThereIsAWindow) {
    int resized = 0;
    form.onResize = [&] { ++resized; };
    form.move({0.0, 0.0, 3180.0, 2540.0});
    EXPECT_EQ(form.scaleWidth(), 3000.0);
    EXPECT_EQ(form.scaleHeight(), 2000.0);
    EXPECT_EQ(resized, 1);
    form.move({600.0, 0.0, 3180.0, 2540.0});
    EXPECT_EQ(resized, 1) << "moved, not resized";
    form.move({0.0, 0.0, 10.0, 10.0});
    EXPECT_EQ(form.scaleWidth(), 0.0);
}

TEST_F(FormModel, IsLoadedShownHiddenAndUnloaded) {
    EXPECT_FALSE(form.loaded());
    EXPECT_EQ(form.hWnd(), 0);
    form.show();
    EXPECT_TRUE(form.visible());
    EXPECT_NE(form.hWnd(), 0);
    form.hide();
    form.show();
    EXPECT_TRUE(form.unload());
    EXPECT_FALSE(form.visible());
    EXPECT_FALSE(form.loaded());
    EXPECT_THAT(platform.formCalls, ElementsAre("create", "show", "hide", "show", "destroy"));
    EXPECT_TRUE(form.unload()) << "gone already";
}

TEST_F(FormModel, TheWindowFollowsItsPlaceAndAStateOnceItIsShown) {
    form.setWindowState(WindowState::Maximized);
    form.load();
    form.setWindowState(WindowState::Normal);
    form.move({10.0, 20.0, 3180.0, 2540.0});
    form.show();
    form.setWindowState(WindowState::Maximized);
    form.setWindowState(WindowState::Maximized);
    EXPECT_THAT(platform.formCalls, ElementsAre("create", "place", "show", "state 2"));
    EXPECT_EQ(form.scaleWidth(), 3000.0);
}

TEST_F(FormModel, WhatTheUserDidIsNotToldBackToTheWindow) {
    form.show();
    platform.formCalls.clear();
    form.movedByUser({1.0, 2.0, 3000.0, 4000.0}, WindowState::Minimized);
    EXPECT_EQ(form.place(), (formenv::Place{1.0, 2.0, 3000.0, 4000.0}));
    EXPECT_EQ(form.windowState(), WindowState::Minimized);
    EXPECT_THAT(platform.formCalls, IsEmpty());
}

TEST_F(FormModel, AQuestionThatFailsLeavesTheFormToBeAskedAgain) {
    form.show();
    form.onQueryUnload = []() -> bool { throw util::RuntimeError(51); };
    EXPECT_THROW(form.unload(), util::RuntimeError);
    EXPECT_TRUE(form.visible());
    form.onQueryUnload = nullptr;
    EXPECT_TRUE(form.unload());
}

TEST_F(FormModel, ItOwnsItsMessageBoxesOnlyWhileItIsShown) {
    form.messageBox(L"a", L"t", formenv::MessageIcon::None, formenv::MessageButtons::Ok);
    form.show();
    form.messageBox(L"b", L"t", formenv::MessageIcon::None, formenv::MessageButtons::Ok);
    ASSERT_EQ(platform.messages.size(), 2U);
    EXPECT_EQ(platform.messages[0].before, 0);
    EXPECT_EQ(platform.messages[1].before, form.hWnd());
}

TEST(TextBoxModel, RaisesChangeWhenItsTextDiffers) {
    formenv::TextBox box(nullptr, L"txt");
    std::vector<std::wstring> heard;
    box.onChange = [&] { heard.push_back(box.text()); };
    box.setText(L"");
    box.setText(L"a");
    box.setText(L"a");
    box.typed(L"a");
    box.typed(L"ab");
    EXPECT_THAT(heard, ElementsAre(L"a", L"ab"));
}

TEST(TextBoxModel, TellsItsWindowOfTheProgramsTextOnly) {
    formenv::TextBox box(nullptr, L"txt");
    formenv::RecordingPeer window;
    box.setPeer(&window);
    box.setText(L"program");
    box.typed(L"user");
    box.setLocked(true);
    box.setLocked(true);
    EXPECT_THAT(window.changes, ElementsAre(formenv::Change::Text, formenv::Change::Locked));
    EXPECT_TRUE(box.locked());
}

TEST(TextBoxModel, HoldsAnyCharacterAndAnyLength) {
    formenv::TextBox box(nullptr, L"txt");
    std::wstring text(100000, L'x');
    text[7] = L'\0';
    text += L"\u0416\U0001F4FB";
    box.setText(text);
    EXPECT_EQ(box.text(), text);
}

TEST(AccessKey, IsTheCharacterAfterTheFirstSingleAmpersand) {
    EXPECT_EQ(formenv::accessKey(L"&Save"), L'S');
    EXPECT_EQ(formenv::accessKey(L"Sa&ve"), L'V');
    EXPECT_EQ(formenv::accessKey(L"R && D &print"), L'P');
    EXPECT_EQ(formenv::accessKey(L"\u00DC&\u00FCben"), L'\u00DC');
    EXPECT_EQ(formenv::accessKey(L"Save"), L'\0');
    EXPECT_EQ(formenv::accessKey(L"R && D"), L'\0');
    EXPECT_EQ(formenv::accessKey(L"Save&"), L'\0');
    EXPECT_EQ(formenv::accessKey(L""), L'\0');
}

TEST(Utf8, WritesEveryCharacter) {
    EXPECT_EQ(util::toUtf8(L"A\u007F"), "A\x7F");
    EXPECT_EQ(util::toUtf8(L"\u0080\u07FF"), "\xC2\x80\xDF\xBF");
    EXPECT_EQ(util::toUtf8(L"\u0800\uFFFD"), "\xE0\xA0\x80\xEF\xBF\xBD");
    EXPECT_EQ(util::toUtf8(L"\U0001F4FB\U0010FFFF"), "\xF0\x9F\x93\xBB\xF4\x8F\xBF\xBF");
    EXPECT_EQ(util::toUtf8(std::wstring(1, L'\0')), std::string(1, '\0'));
}

TEST(Utf8, TheFirstLowSurrogateIsNoHighOne) {
    const std::wstring low(1, static_cast<wchar_t>(0xDC00));
    EXPECT_EQ(util::toUtf8(low + low), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Utf8, ReplacesHalvesWithoutTheOther) {
    const std::wstring high(1, static_cast<wchar_t>(0xD83D));
    const std::wstring low(1, static_cast<wchar_t>(0xDCFB));
    EXPECT_EQ(util::toUtf8(high + L"a"),
              "\xEF\xBF\xBD"
              "a");
    EXPECT_EQ(util::toUtf8(low + L"a"),
              "\xEF\xBF\xBD"
              "a");
    EXPECT_EQ(util::toUtf8(L"a" + high), "a\xEF\xBF\xBD");
    EXPECT_EQ(util::toUtf8(high + low), "\xF0\x9F\x93\xBB") << "pairs count wherever they come from";
}

}  // namespace
