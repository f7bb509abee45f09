#include "host/hits/HitFinder.h"

namespace kv::host {

namespace {

// A step ends after so many products or hits, whichever come first.
constexpr std::size_t kProductsOfStep = 8192;
constexpr std::size_t kHitsOfStep = 32768;

std::vector<Transmitter> numbersOf(const std::vector<PlanChannel>& channels) {
    std::vector<Transmitter> result;
    result.reserve(channels.size());
    for (const PlanChannel& channel : channels) {
        result.push_back({channel.frequencyHz, channel.bandwidthHz, channel.powerDbm});
    }
    return result;
}

}  // namespace

HitFinder::HitFinder(const Plan& plan, const ProductOptions& options, std::size_t mostHits)
    : site_(plan),
      options_(options),
      mostHits_(mostHits),
      edges_(site_.receivers()),
      combinations_(site_.receivers().empty() ? 0 : countCombinations(site_.transmitters().size(), options)),
      generator_(combinations_ == 0 ? std::vector<Transmitter>() : numbersOf(site_.transmitters()), options) {
    if (combinations_ == 0) {
        state_ = State::kDone;
    }
}

HitFinder::State HitFinder::step() {
    const std::size_t lastProduct = products_ + kProductsOfStep;
    const std::size_t enoughHits = hits_.size() + kHitsOfStep;
    Product product;
    while (state_ == State::kFinding && products_ < lastProduct && hits_.size() < enoughHits) {
        switch (generator_.next(product)) {
            case ProductGenerator::Step::kProduct:
                ++products_;
                if (!add(product)) {
                    state_ = State::kFull;
                }
                break;
            case ProductGenerator::Step::kPause:
                return state_;
            case ProductGenerator::Step::kEnd:
                state_ = State::kDone;
                break;
        }
    }
    return state_;
}

void HitFinder::stop() noexcept {
    if (state_ == State::kFinding) {
        state_ = State::kStopped;
    }
}

double HitFinder::fractionDone() const noexcept {
    return combinations_ == 0 ? 1.0 : static_cast<double>(generator_.tried()) / static_cast<double>(combinations_);
}

/// Adds the hits of a product; false if there was no room for all of them.
bool HitFinder::add(const Product& product) {
    bool complete = true;
    edges_.overlapping(bandOf(product.frequencyHz, product.bandwidthHz), [&](std::uint32_t receiver) {
        if (hits_.size() < mostHits_) {
            hits_.push_back(hitOf(product, receiver));
        } else {
            complete = false;
        }
    });
    return complete;
}

}  // namespace kv::host
