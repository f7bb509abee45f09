#include "util/KeyedHash.h"

#include <bit>
#include <chrono>
#include <random>
#include <type_traits>

#include "util/Text.h"

namespace kv::util {

namespace {

struct Key {
    std::uint64_t low;
    std::uint64_t high;
};

std::uint64_t random64(std::random_device& source) {
    return static_cast<std::uint64_t>(source()) << 32 | source();
}

/// A system without random numbers leaves the time, which is better than a constant.
Key makeKey() noexcept {
    try {
        std::random_device source;
        const std::uint64_t low = random64(source);
        return {low, random64(source)};
    } catch (...) {
        const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
        return {now * 0x9E3779B97F4A7C15U, ~now};
    }
}

class Sip {
  public:
    explicit Sip(const Key& key) noexcept
        : v0_(key.low ^ 0x736F6D6570736575U),
          v1_(key.high ^ 0x646F72616E646F6DU),
          v2_(key.low ^ 0x6C7967656E657261U),
          v3_(key.high ^ 0x7465646279746573U) {}
    void take(std::uint64_t word) noexcept {
        v3_ ^= word;
        round();
        v0_ ^= word;
    }
    std::uint64_t finish() noexcept {
        v2_ ^= 0xFF;
        round();
        round();
        round();
        return v0_ ^ v1_ ^ v2_ ^ v3_;
    }

  private:
    void round() noexcept {
        v0_ += v1_;
        v2_ += v3_;
        v1_ = std::rotl(v1_, 13) ^ v0_;
        v3_ = std::rotl(v3_, 16) ^ v2_;
        v0_ = std::rotl(v0_, 32);
        v2_ += v1_;
        v0_ += v3_;
        v1_ = std::rotl(v1_, 17) ^ v2_;
        v3_ = std::rotl(v3_, 21) ^ v0_;
        v2_ = std::rotl(v2_, 32);
    }

    std::uint64_t v0_;
    std::uint64_t v1_;
    std::uint64_t v2_;
    std::uint64_t v3_;
};

}  // namespace

std::uint64_t foldedHash(std::wstring_view text) noexcept {
    static const Key key = makeKey();
    constexpr std::size_t kInWord = sizeof(std::uint64_t) / sizeof(wchar_t);
    constexpr unsigned kBits = 8 * sizeof(wchar_t);
    Sip sip(key);
    std::uint64_t word = 0;
    std::size_t inWord = 0;
    for (const wchar_t character : text) {
        word = word << kBits | static_cast<std::make_unsigned_t<wchar_t>>(foldAsciiFast(character));
        if (++inWord == kInWord) {
            sip.take(word);
            word = inWord = 0;
        }
    }
    // The last word has room for the length, so that characters of 0 at an end count.
    sip.take(word | static_cast<std::uint64_t>(text.size()) << (64 - kBits));
    return sip.finish();
}

}  // namespace kv::util
