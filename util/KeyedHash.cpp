#include "util/KeyedHash.h"

#include <array>
#include <bit>
#include <chrono>
#include <cstdint>
#include <limits>
#include <random>
#include <type_traits>

#include "util/Text.h"

namespace kv::util {

namespace {

using Word = std::size_t;
constexpr unsigned kWordBits = std::numeric_limits<Word>::digits;

struct Key {
    Word low;
    Word high;
};

std::uint64_t random64(std::random_device& source) {
    return static_cast<std::uint64_t>(source()) << 32 | source();
}

/// A system without random numbers leaves the time, which is better than a constant.
Key makeKey() noexcept {
    try {
        std::random_device source;
        const auto low = static_cast<Word>(random64(source));
        return {low, static_cast<Word>(random64(source))};
    } catch (...) {
        const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
        return {static_cast<Word>(now * 0x9E3779B97F4A7C15U), static_cast<Word>(~now)};
    }
}

/// What the two forms of the method, for words of 64 and of 32 bits, do not have in common.
struct Form {
    std::array<std::uint64_t, 4> start;
    std::array<int, 6> turns;
};
constexpr Form kForm = kWordBits == 64
                           ? Form{{0x736F6D6570736575U, 0x646F72616E646F6DU, 0x6C7967656E657261U, 0x7465646279746573U},
                                  {13, 16, 32, 17, 21, 32}}
                           : Form{{0, 0, 0x6C796765U, 0x74656462U}, {5, 8, 16, 13, 7, 16}};

class Sip {
  public:
    explicit Sip(const Key& key) noexcept
        : v0_(key.low ^ static_cast<Word>(kForm.start[0])),
          v1_(key.high ^ static_cast<Word>(kForm.start[1])),
          v2_(key.low ^ static_cast<Word>(kForm.start[2])),
          v3_(key.high ^ static_cast<Word>(kForm.start[3])) {}
    void take(Word word) noexcept {
        v3_ ^= word;
        round();
        v0_ ^= word;
    }
    Word finish() noexcept {
        v2_ ^= 0xFF;
        round();
        round();
        round();
        return kWordBits == 64 ? v0_ ^ v1_ ^ v2_ ^ v3_ : v1_ ^ v3_;
    }

  private:
    void round() noexcept {
        v0_ += v1_;
        v2_ += v3_;
        v1_ = std::rotl(v1_, kForm.turns[0]) ^ v0_;
        v3_ = std::rotl(v3_, kForm.turns[1]) ^ v2_;
        v0_ = std::rotl(v0_, kForm.turns[2]);
        v2_ += v1_;
        v0_ += v3_;
        v1_ = std::rotl(v1_, kForm.turns[3]) ^ v2_;
        v3_ = std::rotl(v3_, kForm.turns[4]) ^ v0_;
        v2_ = std::rotl(v2_, kForm.turns[5]);
    }

    Word v0_;
    Word v1_;
    Word v2_;
    Word v3_;
};

}  // namespace

std::size_t foldedHash(std::wstring_view text) noexcept {
    static const Key key = makeKey();
    constexpr unsigned kBits = 8 * sizeof(wchar_t);
    constexpr std::size_t kInWord = kWordBits / kBits;
    Sip sip(key);
    Word word = 0;
    std::size_t inWord = 0;
    for (const wchar_t character : text) {
        word = word << kBits | static_cast<std::make_unsigned_t<wchar_t>>(foldAsciiFast(character));
        if (++inWord == kInWord) {
            sip.take(word);
            word = inWord = 0;
        }
    }
    // The last word has room for the length, so that characters of 0 at an end count.
    sip.take(word | static_cast<Word>(text.size()) << (kWordBits - kBits));
    return sip.finish();
}

}  // namespace kv::util
