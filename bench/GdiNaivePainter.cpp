// The naive painter on Windows: nothing but GDI calls, with every pen and brush made once.
#include <windows.h>

#include <map>
#include <numeric>

#include "bench/NaiveShapes.h"

namespace kv::bench {

namespace {

class GdiNaivePainter final : public NaivePainter {
  public:
    GdiNaivePainter() : dc_(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = kPictureWidth;
        info.bmiHeader.biHeight = -kPictureHeight;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        bits_ = static_cast<const std::uint32_t*>(bits);
        SelectObject(dc_, bitmap_);
        SetBkMode(dc_, TRANSPARENT);
    }
    ~GdiNaivePainter() override {
        DeleteDC(dc_);
        DeleteObject(bitmap_);
        for (const auto& [color, tools] : tools_) {
            DeleteObject(tools.pen);
            DeleteObject(tools.hatch);
        }
    }
    GdiNaivePainter(const GdiNaivePainter&) = delete;
    GdiNaivePainter& operator=(const GdiNaivePainter&) = delete;

    void draw(const std::vector<Channel>& channels, const View& view) override {
        const NaiveScale scale(view);
        PatBlt(dc_, 0, 0, kPictureWidth, kPictureHeight, WHITENESS);
        for (const Channel& channel : channels) {
            scale.shapes(
                channel,
                [&](int left, int top, int right, int bottom) {
                    const Tools& tools = toolsOf(channel.lColor);
                    SelectObject(dc_, tools.pen);
                    SelectObject(dc_, tools.hatch);
                    Rectangle(dc_, left, top, right + 1, bottom + 1);
                },
                [&](int x, int from, int to) {
                    SelectObject(dc_, toolsOf(channel.lColorLine).pen);
                    MoveToEx(dc_, x, from, nullptr);
                    LineTo(dc_, x, to);
                });
        }
        GdiFlush();
    }
    std::uint64_t checksum() override {
        return std::accumulate(bits_, bits_ + kPictureWidth * kPictureHeight, std::uint64_t{0});
    }

  private:
    struct Tools {
        HGDIOBJ pen = nullptr;
        HGDIOBJ hatch = nullptr;
    };
    const Tools& toolsOf(COLORREF color) {
        Tools& tools = tools_[color];
        if (!tools.pen)
            tools = {CreatePen(PS_SOLID, 1, color), CreateHatchBrush(HS_FDIAGONAL, color)};
        return tools;
    }

    HDC dc_;
    HBITMAP bitmap_ = nullptr;
    const std::uint32_t* bits_ = nullptr;
    std::map<COLORREF, Tools> tools_;
};

}  // namespace

std::unique_ptr<NaivePainter> makeNaivePainter() {
    return std::make_unique<GdiNaivePainter>();
}

}  // namespace kv::bench
