// Shows messages to the user in the platform's message boxes.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "formenv/Platform.h"
#include "util/UserPrompt.h"

namespace kv::formenv {

class PlatformPrompt final : public util::UserPrompt {
  public:
    /// `attended`: whether a user works with what the messages are about. The platform has to live longer.
    PlatformPrompt(Platform& platform, std::function<bool()> attended)
        : platform_(platform), attended_(std::move(attended)) {}

    [[nodiscard]] bool present() const noexcept override { return platform_.hasUser() && attended_(); }
    void inform(const std::wstring& text, const std::wstring& title) override {
        platform_.messageBox(text, title, MessageIcon::Information, MessageButtons::Ok);
    }
    void warn(const std::wstring& text, const std::wstring& title) override {
        platform_.messageBox(text, title, MessageIcon::Critical, MessageButtons::Ok);
    }
    [[nodiscard]] bool confirm(const std::wstring& text, const std::wstring& title) override {
        return platform_.messageBox(text, title, MessageIcon::Question, MessageButtons::YesNoDefaultNo) ==
               MessageAnswer::Yes;
    }

  private:
    Platform& platform_;
    std::function<bool()> attended_;
};

}  // namespace kv::formenv
