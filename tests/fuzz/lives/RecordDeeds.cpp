// What a host does to its records after they were added, and with a second control.
#include <array>

#include "tests/fuzz/lives/Deeds.h"

namespace kv::fuzz {

namespace {

/// The records from `first` on in steps of `step`.
template <class Body>
void forSome(Life& life, std::size_t first, std::size_t step, const Body& body) {
    for (std::size_t i = first; i < life.records.size(); i += step)
        body(*life.records[i]);
}

/// Nothing when there is no record yet.
template <class Body>
Action toRecord(std::size_t number, const Body& body) {
    return [number, body](Life& life) {
        if (control::CountedSlot* const record = life.record(number))
            body(*record);
    };
}

}  // namespace

Deeds::Deed Deeds::ofTheRecords() {
    return oneIn(3) ? ofManyRecords() : ofOneRecord();
}

Deeds::Deed Deeds::ofOneRecord() {
    const std::size_t number = upTo(1000);
    const channels::FreqSlotFields changed = fields();
    constexpr std::array<std::int16_t, 12> kStyles{0, 1, 2, 3, 4, 5, 6, 7, 0, 1, 8, -1};
    const std::int16_t style = kStyles[upTo(kStyles.size())];
    constexpr std::array<std::array<double, 2>, 6> kEdges{
        {{-1e9, 1e9}, {-1e9, 450.0}, {450.0, 1e9}, {100.0, 900.0}, {460.0, 440.0}, {0.0, 0.0}}};
    const std::array<double, 2> edges = kEdges[upTo(kEdges.size())];
    const Deed all[] = {
        {"change a record", toRecord(number,
                                     [changed](control::CountedSlot& record) {
                                         channels::FreqSlotFields& fields = record.fieldsButKey();
                                         fields.dFreq = changed.dFreq;
                                         fields.dFreqLo = changed.dFreqLo;
                                         fields.dFreqHi = changed.dFreqHi;
                                         fields.dPwrDBM = changed.dPwrDBM;
                                         fields.bVisible = changed.bVisible;
                                     })},
        {"change a fill style",
         toRecord(number, [style](control::CountedSlot& record) { record.setIFillStyle(style); })},
        {"change the edges", toRecord(number,
                                      [edges](control::CountedSlot& record) {
                                          record.setDFreqLo(edges[0]);
                                          record.setDFreqHi(edges[1]);
                                      })},
        {"change the colors", toRecord(number,
                                       [changed](control::CountedSlot& record) {
                                           record.fieldsButKey().lColor = changed.lColor;
                                           record.fieldsButKey().lColorLine = changed.lColorLine;
                                       })},
        {"set an equal key",
         toRecord(number, [](control::CountedSlot& record) { record.fields().sKey = record.sKey(); })},
        {"mark as not drawn", toRecord(number, [](control::CountedSlot& record) { record.setBDrawn(false); })},
        {"mark as drawn", toRecord(number, [](control::CountedSlot& record) { record.setBDrawn(true); })},
    };
    return all[upTo(std::size(all))];
}

Deeds::Deed Deeds::ofManyRecords() {
    const std::size_t first = upTo(3);
    const std::size_t step = 1 + upTo(4);
    const double dbm = power();
    const auto color = static_cast<std::uint32_t>(upTo(0x1000000));
    const auto setVisible = [first, step](Life& life, bool visible) {
        forSome(life, first, step,
                [visible](control::CountedSlot& record) { record.fieldsButKey().bVisible = visible; });
    };
    const Deed all[] = {
        {"hide some and Refresh",
         [setVisible](Life& life) {
             setVisible(life, false);
             life.scope.Refresh();
         }},
        {"hide some, Refresh twice",
         [setVisible](Life& life) {
             setVisible(life, false);
             life.scope.Refresh();
             life.scope.Refresh();
         }},
        {"show some", [setVisible](Life& life) { setVisible(life, true); }},
        {"change the power of some",
         [=](Life& life) {
             forSome(life, first, step, [&](control::CountedSlot& record) {
                 record.fieldsButKey().dPwrDBM = dbm;
                 record.fieldsButKey().lColor = color;
             });
         }},
    };
    return all[upTo(std::size(all))];
}

Deeds::Deed Deeds::ofTheOther() {
    const std::size_t number = upTo(1000);
    const bool tx = oneIn(2);
    const Deed all[] = {
        {"add to the other control",
         [number, tx](Life& life) {
             const channels::FreqSlotRef record(life.record(number));
             if (record && tx)
                 life.other().AddTXChnl(record);
             else if (record)
                 life.other().AddRXChnl(record);
         }},
        {"add many to the other control",
         [number](Life& life) {
             forSome(life, number % 5, 5,
                     [&](control::CountedSlot& record) { life.other().AddTXChnl(channels::FreqSlotRef(&record)); });
         }},
        {"remove from the other control",
         [number](Life& life) {
             if (control::CountedSlot* const record = life.record(number))
                 life.other().RemoveChnlByKey(record->sKey());
         }},
        {"draw the other control", [](Life& life) { life.other().DrawDisplay(); }},
        {"draw the other control", [](Life& life) { life.other().DrawDisplay(); }},
        {"Refresh of the other control", [](Life& life) { life.other().Refresh(); }},
    };
    return all[upTo(std::size(all))];
}

}  // namespace kv::fuzz
