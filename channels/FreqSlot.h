// The channel record as the control sees it: the host's object, reached through its properties only.
#pragma once

#include <bit>
#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "channels/DrawRecord.h"
#include "channels/RecordWatch.h"
#include "util/ConvertFreq.h"
#include "util/Ref.h"

namespace kv::channels {

/// One term of an intermodulation product: coefficient times a transmitter.
struct ImComponent {
    std::int16_t coefficient = 0;
    double frequency = 0.0;  ///< MHz
    std::wstring label;
};

struct FreqSlotFields;

/// A TX or RX channel or an intermodulation product. The host owns it and may change it at any time; the control
/// keeps references. A member of a foreign object that fails throws util::RuntimeError.
class FreqSlot {
  public:
    virtual void retain() noexcept = 0;
    virtual void release() noexcept = 0;

    virtual double dFreq() = 0;     ///< center frequency in sFreqUnits
    virtual double dFreqAlt() = 0;  ///< a second frequency, compared only
    virtual double dBW() = 0;       ///< bandwidth in sBWUnits
    virtual double dFreqHi() = 0;   ///< upper band edge in sFreqUnits
    virtual double dFreqLo() = 0;   ///< lower band edge in sFreqUnits
    virtual double dPwrDBM() = 0;   ///< dBm
    virtual std::wstring sLabel() = 0;
    virtual std::wstring sFreqUnits() = 0;
    virtual std::wstring sBWUnits() = 0;
    virtual std::uint32_t lColorLine() = 0;
    virtual std::uint32_t lColor() = 0;
    virtual std::int16_t nIMComps() = 0;
    virtual ImComponent imComponent(std::int32_t i) = 0;  ///< throws 9 outside 0 to nIMComps - 1
    virtual std::wstring sKey() = 0;
    virtual bool bVisible() = 0;
    virtual bool bDrawn() = 0;
    virtual std::int16_t iFillStyle() = 0;
    /// All that drawing needs; one virtual call for our own class, one a member for a foreign one.
    virtual DrawRecord drawRecord() = 0;
    /// The same of a visible record at a frequency above 0. Of any other one only that is read which says so. A member
    /// of a foreign object is read once at most, and `bDrawn` not at all.
    virtual DrawRecord visibleRecord() {
        DrawRecord record;
        record.bVisible = bVisible();
        if (!record.bVisible)
            return record;
        record.dFreq = dFreq();
        return record.dFreq > 0.0 ? drawRecord() : record;
    }
    /// The members themselves, valid as long as the record lives: for our own class, because reading it runs no code of
    /// the host. Null for a foreign class, whose members must be read each time.
    [[nodiscard]] virtual const FreqSlotFields* peek() const noexcept { return nullptr; }
    /// From now on `watcher` hears of each change of this record, which it knows by `place`. False for a foreign class,
    /// which reports nothing. Throws std::bad_alloc.
    [[nodiscard]] virtual bool watch(RecordWatcher&, std::int32_t) { return false; }
    /// Ends one such watch.
    virtual void unwatch(RecordWatcher&, std::int32_t) noexcept {}
    /// Ends all watches of this watcher.
    virtual void unwatchAll(RecordWatcher&) noexcept {}
    /// The watcher knows the record by another place now.
    virtual void moveWatch(RecordWatcher&, std::int32_t, std::int32_t) noexcept {}

    virtual void setDFreq(double value) = 0;
    virtual void setDFreqHi(double value) = 0;
    virtual void setDFreqLo(double value) = 0;
    virtual void setSFreqUnits(const std::wstring& value) = 0;
    virtual void setSBWUnits(const std::wstring& value) = 0;
    virtual void setBDrawn(bool value) = 0;
    virtual void setIFillStyle(std::int16_t value) = 0;

  protected:
    ~FreqSlot() = default;
};

using FreqSlotRef = util::Ref<FreqSlot>;

/// The members of a FreqSlot of our own class, with their start values. What drawing reads comes first, so that reading
/// half a million records fetches little else.
struct FreqSlotFields {
    std::int16_t iFillStyle = 0;
    bool bVisible = true;
    bool bDrawn = false;
    std::uint32_t lColor = 0;
    std::uint32_t lColorLine = 0;
    double dFreq = 0.0;
    double dFreqLo = 0.0;
    double dFreqHi = 0.0;
    double dPwrDBM = 0.0;
    double dFreqAlt = 0.0;
    double dBW = 0.0;
    std::wstring sLabel;
    std::wstring sFreqUnits;
    std::wstring sBWUnits;
    std::wstring sKey;
    std::vector<ImComponent> components;  ///< nIMComps is their number

    [[nodiscard]] DrawRecord drawRecord() const noexcept {
        return {dFreq,      dFreqLo,    dFreqHi,  dPwrDBM, lColor,
                lColorLine, iFillStyle, bVisible, bDrawn,  util::freqUnitOf(sFreqUnits)};
    }
};

namespace change {

template <auto Member, auto... Others>
inline constexpr bool isOneOf = false;
template <auto Member, auto First, auto... Others>
inline constexpr bool isOneOf<Member, First, Others...> =
    std::is_same_v<std::integral_constant<decltype(Member), Member>, std::integral_constant<decltype(First), First>> ||
    isOneOf<Member, Others...>;

}  // namespace change

/// What reads a member.
template <auto Member, class F = FreqSlotFields>
inline constexpr Changes kReadBy =
    (change::isOneOf<Member, &F::dFreq, &F::dFreqLo, &F::dFreqHi, &F::dPwrDBM, &F::lColor, &F::lColorLine,
                     &F::iFillStyle, &F::bVisible, &F::bDrawn, &F::sFreqUnits>
         ? change::kDrawing
         : change::kNone) |
    (change::isOneOf<Member, &F::dFreq, &F::dFreqLo, &F::dFreqHi, &F::dFreqAlt, &F::dBW, &F::sLabel, &F::sFreqUnits,
                     &F::sBWUnits>
         ? change::kMatching
         : change::kNone) |
    (change::isOneOf<Member, &F::sKey> ? change::kKey : change::kNone) |
    (change::isOneOf<Member, &F::sLabel, &F::components> ? change::kGroup : change::kNone);

/// Our own class of record, all but its life. A derived class whose `peek` gives the members can be watched.
class FreqSlotBase : public FreqSlot {
  public:
    double dFreq() override { return fields_.dFreq; }
    double dFreqAlt() override { return fields_.dFreqAlt; }
    double dBW() override { return fields_.dBW; }
    double dFreqHi() override { return fields_.dFreqHi; }
    double dFreqLo() override { return fields_.dFreqLo; }
    double dPwrDBM() override { return fields_.dPwrDBM; }
    std::wstring sLabel() override { return fields_.sLabel; }
    std::wstring sFreqUnits() override { return fields_.sFreqUnits; }
    std::wstring sBWUnits() override { return fields_.sBWUnits; }
    std::uint32_t lColorLine() override { return fields_.lColorLine; }
    std::uint32_t lColor() override { return fields_.lColor; }
    std::int16_t nIMComps() override { return static_cast<std::int16_t>(fields_.components.size()); }
    ImComponent imComponent(std::int32_t i) override;
    std::wstring sKey() override { return fields_.sKey; }
    bool bVisible() override { return fields_.bVisible; }
    bool bDrawn() override { return fields_.bDrawn; }
    std::int16_t iFillStyle() override { return fields_.iFillStyle; }
    DrawRecord drawRecord() override { return fields_.drawRecord(); }

    void setDFreq(double value) override { set<&FreqSlotFields::dFreq>(value); }
    void setDFreqHi(double value) override { set<&FreqSlotFields::dFreqHi>(value); }
    void setDFreqLo(double value) override { set<&FreqSlotFields::dFreqLo>(value); }
    void setSFreqUnits(const std::wstring& value) override { set<&FreqSlotFields::sFreqUnits>(value); }
    void setSBWUnits(const std::wstring& value) override { set<&FreqSlotFields::sBWUnits>(value); }
    void setBDrawn(bool value) override;
    void setIFillStyle(std::int16_t value) override { set<&FreqSlotFields::iFillStyle>(value); }

    [[nodiscard]] bool watch(RecordWatcher& watcher, std::int32_t place) override;
    void unwatch(RecordWatcher& watcher, std::int32_t place) noexcept override { watches_.remove(watcher, place); }
    void unwatchAll(RecordWatcher& watcher) noexcept override { watches_.removeAll(watcher); }
    void moveWatch(RecordWatcher& watcher, std::int32_t from, std::int32_t to) noexcept override {
        watches_.move(watcher, from, to);
    }

    /// Gives a member a value. Watchers hear only of another value, and only those that read the member.
    template <auto Member, class Value>
    void set(Value&& value) {
        auto& field = fields_.*Member;
        if (isSame(field, value))
            return;
        field = std::forward<Value>(value);
        watches_.tell(kReadBy<Member>);
    }
    /// Direct access for filling the record. Counts as a change of all members, which must be made before the control
    /// is used again.
    [[nodiscard]] FreqSlotFields& fields() noexcept {
        watches_.tell(change::kAll);
        return fields_;
    }
    [[nodiscard]] const FreqSlotFields& fields() const noexcept { return fields_; }

    /// Component i for writing, which counts as a change; throws 9 outside 0 to nIMComps - 1.
    [[nodiscard]] ImComponent& component(std::int32_t i);
    /// The same for reading.
    [[nodiscard]] const ImComponent& component(std::int32_t i) const;
    /// Sizes the components, keeping those that stay; throws 5 for a negative number.
    void setNIMComps(std::int16_t count);

  protected:
    ~FreqSlotBase() = default;

  private:
    /// Also for numbers that are none, which compare as different.
    static bool isSame(double a, double b) noexcept {
        return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
    }
    template <class Field, class Value>
    static bool isSame(const Field& a, const Value& b) noexcept {
        return a == b;
    }

    // Side by side with the members that drawing reads, because a change touches both.
    RecordWatches watches_;
    FreqSlotFields fields_;
};

/// Makes the records that the control creates itself (sample and test channels).
using FreqSlotFactory = std::function<util::Ref<FreqSlotBase>()>;

}  // namespace kv::channels
