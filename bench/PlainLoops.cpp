#include "bench/PlainLoops.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench/Median.h"
#include "bench/StoreSteps.h"

namespace kv::bench {

double plainAddSeconds(const ChannelSet& set) {
    struct Plain {
        double dFreq = 0.0;
        double dBW = 0.0;
        double dFreqLo = 0.0;
        double dFreqHi = 0.0;
        double dPwrDBM = 0.0;
        std::wstring sKey;
    };
    std::vector<std::wstring> keys;
    for (std::size_t i = 0; i < set.channels.size(); ++i)
        keys.push_back(Channel::key(i + 1));
    Times times;
    for (int round = 0; round < 5; ++round) {
        std::vector<Plain> plain;
        std::unordered_map<std::wstring, std::int32_t> index;
        times.measure([&] {
            for (std::size_t i = 0; i < set.channels.size(); ++i) {
                const Channel& c = set.channels[i];
                plain.push_back({c.dFreq, c.dBW, c.dFreqLo, c.dFreqHi, c.dPwrDBM, keys[i]});
                index.emplace(keys[i], static_cast<std::int32_t>(i));
            }
        });
        benchmark::DoNotOptimize(index.size());
    }
    return times.median();
}

double plainRemovalSeconds(std::size_t count, std::size_t removals, int rounds) {
    std::unordered_map<std::wstring, std::int32_t> index;
    std::vector<std::wstring> keys;
    for (std::size_t i = 0; i < count; ++i) {
        keys.push_back(Channel::key(i + 1));
        index.emplace(keys.back(), static_cast<std::int32_t>(i));
    }
    Times times;
    for (int round = 0; round < rounds; ++round) {
        std::vector<void*> pointers(count);
        times.measure([&] {
            for (std::size_t i = 0; i < removals; ++i) {
                const auto at = static_cast<std::size_t>(index.find(keys[nth(i, count)])->second) % pointers.size();
                std::memmove(pointers.data() + at, pointers.data() + at + 1,
                             (pointers.size() - at - 1) * sizeof(void*));
                pointers.pop_back();
            }
        });
        benchmark::DoNotOptimize(pointers.data());
    }
    return times.median();
}

}  // namespace kv::bench
