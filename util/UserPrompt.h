// Messages and questions to the user.
#pragma once

#include <string>

namespace kv::util {

class UserPrompt {
  public:
    UserPrompt() = default;
    UserPrompt(const UserPrompt&) = delete;
    UserPrompt& operator=(const UserPrompt&) = delete;
    virtual ~UserPrompt() = default;

    /// Whether a user can see and close a message box. Otherwise the other members must not be called, because they
    /// would wait forever.
    [[nodiscard]] virtual bool present() const noexcept = 0;
    virtual void inform(const std::wstring& text, const std::wstring& title) = 0;
    /// Reports a failure.
    virtual void warn(const std::wstring& text, const std::wstring& title) = 0;
    /// True for yes.
    [[nodiscard]] virtual bool confirm(const std::wstring& text, const std::wstring& title) = 0;
};

}  // namespace kv::util
