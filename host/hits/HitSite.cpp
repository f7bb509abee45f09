#include "host/hits/HitSite.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "host/hits/ReceiverEdges.h"

namespace kv::host {

namespace {

Band overlapping(const Band& a, const Band& b) noexcept {
    return {std::max(a.lowest, b.lowest), std::min(a.highest, b.highest)};
}

}  // namespace

HitSite::HitSite(const Plan& plan) {
    for (const PlanChannel& channel : plan.channels) {
        (channel.transmits ? transmitters_ : receivers_).push_back(channel);
    }
}

std::wstring HitSite::formulaOf(const Hit& hit) const {
    std::wstring text;
    for (std::size_t i = 0; i < hit.coefficients.size() && hit.coefficients[i] != 0; ++i) {
        const auto coefficient = hit.coefficients[i];
        if (coefficient < 0) {
            text += i == 0 ? L"-" : L" - ";
        } else if (i > 0) {
            text += L" + ";
        }
        if (std::abs(coefficient) != 1) {
            text += std::to_wstring(std::abs(coefficient)) + L" x ";
        }
        text += transmitters_[hit.transmitters[i]].key;
    }
    return text;
}

std::int64_t HitSite::frequencyOf(const Hit& hit) const noexcept {
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < hit.coefficients.size() && hit.coefficients[i] != 0; ++i) {
        sum += hit.coefficients[i] * transmitters_[hit.transmitters[i]].frequencyHz;
    }
    return sum;
}

std::int64_t HitSite::bandwidthOf(const Hit& hit) const noexcept {
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < hit.coefficients.size() && hit.coefficients[i] != 0; ++i) {
        sum += std::abs(hit.coefficients[i]) * transmitters_[hit.transmitters[i]].bandwidthHz;
    }
    return sum;
}

std::int64_t HitSite::offsetOf(const Hit& hit) const noexcept {
    return frequencyOf(hit) - receiverOf(hit).frequencyHz;
}

std::int64_t HitSite::overlapOf(const Hit& hit) const noexcept {
    const PlanChannel& receiver = receiverOf(hit);
    const Band both =
        overlapping(bandOf(receiver.frequencyHz, receiver.bandwidthHz), bandOf(frequencyOf(hit), bandwidthOf(hit)));
    return both.highest - both.lowest;
}

Hit hitOf(const Product& product, std::uint32_t receiver) noexcept {
    Hit hit;
    hit.receiver = receiver;
    hit.hundredthsDbm = static_cast<std::int32_t>(std::lround(product.powerDbm * 100.0));
    for (std::size_t i = 0; i < product.termCount; ++i) {
        hit.transmitters[i] = product.terms[i].transmitter;
        hit.coefficients[i] = static_cast<std::int8_t>(product.terms[i].coefficient);
    }
    return hit;
}

bool sameProduct(const Hit& a, const Hit& b) noexcept {
    return a.transmitters == b.transmitters && a.coefficients == b.coefficients;
}

int orderOf(const Hit& hit) noexcept {
    int order = 0;
    for (const std::int8_t coefficient : hit.coefficients) {
        order += std::abs(coefficient);
    }
    return order;
}

Spot spotOf(const HitSite& site, const Hit& hit) {
    constexpr double kMegahertz = 1e6;
    constexpr double kReceiverBands = 2.0;  // on each side of the center
    constexpr double kRoom = 1.1;           // around the band of the product
    const PlanChannel& receiver = site.receiverOf(hit);
    const auto center = static_cast<double>(receiver.frequencyHz);
    const double reach =
        static_cast<double>(std::abs(site.offsetOf(hit))) + static_cast<double>(site.bandwidthOf(hit)) / 2.0;
    const double half = std::max(kReceiverBands * static_cast<double>(receiver.bandwidthHz), kRoom * reach);
    return {std::max(center - half, 0.0) / kMegahertz, (center + half) / kMegahertz,
            static_cast<double>(site.frequencyOf(hit)) / kMegahertz};
}

}  // namespace kv::host
