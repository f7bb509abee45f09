#include "host/plan/PageHeading.h"

#include <algorithm>
#include <array>
#include <cwchar>

namespace kv::host {

namespace {

constexpr int kFlattestHeight = 9;
constexpr int kFlattestWidth = 16;

}  // namespace

std::wstring rangeText(const RangeMhz& range) {
    std::array<wchar_t, 700> text{};
    std::swprintf(text.data(), text.size(), L"%.4f to %.4f MHz", range.lowest, range.highest);
    return text.data();
}

PageHeading headingOf(const std::wstring& planName, const PrintTime& time, const RangeMhz& range) {
    std::array<wchar_t, 64> moment{};
    std::swprintf(moment.data(), moment.size(), L"%04d-%02d-%02d %02d:%02d", time.year, time.month, time.day, time.hour,
                  time.minute);
    return {planName.empty() ? L"Spectrum" : planName, std::wstring(moment.data()) + L", " + rangeText(range)};
}

PageLayout layOutPage(int width, int height, int titleHeight, int detailsHeight) {
    const int detailsTop = titleHeight + titleHeight / 4;
    const int top = std::min(detailsTop + detailsHeight + detailsHeight / 2, height);
    const int room = std::min(height - top, width * kFlattestHeight / kFlattestWidth);
    return {
        {0, 0, width, titleHeight}, {0, detailsTop, width, detailsTop + detailsHeight}, {0, top, width, top + room}};
}

}  // namespace kv::host
