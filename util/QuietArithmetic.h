// The processor's exceptions for invalid and infinite results, which some hosts enable.
#pragma once

#include <xmmintrin.h>

#include <cstdint>

namespace kv::util {

/// While it lives, such results raise no exception, which is what C++ expects. Programs in Pascal enable these
/// exceptions, and one of them would leave a method in the middle of a drawing. The end restores the host's setting.
class QuietArithmetic {
  public:
    QuietArithmetic() noexcept : sse_(_mm_getcsr()) {
        __asm__ volatile("fnstcw %0" : "=m"(x87_));
        if (isSseLoud())
            _mm_setcsr(sse_ | kSseMasks);
        if (isX87Loud())
            setX87(static_cast<std::uint16_t>(x87_ | kX87Masks));
    }
    ~QuietArithmetic() {
        if (isSseLoud())
            _mm_setcsr(sse_);
        if (isX87Loud()) {
            // A result that was noted in the meantime would raise its exception as soon as the exception is enabled.
            __asm__ volatile("fnclex");
            setX87(x87_);
        }
    }
    QuietArithmetic(const QuietArithmetic&) = delete;
    QuietArithmetic& operator=(const QuietArithmetic&) = delete;

  private:
    static constexpr unsigned kSseMasks = 0x1F80;
    static constexpr std::uint16_t kX87Masks = 0x3F;

    [[nodiscard]] bool isSseLoud() const noexcept { return (sse_ & kSseMasks) != kSseMasks; }
    [[nodiscard]] bool isX87Loud() const noexcept { return (x87_ & kX87Masks) != kX87Masks; }
    static void setX87(std::uint16_t control) noexcept { __asm__ volatile("fldcw %0" : : "m"(control)); }

    unsigned sse_;
    std::uint16_t x87_ = 0;
};

}  // namespace kv::util
