// The status bar at the bottom of the window: a message, the displayed range, the counts and a progress bar.
#pragma once

#include <string>

#include "host/Com.h"

namespace kv::host {

class StatusBar {
  public:
    explicit StatusBar(HWND parent);

    /// Adjusts the bar to the parent's size.
    void place();
    [[nodiscard]] int height() const;
    void setMessage(const std::wstring& text);
    void setRange(double lowestMhz, double highestMhz);
    void setCounts(const std::wstring& text);
    /// A fraction from 0 to 1 shows the progress bar; a negative value hides it.
    void setProgress(double fraction);

  private:
    void setPart(int part, const std::wstring& text);

    HWND bar_;
    HWND progress_;
};

}  // namespace kv::host
