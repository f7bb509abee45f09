// Ambient properties of many types, and containers that have no usable ones.
#include <gmock/gmock.h>

#include <olectl.h>

#include "tests/automation/Container.h"

namespace kv::test {
namespace {

Var number(VARTYPE type, LONG value) {
    Var result;
    result.vt = type;
    result.lVal = value;
    return result;
}

struct Answer {
    const char* name;
    Var value;
};

std::vector<Answer> answersFor(bool truth) {
    const int one = truth ? 1 : 0;
    std::vector<Answer> answers{{"BOOL", Var(truth)},
                                {"BOOL that is 1", number(VT_BOOL, one)},
                                {"I4", number(VT_I4, one)},
                                {"UI4", number(VT_UI4, one)},
                                {"I2", number(VT_I2, -one)},
                                {"UI2", number(VT_UI2, one)},
                                {"UI1", number(VT_UI1, one)},
                                {"I1", number(VT_I1, one)},
                                {"INT", number(VT_INT, one)},
                                {"UINT", number(VT_UINT, one)},
                                {"R8", Var(double(one))},
                                {"a number as a text", Var(truth ? L"-1" : L"0")},
                                {"a word", Var(truth ? L"True" : L"False")}};
    return answers;
}

/// Values that no container should return, but some do.
std::vector<Answer> uselessAnswers() {
    return {{"EMPTY", Var()},          {"NULL", Var::null()},
            {"ERROR", Var::missing()}, {"a text", Var(L"perhaps")},
            {"no text", Var(L"")},     {"Nothing", Var(static_cast<IDispatch*>(nullptr))}};
}

class Ambient : public testing::Test {
  protected:
    FullContainer container;

    void SetUp() override { ASSERT_NO_FATAL_FAILURE(container.activate()); }
    bool takesInput() const {
        EXPECT_EQ(container.as<IOleControl>()->OnAmbientPropertyChange(DISPID_UNKNOWN), S_OK);
        return IsWindowEnabled(container.root()) != FALSE;
    }
    void serve(DISPID property, const Var& value) const { container.site->ambient.insert_or_assign(property, value); }
};

TEST_F(Ambient, UserModeOfAnyType) {
    for (const bool truth : {true, false}) {
        for (const auto& [name, value] : answersFor(truth)) {
            serve(DISPID_AMBIENT_USERMODE, value);
            EXPECT_EQ(takesInput(), truth) << name;
        }
    }
}

TEST_F(Ambient, UIDeadOfAnyType) {
    for (const bool truth : {true, false}) {
        for (const auto& [name, value] : answersFor(truth)) {
            serve(DISPID_AMBIENT_UIDEAD, value);
            EXPECT_EQ(takesInput(), !truth) << name;
        }
    }
}

TEST_F(Ambient, AMeaninglessValueCountsAsNoValue) {
    for (const auto& [name, value] : uselessAnswers()) {
        serve(DISPID_AMBIENT_USERMODE, Var(false));
        EXPECT_FALSE(takesInput());
        serve(DISPID_AMBIENT_USERMODE, value);
        serve(DISPID_AMBIENT_UIDEAD, value);
        EXPECT_TRUE(takesInput()) << name;
        container.site->ambient.clear();
    }
}

TEST_F(Ambient, AnErrorCountsAsNoValue) {
    serve(DISPID_AMBIENT_USERMODE, Var(false));
    for (const HRESULT error : {E_FAIL, E_NOTIMPL, DISP_E_EXCEPTION, RPC_E_DISCONNECTED}) {
        container.log.answers["Ambient(-709)"] = error;
        EXPECT_TRUE(takesInput());
        container.log.answers.clear();
        EXPECT_FALSE(takesInput());
    }
}

TEST_F(Ambient, AValueByReferenceIsRead) {
    VARIANT_BOOL flag = VARIANT_FALSE;
    // A copy of a reference is a reference to the site's own variable.
    serve(DISPID_AMBIENT_USERMODE, Var::typed(VT_BOOL | VT_BYREF, &flag));
    EXPECT_FALSE(takesInput());
    flag = VARIANT_TRUE;
    EXPECT_TRUE(takesInput());
}

TEST_F(Ambient, OtherPropertiesAreNotRead) {
    container.log.calls.clear();
    for (const DISPID property : {DISPID_AMBIENT_BACKCOLOR, DISPID_AMBIENT_FONT, DISPID_AMBIENT_LOCALEID,
                                  DISPID_AMBIENT_DISPLAYNAME, DISPID_AMBIENT_APPEARANCE, 4711})
        EXPECT_EQ(container.as<IOleControl>()->OnAmbientPropertyChange(property), S_OK);
    EXPECT_TRUE(container.log.calls.empty());
}

TEST(AmbientBeforeLoading, TheControlWantsItsSiteBeforeItIsLoaded) {
    // Containers read this before they give the control its site.
    const auto object = createInstance<IOleObject>(CLSID_kvBandscope);
    ASSERT_TRUE(object);
    DWORD status = 0;
    EXPECT_EQ(object->GetMiscStatus(DVASPECT_CONTENT, &status), S_OK);
    EXPECT_TRUE(status & OLEMISC_SETCLIENTSITEFIRST);
    EXPECT_FALSE(status & (OLEMISC_NOUIACTIVATE | OLEMISC_INVISIBLEATRUNTIME));
}

TEST(AmbientWithoutAutomation, TheControlRuns) {
    // This site has no IDispatch.
    Container container;
    ASSERT_NO_FATAL_FAILURE(container.activate());
    EXPECT_EQ(container.as<IOleControl>()->OnAmbientPropertyChange(DISPID_UNKNOWN), S_OK);
    EXPECT_TRUE(IsWindowEnabled(container.root()));
}

TEST(AmbientWithoutAutomation, AControlWithoutASiteAcceptsTheNotification) {
    const auto control = createInstance<IOleControl>(CLSID_kvBandscope);
    ASSERT_TRUE(control);
    EXPECT_EQ(control->OnAmbientPropertyChange(DISPID_UNKNOWN), S_OK);
    EXPECT_EQ(control->OnAmbientPropertyChange(DISPID_AMBIENT_USERMODE), S_OK);
}

}  // namespace
}  // namespace kv::test
