// What the control knows of the size that its container gives it.
#pragma once

#include <windows.h>

namespace kv::automation {

/// Sizes are those of the window in pixels, apart from the extent.
struct ControlSizing {
    SIZEL extent{};            ///< HIMETRIC: as the container set it, or that of its window
    SIZE given{};              ///< by the container; 0 x 0 before it has given a size
    bool sized = false;        ///< the container has given a size in which the control can be used
    SIZE first{};              ///< since the activation
    bool placeholder = false;  ///< the first size is too low for any picture, and the extent is the natural one
    bool wantsHeight = false;  ///< the first size is too low to be used
    bool wantsRoom = false;    ///< the container must be asked for a larger window
    bool askPosted = false;
    SIZE refused{-1, -1};        ///< the size that the container kept when it was asked
    SIZE askedAt{-1, -1};        ///< the size when the container was asked last
    int asked = 0;               ///< how often, since the size last changed
    int containerCalls = 0;      ///< calls of the container that have not returned
    bool followingSize = false;  ///< the container is asked about a size for which the control is not yet laid out
};

}  // namespace kv::automation
