// The naive painter where there is no GDI.
#include <numeric>

#include "bench/NaiveShapes.h"
#include "headless/BlockTextPainter.h"
#include "raster/RasterCanvas.h"

namespace kv::bench {

namespace {

using raster::DrawMode;

class RasterNaivePainter final : public NaivePainter {
  public:
    void draw(const std::vector<Channel>& channels, const View& view) override {
        const NaiveScale scale(view);
        canvas_.clear(0xFFFFFF);
        for (const Channel& channel : channels) {
            scale.shapes(
                channel,
                [&](int left, int top, int right, int bottom) {
                    canvas_.rectangle({left, top, right + 1, bottom + 1}, {channel.lColor, 1},
                                      {raster::FillStyle::DownwardDiagonal, channel.lColor}, DrawMode::CopyPen);
                },
                [&](int x, int from, int to) {
                    canvas_.line({x, from}, {x, to}, {channel.lColorLine, 1}, DrawMode::CopyPen);
                });
        }
    }
    std::uint64_t checksum() override { return std::accumulate(pixels_.begin(), pixels_.end(), std::uint64_t{0}); }

  private:
    headless::BlockTextPainter letters_;
    std::vector<std::uint32_t> pixels_ = std::vector<std::uint32_t>(std::size_t{kPictureWidth} * kPictureHeight);
    raster::RasterCanvas canvas_{letters_, {pixels_.data(), kPictureWidth, kPictureHeight, kPictureWidth}};
};

}  // namespace

std::unique_ptr<NaivePainter> makeNaivePainter() {
    return std::make_unique<RasterNaivePainter>();
}

}  // namespace kv::bench
