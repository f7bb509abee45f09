// Another program that uses the clipboard: prints the picture on it, or holds it open for a while.
//
//   ClipboardReader read FILE         writes 32-bit numbers: width, height and pixels (0x00RRGGBB, the topmost row
//                                     first) of the CF_BITMAP and then of the CF_DIB; sizes of 0 for what is not there
//   ClipboardReader hold EVENT TIME   opens the clipboard, sets the event of that name, closes it after TIME
//                                     milliseconds
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <vector>

namespace {

constexpr int kOk = 42;
constexpr int kFailed = 1;
constexpr int kUsage = 2;

bool openClipboard() {
    for (int i = 0; i < 100; ++i) {
        if (OpenClipboard(nullptr))
            return true;
        Sleep(20);
    }
    return false;
}

/// A 32-bit picture in memory that the system draws into.
class Paper {
  public:
    Paper(int width, int height) : width_(width), height_(height), dc_(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        bits_ = static_cast<const std::uint32_t*>(bits);
        before_ = SelectObject(dc_, bitmap_);
    }
    ~Paper() {
        SelectObject(dc_, before_);
        DeleteObject(bitmap_);
        DeleteDC(dc_);
    }
    Paper(const Paper&) = delete;
    Paper& operator=(const Paper&) = delete;
    HDC dc() const { return dc_; }
    void appendTo(std::vector<std::uint32_t>& numbers) const {
        GdiFlush();
        numbers.push_back(static_cast<std::uint32_t>(width_));
        numbers.push_back(static_cast<std::uint32_t>(height_));
        for (int i = 0; bits_ && i < width_ * height_; ++i)
            numbers.push_back(bits_[i] & 0x00FFFFFFU);
    }

  private:
    int width_;
    int height_;
    HDC dc_;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ before_ = nullptr;
    const std::uint32_t* bits_ = nullptr;
};

void appendNothing(std::vector<std::uint32_t>& numbers) {
    numbers.insert(numbers.end(), {0, 0});
}

void appendBitmap(std::vector<std::uint32_t>& numbers) {
    const auto bitmap = static_cast<HBITMAP>(GetClipboardData(CF_BITMAP));
    BITMAP shape{};
    if (!bitmap || GetObjectW(bitmap, sizeof shape, &shape) == 0)
        return appendNothing(numbers);
    const Paper paper(shape.bmWidth, shape.bmHeight);
    const HDC source = CreateCompatibleDC(nullptr);
    const HGDIOBJ before = SelectObject(source, bitmap);
    BitBlt(paper.dc(), 0, 0, shape.bmWidth, shape.bmHeight, source, 0, 0, SRCCOPY);
    SelectObject(source, before);
    DeleteDC(source);
    paper.appendTo(numbers);
}

void appendDib(std::vector<std::uint32_t>& numbers) {
    const HANDLE block = GetClipboardData(CF_DIB);
    const auto* info = block ? static_cast<const BITMAPINFO*>(GlobalLock(block)) : nullptr;
    if (!info)
        return appendNothing(numbers);
    const BITMAPINFOHEADER& head = info->bmiHeader;
    const int height = std::abs(static_cast<int>(head.biHeight));
    std::size_t offset = head.biSize;
    if (head.biCompression == BI_BITFIELDS && head.biSize == sizeof(BITMAPINFOHEADER))
        offset += 3 * sizeof(DWORD);
    const Paper paper(head.biWidth, height);
    SetDIBitsToDevice(paper.dc(), 0, 0, static_cast<DWORD>(head.biWidth), static_cast<DWORD>(height), 0, 0, 0,
                      static_cast<UINT>(height), reinterpret_cast<const char*>(info) + offset, info, DIB_RGB_COLORS);
    paper.appendTo(numbers);
    GlobalUnlock(block);
}

int readTo(const wchar_t* path) {
    if (!openClipboard())
        return kFailed;
    std::vector<std::uint32_t> numbers;
    appendBitmap(numbers);
    appendDib(numbers);
    CloseClipboard();
    const HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return kFailed;
    const auto size = static_cast<DWORD>(numbers.size() * sizeof numbers[0]);
    DWORD written = 0;
    const bool done = WriteFile(file, numbers.data(), size, &written, nullptr) && written == size;
    CloseHandle(file);
    return done ? kOk : kFailed;
}

int hold(const wchar_t* event, DWORD time) {
    const HANDLE ready = OpenEventW(EVENT_MODIFY_STATE, FALSE, event);
    if (!ready || !openClipboard())
        return kFailed;
    SetEvent(ready);
    Sleep(time);
    CloseClipboard();
    CloseHandle(ready);
    return kOk;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc == 3 && std::wcscmp(argv[1], L"read") == 0)
        return readTo(argv[2]);
    if (argc == 4 && std::wcscmp(argv[1], L"hold") == 0)
        return hold(argv[2], static_cast<DWORD>(std::wcstoul(argv[3], nullptr, 10)));
    return kUsage;
}
