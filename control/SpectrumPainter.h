// Draws the spectrum: grid, frequency labels and channels. Everything is in user units of the picture, MHz and dBm; the
// picture box turns them into pixels.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "channels/ChannelStore.h"
#include "channels/Sentinels.h"
#include "control/CollectionPainter.h"
#include "control/DisplayRange.h"
#include "formenv/PictureBox.h"
#include "util/Trapped.h"

namespace kv::control {

class SpectrumPainter {
  public:
    /// `picture` shows the spectrum, `strip` is the box around it with the frequency labels. All have to live longer.
    SpectrumPainter(formenv::PictureBox& picture, formenv::PictureBox& strip, channels::ChannelStore& store,
                    DisplayRange& range)
        : picture_(picture), strip_(strip), store_(store), range_(range) {}
    SpectrumPainter(const SpectrumPainter&) = delete;
    SpectrumPainter& operator=(const SpectrumPainter&) = delete;

    [[nodiscard]] raster::OleColor GridColor() const noexcept { return GridColor_; }
    void setGridColor(raster::OleColor value) noexcept { GridColor_ = value; }

    /// A drawing of the whole display is running.
    [[nodiscard]] bool bDrawing() const noexcept { return bDrawing_; }
    /// Something asked for a drawing while one is running, so that this one may end outdated.
    void drawAgain() noexcept { bAgain_ = true; }
    /// Runs `draw`, and runs it again when a drawing was asked for meanwhile and the range is another one than `draw`
    /// began with. It runs at most eight times, because a host may change the range whenever a channel is read. Called
    /// while a drawing runs, it runs `draw` once: the outer call takes care of what is asked for meanwhile.
    void repeatWhileOutdated(const std::function<void()>& draw);
    /// One drawing of the whole display: `bDrawing` is set while `body` runs.
    void whileDrawing(const std::function<void()>& body);
    /// The range that the running drawing shows is the present one.
    void noteDrawnSpan() noexcept { drawnSpan_ = range_.span(); }

    void clearPicture() { picture_.cls(); }
    void clearLabels() { strip_.cls(); }

    /// The grid lines over what is there. False without a range, which draws nothing.
    bool DrawGrid();
    /// The frequency labels with their ticks, in place of earlier labels.
    void DrawFreqLbls();
    /// The number format of the labels.
    [[nodiscard]] const std::wstring& FreqLblFormat() const noexcept { return FreqLblFormat_; }

    /// The visible channels of a kind at a frequency above 0. `step` and `kChnl` tell how far it has come: 200 while
    /// it draws, with the number of the channel, from 1, when the channels are drawn one by one.
    void drawCollection(channels::ChannelKind kind, util::Step& step, std::int32_t& kChnl);
    /// Every channel of a kind as its record says now: also hides those that were drawn and are not visible any more.
    void refreshCollection(channels::ChannelKind kind);
    /// One channel as its record says now.
    void DrawChnl(channels::FreqSlot& channel);

    /// From this number of channels of a kind on, they are painted all at once. For tests, whose sets are small.
    void setMany(std::int32_t count) noexcept { nMany_ = count; }

  private:
    void paintGrid(double minFreq, double maxFreq, double minPwr, double maxPwr);
    void drawFreqLabel(double x);
    std::optional<PaintedView> paintable(channels::ChannelKind kind, bool refreshes);
    void paintAtOnce(channels::ChannelKind kind, bool refreshes, std::int32_t& done);
    void paint(channels::ChannelKind kind, const PaintedView& view, std::size_t last);
    void DrawChnl(channels::FreqSlot& channel, const channels::DrawRecord& record);

    formenv::PictureBox& picture_;
    formenv::PictureBox& strip_;
    channels::ChannelStore& store_;
    DisplayRange& range_;
    CollectionPainter painter_;
    raster::OleColor GridColor_ = raster::system_color::kButtonFace;
    std::wstring FreqLblFormat_ = L"0.000";
    bool bDrawing_ = false;
    bool bAgain_ = false;
    std::pair<double, double> drawnSpan_{channels::FREQ_UNSET, -channels::FREQ_UNSET};  ///< MHz
    std::int32_t nMany_ = 400;  ///< from here on painting all at once is faster
};

}  // namespace kv::control
