// The channel record as the control sees it: the host's object, reached through its properties only.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "channels/DrawRecord.h"
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
    /// The members themselves, valid as long as the record lives: for our own class, because reading it runs no code of
    /// the host. Each change of a watched record moves `recordRevision`. Null for a foreign class, whose members must
    /// be read each time.
    virtual FreqSlotFields* watch() noexcept { return nullptr; }
    /// The same for reading now, without watching.
    [[nodiscard]] virtual const FreqSlotFields* peek() const noexcept { return nullptr; }

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
    double dFreq = 0.0;
    double dFreqLo = 0.0;
    double dFreqHi = 0.0;
    double dPwrDBM = 0.0;
    std::uint32_t lColor = 0;
    std::uint32_t lColorLine = 0;
    std::int16_t iFillStyle = 0;
    bool bVisible = true;
    bool bDrawn = false;
    double dFreqAlt = 0.0;
    double dBW = 0.0;
    std::wstring sLabel;
    std::wstring sFreqUnits;
    std::wstring sBWUnits;
    std::wstring sKey;
    std::vector<ImComponent> components;  ///< nIMComps is their number

    [[nodiscard]] DrawRecord drawRecord() const noexcept {
        return {dFreq, dFreqLo, dFreqHi, dPwrDBM, lColor, lColorLine, iFillStyle, bVisible, bDrawn};
    }
};

/// Moves with each change of a watched record, in any apartment. What was read of watched records after this returned
/// a number is current as long as it returns the same number.
[[nodiscard]] std::uint64_t recordRevision() noexcept;
/// The same for keys alone, which change much less often.
[[nodiscard]] std::uint64_t keyRevision() noexcept;

/// Our own class of record, all but its life.
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

    void setDFreq(double value) override { change(fields_.dFreq, value); }
    void setDFreqHi(double value) override { change(fields_.dFreqHi, value); }
    void setDFreqLo(double value) override { change(fields_.dFreqLo, value); }
    void setSFreqUnits(const std::wstring& value) override { change(fields_.sFreqUnits, value); }
    void setSBWUnits(const std::wstring& value) override { change(fields_.sBWUnits, value); }
    void setBDrawn(bool value) override;
    void setIFillStyle(std::int16_t value) override { change(fields_.iFillStyle, value); }

    /// Direct access for filling the record. Counts as a change, which must be made before the next drawing.
    [[nodiscard]] FreqSlotFields& fields() noexcept {
        keyChanged();
        return fields_;
    }
    /// The same for callers that do not change the key.
    [[nodiscard]] FreqSlotFields& fieldsButKey() noexcept {
        changed();
        return fields_;
    }
    [[nodiscard]] const FreqSlotFields& fields() const noexcept { return fields_; }

    /// Component i for reading and writing; throws 9 outside 0 to nIMComps - 1.
    [[nodiscard]] ImComponent& component(std::int32_t i);
    /// Sizes the components, keeping those that stay; throws 5 for a negative number.
    void setNIMComps(std::int16_t count);

  protected:
    ~FreqSlotBase() = default;

    /// For `watch` of a class whose members run no code of the host.
    [[nodiscard]] FreqSlotFields* watchFields() noexcept {
        watched_.store(true, std::memory_order_relaxed);
        return &fields_;
    }
    template <class Field, class Value>
    void change(Field& field, const Value& value) {
        field = value;
        changed();
    }
    void changed() const noexcept {
        if (watched_.load(std::memory_order_relaxed))
            moveRevision();
    }
    void keyChanged() const noexcept {
        if (watched_.load(std::memory_order_relaxed))
            moveKeyRevision();
    }

  private:
    static void moveRevision() noexcept;
    static void moveKeyRevision() noexcept;

    FreqSlotFields fields_;
    std::atomic<bool> watched_ = false;  ///< never reset, because a record that has left its store is rarely changed
};

/// Makes the records that the control creates itself (sample and test channels).
using FreqSlotFactory = std::function<util::Ref<FreqSlotBase>()>;

}  // namespace kv::channels
