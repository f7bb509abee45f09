#include "forms/FormPlacement.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "forms/WorkArea.h"
#include "forms/clsMonitors.h"
#include "raster/Twips.h"
#include "util/NumberFormat.h"

namespace kv::forms {

namespace {

using formenv::Place;
using formenv::WindowState;

constexpr wchar_t kSection[] = L"CONFIG";

// All in twips.
constexpr double kFarthest = 1'000'000.0;  // beyond every desktop
constexpr double kLeastWidth = 2400.0;
constexpr double kLeastFormHeight = 1500.0;
constexpr double kTitleHeight = 450.0;
// The part of the title bar that has to be visible so that the user can drag it: more than its buttons need.
constexpr double kGripWidth = 3000.0;
constexpr double kGripHeight = 300.0;

/// A key's text in which characters that would end or change its line in an INI file are replaced.
std::wstring settingName(const std::wstring& key, const wchar_t* name) {
    constexpr wchar_t kStandIn = L'_';
    std::wstring result = key.substr(std::min(key.find_first_not_of(L' '), key.size()));
    if (result.starts_with(L';'))
        result.front() = kStandIn;
    std::ranges::replace_if(
        result,
        [](wchar_t character) {
            return character < L' ' || character == 0x7F || character == L'=' || character == L'[' || character == L']';
        },
        kStandIn);
    return result + name;
}

std::optional<double> usable(double value) {
    return std::abs(value) <= kFarthest ? std::optional(value) : std::nullopt;
}

std::optional<double> usableSize(std::optional<double> value, double least) {
    return value && *value > 0.0 ? std::optional(std::max(*value, least)) : std::nullopt;
}

std::optional<double> givenNumber(double value) {
    return value == kNotGiven ? std::nullopt : usable(value);
}

std::optional<double> savedNumber(const PlacementStore& store, const wchar_t* name) {
    if (store.ini.empty())
        return std::nullopt;
    const std::optional<std::wstring> text = store.files.readSetting(settingName(store.key, name), kSection, store.ini);
    const std::optional<double> number = text ? util::parseNumber(*text) : std::nullopt;
    return number ? usable(*number) : std::nullopt;
}

/// The present work areas. The other members need at least one, so callers check `none` first.
class Screens {
  public:
    explicit Screens(formenv::Desktop& desktop)
        : desktop_(desktop), monitors_(desktop), scale_(twipsPerPixel(desktop)) {
        for (const clsMonitor& monitor : monitors_.Monitors())
            add(monitor.Handle());
        // The search can miss a small monitor.
        add(monitors_.GetMonitorFromXYPoint(1, 1, monitor_flag::kPrimary));
        const Place screen = screenSize(desktop);
        if (areas_.empty() && screen.width > 0.0 && screen.height > 0.0)
            areas_.push_back({0, screen});
    }

    /// There is no work area.
    [[nodiscard]] bool none() const noexcept { return areas_.empty(); }

    /// The work area of the window's monitor; of the primary one without a window.
    [[nodiscard]] Place home(std::intptr_t window) {
        std::optional<Place> area;
        if (window != 0)
            area = areaOf(monitors_.GetMonitorFromWindow(window, monitor_flag::kNearest));
        if (!area)
            area = areaOf(monitors_.GetMonitorFromXYPoint(1, 1, monitor_flag::kPrimary));
        return area.value_or(areas_.front().place);
    }

    /// No larger than all work areas together.
    [[nodiscard]] Place bounded(Place place) const {
        Place all = areas_.front().place;
        for (const Area& area : areas_)
            all = together(all, area.place);
        place.width = std::min(place.width, all.width);
        place.height = std::min(place.height, all.height);
        return place;
    }

    /// `place` itself when the user can reach its title bar there, else the closest place inside a work area.
    [[nodiscard]] Place reachable(const Place& place) {
        const Place nearest = nearestTo(place);
        double shown = 0.0;
        for (const Area& area : areas_)
            shown += shownTitle(place, area.place);
        shown = std::max(shown, shownTitle(place, nearest));
        return shown >= std::min(place.width, kGripWidth) ? place : inside(nearest, place);
    }

  private:
    struct Area {
        std::intptr_t handle;
        Place place;
    };

    void add(std::intptr_t monitor) {
        const auto same = [monitor](const Area& area) { return area.handle == monitor; };
        if (const std::optional<Place> area = areaOf(monitor); area && std::ranges::none_of(areas_, same))
            areas_.push_back({monitor, *area});
    }

    [[nodiscard]] std::optional<Place> areaOf(std::intptr_t monitor) {
        const std::optional<formenv::MonitorInfo> info = monitorInfo(desktop_, monitor);
        if (!info || info->work.left >= info->work.right || info->work.top >= info->work.bottom)
            return std::nullopt;
        return inTwips(info->work, scale_);
    }

    [[nodiscard]] Place nearestTo(const Place& place) {
        const auto pixels = [](double twips, double scale) { return raster::toNearestPixel(twips / scale); };
        const formenv::ScreenRect title{pixels(place.left, scale_.x), pixels(place.top, scale_.y),
                                        pixels(place.left + place.width, scale_.x),
                                        pixels(place.top + kTitleHeight, scale_.y)};
        std::optional<Place> area;
        try {
            area = areaOf(desktop_.monitorFromRect(title, monitor_flag::kNearest));
        } catch (...) {
            // The home monitor is used instead.
        }
        return area.value_or(home(0));
    }

    [[nodiscard]] static Place together(const Place& a, const Place& b) {
        const double left = std::min(a.left, b.left);
        const double top = std::min(a.top, b.top);
        return {left, top, std::max(a.left + a.width, b.left + b.width) - left,
                std::max(a.top + a.height, b.top + b.height) - top};
    }

    /// The width of the title bar's visible part in `area`.
    [[nodiscard]] static double shownTitle(const Place& place, const Place& area) {
        const double width =
            std::min(place.left + place.width, area.left + area.width) - std::max(place.left, area.left);
        const double height =
            std::min(place.top + kTitleHeight, area.top + area.height) - std::max(place.top, area.top);
        return height >= kGripHeight ? std::max(width, 0.0) : 0.0;
    }

    [[nodiscard]] static Place inside(const Place& area, const Place& place) {
        const double width = std::min(place.width, area.width);
        const double height = std::min(place.height, area.height);
        return {std::clamp(place.left, area.left, area.left + area.width - width),
                std::clamp(place.top, area.top, area.top + area.height - height), width, height};
    }

    formenv::Desktop& desktop_;
    clsMonitors monitors_;
    TwipsPerPixel scale_;
    std::vector<Area> areas_;
};

Place placeToRestore(const Place& design, const PlacementStore& store, std::intptr_t owner, const Place& given) {
    const auto position = [&store](double wanted, const wchar_t* name) {
        const std::optional<double> number = givenNumber(wanted);
        return number ? number : savedNumber(store, name);
    };
    const auto size = [&store](double wanted, const wchar_t* name, double least) {
        const std::optional<double> number = usableSize(givenNumber(wanted), least);
        return number ? number : usableSize(savedNumber(store, name), least);
    };
    Screens screens(store.desktop);
    if (screens.none())
        return design;
    Place place = design;
    place.width = size(given.width, L"Width", kLeastWidth).value_or(design.width);
    place.height = size(given.height, L"Height", kLeastFormHeight).value_or(design.height);
    place = screens.bounded(place);
    const Place home = screens.home(owner);
    const std::optional<double> left = position(given.left, L"Left");
    const std::optional<double> top = position(given.top, L"Top");
    // In the middle of a small monitor a large form would begin on a neighboring one.
    if (!left)
        place.width = std::min(place.width, home.width);
    if (!top)
        place.height = std::min(place.height, home.height);
    place = centeredIn(home, place);
    place.left = left.value_or(place.left);
    place.top = top.value_or(place.top);
    return screens.reachable(place);
}

bool write(const PlacementStore& store, const wchar_t* name, double value) {
    try {
        store.files.writeSetting(settingName(store.key, name), kSection, store.ini, std::to_wstring(toInt32(value)));
        return true;
    } catch (...) {
        return false;
    }
}

}  // namespace

bool SaveFormPlacement(const PlacedForm& form, const PlacementStore& store) noexcept {
    try {
        if (store.ini.empty())
            return false;
        const Place place = form.place();
        const WindowState state =
            form.windowState() == WindowState::Maximized ? WindowState::Maximized : WindowState::Normal;
        const bool several = clsMonitors(store.desktop).Monitors().size() > 1;
        // It stops after a failure: the rest would fail as well, or the result would mix two places.
        return write(store, L"Left", place.left) && write(store, L"Top", place.top) &&
               write(store, L"Width", place.width) && write(store, L"Height", place.height) &&
               write(store, L"WindowState", static_cast<double>(state)) &&
               write(store, L"MultipleMonitors", several ? 1.0 : 0.0);
    } catch (...) {
        return false;
    }
}

void RestoreFormPlacement(PlacedForm& form, const PlacementStore& store, std::intptr_t owner,
                          const formenv::Place& given) noexcept {
    try {
        const std::optional<double> state = savedNumber(store, L"WindowState");
        form.move(placeToRestore(form.place(), store, owner, given));
        if (state == static_cast<double>(WindowState::Maximized)) {
            form.setWindowState(WindowState::Maximized);
        } else if (state) {
            form.setWindowState(WindowState::Normal);
        }
    } catch (...) {
        // The form stays as it was.
    }
}

}  // namespace kv::forms
