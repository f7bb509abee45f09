// A form that is only a place and a state, and a desktop that records calls and can be made to fail.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "forms/PlacedForm.h"
#include "headless/HeadlessDesktop.h"
#include "util/RuntimeError.h"

namespace kv::forms {

class FakeForm final : public PlacedForm {
  public:
    explicit FakeForm(const formenv::Place& design) : at(design) {}
    [[nodiscard]] std::intptr_t hWnd() const override { return window; }
    [[nodiscard]] formenv::Place place() const override { return at; }
    void move(const formenv::Place& place) override {
        at = place;
        ++moves;
    }
    [[nodiscard]] formenv::WindowState windowState() const override { return state; }
    void setWindowState(formenv::WindowState value) override { state = value; }

    std::intptr_t window = 0;
    formenv::Place at;
    formenv::WindowState state = formenv::WindowState::Normal;
    int moves = 0;
};

class AskedDesktop final : public headless::HeadlessDesktop {
  public:
    struct Probe {
        formenv::ScreenRect rect;
        std::uint32_t flags;
        friend bool operator==(const Probe&, const Probe&) = default;
    };

    [[nodiscard]] std::int32_t systemMetric(int index) override {
        metrics.push_back(index);
        asked("systemMetric");
        return HeadlessDesktop::systemMetric(index);
    }
    [[nodiscard]] std::intptr_t monitorFromWindow(std::intptr_t window, std::uint32_t flags) override {
        asked("monitorFromWindow");
        return HeadlessDesktop::monitorFromWindow(window, flags);
    }
    [[nodiscard]] std::intptr_t monitorFromRect(const formenv::ScreenRect& rect, std::uint32_t flags) override {
        probes.push_back({rect, flags});
        asked("monitorFromRect");
        return HeadlessDesktop::monitorFromRect(rect, flags);
    }
    [[nodiscard]] bool monitorInfo(std::intptr_t monitor, formenv::MonitorInfo& info) override {
        asked("monitorInfo");
        return HeadlessDesktop::monitorInfo(monitor, info);
    }
    [[nodiscard]] double screenWidth() override {
        asked("screenWidth");
        return HeadlessDesktop::screenWidth();
    }
    [[nodiscard]] double twipsPerPixelX() override {
        asked("twipsPerPixelX");
        return HeadlessDesktop::twipsPerPixelX();
    }

    /// The call of this name fails; "*" means each of them.
    std::string_view failing;
    std::vector<Probe> probes;
    std::vector<int> metrics;
    /// Called before every call; may throw.
    std::function<void(std::string_view call)> onCall;

  private:
    void asked(const char* call) {
        if (onCall)
            onCall(call);
        if (failing == "*" || failing == call)
            throw util::RuntimeError(util::error_number::kInternal);
    }
};

}  // namespace kv::forms
