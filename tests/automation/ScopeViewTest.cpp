// The interface _BandscopeView: on the control, and on a View that was given a control.
#include <gmock/gmock.h>

#include "tests/automation/ControlFixture.h"
#include "tests/automation/Errors.h"

namespace kv::test {
namespace {

constexpr auto kInvalidCall = static_cast<HRESULT>(0x800A0005L);
constexpr auto kMismatch = static_cast<HRESULT>(0x800A000DL);

/// A two-dimensional array of variants, as Visual Basic makes it.
class Rows {
  public:
    Rows(ULONG rows, ULONG columns, LONG lowest = 0) {
        SAFEARRAYBOUND bounds[] = {{rows, lowest}, {columns, lowest}};
        array_.vt = VT_ARRAY | VT_VARIANT;
        array_.parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
        lowest_ = lowest;
    }
    Rows& set(LONG row, LONG column, Var value) {
        LONG at[] = {row + lowest_, column + lowest_};
        EXPECT_EQ(SafeArrayPutElement(array_.parray, at, &value), S_OK);
        return *this;
    }
    [[nodiscard]] const Var& get() const noexcept { return array_; }

  private:
    Var array_;
    LONG lowest_ = 0;
};

Var arrayOf(const std::vector<Var>& elements) {
    Var result;
    result.vt = VT_ARRAY | VT_VARIANT;
    result.parray = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(elements.size()));
    for (LONG i = 0; i < static_cast<LONG>(elements.size()); ++i)
        EXPECT_EQ(SafeArrayPutElement(result.parray, &i, const_cast<Var*>(&elements[static_cast<std::size_t>(i)])),
                  S_OK);
    return result;
}

/// The objects of an array of variants.
std::vector<ComPtr<IUnknown>> objectsIn(const Var& array) {
    std::vector<ComPtr<IUnknown>> objects;
    EXPECT_EQ(array.vt, VT_ARRAY | VT_VARIANT);
    if (array.vt != (VT_ARRAY | VT_VARIANT))
        return objects;
    LONG last = -2;
    EXPECT_EQ(SafeArrayGetUBound(array.parray, 1, &last), S_OK);
    for (LONG i = 0; i <= last; ++i) {
        Var element;
        EXPECT_EQ(SafeArrayGetElement(array.parray, &i, &element), S_OK);
        EXPECT_EQ(element.vt, VT_DISPATCH);
        objects.emplace_back(element.punkVal);
    }
    return objects;
}

/// Calls go to the control's own view, or by name to a View.
class ScopeViewTest : public BothWays {
  protected:
    ComPtr<_BandscopeView> view;

    void SetUp() override {
        if (GetParam() == Way::early) {
            ASSERT_EQ(scope.get()->QueryInterface(IID_PPV_ARGS(view.GetAddressOf())), S_OK);
            return;
        }
        view = createInstance<_BandscopeView>(CLSID_View);
        ASSERT_EQ(test::invoke(view.Get(), idOf(view.Get(), L"Scope"), DISPATCH_PROPERTYPUTREF, {Var(scope.get())},
                               {DISPID_PROPERTYPUT})
                      .hr,
                  S_OK);
    }
    /// The result of a call by name, which an early bound call must equal.
    struct Result {
        HRESULT hr = E_FAIL;
        std::wstring text;
        Var value;
    };
    Result run(const wchar_t* name, std::vector<Var> arguments) {
        const Outcome outcome = call(view.Get(), name, std::move(arguments));
        return {outcome.hr == DISP_E_EXCEPTION ? outcome.errorCode : outcome.hr, outcome.description, outcome.result};
    }
    HRESULT showRange(double minimum, double maximum) {
        return GetParam() == Way::early ? view->ShowRange(minimum, maximum)
                                        : run(L"ShowRange", {Var(minimum), Var(maximum)}).hr;
    }
    void expectRange(double minimum, double maximum) {
        EXPECT_NEAR(scope.DisplayMinFreq(), minimum, 1e-9);
        EXPECT_NEAR(scope.DisplayMaxFreq(), maximum, 1e-9);
    }
};
INSTANTIATE_TEST_SUITE_P(Both, ScopeViewTest, testing::Values(Way::early, Way::late), nameOf);

TEST_P(ScopeViewTest, RangesZoomsAndPansShowInTheControl) {
    EXPECT_EQ(showRange(440.0, 460.0), S_OK);
    expectRange(440.0, 460.0);
    EXPECT_EQ(run(L"ZoomBy", {Var(2.0)}).hr, S_OK);
    expectRange(445.0, 455.0);
    EXPECT_EQ(run(L"ZoomBy", {Var(2.0), Var(445.0)}).hr, S_OK);
    expectRange(445.0, 450.0);
    EXPECT_EQ(run(L"PanBy", {Var(-1)}).hr, S_OK);
    expectRange(444.0, 449.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 446.5);
}

TEST_P(ScopeViewTest, WrongArgumentsAreErrorsWithATextAndASource) {
    const Result result = run(L"ShowRange", {Var(460.0), Var(440.0)});
    EXPECT_EQ(result.hr, kInvalidCall);
    EXPECT_THAT(result.text, testing::HasSubstr(L"460 to 440 MHz cannot be shown"));
    EXPECT_EQ(view->ShowRange(460.0, 440.0), kInvalidCall);
    GUID iid{};
    EXPECT_THAT(takeErrorText(&iid), testing::HasSubstr(L"460 to 440"));
    EXPECT_TRUE(iid == IID__BandscopeView);
    EXPECT_EQ(run(L"ZoomBy", {Var(0.0)}).hr, kInvalidCall);
    EXPECT_EQ(run(L"HitTest", {Var(450.0), Var(-1.0)}).hr, kInvalidCall);
}

TEST_P(ScopeViewTest, BothInterfacesHaveErrorInformation) {
    ComPtr<ISupportErrorInfo> support;
    ASSERT_EQ(view.As(&support), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__BandscopeView), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__kvBandscope), GetParam() == Way::early ? S_OK : S_FALSE);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__FreqSlot), S_FALSE);
}

TEST_P(ScopeViewTest, HitTestReturnsTheHostsOwnObjects) {
    const auto tx = channel({.freq = 450.0, .bw = 25.0, .power = 30.0, .key = L"TX1"});
    const auto rx = channel({.freq = 450.0, .bw = 25.0, .key = L"RX1"});
    scope.AddTXChnl(tx);
    scope.AddRXChnl(rx);
    const auto hits = objectsIn(run(L"HitTest", {Var(450.0)}).value);
    ASSERT_EQ(hits.size(), 2U);
    EXPECT_TRUE(sameObject(hits[0].Get(), rx.Get()));
    EXPECT_TRUE(sameObject(hits[1].Get(), tx.Get()));
    EXPECT_EQ(objectsIn(run(L"HitTest", {Var(450.5)}).value).size(), 0U);
    EXPECT_EQ(objectsIn(run(L"HitTest", {Var(450.5), Var(0.5)}).value).size(), 2U);
}

TEST_P(ScopeViewTest, RowsBecomeChannelsWithTheirColumns) {
    Rows rows(2, 7, 1);
    rows.set(0, 0, Var(L"TX1")).set(0, 1, Var(L"Repeater")).set(0, 2, Var(450.0)).set(0, 3, Var(12.5));
    rows.set(0, 4, Var(43)).set(0, 5, Var(0x00FF00)).set(0, 6, Var(0x0000FF));
    rows.set(1, 0, Var(L"TX2")).set(1, 2, Var(L"451"));
    const Result added = run(L"AddTXChannels", {rows.get()});
    ASSERT_EQ(added.hr, S_OK) << testing::PrintToString(added.text);
    EXPECT_EQ(added.value.lVal, 2);
    EXPECT_EQ(scope.NumTX(), 2);
    const ComPtr<_FreqSlot> first = scope.GetTXbyKey(L"TX1");
    ASSERT_TRUE(first);
    Text label;
    double power = 0.0;
    OLE_COLOR box = 0;
    OLE_COLOR line = 0;
    first->get_sLabel(label.put());
    first->get_dPwrDBM(&power);
    first->get_lColor(&box);
    first->get_lColorLine(&line);
    EXPECT_EQ(label.str(), L"Repeater");
    EXPECT_EQ(power, 43.0);
    EXPECT_EQ(box, 0x00FF00U);
    EXPECT_EQ(line, 0x0000FFU);
    EXPECT_EQ(freqLo(first.Get()), 449.9875);
    EXPECT_EQ(freqHi(scope.GetTXbyKey(L"TX2").Get()), 451.0) << "an empty cell keeps the bandwidth of 0";
}

TEST_P(ScopeViewTest, ObjectsBecomeChannelsInTheirOrder) {
    const auto first = channel({.freq = 450.0, .key = L"RX1"});
    const auto second = channel({.freq = 451.0, .key = L"RX2"});
    Var objects = arrayOf({Var(first.Get()), Var(second.Get())});
    EXPECT_EQ(run(L"AddRXChannels", {Var::variable(objects)}).value.lVal, 2);
    EXPECT_TRUE(sameObject(scope.GetRXChnl(1).Get(), second.Get()));
    EXPECT_EQ(run(L"AddRXChannels", {arrayOf({})}).hr, S_OK);
    EXPECT_EQ(scope.NumRX(), 2);
}

TEST_P(ScopeViewTest, AWrongElementAddsNothing) {
    Rows rows(2, 3);
    rows.set(0, 0, Var(L"TX1")).set(0, 2, Var(450.0)).set(1, 0, Var(L"TX2")).set(1, 2, Var(L"none"));
    const Result wrong = run(L"AddTXChannels", {rows.get()});
    EXPECT_EQ(wrong.hr, kMismatch);
    EXPECT_EQ(wrong.text, L"AddTXChannels: row 1, frequency: 'none' is not a number.");
    const auto slot = channel({.freq = 450.0, .key = L"TX3"});
    EXPECT_EQ(run(L"AddTXChannels", {arrayOf({Var(slot.Get()), Var(7)})}).text,
              L"AddTXChannels: element 1 is '7'. It must be a FreqSlot object.");
    EXPECT_EQ(run(L"AddTXChannels", {Rows(1, 8).get()}).hr, kInvalidCall);
    EXPECT_EQ(run(L"AddTXChannels", {Var(450.0)}).hr, kMismatch);
    EXPECT_EQ(scope.NumTX(), 0);
}

TEST_P(ScopeViewTest, TheRenderTimeIsAboveZeroAfterADrawing) {
    EXPECT_EQ(get(view.Get(), L"RenderTimeMs").result.dblVal, 0.0);
    EXPECT_EQ(showRange(440.0, 460.0), S_OK);
    EXPECT_GT(get(view.Get(), L"RenderTimeMs").result.dblVal, 0.0);
}

TEST_P(ScopeViewTest, ScopeIsTheControl) {
    const Outcome outcome = get(view.Get(), L"Scope");
    ASSERT_EQ(outcome.result.vt, VT_DISPATCH);
    EXPECT_TRUE(sameObject(outcome.result.pdispVal, scope.get()));
}

TEST(ScopeView, TheControlsOwnViewKeepsItsControl) {
    const auto view = createInstance<_BandscopeView>(CLSID_kvBandscope);
    const auto other = createInstance<IDispatch>(CLSID_kvBandscope);
    EXPECT_EQ(view->putref_Scope(other.Get()), kInvalidCall);
    EXPECT_THAT(takeErrorText(), testing::HasSubstr(L"Create a kvBandscope.View"));
    ComPtr<IDispatch> kept;
    EXPECT_EQ(view->get_Scope(kept.GetAddressOf()), S_OK);
    EXPECT_TRUE(sameObject(kept.Get(), view.Get()));
}

TEST(ScopeView, MembersOfBothInterfacesKeepTheirNumbers) {
    // The same numbers mean other members in the other interface.
    const auto view = createInstance<_BandscopeView>(CLSID_kvBandscope);
    ComPtr<IDispatch> control;
    ASSERT_EQ(view.As(&control), S_OK);
    EXPECT_EQ(idOf(view.Get(), L"ShowRange"), 2);
    EXPECT_EQ(idOf(control.Get(), L"AddRXChnl"), 2);
    EXPECT_EQ(idOf(control.Get(), L"ShowRange"), DISPID_UNKNOWN);
}

TEST(ScopeView, AViewWithoutAControlSaysSo) {
    const auto view = createInstance<_BandscopeView>(CLSID_View);
    ComPtr<IDispatch> none;
    EXPECT_EQ(view->get_Scope(none.GetAddressOf()), S_OK);
    EXPECT_FALSE(none);
    const Outcome outcome = call(view.Get(), L"PanBy", {Var(1.0)});
    EXPECT_EQ(outcome.errorCode, kNotSet);
    EXPECT_EQ(outcome.description, L"Scope is not set. Set it to a kvBandscope control first.");
    EXPECT_EQ(outcome.source, L"kvBandscope.View");
    long added = 5;
    EXPECT_EQ(view->AddTXChannels(arrayOf({}), &added), kNotSet);
    EXPECT_EQ(added, 0);
}

TEST(ScopeView, OnlyAControlCanBeTheScope) {
    const auto view = createInstance<_BandscopeView>(CLSID_View);
    const auto other = createInstance<_BandscopeView>(CLSID_View);
    const auto slot = createInstance<_FreqSlot>(CLSID_FreqSlot);
    EXPECT_EQ(view->putref_Scope(slot.Get()), kMismatch);
    EXPECT_THAT(takeErrorText(), testing::HasSubstr(L"no kvBandscope control"));
    EXPECT_EQ(view->putref_Scope(other.Get()), kMismatch);
    EXPECT_EQ(view->putref_Scope(view.Get()), kMismatch);
    // A language without object assignments uses the other setter.
    const auto control = createInstance<IDispatch>(CLSID_kvBandscope);
    EXPECT_EQ(put(view.Get(), L"Scope", {Var(control.Get())}).hr, S_OK);
    EXPECT_EQ(view->PanBy(1.0), kInvalidCall) << "there is no range yet";
}

TEST(ScopeView, AViewHoldsItsControlUntilItIsReleasedOrGivenAnother) {
    auto view = createInstance<_BandscopeView>(CLSID_View);
    auto second = createInstance<_BandscopeView>(CLSID_View);
    auto control = createInstance<IDispatch>(CLSID_kvBandscope);
    EXPECT_EQ(view->putref_Scope(control.Get()), S_OK);
    EXPECT_EQ(second->put_Scope(control.Get()), S_OK);
    EXPECT_GT(referenceCount(control.Get()), 1U);
    EXPECT_EQ(view->putref_Scope(nullptr), S_OK);
    EXPECT_EQ(second.Reset(), 0U);
    EXPECT_EQ(referenceCount(control.Get()), 1U);
    EXPECT_EQ(view->putref_Scope(control.Get()), S_OK);
    control.Reset();
    EXPECT_EQ(view->ShowRange(440.0, 460.0), S_OK) << "the view keeps the control";
    view.Reset();
    EXPECT_EQ(canUnloadNow(), S_OK);
}

}  // namespace
}  // namespace kv::test
