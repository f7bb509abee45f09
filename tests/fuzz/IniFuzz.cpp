// INI files of any text: which settings they contain, what is written into them, and forms that are restored from them.
//
// The first line of an input is the key of a form's place, the rest is the INI file. Its first three lines are also
// used as a key, a section and a value to write.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "formenv/FileServices.h"
#include "forms/FormPlacement.h"
#include "headless/HeadlessDesktop.h"
#include "headless/TextIniSource.h"
#include "tests/fuzz/Fuzz.h"
#include "util/Ini.h"
#include "util/RuntimeError.h"
#include "util/Text.h"

namespace kv::headless {
namespace {

using formenv::Place;
using fuzz::require;
using util::IniText;

constexpr wchar_t kFile[] = L"C:\\fuzz.ini";

struct Setting {
    std::wstring section;
    std::wstring key;
    std::wstring value;
};

std::wstring trimmed(std::wstring text) {
    while (!text.empty() && (text.back() == L' ' || text.back() == L'\t'))
        text.pop_back();
    while (!text.empty() && (text.front() == L' ' || text.front() == L'\t'))
        text.erase(text.begin());
    return text;
}

std::wstring unquoted(std::wstring value) {
    for (const wchar_t quote : {L'"', L'\''}) {
        if (value.size() > 1 && value.front() == quote && value.back() == quote)
            return value.substr(1, value.size() - 2);
    }
    return value;
}

/// Equal for names that differ in case only. No name contains a line feed.
std::wstring idOf(const std::wstring& section, const std::wstring& key) {
    return util::foldCase(section) + L'\n' + util::foldCase(key);
}

using Settings = std::map<std::wstring, Setting>;  // by idOf

/// Every setting of the file, read line by line.
Settings settingsOf(std::wstring text) {
    if (!text.empty() && text.front() == 0xFEFF)
        text.erase(text.begin());
    std::ranges::replace(text, L'\r', L'\n');
    Settings settings;
    std::wstring section;
    bool inSection = false;
    for (std::wstring_view rest = text; !rest.empty();) {
        const std::wstring line = trimmed(std::wstring(fuzz::cutUntil(rest, L'\n')));
        if (line.empty() || line[0] == L';')
            continue;
        if (line[0] == L'[') {
            const std::size_t end = line.find(L']');
            section = end == std::wstring::npos ? section : trimmed(line.substr(1, end - 1));
            inSection = inSection || end != std::wstring::npos;
            continue;
        }
        std::wstring_view value = line;
        const std::wstring key = trimmed(std::wstring(fuzz::cutUntil(value, L'=')));
        if (inSection && !key.empty() && line.find(L'=') != std::wstring::npos)
            settings.try_emplace(idOf(section, key), Setting{section, key, unquoted(trimmed(std::wstring(value)))});
    }
    return settings;
}

/// The name in capitals, except for letters such as the dotless i, whose capital is that of another letter.
std::wstring inOtherCase(std::wstring name) {
    for (wchar_t& c : name) {
        if (util::foldCase(util::upperCase(c)) == util::foldCase(c))
            c = util::upperCase(c);
    }
    return name;
}

/// Each key in each section: a setting, or nothing.
void checkReading(const IniText& ini, const Settings& settings) {
    for (const auto& [keyId, one] : settings) {
        for (const auto& [sectionId, other] : settings) {
            const auto expected = settings.find(idOf(other.section, one.key));
            const std::wstring key = inOtherCase(one.key);
            const std::optional<std::wstring> value = ini.find(L" " + key, inOtherCase(other.section) + L"\t");
            require(value.has_value() == (expected != settings.end()), "a setting is in its own section only");
            require(!value || *value == expected->second.value, "the first setting of a name counts");
        }
    }
}

/// The protected rules of all sources.
class Rules final : public util::IniSource {
  public:
    std::optional<std::wstring> read(std::wstring_view, std::wstring_view, std::wstring_view) override { return {}; }
    using IniSource::demandWritable;
    using IniSource::written;
};

bool writable(const Setting& setting) {
    try {
        Rules::demandWritable(setting.key, setting.section, setting.value);
        return true;
    } catch (const util::RuntimeError& error) {
        require(error.number() == util::error_number::kPathFileAccess, "a refused setting is error 75");
        return false;
    }
}

/// Everything that may be written is read back, from memory and as the line of a file.
void checkWriting(TextIniSource& source, const Settings& before, const Setting& setting) {
    const bool accepted = writable(setting);
    try {
        source.write(setting.key, setting.section, kFile, setting.value);
        require(accepted, "what would not be read back is refused");
    } catch (const util::RuntimeError& error) {
        require(!accepted && error.number() == util::error_number::kPathFileAccess, "only that is refused");
    }
    for (const auto& [id, other] : before) {
        const bool replaced = accepted && id == idOf(setting.section, setting.key);
        require(source.read(other.key, other.section, kFile) == (replaced ? setting.value : other.value),
                "writing changes this setting only");
    }
    if (!accepted)
        return;
    require(source.read(setting.key, setting.section, kFile) == setting.value, "a written setting is read back");
    const std::wstring line = setting.key + L"=" + Rules::written(setting.value);
    const IniText file(L"[" + setting.section + L"]\r\n" + line + L"\r\n[other]\r\n");
    require(file.find(setting.key, setting.section) == setting.value, "a written line is read back");
}

/// Settings in memory; nothing else is used by the placement of forms.
class SettingFiles final : public formenv::FileServices {
  public:
    explicit SettingFiles(TextIniSource& settings) : settings_(settings) {}
    std::wstring scratchFolder() override { return {}; }
    void writeFile(const std::wstring&, const std::string&) override {}
    void deleteFile(const std::wstring&) noexcept override {}
    bool fileExists(const std::wstring&) override { return false; }
    void clearClipboard() override {}
    void bitmapFileToClipboard(const std::wstring&) override {}
    std::optional<std::wstring> readSetting(const std::wstring& key, const std::wstring& section,
                                            const std::wstring& file) override {
        return settings_.read(key, section, file);
    }
    void writeSetting(const std::wstring& key, const std::wstring& section, const std::wstring& file,
                      const std::wstring& value) override {
        settings_.write(key, section, file, value);
    }
    std::wstring printFolder() override { return {}; }
    std::wstring placementFile() override { return kFile; }

  private:
    TextIniSource& settings_;
};

class PlainForm final : public forms::PlacedForm {
  public:
    [[nodiscard]] std::intptr_t hWnd() const override { return 0; }
    [[nodiscard]] Place place() const override { return at; }
    void move(const Place& place) override {
        at = place;
        ++moves;
    }
    [[nodiscard]] formenv::WindowState windowState() const override { return state; }
    void setWindowState(formenv::WindowState value) override { state = value; }

    Place at{-500.0, -500.0, 6000.0, 4500.0};
    formenv::WindowState state = formenv::WindowState::Normal;
    int moves = 0;
};

/// One monitor, two side by side with a hole below one of them, or one in portrait format left of a high-resolution
/// one.
void arrange(HeadlessDesktop& desktop, int arrangement) {
    desktop.monitors.clear();
    desktop.dots = arrangement == 2 ? 144 : 96;
    desktop.add(arrangement == 2 ? formenv::ScreenRect{0, 0, 3840, 2160} : formenv::ScreenRect{0, 0, 1920, 1080}, 40);
    if (arrangement == 1)
        desktop.add({1920, 100, 3200, 1124});
    if (arrangement == 2)
        desktop.add({-1080, -200, 0, 1720}, 60);
}

/// The pixels of the title bar's middle line that are in a work area. The work areas do not overlap.
double shownPixels(const HeadlessDesktop& desktop, const Place& place) {
    const double pixel = 1440.0 / desktop.dots;
    const double middle = (place.top + 225.0) / pixel;
    double shown = 0.0;
    for (const HeadlessDesktop::Monitor& monitor : desktop.monitors) {
        const formenv::ScreenRect& work = monitor.info.work;
        if (middle >= work.top && middle < work.bottom)
            shown += std::max(0.0, std::min<double>(work.right, (place.left + place.width) / pixel) -
                                       std::max<double>(work.left, place.left / pixel));
    }
    return shown;
}

void checkRestored(const HeadlessDesktop& desktop, const PlainForm& form) {
    require(form.moves == 1, "a form is moved once");
    require(form.state == formenv::WindowState::Normal || form.state == formenv::WindowState::Maximized,
            "a restored form is not hidden");
    require(form.at.width >= 2400.0 && form.at.height >= 1500.0, "a restored form is not tiny");
    require(form.at.width <= 100'000.0 && form.at.height <= 100'000.0, "a restored form fits on the screens");
    const double grip = std::min(form.at.width, 3000.0) * desktop.dots / 1440.0;
    require(shownPixels(desktop, form.at) >= grip - 2.0, "the user can reach the title bar");
}

bool isWhole(const Place& place) {
    return std::ranges::all_of(std::array{place.left, place.top, place.width, place.height},
                               [](double twips) { return twips == std::round(twips); });
}

void checkPlacement(TextIniSource& source, const std::wstring& key) {
    SettingFiles files(source);
    HeadlessDesktop desktop;
    const forms::PlacementStore store{files, desktop, kFile, key};
    for (int arrangement = 0; arrangement < 3; ++arrangement) {
        arrange(desktop, arrangement);
        PlainForm form;
        RestoreFormPlacement(form, store);
        checkRestored(desktop, form);
        require(SaveFormPlacement(form, store), "a place is saved under any key");
        PlainForm again;
        RestoreFormPlacement(again, store);
        require(again.at == form.at || !isWhole(form.at), "a saved place is restored");
        require(again.state == form.state, "a saved state is restored");
        // Whole numbers are saved, so the second place is one.
        require(SaveFormPlacement(again, store), "a place is saved again");
        PlainForm third;
        RestoreFormPlacement(third, store);
        require(third.at == again.at, "a restored place is restored again");
    }
}

void check(std::string_view bytes) {
    const std::wstring input = fuzz::widened(bytes);
    std::wstring_view text = input;
    const std::wstring key(fuzz::cutUntil(text, L'\n'));
    const IniText ini(text);
    const Settings settings = settingsOf(std::wstring(text));
    checkReading(ini, settings);
    TextIniSource source;
    source.setFile(kFile, text);
    std::wstring_view rest = text;
    Setting setting;
    for (std::wstring* part : {&setting.key, &setting.section, &setting.value})
        *part = fuzz::cutUntil(rest, L'\n');
    checkWriting(source, settings, setting);
    checkPlacement(source, key);
}

}  // namespace
}  // namespace kv::headless

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kv::headless::check(std::string(data, data + size));
    return 0;
}
