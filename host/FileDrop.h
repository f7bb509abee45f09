// Files that the user drops on a window.
#pragma once

#include <string>
#include <vector>

#include "host/Com.h"

#include <oleidl.h>

namespace kv::host {

/// The object that the system calls during a drag.
class DropTarget final : public IDropTarget {
  public:
    /// For dropped files `message` is posted to the window, because the program they come from waits until a drop ends.
    DropTarget(HWND window, UINT message) : window_(window), message_(message) {}
    virtual ~DropTarget() = default;

    /// The paths of the latest drop, once.
    [[nodiscard]] std::vector<std::wstring> take() noexcept { return std::exchange(files_, {}); }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP DragEnter(IDataObject* data, DWORD keys, POINTL point, DWORD* effect) override;
    STDMETHODIMP DragOver(DWORD keys, POINTL point, DWORD* effect) override;
    STDMETHODIMP DragLeave() override;
    STDMETHODIMP Drop(IDataObject* data, DWORD keys, POINTL point, DWORD* effect) override;

  private:
    LONG references_ = 0;
    HWND window_;
    UINT message_;
    bool accepts_ = false;  // the drag that is over the window has files
    std::vector<std::wstring> files_;
};

/// The window accepts files while this object exists.
class FileDrop {
  public:
    FileDrop(HWND window, UINT message);
    FileDrop(const FileDrop&) = delete;
    FileDrop& operator=(const FileDrop&) = delete;
    ~FileDrop();

    [[nodiscard]] std::vector<std::wstring> take() noexcept { return target_->take(); }

  private:
    HWND window_;
    ComPtr<DropTarget> target_;
};

}  // namespace kv::host
