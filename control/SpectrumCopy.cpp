// Drawing the whole display on another picture than the one on the screen.
#include "control/SpectrumPainter.h"
#include "util/RuntimeError.h"

namespace kv::control {

using channels::ChannelKind;

namespace {

/// Errors were reported when the display was drawn.
template <class Part>
void drawnAsFarAsItGoes(Part&& part) {
    try {
        part();
    } catch (...) {
        if (const util::RuntimeError error = util::currentError(); error.number() == util::error_number::kOutOfMemory)
            throw error;
    }
}

}  // namespace

void SpectrumPainter::becomeCopyOf(const SpectrumPainter& original, int reach) {
    isCopy_ = true;
    reach_ = reach;
    GridColor_ = original.GridColor_;
    FreqLblFormat_ = original.FreqLblFormat_;
    nMany_ = original.nMany_;
}

// The strip first, because the picture lies inside it.
void SpectrumPainter::drawWhole(const Parts& parts) {
    strip_.cls();
    clearPicture();
    if (parts.picture) {
        for (const ChannelKind kind : {ChannelKind::TX, ChannelKind::RX}) {
            drawnAsFarAsItGoes([&] {
                util::Step step = 0;
                std::int32_t done = 0;
                drawCollection(kind, step, done);
            });
        }
        drawnAsFarAsItGoes([&] { DrawGrid(); });
    }
    drawnAsFarAsItGoes([&] { paintFreqLbls(parts); });
    if (parts.picture)
        drawnAsFarAsItGoes([&] { drawOverlays(); });
}

}  // namespace kv::control
