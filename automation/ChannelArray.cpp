#include "automation/ChannelArray.h"

#include <wrl/client.h>

#include <cmath>
#include <new>
#include <string>

#include "automation/ForeignFreqSlot.h"
#include "automation/FreqSlotObject.h"
#include "util/RuntimeError.h"

namespace kv::automation {

namespace {

using channels::FreqSlotFields;
using channels::FreqSlotRef;
using Microsoft::WRL::ComPtr;
using util::RuntimeError;
using util::error_number::kInvalidProcedureCall;
using util::error_number::kTypeMismatch;

const VARIANT& readThrough(const VARIANT& given) noexcept {
    const VARIANT* value = &given;
    while (value->vt == (VT_BYREF | VT_VARIANT) && value->pvarVal)
        value = value->pvarVal;
    return *value;
}

/// A value as the text of an error shows it.
std::wstring shown(const VARIANT& value) {
    com::Variant text;
    if (value.vt != VT_DISPATCH && value.vt != VT_UNKNOWN &&
        SUCCEEDED(com::coerce(text, value, VT_BSTR, LOCALE_USER_DEFAULT)))
        return L"'" + com::toWide(text.bstrVal) + L"'";
    return L"a value of the type " + std::to_wstring(value.vt);
}

/// The elements of an array, which is locked meanwhile.
class Elements {
  public:
    Elements(SAFEARRAY* array) : array_(array) {
        if (FAILED(SafeArrayAccessData(array_, &data_)))
            throw std::bad_alloc();
    }
    ~Elements() { SafeArrayUnaccessData(array_); }
    Elements(const Elements&) = delete;
    Elements& operator=(const Elements&) = delete;

    /// Of the dimension `which`, from 1.
    [[nodiscard]] std::size_t count(UINT which) const noexcept {
        // The dimensions are stored from the last to the first.
        return array_->rgsabound[array_->cDims - which].cElements;
    }
    [[nodiscard]] LONG lowest(UINT which) const noexcept { return array_->rgsabound[array_->cDims - which].lLbound; }
    [[nodiscard]] const VARIANT& variant(std::size_t i) const noexcept {
        return readThrough(static_cast<const VARIANT*>(data_)[i]);
    }
    [[nodiscard]] IUnknown* object(std::size_t i) const noexcept { return static_cast<IUnknown* const*>(data_)[i]; }

  private:
    SAFEARRAY* array_;
    void* data_ = nullptr;
};

/// One row of a two-dimensional array. `where` begins the text of errors.
class Row {
  public:
    Row(const Elements& elements, std::size_t row, const wchar_t* member) noexcept
        : elements_(elements), row_(row), member_(member) {}

    void read(std::size_t column, std::wstring& field) const {
        const VARIANT& cell = at(column);
        if (cell.vt == VT_BSTR)
            field = com::toWide(cell.bstrVal);
        else if (com::Variant text; isGiven(cell) && converts(cell, VT_BSTR, text))
            field = com::toWide(text.bstrVal);
        else if (isGiven(cell))
            refuse(column, L"a text");
    }
    void read(std::size_t column, double& field) const {
        const VARIANT& cell = at(column);
        if (!isGiven(cell))
            return;
        com::Variant number;
        const bool isNumber = cell.vt == VT_R8 || converts(cell, VT_R8, number);
        const double value = cell.vt == VT_R8 ? cell.dblVal : number.dblVal;
        if (!isNumber || !std::isfinite(value))
            refuse(column, L"a number");
        field = value;
    }
    void read(std::size_t column, std::uint32_t& field) const {
        const VARIANT& cell = at(column);
        com::Variant color;
        if (!isGiven(cell))
            return;
        if (!converts(cell, VT_UI4, color))
            refuse(column, L"a color");
        field = color.ulVal;
    }

  private:
    [[nodiscard]] const VARIANT& at(std::size_t column) const noexcept {
        static const com::Variant empty;
        // The first index runs fastest.
        return column < elements_.count(2) ? elements_.variant(row_ + column * elements_.count(1)) : empty;
    }
    static bool isGiven(const VARIANT& cell) noexcept { return cell.vt != VT_EMPTY; }
    static bool converts(const VARIANT& cell, VARTYPE type, com::Variant& out) noexcept {
        return SUCCEEDED(com::coerce(out, cell, type, LOCALE_USER_DEFAULT));
    }
    [[noreturn]] void refuse(std::size_t column, const wchar_t* wanted) const {
        static constexpr const wchar_t* kColumns[] = {L"key",   L"label",     L"frequency", L"bandwidth",
                                                      L"power", L"box color", L"line color"};
        throw RuntimeError(kTypeMismatch, std::wstring(member_) + L": row " +
                                              std::to_wstring(elements_.lowest(1) + static_cast<LONG>(row_)) + L", " +
                                              kColumns[column] + L": " + shown(at(column)) + L" is not " + wanted +
                                              L".");
    }

    const Elements& elements_;
    std::size_t row_;
    const wchar_t* member_;
};

constexpr std::size_t kColumnCount = 7;

FreqSlotRef channelFrom(const Row& row) {
    const util::Ref<channels::FreqSlotBase> record = makeFreqSlot();
    FreqSlotFields& fields = record->fields();
    row.read(0, fields.sKey);
    row.read(1, fields.sLabel);
    row.read(2, fields.dFreq);
    row.read(3, fields.dBW);
    row.read(4, fields.dPwrDBM);
    row.read(5, fields.lColor);
    row.read(6, fields.lColorLine);
    fields.sFreqUnits = L"MHz";
    fields.sBWUnits = L"KHz";
    return FreqSlotRef(record.get());
}

std::vector<FreqSlotRef> fromRows(const wchar_t* member, const Elements& rows) {
    const std::size_t columns = rows.count(2);
    if (columns < 1 || columns > kColumnCount)
        throw RuntimeError(kInvalidProcedureCall, std::wstring(member) + L": the array has " +
                                                      std::to_wstring(columns) + L" columns. It must have 1 to 7.");
    std::vector<FreqSlotRef> result;
    result.reserve(rows.count(1));
    for (std::size_t row = 0; row < rows.count(1); ++row)
        result.push_back(channelFrom(Row(rows, row, member)));
    return result;
}

IUnknown* objectAt(const Elements& elements, std::size_t i, bool areVariants) noexcept {
    if (!areVariants)
        return elements.object(i);
    const VARIANT& element = elements.variant(i);
    return element.vt == VT_DISPATCH || element.vt == VT_UNKNOWN ? element.punkVal : nullptr;
}

std::vector<FreqSlotRef> fromObjects(const wchar_t* member, const Elements& objects, bool areVariants) {
    std::vector<FreqSlotRef> result;
    result.reserve(objects.count(1));
    for (std::size_t i = 0; i < objects.count(1); ++i) {
        IUnknown* const object = objectAt(objects, i, areVariants);
        if (!object)
            throw RuntimeError(kTypeMismatch, std::wstring(member) + L": element " +
                                                  std::to_wstring(objects.lowest(1) + static_cast<LONG>(i)) + L" is " +
                                                  (areVariants ? shown(objects.variant(i)) : std::wstring(L"Nothing")) +
                                                  L". It must be a FreqSlot object.");
        result.push_back(channelFromHost(object));
    }
    return result;
}

}  // namespace

std::vector<FreqSlotRef> channelsFromArray(const wchar_t* member, const VARIANT& given) {
    const VARIANT& value = readThrough(given);
    const auto type = static_cast<VARTYPE>(value.vt & VT_TYPEMASK);
    const bool areVariants = type == VT_VARIANT;
    if ((value.vt & VT_ARRAY) == 0 || !(areVariants || type == VT_DISPATCH || type == VT_UNKNOWN))
        throw RuntimeError(kTypeMismatch, std::wstring(member) + L": " + shown(value) +
                                              L" is not an array of FreqSlot objects or of rows.");
    SAFEARRAY* const array = (value.vt & VT_BYREF) != 0 ? *value.pparray : value.parray;
    // A dynamic array that has not been given a size yet.
    if (!array)
        return {};
    if (array->cDims != 1 && !(array->cDims == 2 && areVariants))
        throw RuntimeError(
            kInvalidProcedureCall,
            std::wstring(member) + L": the array has " + std::to_wstring(array->cDims) +
                L" dimensions. It must have 1, with FreqSlot objects, or 2, with a row for each channel.");
    const Elements elements(array);
    return array->cDims == 1 ? fromObjects(member, elements, areVariants) : fromRows(member, elements);
}

com::Variant arrayOfChannels(const std::vector<FreqSlotRef>& list) {
    com::Variant result;
    result.parray = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(list.size()));
    if (!result.parray)
        throw std::bad_alloc();
    result.vt = VT_ARRAY | VT_VARIANT;
    const Elements elements(result.parray);
    auto* const cells = static_cast<VARIANT*>(result.parray->pvData);
    for (std::size_t i = 0; i < list.size(); ++i) {
        _FreqSlot* channel = nullptr;
        ComPtr<IDispatch> own;
        if (FAILED(channelToHost(list[i].get(), &channel)) || !channel)
            continue;
        // A wrapped object returns the host's own IDispatch.
        channel->QueryInterface(IID_PPV_ARGS(own.GetAddressOf()));
        channel->Release();
        com::Variant(own.Get()).moveTo(&cells[i]);
    }
    return result;
}

}  // namespace kv::automation
