// The calls that a container gets from the control, in their order, at each stage of the control's life.
#include <gmock/gmock.h>
#include <olectl.h>

#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kUserMode = "Ambient(" + std::to_string(DISPID_AMBIENT_USERMODE) + ")";
const std::string kUiDead = "Ambient(" + std::to_string(DISPID_AMBIENT_UIDEAD) + ")";

class ContainerCalls : public testing::Test {
  protected:
    FullContainer container;
    CallLog& log = container.log;

    ComPtr<IOleObject> object() const { return container.as<IOleObject>(); }
    /// A window of the container's own that can have the focus.
    HWND neighbor() const {
        return CreateWindowExW(0, L"BUTTON", L"next", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0, 10, 10,
                               container.host.get(), nullptr, nullptr, nullptr);
    }
};

TEST_F(ContainerCalls, SitingAndLoadingMakeNoCalls) {
    EXPECT_EQ(container.setSite(), S_OK);
    EXPECT_EQ(container.setSite(), S_OK);
    ComPtr<IOleClientSite> known;
    EXPECT_EQ(object()->GetClientSite(&known), S_OK);
    EXPECT_TRUE(sameObject(known.Get(), static_cast<IOleClientSite*>(container.site.Get())));
    EXPECT_EQ(object()->SetHostNames(L"host", L"document"), S_OK);
    EXPECT_EQ(container.as<IPersistStreamInit>()->InitNew(), S_OK);
    EXPECT_EQ(object()->IsUpToDate(), S_OK);
    EXPECT_EQ(object()->Update(), S_OK);
    container.drawChannel();
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ContainerCalls, InPlaceActivationMakesItsCallsInOrder) {
    ASSERT_EQ(container.setSite(), S_OK);
    EXPECT_EQ(container.verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    EXPECT_THAT(log.take(), ElementsAre("CanInPlaceActivate", "OnInPlaceActivate", "GetWindowContext", "GetWindow",
                                        kUserMode, kUiDead, "ShowObject"));
    EXPECT_EQ(container.verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    EXPECT_EQ(container.verb(OLEIVERB_SHOW), S_OK);
    EXPECT_EQ(container.verb(OLEIVERB_PRIMARY), S_OK);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ContainerCalls, UiActivationAndUiDeactivationMakeTheirCallsInOrder) {
    container.activate();
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_THAT(log.take(), ElementsAre("OnUIActivate", "frame.SetActiveObject", "document.SetActiveObject",
                                        "frame.SetBorderSpace", "document.SetBorderSpace", "OnFocus"));
    EXPECT_TRUE(sameObject(container.site->frame->active.Get(), container.control.Get()));
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(container.as<IOleInPlaceObject>()->UIDeactivate(), S_OK);
    EXPECT_THAT(log.take(),
                ElementsAre("frame.SetActiveObject(null)", "document.SetActiveObject(null)", "OnUIDeactivate"));
    EXPECT_EQ(container.as<IOleInPlaceObject>()->UIDeactivate(), S_OK);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_TRUE(IsWindow(container.root()));
}

TEST_F(ContainerCalls, InPlaceDeactivationBeginsWithUiDeactivation) {
    container.activate();
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    log.calls.clear();
    EXPECT_EQ(container.as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    EXPECT_THAT(log.take(), ElementsAre("frame.SetActiveObject(null)", "document.SetActiveObject(null)",
                                        "OnUIDeactivate", "OnFocus(lost)", "OnInPlaceDeactivate"));
    EXPECT_EQ(container.as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ContainerCalls, HidingAndShowing) {
    container.activate();
    const HWND root = container.root();
    EXPECT_EQ(container.verb(OLEIVERB_HIDE), S_OK);
    EXPECT_FALSE(isShown(root));
    EXPECT_EQ(container.verb(OLEIVERB_SHOW), S_OK);
    EXPECT_TRUE(isShown(root));
    EXPECT_EQ(container.root(), root);
    EXPECT_THAT(log.take(), IsEmpty()) << "it stays active in place";
}

TEST_F(ContainerCalls, SupportedAndUnsupportedVerbsHaveTheirResults) {
    container.activate();
    for (const LONG verb : {OLEIVERB_OPEN, OLEIVERB_PROPERTIES, -1000L})
        EXPECT_EQ(container.verb(verb), E_NOTIMPL) << verb;
    EXPECT_EQ(container.verb(OLEIVERB_DISCARDUNDOSTATE), S_OK);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(container.verb(OLEIVERB_HIDE), S_OK);
    // An unknown verb means the first one.
    EXPECT_EQ(container.verb(17), OLEOBJ_S_INVALIDVERB);
    EXPECT_TRUE(IsWindow(container.root()));
    ComPtr<IEnumOLEVERB> verbs;
    ASSERT_EQ(object()->EnumVerbs(&verbs), S_OK);
    std::vector<LONG> numbers;
    OLEVERB verb{};
    while (verbs->Next(1, &verb, nullptr) == S_OK) {
        ASSERT_TRUE(verb.lpszVerbName);
        EXPECT_NE(verb.lpszVerbName[0], L'\0');
        EXPECT_EQ(verb.grfAttribs & OLEVERBATTRIB_ONCONTAINERMENU, 0U);
        CoTaskMemFree(verb.lpszVerbName);
        numbers.push_back(verb.lVerb);
    }
    EXPECT_THAT(numbers, ElementsAre(OLEIVERB_PRIMARY, OLEIVERB_SHOW, OLEIVERB_HIDE, OLEIVERB_INPLACEACTIVATE,
                                     OLEIVERB_UIACTIVATE));
}

TEST_F(ContainerCalls, ResizingAsksOnlyForWhatTheControlNeeds) {
    container.activate();
    const auto place = container.as<IOleInPlaceObject>();
    const RECT larger{10, 10, 770, 540};
    EXPECT_EQ(place->SetObjectRects(&larger, &larger), S_OK);
    pump();
    EXPECT_THAT(log.take(), IsEmpty());
    const RECT narrow{10, 10, 310, 540};
    EXPECT_EQ(place->SetObjectRects(&narrow, &narrow), S_OK);
    pump();
    EXPECT_THAT(log.take(), ElementsAre("OnPosRectChange"));
}

TEST_F(ContainerCalls, TheControlAcceptsAnotherSizeThanItAskedFor) {
    container.activate();
    const auto place = container.as<IOleInPlaceObject>();
    const RECT narrow{10, 10, 310, 540};
    RECT asked{};
    container.site->onPosRectChange = [&](const RECT& wanted) {
        asked = wanted;
        EXPECT_EQ(place->SetObjectRects(&narrow, &narrow), S_OK);
    };
    EXPECT_EQ(place->SetObjectRects(&narrow, &narrow), S_OK);
    pump();
    EXPECT_EQ(asked.right - asked.left, 720);
    EXPECT_THAT(log.take(), ElementsAre("OnPosRectChange"));
    RECT window{};
    GetClientRect(container.root(), &window);
    EXPECT_EQ(window.right, 300);
    EXPECT_EQ(window.bottom, 530);
    // Any height is accepted, and the children are arranged for it.
    container.site->onPosRectChange = [&](const RECT& wanted) {
        const RECT answer{wanted.left, wanted.top, wanted.right, wanted.top + 400};
        EXPECT_EQ(place->SetObjectRects(&answer, &answer), S_OK);
    };
    const RECT other{10, 10, 311, 541};
    EXPECT_EQ(place->SetObjectRects(&other, &other), S_OK);
    pump();
    SIZEL extent{};
    EXPECT_EQ(object()->GetExtent(DVASPECT_CONTENT, &extent), S_OK);
    EXPECT_EQ(extent.cx, 720 * 2540 / 96);
    EXPECT_EQ(extent.cy, (400 * 2540 + 48) / 96);
    EXPECT_THAT(log.take(), ElementsAre("OnPosRectChange"));
}

TEST_F(ContainerCalls, AContainerThatInsistsIsAskedOnce) {
    container.activate();
    const auto place = container.as<IOleInPlaceObject>();
    const RECT narrow{10, 10, 310, 540};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(place->SetObjectRects(&narrow, &narrow), S_OK);
        pump();
    }
    EXPECT_EQ(log.count("OnPosRectChange"), 1);
}

TEST_F(ContainerCalls, TheFocusUiActivatesTheControl) {
    container.activate();
    const HWND next = neighbor();
    SetFocus(container.part(L"tdKnMover"));
    EXPECT_THAT(log.take(), ElementsAre("OnUIActivate", "frame.SetActiveObject", "document.SetActiveObject",
                                        "frame.SetBorderSpace", "document.SetBorderSpace", "OnFocus"));
    // A focus change inside the control is not reported.
    SetFocus(container.part(L"ComboBox"));
    EXPECT_THAT(log.take(), IsEmpty());
    SetFocus(next);
    EXPECT_THAT(log.take(), ElementsAre("OnFocus(lost)"));
    SetFocus(container.root());
    EXPECT_THAT(log.take(), ElementsAre("OnFocus"));
    EXPECT_EQ(windowClass(GetFocus()), L"ComboBox") << "where it was before";
    DestroyWindow(next);
}

TEST_F(ContainerCalls, AClickUiActivatesTheControl) {
    container.activate();
    container.drawChannel();
    postClick(container.root(), 1, 100);
    EXPECT_THAT(log.take(), ElementsAre("OnUIActivate", "frame.SetActiveObject", "document.SetActiveObject",
                                        "frame.SetBorderSpace", "document.SetBorderSpace", "OnFocus"));
    EXPECT_TRUE(IsChild(container.root(), GetFocus()));
    postClick(container.root(), 1, 100);
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ContainerCalls, CloseNotifiesTheSinksOnce) {
    container.activate();
    container.advise();
    EXPECT_EQ(object()->Close(OLECLOSE_PROMPTSAVE), S_OK);
    EXPECT_THAT(log.take(), ElementsAre("OnInPlaceDeactivate", "OnClose"));
    EXPECT_EQ(object()->Close(OLECLOSE_SAVEIFDIRTY), S_OK);
    EXPECT_THAT(log.take(), IsEmpty());
    // A control that is shown again can be closed again.
    EXPECT_EQ(container.verb(OLEIVERB_SHOW), S_OK);
    log.calls.clear();
    EXPECT_EQ(object()->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_THAT(log.take(), ElementsAre("OnInPlaceDeactivate", "OnClose"));
}

TEST_F(ContainerCalls, SaveCompletedNotifiesTheSinks) {
    container.advise();
    ComPtr<IStorage> storage;
    ASSERT_EQ(StgCreateDocfile(nullptr, STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_DELETEONRELEASE, 0,
                               &storage),
              S_OK);
    const auto persist = container.as<IPersistStorage>();
    EXPECT_EQ(persist->InitNew(storage.Get()), S_OK);
    EXPECT_EQ(persist->Save(storage.Get(), TRUE), S_OK);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(persist->SaveCompleted(nullptr), S_OK);
    EXPECT_THAT(log.take(), ElementsAre("OnSave"));
}

TEST_F(ContainerCalls, EachDrawingNotifiesTheSinksOnce) {
    container.advise();
    log.calls.clear();
    container.drawChannel();
    EXPECT_THAT(log.take(), ElementsAre("OnViewChange", "OnDataChange"));
    // Neither reading a property nor adding a channel that is not drawn changes the view.
    double value = 0.0;
    EXPECT_EQ(container.control->get_DisplayMinFreq(&value), S_OK);
    long index = 0;
    EXPECT_EQ(container.control->AddTXChnl(channel({.freq = 410.0, .key = L"TX2"}).Get(), &index), S_OK);
    EXPECT_EQ(container.control->AddTXChnl(channel({.freq = 420.0, .key = L"TX3"}).Get(), &index), S_OK);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(container.control->ClearDisplay(), S_OK);
    EXPECT_EQ(container.control->put_lColorSpecBack(RGB(1, 2, 3)), S_OK);
    SIZEL size{25400, 12700};
    EXPECT_EQ(object()->SetExtent(DVASPECT_CONTENT, &size), S_OK);
    EXPECT_THAT(log.take(), ElementsAre("OnViewChange", "OnDataChange", "OnViewChange", "OnDataChange", "OnViewChange",
                                        "OnDataChange"));
}

TEST_F(ContainerCalls, AddingManyChannelsNotifiesTheSinksOnceWhenEventsAreProcessed) {
    container.activate();
    container.drawChannel();
    pump();
    container.advise();
    log.calls.clear();
    long index = 0;
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(container.control->AddTXChnl(channel({.freq = 400.0 + i}).Get(), &index), S_OK);
    EXPECT_THAT(log.take(), IsEmpty());
    pump();
    EXPECT_THAT(log.take(), ElementsAre("OnViewChange", "OnDataChange"));
}

TEST_F(ContainerCalls, InADesignerTheControlIsDisabled) {
    container.site->ambient[DISPID_AMBIENT_USERMODE] = Var(false);
    container.activate();
    EXPECT_FALSE(IsWindowEnabled(container.root()));
    container.site->ambient[DISPID_AMBIENT_USERMODE] = Var(true);
    const auto control = container.as<IOleControl>();
    EXPECT_EQ(control->OnAmbientPropertyChange(DISPID_AMBIENT_BACKCOLOR), S_OK);
    EXPECT_THAT(log.take(), IsEmpty());
    EXPECT_EQ(control->OnAmbientPropertyChange(DISPID_AMBIENT_USERMODE), S_OK);
    EXPECT_TRUE(IsWindowEnabled(container.root()));
    container.site->ambient[DISPID_AMBIENT_UIDEAD] = Var(true);
    EXPECT_EQ(control->OnAmbientPropertyChange(DISPID_UNKNOWN), S_OK);
    EXPECT_FALSE(IsWindowEnabled(container.root()));
    container.site->ambient[DISPID_AMBIENT_UIDEAD] = Var(false);
    EXPECT_EQ(control->OnAmbientPropertyChange(DISPID_AMBIENT_UIDEAD), S_OK);
    EXPECT_TRUE(IsWindowEnabled(container.root()));
}

TEST_F(ContainerCalls, QuickActivationDoesItInOneCall) {
    const ComPtr<EventSink> events(new EventSink);
    QACONTAINER from{};
    from.cbSize = sizeof from;
    from.pClientSite = container.site.Get();
    from.pUnkEventSink = events.Get();
    from.dwAmbientFlags = QACONTAINER_USERMODE;
    QACONTROL to{};
    to.cbSize = sizeof to;
    const auto quick = container.as<IQuickActivate>();
    ASSERT_EQ(quick->QuickActivate(&from, &to), S_OK);
    DWORD misc = 0;
    EXPECT_EQ(object()->GetMiscStatus(DVASPECT_CONTENT, &misc), S_OK);
    EXPECT_EQ(to.dwMiscStatus, misc);
    EXPECT_EQ(to.dwViewStatus & VIEWSTATUS_OPAQUE, static_cast<DWORD>(VIEWSTATUS_OPAQUE));
    EXPECT_NE(to.dwEventCookie, 0U);
    EXPECT_EQ(to.dwPropNotifyCookie, 0U);
    SIZEL size{30000, 15000};
    EXPECT_EQ(quick->SetContentExtent(&size), S_OK);
    EXPECT_EQ(quick->GetContentExtent(&size), S_OK);
    EXPECT_NEAR(static_cast<double>(size.cx), 30000.0, 1.0);
    EXPECT_EQ(container.as<IPersistStreamInit>()->InitNew(), S_OK);
    EXPECT_EQ(container.verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    EXPECT_TRUE(IsWindowEnabled(container.root()));
    to.cbSize = 4;
    EXPECT_EQ(quick->QuickActivate(&from, &to), E_INVALIDARG);
    EXPECT_EQ(quick->QuickActivate(nullptr, &to), E_POINTER);
}

}  // namespace
}  // namespace kv::test
