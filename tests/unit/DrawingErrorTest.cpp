// Errors and events in the middle of a drawing, and the cursor line that a drawing leaves.
#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

#include "tests/unit/Numbers.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class DrawingErrorTest : public ScopeTest {
  protected:
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(showTwoPixelsAUnit()); }

    std::vector<SlotRef> addMany(channels::ChannelKind kind, int number) {
        std::vector<SlotRef> slots;
        for (int i = 0; i < number; ++i) {
            const double frequency = 400.0 + 10.0 * i;
            slots.push_back(kind == channels::ChannelKind::TX ? addTX(frequency, 3.0, 50.0)
                                                              : addRX(frequency, 3.0, 50.0));
        }
        return slots;
    }
    static std::ptrdiff_t drawn(const std::vector<SlotRef>& slots) {
        return std::count_if(slots.begin(), slots.end(), [](const SlotRef& slot) { return slot->fields().bDrawn; });
    }
    void expectPropertiesAsBefore() {
        EXPECT_EQ(ui.picSpectrum.fillStyle(), 1);
        EXPECT_EQ(ui.picSpectrum.fillColor(), 0U);
        EXPECT_EQ(ui.picSpectrum.drawMode(), 13);
        EXPECT_EQ(ui.picSpectrum.drawWidth(), 1);
    }
};

TEST_F(DrawingErrorTest, ATXChannelThatFailsIsReportedWithItsPlace) {
    const std::vector<SlotRef> tx = addMany(channels::ChannelKind::TX, 5);
    const std::vector<SlotRef> rx = addMany(channels::ChannelKind::RX, 2);
    tx[2]->onRead = failsAt("drawRecord", 440);
    // The error ends the drawing of the TX channels only.
    EXPECT_TRUE(scope.DrawDisplay());
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.detail, L"kvBandscope.DrawDisplayTX Flag 200 kChnl 3 of 5");
    EXPECT_EQ(report.procedure, L"DrawDisplayTX");
    EXPECT_EQ(report.flag, 200);
    EXPECT_EQ(report.number, 440);
    EXPECT_EQ(drawn(tx), 2);
    EXPECT_EQ(drawn(rx), 2);
    expectPropertiesAsBefore();
}

TEST_F(DrawingErrorTest, AnRXChannelThatFailsIsReportedWithItsPlace) {
    const std::vector<SlotRef> rx = addMany(channels::ChannelKind::RX, 4);
    rx[0]->onRead = failsAt("bVisible", 13);
    EXPECT_TRUE(scope.DrawDisplay());
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.detail, L"kvBandscope.DrawDisplayRX Flag 200 kChnl 1 of 4");
    EXPECT_EQ(report.number, 13);
    EXPECT_EQ(drawn(rx), 0);
}

TEST_F(DrawingErrorTest, AFillStyleThatIsNoneEndsTheCollectionAndPutsThePropertiesBack) {
    const std::vector<SlotRef> tx = addMany(channels::ChannelKind::TX, 2);
    tx[0]->fields().iFillStyle = 8;
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(takeReport().number, util::error_number::kInvalidPropertyValue);
    expectPropertiesAsBefore();
}

TEST_F(DrawingErrorTest, AnErrorBetweenTheStepsMakesDrawDisplayReturnFalseWithItsMark) {
    addMany(channels::ChannelKind::TX, 1);
    // The pumps stand after these marks.
    const std::vector<int> marks = {100, 1100, 1200, 1300, 1300, 1400, 1400, 1500};
    for (std::size_t i = 0; i < marks.size(); ++i) {
        std::size_t pumps = 0;
        platform.onPump = [&] {
            if (pumps++ == i)
                throw util::RuntimeError(util::error_number::kAutomation);
        };
        EXPECT_FALSE(scope.DrawDisplay()) << i;
        platform.onPump = nullptr;
        const RecordingErrors::Report report = takeReport();
        EXPECT_EQ(report.flag, marks[i]) << i;
        EXPECT_EQ(report.detail, L"kvBandscope.DrawDisplay Flag " + std::to_wstring(marks[i])) << i;
        EXPECT_EQ(report.procedure, L"DrawDisplay");
    }
}

TEST_F(DrawingErrorTest, RefreshReportsItsOwnText) {
    const std::vector<SlotRef> tx = addMany(channels::ChannelKind::TX, 2);
    tx[1]->onRead = failsAt("drawRecord", 440);
    scope.Refresh();
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.procedure, L"Refresh");
    EXPECT_EQ(report.detail, L"Error Refreshing Bandscope Display");
    EXPECT_EQ(report.flag, 600);
    EXPECT_EQ(drawn(tx), 1);
    expectPropertiesAsBefore();
}

TEST_F(DrawingErrorTest, ForeignExceptionsAreReportedAsInternalErrors) {
    addMany(channels::ChannelKind::TX, 1)[0]->onRead = [](std::string_view) { throw 42; };
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(takeReport().number, util::error_number::kInternal);
}

TEST_F(DrawingErrorTest, StoreMayChangeAtEveryPumpOfADrawing) {
    for (int at = 0; at < 8; ++at) {
        for (int action = 0; action < 5; ++action) {
            scope.ClearAllChnls();
            addMany(channels::ChannelKind::TX, 4);
            addMany(channels::ChannelKind::RX, 4);
            const std::wstring key = scope.GetTXChnl(1)->sKey();
            int pumps = 0;
            platform.onPump = [&] {
                if (pumps++ != at)
                    return;
                switch (action) {
                    case 0:
                        return scope.ClearAllChnls();
                    case 1:
                        return scope.ClearRXChnls();
                    case 2:
                        return scope.RemoveChnlByKey(key);
                    case 3:
                        addTX(455.0, 1.0, 10.0);
                        return;
                    default:
                        scope.DrawDisplay();
                }
            };
            EXPECT_TRUE(scope.DrawDisplay()) << at << ' ' << action;
            platform.onPump = nullptr;
            EXPECT_GT(pumps, at);
            EXPECT_EQ(scope.NumTX(), action == 0 ? 0 : action == 2 ? 3 : action == 3 ? 5 : 4);
            expectPropertiesAsBefore();
        }
    }
}

TEST_F(DrawingErrorTest, ADrawingInsideADrawingEndsInTheSamePicture) {
    addMany(channels::ChannelKind::TX, 4);
    addMany(channels::ChannelKind::RX, 4);
    scope.DrawDisplay();
    const std::vector<std::uint32_t> once = pixelsOf(ui.picSpectrum);
    for (int at = 0; at < 8; ++at) {
        int pumps = 0;
        platform.onPump = [&] {
            if (pumps++ == at)
                scope.DrawDisplay();
        };
        scope.DrawDisplay();
        platform.onPump = nullptr;
        EXPECT_EQ(pixelsOf(ui.picSpectrum), once) << at;
    }
}

TEST_F(DrawingErrorTest, EventsInsideTheGridFindThePicturesPropertiesInPlace) {
    scope.DrawByRange(50.0, 50.0);  // with the figure below 0 MHz
    int pumps = 0;
    platform.onPump = [&] {
        ++pumps;
        expectPropertiesAsBefore();
    };
    scope.DrawDisplay();
    platform.onPump = nullptr;
    EXPECT_EQ(pumps, 8);
}

TEST_F(DrawingErrorTest, ClearingInsideAGetterEndsTheDrawingWithAReport) {
    const std::vector<SlotRef> tx = addMany(channels::ChannelKind::TX, 5);
    tx[1]->onRead = [&](std::string_view member) {
        if (member == "drawRecord")
            scope.ClearAllChnls();
    };
    EXPECT_TRUE(scope.DrawDisplay());
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.number, util::error_number::kSubscriptOutOfRange);
    EXPECT_EQ(report.detail, L"kvBandscope.DrawDisplayTX Flag 200 kChnl 3 of 0");
    EXPECT_EQ(drawn(tx), 2);
}

TEST_F(DrawingErrorTest, AChannelMayRemoveItselfWhileItIsDrawn) {
    const std::wstring key = L"TXself";
    bool gone = false;
    {
        const SlotRef slot = addTX(450.0, 3.0, 50.0, key);
        slot->onRead = [&](std::string_view member) {
            if (member == "drawRecord" && !std::exchange(gone, true))
                scope.RemoveChnlByKey(key);
        };
    }
    // Only the store holds the channel now.
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_TRUE(gone);
    EXPECT_EQ(scope.NumTX(), 0);
}

TEST_F(DrawingErrorTest, AddingInsideAGetterIsSafeWhileAddingDrawingAndRemoving) {
    const std::vector<SlotRef> tx = addMany(channels::ChannelKind::TX, 3);
    int more = 0;
    for (const SlotRef& slot : tx) {
        slot->onRead = [&](std::string_view) {
            if (more < 200) {
                ++more;
                addTX(455.0, 1.0, 10.0);
            }
        };
    }
    scope.DrawDisplay();
    scope.Refresh();
    scope.ReScaleChannels();
    scope.RemoveChnlByKey(tx[0]->fields().sKey);
    EXPECT_GT(more, 10);
    EXPECT_EQ(scope.NumTX(), 3 + more - 1);
}

TEST_F(DrawingErrorTest, ClearingInsideTheKeysGetterWhileRemovingIsSafe) {
    const std::vector<SlotRef> tx = addMany(channels::ChannelKind::TX, 5);
    const std::wstring first = tx[0]->fields().sKey;
    tx[2]->onRead = [&](std::string_view member) {
        if (member == "sKey")
            scope.ClearTXChnls();
    };
    scope.RemoveChnlByKey(first);
    EXPECT_EQ(scope.NumTX(), 0);
    for (const SlotRef& slot : tx)
        EXPECT_EQ(slot->references(), 1);
}

TEST_F(DrawingErrorTest, HugeAndInvalidValuesAreDrawnWithoutACrash) {
    constexpr double kHuge = std::numeric_limits<double>::max();
    const std::vector<double> values = {kHuge, -kHuge, kNaN, kInfinity, -kInfinity, 0.0, 5e-324, 450.0};
    const SlotRef channel = makeSlot(450.0);
    for (const double low : values) {
        for (const double high : values) {
            for (const double power : values) {
                channels::FreqSlotFields& fields = channel->fields();
                fields.dFreqLo = low;
                fields.dFreqHi = high;
                fields.dPwrDBM = power;
                fields.dFreq = low;
                fields.bDrawn = true;
                fields.bVisible = power == high;
                EXPECT_TRUE(scope.ReDrawChnl(asChannel(channel)));
            }
        }
    }
    expectPropertiesAsBefore();
}

class CursorLineTest : public DrawingErrorTest {
  protected:
    headless::RecordingCanvas canvas{{400, 200}};
};

TEST_F(CursorLineTest, MovingTheCursorRemovesTheOldLineInItsOwnColor) {
    scope.setLCursorColor(0xFF0000);
    scope.setCursorVal(400.0);
    scope.setLCursorColor(0x00FFFF);
    ui.picSpectrum.divert(&canvas);
    scope.setCursorVal(450.0);
    EXPECT_THAT(canvas.lines(),
                ElementsAre("line 100,200 100,0 pen ff0000 w1 mode 10", "line 200,200 200,0 pen 00ffff w1 mode 10"));
}

TEST_F(CursorLineTest, ThePictureUnderTheCursorComesBack) {
    addTX(450.0, 10.0, 50.0);
    scope.DrawDisplay();
    const std::vector<std::uint32_t> before = pixelsOf(ui.picSpectrum);
    scope.setLCursorColor(0x3050F0);
    scope.setCursorVal(452.0);
    EXPECT_NE(pixelsOf(ui.picSpectrum), before);
    ui.tdKnMovCursor.setDVal(900.0);
    ui.tdKnMovCursor.onTurnEnd();  // a cursor outside draws no line
    EXPECT_EQ(pixelsOf(ui.picSpectrum), before);
}

TEST_F(CursorLineTest, ClearingTheDisplayClearsTheLine) {
    scope.setCursorVal(400.0);
    scope.ClearDisplay();
    ui.picSpectrum.divert(&canvas);
    scope.setCursorVal(450.0);
    EXPECT_EQ(canvas.lines().size(), 1U);
}

TEST_F(CursorLineTest, AFullRepaintClearsTheLineAndDrawsNone) {
    scope.setCursorVal(400.0);
    scope.DrawDisplay();
    ui.picSpectrum.divert(&canvas);
    scope.DrawDisplay();
    EXPECT_THAT(canvas.log(), Not(::testing::HasSubstr("mode 10")));
    canvas.forget();
    scope.setCursorVal(450.0);
    EXPECT_EQ(canvas.lines().size(), 1U);
}

TEST_F(CursorLineTest, AMoveInTheMiddleOfARepaintRemovesNoLineThatIsGone) {
    scope.setCursorVal(400.0);
    ui.picSpectrum.divert(&canvas);
    int pumps = 0;
    platform.onPump = [&] {
        if (pumps++ == 2)
            scope.setCursorVal(450.0);
    };
    scope.DrawDisplay();
    platform.onPump = nullptr;
    EXPECT_THAT(canvas.lines(), Contains("line 200,200 200,0 pen 000000 w1 mode 10"));
    EXPECT_THAT(canvas.lines(), Not(Contains("line 100,200 100,0 pen 000000 w1 mode 10")));
    // A full repaint ends without a cursor line to be removed.
    canvas.forget();
    scope.setCursorVal(500.0);
    EXPECT_THAT(canvas.lines(), ElementsAre("line 300,200 300,0 pen 000000 w1 mode 10"));
}

TEST_F(CursorLineTest, AMoveAfterJustDrawItRemovesTheLineThatItDrew) {
    scope.setCursorVal(400.0);
    scope.JustDrawIt();
    ui.picSpectrum.divert(&canvas);
    scope.setCursorVal(450.0);
    EXPECT_THAT(canvas.lines(),
                ElementsAre("line 100,200 100,0 pen 000000 w1 mode 10", "line 200,200 200,0 pen 000000 w1 mode 10"));
}

TEST_F(CursorLineTest, CenterCursorButtonDrawsTheLineOnTheCenter) {
    ui.picSpectrum.divert(&canvas);
    ui.cmdCenterCursor.onClick();
    EXPECT_EQ(scope.CursorVal(), 450.0);
    EXPECT_THAT(canvas.lines(), ElementsAre("line 200,200 200,0 pen 000000 w1 mode 10"));
}

/// Without a range there is nothing to scale and nothing to draw, but what was there is cleared.
class EmptyDrawingTest : public ScopeTest {
  protected:
    headless::RecordingCanvas spectrum{{400, 200}};
    headless::RecordingCanvas units{{400, 200}};
    void divert() {
        ui.picSpectrum.divert(&spectrum);
        ui.picUnits.divert(&units);
    }
};

TEST_F(EmptyDrawingTest, DrawDisplayWithoutARangeDrawsNothingAndReturnsTrue) {
    divert();
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_THAT(spectrum.lines(), IsEmpty());
    EXPECT_THAT(units.lines(), IsEmpty());
}

TEST_F(EmptyDrawingTest, JustDrawItWithoutARangeOnlyClears) {
    divert();
    scope.JustDrawIt();
    EXPECT_THAT(spectrum.lines(), ElementsAre("clear ffffff"));
    EXPECT_THAT(units.lines(), ElementsAre("clear f0f0f0"));
}

TEST_F(EmptyDrawingTest, RefreshAndOrderBoxOnAnEmptyStoreAreHarmless) {
    divert();
    ui.chkOrder.onClick();
    EXPECT_THAT(spectrum.lines(), ElementsAre("clear ffffff"));
    scope.Refresh();
    EXPECT_THAT(spectrum.lines(), ElementsAre("clear ffffff", "clear ffffff"));
}

TEST_F(EmptyDrawingTest, AStoreThatWasClearedKeepsItsRange) {
    addTX(450.0, 10.0, 50.0);
    scope.DrawDisplay();
    scope.ClearAllChnls();
    divert();
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(scope.DisplayMinFreq(), 340.0);
    EXPECT_EQ(spectrum.lines().size(), 1U + 21U + 11U);
}

}  // namespace
}  // namespace kv::control
