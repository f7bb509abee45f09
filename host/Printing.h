// Printing on one page.
#pragma once

#include <windows.h>

#include <optional>

#include "host/plan/PageHeading.h"

namespace kv::host {

/// The printer that the user chose.
class Printer {
  public:
    explicit Printer(HDC dc) noexcept : dc_(dc) {}
    Printer(Printer&& other) noexcept : dc_(other.dc_) { other.dc_ = nullptr; }
    Printer& operator=(Printer&&) = delete;
    ~Printer();

    [[nodiscard]] HDC dc() const noexcept { return dc_; }

  private:
    HDC dc_;
};

/// Shows the system's dialog. Nothing when the user cancels it. Throws a Failure without a printer.
[[nodiscard]] std::optional<Printer> askForPrinter(HWND owner);

/// A document of one page. Without `finish` it is given up.
class PrintJob {
  public:
    /// Throws a Failure.
    PrintJob(HDC dc, const PageHeading& heading);
    ~PrintJob();
    PrintJob(const PrintJob&) = delete;
    PrintJob& operator=(const PrintJob&) = delete;

    /// The place of the picture below the heading, as large as the page allows; device units.
    [[nodiscard]] RECT place() const noexcept { return place_; }
    void finish();

  private:
    HDC dc_;
    RECT place_{};
    bool finished_ = false;
};

}  // namespace kv::host
