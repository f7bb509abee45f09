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

/// A coefficient and the index of its transmitter.
struct ProductTerm {
    std::int16_t coefficient = 0;
    std::uint16_t transmitter = 0;
};

/// There are often half a million products, so a product allocates no memory.
struct Product {
    std::int64_t frequencyHz = 0;
    std::int64_t bandwidthHz = 0;  ///< sum of |coefficient| x bandwidth
    double powerDbm = 0.0;
    std::uint8_t order = 0;
    std::uint8_t termCount = 0;
    std::array<ProductTerm, 5> terms{};  ///< termCount terms, positive coefficients first
};

struct ProductOptions {
    bool second = false;  ///< A+B, A-B
    bool third = true;    ///< A+B-C, 2A-B
    bool fifth = false;   ///< 2A+B-2C, 3A-2B
    /// Used with fifth: also A+B+C-D-E, 2A+B-C-D, A+B+C-2D and 3A-B-C, the other forms that are near the band. The
    /// number of products of the first form grows with the fifth power of the number of transmitters.
    bool everyFifthForm = false;
    /// Only products whose center is in this range, including its ends. Products at 0 Hz or below are never generated.
    std::int64_t lowestHz = 1;
    std::int64_t highestHz = std::numeric_limits<std::int64_t>::max();
    /// Output intercept point of the mixing stage, the same for every order.
    double interceptDbm = 70.0;
};

/// The number of combinations that the selected orders have for a number of transmitters, before any range is applied.
/// A larger number than the type can hold becomes its maximum.
[[nodiscard]] std::uint64_t countCombinations(std::size_t transmitters, const ProductOptions& options) noexcept;

/// Generates the products one by one. Within an order the strongest form is first, so that in a picture drawn in this
/// order the lower boxes are in front of the higher ones.
///
/// Frequencies are exact, in whole hertz. The order of a product is the sum of the magnitudes of its coefficients. Its
/// level is that of the power-series model of a weakly non-linear stage, which ITU-R SM.1134 and SM.1446 use:
///     P = sum |c_i| P_i - (order - 1) IP + 20 log10(M / M2)      all powers in dBm
/// where IP is the intercept point, M = order! / prod |c_i|! is the number of ways in which the terms mix, and M2 is
/// that number for the two-signal product of the same order, which defines the intercept point. So with equal carriers,
/// A+B-C is 6.02 dB above 2A-B. One intercept point is used for every order, although that of the second order is
/// usually higher in practice. Therefore compare levels of second-order products with each other only.
class ProductGenerator {
  public:
    /// Throws std::length_error for more than 65,535 transmitters.
    ProductGenerator(std::vector<Transmitter> transmitters, const ProductOptions& options);

    enum class Step { kProduct, kPause, kEnd };

    /// Writes the next product and returns kProduct, or returns kEnd when there is none left. After many combinations
    /// outside the range it returns kPause, so that the caller can handle its window's messages and call again, or
    /// stop.
    [[nodiscard]] Step next(Product& product);
    /// The combinations tried so far, of countCombinations(), for a progress bar.
    [[nodiscard]] std::uint64_t tried() const noexcept { return tried_; }

  private:
    [[nodiscard]] bool nextCombination();
    [[nodiscard]] bool taken(std::size_t level, std::size_t candidate) const noexcept;
    void fill(Product& product, std::int64_t frequencyHz) const;

    std::vector<Transmitter> transmitters_;
    ProductOptions options_;
    std::size_t form_ = 0;                 // index into the table of forms
    std::array<std::size_t, 5> chosen_{};  // transmitter of each term
    bool started_ = false;                 // chosen_ holds a combination of form_
    std::uint64_t tried_ = 0;
};

/// The sum that gives a product's frequency, with letters for the transmitters: "2A-B", "A+B-C".
[[nodiscard]] std::wstring productFormula(const Product& product);

/// The label by which the control recognizes a product: "Intermod Product [third order product] 2A-B".
[[nodiscard]] std::wstring productLabel(const Product& product);

/// The key of a product; numbers begin with 1: "TXIM000001".
[[nodiscard]] std::wstring productKey(std::size_t number);

}  // namespace kv::host
