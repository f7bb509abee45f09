// A container that ends the control inside any call of the control's, by any means: nothing crashes, nothing is left
// behind and no notification is sent twice.
#include <gmock/gmock.h>

#include <algorithm>
#include <tuple>

#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"

namespace kv::test {
namespace {

enum class End { Close, Unsite, Deactivate, DestroyParent, DestroyOwn, Release, Everything, CloseAndShowAgain };

const char* endName(End end) {
    switch (end) {
        case End::Close:
            return "Close";
        case End::Unsite:
            return "Unsite";
        case End::Deactivate:
            return "Deactivate";
        case End::DestroyParent:
            return "DestroyParent";
        case End::DestroyOwn:
            return "DestroyOwn";
        case End::Release:
            return "Release";
        case End::Everything:
            return "Everything";
        case End::CloseAndShowAgain:
            break;
    }
    return "CloseAndShowAgain";
}

class ContainerTeardown : public testing::TestWithParam<std::tuple<std::string, End>> {
  protected:
    FullContainer container;
    CallLog& log = container.log;
    ComPtr<EventSink> events{new EventSink};
    bool ended = false;

    /// Ends the control once. The test's reference is released last, while the control still has work to do.
    void end(End how) {
        if (ended)
            return;
        ended = true;
        const auto object = container.as<IOleObject>();
        switch (how) {
            case End::Close:
                EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
                break;
            case End::Unsite:
                EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
                break;
            case End::Deactivate:
                EXPECT_EQ(container.as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
                break;
            case End::DestroyParent:
                container.host.destroy();
                break;
            case End::DestroyOwn:
                if (const HWND root = container.root())
                    DestroyWindow(root);
                break;
            case End::Release:
                container.control.Reset();
                break;
            case End::Everything:
                everything();
                break;
            case End::CloseAndShowAgain:
                EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
                log.inside.clear();
                container.verb(OLEIVERB_UIACTIVATE);
                break;
        }
    }
    void everything() {
        const auto object = container.as<IOleObject>();
        const auto place = container.as<IOleInPlaceObject>();
        for (int round = 0; round < 2; ++round) {
            place->UIDeactivate();
            place->InPlaceDeactivate();
            object->Close(OLECLOSE_NOSAVE);
            container.as<IViewObject>()->SetAdvise(DVASPECT_CONTENT, 0, nullptr);
            object->SetClientSite(nullptr);
            container.host.destroy();
        }
        container.control.Reset();
    }
    /// A whole life of a control, with every call to the container in it.
    void live() {
        // The calls use interfaces without a counted reference, as those of a host that releases its last one inside a
        // call.
        IOleObject* const object = container.as<IOleObject>().Get();
        IOleInPlaceObject* const place = container.as<IOleInPlaceObject>().Get();
        const auto gone = [&] { return !container.control; };
        const auto onlyWhileThere = [&](const auto& step) {
            if (!gone())
                step();
        };
        onlyWhileThere([&] { object->SetClientSite(container.site.Get()); });
        onlyWhileThere([&] { object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0, nullptr, nullptr); });
        onlyWhileThere([&] { container.drawChannel(); });
        onlyWhileThere([&] {
            if (container.root())
                container.chooseGridRange();
        });
        onlyWhileThere([&] {
            // A drawing processes pending events, in which the container can do anything.
            container.host.onMessage = [&] { log.note("Repaint"); };
            PostMessageW(container.host.get(), WM_APP, 0, 0);
            VARIANT_BOOL drawn = VARIANT_FALSE;
            EXPECT_EQ(container.control.Get()->DrawDisplay(&drawn), S_OK);
            container.host.onMessage = nullptr;
        });
        onlyWhileThere([&] { object->DoVerb(OLEIVERB_UIACTIVATE, nullptr, nullptr, 0, nullptr, nullptr); });
        onlyWhileThere([&] {
            const RECT narrow{0, 0, 300, 300};
            place->SetObjectRects(&narrow, &narrow);
        });
        onlyWhileThere([&] {
            MSG key{GetFocus(), WM_KEYDOWN, VK_F5, 1, 0, {}};
            container.as<IOleInPlaceActiveObject>()->TranslateAccelerator(&key);
        });
        pump();
        onlyWhileThere([&] { place->UIDeactivate(); });
        onlyWhileThere([&] { object->Close(OLECLOSE_NOSAVE); });
        onlyWhileThere([&] { object->SetClientSite(nullptr); });
    }
    void expectPairs() const {
        EXPECT_EQ(log.count("OnInPlaceActivate"), log.count("OnInPlaceDeactivate"));
        EXPECT_EQ(log.count("OnUIActivate"), log.count("OnUIDeactivate"));
        EXPECT_EQ(log.count("frame.SetActiveObject"), log.count("frame.SetActiveObject(null)"));
        EXPECT_LE(log.count("OnClose"), 2);
    }
};

TEST_P(ContainerTeardown, TheContainerCanEndTheControlInsideAnyCall) {
    const auto& [call, how] = GetParam();
    container.advise();
    container.connect(events.Get());
    events->onEvent = [&](DISPID) { log.note("Event"); };
    log.inside[call] = [&, inside = how] { end(inside); };
    live();
    log.inside.clear();
    EXPECT_TRUE(ended) << "the call was never made";
    if (container.control) {
        const auto object = container.as<IOleObject>();
        EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
        EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
        EXPECT_EQ(container.as<IViewObject>()->SetAdvise(0, 0, nullptr), S_OK);
    }
    container.site->frame->active.Reset();
    container.site->document->active.Reset();
    container.control.Reset();
    pump();
    // An object in its destructor calls nothing back, so a container that only releases is not notified of the end.
    if (how != End::Release)
        expectPairs();
    container.expectNothingLeft();
    EXPECT_EQ(events->references(), 1U);
}

const std::string kCalls[] = {"CanInPlaceActivate",
                              "OnInPlaceActivate",
                              "GetWindowContext",
                              "GetWindow",
                              "Ambient(-709)",
                              "ShowObject",
                              "OnViewChange",
                              "OnDataChange",
                              "OnUIActivate",
                              "frame.SetActiveObject",
                              "document.SetActiveObject",
                              "frame.SetBorderSpace",
                              "document.SetBorderSpace",
                              "OnFocus",
                              "OnPosRectChange",
                              "TranslateAccelerator",
                              "frame.SetActiveObject(null)",
                              "document.SetActiveObject(null)",
                              "OnUIDeactivate",
                              "OnFocus(lost)",
                              "OnInPlaceDeactivate",
                              "OnClose"};

/// Calls that do not come through the site.
const std::string kOtherCalls[] = {"Event", "Repaint"};

std::string testName(const testing::TestParamInfo<std::tuple<std::string, End>>& info) {
    std::string name;
    for (const char letter : std::get<0>(info.param))
        if (std::isalnum(static_cast<unsigned char>(letter)))
            name += letter;
    return name + "_" + endName(std::get<1>(info.param));
}

INSTANTIATE_TEST_SUITE_P(Calls, ContainerTeardown,
                         testing::Combine(testing::ValuesIn(kCalls),
                                          testing::Values(End::Close, End::Unsite, End::Deactivate, End::DestroyParent,
                                                          End::DestroyOwn, End::Release, End::Everything,
                                                          End::CloseAndShowAgain)),
                         testName);

INSTANTIATE_TEST_SUITE_P(EventsAndPaint, ContainerTeardown,
                         testing::Combine(testing::ValuesIn(kOtherCalls),
                                          testing::Values(End::Close, End::Unsite, End::Deactivate, End::DestroyParent,
                                                          End::DestroyOwn, End::Release, End::Everything,
                                                          End::CloseAndShowAgain)),
                         testName);

/// Outside of any call, in every order, from each stage of a control's life.
TEST(ContainerEnds, TheEndingStepsCanComeInAnyOrder) {
    std::vector<End> order{End::Close, End::Unsite, End::DestroyParent, End::Release};
    do {
        for (const LONG verb : {OLEIVERB_HIDE, OLEIVERB_INPLACEACTIVATE, OLEIVERB_UIACTIVATE}) {
            FullContainer container;
            container.advise();
            ASSERT_EQ(container.setSite(), S_OK);
            ASSERT_EQ(container.verb(verb), S_OK);
            container.drawChannel();
            std::string said;
            for (const End step : order) {
                said += std::string(" ") + endName(step);
                // A container that has released the control has nothing left to call; only its window can still be
                // destroyed.
                if (step == End::DestroyParent)
                    container.host.destroy();
                else if (!container.control)
                    continue;
                else if (step == End::Close)
                    EXPECT_EQ(container.as<IOleObject>()->Close(OLECLOSE_NOSAVE), S_OK) << said;
                else if (step == End::Unsite)
                    EXPECT_EQ(container.as<IOleObject>()->SetClientSite(nullptr), S_OK) << said;
                else if (!container.site->frame->active)
                    EXPECT_EQ(container.control.Reset(), 0U) << said;
                else
                    container.control.Reset();
                pump();
            }
            // A frame that gets no other active object keeps the old one until it is destroyed itself.
            container.site->frame->active.Reset();
            container.site->document->active.Reset();
            SCOPED_TRACE(said + ", after verb " + std::to_string(verb));
            container.expectNothingLeft();
            EXPECT_EQ(container.log.count("OnClose"), said.find("Close") < said.find("Release") ? 1 : 0);
        }
    } while (std::next_permutation(order.begin(), order.end()));
}

/// A site that returns errors.
class ContainerErrors : public testing::TestWithParam<std::string> {};

TEST_P(ContainerErrors, AreSurvived) {
    FullContainer container;
    container.advise();
    container.log.answers[GetParam()] = E_FAIL;
    EXPECT_EQ(container.setSite(), S_OK);
    const bool fatal = GetParam() == "CanInPlaceActivate" || GetParam() == "OnInPlaceActivate" ||
                       GetParam() == "GetWindowContext" || GetParam() == "GetWindow";
    EXPECT_EQ(container.verb(OLEIVERB_INPLACEACTIVATE), fatal ? E_FAIL : S_OK);
    EXPECT_EQ(container.root() == nullptr, fatal);
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), fatal || GetParam() == "OnUIActivate" ? E_FAIL : S_OK);
    container.drawChannel();
    const RECT narrow{0, 0, 300, 300};
    EXPECT_EQ(container.as<IOleInPlaceObject>()->SetObjectRects(&narrow, &narrow), S_OK);
    pump();
    EXPECT_EQ(container.as<IOleObject>()->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_EQ(container.as<IOleObject>()->SetClientSite(nullptr), S_OK);
    EXPECT_EQ(container.as<IViewObject>()->SetAdvise(0, 0, nullptr), S_OK);
    EXPECT_EQ(container.control.Reset(), 0U);
    container.expectNothingLeft();
}

INSTANTIATE_TEST_SUITE_P(Calls, ContainerErrors, testing::ValuesIn(kCalls), [](const auto& tested) {
    return testName({std::make_tuple(tested.param, End::Close), 0}).substr(0, 60);
});

}  // namespace
}  // namespace kv::test
