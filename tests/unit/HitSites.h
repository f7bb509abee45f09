// Plans for the tests of hits, and a search for hits that compares every product with every receiver.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "host/hits/HitFinder.h"
#include "host/hits/HitRows.h"
#include "host/plan/Plan.h"

namespace kv::test {

inline host::PlanChannel channel(const std::wstring& key, std::int64_t hertz, std::int64_t bandwidth,
                                 double power = 40.0, const std::wstring& label = L"") {
    host::PlanChannel result;
    result.transmits = key.starts_with(L"TX");
    result.key = key;
    result.label = label.empty() ? key : label;
    result.frequencyHz = hertz;
    result.bandwidthHz = bandwidth;
    result.powerDbm = power;
    return result;
}

inline host::Plan samplePlan(const char* file) {
    return host::loadPlan(std::filesystem::path(KV_SOURCE_DIR) / "examples" / "plans" / file);
}

inline host::ProductOptions orders(bool second, bool third, bool fifth, bool everyForm = false) {
    host::ProductOptions options;
    options.second = second;
    options.third = third;
    options.fifth = fifth;
    options.everyFifthForm = everyForm;
    return options;
}

inline void findAll(host::HitFinder& finder) {
    while (finder.step() == host::HitFinder::State::kFinding) {
    }
}

/// A plan in which bands are of very different widths, with odd ones among them, and many edges are the same.
inline host::Plan randomPlan(std::mt19937& random) {
    const auto upTo = [&random](int highest) { return std::uniform_int_distribution<>(0, highest)(random); };
    host::Plan plan;
    const int transmitters = upTo(6);
    const int receivers = upTo(40);
    for (int i = 0; i < transmitters + receivers; ++i) {
        const std::wstring key = (i < transmitters ? L"TX" : L"RX") + std::to_wstring(i);
        const std::int64_t width = upTo(3) == 0 ? 1 + upTo(2000) : 10 * (1 + upTo(4));
        plan.channels.push_back(channel(key, 5000 + 5 * upTo(i < transmitters ? 60 : 400), width, upTo(50)));
    }
    std::shuffle(plan.channels.begin(), plan.channels.end(), random);
    return plan;
}

/// Text, in a form that is easy to compare: "RX7 9000 2xTX1 ...".
inline std::vector<std::wstring> namesOf(const host::HitFinder& finder) {
    std::vector<std::wstring> result;
    for (const host::Hit& hit : finder.hits()) {
        result.push_back(finder.site().receiverOf(hit).key + L": " + finder.site().formulaOf(hit));
    }
    return result;
}

}  // namespace kv::test
