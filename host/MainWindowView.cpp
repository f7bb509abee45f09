// The commands that move through the spectrum and that switch what it shows.
#include <array>

#include "host/MainWindow.h"
#include "host/resource.h"

namespace kv::host {

namespace {

using Getter = HRESULT (STDMETHODCALLTYPE _BandscopeView::*)(VARIANT_BOOL*);
using Setter = HRESULT (STDMETHODCALLTYPE _BandscopeView::*)(VARIANT_BOOL);

struct Toggle {
    int id;
    Getter read;
    Setter write;
    const wchar_t* on;  ///< what the status line says
    const wchar_t* off;
    std::optional<bool> ChosenOptions::*remembered;  ///< null for a switch of the present plan
};

constexpr std::array<Toggle, 6> kToggles{{
    {IDC_WHEEL_ZOOM, &_BandscopeView::get_WheelZoom, &_BandscopeView::put_WheelZoom,
     L"The wheel zooms; with Shift it moves the range.", L"The wheel does nothing.", &ChosenOptions::wheelZoom},
    {IDC_MARKER, &_BandscopeView::get_MarkerVisible, &_BandscopeView::put_MarkerVisible,
     L"The cursor is measured from the marker.", L"The marker is hidden.", nullptr},
    {IDC_SNAP, &_BandscopeView::get_SnapToChannels, &_BandscopeView::put_SnapToChannels,
     L"Cursor and marker are attracted by channels.", L"Cursor and marker move freely.", &ChosenOptions::snap},
    {IDC_POWER_AXIS, &_BandscopeView::get_PowerAxis, &_BandscopeView::put_PowerAxis, L"The power axis is shown.",
     L"The power axis is hidden.", &ChosenOptions::powerAxis},
    {IDC_LEGEND, &_BandscopeView::get_Legend, &_BandscopeView::put_Legend, L"The legend is shown.",
     L"The legend is hidden.", &ChosenOptions::legend},
    {IDC_LABELS, &_BandscopeView::get_ChannelLabels, &_BandscopeView::put_ChannelLabels,
     L"The channels are labeled where there is room.", L"The labels are hidden.", &ChosenOptions::labels},
}};

bool isOn(_BandscopeView& view, Getter read) {
    VARIANT_BOOL value = VARIANT_FALSE;
    check((view.*read)(&value), L"Reading a property of the view");
    return value != VARIANT_FALSE;
}

double cursorOf(_kvBandscope& control) {
    double value = 0.0;
    check(control.get_CursorVal(&value), L"Reading CursorVal");
    return value;
}

}  // namespace

bool MainWindow::toggleView(int id) {
    for (const Toggle& toggle : kToggles) {
        if (toggle.id != id) {
            continue;
        }
        _BandscopeView& view = spectrum_->view();
        const bool on = !isOn(view, toggle.read);
        if (id == IDC_MARKER && on && cursorOf(spectrum_->control()) > 0.0) {
            check(view.put_Marker(cursorOf(spectrum_->control())), L"Setting Marker");
        }
        check((view.*toggle.write)(on ? VARIANT_TRUE : VARIANT_FALSE), L"Setting a property of the view");
        if (toggle.remembered != nullptr) {
            chosen_.*toggle.remembered = on;
        }
        status_->setMessage(on ? toggle.on : toggle.off);
        return true;
    }
    return false;
}

void MainWindow::restoreOptions() {
    const ChosenOptions options = settings_.read().options;
    for (const Toggle& toggle : kToggles) {
        if (toggle.remembered != nullptr && options.*toggle.remembered) {
            const bool on = *(options.*toggle.remembered);
            check((spectrum_->view().*toggle.write)(on ? VARIANT_TRUE : VARIANT_FALSE),
                  L"Setting a property of the view");
        }
    }
}

void MainWindow::enableView(HMENU menu) const {
    _BandscopeView& view = spectrum_->view();
    const bool idle = opening_ == nullptr;
    const bool hasPlan = idle && !shown_.plan.channels.empty();
    const auto enable = [menu](UINT id, bool on) { EnableMenuItem(menu, id, on ? MF_ENABLED : MF_GRAYED); };
    for (const Toggle& toggle : kToggles) {
        CheckMenuItem(menu, static_cast<UINT>(toggle.id), isOn(view, toggle.read) ? MF_CHECKED : MF_UNCHECKED);
        enable(static_cast<UINT>(toggle.id), idle);
    }
    enable(IDC_BACK, hasPlan && isOn(view, &_BandscopeView::get_CanGoBack));
    enable(IDC_FORWARD, hasPlan && isOn(view, &_BandscopeView::get_CanGoForward));
    enable(IDC_ZOOM_IN, hasPlan);
    enable(IDC_ZOOM_OUT, hasPlan);
}

void MainWindow::zoom(double factor) {
    // A range that cannot be zoomed any further stays.
    if (!shown_.plan.channels.empty() && SUCCEEDED(spectrum_->view().ZoomBy(factor, 0.0))) {
        updateRange();
    }
}

void MainWindow::go(HRESULT (STDMETHODCALLTYPE _BandscopeView::*step)(VARIANT_BOOL*)) {
    VARIANT_BOOL went = VARIANT_FALSE;
    check((spectrum_->view().*step)(&went), L"Going to another range");
    if (went != VARIANT_FALSE) {
        updateRange();
    }
}

}  // namespace kv::host
