// Controls with something to show, for the steps of the self-check.
#pragma once

#include "host/ControlClasses.h"
#include "host/plan/Plan.h"
#include "host/selfcheck/PictureFile.h"
#include "host/selfcheck/Steps.h"
#include "kvBandscope.h"

namespace kv::host {

/// A control without a window, with the colors of all reference pictures.
[[nodiscard]] ComPtr<_kvBandscope> newControl(const Context& context);

void setColors(_kvBandscope& control);

/// Loads the channels and their third-order products, and draws them.
void show(_kvBandscope& control, IClassFactory& freqSlot, const Plan& plan);

/// Three transmitters and two receivers.
[[nodiscard]] Plan samplePlan();

/// The view of a control.
[[nodiscard]] ComPtr<_BandscopeView> viewOf(_kvBandscope& control);

struct PictureSize {
    int width = 0;  ///< pixels; 0: as on the screen
    int height = 0;
    int dpi = 0;
};

/// The picture as the control saves it in a PNG file. The file is in the folder for temporary files.
[[nodiscard]] Pixels savedPicture(const Context& context, _kvBandscope& control, const PictureSize& size = {});

/// Saves the picture in a file in the folder for temporary files, and returns its path.
std::wstring savePicture(const Context& context, _kvBandscope& control, const std::wstring& name,
                         const PictureSize& size = {});

}  // namespace kv::host
