// Adds a channel plan and its intermodulation products to the control, in small steps.
#pragma once

#include <optional>
#include <vector>

#include "host/Com.h"
#include "host/EarlierContents.h"
#include "host/plan/CommandLine.h"
#include "host/plan/Plan.h"
#include "host/plan/Products.h"
#include "kvBandscope.h"

namespace kv::host {

/// Replaces the contents of the control. Transmitters and receivers are added at once. Products, of which there may be
/// half a million, are added in steps, so that the window can handle its messages between them. A call of the control
/// that fails throws Failure; then the control shows its earlier contents again.
class Loading {
  public:
    /// Changes nothing in the control yet. Throws Failure with kExitUsage when the selected orders would give more than
    /// two million products. The range is `range` if it is given. Otherwise it is that of all transmit channels,
    /// including products, or of all channels if there is no transmit channel. `kept` is the range that the user looks
    /// at. It takes precedence as long as a channel may be in it.
    Loading(_kvBandscope& control, IClassFactory& freqSlot, const Plan& plan, const ProductOptions& options,
            const std::optional<RangeMhz>& range, const std::optional<RangeMhz>& kept = std::nullopt);

    /// Replaces the channels, and draws the new ones.
    void start();
    /// Works for a few hundredths of a second; true when all products have been added.
    [[nodiscard]] bool step();
    /// Removes the products that have been added so far.
    void cancel();
    /// Sets the power scale for the loaded channels and draws them. Does nothing for a plan without channels.
    void show();

    [[nodiscard]] double fractionDone() const noexcept;
    [[nodiscard]] std::size_t productCount() const noexcept { return products_; }

  private:
    struct Powers {
        double lowest = 0.0;
        double highest = 0.0;
    };

    /// Does a part of the work. If it fails, the earlier contents are put back.
    template <class Work>
    void change(Work work);
    void addChannels();
    bool addProducts();
    /// Before the products are added, it is not known yet what can be seen in the kept range.
    void draw(bool hasProducts);
    void drawExactly(const RangeMhz& range);
    [[nodiscard]] bool reaches(const RangeMhz& range);
    void addProduct(const Product& product);
    void addTerms(_FreqSlot& slot, const Product& product);
    void add(const PlanChannel& channel);
    void addTransmit(_FreqSlot& slot);
    void addReceive(_FreqSlot& slot);
    void setCommon(_FreqSlot& slot, std::int64_t frequencyHz, std::int64_t bandwidthHz, double powerDbm);
    [[nodiscard]] ComPtr<_FreqSlot> newSlot();
    void note(double powerDbm);
    void setPowerScale();

    _kvBandscope& control_;
    IClassFactory& freqSlot_;
    const Plan& plan_;
    std::optional<RangeMhz> range_;
    std::optional<RangeMhz> kept_;
    std::optional<EarlierContents> earlier_;        // empty before the start
    std::vector<const PlanChannel*> transmitters_;  // products contain indexes into this list
    std::vector<Bstr> transmitterLabels_;
    Bstr megahertz_{L"MHz"};
    Bstr kilohertz_{L"KHz"};
    std::uint64_t combinations_;
    ProductGenerator generator_;
    std::size_t products_ = 0;
    LONG transmit_ = 0;  // added so far, with the products
    LONG receive_ = 0;
    std::optional<Powers> powers_;
};

/// Draws a range around a span (in MHz) whose grid lines are on round frequencies.
void drawTidily(_kvBandscope& control, double lowest, double highest);

}  // namespace kv::host
