#include "forms/modPicToBMP.h"

#include <memory>

#include "forms/clsBitmapDC.h"
#include "raster/Twips.h"
#include "util/Bmp.h"
#include "util/NumberFormat.h"
#include "util/Trapped.h"

namespace kv::forms {

using formenv::BitmapCalls;
using formenv::Handle;
using formenv::PictureBox;
using formenv::PictureObject;
using raster::PixelSize;
using util::RuntimeError;
using util::Step;

namespace {

/// A bitmap that is freed unless a picture takes its ownership.
class OwnedBitmap {
  public:
    OwnedBitmap(BitmapCalls& calls, Handle handle) noexcept : calls_(calls), handle_(handle) {}
    ~OwnedBitmap() {
        if (handle_ != 0)
            calls_.DeleteObject(handle_);
    }
    OwnedBitmap(const OwnedBitmap&) = delete;
    OwnedBitmap& operator=(const OwnedBitmap&) = delete;

    [[nodiscard]] Handle get() const noexcept { return handle_; }
    void release() noexcept { handle_ = 0; }

  private:
    BitmapCalls& calls_;
    Handle handle_;
};

/// One export.
class Export {
  public:
    Export(PictureBox& P1, PictureBox& P2, const ExportServices& services) noexcept
        : P1_(P1), P2_(P2), services_(services), calls_(P1.platform().bitmapCalls()) {}

    void run(const std::wstring& sFile, Step& step);

    /// The text of the present step.
    const wchar_t* stepText = L"";

  private:
    void develop(const std::wstring& message) noexcept { services_.errors.wrtTechSupNoMak(message, false); }
    void develop(const wchar_t* label, double value) { develop(label + util::formatNumber(value, L"")); }
    void paste(const OwnedBitmap& bitmap, PictureBox& source, int x, int y, PixelSize size);
    void save(const PictureObject& picture, const std::wstring& sFile);

    PictureBox& P1_;
    PictureBox& P2_;
    ExportServices services_;
    BitmapCalls& calls_;
    clsBitmapDC x_{calls_};
};

void Export::paste(const OwnedBitmap& bitmap, PictureBox& source, int x, int y, PixelSize size) {
    Handle handle = bitmap.get();
    x_.PasteBitmap(handle, x, y, source.surface().deviceContext(), 0, 0, size.width, size.height, formenv::kSourceCopy);
    if (!x_.pasted() || handle != bitmap.get())
        throw RuntimeError(util::error_number::kInvalidPicture);
}

void Export::save(const PictureObject& picture, const std::wstring& sFile) {
    const formenv::BitmapImage image = calls_.imageOf(picture.handle());
    services_.files.writeFile(
        sFile, util::bmpFile(image.pixels.data(), image.width, image.height, image.width, P1_.platform().dpi()));
}

void Export::run(const std::wstring& sFile, Step& step) {
    const auto begin = [&](const wchar_t* text) {
        stepText = text;
        step = static_cast<Step>(step + 100);
    };
    begin(L"Set P1 width and height");
    const PixelSize size = P1_.pixelSize();

    begin(L"Create Empty Bitmap");
    OwnedBitmap bitmap(calls_, x_.CreateBitmapInMemory(size.width, size.height, P1_.surface().deviceContext()));
    if (bitmap.get() == 0)
        throw RuntimeError(util::error_number::kOutOfMemory);
    develop(L"After HdcBitMap");

    begin(L"P1 PasteBitmap");
    develop(L"Lft ", P1_.left());
    develop(L"Top ", P1_.top());
    paste(bitmap, P1_, 0, 0, size);

    P1_.platform().pumpEvents();
    begin(L"P2 PasteBitmap");
    develop(L"Lft ", P2_.left());
    develop(L"Top ", P2_.top());
    develop(L"Wid ", P2_.scaleWidth());
    develop(L"Hgt ", P2_.scaleHeight());
    const int dpi = P1_.platform().dpi();
    paste(bitmap, P2_, raster::twipsToPixels(P2_.left(), dpi), raster::twipsToPixels(P2_.top(), dpi), P2_.pixelSize());

    begin(L"x.CreateBitMapPicture");
    const std::unique_ptr<PictureObject> picture = x_.CreateBitmapPicture(bitmap.get(), 0);
    if (!picture)
        throw RuntimeError(util::error_number::kInvalidPicture);
    bitmap.release();
    if (!picture->offers(formenv::kPictureInterface))
        throw RuntimeError(util::error_number::kTypeMismatch);

    begin(L"SavePicture");
    save(*picture, sFile);
    begin(L"Done");
}

}  // namespace

bool ExportToBMP2(PictureBox& P1, PictureBox& P2, const std::wstring& sFile, const ExportServices& services) {
    Export attempt(P1, P2, services);
    const auto run = [&](Step& step) { attempt.run(sFile, step); };
    return util::noted(
        services.errors, L"ExportToBMP2", run, [&](Step) { return std::wstring_view(attempt.stepText); }, 0);
}

}  // namespace kv::forms
