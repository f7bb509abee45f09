// Keeping the place, size and state of a form between its showings.
#pragma once

#include <cstdint>
#include <string>

#include "formenv/Desktop.h"
#include "formenv/FileServices.h"
#include "forms/PlacedForm.h"

namespace kv::forms {

/// A position or size that the caller leaves open.
inline constexpr double kNotGiven = -88.0;
inline constexpr formenv::Place kNoPlaceGiven{kNotGiven, kNotGiven, kNotGiven, kNotGiven};

/// Where a form's place is kept, and the screens that it is judged by.
struct PlacementStore {
    formenv::FileServices& files;
    formenv::Desktop& desktop;
    std::wstring ini;  ///< full path; empty: nothing is kept
    std::wstring key;  ///< stands before the names of the settings
};

/// Writes the form's place, size and state. A minimised form is written as one of normal state, so that it does not
/// come back hidden. False when not all of it could be written.
bool SaveFormPlacement(const PlacedForm& form, const PlacementStore& store) noexcept;

inline bool SaveFormPlacement(formenv::Form& form, const PlacementStore& store) noexcept {
    return SaveFormPlacement(PlacedWindow(form), store);
}

/// Moves the form to `given`, what that leaves open to the saved place, and what has not been saved to the middle of
/// the monitor of the window `owner` (0: the primary monitor), in the form's present size. Then gives it its saved
/// state.
///
/// A form whose title bar would be out of reach there is moved into the nearest work area, and made smaller when it is
/// larger than that.
void RestoreFormPlacement(PlacedForm& form, const PlacementStore& store, std::intptr_t owner = 0,
                          const formenv::Place& given = kNoPlaceGiven) noexcept;
inline void RestoreFormPlacement(formenv::Form& form, const PlacementStore& store, std::intptr_t owner = 0,
                                 const formenv::Place& given = kNoPlaceGiven) noexcept {
    PlacedWindow placed(form);
    RestoreFormPlacement(placed, store, owner, given);
}

}  // namespace kv::forms
