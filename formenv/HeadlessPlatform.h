// A platform without a screen: pictures in plain memory and message boxes that are only noted down. Tests, fuzzers and
// benchmarks run the control on it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "formenv/BlockTextPainter.h"
#include "formenv/Platform.h"

namespace kv::formenv {

class HeadlessPlatform final : public Platform {
  public:
    struct Message {
        std::wstring text;
        std::wstring title;
        MessageIcon icon;
        MessageButtons buttons;
    };

    [[nodiscard]] int dpi() const noexcept override { return dots; }
    [[nodiscard]] Rgb systemColor(int index) const noexcept override;
    [[nodiscard]] std::unique_ptr<Surface> createSurface(PixelSize size) override;
    [[nodiscard]] PixelSize textSize(std::wstring_view text, const Font& font) override;
    void pumpEvents() override;
    MessageAnswer messageBox(const std::wstring& text, const std::wstring& title, MessageIcon icon,
                             MessageButtons buttons) override;

    int dots = 96;
    std::vector<Message> messages;
    int pumps = 0;
    /// What happens when the control lets events run.
    std::function<void()> onPump;
    MessageAnswer answer = MessageAnswer::Ok;

  private:
    BlockTextPainter letters_;
};

}  // namespace kv::formenv
