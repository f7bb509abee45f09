// An open registry key, and the few operations that registration needs.
#pragma once

#include <windows.h>

#include <string>
#include <utility>

namespace kv::automation {

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
    /// Opens a key for writing, made when there is none.
    [[nodiscard]] LSTATUS create(HKEY parent, const std::wstring& path) noexcept;
    [[nodiscard]] HKEY get() const noexcept { return key_; }

    /// A null `name` is the default value.
    [[nodiscard]] LSTATUS setText(const wchar_t* name, const std::wstring& text) const noexcept;
    [[nodiscard]] LSTATUS deleteValue(const wchar_t* name) const noexcept;
    /// A null `name` is the default value; empty when there is none. Throws std::bad_alloc.
    [[nodiscard]] std::wstring text(const wchar_t* name) const;
    /// Neither values nor keys in it.
    [[nodiscard]] bool isEmpty() const noexcept;

  private:
    HKEY key_ = nullptr;
};

}  // namespace kv::automation
