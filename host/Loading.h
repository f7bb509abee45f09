// Hands a channel plan and its intermodulation products to the control, a little at a time.
#pragma once

#include <optional>
#include <vector>

#include "host/Com.h"
#include "host/plan/CommandLine.h"
#include "host/plan/Plan.h"
#include "host/plan/Products.h"
#include "kvBandscope.h"

namespace kv::host {

/// Fills the control anew. The transmitters and receivers go in at once; products, of which there may be half a
/// million, in steps that leave the window time for its messages. Calls that fail throw Failure.
class Loading {
  public:
    /// Throws Failure with kExitUsage when the orders chosen would give more than two million products.
    Loading(_kvBandscope& control, IClassFactory& freqSlot, const Plan& plan, const ProductOptions& options);

    /// Works for a few hundredths of a second; true when everything is in the control.
    [[nodiscard]] bool step();
    /// Takes the products out again, those that are in so far.
    void cancel();

    [[nodiscard]] double fractionDone() const noexcept;
    [[nodiscard]] std::size_t productCount() const noexcept { return products_; }

    /// Sets the scale to what was loaded and draws it: the range asked for, otherwise everything that transmits,
    /// products included, or all channels when nothing does. Does nothing for a plan without channels.
    void show(const std::optional<RangeMhz>& range);

  private:
    struct Powers {
        double lowest = 0.0;
        double highest = 0.0;
    };

    void addChannels();
    void addProduct(const Product& product);
    void addTerms(_FreqSlot& slot, const Product& product);
    void add(const PlanChannel& channel);
    void setCommon(_FreqSlot& slot, std::int64_t frequencyHz, std::int64_t bandwidthHz, double powerDbm);
    [[nodiscard]] ComPtr<_FreqSlot> newSlot();
    void note(double powerDbm);
    void setPowerScale();

    _kvBandscope& control_;
    IClassFactory& freqSlot_;
    const Plan& plan_;
    std::vector<const PlanChannel*> transmitters_;  // in the order that products count them
    std::vector<Bstr> transmitterLabels_;
    Bstr megahertz_{L"MHz"};
    Bstr kilohertz_{L"KHz"};
    std::uint64_t combinations_;
    ProductGenerator generator_;
    std::size_t products_ = 0;
    std::optional<Powers> powers_;
};

/// Draws the range around a span in MHz with round grid lines.
void drawTidily(_kvBandscope& control, double lowest, double highest);

}  // namespace kv::host
