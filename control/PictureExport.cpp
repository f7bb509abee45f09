#include "control/PictureExport.h"

#include <utility>

#include "forms/modPicToBMP.h"
#include "util/AtExit.h"
#include "util/Text.h"
#include "util/Trapped.h"

namespace kv::control {

std::wstring PictureExport::DisplayToBMP(double& dHgt, double& dWid, std::wstring& sFName) {
    // A statement that fails is skipped: the next ones do what can still be done.
    util::Step step = 0;
    const auto statement = [&](const auto& body) {
        step = static_cast<util::Step>(step + 100);
        util::noted(
            errors_, L"DisplayToBMP", [&body](util::Step&) { body(); }, step);
    };
    statement([&] {
        if (sFName.empty())
            sFName = util::setPathName(files_.scratchFolder(), L"NXBandscope.BMP");
    });
    statement([&] { platform_.pumpEvents(); });
    statement([&] {
        dHgt = strip_.height();
        dWid = strip_.width();
    });
    std::wstring written;
    statement([&] {
        std::wstring name = sFName;
        if (forms::ExportToBMP2(strip_, picture_, name, {files_, errors_}))
            written = std::move(name);
    });
    if (!written.empty())
        return written;
    dHgt = 0.0;
    dWid = 0.0;
    return {};
}

void PictureExport::CopyDisplayToClipboard() {
    util::reported(errors_, L"CopyDisplayToClipboard", [&](util::Step& step) {
        std::wstring file = util::setPathName(files_.scratchFolder(), L"TempClip.BMP");
        step = 200;
        double height = 0.0;
        double width = 0.0;
        const std::wstring written = DisplayToBMP(height, width, file);
        const util::AtExit deleted([&] {
            if (!written.empty())
                files_.deleteFile(written);
        });
        step = 300;
        files_.clearClipboard();
        step = 400;
        if (!written.empty() && files_.fileExists(written))
            files_.bitmapFileToClipboard(written);
    });
}

}  // namespace kv::control
