#include "control/ReportWindow.h"

#include "channels/ChannelIndex.h"
#include "util/Trapped.h"

namespace kv::control {

namespace {

constexpr wchar_t kReportCaption[] = L"Mouse Information";
// A channel counts as under the pointer from this distance on, so that one of a pixel's width can be hit.
constexpr double kReportReach = 1.5;  // pixels

}  // namespace

void ReportWindow::ShowMouseInfo(double x, const std::wstring& location) {
    if (chkShowMouse_.value() == 0) {
        if (window_)
            window_->Hide();
        return;
    }
    // Without a position there is nothing to report, and an older report would tell of another place.
    if (x > 0.0) {
        BuildMouseReport(x, location);
    } else {
        report_.begin(L"");
    }
    show();
}

void ReportWindow::show() {
    if (!window_) {
        window_ = std::make_unique<forms::frmTextEditor>(services_.platform, services_.files, services_.errors);
        // However the user leaves the window, the box is cleared.
        window_->onHideMe = [this] { chkShowMouse_.setValue(0); };
        window_->onUnload = [this] {
            chkShowMouse_.setValue(0);
            isSetUp_ = false;
        };
    }
    if (isSetUp_) {
        window_->setText(report_.text());
    } else {
        setUp();
    }
    if (!window_->isVisible())
        window_->Show();
}

// Events that run meanwhile find the window set up, and set only its text.
void ReportWindow::setUp() {
    const std::wstring places = services_.files.placementFile();
    isSetUp_ = true;
    try {
        window_->InitForm(kReportCaption, L"Close", false, false, false, report_.text(), true, places);
    } catch (...) {
        isSetUp_ = false;
        throw;
    }
}

void ReportWindow::close() noexcept {
    isSetUp_ = false;
    window_.reset();
}

void ReportWindow::BuildMouseReport(double x, const std::wstring& location) {
    util::reported(services_.errors, L"BuildMouseReport", [&](util::Step& step) {
        const double reach = kReportReach * picture_.scaleWidth() / picture_.pixelSize().width;
        step = 200;
        report_.begin(location);
        for (const channels::ChannelKind kind : {channels::ChannelKind::RX, channels::ChannelKind::TX}) {
            step = kind == channels::ChannelKind::RX ? 300 : 400;
            channels::forEachChannelAt(store_, kind, x, reach, [&](std::int32_t index) {
                // Reading the channel may have cleared the store.
                if (const channels::FreqSlotRef channel = store_.at(kind, index))
                    report_.add(kind, *channel);
                // Over thousands of products the rest would be read for nothing.
                return !report_.isFull();
            });
            if (report_.isFull())
                return;
        }
    });
}

}  // namespace kv::control
