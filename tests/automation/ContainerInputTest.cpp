// The user's input in the windows of the control, and the events that it raises.
#include "tests/automation/UserInput.h"

namespace kv::test {
namespace {

using testing::ElementsAre;

class ContainerInput : public UserInput {
  protected:
    long count(HRESULT (STDMETHODCALLTYPE _kvBandscope::*getter)(long*)) const {
        long value = -1;
        EXPECT_EQ((container.control.Get()->*getter)(&value), S_OK);
        return value;
    }
    HWND label(const wchar_t* text) const { return container.child(L"Static", text); }
    void press(const wchar_t* button) const {
        SendMessageW(container.child(L"Button", button), BM_CLICK, 0, 0);
        pump();
    }
};

TEST_F(ContainerInput, AClickOnItsBackgroundLoadsTheDemonstration) {
    postClick(container.root(), 1, 100);
    const long tx = count(&_kvBandscope::get_NumTX);
    const long rx = count(&_kvBandscope::get_NumRX);
    EXPECT_GT(tx, 0);
    EXPECT_GT(rx, 0);
    const Picture shown = windowPicture(spectrum());
    for (long i = 0; i < tx + rx; ++i) {
        ComPtr<_FreqSlot> slot;
        const bool isTx = i < tx;
        EXPECT_EQ(isTx ? container.control->GetTXChnl(i, slot.GetAddressOf())
                       : container.control->GetRXChnl(i - tx, slot.GetAddressOf()),
                  S_OK);
        ASSERT_TRUE(slot);
        EXPECT_TRUE(isDrawn(slot.Get()));
        OLE_COLOR color = 0;
        EXPECT_EQ(slot->get_lColor(&color), S_OK);
        EXPECT_GT(shown.count(color, shown.all()), 100) << i;
    }
    ComPtr<_FreqSlot> first;
    EXPECT_EQ(container.control->GetTXChnl(0, first.GetAddressOf()), S_OK);
    ASSERT_TRUE(first);
    Text text;
    EXPECT_EQ(first->get_sLabel(text.put()), S_OK);
    EXPECT_EQ(text.str(), L"sample freq");
    postClick(container.root(), 1, 100);
    EXPECT_EQ(count(&_kvBandscope::get_NumTX), tx);
    EXPECT_EQ(count(&_kvBandscope::get_NumRX), rx);
    EXPECT_EQ(windowPicture(spectrum()), shown);
}

TEST_F(ContainerInput, AClickElsewhereLoadsNothing) {
    postClick(container.panel(), 430, 140);
    postClick(spectrum(), 50, 50);
    postClick(container.pictureBox(L"picUnits"), 2, 2);
    // A press on the background that is released outside is no click.
    PostMessageW(container.root(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 100));
    PostMessageW(container.root(), WM_LBUTTONUP, 0, MAKELPARAM(-5, 100));
    pump();
    EXPECT_EQ(count(&_kvBandscope::get_NumTX), 0);
    EXPECT_EQ(GetCapture(), nullptr);
    container.addRx({.freq = 100.0});
    postClick(container.root(), 1, 100);
    EXPECT_EQ(count(&_kvBandscope::get_NumTX), 0);
}

TEST_F(ContainerInput, AnEmptyControlRaisesChgGridRange) {
    for (const int item : {0, 2, 1, 1})
        choose(item);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgGridRange, kChgGridRange, kChgGridRange, kChgGridRange));
    EXPECT_TRUE(sink->heard[0].arguments.empty());
}

TEST_F(ContainerInput, TheKeyboardChoosesAGridRange) {
    const HWND box = container.children(L"ComboBox").at(0);
    SetFocus(box);
    PostMessageW(box, WM_KEYDOWN, VK_DOWN, 1);
    pump();
    EXPECT_EQ(windowText(box), L"GHz");
    EXPECT_THAT(sink->ids(), ElementsAre(kChgGridRange));
}

TEST_F(ContainerInput, ChgFreqRangeIsRaisedBeforeChgGridRange) {
    fill();
    const Picture before = windowPicture(spectrum());
    choose(0);
    // The step is the grid knob's, 0.5 MHz; the display is 20 steps wide around the center.
    const HeardEvent range{kChgFreqRange, {425.0, 435.0}, {VT_R8, VT_R8}};
    const HeardEvent chosen{kChgGridRange, {}, {}};
    EXPECT_TRUE(sink->heard == (std::vector<HeardEvent>{range, chosen}));
    EXPECT_EQ(minFreq(), 425.0);
    EXPECT_EQ(maxFreq(), 435.0);
    EXPECT_NE(windowPicture(spectrum()), before);
    // The knob keeps its value at another choice, so that the range stays.
    sink->heard.clear();
    choose(2);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgGridRange));
    EXPECT_EQ(minFreq(), 425.0);
}

TEST_F(ContainerInput, ADoubleClickRecentersOnTheMouse) {
    fill();
    const Picture before = windowPicture(spectrum());
    const int x = before.width / 4;
    const double frequency = 380.0 + x * 100.0 / before.width;
    PostMessageW(spectrum(), WM_MOUSEMOVE, 0, MAKELPARAM(x, 40));
    PostMessageW(spectrum(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, 40));
    PostMessageW(spectrum(), WM_LBUTTONUP, 0, MAKELPARAM(x, 40));
    PostMessageW(spectrum(), WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(x, 40));
    PostMessageW(spectrum(), WM_LBUTTONUP, 0, MAKELPARAM(x, 40));
    pump();
    EXPECT_NEAR(number(&_kvBandscope::get_DisplayCenterFreq), frequency, 1e-9);
    EXPECT_NEAR(minFreq(), frequency - 50.0, 1e-9);
    EXPECT_NEAR(maxFreq(), frequency + 50.0, 1e-9);
    ASSERT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
    EXPECT_THAT(sink->heard[0].arguments, ElementsAre(minFreq(), maxFreq()));
    EXPECT_NE(windowPicture(spectrum()), before);
}

TEST_F(ContainerInput, ClearEmptiesTheSpectrumAndTheDrawButtonsFillIt) {
    fill();
    const Picture drawn = windowPicture(spectrum());
    EXPECT_GT(drawn.count(0xFF, drawn.all()), 0);
    press(L"Clear");
    const Picture cleared = windowPicture(spectrum());
    EXPECT_EQ(cleared.count(cleared.at(0, 0), cleared.all()), cleared.width * cleared.height);
    press(L"Draw TX");
    const Picture tx = windowPicture(spectrum());
    EXPECT_GT(tx.count(0xFF, tx.all()), 0);
    EXPECT_EQ(tx.count(0xFF00, tx.all()), 0);
    press(L"DrawRX");
    const Picture both = windowPicture(spectrum());
    EXPECT_GT(both.count(0xFF00, both.all()), 0);
    press(L"Order");
    EXPECT_EQ(SendMessageW(container.child(L"Button", L"Order"), BM_GETCHECK, 0, 0), BST_CHECKED);
    EXPECT_EQ(windowPicture(spectrum()), drawn);
}

TEST(PanelButtons, TheDrawButtonsReportThatThereIsNothingToDraw) {
    Container container;
    ASSERT_NO_FATAL_FAILURE(container.activate());
    const MessageBoxes boxes;
    for (const wchar_t* button : {L"Draw TX", L"DrawRX"})
        SendMessageW(container.child(L"Button", button), BM_CLICK, 0, 0);
    ASSERT_EQ(boxes.seen().size(), 2U);
    EXPECT_EQ(boxes.seen()[0].text, L"No TX channels to draw.");
    EXPECT_EQ(boxes.seen()[1].text, L"No RX channels to draw.");
    EXPECT_EQ(boxes.seen()[0].buttons.size(), 1U);
}

TEST_F(ContainerInput, TheSummaryFollowsTheChannels) {
    const auto summaryShown = [&] {
        int shown = 0;
        for (const HWND window : container.children(L"Static"))
            shown += isShown(window) && windowText(window).find(L"Channels") != std::wstring::npos ? 1 : 0;
        return shown;
    };
    EXPECT_EQ(summaryShown(), 0);
    container.addTx({.freq = 146.52, .lo = 146.51, .hi = 146.53, .key = L"TX1"});
    pump();
    EXPECT_TRUE(isShown(label(L"1 tx Channels")));
    EXPECT_TRUE(isShown(label(L"146.51000 to 146.53000")));
    EXPECT_EQ(summaryShown(), 1);
    container.addTx({.freq = 147.0, .lo = 146.99, .hi = 147.01, .key = L"TX2"});
    container.addRx({.freq = 0.5, .lo = 0.25, .hi = 0.75, .key = L"RX1"});
    pump();
    EXPECT_TRUE(isShown(label(L"2 tx Channels")));
    EXPECT_TRUE(isShown(label(L"146.51000 to 147.01000")));
    EXPECT_TRUE(isShown(label(L"1 RX Channels")));
    EXPECT_TRUE(isShown(label(L"0.25000 to 0.75000")));
    EXPECT_EQ(container.control->ClearAllChnls(), S_OK);
    pump();
    EXPECT_EQ(summaryShown(), 0);
}

TEST_F(ContainerInput, TheReadOutsFollowTheMouse) {
    fill();
    const Picture picture = windowPicture(spectrum());
    const int x = picture.width / 2;
    PostMessageW(spectrum(), WM_MOUSEMOVE, 0, MAKELPARAM(x, 10));
    pump();
    wchar_t expected[64];
    swprintf(expected, 64, L"%.5f MHz", 380.0 + x * 100.0 / picture.width);
    EXPECT_TRUE(isShown(label(expected)));
}

TEST_F(ContainerInput, FrozenEventsAreRaisedAllTheSame) {
    const auto control = container.as<IOleControl>();
    EXPECT_EQ(control->FreezeEvents(TRUE), S_OK);
    EXPECT_EQ(control->FreezeEvents(TRUE), S_OK);
    choose(0);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgGridRange)) << "some containers never thaw";
    // More thaws than freezes are harmless.
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(control->FreezeEvents(FALSE), S_OK);
    choose(2);
    EXPECT_EQ(sink->heard.size(), 2U);
}

TEST_F(ContainerInput, AFailingSinkDoesNotStopTheOthers) {
    ComPtr<EventSink> last;
    last = new EventSink;
    container.connect(last.Get());
    for (const HRESULT failure : {E_FAIL, RPC_E_DISCONNECTED, DISP_E_EXCEPTION}) {
        sink->answer = failure;
        choose(0);
    }
    EXPECT_EQ(sink->heard.size(), 3U);
    EXPECT_EQ(last->heard.size(), 3U);
}

TEST_F(ContainerInput, ASinkCanBeDisconnectedDuringAnEvent) {
    ComPtr<EventSink> last;
    last = new EventSink;
    const DWORD cookie = container.connect(last.Get());
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(container.as<IConnectionPointContainer>()->FindConnectionPoint(DIID___kvBandscope, point.GetAddressOf()),
              S_OK);
    sink->onEvent = [&](DISPID) { EXPECT_EQ(point->Unadvise(cookie), S_OK); };
    choose(0);
    sink->onEvent = nullptr;
    choose(1);
    EXPECT_EQ(sink->heard.size(), 2U);
    EXPECT_TRUE(last->heard.empty());
    EXPECT_EQ(last->references(), 1U);
}

}  // namespace
}  // namespace kv::test
