#include "util/Configuration.h"

#include <cstddef>
#include <optional>

#include "util/LogLine.h"
#include "util/Product.h"
#include "util/Text.h"

namespace kv::util {

namespace {

constexpr wchar_t kAppPaths[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\";
constexpr wchar_t kSection[] = L"CONFIG";
constexpr wchar_t kRegistryINI[] = L"KVRegistry.INI";
constexpr wchar_t kDirectoryKey[] = L"KorvaneDirectory";
constexpr wchar_t kNotes[] = L"KVTecSup.Txt";

bool isBlank(const std::wstring& text) {
    return getLenTrim(text) < 1;
}

/// With a drive or on a server: such a path does not depend on the current folder.
bool isAbsolute(const std::wstring& path) {
    return path.starts_with(L"\\\\") || path.find(L":\\") == 1;
}

/// The folder part of a program's path, with its backslash. Paths with blanks may be in quotes.
std::wstring folderOf(const std::wstring& program) {
    std::wstring_view path = trim(program);
    if (path.starts_with(L'"'))
        path.remove_prefix(1);
    return std::wstring(path.substr(0, path.find_last_of(L'\\') + 1));
}

}  // namespace

std::wstring Configuration::once(Kept& kept, const wchar_t* procedure,
                                 const std::function<std::wstring()>& compute) noexcept {
    try {
        std::wstring value = kept.get();
        if (isBlank(value)) {
            value = compute();
            kept.set(value);
        }
        return value;
    } catch (...) {
        noteError(procedure, currentError());
        return {};
    }
}

std::wstring Configuration::getKorvaneDirectoryAny() noexcept {
    return once(directory_, L"getKorvaneDirectoryAny", [this] { return findDirectory(); });
}

/// Sets `key` to the last one that was read. A key that cannot be read does not end the search.
std::wstring Configuration::directoryFromRegistry(std::wstring& key,
                                                  const std::function<void(const RuntimeError&)>& failed) {
    for (const wchar_t* program : product::kFamilyPrograms) {
        key = std::wstring(kAppPaths) + program;
        try {
            const std::optional<std::wstring> path = system_.registry.defaultValue(key);
            if (path && !isBlank(*path))
                return folderOf(*path);
        } catch (...) {
            failed(currentError());
        }
    }
    note(L"No Registry Entry found; try INI file");
    return {};
}

std::wstring Configuration::findDirectory() {
    struct Failure {
        RuntimeError error;
        std::wstring key;
    };
    std::optional<Failure> failure;
    std::wstring key;
    const auto failed = [&](const RuntimeError& error) {
        if (!failure)
            failure = Failure{error, key};
    };
    const std::wstring fromRegistry = directoryFromRegistry(key, failed);
    std::wstring directory = fromRegistry;
    if (isBlank(directory)) {
        try {
            directory =
                getINI(system_.ini, kDirectoryKey, kSection, setPathName(system_.host.folder, kRegistryINI), L"");
        } catch (...) {
            failed(currentError());
        }
    }
    if (!isBlank(directory))
        return directory;
    note(L"Unable to get Korvane Directory from Windows Registry");
    if (failure) {
        noteError(L"getKorvaneDirectoryAny", failure->error);
        note(L"Registry Key: " + failure->key);
    }
    note(L"Empty return in getKorvaneDirectoryAny");
    note(L"Registry Key: " + key);
    return {};
}

std::wstring Configuration::getDefaultsINI() noexcept {
    return once(defaultsINI_, L"getDefaultsINI",
                [this] { return setPathName(getKorvaneDirectory(), L"KVDEFAULTS.INI"); });
}

std::wstring Configuration::getProductINI() noexcept {
    return once(productINI_, L"getProductINI", [this] { return setPathName(getKorvaneDirectory(), L"KVZEP32.INI"); });
}

std::wstring Configuration::folderSetting(const wchar_t* key, const wchar_t* usual) {
    const std::wstring folder = getINI(system_.ini, key, kSection, getProductINI(), L"");
    return isBlank(folder) ? setPathName(getKorvaneDirectory(), usual) : folder;
}

std::wstring Configuration::getSystemFolder() noexcept {
    return once(systemFolder_, L"getSystemFolder", [this] { return folderSetting(L"SYSTEM_PATH", L"SYSTEM"); });
}

std::wstring Configuration::getWorkFolder() noexcept {
    return once(workFolder_, L"getWorkFolder", [this] { return folderSetting(L"WORK PATH", L"WORK"); });
}

std::wstring Configuration::getTempFolder(UserPrompt& user) noexcept {
    bool isNew = false;
    std::wstring folder = once(tempFolder_, L"getTempFolder", [&] {
        isNew = true;
        return setPathName(getSystemFolder(), L"TEMP");
    });
    // The value is stored before the question, because events may run meanwhile and request the folder again.
    if (isNew && !folder.empty())
        getPathExist(folder, true, user);
    return folder;
}

bool Configuration::isThere(const std::wstring& folder, const wchar_t* procedure) {
    try {
        if (!system_.files.folderExists(folder))
            system_.files.createFolder(folder);
        return true;
    } catch (...) {
        noteError(procedure, currentError());
        return false;
    }
}

std::wstring Configuration::getScratchFolder() noexcept {
    return once(scratchFolder_, L"getScratchFolder", [this]() -> std::wstring {
        for (const bool maker : {true, false}) {
            const std::wstring parent = maker ? getKorvaneDirectory() : system_.files.userTempFolder();
            std::wstring folder = setPathName(parent, L"TEMP");
            if (!isBlank(parent) && isThere(folder, L"getScratchFolder"))
                return folder;
        }
        return {};
    });
}

std::wstring Configuration::getPrintFolder() noexcept {
    std::wstring work = getWorkFolder();
    // Without a maker's directory the work folder is a bare name. A folder of that name would be created in the
    // current folder, which is the host's.
    if (isAbsolute(work) && isThere(work, L"getPrintFolder"))
        return work;
    return getScratchFolder();
}

/// For files when there is no maker's directory; empty when the system has no folder for them.
std::wstring Configuration::ownFolder() {
    const std::wstring parent = system_.files.userDataFolder();
    return isBlank(parent) ? std::wstring() : setPathName(parent, product::kOwnFolder);
}

std::wstring Configuration::getPlacementINI() noexcept {
    return once(placementINI_, L"getPlacementINI", [this]() -> std::wstring {
        if (!isBlank(getKorvaneDirectory()))
            return getProductINI();
        const std::wstring folder = ownFolder();
        return folder.empty() ? folder : setPathName(folder, product::kOwnINI);
    });
}

std::optional<std::wstring> Configuration::readSetting(const std::wstring& key, const std::wstring& section,
                                                       const std::wstring& file) noexcept {
    try {
        return isBlank(file) ? std::nullopt : system_.ini.read(key, section, file);
    } catch (...) {
        noteError(L"readSetting", currentError());
        return std::nullopt;
    }
}

void Configuration::writeSetting(const std::wstring& key, const std::wstring& section, const std::wstring& file,
                                 const std::wstring& value) {
    if (isBlank(file))
        throw RuntimeError(error_number::kPathFileAccess);
    const std::wstring folder = ownFolder();
    if (!folder.empty() && file == setPathName(folder, product::kOwnINI) && !system_.files.folderExists(folder))
        system_.files.createFolder(folder);
    system_.ini.write(key, section, file, value);
}

/// Creates the parent folders as well.
void Configuration::createPath(const std::wstring& path) {
    const std::size_t end = path.find_last_not_of(L'\\');
    if (end == std::wstring::npos || system_.files.folderExists(path))
        return;
    const std::size_t last = path.find_last_of(L'\\', end);
    if (last != std::wstring::npos && last > 0)
        createPath(path.substr(0, last));
    system_.files.createFolder(path);
}

bool Configuration::offerToCreate(const std::wstring& path, UserPrompt& user) {
    const std::wstring text =
        L"The specified path does not exist:\r\n\r\n" + path + L"\r\n\r\nDo you want to create the new path?";
    if (!user.present() || !user.confirm(text, L"Path Not Found"))
        return false;
    createPath(path);
    return true;
}

bool Configuration::getPathExist(std::wstring& sPath, bool bCreate, UserPrompt& user) noexcept {
    try {
        if (isBlank(sPath)) {
            sPath = getWorkFolder();
            if (user.present()) {
                user.inform(L"Since no path was specified, the program will use the path:\r\n\r\n" + sPath,
                            L"Path Specification");
            }
        }
        if (system_.files.folderExists(sPath))
            return true;
        if (bCreate)
            return offerToCreate(sPath, user);
        if (user.present()) {
            user.warn(L"The specified path does not exist:\r\n\r\n" + sPath +
                          L"\r\n\r\nYou must specify an existing path for this function.",
                      L"Path Error");
        }
    } catch (...) {
        noteError(L"getPathExist", currentError());
    }
    return false;
}

void Configuration::note(const std::wstring& text) noexcept {
    try {
        system_.files.append(setPathName(system_.host.folder, kNotes), logLine(system_.now(), text));
    } catch (...) {
        // There is no other place to report it.
    }
}

void Configuration::noteError(const wchar_t* procedure, const RuntimeError& error) noexcept {
    try {
        note(std::wstring(L"Error in ") + procedure + L" " + std::to_wstring(error.number()) + L"  " +
             std::wstring(error.text()));
    } catch (...) {
        // No memory for the text.
    }
}

}  // namespace kv::util
