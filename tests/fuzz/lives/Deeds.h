// The things that happen in a random life.
#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "tests/fuzz/lives/Twin.h"

namespace kv::fuzz {

/// Chooses what happens next; the same seed chooses the same.
class Deeds {
  public:
    explicit Deeds(std::uint64_t seed) : random_(seed), foreign_(oneIn(3) ? 2 + upTo(40) : 0), hasOther_(oneIn(3)) {}

    /// Something to do, with its name. Keeps the twin's model of the channels up to date.
    struct Deed {
        std::string name;
        Action action;
    };
    [[nodiscard]] Deed next(Twin& twin);

  private:
    [[nodiscard]] Deed ofTheStore(Twin& twin);
    [[nodiscard]] Deed ofTheRecords();
    [[nodiscard]] Deed ofOneRecord();
    [[nodiscard]] Deed ofManyRecords();
    [[nodiscard]] Deed ofTheOther();
    [[nodiscard]] Deed ofTheHost();
    [[nodiscard]] Deed ofTheMouse();
    [[nodiscard]] Deed ofTheHands();
    /// The host's code that runs in the middle of something else: it draws, moves or fails, but changes no channel.
    [[nodiscard]] Action interruption();

    [[nodiscard]] std::size_t upTo(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_);
    }
    [[nodiscard]] bool oneIn(std::size_t count) { return upTo(count) == 0; }
    [[nodiscard]] double between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }
    /// Mostly around the channels, sometimes hostile; MHz.
    [[nodiscard]] double frequency();
    [[nodiscard]] double power();
    [[nodiscard]] channels::FreqSlotFields fields();

    std::mt19937_64 random_;
    std::size_t foreign_;  ///< in this life one of so many records is foreign; 0 for none
    bool hasOther_;        ///< in this life the host has a second control
    int lastKey_ = 0;
};

}  // namespace kv::fuzz
