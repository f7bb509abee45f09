#include "host/plan/PlanColumns.h"

#include <algorithm>
#include <string>

#include "host/plan/Quoted.h"
#include "util/Text.h"

namespace kv::host {

namespace {

struct ColumnName {
    const wchar_t* name;
    bool needed;
};

constexpr std::array<ColumnName, kColumnCount> kColumns = {{{L"kind", true},
                                                            {L"key", true},
                                                            {L"label", false},
                                                            {L"frequency", true},
                                                            {L"bandwidth", true},
                                                            {L"frequency unit", false},
                                                            {L"bandwidth unit", false},
                                                            {L"power", false},
                                                            {L"box colour", false},
                                                            {L"line colour", false}}};

}  // namespace

const wchar_t* PlanColumns::nameOf(PlanColumn column) noexcept {
    return kColumns[column].name;
}

bool PlanColumns::read(const CsvLine& line, PlanErrorList& errors) {
    width_ = line.fields.size();
    for (std::size_t i = 0; i < width_; ++i) {
        if (std::wstring hint = wrongSeparator(line.fields[i].text); !hint.empty()) {
            // What the columns are is not known, so there is nothing else to say.
            errors.add(line.number, line.fields[i].column, {}, std::move(hint));
            return false;
        }
        readName(line, i, errors);
    }
    bool complete = true;
    for (std::size_t i = 0; i < kColumnCount; ++i) {
        if (kColumns[i].needed && places_[i] == kAbsent) {
            complete = false;
            errors.add(line.number, 1, kColumns[i].name,
                       L"expected a column with this name, because every plan needs it");
        }
    }
    return complete;
}

void PlanColumns::readName(const CsvLine& line, std::size_t place, PlanErrorList& errors) {
    const CsvField& field = line.fields[place];
    const std::wstring name = util::foldCase(field.text);
    const auto known =
        std::find_if(kColumns.begin(), kColumns.end(), [&](const ColumnName& column) { return name == column.name; });
    if (known == kColumns.end()) {
        errors.add(line.number, field.column, field.text,
                   L"expected the name of a column (kind, key, label, frequency, bandwidth, frequency unit, "
                   L"bandwidth unit, power, box colour or line colour), found " +
                       inQuotes(field.text));
        return;
    }
    std::size_t& found = places_[static_cast<std::size_t>(known - kColumns.begin())];
    if (found != kAbsent) {
        errors.add(line.number, field.column, field.text,
                   L"expected each column only once, but this name occurs twice");
        return;
    }
    found = place;
}

}  // namespace kv::host
