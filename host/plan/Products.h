// Intermodulation products of a site's transmitters.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace kv::host {

struct Transmitter {
    std::int64_t frequencyHz = 0;
    std::int64_t bandwidthHz = 0;
    double powerDbm = 0.0;
};

/// Coefficient times a transmitter, which is an index into the transmitters given.
struct ProductTerm {
    std::int16_t coefficient = 0;
    std::uint16_t transmitter = 0;
};

/// Half a million of these are an everyday number: nothing in them is allocated.
struct Product {
    std::int64_t frequencyHz = 0;
    std::int64_t bandwidthHz = 0;  ///< sum of |coefficient| x bandwidth
    double powerDbm = 0.0;
    std::uint8_t order = 0;
    std::uint8_t termCount = 0;
    std::array<ProductTerm, 5> terms{};  ///< the first termCount of them, positive coefficients first
};

struct ProductOptions {
    bool second = false;  ///< A+B, A-B
    bool third = true;    ///< A+B-C, 2A-B
    bool fifth = false;   ///< 2A+B-2C, 3A-2B
    /// With fifth, also A+B+C-D-E, 2A+B-C-D, A+B+C-2D and 3A-B-C: the rest that falls near the band. The first of them
    /// grows with the fifth power of the number of transmitters.
    bool everyFifthForm = false;
    /// Only products whose centre lies in this range, ends included. Those not above 0 are never given.
    std::int64_t lowestHz = 1;
    std::int64_t highestHz = std::numeric_limits<std::int64_t>::max();
    /// Output intercept point of the mixing stage, the same for every order.
    double interceptDbm = 70.0;
};

/// How many combinations the chosen orders have for a number of transmitters, before any range is applied; the
/// largest number there is when it would be more.
[[nodiscard]] std::uint64_t countCombinations(std::size_t transmitters, const ProductOptions& options) noexcept;

/// Goes through the products one by one, within an order the strongest form first, so that a picture painted in this
/// order keeps the lower boxes in front of the higher ones.
///
/// Frequencies are exact, in whole hertz. The order of a product is the sum of the magnitudes of its coefficients. Its
/// level follows from the power-series model of a weakly non-linear stage that ITU-R SM.1134 and SM.1446 use:
///     P = sum |c_i| P_i - (order - 1) IP + 20 log10(M / M2)      all powers in dBm
/// where IP is the intercept point and M = order! / prod |c_i|! the number of ways in which the terms mix, against M2
/// of the two-signal product of the same order that defines the intercept point. With equal carriers A+B-C thus lies
/// 6.02 dB above 2A-B. One intercept point serves every order, although that of the second order is usually higher in
/// practice: levels of second-order products are to be compared with each other only.
class ProductGenerator {
  public:
    /// Throws std::length_error for more than 65,535 transmitters.
    ProductGenerator(std::vector<Transmitter> transmitters, const ProductOptions& options);

    enum class Step { kProduct, kPause, kEnd };

    /// Writes the next product, kProduct, or says that there is none left, kEnd. After many combinations outside the
    /// range it answers kPause, so that the caller can look after its window and come again, or leave it at that.
    [[nodiscard]] Step next(Product& product);
    /// Combinations tried so far, out of countCombinations(); for progress.
    [[nodiscard]] std::uint64_t tried() const noexcept { return tried_; }

  private:
    [[nodiscard]] bool nextCombination();
    [[nodiscard]] bool taken(std::size_t level, std::size_t candidate) const noexcept;
    void fill(Product& product, std::int64_t frequencyHz) const;

    std::vector<Transmitter> transmitters_;
    ProductOptions options_;
    std::size_t form_ = 0;                 // into the table of forms
    std::array<std::size_t, 5> chosen_{};  // transmitter of each term
    bool started_ = false;                 // chosen_ holds a combination of form_
    std::uint64_t tried_ = 0;
};

/// The sum that makes up a product, transmitters as letters: "2A-B", "A+B-C".
[[nodiscard]] std::wstring productFormula(const Product& product);

/// The label under which the control recognises a product: "Intermod Product [third order product] 2A-B".
[[nodiscard]] std::wstring productLabel(const Product& product);

/// The key of a product by its number from 1: "TXIM000001".
[[nodiscard]] std::wstring productKey(std::size_t number);

}  // namespace kv::host
