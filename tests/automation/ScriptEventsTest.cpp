// Events in the procedures of a script, connected as a script host does it: the control's class information gives the
// names of the events, and the names of the procedures are "spectrum_" and the event's name.
#include <gmock/gmock.h>

#include <activscp.h>

#include "tests/automation/Container.h"

namespace kv::test {
namespace {

/// A script in an engine inside this process.
class ScriptProgram final : public Counted<IActiveScriptSite> {
  public:
    std::vector<std::wstring> errors;

    /// Runs `text`; false when there is no such engine.
    bool start(const wchar_t* language, const wchar_t* text) {
        CLSID clsid{};
        if (FAILED(CLSIDFromProgID(language, &clsid)) ||
            FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(engine_.GetAddressOf()))))
            return false;
        ComPtr<IActiveScriptParse> parse;
        return SUCCEEDED(engine_.As(&parse)) && SUCCEEDED(parse->InitNew()) &&
               SUCCEEDED(engine_->SetScriptSite(this)) &&
               SUCCEEDED(parse->ParseScriptText(text, nullptr, nullptr, nullptr, 0, 0, SCRIPTTEXT_ISVISIBLE, nullptr,
                                                nullptr)) &&
               SUCCEEDED(engine_->SetScriptState(SCRIPTSTATE_CONNECTED));
    }
    /// The script's procedures and variables.
    ComPtr<IDispatch> names() const {
        ComPtr<IDispatch> dispatch;
        EXPECT_EQ(engine_->GetScriptDispatch(nullptr, &dispatch), S_OK);
        return dispatch;
    }
    void close() {
        if (engine_)
            engine_->Close();
        engine_.Reset();
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (iid != IID_IUnknown && iid != IID_IActiveScriptSite)
            return E_NOINTERFACE;
        *object = static_cast<IActiveScriptSite*>(this);
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetLCID(LCID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR, DWORD, IUnknown**, ITypeInfo**) override {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override {
        EXCEPINFO info{};
        error->GetExceptionInfo(&info);
        errors.emplace_back(info.bstrDescription ? info.bstrDescription : L"an error");
        SysFreeString(info.bstrSource);
        SysFreeString(info.bstrDescription);
        SysFreeString(info.bstrHelpFile);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }

  private:
    ComPtr<IActiveScript> engine_;
};

/// The description of a control's events, as its class information leads to it.
ComPtr<ITypeInfo> eventsOf(IUnknown* control) {
    ComPtr<IProvideClassInfo2> provider;
    ComPtr<ITypeInfo> coclass;
    ComPtr<ITypeInfo> events;
    ComPtr<ITypeLib> library;
    GUID iid{};
    UINT index = 0;
    EXPECT_EQ(control->QueryInterface(IID_PPV_ARGS(provider.GetAddressOf())), S_OK);
    EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &iid), S_OK);
    EXPECT_EQ(provider->GetClassInfo(&coclass), S_OK);
    EXPECT_EQ(coclass->GetContainingTypeLib(&library, &index), S_OK);
    EXPECT_EQ(library->GetTypeInfoOfGuid(iid, &events), S_OK);
    return events;
}

class ScriptSink final : public Counted<ByNumber> {
  public:
    ScriptSink(ComPtr<ITypeInfo> events, ComPtr<IDispatch> script)
        : events_(std::move(events)), script_(std::move(script)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (iid != IID_IUnknown && iid != IID_IDispatch && iid != DIID___kvBandscope)
            return E_NOINTERFACE;
        *object = static_cast<IDispatch*>(this);
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID locale, WORD, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO*, UINT*) override {
        Text name;
        UINT count = 0;
        EXPECT_EQ(events_->GetNames(id, name.put(), 1, &count), S_OK);
        const DISPID procedure = idOf(script_.Get(), (L"spectrum_" + name.str()).c_str());
        return script_->Invoke(procedure, IID_NULL, locale, DISPATCH_METHOD, params, result, nullptr, nullptr);
    }

  private:
    ComPtr<ITypeInfo> events_;
    ComPtr<IDispatch> script_;
};

/// A displayed channel whose control reports its events to a script.
class Told {
  public:
    explicit Told(const ScriptProgram& script)
        : sink_(new ScriptSink(eventsOf(container.control.Get()), script.names())) {
        container.activate();
        container.addTx({.freq = 450.0, .bw = 25.0, .power = 30.0, .key = L"TX1"});
        EXPECT_TRUE(container.draw());
        container.connect(sink_.Get());
        container.connect(others.Get());
    }
    ~Told() {
        container.as<IOleObject>()->Close(OLECLOSE_NOSAVE);
        container.as<IOleObject>()->SetClientSite(nullptr);
        container.control.Reset();
        EXPECT_EQ(sink_->references(), 1U);
    }
    Told(const Told&) = delete;
    Told& operator=(const Told&) = delete;

    Container container;
    ComPtr<EventSink> others{new EventSink};

  private:
    ComPtr<ScriptSink> sink_;
};

struct Language {
    const char* test;
    const wchar_t* name;
    const wchar_t* text;
    const wchar_t* heard;
};

const Language kLanguages[] = {{"Basic", L"VBScript",
                                L"heard = \"\"\n"
                                L"Sub spectrum_ChgFreqRange(dMin, dMax)\n"
                                L"  heard = heard & TypeName(dMin) & \" \" & (dMin < 450 And dMax > 450) & \" \"\n"
                                L"End Sub\n"
                                L"Sub spectrum_ChgGridRange()\n"
                                L"  heard = heard & \"grid\"\n"
                                L"End Sub\n"
                                L"Function told()\n"
                                L"  told = heard\n"
                                L"End Function\n",
                                L"Double True grid"},
                               {"Java", L"JScript",
                                L"var heard = '';\n"
                                L"function spectrum_ChgFreqRange(dMin, dMax) {\n"
                                L"  heard += typeof dMin + ' ' + (dMin < 450 && dMax > 450) + ' ';\n"
                                L"}\n"
                                L"function spectrum_ChgGridRange() { heard += 'grid'; }\n"
                                L"function told() { return heard; }\n",
                                L"number true grid"}};

class ScriptEvents : public testing::TestWithParam<Language> {};

TEST_P(ScriptEvents, ReachItsProcedures) {
    const ComPtr<ScriptProgram> script(new ScriptProgram);
    ASSERT_TRUE(script->start(GetParam().name, GetParam().text));
    {
        const Told told(*script.Get());
        told.container.chooseGridRange(0);
        EXPECT_EQ(call(script->names().Get(), L"told").result.text(), GetParam().heard);
    }
    EXPECT_THAT(script->errors, testing::IsEmpty());
    script->close();
    EXPECT_EQ(canUnloadNow(), S_OK);
}

INSTANTIATE_TEST_SUITE_P(Languages, ScriptEvents, testing::ValuesIn(kLanguages),
                         [](const auto& tested) { return tested.param.test; });

/// An error in a script's event procedure does not affect the control.
TEST(ScriptEventErrors, StayInTheScript) {
    const ComPtr<ScriptProgram> script(new ScriptProgram);
    ASSERT_TRUE(script->start(L"VBScript",
                              L"Sub spectrum_ChgFreqRange(dMin, dMax)\n"
                              L"  Err.Raise 5\n"
                              L"End Sub\n"
                              L"Sub spectrum_ChgGridRange()\n"
                              L"  NoSuchProcedure\n"
                              L"End Sub\n"));
    {
        const Told told(*script.Get());
        told.container.chooseGridRange(0);
        EXPECT_THAT(told.others->ids(), testing::ElementsAre(kChgFreqRange, kChgGridRange))
            << "other sinks receive both events all the same";
    }
    script->close();
}

}  // namespace
}  // namespace kv::test
