// Calls every member of the control, of its view and of a channel record once.
#include <array>

#include "host/selfcheck/InstalledFamily.h"
#include "host/selfcheck/MemberCaller.h"
#include "host/selfcheck/Sample.h"
#include "host/selfcheck/Steps.h"

namespace kv::host {

namespace {

using Values = std::vector<Value>;

/// Channel records for members that need one; each has another key.
class Slots {
  public:
    explicit Slots(IClassFactory& factory) : factory_(factory) {}

    IDispatch* next() {
        check(factory_.CreateInstance(nullptr, IID__FreqSlot, reinterpret_cast<void**>(slot_.ReleaseAndGetAddressOf())),
              L"Creating a channel record");
        const std::wstring key = L"TX" + std::to_wstring(100 + ++count_);
        check(slot_->put_sKey(Bstr(key).get()), L"Setting sKey");
        check(slot_->put_dFreq(462.5 + 0.01 * count_), L"Setting dFreq");
        check(slot_->put_dBW(10.0), L"Setting dBW");
        return slot_.Get();
    }

  private:
    IClassFactory& factory_;
    ComPtr<_FreqSlot> slot_;
    int count_ = 0;
};

/// An array of one row with key, label, frequency and bandwidth.
Value channelRow(const wchar_t* key, double frequency) {
    std::array<SAFEARRAYBOUND, 2> bounds = {{{1, 0}, {4, 0}}};
    Value array;
    array.parray = SafeArrayCreate(VT_VARIANT, 2, bounds.data());
    array.vt = VT_ARRAY | VT_VARIANT;
    const std::array<Value, 4> cells = {Value::of(std::wstring(key)), Value::of(std::wstring(L"From an array")),
                                        Value::of(frequency), Value::of(20.0)};
    for (LONG column = 0; column < 4; ++column) {
        std::array<LONG, 2> place = {0, column};
        check(SafeArrayPutElement(array.parray, place.data(),
                                  const_cast<Value*>(&cells[static_cast<std::size_t>(column)])),
              L"Filling an array");
    }
    return array;
}

/// A device context with a bitmap to draw on.
class Paper {
  public:
    static constexpr LONG kWidth = 600;
    static constexpr LONG kHeight = 300;

    Paper() : dc_(CreateCompatibleDC(nullptr)) {
        const HDC screen = GetDC(nullptr);
        bitmap_ = CreateCompatibleBitmap(screen, kWidth, kHeight);
        ReleaseDC(nullptr, screen);
        before_ = SelectObject(dc_, bitmap_);
    }
    Paper(const Paper&) = delete;
    Paper& operator=(const Paper&) = delete;
    ~Paper() {
        SelectObject(dc_, before_);
        DeleteObject(bitmap_);
        DeleteDC(dc_);
    }
    [[nodiscard]] Values place() const {
        return {Value::of(static_cast<double>(reinterpret_cast<std::intptr_t>(dc_))), Value::of(LONG{0}),
                Value::of(LONG{0}), Value::of(kWidth), Value::of(kHeight)};
    }

  private:
    HDC dc_;
    HBITMAP bitmap_;
    HGDIOBJ before_;
};

void report(Context& context, const wchar_t* title, const MemberResults& results) {
    for (const std::wstring& problem : results.problems) {
        context.report.failed(title, problem);
    }
    if (results.problems.empty()) {
        context.report.expect(results.members > 0, title,
                              std::to_wstring(results.members) + L" names, " + std::to_wstring(results.functions) +
                                  L" functions, " + std::to_wstring(results.calls) + L" calls");
    }
}

void callControl(Context& context, _kvBandscope& control, Slots& slots) {
    double height = 0.0;
    double width = 0.0;
    Bstr name(context.workFolder + L"display.bmp");
    MemberHints hints;
    hints.object = [&] { return slots.next(); };
    hints.arguments[L"DisplayToBMP"] = [&]() -> Values {
        Values values(3);
        values[0].vt = values[1].vt = VT_BYREF | VT_R8;
        values[0].pdblVal = &height;
        values[1].pdblVal = &width;
        values[2].vt = VT_BYREF | VT_BSTR;
        values[2].pbstrVal = name.inOut();
        return values;
    };
    hints.skipped.insert(L"CopyDisplayToClipboard");  // by the step of the clipboard
    if (hasInstalledFamily(context.programFolder)) {
        hints.skipped.insert(L"DisplayToBMP");
        context.report.notPossible(L"DisplayToBMP", L"it would write to the log of installed programs");
    }
    report(context, L"Members of the control", callMembers(&control, hints));
}

void callView(Context& context, _kvBandscope& control, Slots& slots) {
    const Paper paper;
    MemberHints hints;
    hints.object = [&] { return slots.next(); };
    hints.skipped.insert(L"CopyPicture");  // by the step of the clipboard
    hints.refusing.insert(L"Scope");
    hints.arguments = {
        {L"ShowRange",
         [] {
             return Values{Value::of(462.4), Value::of(462.8)};
         }},
        {L"ZoomBy", [] { return Values{Value::of(2.0)}; }},
        {L"PanBy", [] { return Values{Value::of(0.01)}; }},
        {L"HitTest", [] { return Values{Value::of(462.55)}; }},
        {L"AddTXChannels", [] { return Values{channelRow(L"TX201", 462.56)}; }},
        {L"AddRXChannels", [] { return Values{channelRow(L"RX201", 462.57)}; }},
        {L"Marker", [] { return Values{Value::of(462.6)}; }},
        {L"SavePicture", [&] { return Values{Value::of(context.workFolder + L"member.png")}; }},
        {L"PrintPicture", [&] { return paper.place(); }},
    };
    report(context, L"Members of the view", callMembers(viewOf(control).Get(), hints));
}

void callSlot(Context& context, Slots& slots) {
    MemberHints hints;
    // So that the members for components have one to read and set.
    hints.arguments[L"nIMComps"] = [] { return Values{Value::of(LONG{2})}; };
    const ComPtr<IDispatch> slot = slots.next();
    ComPtr<_FreqSlot> typed;
    check(slot.As(&typed), L"Getting _FreqSlot");
    report(context, L"Members of FreqSlot", callMembers(typed.Get(), hints));
}

}  // namespace

void checkMembers(Context& context) {
    Slots slots(*context.classes->freqSlot.Get());
    const auto withSample = [&] {
        ComPtr<_kvBandscope> control = newControl(context);
        show(*control.Get(), *context.classes->freqSlot.Get(), samplePlan());
        return control;
    };
    callControl(context, *withSample().Get(), slots);
    callView(context, *withSample().Get(), slots);
    callSlot(context, slots);
}

}  // namespace kv::host
