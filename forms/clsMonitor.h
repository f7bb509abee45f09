// One monitor of the desktop: its rectangle and its work area.
#pragma once

#include <cstdint>

namespace kv::forms {

/// Pixels of the virtual screen, except for the handle. The work area is the rectangle without task bars.
class clsMonitor {
  public:
    [[nodiscard]] std::intptr_t Handle() const noexcept { return handle_; }
    void setHandle(std::intptr_t value) noexcept { handle_ = value; }
    [[nodiscard]] std::int32_t Height() const noexcept { return height_; }
    void setHeight(std::int32_t value) noexcept { height_ = value; }
    [[nodiscard]] std::int32_t Width() const noexcept { return width_; }
    void setWidth(std::int32_t value) noexcept { width_ = value; }
    [[nodiscard]] std::int32_t Left() const noexcept { return left_; }
    void setLeft(std::int32_t value) noexcept { left_ = value; }
    [[nodiscard]] std::int32_t Right() const noexcept { return right_; }
    void setRight(std::int32_t value) noexcept { right_ = value; }
    [[nodiscard]] std::int32_t Top() const noexcept { return top_; }
    void setTop(std::int32_t value) noexcept { top_ = value; }
    [[nodiscard]] std::int32_t Bottom() const noexcept { return bottom_; }
    void setBottom(std::int32_t value) noexcept { bottom_ = value; }
    [[nodiscard]] std::int32_t WorkLeft() const noexcept { return workLeft_; }
    void setWorkLeft(std::int32_t value) noexcept { workLeft_ = value; }
    [[nodiscard]] std::int32_t WorkRight() const noexcept { return workRight_; }
    void setWorkRight(std::int32_t value) noexcept { workRight_ = value; }
    [[nodiscard]] std::int32_t WorkTop() const noexcept { return workTop_; }
    void setWorkTop(std::int32_t value) noexcept { workTop_ = value; }
    [[nodiscard]] std::int32_t WorkBottom() const noexcept { return workBottom_; }
    void setWorkBottom(std::int32_t value) noexcept { workBottom_ = value; }

  private:
    std::intptr_t handle_ = 0;
    std::int32_t height_ = 0;
    std::int32_t width_ = 0;
    std::int32_t left_ = 0;
    std::int32_t right_ = 0;
    std::int32_t top_ = 0;
    std::int32_t bottom_ = 0;
    std::int32_t workLeft_ = 0;
    std::int32_t workRight_ = 0;
    std::int32_t workTop_ = 0;
    std::int32_t workBottom_ = 0;
};

}  // namespace kv::forms
