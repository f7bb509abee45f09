// A picture of the whole control, in the formats that containers request.
#pragma once

#include <windows.h>

#include <functional>
#include <vector>

#include "win32/Gdi.h"

namespace kv::automation {

class Snapshot {
  public:
    /// Calls `paint` with a picture of `size` pixels. Throws RuntimeError 7 if there is no memory for it.
    Snapshot(SIZE size, const std::function<void(HDC, const RECT&)>& paint);
    ~Snapshot();
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;

    /// Draws the picture into `bounds`, in the logical units of `dc`, which may be any device. False if the system
    /// fails.
    [[nodiscard]] bool drawTo(HDC dc, const RECTL& bounds) const;

    /// Header and pixels with 24 bits each, in the format of the clipboard. Throws.
    [[nodiscard]] std::vector<BYTE> packedDib() const;
    /// Owned by the caller; null if the system fails.
    [[nodiscard]] HBITMAP bitmap() const;

    [[nodiscard]] SIZE size() const noexcept { return size_; }
    /// A part of the picture. Throws RuntimeError 7.
    [[nodiscard]] Snapshot cut(const RECT& part) const;

  private:
    SIZE size_;
    win32::MemoryDc dc_;
    win32::GdiObject<HBITMAP> bitmap_;
    HGDIOBJ previous_ = nullptr;
};

}  // namespace kv::automation
