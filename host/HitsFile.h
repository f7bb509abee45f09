// Saves a list of hits, and reports why it cannot be saved.
#pragma once

#include <string>

#include "host/hits/HitRows.h"

namespace kv::host {

/// Throws Failure with kExitSaveFailed.
void saveHitsAs(const std::wstring& file, const HitFinder& finder, const HitRows& rows);

/// Finds all hits and saves them. Throws Failure: with kExitUsage, and without writing anything, if there are more than
/// a list can have.
void findAndSaveHits(const std::wstring& file, const Plan& plan, const ProductOptions& options);

}  // namespace kv::host
