// The picture as a bitmap file and on the clipboard: the label strip with the spectrum at its place inside.
#include <cstdint>
#include <string>

#include "control/Bandscope.h"
#include "forms/modPicToBMP.h"
#include "util/Text.h"

namespace kv::control {

namespace {

/// A file that goes again at the end, also when an error comes before it.
class Scratch {
  public:
    Scratch(formenv::FileServices& files, const std::wstring& path) : files_(files), path_(path) {}
    ~Scratch() {
        if (!path_.empty())
            files_.deleteFile(path_);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

  private:
    formenv::FileServices& files_;
    const std::wstring& path_;
};

}  // namespace

std::wstring Bandscope::DisplayToBMP(double& dHgt, double& dWid, std::wstring& sFName) {
    // A statement that fails is skipped: the next ones do what can still be done.
    std::int16_t flag = 0;
    const auto statement = [&](const std::function<void()>& body) {
        flag = static_cast<std::int16_t>(flag + 100);
        return noted(L"DisplayToBMP", flag, body);
    };
    statement([&] {
        if (sFName.empty())
            sFName = util::setPathName(services_.files.scratchFolder(), L"NXBandscope.BMP");
    });
    statement([&] { services_.platform.pumpEvents(); });
    statement([&] {
        dHgt = ui_.picUnits.height();
        dWid = ui_.picUnits.width();
    });
    bool written = false;
    statement([&] {
        written = forms::ExportToBMP2(ui_.picUnits, ui_.picSpectrum, sFName, {services_.files, services_.errors});
    });
    if (written)
        return sFName;
    dHgt = 0.0;
    dWid = 0.0;
    return {};
}

void Bandscope::CopyDisplayToClipboard() {
    std::int16_t flag = 100;
    reported(L"CopyDisplayToClipboard", L"", flag, [&] {
        formenv::FileServices& files = services_.files;
        std::wstring file = util::setPathName(files.scratchFolder(), L"TempClip.BMP");
        flag = 200;
        double height = 0.0;
        double width = 0.0;
        const std::wstring written = DisplayToBMP(height, width, file);
        const Scratch scratch(files, written);
        flag = 300;
        files.clearClipboard();
        flag = 400;
        if (!written.empty() && files.fileExists(written))
            files.bitmapFileToClipboard(written);
    });
}

}  // namespace kv::control
