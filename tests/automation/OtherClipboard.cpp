#include "tests/automation/OtherClipboard.h"

#include <cstring>
#include <cwchar>

#include "tests/win32/TempFolder.h"

namespace kv::test {

namespace {

constexpr DWORD kReadingPatience = 30000;  // milliseconds
constexpr DWORD kWasRead = 42;

/// 0x00RRGGBB as hosts write colors.
std::uint32_t hostColor(std::uint32_t pixel) {
    return (pixel & 0xFFU) << 16U | (pixel & 0xFF00U) | (pixel >> 16U & 0xFFU);
}

Picture takePicture(const std::string& numbers, std::size_t& place) {
    const auto next = [&] {
        std::uint32_t value = 0;
        EXPECT_LE(place + sizeof value, numbers.size());
        if (place + sizeof value <= numbers.size())
            std::memcpy(&value, numbers.data() + place, sizeof value);
        place += sizeof value;
        return value;
    };
    Picture picture;
    picture.width = static_cast<int>(next());
    picture.height = static_cast<int>(next());
    for (int i = 0; i < picture.width * picture.height && place < numbers.size(); ++i)
        picture.pixels.push_back(hostColor(next()));
    return picture;
}

std::wstring helperPath() {
    const std::wstring module = modulePath();
    return module.substr(0, module.find_last_of(L'\\') + 1) + L"ClipboardReader.exe";
}

}  // namespace

OtherProgram::OtherProgram(const std::wstring& arguments) {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION made{};
    std::wstring command = L"\"" + helperPath() + L"\" " + arguments;
    EXPECT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &made));
    if (made.hThread)
        CloseHandle(made.hThread);
    process_ = made.hProcess;
}

OtherProgram::~OtherProgram() {
    if (process_)
        CloseHandle(process_);
}

DWORD OtherProgram::wait() const {
    DWORD code = 0;
    EXPECT_EQ(WaitForSingleObject(process_, kReadingPatience), WAIT_OBJECT_0);
    GetExitCodeProcess(process_, &code);
    return code;
}

ClipboardContent readClipboardElsewhere() {
    const TempFile file(L"clipboard.bin");
    EXPECT_EQ(OtherProgram(L"read \"" + file.path() + L"\"").wait(), kWasRead);
    const std::string numbers = contentOf(file.path());
    std::size_t place = 0;
    ClipboardContent content;
    content.bitmap = takePicture(numbers, place);
    content.dib = takePicture(numbers, place);
    EXPECT_EQ(place, numbers.size());
    return content;
}

HeldElsewhere::HeldElsewhere(int milliseconds) {
    const std::wstring name = L"kvHeldElsewhere" + std::to_wstring(GetCurrentProcessId());
    ready_ = CreateEventW(nullptr, TRUE, FALSE, name.c_str());
    program_ = std::make_unique<OtherProgram>(L"hold " + name + L" " + std::to_wstring(milliseconds));
    EXPECT_EQ(WaitForSingleObject(ready_, kReadingPatience), WAIT_OBJECT_0);
}

HeldElsewhere::~HeldElsewhere() {
    EXPECT_EQ(program_->wait(), kWasRead);
    CloseHandle(ready_);
}

void putText(const wchar_t* text) {
    const HWND owner = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(OpenClipboard(owner));
    EmptyClipboard();
    const std::size_t size = (std::wcslen(text) + 1) * sizeof(wchar_t);
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, size);
    std::memcpy(GlobalLock(block), text, size);
    GlobalUnlock(block);
    EXPECT_TRUE(SetClipboardData(CF_UNICODETEXT, block));
    CloseClipboard();
    DestroyWindow(owner);
}

void warmUpClipboard() {
    static bool warm = false;
    for (int i = 0; i < 10 && !warm; ++i) {
        putText(L"warm");
        Sleep(700);
        warm = IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE;
    }
    EXPECT_TRUE(warm) << "the clipboard keeps nothing";
}

Picture readBySystem(const std::wstring& path) {
    const auto bitmap = static_cast<HBITMAP>(
        LoadImageW(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE | LR_CREATEDIBSECTION));
    BITMAP shape{};
    if (!bitmap || GetObjectW(bitmap, sizeof shape, &shape) == 0)
        return {};
    Picture picture{shape.bmWidth, shape.bmHeight, {}};
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(picture.width) *
                                      static_cast<std::size_t>(picture.height));
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), picture.width, -picture.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    const HDC screen = GetDC(nullptr);
    EXPECT_EQ(GetDIBits(screen, bitmap, 0, static_cast<UINT>(picture.height), pixels.data(), &info, DIB_RGB_COLORS),
              picture.height);
    ReleaseDC(nullptr, screen);
    DeleteObject(bitmap);
    for (const std::uint32_t pixel : pixels)
        picture.pixels.push_back(hostColor(pixel & 0x00FFFFFFU));
    return picture;
}

}  // namespace kv::test
