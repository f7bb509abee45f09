// The picture as a bitmap file and on the clipboard: the label strip with the spectrum at its place inside.
#pragma once

#include <string>

#include "formenv/FileServices.h"
#include "formenv/PictureBox.h"
#include "util/ErrHand.h"

namespace kv::control {

class PictureExport {
  public:
    /// All have to live longer.
    PictureExport(formenv::Platform& platform, formenv::FileServices& files, util::ErrorReporter& errors,
                  formenv::PictureBox& strip, formenv::PictureBox& picture) noexcept
        : platform_(platform), files_(files), errors_(errors), strip_(strip), picture_(picture) {}
    PictureExport(const PictureExport&) = delete;
    PictureExport& operator=(const PictureExport&) = delete;

    /// Writes the file `sFName`, which receives a name in the scratch folder when it is empty, and returns it; `dHgt`
    /// and `dWid` receive the size (twips). A failed export returns an empty name and zeros.
    std::wstring DisplayToBMP(double& dHgt, double& dWid, std::wstring& sFName);
    void CopyDisplayToClipboard();

  private:
    formenv::Platform& platform_;
    formenv::FileServices& files_;
    util::ErrorReporter& errors_;
    formenv::PictureBox& strip_;
    formenv::PictureBox& picture_;
};

}  // namespace kv::control
