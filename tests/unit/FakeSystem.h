// A system in memory: registry keys, INI files, folders and log files that a test fills and reads, and a user who
// answers at once.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "headless/TextIniSource.h"
#include "util/Product.h"
#include "util/RuntimeError.h"
#include "util/System.h"
#include "util/UserPrompt.h"

namespace kv::util {

class FakeRegistry final : public RegistrySource {
  public:
    [[nodiscard]] std::optional<std::wstring> defaultValue(const std::wstring& key) override {
        asked.push_back(key);
        if (denied.contains(key))
            throw RuntimeError(error_number::kPathFileAccess);
        const auto found = keys.find(key);
        return found == keys.end() ? std::nullopt : std::optional(found->second);
    }
    /// Installs a program of the family.
    void install(const std::wstring& program, const std::wstring& path) { keys[keyOf(program)] = path; }
    static std::wstring keyOf(const std::wstring& program) {
        return L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\" + program;
    }
    std::map<std::wstring, std::wstring> keys;
    std::set<std::wstring> denied;
    std::vector<std::wstring> asked;
};

class FakeIni final : public IniSource {
  public:
    [[nodiscard]] std::optional<std::wstring> read(std::wstring_view key, std::wstring_view section,
                                                   std::wstring_view file) override {
        ++reads;
        if (broken)
            throw RuntimeError(error_number::kInternal);
        return texts.read(key, section, file);
    }
    void write(std::wstring_view key, std::wstring_view section, std::wstring_view file,
               std::wstring_view value) override {
        if (readOnly)
            throw RuntimeError(error_number::kPathFileAccess);
        texts.write(key, section, file, value);
    }
    headless::TextIniSource texts;
    bool broken = false;
    bool readOnly = false;
    int reads = 0;
};

class FakeFiles final : public FileStore {
  public:
    [[nodiscard]] bool folderExists(const std::wstring& path) override { return folders.contains(path); }
    void createFolder(const std::wstring& path) override {
        if (readOnly)
            throw RuntimeError(error_number::kPathFileAccess);
        created.push_back(path);
        folders.insert(path);
    }
    [[nodiscard]] std::wstring userTempFolder() override { return temp; }
    [[nodiscard]] std::wstring userDataFolder() override { return data; }
    void append(const std::wstring& path, const std::wstring& text) override {
        if (onAppend)
            onAppend();
        if (unwritable)
            throw RuntimeError(error_number::kPathFileAccess);
        texts[path] += text;
    }
    std::set<std::wstring> folders;
    std::vector<std::wstring> created;
    std::map<std::wstring, std::wstring> texts;
    std::wstring temp = L"C:\\Users\\me\\Temp\\";
    std::wstring data = L"C:\\Users\\me\\Data";
    bool readOnly = false;
    bool unwritable = false;
    std::function<void()> onAppend;
};

class FakeUser final : public UserPrompt {
  public:
    struct Message {
        std::string kind;
        std::wstring text;
        std::wstring title;
    };
    [[nodiscard]] bool present() const noexcept override { return here; }
    void inform(const std::wstring& text, const std::wstring& title) override { note("inform", text, title); }
    void warn(const std::wstring& text, const std::wstring& title) override { note("warn", text, title); }
    [[nodiscard]] bool confirm(const std::wstring& text, const std::wstring& title) override {
        note("confirm", text, title);
        return answer;
    }
    bool here = true;
    bool answer = true;
    /// What happens while a message is open.
    std::function<void()> meanwhile;
    std::vector<Message> messages;

  private:
    void note(const char* kind, const std::wstring& text, const std::wstring& title) {
        messages.push_back({kind, text, title});
        if (meanwhile)
            meanwhile();
    }
};

/// What a capture writes to the log as it goes on, which is no part of an error's record.
inline bool isCaptureLine(std::wstring_view line) {
    for (const std::wstring_view label : {L"After HdcBitMap", L"Lft ", L"Top ", L"Wid ", L"Hgt "})
        if (line.starts_with(label))
            return true;
    return false;
}

/// The parts put together, with the clock standing at 2026-03-09 17:04:05.
struct FakeSystem {
    static constexpr wchar_t kTime[] = L"2026-03-09 17:04:05:  ";
    static constexpr wchar_t kNotes[] = L"C:\\Host\\KVTecSup.Txt";

    FakeRegistry registry;
    FakeIni ini;
    FakeFiles files;
    System system{
        registry, ini, files, {L"C:\\Host\\", L"Host.exe", L"1.0.2"}, [] { return DateTime{2026, 3, 9, 17, 4, 5}; }};

    /// Installs the family in its folder C:\KV\.
    void install() { registry.install(product::kFamilyPrograms[0], L"C:\\KV\\KVZEP32.EXE"); }
    /// The lines of a text file without their times; lines that have none come as they are.
    [[nodiscard]] std::vector<std::wstring> lines(const std::wstring& path) const {
        std::vector<std::wstring> result;
        const auto found = files.texts.find(path);
        std::wstring_view rest = found == files.texts.end() ? std::wstring_view() : found->second;
        while (!rest.empty()) {
            const std::size_t end = rest.find(L"\r\n");
            std::wstring_view line = rest.substr(0, end);
            rest.remove_prefix(end == std::wstring_view::npos ? rest.size() : end + 2);
            if (line.starts_with(kTime))
                line.remove_prefix(std::wstring_view(kTime).size());
            result.emplace_back(line);
        }
        return result;
    }
    [[nodiscard]] std::vector<std::wstring> notes() const { return lines(kNotes); }
};

}  // namespace kv::util
