// Random lives of a control. In tools/test they last some seconds with fixed seeds; tools/fuzz lives goes on with other
// seeds. A failure names its seed, and KV_LIFE=SEED repeats that life alone.
#include <chrono>
#include <cstdlib>
#include <deque>

#include "tests/fuzz/lives/Deeds.h"

namespace kv::fuzz {
namespace {

constexpr int kSteps = 150;

/// A number from the environment; `otherwise` without one.
std::uint64_t setting(const char* name, std::uint64_t otherwise) {
    const char* const text = std::getenv(name);
    return text ? std::strtoull(text, nullptr, 10) : otherwise;
}

/// False after a failure.
bool live(std::uint64_t seed) {
    Twin twin;
    Deeds deeds(seed);
    std::deque<std::string> last;
    for (int step = 0; step < kSteps; ++step) {
        const Deeds::Deed deed = deeds.next(twin);
        last.push_back(deed.name);
        if (last.size() > 6)
            last.pop_front();
        twin.act(deed.action);
        twin.expectAgreement();
        if (testing::Test::HasFailure()) {
            std::string story;
            for (const std::string& name : last)
                story += "\n  " + name;
            ADD_FAILURE() << "KV_LIFE=" << seed << ", step " << step << ", after:" << story;
            return false;
        }
    }
    return true;
}

TEST(RandomLives, BothWaysOfPaintingAgreeWhateverHappens) {
    if (std::getenv("KV_LIFE")) {
        live(setting("KV_LIFE", 0));
        return;
    }
    const auto seconds = std::chrono::seconds(setting("KV_LIVES_SECONDS", 8));
    const auto start = std::chrono::steady_clock::now();
    std::uint64_t seed = setting("KV_LIVES_FROM", 1);
    const std::uint64_t first = seed;
    while (live(seed++) && std::chrono::steady_clock::now() - start < seconds) {
    }
    std::printf("%llu lives of %d steps\n", static_cast<unsigned long long>(seed - first), kSteps);
}

}  // namespace
}  // namespace kv::fuzz
