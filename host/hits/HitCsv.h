// Writes hits as a CSV file.
#pragma once

#include <exception>
#include <filesystem>
#include <string>

#include "host/hits/HitRows.h"

namespace kv::host {

/// Why a list of hits was not saved. Nothing was written then: a file of that name is as it was before.
class HitsNotSaved : public std::exception {
  public:
    explicit HitsNotSaved(std::wstring reason) : reason_(std::move(reason)) {}

    /// A part of a sentence, such as "its folder does not exist". The caller adds the name of the file.
    [[nodiscard]] const std::wstring& reason() const noexcept { return reason_; }
    [[nodiscard]] const char* what() const noexcept override { return "list of hits not saved"; }

  private:
    std::wstring reason_;
};

/// The line with the names of the columns and their units.
[[nodiscard]] std::string hitHeader();
/// One row, with its line end. Fields are quoted where CSV demands it.
[[nodiscard]] std::string hitLine(const HitSite& site, const Hit& hit);

/// Writes the rows in their order: comma-separated values in UTF-8 without a byte order mark, numbers with a decimal
/// point, lines that end with CR and LF. The file is written under another name in the same folder and renamed, so that
/// a file of this name is always complete. Throws HitsNotSaved.
void saveHits(const std::filesystem::path& file, const HitFinder& finder, const HitRows& rows);

}  // namespace kv::host
