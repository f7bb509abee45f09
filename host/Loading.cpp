#include "host/Loading.h"

#include <algorithm>
#include <cmath>

#include "host/plan/TidyRange.h"

namespace kv::host {

namespace {

constexpr std::uint64_t kMostCombinations = 2'000'000;
constexpr DWORD kLoadingMilliseconds = 30;

// Quiet colors for a light background. The lines of products have nearly the color of their boxes, because among many
// narrow boxes only the lines are visible. Colors in the plan take precedence.
struct Shades {
    COLORREF box;
    COLORREF line;
};
constexpr Shades kTransmitter = {RGB(0x2B, 0x6C, 0xB0), RGB(0x17, 0x3F, 0x6B)};
constexpr Shades kReceiver = {RGB(0x3C, 0x9A, 0x63), RGB(0x1F, 0x5C, 0x39)};
constexpr Shades kSecondOrder = {RGB(0x8E, 0x7C, 0xC3), RGB(0x75, 0x62, 0xAE)};
constexpr Shades kThirdOrder = {RGB(0xE3, 0xA0, 0x5A), RGB(0xCF, 0x83, 0x35)};
constexpr Shades kFifthOrder = {RGB(0xC9, 0x7B, 0x8F), RGB(0xB0, 0x5C, 0x73)};

Shades shadesOf(const Product& product) {
    return product.order == 2 ? kSecondOrder : product.order == 3 ? kThirdOrder : kFifthOrder;
}

double megahertzOf(std::int64_t hertz) {
    return static_cast<double>(hertz) / 1e6;
}

std::vector<const PlanChannel*> transmittersOf(const Plan& plan) {
    std::vector<const PlanChannel*> result;
    for (const PlanChannel& channel : plan.channels) {
        if (channel.transmits) {
            result.push_back(&channel);
        }
    }
    return result;
}

std::uint64_t allowedCombinations(std::size_t transmitters, const ProductOptions& options) {
    const std::uint64_t count = countCombinations(transmitters, options);
    if (count > kMostCombinations) {
        throw Failure{kExitUsage, L"The selected orders would give " + std::to_wstring(count) +
                                      L" products, but at most 2000000 can be loaded. Select fewer orders, or open a "
                                      L"plan with fewer transmitters."};
    }
    return count;
}

std::vector<Transmitter> numbersOf(const std::vector<const PlanChannel*>& channels) {
    std::vector<Transmitter> result;
    result.reserve(channels.size());
    for (const PlanChannel* channel : channels) {
        result.push_back({channel->frequencyHz, channel->bandwidthHz, channel->powerDbm});
    }
    return result;
}

}  // namespace

Loading::Loading(_kvBandscope& control, IClassFactory& freqSlot, const Plan& plan, const ProductOptions& options,
                 const std::optional<RangeMhz>& range, const std::optional<RangeMhz>& kept)
    : control_(control),
      freqSlot_(freqSlot),
      plan_(plan),
      range_(range),
      kept_(kept),
      transmitters_(transmittersOf(plan)),
      combinations_(allowedCombinations(transmitters_.size(), options)),
      generator_(combinations_ == 0 ? std::vector<Transmitter>() : numbersOf(transmitters_), options) {
    transmitterLabels_.reserve(transmitters_.size());
    for (const PlanChannel* channel : transmitters_) {
        transmitterLabels_.emplace_back(channel->label);
    }
}

template <class Work>
void Loading::change(Work work) {
    try {
        work();
    } catch (...) {
        earlier_->putBack();
        throw;
    }
}

void Loading::start() {
    earlier_.emplace(control_);
    change([this] {
        addChannels();
        draw(false);
    });
}

bool Loading::step() {
    bool done = false;
    change([&] { done = addProducts(); });
    return done;
}

void Loading::cancel() {
    change([this] { addChannels(); });
}

void Loading::show() {
    change([this] { draw(true); });
}

void Loading::addChannels() {
    powers_.reset();
    products_ = 0;
    transmit_ = 0;
    receive_ = 0;
    check(control_.ClearAllChnls(), L"Clearing the channels");
    for (const PlanChannel& channel : plan_.channels) {
        add(channel);
    }
}

bool Loading::addProducts() {
    const DWORD start = GetTickCount();
    Product product;
    do {
        switch (generator_.next(product)) {
            case ProductGenerator::Step::kProduct:
                addProduct(product);
                break;
            case ProductGenerator::Step::kPause:
                break;
            case ProductGenerator::Step::kEnd:
                return true;
        }
    } while (GetTickCount() - start < kLoadingMilliseconds);
    return false;
}

double Loading::fractionDone() const noexcept {
    return combinations_ == 0 ? 1.0 : static_cast<double>(generator_.tried()) / static_cast<double>(combinations_);
}

void Loading::add(const PlanChannel& channel) {
    const ComPtr<_FreqSlot> slot = newSlot();
    const Shades shades = channel.transmits ? kTransmitter : kReceiver;
    setCommon(*slot.Get(), channel.frequencyHz, channel.bandwidthHz, channel.powerDbm);
    check(slot->put_sKey(Bstr(channel.key).get()), L"Setting sKey");
    check(slot->put_sLabel(Bstr(channel.label).get()), L"Setting sLabel");
    check(slot->put_lColor(channel.boxColour.value_or(shades.box)), L"Setting lColor");
    check(slot->put_lColorLine(channel.lineColour.value_or(shades.line)), L"Setting lColorLine");
    if (channel.transmits) {
        addTransmit(*slot.Get());
    } else {
        addReceive(*slot.Get());
    }
}

// The members report a channel that they cannot use by its index only.
void Loading::addTransmit(_FreqSlot& slot) {
    LONG index = 0;
    check(control_.AddTXChnl(&slot, &index), L"Adding a transmit channel");
    if (index != transmit_++) {
        throw Failure{kExitOther, L"The control has not added a transmit channel."};
    }
}

void Loading::addReceive(_FreqSlot& slot) {
    LONG index = 0;
    check(control_.AddRXChnl(&slot, &index), L"Adding a receive channel");
    if (index != receive_++) {
        throw Failure{kExitOther, L"The control has not added a receive channel."};
    }
}

void Loading::addProduct(const Product& product) {
    const ComPtr<_FreqSlot> slot = newSlot();
    const Shades shades = shadesOf(product);
    setCommon(*slot.Get(), product.frequencyHz, product.bandwidthHz, product.powerDbm);
    // The control recognizes a product by its label, and can remove it only if its key begins with TX.
    check(slot->put_sKey(Bstr(productKey(++products_)).get()), L"Setting sKey");
    check(slot->put_sLabel(Bstr(productLabel(product)).get()), L"Setting sLabel");
    check(slot->put_lColor(shades.box), L"Setting lColor");
    check(slot->put_lColorLine(shades.line), L"Setting lColorLine");
    addTerms(*slot.Get(), product);
    addTransmit(*slot.Get());
}

void Loading::addTerms(_FreqSlot& slot, const Product& product) {
    check(slot.put_nIMComps(product.termCount), L"Setting nIMComps");
    for (LONG i = 0; i < product.termCount; ++i) {
        const ProductTerm& term = product.terms[static_cast<std::size_t>(i)];
        check(slot.put_nIMComp(i, term.coefficient), L"Setting nIMComp");
        check(slot.put_dIMCompFreq(i, megahertzOf(transmitters_[term.transmitter]->frequencyHz)),
              L"Setting dIMCompFreq");
        check(slot.put_sIMCompLabel(i, transmitterLabels_[term.transmitter].get()), L"Setting sIMCompLabel");
    }
}

void Loading::setCommon(_FreqSlot& slot, std::int64_t frequencyHz, std::int64_t bandwidthHz, double powerDbm) {
    check(slot.put_sFreqUnits(megahertz_.get()), L"Setting sFreqUnits");
    check(slot.put_sBWUnits(kilohertz_.get()), L"Setting sBWUnits");
    check(slot.put_dFreq(megahertzOf(frequencyHz)), L"Setting dFreq");
    check(slot.put_dBW(static_cast<double>(bandwidthHz) / 1e3), L"Setting dBW");
    // Without edges, the control would set them a whole bandwidth from the center, and the box would be twice as wide
    // as the channel. The bandwidth of a product can be more than twice its frequency. Its lower edge is therefore
    // limited, because an edge that is not above 0 counts as not set.
    constexpr double kLowestEdge = 1e-6;
    const double half = megahertzOf(bandwidthHz) / 2.0;
    check(slot.put_dFreqLo(std::max(megahertzOf(frequencyHz) - half, kLowestEdge)), L"Setting dFreqLo");
    check(slot.put_dFreqHi(megahertzOf(frequencyHz) + half), L"Setting dFreqHi");
    check(slot.put_dPwrDBM(powerDbm), L"Setting dPwrDBM");
    note(powerDbm);
}

ComPtr<_FreqSlot> Loading::newSlot() {
    ComPtr<_FreqSlot> slot;
    check(freqSlot_.CreateInstance(nullptr, IID__FreqSlot, reinterpret_cast<void**>(slot.GetAddressOf())),
          L"Creating a channel record");
    return slot;
}

void Loading::note(double powerDbm) {
    if (!powers_) {
        powers_ = {powerDbm, powerDbm};
    }
    powers_->lowest = std::min(powers_->lowest, powerDbm);
    powers_->highest = std::max(powers_->highest, powerDbm);
}

void Loading::setPowerScale() {
    // Multiples of 10 dB with some room on both sides, because a channel at the bottom of the display counts as one
    // without power.
    constexpr double kStep = 10.0;
    constexpr double kRoom = 3.0;
    // The top is set first, because setting the bottom applies the height of the scale.
    check(control_.put_DisplayMaxPwr(std::ceil((powers_->highest + kRoom) / kStep) * kStep), L"Setting DisplayMaxPwr");
    check(control_.put_DisplayMinPwr(std::floor((powers_->lowest - kRoom) / kStep) * kStep), L"Setting DisplayMinPwr");
}

void Loading::draw(bool hasProducts) {
    if (!powers_) {
        return;
    }
    setPowerScale();
    if (kept_ && (!hasProducts || reaches(*kept_))) {
        return drawExactly(*kept_);
    }
    if (range_) {
        return drawExactly(*range_);
    }
    double lowest = 0.0;
    double highest = 0.0;
    if (transmitters_.empty()) {
        check(control_.get_dFreqMin(&lowest), L"Reading dFreqMin");
        check(control_.get_dFreqMax(&highest), L"Reading dFreqMax");
    } else {
        check(control_.get_dTXFreqMin(&lowest), L"Reading dTXFreqMin");
        check(control_.get_dTXFreqMax(&highest), L"Reading dTXFreqMax");
    }
    drawTidily(control_, lowest, highest);
}

void Loading::drawExactly(const RangeMhz& range) {
    check(control_.put_FreqEndBuffer(0.0), L"Setting FreqEndBuffer");
    check(control_.DrawByRange(range.lowest, range.highest), L"Drawing");
}

bool Loading::reaches(const RangeMhz& range) {
    double lowest = 0.0;
    double highest = 0.0;
    check(control_.get_dFreqMin(&lowest), L"Reading dFreqMin");
    check(control_.get_dFreqMax(&highest), L"Reading dFreqMax");
    return range.lowest <= highest && range.highest >= lowest;
}

void drawTidily(_kvBandscope& control, double lowest, double highest) {
    // By default the control leaves a margin of 100 MHz on both sides. A smaller margin and grid lines on round
    // frequencies make a better picture.
    const TidyRange range = tidyRange(lowest, highest);
    check(control.put_FreqEndBuffer(0.0), L"Setting FreqEndBuffer");
    check(control.put_nGridX(static_cast<SHORT>(range.divisions)), L"Setting nGridX");
    check(control.DrawByRange(range.lowest, range.highest), L"Drawing");
    check(control.put_CursorVal((range.lowest + range.highest) / 2.0), L"Setting CursorVal");
}

}  // namespace kv::host
