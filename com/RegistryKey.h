// An open registry key with the operations that registration needs.
#pragma once

#include <windows.h>

#include <string>
#include <utility>

namespace kv::com {

class RegistryKey {
  public:
    RegistryKey() noexcept = default;
    RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
    RegistryKey& operator=(RegistryKey&& other) noexcept {
        std::swap(key_, other.key_);
        return *this;
    }
    ~RegistryKey() {
        if (key_)
            RegCloseKey(key_);
    }

    /// Opens an existing key. The results of all operations are Win32 error codes.
    [[nodiscard]] LSTATUS open(HKEY parent, const std::wstring& path, REGSAM access) noexcept;
    /// Opens a key for writing. Creates it if it does not exist.
    [[nodiscard]] LSTATUS create(HKEY parent, const std::wstring& path) noexcept;
    [[nodiscard]] HKEY get() const noexcept { return key_; }

    /// A null `name` is the default value.
    [[nodiscard]] LSTATUS setText(const wchar_t* name, const std::wstring& text) const noexcept;
    [[nodiscard]] LSTATUS deleteValue(const wchar_t* name) const noexcept;
    /// A null `name` is the default value. Empty if the value does not exist. Throws std::bad_alloc.
    [[nodiscard]] std::wstring text(const wchar_t* name) const;
    /// True if the key contains neither values nor keys.
    [[nodiscard]] bool isEmpty() const noexcept;

  private:
    HKEY key_ = nullptr;
};

}  // namespace kv::com
