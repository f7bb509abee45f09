// A text window on a platform without a screen.
#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "forms/frmTextEditor.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::forms {

inline constexpr wchar_t kIni[] = L"C:\\Editor.INI";

/// Records the names of all settings that were written.
class EditorFiles final : public control::MemoryFiles {
  public:
    void writeSetting(const std::wstring& key, const std::wstring& section, const std::wstring& file,
                      const std::wstring& value) override {
        MemoryFiles::writeSetting(key, section, file, value);
        keys.push_back(key);
    }
    std::vector<std::wstring> keys;
};

class TextEditor : public testing::Test {
  protected:
    /// Sets the window up for notes, with all its parts.
    void initNotes(const std::wstring& text = L"", const std::wstring& save = L"&Save") {
        form->InitForm(L"Notes", save, true, true, true, text, false, kIni);
    }
    void type(const std::wstring& text) { form->txtEdit.typed(text); }
    static void click(const formenv::Widget& widget) { widget.onClick(); }
    std::wstring saved(const std::wstring& name, const std::wstring& file = kIni) {
        return files.settings.read(name, L"CONFIG", file).value_or(L"(none)");
    }
    void note(const char* what) { heard.emplace_back(what); }
    void listen() {
        form->onHideMe = [this] { note(form->isVisible() ? "HideMe shown" : "HideMe hidden"); };
        form->onUnload = [this] { note("Unload"); };
    }
    /// One error was reported since the last call, by this procedure at this step.
    void expectReport(const std::wstring& procedure, int flag, int number) {
        ASSERT_EQ(errors.reports.size(), 1U) << testing::PrintToString(procedure);
        EXPECT_EQ(errors.reports[0].procedure, procedure);
        EXPECT_EQ(errors.reports[0].flag, flag) << testing::PrintToString(procedure);
        EXPECT_EQ(errors.reports[0].number, number) << testing::PrintToString(procedure);
        errors.reports.clear();
    }
    double rightSpace() { return form->form().scaleWidth() - form->txtEdit.left() - form->txtEdit.width(); }
    double bottomSpace() { return form->form().scaleHeight() - form->txtEdit.top() - form->txtEdit.height(); }

    void TearDown() override {
        for (const auto& report : errors.reports)
            ADD_FAILURE() << "error " << report.number << " in " << testing::PrintToString(report.procedure);
    }

    headless::HeadlessPlatform platform;
    EditorFiles files;
    control::RecordingErrors errors;
    std::unique_ptr<forms::frmTextEditor> form = std::make_unique<forms::frmTextEditor>(platform, files, errors);
    std::vector<std::string> heard;
};

}  // namespace kv::forms
