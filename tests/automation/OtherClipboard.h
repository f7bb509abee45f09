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
    /// Waits for its end; its exit code, 42 when it did what it should.
    DWORD wait() const;

  private:
    HANDLE process_ = nullptr;
};

/// The pictures that another program finds on the clipboard; empty ones for formats that are not there.
struct ClipboardContent {
    Picture bitmap;  ///< CF_BITMAP
    Picture dib;     ///< CF_DIB
};
[[nodiscard]] ClipboardContent readClipboardElsewhere();

/// Another program has the clipboard open; from the constructor's end on, for a time that it is given.
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

/// Waits until the clipboard keeps what it is given: on a fresh display it is wiped once.
void warmUpClipboard();
void putText(const wchar_t* text);

/// A bitmap file as the system's own reader understands it; an empty picture when it does not.
[[nodiscard]] Picture readBySystem(const std::wstring& path);

}  // namespace kv::test
