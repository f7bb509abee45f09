#include "host/plan/Products.h"

#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace kv::host {

namespace {

constexpr std::uint64_t kPauseAfter = 65536;  // takes one or two milliseconds

/// The options that select a form.
enum class Wanted { kSecond, kThird, kFifth, kEveryFifth };

struct Form {
    Wanted wanted;
    std::uint8_t order;
    std::uint8_t termCount;
    std::array<std::int16_t, 5> coefficients;  // equal coefficients are next to each other
};

// Within an order by decreasing number of mixing ways, and so by decreasing level.
constexpr std::array<Form, 10> kForms = {{{Wanted::kSecond, 2, 2, {1, 1}},
                                          {Wanted::kSecond, 2, 2, {1, -1}},
                                          {Wanted::kThird, 3, 3, {1, 1, -1}},
                                          {Wanted::kThird, 3, 2, {2, -1}},
                                          {Wanted::kEveryFifth, 5, 5, {1, 1, 1, -1, -1}},
                                          {Wanted::kEveryFifth, 5, 4, {2, 1, -1, -1}},
                                          {Wanted::kEveryFifth, 5, 4, {1, 1, 1, -2}},
                                          {Wanted::kFifth, 5, 3, {2, 1, -2}},
                                          {Wanted::kEveryFifth, 5, 3, {3, -1, -1}},
                                          {Wanted::kFifth, 5, 2, {3, -2}}}};

bool wants(const ProductOptions& options, const Form& form) {
    switch (form.wanted) {
        case Wanted::kSecond:
            return options.second;
        case Wanted::kThird:
            return options.third;
        case Wanted::kFifth:
            return options.fifth;
        case Wanted::kEveryFifth:
            return options.fifth && options.everyFifthForm;
    }
    return false;
}

int factorial(int n) {
    return n < 2 ? 1 : n * factorial(n - 1);
}

/// order! / prod |c_i|!
int mixingWays(const Form& form) {
    int ways = factorial(form.order);
    for (std::size_t i = 0; i < form.termCount; ++i) {
        ways /= factorial(std::abs(form.coefficients[i]));
    }
    return ways;
}

/// The mixing ways of the two-signal product that defines the intercept point of an order: A-B, 2A-B or 3A-2B.
int definingWays(int order) {
    return factorial(order) / (factorial((order + 1) / 2) * factorial(order / 2));
}

/// Terms that can be exchanged without giving another product.
int interchanges(const Form& form) {
    int result = 1;
    int alike = 1;
    for (std::size_t i = 1; i < form.termCount; ++i) {
        alike = form.coefficients[i] == form.coefficients[i - 1] ? alike + 1 : 1;
        result *= alike;
    }
    return result;
}

}  // namespace

std::uint64_t countCombinations(std::size_t transmitters, const ProductOptions& options) noexcept {
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t total = 0;
    for (const Form& form : kForms) {
        if (!wants(options, form)) {
            continue;
        }
        std::uint64_t ways = 1;
        for (std::size_t i = 0; i < form.termCount; ++i) {
            const std::uint64_t left = transmitters > i ? transmitters - i : 0;
            if (__builtin_mul_overflow(ways, left, &ways)) {
                return kMost;
            }
        }
        if (__builtin_add_overflow(total, ways / static_cast<std::uint64_t>(interchanges(form)), &total)) {
            return kMost;
        }
    }
    return total;
}

ProductGenerator::ProductGenerator(std::vector<Transmitter> transmitters, const ProductOptions& options)
    : transmitters_(std::move(transmitters)), options_(options) {
    if (transmitters_.size() > std::numeric_limits<std::uint16_t>::max()) {
        throw std::length_error("more than 65535 transmitters");
    }
}

ProductGenerator::Step ProductGenerator::next(Product& product) {
    const std::uint64_t pause = tried_ + kPauseAfter;
    for (; form_ < kForms.size(); ++form_) {
        const Form& form = kForms[form_];
        while (wants(options_, form) && nextCombination()) {
            ++tried_;
            std::int64_t frequency = 0;
            for (std::size_t i = 0; i < form.termCount; ++i) {
                frequency += form.coefficients[i] * transmitters_[chosen_[i]].frequencyHz;
            }
            if (frequency > 0 && frequency >= options_.lowestHz && frequency <= options_.highestHz) {
                fill(product, frequency);
                return Step::kProduct;
            }
            if (tried_ >= pause) {
                return Step::kPause;
            }
        }
        started_ = false;
    }
    return Step::kEnd;
}

/// Moves chosen_ to the next set of different transmitters. The indexes of terms with equal coefficients are in rising
/// order, so that each product is generated once. The last term changes fastest, like the last digit of a counter.
bool ProductGenerator::nextCombination() {
    const Form& form = kForms[form_];
    const std::size_t last = form.termCount - std::size_t{1};
    std::size_t level = started_ ? last : 0;
    bool entering = !started_;  // this level was reached from the one before it
    for (;;) {
        std::size_t candidate = 0;
        if (!entering) {
            candidate = chosen_[level] + 1;
        } else if (level > 0 && form.coefficients[level] == form.coefficients[level - 1]) {
            candidate = chosen_[level - 1] + 1;
        }
        while (taken(level, candidate)) {
            ++candidate;
        }
        if (candidate >= transmitters_.size()) {
            if (level == 0) {
                return false;
            }
            --level;
            entering = false;
            continue;
        }
        chosen_[level] = candidate;
        if (level == last) {
            started_ = true;
            return true;
        }
        ++level;
        entering = true;
    }
}

bool ProductGenerator::taken(std::size_t level, std::size_t candidate) const noexcept {
    for (std::size_t i = 0; i < level; ++i) {
        if (chosen_[i] == candidate) {
            return true;
        }
    }
    return false;
}

void ProductGenerator::fill(Product& product, std::int64_t frequencyHz) const {
    const Form& form = kForms[form_];
    product.frequencyHz = frequencyHz;
    product.bandwidthHz = 0;
    product.order = form.order;
    product.termCount = form.termCount;
    product.powerDbm = 20.0 * std::log10(static_cast<double>(mixingWays(form)) / definingWays(form.order)) -
                       (form.order - 1) * options_.interceptDbm;
    for (std::size_t i = 0; i < form.termCount; ++i) {
        const Transmitter& transmitter = transmitters_[chosen_[i]];
        const int magnitude = std::abs(form.coefficients[i]);
        product.bandwidthHz += magnitude * transmitter.bandwidthHz;
        product.powerDbm += magnitude * transmitter.powerDbm;
        product.terms[i] = {form.coefficients[i], static_cast<std::uint16_t>(chosen_[i])};
    }
}

std::wstring productFormula(const Product& product) {
    std::wstring text;
    for (std::size_t i = 0; i < product.termCount; ++i) {
        const int coefficient = product.terms[i].coefficient;
        if (coefficient < 0) {
            text += L'-';
        } else if (i > 0) {
            text += L'+';
        }
        if (std::abs(coefficient) != 1) {
            text += std::to_wstring(std::abs(coefficient));
        }
        text += static_cast<wchar_t>(L'A' + static_cast<int>(i));
    }
    return text;
}

std::wstring productLabel(const Product& product) {
    const wchar_t* const order = product.order == 2 ? L"second" : product.order == 3 ? L"third" : L"fifth";
    return std::wstring(L"Intermod Product [") + order + L" order product] " + productFormula(product);
}

std::wstring productKey(std::size_t number) {
    constexpr std::size_t kDigits = 6;
    std::wstring digits = std::to_wstring(number);
    if (digits.size() < kDigits) {
        digits.insert(0, kDigits - digits.size(), L'0');
    }
    return L"TXIM" + digits;
}

}  // namespace kv::host
