// The picture that the control must show, drawn by the same rules with GDI calls only.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/automation/Picture.h"

namespace kv::test {

/// The values of a channel that the drawing reads: MHz, dBm, and colors as hosts write them.
struct OracleChannel {
    double lo = 0.0;
    double hi = 0.0;
    double freq = 0.0;
    double power = 0.0;
    int fill = 0;
    OLE_COLOR color = 0;
    OLE_COLOR line = 0;
    bool visible = true;
    bool drawn = false;
};

/// Size of the control and of its panel in twips, and everything that a drawing depends on besides the channels.
struct OracleDisplay {
    double width = 0.0;
    double height = 0.0;
    double panelHeight = 0.0;
    double minFreq = 0.0;
    double maxFreq = 0.0;
    double minPwr = 0.0;
    double maxPwr = 0.0;
    int nGridX = 20;
    OLE_COLOR gridColor = 0;
    OLE_COLOR spectrumBack = 0;
    OLE_COLOR stripBack = 0;
    OLE_COLOR stripFore = 0;
    double cursor = 0.0;
    OLE_COLOR cursorColor = 0;
};

/// A 32-bit picture that GDI draws into.
class GdiPicture {
  public:
    GdiPicture(int width, int height, COLORREF back);
    ~GdiPicture();
    GdiPicture(const GdiPicture&) = delete;
    GdiPicture& operator=(const GdiPicture&) = delete;

    [[nodiscard]] HDC dc() const noexcept { return dc_; }
    [[nodiscard]] int width() const noexcept { return width_; }
    [[nodiscard]] int height() const noexcept { return height_; }
    void fill(COLORREF color);
    void line(int x1, int y1, int x2, int y2, COLORREF color, int penWidth, int rop);
    /// All four edges included, whichever corners are given.
    void box(int x1, int y1, int x2, int y2, COLORREF color, int fillStyle, int rop);
    [[nodiscard]] Picture read() const;

  private:
    int width_;
    int height_;
    HDC dc_;
    HBITMAP bitmap_;
    HGDIOBJ before_;
    const std::uint32_t* bits_ = nullptr;
};

/// Positions of the label strip and of the spectrum inside it, in twips.
struct OracleLayout {
    double unitsWidth = 0.0;
    double unitsHeight = 0.0;
    double left = 0.0;  ///< of the spectrum inside the strip, like the next three
    double top = 0.0;
    double spectrumWidth = 0.0;
    double spectrumHeight = 0.0;
    int unitsPixelWidth = 0;
    int unitsPixelHeight = 0;
    RECT spectrum{};  ///< pixels inside the strip
};
/// The positions by the rules of the layout, at 96 dpi. Half of the width of "0.000" in the label font is included.
[[nodiscard]] OracleLayout oracleLayout(double width, double height, double panelHeight);

class GdiOracle {
  public:
    explicit GdiOracle(const OracleDisplay& display);
    ~GdiOracle();
    GdiOracle(const GdiOracle&) = delete;
    GdiOracle& operator=(const GdiOracle&) = delete;

    /// Everything as DrawDisplay and JustDrawIt leave it; the cursor line with JustDrawIt only.
    void drawDisplay(const std::vector<OracleChannel>& tx, const std::vector<OracleChannel>& rx, bool withCursor);
    /// Everything as Refresh leaves it.
    void refresh(const std::vector<OracleChannel>& tx, const std::vector<OracleChannel>& rx);

    [[nodiscard]] Picture picture();
    [[nodiscard]] const OracleLayout& layout() const noexcept { return layout_; }
    /// Drawing this channel gets as far as setting its drawn flag.
    [[nodiscard]] bool reaches(const OracleChannel& channel) const;

  private:
    [[nodiscard]] bool hasRange() const { return display_.maxFreq > display_.minFreq; }
    [[nodiscard]] int column(double frequency) const;
    [[nodiscard]] int row(double power) const;
    void drawChannel(const OracleChannel& channel);
    void drawGrid();
    void drawLabels();
    void drawLabel(double frequency);

    OracleDisplay display_;
    OracleLayout layout_;
    HFONT font_;
    GdiPicture strip_;
    GdiPicture plot_;
};

/// RGB of a color that can be a system color.
[[nodiscard]] COLORREF rgbOf(OLE_COLOR color);
/// Writes an uncompressed 32-bit bitmap file.
void writeBmp(const Picture& picture, const std::wstring& path);

}  // namespace kv::test
