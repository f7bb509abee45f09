// Intermodulation products, against counts and frequencies found another way.
#include "host/plan/Products.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <map>
#include <set>
#include <stdexcept>

namespace {

using kv::host::countCombinations;
using kv::host::Product;
using kv::host::ProductGenerator;
using kv::host::ProductOptions;
using kv::host::ProductTerm;
using kv::host::Transmitter;

std::vector<Product> all(const std::vector<Transmitter>& transmitters, const ProductOptions& options) {
    ProductGenerator generator(transmitters, options);
    std::vector<Product> products;
    Product product;
    for (;;) {
        const ProductGenerator::Step step = generator.next(product);
        if (step == ProductGenerator::Step::kEnd) {
            EXPECT_EQ(generator.tried(), countCombinations(transmitters.size(), options));
            return products;
        }
        if (step == ProductGenerator::Step::kProduct) {
            products.push_back(product);
        }
    }
}

/// Transmitters whose sums are all different: powers of 12 above any coefficient.
std::vector<Transmitter> spread(int count) {
    std::vector<Transmitter> result;
    std::int64_t step = 1;
    for (int i = 0; i < count; ++i, step *= 12) {
        result.push_back({1'000'000'000'000 + step, 12500, 40.0});
    }
    return result;
}

std::int64_t countOf(std::int64_t n, const ProductOptions& options) {
    return static_cast<std::int64_t>(all(spread(static_cast<int>(n)), options).size());
}

ProductOptions only(int order, bool everyForm = false) {
    ProductOptions options;
    options.second = order == 2;
    options.third = order == 3;
    options.fifth = order == 5;
    options.everyFifthForm = everyForm;
    return options;
}

TEST(Products, ThirdOrderCountsByFormulaAndTable) {
    const std::map<std::int64_t, std::int64_t> table = {{2, 2}, {3, 9}, {4, 24}, {5, 50}, {6, 90}, {7, 147}, {8, 224}};
    for (const auto& [n, expected] : table) {
        EXPECT_EQ(countOf(n, only(3)), expected) << n;
        EXPECT_EQ(expected, n * n * (n - 1) / 2) << n;
    }
    for (const auto& [n, expected] : std::map<std::size_t, std::uint64_t>{{32, 15872}, {100, 495000}}) {
        EXPECT_EQ(countCombinations(n, only(3)), expected);
    }
}

TEST(Products, FormsOfTheThirdOrderByFormula) {
    for (std::int64_t n = 0; n <= 9; ++n) {
        std::int64_t pairs = 0;
        std::int64_t triples = 0;
        for (const Product& product : all(spread(static_cast<int>(n)), only(3))) {
            (product.termCount == 2 ? pairs : triples) += 1;
        }
        EXPECT_EQ(pairs, n * (n - 1)) << n;
        EXPECT_EQ(triples, n * (n - 1) * (n - 2) / 2) << n;
    }
}

/// All integer vectors of a given order and sum, counted without knowing any form.
std::int64_t vectorsOf(int n, int order, int sum) {
    if (n == 0) {
        return order == 0 && sum == 0 ? 1 : 0;
    }
    std::int64_t count = 0;
    for (int c = -order; c <= order; ++c) {
        count += vectorsOf(n - 1, order - std::abs(c), sum - c);
    }
    return count;
}

TEST(Products, EveryFormIsThereOnceWhateverTheNumber) {
    for (int n = 1; n <= 7; ++n) {
        EXPECT_EQ(countOf(n, only(3)), vectorsOf(n, 3, 1)) << n;
        EXPECT_EQ(countOf(n, only(5, true)), vectorsOf(n, 5, 1)) << n;
    }
}

TEST(Products, SecondOrderGivesSumsAndPositiveDifferences) {
    for (std::int64_t n = 0; n <= 8; ++n) {
        EXPECT_EQ(countOf(n, only(2)), n * (n - 1)) << n;
    }
    const std::vector<Transmitter> two = {{100'000'000, 10, 0}, {150'000'000, 10, 0}};
    std::multiset<std::int64_t> found;
    for (const Product& product : all(two, only(2))) {
        found.insert(product.frequencyHz);
    }
    EXPECT_EQ(found, (std::multiset<std::int64_t>{50'000'000, 250'000'000}));
}

TEST(Products, EqualFrequenciesGiveNoDifferenceAtZero) {
    const std::vector<Transmitter> two(2, {100'000'000, 10, 0});
    ASSERT_EQ(all(two, only(2)).size(), 1u);
    EXPECT_EQ(all(two, only(2))[0].frequencyHz, 200'000'000);
}

TEST(Products, NoneAtOrBelowZero) {
    const std::vector<Transmitter> two = {{100'000'000, 10, 0}, {200'000'000, 10, 0}, {500'000'000, 10, 0}};
    ProductOptions options = only(3);
    options.lowestHz = -1'000'000'000'000;
    for (const Product& product : all(two, options)) {
        EXPECT_GT(product.frequencyHz, 0);
    }
    // 2A-B: 2x100-200 = 0, 2x100-500 < 0, 2x200-500 < 0 are out; A+B-C: 100+200-500 < 0 is out.
    EXPECT_EQ(all(two, options).size(), 9u - 4u);
}

TEST(Products, FifthOrderNearTheBandByFormula) {
    for (std::int64_t n = 0; n <= 8; ++n) {
        EXPECT_EQ(countOf(n, only(5)), n * (n - 1) + n * (n - 1) * (n - 2)) << n;
    }
}

TEST(Products, NoProductTwiceAndEachSumRight) {
    const std::vector<Transmitter> site = spread(7);
    ProductOptions options = only(5, true);
    options.second = options.third = true;
    std::set<std::vector<int>> seen;
    for (const Product& product : all(site, options)) {
        std::vector<int> coefficients(site.size());
        std::int64_t frequency = 0;
        std::int64_t bandwidth = 0;
        int order = 0;
        for (std::size_t i = 0; i < product.termCount; ++i) {
            const ProductTerm& term = product.terms[i];
            ASSERT_LT(term.transmitter, site.size());
            ASSERT_EQ(coefficients[term.transmitter], 0) << "a transmitter twice in a product";
            coefficients[term.transmitter] = term.coefficient;
            frequency += term.coefficient * site[term.transmitter].frequencyHz;
            bandwidth += std::abs(term.coefficient) * site[term.transmitter].bandwidthHz;
            order += std::abs(term.coefficient);
        }
        EXPECT_EQ(product.frequencyHz, frequency);
        EXPECT_EQ(product.bandwidthHz, bandwidth);
        EXPECT_EQ(product.order, order);
        EXPECT_TRUE(seen.insert(coefficients).second) << "a product twice";
    }
}

TEST(Products, RangeIncludesItsEnds) {
    std::vector<Transmitter> gmrs;
    for (int i = 0; i < 8; ++i) {
        gmrs.push_back({462'550'000 + 25'000 * i, 11'250, 47.0});
    }
    ProductOptions options = only(3);
    options.lowestHz = 462'375'000;
    options.highestHz = 462'900'000;
    EXPECT_EQ(all(gmrs, options).size(), 224u);
    const std::vector<Product> everything = all(gmrs, only(3));
    const auto at = [&](std::int64_t hz) {
        return std::count_if(everything.begin(), everything.end(),
                             [hz](const Product& product) { return product.frequencyHz == hz; });
    };
    options.lowestHz += 1;
    EXPECT_EQ(static_cast<std::int64_t>(all(gmrs, options).size()), 224 - at(462'375'000));
    options.highestHz -= 1;
    EXPECT_EQ(static_cast<std::int64_t>(all(gmrs, options).size()), 224 - at(462'375'000) - at(462'900'000));
    EXPECT_GT(at(462'375'000), 0);
    EXPECT_GT(at(462'900'000), 0);
}

TEST(Products, LevelsByInterceptPoint) {
    const std::vector<Transmitter> three = {{100'000'000, 10, 40.0}, {110'000'000, 10, 43.0}, {125'000'000, 10, 37.0}};
    ProductOptions options = only(3);
    options.interceptDbm = 65.0;
    for (const Product& product : all(three, options)) {
        double carriers = 0.0;
        for (std::size_t i = 0; i < product.termCount; ++i) {
            carriers += std::abs(product.terms[i].coefficient) * three[product.terms[i].transmitter].powerDbm;
        }
        const double threeSignal = product.termCount == 3 ? 6.0206 : 0.0;
        EXPECT_NEAR(product.powerDbm, carriers - 2.0 * 65.0 + threeSignal, 1e-4);
    }
}

TEST(Products, CarriersAtTheInterceptPointGiveTwoSignalProductsAtIt) {
    const std::vector<Transmitter> two = {{100'000'000, 10, 55.0}, {110'000'000, 10, 55.0}};
    ProductOptions options = only(5);
    options.second = options.third = true;
    options.interceptDbm = 55.0;
    const std::vector<Product> products = all(two, options);
    EXPECT_EQ(products.size(), 2u + 2u + 2u);
    for (const Product& product : products) {
        EXPECT_NEAR(product.powerDbm, 55.0, 1e-9) << int{product.order};
    }
}

/// The amplitude of a mixed term in (a + b + c + d + e)^5 is its multinomial coefficient, 5! / prod |c_i|!.
TEST(Products, FifthOrderLevelsFollowTheMixingWays) {
    ProductOptions options = only(5, true);
    options.interceptDbm = 40.0;
    std::map<std::wstring, double> levels;
    for (const Product& product : all(spread(5), options)) {
        levels[kv::host::productFormula(product)] = product.powerDbm;
    }
    const std::map<std::wstring, int> ways = {{L"3A-2B", 10},    {L"3A-B-C", 20},   {L"2A+B-2C", 30},
                                              {L"A+B+C-2D", 60}, {L"2A+B-C-D", 60}, {L"A+B+C-D-E", 120}};
    ASSERT_EQ(levels.size(), ways.size());
    for (const auto& [formula, number] : ways) {
        EXPECT_NEAR(levels.at(formula), 40.0 + 20.0 * std::log10(number / 10.0), 1e-9);
    }
}

TEST(Products, StrongerFormsOfAnOrderComeFirst) {
    ProductOptions options = only(5, true);
    options.third = true;
    double last = 1e9;
    int order = 0;
    for (const Product& product : all(spread(6), options)) {
        EXPECT_GE(product.order, order);
        if (product.order == order) {
            EXPECT_LE(product.powerDbm, last + 1e-9);
        }
        order = product.order;
        last = product.powerDbm;
    }
}

TEST(Products, NothingChosenOrNobodyThere) {
    EXPECT_TRUE(all(spread(5), only(0)).empty());
    EXPECT_TRUE(all({}, only(3)).empty());
    EXPECT_TRUE(all(spread(1), only(3)).empty());
}

TEST(Products, CountsTooLargeForANumberAreTheLargestThereIs) {
    EXPECT_EQ(countCombinations(1'000'000'000, only(5, true)), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(countCombinations(65535, only(3)), 65535ull * 65535 * 65534 / 2);
}

TEST(Products, TooManyTransmittersAreRefused) {
    EXPECT_THROW(ProductGenerator(std::vector<Transmitter>(65536), only(3)), std::length_error);
}

TEST(Products, PausesWhenNothingFallsIntoTheRange) {
    ProductOptions options = only(3);
    options.lowestHz = options.highestHz = 1;
    std::vector<Transmitter> site;
    for (int i = 0; i < 100; ++i) {
        site.push_back({150'000'000 + 12'500 * i, 11'250, 47.0});
    }
    ProductGenerator generator(site, options);
    Product product;
    std::uint64_t before = 0;
    int pauses = 0;
    while (generator.next(product) == ProductGenerator::Step::kPause) {
        EXPECT_GT(generator.tried(), before);
        before = generator.tried();
        ++pauses;
    }
    EXPECT_EQ(pauses, 7);  // 495,000 combinations
    EXPECT_EQ(generator.next(product), ProductGenerator::Step::kEnd);
}

TEST(Products, RasterSiteOfAHundred) {
    std::vector<Transmitter> site;
    for (int i = 0; i < 100; ++i) {
        site.push_back({150'000'000 + 12'500 * i, 11'250, 47.0});
    }
    std::map<std::int64_t, int> perFrequency;
    std::size_t products = 0;
    for (const Product& product : all(site, only(3))) {
        ++perFrequency[product.frequencyHz];
        ++products;
    }
    EXPECT_EQ(products, 495000u);
    EXPECT_EQ(perFrequency.size(), 298u);
    EXPECT_EQ(std::max_element(perFrequency.begin(), perFrequency.end(),
                               [](const auto& a, const auto& b) { return a.second < b.second; })
                  ->second,
              3675);
    EXPECT_EQ(perFrequency.begin()->first, 148'762'500);
    EXPECT_EQ(perFrequency.rbegin()->first, 152'475'000);
}

TEST(Products, LabelKeyAndFormula) {
    const std::vector<Transmitter> three = {{100'000'000, 10, 40}, {110'000'000, 10, 40}, {125'000'000, 10, 40}};
    std::set<std::wstring> labels;
    ProductOptions options = only(5);
    options.second = options.third = true;
    for (const Product& product : all(three, options)) {
        labels.insert(kv::host::productLabel(product));
    }
    EXPECT_THAT(labels,
                testing::ElementsAre(
                    L"Intermod Product [fifth order product] 2A+B-2C", L"Intermod Product [fifth order product] 3A-2B",
                    L"Intermod Product [second order product] A+B", L"Intermod Product [second order product] A-B",
                    L"Intermod Product [third order product] 2A-B", L"Intermod Product [third order product] A+B-C"));
    EXPECT_EQ(kv::host::productKey(1), L"TXIM000001");
    EXPECT_EQ(kv::host::productKey(999999), L"TXIM999999");
    EXPECT_EQ(kv::host::productKey(1000000), L"TXIM1000000");
}

}  // namespace
