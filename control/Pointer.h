// The pointer over the spectrum and the label strip: what it reads out, the report of what is under it, and the drag of
// a box. A place that the keys lead to is read out in the same way.
#pragma once

#include "control/BoxDrag.h"
#include "control/ReportWindow.h"

namespace kv::control {

class Pointer {
  public:
    /// What the pointer writes to, and what shows the report.
    struct Readouts {
        formenv::Label& lblFMHz;
        formenv::Label& lblFromCenter;
        formenv::CheckBox& chkShowMouse;
    };
    /// All have to live longer.
    Pointer(const ReportWindow::Services& services, const formenv::PictureBox& picture, const Readouts& readouts,
            const channels::ChannelStore& store, DisplayRange& range, Marks& marks) noexcept
        : picture_(picture),
          readouts_(readouts),
          range_(range),
          report_(services, store, picture, readouts.chkShowMouse),
          drag_(picture, range, marks) {}
    Pointer(const Pointer&) = delete;
    Pointer& operator=(const Pointer&) = delete;

    /// Reads out and reports what is at a frequency of the picture (MHz). Without a usable range the read-outs are
    /// empty, whatever the picture's coordinates say.
    void pointAt(double x);
    /// The pointer is over the label strip, `x` twips from its left edge: reads out the distance from the center at the
    /// frequency above the pointer.
    void pointAtStrip(double x);
    /// Shows or hides the report as the check box says, without a position.
    void showReport();

    [[nodiscard]] BoxDrag& drag() noexcept { return drag_; }
    [[nodiscard]] const BoxDrag& drag() const noexcept { return drag_; }
    [[nodiscard]] ReportWindow& report() noexcept { return report_; }
    [[nodiscard]] const ReportWindow& report() const noexcept { return report_; }

  private:
    const formenv::PictureBox& picture_;
    Readouts readouts_;
    DisplayRange& range_;
    ReportWindow report_;
    BoxDrag drag_;
};

}  // namespace kv::control
