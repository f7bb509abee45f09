// Draws the spectrum: grid, frequency labels and channels. Everything is in user units of the picture, MHz and dBm; the
// picture box turns them into pixels.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "channels/ChannelStore.h"
#include "channels/Sentinels.h"
#include "control/BoxTops.h"
#include "control/CollectionPainter.h"
#include "control/DisplayRange.h"
#include "control/Marks.h"
#include "control/Overlays.h"
#include "formenv/PictureBox.h"
#include "util/Trapped.h"

namespace kv::control {

class SpectrumPainter {
  public:
    /// `picture` shows the spectrum, with `overlays` and `marks` over it; `strip` is the box around it with the
    /// frequency labels. All have to live longer.
    SpectrumPainter(formenv::PictureBox& picture, formenv::PictureBox& strip, channels::ChannelStore& store,
                    DisplayRange& range, Marks& marks, const Overlays& overlays)
        : picture_(picture), strip_(strip), store_(store), range_(range), marks_(marks), overlays_(overlays) {}
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

    /// What the running drawing shows of the cursor line.
    struct Cursor {
        double frequency = 0.0;  ///< MHz
        raster::OleColor color = 0;
        friend bool operator==(const Cursor&, const Cursor&) = default;
    };
    /// A drawing of the whole display begins, with its scale applied, and is complete.
    void beginPicture(const Cursor& cursor);
    void endPicture() noexcept;
    /// Runs `events`, which belong to no drawing: what they draw would not be in the next picture.
    void amongEvents(const std::function<void()>& events);
    /// A drawing of the whole display would give the picture that is there: it was the last to draw, and nothing that
    /// it depends on has changed. False when that is not known, as with records of a foreign class.
    [[nodiscard]] bool isPictureCurrent(const Cursor& cursor);

    /// Runs one step of a drawing between whose steps events run: the windows are not told of what it draws.
    void holdingBack(const std::function<void()>& step);
    /// Shows what was drawn so.
    void showHeldBack();

    void clearPicture();
    void clearLabels() { strip_.cls(); }

    /// The grid lines over what is there. False without a range, which draws nothing.
    bool DrawGrid();
    /// The frequency labels with their ticks, in place of earlier labels. Labels that would be the same stay.
    void DrawFreqLbls();
    /// Power axis, legend and labels, as far as they are switched on, over the channels and the grid that were drawn
    /// since the picture was cleared. The marks are removed before. Reads channels of the host's own classes.
    void drawOverlays();
    /// The boxes that the labels are for. Empty while the labels are off.
    [[nodiscard]] const BoxTops& tops() const noexcept { return tops_; }
    /// The number format of the labels.
    [[nodiscard]] const std::wstring& FreqLblFormat() const noexcept { return FreqLblFormat_; }

    /// The visible channels of a kind at a frequency above 0. `step` and `kChnl` tell how far it has come: 200 while
    /// it draws, with the number of the channel, from 1, when the channels are drawn one by one.
    void drawCollection(channels::ChannelKind kind, util::Step& step, std::int32_t& kChnl);
    /// Every channel of a kind as its record says now: also hides those that were drawn and are not visible any more.
    void refreshCollection(channels::ChannelKind kind);
    /// One channel as its record says now.
    void DrawChnl(channels::FreqSlot& channel);

    /// From now on it draws what `original` draws, on another picture, and does not tell the records. `reach`: what
    /// strokes on a canvas without pixels cover on each side of their own column.
    void becomeCopyOf(const SpectrumPainter& original, int reach);
    /// What a drawing of the whole display draws on the picture and on the strip.
    struct Parts {
        bool picture = true;
        bool labels = true;
    };
    /// Clears both and draws these parts in the order of a drawing of the whole display. A part that ends with an error
    /// is as complete as it is on the screen. Throws RuntimeError 7 if the memory is short.
    void drawWhole(const Parts& parts);

    /// From this number of channels of a kind on, they are painted all at once. For tests, whose sets are small.
    void setMany(std::int32_t count) noexcept { nMany_ = count; }

  private:
    /// What a picture is drawn from. Equal sources give equal pictures.
    struct Source {
        std::pair<double, double> span;    ///< MHz
        std::pair<double, double> powers;  ///< dBm
        std::int16_t divisions = 0;
        raster::UserScale scale;
        raster::OleColor grid = 0;
        raster::OleColor ticks = 0;
        raster::OleColor labels = 0;
        Cursor cursor;
        Overlays::Source overlays;
        std::uint64_t tx = 0;  ///< versions of the snapshots
        std::uint64_t rx = 0;
        friend bool operator==(const Source&, const Source&) = default;
    };
    /// What the labels on the strip are drawn from. Equal sources give equal labels.
    struct LabelSource {
        std::pair<double, double> span;  ///< MHz
        std::int16_t divisions = 0;
        std::array<double, 4> picture{};  ///< left, top, width and height, twips
        raster::UserScale scale;          ///< the strip's
        raster::PixelSize pixels;
        int dpi = 0;
        raster::Font font;
        raster::Rgb color = 0;
        raster::Rgb background = 0;
        std::uint64_t changes = 0;  ///< of the strip
        friend bool operator==(const LabelSource&, const LabelSource&) = default;
    };
    /// Strokes on the picture and on the strip.
    using Strokes = std::pair<std::uint64_t, std::uint64_t>;

    /// Nothing when the records do not report their changes.
    std::optional<Source> source(const Cursor& cursor);
    [[nodiscard]] Strokes strokes() const noexcept { return {picture_.changes(), strip_.changes()}; }
    void paintGrid(double minFreq, double maxFreq, double minPwr, double maxPwr);
    LabelSource labelSource();
    void paintFreqLbls(const Parts& parts);
    void drawFreqLabel(double x);
    std::optional<PaintedView> paintable(channels::ChannelKind kind, bool refreshes);
    void paintAtOnce(channels::ChannelKind kind, bool refreshes, std::int32_t& done);
    void paint(channels::ChannelKind kind, const PaintedView& view, std::size_t last);
    void drawVisible(channels::ChannelKind kind, const PaintedView& view, std::size_t last);
    void DrawChnl(channels::FreqSlot& channel, const channels::DrawRecord& record);
    bool drawRecord(const channels::DrawRecord& record);
    /// Tells the labels of the box that was drawn for the channel at `place`.
    void offerTop(channels::ChannelKind kind, std::size_t place, const channels::DrawRecord& record);
    /// The place of a channel, if the labels need it.
    [[nodiscard]] std::size_t placeForTop(channels::ChannelKind kind, std::int32_t index) const noexcept;

    formenv::PictureBox& picture_;
    formenv::PictureBox& strip_;
    channels::ChannelStore& store_;
    DisplayRange& range_;
    Marks& marks_;
    const Overlays& overlays_;
    BoxTops tops_;  ///< of the channels drawn since the picture was cleared
    CollectionPainter painter_;
    raster::OleColor GridColor_ = raster::system_color::kButtonFace;
    std::wstring FreqLblFormat_ = L"0.000";
    std::wstring label_;  ///< the text of the label that is being drawn
    bool isCopy_ = false;
    int reach_ = 0;  ///< units
    bool bDrawing_ = false;
    bool bAgain_ = false;
    std::pair<double, double> drawnSpan_{channels::FREQ_UNSET, -channels::FREQ_UNSET};  ///< MHz
    std::optional<Source> drawing_;                                                     ///< of the running drawing
    std::optional<Source> drawn_;  ///< of the picture, as long as there were no strokes since
    Strokes drawnStrokes_;
    std::optional<LabelSource> drawnLabels_;  ///< of the labels on the strip, if they are complete
    std::int32_t nMany_ = 400;                ///< from here on painting all at once is faster
};

}  // namespace kv::control
