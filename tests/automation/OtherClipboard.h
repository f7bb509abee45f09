// The clipboard as other programs see and use it.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "tests/automation/Picture.h"

namespace kv::test {

/// The helper program, running.
class OtherProgram {
  public:
    explicit OtherProgram(const std::wstring& arguments);
    ~OtherProgram();
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    /// Waits for its end and returns its exit code, which is 42 after success.
    DWORD wait() const;

  private:
    HANDLE process_ = nullptr;
};

/// The pictures that another program finds on the clipboard; empty for missing formats.
struct ClipboardContent {
    Picture bitmap;  ///< CF_BITMAP
    Picture dib;     ///< CF_DIB
};
[[nodiscard]] ClipboardContent readClipboardElsewhere();

/// Another program has the clipboard open from the end of the constructor on, for a given time.
class HeldElsewhere {
  public:
    explicit HeldElsewhere(int milliseconds);
    ~HeldElsewhere();
    HeldElsewhere(const HeldElsewhere&) = delete;
    HeldElsewhere& operator=(const HeldElsewhere&) = delete;

  private:
    HANDLE ready_;
    std::unique_ptr<OtherProgram> program_;
};

/// Waits until the clipboard keeps its content, because the system empties it once on a new display.
void warmUpClipboard();
void putText(const wchar_t* text);

/// A bitmap file as the system's own reader understands it; an empty picture when it does not.
[[nodiscard]] Picture readBySystem(const std::wstring& path);

}  // namespace kv::test
