// The window that tells the user what the self-check does.
#pragma once

#include <windows.h>

#include <string>

namespace kv::host {

/// Its first window makes the program the active one, so that later windows may come to the front for steps with keys.
class Progress {
  public:
    Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    void show(const std::wstring& step) const;

  private:
    HWND window_ = nullptr;  ///< null if there can be no windows
    HWND label_ = nullptr;
};

}  // namespace kv::host
