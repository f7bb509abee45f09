// Hosts that let the processor raise exceptions for invalid and infinite results, as programs in Pascal do.
#include <xmmintrin.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <limits>

#include "tests/automation/ActiveControl.h"

namespace kv::test {
namespace {

constexpr unsigned kMasks = 0x1F80;
/// Invalid results, divisions by zero and overflows raise exceptions.
constexpr unsigned kLoud = 0x1F80 & ~0x0680U;
/// The same in the control word of the x87 unit, which 32-bit programs in Pascal compute with.
constexpr std::uint16_t kX87Masks = 0x3F;
constexpr std::uint16_t kX87Loud = 0x0372;

std::uint16_t x87Control() {
    std::uint16_t control = 0;
    __asm__ volatile("fnstcw %0" : "=m"(control));
    return control;
}

void setX87Control(std::uint16_t control) {
    __asm__ volatile("fnclex\n\tfldcw %0" : : "m"(control));
}

void enableExceptions() {
    _mm_setcsr(kLoud);
    setX87Control(kX87Loud);
}

/// Counts the exceptions on this thread. Each one is answered by masking it, so that the program goes on.
class LoudArithmetic {
  public:
    LoudArithmetic()
        : handler_(AddVectoredExceptionHandler(1, &LoudArithmetic::answer)),
          before_(_mm_getcsr()),
          x87Before_(x87Control()) {
        count_ = 0;
        enableExceptions();
    }
    ~LoudArithmetic() {
        _mm_setcsr(before_);
        setX87Control(x87Before_);
        RemoveVectoredExceptionHandler(handler_);
    }
    LoudArithmetic(const LoudArithmetic&) = delete;
    LoudArithmetic& operator=(const LoudArithmetic&) = delete;

    /// How many exceptions there were since the last call; enables them again.
    [[nodiscard]] int raised() const {
        const int result = count_;
        count_ = 0;
        enableExceptions();
        return result;
    }
    [[nodiscard]] static bool isSet() { return (_mm_getcsr() & kMasks) == kLoud && x87Control() == kX87Loud; }

  private:
    static LONG CALLBACK answer(EXCEPTION_POINTERS* what) {
        const DWORD code = what->ExceptionRecord->ExceptionCode;
        if ((code < EXCEPTION_FLT_DENORMAL_OPERAND || code > EXCEPTION_FLT_UNDERFLOW) &&
            code != STATUS_FLOAT_MULTIPLE_TRAPS && code != STATUS_FLOAT_MULTIPLE_FAULTS)
            return EXCEPTION_CONTINUE_SEARCH;
        ++count_;
#ifdef _WIN64
        what->ContextRecord->MxCsr |= kMasks;
        what->ContextRecord->FltSave.MxCsr |= kMasks;
        what->ContextRecord->FltSave.ControlWord |= kX87Masks;
        what->ContextRecord->FltSave.StatusWord &= static_cast<WORD>(~0x80FF);
#else
        what->ContextRecord->FloatSave.ControlWord |= kX87Masks;
        what->ContextRecord->FloatSave.StatusWord &= ~0x80FFU;
        // The area that FXSAVE writes begins with both words; the seventh double word is that of SSE.
        auto* area = what->ContextRecord->ExtendedRegisters;
        reinterpret_cast<WORD*>(area)[0] |= kX87Masks;
        reinterpret_cast<WORD*>(area)[1] &= static_cast<WORD>(~0x80FF);
        reinterpret_cast<DWORD*>(area)[6] |= kMasks;
#endif
        return EXCEPTION_CONTINUE_EXECUTION;
    }

    static std::atomic<int> count_;
    void* handler_;
    unsigned before_;
    std::uint16_t x87Before_;
};
std::atomic<int> LoudArithmetic::count_ = 0;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const std::array<double, 8> kValues{0.0,     -1.0,     450.0,      462.55,
                                    1.0e308, -1.0e308, -kInfinity, std::numeric_limits<double>::quiet_NaN()};

TEST(LoudArithmeticTest, InvalidResultsAreCounted) {
    const LoudArithmetic loud;
    volatile double zero = 0.0;
    volatile double result = zero / zero;
    static_cast<void>(result);
    EXPECT_EQ(loud.raised(), 1);
    long double x87Zero = 0.0L;
    __asm__ volatile("fdiv %%st(0), %%st(0)\n\tfwait" : "+t"(x87Zero));
    EXPECT_EQ(loud.raised(), 1);
}

TEST(LoudArithmeticTest, NoCallRaisesAnExceptionAndTheHostsSettingStays) {
    Scope scope;
    ComPtr<_BandscopeView> view;
    ASSERT_EQ(scope.get()->QueryInterface(IID_PPV_ARGS(view.GetAddressOf())), S_OK);
    const LoudArithmetic loud;
    const auto quiet = [&](const char* call, double a, double b) {
        EXPECT_TRUE(LoudArithmetic::isSet()) << call << " " << a << " " << b;
        EXPECT_EQ(loud.raised(), 0) << call << " " << a << " " << b;
    };
    int key = 0;
    for (const double a : kValues) {
        for (const double b : kValues) {
            scope.AddTXChnl(channel({.freq = a, .bw = 16.0, .power = b, .key = L"TX" + std::to_wstring(++key)}));
            quiet("AddTXChnl", a, b);
            scope->put_DisplayMinPwr(a);
            scope->put_DisplayMaxPwr(b);
            quiet("DisplayMaxPwr", a, b);
            scope->put_FreqEndBuffer(a);
            scope->DrawByRange(a, b);
            quiet("DrawByRange", a, b);
            scope->put_CursorVal(b);
            scope->JustDrawIt();
            quiet("JustDrawIt", a, b);
            view->ShowRange(a, b);
            view->ZoomBy(a, b);
            quiet("ZoomBy", a, b);
            view->PanBy(b);
            view->put_Marker(a);
            quiet("Marker", a, b);
        }
        scope->ClearAllChnls();
        scope->DrawInitialDisplay();
        quiet("DrawInitialDisplay", a, a);
    }
}

class LoudWindow : public ActiveControl {};

TEST_F(LoudWindow, KeysWheelAndPaintingRaiseNoException) {
    ComPtr<_BandscopeView> view;
    ASSERT_EQ(container.control.As(&view), S_OK);
    ASSERT_EQ(view->put_PowerAxis(VARIANT_TRUE), S_OK);
    int added = 100;
    const LoudArithmetic loud;
    for (const double power : {-kInfinity, 1.0e308, std::numeric_limits<double>::quiet_NaN()}) {
        const std::wstring key = L"TX" + std::to_wstring(++added);
        long index = -1;
        container.control->AddTXChnl(channel({.freq = 450.0, .bw = 16.0, .power = power, .key = key}).Get(), &index);
        EXPECT_GT(index, 0);
        for (const WPARAM code : {VK_UP, VK_LEFT, VK_SPACE, VK_RIGHT, VK_DOWN, VK_NEXT}) {
            const HWND focus = GetFocus();
            SendMessageW(focus, WM_KEYDOWN, code, 1);
            SendMessageW(focus, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
            SendMessageW(focus, WM_MOUSEMOVE, 0, MAKELPARAM(100, 50));
            RedrawWindow(focus, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
            EXPECT_TRUE(LoudArithmetic::isSet()) << code;
            EXPECT_EQ(loud.raised(), 0) << code;
        }
    }
}

}  // namespace
}  // namespace kv::test
