// What the control showed before a plan was opened, so that it can show it again when the opening fails.
#pragma once

#include <vector>

#include "host/Com.h"
#include "kvBandscope.h"

namespace kv::host {

class EarlierContents {
  public:
    /// Reads the channels and the view. Throws Failure; then nothing of the control has changed.
    explicit EarlierContents(_kvBandscope& control);

    /// Shows all of it again. It does as much as it can, because it is called when a member of the control has failed,
    /// and that member may fail again.
    void putBack() noexcept;

  private:
    struct View {
        double lowestMhz = 0.0;
        double highestMhz = 0.0;
        double lowestDbm = 0.0;
        double highestDbm = 0.0;
        double cursorMhz = 0.0;
        double endBufferMhz = 0.0;
        SHORT divisions = 0;
    };

    void readChannels();
    void readView();
    void drawView() noexcept;

    _kvBandscope& control_;
    std::vector<ComPtr<_FreqSlot>> transmit_;  // with the products
    std::vector<ComPtr<_FreqSlot>> receive_;
    View view_;
};

}  // namespace kv::host
