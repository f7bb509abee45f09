// The window "Mouse Information" with the report of what is under the pointer.
#pragma once

#include <memory>
#include <string>

#include "channels/ChannelStore.h"
#include "control/MouseReport.h"
#include "formenv/FileServices.h"
#include "formenv/PictureBox.h"
#include "formenv/Widget.h"
#include "forms/frmTextEditor.h"
#include "util/ErrHand.h"

namespace kv::control {

/// The window is created when it is first needed, and again after the user closed it. The check box shows it and tells
/// whether it is shown.
class ReportWindow {
  public:
    struct Services {
        formenv::Platform& platform;
        formenv::FileServices& files;
        util::ErrorReporter& errors;
    };
    /// All have to live longer.
    ReportWindow(const Services& services, const channels::ChannelStore& store, const formenv::PictureBox& picture,
                 formenv::CheckBox& chkShowMouse) noexcept
        : services_(services), store_(store), picture_(picture), chkShowMouse_(chkShowMouse) {}
    ReportWindow(const ReportWindow&) = delete;
    ReportWindow& operator=(const ReportWindow&) = delete;

    /// Shows the report of the frequency `x` (MHz), under the heading `location`, while the box is ticked; otherwise
    /// hides the window. Without a frequency the report is empty.
    void ShowMouseInfo(double x, const std::wstring& location);
    /// The container is done with the control: destroys the window without a question.
    void close() noexcept;
    /// The window; nothing before it is first needed.
    [[nodiscard]] const forms::frmTextEditor* window() const noexcept { return window_.get(); }

  private:
    void BuildMouseReport(double x, const std::wstring& location);
    void show();
    void setUp();

    Services services_;
    const channels::ChannelStore& store_;
    const formenv::PictureBox& picture_;
    formenv::CheckBox& chkShowMouse_;
    MouseReport report_;
    std::unique_ptr<forms::frmTextEditor> window_;
    bool isSetUp_ = false;  ///< false again once the user has closed the window
};

}  // namespace kv::control
