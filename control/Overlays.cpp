#include "control/Overlays.h"

#include <optional>
#include <utility>
#include <vector>

#include "control/ChannelLabels.h"
#include "control/Legend.h"
#include "control/OverlayInk.h"
#include "control/PowerAxis.h"

namespace kv::control {

using channels::ChannelKind;

Overlays::Source Overlays::source(const channels::ChannelStore& store) const noexcept {
    Source now = source_;
    if (now.legend || now.channelLabels)
        now.labels = {store.snapshot(ChannelKind::TX).labelVersion(), store.snapshot(ChannelKind::RX).labelVersion()};
    return now;
}

void Overlays::draw(formenv::PictureBox& picture, const channels::ChannelStore& store, const BoxTops& tops,
                    const std::function<void()>& beforeStrokes) const {
    const Source wanted = source_;
    if (wanted == Source{})
        return;
    const raster::PixelMap map = picture.pixelMap();
    OverlayInk ink(picture);
    std::vector<raster::PixelRect> taken;
    std::optional<Legend> legend;
    if (wanted.legend) {
        legend.emplace(Legend::rowsOf(store), ink);
        taken.push_back(legend->area());
    }
    std::optional<PowerAxis> axis;
    if (wanted.powerAxis)
        axis.emplace(picture, ink);
    std::optional<ChannelLabels> labels;
    if (wanted.channelLabels)
        labels.emplace(tops, store, ink, axis ? axis->right() : 0, std::move(taken));
    if (picture.pixelMap() != map)
        return;
    if (beforeStrokes)
        beforeStrokes();
    if (axis)
        axis->drawLines(ink);
    if (labels)
        labels->draw(ink);
    if (axis)
        axis->drawLabels(ink);
    if (legend)
        legend->draw(ink);
}

}  // namespace kv::control
