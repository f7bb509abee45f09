// The user, as far as the shared utilities talk to one.
#pragma once

#include <string>

namespace kv::util {

class UserPrompt {
  public:
    UserPrompt() = default;
    UserPrompt(const UserPrompt&) = delete;
    UserPrompt& operator=(const UserPrompt&) = delete;
    virtual ~UserPrompt() = default;

    /// Somebody can see a message box and close it. Without anybody the others are not to be called: they would wait
    /// for good.
    [[nodiscard]] virtual bool present() const noexcept = 0;
    virtual void inform(const std::wstring& text, const std::wstring& title) = 0;
    /// Tells of a failure.
    virtual void warn(const std::wstring& text, const std::wstring& title) = 0;
    /// True for yes.
    [[nodiscard]] virtual bool confirm(const std::wstring& text, const std::wstring& title) = 0;
};

}  // namespace kv::util
