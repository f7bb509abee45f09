// Saving and restoring the place, size and state of a form.
#pragma once

#include <cstdint>
#include <string>

#include "formenv/Desktop.h"
#include "formenv/FileServices.h"
#include "forms/PlacedForm.h"

namespace kv::forms {

/// A position or size that the caller does not give.
inline constexpr double kNotGiven = -88.0;
inline constexpr formenv::Place kNoPlaceGiven{kNotGiven, kNotGiven, kNotGiven, kNotGiven};

/// The file and key of a form's saved place, and the screens that it has to fit on.
struct PlacementStore {
    formenv::FileServices& files;
    formenv::Desktop& desktop;
    std::wstring ini;  ///< full path; empty: nothing is saved
    std::wstring key;  ///< precedes the names of the settings
};

/// Writes the form's place, size and state. A minimized form is written with the normal state, so that it is not
/// restored hidden. False when not all of it could be written.
bool SaveFormPlacement(const PlacedForm& form, const PlacementStore& store) noexcept;

inline bool SaveFormPlacement(formenv::Form& form, const PlacementStore& store) noexcept {
    return SaveFormPlacement(PlacedWindow(form), store);
}

/// Moves the form to `given`; what is not given comes from the saved place. What is not saved either is the form's
/// present size and the middle of the monitor of the window `owner` (0: the primary monitor). Then sets the saved
/// state.
///
/// When the user could not reach the title bar there, the form is moved into the nearest work area, and made smaller if
/// it is larger than that.
void RestoreFormPlacement(PlacedForm& form, const PlacementStore& store, std::intptr_t owner = 0,
                          const formenv::Place& given = kNoPlaceGiven) noexcept;
inline void RestoreFormPlacement(formenv::Form& form, const PlacementStore& store, std::intptr_t owner = 0,
                                 const formenv::Place& given = kNoPlaceGiven) noexcept {
    PlacedWindow placed(form);
    RestoreFormPlacement(placed, store, owner, given);
}

}  // namespace kv::forms
