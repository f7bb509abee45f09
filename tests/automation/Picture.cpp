#include "tests/automation/Picture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace kv::test {

namespace {

std::vector<std::uint8_t> readFile(const std::wstring& path) {
    std::vector<std::uint8_t> bytes;
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return bytes;
    bytes.resize(GetFileSize(file, nullptr));
    DWORD done = 0;
    if (!ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr) || done != bytes.size())
        bytes.clear();
    CloseHandle(file);
    return bytes;
}

std::uint32_t littleEndian(const std::vector<std::uint8_t>& bytes, std::size_t offset, int count) {
    std::uint32_t value = 0;
    for (int i = 0; i < count; ++i)
        value |= static_cast<std::uint32_t>(bytes.at(offset + static_cast<std::size_t>(i))) << (8 * i);
    return value;
}

}  // namespace

std::wstring tempFolder() {
    std::wstring folder(MAX_PATH + 1, L'\0');
    folder.resize(GetTempPathW(MAX_PATH + 1, folder.data()));
    return folder;
}

TempFile::TempFile(const std::wstring& name) : path_(tempFolder() + std::to_wstring(GetCurrentProcessId()) + name) {
    DeleteFileW(path_.c_str());
}

Picture Picture::read(const std::wstring& path) {
    constexpr std::size_t kHeaders = 14 + 40;
    const std::vector<std::uint8_t> bytes = readFile(path);
    if (bytes.size() < kHeaders || bytes[0] != 'B' || bytes[1] != 'M' || littleEndian(bytes, 2, 4) != bytes.size())
        return {};
    const auto start = littleEndian(bytes, 10, 4);
    const auto width = static_cast<std::int32_t>(littleEndian(bytes, 18, 4));
    const auto signedHeight = static_cast<std::int32_t>(littleEndian(bytes, 22, 4));
    const auto bits = littleEndian(bytes, 28, 2);
    if (littleEndian(bytes, 26, 2) != 1 || (bits != 24 && bits != 32) || littleEndian(bytes, 30, 4) != BI_RGB)
        return {};
    Picture picture{width, std::abs(signedHeight), {}};
    const std::size_t stride = (static_cast<std::size_t>(width) * bits / 8 + 3) / 4 * 4;
    for (int y = 0; y < picture.height; ++y) {
        const int stored = signedHeight > 0 ? picture.height - 1 - y : y;
        for (int x = 0; x < width; ++x) {
            const std::size_t place =
                start + static_cast<std::size_t>(stored) * stride + static_cast<std::size_t>(x) * bits / 8;
            if (place + 3 > bytes.size())
                return {};
            picture.pixels.push_back(bytes[place + 2] | static_cast<std::uint32_t>(bytes[place + 1]) << 8 |
                                     static_cast<std::uint32_t>(bytes[place]) << 16);
        }
    }
    return picture;
}

std::optional<Area> Picture::find(std::uint32_t color, const Area& area) const {
    std::optional<Area> found;
    for (int y = area.top; y <= area.bottom; ++y) {
        for (int x = area.left; x <= area.right; ++x) {
            if (at(x, y) != color)
                continue;
            if (!found)
                found = Area{x, y, x, y};
            found = Area{std::min(found->left, x), found->top, std::max(found->right, x), y};
        }
    }
    return found;
}

Picture Picture::cut(int left, int top, int cutWidth, int cutHeight) const {
    Picture part{cutWidth, cutHeight, {}};
    for (int y = 0; y < cutHeight; ++y) {
        for (int x = 0; x < cutWidth; ++x) {
            part.pixels.push_back(at(left + x, top + y));
        }
    }
    return part;
}

int Picture::count(std::uint32_t color, const Area& area) const {
    int found = 0;
    for (int y = area.top; y <= area.bottom; ++y)
        for (int x = area.left; x <= area.right; ++x)
            found += at(x, y) == color ? 1 : 0;
    return found;
}

Picture capture(const Scope& scope) {
    const TempFile file(L"capture.bmp");
    double height = 0.0;
    double width = 0.0;
    // The member can replace the text, so it gets one that it can free.
    BSTR name = SysAllocString(file.path().c_str());
    Text written;
    EXPECT_EQ(scope->DisplayToBMP(&height, &width, &name, written.put()), S_OK);
    SysFreeString(name);
    EXPECT_EQ(written.str(), file.path());
    Picture picture = Picture::read(file.path());
    EXPECT_GT(picture.width, 100);
    EXPECT_GT(picture.height, 100);
    return picture;
}

Plot::Plot() {
    constexpr OLE_COLOR kMarker = 0x00FF00FE;
    scope.setLColorLblBack(kStrip);
    scope.setLColorLblFore(kText);
    scope.setLColorSpecBack(kMarker);
    scope.ClearDisplay();
    const Picture marked = picture();
    spectrum = marked.find(kMarker, marked.all()).value_or(Area{0, 0, 0, 0});
    EXPECT_EQ(marked.count(kMarker, spectrum), spectrum.width() * spectrum.height());
    EXPECT_GT(spectrum.width(), 300);
    EXPECT_GT(spectrum.height(), 100);
    scope.setLColorSpecBack(kBack);
    scope.setGridColor(kGrid);
}

int Plot::column(double frequency) {
    const double minimum = scope.DisplayMinFreq();
    const double share = (frequency - minimum) / (scope.DisplayMaxFreq() - minimum);
    return spectrum.left + static_cast<int>(std::lround(share * spectrum.width()));
}

int Plot::row(double power) {
    const double maximum = scope.DisplayMaxPwr();
    const double share = (maximum - power) / (maximum - scope.DisplayMinPwr());
    return spectrum.top + static_cast<int>(std::lround(share * spectrum.height()));
}

bool Plot::isGridColumn(const Picture& picture, int x) const {
    const int full = spectrum.height();
    return x >= spectrum.left && x <= spectrum.right &&
           picture.count(kGrid, {x, spectrum.top, x, spectrum.bottom}) >= full * 9 / 10;
}

}  // namespace kv::test
