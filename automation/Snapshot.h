// The whole control as one picture, in the forms that containers ask for.
#pragma once

#include <windows.h>

#include <functional>
#include <vector>

#include "win32/Gdi.h"

namespace kv::automation {

class Snapshot {
  public:
    /// Lets `paint` paint into a picture of `size` pixels. Throws RuntimeError 7 when there is no memory for it.
    Snapshot(SIZE size, const std::function<void(HDC, const RECT&)>& paint);
    ~Snapshot();
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;

    /// Fills `bounds`, in the logical units of `dc`, whatever kind of device that is. False when the system fails.
    [[nodiscard]] bool drawTo(HDC dc, const RECTL& bounds) const;

    /// Header and pixels, 24 bits each, as the clipboard has them. Throws.
    [[nodiscard]] std::vector<BYTE> packedDib() const;
    /// The caller's from then on; null when the system fails.
    [[nodiscard]] HBITMAP bitmap() const;
    /// The same, at `extent` hundredths of a millimetre.
    [[nodiscard]] HENHMETAFILE metafile(SIZEL extent) const;

  private:
    SIZE size_;
    win32::MemoryDc dc_;
    win32::GdiObject<HBITMAP> bitmap_;
    HGDIOBJ previous_ = nullptr;
};

}  // namespace kv::automation
