// The folder and the INI files that the maker's programs share, and the folders named in them.
#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include "util/RuntimeError.h"
#include "util/System.h"
#include "util/UserPrompt.h"

namespace kv::util {

/// Each value is computed at its first use and kept. A blank value is computed again at the next use.
///
/// No getter raises an error: a failure leaves the value empty and a note in "KVTecSup.Txt" in the host program's
/// folder. Without a maker's directory the other paths are relative ones, beginning with the file or folder itself.
/// Safe to call from any thread.
class Configuration {
  public:
    /// `system` must live longer.
    explicit Configuration(System& system) : system_(system) {}
    Configuration(const Configuration&) = delete;
    Configuration& operator=(const Configuration&) = delete;

    /// The folder of the first program of the family that is installed; else the one that "KVRegistry.INI" beside the
    /// host names; else empty. From a program it ends in a backslash.
    [[nodiscard]] std::wstring getKorvaneDirectoryAny() noexcept;
    /// The directory for this host: no host has one of its own.
    [[nodiscard]] std::wstring getKorvaneDirectory() noexcept { return getKorvaneDirectoryAny(); }
    [[nodiscard]] std::wstring getDefaultsINI() noexcept;
    [[nodiscard]] std::wstring getProductINI() noexcept;
    [[nodiscard]] std::wstring getSystemFolder() noexcept;
    [[nodiscard]] std::wstring getWorkFolder() noexcept;
    /// TEMP in the system folder. If it does not exist, the first call asks whether to create it; the path is returned
    /// either way.
    [[nodiscard]] std::wstring getTempFolder(UserPrompt& user) noexcept;
    /// TEMP in the maker's directory, created without asking, for files that are needed during one call only. Without
    /// such a directory, or if the folder cannot be created there, TEMP in the user's temporary folder.
    [[nodiscard]] std::wstring getScratchFolder() noexcept;

    /// The folder for print files: the work folder, created without asking; the scratch folder when there is no work
    /// folder that exists or can be created. Empty when there is neither.
    [[nodiscard]] std::wstring getPrintFolder() noexcept;

    /// The INI file that stores the positions of windows: the product INI; without a maker's directory
    /// "kvBandscope.INI" in a folder of the user's own. Empty when there is neither.
    [[nodiscard]] std::wstring getPlacementINI() noexcept;

    /// A setting of any INI file; nothing when it is missing or cannot be read, and for an empty path.
    [[nodiscard]] std::optional<std::wstring> readSetting(const std::wstring& key, const std::wstring& section,
                                                          const std::wstring& file) noexcept;
    /// Throws RuntimeError 75 when it cannot. Creates no folder except our own for the placement INI.
    void writeSetting(const std::wstring& key, const std::wstring& section, const std::wstring& file,
                      const std::wstring& value);

    /// Whether the folder exists when this returns. An empty path becomes the work folder. `bCreate`: offer to create
    /// the folder; without a user to ask, it is not created.
    bool getPathExist(std::wstring& sPath, bool bCreate, UserPrompt& user) noexcept;

  private:
    class Kept {
      public:
        [[nodiscard]] std::wstring get() const {
            const std::lock_guard lock(mutex_);
            return text_;
        }
        void set(const std::wstring& text) {
            const std::lock_guard lock(mutex_);
            text_ = text;
        }

      private:
        mutable std::mutex mutex_;
        std::wstring text_;
    };

    std::wstring once(Kept& kept, const wchar_t* procedure, const std::function<std::wstring()>& compute) noexcept;
    std::wstring directoryFromRegistry(std::wstring& key, const std::function<void(const RuntimeError&)>& failed);
    std::wstring findDirectory();
    std::wstring ownFolder();
    std::wstring folderSetting(const wchar_t* key, const wchar_t* usual);
    void createPath(const std::wstring& path);
    /// Creates the folder if it does not exist; false when that fails.
    bool isThere(const std::wstring& folder, const wchar_t* procedure);
    bool offerToCreate(const std::wstring& path, UserPrompt& user);
    void note(const std::wstring& text) noexcept;
    void noteError(const wchar_t* procedure, const RuntimeError& error) noexcept;

    System& system_;
    Kept directory_;
    Kept defaultsINI_;
    Kept productINI_;
    Kept systemFolder_;
    Kept workFolder_;
    Kept tempFolder_;
    Kept scratchFolder_;
    Kept placementINI_;
};

}  // namespace kv::util
